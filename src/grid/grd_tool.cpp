// Operations on one grid record.

#include "grid/grd_tool.h"

#include <memory>
#include <new>

#include "files/unittool.h"
#include "frame/mess.h"
#include "frame/status.h"
#include "frame/string.h"

namespace zav {
namespace {

struct State {
    grid_hooks hooks;
};
State state;

}  // namespace

grid_hooks& GRD_hooks() { return state.hooks; }

std::size_t GRD_points(const GRD_report* grid) {
    if (grid == nullptr || grid->domain.nx < 1 || grid->domain.ny < 1) return 0;
    return static_cast<std::size_t>(grid->domain.nx) * static_cast<std::size_t>(grid->domain.ny);
}

bool GRD_has_values(const GRD_report* grid) { return grid != nullptr && grid->grid != nullptr && GRD_points(grid) > 0; }

bool GRD_is_empty(const GRD_report* grid) { return grid->source == 0 && !GRD_has_values(grid); }

int GRD_init(GRD_report* grid) {
    grid->grid.reset();
    grid->datim.clear();
    grid->info.clear();
    grid->source = 0;
    grid->model = 0;
    grid->type = 0;
    grid->time = MISS;
    grid->ltype = MISS;
    grid->level = MISS;
    grid->var = MISS;
    return 0;
}

int GRD_alloc(GRD_report* grid) {
    constexpr std::size_t most = std::size_t{1} << 60;
    const std::size_t points = GRD_points(grid);
    grid->grid.reset();
    try {
        if (points > 0 && points <= most) {
            grid->grid = std::make_shared<float[]>(points, FMISS);
            return 1;
        }
    } catch (const std::bad_alloc&) {
        // Told below.
    }
    GRD_tell_no_memory(grid);
    return 0;
}

void GRD_tell_no_memory(GRD_report* grid) {
    grid->grid.reset();
    ZAV_note(STATUS_LAYER);
    MESS_print(MESS_WARN, "GRD_alloc: No memory for grid field\n");
}

int GRD_free(GRD_report* grid) {
    grid->grid.reset();
    grid->source = 0;
    DOM_init(&grid->domain);
    return 0;
}

int GRD_copy(GRD_report* grid2, const GRD_report* grid1) {
    *grid2 = *grid1;
    return 0;
}

int GRD_move(GRD_report* grid2, GRD_report* grid1) {
    if (grid2 == grid1) return 0;
    GRD_copy(grid2, grid1);
    return GRD_init(grid1);
}

int GRD_copy_info(GRD_report* grid2, const GRD_report* grid1) {
    grid2->datim = grid1->datim;
    grid2->units = grid1->units;
    grid2->date = grid1->date;
    grid2->domain = grid1->domain;
    grid2->source = grid1->source;
    grid2->version = grid1->version;
    grid2->model = grid1->model;
    grid2->type = grid1->type;
    grid2->grid.reset();
    return 0;
}

int GRD_set_info(GRD_info* info, const Date* date, const Domain* domain) {
    info->grid_type = 0;
    info->date = *date;
    info->max_x = domain->nx;
    info->max_y = domain->ny;
    return 0;
}

int GRD_make_datatype(GRD_report* grid, const std::string&) {
    grid->info =
        fit_text(VAR_make_datatype(grid->time, grid->ltype, grid->level, grid->var, grid->units), GRD_INFO_SIZE);
    return 0;
}

int GRD_make_devtype(GRD_report* ogrid, const GRD_report* igrid, const std::string& str) {
    std::string name;
    if (igrid->var != 0) {
        name = VAR_str(igrid->var);
    } else {
        std::string units;
        UNIT_parse(str, name, units);
    }
    const std::string text = VAR_make_devtype(ogrid->time, ogrid->ltype, ogrid->level, name + " " + str, ogrid->units);
    ogrid->info = fit_text(text, GRD_INFO_SIZE);
    return 0;
}

}  // namespace zav
