// Drawing on a picture: paths, pens, fills, clips.

#include "gks/cairo/gks_cairo.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "gks/cairo/gks_cairo_pen.h"
#include "gks/cairo/gks_cairo_state.h"
#include "gks/gks_colr.h"
#include "gks/gks_tran.h"
#include "gks/ps/gks_ps.h"

namespace zav {
namespace {

constexpr double FAINTEST_LINE = 0.5;  // pixels; a thinner line of a raster couldn't be seen
constexpr double SEAM = 0.5;           // points
constexpr int PATTERN_SIZE = 8;
constexpr double PATTERN_POINTS = 1;

struct Color {
    double red = 0, grn = 0, blu = 0;
};

/// Lengths of the dashes and gaps of a line type, in points.
struct Dashes {
    int count;
    std::array<double, 4> lengths;
};
constexpr std::array<Dashes, 6> DASHES = {{{0, {}}, {0, {}}, {1, {6}}, {2, {3, 6}}, {4, {6, 6, 3, 6}}, {1, {2}}}};

struct State {
    Color line_color;
    double line_width = -1;  ///< points, as the page has it
    int line_type = -1;
};
State state;

/// Pixels that a raster has for a point.
double picture_scale() { return gcairo_page_layout().scale / gcairo_page_layout().fineness; }

struct Picture_point {
    double x, y;
};
/// The place of output units on a raster.
Picture_point picture_point(float x, float y) {
    const Gpicture_layout& layout = gcairo_page_layout();
    const double scale = picture_scale();
    return {(x + layout.margin) * scale, (layout.page_height - layout.margin - y) * scale};
}

bool is_raster() { return gcairo_picture().format == Gpicture_format::png; }

Color gray(double level) { return {level, level, level}; }

/// A colour of lines, which are black in grey print.
Color line_color(int color) {
    float level = 0;
    if (gis_pseudo_gray(color, &level)) return gray(level);
    if (gcairo_picture().gray) return gray(0);
    float red = 0;
    float grn = 0;
    float blu = 0;
    gget_color_rgb(color, &red, &grn, &blu);
    return {red, grn, blu};
}

Color fill_color(int color) {
    float level = 0;
    if (!gcairo_picture().gray || gis_pseudo_gray(color, &level)) return line_color(color);
    if (gget_fill_print_solid()) return gray(0);
    return gray(color == GCOLR_BACK ? 1 : gps_get_gray(color));
}

void set_color(cairo_t* page, const Color& color) { cairo_set_source_rgb(page, color.red, color.grn, color.blu); }

/// Fills the path with the present source. Areas that meet take a raster's pixel by its middle, so that none is left
/// between them; where a viewer smooths edges they overlap by a hair.
void fill_path(cairo_t* page) {
    if (is_raster()) {
        cairo_set_antialias(page, CAIRO_ANTIALIAS_NONE);
        cairo_fill(page);
        return;
    }
    cairo_fill_preserve(page);
    cairo_set_line_width(page, SEAM);
    cairo_set_line_join(page, CAIRO_LINE_JOIN_BEVEL);
    cairo_set_dash(page, nullptr, 0, 0);
    cairo_stroke(page);
    gcairo_reset_pen();
}

/// Edge of a pattern's bit in points; whole pixels of a raster.
double pattern_bit() {
    if (!is_raster()) return PATTERN_POINTS;
    const Gpicture_layout& layout = gcairo_page_layout();
    const double pixel = layout.fineness / layout.scale;
    return std::max(1.0, std::round(PATTERN_POINTS / pixel)) * pixel;
}

/// A tile with the bits of a pattern in a colour, a unit wide each.
cairo_pattern_t* make_pattern(const Color& color, int pattern) {
    const cairo_rectangle_t size = {0, 0, PATTERN_SIZE, PATTERN_SIZE};
    cairo_surface_t* tile = cairo_recording_surface_create(CAIRO_CONTENT_COLOR_ALPHA, &size);
    cairo_t* context = cairo_create(tile);
    set_color(context, color);
    for (int y = 0; y < PATTERN_SIZE; ++y) {
        for (int x = 0; x < PATTERN_SIZE; ++x) {
            if (gfill_test(pattern, x, y)) cairo_rectangle(context, x, y, 1, 1);
        }
    }
    cairo_fill(context);
    cairo_destroy(context);
    cairo_pattern_t* source = cairo_pattern_create_for_surface(tile);
    cairo_surface_destroy(tile);
    cairo_pattern_set_extend(source, CAIRO_EXTEND_REPEAT);
    cairo_pattern_set_filter(source, CAIRO_FILTER_NEAREST);
    return source;
}

const Dashes& dashes_of(int type) {
    return DASHES[type > 0 && type < static_cast<int>(DASHES.size()) ? static_cast<std::size_t>(type) : 1];
}

/// Strokes the path of a raster.
void stroke_pixels(bool round) {
    const double scale = picture_scale();
    Gcairo_brush brush{
        state.line_color.red, state.line_color.grn, state.line_color.blu, state.line_width * scale, round, {}};
    const Dashes& dashes = dashes_of(state.line_type);
    for (int i = 0; i < dashes.count; ++i) brush.dashes.push_back(dashes.lengths[static_cast<std::size_t>(i)] * scale);
    gcairo_pen_stroke(brush);
}

void stroke_path(cairo_line_cap_t cap, cairo_line_join_t join) {
    cairo_t* page = gcairo_page();
    if (page == nullptr) return;
    if (is_raster()) {
        stroke_pixels(cap == CAIRO_LINE_CAP_ROUND);
        return;
    }
    cairo_set_antialias(page, CAIRO_ANTIALIAS_DEFAULT);
    cairo_set_line_cap(page, cap);
    cairo_set_line_join(page, join);
    cairo_stroke(page);
}

}  // namespace

void gcairo_reset_pen() { state = State{}; }

void gcairo_move(float x, float y) { gcairo_move_abs(xW_ps(x), yW_ps(y)); }
void gcairo_line(float x, float y) { gcairo_line_abs(xW_ps(x), yW_ps(y)); }

void gcairo_move_abs(float x, float y) {
    cairo_t* page = gcairo_page();
    if (page == nullptr) return;
    if (is_raster()) {
        const Picture_point point = picture_point(x, y);
        gcairo_pen_move(point.x, point.y);
    } else {
        cairo_move_to(page, x, y);
    }
}

void gcairo_line_abs(float x, float y) {
    cairo_t* page = gcairo_page();
    if (page == nullptr) return;
    if (is_raster()) {
        const Picture_point point = picture_point(x, y);
        gcairo_pen_line(point.x, point.y);
    } else {
        cairo_line_to(page, x, y);
    }
}

void gcairo_rings(Gint num_rings, const Gint* num_pt, const Gpt* array_pt) {
    cairo_t* page = gcairo_page();
    if (page == nullptr) return;
    for (int ring = 0; ring < num_rings; array_pt += num_pt[ring], ++ring) {
        for (int i = 0; i < num_pt[ring]; ++i) cairo_line_to(page, xW_ps(array_pt[i].x), yW_ps(array_pt[i].y));
        cairo_close_path(page);
        cairo_new_sub_path(page);
    }
}

void gcairo_set_pen(int color, float width, int type) {
    cairo_t* page = gcairo_page();
    if (page == nullptr) return;
    state.line_color = line_color(color);
    set_color(page, state.line_color);
    const Gpicture_layout& layout = gcairo_page_layout();
    const int factor = gpseudo_width(color);
    const double multiple = factor > 1 ? factor : gget_line_print_bold();
    double points = multiple * width * layout.base_width;
    if (is_raster()) points = std::max(points, FAINTEST_LINE * layout.fineness / layout.scale);
    if (points != state.line_width) {
        cairo_set_line_width(page, points);
        state.line_width = points;
    }
    if (type == state.line_type) return;
    state.line_type = type;
    const Dashes& dashes = dashes_of(type);
    cairo_set_dash(page, dashes.lengths.data(), dashes.count, 0);
}

void gcairo_stroke() { stroke_path(CAIRO_LINE_CAP_BUTT, CAIRO_LINE_JOIN_BEVEL); }
void gcairo_stroke_round() { stroke_path(CAIRO_LINE_CAP_ROUND, CAIRO_LINE_JOIN_ROUND); }

void gcairo_fill(int color) {
    cairo_t* page = gcairo_page();
    if (page == nullptr) return;
    set_color(page, fill_color(color));
    fill_path(page);
}

void gcairo_fill_pattern(int color, int pattern) {
    cairo_t* page = gcairo_page();
    if (page == nullptr) return;
    cairo_pattern_t* source = make_pattern(fill_color(color), pattern);
    // Tiles lie from the upper left corner of the page on, so that areas that meet continue each other's pattern.
    const Gpicture_layout& layout = gcairo_page_layout();
    const double bit = pattern_bit();
    cairo_matrix_t matrix;
    cairo_matrix_init(&matrix, 1 / bit, 0, 0, -1 / bit, layout.margin / bit,
                      (layout.page_height - layout.margin) / bit);
    cairo_pattern_set_matrix(source, &matrix);
    cairo_set_source(page, source);
    cairo_set_antialias(page, is_raster() ? CAIRO_ANTIALIAS_NONE : CAIRO_ANTIALIAS_DEFAULT);
    cairo_fill(page);
    cairo_pattern_destroy(source);
}

void gcairo_clear() {
    cairo_t* page = gcairo_page();
    if (page == nullptr) return;
    if (!gcairo_picture().transparent) {
        gcairo_fill(GCOLR_BACK);
        return;
    }
    cairo_set_antialias(page, CAIRO_ANTIALIAS_NONE);
    cairo_set_operator(page, CAIRO_OPERATOR_CLEAR);
    cairo_fill(page);
    cairo_set_operator(page, CAIRO_OPERATOR_OVER);
}

void gcairo_clip(float left, float bottom, float right, float top) {
    cairo_t* page = gcairo_page();
    if (page == nullptr) return;
    double x0 = left;
    double y0 = bottom;
    double x1 = right;
    double y1 = top;
    cairo_reset_clip(page);
    if (is_raster()) {  // whole pixels are clipped quickly
        cairo_user_to_device(page, &x0, &y0);
        cairo_user_to_device(page, &x1, &y1);
        x0 = std::floor(x0);
        x1 = std::ceil(x1);
        y0 = std::ceil(y0);
        y1 = std::floor(y1);
        gcairo_pen_clip(x0, y1, x1, y0);
        cairo_device_to_user(page, &x0, &y0);
        cairo_device_to_user(page, &x1, &y1);
    }
    cairo_new_path(page);
    cairo_rectangle(page, x0, y0, x1 - x0, y1 - y0);
    cairo_clip(page);
}

}  // namespace zav
