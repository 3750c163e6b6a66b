#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

#include "calc/grd_functions.h"

namespace zav {

/// Points that are worked on at once, so that a number stands beside a grid as a row of its own.
constexpr std::size_t POINTS_AT_ONCE = 512;

/// The values of one argument: those of its grid, or its number again and again.
class Math_argument {
  public:
    Math_argument(const Math_frame& frame, int number)
        : grid(frame.ptr[static_cast<std::size_t>(frame.place(number))]) {
        if (grid == nullptr) numbers.fill(frame.values[frame.place(number)]);
    }
    /// Up to POINTS_AT_ONCE values from point `start` on.
    const float* from(std::size_t start) const { return grid != nullptr ? grid + start : numbers.data(); }

  private:
    const float* grid;
    std::array<float, POINTS_AT_ONCE> numbers;
};

/// Gives result `result` (0 or 1) the value of `value` at each point where none of the arguments `Numbers` (from 1) is
/// missing, and FMISS elsewhere. One pass, without an allocation.
template <int... Numbers, class Value>
void math_points(Math_frame& frame, int result, const Value& value) {
    const std::array<Math_argument, sizeof...(Numbers)> arguments{Math_argument(frame, Numbers)...};
    float* to = frame.ptr[static_cast<std::size_t>(result)];
    const std::size_t points = frame.points();
    for (std::size_t start = 0; start < points; start += POINTS_AT_ONCE) {
        const std::size_t count = std::min(POINTS_AT_ONCE, points - start);
        [&]<std::size_t... I>(std::index_sequence<I...>) {
            const std::array<const float*, sizeof...(I)> from{arguments[I].from(start)...};
            // Worked out at missing points too, so that the compiler can take several points at once.
#pragma GCC ivdep
            for (std::size_t i = 0; i < count; i++) {
                const bool missing = ((from[I][i] == FMISS) | ...);
                const auto worked_out = static_cast<float>(value(from[I][i]...));
                to[start + i] = missing ? FMISS : worked_out;
            }
        }
        (std::make_index_sequence<sizeof...(Numbers)>{});
    }
}

}  // namespace zav
