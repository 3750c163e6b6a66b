// Charts of netCDF files that follow the CF conventions: the page of the same field in GRIB, and every field within
// reach.

#include <gtest/gtest.h>

#include <sstream>

#include "e2e/program.h"
#include "support/support.h"

namespace zav::test {
namespace {

class CfPage : public ::testing::Test {
  protected:
    /// A netCDF file in the test's folder, of tests/data/netcdf/NAME.cdl with `from` changed into `to`.
    void make(const std::string& name, const std::string& from = "", const std::string& to = "") {
        std::string text = read_file(source_dir() + "/tests/data/netcdf/" + name + ".cdl");
        text.replace(text.find(from), from.size(), to);
        int status = 0;
        run_command("ncgen -k nc4 -o " + dir.file("a.nc") + " " + dir.write("a.cdl", text), &status);
        ASSERT_EQ(status, 0);
    }
    Outcome draw(const std::string& options, const std::string& file = "a.nc") {
        std::filesystem::remove(dir.file("x.ps"));
        return run_program(dir.path().string(), "-me warn -de p,x.ps " + options + " " + file);
    }
    /// The page without its dates and the label that tells the run, whose strokes go up to the next remark.
    std::string page() {
        std::istringstream lines(page_without_date(dir.file("x.ps")));
        std::string kept;
        bool run = false;
        for (std::string line; std::getline(lines, line);) {
            if (line.rfind("%%", 0) == 0) run = line.find(" valid ") != std::string::npos;
            if (!run) kept += line + '\n';
        }
        return kept;
    }
    bool shows(const std::string& text) { return read_file(dir.file("x.ps")).find(text) != std::string::npos; }

    TempDir dir;
};

TEST_F(CfPage, TheFieldOfAGribFileGivesTheSamePage) {
    make("cf_polar");
    const std::string options = "-ft h48 -le sfc -va pres:mb:lcf:in=20";
    ASSERT_EQ(draw(options, source_dir() + "/tests/data/ngm_polar_f48.grib2").status, 0);
    const std::string wanted = page();
    ASSERT_EQ(draw(options).status, 0);
    EXPECT_TRUE(shows("48 hour  valid 12Z FRI 10 DEC 04"));
    EXPECT_GT(wanted.size(), 100000U);
    EXPECT_TRUE(page() == wanted);
}

TEST_F(CfPage, DatesAreChosenAndTold) {
    make("cf_analyses");
    const std::string options = "-pd ll,47.5,-6.25,5,4,2,2 -ft init -le 500 -va temp:C:ln:in=2 ";
    const Outcome first = draw(options);
    EXPECT_EQ(first.status, 0);
    EXPECT_NE(first.err.find("3 records fit"), std::string::npos) << first.err;
    EXPECT_NE(
        first.err.find("number 0 (0000Z  1 JAN 19) is taken. To choose, -ho DATE or -gn NUMBER: 4 (0600Z  1 JAN 19)"),
        std::string::npos)
        << first.err;
    for (const auto& [choice, label] : {std::pair{"-ho 6", "0600Z  1 JAN 19"},
                                        {"-ho '#20190102'", "0000Z  2 JAN 19"},
                                        {"-gn 4", "0600Z  1 JAN 19"},
                                        {"", "0000Z  1 JAN 19"}}) {
        EXPECT_EQ(draw(options + choice).status, 0) << choice;
        EXPECT_TRUE(shows(label)) << choice;
    }
    const Outcome other = draw(options + "-ho '#2019010206'");
    EXPECT_EQ(other.status, 20);
    EXPECT_NE(other.err.find("another date: -ft init -le 500mb -va temp -ho '#201901020000'"), std::string::npos)
        << other.err;
}

TEST_F(CfPage, VariablesWithoutANameInTheTableAreFoundByTheirOwn) {
    make("cf_analyses");
    const std::string options = "-pd ll,47.5,-6.25,5,4,2,2 -ft init -le sfc -ho 0 ";
    EXPECT_EQ(draw(options + "-va nosuch:ln:in=2").status, 0);
    EXPECT_TRUE(shows("Surface Quantity of its own (fraction)"));
    EXPECT_EQ(draw(options + "-va NoSuch:ln:in=2").status, 0);
    EXPECT_EQ(draw(options + "-va neither:ln:in=2").status, 23);
}

TEST_F(CfPage, WhatIsntDecodedGivesNoPageAndSaysWhy) {
    make("cf_analyses", "latitude = 50, 47.5, 45", "latitude = 50, 47.5, 40");
    const Outcome outcome = draw("-pd ll,47.5,-6.25,5,4,2,2 -ft init -le 500 -ho 0 -va temp:C:ln:in=2");
    EXPECT_EQ(outcome.status, 20);
    EXPECT_NE(outcome.err.find("t is not decoded, as its coordinates aren't evenly spaced"), std::string::npos)
        << outcome.err;
    EXPECT_FALSE(std::filesystem::exists(dir.file("x.ps")));
}

}  // namespace
}  // namespace zav::test
