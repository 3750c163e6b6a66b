#pragma once

#include "frame/zav.h"
#include "map/region.h"

namespace zav {

// Where the points of a GRIB message lie, whatever its edition, as a Domain. Angles are in degrees, lengths in metres;
// a number that the message doesn't give is FMISS.

/// Bits of the scanning mode whose order of points isn't decoded.
constexpr int GRIB_WESTWARD = 0x80;
constexpr int GRIB_COLUMNS_FIRST = 0x20;

/// Half axes of the earth that a message's lengths are meant on; 0 where it doesn't tell.
struct GribEarth {
    double major = 0.0;
    double minor = 0.0;
};

constexpr GribEarth GRIB_SPHERE{6367470.0, 6367470.0};    ///< of edition 1, and shape 0 of edition 2
constexpr GribEarth GRIB_IAU_1965{6378160.0, 6356775.0};  ///< the other one of edition 1

/// A grid in steps of latitude and longitude.
struct GribLatlon {
    double lat1 = 0.0;  ///< first point
    double lon1 = 0.0;
    double lat2 = 0.0;  ///< last point
    double lon2 = 0.0;
    double dx = FMISS;
    double dy = FMISS;
    double unit = 0.0;  ///< what the numbers are rounded to
};

/// A grid in steps of length: Mercator, Lambert or polar stereographic.
struct GribPlane {
    double lat1 = 0.0;  ///< first point
    double lon1 = 0.0;
    double lat2 = 0.0;  ///< last point, of a Mercator grid only
    double lon2 = 0.0;
    double plon = 0.0;   ///< meridian that runs straight up
    double true1 = 0.0;  ///< latitudes where lengths are true, the second for a Lambert grid only
    double true2 = 0.0;
    bool south = false;  ///< seen from the south pole
    double dx = 0.0;
    double dy = 0.0;
    double east = 0.0;  ///< metres on the map from lat1, lon1 to the first point, where that isn't lat1, lon1 itself
    double north = 0.0;
    GribEarth earth;
};

/// The functions take the size from the domain and fill the rest, or leave it unset if the numbers give no place.
/// `ydir` is 1 if rows run northward, else -1.
void grib_place_latlon(const GribLatlon& grid, int ydir, Domain* domain);
void grib_place_mercator(const GribPlane& grid, int ydir, Domain* domain);
void grib_place_lambert(const GribPlane& grid, int ydir, Domain* domain);
void grib_place_polar(const GribPlane& grid, int ydir, Domain* domain);

}  // namespace zav
