// Comfort, the standard atmosphere, distances.

#include <algorithm>
#include <array>
#include <cmath>

#include "frame/zav.h"
#include "physics/thermo.h"

namespace zav {
namespace {

constexpr double RADIANS = 3.14159265358979323846 / 180.0;
constexpr double FREEZING = 273.15;

/// Temperature of skin in the chill of the wind, 33 C.
constexpr double SKIN = 306.15;
/// Winds below the first cool no more than a walk, those above the last no more than it.
constexpr float CALM = 2.0F;
constexpr float STRONG = 26.0F;

float single(double value) { return static_cast<float>(value); }

double fahrenheit(float temp) { return 32.0 + 9.0 * (temp - FREEZING) / 5.0; }

/// One term of the heat index: coefficient, power of the temperature (F), power of the relative humidity (percent).
struct Term {
    double factor;
    int t;
    int r;
};

constexpr std::array<Term, 16> HEAT = {{
    {16.0, 0, 0},
    {0.185212, 1, 0},
    {5.37941, 0, 1},
    {-0.100254, 1, 1},
    {0.00941695, 2, 0},
    {0.00728898, 0, 2},
    {0.000345372, 2, 1},
    {-0.000814971, 1, 2},
    {1.02102e-5, 2, 2},
    {-3.8646e-5, 3, 0},
    {2.91583e-5, 0, 3},
    {1.42721e-6, 3, 1},
    {1.97483e-7, 1, 3},
    {-2.18429e-8, 3, 2},
    {8.43296e-10, 2, 3},
    {-4.81975e-11, 3, 3},
}};

double heat_polynomial(double t, double r) {
    const std::array<double, 4> powers_t = {1.0, t, t * t, t * t * t};
    const std::array<double, 4> powers_r = {1.0, r, r * r, r * r * r};
    double sum = 0.0;
    for (const Term& term : HEAT)
        sum += term.factor * powers_t[static_cast<std::size_t>(term.t)] * powers_r[static_cast<std::size_t>(term.r)];
    return sum;
}

/// Place on the unit sphere.
std::array<float, 3> unit_vector(double lat, double lon) {
    const double phi = lat * RADIANS;
    const double lambda = lon * RADIANS;
    return {single(std::cos(phi) * std::cos(lambda)), single(std::cos(phi) * std::sin(lambda)), single(std::sin(phi))};
}

}  // namespace

float wind_chill_temp(float temp, float ws) {
    if (temp < 0.0F || ws < 0.0F) return FMISS;
    if (ws < CALM || temp > SKIN) return temp;
    const double speed = std::min(ws, STRONG);
    return single(SKIN - (0.474266 + 0.453843 * std::sqrt(speed) - 0.0453843 * speed) * (SKIN - temp));
}

float wind_chill_temp2(float temp, float ws) {
    if (temp < 0.0F || ws < 0.0F) return FMISS;
    const double chill = std::pow(static_cast<double>(ws), 0.16) * (0.4863 * temp - 146.774) + 0.6215 * temp + 116.514;
    return chill > temp ? temp : single(chill);
}

float wind_chill(float temp, float ws) {
    if (temp < 0.0F || ws < 0.0F) return FMISS;
    if (ws < CALM || temp > SKIN) return temp;
    const double speed = std::min(ws, STRONG);
    return single((SKIN - temp) * (10.45 + 10.0 * std::sqrt(speed) - speed) * 1.1627);
}

float heat_index(float temp, float dewp) {
    if (temp < 0.0F || dewp < 0.0F || dewp > temp) return FMISS;
    const double t = fahrenheit(temp);
    const double r = 100.0 * vapor_pr(dewp) / vapor_pr(temp);
    double h = 0.0936 * r + (t - 68.0) * 1.2 + 60.8;
    if (h >= 77.0) h = heat_polynomial(t, r);
    return single(FREEZING + 5.0 * (h - 32.0) / 9.0);
}

float humiture(float temp, float dewp) {
    constexpr double LEAST = 21.0;
    if (temp < 0.0F || dewp < 0.0F) return FMISS;
    const double e = vapor_pr(dewp);
    return e < LEAST ? temp : single(fahrenheit(temp) + e - LEAST);
}

float temp_hum_index(float temp, float dewp) {
    if (temp < 0.0F || dewp < 0.0F) return FMISS;
    return single(17.5 + 0.55 * temp + 0.2 * dewp);
}

float sfc_pr_alt(float alt, float el) {
    if (alt <= 0.0F || el == FMISS) return FMISS;
    return single(alt * std::pow((288.15 - 0.0065 * el) / 288.15, 5.2558));
}

float pres_alt(float pres) {
    constexpr double TROPOPAUSE = 226.32;
    if (pres < TROPOPAUSE) return single(11000.0 + 6341.62 * std::log(TROPOPAUSE / pres));
    const float t = single(288.15 * std::pow(pres / 1013.25, 0.190263));
    return single((288.15 - t) / 0.0065);
}

float interp_temp(float t1, float t2, float p1, float p2, float pr) {
    if (p1 <= 0.0F || p2 <= 0.0F || (t1 == FMISS && t2 == FMISS)) return FMISS;
    if (t1 == FMISS) return t2;
    if (t2 == FMISS) return t1;
    const double first = p1;
    return single(t1 - (static_cast<double>(t2) - t1) * std::log(pr / first) / std::log(first / p2));
}

float calc_earth_dist(float lat1, float lon1, float lat2, float lon2) {
    const std::array<float, 3> a = unit_vector(lat1, lon1);
    const std::array<float, 3> b = unit_vector(lat2, lon2);
    const double cosine =
        static_cast<double>(a[0]) * b[0] + static_cast<double>(a[1]) * b[1] + static_cast<double>(a[2]) * b[2];
    // Rounded components may take the cosine of two places that are one a little beyond 1.
    return single(63.713 * 100.0 * std::acos(std::clamp(cosine, -1.0, 1.0)));
}

}  // namespace zav
