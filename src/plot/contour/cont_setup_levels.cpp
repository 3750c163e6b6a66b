// Interval and levels of a contour plot from the range of its data.

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "calc/grd_trans.h"
#include "frame/resrc.h"
#include "plot/contour/cont_state.h"
#include "plot/page/plt_tool.h"

namespace zav {

namespace {

/// Values from `least` up are rounded up at this step, as a multiple (`up`) or as a fraction of 1 (`down`).
struct Rounding {
    float least;
    float up;
    float down;
};
constexpr std::array<Rounding, 8> ROUNDINGS = {{
    {1000.0F, 1000.0F, 1.0F},
    {100.0F, 100.0F, 1.0F},
    {10.0F, 10.0F, 1.0F},
    {1.0F, 1.0F, 1.0F},
    {0.1F, 1.0F, 10.0F},
    {0.01F, 1.0F, 100.0F},
    {0.001F, 1.0F, 1000.0F},
    {0.0001F, 1.0F, 10000.0F},
}};

/// Number of whole intervals between the first level and the last; INT_MAX stands for all beyond it.
int count_levels() {
    const double range = static_cast<double>(cont.conhi) - static_cast<double>(cont.conlo);
    const double intrvl = cont.intrvl;
    // Levels of a field in small units lie closer than the slack of the others.
    const double slack = PLT_letter() ? 0.01 : std::min(0.01, 0.5 * intrvl);
    const double count = (slack + range) / intrvl;
    if (std::isnan(count)) return 0;
    return static_cast<int>(std::clamp<double>(count, -1, std::numeric_limits<int>::max()));
}

/// A small value rounded up at its first digit.
float leading_digit(float value) {
    constexpr double TOLERANCE = 1e-4;
    const double step = std::pow(10.0, std::floor(std::log10(std::fabs(double{value}))));
    const double rounded = std::ceil(value / step - TOLERANCE) * step;
    return std::isfinite(rounded) ? static_cast<float>(rounded) : value;
}

/// Interval given by the user, by the resource, or by the rule. False when no range is known.
bool settle_interval(GRD_report* grid) {
    if (grid != nullptr && cont.grid_max == FMISS) GRD_maxmin(grid, &cont.grid_max, &cont.grid_min);
    if (cont.grid_max == FMISS) return false;
    if (cont.intrvl == FMISS) {
        RES_getval("con_interval", &cont.intrvl, CV_float);
        if (cont.intrvl == FMISS && cont.cont_type != CONT_VALUE) cont.intrvl = 0.0F;
    }
    // Neither a level nor a band comes of an interval that is no number.
    if (!std::isfinite(cont.intrvl)) cont.intrvl = 0.0F;
    if (cont.intrvl <= 0.0F && cont.intrvl != FMISS) {
        cont.num_cont = std::max(cont.color_num - 1, 0);
        cont.intrvl = CONT_calc_intrvl(cont.grid_max, cont.grid_min, cont.num_cont);
    }
    return true;
}

}  // namespace

float CONT_calc_intrvl(float max, float min, int num) {
    const float value = (max - min) / static_cast<float>(num != 0 ? num : 1);
    for (const Rounding& step : ROUNDINGS) {
        if (!(value >= step.least)) continue;
        const float scaled = value * step.down / step.up;
        return static_cast<float>(step.up * std::ceil(static_cast<double>(scaled)) / step.down);
    }
    if (value == 0.0F) return 1.0F;
    return PLT_letter() ? value : leading_digit(value);
}

void cont_set_levels(float max, float min) {
    if (max >= min) {
        const float base = cont.base != FMISS ? cont.base : 0.0F;
        const float intrvl = cont.intrvl;
        const auto multiple = [base, intrvl](float steps) {
            return static_cast<float>(base + intrvl * std::floor(static_cast<double>(steps)));
        };
        cont.conlo = multiple((min - base) / intrvl);
        cont.conhi = multiple(1.0F + (max - base) / intrvl);
        if (max - base == cont.conhi) cont.conhi += intrvl;
    } else {
        cont.conlo = max;
        cont.conhi = min;
    }
    cont.num_cont = count_levels();
}

int CONT_set_cont_ext(GRD_report* grid) {
    if (cont_has_values()) {
        cont.conlo = cont.cont_value[0];
    } else {
        if (!settle_interval(grid)) return -1;
        cont_set_levels(cont.grid_max, cont.grid_min);
    }
    cont.cbase = cont.base == FMISS ? cont.conlo : cont.base;
    cont_spread_palette();
    return 0;
}

}  // namespace zav
