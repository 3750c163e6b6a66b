// Text in fonts of the system.

#include <cmath>

#include "gks/cairo/gks_cairo.h"
#include "gks/cairo/gks_cairo_state.h"
#include "gks/gks_text_state.h"

namespace zav {
namespace {

/// Bytes of the UTF-8 character that begins at `at`; 0 if none does.
std::size_t utf8_length(const std::string& text, std::size_t at) {
    const auto byte = [&text](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U; };
    const unsigned first = byte(at);
    const std::size_t length = first < 0x80 ? 1 : first < 0xC2 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    if (first > 0xF4) return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(at + i) & 0xC0) != 0x80) return 0;
    }
    // Neither longer than need be, nor a surrogate, nor beyond the last character.
    const unsigned second = byte(at + 1);
    const bool faulty = (first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) ||
                        (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F);
    return faulty ? 0 : length;
}

bool is_utf8(const std::string& text) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = utf8_length(text, at);
        if (length == 0) return false;
        at += length;
    }
    return true;
}

/// Cap heights of text along its baseline and upward as lengths on the page: a matrix with its origin at `pos`.
cairo_matrix_t text_axes(const Gtext_state& text, const Gpt& pos) {
    const double x = xW_ps(pos.x);
    const double y = yW_ps(pos.y);
    const double scale_x = xW_ps(pos.x + text.height) - x;
    const double scale_y = yW_ps(pos.y + text.height) - y;
    cairo_matrix_t axes;
    cairo_matrix_init(&axes, text.upy * scale_x, -text.upx * scale_y, text.upx * scale_x, text.upy * scale_y, x, y);
    return axes;
}

/// Selects a font at a cap height of 1, stretched along the baseline.
void set_font(cairo_t* page, const Gcairo_font& font, double stretch) {
    cairo_matrix_t size;
    cairo_matrix_init_scale(&size, stretch / font.cap_height, -1 / font.cap_height);
    cairo_font_options_t* options = gcairo_font_options();
    cairo_set_font_options(page, options);
    cairo_font_options_destroy(options);
    cairo_set_font_face(page, font.face);
    cairo_set_font_matrix(page, &size);
}

/// False for a string of which the clip leaves nothing: what can't be seen isn't to be found either.
bool is_in_clip(cairo_t* page, double left, double base, double width) {
    constexpr double below = 0.4;  // letters under the baseline, in cap heights
    double x0 = 0;
    double y0 = 0;
    double x1 = 0;
    double y1 = 0;
    cairo_clip_extents(page, &x0, &y0, &x1, &y1);
    return left < x1 && left + width > x0 && base - below < y1 && base + 1 > y0;
}

/// Keeps the string for the search in an SVG, in points of its height so that its size is one of letters.
void keep_for_search(cairo_t* page, const Gcairo_font& font, const std::string& utf8, double left, double base,
                     double width) {
    cairo_matrix_t matrix;
    cairo_get_matrix(page, &matrix);
    cairo_matrix_translate(&matrix, left, base);
    const double points = std::hypot(matrix.xy, matrix.yy);
    if (!(points > 0)) return;
    cairo_matrix_scale(&matrix, 1 / points, -1 / points);
    gcairo_svg_text(utf8, font, matrix, points / font.cap_height, points * width);
}

}  // namespace

void gcairo_text(const Gtext_state& text, const Gcairo_string& place, const std::string& str) {
    cairo_t* page = gcairo_page();
    if (page == nullptr) return;
    const Gcairo_font& font = gcairo_font(gget_system_font());
    const std::string utf8 = gcairo_utf8(str);
    const double natural = text.expan * gcairo_text_width(utf8) / font.cap_height;
    const double width = place.most > 0 && natural > place.most ? place.most : natural;
    const cairo_matrix_t axes = text_axes(text, place.pos);
    if (!(width > 0) || axes.xx * axes.yy - axes.xy * axes.yx == 0) return;
    const double left = place.right * width;
    gcairo_set_pen(text.color, text.width, 1);
    cairo_save(page);
    cairo_transform(page, &axes);
    if (is_in_clip(page, left, place.above, width)) {
        set_font(page, font, text.expan * width / natural);
        cairo_move_to(page, left, place.above);
        cairo_show_text(page, utf8.c_str());
        if (gcairo_picture().format == Gpicture_format::svg) {
            keep_for_search(page, font, utf8, left, place.above, width);
        }
    }
    cairo_restore(page);
    cairo_new_path(page);
}

std::string gcairo_utf8(const std::string& text) {
    const std::string line = gout_line(text);
    if (is_utf8(line)) return line;
    std::string result;
    for (const char c : line) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            result += c;
        } else {
            result += static_cast<char>(0xC0 | byte >> 6);
            result += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    return result;
}

}  // namespace zav
