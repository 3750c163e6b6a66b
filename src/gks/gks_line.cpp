// Lines and their attributes.

#include "gks/cairo/gks_cairo.h"
#include "gks/gks.h"
#include "gks/gks_colr.h"
#include "gks/gks_obj.h"
#include "gks/gks_pixels.h"
#include "gks/gks_tran.h"
#include "gks/hpgl/gks_hpgl.h"
#include "gks/meta/gks_meta.h"
#include "gks/ps/gks_ps.h"
#include "gks/x11/gks_x11.h"

namespace zav {
namespace {

struct State {
    int line_color = 1;
    int line_type = 1;
    float line_width = 1;
    int print_bold = 1;  ///< factor on line widths on paper; outlives a reset, as it is set before a workstation opens
};
State state;

void draw_on_display(Gint num_pt, const Gpt* array_pt) {
    const Gpixels points(num_pt, array_pt);
    gx11_lines(Gx_context::line, num_pt, points.data());
}

void draw_postscript(Gint num_pt, const Gpt* array_pt) {
    gps_printf("%%%%PL:%d\n", num_pt);
    gps_set_width(state.line_color, state.line_width);
    gps_set_color(state.line_color);
    gps_set_type(state.line_type);
    gps_printf("np\n");
    gps_move(array_pt[0].x, array_pt[0].y);
    for (int i = 1; i < num_pt; ++i) gps_line(array_pt[i].x, array_pt[i].y);
    gps_printf("stroke\n");
}

void draw_hpgl(Gint num_pt, const Gpt* array_pt) {
    ghpgl_set_width(state.line_color, state.line_width);
    ghpgl_set_color(state.line_color);
    ghpgl_set_type(state.line_type);
    ghpgl_move(array_pt[0].x, array_pt[0].y);
    for (int i = 1; i < num_pt; ++i) {
        ghpgl_line(array_pt[i].x, array_pt[i].y);
        if (i % 10 == 9) ghpgl_printf("\n");
    }
    ghpgl_printf("\n");
}

void draw_picture(Gint num_pt, const Gpt* array_pt) {
    gcairo_set_pen(state.line_color, state.line_width, state.line_type);
    gcairo_move(array_pt[0].x, array_pt[0].y);
    for (int i = 1; i < num_pt; ++i) gcairo_line(array_pt[i].x, array_pt[i].y);
    gcairo_stroke();
}

int write_metafile(Gint num_pt, const Gpt* array_pt) {
    gmeta_printf("PL %d ", num_pt);
    gmeta_points(num_pt, array_pt, false);
    gmeta_printf("\n");
    if (gmeta_get_type() == GMETA_CGM) gcgm_polyline(num_pt, array_pt);
    return 1;
}

}  // namespace

void greset_line() {
    state.line_color = 1;
    state.line_type = 1;
    state.line_width = 1;
}

void ginit_line(int type) {
    if (type == 0 || type == 1) gx11_init_context(Gx_context::line, type);
}

int gpolyline(Gint num_pt, const Gpt* array_pt) {
    if (!gcheck_open("gpolyline")) return -1;
    if (num_pt < 2) {
        gerr_printf("gpolyline", "invalid number of points: %d\n", num_pt);
        return -1;
    }
    if (!gpts_in_win(num_pt, array_pt)) return 0;
    const int type = gget_win_type();
    if (type == GWS_META) return write_metafile(num_pt, array_pt);

    gnew_obj(GOBJ_LINE, num_pt, static_cast<std::size_t>(num_pt) * sizeof(Gpt), array_pt);
    switch (type) {
        case GWS_WIN:
        case GWS_PIX:
            draw_on_display(num_pt, array_pt);
            break;
        case GWS_PS:
            draw_postscript(num_pt, array_pt);
            break;
        case GWS_HPGL:
            draw_hpgl(num_pt, array_pt);
            break;
        case GWS_CAIRO:
            draw_picture(num_pt, array_pt);
            break;
        default:
            break;
    }
    return 0;
}

int gset_line_colr_ind(Gint color) {
    if (!gcheck_open("gset_line_colr_ind")) return -1;
    if (!gcheck_color_set("gset_line_colr_ind", &color)) return -1;
    if (color == state.line_color) return 0;
    state.line_color = color;
    if (gtype_is_META(gget_win_type())) {
        gmeta_printf("PL_CLR %d\n", color);
        return 0;
    }
    gnew_obj(GOBJ_LINE_COLR, color, 0, nullptr);
    gx11_foreground(Gx_context::line, color);
    return 0;
}

int gset_linewidth(Gfloat width) {
    if (!gcheck_open("gset_linewidth")) return -1;
    if (!gis_size(width)) {
        gerr_printf("gset_linewidth", "invalid line width: %f\n", width);
        return -1;
    }
    if (width == 0 && gtype_is_PAGE(gget_win_type())) width = 1;
    if (width == state.line_width) return 0;
    state.line_width = width;
    if (gtype_is_META(gget_win_type())) {
        gmeta_printf("PL_LW %f\n", width);
        return 0;
    }
    gnew_obj(GOBJ_LINE_WIDTH, 1, sizeof(float), &width);
    gx11_line_width(Gx_context::line, gtruncate(width));
    return 0;
}

int gset_linetype(Gint type) {
    if (!gcheck_open("gset_linetype")) return -1;
    if (type < 0) {
        gerr_printf("gset_linetype", "invalid line type: %d\n", type);
        return -1;
    }
    if (type == state.line_type) return 0;
    state.line_type = type;
    if (gtype_is_META(gget_win_type())) {
        gmeta_printf("PL_TYPE %d\n", type);
        return 0;
    }
    gnew_obj(GOBJ_LINE_TYPE, type, 0, nullptr);
    gx11_line_dashes(type);
    return 0;
}

int gset_line_print_bold(int bold) {
    state.print_bold = bold < 1 ? 1 : bold;
    gnew_obj(GOBJ_LINE_BOLD, state.print_bold, 0, nullptr);
    return 0;
}

int gget_line_print_bold() { return state.print_bold; }
int gget_line_colr() { return state.line_color; }

}  // namespace zav
