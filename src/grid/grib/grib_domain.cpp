#include <array>

#include "grid/grib/grib.h"
#include "map/maptran.h"
#include "map/region.h"

namespace zav {
namespace {

/// Grids of one layout with consecutive numbers.
struct Family {
    int first;
    int last;
    int proj;
    int nx;
    int ny;
    float dx;
    float dy;
};

/// WMO international exchange grids and the US centre's grids (its Office Note 388, table B).
constexpr std::array<Family, 8> FAMILIES{{
    {21, 24, 2, 37, 37, 5.0F, 2.5F},
    {25, 26, 2, 73, 19, 5.0F, 5.0F},
    {37, 44, 2, 73, 73, 1.5F, 1.5F},
    {50, 50, 2, 36, 33, 2.5F, 1.25F},
    {61, 64, 2, 91, 46, 2.0F, 2.0F},
    {211, 211, 4, 93, 65, 0.8127F, 0.8127F},
    {212, 212, 4, 185, 129, 0.4063F, 0.4063F},
    {215, 215, 4, 369, 257, 0.2032F, 0.2032F},
}};

struct Centre {
    int type;
    float lat;
    float lon;
};

constexpr std::array<Centre, 22> CENTRES{{
    {21, 45, 90},
    {22, 45, -90},
    {23, -45, 90},
    {24, -45, -90},
    {25, 45, 180},
    {26, -45, 180},
    {37, 45, 15},
    {38, 45, 105},
    {39, 45, -165},
    {40, 45, -75},
    {41, -45, 15},
    {42, -45, 105},
    {43, -45, -165},
    {44, -45, -75},
    {50, 40, -96.25F},
    {61, 45, 90},
    {62, 45, -90},
    {63, -45, 90},
    {64, -45, -90},
    {211, 40.607F, -100.553F},
    {212, 40.606F, -100.554F},
    {215, 40.607F, -100.553F},
}};

}  // namespace

int GRIB_set_domain(int type, Domain* domain) {
    for (const Family& family : FAMILIES) {
        if (type < family.first || type > family.last) continue;
        domain->proj = family.proj;
        domain->nx = family.nx;
        domain->ny = family.ny;
        domain->dx = family.dx;
        domain->dy = family.dy;
        if (family.proj == PROJ_LAMBERT) {
            domain->plon = -95.0F;
            domain->param[0] = 25.0F;
            domain->param[1] = 25.0F;
            domain->param[2] = 1.0F;
        }
    }
    for (const Centre& centre : CENTRES) {
        if (centre.type != type) continue;
        domain->clat = centre.lat;
        domain->clon = centre.lon;
    }
    return 1;
}

}  // namespace zav
