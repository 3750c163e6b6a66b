#pragma once

/// Private to the picture workstation: strokes of a raster, in several times less time than by Cairo. Coordinates and
/// widths are pixels of the picture, y downward, but for the clip.

#include <cairo.h>

#include <vector>

namespace zav {

/// How strokes look.
struct Gcairo_brush {
    double red = 0, grn = 0, blu = 0;
    double width = 1;
    bool round = false;          ///< ends and corners; else ends are cut off, and corners of thin lines are round too
    std::vector<double> dashes;  ///< lengths of dashes and gaps; empty for a whole line
};

/// Begins a page on a canvas that is `fineness` times as fine as the picture. False without memory.
bool gcairo_pen_begin(cairo_surface_t* canvas, int fineness);
void gcairo_pen_end();

/// The part of the canvas that strokes keep to, in its pixels.
void gcairo_pen_clip(double left, double top, double right, double bottom);

void gcairo_pen_move(double x, double y);
void gcairo_pen_line(double x, double y);

/// Draws the path and forgets it.
void gcairo_pen_stroke(const Gcairo_brush& brush);

}  // namespace zav
