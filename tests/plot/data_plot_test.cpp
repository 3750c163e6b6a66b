// Which variables make up a layer.

#include "plot/data_plt.h"

#include <gtest/gtest.h>

#include "frame/flag.h"
#include "grid/grd_tool.h"
#include "var/var_tool.h"

namespace zav {
namespace {

TEST(DataPlot, LayerEndsAtItsLastVariable) {
    FLAG_reset(MISS);
    FLAG_setl(FLAG_BATCH, 1);
    VAR_set_def_type(VTYPE_CONT);
    struct Case {
        const char* variables;
        int last;
    };
    // the vector and its components; the function and its arguments; one contour; a vector short of a component
    for (const Case& c : {Case{"wind<uwnd,vwnd>,hght", 2}, Case{"wind(uwnd,vwnd),hght", 2}, Case{"hght,temp", 0},
                          Case{"wind(uwnd),hght", 1}}) {
        ASSERT_EQ(VAR_setup(nullptr, c.variables), 1) << c.variables;
        DATA_info info;
        EXPECT_EQ(DATA_plot_grid(0, &info), c.last) << c.variables;
    }
}

TEST(DataPlot, VectorTakesTheUnitsOfItsGrids) {
    FLAG_reset(MISS);
    FLAG_setl(FLAG_BATCH, 1);
    ASSERT_EQ(VAR_setup(nullptr, "wind<uwnd,vwnd>"), 1);
    GRD_get_grid(1)->units = "m/s";
    DATA_info info;
    DATA_plot_grid(0, &info);
    EXPECT_EQ(VAR_get_units(0), "m/s");
}

}  // namespace
}  // namespace zav
