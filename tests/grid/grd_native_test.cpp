// Native grid files: what is written comes back, older forms are read, and damaged files end in a result.

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <random>

#include "files/date.h"
#include "frame/string.h"
#include "grid/expected_fields.h"
#include "grid/grd_out.h"
#include "grid/grd_read.h"
#include "grid/grd_tool.h"
#include "map/maptran.h"
#include "support/support.h"
#include "support/table.h"

namespace zav {
namespace {

using test::TempDirTest;

GRD_report sample(int nx, int ny) {
    GRD_report grid;
    GRD_init(&grid);
    grid.source = 7;
    grid.version = 2;
    grid.model = 96;
    grid.type = 211;
    grid.ltype = 100;
    grid.level = 500;
    grid.time = 24;
    grid.var = 7;
    grid.units = "gp m";
    grid.datim = "1200Z 15 JAN 26";
    grid.info = "24 hour 500 mb Height (gp m)";
    grid.domain.proj = PROJ_LATLON;
    grid.domain.clat = 40.0F;
    grid.domain.clon = -100.5F;
    grid.domain.plon = -100.5F;
    grid.domain.dx = 2.5F;
    grid.domain.dy = 1.25F;
    grid.domain.nx = nx;
    grid.domain.ny = ny;
    GRD_alloc(&grid);
    for (int i = 0; i < nx * ny; i++) grid.grid[static_cast<std::size_t>(i)] = std::sin(static_cast<float>(i)) / 3.0F;
    grid.grid[1] = FMISS;
    return grid;
}

void write_records(const std::string& name, int type, int access, std::vector<GRD_report*> grids) {
    const int fd = GRD_open(name, access, &type);
    ASSERT_GE(fd, 0);
    GRD_info info;
    ASSERT_EQ(GRD_putinfo(fd, &info), 0);
    int number = 0;
    for (GRD_report* grid : grids) ASSERT_EQ(GRD_write(fd, grid, 0, &number), 0);
    ASSERT_EQ(GRD_close(fd), 0);
}

/// Opens for reading and reads the description.
int open_read(const std::string& name, GRD_info* info = nullptr) {
    int type = 0;
    const int fd = GRD_open(name, 0, &type);
    GRD_info own;
    if (fd >= 0) GRD_getinfo(fd, info == nullptr ? &own : info);
    return fd;
}

class NativeFormat : public TempDirTest, public testing::WithParamInterface<int> {};

TEST_P(NativeFormat, ComesBackToTheLastBit) {
    GRD_report grid = sample(7, 5);
    const std::string name = dir.file("a.grd");
    write_records(name, GetParam(), 1, {&grid});
    EXPECT_EQ(grid.units, "gp_m");
    GRD_info info;
    const int fd = open_read(name, &info);
    ASSERT_GE(fd, 0);
    EXPECT_EQ(info.date.year, 2026);
    EXPECT_EQ(info.date.hour, 12);
    GRD_report back;
    int number = 0;
    ASSERT_EQ(GRD_read(fd, &back, 0, &number), 0);
    test::expect_fields(back,
                        "datim=1200Z_15_JAN_26;info=24_hour_500_mb_Height_(gp_m);units=gp_m;source=7;version=2;"
                        "model=96;type=211;ltype=100;level=500;time=24;var=7");
    EXPECT_EQ(DOM_comp(&back.domain, &grid.domain), 1);
    ASSERT_TRUE(GRD_has_values(&back));
    for (std::size_t i = 0; i < 35; i++) EXPECT_EQ(back.grid[i], grid.grid[i]) << i;
    number = 1;
    EXPECT_EQ(GRD_read(fd, &back, 1, &number), -1);
    GRD_close(fd);
}

TEST_P(NativeFormat, StepsThroughAppendedRecords) {
    GRD_report grid = sample(7, 5);
    const std::string name = dir.file("a.grd");
    for (int i = 0; i < 4; i++) {
        grid.level = 500 + i;
        grid.grid[0] = static_cast<float>(i);
        write_records(name, GetParam(), i == 0 ? 1 : 2, {&grid});
    }
    const int fd = open_read(name);
    GRD_report back;
    int number = 0;
    int count = 0;
    for (; GRD_read(fd, &back, 1, &number) == 0; number++) {
        EXPECT_EQ(number, count);
        EXPECT_EQ(back.level, 500 + count);
        EXPECT_EQ(back.grid, nullptr);
        ASSERT_EQ(GRD_read(fd, &back, 0, &number), 0);
        EXPECT_EQ(back.grid[0], static_cast<float>(count));
        count++;
    }
    EXPECT_EQ(count, 4);
    number = 1;  // behind the file's place: from the start again
    ASSERT_EQ(GRD_read(fd, &back, 1, &number), 0);
    EXPECT_EQ(number, 0);
    EXPECT_EQ(back.level, 500);
    number = 3;  // further than the next: the next one comes
    ASSERT_EQ(GRD_read(fd, &back, 1, &number), 0);
    EXPECT_EQ(number, 0);
    EXPECT_EQ(back.level, 501);
    GRD_rewind(fd);
    number = 0;
    ASSERT_EQ(GRD_read(fd, &back, 0, &number), 0);
    EXPECT_EQ(back.level, 500);
    GRD_close(fd);
}

INSTANTIATE_TEST_SUITE_P(Kinds, NativeFormat, testing::Values(2, 3),
                         [](const auto& given) { return given.param == 2 ? "text" : "binary"; });

class Native : public TempDirTest {
  protected:
    /// Reads the first record of a text.
    int read_text(const std::string& text, GRD_report* grid, int rep_type = 0) {
        const int fd = open_read(dir.write("t.grd", text));
        if (fd < 0) return -2;
        int number = 0;
        const int result = GRD_read(fd, grid, rep_type, &number);
        GRD_close(fd);
        return result;
    }
};

/// Texts of files with their types and what their first records hold, and the domain lines of those written again.
TEST_F(Native, TextsAreReadAndWritten) {
    dir.write("v.txt", "xx1 2 3 4 5 6");
    for (const test::Row& row : test::data_table("native_records.tsv")) {
        const std::string text = test::unescaped(row.at("text"));
        SCOPED_TRACE(row.at("text"));
        EXPECT_EQ(GRD_chktype(dir.write("r", text)), std::stoi(row.at("type")));
        if (!row.contains("result")) continue;
        GRD_report grid;
        ASSERT_EQ(read_text(text, &grid), std::stoi(row.at("result")));
        if (grid.source == 0) continue;
        test::expect_fields(grid, row.at("expected"));
        write_records(dir.file("p.grd"), 2, 1, {&grid});
        const std::string written = test::read_file(dir.file("p.grd"));
        EXPECT_NE(written.find("\n" + row.at("written")), std::string::npos) << written;
        GRD_report back;
        ASSERT_EQ(read_text(written, &back), 0);
        EXPECT_EQ(back.domain.param, grid.domain.param);
        EXPECT_EQ(DOM_comp(&back.domain, &grid.domain), 1);
    }
    const std::string endless =
        "ZAVGRID\n1200Z 15 JAN 26\n3-Height\n7 1 1 1 100 500 0 7\nLL 40 100 1 1 2000000000 2000000000\n1234";
    GRD_report grid;
    EXPECT_EQ(read_text(endless, &grid, GRD_READ_HEADER), 0);
    const test::Output out = test::capture([&] {
        read_text(
            "ZAVGRID\n1200Z 15 JAN 26\n4-H\n7 1 1 1 100 500 0 7\nLL 40 100 1 1 3 2\nASCII |touch${IFS}made 0 1 1\n",
            &grid);
    });
    EXPECT_EQ(test::read_file(dir.file("made")), "");
    EXPECT_NE((out.out + out.err).find("GRD_read: Unable to open grid file: |touch"), std::string::npos);
}

TEST_F(Native, ReferencesReachBeyondTwoGigabytes) {
    const std::string values = dir.write("big.txt", "");
    std::filesystem::resize_file(values, 3000000000U);  // a hole: no space on disk
    std::ofstream(values, std::ios::app) << "7 8\n";
    GRD_report grid;
    ASSERT_EQ(read_text("ZAVGRID\n1200Z 15 JAN 26\n4-Height\n7 1 1 1 100 500 0 7: m\nLL 40 100 1 1 2 1\nA " + values +
                            " 3000000000 1 1\n",
                        &grid),
              0);
    EXPECT_EQ(grid.units, "m");
    EXPECT_EQ(grid.grid[0], 7.0F);
    EXPECT_EQ(grid.grid[1], 8.0F);
}

TEST_F(Native, BinaryValuesMayLookLikeWhiteSpace) {
    GRD_report grid = sample(2, 1);
    grid.grid[0] = std::ldexp(1.0F, -63);    // first byte 0x20
    grid.grid[1] = std::ldexp(1.25F, -107);  // first byte 0x0A
    const std::string name = dir.file("w.grd");
    write_records(name, 3, 1, {&grid});
    GRD_report back;
    ASSERT_EQ(read_text(test::read_file(name), &back), 0);
    EXPECT_EQ(back.grid[0], grid.grid[0]);
    EXPECT_EQ(back.grid[1], grid.grid[1]);
}

TEST_F(Native, FormatsAreTakenOnlyIfSafe) {
    GRD_report grid = sample(2, 1);
    grid.grid[0] = 1.234567F;
    const auto written = [&](const char* format) {
        GRD_set_format(format);
        write_records(dir.file("f.grd"), 2, 1, {&grid});
        GRD_set_format("");
        return test::read_file(dir.file("f.grd"));
    };
    EXPECT_NE(written("%.2f").find("\n1.23\n"), std::string::npos);
    EXPECT_NE(written("%s%n").find("\n1.23456705e+00\n"), std::string::npos);
}

TEST_F(Native, HandlesEndWithFifteen) {
    const std::string name = dir.write("t.grd", "ZAVGRID\n1200Z 15 JAN 26\n");
    std::vector<int> handles;
    for (int i = 0; i < 16; i++) {
        int type = 0;
        handles.push_back(GRD_open(name, 0, &type));
    }
    EXPECT_EQ(handles[14], 14);
    EXPECT_EQ(handles[15], -1);
    for (int i = 0; i < 15; i++) EXPECT_EQ(GRD_close(i), 0);
    EXPECT_EQ(GRD_close(3), 0);
    EXPECT_EQ(GRD_close(15), -1);
    int number = 0;
    GRD_report grid;
    EXPECT_EQ(GRD_read(3, &grid, 0, &number), -1);
}

/// Text GRID messages by chance, each with the record that it has to give.
TEST_F(Native, TextMessagesGiveTheirRecords) {
    std::mt19937 random(3);
    const auto below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    const float scales[] = {1, 0.1F, 0.01F, 0.001F, 0.0001F, 10, 100, 1000, 10000, 100000};
    const float lats[] = {55, 0, -55};
    const float lons[] = {-45, -135, 135, 45};
    std::string text;
    std::vector<std::string> fields;
    std::vector<std::vector<float>> values;
    for (int n = 0, wind = 0; n < 60; n++) {
        const int sector = 1 + n % 12;
        const int level = below(3) == 0 ? 0 : 10 + below(90);
        const int group = 2 + below(2);
        const int year = below(3) == 0 ? 49 + below(2) : below(100);
        const int var = below(3) == 0 ? 22 : below(3) == 0 ? 4 : 10 + below(10);
        const int hours = below(200);
        const int mode = var == 22 ? 0 : below(2) * (1 + 2 * below(2));
        const int digits = var == 22 ? 5 : 3 + below(3);
        const int scale = below(10);
        const int offset = 100 + below(900);
        wind = var != 22 ? 0 : wind == 1 ? 2 : 1;
        text += text_format("GRID 07%03d AAA BBB 1%02d %d%02d00 6%02d03 71506 80%03d 00000 X 1000%d 2%d111 3%d%d",
                            sector, var, group, level, year, hours, mode, digits + (mode == 1 ? 1 : 0), scale, offset);
        values.emplace_back(15 * 19);
        for (int j = 0; j < 15; j++) {
            const bool uniform = below(4) == 0;
            text += uniform ? "\n9 SKIP" : "\n5 SKIP";
            for (int i = 0, value = 0, sign = 0; i < 19; i++) {
                if (i == 0 || !uniform) {
                    value = var == 22 ? 100 * below(361) + below(100) : below(static_cast<int>(std::pow(10, digits)));
                    sign = below(2);
                    text += " " + (mode == 1 ? std::to_string(sign) : "") + text_format("%0*d", digits, value);
                }
                const float number = static_cast<float>(mode == 3 || (mode == 1 && sign == 1) ? -value : value);
                const double angle = value / 100 * 0.017453292519943334;
                const double part = (wind == 1 ? std::sin(angle) : std::cos(angle)) * -(value % 100);
                const float start = static_cast<float>(var == 4 ? -offset : offset);
                const int row = sector <= 4 ? 14 - j : j;
                values.back()[static_cast<std::size_t>(row * 19 + i)] =
                    wind != 0 ? static_cast<float>(part) : start * scales[scale] + number * scales[scale];
            }
        }
        text += "\n";
        fields.push_back(text_format(
            "source=7;model=7;version=1;type=%d;var=%d;ltype=%d;level=%d;time=%d;date=%d-3-15 6:0;proj=2;nx=19;ny=15;"
            "dx=5;dy=5;clat=%g;clon=%g;units=%s",
            sector + 70, var + wind,
            group == 2   ? 10
            : level == 0 ? 12
                         : 13,
            level * 10, hours, year < 50 ? 2000 + year : 1900 + year, static_cast<double>(lats[(sector - 1) / 4]),
            static_cast<double>(lons[(sector - 1) % 4]), ""));
    }
    const int fd = open_read(dir.write("m.txt", text));
    ASSERT_GE(fd, 0);
    int number = 0;
    for (std::size_t n = 0; n < fields.size(); n++, number++) {
        SCOPED_TRACE(n);
        GRD_report grid;
        grid.units = "of another record";
        ASSERT_EQ(GRD_read(fd, &grid, GRD_READ_HEADER, &number), 0);
        test::expect_fields(grid, fields[n]);
        ASSERT_EQ(GRD_read(fd, &grid, GRD_READ_ALL, &number), 0);
        EXPECT_EQ(number, static_cast<int>(n));
        for (std::size_t i = 0; i < values[n].size(); i++) ASSERT_FLOAT_EQ(grid.grid[i], values[n][i]) << i;
    }
    GRD_report beyond;
    EXPECT_EQ(GRD_read(fd, &beyond, GRD_READ_HEADER, &number), -1);
    GRD_close(fd);
}

}  // namespace
}  // namespace zav
