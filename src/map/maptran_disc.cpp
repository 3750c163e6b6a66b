/// Views of the earth that end at a rim: orthographic, Mollweide, Lambert azimuthal equal-area, geostationary.

#include <algorithm>
#include <cmath>

#include "map/maptran_state.h"

namespace zav {
namespace {

constexpr double PI = 3.1415926535898;
constexpr int MOLLWEIDE_STEPS = 15;
constexpr double TINY = 1e-10;

double square(double a) { return a * a; }

double arc_sine(double a) { return std::asin(std::clamp(a, -1.0, 1.0)); }

/// Solution of theta + sin theta = pi sin lat.
double mollweide_angle(double lat) {
    const double target = PI * std::sin(lat);
    double theta = lat;
    for (int i = 0; i < MOLLWEIDE_STEPS; ++i) {
        const double step = -(std::sin(theta) + theta - target) / (std::cos(theta) + 1.0);
        theta += step;
        if (std::fabs(step) < TINY) break;
    }
    return theta;
}

bool scan_angles() { return map_state.domain.param[1] == 1.0F; }

int satellite_inverse_sphere(double x, double y, float* lat, float* lon) {
    const Map_state& s = map_state;
    if (scan_angles()) {
        x = s.sat_rad * std::tan(x / s.sat_rad);
        y = s.sat_rad * std::tan(y / s.sat_rad);
    }
    // y is the tangent of the angle above the equator's plane; a flat screen has it longer away from its middle.
    y *= std::sqrt(1.0 + square(x / s.sat_rad));
    const double m = s.sat_rad2 + x * x + y * y;
    const double d = s.sat_rad4 - s.sat2_earth2 * m;
    if (d < 0.0) return map_hidden(lat, lon);
    const double k = (s.sat_rad2 - std::sqrt(d)) / m;
    const double phi = arc_sine(k * y / s.earth_rad);
    const double east = arc_sine(k * x / (std::cos(phi) * s.earth_rad));
    return map_found(R2D * phi, s.domain.plon + R2D * east, lat, lon);
}

int satellite_inverse_ellipse(double x, double y, float* lat, float* lon) {
    const Map_state& s = map_state;
    const double a = scan_angles() ? x / s.sat_rad : std::atan(x / s.sat_rad);
    const double b = scan_angles() ? y / s.sat_rad : std::atan(y / s.sat_rad);
    const double t = s.sat_rad * std::cos(a) * std::cos(b);
    const double q = square(std::cos(b)) + square(std::sin(b)) / s.earth_ratio2;
    const double d = t * t - s.sat2_earth2 * q;
    if (d < 0.0) return map_hidden(lat, lon);
    const double k = (t - std::sqrt(d)) / q;
    const double s1 = s.sat_rad - k * std::cos(a) * std::cos(b);
    const double s2 = k * std::sin(a) * std::cos(b);
    const double s3 = k * std::sin(b);
    const double phi = std::atan(s3 / (s.earth_ratio2 * std::sqrt(s1 * s1 + s2 * s2)));
    return map_found(R2D * phi, s.domain.plon + R2D * std::atan(s2 / s1), lat, lon);
}

}  // namespace

void ortho_prepare() {
    Map_state& s = map_state;
    if (s.xfactor != FMISS) return;
    if (s.domain.plat == FMISS) s.domain.plat = 0.0F;
    s.xfactor = static_cast<float>(std::cos(D2R * s.domain.plat));
    s.yfactor = static_cast<float>(std::sin(D2R * s.domain.plat));
}

int ortho_forward(double lat, double lon, double* x, double* y) {
    const Map_state& s = map_state;
    const double phi = D2R * lat;
    const double dlon = D2R * (lon - s.domain.plon);
    const double toward = std::cos(phi) * std::cos(dlon);
    if (toward * s.xfactor + std::sin(phi) * s.yfactor < 0.0) return map_hidden(x, y);
    return map_found(s.earth_rad * std::sin(dlon) * std::cos(phi),
                     s.earth_rad * (std::sin(phi) * s.xfactor - s.yfactor * toward), x, y);
}

int ortho_inverse(float x, float y, float* lat, float* lon) {
    const Map_state& s = map_state;
    const double z2 = square(s.earth_rad) - square(x) - square(y);
    if (z2 < 0.0) return map_hidden(lat, lon);
    const double z = std::sqrt(z2);
    const double phi = arc_sine((static_cast<double>(s.xfactor) * y + s.yfactor * z) / s.earth_rad);
    const double east = std::atan2(static_cast<double>(x), s.xfactor * z - static_cast<double>(s.yfactor) * y);
    return map_found(R2D * phi, s.domain.plon + R2D * east, lat, lon);
}

int mollweide_forward(double lat, double lon, double* x, double* y) {
    const Map_state& s = map_state;
    const double t = mollweide_angle(D2R * lat) / 2.0;
    const double dlon = map_wrap_once(lon - s.domain.plon);
    const bool at_pole = lat > 89.99 || lat < -89.99;
    return map_found(at_pole ? 0.0 : dlon * s.earth_rad / 90.0 * std::cos(t), s.earth_rad * std::sin(t), x, y);
}

int mollweide_inverse(float x, float y, float* lat, float* lon) {
    const Map_state& s = map_state;
    const double sine = static_cast<double>(y) / s.earth_rad;
    if (!(sine >= -1.0 && sine <= 1.0)) return map_hidden(lat, lon);
    const double t = std::asin(sine);
    const double v = (std::sin(2.0 * t) + 2.0 * t) / PI;
    if (v < -1.0 || v > 1.0) return map_hidden(lat, lon);
    return map_found(R2D * std::asin(v), s.domain.plon + 90.0 * x / (std::cos(t) * s.earth_rad), lat, lon);
}

int azimuthal_forward(double lat, double lon, double* x, double* y) {
    const Map_state& s = map_state;
    const double phi = D2R * lat;
    const double phi0 = D2R * s.domain.plat;
    const double dlon = D2R * (lon - s.domain.plon);
    const double c = std::sin(phi0) * std::sin(phi) + std::cos(phi0) * std::cos(phi) * std::cos(dlon);
    if (c <= -1.0) return map_hidden(x, y);
    const double mult = s.earth_rad * std::sqrt(2.0 / (c + 1.0));
    return map_found(mult * std::cos(phi) * std::sin(dlon),
                     mult * (std::cos(phi0) * std::sin(phi) - std::sin(phi0) * std::cos(phi) * std::cos(dlon)), x, y);
}

int azimuthal_inverse(float x, float y, float* lat, float* lon) {
    const Map_state& s = map_state;
    const double rad = std::sqrt(square(x) + square(y));
    const double mult = rad / (2.0 * s.earth_rad);
    if (!(mult <= 1.0)) return map_hidden(lat, lon);
    const double plat = s.domain.plat;
    const double plon = s.domain.plon;
    if (rad < TINY) {
        map_found(plat, plon, lat, lon);
        return 0;
    }
    const double w = 2.0 * std::asin(mult);
    const double phi0 = D2R * plat;
    const double sine = std::clamp(y * std::cos(phi0) * std::sin(w) / rad + std::cos(w) * std::sin(phi0), -1.0, 1.0);
    const double north = R2D * std::asin(sine);
    if (std::fabs(plat - 90.0) < TINY) return map_found(north, plon + R2D * std::atan2(x, -y), lat, lon);
    if (std::fabs(plat + 90.0) < TINY) return map_found(north, plon - R2D * std::atan2(-x, y), lat, lon);
    const double q = std::cos(w) - sine * std::sin(phi0);
    if (q == 0.0) return map_found(north, plon, lat, lon);
    return map_found(north, plon + R2D * std::atan2(std::sin(w) * x * std::cos(phi0), q * rad), lat, lon);
}

void satellite_prepare() {
    Map_state& s = map_state;
    if (s.sat_ratio != FMISS) return;
    s.sat_ratio = static_cast<float>(static_cast<double>(s.sat_rad) / s.earth_rad);
    s.earth_ratio = static_cast<float>(static_cast<double>(s.earth_rad) / s.sat_rad);
}

int satellite_forward(double lat, double lon, double* x, double* y) {
    const Map_state& s = map_state;
    const bool ellipse = s.domain.ellipse != 0;
    const double phi = ellipse ? std::atan(std::tan(D2R * lat) * s.earth_ratio2) : D2R * lat;
    const double dlon = D2R * (lon - s.domain.plon);
    const double cl = std::cos(phi);
    const double k = cl * std::cos(dlon);
    if (k < s.earth_ratio) return map_hidden(x, y);
    const double r = ellipse ? s.earth_min / std::sqrt(1.0 - (1.0 - s.earth_ratio2) * cl * cl) : s.earth_rad;
    const double east = r * std::sin(dlon) * cl;
    const double g = s.sat_rad - r * k;
    double a = east / g;
    double b = r * std::sin(phi) / std::sqrt(east * east + g * g);
    if (scan_angles()) {
        a = std::atan(a);
        b = std::atan(b);
    }
    return map_found(a * s.sat_rad, b * s.sat_rad, x, y);
}

int satellite_inverse(float x, float y, float* lat, float* lon) {
    if (map_state.domain.ellipse != 0) return satellite_inverse_ellipse(x, y, lat, lon);
    return satellite_inverse_sphere(x, y, lat, lon);
}

}  // namespace zav
