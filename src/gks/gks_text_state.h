#pragma once

/// Private to text: its attributes and the loaded font.

#include <array>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>
#include <vector>

#include "gks/gks_text.h"

namespace zav {

/// Characters of a font, each a byte.
constexpr int GFONT_CHARS = 256;
/// Most bytes of stroke data.
constexpr std::size_t GFONT_BYTES = 15000;
/// First byte behind a character's last pair, and the bit that marks a move.
constexpr int GFONT_END = 255;
constexpr int GFONT_MOVE = 128;

// Heights above the bottom of the character box, in font units.
constexpr int GFONT_BASE = 35;
constexpr int GFONT_HALF = 85;
constexpr int GFONT_CAP = 140;
constexpr int GFONT_TOP = 160;

/// A stroke font. A character's strokes are pairs (x, y) of bytes up to a first byte of GFONT_END; an x with the
/// GFONT_MOVE bit is a move, any other a line.
struct Gstroke_font {
    std::vector<std::uint8_t> db;
    std::array<int, GFONT_CHARS> index{};          ///< start of a character in `db`, -1 for none
    std::array<std::uint8_t, GFONT_CHARS> size{};  ///< widths
};

enum class Gfont_type { stroke = 1, xfont = 2 };

struct Gtext_state {
    int color = 1;
    float width = 1.0F;
    float height = 0.01F;
    float expan = 1.0F;
    float space = 0.25F;
    float char_space = 0.0F;
    Gtext_align align;
    float upx = 0.0F;
    float upy = 1.0F;
    int font_ind = 1;
    int drop_shadow = 0;
    int drop_color = 1;
    Gfont_type font_type = Gfont_type::stroke;
    std::shared_ptr<const Gstroke_font> font;  ///< null: no character has strokes
};

Gtext_state& gtext_state();

/// Reads a stroke font file. Null if it isn't one or doesn't fit.
std::shared_ptr<const Gstroke_font> gread_stroke_font(std::FILE* file);

/// True for a number of the font list, and for every number without a list.
bool gfont_known(int ind);
/// Loads font number `ind` of the list; nothing without a list. 0, or -1 if it can't be loaded.
int gload_font(int ind);

// Fonts of the display's server.

/// Selects a font for text. False if there is none of that name.
bool gxfont_load(const std::string& name);
/// Draws a string at a world position with its shadow.
void gxfont_text(const Gpt& pos, const std::string& str);

}  // namespace zav
