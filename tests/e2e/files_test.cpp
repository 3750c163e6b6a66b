// Every kind of file that weather centres publish, drawn on its own domain; grids written and read back.

#include <gtest/gtest.h>

#include <algorithm>

#include "e2e/program.h"
#include "support/support.h"

namespace zav::test {
namespace {

struct FileCase {
    const char* name;
    const char* options;
    std::size_t least;  ///< lines that the page has at the least
};

class RealFile : public ::testing::TestWithParam<FileCase> {};

TEST_P(RealFile, IsDrawnOnItsOwnDomain) {
    const std::string source = data_file(GetParam().name);
    if (source.empty()) GTEST_SKIP() << "ZAV_TEST_DATA isn't set";
    const TempDir dir;
    const Outcome run =
        run_program(dir.path(), std::string("-me warn -pl ln -in 0 -de p,x.ps ") + GetParam().options + " " + source);
    EXPECT_EQ(run.status, 0) << run.err;
    const Page page = read_page(dir.file("x.ps"));
    EXPECT_EQ(page.pages, 1);
    EXPECT_GE(segments_of(page).size(), GetParam().least);
    EXPECT_TRUE(renders(dir.file("x.ps")));
}

INSTANTIATE_TEST_SUITE_P(Centres, RealFile,
                         ::testing::Values(FileCase{"gfs_2p5deg_f120.grib2", "-ft h120 -le 250 -va uwnd", 2000},
                                           FileCase{"gfs_2p5deg_f120.grib2", "-ft h120 -le 250 -va vwnd", 2000},
                                           FileCase{"gfs_2p5deg_f120.grib2", "-ft h120 -le 0-3000m_ag -va hlcy", 500},
                                           FileCase{"eta_lambert_f24.grib2", "-ft h24 -le 500 -va hght", 500},
                                           FileCase{"ngm_polar_f48.grib2", "-ft h48-12acc -le sfc -va apcp", 100},
                                           FileCase{"ndfd_maxt_lambert.grib2", "-ft h14-12max -le sfc -va tmax", 5000},
                                           FileCase{"ndfd_temp_mercator.grib2", "-ft h38 -le sfc -va tmax", 500},
                                           FileCase{"cmc_tmp1_jpeg2000.grib2", "-ft init -le 1 -va temp", 20000},
                                           FileCase{"bulletin_40bytes.grib2", "-ft h15 -le miss -va icaht", 20},
                                           FileCase{"lambert_1199x799.grib1", "-ft h36 -le 2m_ag -va temp:C", 5000},
                                           FileCase{"cmc_wind300_polar.grib1", "-ft h12 -le 300 -va wspd:kt", 500},
                                           FileCase{"era5_levels_members.grib1", "-ft init -le 500 -va geopt", 500},
                                           FileCase{"bulletin_41bytes.grib1", "-if grib -ft h72 -le miss -va pmsl:mb",
                                                    200},
                                           FileCase{"reduced_latlon.grib1", "-ft h24 -le 850 -va temp", 500},
                                           FileCase{"scanning_mode_64.grib1", "-ft init -le sfc -va skt", 500},
                                           FileCase{"missing_values.grib1", "-ft init -le 2m_ag -va temp", 300}),
                         [](const auto& given) {
                             std::string name = std::string(given.param.name) + std::to_string(given.index);
                             std::replace_if(
                                 name.begin(), name.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
                             return name;
                         });

TEST(SampleFile, EditionsAgreeAndGridsAreWrittenAndReadBack) {
    const std::string source = test::source_dir() + "/samples/26011512_wave.grb2";
    const std::string chart = "-me warn -ft h24 -le 500 -va hght -pl ln -in 60 ";
    for (const std::string kind : {"zav", "zavb"}) {
        const TempDir dir;
        const Outcome first = run_program(dir.path(), chart + "-of " + kind + ",out.grd -de p,first.ps " + source);
        ASSERT_EQ(first.status, 0) << first.err;
        ASSERT_TRUE(std::filesystem::exists(dir.file("out.grd"))) << kind;
        const Outcome second = run_program(dir.path(), chart + "-de p,second.ps out.grd");
        ASSERT_EQ(second.status, 0) << second.err;
        EXPECT_EQ(read_page(dir.file("second.ps")).lines.size(), read_page(dir.file("first.ps")).lines.size()) << kind;
        EXPECT_EQ(page_without_date(dir.file("second.ps")), page_without_date(dir.file("first.ps"))) << kind;

        // What stands there is kept without a yes.
        const std::string before = read_file(dir.file("out.grd"));
        run_program(dir.path(), chart + "-le 850 -of " + kind + ",out.grd -de p,third.ps " + source, "n\n");
        EXPECT_EQ(read_file(dir.file("out.grd")), before);
        run_program(dir.path(), chart + "-le 850 -of " + kind + ",out.grd -de p,third.ps " + source, "y\n");
        EXPECT_NE(read_file(dir.file("out.grd")), before);
    }
}

}  // namespace
}  // namespace zav::test
