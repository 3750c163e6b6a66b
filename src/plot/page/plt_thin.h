#pragma once

/// Which points of a grid get a mark where marks at all of them would touch.

#include <functional>
#include <vector>

#include "gks/gks.h"

namespace zav {

/// Room that a mark takes on paper, in millimetres.
struct PLT_room {
    float width = 0.0F;
    float height = 0.0F;
    bool box = false;          ///< an upright rectangle, as a text is, instead of a circle
    Gpt shift = {0.0F, 0.0F};  ///< from the grid point to the middle of the room
    Gpt frame = {0.0F, 0.0F};  ///< least distance of the middle from the plot's edges
};

/// A point in column `i`, stored row `j`.
struct PLT_grid_point {
    int i;
    int j;
};

/// The points of a grid and what of them is to be drawn.
struct PLT_lattice {
    int nx = 0;
    int ny = 0;
    std::function<bool(int i, int j, Gpt* pt)> place;  ///< position in the selected transformation; false for none
    std::function<bool(int i, int j)> wanted;          ///< true for a point that has something to draw
};

/// Points whose rooms don't touch and lie within the plot: whole rows, and in each of them
/// every so many columns as their distance on paper there asks for. Where data are missing at those, others step in, so
/// that no wanted point is farther than some 1.6 rooms from a mark. On a coarse grid these are all points.
std::vector<PLT_grid_point> PLT_thin(const PLT_lattice& lattice, const PLT_room& room);

/// True if nine of ten places in the plot have their row within 15 degrees of level.
bool PLT_rows_are_level(const PLT_lattice& lattice);

/// Usual distance on paper, in millimetres, between columns `step` apart in the plot; 0 without two such points.
float PLT_column_distance(const PLT_lattice& lattice, int step);

}  // namespace zav
