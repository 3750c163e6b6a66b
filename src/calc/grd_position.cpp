// Work on grids by the place of each point.

#include <array>
#include <cmath>

#include "calc/grd_oper.h"
#include "calc/grd_walk.h"
#include "frame/string.h"
#include "grid/grd_tool.h"

namespace zav {
namespace {

constexpr double DEGREE = 3.14159265358979323846 / 180.0;
/// Twice the earth's rotation, in 1e-5 per second.
constexpr double ROTATION = 14.584;
constexpr double TURN = 360.0;

float rounded_latitude(double lat) {
    constexpr double ROUNDING = 5e-5;  // some metres
    constexpr double POLE = 90.0;
    for (const double line : {-POLE, 0.0, POLE}) {
        if (std::fabs(lat - line) < ROUNDING) return static_cast<float>(line);
    }
    return static_cast<float>(lat);
}

float coriolis_at(float lat) { return static_cast<float>(ROTATION * std::sin(lat * DEGREE)); }

/// Earth place of a map position, missing where there is none.
EarthPoint earth_place(float x, float y) {
    EarthPoint place{FMISS, FMISS};
    MAP_untran(x, y, &place.lat, &place.lon);
    return place;
}

using Combine = float (*)(float z, float f);

/// Combines values with f, row by row on latitude-longitude grids, else point by point.
void combine(GRD_report* grid, Combine with) {
    float* values = grid->grid.get();
    const auto put = [with](float& z, float f) { z = z == FMISS ? FMISS : with(z, f); };
    if (grid->domain.proj == PROJ_LATLON) {
        for (int row = 0; row < grid->domain.ny; row++) {
            const float f = coriolis_at(GRD_row_latitude(grid->domain, row));
            for (int column = 0; column < grid->domain.nx; column++) put(*values++, f);
        }
        return;
    }
    GRD_walk(*grid, [&](std::size_t point, float x, float y) {
        if (values[point] == FMISS) return;
        const float lat = GRD_on_earth(grid->domain) ? earth_place(x, y).lat : FMISS;
        if (lat == FMISS) {
            values[point] = FMISS;
        } else {
            put(values[point], coriolis_at(rounded_latitude(lat)));
        }
    });
}

struct Operation {
    const char* name;
    Combine with;
};

constexpr std::array<Operation, 6> OPERATIONS{{
    {"add", [](float z, float f) { return z + f; }},
    {"sub", [](float z, float f) { return z - f; }},
    {"sub-", [](float z, float f) { return f - z; }},
    {"mul", [](float z, float f) { return z * f; }},
    {"div", [](float z, float f) { return z / f; }},
    {"div-", [](float z, float f) { return f / z; }},
}};

/// What a point's place says of it.
struct Locate {
    const char* name;
    const char* info;
    const char* units;
    float (*value)(float x, float y);
};

constexpr std::array<Locate, 4> PLACES{{
    {"lat", "Latitude (deg)", "deg", [](float x, float y) { return earth_place(x, y).lat; }},
    {"lon", "Longitude (deg)", "deg",
     [](float x, float y) {
         const float lon = earth_place(x, y).lon;
         const bool within = lon == FMISS || std::fabs(lon) <= TURN / 2;
         return within ? lon : static_cast<float>(std::remainder(static_cast<double>(lon), TURN));
     }},
    {"projx", "Projection X", "", [](float x, float) { return x; }},
    {"projy", "Projection Y", "", [](float, float y) { return y; }},
}};

template <class Table>
auto find_row(const Table& table, const std::string& name) -> decltype(table.data()) {
    for (const auto& row : table) {
        if (stricmp(row.name, name.c_str()) == 0) return &row;
    }
    return nullptr;
}

}  // namespace

float GRD_row_latitude(const Domain& domain, int row) {
    const double bottom = domain.clat - domain.dy * ((domain.ny - 1) / 2.0);
    return rounded_latitude(bottom + domain.dy * static_cast<float>(domain.ny - 1 - row));
}

GRD_map_of::GRD_map_of(const GRD_report& grid) {
    MAP_get_domain(&saved);
    const Domain domain = grid.domain;
    MAP_domain(&domain);
}

GRD_map_of::~GRD_map_of() { MAP_domain(&saved); }

int GRD_coriolis(GRD_report* grid, const std::string& oper) {
    const Operation* operation = find_row(OPERATIONS, oper);
    if (operation == nullptr || !GRD_has_values(grid)) return -1;
    combine(grid, operation->with);
    return 0;
}

int GRD_point_locate(GRD_report* grid, const std::string& oper) {
    const Locate* locate = find_row(PLACES, oper);
    if (locate == nullptr || !GRD_has_values(grid)) return -1;
    float* values = grid->grid.get();
    const bool on_earth = GRD_on_earth(grid->domain);
    GRD_walk(*grid, [&](std::size_t point, float x, float y) {
        if (values[point] != FMISS) values[point] = on_earth ? locate->value(x, y) : FMISS;
    });
    grid->info = locate->info;
    grid->units = locate->units;
    grid->var = 0;
    return 0;
}

int GRD_correct_UV(GRD_report* ugrid, GRD_report* vgrid) {
    if (!GRD_has_values(ugrid) || !GRD_has_values(vgrid)) return -1;
    if (ugrid->domain.nx != vgrid->domain.nx || ugrid->domain.ny != vgrid->domain.ny) return -1;
    constexpr double CALM = 0.01;
    const bool on_earth = GRD_on_earth(ugrid->domain);
    GRD_walk(*ugrid, [&](std::size_t point, float x, float y) {
        float& u = ugrid->grid[static_cast<std::ptrdiff_t>(point)];
        float& v = vgrid->grid[static_cast<std::ptrdiff_t>(point)];
        if (u == FMISS || v == FMISS) return;
        const double speed = std::sqrt(static_cast<double>(u) * u + static_cast<double>(v) * v);
        const double dir = speed < CALM ? 0.0 : std::atan2(-u, -v) / DEGREE;
        const float true_dir = on_earth ? MAP_undir_adj(static_cast<float>(dir), x, y) : FMISS;
        u = true_dir == FMISS ? FMISS : static_cast<float>(-speed * std::sin(true_dir * DEGREE));
        v = true_dir == FMISS ? FMISS : static_cast<float>(-speed * std::cos(true_dir * DEGREE));
    });
    return 0;
}

}  // namespace zav
