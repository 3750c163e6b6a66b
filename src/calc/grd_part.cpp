/// Parts of grids.

#include "calc/grd_part.h"

#include <exception>

#include "calc/grd_cyclic.h"
#include "map/maptran.h"

namespace zav {
namespace {

/// The domain of a part: the same plane about another middle.
Domain part_domain(const Domain& grid, const GRD_box& box) {
    Domain saved;
    MAP_get_domain(&saved);
    MAP_domain(&grid);
    Domain part;
    MAP_get_domain(&part);  // with its reference point, which may be left out in the grid's
    const float column = static_cast<float>(box.column) + static_cast<float>(box.columns - 1) / 2.0F;
    const float row = static_cast<float>(box.row) + static_cast<float>(box.rows - 1) / 2.0F;
    Point middle;
    MAP_grid_tran(column, row, &middle.x, &middle.y);
    MAP_untran(middle.x, middle.y, &part.clat, &part.clon);
    part.nx = box.columns;
    part.ny = box.rows;
    MAP_domain(&saved);
    return part;
}

}  // namespace

int GRD_part(const GRD_report& grid, const GRD_box& box, GRD_report& part) {
    part = grid;
    if (box.columns == 0) return 0;
    part.domain = part_domain(grid.domain, box);
    const int cycle = GRD_cycle(grid.domain);
    try {
        part.grid = std::shared_ptr<float[]>(
            new float[static_cast<std::size_t>(box.columns) * static_cast<std::size_t>(box.rows)]);
    } catch (const std::exception&) {
        part = {};
        return -1;
    }
    float* to = part.grid.get();
    for (int j = box.row; j < box.row + box.rows; ++j) {
        const float* row = &grid.grid[static_cast<std::ptrdiff_t>(j) * grid.domain.nx];
        for (int i = box.column; i < box.column + box.columns; ++i) {
            *to++ = row[cycle > 0 ? GRD_turned_column(i, cycle) : i];
        }
    }
    return 0;
}

}  // namespace zav
