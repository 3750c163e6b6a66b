#include <array>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <numbers>

#include "frame/mess.h"
#include "frame/string.h"
#include "frame/zav.h"
#include "gks/gks_colr.h"
#include "gks/gks_text.h"
#include "gks/zavgks.h"

namespace zav {
namespace {

/// Size of a font name with its end.
constexpr std::size_t FONT_NAME_SIZE = 20;
/// Sizes of formatted texts with their end.
constexpr std::size_t PPRINTF_SIZE = 60;
constexpr std::size_t PRINTF_SIZE = 100;
/// A closed circle of ten-degree steps.
constexpr int CIRCLE_POINTS = 37;
constexpr double CIRCLE_STEP = 10.0;

struct State {
    std::string font_name;  ///< default font
};
State state;

double radians(double degrees) { return degrees * std::numbers::pi / 180.0; }

std::array<Gpt, 5> box(Gfloat x1, Gfloat y1, Gfloat x2, Gfloat y2) {
    return {{{x1, y1}, {x2, y1}, {x2, y2}, {x1, y2}, {x1, y1}}};
}

std::array<Gpt, CIRCLE_POINTS> circle(float x, float y, float rad) {
    std::array<Gpt, CIRCLE_POINTS> points;
    for (int i = 0; i < CIRCLE_POINTS; ++i) {
        const double angle = radians(i * CIRCLE_STEP);
        points[i] = {static_cast<float>(x + rad * std::cos(angle)), static_cast<float>(y + rad * std::sin(angle))};
    }
    return points;
}

/// Size from a record: its height times `scale`, or `scale` without a height.
float scaled(const Gattribs& attrib, float scale) { return attrib.height != FMISS ? attrib.height * scale : scale; }

}  // namespace

int GPH_trans(int trans) { return gsel_norm_tran(trans); }

int GPH_view(int tran, const Glim* view) { return gset_vp(tran, view); }

int GPH_win(int tran, const Glim* win) { return gset_win(tran, win); }

int GPH_get_view(int tran, Glim* view) {
    Gint err = 0;
    Gtran limits;
    const int result = ginq_norm_tran(tran, &err, &limits);
    if (result == 0) *view = limits.vp;
    return result;
}

int GPH_get_win(int tran, Glim* win) {
    Gint err = 0;
    Gtran limits;
    const int result = ginq_norm_tran(tran, &err, &limits);
    if (result == 0) *win = limits.win;
    return result;
}

int GPH_print_view(const Glim* view) {
    MESS_print(MESS_PRINT, "%5.2f %5.2f %5.2f %5.2f\n", static_cast<double>(view->x_min),
               static_cast<double>(view->x_max), static_cast<double>(view->y_min), static_cast<double>(view->y_max));
    return 0;
}

float GPH_get_vert_win_size() {
    Gint err = 0;
    Gint tran = 0;
    Glim win;
    ginq_cur_norm_tran_num(&err, &tran);
    GPH_get_win(tran, &win);
    return win.y_max - win.y_min;
}

int GPH_line_attr(const Gattribs* attrib) {
    if (attrib == nullptr) {
        gset_linetype(1);
        gset_linewidth(0.0F);
        return 0;
    }
    if (attrib->color >= 0) gset_line_colr_ind(attrib->color);
    if (attrib->style != MISS) gset_linetype(attrib->style);
    if (attrib->width != FMISS) gset_linewidth(attrib->width);
    return 0;
}

int GPH_fill_attr(const Gattribs* attrib) {
    if (attrib == nullptr) {
        gset_fill_int_style(GSOLID);
        return 0;
    }
    if (attrib->color >= 0) gset_fill_colr_ind(attrib->color);
    if (attrib->fill_pat == 0) {
        gset_fill_int_style(GSOLID);
    } else if (attrib->fill_pat != MISS) {
        gset_fill_int_style(GPAT);
        gset_fill_style_ind(attrib->fill_pat);
    }
    return 0;
}

int GPH_mark_attr(const Gattribs* attrib, float scale) {
    if (attrib == nullptr) {
        gset_marker_width(0.0F);
        return 0;
    }
    if (attrib->color >= 0) gset_marker_colr_ind(attrib->color);
    if (attrib->style != MISS) gset_marker_type(attrib->style);
    if (attrib->height != FMISS || scale > 0.0F) gset_marker_size(scaled(*attrib, scale));
    if (attrib->width != FMISS) gset_marker_width(attrib->width);
    return 0;
}

int GPH_text_attr(const Gattribs* attrib, float scale) {
    if (attrib == nullptr) {
        gset_text_width(0.0F);
        gset_expan(1.0F);
        return -1;
    }
    if (attrib->color >= 0) gset_text_colr_ind(attrib->color);
    gset_char_ht(scaled(*attrib, scale));
    if (attrib->width != FMISS) gset_text_width(attrib->width);
    if (attrib->expan != FMISS) gset_expan(attrib->expan);
    if (attrib->font != MISS) {
        const Gfontprec font{attrib->font, GSTROKE_PREC};
        gset_fontprec(&font);
    }
    gset_space(0.25F);
    return 0;
}

int GPH_set_color(int ind, float red, float grn, float blu) {
    if (!gchk_graphics()) return -1;
    const Gcolr_rep rep{red, grn, blu};
    return gset_colr_rep(1, ind, &rep);
}

int GPH_text_font(const char* str) {
    const Gfontprec font{gget_font_index(str != nullptr ? std::string(str) : state.font_name), GSTROKE_PREC};
    return gset_fontprec(&font);
}

int GPH_set_def_font(const std::string& str) {
    state.font_name = fit_text(str, FONT_NAME_SIZE);
    return 0;
}

int GPH_text_align(int x, int y) {
    const Gtext_align align{x, y};
    return gset_text_align(&align);
}

int GPH_get_text_align(int* x, int* y) {
    Gint err = 0;
    Gtext_align align;
    ginq_text_align(&err, &align);
    *x = align.hor;
    *y = align.vert;
    return err;
}

int GPH_text_rotate(float rot) {
    const double angle = radians(rot);
    const Gpt up{static_cast<float>(std::sin(angle)), static_cast<float>(std::cos(angle))};
    return gset_char_up_vec(&up);
}

int GPH_line(Gfloat x1, Gfloat y1, Gfloat x2, Gfloat y2) {
    const std::array<Gpt, 2> points{{{x1, y1}, {x2, y2}}};
    return gpolyline(2, points.data());
}

int GPH_mark(Gfloat x1, Gfloat y1) {
    const Gpt point{x1, y1};
    return gpolymarker(1, &point);
}

int GPH_border(const Glim* limit) { return GPH_rect(limit->x_min, limit->y_min, limit->x_max, limit->y_max); }

int GPH_rect(Gfloat x1, Gfloat y1, Gfloat x2, Gfloat y2) {
    const auto points = box(x1, y1, x2, y2);
    return gpolyline(static_cast<Gint>(points.size()), points.data());
}

int GPH_frect(Gfloat x1, Gfloat y1, Gfloat x2, Gfloat y2) {
    const auto points = box(x1, y1, x2, y2);
    return gfill_area(static_cast<Gint>(points.size()), points.data());
}

int GPH_circle(float x, float y, float rad) { return gpolyline(CIRCLE_POINTS, circle(x, y, rad).data()); }

int GPH_fcircle(float x, float y, float rad) { return gfill_area(CIRCLE_POINTS, circle(x, y, rad).data()); }

int GPH_pprint(const Gpt* pt, const std::string& str) { return gtext(pt, str); }

int GPH_pprintf(const Gpt* pt, const char* format, ...) {
    std::array<char, PPRINTF_SIZE> text{};
    std::va_list args;
    va_start(args, format);
    std::vsnprintf(text.data(), text.size(), format, args);
    va_end(args);
    return GPH_pprint(pt, text.data());
}

int GPH_printf(Gfloat x1, Gfloat y1, const char* format, ...) {
    std::array<char, PRINTF_SIZE> text{};
    std::va_list args;
    va_start(args, format);
    std::vsnprintf(text.data(), text.size(), format, args);
    va_end(args);
    const Gpt point{x1, y1};
    return GPH_pprint(&point, text.data());
}

}  // namespace zav
