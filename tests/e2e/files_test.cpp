// Every kind of file that weather centres publish, drawn on its own domain; grids written and read back.

#include <gtest/gtest.h>

#include <filesystem>

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
    if (source.empty()) GTEST_SKIP() << NO_DATA_FILE;
    const TempDir dir;
    const Outcome run =
        run_program(dir.path(), std::string("-me warn -pl ln -in 0 -de p,x.ps ") + GetParam().options + " " + source);
    EXPECT_EQ(run.status, 0) << run.err;
    const Page page = read_page(dir.file("x.ps"));
    EXPECT_EQ(page.pages, 1);
    EXPECT_GE(segments_of(page).size(), GetParam().least);
    EXPECT_TRUE(renders(dir.file("x.ps")));
}

INSTANTIATE_TEST_SUITE_P(
    Centres, RealFile,
    ::testing::Values(FileCase{"gfs_2p5deg_f120_cut.grib2", "-ft h120 -le 250 -va uwnd", 2000},
                      FileCase{"gfs_2p5deg_f120_cut.grib2", "-ft h120 -le 250 -va vwnd", 2000},
                      FileCase{"gfs_2p5deg_f120_cut.grib2", "-ft h120 -le 0-3000m_ag -va hlcy", 500},
                      FileCase{"eta_lambert_f24_cut.grib2", "-ft h24 -le 500 -va hght", 500},
                      FileCase{"ngm_polar_f48.grib2", "-ft h48-12acc -le sfc -va apcp", 100},
                      FileCase{"ndfd_maxt_lambert_cut.grib2", "-ft h14-12max -le sfc -va tmax", 5000},
                      FileCase{"ndfd_temp_mercator.grib2", "-ft h38 -le sfc -va tmax", 500},
                      FileCase{"cmc_tmp1_jpeg2000.grib2", "-ft init -le 1 -va temp", 20000},
                      FileCase{"bulletin_40bytes.grib2", "-ft h15 -le miss -va icaht", 20},
                      FileCase{"lambert_1199x799.grib1", "-ft h36 -le 2m_ag -va temp:C", 5000},
                      FileCase{"cmc_wind300_polar.grib1", "-ft h12 -le 300 -va wspd:kt", 500},
                      FileCase{"era5_levels_members.grib1", "-ft init -le 500 -va geopt", 500},
                      FileCase{"bulletin_41bytes.grib1", "-if grib -ft h72 -le miss -va pmsl:mb", 200},
                      FileCase{"reduced_latlon.grib1", "-ft h24 -le 850 -va temp", 500},
                      FileCase{"scanning_mode_64.grib1", "-ft init -le sfc -va skt", 500},
                      FileCase{"missing_values.grib1", "-ft init -le 2m_ag -va temp", 300}),
    [](const auto& given) {
        const std::string options = given.param.options;
        return case_name(std::filesystem::path(given.param.name).stem().string() + options.substr(options.rfind(' ')));
    });

struct HintCase {
    const char* name;
    const char* file;
    const char* options;
    int status;
    const char* told;
};

void PrintTo(const HintCase& c, std::ostream* out) { *out << c.name; }

class Hints : public ::testing::TestWithParam<HintCase> {};

TEST_P(Hints, TellWhatTheFileHas) {
    const HintCase& c = GetParam();
    const std::string source = data_file(c.file);
    if (source.empty()) GTEST_SKIP() << NO_DATA_FILE;
    const TempDir dir;
    const std::string chart = std::string("-me warn -pl ln -in 0 -de p,x.ps ") + c.options + " ";
    const Outcome run = run_program(dir.path(), chart + source);
    EXPECT_EQ(run.status, c.status) << run.err;
    EXPECT_NE(run.err.find(c.told), std::string::npos) << run.err;
    EXPECT_EQ(read_page(dir.file("x.ps")).pages, c.status == 0 ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(
    Real, Hints,
    ::testing::Values(
        HintCase{"time", "gfs_2p5deg_f120_cut.grib2", "-ft h24 -le 500 -va hght", 20,
                 "The nearest in the file has another time: -ft h120 -le 500mb -va hght\n"},
        HintCase{"level", "gfs_2p5deg_f120_cut.grib2", "-ft h120 -le 490 -va temp", 20,
                 "The nearest in the file has another level: -ft h120 -le 500mb -va temp\n"},
        HintCase{"level_type", "lambert_1199x799.grib1", "-ft h36 -le 500 -va temp", 20,
                 "The nearest in the file has another level: -ft h36 -le 2m_ag -va temp\n"},
        HintCase{"grid_number", "ngm_polar_f48.grib2", "-gt 7 -ft h48-12acc -le sfc -va apcp", 20,
                 "grid number: -ft h48"},
        HintCase{"variable", "ndfd_maxt_lambert_cut.grib2", "-ft h14 -le sfc -va tmin", 20, "The file has: -va tmax\n"},
        HintCase{
            "runs_and_members", "era5_levels_members.grib1", "-ft init -le 850 -va temp", 0,
            "40 records fit -ft init -le 850mb -va temp; number 30 (0000Z  1 JAN 17) is taken. To choose, -gn NUMBER: "
            "31, 32, 33, 34, 35, 70 (1200Z  1 JAN 17), 110 (0000Z  2 JAN 17), 150 (1200Z  2 JAN 17)\n"},
        HintCase{"a_later_run", "era5_levels_members.grib1", "-gn 110 -ft init -le 850 -va temp", 0,
                 "20 records fit -ft init -le 850mb -va temp; number 110 (0000Z  2 JAN 17) is taken"},
        HintCase{"the_last_record", "era5_levels_members.grib1", "-gn 159 -ft init -le 850 -va temp", 0, ""}),
    [](const auto& given) { return std::string(given.param.name); });

TEST(SampleFile, ANamedFileIsDrawnWhateverItsNameAndModel) {
    const TempDir dir;
    const std::string chart = "-me warn -ft h24 -le 500 -va hght -pl ln -in 60 ";
    const std::string data = read_file(source_dir() + "/samples/26011512_wave.grb2");
    for (const char* name : {"other.grb", "latest.grb", "latest", "cutoff.grb", "la", "sub/lambert.grb"})
        dir.write(name, data);
    ASSERT_EQ(run_program(dir.path(), chart + "-de p,other.ps other.grb").status, 0);
    for (const char* options : {"latest.grb", "latest", "cutoff.grb", "./la", "sub/lambert.grb", "-mo gfs other.grb",
                                "-mo gfs latest.grb", "-mo gfs @other.grb", "-gp sub lambert.grb"}) {
        const Outcome run = run_program(dir.path(), chart + "-de p,x.ps " + options);
        EXPECT_EQ(run.status, 0) << options << run.err;
        EXPECT_TRUE(page_without_date(dir.file("x.ps")) == page_without_date(dir.file("other.ps"))) << options;
        std::filesystem::remove(dir.file("x.ps"));
    }
    const Outcome rule = run_program(dir.path(), chart + "-de p,x.ps la");
    EXPECT_EQ(rule.status, 10) << "the rule, though a file has its name";
}

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
