// Grid functions of moist air: forms of their calls, levels, humidity, units and missing points.

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "calc/grd_calc.h"
#include "frame/resrc.h"
#include "grid/grd_tool.h"
#include "support/support.h"
#include "support/table.h"
#include "var/var_tool.h"

namespace zav {
namespace {

constexpr int POINTS = 1100;  // more than are worked on at once
constexpr int HOLE = 700;     // the point that is missing when one is

/// A grid of a text "variable value units" with the value everywhere, or one without values.
GRD_report make_grid(const std::string& text) {
    GRD_report grid;
    GRD_init(&grid);
    std::istringstream words(text);
    std::string name;
    float value = 0.0F;
    if (!(words >> name >> value >> grid.units)) return grid;
    grid.source = 7;
    grid.var = VAR_search_var_num(name);
    EXPECT_NE(grid.var, 0) << text;
    grid.domain.nx = POINTS;
    grid.domain.ny = 1;
    EXPECT_EQ(GRD_alloc(&grid), 1);
    std::fill_n(&grid.grid[0], POINTS, value);
    return grid;
}

/// One call. `hole`: the argument whose point HOLE is missing, from 1 on; 0 for none.
struct Call {
    Call(const test::Case& c, std::size_t hole) {
        std::array<GRD_report, 4> arguments;
        std::array<GRD_report*, GRD_MATH_MAX> grids{&result};
        std::array<float, GRD_MATH_MAX> values;
        values.fill(FMISS);
        GRD_init(&result);
        result.ltype = c.number(1);
        result.level = c.number(2);
        for (std::size_t i = 1; i <= 4 && !c.text(i + 2).empty(); i++) {
            const std::string text = c.text(i + 2);
            if (text[0] == '#') {
                values[i] = std::stof(text.substr(1));
                continue;
            }
            arguments[i - 1] = make_grid(text);
            grids[i] = &arguments[i - 1];
            if (i == hole && grids[i]->grid != nullptr) grids[i]->grid[HOLE] = FMISS;
        }
        done = GRD_math(c.text(0), grids.data(), values.data());
    }

    GRD_report result;
    int done;
};

class MoistAir : public ::testing::Test {
  protected:
    void SetUp() override { RES_put("file_path", test::source_dir() + "/share/zav"); }
};

TEST_F(MoistAir, FunctionsTakeTheirFormsLevelsAndUnits) {
    for (const test::Case& c : test::cases("physics/grid_functions")) {
        SCOPED_TRACE(c.line());
        if (c.text(7) == "refused") {
            int done = 1;
            const test::Output told = test::capture([&] { done = Call(c, 0).done; });
            EXPECT_EQ(done, 0);
            EXPECT_TRUE((told.out + told.err).starts_with("GRD_math: ")) << told.out << told.err;
            continue;
        }
        const Call whole(c, 0);
        ASSERT_EQ(whole.done, 1);
        EXPECT_EQ(whole.result.units, c.text(8));
        for (int i : {0, HOLE, POINTS - 1})
            EXPECT_NEAR(whole.result.grid[i], c.real(7), 2e-6 * std::fabs(c.real(7)) + 3e-5) << i;
        for (std::size_t hole = 1; hole <= 4; hole++) {
            const Call holed(c, hole);
            const bool needed = c.text(9).find(std::to_string(hole)) != std::string::npos;
            EXPECT_EQ(holed.result.grid[HOLE], needed ? FMISS : whole.result.grid[HOLE]) << hole;
            EXPECT_EQ(holed.result.grid[HOLE - 1], whole.result.grid[HOLE]) << hole;
        }
    }
}

TEST_F(MoistAir, ResultIsTheVariableThatTheNameGives) {
    const test::Cells call = {"thetae-temp", "100", "850", "temp 280 K", "rhum 50 %", "", "", ""};
    EXPECT_EQ(Call(test::Case(call), 0).result.var, VAR_search_var_num("temp"));
    const test::Cells plain = {"dewp", "100", "850", "temp 280 K", "rhum 50 %", "", "", ""};
    EXPECT_EQ(Call(test::Case(plain), 0).result.var, VAR_search_var_num("dewp"));
}

}  // namespace
}  // namespace zav
