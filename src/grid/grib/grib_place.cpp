#include "grid/grib/grib_place.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "grid/grib/grib_state.h"
#include "map/maptran.h"
#include "map/spheroid.h"

namespace zav {
namespace {

constexpr double RADIANS = std::numbers::pi / 180.0;
constexpr double MAP_UNIT = 100000.0;       ///< metres in a map unit
constexpr double MAP_RADIUS = 63.7122;      ///< the program's earth, in map units
constexpr double LEAST_RADIUS = 6300000.0;  ///< an axis outside of these bounds is a mistake in the message
constexpr double GREATEST_RADIUS = 6450000.0;

double wrap(double lon) { return std::remainder(lon, 360.0); }

double steps(int points) { return std::max(points, 2) - 1; }

/// The earth that a message tells, the program's where it tells none that can be.
Spheroid earth_of(const GribEarth& earth) {
    const bool known = std::min(earth.major, earth.minor) > LEAST_RADIUS &&
                       std::max(earth.major, earth.minor) < GREATEST_RADIUS && earth.minor <= earth.major;
    if (!known) return Spheroid(MAP_RADIUS, 0.0);
    const double ratio = earth.minor / earth.major;
    return Spheroid(earth.major / MAP_UNIT, std::sqrt(1.0 - ratio * ratio));
}

/// Position on the plane of a map, in map units.
struct Place {
    double x;
    double y;
};

struct EarthPlace {
    double lat;
    double lon;
};

/// Mercator's map of a spheroid.
class MercatorMap {
  public:
    MercatorMap(const GribPlane& grid, const Spheroid& earth)
        : earth_(earth), plon_(grid.plon), unit_(earth.radius() * earth.parallel(grid.true1)) {}

    Place forward(const EarthPlace& at) const {
        const double lat = std::clamp(at.lat, -89.9, 89.9);
        return {unit_ * RADIANS * wrap(at.lon - plon_), -unit_ * std::log(earth_.half_angle(lat))};
    }
    EarthPlace inverse(const Place& at) const {
        return {earth_.latitude(std::exp(-at.y / unit_)), plon_ + at.x / (unit_ * RADIANS)};
    }

  private:
    Spheroid earth_;
    double plon_;
    double unit_;
};

/// Lambert's conformal map of a spheroid, and the polar stereographic one, which is its case of a cone as flat as a
/// disc. A southern map is the mirror of a northern one.
class ConeMap {
  public:
    ConeMap(const GribPlane& grid, const Spheroid& earth, bool disc)
        : earth_(earth), plon_(grid.plon), side_(grid.south ? -1.0 : 1.0) {
        const double lat1 = grid.true1;
        const double lat2 = grid.true2;
        if (disc) {
            cone_ = 1.0;
        } else if (lat1 == lat2) {
            cone_ = std::sin(RADIANS * lat1);
        } else {
            cone_ = std::log(earth.parallel(lat1) / earth.parallel(lat2)) /
                    std::log(earth.half_angle(lat1) / earth.half_angle(lat2));
        }
        unit_ = earth.radius() * earth.pole_scale(lat1) * std::pow(earth.half_angle(lat1), 1.0 - cone_) / cone_;
    }

    Place forward(const EarthPlace& at) const {
        const double from_pole = unit_ * std::pow(earth_.half_angle(side_ * at.lat), cone_);
        const double angle = cone_ * RADIANS * wrap(at.lon - plon_);
        return {from_pole * std::sin(angle), -side_ * from_pole * std::cos(angle)};
    }
    EarthPlace inverse(const Place& at) const {
        const double half_angle = std::pow(std::hypot(at.x, at.y) / unit_, 1.0 / cone_);
        const double angle = at.x == 0.0 && at.y == 0.0 ? 0.0 : std::atan2(at.x, -side_ * at.y);
        return {side_ * earth_.latitude(half_angle), plon_ + angle / (RADIANS * cone_)};
    }

  private:
    Spheroid earth_;
    double plon_;
    double side_;
    double cone_ = 1.0;
    double unit_ = 1.0;
};

/// Lays a grid that begins at its first point on the map of the message's earth. The program's map has the same shape
/// and another size: `scale` are its lengths in parts of the message's.
template <class Map>
void place(const Map& theirs, const GribPlane& grid, int ydir, double scale, Domain* domain) {
    Place first = theirs.forward({grid.lat1, grid.lon1});
    first.x += grid.east / MAP_UNIT;
    first.y += grid.north / MAP_UNIT;
    const double half_x = steps(domain->nx) * grid.dx / MAP_UNIT / 2.0;
    const double half_y = steps(domain->ny) * grid.dy / MAP_UNIT / 2.0;
    const Place centre{domain->nx > 1 ? first.x + half_x : first.x, domain->ny > 1 ? first.y + ydir * half_y : first.y};
    const EarthPlace middle = theirs.inverse(centre);
    domain->clat = static_cast<float>(middle.lat);
    domain->clon = static_cast<float>(wrap(middle.lon));
    domain->dx = static_cast<float>(grid.dx / MAP_UNIT * scale);
    domain->dy = static_cast<float>(grid.dy / MAP_UNIT * scale);
}

/// A place that can't be worked out leaves the domain unset.
void discard_impossible(Domain* domain) {
    const bool finite = std::isfinite(domain->clat) && std::isfinite(domain->clon) && std::isfinite(domain->plon) &&
                        std::isfinite(domain->dx) && std::isfinite(domain->dy);
    if (!finite || domain->dx <= 0.0F || domain->dy <= 0.0F) DOM_init(domain);
}

void place_cone(const GribPlane& grid, int ydir, bool disc, Domain* domain) {
    const Spheroid earth = earth_of(grid.earth);
    domain->plat = grid.south ? -90.0F : 90.0F;
    domain->plon = static_cast<float>(wrap(grid.plon));
    domain->ecc = static_cast<float>(earth.excentricity());
    place(ConeMap(grid, earth, disc), grid, ydir, MAP_RADIUS / earth.radius(), domain);
    discard_impossible(domain);
}

/// Span of longitudes from the first point to the last one eastward; a whole turn if they are the same meridian.
double span_east(const GribLatlon& grid, int points) {
    if (points < 2) return 0.0;
    double span = grid.lon2 - grid.lon1;
    if (std::fabs(span) > 360.0 + grid.unit) span = std::fmod(span, 360.0);
    while (span <= grid.unit / 2.0) span += 360.0;
    return span;
}

/// Step that a span is divided into. One that the message gives counts if it says something else than the span does;
/// one that is the same but for its rounding is less exact than the span.
double step_of(double span, int points, double given, double unit) {
    const double count = steps(points);
    const bool set = given != FMISS && given > 0.0;
    if (points < 2) return set ? given : 0.0;
    const double even = span / count;
    const double rounding = unit * (count + 2.0) / 2.0;
    if (set && std::fabs(given * count - span) > rounding * 1.01) return given;
    return even;
}

}  // namespace

bool grib_goes_round(const Domain& domain) {
    constexpr double ROUNDING = 0.001;
    return domain.proj == PROJ_LATLON && std::fabs(static_cast<double>(domain.dx) * domain.nx - 360.0) < ROUNDING;
}

void grib_place_latlon(const GribLatlon& grid, int ydir, Domain* domain) {
    const double east = span_east(grid, domain->nx);
    const double north = std::fabs(grid.lat2 - grid.lat1);
    double dx = step_of(east, domain->nx, grid.dx, grid.unit);
    double dy = step_of(north, domain->ny, grid.dy, grid.unit);
    // A grid round the whole earth divides it evenly, which rounded ends don't tell.
    if (domain->nx > 1 && std::fabs(dx * domain->nx - 360.0) < 1.5 * grid.unit) dx = 360.0 / domain->nx;
    if (dx == 0.0) dx = dy > 0.0 ? dy : 1.0;
    if (dy == 0.0) dy = dx;
    const double up = north == 0.0 ? ydir : grid.lat2 < grid.lat1 ? -1.0 : 1.0;
    domain->proj = PROJ_LATLON;
    domain->dx = static_cast<float>(dx);
    domain->dy = static_cast<float>(dy);
    domain->clon = static_cast<float>(wrap(grid.lon1 + dx * (domain->nx - 1) / 2.0));
    domain->clat = static_cast<float>(grid.lat1 + up * dy * (domain->ny - 1) / 2.0);
}

void grib_place_mercator(const GribPlane& message, int ydir, Domain* domain) {
    GribPlane grid = message;
    const Spheroid earth = earth_of(grid.earth);
    const double unit = earth.radius() * earth.parallel(grid.true1);
    const double degree = MAP_UNIT * unit * RADIANS;
    if (!(grid.dx > 0.0)) {
        const double span = grid.lon2 - grid.lon1;
        grid.dx = degree * (span > 0.0 || domain->nx < 2 ? span : span + 360.0) / steps(domain->nx);
    }
    grid.plon = wrap(grid.lon1 + grid.dx / degree * (domain->nx - 1) / 2.0);
    domain->proj = PROJ_MERCATOR;
    domain->plat = 0.0F;
    domain->plon = static_cast<float>(grid.plon);
    const MercatorMap theirs(grid, earth);
    if (!(grid.dy > 0.0)) {
        const double rise = theirs.forward({grid.lat2, grid.lon2}).y - theirs.forward({grid.lat1, grid.lon1}).y;
        grid.dy = MAP_UNIT * std::fabs(rise) / steps(domain->ny);
    }
    domain->ecc = static_cast<float>(earth.excentricity());
    place(theirs, grid, ydir, MAP_RADIUS / unit, domain);  // the program's map is true at the equator
    discard_impossible(domain);
}

void grib_place_lambert(const GribPlane& message, int ydir, Domain* domain) {
    GribPlane grid = message;
    // A cone is southern if its true latitudes are, whatever the flag says; the map counts them as positive.
    if (grid.true1 + grid.true2 < 0.0) {
        grid.south = true;
        grid.true1 = -grid.true1;
        grid.true2 = -grid.true2;
    }
    domain->proj = PROJ_LAMBERT;
    domain->param[0] = static_cast<float>(grid.true1);
    domain->param[1] = static_cast<float>(grid.true2);
    domain->param[2] = 1.0F;
    place_cone(grid, ydir, false, domain);
}

void grib_place_polar(const GribPlane& message, int ydir, Domain* domain) {
    GribPlane grid = message;
    grid.south = grid.south || grid.true1 < 0.0;
    grid.true1 = std::fabs(grid.true1);
    domain->proj = PROJ_POLAR;
    domain->param[0] = static_cast<float>(grid.south ? -grid.true1 : grid.true1);
    place_cone(grid, ydir, true, domain);
}

}  // namespace zav
