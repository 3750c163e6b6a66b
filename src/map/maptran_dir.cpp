/// Directions, distances and point density on the current map.

#include <cmath>
#include <new>
#include <vector>

#include "map/maptran_state.h"

namespace zav {
namespace {

/// Occupancy of the domain's cells by drawn points.
struct State {
    std::vector<unsigned char> grid;
    int plot_grid_len = 0;
    int grid_limit = 0;
};
State state;

/// Most cells that an occupancy grid may have; a finer one is no use on any page.
constexpr long long MOST_CELLS = 1LL << 28;

double turn(double x, double y) { return R2D * std::atan2(x, y); }

bool southern() { return map_state.domain.plat < 0; }

/// What a polar map adds to a direction from north at map point (x, y).
double polar_turn(float x, float y) {
    if (x == 0.0F && y == 0.0F) return southern() ? map_state.domain.plon : -map_state.domain.plon;
    return southern() ? turn(x, y) : -turn(x, -y);
}

/// What a Lambert map adds.
double lambert_turn(float x, float y) {
    map_prepare();
    return -turn(x, -static_cast<double>(map_state.scale) * y);
}

/// Earth point `rad` kilometres from another one along direction `dir`.
void step_on_earth(float dir, double rad, float* lat, float* lon) {
    const double phi = *lat;
    *lon = static_cast<float>(*lon + rad * std::sin(D2R * dir) / (std::cos(D2R * phi) * KM_PER_DEGREE));
    *lat = static_cast<float>(phi + rad * std::cos(D2R * dir) / KM_PER_DEGREE);
}

float satellite_direction(float dir, float x, float y) {
    float lat = FMISS;
    float lon = FMISS;
    float x2 = FMISS;
    float y2 = FMISS;
    MAP_untran(x, y, &lat, &lon);
    step_on_earth(dir, 1.0, &lat, &lon);
    MAP_tran(lat, lon, &x2, &y2);
    if (x2 == FMISS || y2 == FMISS) return FMISS;
    return static_cast<float>(turn(static_cast<double>(x2) - x, static_cast<double>(y2) - y));
}

}  // namespace

int MAP_offset(float xi, float yi, float dir, float rad, float* xf, float* yf) {
    float lat = FMISS;
    float lon = FMISS;
    MAP_untran(xi, yi, &lat, &lon);
    step_on_earth(dir, rad, &lat, &lon);
    MAP_tran(lat, lon, xf, yf);
    return 0;
}

float MAP_factor(float lat, float /*lon*/) {
    switch (map_state.domain.proj) {
        case PROJ_POLAR:
            return static_cast<float>(1.866 / (1.0 + std::sin(D2R * lat)));
        case PROJ_LAMBERT:
            return map_state.domain.param[2];
        default:
            return 1.0F;
    }
}

float MAP_dir_adj(float dir, float x, float y) {
    switch (map_state.domain.proj) {
        case PROJ_POLAR:
            return static_cast<float>(dir + polar_turn(x, y));
        case PROJ_LAMBERT:
            return static_cast<float>(dir + lambert_turn(x, y));
        case PROJ_SATELLITE:
            return satellite_direction(dir, x, y);
        default:
            return dir;
    }
}

float MAP_undir_adj(float dir, float x, float y) {
    switch (map_state.domain.proj) {
        case PROJ_POLAR:
            return static_cast<float>(dir - polar_turn(x, y));
        case PROJ_LAMBERT:
            return static_cast<float>(dir - lambert_turn(x, y));
        default:
            return dir;
    }
}

float MAP_uvdir_adj(float /*u*/, float /*v*/, float x, float y) {
    return map_state.domain.proj == PROJ_POLAR ? MAP_dir_adj(0.0F, x, y) : 0.0F;
}

float MAP_dir(float x1, float y1, float x2, float y2) {
    double dir = turn(static_cast<double>(x2) - x1, static_cast<double>(y2) - y1);
    if (map_state.domain.proj == PROJ_POLAR) dir += southern() ? -turn(x1, y1) : turn(x1, -y1);
    return static_cast<float>(dir);
}

int MAP_set_plot_limit(int val) {
    state.grid_limit = val;
    return 0;
}

int MAP_plot_grid_init() {
    const Domain& d = map_state.domain;
    state.grid.clear();
    state.plot_grid_len = 0;
    if (d.nx < 1 || d.ny < 1) return 0;
    const long long fine = state.grid_limit > 1 ? state.grid_limit : 1;
    const long long points = static_cast<long long>(d.nx) * d.ny;
    if (fine > MOST_CELLS || points > MOST_CELLS / (fine * fine)) return 0;
    try {
        state.grid.assign(static_cast<std::size_t>(points * fine * fine), 0);
    } catch (const std::bad_alloc&) {
        return 0;
    }
    state.plot_grid_len = static_cast<int>(state.grid.size());
    return 0;
}

int MAP_plot_grid(float x, float y) {
    const int limit = state.grid_limit;
    if (limit == 0 || state.grid.empty()) return 1;
    const Domain& d = map_state.domain;
    float column = 0.0F;
    float row = 0.0F;
    MAP_grid_untran(x, y, &column, &row);
    const bool inside = column >= 0.0F && column <= d.nx - 1.0F && row >= 0.0F && row <= d.ny - 1.0F;
    if (!inside) return 0;
    if (limit == -1) return 1;
    const double finer = limit < 0 ? 1.0 : limit;
    const double coarser = limit < 0 ? -static_cast<double>(limit) : 1.0;
    const double place = std::trunc(column * finer / coarser + finer * d.nx * std::trunc(row * finer / coarser));
    if (!(place >= 0.0 && place < state.plot_grid_len)) return 0;
    unsigned char& taken = state.grid[static_cast<std::size_t>(place)];
    if (taken > 0) return 0;
    taken = 1;
    return 1;
}

}  // namespace zav
