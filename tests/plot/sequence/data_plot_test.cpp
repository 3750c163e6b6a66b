// Which variables make up a layer.

#include "plot/sequence/data_plt.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "calc/grd_calc.h"
#include "frame/flag.h"
#include "frame/resrc.h"
#include "grid/grd_tool.h"
#include "map/maptran.h"
#include "plot/page/plt_labl.h"
#include "plot/sequence/plt_plot.h"
#include "support/support.h"
#include "var/var_tool.h"

namespace zav {
namespace {

/// A run without prompts, whose labels and variables are gone at the end.
class DataPlot : public ::testing::Test {
  protected:
    void SetUp() override {
        FLAG_reset(MISS);
        FLAG_setl(FLAG_BATCH_RUN, 1);
        VAR_set_def_type(VTYPE_CONT);
        VAR_hooks().is_math_func = GRD_is_math_func;
        VAR_hooks().is_vect_func = GRD_is_vect_func;
    }
    void TearDown() override {
        FLAG_reset(MISS);
        VAR_reset();
        DATA_new_frame();
        PLT_init_labels();
    }
};

TEST_F(DataPlot, LayerEndsAtItsLastVariable) {
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

TEST_F(DataPlot, VectorTakesTheUnitsOfItsGrids) {
    ASSERT_EQ(VAR_setup(nullptr, "wind<uwnd,vwnd>"), 1);
    GRD_get_grid(1)->units = "m/s";
    DATA_info info;
    DATA_plot_grid(0, &info);
    EXPECT_EQ(VAR_get_units(0), "m/s");
}

TEST_F(DataPlot, ValuesAreReadOutUnlessAListOfFilesHasAStation) {
    ASSERT_EQ(VAR_setup(nullptr, "hght:gpm:ln"), 1);
    GRD_report* grid = GRD_get_grid(0);
    grid->domain.proj = PROJ_LATLON;
    grid->domain.clat = grid->domain.clon = 0.0F;
    grid->domain.dx = grid->domain.dy = 1.0F;
    grid->domain.nx = grid->domain.ny = 3;
    ASSERT_EQ(GRD_alloc(grid), 1);
    std::fill_n(grid->grid.get(), 9, 42.5F);
    MAP_domain(&grid->domain);
    for (const char* files : {"one.grb", "one.grb,two.grb"}) {
        RES_put("filename", files);
        const std::string said = test::capture([] { PLT_print_values("v-Alt", 0.0F, 0.0F); }).out;
        EXPECT_NE(said.find("=  42.50\n"), std::string::npos) << files << said;
    }
}

}  // namespace
}  // namespace zav
