#include <algorithm>
#include <vector>

#include "frame/mess.h"
#include "frame/zav.h"
#include "grid/grib/grib.h"
#include "grid/grib/grib_place.h"
#include "grid/grib/grib_state.h"
#include "grid/zavgrd.h"

namespace zav {
namespace {

constexpr int ECMWF = 98;
constexpr int MAX_SIDE = 2000;    ///< most points of a row or column
constexpr long SHORT_BLOCK = 32;  ///< octets that all descriptions have
constexpr long LONG_BLOCK = 42;   ///< octets of the projected ones

constexpr double THOUSANDTH = 0.001;

/// Latitude or longitude in degrees.
double degrees(const Octets& block, int number) { return block.s24(number) * THOUSANDTH; }

/// Increment of a latitude-longitude grid; FMISS if the message gives none.
double increment(const Octets& block, int number) {
    const bool given = (block.u8(17) & 0x80) && block.u16(number) != 0xFFFF && block.u16(number) != 0;
    return given ? block.u16(number) * THOUSANDTH : FMISS;
}

/// Metres; 0 if the message gives none.
double length(const Octets& block, int number) { return block.u24(number) == 0xFFFFFF ? 0.0 : block.u24(number); }

void decode_latlon(const Octets& block, GRD_report* grd) {
    GribLatlon grid;
    grid.lat1 = degrees(block, 11);
    grid.lon1 = degrees(block, 14);
    grid.lat2 = degrees(block, 18);
    grid.lon2 = degrees(block, 21);
    grid.dx = increment(block, 24);
    grid.dy = increment(block, 26);
    grid.unit = THOUSANDTH;
    const bool exchange = grd->type >= 37 && grd->type <= 44;  // their step is known
    if (exchange && grid.lon1 == grid.lon2 && (grid.dx == FMISS || grid.dx > 30.0)) grid.dx = 1.25;
    grib_state().lat = static_cast<float>(grid.lat1);
    grib_place_latlon(grid, grib_state().ydir, &grd->domain);
}

/// What the grids with steps of length share; `plon` and the true latitudes lie elsewhere in each.
GribPlane plane(const Octets& block, int dx, int dy) {
    GribPlane grid;
    grid.lat1 = degrees(block, 11);
    grid.lon1 = degrees(block, 14);
    grid.dx = length(block, dx);
    grid.dy = length(block, dy);
    grid.earth = block.u8(17) & 0x40 ? GRIB_IAU_1965 : GRIB_SPHERE;
    return grid;
}

void decode_mercator(const Octets& block, GRD_report* grd) {
    GribPlane grid = plane(block, 29, 32);
    grid.lat2 = degrees(block, 18);
    grid.lon2 = degrees(block, 21);
    grid.true1 = degrees(block, 24);
    grib_place_mercator(grid, grib_state().ydir, &grd->domain);
}

void decode_lambert(const Octets& block, GRD_report* grd) {
    GribPlane grid = plane(block, 21, 24);
    grid.plon = degrees(block, 18);
    grid.true1 = degrees(block, 29);
    grid.true2 = degrees(block, 32);
    grid.south = (block.u8(28) & 0x01) || (block.u8(27) & 0x80);
    grib_place_lambert(grid, grib_state().ydir, &grd->domain);
}

void decode_polar(const Octets& block, GRD_report* grd) {
    GribPlane grid = plane(block, 21, 24);
    grid.plon = grd->source == ECMWF && grd->type == 45 ? 0.0 : degrees(block, 18);
    grid.true1 = 60.0;
    grid.south = (block.u8(27) & 0x81) != 0;
    grib_place_polar(grid, grib_state().ydir, &grd->domain);
}

struct GridType {
    int code;
    void (*decode)(const Octets& block, GRD_report* grd);
    long length;
};

/// Data representation types of WMO code table 6 that are decoded.
constexpr GridType GRID_TYPES[] = {
    {0, decode_latlon, SHORT_BLOCK},
    {1, decode_mercator, LONG_BLOCK},
    {3, decode_lambert, LONG_BLOCK},
    {5, decode_polar, SHORT_BLOCK},
};

/// Octet where the row lengths of a quasi-regular grid start; 0 for a grid with rows of one length. Octet 5 points to
/// the vertical coordinates if there are any (octet 4), and the row lengths follow these.
long row_list(const Octets& block) {
    const int place = block.u8(5);
    const int vertical = block.u8(4);
    if (place == 0 || place == 255) return 0;
    if (vertical == 0 || vertical == 255) return SHORT_BLOCK + 1;
    return block.u16(7) == 0xFFFF ? place + 4L * vertical : 0;
}

/// Reads the block whole, by its length; for one that can't be, as far as the fields of its type reach. False if the
/// file ends.
bool read_block(std::FILE* stream, std::vector<unsigned char>& bytes) {
    const long start = std::ftell(stream);
    if (!grib_read_bytes(stream, SHORT_BLOCK, bytes)) return false;
    const Octets head(bytes.data(), bytes.size(), 1);
    const long length = head.u24(1);
    long needed = std::max(length, SHORT_BLOCK);
    for (const GridType& type : GRID_TYPES) {
        if (type.code == head.u8(6) && length < SHORT_BLOCK) needed = type.length;
    }
    const long list = row_list(head);
    if (list > 0 && head.u16(9) <= MAX_SIDE) needed = std::max(needed, list - 1 + 2L * head.u16(9));
    return std::fseek(stream, start, SEEK_SET) == 0 && grib_read_bytes(stream, static_cast<std::size_t>(needed), bytes);
}

/// Size of the grid, with the row lengths of a quasi-regular one. False if it is too large.
bool read_size(const Octets& block, int* nx, int* ny) {
    GribState& state = grib_state();
    const long list = row_list(block);
    state.thin = list > 0 ? 1 : 0;
    *nx = block.u16(7);
    *ny = block.u16(9);
    if (*ny < 1 || *ny > MAX_SIDE) return false;
    if (state.thin) {
        *nx = 0;
        for (int row = 0; row < *ny; ++row) {
            state.rows.push_back(block.u16(static_cast<int>(list) + 2 * row));
            *nx = std::max(*nx, state.rows.back());
        }
    }
    return *nx >= 1 && *nx <= MAX_SIDE;
}

}  // namespace

int GRIB_GDB(int grd_fd, GRD_report* grd) {
    std::FILE* stream = grib_stream(grd_fd);
    if (!stream || !grd) return -1;
    GribState& state = grib_state();
    state.thin = 0;
    state.rows.clear();
    if (!(grib_product().u8(8) & 0x80)) return 1;
    std::vector<unsigned char> bytes;
    if (!read_block(stream, bytes)) return -1;
    const Octets block(bytes.data(), bytes.size(), 1);
    const int scanning = block.u8(28);
    state.ydir = scanning & 0x42 ? 1 : -1;
    MESS_print(MESS_DEBUG, "Gridpoint direction: %x : %s\n", static_cast<unsigned>(scanning),
               state.ydir > 0 ? "south to north" : "north to south");
    Domain& domain = grd->domain;
    DOM_init(&domain);  // a description takes the place of what the grid number says
    int nx = 0;
    int ny = 0;
    if (!read_size(block, &nx, &ny)) return 0;
    if (scanning & (GRIB_WESTWARD | GRIB_COLUMNS_FIRST)) return 1;
    for (const GridType& type : GRID_TYPES) {
        if (type.code != block.u8(6)) continue;
        domain.nx = nx;
        domain.ny = ny;
        type.decode(block, grd);
    }
    return 1;
}

}  // namespace zav
