// Which variables make up a layer.

#include "plot/sequence/data_plt.h"

#include <gtest/gtest.h>

#include <algorithm>

#include "calc/grd_calc.h"
#include "frame/flag.h"
#include "frame/resrc.h"
#include "grid/grd_tool.h"
#include "map/maptran.h"
#include "plot/contour/cont_state.h"
#include "plot/meta_plot.h"
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

class DataPage : public test::MetaPlot {
  protected:
    void TearDown() override { VAR_reset(); }
};

/// The page after one with panels is laid out as the first.
TEST_F(DataPage, PanelsLeaveNextPageWhole) {
    VAR_set_def_type(VTYPE_CONT);
    ASSERT_EQ(VAR_setup(nullptr, "panel:2x2+1+0,hght,panel:3x3+0+2,temp"), 1);
    std::vector<Glim> views;
    plot("lc:45:-97:45,45,-97,61,45,1", [&views] {
        Domain domain;
        MAP_get_domain(&domain);
        DATA_plot_init();
        for (int page = 0; page < 2; ++page) {
            PLT_set_num_overlay(-3);
            CONT_set_bar(0);
            DATA_plot_start();
            views.emplace_back();
            PLT_get_view(&views.back());
            MAP_get_window(&views.emplace_back());
            for (const int panel : {0, 2}) {
                CONT_set_bar(3);
                FLAG_setplot(PLOT_TEXT_LR, 0);
                PLT_label_up_left("of another panel");
                DATA_plot_control(panel, &domain);
                EXPECT_EQ(CONT_get_bar(), panel == 0 ? 3 : 0);
                EXPECT_EQ(PLT_get_num_over(), 3);
            }
            DATA_plot_end();
            EXPECT_EQ(FLAG_getplot(PLOT_TEXT_LR), 1);
        }
    });
    for (int i = 0; i < 2; ++i) {
        EXPECT_NEAR(views[i].x_min, views[i + 2].x_min, 1e-5);
        EXPECT_NEAR(views[i].x_max, views[i + 2].x_max, 1e-5);
        EXPECT_NEAR(views[i].y_min, views[i + 2].y_min, 1e-5);
        EXPECT_NEAR(views[i].y_max, views[i + 2].y_max, 1e-5);
    }
}

/// Passes of the map list under and over the data.
TEST_F(DataPage, MapGoesUnderOrOver) {
    struct Case {
        const char* variables;
        const char* order;
        std::vector<std::string> items;
    };
    const std::string under = "Map: a.map";
    const std::string over = "Map: b.map";
    const std::string plain = "Map: c.map";
    RES_put("map_file", "-a.map,+b.map,c.map");
    RES_put("file_path", dir.path().string() + "/");
    for (const char* name : {"a.map", "b.map", "c.map"}) dir.write(name, "0 0 0 0 0 0\n");
    for (const Case& c :
         {Case{"hght", "", {under, plain, over}}, Case{"hght", "conmap", {under, over, plain}},
          Case{"hght", "mapcon", {under, plain, over}}, Case{"map,hght", "", {under, over}},
          Case{"panel:2x2+0+0,hght", "", {over}}, Case{"hght,panel:2x2+0+0", "", {under, plain, over}},
          Case{"hght", "fill", {under, over, plain}}, Case{"hght", "fill,mapcon", {under, plain, over}}}) {
        const std::string order = c.order;
        const bool fill = order.starts_with("fill");
        RES_put("plot_param", fill ? order.substr(order.size() > 4 ? 5 : 4) : order);
        FLAG_setl(FLAG_PLOT_TYPE, fill ? CONT_FILL : 0);
        VAR_set_def_type(VTYPE_CONT);
        cont.mapcon = MISS;
        ASSERT_EQ(VAR_setup(nullptr, c.variables), 1);
        plot("lc:45:-97:45,45,-97,61,45,1", [] {
            DATA_plot_init();
            DATA_plot_start();
            DATA_plot_end();
        });
        std::vector<std::string> items;
        std::istringstream lines(test::read_file(dir.file("out")));
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with("ME Map: ")) items.push_back(line.substr(3));
        }
        EXPECT_EQ(items, c.items) << c.variables << ' ' << c.order;
    }
}

}  // namespace
}  // namespace zav
