// The coordinate chain against hand-worked numbers, and what culling and selection leave alone.

#include <cmath>

#include "gks/kernel_scene.h"
#include "gks/meta/gks_meta.h"

namespace zav {
namespace {

class Tran : public test::KernelTest {
  protected:
    /// A device of 801 by 401 units with its workstation window 2 by 1, so that 1 NDC is 400 units.
    void open_device() {
        ASSERT_EQ(open(dir.file("out.ps")), 0);
        gset_win_size(801, 401);
        const Glim ws = {0, 2, 0, 1};
        gset_ws_win(1, &ws);
    }
};

TEST_F(Tran, WorldGoesToTheDeviceAndBack) {
    open_device();
    const Glim world = {-100, 100, 10, 60};
    const Glim view = {0.5F, 1.5F, 0.25F, 0.75F};
    gset_win(3, &world);
    gset_vp(3, &view);
    EXPECT_FLOAT_EQ(xW_NDC(0.5F), 0.5F) << "a transformation that isn't selected changes nothing";
    gsel_norm_tran(3);
    EXPECT_FLOAT_EQ(xW_NDC(0), 1);
    EXPECT_FLOAT_EQ(yW_NDC(35), 0.5F);
    struct {
        float x, y, px, py, sx, sy;
    } const cases[] = {{-100, 10, 200, 300, 200, 100}, {100, 60, 600, 100, 600, 300}, {50, 22.5F, 500, 250, 500, 150}};
    for (const auto& c : cases) {
        EXPECT_FLOAT_EQ(xW_p(c.x), c.px);
        EXPECT_FLOAT_EQ(yW_p(c.y), c.py);
        EXPECT_FLOAT_EQ(xW_ps(c.x), c.sx);
        EXPECT_FLOAT_EQ(yW_ps(c.y), c.sy);
        EXPECT_NEAR(xp_W(c.px), c.x, 1e-4);
        EXPECT_NEAR(yp_W(c.py), c.y, 1e-4);
    }
    EXPECT_FLOAT_EQ(xW_trans(50, 3, 0), 1.25F);
    EXPECT_FLOAT_EQ(yW_trans(0.5F, 0, 3), 35);
    Gxrect pixels;
    gget_xviewport(&pixels);
    EXPECT_EQ(pixels.x, 200);
    EXPECT_EQ(pixels.y, 100);
    EXPECT_EQ(pixels.width, 401);
    EXPECT_EQ(pixels.height, 201);
    gset_win_size(401, 201);
    EXPECT_FLOAT_EQ(xW_p(100), 300) << "windows and viewports stay at another size";
}

TEST_F(Tran, FarAndImpossiblePointsStayInTheDeviceRange) {
    open_device();
    for (const float far : {1e9F, INFINITY}) {
        EXPECT_EQ(xW_p(far), 30000);
        EXPECT_EQ(xW_p(-far), -30000);
        EXPECT_EQ(yW_ps(far), 100000);
        EXPECT_EQ(yW_ps(-far), -100000);
    }
    EXPECT_EQ(xW_p(NAN), -30000);
    const Glim flat = {5, 5, 5, 5};
    gset_win(0, &flat);
    gset_vp(0, &flat);
    EXPECT_LE(std::abs(xW_ps(3)), 100000);
    Gxrect pixels;
    gget_xviewport(&pixels);
    Grectangle units;
    gget_gviewport(&units);
    EXPECT_EQ(close(), 0);
}

TEST_F(Tran, TransformationNumbersAreChecked) {
    ASSERT_EQ(open(dir.file("out.ps")), 0);
    const auto output = test::capture([] { EXPECT_EQ(gsel_norm_tran(6), -1); });
    EXPECT_EQ(output.err, "gsel_norm_tran: invalid transformation number: 6\n\n");
    test::capture([] { EXPECT_EQ(gsel_norm_tran(-1), -1); });
    Gint error = 0;
    Gtran tran;
    EXPECT_EQ(ginq_norm_tran(6, &error, &tran), -1);
    EXPECT_EQ(error, -1);
    gsel_norm_tran(5);
    Gint current = 0;
    ginq_cur_norm_tran_num(&error, &current);
    EXPECT_EQ(current, 5);
    Gdsp_size size;
    ginq_disp_space_size(GWS_PS, &error, &size);
    EXPECT_EQ(size.ras_size.x_coord, 756);
    EXPECT_EQ(size.coord_size.y, 575);
}

TEST_F(Tran, PrimitivesNeedAWorkstation) {
    gopen_gks(nullptr, 10000);
    const Gpt points[2] = {};
    const auto output = test::capture([&] {
        EXPECT_EQ(gpolyline(2, points), -1);
        EXPECT_EQ(gset_linewidth(2), -1);
        EXPECT_EQ(gset_colr_rep(1, 2, nullptr), -1);
        EXPECT_EQ(gclose_ws(1), -1);
    });
    EXPECT_EQ(output.err,
              "gpolyline: GKS not opened\n\ngset_linewidth: GKS not opened\n\ngset_colr_rep: GKS not opened\n\n");
    gclose_gks();
    EXPECT_EQ(test::capture([&] { gpolyline(2, points); }).err, "") << "reports need the error channel";
}

TEST_F(Tran, BadAttributesAreReportedAndLeaveTheOldOnes) {
    ASSERT_EQ(open(dir.file("out.ps")), 0);
    test::set_color(1, 0, 0, 0);
    struct {
        int (*set)();
        const char* report;
    } const cases[] = {
        {[] { return gset_linewidth(-1); }, "gset_linewidth: invalid line width: -1.000000\n\n"},
        {[] { return gset_linetype(-2); }, "gset_linetype: invalid line type: -2\n\n"},
        {[] { return gset_marker_size(-3); }, "gset_marker_size: invalid marker size: -3.000000\n\n"},
        {[] { return gset_marker_width(-4); }, "gset_marker_width: invalid marker width: -4.000000\n\n"},
        {[] { return gset_fill_style_ind(20); }, "gset_fill_style_ind: invalid style index: 20\n\n"},
        {[] { return gset_line_colr_ind(257); }, "gset_line_colr_ind: invalid color index: 257\n\n"},
        {[] { return gset_fill_colr_ind(77); }, "gset_fill_colr_ind: color index not initialized\n\n"},
        {[] {
             const Gpt one = {};
             return gpolyline(1, &one);
         },
         "gpolyline: invalid number of points: 1\n\n"},
    };
    for (const auto& c : cases) {
        const auto output = test::capture([&] { EXPECT_EQ(c.set(), -1); });
        EXPECT_EQ(output.err, c.report);
    }
    EXPECT_EQ(gget_fill_colr(), 1);
    EXPECT_EQ(gget_line_colr(), 1);
    EXPECT_EQ(gset_line_colr_ind(504), 0);
    test::set_color(504, 1, 0, 0);
    EXPECT_EQ(gget_color_ind(504), -1) << "pseudo-colours have no entry";
}

TEST_F(Tran, ColoursFindTheLaterOfEqualEntries) {
    ASSERT_EQ(open(dir.file("out.ps")), 0);
    for (int i = 0; i < 10; ++i) test::set_color(i, 0.1F * static_cast<float>(i), 0, 0);
    test::set_color(7, 0.3F, 0, 0);
    test::set_color(9, 1, 1, 1);
    galloc_colr(-1, 0.3F, 0.001F, 0);
    float red = 0;
    float grn = 0;
    float blu = 0;
    gget_color_rgb(7, &red, &grn, &blu);
    EXPECT_FLOAT_EQ(grn, 0.001F);
    EXPECT_EQ(gget_max_colr(), 9);
    for (int i = 0; i < 400; ++i)
        galloc_colr(-1, 0.05F * static_cast<float>(i / 20), 0.05F * static_cast<float>(i % 20), 1);
    EXPECT_EQ(gget_max_colr(), 255) << "the background's entry is never given away";
    int r = 0;
    int g = 0;
    int b = 0;
    EXPECT_EQ(gget_color_rgb256(-1, &r, &g, &b), 0);
    EXPECT_EQ(r + g + b, 3 * 255) << "paper is white";
}

}  // namespace
}  // namespace zav
