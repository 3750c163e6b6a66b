// Calls that can't be calculated, and what is kept between calls.

#include <gtest/gtest.h>

#include <array>
#include <string>

#include "calc/catalogue_run.h"
#include "calc/grd_calc.h"
#include "files/date.h"
#include "grid/grd_tool.h"
#include "support/table.h"
#include "var/var_tool.h"

namespace zav::truth {
namespace {

class Catalogue_edges : public Catalogue {};

TEST_F(Catalogue_edges, CallsThatCannotBeCalculatedSaySo) {
    for (const test::Case& row : test::cases("grid_function_faults")) {
        const test::Output said = run_string("h120:500:" + row.text(0), sample_file());
        EXPECT_EQ(GRD_get_grid(0)->grid, nullptr) << row.line();
        EXPECT_NE((said.out + said.err).find(row.text(1)), std::string::npos) << row.line() << said.out << said.err;
    }
}

TEST_F(Catalogue_edges, TheProgramEndsWithAStatus) {
    for (const test::Case& row : test::cases("grid_function_faults")) {
        int status = 0;
        const std::string said = test::run_command("'" + test::program_path() + "' -fp '" + test::source_dir() +
                                                       "/share/zav' -me warn -ba -ft h120 -le 500 -va '" + row.text(0) +
                                                       "' -de p,x.ps '" + sample_file() + "' 2>&1",
                                                   &status);
        EXPECT_EQ(status, row.number(2)) << row.line() << said;
        EXPECT_FALSE(std::filesystem::exists("x.ps")) << row.line();
    }
}

TEST_F(Catalogue_edges, AGridThatHasDataIsKept) {
    run_string("h120:500:add(dx(temp),mul(grad(temp),#2))", sample_file());
    run_string("h120:500:wspd(ugeos(hght),vgeos(hght)),h120:500:grad(temp)", sample_file());
    for (const int j : {0, 1, 3, 5, 6}) {
        ASSERT_TRUE(GRD_has_values(GRD_get_grid(j))) << j;
        GRD_get_grid(j)->grid[0] = 12345.0F;
    }
    const test::Output said = test::capture([] { EXPECT_EQ(GRD_calc_var(), 1); });
    EXPECT_EQ(said.out + said.err, "");
    for (const int j : {0, 1, 3, 5, 6}) EXPECT_EQ(GRD_get_grid(j)->grid[0], 12345.0F) << j;
}

// Records of native files have no date, and a chart of 1980 would be the result.
TEST_F(Catalogue_edges, WithoutADateTheLabelIsThatOfAnArgument) {
    run_string("h120:500:add(temp,mul(hght,#2))", sample_file());
    const auto again = [](int first_time) {
        for (const int j : {0, 2}) GRD_free(GRD_get_grid(j));
        for (const int j : {1, 3}) {
            DATE_init(&GRD_get_grid(j)->date);
            GRD_get_grid(j)->datim = "label of " + std::to_string(j);
        }
        GRD_get_grid(1)->time = first_time;
        test::capture([] { EXPECT_EQ(GRD_calc_var(), 1); });
        return GRD_get_grid(0)->datim;
    };
    EXPECT_EQ(again(120), "label of 1");
    EXPECT_EQ(GRD_get_grid(2)->datim, "label of 3");
    EXPECT_EQ(again(24), "label of 3");  // by way of the inner function
}

TEST_F(Catalogue_edges, AnOuterFunctionOfAFailedOneFails) {
    const test::Output said = run_string("h120:500:add(mul(nosuch(temp),#2),temp),h120:500:copy(temp)", sample_file());
    EXPECT_NE((said.out + said.err).find("GRD_math: Math function not available: nosuch\n"), std::string::npos);
    for (const int j : {0, 1, 2}) EXPECT_FALSE(GRD_has_values(GRD_get_grid(j))) << j;
    EXPECT_TRUE(GRD_has_values(GRD_get_grid(6)));  // what has nothing to do with it is there
}

TEST_F(Catalogue_edges, GridsOfDifferentSizesAreInvalid) {
    GRD_report result, small, large;
    for (GRD_report* grid : {&result, &small, &large}) GRD_init(grid);
    small.domain.nx = small.domain.ny = 3;
    large.domain.nx = large.domain.ny = 4;
    ASSERT_TRUE(GRD_alloc(&small) == 1 && GRD_alloc(&large) == 1);
    for (const char* name : {"add", "max", "wspd", "thetae", "rvort", "avort", "uq", "conv", "rhum", "uwnd", "ewdir"}) {
        for (const bool turned : {false, true}) {
            GRD_free(&result);
            std::array<GRD_report*, GRD_MATH_MAX> grids{&result, turned ? &large : &small, turned ? &small : &large};
            std::array<float, GRD_MATH_MAX> values;
            values.fill(FMISS);
            const test::Output said =
                test::capture([&] { EXPECT_EQ(GRD_math(name, grids.data(), values.data()), 0) << name; });
            EXPECT_NE((said.out + said.err).find("GRD_math: Invalid grids\n"), std::string::npos) << name;
        }
    }
}

}  // namespace
}  // namespace zav::truth
