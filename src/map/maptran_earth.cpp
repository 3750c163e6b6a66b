/// Polar stereographic, latitude-longitude, Mercator and Lambert conformal maps.

#include <algorithm>
#include <cmath>

#include "map/maptran_state.h"
#include "map/spheroid.h"

namespace zav {
namespace {

/// Southern limit of a northern polar map, and the reverse.
constexpr double POLAR_LIMIT = 75.0;
constexpr double MERCATOR_LIMIT = 89.9;
/// A pole that a Lambert cone has at infinity is kept this far off.
constexpr double LAMBERT_LIMIT = 89.0;

/// A cone that touches the earth nearer to its pole than this can't be told from a plane, and one whose constant is
/// smaller than this can't be told from Mercator's cylinder: both end short of the formulas' poles.
constexpr double STEEPEST_TOUCH = 89.999;
constexpr double FLATTEST_CONE = 0.005;

constexpr double TWICE_R2D = 114.59155902616439;

double radius(float x, float y) { return std::sqrt(static_cast<double>(x) * x + static_cast<double>(y) * y); }

double tan_half(double lat) { return std::tan(D2R * (45.0 - lat / 2.0)); }

/// Latitude at which a cone meets the earth, counted from the equator toward the reference's pole: the sign that it is
/// given with doesn't matter.
double cone_latitude(float tlat) { return std::min(std::fabs(static_cast<double>(tlat)), STEEPEST_TOUCH); }

// A grid's earth that isn't a sphere: its conformal maps are the sphere's, of latitudes that differ by up to 0.2
// degrees.

bool is_sphere() { return map_state.domain.ecc == 0.0F; }
Spheroid earth() { return {1.0, map_state.domain.ecc}; }
double on_sphere(double lat) { return is_sphere() ? lat : earth().to_conformal(lat); }
double on_earth(double lat) { return is_sphere() ? lat : earth().from_conformal(lat); }
double parallel(double lat) { return is_sphere() ? std::cos(D2R * lat) : earth().parallel(lat); }
double half_angle(double lat) { return is_sphere() ? tan_half(lat) : earth().half_angle(lat); }
double pole_scale(double lat) { return is_sphere() ? 1.0 + std::sin(D2R * lat) : earth().pole_scale(lat); }

/// Angle of a map point about the pole, degrees; 0 at the pole itself.
double polar_angle(double x, double y) { return x == 0.0 && y == 0.0 ? 0.0 : R2D * std::atan2(x, y); }

}  // namespace

void polar_prepare() {
    Map_state& s = map_state;
    if (s.xfactor != FMISS) return;
    s.scale = s.domain.plat >= 0 ? -1.0F : 1.0F;
    s.xfactor = static_cast<float>(pole_scale(std::fabs(s.tlat1)) * s.earth_rad);
}

int polar_forward(double lat, double lon, double* x, double* y) {
    const Map_state& s = map_state;
    if (s.scale * lat > POLAR_LIMIT) lat = POLAR_LIMIT * s.scale;
    lat = on_sphere(lat);
    const double dlon = D2R * (lon - s.domain.plon);
    const double rad = s.xfactor * std::tan(D2R * (90.0 + s.scale * lat) / 2.0);
    return map_found(rad * std::sin(dlon), s.scale * rad * std::cos(dlon), x, y);
}

int polar_inverse(float x, float y, float* lat, float* lon) {
    const Map_state& s = map_state;
    const double colat = 2.0 * R2D * std::atan(radius(x, y) / s.xfactor);
    return map_found(on_earth((colat - 90.0) * s.scale), s.domain.plon + polar_angle(x, s.scale * y), lat, lon);
}

int latlon_forward(double lat, double lon, double* x, double* y) {
    return map_found(map_wrap_once(lon - map_state.domain.plon), lat, x, y);
}

int latlon_inverse(float x, float y, float* lat, float* lon) {
    return map_found(y, map_wrap_once(static_cast<double>(map_state.domain.plon) + x), lat, lon);
}

int mercator_forward(double lat, double lon, double* x, double* y) {
    const double unit = D2R * map_state.earth_rad;
    double east = unit * (lon - map_state.domain.plon);
    if (east > 180.0 * unit) {
        east -= 360.0 * unit;
    } else if (east < -180.0 * unit) {
        east += 360.0 * unit;
    }
    lat = on_sphere(std::clamp(lat, -MERCATOR_LIMIT, MERCATOR_LIMIT));
    return map_found(east, -map_state.earth_rad * std::log(tan_half(lat)), x, y);
}

int mercator_inverse(float x, float y, float* lat, float* lon) {
    const Map_state& s = map_state;
    const double east = s.domain.plon + x / (D2R * s.earth_rad);
    const double north = 90.0 - TWICE_R2D * std::atan(1.0 / std::exp(static_cast<double>(y) / s.earth_rad));
    return map_found(on_earth(north), map_wrap_once(east), lat, lon);
}

void lambert_prepare() {
    Map_state& s = map_state;
    if (s.xfactor != FMISS) return;
    s.scale = s.domain.plat >= 0 ? 1.0F : -1.0F;
    const double phi1 = cone_latitude(s.tlat1);
    const double phi2 = cone_latitude(s.tlat2);
    double cone = std::sin(D2R * phi1);
    if (phi1 != phi2) {
        const double cosines = std::log(parallel(phi1)) - std::log(parallel(phi2));
        cone = cosines / (std::log(half_angle(phi1)) - std::log(half_angle(phi2)));
    }
    s.xfactor = static_cast<float>(std::max(cone, FLATTEST_CONE));
    s.mult = static_cast<float>(parallel(phi1) / (std::pow(half_angle(phi1), s.xfactor) * s.xfactor));
}

int lambert_forward(double lat, double lon, double* x, double* y) {
    const Map_state& s = map_state;
    if (s.domain.plat >= 0 && lat < -LAMBERT_LIMIT) lat = -LAMBERT_LIMIT;
    if (s.domain.plat < 0 && lat > LAMBERT_LIMIT) lat = LAMBERT_LIMIT;
    lat = on_sphere(lat);
    const double rad = static_cast<double>(s.mult) * s.earth_rad * std::pow(tan_half(s.scale * lat), s.xfactor);
    const double ang = D2R * s.xfactor * map_wrap_once(lon - s.domain.plon);
    return map_found(rad * std::sin(ang), -s.scale * rad * std::cos(ang), x, y);
}

int lambert_inverse(float x, float y, float* lat, float* lon) {
    const Map_state& s = map_state;
    const double rad = radius(x, y) / (static_cast<double>(s.mult) * s.earth_rad);
    const double colat = 2.0 * R2D * std::atan(std::pow(rad, 1.0 / s.xfactor));
    const double ang = polar_angle(x, -s.scale * y);
    return map_found(on_earth(90.0 * s.scale - s.scale * colat), s.domain.plon + ang / s.xfactor, lat, lon);
}

}  // namespace zav
