#pragma once

#include <string>

#include "gks/gks.h"

namespace zav {

/// Horizontal text alignment: which point of the string lies at the text position.
enum Gtext_hor : int { GNORMAL_HOR = 0, GLEFT_HOR = 1, GCENTER_HOR = 2, GRIGHT_HOR = 3 };

/// Vertical text alignment. Top and bottom are those of the character box, cap and base those of a capital letter.
enum Gtext_ver : int {
    GNORMAL_VERT = 0,
    GTOP_VERT = 1,
    GCAP_VERT = 2,
    GHALF_VERT = 3,
    GBASE_VERT = 4,
    GBOTTOM_VERT = 5
};

/// Text precision. All text is drawn by strokes; the value is kept for callers that name one.
enum Gtext_prec : int { GSTRING_PREC = 0, GCHAR_PREC = 1, GSTROKE_PREC = 2 };

/// Direction in which characters follow each other.
enum Gtext_path : int { GPATH_RIGHT = 0, GPATH_LEFT = 1, GPATH_UP = 2, GPATH_DOWN = 3 };

struct Gtext_align {
    Gint hor = GNORMAL_HOR;    ///< a Gtext_hor
    Gint vert = GNORMAL_VERT;  ///< a Gtext_ver
};

struct Gfontprec {
    Gint font = 1;             ///< number in the font list, from 1
    Gint prec = GSTROKE_PREC;  ///< a Gtext_prec
};

/// Draws `char_string` at `text_pos` (world coordinates) with the current text attributes.
/// 0, or -1 with a report when no workstation is open.
int gtext(const Gpt* text_pos, const std::string& char_string);

/// Width of `str` along its baseline, and height of its capitals, in world units for text of height `height` with the
/// current attributes.
Gpt ginq_text_size(const std::string& str, float height);

/// Loads a stroke font file, or with a leading "#" an X server font. 0, or -1; on failure the font is left empty.
int read_font(const std::string& name);
/// Reads the font list and loads the current font. Called when a workstation opens.
int gsetup_fonts();
/// Font list that goes before the resource "font_list": "fi:" and a list file, or comma-separated font files.
int gset_font_list(const std::string& list);
/// A font of the system, "family" with ":bold" and ":italic" behind it, that stands for font 1 on pictures; empty for
/// none. Other workstations draw font 1 with a warning.
void gset_system_font(const std::string& name);
const std::string& gget_system_font();
/// Font number for a name or a number in text form; unknown names give 1.
int gget_font_index(const std::string& str);

/// Puts all text attributes at their start values.
int greset_text();
/// Sets the text graphics context up; `type` as in ginit_plot.
int ginit_text(int type);

// Attributes. 0, or -1 with a report for an invalid value.

int gset_text_colr_ind(Gint color);
/// Horizontal stretch of characters, 1 as designed.
int gset_expan(Gfloat expan);
/// Stroke width in multiples of the device's base width.
int gset_text_width(Gfloat width);
/// Height of a capital letter in world units of the current transformation.
int gset_char_ht(Gfloat height);
/// Direction in which characters stand upright; any length but 0.
int gset_char_up_vec(const Gpt* up);
int gset_text_align(const Gtext_align* align);
int ginq_text_align(Gint* err, Gtext_align* align);
/// Space between characters in character widths.
int gset_space(Gfloat space);
/// Above 0: fixed pitch in character widths.
int gset_char_space(Gfloat space);
int gset_fontprec(const Gfontprec* fontprec);
/// Accepted without effect: text runs along its baseline.
int gset_text_path(Gtext_path path);

/// Depth in pixels of the shadow of text and markers on a display, 0 for none.
int gset_font_drop(int depth);
int gget_font_drop();
/// Stored only: shadows are black.
int gset_font_drop_color(int color);

}  // namespace zav
