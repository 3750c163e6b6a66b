// Interval and levels of a contour plot from the range of its data.

#include <algorithm>
#include <array>
#include <cmath>

#include "calc/grd_trans.h"
#include "frame/resrc.h"
#include "plot/cont_state.h"

namespace zav {

namespace {

/// Most levels that an interval may divide a field into. More can't be told apart on any page, and an interval so
/// small that adding it to a level changes nothing would never get through the range.
constexpr int MOST_LEVELS = 100000;

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

/// Number of whole intervals between the first level and the last.
int count_levels() {
    const double count = (0.01 + static_cast<double>(cont.conhi - cont.conlo)) / static_cast<double>(cont.intrvl);
    if (!(count < MOST_LEVELS)) return std::isnan(count) ? 0 : MOST_LEVELS;
    return std::max(static_cast<int>(count), -1);
}

/// First level at or below the least value, last one above the greatest, in whole intervals from the base.
void set_level_range() {
    if (!(cont.grid_max >= cont.grid_min)) {
        cont.conlo = cont.grid_max;
        cont.conhi = cont.grid_min;
        return;
    }
    const float base = cont.base != FMISS ? cont.base : 0.0F;
    const float intrvl = cont.intrvl;
    cont.conlo = static_cast<float>(base + intrvl * std::floor(static_cast<double>((cont.grid_min - base) / intrvl)));
    cont.conhi =
        static_cast<float>(base + intrvl * std::floor(1.0 + static_cast<double>((cont.grid_max - base) / intrvl)));
    if (cont.grid_max - base == cont.conhi) cont.conhi += intrvl;
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
    return value == 0.0F ? 1.0F : value;
}

int CONT_set_cont_ext(GRD_report* grid) {
    if (cont_has_values()) {
        cont.conlo = cont.cont_value[0];
    } else {
        if (!settle_interval(grid)) return -1;
        set_level_range();
        cont.num_cont = count_levels();
    }
    cont.cbase = cont.base == FMISS ? cont.conlo : cont.base;
    return 0;
}

}  // namespace zav
