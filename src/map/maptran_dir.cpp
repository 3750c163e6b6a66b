/// Directions, distances and point density on the current map.

#include <algorithm>
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

/// What a map that keeps angles adds to every direction at map point (x, y). North points to the origin of a northern
/// polar or conic map and away from that of a southern one.
double conformal_turn(float x, float y) {
    const Domain& d = map_state.domain;
    const bool southern = d.plat < 0;
    if (d.proj != PROJ_POLAR && d.proj != PROJ_LAMBERT) return 0.0;
    if (x != 0.0F || y != 0.0F) return southern ? turn(x, y) : -turn(x, -y);
    if (d.proj == PROJ_LAMBERT) return 0.0;
    return southern ? d.plon : -d.plon;
}

bool bends_angles() { return map_state.projection != nullptr && map_state.projection->bends_angles; }

struct Vector {
    double x;
    double y;
};

/// `dir` turned as little as need be to lie along `v`.
float along(const Vector& v, float dir) {
    return static_cast<float>(dir + std::remainder(turn(v.x, v.y) - dir, 360.0));
}

/// What one step on the earth becomes on the map.
struct Axes {
    Vector east;
    Vector north;
    /// Image of the vector of length 1 along `dir`.
    Vector image(float dir) const {
        const double e = std::sin(D2R * dir);
        const double n = std::cos(D2R * dir);
        return {e * east.x + n * north.x, e * east.y + n * north.y};
    }
    /// The vector on the earth, `x` to the east, whose image has the direction of `v`; its length has no meaning.
    Vector source(const Vector& v) const {
        const double area = east.x * north.y - north.x * east.y;
        const double sign = area < 0.0 ? -1.0 : 1.0;
        return {sign * (v.x * north.y - v.y * north.x), sign * (v.y * east.x - v.x * east.y)};
    }
};

/// Change of the map position with latitude (`dlat` 1) or longitude (`dlon` 1), a step of either sign being as good.
bool find_slope(double lat, double lon, double dlat, double dlon, Vector& slope) {
    constexpr double STEP = 1e-5;
    double x0 = 0.0;
    double y0 = 0.0;
    if (map_state.projection->forward(lat, lon, &x0, &y0) == 0) return false;
    for (const double step : {STEP, -STEP}) {
        double x = 0.0;
        double y = 0.0;
        if (map_state.projection->forward(lat + step * dlat, lon + step * dlon, &x, &y) == 0) continue;
        slope = {(x - x0) / step, (y - y0) / step};
        return true;
    }
    return false;
}

/// The earth's axes at a map point, out of the projection's own slopes. False off the map.
bool find_axes(float x, float y, Axes& axes) {
    // At the poles east and north are those of the meridian that the point counts to.
    constexpr double NEAREST_POLE = 89.98;
    float place_lat = FMISS;
    float place_lon = FMISS;
    MAP_untran(x, y, &place_lat, &place_lon);
    if (place_lat == FMISS || !std::isfinite(place_lat) || !std::isfinite(place_lon)) return false;
    const double lat = std::clamp(static_cast<double>(place_lat), -NEAREST_POLE, NEAREST_POLE);
    // Steps lead toward the middle of the map, away from the meridian at which it is cut.
    const double from_middle = std::remainder(place_lon - map_state.domain.plon, 360.0);
    const double inward = from_middle > 0.0 ? -1.0 : 1.0;
    const double lon = map_state.domain.plon + from_middle;
    if (!find_slope(lat, lon, 1.0, 0.0, axes.north) || !find_slope(lat, lon, 0.0, inward, axes.east)) return false;
    const double stretch = inward / std::cos(D2R * lat);
    axes.east = {axes.east.x * stretch, axes.east.y * stretch};
    return true;
}

/// The vectors of length 1 on the earth that run along a grid's columns and rows.
struct Grid_axes {
    Vector right;
    Vector up;
    explicit Grid_axes(const Axes& axes) : right(unit(axes.source({1.0, 0.0}))), up(unit(axes.source({0.0, 1.0}))) {}
    static Vector unit(const Vector& v) {
        const double length = std::hypot(v.x, v.y);
        return {v.x / length, v.y / length};
    }
};

/// Earth point `rad` kilometres from another one along direction `dir`.
void step_on_earth(float dir, double rad, float* lat, float* lon) {
    const double phi = *lat;
    *lon = static_cast<float>(*lon + rad * std::sin(D2R * dir) / (std::cos(D2R * phi) * KM_PER_DEGREE));
    *lat = static_cast<float>(phi + rad * std::cos(D2R * dir) / KM_PER_DEGREE);
}

}  // namespace

int MAP_offset(float xi, float yi, float dir, float rad, float* xf, float* yf) {
    float lat = FMISS;
    float lon = FMISS;
    MAP_untran(xi, yi, &lat, &lon);
    if (lat == FMISS) return map_hidden(xf, yf);
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
    if (!bends_angles()) return static_cast<float>(dir + conformal_turn(x, y));
    Axes axes{};
    return find_axes(x, y, axes) ? along(axes.image(dir), dir) : FMISS;
}

float MAP_undir_adj(float dir, float x, float y) {
    if (!bends_angles()) return static_cast<float>(dir - conformal_turn(x, y));
    if (map_state.domain.proj == PROJ_LATLON) return dir;
    Axes axes{};
    if (!find_axes(x, y, axes)) return FMISS;
    const Grid_axes grid(axes);
    const double right = std::sin(D2R * dir);
    const double up = std::cos(D2R * dir);
    return along({right * grid.right.x + up * grid.up.x, right * grid.right.y + up * grid.up.y}, dir);
}

float MAP_uvdir_adj(float u, float v, float x, float y) {
    if (!bends_angles()) return static_cast<float>(conformal_turn(x, y));
    if (map_state.domain.proj == PROJ_LATLON) return 0.0F;
    Axes axes{};
    if (!find_axes(x, y, axes)) return FMISS;
    const Grid_axes grid(axes);
    const Vector wind = u == 0.0F && v == 0.0F ? Vector{0.0, 1.0} : Vector{u, v};
    const Axes to_grid{grid.right, grid.up};
    const Vector parts = to_grid.source(wind);
    return static_cast<float>(std::remainder(turn(parts.x, parts.y) - turn(wind.x, wind.y), 360.0));
}

float MAP_dir(float x1, float y1, float x2, float y2) {
    const Vector step{static_cast<double>(x2) - x1, static_cast<double>(y2) - y1};
    if (!bends_angles()) return static_cast<float>(turn(step.x, step.y) - conformal_turn(x1, y1));
    Axes axes{};
    if (!find_axes(x1, y1, axes)) return FMISS;
    const Vector on_earth = axes.source(step);
    return static_cast<float>(turn(on_earth.x, on_earth.y));
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
