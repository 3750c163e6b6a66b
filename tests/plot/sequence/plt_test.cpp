// Labels, panels, parameters and events of a plot.

#include "plot/sequence/plt_plot.h"

#include "frame/string.h"
#include "gks/gks_colr.h"
#include "map/maptran.h"
#include "plot/contour/cont_state.h"
#include "plot/meta_plot.h"
#include "plot/page/plt_state.h"
#include "support/table.h"

namespace zav {
namespace {

TEST(PltLabelFormat, ExpandsItsCodes) {
    Date date;
    DATE_decode_label("0600Z 05 MAR 26", &date);
    PLT_label_date(&date);
    PLT_label_for_time(12);
    for (const auto& row : test::data_cells("plot/label_codes.tsv")) {
        std::string got;
        PLT_label_format(row[0], got);
        EXPECT_EQ(got, row[1]) << row[0];
    }
}

TEST(PltLabels, OverlaysStackOrJoin) {
    test::fresh_plot_control();
    PLT_label_up_left("first");
    EXPECT_EQ(PLT_next_overlay(), 1);
    PLT_label_up_left("second");
    EXPECT_EQ(PLT_get_label(0, 1), "second");
    PLT_set_label_type(-1);
    EXPECT_EQ(PLT_next_overlay(), 2);
    EXPECT_EQ(PLT_get_label_type(), -2);
    PLT_label_up_left("third");
    PLT_label_up_left(std::string(55, 'x'));  // 5 + 55 is above 59
    EXPECT_EQ(PLT_get_label(0, 0), "first third");
    PLT_set_overlay(-1);
    PLT_label_low_right("hidden");
    PLT_set_overlay(9);
    EXPECT_EQ(PLT_next_overlay(), -1);
    PLT_set_label_type(0);
    PLT_label_low_right(std::string(200, 'y'));
    PLT_label_low_right("short");  // a full label stays
    EXPECT_EQ(PLT_get_label(5, 5), std::string(69, 'y'));
    EXPECT_EQ(PLT_get_label(5, 0), "");
    EXPECT_EQ(PLT_get_label(6, -1), "");
    PLT_init_labels();
    EXPECT_EQ(PLT_get_label(0, 0), "");
}

TEST(PltPanel, ShapesAndLayouts) {
    test::fresh_plot_control();
    Glim page;
    GPH_get_view_size(&page);
    for (const auto& row : test::data_cells("plot/panels.tsv")) {
        PLT_panel_decode(row[0]);
        Glim size;
        GPH_get_view_size(&size);
        EXPECT_EQ(text_format("%.4g %.4g %.4g %.4g", size.x_min / page.x_max, size.x_max / page.x_max,
                              size.y_min / page.y_max, size.y_max / page.y_max),
                  row[1])
            << row[0];
    }
}

class PltPlot : public test::MetaPlot {
  protected:
    void SetUp() override {
        MetaPlot::SetUp();
        test::capture([] { ASSERT_EQ(PLT_open(1.0F), 0); });
    }
    test::Drawn close() {
        test::capture([] { PLT_close(); });
        return test::read_metafile(dir.file("out"));
    }
};

/// Labels stack upward from the line next to the plot above it, and from the far one below it.
TEST_F(PltPlot, LabelsStandRoundTheViewport) {
    struct Case {
        bool inside;
        int lines, base, type;
    };
    Glim view;
    PLT_get_view(&view);
    const float width = view.x_max - view.x_min;
    const float x[3] = {view.x_min + 0.01F * width, (view.x_min + view.x_max) / 2, view.x_max - 0.01F * width};
    for (const Case& c : {Case{false, 1, 0, 0}, Case{false, 2, 0, 1}, Case{false, 4, 1, 0}, Case{true, 1, 0, 0},
                          Case{true, 3, 0, 0}, Case{false, 3, 0, -1}}) {
        if (!gchk_graphics()) test::capture([] { PLT_open(1.0F); });
        PLT_state_get().full_lab = c.inside ? 1 : 0;
        PLT_init_labels();
        PLT_set_label_type(0);
        PLT_set_overlay_base(c.base);
        for (int line = 0; line < c.lines; ++line) {
            PLT_set_overlay(line);
            for (int lab = 0; lab < PLT_LABELS; ++lab) {
                PLT_label_strcpy(lab, std::string(lab < 3 ? "u" : "l") + "lcr"[lab % 3] + std::to_string(line));
            }
        }
        PLT_set_label_type(c.type);
        PLT_set_num_overlay(-c.lines);
        EXPECT_EQ(PLT_labels(), 0);
        const int shown = c.type < 0 ? 1 : c.lines;
        const float space = c.inside ? 0.06F : view.y_min;
        const float dy = std::min(space / static_cast<float>(shown), 0.03F * (view.y_max - view.y_min));
        const float gap = c.inside ? -0.2F * dy - static_cast<float>(shown) * dy : 0.2F * dy;
        const test::Drawn drawn = close();
        ASSERT_EQ(drawn.texts.size(), 6U * shown) << c.lines;
        for (const test::Drawn_mark& text : drawn.texts) {
            const bool upper = text.str[0] == 'u';
            const int column = text.str[1] == 'l' ? 0 : text.str[1] == 'c' ? 1 : 2;
            const int line = text.str[2] - '0' + c.base;
            const float first = upper ? view.y_max + gap : view.y_min - gap - static_cast<float>(shown - 1) * dy;
            EXPECT_NEAR(text.pts[0].x, x[column], 1e-5) << text.str;
            EXPECT_NEAR(text.pts[0].y, first + static_cast<float>(line) * dy, 1e-5) << text.str;
            EXPECT_NEAR(text.number("TE_HGHT"), (shown > 1 ? 0.6F : 0.75F) * dy, 1e-5) << text.str;
            EXPECT_EQ(text.attributes.at("TE_ALGN"), std::to_string(column + 1) + (upper ? " 4" : " 2")) << text.str;
        }
    }
    PLT_state_get().full_lab = 0;
    PLT_set_overlay_base(0);
    PLT_set_label_type(0);
}

/// Items of the user: a text at a place, or the line that a digit names; the bar and the key take places away.
TEST_F(PltPlot, LabelsOfTheUser) {
    PLT_set_num_overlay(-3);
    PLT_set_overlay(0);
    PLT_label_up_center("of a layer");
    PLT_set_overlay(1);
    PLT_label_up_center("of the next layer");
    PLT_label_low_left("under the bar");
    PLT_label_low_right("under the key");
    PLT_layer_requests() = {1, 1};
    RES_put("label", "uc:by_hand%%,ul2:third");
    EXPECT_EQ(PLT_labels(), 0);
    PLT_layer_requests() = {};
    std::string texts;
    float third = 0;
    float first = 0;
    for (const test::Drawn_mark& text : close().texts) {
        texts += text.str + ";";
        (text.str == "third" ? third : first) = text.pts[0].y;
    }
    RES_put("label", "");
    EXPECT_EQ(texts, "third;by hand%;");
    EXPECT_GT(third, first);
}

TEST_F(PltPlot, NoRoomNoLabels) {
    PLT_set_view_offset(0.0F);
    test::capture([] { PLT_reset(0.0F); });
    PLT_label_up_left("upper");
    EXPECT_EQ(PLT_labels(), -1);
    EXPECT_TRUE(close().texts.empty());
}

Domain zoomed;
int keep_domain(Domain* domain) {
    zoomed = *domain;
    MAP_domain(domain);
    return 0;
}

TEST_F(PltPlot, ZoomBoxBecomesTheDomain) {
    Domain domain;
    DOM_decode("ll:0:0,40,-100,41,21,1", &domain);
    MAP_domain(&domain);
    PLT_set_zoom_func(keep_domain);
    float x = 0;
    float y = 0;
    ASSERT_EQ(MAP_tran(42, -98, &x, &y), 1);
    EXPECT_EQ(PLT_plot_zoom("u-Alt", 0, 0), 0);
    EXPECT_EQ(PLT_plot_zoom("B1-R", x, y), 0);  // no box begun
    PLT_plot_zoom("B1-P-Shft", x, y);
    EXPECT_EQ(PLT_plot_zoom("B1-R-Shft", x, y), -1);  // a point is no box
    EXPECT_EQ(PLT_get_zoom(), 0);
    PLT_plot_zoom("B1-P-Shft", x + 4, y + 1);  // dragged to the lower left
    PLT_plot_zoom("B1-R-Shft", x - 4, y - 1);
    EXPECT_EQ(PLT_get_zoom(), 1);
    EXPECT_EQ(text_format("%.3f %.3f %.3f %.3f", zoomed.clat, zoomed.clon, zoomed.dx, zoomed.dy),
              "42.000 -98.000 0.200 0.200");
    PLT_plot_zoom("u-Alt", 0, 0);
    EXPECT_EQ(PLT_get_zoom(), 0);
    EXPECT_EQ(zoomed.clat, 40);
    close();
}

TEST(PltParam, WordsTakeEffect) {
    test::fresh_plot_control();
    for (const auto& row : test::data_cells("plot/plot_words.tsv")) {
        RES_new(MISS, "plot_param", row[0].c_str(), CV_none);
        PLT_param_decode();
        CONT_init();  // as each layer does
        float lat = 0;
        float lon = 0;
        MAP_get_latlon(&lat, &lon);
        const std::string settings = text_format(
            "labels %d %g %d %d shadow %d bar %d skip %d %d off %g %g lalo %g %g loop %d rw %d", PLT_get_full_lab(),
            PLT_get_view_offset(), PLT_get_overlay_base(), PLT_get_num_over(), gget_font_drop(), CONT_get_bar(),
            cont.x_skip, cont.y_skip, cont.x_off, cont.y_off, lat, lon, gget_local_colormap(), gget_rw_colors());
        EXPECT_EQ(settings, row[1]) << row[0];
    }
    PLT_state_get().full_lab = 0;
    CONT_set_usual_skip(1, 1);
    CONT_set_plot_offset(0, 0);
    MAP_latlon(0, 0, 0, 0);
}

}  // namespace
}  // namespace zav
