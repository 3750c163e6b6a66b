// Which variables make up a layer.

#include "plot/sequence/data_plt.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <map>

#include "calc/grd_calc.h"
#include "frame/flag.h"
#include "frame/resrc.h"
#include "frame/string.h"
#include "grid/grd_tool.h"
#include "map/maptran.h"
#include "plot/contour/cont_state.h"
#include "plot/meta_plot.h"
#include "plot/page/plt_labl.h"
#include "plot/sequence/plt_plot.h"
#include "plot/wind/vect_state.h"
#include "support/support.h"
#include "support/table.h"
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

/// Layers with the last variable that they use and their label: a vector's tells its variable, a contour's its grid.
TEST_F(DataPlot, LayersTakeTheirVariablesLabelAndUnits) {
    struct Case {
        const char* variables;
        int last;
        bool by_grid;
    };
    // the vector and its components; the function and its arguments; one contour; a vector short of a component
    for (const Case& c : {Case{"wind<uwnd,vwnd>,hght", 2, false}, Case{"wind(uwnd,vwnd),hght", 2, false},
                          Case{"hght,temp", 0, true}, Case{"wind(uwnd),hght", 1, false}}) {
        for (const bool joined : {false, true}) {
            ASSERT_EQ(VAR_setup(nullptr, c.variables), 1) << c.variables;
            for (int i = 0; i < VAR_get_num(); ++i) GRD_get_grid(i)->info = "of its grid";
            GRD_get_grid(1)->units = "m/s";
            PLT_init_labels();
            DATA_new_frame();
            PLT_set_label_type(joined ? -1 : 0);
            DATA_info info;
            EXPECT_EQ(DATA_plot_grid(0, &info), c.last) << c.variables;
            const std::string own = VAR_make_var_form_datatype(0);
            EXPECT_EQ(PLT_get_label(0, 0), c.by_grid && !joined ? "of its grid" : own) << c.variables << joined;
            EXPECT_EQ(VAR_get_units(0), c.by_grid ? "" : "m/s") << c.variables;
        }
    }
    PLT_set_label_type(0);
}

TEST_F(DataPlot, ValuesAreReadOutUnlessAListOfFilesHasAStation) {
    ASSERT_EQ(VAR_setup(nullptr, "hght:gpm:ln"), 1);
    GRD_report* grid = GRD_get_grid(0);
    DOM_decode("ll:0:0,0,0,41,21,1", &grid->domain);
    ASSERT_EQ(GRD_alloc(grid), 1);
    std::fill_n(grid->grid.get(), 41 * 21, 42.5F);
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
    std::vector<std::string> pages;
    plot("lc:45:-97:45,45,-97,61,45,1", [&pages] {
        Domain domain;
        MAP_get_domain(&domain);
        DATA_plot_init();
        for (int page = 0; page < 2; ++page) {
            PLT_set_num_overlay(-3);
            CONT_set_bar(0);
            DATA_plot_start();
            pages.emplace_back();
            Glim view;
            for (const auto& get : {PLT_get_view, MAP_get_window}) {
                get(&view);
                pages.back() += text_format("%.4f %.4f %.4f %.4f ", view.x_min, view.x_max, view.y_min, view.y_max);
            }
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
    EXPECT_EQ(pages[0], pages[1]);
}

/// Passes of the map list under and over the data.
TEST_F(DataPage, MapGoesUnderOrOver) {
    RES_put("map_file", "-a.map,+b.map,c.map");
    RES_put("file_path", dir.path().string() + "/");
    for (const char* name : {"a.map", "b.map", "c.map"}) dir.write(name, "0 0 0 0 0 0\n");
    for (const auto& row : test::data_cells("plot/map_order.tsv")) {
        RES_put("plot_param", row[2].c_str());
        FLAG_setl(FLAG_PLOT_TYPE, row[1] == "fill" ? CONT_FILL : 0);
        VAR_set_def_type(VTYPE_CONT);
        cont.mapcon = MISS;
        ASSERT_EQ(VAR_setup(nullptr, row[0].c_str()), 1);
        plot("lc:45:-97:45,45,-97,61,45,1", [] {
            DATA_plot_init();
            DATA_plot_start();
            DATA_plot_end();
        });
        std::string maps;
        std::istringstream lines(test::read_file(dir.file("out")));
        for (std::string line; std::getline(lines, line);) {
            if (line.starts_with("ME Map: ")) maps += line[8];
        }
        EXPECT_EQ(maps, row[3]) << row[0] << ' ' << row[1] << ' ' << row[2];
    }
    RES_put("plot_param", "");
}

/// The bar's numbers and frame have the colour of texts, its lines that of contours.
TEST_F(DataPage, BarHasItsAttributes) {
    RES_put("color_text", "Red:wi=3");
    RES_put("color_cont", "Blue");
    const test::Drawn drawn = plot("lc:45:-97:45,45,-97,61,45,1", [] {
        cont = Cont_state{};
        cont.cont_type = CONT_LINE;
        CONT_set_range(20, 0);
        CONT_set_intrvl(5);
        EXPECT_EQ(CONT_draw_bar(1, ""), 0);
    });
    RES_put("color_text", "");
    RES_put("color_cont", "");
    ASSERT_FALSE(drawn.texts.empty());
    for (const test::Drawn_mark& text : drawn.texts) {
        EXPECT_EQ(text.number("TE_CLR"), CLR_get_ind("red"));
        EXPECT_EQ(text.number("TE_WDTH"), 3);
    }
    ASSERT_FALSE(drawn.paths.empty());
    EXPECT_EQ(drawn.paths.back().number("PL_CLR"), CLR_get_ind("red"));
}

/// The width of letters that a map's lines or another layer asked for isn't taken on by numbers without one.
TEST_F(DataPage, ValuesHaveTheUsualWidth) {
    RES_put("color_label", "Red");
    const test::Drawn drawn = plot("lc:45:-97:45,45,-97,61,45,1", [] {
        cont = Cont_state{};
        cont.cont_type = CONT_VALUE;
        GRD_report grid;
        MAP_get_domain(&grid.domain);
        ASSERT_EQ(GRD_alloc(&grid), 1);
        std::fill_n(grid.grid.get(), GRD_points(&grid), 42.0F);
        Gattribs wide;
        ATTRIB_init(&wide);
        wide.width = 3;
        GPH_text_attr(&wide, 0.01F);
        CONT_draw(&grid);
    });
    RES_put("color_label", "");
    ASSERT_FALSE(drawn.texts.empty());
    for (const test::Drawn_mark& text : drawn.texts) EXPECT_EQ(text.number("TE_WDTH"), 0) << text.str;
}

/// However many layers want them, a frame has one colour bar and one key of the vectors.
TEST_F(DataPage, BarAndKeyStandOnceAFrame) {
    int frames = 0;
    const test::Drawn drawn = plot("lc:45:-97:45,45,-97,61,45,1", [&frames] {
        cont = Cont_state{};
        vect.vert_size = 44;
        vect.vect_size = 1;
        vect.grid_max = 20;
        vect.units = "kt";
        CONT_set_range(20, 0);
        CONT_set_intrvl(5);
        cont.color_num = 4;
        for (; frames < 2; ++frames) {
            PLT_layer_requests() = {};
            DATA_new_frame();
            EXPECT_EQ(DATA_plot_bar() + DATA_plot_vect_bar(), -2);  // none is wanted
            PLT_layer_requests() = {1, 1};
            EXPECT_EQ(DATA_plot_bar() + DATA_plot_vect_bar(), 0);
            EXPECT_EQ(DATA_plot_bar() + DATA_plot_vect_bar(), -2);
        }
        PLT_layer_requests() = {};
    });
    std::map<std::string, int> texts;
    for (const test::Drawn_mark& text : drawn.texts) texts[text.str]++;
    EXPECT_EQ(texts["MAX VECTOR:  20.0 kt"], frames);
    EXPECT_EQ(texts["15"], frames);
}

}  // namespace
}  // namespace zav
