#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

#include "frame/mess.h"
#include "frame/zav.h"
#include "grid/grib/grib.h"
#include "grid/grib/grib_state.h"

namespace zav {

GribState& grib_state() {
    static GribState state;
    return state;
}

float GRIB_flt_conv(const unsigned char* pc) {
    if (pc[0] == 0) return 0.0F;
    const int mantissa = pc[1] << 16 | pc[2] << 8 | pc[3];
    const int exponent = (pc[0] & 0x7F) - 64;
    const double value = std::ldexp(static_cast<double>(mantissa), 4 * exponent - 24);
    return static_cast<float>(pc[0] & 0x80 ? -value : value);
}

float GRIB_scl_conv(const unsigned char* pc) {
    const int power = (pc[0] & 0x7F) << 8 | pc[1];
    return static_cast<float>(std::ldexp(1.0, pc[0] & 0x80 ? -power : power));
}

float GRIB_ieee_float_conv(const unsigned char* pc) {
    if (pc[0] == 0) return 0.0F;
    const int exponent = ((pc[0] & 0x7F) << 1 | pc[1] >> 7) - 127;
    const int fraction = (pc[1] & 0x7F) << 16 | pc[2] << 8 | pc[3];
    const double value = std::ldexp(1.0 + fraction / 8388608.0, exponent);
    return static_cast<float>(pc[0] & 0x80 ? -value : value);
}

int grib_to_int(double value) {
    if (std::isnan(value)) return MISS;
    if (value >= std::numeric_limits<int>::max()) return std::numeric_limits<int>::max();
    if (value <= std::numeric_limits<int>::min()) return std::numeric_limits<int>::min();
    return static_cast<int>(value);
}

float grib_decimal(int scale) { return static_cast<float>(std::pow(10.0, -scale)); }

void GRIB_set_max_bad(int val) { grib_state().test.max = val; }

void grib_start_row(GribBadTest& test) {
    test.count = 0;
    test.valid.fill(0);
}

namespace {

/// Marks a field as garbled when too many values of a row differ wildly from the one before.
void watch_value(GribBadTest& test, std::int64_t value) {
    int& jump = test.valid[static_cast<std::size_t>(test.count) % test.valid.size()];
    jump = 0;
    const std::int64_t step = value > test.prev ? value - test.prev : test.prev - value;
    if (test.count > 0 && test.prev >= 0 && step > test.limit) {
        jump = 1;
        int sum = 0;
        for (const int flag : test.valid) sum += flag;
        if (sum > test.max) {
            test.bad = 1;
            MESS_print(MESS_DEBUG, "BAD: %6d %6d %6d %2d %2d\n", test.count, static_cast<int>(test.prev),
                       static_cast<int>(value), sum, test.max);
        }
    }
    test.prev = value;
    ++test.count;
}

}  // namespace

std::int64_t GRIB_bit_read(int /*grd_fd*/) {
    GribState& state = grib_state();
    const std::int64_t value = state.bits.read(state.bpval);
    if (value >= 0 && state.test.max >= 1) watch_value(state.test, value);
    return value;
}

int GRIB_BMB_read() {
    GribBitmap& map = grib_state().bitmap;
    if (!map.present) return 1;
    const std::uint64_t bit = map.offset++;
    const std::size_t byte = static_cast<std::size_t>(bit >> 3);
    if (byte >= map.bytes.size()) return 0;
    return map.bytes[byte] >> (7 - (bit & 7)) & 1;
}

std::size_t grib_marked_points(std::size_t points) {
    const std::vector<unsigned char>& bytes = grib_state().bitmap.bytes;
    const std::size_t whole = std::min(points / 8, bytes.size());
    std::size_t marked = 0;
    for (std::size_t i = 0; i < whole; ++i) marked += static_cast<std::size_t>(std::popcount(bytes[i]));
    const unsigned rest = points % 8;
    if (whole < bytes.size())
        marked += static_cast<std::size_t>(std::popcount(static_cast<unsigned>(bytes[whole]) >> (8U - rest)));
    return marked;
}

void grib_stretch_rows(const std::vector<int>& rows, const std::vector<float>& values, int nx, bool round, float* out) {
    std::size_t start = 0;
    for (const int n : rows) {
        auto value = [&](int i) {
            const std::size_t at = start + static_cast<std::size_t>(round && i == n ? 0 : i);
            return n > 0 && at < values.size() ? values[at] : FMISS;
        };
        const int last = round ? n : n - 1;
        const int columns = round ? nx : nx - 1;
        const float step = columns > 0 ? static_cast<float>(last) / static_cast<float>(columns) : 0.0F;
        float f = 0.0F;
        float a = value(0);
        float b = last > 0 ? value(1) : a;
        int k = 2;
        for (int x = 0; x < nx; ++x) {
            if (f >= 1.0F && k <= last) {
                a = b;
                b = value(k++);
                f -= 1.0F;
            }
            *out++ = a == FMISS || b == FMISS ? FMISS : f * b + (1.0F - f) * a;
            f += step;
        }
        start += static_cast<std::size_t>(n > 0 ? n : 0);
    }
}

}  // namespace zav
