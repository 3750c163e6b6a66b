#pragma once

/// Pictures through Cairo: PNG, PDF and SVG. Output units are points of 1/72 inch with y upward, as on PostScript, from
/// the lower left corner of the drawing area.

#include <string>
#include <vector>

#include "gks/gks.h"

namespace zav {

struct IMG_report;
struct Gtext_state;

/// What opens the picture workstation for gopen_ws; `words` are those of the connection string. 0, or -1.
int gcairo_open(const std::vector<std::string>& words);

/// The output that the first of the words or the default names.
std::string gcairo_file_name(const std::vector<std::string>& words);

/// Ends the page and begins the next: of the document in PDF, in a file of its own in PNG and SVG.
void gcairo_new_page();

/// Ends the page and closes. 0, or -1 if nothing is open or it couldn't be written whole.
int gcairo_close();

/// What is drawn from here on, and was before, goes to its place; before that it waits.
void gcairo_keep();
/// Closes a plot that was broken off: whole if it was kept, else without a trace.
void gcairo_break_off();

// A path, by world coordinates or output units, and what is done with it; each of the latter ends it.

void gcairo_move(float x, float y);
void gcairo_line(float x, float y);
void gcairo_move_abs(float x, float y);
void gcairo_line_abs(float x, float y);

/// Rings of world coordinates as one path: `num_pt` has the number of points of each, `array_pt` their points one ring
/// after the other.
void gcairo_rings(Gint num_rings, const Gint* num_pt, const Gpt* array_pt);

/// The pen of lines: colour index, width as a multiple of the picture's base width, dash type.
void gcairo_set_pen(int color, float width, int type);
void gcairo_stroke();
/// Strokes with round ends and joins, for letters.
void gcairo_stroke_round();
void gcairo_fill(int color);
/// Fills the places of a fill pattern's bits, 0 to 19, and leaves the others as they are.
void gcairo_fill_pattern(int color, int pattern);
/// Fills with the background; a transparent picture becomes transparent there.
void gcairo_clear();

/// A string in a font of the system.
struct Gcairo_string {
    Gpt pos;          ///< world coordinates
    float right = 0;  ///< the string's left end from there, in its own direction, as a share of its length
    float above = 0;  ///< the baseline from there, upward, in cap heights
    float most = 0;   ///< longest that it may be, in cap heights; 0 for no limit
};
/// Draws a string with the other text attributes, in black or its colour.
void gcairo_text(const Gtext_state& text, const Gcairo_string& place, const std::string& str);

/// Clips to the viewport whose corners are given in output units, margin included.
void gcairo_clip(float left, float bottom, float right, float top);

/// Draws an image of indexed pixels over the current viewport; (x, y) is the viewport's origin in the image.
void gcairo_image(const IMG_report* image, int x, int y);

}  // namespace zav
