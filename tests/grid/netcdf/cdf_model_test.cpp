// Model data sets in netCDF files: each change of a small one gives the record that the layout's rules lead to.

#include <cstring>

#include "frame/string.h"
#include "grid/expected_fields.h"
#include "grid/netcdf/cdf_files.h"
#include "support/table.h"

namespace zav {
namespace {

using test::EnvSetting;
using test::OpenGrid;

class CdfModel : public test::TempDirTest {};

/// `text` with the changes "old=>new && ..." at each place of the old texts, of which there has to be one.
std::string changed(std::string text, std::string changes) {
    for (std::size_t end = 0; !changes.empty(); changes.erase(0, end)) {
        end = std::min(changes.find(" && "), changes.size());
        const std::string change = changes.substr(0, end);
        end = std::min(end + std::strlen(" && "), changes.size());
        const std::size_t arrow = change.find("=>");
        const std::string from = change.substr(0, arrow);
        const std::string to = change.substr(arrow + 2);
        std::size_t at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        for (; at != std::string::npos; at = text.find(from, at + to.size())) text.replace(at, from.size(), to);
    }
    return text;
}

void expect_record(const OpenGrid& file, int number, const std::string& expected) {
    GRD_report header;
    GRD_report back;
    back.units = "of another record";
    const bool end = expected == "end";
    ASSERT_EQ(file.read(number, &header, GRD_READ_HEADER), end ? -1 : 0);
    EXPECT_EQ(header.grid, nullptr);
    const int result = file.read(number, &back);
    ASSERT_EQ(result, end || expected == "failure" ? -1 : 0);
    if (result != 0) return;
    EXPECT_EQ(header.var, back.var);
    EXPECT_EQ(header.time, back.time);
    EXPECT_EQ(header.level, back.level);
    if (expected == "empty") {
        EXPECT_TRUE(GRD_is_empty(&back));
        test::expect_fields(back, "source=0;var=0;ltype=0;level=0;time=0");
    } else {
        test::expect_fields(back, expected);
    }
}

TEST_F(CdfModel, RecordsFollowTheRules) {
    const std::string text = test::cdl_text("model");
    for (const test::Row& row : test::data_table("netcdf/models.tsv")) {
        SCOPED_TRACE(row.at("name"));
        const OpenGrid file(test::make_netcdf(dir, changed(text, row.at("changes"))));
        ASSERT_TRUE(file.open());
        expect_record(file, std::stoi(row.at("record")), row.at("expected"));
    }
}

TEST_F(CdfModel, EveryFormatGivesTheSameRecords) {
    for (const char* kind : {"classic", "64-bit offset", "64-bit data", "nc4", "nc7"}) {
        SCOPED_TRACE(kind);
        const OpenGrid file(test::make_netcdf(dir, test::cdl_text("model"), kind));
        ASSERT_TRUE(file.open());
        EXPECT_EQ(file.info.datim, "1200Z 15 MAR 96");
        // Forward as a search goes, and back again.
        for (const int number : {0, 1, 8, 15, 21, 22, 8, 0, 17, 14}) {
            const bool late = number > 21;
            expect_record(file, number,
                          late           ? "end"
                          : number == 8  ? "values=2410,2411,2412,2400,2401,2402"
                          : number == 17 ? "values=100210,100211,100212,100200,100201,100202"
                          : number >= 15 ? "level=0"
                          : number == 14 ? "level=300"
                                         : "time=0");
        }
    }
}

TEST_F(CdfModel, TitlesTellTheDataSet) {
    struct Case {
        const char* title;
        int code;
    };
    for (const Case& item : {Case{"ECMWF: Trop", 31},
                             {"ECMWF: Maximum", 32},
                             {"NMC Early 72 hours", 13},
                             {"NMC Extended", 20},
                             {"NMC Global", 40},
                             {"anything", 1},
                             {"Trop, NMC Global", 2}}) {
        for (const bool with_rtime : {true, false}) {
            std::string text = changed(test::cdl_text("model"), std::string("NMC Global=>") + item.title);
            if (!with_rtime) text = changed(text, "rtime = 1=>another = 1 && (rtime=>(another");
            int type = 0;
            GRD_info info;
            const int fd = GRD_open(test::make_netcdf(dir, text), 0, &type);
            ASSERT_GE(fd, 0);
            GRD_getinfo(fd, &info);
            EXPECT_EQ(GRD_get_gfile(fd)->itype, item.code + (with_rtime ? 0 : 100)) << item.title;
            GRD_close(fd);
        }
    }
}

TEST_F(CdfModel, GlobesAreClosed) {
    const OpenGrid file(test::make_netcdf(dir, test::cdl_text("globe")));
    GRD_report back;
    ASSERT_EQ(file.read(0, &back), 0);
    EXPECT_TRUE(GRD_is_empty(&back));
    ASSERT_EQ(file.read(1, &back), 0);
    test::expect_fields(back, "time=96;nx=73;ny=2;dx=5;clon=180;clat=0;units=gpm;ltype=1;type=11");
    for (std::size_t row = 0; row < 2; row++) {
        for (std::size_t x = 0; x < 73; x++) {
            EXPECT_EQ(back.grid[row * 73 + x], static_cast<float>(5000 + (1 - row) * 72 + x % 72));
        }
    }
}

/// Grids that are known by their model or their size alone.
TEST_F(CdfModel, GridsWithoutCoordinates) {
    struct Case {
        int nx;
        int ny;
        int model;
        const char* expected;
    };
    for (const Case& item :
         {Case{83, 83, 12, "proj=1;clat=50.8936;clon=-103.1524;plon=-105;dx=0.9075464;dy=0.9075464;nx=83;ny=83;type=1"},
          {93, 65, 83,
           "proj=4;clat=40.62;clon=-100.51;plon=-95;param0=25;param1=25;param2=1.277;dx=0.6263;dy=0.6263;nx=93;ny=65;"
           "type=211"},
          {83, 82, 12, "failure"},
          {93, 66, 83, "failure"}}) {
        const std::string text = text_format(
            "netcdf a { dimensions: frtime=1; y=%d; x=%d; variables: float frtime(frtime); short grib_model(frtime); "
            "float T(frtime,y,x); data: frtime=6; grib_model=%d; T=280; }",
            item.ny, item.nx, item.model);
        expect_record(OpenGrid(test::make_netcdf(dir, text)), 0, item.expected);
    }
}

TEST_F(CdfModel, EnvironmentAddsAVariableAndATime) {
    const EnvSetting variable("GRIDVAR", "other");
    const EnvSetting kind("GRIBQP", "4000000");
    const OpenGrid file(test::make_netcdf(
        dir, changed(test::cdl_text("model"),
                     "float Zsfc(rtime, lat, lon)=>float other(rtime, lat, lon); other:long_name = \"Other one\"; "
                     "other:units = \"kg\" && Zsfc = =>other = ")));
    expect_record(file, 21, "var=0;units=kg;info=Other_one_(kg);values=10,11,12,0,1,2");
    expect_record(file, 20, "var=61;kind=4;time=4000024;info=24_hour_acc");
    expect_record(file, 16, "time=12");
    // A variable that is known anyway is taken once, by the number 0.
    const EnvSetting known("GRIDVAR", "Psl");
    const OpenGrid again(test::make_netcdf(dir, test::cdl_text("model")));
    expect_record(again, 15, "var=0");
    expect_record(again, 22, "end");
}

TEST_F(CdfModel, FifteenVariablesAreTakenUp) {
    std::string names;
    for (const char* name : {"P", "H", "T", "RH", "LI", "U", "V", "omega", "precip", "snow", "SST", "wave_hgt",
                             "wave_per", "wave_dir", "Usfc", "Vsfc"}) {
        names += text_format("float %s(lat,lon);", name);
    }
    const std::string text = "netcdf a { dimensions: lat=2; lon=2; variables: float lat(lat); float lon(lon); " +
                             names + " data: lat=1,2; lon=1,2; P=1,1,1,1; Usfc=1,2,3,4; Vsfc=1,2,3,4; }";
    const OpenGrid file(test::make_netcdf(dir, text));
    expect_record(file, 14, "var=33;values=3,4,1,2");
    expect_record(file, 1, "empty");
    expect_record(file, 15, "end");
}

}  // namespace
}  // namespace zav
