// Labels, panels, parameters and events of a plot.

#include "plot/sequence/plt_plot.h"

#include "map/maptran.h"
#include "plot/contour/cont_state.h"
#include "plot/meta_plot.h"
#include "plot/wind/vecttool.h"

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

TEST_F(PltPlot, LabelsStandRoundTheViewport) {
    Glim view;
    PLT_get_view(&view);
    PLT_set_overlay(0);
    PLT_label_up_left("upper");
    PLT_next_overlay();
    PLT_label_up_left("second");
    PLT_next_overlay();
    PLT_set_overlay(0);
    PLT_label_low_right("lower");
    RES_put("label", "uc:by_hand%%");
    EXPECT_EQ(PLT_labels(), 0);
    const float dy = std::min(view.y_min / 2, 0.03F * (view.y_max - view.y_min));
    const test::Drawn drawn = close();
    const auto place = [&drawn](const std::string& label) {
        Gpt at;
        for (const test::Drawn_text& text : drawn.texts) {
            if (text.str == label) at = text.at;
        }
        return at;
    };
    const float margin = 0.01F * (view.x_max - view.x_min);
    EXPECT_NEAR(place("upper").x, view.x_min + margin, 1e-5);
    EXPECT_NEAR(place("upper").y, view.y_max + 0.2F * dy, 1e-5);
    EXPECT_NEAR(place("second").y - place("upper").y, dy, 1e-5);
    EXPECT_NEAR(place("lower").x, view.x_max - margin, 1e-5);
    EXPECT_NEAR(place("lower").y, view.y_min - 1.2F * dy, 1e-5);
    EXPECT_NEAR(place("by hand%").x, 0.5F * (view.x_min + view.x_max), 1e-5);
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

TEST(VectTools, WindsByHand) {
    float a = 0, b = 0;
    EXPECT_EQ(wind2vect(270, 10, &a, &b), 0);
    EXPECT_NEAR(a, 10, 1e-5);
    EXPECT_NEAR(b, 0, 1e-5);
    EXPECT_EQ(vect2wind(-3, -4, &a, &b), 0);
    EXPECT_NEAR(a, 36.8699, 1e-4);
    EXPECT_NEAR(b, 5, 1e-6);
    vect2polar(-3, -4, &a, &b);
    EXPECT_NEAR(a, -143.1301, 1e-4);
    EXPECT_EQ(vect2wind(FMISS, 0, &a, &b), -1);
    EXPECT_EQ(a, FMISS);
    VECT w;
    cross_product({1, 0, 0}, {0, 1, 0}, &w);
    EXPECT_EQ(w.z, 1);
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
