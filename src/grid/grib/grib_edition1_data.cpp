#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

#include "frame/mess.h"
#include "frame/zav.h"
#include "grid/grd_tool.h"
#include "grid/grib/grib.h"
#include "grid/grib/grib_state.h"
#include "grid/zavgrd.h"

namespace zav {
namespace {

constexpr std::size_t MAP_HEAD = 6;    ///< octets of the bit map block before the map
constexpr std::size_t DATA_HEAD = 11;  ///< octets of the data block before the values
constexpr unsigned MAX_BITS = 32;
/// Flags of WMO code table 11 that stand for something else than simple packing of grid points: spherical harmonics
/// (8), second-order packing (4), more flags in octet 14 (1). Values that were integers (2) are packed like others.
constexpr int OTHER_PACKINGS = 8 | 4 | 1;

/// Reads the values of a data block in the message's order, with the plausibility test and the bit map.
class Values {
  public:
    explicit Values(int grd_fd) : grd_fd_(grd_fd), state_(grib_state()) {}

    void start_row() { grib_start_row(state_.test); }

    /// The next value, FMISS where the bit map has none.
    float next() {
        if (!GRIB_BMB_read()) return FMISS;
        const std::int64_t n = GRIB_bit_read(grd_fd_);
        if (n < 0) ended_ = true;
        if (n < 0 || state_.test.bad == 1) return FMISS;
        return grib_value(state_, static_cast<float>(n));
    }

    /// True once the file held fewer values than the grid needs.
    bool ended() const { return ended_; }

  private:
    int grd_fd_;
    GribState& state_;
    bool ended_ = false;
};

float* grid_row(GRD_report* grd, int row) {
    const int place = grib_state().ydir >= 1 ? grd->domain.ny - 1 - row : row;
    return grd->grid.get() + static_cast<std::size_t>(place) * static_cast<std::size_t>(grd->domain.nx);
}

/// Grid 50: a trapezoid inside its frame, its southern row first. The missing corners aren't in the message.
void fill_trapezoid(GRD_report* grd, Values& values) {
    const int nx = grd->domain.nx;
    for (int row = grd->domain.ny - 1; row >= 0; --row) {
        values.start_row();
        const int corner = row > 0 ? (row - 1) / 4 : 0;
        float* out = grd->grid.get() + static_cast<std::size_t>(row) * static_cast<std::size_t>(nx);
        for (int x = corner; x < nx - corner; ++x) out[x] = values.next();
    }
}

void fill_thin(GRD_report* grd, Values& values) {
    const std::vector<int>& rows = grib_state().rows;
    for (int row = 0; row < grd->domain.ny; ++row) {
        values.start_row();
        const int n = rows[static_cast<std::size_t>(row)];
        std::vector<float> line(static_cast<std::size_t>(n));
        for (int i = 0; i < n && !values.ended(); ++i) {
            if (i == 2) values.start_row();
            line[static_cast<std::size_t>(i)] = values.next();
        }
        if (values.ended()) return;
        grib_stretch_rows({n}, line, grd->domain.nx, grib_goes_round(grd->domain), grid_row(grd, row));
    }
}

bool at_pole(float lat) { return lat == 90.0F || lat == -90.0F; }

void fill_regular(GRD_report* grd, Values& values) {
    GribState& state = grib_state();
    const int nx = grd->domain.nx;
    const int ny = grd->domain.ny;
    const float step = static_cast<float>(state.ydir) * grd->domain.dy;
    const bool closed = grd->type == 25 || grd->type == 26;
    auto fill_pole = [&](int row) {
        values.start_row();
        std::fill_n(grid_row(grd, row), nx, values.next());
    };
    int row = 0;
    if (state.pole && at_pole(state.lat)) {
        fill_pole(row++);
        state.lat += step;
    }
    for (; row < ny && !(state.pole && at_pole(state.lat)); ++row) {
        values.start_row();
        float* out = grid_row(grd, row);
        const int count = closed ? nx - 1 : nx;
        for (int x = 0; x < count; ++x) out[x] = values.next();
        if (closed) out[nx - 1] = out[0];
        state.lat += step;
        if (values.ended()) return;
    }
    if (row < ny && state.pole) fill_pole(row);
}

bool is_trapezoid(const GRD_report* grd) { return grd->type == 50 && grd->domain.nx == 36 && grd->domain.ny == 33; }

/// True for layouts whose message holds fewer values than the grid has points.
bool leaves_points_out(const GRD_report* grd) {
    return is_trapezoid(grd) || grib_state().pole || grd->type == 25 || grd->type == 26;
}

/// Values that the bit map leaves of the grid's points, as far as the layout needs them.
std::size_t values_needed(const GRD_report* grd) {
    const GribState& state = grib_state();
    std::size_t points = GRD_points(grd);
    if (state.thin) points = std::accumulate(state.rows.begin(), state.rows.end(), std::size_t{0});
    return state.bitmap.present ? grib_marked_points(points) : points;
}

/// Takes scale, reference and width from the head of the data block.
void decode_scale(const std::vector<unsigned char>& head, const GRD_report* grd) {
    GribState& state = grib_state();
    state.sfac = GRIB_scl_conv(head.data() + 4);
    state.ref = GRIB_flt_conv(head.data() + 6);
    state.bpval = head[10];
    GribBadTest& test = state.test;
    const bool first = test.bad == -9 && (grd->ltype == 6 || grd->ltype == 7 || grd->ltype >= 90);
    const int power = std::min(static_cast<int>(state.bpval), 62) - (first ? 0 : 1);
    test.limit = power >= 0 ? std::int64_t{1} << power : 0;
    test.bad = 0;
    test.prev = -1;
    grib_start_row(test);
    MESS_print(MESS_DEBUG, "Decimal Scale factor: %f\n", static_cast<double>(state.dscale));
    MESS_print(MESS_DEBUG, "Scale factor: %f\n", static_cast<double>(state.sfac));
    MESS_print(MESS_DEBUG, "Reference value: %f\n", static_cast<double>(state.ref));
    MESS_print(MESS_DEBUG, "Bits per value: %d\n", static_cast<int>(state.bpval));
    MESS_print(MESS_DEBUG, "Bad limit value: %d\n", static_cast<int>(test.limit));
}

/// Bytes up to the end of the message, so that one that was cut short doesn't reach into the next one. The end of an
/// edition 0 message isn't told, only guessed.
std::size_t room_in_message(std::FILE* stream) {
    const GribState& state = grib_state();
    if (state.version == 0) return std::numeric_limits<std::size_t>::max();
    return static_cast<std::size_t>(std::max(state.message_end - std::ftell(stream), 0L));
}

/// Tells that the message holds too few values. -1 at the end of the file, else 0.
int too_short(std::FILE* stream) {
    MESS_print(MESS_WARN, "GRIB_BDB: data section too short for its grid\n");
    return std::getc(stream) == EOF ? -1 : 0;
}

}  // namespace

int GRIB_BMB(int grd_fd, GRD_report* /*grd*/) {
    std::FILE* stream = grib_stream(grd_fd);
    if (!stream) return -1;
    GribBitmap& map = grib_state().bitmap;
    map = GribBitmap{};
    if (!(grib_product().u8(8) & 0x40)) return 1;
    std::vector<unsigned char> head;
    if (!grib_read_bytes(stream, MAP_HEAD, head)) return -1;
    const std::size_t length = static_cast<std::size_t>(Octets(head.data(), head.size(), 1).u24(1));
    if (length <= MAP_HEAD) return 1;  // a predefined bit map, which the message doesn't hold
    if (!grib_read_bytes(stream, length - MAP_HEAD, map.bytes)) return -1;
    map.present = true;
    return 1;
}

int GRIB_BDB(int grd_fd, GRD_report* grd) {
    std::FILE* stream = grib_stream(grd_fd);
    if (!stream || !grd) return -1;
    GribState& state = grib_state();
    state.bitmap.offset = 0;
    if (grd->domain.proj == MISS || grd->domain.nx < 1 || grd->domain.ny < 1) {
        MESS_print(MESS_WARN, "GRIB_BDB: grid of this field is not decoded\n");
        return 0;
    }
    std::vector<unsigned char> head;
    if (!grib_read_bytes(stream, DATA_HEAD, head)) return too_short(stream);
    const int flags = head[3] >> 4;
    if (flags & OTHER_PACKINGS) {
        MESS_print(MESS_WARN, "GRIB_BDB: packing of this field is not decoded: %d\n", flags);
        return 1;
    }
    decode_scale(head, grd);
    if (state.bpval > MAX_BITS) return too_short(stream);
    const std::size_t size = (values_needed(grd) * state.bpval + 7) / 8;
    const std::size_t room = room_in_message(stream);
    // The layouts that leave points out are small, and their end shows while they are filled.
    const bool whole = grib_read_bytes(stream, std::min(size, room), state.packed) && size <= room;
    if (!whole && !leaves_points_out(grd)) return too_short(stream);
    state.bits = BitReader(state.packed.data(), state.packed.size());
    if (GRD_alloc(grd) < 1) return 0;
    Values values(grd_fd);
    if (is_trapezoid(grd)) {
        fill_trapezoid(grd, values);
    } else if (state.thin) {
        fill_thin(grd, values);
    } else {
        fill_regular(grd, values);
    }
    state.bitmap = GribBitmap{};
    state.packed = {};
    state.rows.clear();
    return values.ended() ? too_short(stream) : 1;
}

}  // namespace zav
