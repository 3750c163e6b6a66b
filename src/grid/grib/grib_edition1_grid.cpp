#include <algorithm>
#include <vector>

#include "frame/mess.h"
#include "frame/zav.h"
#include "grid/grib/grib.h"
#include "grid/grib/grib_state.h"
#include "grid/zavgrd.h"
#include "map/maptran.h"

namespace zav {
namespace {

constexpr int ECMWF = 98;
constexpr int MAX_SIDE = 2000;    ///< most points of a row or column
constexpr long SHORT_BLOCK = 32;  ///< octets that all descriptions have
constexpr long LONG_BLOCK = 42;   ///< octets of the projected ones

/// Latitude or longitude in degrees.
float degrees(const Octets& block, int number) { return static_cast<float>(block.s24(number)) / 1000.0F; }

/// Grid length in map units of 100 km.
float grid_length(const Octets& block, int number) { return static_cast<float>(block.u24(number)) / 100000.0F; }

/// Steps between `points`, at least 1.
float steps(int points) { return static_cast<float>(std::max(points - 1, 1)); }

float wrap(float lon) { return lon > 180.0F ? lon - 360.0F : lon; }

void decode_latlon(const Octets& block, GRD_report* grd) {
    GribState& state = grib_state();
    Domain& domain = grd->domain;
    const float lat1 = degrees(block, 11);
    const float lat2 = degrees(block, 18);
    const float lon1 = degrees(block, 14);
    const float ydir = static_cast<float>(state.ydir);
    domain.proj = PROJ_LATLON;
    state.lat = lat1;
    if (block.u8(17) & 0x80) {
        domain.dx = static_cast<float>(block.u16(24)) / 1000.0F;
        domain.dy = static_cast<float>(block.u16(26)) / 1000.0F;
    } else {
        domain.dy = (lat2 - lat1) * ydir / steps(domain.ny);
        domain.dx = domain.dy;
    }
    if (domain.dx > 30.0F && grd->type >= 37 && grd->type <= 44) domain.dx = 1.25F;
    domain.clon = wrap(lon1 + domain.dx * static_cast<float>(domain.nx - 1) / 2.0F);
    domain.clat = lat1 + domain.dy * ydir * static_cast<float>(domain.ny - 1) / 2.0F;
}

void decode_mercator(const Octets& block, GRD_report* grd) {
    Domain& domain = grd->domain;
    const float lat1 = degrees(block, 11);
    const float lon1 = degrees(block, 14);
    const float lat2 = degrees(block, 18);
    const float lon2 = degrees(block, 21);
    domain.proj = PROJ_MERCATOR;
    domain.plat = 0.0F;
    if (lon1 > lon2) {
        domain.plon = (lon1 - 360.0F + lon2) / 2.0F;
        if (domain.plon < -180.0F) domain.plon += 360.0F;
    } else {
        domain.plon = (lon1 + lon2) / 2.0F;
    }
    MAP_domain(&domain);
    float x1 = 0.0F;
    float y1 = 0.0F;
    float x2 = 0.0F;
    float y2 = 0.0F;
    MAP_tran(lat1, lon1, &x1, &y1);
    MAP_tran(lat2, lon2, &x2, &y2);
    domain.dx = (x2 - x1) / steps(domain.nx);
    // Spacing is positive whichever row comes first.
    domain.dy = (y2 - y1) / steps(domain.ny);
    if (domain.dy < 0.0F) domain.dy = -domain.dy;
    MAP_untran((x1 + x2) / 2.0F, (y1 + y2) / 2.0F, &domain.clat, &domain.clon);
}

void decode_lambert(const Octets& block, GRD_report* grd) {
    Domain& domain = grd->domain;
    const bool south = (block.u8(28) & 0x01) || (block.u8(27) & 0x80);
    domain.proj = PROJ_LAMBERT;
    domain.plon = wrap(degrees(block, 18));
    domain.plat = south ? -90.0F : 90.0F;
    domain.param[0] = degrees(block, 29);
    domain.param[1] = degrees(block, 32);
    domain.param[2] = 1.0F;
    if (south) {  // the projection takes true latitudes of either hemisphere as positive
        domain.param[0] = domain.param[0] < 0.0F ? -domain.param[0] : domain.param[0];
        domain.param[1] = domain.param[1] < 0.0F ? -domain.param[1] : domain.param[1];
    }
    domain.dx = grid_length(block, 21);
    domain.dy = grid_length(block, 24);
    MAP_domain(&domain);
    float x = 0.0F;
    float y = 0.0F;
    MAP_tran(degrees(block, 11), degrees(block, 14), &x, &y);
    x += static_cast<float>((domain.nx - 1) / 2) * domain.dx;
    y += static_cast<float>(grib_state().ydir * (domain.ny - 1) / 2) * domain.dy;
    MAP_untran(x, y, &domain.clat, &domain.clon);
}

void decode_polar(const Octets& block, GRD_report* grd) {
    Domain& domain = grd->domain;
    const bool south = (block.u8(27) & 0x81) != 0;
    domain.proj = PROJ_POLAR;
    domain.plon = grd->source == ECMWF && grd->type == 45 ? 0.0F : wrap(degrees(block, 18));
    domain.plat = south ? -90.0F : 90.0F;
    domain.param[0] = south ? -60.0F : 60.0F;
    domain.dx = grid_length(block, 21);
    domain.dy = grid_length(block, 24);
    MAP_domain(&domain);
    float x = 0.0F;
    float y = 0.0F;
    MAP_tran(degrees(block, 11), degrees(block, 14), &x, &y);
    x += static_cast<float>(domain.nx - 1) * domain.dx / 2.0F;
    y += static_cast<float>((domain.ny - 1) * grib_state().ydir) * domain.dy / 2.0F;
    MAP_untran(x, y, &domain.clat, &domain.clon);
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
    const long list = row_list(block);
    state.thin = list > 0 ? 1 : 0;
    state.ydir = block.u8(28) & 0x42 ? 1 : -1;
    if (state.ydir > 0) {
        MESS_print(MESS_DEBUG, "Gridpoint direction: %x : south to north\n", static_cast<unsigned>(block.u8(28)));
    } else {
        MESS_print(MESS_DEBUG, "Gridpoint direction: %x : north to south\n", static_cast<unsigned>(block.u8(28)));
    }
    Domain& domain = grd->domain;
    domain.nx = block.u16(7);
    domain.ny = block.u16(9);
    if (domain.ny < 1 || domain.ny > MAX_SIDE) return 0;
    if (state.thin) {
        domain.nx = 0;
        for (int row = 0; row < domain.ny; ++row) {
            state.rows.push_back(block.u16(static_cast<int>(list) + 2 * row));
            domain.nx = std::max(domain.nx, state.rows.back());
        }
    }
    if (domain.nx < 1 || domain.nx > MAX_SIDE) return 0;
    Domain before;
    MAP_get_domain(&before);
    for (const GridType& type : GRID_TYPES) {
        if (type.code == block.u8(6)) type.decode(block, grd);
    }
    MAP_domain(&before);
    return 1;
}

}  // namespace zav
