#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "frame/zav.h"
#include "grid/grib/grib.h"
#include "grid/grib/grib_state.h"
#include "grid/zavgrd.h"
#include "map/maptran.h"

namespace zav {
namespace {

/// Longest section that is decoded; what is longer is cut. A grid section with 10000 row lengths stays below it.
constexpr std::size_t MAX_SECTION = 200000;
constexpr int MAX_LATLON_ROWS = 10000;
constexpr int MAX_ROWS = 2000;

float degrees(const Octets& section, int number) { return static_cast<float>(section.s32(number) / 1e6); }

float longitude(const Octets& section, int number) {
    const float lon = degrees(section, number);
    return lon > 180.0F ? lon - 360.0F : lon;
}

/// Grid length in map units of 100 km, from millimetres.
float grid_length(const Octets& section, int number) { return static_cast<float>(section.u32(number) * 1e-8); }

float steps(int points) { return static_cast<float>(std::max(points - 1, 1)); }

void set_scanning(const Octets& section, int number) {
    GribState& state = grib_state();
    state.ydir = section.u8(number) & 0x42 ? 1 : -1;
    state.xalt = section.u8(number) & 0x10 ? 1 : 0;
}

/// Row lengths of a quasi-regular grid. False if they aren't octets.
bool read_rows(const Octets& section) {
    GribState& state = grib_state();
    if (section.u8(11) != 1 || section.end() < 73 + state.dv.ny) return false;
    state.thin = 1;
    state.dv.nx = 0;
    for (int row = 0; row < state.dv.ny; ++row) {
        state.rows.push_back(section.u8(73 + row));
        state.dv.nx = std::max(state.dv.nx, state.rows.back());
    }
    return true;
}

/// Template 3.0. The increments in the message aren't used.
bool decode_latlon(const Octets& section) {
    Domain& dv = grib_state().dv;
    if (section.u32(31) == 0xFFFFFFFFU && !read_rows(section)) {
        DOM_init(&dv);
        return true;
    }
    const float lat1 = degrees(section, 47);
    const float lat2 = degrees(section, 56);
    const float lon1 = longitude(section, 51);
    float lon2 = longitude(section, 60);
    if (lon1 > lon2) lon2 += 360.0F;
    dv.proj = PROJ_LATLON;
    dv.plat = 0.0F;
    dv.clon = (lon1 + lon2) / 2.0F;
    dv.plon = dv.clon;
    dv.clat = (lat1 + lat2) / 2.0F;
    dv.dx = std::fabs(lon2 - lon1) / steps(dv.nx);
    dv.dy = std::fabs(lat2 - lat1) / steps(dv.ny);
    set_scanning(section, 72);
    return true;
}

/// Template 3.10.
bool decode_mercator(const Octets& section) {
    Domain& dv = grib_state().dv;
    const EarthPoint first{degrees(section, 39), longitude(section, 43)};
    EarthPoint last{degrees(section, 52), longitude(section, 56)};
    if (first.lon > last.lon) last.lon += 360.0F;
    dv.proj = PROJ_MERCATOR;
    dv.plat = 0.0F;
    dv.plon = (first.lon + last.lon) / 2.0F;
    if (dv.plon > 180.0F) dv.plon -= 360.0F;
    MAP_domain(&dv);
    Point corner1;
    Point corner2;
    MAP_tran_ep(first, &corner1);
    MAP_tran_ep(last, &corner2);
    dv.dx = std::fabs(corner2.x - corner1.x) / steps(dv.nx);
    dv.dy = std::fabs(corner2.y - corner1.y) / steps(dv.ny);
    EarthPoint middle;
    MAP_tran_pe({(corner1.x + corner2.x) / 2.0F, (corner1.y + corner2.y) / 2.0F}, &middle);
    dv.clat = middle.lat;
    dv.clon = middle.lon;
    set_scanning(section, 60);
    return true;
}

/// Template 3.20.
bool decode_polar(const Octets& section) {
    GribState& state = grib_state();
    Domain& dv = state.dv;
    const bool south = (section.u8(47) & 0x01) || (section.u8(64) & 0x80);
    dv.proj = PROJ_POLAR;
    dv.plat = south ? -90.0F : 90.0F;
    dv.param[0] = degrees(section, 48);
    dv.plon = longitude(section, 52);
    dv.dx = grid_length(section, 56);
    dv.dy = grid_length(section, 60);
    set_scanning(section, 65);
    MAP_domain(&dv);
    Point point;
    MAP_tran_ep({degrees(section, 39), longitude(section, 43)}, &point);
    point.x += static_cast<float>(dv.nx - 1) * dv.dx / 2.0F;
    point.y += static_cast<float>((dv.ny - 1) * state.ydir) * dv.dy / 2.0F;
    EarthPoint middle;
    MAP_tran_pe(point, &middle);
    dv.clat = middle.lat;
    dv.clon = middle.lon;
    return true;
}

/// Template 3.30.
bool decode_lambert(const Octets& section) {
    GribState& state = grib_state();
    Domain& dv = state.dv;
    // Octet 28 belongs to the earth's minor axis, which is all ones where a centre leaves it out.
    const bool marked = (section.u8(28) & 0x01) && section.u32(27) != 0xFFFFFFFFU;
    const bool south = marked || (section.u8(64) & 0x80);
    dv.proj = PROJ_LAMBERT;
    dv.plat = south ? -90.0F : 90.0F;
    dv.plon = longitude(section, 52);
    dv.dx = grid_length(section, 56);
    dv.dy = grid_length(section, 60);
    dv.param[0] = degrees(section, 66);
    dv.param[1] = degrees(section, 70);
    dv.param[2] = 1.0F;
    if (south) {  // the projection takes true latitudes of either hemisphere as positive
        dv.param[0] = std::fabs(dv.param[0]);
        dv.param[1] = std::fabs(dv.param[1]);
    }
    set_scanning(section, 65);
    MAP_domain(&dv);
    Point point;
    MAP_tran_ep({degrees(section, 39), longitude(section, 43)}, &point);
    point.x += dv.dx * static_cast<float>((dv.nx - 1) / 2);
    point.y += dv.dy * static_cast<float>(state.ydir * (dv.ny - 1) / 2);
    EarthPoint middle;
    MAP_tran_pe(point, &middle);
    dv.clat = middle.lat;
    dv.clon = middle.lon;
    return true;
}

struct Template {
    int code;
    int max_rows;
    bool (*decode)(const Octets& section);
};

/// Grid definition templates of WMO code table 3.1 that are decoded.
constexpr Template TEMPLATES[] = {
    {0, MAX_LATLON_ROWS, decode_latlon},
    {10, MAX_ROWS, decode_mercator},
    {20, MAX_ROWS, decode_polar},
    {30, MAX_ROWS, decode_lambert},
};

/// A number by which grids can be told apart, made from the definition.
int grid_number(const Octets& section, int code) {
    const int lat = code == 0 ? 47 : 39;
    const int lon = lat + 4;
    const int a = std::abs(section.s32(lat)) / 10000000;
    int b = std::abs(section.s32(lon)) / 10000000;
    if (section.u8(lon) & 0x80) b = 36 - b;
    if (section.u8(lat) & 0x80) b += 36;
    const std::int64_t c = static_cast<std::int32_t>(section.u32(31)) / 10;
    std::int64_t d = section.u32(56) / 1000000;
    if (code == 0) {
        const std::int64_t first = section.s32(51);
        std::int64_t last = section.s32(60);
        if (last <= first) last += 360000000;
        const std::int64_t count = std::max<std::int64_t>(static_cast<std::int32_t>(section.u32(31)) - 1, 1);
        d = 10 * (last - first) / count / 1000000;
    }
    return static_cast<int>(code * std::int64_t{10000000} + a * 1000000 + b * 10000 + c * 100 + d);
}

}  // namespace

bool grib_read_section_body(int grd_fd) {
    std::FILE* stream = grib_stream(grd_fd);
    if (!stream) return false;
    GribState& state = grib_state();
    const std::size_t size = std::min(static_cast<std::size_t>(std::max(state.slen - 5, 0L)), MAX_SECTION);
    return grib_read_bytes(stream, size, state.section) && size > 0;
}

int GRIB_IDS(int grd_fd, GRD_report* grd) {
    if (!grib_read_section_body(grd_fd)) return 0;
    GribState& state = grib_state();
    const Octets section(state.section.data(), state.section.size(), 6);
    state.source = section.u16(6);
    DATE_init(&state.date);
    state.date.year = section.u16(13);
    state.date.month = section.u8(15);
    state.date.day = section.u8(16);
    state.date.hour = section.u8(17);
    state.date.min = section.u8(18);
    grd->source = state.source;
    grd->date = state.date;
    grd->version = state.version;
    grd->type = 0;
    return 1;
}

int GRIB_GDS(int grd_fd, GRD_report* grd) {
    if (!grib_read_section_body(grd_fd)) return 0;
    GribState& state = grib_state();
    const Octets section(state.section.data(), state.section.size(), 6);
    const int code = section.u16(13);
    DOM_init(&state.dv);
    state.ydir = 1;
    state.xalt = 0;
    state.thin = 0;
    state.rows.clear();
    Domain before;
    MAP_get_domain(&before);
    bool good = true;
    for (const Template& grid : TEMPLATES) {
        if (grid.code != code) continue;
        state.dv.nx = static_cast<std::int32_t>(section.u32(31));
        state.dv.ny = static_cast<std::int32_t>(section.u32(35));
        good = state.dv.ny >= 1 && state.dv.ny <= grid.max_rows && grid.decode(section);
        const bool unset = state.dv.proj == MISS;
        if (!unset && (state.dv.nx < 1 || state.dv.nx > GRIB_MAX_POINTS / state.dv.ny)) good = false;
    }
    MAP_domain(&before);
    if (!good) {
        DOM_init(&state.dv);
        grd->domain = state.dv;
        return 0;
    }
    grd->domain = state.dv;
    grd->type = grid_number(section, code);
    state.grid_id = grd->type;
    return 1;
}

}  // namespace zav
