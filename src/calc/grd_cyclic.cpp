/// Grids that go round the globe.

#include "calc/grd_cyclic.h"

#include <algorithm>
#include <cmath>

#include "map/maptran.h"

namespace zav {
namespace {

/// Round the equator, in map units.
constexpr double EQUATOR = 400.31555892808814;
constexpr double TURN = 360.0;

/// What rounded spacings leave of a turn: of a thousandth of a degree in files, and of the earth's radius that metres
/// are divided by; never so much that a missing column would pass.
double rounding(const Domain& domain) {
    constexpr double OF_DEGREES = 0.0006;
    constexpr double OF_RADIUS = 0.002;
    constexpr double OF_A_STEP = 0.3;
    const double step = GRD_column_degrees(domain);
    const double sum = domain.proj == PROJ_LATLON ? OF_DEGREES * domain.nx : OF_RADIUS * TURN;
    return std::min(sum, OF_A_STEP * step);
}

}  // namespace

double GRD_column_degrees(const Domain& domain) {
    if (!(domain.dx > 0.0F) || !std::isfinite(domain.dx)) return 0.0;
    if (domain.proj == PROJ_LATLON) return domain.dx;
    return domain.proj == PROJ_MERCATOR ? domain.dx * (TURN / EQUATOR) : 0.0;
}

int GRD_cycle(const Domain& domain) {
    constexpr int FEWEST = 4;  // fewer points round the globe are no field
    const double step = GRD_column_degrees(domain);
    if (step == 0.0) return 0;
    for (const int columns : {domain.nx, domain.nx - 1}) {
        if (columns >= FEWEST && std::fabs(columns * step - TURN) <= rounding(domain)) return columns;
    }
    return 0;
}

int GRD_turned_column(long long column, int cycle) {
    const long long rest = column % cycle;
    return static_cast<int>(rest < 0 ? rest + cycle : rest);
}

Domain GRD_close_domain(const Domain& domain) {
    Domain closed = domain;
    if (GRD_cycle(domain) != domain.nx) return closed;
    closed.nx = domain.nx + 1;
    // The middle moves by half a step, and the reference with it where none is given.
    closed.clon = static_cast<float>(std::remainder(domain.clon + GRD_column_degrees(domain) / 2.0, TURN));
    if (domain.plon == FMISS || domain.plon == domain.clon) closed.plon = closed.clon;
    return closed;
}

}  // namespace zav
