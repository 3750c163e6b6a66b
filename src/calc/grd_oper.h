#pragma once

#include <string>

#include "grid/zavgrd.h"

namespace zav {

// Horizontal derivatives of grids. Distances are in units of 100 km, that of the map: a degree of latitude has 1.11195,
// and grids on other projections have their own spacing times the map factor `param[2]`, one for the whole grid.
//
// A derivative is central; at an edge, or where a neighbour is missing, it takes the point itself in its place and half
// the distance. A missing point stays missing. A grid that goes round the globe has no edge in x (calc/grd_cyclic.h).
// Rows at a pole are missing, but in GRD_dy.
//
// Each gives the output grid values where it has none, and places where it has no size. 0, or -1 with a message when
// there is no memory; grids without values or spacing and grids of different sizes give -1 too. An output grid may be
// one of the inputs; one that shares its values with an input gets others.

/// Along the rows, eastward.
int GRD_dx(const GRD_report* grid, GRD_report* ogrid);
/// Along the columns, northward.
int GRD_dy(const GRD_report* grid, GRD_report* ogrid);
/// d2a/dx2 + d2a/dy2, by one-sided second differences at edges and beside missing points.
int GRD_laplacian(const GRD_report* agrid, GRD_report* bgrid);
/// -du/dx - dv/dy, times z unless `zgrid` is null.
int GRD_converge(const GRD_report* ugrid, const GRD_report* vgrid, const GRD_report* zgrid, GRD_report* ogrid);
/// dv/dx - du/dy.
int GRD_vorticity(const GRD_report* ugrid, const GRD_report* vgrid, GRD_report* ogrid);
/// du/dx - dv/dy.
int GRD_deformation1(const GRD_report* ugrid, const GRD_report* vgrid, GRD_report* ogrid);
/// -du/dy - dv/dx.
int GRD_deformation2(const GRD_report* ugrid, const GRD_report* vgrid, GRD_report* ogrid);
/// -u dz/dx - v dz/dy.
int GRD_advection(const GRD_report* ugrid, const GRD_report* vgrid, const GRD_report* zgrid, GRD_report* agrid);

// Work in place. 0, or -1 without values or for an unknown operation. Points that have no place on the earth become
// missing. The current map domain stays.

/// Combines each value z with f, twice the earth's rotation times the sine of latitude in 1e-5 per second. `oper` in
/// any case: "add" z + f, "sub" z - f, "sub-" f - z, "mul" z f, "div" z / f, "div-" f / z.
int GRD_coriolis(GRD_report* grid, const std::string& oper);
/// Puts each point's place in the place of its value: `oper` "lat", "lon", "projx" or "projy" in any case, with label,
/// variable and units.
int GRD_point_locate(GRD_report* grid, const std::string& oper);
/// Turns winds along the grid's axes to components along meridians and parallels.
int GRD_correct_UV(GRD_report* ugrid, GRD_report* vgrid);

}  // namespace zav
