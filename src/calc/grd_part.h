#pragma once

#include "grid/zavgrd.h"

namespace zav {

/// A rectangle of a grid's points. Without columns it is the whole grid.
struct GRD_box {
    int column = 0;   ///< first column; on a grid that goes round the globe any number of turns away
    int columns = 0;  ///<
    int row = 0;      ///< first row from the top
    int rows = 0;     ///<
};

/// Copies a part of a grid on the earth, with its domain. The box lies within the grid, but for its columns where the
/// grid goes round the globe. 0, or -1 without memory. The current map domain stays.
int GRD_part(const GRD_report& grid, const GRD_box& box, GRD_report& part);

}  // namespace zav
