// Coordinate variables and grid mappings of the CF conventions (their appendix F) as a Domain.

#include "grid/netcdf/cdf_cf_grid.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <numbers>

#include "frame/string.h"
#include "grid/grib/grib_place.h"
#include "map/maptran.h"
#include "map/spheroid.h"

namespace zav {
namespace {

/// How far a point may lie from its even place, in steps. The latitudes of Gaussian grids lie 0.011 off.
constexpr double UNEVEN = 0.006;
constexpr double POLE = 90.0;
constexpr double TURN = 360.0;
constexpr double RADIANS = std::numbers::pi / 180.0;
/// The program's earth, for files that tell none.
constexpr double RADIUS = 6371220.0;

const char* const NOT_EVEN = "its coordinates aren't evenly spaced";
const char* const NO_PLACE = "its grid mapping gives no place";

/// Takes turns out of longitudes, so that each goes on from the one before.
void unwrap(std::vector<double>& values) {
    for (std::size_t i = 1; i < values.size(); i++) {
        const double turns = std::round((values[i] - values[i - 1]) / TURN);
        values[i] -= turns * TURN;
    }
}

GribEarth earth_of(const Cf_mapping& mapping) {
    const double radius = mapping.number("earth_radius", 0.0);
    const double major = mapping.number("semi_major_axis", radius);
    const double flattening = mapping.number("inverse_flattening", 0.0);
    const double told = mapping.number("semi_minor_axis", major);
    const double minor = flattening > 0.0 && !mapping.has("semi_minor_axis") ? major * (1.0 - 1.0 / flattening) : told;
    return major > 0.0 ? GribEarth{major, minor} : GribEarth{RADIUS, RADIUS};
}

/// A grid whose first point is its south-western corner, counted from the origin of the map.
GribPlane corner(const Cf_mapping& mapping, const Cf_steps& x, const Cf_steps& y, double scale) {
    GribPlane grid;
    grid.dx = std::fabs(x.step) / scale;
    grid.dy = std::fabs(y.step) / scale;
    if (grid.dx == 0.0) grid.dx = grid.dy;
    if (grid.dy == 0.0) grid.dy = grid.dx;
    grid.east = (std::min(x.first, x.last) - mapping.number("false_easting", 0.0)) / scale;
    grid.north = (std::min(y.first, y.last) - mapping.number("false_northing", 0.0)) / scale;
    grid.earth = earth_of(mapping);
    return grid;
}

/// A map that is true at `latitude` of its origin but for a factor is one of another size.
double factor_of(const Cf_mapping& mapping) {
    const double factor = mapping.number("scale_factor_at_projection_origin", 1.0);
    return factor > 0.0 ? factor : 1.0;
}

void place_lambert(const Cf_mapping& mapping, const Cf_steps& x, const Cf_steps& y, Domain* domain) {
    GribPlane grid = corner(mapping, x, y, factor_of(mapping));
    const auto found = mapping.numbers.find("standard_parallel");
    const double origin = mapping.number("latitude_of_projection_origin", FMISS);
    const bool given = found != mapping.numbers.end();
    grid.true1 = given ? found->second.front() : origin;
    grid.true2 = given ? found->second.back() : origin;
    if (grid.true1 == FMISS || grid.true1 + grid.true2 == 0.0) return;
    if (std::fabs(grid.true1) > POLE || std::fabs(grid.true2) > POLE) return;
    grid.plon = mapping.number("longitude_of_central_meridian", 0.0);
    grid.lat1 = origin == FMISS ? grid.true1 : origin;
    grid.lon1 = grid.plon;
    grib_place_lambert(grid, 1, domain);
}

void place_polar(const Cf_mapping& mapping, const Cf_steps& x, const Cf_steps& y, Domain* domain) {
    const double origin = mapping.number("latitude_of_projection_origin", mapping.number("standard_parallel", POLE));
    if (mapping.has("latitude_of_projection_origin") && std::fabs(std::fabs(origin) - POLE) > 1e-6) return;
    GribPlane grid = corner(mapping, x, y, mapping.has("standard_parallel") ? 1.0 : factor_of(mapping));
    grid.south = origin < 0.0;
    const double parallel = std::fabs(mapping.number("standard_parallel", POLE));
    grid.true1 = grid.south ? -parallel : parallel;
    if (parallel > POLE) return;
    grid.plon =
        mapping.number("straight_vertical_longitude_from_pole", mapping.number("longitude_of_projection_origin", 0.0));
    grid.lat1 = grid.south ? -POLE : POLE;
    grid.lon1 = grid.plon;
    grib_place_polar(grid, 1, domain);
}

void place_mercator(const Cf_mapping& mapping, const Cf_steps& x, const Cf_steps& y, Domain* domain) {
    const bool given = mapping.has("standard_parallel");
    GribPlane grid = corner(mapping, x, y, given ? 1.0 : factor_of(mapping));
    grid.true1 = mapping.number("standard_parallel", 0.0);
    if (std::fabs(grid.true1) >= POLE) return;
    // The first point itself, so that a grid far from the meridian of the origin isn't laid on the other side of it.
    const double ratio = grid.earth.minor / grid.earth.major;
    const Spheroid earth(grid.earth.major, std::sqrt(std::max(1.0 - ratio * ratio, 0.0)));
    const double unit = earth.radius() * earth.parallel(grid.true1);
    grid.lon1 = mapping.number("longitude_of_projection_origin", 0.0) + grid.east / (unit * RADIANS);
    grid.lat1 = earth.latitude(std::exp(-grid.north / unit));
    grid.east = grid.north = 0.0;
    grib_place_mercator(grid, 1, domain);
}

struct Projection {
    const char* name;
    void (*place)(const Cf_mapping& mapping, const Cf_steps& x, const Cf_steps& y, Domain* domain);
};
constexpr std::array<Projection, 4> PROJECTIONS = {{
    {"lambert_conformal_conic", place_lambert},
    {"polar_stereographic", place_polar},
    {"stereographic", place_polar},
    {"mercator", place_mercator},
}};

}  // namespace

double Cf_mapping::number(const char* attribute, double other) const {
    const auto found = numbers.find(attribute);
    return found == numbers.end() || found->second.empty() || !std::isfinite(found->second[0]) ? other
                                                                                               : found->second[0];
}

Cf_steps cf_steps(const std::vector<double>& values, bool single, bool round) {
    Cf_steps steps;
    if (values.empty() || values.size() > static_cast<std::size_t>(std::numeric_limits<int>::max())) return steps;
    double largest = 0.0;
    for (const double value : values) {
        if (!std::isfinite(value)) return steps;
        largest = std::max(largest, std::fabs(value));
    }
    std::vector<double> line(values);
    if (round) unwrap(line);
    steps.count = static_cast<int>(line.size());
    steps.first = line.front();
    steps.last = line.back();
    steps.rounding = largest * static_cast<double>(std::numeric_limits<float>::epsilon()) * (single ? 1.0 : 1e-6);
    steps.even = true;
    if (line.size() == 1) return steps;
    steps.step = (steps.last - steps.first) / (steps.count - 1);
    const double allowed = UNEVEN * std::fabs(steps.step) + 1.5 * steps.rounding;
    steps.even = std::fabs(steps.step) > 2.0 * steps.rounding;
    for (std::size_t i = 0; i < line.size() && steps.even; i++) {
        steps.even = std::fabs(line[i] - (steps.first + steps.step * static_cast<double>(i))) <= allowed;
    }
    return steps;
}

std::string cf_place_latlon(const Cf_steps& lat, const Cf_steps& lon, Domain* domain) {
    DOM_init(domain);
    if (!lat.even || !lon.even) return NOT_EVEN;
    const double slack = lat.rounding + UNEVEN * std::fabs(lat.step);
    if (std::max(std::fabs(lat.first), std::fabs(lat.last)) > POLE + slack) return "its latitudes go beyond 90 degrees";
    if (std::fabs(lon.last - lon.first) > TURN + 0.5 * std::fabs(lon.step)) return "it goes round the earth twice";
    GribLatlon grid;
    grid.lat1 = std::clamp(lat.first, -POLE, POLE);
    grid.lat2 = std::clamp(lat.last, -POLE, POLE);
    grid.lon1 = std::min(lon.first, lon.last);
    grid.lon2 = std::max(lon.first, lon.last);
    constexpr double OF_STEP = 1e-3;  // longitudes written with few digits divide the whole turn all the same
    grid.unit = std::max({lon.rounding, OF_STEP * std::fabs(lon.step), 1e-9});
    domain->nx = lon.count;
    domain->ny = lat.count;
    domain->plat = 0.0F;
    grib_place_latlon(grid, 1, domain);
    domain->plon = domain->clon;
    return "";
}

std::string cf_place_plane(const Cf_mapping& mapping, const Cf_steps& x, const Cf_steps& y, Domain* domain) {
    DOM_init(domain);
    const auto found = std::find_if(PROJECTIONS.begin(), PROJECTIONS.end(),
                                    [&](const Projection& row) { return mapping.name == row.name; });
    if (mapping.name.empty()) return "it has no grid mapping";
    if (found == PROJECTIONS.end()) return "its grid mapping is " + mapping.name;
    if (!x.even || !y.even || (x.step == 0.0 && y.step == 0.0)) return NOT_EVEN;
    domain->nx = x.count;
    domain->ny = y.count;
    found->place(mapping, x, y, domain);
    if (domain->proj != MISS) return "";
    DOM_init(domain);
    return NO_PLACE;
}

}  // namespace zav
