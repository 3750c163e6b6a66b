// netCDF files in the program's own layout: ncdump shows what the layout says, records come back, and what can't be
// kept is refused.

#include <array>
#include <random>
#include <utility>

#include "frame/flag.h"
#include "frame/status.h"
#include "frame/string.h"
#include "grid/expected_fields.h"
#include "grid/grd_out.h"
#include "grid/netcdf/cdf_files.h"
#include "map/maptran.h"

namespace zav {
namespace {

using test::OpenGrid;

class Cdf : public test::TempDirTest {
  protected:
    int below(int n) { return static_cast<int>(random_() % static_cast<unsigned>(n)); }
    float real(double low, double high) {
        return static_cast<float>(std::uniform_real_distribution<double>(low, high)(random_));
    }
    std::string text(int length) {
        std::string made;
        for (int i = 0; i < length; i++) made += static_cast<char>('a' + below(26));
        return made;
    }

    /// A record by chance on a grid of `nx` by `ny` points.
    GRD_report record(int nx, int ny) {
        GRD_report grid;
        GRD_init(&grid);
        for (int* code : {&grid.source, &grid.version, &grid.model, &grid.type}) *code = 1 + below(32767);
        for (int* code : {&grid.ltype, &grid.level, &grid.time, &grid.var}) *code = below(65536) - 32768;
        grid.datim = text(below(50));
        grid.units = text(1 + below(14));
        grid.info = text(1 + below(34)) + " (" + grid.units + ")";
        Domain& at = grid.domain;
        at.proj = PROJ_LATLON;
        for (float* value : {&at.clat, &at.plat, &at.clon, &at.plon, &at.dx, &at.dy}) *value = real(-180, 180);
        at.nx = nx;
        at.ny = ny;
        GRD_alloc(&grid);
        for (int i = 0; i < nx * ny; i++) grid.grid[static_cast<std::size_t>(i)] = real(-1e30, 1e30);
        grid.grid[0] = FMISS;
        return grid;
    }

    /// Writes records to a file, whose number of points is that of the first.
    void write(const std::string& name, int access, const std::vector<GRD_report>& grids, int grid_type = 0) {
        int type = GRD_TYPE_CDF;
        const int fd = GRD_open(name, access, &type);
        ASSERT_GE(fd, 0);
        GRD_info info;
        Date date;
        date.year = 2026;
        date.month = 1;
        date.day = 15;
        date.hour = 12;
        GRD_set_info(&info, &date, &grids[0].domain);
        info.grid_type = grid_type;
        ASSERT_EQ(GRD_putinfo(fd, &info), 0);
        int number = 0;
        for (GRD_report grid : grids) {
            ASSERT_EQ(GRD_write(fd, &grid, 0, &number), 0);
            number++;
        }
        ASSERT_EQ(GRD_close(fd), 0);
    }

    static void expect_same(const GRD_report& back, const GRD_report& grid) {
        EXPECT_EQ(back.datim, grid.datim);
        EXPECT_EQ(back.info, grid.info);
        EXPECT_EQ(back.units, grid.units);
        const auto codes = [](const GRD_report& of) {
            return std::array{of.source, of.version, of.model, of.type, of.ltype, of.level, of.time, of.var};
        };
        EXPECT_EQ(codes(back), codes(grid));
        EXPECT_EQ(DOM_comp(&back.domain, &grid.domain), 1);
        ASSERT_TRUE(GRD_has_values(&back));
        EXPECT_TRUE(std::equal(&grid.grid[0], &grid.grid[GRD_points(&grid)], &back.grid[0]));
    }

    std::mt19937 random_{7};
};

/// The list of ncdump is that of the layout's tables.
TEST_F(Cdf, TheLayoutIsThatOfTheTables) {
    for (const int grid_type : {0, 1}) {
        write("a.cdf", 1, {record(7, 5)}, grid_type);
        const std::string shown = test::run_command("ncdump -h a.cdf");
        const std::string wanted =
            test::read_file(test::source_dir() + text_format("/tests/data/netcdf/written_%d.txt", grid_type));
        EXPECT_EQ(shown.substr(shown.find('\n') + 1), wanted);
    }
    // As values stand in memory, so in the file; texts end with a NUL.
    GRD_report grid = record(3, 2);
    for (std::size_t i = 0; i < 6; i++) grid.grid[i] = static_cast<float>(i);
    grid.datim = "now";
    write("b.cdf", 1, {grid});
    const std::string values = test::run_command("ncdump -v values,datim b.cdf");
    EXPECT_NE(values.find("  0, 1,\n  2, 3,\n  4, 5 ;"), std::string::npos) << values;
    EXPECT_NE(values.find("\"now\" ;"), std::string::npos) << values;
}

TEST_F(Cdf, RecordsComeBack) {
    for (int round = 0; round < 40; round++) {
        std::vector<GRD_report> grids = {record(1 + below(9), 1 + below(9))};
        while (below(4) > 0) grids.push_back(record(grids[0].domain.nx, grids[0].domain.ny));
        std::vector<GRD_report> more;
        for (int i = below(3); i > 0; i--) {
            more.push_back(record(1 + below(grids[0].domain.nx), 1 + below(grids[0].domain.ny)));
        }
        write("a.cdf", 1, grids);
        if (!more.empty()) write("a.cdf", 2, more);
        grids.insert(grids.end(), more.begin(), more.end());
        const OpenGrid file("a.cdf");
        ASSERT_TRUE(file.open());
        const auto count = static_cast<int>(grids.size());
        for (int i = 0; i < 2 * count; i++) {
            const int number = i < count ? i : below(count);
            GRD_report back;
            ASSERT_EQ(file.read(number, &back, GRD_READ_HEADER), 0);
            EXPECT_EQ(back.grid, nullptr);
            ASSERT_EQ(file.read(number, &back), 0);
            expect_same(back, grids[static_cast<std::size_t>(number)]);
        }
        GRD_report beyond;
        EXPECT_EQ(file.read(count, &beyond), -1);
    }
}

/// Files that other programs make in this layout: types of other widths, a block smaller than the file's, no
/// projection.
TEST_F(Cdf, OtherWritersAreRead) {
    for (const char* kind : {"classic", "64-bit offset", "64-bit data", "nc4"}) {
        SCOPED_TRACE(kind);
        const std::string path = test::make_netcdf(dir, test::cdl_text("own"), kind);
        EXPECT_EQ(GRD_chktype(path), GRD_TYPE_CDF);
        const OpenGrid file(path);
        ASSERT_TRUE(file.open());
        EXPECT_EQ(file.info.date.year, 98);
        EXPECT_EQ(file.info.date.hour, 6);
        EXPECT_EQ(file.info.datim, "06Z  3 FEB 98");
        GRD_report back;
        back.units = "of another record";
        back.date.year = 2001;
        ASSERT_EQ(file.read(0, &back), 0);
        EXPECT_EQ(back.date.year, 2001);
        test::expect_fields(back,
                            "datim=24_hour;info=500_mb_Height_(m);units=m;source=7;version=miss;model=12;type=miss;"
                            "ltype=100;level=500;time=24;var=7;proj=2;clat=40.5;plat=miss;clon=-100;plon=miss;dx=2.5;"
                            "dy=2;nx=4;ny=3;values=1,2,3,4,5,6,7,8,9,10,11,miss");
        ASSERT_EQ(file.read(1, &back), 0);
        test::expect_fields(back, "units=;source=98;model=5;proj=1;nx=2;ny=2;values=21,22,23,24");
        EXPECT_EQ(file.read(2, &back), -1);
    }
}

/// Grids of files with coordinates of their points, which nobody fills, and those with numbers missing, aren't drawn
/// anywhere.
TEST_F(Cdf, GridsWithoutAPlaceAreNotRead) {
    const std::string text = test::cdl_text("own");
    for (const auto& [from, to] : {std::pair{":grid_type = 0", ":grid_type = 1"},
                                   {"lat1", "lat3"},
                                   {"dx = 2.5", "dx = 0"},
                                   {"lon1 = -100", "lon1 = NaN"}}) {
        std::string other = text;
        for (std::size_t at = 0; (at = other.find(from, at)) != std::string::npos; at++)
            other.replace(at, std::string(from).size(), to);
        const OpenGrid file(test::make_netcdf(dir, other));
        GRD_report back;
        ASSERT_EQ(file.read(0, &back, GRD_READ_HEADER), 0);
        test::expect_fields(back, "proj=miss;var=7;nx=4");
        EXPECT_EQ(file.read(0, &back), -1);
        EXPECT_EQ(back.grid, nullptr);
    }
}

/// Places on the earth are kept: the layout's own numbers don't tell true latitudes and the earth's shape.
TEST_F(Cdf, ProjectionsKeepTheirPlaces) {
    struct Case {
        const char* name;
        const char* domain;
    };
    for (const Case& item :
         {Case{"default", "lambert:90:-95,40,-100,7,5,0.8,0.8"},
          Case{"set", "lambert:90:-95:25:25:1,40,-100,7,5,0.8,0.8"}, Case{"polar", "ps:90:-105,50,-100,7,5,1.9,1.9"},
          Case{"true_at_70", "ps:90:-105:70,50,-100,7,5,1.9,1.9"}}) {
        SCOPED_TRACE(item.name);
        GRD_report grid = record(7, 5);
        ASSERT_EQ(DOM_decode(item.domain, &grid.domain), 1);
        write("a.cdf", 1, {record(7, 5), grid, record(7, 5)});
        const OpenGrid file("a.cdf");
        GRD_report back;
        ASSERT_EQ(file.read(1, &back), 0);
        EXPECT_TRUE(std::equal(&grid.grid[0], &grid.grid[35], &back.grid[0]));
        for (const float side : {-1.0F, 1.0F}) {
            Point corner;
            MAP_domain(&grid.domain);
            MAP_tran_center(&corner.x, &corner.y);
            corner.x += side * 3.0F * grid.domain.dx;
            corner.y += 2.0F * grid.domain.dy;
            float lat = 0;
            float lon = 0;
            MAP_untran(corner.x, corner.y, &lat, &lon);
            MAP_domain(&back.domain);
            MAP_tran_center(&corner.x, &corner.y);
            corner.x += side * 3.0F * back.domain.dx;
            corner.y += 2.0F * back.domain.dy;
            float back_lat = 0;
            float back_lon = 0;
            MAP_untran(corner.x, corner.y, &back_lat, &back_lon);
            EXPECT_NEAR(back_lat, lat, 1e-3);
            EXPECT_NEAR(back_lon, lon, 1e-3);
        }
        ASSERT_EQ(file.read(2, &back), 0);
        EXPECT_EQ(back.domain.param[0], FMISS);
    }
}

/// Where a key doesn't fit into 16 bits nothing is written, and a file that is there stays.
TEST_F(Cdf, KeysThatDoNotFitAreRefused) {
    for (int GRD_report::*code : {&GRD_report::ltype, &GRD_report::level, &GRD_report::time, &GRD_report::var}) {
        for (const int value : {32768, -32769, 4012024}) {
            GRD_report grid = record(3, 2);
            grid.*code = value;
            GRD_info info;
            const std::string name = dir.write("kept.cdf", "as it was");
            FLAG_set(FLAG_FILE_POLICY, 1);
            const test::Output out =
                test::capture([&] { EXPECT_EQ(GRD_save_file(name, &grid, &info, GRD_TYPE_CDF), 0); });
            FLAG_set(FLAG_FILE_POLICY, 0);
            EXPECT_NE((out.out + out.err).find(text_format("%d, native ones", value)), std::string::npos);
            EXPECT_EQ(test::read_file(name), "as it was");
            EXPECT_EQ(ZAV_noted(), STATUS_OUTPUT);
        }
    }
    // Where a field comes from is told by no more than a label.
    GRD_report grid = record(3, 2);
    grid.type = 7210812;
    write("a.cdf", 1, {grid});
    GRD_report back;
    ASSERT_EQ(OpenGrid("a.cdf").read(0, &back), 0);
    EXPECT_EQ(back.type, 0);
}

TEST_F(Cdf, LongLabelsKeepTheirUnits) {
    GRD_report grid = record(3, 2);
    grid.units = "kg/m^2";
    grid.info = "12 hour 850-500 mb a very long name of a quantity that nobody knows (kg/m^2)";
    write("a.cdf", 1, {grid});
    GRD_report back;
    ASSERT_EQ(OpenGrid("a.cdf").read(0, &back), 0);
    EXPECT_EQ(back.info, "12 hour 850-500 mb a very long name of a  (kg/m^2)");
    EXPECT_EQ(back.units, "kg/m^2");
}

/// Only files of this layout are added to, with grids that have room in them.
TEST_F(Cdf, AddingNeedsAFileThatFits) {
    const auto add = [this](const std::string& name, const GRD_report& grid) {
        GRD_report copy = grid;
        GRD_info info;
        int type = GRD_TYPE_CDF;
        int number = 0;
        const int fd = GRD_open(name, 2, &type);
        const bool done = fd >= 0 && GRD_putinfo(fd, &info) == 0 && GRD_write(fd, &copy, 0, &number) == 0;
        if (fd >= 0) GRD_close(fd);
        return done;
    };
    write("a.cdf", 1, {record(4, 3)});
    EXPECT_FALSE(add("a.cdf", record(5, 3)));
    EXPECT_FALSE(add("a.cdf", record(4, 4)));
    EXPECT_TRUE(add("a.cdf", record(4, 3)));
    const std::string model = test::make_netcdf(dir, test::cdl_text("model"));
    const std::string before = test::read_file(model);
    EXPECT_FALSE(add(model, record(3, 2)));
    EXPECT_EQ(test::read_file(model), before);
    EXPECT_FALSE(add(dir.write("text.cdf", "no netCDF"), record(3, 2)));
}

}  // namespace
}  // namespace zav
