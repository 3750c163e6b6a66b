#include "calc/grd_trans.h"

#include <algorithm>
#include <cmath>
#include <new>

#include "calc/grd_cyclic.h"
#include "files/unittool.h"
#include "frame/menu.h"
#include "frame/mess.h"
#include "frame/status.h"
#include "frame/string.h"
#include "frame/zav.h"
#include "grid/grd_tool.h"
#include "map/maptran.h"

namespace zav {
namespace {

/// Grid coordinates that overshoot the last row or column by less than this still count as on it.
constexpr double OVERSHOOT = 0.9999;

bool has_values(const GRD_report* grid) {
    return grid != nullptr && grid->grid && grid->domain.nx > 0 && grid->domain.ny > 0;
}

std::size_t point_count(const Domain& domain) {
    return static_cast<std::size_t>(domain.nx) * static_cast<std::size_t>(domain.ny);
}

template <typename Change>
int change_values(GRD_report* grid, const Change& change) {
    if (!has_values(grid)) return -1;
    float* values = &grid->grid[0];
    for (std::size_t i = 0; i < point_count(grid->domain); ++i) {
        if (values[i] != FMISS) values[i] = change(values[i]);
    }
    return 0;
}

bool is_absent(const Domain* domain) { return domain == nullptr || domain->proj == MISS; }

/// Map position on `domain` to grid coordinates of `grid`.
void to_grid_coordinates(const GRD_report* grid, const Domain* domain, float* x, float* y) {
    if (is_absent(domain)) {
        MAP_grid_untran(*x, *y, x, y);
        return;
    }
    const Domain selected = *domain;  // may be the current record itself, which changes here
    float grid_x = FMISS;
    float grid_y = FMISS;
    MAP_domain_tran(&selected, &grid->domain, *x, *y, &grid_x, &grid_y);
    MAP_domain(&grid->domain);
    MAP_grid_untran(grid_x, grid_y, x, y);
    MAP_domain(&selected);
}

float value_on_current_map(const GRD_report* grid, float* x, float* y) {
    return GRD_get_value_domain(grid, MAP_get_domain(nullptr), x, y);
}

void project_points(const Domain& d, float* lats, float* lons) {
    float xc = FMISS;
    float yc = FMISS;
    MAP_tran_center(&xc, &yc);
    const double x0 = xc - d.dx * ((d.nx - 1.0) / 2.0);
    const double y0 = yc - d.dy * ((d.ny - 1.0) / 2.0);
    for (int row = d.ny - 1; row >= 0; --row) {
        for (int column = 0; column < d.nx; ++column) {
            const double x = x0 + column * static_cast<double>(d.dx);
            const double y = y0 + row * static_cast<double>(d.dy);
            *lats = FMISS;
            *lons = FMISS;
            MAP_untran(static_cast<float>(x), static_cast<float>(y), lats++, lons++);
        }
    }
}

/// Maps whose first axis shows longitude alone and whose second shows latitude alone.
bool has_straight_axes(const Domain& domain) { return domain.proj == PROJ_LATLON || domain.proj == PROJ_MERCATOR; }

/// Takes places on the earth to the current map.
void to_map(float* x, float* y) {
    const float lat = *x;
    const float lon = *y;
    if (lat != FMISS || lon != FMISS) MAP_tran(lat, lon, x, y);
}

/// Positions where grid and map both have straight axes: those of the first row and the first column are those of all.
void project_straight(const Domain& grid, const Domain& map, float* xs, float* ys) {
    Domain row = grid;  // about the same middle, so that its points keep their places
    Domain column = grid;
    row.ny = 1;
    column.nx = 1;
    const auto nx = static_cast<std::size_t>(grid.nx);
    const auto ny = static_cast<std::size_t>(grid.ny);
    std::vector<float> x(std::max(nx, ny));
    std::vector<float> y(std::max(nx, ny));
    MAP_domain(&grid);
    project_points(row, x.data(), y.data());
    MAP_domain(&map);
    for (std::size_t i = 0; i < nx; ++i) to_map(&x[i], &y[i]);
    for (std::size_t j = 0; j < ny; ++j) std::copy_n(x.begin(), nx, xs + j * nx);
    MAP_domain(&grid);
    project_points(column, x.data(), y.data());
    MAP_domain(&map);
    for (std::size_t j = 0; j < ny; ++j) {
        to_map(&x[j], &y[j]);
        std::fill_n(ys + j * nx, nx, y[j]);
    }
}

void project_each(const Domain& grid, const Domain& map, std::vector<float>& xs, std::vector<float>& ys) {
    MAP_domain(&grid);
    project_points(grid, xs.data(), ys.data());
    MAP_domain(&map);
    for (std::size_t i = 0; i < xs.size(); ++i) to_map(&xs[i], &ys[i]);
}

/// Value at a place of a grid with values; `cycle` columns go round the globe, 0 if the grid ends at its last one.
float value_at(const GRD_report* grid, float x, float y, int cycle) {
    const int nx = grid->domain.nx;
    const int ny = grid->domain.ny;
    if (cycle > 0) x -= static_cast<float>(cycle) * std::floor(x / static_cast<float>(cycle));
    const bool inside = x >= 0.0F && x <= (cycle > 0 ? cycle : nx - OVERSHOOT) && y >= 0.0F && y <= ny - OVERSHOOT;
    if (!inside) return FMISS;
    const int i = std::min(static_cast<int>(x), nx - 1);
    const int j = std::min(static_cast<int>(y), ny - 1);
    const float fx = x - static_cast<float>(i);
    const float fy = y - static_cast<float>(j);
    const bool last_column = cycle == 0 && i + 1 > nx - OVERSHOOT;
    const bool last_row = j + 1 > ny - OVERSHOOT;
    const float* row = &grid->grid[static_cast<std::ptrdiff_t>(j) * nx];
    const int next = last_column || i + 1 < nx ? i + 1 : 0;
    const float z1 = row[i];
    const float z2 = last_column || last_row ? z1 : row[next];
    const float z3 = last_row ? 0.0F : row[nx + i];
    const float z4 = last_column || last_row ? z1 : row[nx + next];
    if (z1 == FMISS || z2 == FMISS || z3 == FMISS || z4 == FMISS) return FMISS;
    return (1 - fy) * (1 - fx) * z1 + (1 - fy) * fx * z2 + (1 - fx) * fy * z3 + fx * fy * z4;
}

/// True for a lattice of tiles whose size stays within an int.
bool lattice_fits(int tiles, int points) {
    constexpr long long MOST_POINTS = 1 << 30;
    return tiles > 0 && points > 0 && static_cast<long long>(tiles) * points < MOST_POINTS;
}

}  // namespace

int GRD_maxmin(const GRD_report* grid, float* max, float* min) {
    *max = FMISS;
    *min = FMISS;
    if (!has_values(grid)) return -1;
    const float* values = &grid->grid[0];
    for (std::size_t i = 0; i < point_count(grid->domain); ++i) {
        if (values[i] == FMISS || !std::isfinite(values[i])) continue;
        if (*max == FMISS) {
            *max = *min = values[i];
        } else if (values[i] > *max) {
            *max = values[i];
        } else if (values[i] < *min) {
            *min = values[i];
        }
    }
    return 0;
}

int GRD_UVmax(const GRD_report* ugrid, const GRD_report* vgrid, float* max) {
    *max = FMISS;
    if (!has_values(ugrid) || !has_values(vgrid)) return -1;
    const std::size_t count = std::min(point_count(ugrid->domain), point_count(vgrid->domain));
    for (std::size_t i = 0; i < count; ++i) {
        const double u = ugrid->grid[i];
        const double v = vgrid->grid[i];
        if (u == FMISS || v == FMISS || u == 0.0 || v == 0.0 || !std::isfinite(u) || !std::isfinite(v)) continue;
        *max = std::max(*max, static_cast<float>(std::sqrt(u * u + v * v)));
    }
    return 0;
}

int GRD_proj_XY(const GRD_report* grid, const Domain* domain, std::vector<float>& grdx, std::vector<float>& grdy) {
    grdx.clear();
    grdy.clear();
    if (grid->domain.nx < 1 || grid->domain.ny < 1) return 0;
    const Domain target = *domain;  // may be the current record itself, which changes here
    Domain saved;
    MAP_get_domain(&saved);
    int result = 0;
    try {
        grdx.resize(point_count(grid->domain));
        grdy.resize(point_count(grid->domain));
        if (has_straight_axes(grid->domain) && has_straight_axes(target)) {
            project_straight(grid->domain, target, grdx.data(), grdy.data());
        } else {
            project_each(grid->domain, target, grdx, grdy);
        }
    } catch (const std::exception&) {
        grdx.clear();
        MESS_print(MESS_WARN, "GRD_proj_XY: Unable to allocate grid arrays\n");
        result = -1;
    }
    MAP_domain(&saved);
    return result;
}

float GRD_get_value(const GRD_report* grid, float x, float y) {
    if (!has_values(grid)) return FMISS;
    const bool beside = x < 0.0F || x > static_cast<float>(grid->domain.nx - 1);
    return value_at(grid, x, y, beside ? GRD_cycle(grid->domain) : 0);
}

float GRD_get_value_open(const GRD_report* grid, float x, float y) {
    return has_values(grid) ? value_at(grid, x, y, 0) : FMISS;
}

float GRD_get_value_domain(const GRD_report* grid, const Domain* domain, float* x, float* y) {
    if (grid == nullptr) return FMISS;
    to_grid_coordinates(grid, domain, x, y);
    return GRD_get_value(grid, *x, *y);
}

int GRD_print_value(float x, float y, const GRD_report* grid) {
    const float value = value_on_current_map(grid, &x, &y);
    MESS_print(MESS_PRINT, "Grid: %6.2f,%6.2f", x, y);
    if (value != FMISS) MESS_print(MESS_PRINT, " = %6.2f", value);
    MESS_print(MESS_PRINT, "\n");
    return 0;
}

int GRD_print_value2(float x, float y, const GRD_report* ugrid, const GRD_report* vgrid) {
    float vx = x;
    float vy = y;
    const float u = value_on_current_map(ugrid, &x, &y);
    const float v = value_on_current_map(vgrid, &vx, &vy);
    MESS_print(MESS_PRINT, "Grid: %6.2f,%6.2f", x, y);
    if (u != FMISS) {
        MESS_print(MESS_PRINT, " = %6.2f", u);
    } else {
        MESS_print(MESS_PRINT, " = ");
    }
    if (v != FMISS) MESS_print(MESS_PRINT, ",%6.2f", v);
    MESS_print(MESS_PRINT, "\n");
    return 0;
}

int GRD_edit_value(const std::string& /*event*/, float x, float y, GRD_report* grid) {
    if (!has_values(grid)) return -1;
    to_grid_coordinates(grid, MAP_get_domain(nullptr), &x, &y);
    const double column = std::trunc(x + 0.5) + 0.0;  // no negative zero
    const double row = std::trunc(y + 0.5) + 0.0;
    const bool inside = column >= 0.0 && column < grid->domain.nx && row >= 0.0 && row < grid->domain.ny;
    if (!inside) {
        MESS_print(MESS_PRINT, "Grid: %3.0f,%3.0f Off grid\n", column, row);
        return -1;
    }
    const auto place =
        static_cast<std::size_t>(row) * static_cast<std::size_t>(grid->domain.nx) + static_cast<std::size_t>(column);
    if (grid->grid[place] == FMISS) {
        MESS_print(MESS_PRINT, "Grid: %3.0f,%3.0f Val = MISS ", column, row);
    } else {
        MESS_print(MESS_PRINT, "Grid: %3.0f,%3.0f Val = %6.2f ", column, row, grid->grid[place]);
    }
    grid->grid[place] = ZAV_promptf("New value: ");
    return 0;
}

int GRD_scale(GRD_report* grid, float fact) {
    return change_values(grid, [fact](float value) { return value * fact; });
}

int GRD_offset(GRD_report* grid, float val) {
    return change_values(grid, [val](float value) { return value + val; });
}

int GRD_units(GRD_report* grid, const std::string& units) {
    if (!has_values(grid)) return -1;
    MESS_print(MESS_DEBUG, "GRD_units: %s -> %s\n", grid->units.c_str(), units.c_str());
    const UnitConversion conversion = UNIT_find(grid->units, units);
    // Values without units may be given a name for them.
    using Kind = UnitConversion::Kind;
    const bool unknown = conversion.kind == Kind::unknown || conversion.kind == Kind::none;
    if (unknown && !grid->units.empty()) {
        MESS_print(MESS_WARN, "GRD_units: No conversion from %s to %s: %s\n", grid->units.c_str(), units.c_str(),
                   grid->info.c_str());
        ZAV_note(STATUS_WORD);
        return -1;
    }
    const bool other = conversion.kind == Kind::scale || conversion.kind == Kind::lookup || unknown;
    if (other && conversion.kind != Kind::none) change_values(grid, [&](float value) { return conversion(value); });
    if (units.empty()) return 0;
    grid->units = fit_text(units, GRD_UNITS_SIZE);
    UNIT_change(grid->info, grid->units);
    grid->info = fit_text(grid->info, GRD_INFO_SIZE);
    return 0;
}

int GRD_piece_setup(GRD_report* grid, int nx, int ny, const GRD_report* piece) {
    if (piece != nullptr) *grid = *piece;
    Domain& d = grid->domain;
    if (!lattice_fits(nx, d.nx) || !lattice_fits(ny, d.ny)) return -1;
    const double top = d.clat + d.dy * (d.ny - 1.0) / 2.0;
    const double left = d.clon - d.dx * (d.nx - 1.0) / 2.0;
    d.nx = nx * d.nx - (nx - 1);
    d.ny = ny * d.ny - (ny - 1);
    d.clat = static_cast<float>(top - d.dy * (d.ny - 1.0) / 2.0);
    d.clon = static_cast<float>(left + d.dx * (d.nx - 1.0) / 2.0);
    if (piece == nullptr) return 0;
    grid->grid = nullptr;
    if (GRD_alloc(grid) == 0) return -1;
    std::fill_n(&grid->grid[0], point_count(d), FMISS);
    return 0;
}

int GRD_piece_grid(GRD_report* grid, int x, int y, const GRD_report* piece) {
    if (!has_values(grid) || !has_values(piece)) return -1;
    const Domain& tile = piece->domain;
    const Domain& whole = grid->domain;
    const long long column = static_cast<long long>(x) * (tile.nx - 1);
    const long long row = static_cast<long long>(y) * (tile.ny - 1);
    if (column < 0 || row < 0 || column + tile.nx > whole.nx || row + tile.ny > whole.ny) return -1;
    for (int j = 0; j < tile.ny; ++j) {
        const float* from = &piece->grid[static_cast<std::ptrdiff_t>(j) * tile.nx];
        float* to = &grid->grid[static_cast<std::ptrdiff_t>((row + j) * whole.nx + column)];
        std::copy_n(from, tile.nx, to);
    }
    return 0;
}

}  // namespace zav
