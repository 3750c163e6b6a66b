#pragma once

#include <string>

#include "map/region.h"

namespace zav {

/// Projection codes of `Domain::proj`. Codes 1 to 9 show the earth, codes from 20 on are diagrams.
enum : int {
    PROJ_POLAR = 1,         ///< polar stereographic
    PROJ_LATLON = 2,        ///< latitude-longitude, map space in degrees
    PROJ_MERCATOR = 3,      ///< Mercator
    PROJ_LAMBERT = 4,       ///< Lambert conformal conic
    PROJ_ORTHO = 5,         ///< orthographic view of the sphere
    PROJ_GNOMONIC = 6,      ///< a name without a transform
    PROJ_MOLLWEIDE = 7,     ///< Mollweide
    PROJ_AZIMUTHAL = 8,     ///< Lambert azimuthal equal-area
    PROJ_SATELLITE = 9,     ///< geostationary satellite view
    PROJ_LAST_MAP = 9,      ///< codes 1 to 9 show the earth
    PROJ_XY = 20,           ///< linear graph
    PROJ_XZ = 21,           ///< a name without a transform
    PROJ_XLOGY = 22,        ///< second axis is minus its logarithm
    PROJ_HODOGRAPH = 23,    ///< polar diagram: direction and radius
    PROJ_CATEGORY = 24,     ///< linear graph of categories
    PROJ_XY_DOWN = 25,      ///< linear graph, second axis downward
    PROJ_SKEWT = 40,        ///< skew-T log-P diagram
    PROJ_STUVE = 41,        ///< Stuve diagram
    PROJ_EMAGRAM = 42,      ///< emagram
    PROJ_TEPHIGRAM = 43,    ///< tephigram, rotated on the viewport
    PROJ_TEPHI_PLAIN = 44,  ///< tephigram, not rotated
    PROJ_ZOOM = 50,         ///< a domain text of a zoom, no projection
    PROJ_SIZE = 51,         ///< a domain text that gives a size alone, no projection
    PROJ_PIXEL = 99,        ///< pixels, the second axis downward
};

/// Position in map space: units of 100 km, degrees on latitude-longitude maps, plot units on graphs.
struct Point {
    float x = 0.0F;
    float y = 0.0F;
};

/// Position on the earth in degrees, north and east positive; the data coordinates on graphs.
struct EarthPoint {
    float lat = 0.0F;
    float lon = 0.0F;
};

/// Range of map space.
struct MAP_limits {
    float x_min = 0.0F;
    float x_max = 0.0F;
    float y_min = 0.0F;
    float y_max = 0.0F;
};

/// Makes `dom` the current domain. 0; with a null pointer there is no current domain afterwards, -1.
int MAP_domain(const Domain* dom);

/// Copies the current domain to `dom` and returns `dom`; with a null pointer the record itself, for reading.
const Domain* MAP_get_domain(Domain* dom);

/// Prints the current domain as dialogue.
int MAP_print_domain();

/// Changes the projection code of the current domain and nothing else of it.
int MAP_proj(int proj);

/// Changes the reference point of the current domain.
int MAP_coord(float rlat, float rlon);

/// Sets the two true latitudes of a current Lambert conformal domain from `value[0]`, `value[1]`.
int MAP_proj_coord(const float* value);

/// Code of a projection keyword: -1 for none, MISS for "miss".
int MAP_proj_str(const std::string& proj);

int MAP_get_proj();
float MAP_get_clat();
float MAP_get_clon();

/// Map position of the centre of the current domain. Result as MAP_tran.
int MAP_tran_center(float* x, float* y);

/// Works out the limits of the current domain anew.
int MAP_set_limits();
int MAP_get_limits(MAP_limits* lim);

/// Viewport of the plot, which the skew-T diagram and the tephigram depend on.
int MAP_set_view(const MAP_limits* vp);

/// Map position of the upper left corner of the current domain.
int MAP_get_up_left(float* x, float* y);

/// 1 for a point within the limits, bounds included, or with no current domain; else 0.
int MAP_in_domain(float x, float y);

/// As MAP_in_domain with the limits grown by three grid steps on every side.
int MAP_in_grid_domain(float x, float y);

/// Grid coordinates (column, row from the top) to map space. -1 and FMISS for a `gx` of FMISS.
int MAP_grid_tran(float gx, float gy, float* x, float* y);

/// Map space to grid coordinates. -1 and FMISS for an `x` of FMISS.
int MAP_grid_untran(float x, float y, float* gx, float* gy);

/// Carries a map position of `domain1` to one of `domain2`; the current domain stays.
int MAP_domain_tran(const Domain* domain1, const Domain* domain2, float x1, float y1, float* x2, float* y2);

/// Earth to map. 1; 0 for a point that the map can't show, with FMISS in both outputs.
int MAP_tran(float lat, float lon, float* x, float* y);

/// Map to earth. 1; 0 for a position off the disc, with FMISS in both outputs. The exact centre of an azimuthal
/// equal-area map gives 0 with good outputs.
int MAP_untran(float x, float y, float* lat, float* lon);

int MAP_tran_ep(EarthPoint ept, Point* pt);
int MAP_tran_pe(Point pt, EarthPoint* ept);

/// Map point that lies `rad` kilometres from (`xi`, `yi`) along compass direction `dir` (degrees).
int MAP_offset(float xi, float yi, float dir, float rad, float* xf, float* yf);

/// Map factor at a place, as plotters scale distances with it.
float MAP_factor(float lat, float lon);

/// Directions at map point (x, y), in degrees clockwise. A wind (from or toward) that blows along `dir` on the earth is
/// drawn along MAP_dir_adj on the map, whichever the projection. FMISS off the map, as in the three below.
float MAP_dir_adj(float dir, float x, float y);
/// Direction from true north of a wind that a grid on this map states by its components along columns and rows, `dir`
/// being their direction. On maps that keep angles this is the reverse of MAP_dir_adj; on a latitude-longitude grid the
/// components are those to east and north already.
float MAP_undir_adj(float dir, float x, float y);
/// What the wind (u, v), to east and north, turns by when its components are taken along columns and rows: the reverse
/// of MAP_undir_adj.
float MAP_uvdir_adj(float u, float v, float x, float y);
/// Direction from the first map point to the second, degrees from true north.
float MAP_dir(float x1, float y1, float x2, float y2);

/// Density of points that MAP_plot_grid lets through: 0 all, 1 and above that many a grid step, below -1 one in
/// that many grid steps.
int MAP_set_plot_limit(int val);

/// Empties the occupancy grid and lays it over the current domain.
int MAP_plot_grid_init();

/// 1 when a point may be drawn at (x, y), which then takes its cell; 0 when the cell is taken or off the grid.
int MAP_plot_grid(float x, float y);

}  // namespace zav
