#pragma once

#include "grid/zavgrd.h"

namespace zav {

/// Most points of a refined grid.
constexpr long long GRD_MOST_REFINED = 1LL << 25;

/// A grid with each step cut into `n`, its values by cubic convolution (R. Keys, Cubic convolution interpolation for
/// digital image processing, IEEE Trans. Acoust., Speech, Signal Process. 29, 1981: a = -1/2), row by row and then
/// column by column. Beyond the grid's edges and beside missing points the kernel takes Keys' continuation of third
/// order, or the straight one where three points aren't there; a grid that goes round the globe has no such edge.
/// Values of grid points stay as they are; within a cell with a missing corner there are none. The result stays within
/// the grid's domain, in its own steps. 0, or -1 with `refined` empty: too many points, or no memory.
int GRD_refine(const GRD_report& grid, int n, GRD_report& refined);

}  // namespace zav
