// netCDF files from the outside: grids written and drawn again, model data sets, files in pipes, a full disk.

#include <filesystem>

#include "e2e/program.h"
#include "frame/status.h"
#include "grid/netcdf/cdf_files.h"

namespace zav::test {
namespace {

const std::string SAMPLE = source_dir() + "/samples/26011512_wave.grb2";
const std::string CHART = "-me warn -de p,x.ps -ft h24 -le 500 ";

class NetcdfRun : public TempDirTest {
  protected:
    Outcome run(const std::string& options, const std::string& input = "", const std::string& before = "true") {
        return run_program(dir.path(), options, input, before);
    }
};

TEST_F(NetcdfRun, AWrittenGridDrawsTheSamePage) {
    struct Case {
        std::string file;
        std::string field;
    };
    for (const auto& [file, field] :
         {Case{SAMPLE, "-va temp:C:ln:in=4 "},
          Case{data_file("eta_lambert_f24_cut.grib2"), "-le 850 -va temp:C:ln:in=4 "},
          Case{data_file("ngm_polar_f48.grib2"), "-le sfc -ft h48 -va pres:mb:ln:in=10 "}}) {
        SCOPED_TRACE(file);
        const Outcome written = run(CHART + field + "-pf over -of cdf:@a.cdf " + file);
        ASSERT_EQ(written.status, 0) << written.err;
        const std::string page = page_without_date(dir.file("x.ps"));
        const Outcome read = run(CHART + field + "a.cdf");
        ASSERT_EQ(read.status, 0) << read.err;
        EXPECT_EQ(read.err, "");
        EXPECT_GT(segments_of(read_page(dir.file("x.ps"))).size(), 500U);
        EXPECT_TRUE(page_without_date(dir.file("x.ps")) == page);
    }
}

/// The lowest and highest value of the field stand on the page.
TEST_F(NetcdfRun, AModelDataSetIsFoundByItsFields) {
    make_netcdf(dir, cdl_text("model"));
    const std::string all = read_file(dir.file("made.nc"));
    for (const char* file : {"made.nc", "-", "'|cat made.nc'"}) {
        SCOPED_TRACE(file);
        const Outcome drawn = run(CHART + "-va temp:K:ln:in=2 " + file, file[0] == '-' ? all : "");
        EXPECT_EQ(drawn.status, 0) << drawn.err;
        const std::string page = read_file(dir.file("x.ps"));
        EXPECT_NE(page.find("500 mb Temperature (K)"), std::string::npos);
        EXPECT_NE(page.find("24 hour"), std::string::npos);
        EXPECT_NE(page.find("12Z SAT 16 MAR 96"), std::string::npos);
        EXPECT_NE(page.find("LO: 3400.0  HI: 3412.0"), std::string::npos);
    }
    const Outcome missing = run(CHART + "-va rhum:%:ln:in=2 made.nc");
    EXPECT_EQ(missing.status, STATUS_LAYER);
    EXPECT_NE(missing.err.find("grid not found in file"), std::string::npos);
}

TEST_F(NetcdfRun, WhatCanNotBeWrittenIsTold) {
    const Outcome full =
        run(CHART + "-va temp:C:ln:in=4 -pf over -of cdf:@a.cdf " + SAMPLE, "", "trap '' XFSZ; ulimit -f 4");
    EXPECT_EQ(full.status, STATUS_OUTPUT);
    EXPECT_NE(full.err.find("GRD_save_file: Unable to create grid file: a.cdf"), std::string::npos) << full.err;
    const Outcome device = run(CHART + "-va temp:C:ln:in=4 -pf over -of cdf:@/dev/full " + SAMPLE);
    EXPECT_EQ(device.status, STATUS_OUTPUT);
    const std::string file = data_file("eta_lambert_f24_cut.grib2");
    const Outcome range = run("-me warn -pl none -ft h24 -le sfc -va apcp -pf over -of cdf:@b.cdf " + file);
    EXPECT_EQ(range.status, STATUS_OUTPUT);
    EXPECT_NE(range.err.find("no room for time 4012024"), std::string::npos) << range.err;
    EXPECT_FALSE(std::filesystem::exists(dir.file("b.cdf")));
}

/// A file that lost its end: what is left is drawn, what isn't there is told.
TEST_F(NetcdfRun, ACutFileGivesWhatItHolds) {
    make_netcdf(dir, cdl_text("model"));
    const std::string all = read_file(dir.file("made.nc"));
    dir.write("cut.nc", all.substr(0, all.size() - 240));  // the fields behind T lie there, and part of it
    const Outcome left = run(CHART + "-va temp:K:ln:in=2 -le 850 -ft h0 cut.nc");
    EXPECT_EQ(left.status, STATUS_LAYER);
    EXPECT_NE(left.err.find("netCDF grid file is cut short, or its grids are too large: 12 of 22 can be read"),
              std::string::npos)
        << left.err;
    EXPECT_NE(read_file(dir.file("x.ps")).find("850 mb Temperature (K)"), std::string::npos);
    dir.write("header.nc", all.substr(0, 300));
    EXPECT_EQ(run(CHART + "-va temp:K:ln:in=2 header.nc").status, STATUS_NO_GRID);
}

}  // namespace
}  // namespace zav::test
