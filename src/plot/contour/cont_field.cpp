/// The field that a plot draws: the grid given, refined where that is asked for, and closed and cut as the map is.

#include <algorithm>
#include <cmath>
#include <utility>

#include "calc/grd_cyclic.h"
#include "calc/grd_place.h"
#include "calc/grd_refine.h"
#include "calc/grd_trans.h"
#include "frame/mess.h"
#include "frame/status.h"
#include "plot/contour/cont_state.h"

namespace zav {
namespace {

/// Values between which nothing new may arise: those that the levels were made for.
Cont_range settled_range(const GRD_report& grid) {
    Cont_range range{cont.grid_min, cont.grid_max};
    if (cont_has_values() || range.high == FMISS) GRD_maxmin(&grid, &range.high, &range.low);
    return range;
}

/// Cubic convolution overshoots beside steep slopes: into negative rain, or below the lowest level of a filled plot,
/// where it would leave a hole. Between grid points that lie within the range no value leaves it.
void hold_within(const GRD_report& given, const Cont_range& range, int n, GRD_report& refined) {
    const auto inside = [&](int i, int j) {
        const float value = cont_value_at(given, i % given.domain.nx, j);
        return value >= range.low && value <= range.high;
    };
    const float low = std::nextafter(range.low, range.high);  // a level at the bound itself gets no line
    const float high = std::nextafter(range.high, range.low);
    for (int j = 0; j < refined.domain.ny; ++j) {
        float* row = &refined.grid[static_cast<std::ptrdiff_t>(refined.domain.ny - 1 - j) * refined.domain.nx];
        const int upper = (j + n - 1) / n;
        for (int i = 0; i < refined.domain.nx; ++i) {
            if (row[i] >= low && row[i] <= high) continue;
            const int right = (i + n - 1) / n;
            const bool given_point = i % n == 0 && j % n == 0;
            if (given_point || cont_is_missing(row[i])) continue;
            if (!inside(i / n, j / n) || !inside(right, j / n) || !inside(i / n, upper) || !inside(right, upper))
                continue;
            row[i] = std::clamp(row[i], low, high);
        }
    }
}

/// The grid itself where nothing is asked for.
GRD_report refined_field(const GRD_report& grid) {
    if (cont.smooth < 2 || cont.cont_type == CONT_VALUE) return grid;
    GRD_report refined;
    if (GRD_refine(grid, cont.smooth, refined) < 0) {
        MESS_print(MESS_WARN, "Field not smoothed %d-fold: that makes more than %lld points, or there is no memory\n",
                   cont.smooth, GRD_MOST_REFINED);
        ZAV_note(STATUS_LAYER);
        return grid;
    }
    hold_within(grid, settled_range(grid), cont.smooth, refined);
    cont.own.steps = cont.smooth;
    return refined;
}

/// Lays the field on the map. False without memory.
bool place(GRD_report& field) {
    const Domain* map = MAP_get_domain(nullptr);
    if (map == nullptr || DOM_comp(map, &field.domain) != 0) return true;
    GRD_placed placed;
    const Placing placing = GRD_place(field, *map, placed);
    if (placing == Placing::NO_MEMORY) return false;
    if (placing == Placing::NOT_NEEDED) return true;
    const int cycle = GRD_cycle(cont.own.grid->domain);
    cont.own.columns.clear();
    for (int i = 0; i < cont.own.grid->domain.nx; ++i) {
        const bool repeated = cycle > 0 && i >= cycle;
        cont.own.columns.push_back(repeated ? -1 : placed.shown[static_cast<std::size_t>(i * cont.own.steps)]);
    }
    field = std::move(placed.grid);
    cont.grdx = std::move(placed.x);
    cont.grdy = std::move(placed.y);
    cont.placed = true;
    return true;
}

int draw(GRD_report* grid, GRD_report* field) {
    if (CONT_draw_contour(cont.cont_type == CONT_VALUE ? grid : field) < 0 || cont.cont_type == CONT_VALUE) return -1;
    CONT_draw_labels(field);
    CONT_draw_maxmin(grid);
    return 0;
}

}  // namespace

int cont_draw_field(GRD_report* grid) {
    cont.own = {};
    cont.own.grid = grid;
    GRD_report field = refined_field(*grid);
    int result = -1;
    if (place(field)) {
        cont.own.field_columns = field.domain.nx;
        result = draw(grid, &field);
    } else {
        MESS_print(MESS_WARN, "CONT_draw_contours: Unable to allocate grid arrays\n");
    }
    if (cont.placed || cont.own.steps > 1) DOM_init(&cont.placed_grid);  // the positions aren't those of the grid
    cont.placed = false;
    cont.own = {};
    return result;
}

}  // namespace zav
