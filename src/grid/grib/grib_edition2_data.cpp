#include <algorithm>
#include <numeric>

#include "frame/mess.h"
#include "frame/zav.h"
#include "grid/grd_tool.h"
#include "grid/grib/grib.h"
#include "grid/grib/grib_jpeg2000.h"
#include "grid/grib/grib_state.h"
#include "grid/zavgrd.h"

namespace zav {
namespace {

// Data representation templates of WMO code table 5.0
constexpr int SIMPLE = 0;
constexpr int COMPLEX = 2;
constexpr int COMPLEX_DIFF = 3;
constexpr int JPEG2000 = 40;
constexpr int JPEG2000_OLD = 40000;  ///< number before the template was approved
constexpr int RUN_LENGTH = 200;

constexpr int MAX_BITS = 32;

void decode_scale(const Octets& section) {
    GribState& state = grib_state();
    const unsigned char* bytes = section.bytes(12, 6);
    state.ref = bytes ? GRIB_ieee_float_conv(bytes) : 0.0F;
    state.sfac = bytes ? GRIB_scl_conv(bytes + 4) : 1.0F;
    state.dscale = grib_decimal(section.s16(18));
}

void decode_complex(const Octets& section) {
    GribPacking& packing = grib_state().packing;
    packing.num_bits_gref = section.u8(20);
    packing.miss_type = section.u8(23);
    packing.num_group = section.u32(32);
    packing.ref_gwidth = section.u8(36);
    packing.num_bits_gwidth = section.u8(37);
    packing.ref_glen = section.u32(38);
    packing.inc_glen = section.u8(42);
    packing.last_glen = section.u32(43);
    packing.num_bits_glen = section.u8(47);
    packing.order = -1;
    packing.spat_bytes = -1;
    if (packing.type != COMPLEX_DIFF) return;
    packing.order = section.u8(48);
    packing.spat_bytes = section.u8(49);
}

void decode_run_length(const Octets& section) {
    GribState& state = grib_state();
    GribPacking& packing = state.packing;
    packing.num_bits = section.u8(12);
    packing.max_val = section.u16(13);
    state.dscale = grib_decimal(section.u8(17));
    for (int i = 0; i < section.u16(15) && 18 + 2 * i < section.end(); ++i) {
        packing.map.push_back(state.dscale * static_cast<float>(section.u16(18 + 2 * i)));
    }
}

/// Points that the message describes: those of the grid, or of all rows of a quasi-regular one.
std::size_t message_points(const GRD_report* grd) {
    const GribState& state = grib_state();
    if (state.thin) return std::accumulate(state.rows.begin(), state.rows.end(), std::size_t{0});
    return static_cast<std::size_t>(grd->domain.nx) * static_cast<std::size_t>(grd->domain.ny);
}

/// Lays out one value for each point of the message: stretches quasi-regular rows, turns rows that run backward, and
/// puts the northern row first.
void place_points(GRD_report* grd, const std::vector<float>& points) {
    const GribState& state = grib_state();
    const int nx = grd->domain.nx;
    const int ny = grd->domain.ny;
    const std::size_t width = static_cast<std::size_t>(nx);
    float* grid = grd->grid.get();
    if (state.thin) {
        grib_stretch_rows(state.rows, points, nx, grib_goes_round(grd->domain), grid);
    } else {
        std::copy_n(points.begin(), std::min(points.size(), width * static_cast<std::size_t>(ny)), grid);
    }
    for (int row = 1; state.xalt && row < ny; row += 2) {
        float* line = grid + static_cast<std::size_t>(row) * width;
        std::reverse(line, line + nx);
    }
    if (state.ydir <= 0) return;
    for (int row = 0; row < ny / 2; ++row) {
        float* line = grid + static_cast<std::size_t>(row) * width;
        std::swap_ranges(line, line + nx, grid + static_cast<std::size_t>(ny - 1 - row) * width);
    }
}

/// Spreads packed values over the points that the bit map marks, FMISS elsewhere, and lays them out.
void place_values(GRD_report* grd, std::vector<float>& values) {
    const GribState& state = grib_state();
    if (!state.bitmap.present) {
        place_points(grd, values);
        return;
    }
    std::vector<float> points(message_points(grd), FMISS);
    std::size_t used = 0;
    for (float& point : points) {
        if (GRIB_BMB_read() && used < values.size()) point = values[used++];
    }
    place_points(grd, points);
}

/// Packed values that the field can use: no more than it has points, or than the bit map marks among these. A message
/// may count its grid's points where it should count its values.
std::size_t usable_values(const GRD_report* grd) {
    const GribState& state = grib_state();
    const std::size_t points = message_points(grd);
    const std::size_t told = static_cast<std::size_t>(std::max(state.packing.points, 0L));
    const std::size_t marked = state.bitmap.present ? grib_marked_points(points) : points;
    return std::min(marked, told);
}

bool data_too_short() {
    MESS_print(MESS_WARN, "GRIB_DS: data section too short for its grid\n");
    return false;
}

/// A field in which each value is the reference.
bool unpack_constant(GRD_report* grd) {
    if (GRD_alloc(grd) < 1) return false;
    std::vector<float> values(usable_values(grd), grib_value(grib_state(), 0.0F));
    place_values(grd, values);
    return true;
}

bool unpack_simple(GRD_report* grd) {
    const GribState& state = grib_state();
    const unsigned width = static_cast<unsigned>(state.packing.num_bits);
    if (width == 0) return unpack_constant(grd);
    const std::size_t count = usable_values(grd);
    if (width > MAX_BITS || !state.bits.has(static_cast<std::uint64_t>(count) * width)) return data_too_short();
    if (GRD_alloc(grd) < 1) return false;
    std::vector<float> values(count);
    BitReader bits = state.bits;
    const GribScale scale(state);
    for (float& value : values) value = scale.value(static_cast<float>(bits.read(width)));
    place_values(grd, values);
    return true;
}

bool unpack_complex(GRD_report* grd) {
    const GribPacking& packing = grib_state().packing;
    if (packing.num_group == 0) return unpack_constant(grd);
    // With substitutes for missing values each point has its place in the list, and the bit map isn't asked.
    const bool listed = packing.miss_type > 0;
    const std::size_t points = message_points(grd);
    const std::size_t told = static_cast<std::size_t>(std::max(packing.points, 0L));
    const std::size_t count = listed ? std::min(points, told) : usable_values(grd);
    std::vector<float> values;
    const bool whole = grib_unpack_complex(grib_state(), count, values);
    if (!whole && values.empty()) return data_too_short();
    if (GRD_alloc(grd) < 1) return false;
    if (listed) {
        place_points(grd, values);
    } else {
        place_values(grd, values);
    }
    return whole || data_too_short();
}

/// An image as high as the grid: row by row as it is.
void place_image(GRD_report* grd, const Jpeg2000Image& image) {
    const GribState& state = grib_state();
    const int nx = grd->domain.nx;
    for (int j = 0; j < image.height; ++j) {
        const std::int64_t up = std::int64_t{image.height} - (std::int64_t{image.y0} + j + 1);
        const std::int64_t row = state.ydir > 0 ? up : std::int64_t{image.y0} + j;
        if (row < 0 || row >= grd->domain.ny) continue;
        const std::int32_t* source = image.values.data() + static_cast<std::size_t>(j) * image.width;
        float* line = grd->grid.get() + static_cast<std::size_t>(row) * static_cast<std::size_t>(nx);
        const int count = std::min(nx, image.width);
        for (int x = 0; x < count; ++x) line[x] = grib_value(state, static_cast<float>(source[x]));
        if (state.xalt && j % 2 == 1) std::reverse(line, line + count);
    }
}

void tell_rows(const GRD_report* grd) {
    const std::vector<int>& rows = grib_state().rows;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        MESS_print(MESS_DEBUG, "XX %d %d - %d\n", static_cast<int>(row), rows[row], grd->domain.nx);
    }
}

/// Most points of an image that is decoded. One that is larger than its grid has to have the bytes for it.
std::size_t largest_image(const GRD_report* grd) {
    constexpr std::size_t POINTS_OF_A_BYTE = 64;
    const std::size_t justified = grib_state().packed.size() * POINTS_OF_A_BYTE;
    return std::min(std::max(message_points(grd), justified), static_cast<std::size_t>(GRIB_MAX_POINTS));
}

bool unpack_jpeg2000(GRD_report* grd) {
    GribState& state = grib_state();
    // Encoders leave the image out where all values are the reference.
    if (state.packed.empty() && state.packing.num_bits == 0) return unpack_simple(grd);
    Jpeg2000Image image;
    if (!jpeg2000_decode(state.packed.data(), state.packed.size(), largest_image(grd), &image)) {
        MESS_print(MESS_WARN, "jpc_decode error\n");
        return false;
    }
    MESS_print(MESS_DEBUG, "JAS %d %d = %d %d = %d %d = %d\n", grd->domain.nx, grd->domain.ny, image.width,
               image.height, image.x0, image.y0, state.thin);
    if (GRD_alloc(grd) < 1) return false;
    if (!state.thin && image.height != 1) {
        place_image(grd, image);
        return true;
    }
    if (state.thin) tell_rows(grd);
    // A list of values: all rows one after the other, or what the bit map leaves. Without either it has no place.
    if (!state.thin && !state.bitmap.present) return true;
    std::vector<float> values(image.values.size());
    std::transform(image.values.begin(), image.values.end(), values.begin(),
                   [&](std::int32_t n) { return grib_value(state, static_cast<float>(n)); });
    place_values(grd, values);
    return true;
}

/// Run-length packing with level values (template 7.200). Level 0 is missing; level i has value i of the table, counted
/// from 1. The first row of the message is the first row of the grid. The run that is open at the end isn't stored.
bool unpack_run_length(GRD_report* grd) {
    GribState& state = grib_state();
    const GribPacking& packing = state.packing;
    MESS_print(MESS_DEBUG, "Template 7.200\n");
    const unsigned width = static_cast<unsigned>(packing.num_bits);
    if (width < 1 || width > 16) return data_too_short();
    const std::int64_t base = (std::int64_t{1} << width) - (packing.max_val + 1);
    if (GRD_alloc(grd) < 1) return false;
    const std::int64_t total = std::int64_t{grd->domain.nx} * grd->domain.ny;
    float* out = grd->grid.get();
    float* const end = out + total;
    BitReader bits = state.bits;
    std::int64_t level = -1;
    std::int64_t count = 1;
    std::int64_t multiple = 1;
    for (;;) {
        const std::int64_t n = bits.read(width);
        if (n < 0 || out == end) return true;
        if (n > packing.max_val) {
            count = std::min(count + (n - (packing.max_val + 1)) * multiple, total);
            multiple = std::min(multiple * base, total + 1);
            MESS_print(MESS_DEBUG, "num = %d mult = %d new_val = %d\n", static_cast<int>(count),
                       static_cast<int>(multiple), static_cast<int>(n));
            continue;
        }
        if (level >= 0) {
            const bool known = level >= 1 && level <= static_cast<std::int64_t>(packing.map.size());
            const float value = known ? packing.map[static_cast<std::size_t>(level - 1)] : FMISS;
            MESS_print(MESS_DEBUG, "cnt = %d new_val = %d val = %d\n", static_cast<int>(count), static_cast<int>(n),
                       static_cast<int>(level));
            out = std::fill_n(out, std::min<std::int64_t>(count, end - out), value);
            const int place = static_cast<int>(out - grd->grid.get());
            MESS_print(MESS_DEBUG, "byte: %d loc: %d %d new_val = %d val = %d num = %d\n",
                       static_cast<int>((bits.position() + 7) / 8), place % grd->domain.nx, place / grd->domain.nx,
                       static_cast<int>(n), static_cast<int>(level), static_cast<int>(count));
        }
        count = 1;
        level = n;
        multiple = 1;
    }
}

struct Unpacker {
    int type;
    bool (*unpack)(GRD_report* grd);
};

constexpr Unpacker UNPACKERS[] = {
    {SIMPLE, unpack_simple},     {COMPLEX, unpack_complex},       {COMPLEX_DIFF, unpack_complex},
    {JPEG2000, unpack_jpeg2000}, {JPEG2000_OLD, unpack_jpeg2000}, {RUN_LENGTH, unpack_run_length},
};

}  // namespace

int GRIB_DRS(int grd_fd, GRD_report* /*grd*/) {
    GribState& state = grib_state();
    state.packing = GribPacking{};
    if (!grib_read_section_body(grd_fd)) return 0;
    const Octets section(state.section.data(), state.section.size(), 6);
    GribPacking& packing = state.packing;
    packing.points = section.u32(6);
    packing.type = section.u16(10);
    switch (packing.type) {
        case SIMPLE:
            MESS_print(MESS_DEBUG, "Grid point - simple packing\n");
            decode_scale(section);
            packing.num_bits = section.u8(20);
            break;
        case COMPLEX:
        case COMPLEX_DIFF:
            MESS_print(MESS_DEBUG, packing.type == COMPLEX ? "Grid point - complex packing\n"
                                                           : "Grid point - complex packing and spatial differencing\n");
            decode_scale(section);
            decode_complex(section);
            break;
        case JPEG2000:
        case JPEG2000_OLD:
            MESS_print(MESS_DEBUG, "JPEG2000 data compression\n");
            decode_scale(section);
            packing.num_bits = section.u8(20);
            break;
        case RUN_LENGTH:
            decode_run_length(section);
            break;
        default:
            break;
    }
    return 1;
}

int GRIB_BMS(int grd_fd) {
    std::FILE* stream = grib_stream(grd_fd);
    if (!stream) return 0;
    GribState& state = grib_state();
    GribBitmap& map = state.bitmap;
    const int indicator = std::getc(stream);
    const int length = static_cast<int>(std::min(state.slen - 6, 0x7FFFFFFFL));
    if (indicator == 254) {
        if (map.pending >= 0) {  // passed over when the headers were read
            const bool whole =
                std::fseek(stream, map.pending, SEEK_SET) == 0 && grib_read_bytes(stream, map.pending_size, map.bytes);
            map.pending = -1;
            map.present = whole;
        }
        MESS_print(MESS_DEBUG, "BMS reuse: %d %d %d\n", indicator, length, static_cast<int>(map.bytes.size()));
        return map.present ? 1 : 0;
    }
    map = GribBitmap{};
    if (indicator == 255 || indicator == EOF || length <= 0) return 0;
    map.present = grib_read_bytes(stream, static_cast<std::size_t>(length), map.bytes);
    MESS_print(MESS_DEBUG, "BMS: %d %d %d\n", indicator, length, static_cast<int>(map.bytes.size()));
    return map.present ? 1 : 0;
}

int GRIB_DS(int grd_fd, GRD_report* grd) {
    std::FILE* stream = grib_stream(grd_fd);
    if (!stream || !grd) return 0;
    GribState& state = grib_state();
    grd->domain = state.dv;
    state.bitmap.offset = 0;
    const int type = state.packing.type;
    for (const Unpacker& unpacker : UNPACKERS) {
        if (unpacker.type != type) continue;
        grd->grid.reset();
        if (grd->domain.proj == MISS) {
            MESS_print(MESS_WARN, "GRIB_DS: grid of this field is not decoded\n");
            return 1;
        }
        // A message that was cut short doesn't reach into the next one.
        const long told = state.slen - 5;
        const long held = std::clamp(state.message_end - std::ftell(stream), 0L, told);
        const bool whole = grib_read_bytes(stream, static_cast<std::size_t>(held), state.packed) && held == told;
        state.bits = BitReader(state.packed.data(), state.packed.size());
        const bool good = unpacker.unpack(grd);
        state.packed = {};
        return good && (whole || data_too_short()) ? 1 : 0;
    }
    MESS_print(MESS_WARN, "GRIB_DS: packing of this field is not decoded: %d\n", type);
    return 1;
}

}  // namespace zav
