// Labels, panels, parameters and events of a plot.

#include "plot/sequence/plt_plot.h"

#include "map/maptran.h"
#include "plot/contour/cont_state.h"
#include "plot/meta_plot.h"
#include "plot/page/plt_state.h"

namespace zav {
namespace {

TEST(PltLabelFormat, ExpandsItsCodes) {
    Date date;
    date.year = 2026;
    date.month = 3;
    date.day = 5;
    date.hour = 6;
    date.min = 0;
    PLT_label_date(&date);
    PLT_label_for_time(12);
    const std::pair<const char*, const char*> cases[] = {
        {"", ""},        {"a_b%%", "a b%"}, {"%y%m%d %h:%n", "260305 06:00"}, {"%b", "MAR"}, {"%q%x1", "1"},
        {"end%", "end"}, {"%f", "12 hour"},
    };
    for (const auto& [form, want] : cases) {
        std::string got;
        PLT_label_format(form, got);
        EXPECT_EQ(got, want) << form;
    }
}

TEST(PltLabels, OverlaysStackOrJoin) {
    PLT_label_up_left("first");
    EXPECT_EQ(PLT_next_overlay(), 1);
    PLT_label_up_left("second");
    EXPECT_EQ(PLT_get_label(0, 1), "second");
    EXPECT_EQ(PLT_get_num_over(), 1);
    PLT_set_label_type(-1);
    EXPECT_EQ(PLT_next_overlay(), 2);
    EXPECT_EQ(PLT_get_label_type(), -2);
    PLT_label_up_left("third");
    EXPECT_EQ(PLT_get_label(0, 0), "first third");
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
    struct Case {
        const char* text;
        Glim want;
    };
    const Case cases[] = {
        {"3x2+1+0", {1.0F / 3, 2.0F / 3, 0.5F, 1.0F}},
        {"0.5x0.25+0.1+0.2", {0.1F, 0.6F, 0.2F, 0.45F}},
        {"2x2+1", {0.1F, 0.6F, 0.2F, 0.45F}},      // incomplete: nothing changes
        {"0.5x0+0+0", {0.1F, 0.6F, 0.2F, 0.45F}},  // no extent
        {"nanxinf+0+0", {0.1F, 0.6F, 0.2F, 0.45F}},
        {"99x99+7+7", {0.875F, 1.0F, 0.0F, 0.125F}},
        {"1x1+0+0", {0, 1, 0, 1}},
    };
    Glim page;
    GPH_get_view_size(&page);
    for (const Case& c : cases) {
        PLT_panel_decode(c.text);
        Glim size;
        GPH_get_view_size(&size);
        EXPECT_NEAR(size.x_min, c.want.x_min * page.x_max, 1e-6) << c.text;
        EXPECT_NEAR(size.x_max, c.want.x_max * page.x_max, 1e-6) << c.text;
        EXPECT_NEAR(size.y_min, c.want.y_min * page.y_max, 1e-6) << c.text;
        EXPECT_NEAR(size.y_max, c.want.y_max * page.y_max, 1e-6) << c.text;
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
            const std::string name = std::to_string(line);
            PLT_label_up_left("ul" + name);
            PLT_label_up_center("uc" + name);
            PLT_label_up_right("ur" + name);
            PLT_label_low_left("ll" + name);
            PLT_label_low_center("lc" + name);
            PLT_label_low_right("lr" + name);
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
            EXPECT_NEAR(text.number("TE_HGHT"), 0.75F * dy, 1e-5) << text.str;
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
    domain.proj = PROJ_LATLON;
    domain.clat = 40;
    domain.clon = -100;
    domain.dx = domain.dy = 1;
    domain.nx = 41;
    domain.ny = 21;
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
    EXPECT_NEAR(zoomed.clat, 42, 1e-3);
    EXPECT_NEAR(zoomed.clon, -98, 1e-3);
    EXPECT_NEAR(zoomed.dx, 8.0 / 40, 1e-5);
    EXPECT_EQ(zoomed.dx, zoomed.dy);
    PLT_plot_zoom("u-Alt", 0, 0);
    EXPECT_EQ(PLT_get_zoom(), 0);
    EXPECT_EQ(zoomed.clat, 40);
    close();
}

TEST(PltParam, WordsTakeEffect) {
    RES_new(MISS, "plot_param", "fullab,OVER=1:4,shadow,bar=5:30,nonsense,plt_off:2", CV_none);
    PLT_param_decode();
    EXPECT_EQ(PLT_get_full_lab(), 1);
    EXPECT_EQ(PLT_get_view_offset(), 0.0F);
    EXPECT_EQ(PLT_get_overlay_base(), 1);
    EXPECT_EQ(PLT_get_num_over(), 4);
    EXPECT_EQ(gget_font_drop(), 4);
    EXPECT_EQ(CONT_get_bar(), 2);
    RES_put("plot_param", "shadow=2,nobar,plt_skip=3:2");
    PLT_param_decode();
    CONT_init();  // as each layer does
    EXPECT_EQ(cont.x_skip, 3);
    EXPECT_EQ(cont.y_skip, 2);
    EXPECT_EQ(gget_font_drop(), 2);
    EXPECT_EQ(CONT_get_bar(), -2);
}

}  // namespace
}  // namespace zav
