// Markers and their attributes.

#include <algorithm>
#include <array>
#include <vector>

#include "gks/cairo/gks_cairo.h"
#include "gks/gks.h"
#include "gks/gks_colr.h"
#include "gks/gks_obj.h"
#include "gks/gks_text.h"
#include "gks/gks_tran.h"
#include "gks/hpgl/gks_hpgl.h"
#include "gks/meta/gks_meta.h"
#include "gks/ps/gks_ps.h"
#include "gks/x11/gks_x11.h"

namespace zav {
namespace {

struct State {
    int marker_color = 1;
    int marker_type = 1;
    float marker_width = 1;
    float marker_height = 10;
};
State state;

// Device units for one unit of marker height.
constexpr float PIXELS_PER_HEIGHT = 10.0F;
constexpr float POINTS_PER_TENTH = 0.72F;
constexpr float PLOTTER_PER_TENTH = 10.15F;

constexpr double LARGEST_SIZE = 200000;  // device units; beyond any device's area

/// Sides of a circle's polygon in halves of its size, clockwise on a display from the left.
constexpr std::array<Gpt, 13> CIRCLE = {{{-1, 0},
                                         {-0.866F, -0.5F},
                                         {-0.5F, -0.866F},
                                         {0, -1},
                                         {0.5F, -0.866F},
                                         {0.866F, -0.5F},
                                         {1, 0},
                                         {0.866F, 0.5F},
                                         {0.5F, 0.866F},
                                         {0, 1},
                                         {-0.5F, 0.866F},
                                         {-0.866F, 0.5F},
                                         {-1, 0}}};

short to_short(float value) { return static_cast<short>(std::clamp(gtruncate(value), -32768, 32767)); }

void draw_on_display(const std::vector<Gpt>& pts) {
    std::vector<Gxpoint> points;
    points.reserve(pts.size());
    for (const Gpt& p : pts) points.push_back({to_short(p.x), to_short(p.y)});
    gx11_lines(Gx_context::marker, static_cast<Gint>(points.size()), points.data());
}

void draw_postscript(const std::vector<Gpt>& pts) {
    gps_printf("np\n");
    gps_move_abs(pts[0].x, pts[0].y);
    for (std::size_t i = 1; i < pts.size(); ++i) gps_line_abs(pts[i].x, pts[i].y);
    gps_printf("stroke\n");
}

void draw_hpgl(const std::vector<Gpt>& pts) {
    ghpgl_move_abs(pts[0].x, pts[0].y);
    for (std::size_t i = 1; i < pts.size(); ++i) ghpgl_line_abs(pts[i].x, pts[i].y);
    ghpgl_printf("\n");
}

/// A single point is drawn as a dot of the pen.
void draw_picture(const std::vector<Gpt>& pts) {
    gcairo_move_abs(pts[0].x, pts[0].y);
    for (const Gpt& p : pts) gcairo_line_abs(p.x, p.y);
    gcairo_stroke_round();
}

/// One stroke of a marker, in device units.
void mark_draw(const std::vector<Gpt>& pts) {
    switch (gget_win_type()) {
        case GWS_WIN:
        case GWS_PIX:
            draw_on_display(pts);
            break;
        case GWS_PS:
            draw_postscript(pts);
            break;
        case GWS_HPGL:
            draw_hpgl(pts);
            break;
        case GWS_CAIRO:
            draw_picture(pts);
            break;
        default:
            break;
    }
}

void draw_circle(float x, float y, float h) {
    std::vector<Gpt> pts;
    pts.reserve(CIRCLE.size());
    for (const Gpt& c : CIRCLE) pts.push_back({x + c.x * h, y + c.y * h});
    mark_draw(pts);
}

/// The figure of the present type about (x, y), in device units. Its triangles turn over between a display, where y
/// points down, and paper.
void draw_marker(float x, float y, float size) {
    const auto h = static_cast<float>(gtruncate(std::min<double>(size / 2, LARGEST_SIZE)));
    switch (state.marker_type) {
        case 1:
            mark_draw({{x, y}, {x + 1, y}, {x + 1, y + 1}, {x, y + 1}, {x, y}});
            break;
        case 2:
            mark_draw({{x - h, y}, {x + h, y}});
            mark_draw({{x, y + h}, {x, y - h}});
            break;
        case 3:
            mark_draw({{x - h, y}, {x + h, y}});
            mark_draw({{x - h, y - h}, {x + h, y + h}});
            mark_draw({{x, y + h}, {x, y - h}});
            mark_draw({{x + h, y - h}, {x - h, y + h}});
            break;
        case 4:
            draw_circle(x, y, h);
            break;
        case 5:
            mark_draw({{x - h, y - h}, {x + h, y + h}});
            mark_draw({{x + h, y - h}, {x - h, y + h}});
            break;
        case 6:
            mark_draw({{x - h, y + h}, {x + h, y + h}, {x + h, y - h}, {x - h, y - h}, {x - h, y + h}});
            break;
        case 7:
            mark_draw({{x - h, y + h}, {x + h, y + h}, {x, y - h}, {x - h, y + h}});
            break;
        case 8:
            mark_draw({{x, y}});
            break;
        case 9:
            mark_draw({{x - h, y - h}, {x + h, y - h}, {x, y + h}, {x - h, y - h}});
            break;
        default:
            break;
    }
}

void draw_shadow(float x, float y, float size) {
    const int depth = gget_font_drop();
    if (depth <= 0) return;
    gx11_foreground_black(Gx_context::marker);
    for (int k = 0; k < depth; ++k) draw_marker(x + static_cast<float>(k), y + static_cast<float>(k), size);
    gx11_foreground(Gx_context::marker, state.marker_color);
}

void draw_all_on_display(Gint num_pt, const Gpt* array_pt) {
    const float size = PIXELS_PER_HEIGHT * state.marker_height;
    for (int i = 0; i < num_pt; ++i) {
        const float x = xW_p(array_pt[i].x) + 0.5F;
        const float y = yW_p(array_pt[i].y) + 0.5F;
        draw_shadow(x, y, size);
        draw_marker(x, y, size);
    }
}

void draw_all_on_paper(Gint num_pt, const Gpt* array_pt, float size) {
    for (int i = 0; i < num_pt; ++i) draw_marker(xW_ps(array_pt[i].x), yW_ps(array_pt[i].y), size);
}

void write_metafile(Gint num_pt, const Gpt* array_pt) {
    gmeta_printf("PM %d ", num_pt);
    gmeta_points(num_pt, array_pt, true);
    if (num_pt % 4 != 0) gmeta_printf("\n");
}

}  // namespace

void greset_marker() { state = State{}; }

void ginit_marker(int type) {
    if (type == 0 || type == 1) gx11_init_context(Gx_context::marker, type);
}

int gpolymarker(Gint num_pt, const Gpt* array_pt) {
    if (!gcheck_open("gpolyline")) return -1;  // reported under the name of the line primitive
    const int type = gget_win_type();
    if (gtype_is_META(type)) {
        write_metafile(num_pt, array_pt);
        return 0;
    }
    gnew_obj(GOBJ_MARKER, num_pt, static_cast<std::size_t>(std::max(num_pt, 0)) * sizeof(Gpt), array_pt);
    switch (type) {
        case GWS_WIN:
        case GWS_PIX:
            draw_all_on_display(num_pt, array_pt);
            break;
        case GWS_PS:
            gps_printf("%%%%PM:%d\n", num_pt);
            gps_set_width(state.marker_color, state.marker_width);
            gps_set_color(state.marker_color);
            gps_set_type(1);
            draw_all_on_paper(num_pt, array_pt, POINTS_PER_TENTH * (10 * state.marker_height));
            break;
        case GWS_HPGL:
            ghpgl_set_width(state.marker_color, state.marker_width);
            ghpgl_set_color(state.marker_color);
            ghpgl_set_type(1);
            draw_all_on_paper(num_pt, array_pt, PLOTTER_PER_TENTH * (10 * state.marker_height));
            break;
        case GWS_CAIRO:
            gcairo_set_pen(state.marker_color, state.marker_width, 1);
            draw_all_on_paper(num_pt, array_pt, POINTS_PER_TENTH * (10 * state.marker_height));
            break;
        default:
            break;
    }
    return 0;
}

int gset_marker_colr_ind(Gint color) {
    if (!gcheck_open("gset_marker_colr_ind")) return -1;
    if (!gcheck_color_set("gset_marker_colr_ind", &color)) return -1;
    if (color == state.marker_color) return 0;
    state.marker_color = color;
    if (gtype_is_META(gget_win_type())) {
        gmeta_printf("PM_CLR %d\n", color);
        return 0;
    }
    gnew_obj(GOBJ_MARKER_COLR, color, 0, nullptr);
    gx11_foreground(Gx_context::marker, color);
    return 0;
}

int gset_marker_size(Gfloat size) {
    if (!gcheck_open("gset_marker_size")) return -1;
    if (!gis_size(size)) {
        gerr_printf("gset_marker_size", "invalid marker size: %f\n", size);
        return -1;
    }
    if (size == state.marker_height) return 0;
    state.marker_height = size;
    if (gtype_is_META(gget_win_type())) {
        gmeta_printf("PM_SIZE %f\n", size);
        return 0;
    }
    gnew_obj(GOBJ_MARKER_SIZE, 1, sizeof(float), &size);
    return 0;
}

int gset_marker_type(Gint type) {
    if (!gcheck_open("gset_marker_type")) return -1;
    if (type == state.marker_type) return 0;
    state.marker_type = type;
    if (gtype_is_META(gget_win_type())) {
        gmeta_printf("PM_TYPE %d\n", type);
        return 0;
    }
    gnew_obj(GOBJ_MARKER_TYPE, type, 0, nullptr);
    return 0;
}

int gset_marker_width(Gfloat width) {
    if (!gcheck_open("gset_marker_width")) return -1;
    if (!gis_size(width)) {
        gerr_printf("gset_marker_width", "invalid marker width: %f\n", width);
        return -1;
    }
    if (width == 0 && gtype_is_PAGE(gget_win_type())) width = 1;
    if (width == state.marker_width) return 0;
    state.marker_width = width;
    if (gtype_is_META(gget_win_type())) {
        gmeta_printf("PM_WDTH %f\n", width);
        return 0;
    }
    gnew_obj(GOBJ_MARKER_WIDTH, 1, sizeof(float), &width);
    gx11_line_width(Gx_context::marker, gtruncate(width));
    return 0;
}

int gget_marker_colr() { return state.marker_color; }

}  // namespace zav
