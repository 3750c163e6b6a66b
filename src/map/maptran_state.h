#pragma once

/// The current domain and the constants that the projections derive from it. Private to map/maptran*.cpp.

#include "frame/zav.h"
#include "map/maptran.h"

namespace zav {

/// Degree factors.
constexpr double D2R = 0.017453292519943334;
constexpr double R2D = 57.295779513082195;

/// Kilometres in a degree of latitude.
constexpr double KM_PER_DEGREE = 111.195;

/// One projection: how its points go to map space and back.
struct Projection {
    int code;
    /// Works out the constants in `Map_state` if they are stale; null for a projection without any.
    void (*prepare)();
    int (*forward)(double lat, double lon, double* x, double* y);
    int (*inverse)(float x, float y, float* lat, float* lon);
    /// Directions on the map depend on more than one turn a place.
    bool bends_angles = false;
};

struct Map_state {
    Domain domain;                           ///< `proj` MISS: no current domain
    const Projection* projection = nullptr;  ///< row of `domain.proj`, null for a code without transforms
    MAP_limits limits;
    MAP_limits view;              ///< viewport of the plot
    float earth_rad = 63.7122F;   ///< sphere
    float earth_maj = 63.78137F;  ///< equatorial radius of the ellipsoid
    float earth_min = 63.56752F;  ///< its polar radius
    float earth_ratio2 = 0.0F;    ///< (earth_min / earth_maj) squared
    float sat_rad = 421.64F;      ///< satellite to the earth's centre
    float sat_rad2 = 0.0F;
    float sat_rad4 = 0.0F;
    float sat2_earth2 = 0.0F;   ///< sat_rad2 less the earth's (equatorial) radius squared
    float sat_ratio = FMISS;    ///< sat_rad / earth_rad
    float earth_ratio = FMISS;  ///< earth_rad / sat_rad
    float tlat1 = 30.0F;        ///< true latitudes
    float tlat2 = 60.0F;
    float xfactor = FMISS;  ///< constants of the projection, stale while xfactor is FMISS
    float yfactor = FMISS;
    float mult = 0.0F;
    float scale = 0.0F;
};

extern Map_state map_state;

/// Result of a point that can't be shown.
template <typename Number>
int map_hidden(Number* first, Number* second) {
    *first = FMISS;
    *second = FMISS;
    return 0;
}

/// Result of a point that has a place.
template <typename Number>
int map_found(double a, double b, Number* first, Number* second) {
    *first = static_cast<Number>(a);
    *second = static_cast<Number>(b);
    return 1;
}

/// A difference of longitudes wrapped once into -180 to 180.
inline double map_wrap_once(double lon) {
    if (lon > 180.0) return lon - 360.0;
    if (lon < -180.0) return lon + 360.0;
    return lon;
}

/// True for the codes that show the earth.
inline bool map_is_earth(int proj) { return proj >= PROJ_POLAR && proj <= PROJ_LAST_MAP; }

/// Brings the constants of the current projection up to date.
inline void map_prepare() {
    if (map_state.projection != nullptr && map_state.projection->prepare != nullptr) map_state.projection->prepare();
}

// Polar stereographic, cylindrical and conic maps.
void polar_prepare();
int polar_forward(double lat, double lon, double* x, double* y);
int polar_inverse(float x, float y, float* lat, float* lon);
int latlon_forward(double lat, double lon, double* x, double* y);
int latlon_inverse(float x, float y, float* lat, float* lon);
int mercator_forward(double lat, double lon, double* x, double* y);
int mercator_inverse(float x, float y, float* lat, float* lon);
void lambert_prepare();
int lambert_forward(double lat, double lon, double* x, double* y);
int lambert_inverse(float x, float y, float* lat, float* lon);

// Maps with a bounded disc.
void ortho_prepare();
int ortho_forward(double lat, double lon, double* x, double* y);
int ortho_inverse(float x, float y, float* lat, float* lon);
int mollweide_forward(double lat, double lon, double* x, double* y);
int mollweide_inverse(float x, float y, float* lat, float* lon);
int azimuthal_forward(double lat, double lon, double* x, double* y);
int azimuthal_inverse(float x, float y, float* lat, float* lon);
void satellite_prepare();
int satellite_forward(double lat, double lon, double* x, double* y);
int satellite_inverse(float x, float y, float* lat, float* lon);

// Graphs: `lat` is the first data coordinate, `lon` the second.
int graph_forward(double lat, double lon, double* x, double* y);
int graph_inverse(float x, float y, float* lat, float* lon);
int graph_down_forward(double lat, double lon, double* x, double* y);
int graph_down_inverse(float x, float y, float* lat, float* lon);
int log_forward(double lat, double lon, double* x, double* y);
int log_inverse(float x, float y, float* lat, float* lon);
int hodograph_forward(double lat, double lon, double* x, double* y);
int hodograph_inverse(float x, float y, float* lat, float* lon);
int pixel_forward(double lat, double lon, double* x, double* y);
int pixel_inverse(float x, float y, float* lat, float* lon);

// Thermodynamic diagrams.
void skewt_prepare();
int skewt_forward(double lat, double lon, double* x, double* y);
int skewt_inverse(float x, float y, float* lat, float* lon);
int stuve_forward(double lat, double lon, double* x, double* y);
int stuve_inverse(float x, float y, float* lat, float* lon);
void tephigram_prepare();
int tephigram_forward(double lat, double lon, double* x, double* y);
int tephigram_inverse(float x, float y, float* lat, float* lon);
int tephi_plain_forward(double lat, double lon, double* x, double* y);
int tephi_plain_inverse(float x, float y, float* lat, float* lon);

}  // namespace zav
