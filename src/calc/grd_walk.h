#pragma once

// What functions of a grid's places share. Private to src/calc.

#include <cstddef>

#include "grid/zavgrd.h"
#include "map/maptran.h"

namespace zav {

/// Latitude of a row of a latitude-longitude grid, counted from the north. What the rounded spacing leaves between a
/// row and the pole or the equator that it lies on is taken off, since formulas divide by what it would leave.
float GRD_row_latitude(const Domain& domain, int row);

/// True for grids whose points lie on the earth.
inline bool GRD_on_earth(const Domain& domain) { return domain.proj >= PROJ_POLAR && domain.proj <= PROJ_LAST_MAP; }

/// Makes the domain of a grid the current one of the map for the life of this object.
class GRD_map_of {
  public:
    explicit GRD_map_of(const GRD_report& grid);
    ~GRD_map_of();
    GRD_map_of(const GRD_map_of&) = delete;
    GRD_map_of& operator=(const GRD_map_of&) = delete;

  private:
    Domain saved;
};

/// Calls `visit(point, x, y)` for all points in storage order, `x` and `y` being the map position in the grid's own
/// domain, which is current meanwhile.
template <class Visit>
void GRD_walk(const GRD_report& grid, const Visit& visit) {
    const GRD_map_of map(grid);
    std::size_t point = 0;
    for (int row = 0; row < grid.domain.ny; row++) {
        for (int column = 0; column < grid.domain.nx; column++) {
            float x = FMISS;
            float y = FMISS;
            MAP_grid_tran(static_cast<float>(column), static_cast<float>(row), &x, &y);
            visit(point++, x, y);
        }
    }
}

}  // namespace zav
