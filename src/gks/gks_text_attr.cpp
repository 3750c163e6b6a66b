#include <cmath>

#include "frame/mess.h"
#include "gks/gks_colr.h"
#include "gks/gks_obj.h"
#include "gks/gks_text_state.h"
#include "gks/gks_tran.h"
#include "gks/meta/gks_meta.h"
#include "gks/x11/gks_x11.h"

namespace zav {
namespace {

Gtext_state state;

bool on_metafile() { return gtype_is_META(gget_win_type()); }

void record(int type, int values, const void* data, int size) { gnew_obj(type, values, size, data); }

/// The common form of a setter of one number: `message` reports an invalid one, null takes every number.
int set_number(const char* func, float& stored, float value, const char* message, const char* line, int object) {
    if (message != nullptr && !gis_size(value)) {
        gerr_printf(func, message, static_cast<double>(value));
        return -1;
    }
    if (!std::isfinite(value)) return -1;
    if (stored == value) return 0;
    stored = value;
    if (on_metafile()) {
        gmeta_printf(line, static_cast<double>(value));
    } else {
        record(object, 1, &value, sizeof value);
    }
    return 0;
}

}  // namespace

Gtext_state& gtext_state() { return state; }

int greset_text() {
    // The font in memory goes with its number, and the shadow is a setting of the run, made before a workstation opens.
    const Gtext_state before = state;
    state = Gtext_state{};
    state.font = before.font;
    state.font_type = before.font_type;
    state.drop_shadow = before.drop_shadow;
    state.drop_color = before.drop_color;
    if (before.font_ind != state.font_ind) gload_font(state.font_ind);
    return 0;
}

int ginit_text(int type) {
    if (type == 0 || type == 1) gx11_init_context(Gx_context::text, type);
    return 0;
}

int gset_text_colr_ind(Gint color) {
    if (!gcheck_color_set("gset_text_colr_ind", &color)) return -1;
    if (state.color == color) return 0;
    state.color = color;
    if (on_metafile()) {
        gmeta_printf("TE_CLR %d\n", color);
        return 0;
    }
    record(GOBJ_TEXT_COLR, color, nullptr, 0);
    gx11_foreground(Gx_context::text, color);
    return 0;
}

int gset_expan(Gfloat expan) {
    return set_number("gset_expan", state.expan, expan, "invalid expansion factor: %f\n", "TE_EXP %f\n",
                      GOBJ_TEXT_EXPAN);
}

int gset_text_width(Gfloat width) {
    if (width == 0.0F && gtype_is_PAGE(gget_win_type())) width = 1.0F;
    return set_number("gset_text_width", state.width, width, "invalid text width: %f\n", "TE_WDTH %f\n",
                      GOBJ_TEXT_WIDTH);
}

int gset_char_ht(Gfloat height) {
    return set_number("gset_char_ht", state.height, height, "invalid character height: %f\n", "TE_HGHT %f\n",
                      GOBJ_TEXT_HEIGHT);
}

int gset_space(Gfloat space) {
    return set_number("gset_space", state.space, space, nullptr, "TE_SPC %f\n", GOBJ_TEXT_SPACE);
}

int gset_char_space(Gfloat space) {
    return set_number("gset_char_space", state.char_space, space, nullptr, "TE_CSPC %f\n", GOBJ_TEXT_CHAR_SPACE);
}

int gset_char_up_vec(const Gpt* up) {
    if (on_metafile()) {
        gmeta_printf("TE_UP %f,%f\n", static_cast<double>(up->x), static_cast<double>(up->y));
        return 0;
    }
    const float length = std::hypot(up->x, up->y);
    if (!std::isfinite(length) || length == 0.0F) return -1;
    const Gpt unit{up->x / length, up->y / length};
    if (state.upx == unit.x && state.upy == unit.y) return 0;
    state.upx = unit.x;
    state.upy = unit.y;
    record(GOBJ_TEXT_UP, 1, &unit, sizeof unit);
    return 0;
}

int gset_text_align(const Gtext_align* align) {
    if (state.align.hor == align->hor && state.align.vert == align->vert) return 0;
    state.align = *align;
    if (on_metafile()) {
        gmeta_printf("TE_ALGN %d %d\n", align->hor, align->vert);
    } else {
        record(GOBJ_TEXT_ALIGN, 1, align, sizeof *align);
    }
    return 0;
}

int ginq_text_align(Gint* err, Gtext_align* align) {
    *err = 0;
    *align = state.align;
    return 0;
}

int gset_fontprec(const Gfontprec* fontprec) {
    if (state.font_ind == fontprec->font) return 0;
    if (on_metafile()) {
        state.font_ind = fontprec->font;
        gmeta_printf("TE_FNT %d %d\n", fontprec->font, fontprec->prec);
        return 0;
    }
    record(GOBJ_TEXT_FONT, 1, fontprec, sizeof *fontprec);
    if (!gfont_known(fontprec->font)) {
        MESS_print(MESS_WARN, "gset_fontprec: invalid font id: %d\n", fontprec->font);
        return -1;
    }
    state.font_ind = fontprec->font;
    return gload_font(fontprec->font);
}

int gset_text_path(Gtext_path) { return 0; }

int gset_font_drop(int depth) {
    state.drop_shadow = depth;
    return 0;
}

int gget_font_drop() { return state.drop_shadow; }

int gset_font_drop_color(int color) {
    state.drop_color = color;
    return 0;
}

}  // namespace zav
