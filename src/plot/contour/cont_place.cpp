/// Where the points of a grid lie on the map, and which of them the map shows.

#include <algorithm>
#include <cmath>

#include "calc/grd_cyclic.h"
#include "calc/grd_trans.h"
#include "gks/gks.h"
#include "plot/background/map.h"
#include "plot/contour/cont_state.h"
#include "plot/page/plt_tool.h"

namespace zav {
namespace {

bool holds(const Glim& window, const Gpt& pt) {
    return pt.x >= window.x_min && pt.x <= window.x_max && pt.y >= window.y_min && pt.y <= window.y_max;
}

/// Width from which a cell counts as one that the map's edge has torn apart: its points lie at both ends of the map.
float torn_width() {
    constexpr float FAR_APART = 50.0F;
    constexpr float MOLLWEIDE_FAR = 10.0F;
    switch (MAP_get_proj()) {
        case PROJ_LATLON:
        case PROJ_MERCATOR:
        case PROJ_LAMBERT:
            return FAR_APART;
        case PROJ_MOLLWEIDE:
            return MOLLWEIDE_FAR;
        default:
            return INFINITY;
    }
}

/// A cell as its stored points.
using Cell = std::array<std::size_t, 4>;

/// True for a cell that reaches into the window from outside. Its points within the window speak for themselves.
bool is_cut(const Cell& cell, const Glim& window, float torn) {
    Glim box{INFINITY, -INFINITY, INFINITY, -INFINITY};
    int inside = 0;
    for (const std::size_t k : cell) {
        const Gpt pt{cont.grdx[k], cont.grdy[k]};
        if (pt.x == FMISS) return false;
        box = {std::min(box.x_min, pt.x), std::max(box.x_max, pt.x), std::min(box.y_min, pt.y),
               std::max(box.y_max, pt.y)};
        if (holds(window, pt)) ++inside;
    }
    if (inside == 4) return false;
    if (box.x_max - box.x_min > torn) return inside > 0;
    return box.x_min <= window.x_max && box.x_max >= window.x_min && box.y_min <= window.y_max &&
           box.y_max >= window.y_min;
}

void take_in_window(const GRD_report& grid, const std::function<void(std::size_t)>& take) {
    Glim window;
    MAP_get_window(&window);
    const auto nx = static_cast<std::size_t>(grid.domain.nx);
    const float torn = torn_width();
    const bool closed = GRD_cycle(grid.domain) == grid.domain.nx;  // the last column is beside the first
    for (std::size_t k = 0; k < cont.grdx.size(); ++k) {
        if (cont.grdx[k] != FMISS && holds(window, {cont.grdx[k], cont.grdy[k]})) take(k);
        const bool first = k % nx == 0;
        if (k < nx || (first && !closed)) continue;
        const std::size_t left = first ? k + nx - 1 : k - 1;
        const Cell cell{left - nx, k - nx, left, k};
        if (is_cut(cell, window, torn)) std::for_each(cell.begin(), cell.end(), take);
    }
}

}  // namespace

int CONT_place_grid(const GRD_report& grid) {
    Domain map;
    MAP_get_domain(&map);
    const bool on_own_map = DOM_comp(&map, &grid.domain) != 0;
    if (!on_own_map && DOM_comp(&cont.placed_grid, &grid.domain) != 0 && DOM_comp(&cont.placed_map, &map) != 0)
        return 0;
    DOM_init(&cont.placed_grid);
    cont.grdx.clear();
    cont.grdy.clear();
    if (on_own_map) return 0;
    if (GRD_proj_XY(&grid, &map, cont.grdx, cont.grdy) != 0) return -1;
    cont.placed_grid = grid.domain;
    cont.placed_map = map;
    return 0;
}

bool CONT_each_shown(const GRD_report& grid, const std::function<void(std::size_t)>& take) {
    if (PLT_letter() || CONT_place_grid(grid) != 0 || cont.grdx.empty()) return false;
    take_in_window(grid, take);
    return true;
}

void cont_shown_range(const GRD_report& grid, float* max, float* min) {
    float high = -INFINITY;
    float low = INFINITY;
    CONT_each_shown(grid, [&](std::size_t k) {
        const float value = grid.grid[k];
        if (cont_is_missing(value)) return;
        high = std::max(high, value);
        low = std::min(low, value);
    });
    if (high < low) {
        GRD_maxmin(&grid, max, min);
        return;
    }
    *max = high;
    *min = low;
}

}  // namespace zav
