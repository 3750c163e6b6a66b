/// Where the points of a grid lie on the map, and which of them the map shows.

#include <algorithm>
#include <cmath>

#include "calc/grd_cyclic.h"
#include "calc/grd_place.h"
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

/// Points with their places and values.
struct Places {
    const std::vector<float>& x;
    const std::vector<float>& y;
    const float* values;
    std::size_t nx;

    Gpt at(std::size_t k) const { return {x[k], y[k]}; }
};

/// A cell as its stored points.
using Cell = std::array<std::size_t, 4>;

/// True for a cell that reaches into the window from outside. Its points within the window speak for themselves.
bool is_cut(const Places& places, const Cell& cell, const Glim& window, float torn) {
    Glim box{INFINITY, -INFINITY, INFINITY, -INFINITY};
    int inside = 0;
    for (const std::size_t k : cell) {
        const Gpt pt = places.at(k);
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

/// Range of the points in the window and of those of cells that it cuts. Without any its high is below its low.
Cont_range range_in_window(const Places& places) {
    Cont_range range{INFINITY, -INFINITY};
    const auto take = [&](std::size_t k) {
        const float value = places.values[k];
        if (!cont_is_missing(value)) range = {std::min(range.low, value), std::max(range.high, value)};
    };
    Glim window;
    MAP_get_window(&window);
    const float torn = torn_width();
    for (std::size_t k = 0; k < places.x.size(); ++k) {
        if (holds(window, places.at(k))) take(k);
        if (k < places.nx || k % places.nx == 0) continue;
        const Cell cell{k - places.nx - 1, k - places.nx, k - 1, k};
        if (is_cut(places, cell, window, torn)) std::for_each(cell.begin(), cell.end(), take);
    }
    return range;
}

Cont_range shown_range(const GRD_report& grid) {
    const GRD_placed* placed = cont_placed_field(grid);
    if (placed != nullptr) {
        const auto columns = static_cast<std::size_t>(placed->grid.domain.nx);
        return range_in_window({placed->x, placed->y, placed->grid.grid.get(), columns});
    }
    if (CONT_place_grid(grid) != 0) return {INFINITY, -INFINITY};
    return range_in_window({cont.grdx, cont.grdy, grid.grid.get(), static_cast<std::size_t>(grid.domain.nx)});
}

/// True where the points have the same places for the engine and by themselves: no map edge and no repeated meridian
/// parts them.
bool are_alike(const Domain& grid, const Domain& map) {
    const bool wraps = map.proj == PROJ_LATLON || map.proj == PROJ_MERCATOR || map.proj == PROJ_MOLLWEIDE;
    return !wraps && GRD_cycle(grid) == 0;
}

int place(const GRD_report& grid, bool points) {
    Domain map;
    MAP_get_domain(&map);
    const bool on_own_map = DOM_comp(&map, &grid.domain) != 0;
    const bool known = DOM_comp(&cont.placed_grid, &grid.domain) != 0 && DOM_comp(&cont.placed_map, &map) != 0;
    if (!on_own_map && known && (cont.placed_points == points || are_alike(grid.domain, map))) return 0;
    DOM_init(&cont.placed_grid);
    cont.grdx.clear();
    cont.grdy.clear();
    if (on_own_map) return 0;
    const int result =
        points ? GRD_place_points(grid, map, cont.grdx, cont.grdy) : GRD_proj_XY(&grid, &map, cont.grdx, cont.grdy);
    if (result != 0) return -1;
    cont.placed_grid = grid.domain;
    cont.placed_map = map;
    cont.placed_points = points;
    return 0;
}

}  // namespace

int CONT_place_grid(const GRD_report& grid) { return place(grid, false); }

int CONT_place_points(const GRD_report& grid) { return place(grid, !PLT_letter()); }

const float* CONT_grid_x() { return cont.grdx.empty() ? nullptr : cont.grdx.data(); }

const float* CONT_grid_y() { return cont.grdy.empty() ? nullptr : cont.grdy.data(); }

bool CONT_each_shown(const GRD_report& grid, const std::function<void(std::size_t)>& take) {
    if (PLT_letter() || CONT_place_points(grid) != 0 || cont.grdx.empty()) return false;
    Glim window;
    MAP_get_window(&window);
    for (std::size_t k = 0; k < cont.grdx.size(); ++k) {
        if (holds(window, {cont.grdx[k], cont.grdy[k]})) take(k);
    }
    return true;
}

void cont_shown_range(const GRD_report& grid, float* max, float* min) {
    const Cont_range range = PLT_letter() ? Cont_range{INFINITY, -INFINITY} : shown_range(grid);
    if (range.high < range.low) {
        GRD_maxmin(&grid, max, min);
        return;
    }
    *max = range.high;
    *min = range.low;
}

}  // namespace zav
