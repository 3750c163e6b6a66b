#include "gks/gks_tran.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "gks/cairo/gks_cairo.h"
#include "gks/gks.h"
#include "gks/gks_obj.h"
#include "gks/gks_ws.h"
#include "gks/hpgl/gks_hpgl.h"
#include "gks/meta/gks_meta.h"
#include "gks/ps/gks_ps.h"
#include "gks/x11/gks_x11.h"

namespace zav {
namespace {

constexpr float PIXEL_LIMIT = 30000.0F;    // within the 16 bits of a pixel coordinate
constexpr float OUTPUT_LIMIT = 100000.0F;  // output units
constexpr float CLIP_MARGIN = 0.1F;        // output units around a viewport on paper

struct State {
    std::array<Gcoords, GTRAN_COUNT> wn{};  // window of each transformation
    std::array<Gcoords, GTRAN_COUNT> vp{};  // viewport of each
    int cur_trans = 0;
    Gcoords cur_wn, cur_vp;
    Gtransform wn_vp;     // viewport over window
    Gcoords wkwn;         // workstation window, NDC
    Gcoords wkvp;         // workstation viewport, device units
    Gcoords plt;          // device rectangle in use
    Gtransform wkwn_plt;  // device over NDC
    Gxrect clip_rect;
    Gtransform mult;
};
State state;

bool in_table(int tran) { return tran >= 0 && tran < GTRAN_COUNT; }

Gcoords coords(float x_min, float x_max, float y_min, float y_max) {
    return {x_min, y_min, x_max, y_max, x_max - x_min, y_max - y_min};
}

Gcoords coords(const Glim& lim) { return coords(lim.x_min, lim.x_max, lim.y_min, lim.y_max); }

Glim limits(const Gcoords& c) { return {c.x_min, c.x_max, c.y_min, c.y_max}; }

// Written so that what isn't a number ends at the low limit.
float clamp_to(float value, float limit) {
    if (!(value > -limit)) return -limit;
    return value < limit ? value : limit;
}

/// The same scale in x and y; the rectangle is anchored at the low corner.
void fit_plot() {
    const Gcoords& wk = state.wkvp;
    int off_x = 0;
    int off_y = 0;
    gget_win_offset(&off_x, &off_y);
    Gcoords& plt = state.plt;
    plt = wk;
    plt.x_min = static_cast<float>(off_x) + wk.x_min;
    plt.y_min = static_cast<float>(off_y) + wk.y_min;
    if (wk.x_ext / state.wkwn.x_ext > wk.y_ext / state.wkwn.y_ext) {
        plt.x_ext = state.wkwn.x_ext * wk.y_ext / state.wkwn.y_ext;
        plt.x_max = plt.x_ext + wk.x_min;
    } else {
        plt.y_ext = state.wkwn.y_ext * wk.x_ext / state.wkwn.x_ext;
        plt.y_max = plt.y_ext + wk.y_min;
    }
}

void scale_window() {
    state.wn_vp.x = state.cur_vp.x_ext / state.cur_wn.x_ext;
    state.wn_vp.y = state.cur_vp.y_ext / state.cur_wn.y_ext;
}

void scale_device() {
    state.wkwn_plt.x = state.plt.x_ext / state.wkwn.x_ext;
    state.wkwn_plt.y = state.plt.y_ext / state.wkwn.y_ext;
}

void clip_printed() {
    const float left = xNDC_ps(state.cur_vp.x_min);
    const float right = xNDC_ps(state.cur_vp.x_max);
    const float bottom = yNDC_ps(state.cur_vp.y_min);
    const float top = yNDC_ps(state.cur_vp.y_max);
    const int type = gget_win_type();
    if (gtype_is_META(type)) {
        if (gmeta_get_type() != GMETA_CGM) return;
        if (gcgm_control(3, 5, 8, 0) != 0) return;
        gcgm_ps_point(left, bottom);
        gcgm_ps_point(right, top);
    } else if (gtype_is_PS(type)) {
        gps_clip(left - CLIP_MARGIN, bottom - CLIP_MARGIN, right + CLIP_MARGIN, top + CLIP_MARGIN);
    } else if (gtype_is_CAIRO(type)) {
        gcairo_clip(left - CLIP_MARGIN, bottom - CLIP_MARGIN, right + CLIP_MARGIN, top + CLIP_MARGIN);
    } else if (gtype_is_HPGL(type)) {
        ghpgl_clip(left - CLIP_MARGIN, bottom - CLIP_MARGIN, right + CLIP_MARGIN, top + CLIP_MARGIN);
    }
}

}  // namespace

int gtruncate(double value) {
    if (std::isnan(value)) return 0;
    constexpr double low = std::numeric_limits<int>::min();
    constexpr double high = std::numeric_limits<int>::max();
    return static_cast<int>(std::clamp(value, low, high));
}

short gpixel(float value) { return static_cast<short>(value + 0.5F); }

bool gis_size(float value) { return std::isfinite(value) && value >= 0; }

void gtran_refresh() {
    fit_plot();
    scale_window();
    scale_device();
}

void gtran_clip() {
    gget_xviewport(&state.clip_rect);
    if (gtype_is_WIN_PIX(gget_win_type())) {
        gx11_clip(state.clip_rect);
    } else {
        clip_printed();
    }
}

void ginit_tran(int type) {
    const bool size_only = type == 10;
    if (!size_only) {
        state.wkwn = Gcoords{};
        state.wn.fill(Gcoords{});
        state.vp.fill(Gcoords{});
    }
    int width = 0;
    int height = 0;
    gget_win_size(&width, &height);
    state.wkvp = coords(0, static_cast<float>(width) - 1, 0, static_cast<float>(height) - 1);
    if (!size_only) {
        state.cur_trans = 0;
        state.cur_vp = state.vp[0];
        state.cur_wn = state.wn[0];
    }
    gtran_refresh();
    if (gtype_is_WIN_PIX(gget_win_type())) {
        gget_xviewport(&state.clip_rect);  // the contexts take it when they are set up
    } else {
        gtran_clip();
    }
}

void greset_clip() {}

void gset_tran_mult(float x, float y) { state.mult = {x, y}; }

int gset_ws_win(Gint ws_id, const Glim* ws_win_lim) {
    const Glim& l = *ws_win_lim;
    if (gtype_is_META(gget_win_type())) {
        gmeta_printf("WS_WIN %d %f %f %f %f\n", ws_id, l.x_min, l.y_min, l.x_max, l.y_max);
    }
    gnew_obj(GOBJ_WS_WIN, ws_id, sizeof(Glim), &l);
    state.wkwn = coords(l);
    gtran_refresh();
    gtran_clip();
    return 0;
}

int gset_ws_vp(Gint ws_id, const Glim* ws_vp_lim) {
    const Glim& l = *ws_vp_lim;
    if (gtype_is_META(gget_win_type())) {
        gmeta_printf("WS_VP %d %f %f %f %f\n", ws_id, l.x_min, l.y_min, l.x_max, l.y_max);
    }
    gnew_obj(GOBJ_WS_VP, ws_id, sizeof(Glim), &l);
    state.wkvp = coords(l);
    gtran_refresh();
    gtran_clip();
    return 0;
}

int gset_win(Gint tran_num, const Glim* win_lim) {
    if (!in_table(tran_num)) {
        gerr_printf("gset_win", "invalid transformation number: %d\n", tran_num);
        return -1;
    }
    const Glim& l = *win_lim;
    if (gtype_is_META(gget_win_type())) {
        gmeta_printf("WIN %d %f %f %f %f\n", tran_num, l.x_min, l.y_min, l.x_max, l.y_max);
    }
    gnew_obj(GOBJ_WIN, tran_num, sizeof(Glim), &l);
    state.wn[tran_num] = coords(l);
    if (tran_num == state.cur_trans) {
        state.cur_wn = state.wn[tran_num];
        scale_window();
    }
    return 0;
}

int gset_vp(Gint tran_num, const Glim* vp_lim) {
    if (!in_table(tran_num)) {
        gerr_printf("gset_vp", "invalid transformation number: %d\n", tran_num);
        return -1;
    }
    const Glim& l = *vp_lim;
    if (gtype_is_META(gget_win_type())) {
        gmeta_printf("VP %d %f %f %f %f\n", tran_num, l.x_min, l.y_min, l.x_max, l.y_max);
    }
    gnew_obj(GOBJ_VP, tran_num, sizeof(Glim), &l);
    state.vp[tran_num] = coords(l);
    if (tran_num == state.cur_trans) {
        state.cur_vp = state.vp[tran_num];
        scale_window();
        gtran_clip();
    }
    return 0;
}

int gsel_norm_tran(Gint tran_num) {
    if (!in_table(tran_num)) {
        gerr_printf("gsel_norm_tran", "invalid transformation number: %d\n", tran_num);
        return -1;
    }
    if (tran_num == state.cur_trans) return 0;
    if (gtype_is_META(gget_win_type())) gmeta_printf("TR %d\n", tran_num);
    gnew_obj(GOBJ_TRAN, tran_num, 0, nullptr);
    state.cur_trans = tran_num;
    state.cur_vp = state.vp[tran_num];
    state.cur_wn = state.wn[tran_num];
    scale_window();
    gtran_clip();
    return 0;
}

int ginq_norm_tran(Gint norm_tran, Gint* err_ind, Gtran* tran) {
    *err_ind = in_table(norm_tran) ? 0 : -1;
    if (*err_ind != 0) return -1;
    tran->win = limits(state.wn[norm_tran]);
    tran->vp = limits(state.vp[norm_tran]);
    return 0;
}

int ginq_cur_norm_tran_num(Gint* err_ind, Gint* norm_tran) {
    *err_ind = 0;
    *norm_tran = state.cur_trans;
    return 0;
}

int ginq_disp_space_size(Gws_type, Gint* err_ind, Gdsp_size* dsp_size) {
    int width = 0;
    int height = 0;
    gget_win_size(&width, &height);
    *err_ind = 0;
    dsp_size->coord_units = GOTHER_UNIT;
    dsp_size->coord_size = {static_cast<float>(width) - 1, static_cast<float>(height) - 1};
    dsp_size->ras_size = {width, height};
    return 0;
}

int gpts_in_win(Gint num_pt, const Gpt* array_pt) {
    if (num_pt < 1) return 0;
    Glim box = {array_pt[0].x, array_pt[0].x, array_pt[0].y, array_pt[0].y};
    for (int i = 1; i < num_pt; ++i) {
        box.x_min = std::min(box.x_min, array_pt[i].x);
        box.x_max = std::max(box.x_max, array_pt[i].x);
        box.y_min = std::min(box.y_min, array_pt[i].y);
        box.y_max = std::max(box.y_max, array_pt[i].y);
    }
    // A window may run downward or leftward.
    const auto [x_low, x_high] = std::minmax(state.cur_wn.x_min, state.cur_wn.x_max);
    const auto [y_low, y_high] = std::minmax(state.cur_wn.y_min, state.cur_wn.y_max);
    return box.x_max >= x_low && box.x_min <= x_high && box.y_max >= y_low && box.y_min <= y_high;
}

void gget_xviewport(Gxrect* clip_rect) {
    const int x = static_cast<int>(xNDC_p(state.cur_vp.x_min) + 0.5F);
    const int y = static_cast<int>(yNDC_p(state.cur_vp.y_max) + 0.5F);
    const int width = static_cast<int>(xNDC_p(state.cur_vp.x_max) - static_cast<float>(x) + 1.5F);
    const int height = static_cast<int>(yNDC_p(state.cur_vp.y_min) - static_cast<float>(y) + 1.5F);
    clip_rect->x = static_cast<short>(x);
    clip_rect->y = static_cast<short>(y);
    clip_rect->width = static_cast<unsigned short>(std::max(width, 0));
    clip_rect->height = static_cast<unsigned short>(std::max(height, 0));
}

void gget_gviewport(Grectangle* clip_rect) {
    Gxrect pixels;
    gget_xviewport(&pixels);
    *clip_rect = {pixels.x, pixels.y, pixels.width, pixels.height};
    const int type = gget_win_type();
    if (!gtype_is_PAGE(type)) return;
    const float left = xNDC_ps(state.cur_vp.x_min);
    const float bottom = yNDC_ps(state.cur_vp.y_min);
    clip_rect->x = static_cast<int>(left);
    clip_rect->y = static_cast<int>(bottom);
    clip_rect->width = static_cast<int>(xNDC_ps(state.cur_vp.x_max) - left + 1.5F);
    clip_rect->height = static_cast<int>(yNDC_ps(state.cur_vp.y_max) - bottom + 1.5F);
}

float xNDC_p(float x) { return clamp_to(state.plt.x_min + (x - state.wkwn.x_min) * state.wkwn_plt.x, PIXEL_LIMIT); }

float yNDC_p(float y) { return clamp_to(state.plt.y_min + (state.wkwn.y_max - y) * state.wkwn_plt.y, PIXEL_LIMIT); }

float xNDC_ps(float x) { return clamp_to(state.plt.x_min + (x - state.wkwn.x_min) * state.wkwn_plt.x, OUTPUT_LIMIT); }

float yNDC_ps(float y) { return clamp_to(state.plt.y_min + (y - state.wkwn.y_min) * state.wkwn_plt.y, OUTPUT_LIMIT); }

float xW_NDC(float x) { return state.cur_vp.x_min + (x - state.cur_wn.x_min) * state.wn_vp.x; }

float yW_NDC(float y) { return state.cur_vp.y_min + (y - state.cur_wn.y_min) * state.wn_vp.y; }

float xW_p(float x) { return xNDC_p(xW_NDC(x)); }

float yW_p(float y) { return yNDC_p(yW_NDC(y)); }

float xW_ps(float x) { return xNDC_ps(xW_NDC(x)); }

float yW_ps(float y) { return yNDC_ps(yW_NDC(y)); }

float xp_W(float x) {
    const float ndc = state.wkwn.x_min + (x - state.plt.x_min) / state.wkwn_plt.x;
    return state.cur_wn.x_min + (ndc - state.cur_vp.x_min) / state.wn_vp.x;
}

float yp_W(float y) {
    const float ndc = state.wkwn.y_max - (y - state.plt.y_min) / state.wkwn_plt.y;
    return state.cur_wn.y_min + (ndc - state.cur_vp.y_min) / state.wn_vp.y;
}

float xW_trans(float x, int t1, int t2) {
    if (!in_table(t1) || !in_table(t2)) return x;
    const Gcoords& w1 = state.wn[t1];
    const Gcoords& v1 = state.vp[t1];
    const Gcoords& w2 = state.wn[t2];
    const Gcoords& v2 = state.vp[t2];
    const float ndc = v1.x_min + (x - w1.x_min) * v1.x_ext / w1.x_ext;
    return w2.x_min + (ndc - v2.x_min) * w2.x_ext / v2.x_ext;
}

float yW_trans(float y, int t1, int t2) {
    if (!in_table(t1) || !in_table(t2)) return y;
    const Gcoords& w1 = state.wn[t1];
    const Gcoords& v1 = state.vp[t1];
    const Gcoords& w2 = state.wn[t2];
    const Gcoords& v2 = state.vp[t2];
    const float ndc = v1.y_min + (y - w1.y_min) * v1.y_ext / w1.y_ext;
    return w2.y_min + (ndc - v2.y_min) * w2.y_ext / v2.y_ext;
}

}  // namespace zav
