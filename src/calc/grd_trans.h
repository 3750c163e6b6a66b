#pragma once

#include <string>
#include <vector>

#include "grid/zavgrd.h"
#include "map/region.h"

namespace zav {

/// Largest and smallest value of a grid, FMISS when all are missing. -1 for a grid without values, else 0.
int GRD_maxmin(const GRD_report* grid, float* max, float* min);

/// Largest wind speed of two component grids; points with a missing or zero component don't count.
/// FMISS when none counts. -1 for an absent grid, else 0.
int GRD_UVmax(const GRD_report* ugrid, const GRD_report* vgrid, float* max);

/// Map positions in `domain` of all points of `grid`, in the grid's own layout; x is FMISS off the map.
/// 0, or -1 with a message when there is no memory.
int GRD_proj_XY(const GRD_report* grid, const Domain* domain, std::vector<float>& grdx, std::vector<float>& grdy);

/// Bilinear value at grid coordinates (column, row from the top), FMISS off the grid or beside a missing value. A grid
/// that goes round the globe has its first column behind the last, and so on for any number of turns.
float GRD_get_value(const GRD_report* grid, float x, float y);

/// The same, FMISS beyond the last column of any grid.
float GRD_get_value_open(const GRD_report* grid, float x, float y);

/// Value at map position (*x, *y) of `domain`, or of the current map when that is null or unset. The position
/// comes back in grid coordinates.
float GRD_get_value_domain(const GRD_report* grid, const Domain* domain, float* x, float* y);

/// Prints position and value of the grid at a position on the current map. Result 0.
int GRD_print_value(float x, float y, const GRD_report* grid);

/// As GRD_print_value for the two components of a vector.
int GRD_print_value2(float x, float y, const GRD_report* ugrid, const GRD_report* vgrid);

/// Asks for a new value of the grid point nearest to a position on the current map. -1 off the grid, else 0.
int GRD_edit_value(const std::string& event, float x, float y, GRD_report* grid);

/// Multiplies all values that are not missing. -1 without values, else 0.
int GRD_scale(GRD_report* grid, float fact);

/// Adds to all values that are not missing. -1 without values, else 0.
int GRD_offset(GRD_report* grid, float val);

/// Converts the values to `units` and relabels the grid. -1 without values and, with a warning, for units that the
/// grid's own can't be converted to; else 0.
int GRD_units(GRD_report* grid, const std::string& units);

/// Prepares `grid` to take `nx` by `ny` tiles that share their border rows and columns. The tile is `piece`, and
/// `grid` gets new values, all missing; without `piece` it is `grid` itself, and only its domain changes.
/// 0, or -1 for a lattice that is no size or when there is no memory.
int GRD_piece_setup(GRD_report* grid, int nx, int ny, const GRD_report* piece);

/// Copies tile (`x`, `y`) of the lattice into `grid`. 0, or -1 with nothing copied if it doesn't fit.
int GRD_piece_grid(GRD_report* grid, int x, int y, const GRD_report* piece);

}  // namespace zav
