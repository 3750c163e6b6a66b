#pragma once

/// The levels of one cell, as the cell engine walks them. Private to the contour layer.

#include <vector>

#include "plot/contour/cont_state.h"

namespace zav {

/// The cell that the environment variable "gridloc" asks to trace.
struct Cont_traced {
    int column = -1;
    int row = -1;
    bool here = false;
};

/// What stays the same for all cells of a plot.
struct Cont_scan {
    float max_lines = 0.0F;
    Cont_ladder ladder;         ///< levels of interval mode
    int first_band = 0;         ///< band of the lowest of them
    double first_rest = 0.0;    ///< its number modulo the bands
    std::vector<float> listed;  ///< levels of value-list mode
    bool ascending = false;     ///< the list rises, so that a cell needs but a part of it
    Cont_traced traced;
};

Cont_scan cont_make_scan();

/// Prints the values of the cell at work if it is the traced one.
void cont_trace_point(const Cont_scan& scan);

/// Draws the cell at work, which cont_load_cell has loaded. `cont.run` tells which further cells would be drawn alike.
void cont_draw_cell(const Cont_scan& scan);

}  // namespace zav
