/// The field that a plot draws: the grid given, refined where that is asked for, and closed and cut as the map is.

#include <algorithm>
#include <cmath>
#include <exception>
#include <utility>

#include "calc/grd_cyclic.h"
#include "calc/grd_part.h"
#include "calc/grd_place.h"
#include "calc/grd_refine.h"
#include "calc/grd_trans.h"
#include "frame/mess.h"
#include "frame/status.h"
#include "plot/contour/cont_texts.h"

namespace zav {
namespace {

/// What the cells are taken from, and how its points come from those of the grid given.
struct Field {
    GRD_report grid;
    int steps = 1;           ///< steps of the field in one of the grid given
    std::vector<int> shown;  ///< column of the field for each refined column of the grid; empty: the same
    GRD_box part;            ///< of the grid given, that the field is made of
    int first_row = 0;       ///< row of the field that shows the lowest of the grid given
};

/// A grid as the map shows it, placed for its range and kept until it is drawn.
struct State {
    std::shared_ptr<float[]> values;
    Domain map;
    GRD_placed placed;
};
State state;

Placing find_place(const GRD_report& grid, const Domain& map, GRD_placed& placed) {
    if (state.values == nullptr || state.values != grid.grid || DOM_comp(&state.map, &map) == 0)
        return GRD_place(grid, map, placed);
    placed = std::move(state.placed);
    state = {};
    return Placing::DONE;
}

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

/// Points beside those shown that their cells and the kernel of the refinement ask for.
constexpr int MARGIN = 3;

/// The columns that are marked, and some beside them; of a grid that goes round the globe all but the widest gap.
void take_columns(const std::vector<char>& marked, bool round, GRD_box& box) {
    const int count = static_cast<int>(marked.size());
    int gap = 0;
    int first = 0;  // behind the widest gap
    for (int i = 0, run = 0; i < (round ? 2 * count : count); ++i) {
        run = marked[static_cast<std::size_t>(i % count)] != 0 ? 0 : run + 1;
        if (round && run > gap && run < count) {
            gap = run;
            first = i + 1;
        }
    }
    box.column = round ? first - MARGIN : 0;
    box.columns = round ? count - gap + 2 * MARGIN : count;
    if (round && box.columns < count) return;
    const auto begin = std::find(marked.begin(), marked.end(), 1);
    const auto end = std::find(marked.rbegin(), marked.rend(), 1);
    box.column = round ? 0 : std::max(static_cast<int>(begin - marked.begin()) - MARGIN, 0);
    const int last =
        round ? count - 1 : std::min(count - 1 - static_cast<int>(end - marked.rbegin()) + MARGIN, count - 1);
    box.columns = last - box.column + 1;
}

/// The part of the grid that the map shows, all of it where that isn't known.
GRD_box shown_part(const GRD_report& grid) {
    const int cycle = GRD_cycle(grid.domain);
    std::vector<char> columns(static_cast<std::size_t>(cycle > 0 ? cycle : grid.domain.nx), 0);
    int top = grid.domain.ny;
    int bottom = -1;
    CONT_each_shown(grid, [&](std::size_t k) {
        const int row = static_cast<int>(k / static_cast<std::size_t>(grid.domain.nx));
        top = std::min(top, row);
        bottom = std::max(bottom, row);
        columns[(k % static_cast<std::size_t>(grid.domain.nx)) % columns.size()] = 1;
    });
    GRD_box box;
    if (bottom < top) return box;
    box.row = std::max(top - MARGIN, 0);
    box.rows = std::min(bottom + MARGIN, grid.domain.ny - 1) - box.row + 1;
    take_columns(columns, cycle > 0, box);
    if (cycle > 0 && box.columns == cycle) box.columns = grid.domain.nx;
    return box;
}

void refine(const GRD_report& given, Field& field) {
    field.grid = given;
    if (cont.smooth < 2 || cont.cont_type == CONT_VALUE) return;
    GRD_report grid;
    GRD_report refined;
    const GRD_box part = shown_part(given);
    if (GRD_part(given, part, grid) < 0 || GRD_refine(grid, cont.smooth, refined) < 0) {
        MESS_print(MESS_WARN, "Field not smoothed %d-fold: that makes more than %lld points, or there is no memory\n",
                   cont.smooth, GRD_MOST_REFINED);
        ZAV_note(STATUS_LAYER);
        return;
    }
    hold_within(grid, settled_range(grid), cont.smooth, refined);
    field.grid = std::move(refined);
    field.steps = cont.smooth;
    field.part = part;
}

/// Makes `shown` tell of the columns of the grid given, where the field is but a part of it.
void tell_columns(const GRD_report& given, Field& field) {
    const GRD_box& part = field.part;
    if (part.columns == 0) return;
    const int cycle = GRD_cycle(given.domain);
    std::vector<int> all(static_cast<std::size_t>(given.domain.nx * field.steps), -1);
    for (int i = 0; i < part.columns; ++i) {
        const int column = cycle > 0 ? GRD_turned_column(part.column + i, cycle) : part.column + i;
        const int refined = i * field.steps;
        all[static_cast<std::size_t>(column * field.steps)] =
            field.shown.empty() ? refined : field.shown[static_cast<std::size_t>(refined)];
    }
    field.shown = std::move(all);
    field.first_row = (part.row + part.rows - given.domain.ny) * field.steps;
}

/// False without memory.
bool place(Field& field) {
    const Domain* map = MAP_get_domain(nullptr);
    if (map == nullptr || DOM_comp(map, &field.grid.domain) != 0) return true;
    GRD_placed placed;
    const Placing placing = find_place(field.grid, *map, placed);
    if (placing == Placing::NO_MEMORY) return false;
    if (placing == Placing::NOT_NEEDED) return true;
    field.grid = std::move(placed.grid);
    field.shown = std::move(placed.shown);
    cont.grdx = std::move(placed.x);
    cont.grdy = std::move(placed.y);
    cont.placed = true;
    DOM_init(&cont.placed_grid);
    return true;
}

/// Leaves of the field's positions those of the points of the grid given. False without memory.
bool keep_own_positions(const GRD_report& own, const Field& field) {
    if (cont.grdx.empty() || (field.steps == 1 && field.shown.empty())) return true;
    const std::vector<float> x = std::exchange(cont.grdx, {});
    const std::vector<float> y = std::exchange(cont.grdy, {});
    try {
        cont.grdx.reserve(static_cast<std::size_t>(own.domain.nx) * static_cast<std::size_t>(own.domain.ny));
        cont.grdy.reserve(cont.grdx.capacity());
    } catch (const std::exception&) {
        return false;
    }
    const int cycle = GRD_cycle(own.domain);
    for (int j = 0; j < own.domain.ny; ++j) {
        const std::size_t row =
            static_cast<std::size_t>(j * field.steps) * static_cast<std::size_t>(field.grid.domain.nx);
        for (int i = 0; i < own.domain.nx; ++i) {
            const int refined = i * field.steps;
            const bool repeated = cycle > 0 && i >= cycle;
            const int column = repeated              ? -1
                               : field.shown.empty() ? refined
                                                     : field.shown[static_cast<std::size_t>(refined)];
            const std::size_t at = row + static_cast<std::size_t>(std::max(column, 0));
            cont.grdx.push_back(column < 0 ? FMISS : x[at]);
            cont.grdy.push_back(column < 0 ? FMISS : y[at]);
        }
    }
    return true;
}

int tell_no_memory() {
    MESS_print(MESS_WARN, "CONT_draw_contours: Unable to allocate grid arrays\n");
    return -1;
}

int draw(GRD_report* grid, Field& field) {
    if (cont.cont_type == CONT_VALUE) {
        if (!keep_own_positions(*grid, field)) return tell_no_memory();
        CONT_draw_contour(grid);
        return -1;
    }
    tell_columns(*grid, field);
    const Cont_source source{grid, &field.grid, field.steps, field.shown, field.first_row};
    if (cont_draw_about(&field.grid, &source) < 0) return -1;
    cont_write_texts(source);
    return 0;
}

}  // namespace

const GRD_placed* cont_placed_field(const GRD_report& grid) {
    state = {};
    const Domain map = *MAP_get_domain(nullptr);
    if (DOM_comp(&map, &grid.domain) != 0 || GRD_place(grid, map, state.placed) != Placing::DONE) return nullptr;
    state.values = grid.grid;
    state.map = map;
    return &state.placed;
}

int cont_draw_field(GRD_report* grid) {
    Field field;
    refine(*grid, field);
    const int result = place(field) ? draw(grid, field) : tell_no_memory();
    state = {};
    cont.placed = false;
    return result;
}

}  // namespace zav
