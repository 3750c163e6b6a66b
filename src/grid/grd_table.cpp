// The table of grids in use, the date of the run, and the layout of a model in pieces.

#include <algorithm>
#include <array>
#include <limits>

#include "files/files.h"
#include "frame/string.h"
#include "grid/grd_tool.h"

namespace zav {
namespace {

struct State {
    std::array<GRD_report, GRD_MAX> grids;
    bool initialised = false;
    Date file_date;
    int grid_factor = 1;
    GRD_info info;
    GRD_specs specs;
};
State state;

bool in_table(int ind) { return ind >= 0 && ind < GRD_MAX; }

/// Cuts each step of a domain into `factor`. A domain that would have more points than an int counts stays.
void refine(Domain* domain, int factor) {
    if (factor == 1 || domain->nx < 1 || domain->ny < 1) return;
    const long long nx = static_cast<long long>(factor) * (domain->nx - 1) + 1;
    const long long ny = static_cast<long long>(factor) * (domain->ny - 1) + 1;
    if (std::max(nx, ny) > std::numeric_limits<int>::max()) return;
    domain->nx = static_cast<int>(nx);
    domain->ny = static_cast<int>(ny);
    domain->dx /= static_cast<float>(factor);
    domain->dy /= static_cast<float>(factor);
}

}  // namespace

int GRD_init_grids() {
    state.initialised = true;
    for (GRD_report& grid : state.grids) GRD_init(&grid);
    return 0;
}

GRD_report* GRD_get_grids() {
    if (!state.initialised) GRD_init_grids();
    return state.grids.data();
}

GRD_report* GRD_get_grid(int ind) { return in_table(ind) ? GRD_get_grids() + ind : nullptr; }

int GRD_set_grid(int ind, const GRD_report* grd) {
    GRD_report* grid = GRD_get_grid(ind);
    return grid == nullptr ? -1 : GRD_copy(grid, grd);
}

int GRD_alloc_grid(int ind) {
    GRD_report* grid = GRD_get_grid(ind);
    return grid == nullptr ? -1 : GRD_alloc(grid);
}

int GRD_set_grid_info(int ind, const std::string& str) {
    GRD_report* grid = GRD_get_grid(ind);
    if (grid == nullptr) return -1;
    grid->info = fit_text(str, GRD_INFO_SIZE);
    return 0;
}

const std::string& GRD_get_grid_info(int ind) {
    static const std::string none;
    const GRD_report* grid = GRD_get_grid(ind);
    return grid == nullptr ? none : grid->info;
}

int GRD_set_grid_date(int ind, const Date* date, const std::string& str) {
    GRD_report* grid = GRD_get_grid(ind);
    if (grid == nullptr) return -1;
    if (date != nullptr) grid->date = *date;
    grid->datim = fit_text(str, GRD_DATIM_SIZE);
    return 0;
}

int GRD_set_grid_domain(int ind, const Domain* dom) {
    GRD_report* grid = GRD_get_grid(ind);
    if (grid == nullptr) return -1;
    grid->source = 0;
    grid->version = 0;
    grid->grid.reset();
    grid->domain = *dom;
    refine(&grid->domain, state.grid_factor);
    return 0;
}

int GRD_get_grid_domain(int ind, Domain* dom) {
    const GRD_report* grid = GRD_get_grid(ind);
    if (grid == nullptr) return -1;
    *dom = grid->domain;
    return 0;
}

int GRD_set_grid_factor(int fact) {
    if (fact >= 1) state.grid_factor = fact;
    return 0;
}

int GRD_get_grid_factor() { return state.grid_factor; }

int GRD_set_var(int ind) {
    GRD_report* grid = GRD_get_grid(ind);
    const VAR_data* var = VAR_get_var(ind);
    if (grid == nullptr || var == nullptr) return -1;
    grid->var = var->var[0];
    grid->time = var->time;
    grid->ltype = var->ltype;
    grid->level = var->level;
    grid->units = var->units;
    return 0;
}

int GRD_set_date(const Date* datim) {
    if (datim == nullptr) {
        FILE_get_date(&state.file_date);
    } else {
        state.file_date = *datim;
    }
    return 0;
}

int GRD_get_date(Date* datim) {
    *datim = state.file_date;
    return 0;
}

GRD_info* GRD_get_info() { return &state.info; }
GRD_specs& GRD_get_specs() { return state.specs; }

}  // namespace zav
