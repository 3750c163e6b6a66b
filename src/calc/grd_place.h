#pragma once

#include <vector>

#include "grid/zavgrd.h"

namespace zav {

/// A grid as a map shows it: its columns from the left to the right of the map, with the place of every point.
struct GRD_placed {
    GRD_report grid;         ///< the values; of its domain only `nx` and `ny` have a meaning
    std::vector<float> x;    ///< map positions in the layout of the values, x FMISS off the map
    std::vector<float> y;    ///<
    std::vector<int> shown;  ///< for each column of the grid given, the column that shows it, -1 for none
};

enum class Placing {
    NOT_NEEDED,  ///< the grid lies on the map in one piece, as GRD_proj_XY places it
    DONE,        ///<
    NO_MEMORY,   ///<
};

/// Lays a latitude-longitude or Mercator grid on a map so that its cells need no regard to the edges of either. A grid
/// that goes round the globe is closed. On cylindrical maps the columns that the map's window shows follow each other,
/// as often as it shows them; on conic maps and Mollweide's the grid ends, with values between its columns, at the
/// meridian where the map is cut. Where pieces of it stand apart, a column without values lies between them.
/// The current map domain stays.
Placing GRD_place(const GRD_report& grid, const Domain& map, GRD_placed& placed);

/// Map positions of the points of a grid as GRD_proj_XY gives them, each place once: a repeated first meridian has
/// none, and on cylindrical maps a point lies within the window wherever one turn or another takes it there. 0, or -1
/// with a message when there is no memory.
int GRD_place_points(const GRD_report& grid, const Domain& map, std::vector<float>& x, std::vector<float>& y);

}  // namespace zav
