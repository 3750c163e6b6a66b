#include "gks/gks_text.h"

#include <algorithm>
#include <array>
#include <cstring>

#include "gks/cairo/gks_cairo.h"
#include "gks/gks_obj.h"
#include "gks/gks_out.h"
#include "gks/gks_text_state.h"
#include "gks/gks_tran.h"
#include "gks/hpgl/gks_hpgl.h"
#include "gks/meta/gks_meta.h"
#include "gks/ps/gks_ps.h"
#include "gks/x11/gks_x11.h"

namespace zav {
namespace {

/// Points of one stroke before it is broken.
constexpr int STROKE_POINTS = 30;
/// Deepest shadow that is drawn.
constexpr int MAX_SHADOW = 100;
/// Font units from the baseline to the top of a capital letter, which scale to the text height.
constexpr float CAP_HEIGHT = GFONT_CAP - GFONT_BASE;

/// Sends the strokes of characters to the workstation in force.
class Stroke_pen {
  public:
    explicit Stroke_pen(int type)
        : ps_(gtype_is_PS(type)),
          hpgl_(gtype_is_HPGL(type)),
          x11_(gtype_is_WIN_PIX(type)),
          cairo_(gtype_is_CAIRO(type)) {}

    void begin() {
        num_ = 0;
        if (ps_) gps_printf("np\n");
    }

    void move(float x, float y) {
        if (num_ > 1) flush();
        if (ps_) gps_move(x, y);
        if (hpgl_) ghpgl_move(x, y);
        if (cairo_) gcairo_move(x, y);
        if (x11_) points_[0] = {gpixel(xW_p(x)), gpixel(yW_p(y))};
        num_ = 1;
    }

    void line(float x, float y) {
        if (ps_) gps_line(x, y);
        if (hpgl_) ghpgl_line(x, y);
        if (cairo_) gcairo_line(x, y);
        if (x11_) points_[num_] = {gpixel(xW_p(x)), gpixel(yW_p(y))};
        if (++num_ >= STROKE_POINTS) break_at(x, y);
    }

    void end() {
        if (num_ <= 1) return;
        if (x11_) gx11_lines(Gx_context::text, num_, points_.data());
        if (ps_) gps_printf("stroke\n");
        if (hpgl_) ghpgl_printf("\n");
    }

    /// Ends a string: a picture has all its strokes as one path.
    void finish() {
        if (cairo_) gcairo_stroke_round();
    }

  private:
    void flush() {
        if (x11_) gx11_lines(Gx_context::text, num_, points_.data());
        if (ps_) gps_printf("stroke\nnp\n");
    }

    /// A long stroke is drawn so far and goes on from its last point.
    void break_at(float x, float y) {
        if (x11_) {
            gx11_lines(Gx_context::text, num_, points_.data());
            points_[0] = points_[num_ - 1];
        }
        if (ps_) {
            gps_printf("stroke\nnp\n");
            gps_move(x, y);
        }
        if (hpgl_) ghpgl_printf("\n");
        num_ = 1;
    }

    bool ps_;
    bool hpgl_;
    bool x11_;
    bool cairo_;
    int num_ = 0;
    std::array<Gxpoint, STROKE_POINTS> points_{};
};

float fixed_advance(const Gtext_state& text) { return text.char_space * (100.0F + 100.0F * text.space); }

/// Advance of a character of a width, in font units without stretch.
float advance(const Gtext_state& text, int width) {
    if (text.char_space > 0.0F) return fixed_advance(text);
    return static_cast<float>(width) + 100.0F * text.space;
}

/// Width that a character is taken for without a stroke font.
constexpr int USUAL_WIDTH = 80;

int char_width(const Gtext_state& text, char c) {
    return text.font ? text.font->size[static_cast<unsigned char>(c)] : USUAL_WIDTH;
}

/// Length of a string in font units.
int string_length(const Gtext_state& text, const std::string& str) {
    int length = 0;
    for (std::size_t i = 0; i + 1 < str.size(); ++i) {
        length = gtruncate(static_cast<float>(length) + advance(text, char_width(text, str[i])));
    }
    const float last =
        text.char_space > 0.0F ? 100.0F * text.char_space : static_cast<float>(char_width(text, str.back()));
    length = gtruncate(static_cast<float>(length) + last);
    return gtruncate(text.expan * static_cast<float>(length));
}

int horizontal_offset(const Gtext_state& text, const std::string& str) {
    if (text.align.hor == GCENTER_HOR) return -(string_length(text, str) / 2);
    if (text.align.hor == GRIGHT_HOR) return -string_length(text, str);
    return 0;
}

int vertical_offset(int align) {
    switch (align) {
        case GTOP_VERT:
            return -GFONT_TOP;
        case GCAP_VERT:
            return -GFONT_CAP;
        case GHALF_VERT:
            return -GFONT_HALF;
        case GBOTTOM_VERT:
            return 0;
        default:
            return -GFONT_BASE;
    }
}

void set_attributes(const Gtext_state& text, const Gpt& pos, const std::string& str) {
    const int type = gget_win_type();
    if (gtype_is_PS(type)) {
        gps_printf("%%%%TE:%f %f %s\n", static_cast<double>(pos.x), static_cast<double>(pos.y), gout_line(str).c_str());
        gps_set_width(text.color, text.width);
        gps_set_color(text.color);
        gps_set_type(1);
    } else if (gtype_is_HPGL(type)) {
        ghpgl_set_width(text.color, text.width);
        ghpgl_set_color(text.color);
        ghpgl_set_type(1);
    } else if (gtype_is_CAIRO(type)) {
        gcairo_set_pen(text.color, text.width, 1);
    }
}

/// Draws the strokes that begin at `start` of the font's data, moved by the offsets in font units.
void draw_strokes(const Gtext_state& text, const Gpt& pos, int start, int hoff, int voff, Stroke_pen& pen) {
    const std::vector<std::uint8_t>& db = text.font->db;
    const float scale = text.height / CAP_HEIGHT;
    pen.begin();
    for (std::size_t i = static_cast<std::size_t>(start); i + 1 < db.size() && db[i] != GFONT_END; i += 2) {
        const bool move = db[i] >= GFONT_MOVE;
        const int font_x = move ? db[i] - GFONT_MOVE : db[i];
        const float xx = scale * (static_cast<float>(font_x) * text.expan + static_cast<float>(hoff));
        const float yy = scale * static_cast<float>(db[i + 1] + voff);
        const float x = pos.x + text.upy * xx + text.upx * yy;
        const float y = pos.y - text.upx * xx + text.upy * yy;
        // Data that don't begin with a move would have nowhere to draw from.
        if (move || i == static_cast<std::size_t>(start)) {
            pen.move(x, y);
        } else {
            pen.line(x, y);
        }
    }
    pen.end();
}

/// Width of a blank, which has no strokes of its own.
constexpr int BLANK_WIDTH = 40;

void draw_text(const Gtext_state& text, const Gpt& pos, const std::string& str) {
    int hoff = horizontal_offset(text, str);
    const int voff = vertical_offset(text.align.vert);
    set_attributes(text, pos, str);
    Stroke_pen pen(gget_win_type());
    for (const char c : str) {
        const int start = text.font ? text.font->index[static_cast<unsigned char>(c)] : -1;
        if (start < 0 && c != ' ') continue;
        if (start >= 0) draw_strokes(text, pos, start, hoff, voff, pen);
        const int width = start >= 0 ? char_width(text, c) : BLANK_WIDTH;
        hoff = gtruncate(static_cast<float>(hoff) + text.expan * advance(text, width));
    }
    pen.finish();
}

/// Draws a string in a font of the system, where the stroke font would have it and not longer than there.
void draw_system_text(const Gtext_state& text, const Gpt& pos, const std::string& str) {
    Gcairo_string place;
    place.pos = pos;
    place.right = text.align.hor == GCENTER_HOR ? -0.5F : text.align.hor == GRIGHT_HOR ? -1.0F : 0.0F;
    place.above = static_cast<float>(vertical_offset(text.align.vert) + GFONT_BASE) / CAP_HEIGHT;
    if (text.font) place.most = static_cast<float>(string_length(text, str)) / CAP_HEIGHT;
    gcairo_text(text, place, str);
}

/// The black copies of a string that lie to the lower right of it on a display.
void draw_shadow(const Gtext_state& text, const Gpt& pos, const std::string& str) {
    const float pixel_x = xp_W(1.0F) - xp_W(0.0F);
    const float pixel_y = yp_W(1.0F) - yp_W(0.0F);
    gx11_foreground_black(Gx_context::text);
    for (int k = 0; k < std::min(text.drop_shadow, MAX_SHADOW); ++k) {
        const auto step = static_cast<float>(k);
        draw_text(text, {pos.x + step * pixel_x, pos.y + step * pixel_y}, str);
    }
    gx11_foreground(Gx_context::text, text.color);
}

/// Offers the string to the redraw store.
void record_text(const Gpt& pos, const std::string& str) {
    char* data = gnew_obj(GOBJ_TEXT, 1, static_cast<int>(sizeof pos + str.size()), nullptr);
    if (data == nullptr) return;
    std::memcpy(data, &pos, sizeof pos);
    std::memcpy(data + sizeof pos, str.data(), str.size());
}

}  // namespace

int gtext(const Gpt* text_pos, const std::string& char_string) {
    if (!gcheck_open("gtext")) return -1;
    if (char_string.empty()) return 0;
    const int type = gget_win_type();
    if (gtype_is_META(type)) {
        gmeta_printf("TE %f,%f %s\n", static_cast<double>(text_pos->x), static_cast<double>(text_pos->y),
                     gout_line(char_string).c_str());
        return 0;
    }
    const Gtext_state& text = gtext_state();
    record_text(*text_pos, char_string);
    if (text.font_type == Gfont_type::xfont) {
        gxfont_text(*text_pos, char_string);
        return 0;
    }
    if (gtype_is_CAIRO(type) && text.font_ind == 1 && !gget_system_font().empty()) {
        draw_system_text(text, *text_pos, char_string);
        return 0;
    }
    if (gtype_is_WIN_PIX(type) && text.drop_shadow > 0) draw_shadow(text, *text_pos, char_string);
    draw_text(text, *text_pos, char_string);
    return 0;
}

Gpt ginq_text_size(const std::string& str, float height) {
    if (str.empty()) return {};
    return {height / CAP_HEIGHT * static_cast<float>(string_length(gtext_state(), str)), height};
}

}  // namespace zav
