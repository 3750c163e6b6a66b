// Grid functions of arithmetic, point by point.

#include <algorithm>
#include <cmath>

#include "calc/grd_families.h"
#include "calc/grd_points.h"

namespace zav {
namespace {

constexpr double DEGREE = 3.14159265358979323846 / 180.0;

template <class Value>
int of_one(Math_frame& frame, const Value& value) {
    if (!GRD_begin(frame, 1)) return 0;
    math_points<1>(frame, 0, value);
    return 1;
}

template <class Value>
int of_two(Math_frame& frame, const Value& value) {
    if (!GRD_begin(frame, 2)) return 0;
    math_points<1, 2>(frame, 0, value);
    return 1;
}

/// Calls `take(at, from, count)` for all arguments of each run of points, `from` being the values of `count` points
/// from `at` on, then `finish(at, count)`.
template <class Take, class Finish>
void for_runs(Math_frame& frame, const Take& take, const Finish& finish) {
    for (std::size_t at = 0; at < frame.points(); at += POINTS_AT_ONCE) {
        const std::size_t count = std::min(POINTS_AT_ONCE, frame.points() - at);
        for (int number = 1; number <= frame.num; number++) {
            const Math_argument argument(frame, number);
            take(at, argument.from(at), count);
        }
        finish(at, count);
    }
}

/// Takes argument after argument into the result, which starts as `start` everywhere.
template <class Take>
int take_all(Math_frame& frame, float start, const Take& take) {
    if (!GRD_begin(frame, frame.num)) return 0;
    float* result = frame.ptr[0];
    std::fill_n(result, frame.points(), start);
    for_runs(
        frame,
        [&](std::size_t at, const float* from, std::size_t count) {
            for (std::size_t i = 0; i < count; i++) result[at + i] = take(result[at + i], from[i]);
        },
        [](std::size_t, std::size_t) {});
    return 1;
}

}  // namespace

int math_plot(Math_frame&) { return 1; }

int math_copy(Math_frame& frame) {
    return of_one(frame, [](float a) { return a; });
}

int math_max(Math_frame& frame) {
    return take_all(frame, FMISS,
                    [](float most, float a) { return a != FMISS && (most == FMISS || a > most) ? a : most; });
}

int math_min(Math_frame& frame) {
    return take_all(frame, FMISS,
                    [](float least, float a) { return a != FMISS && (least == FMISS || a < least) ? a : least; });
}

int math_add(Math_frame& frame) {
    return of_two(frame, [](float a, float b) { return a + b; });
}

int math_sum(Math_frame& frame) {
    return take_all(frame, 0.0F, [](float sum, float a) { return a != FMISS ? sum + a : sum; });
}

int math_avg(Math_frame& frame) {
    if (!GRD_begin(frame, frame.num)) return 0;
    float* result = frame.ptr[0];
    std::fill_n(result, frame.points(), 0.0F);
    std::array<int, POINTS_AT_ONCE> present{};
    const auto num = static_cast<float>(frame.num);
    for_runs(
        frame,
        [&](std::size_t at, const float* from, std::size_t count) {
            for (std::size_t i = 0; i < count; i++) {
                const bool there = from[i] != FMISS;
                result[at + i] = there ? result[at + i] + from[i] : result[at + i];
                present[i] += there ? 1 : 0;
            }
        },
        [&](std::size_t at, std::size_t count) {
            for (std::size_t i = 0; i < count; i++) {
                const float sum = result[at + i];
                result[at + i] = present[i] == frame.num && sum != FMISS ? sum / num : FMISS;
            }
            present.fill(0);
        });
    return 1;
}

int math_interp(Math_frame& frame) {
    if (!GRD_begin(frame, 3)) return 0;
    math_points<1, 2, 3>(frame, 0, [](float a, float f, float b) { return (b - a) * f + a; });
    return 1;
}

int math_sub(Math_frame& frame) {
    return of_two(frame, [](float a, float b) { return a - b; });
}

int math_mul(Math_frame& frame) {
    return of_two(frame, [](float a, float b) { return a * b; });
}

int math_mod(Math_frame& frame) {
    return of_two(frame, [](float a, float b) { return std::fmod(a, b); });
}

int math_sqrt(Math_frame& frame) {
    return of_one(frame, [](float a) { return std::sqrt(a); });
}

int math_exp(Math_frame& frame) {
    return of_one(frame, [](float a) { return std::exp(a); });
}

int math_log(Math_frame& frame) {
    return of_one(frame, [](float a) { return std::log(a); });
}

int math_log10(Math_frame& frame) {
    return of_one(frame, [](float a) { return std::log10(a); });
}

int math_abs(Math_frame& frame) {
    return of_one(frame, [](float a) { return std::fabs(a); });
}

int math_pow(Math_frame& frame) {
    return of_two(frame, [](float a, float b) { return std::pow(a, b); });
}

int math_div(Math_frame& frame) {
    return of_two(frame, [](float a, float b) { return a / b; });
}

// Angles are worked out in double precision, so that those of the quarters come out even.

int math_sin(Math_frame& frame) {
    return of_one(frame, [](float a) { return std::sin(a * DEGREE); });
}

int math_cos(Math_frame& frame) {
    return of_one(frame, [](float a) { return std::cos(a * DEGREE); });
}

int math_tan(Math_frame& frame) {
    return of_one(frame, [](float a) { return std::tan(a * DEGREE); });
}

int math_asin(Math_frame& frame) {
    return of_one(frame, [](float a) { return std::asin(static_cast<double>(a)) / DEGREE; });
}

int math_acos(Math_frame& frame) {
    return of_one(frame, [](float a) { return std::acos(static_cast<double>(a)) / DEGREE; });
}

int math_atan(Math_frame& frame) {
    return of_one(frame, [](float a) { return std::atan(static_cast<double>(a)) / DEGREE; });
}

int math_atan2(Math_frame& frame) {
    return of_two(frame, [](float a, float b) { return std::atan2(static_cast<double>(a), b) / DEGREE; });
}

int math_vdiff(Math_frame& frame) {
    if (!GRD_begin(frame, 4)) return 0;
    math_points<1, 2, 3, 4>(frame, 0, [](float ua, float, float ub, float) { return ua - ub; });
    math_points<1, 2, 3, 4>(frame, 1, [](float, float va, float, float vb) { return va - vb; });
    GRD_label(frame, frame.argument(1));
    return 1;
}

int math_dot(Math_frame& frame) {
    if (!GRD_begin(frame, 4)) return 0;
    math_points<1, 2, 3, 4>(frame, 0, [](float ua, float va, float ub, float vb) { return ua * ub + va * vb; });
    return 1;
}

int math_cross(Math_frame& frame) {
    if (!GRD_begin(frame, 4)) return 0;
    math_points<1, 2, 3, 4>(frame, 0, [](float ua, float va, float ub, float vb) { return ua * vb - va * ub; });
    return 1;
}

}  // namespace zav
