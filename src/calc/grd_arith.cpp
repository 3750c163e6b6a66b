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

/// A value for each of the points that are worked on at once.
using Run = std::array<float, POINTS_AT_ONCE>;

/// Takes all arguments of a run of points into what starts as `start`, by `take(value, argument)`.
template <class Take>
void take_run(const Math_frame& frame, std::size_t at, std::size_t count, Run& run, float start, const Take& take) {
    run.fill(start);
    for (int number = 1; number <= frame.num; number++) {
        const Math_argument argument(frame, number);
        const float* from = argument.from(at);
        for (std::size_t i = 0; i < count; i++) run[i] = take(run[i], from[i]);
    }
}

/// Calls `work(at, count)` for all runs of points.
template <class Work>
void for_runs(const Math_frame& frame, const Work& work) {
    for (std::size_t at = 0; at < frame.points(); at += POINTS_AT_ONCE)
        work(at, std::min(POINTS_AT_ONCE, frame.points() - at));
}

/// A function of any number of arguments.
template <class Take>
int take_all(Math_frame& frame, float start, const Take& take) {
    if (!GRD_begin(frame, frame.num)) return 0;
    Run run;
    for_runs(frame, [&](std::size_t at, std::size_t count) {
        take_run(frame, at, count, run, start, take);
        std::copy_n(run.begin(), count, frame.ptr[0] + at);
    });
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
    const auto num = static_cast<float>(frame.num);
    Run sum;
    std::array<int, POINTS_AT_ONCE> missing;
    for_runs(frame, [&](std::size_t at, std::size_t count) {
        sum.fill(0.0F);
        missing.fill(0);
        for (int number = 1; number <= frame.num; number++) {
            const Math_argument argument(frame, number);
            const float* from = argument.from(at);
            for (std::size_t i = 0; i < count; i++) {
                sum[i] += from[i];
                missing[i] |= static_cast<int>(from[i] == FMISS);
            }
        }
        float* result = frame.ptr[0] + at;
        for (std::size_t i = 0; i < count; i++) {
            const float mean = sum[i] / num;
            result[i] = (missing[i] != 0) | (sum[i] == FMISS) ? FMISS : mean;
        }
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
