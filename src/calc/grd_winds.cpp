// Winds.

#include <cmath>

#include "calc/grd_families.h"
#include "calc/grd_points.h"
#include "calc/grd_walk.h"
#include "grid/grd_tool.h"

namespace zav {
namespace {

constexpr double DEGREE = 3.14159265358979323846 / 180.0;
constexpr double TURN = 360.0;

/// GRD_begin for two arguments that have to be grids.
bool begin(Math_frame& frame) {
    const bool grids = frame.argument(1) != nullptr && frame.argument(2) != nullptr;
    return grids ? GRD_begin(frame, 2) : GRD_refuse() != 0;
}

/// The same for a function whose result is a wind direction.
bool begin_direction(Math_frame& frame) {
    if (frame.type.empty()) frame.type = "wdir";
    return begin(frame);
}

/// A direction brought into 0 to 360.
float in_turn(double dir) {
    if (dir < 0.0) dir += TURN;
    if (dir > TURN) dir -= TURN;
    return static_cast<float>(dir);
}

/// Direction that a wind comes from.
float direction(float u, float v) {
    if (u == 0.0F && v == 0.0F) return 0.0F;
    return in_turn(std::atan2(-static_cast<double>(u), -static_cast<double>(v)) / DEGREE + 0.0);  // no negative zero
}

float component_u(float dir, float speed) { return static_cast<float>(-speed * std::sin(dir * DEGREE)); }
float component_v(float dir, float speed) { return static_cast<float>(-speed * std::cos(dir * DEGREE)); }

using Component = float (*)(float dir, float speed);

int component(Math_frame& frame, Component of) {
    if (!begin(frame)) return 0;
    math_points<1, 2>(frame, 0, of);
    return 1;
}

/// The components that directions and speeds on the earth have along the axes of the grid. The directions turned are
/// the result's own; those of the argument stay as they are.
int grid_component(Math_frame& frame, Component of) {
    if (!begin(frame)) return 0;
    const GRD_report& grid = *frame.grids[0];
    if (grid.domain.proj == PROJ_LATLON) {
        math_points<1, 2>(frame, 0, of);
        return 1;
    }
    const bool on_earth = GRD_on_earth(grid.domain);
    GRD_walk(grid, [&](std::size_t point, float x, float y) {
        const float dir = frame.ptr[1][point];
        const float speed = frame.ptr[2][point];
        float& result = frame.ptr[0][point];
        result = FMISS;
        if (!on_earth || dir == FMISS || speed == FMISS) return;
        const float turned = MAP_uvdir_adj(component_u(dir, 1.0F), component_v(dir, 1.0F), x, y);
        if (turned != FMISS) result = of(dir + turned, speed);
    });
    return 1;
}

}  // namespace

int math_wspd(Math_frame& frame) {
    if (!begin(frame)) return 0;
    math_points<1, 2>(frame, 0, [](float u, float v) { return std::sqrt(u * u + v * v); });
    GRD_label(frame, frame.argument(1));
    return 1;
}

int math_wdir(Math_frame& frame) {
    if (!begin_direction(frame)) return 0;
    math_points<1, 2>(frame, 0, direction);
    return 1;
}

int math_ewdir(Math_frame& frame) {
    if (!begin_direction(frame)) return 0;
    math_points<1, 2>(frame, 0, direction);
    const GRD_report& grid = *frame.grids[0];
    if (grid.domain.proj == PROJ_LATLON) return 1;  // components are to east and north already
    const bool on_earth = GRD_on_earth(grid.domain);
    GRD_walk(grid, [&](std::size_t point, float x, float y) {
        float& dir = frame.ptr[0][point];
        if (dir == FMISS) return;
        const float turned = on_earth ? MAP_undir_adj(dir, x, y) : FMISS;
        dir = turned == FMISS ? FMISS : in_turn(turned);
    });
    return 1;
}

int math_uwnd(Math_frame& frame) { return component(frame, component_u); }

int math_vwnd(Math_frame& frame) { return component(frame, component_v); }

int math_uwndg(Math_frame& frame) { return grid_component(frame, component_u); }

int math_vwndg(Math_frame& frame) { return grid_component(frame, component_v); }

}  // namespace zav
