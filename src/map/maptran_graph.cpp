/// Plot spaces that show no map: graphs, pixel space and thermodynamic diagrams.

#include <cmath>

#include "map/maptran_state.h"
#include "physics/thermo.h"

namespace zav {
namespace {

/// Exponent of pressure on a Stuve diagram.
constexpr double STUVE_POWER = 0.285714;
constexpr double INVERSE_POWER = 3.5;
constexpr double KELVIN = 273.15;

float kelvin(double celsius) { return celsius == FMISS ? FMISS : static_cast<float>(celsius + KELVIN); }

double log_theta(double celsius, double pressure) {
    return std::log(static_cast<double>(pot_temp(kelvin(celsius), static_cast<float>(pressure))));
}

/// Pressure at a temperature (degrees Celsius) and potential temperature.
double pressure_at(double celsius, double theta) { return 1000.0 * std::pow(kelvin(celsius) / theta, INVERSE_POWER); }

double x_of(double value) {
    const Map_state& s = map_state;
    return s.limits.x_min + (value - s.limits.x_min) * s.xfactor;
}

double x_value(float x) {
    const Map_state& s = map_state;
    return s.limits.x_min + (static_cast<double>(x) - s.limits.x_min) / s.xfactor;
}

double view_width() { return static_cast<double>(map_state.view.x_max) - map_state.view.x_min; }

double view_height() { return static_cast<double>(map_state.view.y_max) - map_state.view.y_min; }

double limits_width() { return static_cast<double>(map_state.limits.x_max) - map_state.limits.x_min; }

double limits_height() { return static_cast<double>(map_state.limits.y_max) - map_state.limits.y_min; }

}  // namespace

int graph_forward(double lat, double lon, double* x, double* y) {
    const Map_state& s = map_state;
    return map_found(x_of(lat), s.limits.y_min + (lon - s.limits.y_min) * s.yfactor, x, y);
}

int graph_inverse(float x, float y, float* lat, float* lon) {
    const Map_state& s = map_state;
    return map_found(x_value(x), s.limits.y_min + (static_cast<double>(y) - s.limits.y_min) / s.yfactor, lat, lon);
}

int graph_down_forward(double lat, double lon, double* x, double* y) {
    const Map_state& s = map_state;
    return map_found(x_of(lat), s.limits.y_min + (s.limits.y_min - lon) * s.yfactor, x, y);
}

int graph_down_inverse(float x, float y, float* lat, float* lon) {
    const Map_state& s = map_state;
    return map_found(x_value(x), s.limits.y_min + (static_cast<double>(s.limits.y_min) - y) / s.yfactor, lat, lon);
}

int log_forward(double lat, double lon, double* x, double* y) { return map_found(lat, -std::log(lon), x, y); }

int log_inverse(float x, float y, float* lat, float* lon) {
    return map_found(x, std::exp(-static_cast<double>(y)), lat, lon);
}

int hodograph_forward(double lat, double lon, double* x, double* y) {
    return map_found(lon * std::sin(D2R * lat), lon * std::cos(D2R * lat), x, y);
}

int hodograph_inverse(float x, float y, float* lat, float* lon) {
    const double east = x;
    const double north = y;
    double dir = east == 0.0 && north == 0.0 ? 0.0 : R2D * std::atan2(east, north);
    if (dir < 0.0) dir += 360.0;
    return map_found(dir, std::sqrt(east * east + north * north), lat, lon);
}

int pixel_forward(double lat, double lon, double* x, double* y) { return map_found(lat, -lon, x, y); }

int pixel_inverse(float x, float y, float* lat, float* lon) { return map_found(x, -static_cast<double>(y), lat, lon); }

void skewt_prepare() {
    Map_state& s = map_state;
    if (s.xfactor != FMISS) return;
    s.scale = s.limits.y_min;
    s.xfactor = static_cast<float>(limits_width() * (view_height() / view_width()) / limits_height());
}

int skewt_forward(double lat, double lon, double* x, double* y) {
    const double up = -std::log(lon);
    return map_found(lat + map_state.xfactor * (up - map_state.scale), up, x, y);
}

int skewt_inverse(float x, float y, float* lat, float* lon) {
    const double up = y;
    return map_found(x - map_state.xfactor * (up - map_state.scale), std::exp(-up), lat, lon);
}

int stuve_forward(double lat, double lon, double* x, double* y) {
    return map_found(lat, -std::pow(lon, STUVE_POWER), x, y);
}

int stuve_inverse(float x, float y, float* lat, float* lon) {
    return map_found(x, std::pow(-static_cast<double>(y), INVERSE_POWER), lat, lon);
}

void tephigram_prepare() {
    Map_state& s = map_state;
    if (s.xfactor != FMISS) return;
    s.xfactor = static_cast<float>(view_width() / limits_width());
    s.yfactor = static_cast<float>(view_height() / limits_height());
}

int tephigram_forward(double lat, double lon, double* x, double* y) {
    const Map_state& s = map_state;
    if (s.xfactor == 0.0F) {
        map_found(lat, std::log(lon), x, y);
        return 0;
    }
    const double vx = s.view.x_min;
    const double vy = s.view.y_min;
    const double across = s.xfactor * (lat - s.limits.x_min) + vx;
    const double up = s.yfactor * (log_theta(lat, lon) - s.limits.y_min) + vy;
    const double turned_x = 0.5 * (up - vy) + 0.5 * (across + vx);
    const double turned_y = up - (turned_x - vx);
    return map_found(s.limits.x_min + (turned_x - vx) / s.xfactor, s.limits.y_min + (turned_y - vy) / s.yfactor, x, y);
}

int tephigram_inverse(float x, float y, float* lat, float* lon) {
    const Map_state& s = map_state;
    const double vx = s.view.x_min;
    const double vy = s.view.y_min;
    const double turned_x = s.xfactor * (static_cast<double>(x) - s.limits.x_min) + vx;
    const double turned_y = s.yfactor * (static_cast<double>(y) - s.limits.y_min) + vy;
    const double up = turned_x - vx + turned_y;
    const double across = 2.0 * turned_x - (up - vy) - vx;
    const double celsius = s.limits.x_min + (across - vx) / s.xfactor;
    const double theta = std::exp(s.limits.y_min + (up - vy) / s.yfactor);
    return map_found(celsius, pressure_at(celsius, theta), lat, lon);
}

int tephi_plain_forward(double lat, double lon, double* x, double* y) {
    return map_found(lat, log_theta(lat, lon), x, y);
}

int tephi_plain_inverse(float x, float y, float* lat, float* lon) {
    return map_found(x, pressure_at(x, std::exp(static_cast<double>(y))), lat, lon);
}

}  // namespace zav
