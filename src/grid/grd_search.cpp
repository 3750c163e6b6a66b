// Search: the records of a file are walked by their headers, and those that fit a key are read into its grid.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <vector>

#include "files/lookup_lines.h"
#include "frame/mess.h"
#include "grid/grd_hints.h"
#include "grid/grd_read.h"
#include "grid/grd_tool.h"

namespace zav {
namespace {

bool wanted(int ind, bool all) { return all || VAR_is_get_GRID(ind) != 0; }

void bring_to_units(GRD_report* grid, const std::string& units) {
    if (!units.empty() && GRD_hooks().units != nullptr) GRD_hooks().units(grid, units);
}

/// Reads record `number` whole. The grid stays empty if that fails, or if the record comes without values.
bool read_whole(int grd_fd, GRD_report* grid, int number, const std::string& units) {
    if (GRD_read(grd_fd, grid, GRD_READ_ALL, &number) != 0 || !GRD_has_values(grid)) {
        GRD_free(grid);
        return false;
    }
    bring_to_units(grid, units);
    return true;
}

/// Puts one piece into its place in the grid of the whole model.
void merge_piece(GRD_report* grid, const GRD_report* piece, const GRD_spec& spec) {
    const GRD_specs& specs = GRD_get_specs();
    const grid_hooks& hooks = GRD_hooks();
    if (hooks.piece_setup == nullptr || hooks.piece_grid == nullptr || !GRD_has_values(piece)) return;
    if (GRD_is_empty(grid) && hooks.piece_setup(grid, specs.nx, specs.ny, piece) != 0) {
        GRD_free(grid);
        return;
    }
    hooks.piece_grid(grid, spec.x, spec.y, piece);
}

/// Tests whether the entry with this flag belongs to plot parameter `level`.
bool belongs(int flag, int level) {
    constexpr std::array<int, 6> kinds = {VKIND_REG,     VKIND_SUBREG,    VKIND_FUNC,
                                          VKIND_SUBFUNC, VKIND_FUNC_VECT, VKIND_SUBFUNC_VECT};
    return std::any_of(kinds.begin(), kinds.end(), [&](int kind) { return flag == 10 * level + kind; });
}

/// Number of a constant, "#" and the number.
float constant_value(const std::string& name) {
    const float value = name.empty() ? 0.0F : std::strtof(name.c_str() + 1, nullptr);
    return std::isfinite(value) ? value : FMISS;
}

}  // namespace

int GRD_search(int grd_fd, GRD_report* grids, const VAR_data* params, int type, int num) {
    return GRD_search_from(grd_fd, 0, grids, params, type, num, Date(), nullptr);
}

int GRD_search_from(int grd_fd, int first, GRD_report* grids, const VAR_data* params, int type, int num,
                    const Date& date, std::vector<Record_codes>* walked) {
    const bool all = num < 0;
    const int count = std::abs(num);
    std::vector<bool> open(static_cast<std::size_t>(count));
    for (int i = 0; i < count; i++) open[i] = GRD_is_empty(&grids[i]) && wanted(i, all);
    auto missing = std::count(open.begin(), open.end(), true);
    const LookupHold hold;
    GRD_report record;
    GRD_init(&record);
    for (int number = first; missing > 0; number++) {
        if (GRD_read(grd_fd, &record, GRD_READ_HEADER, &number) != 0) break;
        if (walked != nullptr) walked->push_back(GRD_codes_of(record, number));
        if (!GRD_date_fits(date, record.date)) continue;
        for (int i = 0; i < count; i++) {
            if (!open[i] || GRD_test(&record, &params[i], type) == 0) continue;
            if (!read_whole(grd_fd, &grids[i], number, params[i].units)) continue;
            open[i] = false;
            missing--;
        }
    }
    return missing == 0 ? 1 : 0;
}

int GRD_search_piece(int grd_fd, int ind, GRD_report* grids, const VAR_data* params, int num) {
    if (ind < 0 || ind >= GRD_SPEC_MAX) return 0;
    const GRD_spec& spec = GRD_get_specs().spec[static_cast<std::size_t>(ind)];
    const int count = std::min(num, GRD_MAX);
    std::array<bool, GRD_MAX> found{};
    int left = count;
    GRD_report record;
    GRD_init(&record);
    for (int number = 0; left > 0; number++) {
        if (GRD_read(grd_fd, &record, GRD_READ_HEADER, &number) != 0) break;
        for (int i = 0; i < count; i++) {
            if (!wanted(i, false) || GRD_test(&record, &params[i], spec.type) == 0) continue;
            GRD_report piece;
            if (!read_whole(grd_fd, &piece, number, params[i].units)) continue;
            merge_piece(&grids[i], &piece, spec);
            bool& seen = found[static_cast<std::size_t>(i)];
            if (!seen) left--;
            seen = true;
            MESS_print(MESS_DEBUG, "Found: %d T-%d LT-%d L-%d V-%d G-%d = %d %d - %d\n", i, piece.time, piece.ltype,
                       piece.level, piece.var, piece.type, spec.x, spec.y, left);
        }
    }
    int missing = 0;
    for (int i = 0; i < count; i++) {
        if (!wanted(i, false) || !GRD_is_empty(&grids[i])) continue;
        missing++;
        MESS_print(MESS_WARN, "Grid missing: %d %d %d %d\n", params[i].time, params[i].ltype, params[i].level,
                   params[i].var[0]);
    }
    return missing == 0 ? 1 : 0;
}

int GRD_find_param_grids(int start, int num, int level, GRD_report** grds, float* values) {
    const int limit = num < 0 ? 1000 : num;
    int found = 0;
    int i = start;
    for (; i < VAR_get_num() && found < limit; i++) {
        const int flag = VAR_get_flag(i);
        if (found > 0 && flag < 10 * level) break;
        if (!belongs(flag, level)) continue;
        if (values != nullptr && VAR_get_type(i) == VTYPE_CONST) {
            values[found] = constant_value(VAR_get_name(i));
            grds[found++] = nullptr;
        } else {
            GRD_report* grid = GRD_get_grid(i);
            grds[found++] = grid;
            if (grid != nullptr && VAR_is_VECT(i - 1) != 0) grid->var = VAR_get_var(i - 1)->var[0];
        }
        if (found == limit) break;
    }
    grds[found] = nullptr;
    return i;
}

}  // namespace zav
