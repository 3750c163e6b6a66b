// The frame in which grid functions run, and the names they are known by.

#include <gtest/gtest.h>

#include <array>
#include <vector>

#include "calc/grd_calc.h"
#include "grid/grd_tool.h"
#include "var/var_tool.h"

namespace zav {
namespace {

struct Name {
    const char* name;
    int type;
    int vector;
    int plot;
};

TEST(CalcFrame, NamesAreKnown) {
    const Name cases[] = {{"wind", 20, 0, 1},     {"vect-temp", 21, 0, 1}, {"strm", 23, 0, 1}, {"add", 10, 0, 0},
                          {"sub-hght", 10, 0, 0}, {"avort", 10, 0, 0},     {"grad", 0, 1, 0},  {"Add", 0, 0, 0}};
    for (const Name& c : cases) {
        EXPECT_EQ(GRD_is_math_func(c.name), c.type) << c.name;
        EXPECT_EQ(GRD_is_vect_func(c.name), c.vector) << c.name;
        EXPECT_EQ(GRD_is_plot_func(c.name), c.plot) << c.name;
    }
}

GRD_report make_record(int nx, int ny) {
    GRD_report record;
    GRD_init(&record);
    record.source = 7;
    record.units = "K";
    record.domain.nx = nx;
    record.domain.ny = ny;
    EXPECT_EQ(GRD_alloc(&record), 1);
    record.grid[0] = 5.0F;
    return record;
}

TEST(CalcFrame, ArgumentsAreGridsOrNumbers) {
    GRD_report result;
    GRD_init(&result);
    GRD_report grid = make_record(2, 3);
    GRD_report other = make_record(2, 1);
    std::array<GRD_report*, GRD_MATH_MAX> grids{&result, nullptr, &grid};
    std::array<float, GRD_MATH_MAX> values;
    values.fill(FMISS);
    values[1] = 273.15F;
    EXPECT_EQ(GRD_find_num_data(grids.data(), values.data()), 2);
    std::array<float*, GRD_MATH_MAX> ptr{};
    int nx = 0, ny = 0;
    const auto set_up = [&](int num, const char* units) {
        return GRD_math_setup(ptr.data(), &nx, &ny, num, grids.data(), values.data(), "add", "", units);
    };
    ASSERT_EQ(set_up(2, nullptr), 1);  // the result takes the points of the first grid
    EXPECT_TRUE(nx == 2 && ny == 3 && result.source == 7 && result.units == "K" && ptr[0] == result.grid.get());
    EXPECT_EQ(GRD_get_math_val(1, ptr.data(), values.data()), 273.15F);
    EXPECT_EQ(GRD_get_math_val(2, ptr.data(), values.data()), 5.0F);
    EXPECT_EQ(set_up(3, ""), 0);
    ASSERT_EQ(set_up(2, "m/s"), 1);
    EXPECT_EQ(result.units, "m/s");
    grids[1] = &other;  // a grid of another size would be walked beyond its end
    EXPECT_EQ(set_up(2, nullptr), 0);
    grids[1] = nullptr;
    grid.source = 0;  // a field of no known centre
    EXPECT_EQ(set_up(2, ""), 1);
    grid.grid.reset();
    EXPECT_EQ(set_up(2, ""), 0);
}

TEST(CalcFrame, ArgumentsFollowTheirFunction) {
    VAR_set_def_type(VTYPE_CONT);
    ASSERT_EQ(VAR_setup(nullptr, "add(mul(hght,#2),temp),uwnd"), 1);
    std::vector<GRD_report*> grids(8, nullptr);
    std::vector<float> values(8, FMISS);
    EXPECT_EQ(GRD_find_param_grids(1, 4, 1, grids.data(), values.data()), 5);
    EXPECT_EQ(grids[0], GRD_get_grid(1));
    EXPECT_EQ(grids[1], GRD_get_grid(4));
    EXPECT_EQ(grids[2], nullptr);
    EXPECT_EQ(GRD_find_param_grids(2, -1, 2, grids.data(), values.data()), 4);
    EXPECT_EQ(grids[0], GRD_get_grid(2));
    EXPECT_EQ(grids[1], nullptr);
    EXPECT_EQ(values[1], 2.0F);
}

}  // namespace
}  // namespace zav
