/// State of the contour layer, and what all its units do with it.

#include "plot/contour/cont_state.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace zav {

Cont_state cont;

namespace {

bool is_last_value(int k) { return k + 1 >= cont.num_cont || k + 1 >= CONT_LEVELS || cont.cont_value[k + 1] == FMISS; }

std::size_t stored_index(const GRD_report& grid, int i, int j) {
    const auto row = static_cast<std::size_t>(grid.domain.ny - 1 - j);
    return row * static_cast<std::size_t>(grid.domain.nx) + static_cast<std::size_t>(i);
}

}  // namespace

bool cont_has_values() { return cont.cont_value[0] != FMISS; }

bool cont_is_filled() { return cont.cont_type == CONT_FILL || cont.cont_type == CONT_FILL_LINE; }

int cont_wrap_band(double band) {
    if (cont.color_num < 1 || !std::isfinite(band)) return 0;
    const int count = std::min(cont.color_num, CONT_BANDS);
    const int rest = static_cast<int>(std::fmod(band, count));
    return rest < 0 ? rest + count : rest;
}

int cont_band_of(float level) {
    const float steps = (level - cont.cbase) / cont.intrvl;
    return cont_wrap_band(std::floor(0.01 + steps));
}

void cont_step_level(int k, float* level) {
    if (cont_has_values() && k < CONT_LEVELS && cont.cont_value[k] != FMISS) {
        *level = cont.cont_value[k];
        cont.intrvl = is_last_value(k) ? CONT_LAST_INTERVAL : cont.cont_value[k + 1] - cont.cont_value[k];
    } else if (k > 0) {
        *level += cont.intrvl;
    }
}

double Cont_ladder::below(float value) const {
    const double number = std::floor((value - origin) / step) - 1.0;
    if (number <= first || stride == 1.0) return std::max(first, number);
    const double beside = std::fmod(number, stride) - std::fmod(first, stride);
    return std::max(first, number - (beside < 0.0 ? beside + stride : beside));
}

double Cont_ladder::next(double number) const {
    const double higher = number + stride;
    return level(higher) > level(number) ? higher : std::numeric_limits<double>::infinity();
}

Cont_ladder cont_ladder() {
    Cont_ladder ladder;
    ladder.step = cont.intrvl;
    if (!(ladder.step > 0.0) || !std::isfinite(ladder.step) || cont.num_cont < 1) return ladder;
    // Levels that are multiples from the base are counted from there: `conlo` may be too far off to count from.
    const double base = cont.base == FMISS ? 0.0 : cont.base;
    const double number = std::nearbyint((cont.conlo - base) / ladder.step);
    const bool from_base = static_cast<float>(base + number * ladder.step) == cont.conlo;
    ladder.origin = from_base ? base : cont.conlo;
    ladder.first = from_base ? number : 0.0;
    const bool countless = cont.num_cont == std::numeric_limits<int>::max();
    ladder.last = countless ? std::numeric_limits<double>::max() : ladder.first + cont.num_cont - 1.0;
    return ladder;
}

bool cont_is_missing(float value) { return value == FMISS || !std::isfinite(value); }

bool cont_may_be_flat(float level) { return level == 0.0F || level <= cont.grid_min; }

bool cont_is_cut(float level) {
    if (cont.min_cut != FMISS && level < cont.min_cut) return true;
    return cont.max_cut != FMISS && level > cont.max_cut;
}

Gpt cont_corner(int corner) { return {cont.x[corner], cont.y[corner]}; }

Gpt cont_point(Cont_place place) {
    switch (place.kind) {
        case Cont_place::UPPER:
            return cont.at[place.number];
        case Cont_place::LOWER:
            return cont.pt[LOWER + place.number];
        default:
            return cont_corner(place.number);
    }
}

Gpt cont_side_point(int side, float d) {
    const auto [a, b] = CONT_SIDES[side];
    Gpt pt;
    int_xy(&pt, cont.x[a], cont.y[a], cont.x[b], cont.y[b], d);
    return pt;
}

bool cont_position(const GRD_report& grid, int i, int j, Gpt* pt) {
    const std::size_t index = stored_index(grid, i, j);
    if (cont.grdx.empty()) {
        *pt = {static_cast<float>(i), static_cast<float>(j)};
        return true;
    }
    if (index >= cont.grdx.size() || index >= cont.grdy.size()) return false;
    *pt = {cont.grdx[index], cont.grdy[index]};
    return pt->x != FMISS;
}

float cont_value_at(const GRD_report& grid, int i, int j) { return grid.grid[stored_index(grid, i, j)]; }

int cont_wrapped_map() { return cont.placed ? MISS : MAP_get_proj(); }

void cont_load_cell(const GRD_report& grid, int i, int j) {
    for (int corner = 0; corner < 4; ++corner) {
        const int column = i + corner % 2;
        const int row = j + corner / 2;
        Gpt pt;
        const bool placed = cont_position(grid, column, row, &pt);
        cont.x[corner] = placed ? pt.x : FMISS;
        cont.y[corner] = pt.y;
        cont.z[corner] = cont_value_at(grid, column, row);
    }
}

bool cont_cell_complete() {
    for (int corner = 0; corner < 4; ++corner) {
        if (cont.x[corner] == FMISS || cont_is_missing(cont.z[corner])) return false;
    }
    return true;
}

Cont_range cont_cell_range() {
    const auto [low, high] = std::minmax_element(cont.z.begin(), cont.z.end());
    return {*low, *high};
}

}  // namespace zav
