#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "frame/zav.h"
#include "grid/grib/grib.h"
#include "grid/grib/grib_place.h"
#include "grid/grib/grib_state.h"
#include "grid/zavgrd.h"

namespace zav {
namespace {

/// Longest section that is decoded; what is longer is cut. A grid section with 10000 row lengths stays below it.
constexpr std::size_t MAX_SECTION = 200000;
constexpr int MAX_LATLON_ROWS = 10000;
constexpr int MAX_ROWS = 2000;

constexpr double MILLIONTH = 1e-6;

double degrees(const Octets& section, int number) { return section.s32(number) * MILLIONTH; }

/// Metres, from millimetres; 0 if the message gives none.
double length(const Octets& section, int number) {
    return section.u32(number) == 0xFFFFFFFFU ? 0.0 : section.u32(number) * 1e-3;
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
void decode_latlon(const Octets& section) {
    GribState& state = grib_state();
    if (section.u32(31) == 0xFFFFFFFFU && !read_rows(section)) return;
    // Angles are in millionths of a degree unless a basic angle and its divisor are told.
    const std::uint32_t angle = section.u32(39);
    const std::uint32_t divisor = section.u32(43);
    const bool basic = angle != 0 && angle != 0xFFFFFFFFU && divisor != 0 && divisor != 0xFFFFFFFFU;
    GribLatlon grid;
    grid.unit = basic ? static_cast<double>(angle) / divisor : MILLIONTH;
    grid.lat1 = section.s32(47) * grid.unit;
    grid.lon1 = section.s32(51) * grid.unit;
    grid.lat2 = section.s32(56) * grid.unit;
    grid.lon2 = section.s32(60) * grid.unit;
    state.dv.plat = 0.0F;
    grib_place_latlon(grid, state.ydir, &state.dv);
    state.dv.plon = state.dv.clon;
}

/// Half axis of the earth in metres, 0 if it isn't given. `number` is the octet of its scale factor.
double axis(const Octets& section, int number) {
    if (section.u8(number) == 0xFF || section.u32(number + 1) == 0xFFFFFFFFU) return 0.0;
    return section.u32(number + 1) * std::pow(10.0, -section.s8(number));
}

/// The earth of WMO code table 3.2.
GribEarth earth(const Octets& section) {
    static constexpr GribEarth GRS_80{6378137.0, 6356752.314140};
    static constexpr GribEarth WGS_84{6378137.0, 6356752.314245};
    static constexpr GribEarth AIRY{6377563.396, 6356256.909};
    const double radius = axis(section, 16);
    const double major = axis(section, 21);
    const double minor = axis(section, 26);
    switch (section.u8(15)) {
        case 0:
            return GRIB_SPHERE;
        case 1:
            return {radius, radius};
        case 2:
            return GRIB_IAU_1965;
        case 3:
            return {1000.0 * major, 1000.0 * minor};
        case 4:
            return GRS_80;
        case 5:
        case 10:
            return WGS_84;
        case 6:
            return {6371229.0, 6371229.0};
        case 7:
            return {major, minor};
        case 8:
            return {6371200.0, 6371200.0};
        case 9:
            return AIRY;
        default:
            return {};
    }
}

/// What the grids with steps of length share; the latitude and the steps lie elsewhere in each.
GribPlane plane(const Octets& section, int latitude, int steps) {
    GribPlane grid;
    grid.lat1 = degrees(section, 39);
    grid.lon1 = degrees(section, 43);
    grid.true1 = degrees(section, latitude);
    grid.dx = length(section, steps);
    grid.dy = length(section, steps + 4);
    grid.earth = earth(section);
    return grid;
}

/// Template 3.10. A map that is turned isn't decoded.
void decode_mercator(const Octets& section) {
    GribState& state = grib_state();
    if (section.u32(61) != 0 && section.u32(61) != 0xFFFFFFFFU) return;
    GribPlane grid = plane(section, 48, 65);
    grid.lat2 = degrees(section, 52);
    grid.lon2 = degrees(section, 56);
    grib_place_mercator(grid, state.ydir, &state.dv);
}

/// Template 3.20.
void decode_polar(const Octets& section) {
    GribState& state = grib_state();
    GribPlane grid = plane(section, 48, 56);
    grid.plon = degrees(section, 52);
    grid.south = (section.u8(64) & 0x80) != 0;
    grib_place_polar(grid, state.ydir, &state.dv);
}

/// Template 3.30.
void decode_lambert(const Octets& section) {
    GribState& state = grib_state();
    GribPlane grid = plane(section, 66, 56);
    grid.plon = degrees(section, 52);
    grid.true2 = degrees(section, 70);
    grid.south = (section.u8(64) & 0x80) != 0;
    grib_place_lambert(grid, state.ydir, &state.dv);
}

struct Template {
    int code;
    int max_rows;
    int scanning;  ///< octet of the scanning mode
    void (*decode)(const Octets& section);
};

/// Grid definition templates of WMO code table 3.1 that are decoded.
constexpr Template TEMPLATES[] = {
    {0, MAX_LATLON_ROWS, 72, decode_latlon},
    {10, MAX_ROWS, 60, decode_mercator},
    {20, MAX_ROWS, 65, decode_polar},
    {30, MAX_ROWS, 65, decode_lambert},
};

/// Points in x that the message tells; 0 where it lists the lengths of rows instead, or for a count that can't be.
int told_columns(const Octets& section) {
    return section.u32(31) > static_cast<std::uint32_t>(GRIB_MAX_POINTS) ? 0 : static_cast<int>(section.u32(31));
}

/// Fills the domain of the state, which stays unset for a grid that isn't decoded. False for one too large.
bool decode_grid(const Octets& section, const Template& grid) {
    GribState& state = grib_state();
    Domain& dv = state.dv;
    const int scanning = section.u8(grid.scanning);
    state.ydir = scanning & 0x42 ? 1 : -1;
    state.xalt = scanning & 0x10 ? 1 : 0;
    const std::uint32_t rows = section.u32(35);
    if (rows < 1 || rows > static_cast<std::uint32_t>(grid.max_rows)) return false;
    if (scanning & (GRIB_WESTWARD | GRIB_COLUMNS_FIRST)) return true;
    dv.nx = told_columns(section);
    dv.ny = static_cast<int>(rows);
    grid.decode(section);
    if (dv.proj == MISS) {
        DOM_init(&dv);
        return true;
    }
    return dv.nx >= 1 && dv.nx <= GRIB_MAX_POINTS / dv.ny;
}

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
        const std::int64_t count =
            std::max<std::int64_t>(std::int64_t{static_cast<std::int32_t>(section.u32(31))} - 1, 1);
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
    bool good = true;
    for (const Template& grid : TEMPLATES) {
        if (grid.code == code) good = decode_grid(section, grid);
    }
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
