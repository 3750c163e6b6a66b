#pragma once

#include <string>
#include <vector>

#include "plot/page/colors.h"

namespace zav {

/// Colours from low values to high, in equal steps; empty for none.
using Palette = std::vector<RGB>;

/// What colours a field that nothing else colours.
struct Field_palette {
    std::string palette;  ///< its name; empty without a palette file
    bool diverges = false;
    float middle = 0.0F;  ///< of a palette that diverges
    std::string units;    ///< of `middle`; empty for those of any field
};

/// Palette of a name, any case, from the file "zav.pal"; empty if it has none.
Palette PAL_find(const std::string& name);
/// Palette of the fields of a variable.
Field_palette PAL_of_field(int variable);
/// Name of the palette for coloured lines, winds and values, on paper or on a dark screen.
std::string PAL_of_lines(bool paper);
/// Colour at a fraction of the way through a palette, as an index of the colour table; CLR_NONE for an empty one.
int PAL_color(const Palette& palette, float part);

}  // namespace zav
