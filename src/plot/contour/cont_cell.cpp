/// The walk through the levels of one cell.

#include "plot/contour/cont_cell.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <limits>

#include "gks/gks_colr.h"
#include "plot/contour/cont_join.h"

namespace zav {
namespace {

constexpr float ANY_NUMBER_OF_LINES = 10000.0F;
/// With a limit of fewer lines, cells that lie in one band may be left blank, too.
constexpr float SURELY_DRAWN = 2.0F;
constexpr float HIGHEST = std::numeric_limits<float>::max();

float most_lines() {
    const int fact = cont.max_line_fact;
    if (fact < 0) return -static_cast<float>(cont.color_num) * static_cast<float>(fact);
    return fact > 0 ? static_cast<float>(fact) : ANY_NUMBER_OF_LINES;
}

Cont_traced traced_cell() {
    Cont_traced cell;
    const char* place = std::getenv("gridloc");
    if (place != nullptr && std::sscanf(place, "%9d,%9d", &cell.column, &cell.row) < 1) cell = {};
    return cell;
}

/// The levels of the list as the steps of the level loop give them.
std::vector<float> listed_levels() {
    std::vector<float> levels;
    float level = cont.conlo;
    for (int k = 0; k < std::min(cont.num_cont, CONT_LEVELS); ++k) {
        cont_step_level(k, &level);
        levels.push_back(level);
    }
    return levels;
}

void trace_level(const Cont_scan& scan, const char* mark, float level) {
    if (!scan.traced.here) return;
    std::printf("%s: %f side: %.2f %.2f %.2f %.2f nside: %d cross: %d %d %d %d tside: %.2f\n", mark, level, cont.dz[2],
                cont.dz[3], cont.dz[0], cont.dz[1], cont.numsides, cont.cross[0], cont.cross[1], cont.cross[2],
                cont.cross[3], cont.total);
}

void evaluate(const Cont_scan& scan, const char* mark, float level, Cont_join::Level name) {
    if (cont.join != nullptr) cont.join->set_level(name);
    compute_dz(level);
    trace_level(scan, mark, level);
    compute_lines(level);
}

/// The crossings just found become those of the level below.
void pass_to_lower() {
    for (int side = 0; side < 4; ++side) {
        cont.cross[4 + side] = cont.cross[side];
        cont.pt[LOWER + side] = cont.at[side];
    }
    if (cont.join != nullptr) cont.join->pass_to_lower();
}

float top_of(float level) { return cont.cont_type == CONT_LINE ? level : level + cont.intrvl; }

/// Index of the band whose line attributes the level takes: in a combined plot that of the band above.
int line_entry() { return cont.cont_type == CONT_FILL_LINE ? cont_wrap_band(cont.con_off + 1.0) : cont.con_off; }

/// The attributes of the band of number `number` and of the line at its top.
void start_pass(double number, float nlevel) {
    if (cont.join != nullptr) return cont.join->start_pass(number, line_entry(), nlevel);
    if (cont_is_filled()) cont_set_fill_attributes();
    cont_set_line_attributes(line_entry(), nlevel);
}

/// One pass of the level loop, of the band from `clevel` up, `number` in their order. True when the cell is done.
bool draw_pass(const Cont_scan& scan, double number, float clevel, const Cont_range& range) {
    float level = clevel;
    float nlevel = top_of(clevel);
    if (range.low > nlevel) return false;
    if (cont.min_cut != FMISS && cont.min_cut > clevel) {
        if (nlevel < cont.min_cut) return false;
        level = cont.min_cut;
        evaluate(scan, "BB-val", level, Cont_join::CUT);
    }
    if (cont.max_cut != FMISS && nlevel > cont.max_cut) {
        if (cont.max_cut <= clevel) return false;
        nlevel = cont.max_cut;
    }
    pass_to_lower();
    start_pass(number, nlevel);
    if (cont_is_filled() && cont_fill_top(level, nlevel, range)) return true;
    evaluate(scan, "CC-val", nlevel, Cont_join::TOP);
    return false;
}

/// True if nothing of the band from `level` up is drawn, nor of any above it: a line beyond the cell's values, or one
/// beyond the upper cut.
bool is_past(float level, const Cont_range& range) {
    if (cont.cont_type == CONT_LINE && level > range.high) return true;
    return cont.max_cut != FMISS && level >= cont.max_cut && top_of(level) > cont.max_cut;
}

float just_below(float value) { return std::nextafter(value, -HIGHEST); }

/// Ends a run of cells in one band where the band below ends: a value there belongs to that one.
void end_run_above(float top) { cont.run.above = std::max(cont.run.above, top); }

/// The lowest band has the values at its lower end, too.
void open_run() {
    if (cont.run.above < cont.run.most) cont.run.above = just_below(cont.run.above);
}

/// The cells between two levels have no line.
void set_run(float lower, float upper) { cont.run = {lower, just_below(upper)}; }

/// Walks the list. The first level is evaluated before its pass; below it nothing is drawn.
void draw_listed_levels(const Cont_scan& scan, const Cont_range& range) {
    const bool in_part = scan.ascending && !scan.traced.here;
    std::size_t k = 0;
    if (in_part) {
        // From the band that holds the cell's lowest value, which may be the one that ends at it.
        const auto above = std::lower_bound(scan.listed.begin(), scan.listed.end(), range.low);
        k = static_cast<std::size_t>(std::max<std::ptrdiff_t>(above - scan.listed.begin() - 2, 0));
        if (cont.cont_type == CONT_LINE && (above == scan.listed.end() || *above > range.high)) {
            set_run(above == scan.listed.begin() ? -HIGHEST : above[-1], above == scan.listed.end() ? HIGHEST : *above);
        }
    }
    for (; k < scan.listed.size(); ++k) {
        float clevel = scan.listed[k];
        cont_step_level(static_cast<int>(k), &clevel);
        if (in_part && is_past(clevel, range)) return;
        if (scan.traced.here) std::printf("Loop %d\n", static_cast<int>(k));
        if (k == 0) evaluate(scan, "AA-val", clevel, Cont_join::FIRST);
        cont.con_off = cont_wrap_band(static_cast<double>(k));
        if (draw_pass(scan, static_cast<double>(k), clevel, range)) {
            if (k == 0) return open_run();
            return end_run_above(scan.listed[k - 1] + (scan.listed[k] - scan.listed[k - 1]));
        }
    }
}

/// True if the band from `level` up ends below all that the cell shows.
bool ends_below(float level, const Cont_range& range) {
    const float top = top_of(level);
    return range.low > top || (cont.min_cut != FMISS && top < cont.min_cut);
}

/// Number of the lowest level that can draw in the cell.
double lowest_level(const Cont_ladder& ladder, const Cont_range& range) {
    const float low = cont.min_cut == FMISS ? range.low : std::max(range.low, cont.min_cut);
    double number = ladder.below(cont.cont_type == CONT_LINE ? low : low - cont.intrvl);
    while (number <= ladder.last && ends_below(ladder.level(number), range)) number = ladder.next(number);
    return number;
}

/// Walks the levels that can draw in the cell; the traced cell shows them all.
void draw_stepped_levels(const Cont_scan& scan, const Cont_range& range) {
    const Cont_ladder& ladder = scan.ladder;
    double number = scan.traced.here ? ladder.first : lowest_level(ladder, range);
    const float next = number > ladder.last ? HIGHEST : ladder.level(number);
    if (number > ladder.last || (!scan.traced.here && is_past(next, range))) {
        const bool no_line = cont.cont_type == CONT_LINE && next > range.high;
        if (no_line) set_run(number > ladder.first ? ladder.level(number - 1.0) : -HIGHEST, next);
        return;
    }
    // By the rests, since numbers may be too large for their difference to be exact.
    double band = scan.first_band + std::fmod(number, cont.color_num) - scan.first_rest;
    for (; number <= ladder.last; number = ladder.next(number)) {
        const float level = ladder.level(number);
        if (!scan.traced.here && is_past(level, range)) return;
        if (scan.traced.here) std::printf("Loop %.0f\n", number - ladder.first);
        cont.con_off = cont_wrap_band(band++);
        if (!draw_pass(scan, number, level, range)) continue;
        if (number == ladder.first) return open_run();
        return end_run_above(top_of(ladder.level(number - 1.0)));
    }
}

bool is_left_blank(const Cont_scan& scan, const Cont_range& range) {
    if (cont.cont_type == CONT_LINE && range.low == range.high) return true;
    if (!cont_has_values() && (range.high - range.low) / cont.intrvl > scan.max_lines) return true;
    return cont.min_cut != FMISS && cont.min_cut > range.high;
}

bool is_low(float nlevel) { return (cont.base != FMISS && cont.base > nlevel) || nlevel < 0.0F; }

}  // namespace

void cont_set_line_attributes(int entry, float nlevel) {
    const Gattribs& band = cont.fill_attrib[entry];
    const Gattribs& line = cont.ln_cont_attr;
    if (line.color == CLR_NONE && band.color != CLR_NONE) gset_line_colr_ind(band.color);

    const bool dashed = cont.dash == 1 || (cont.dash == -1 && is_low(nlevel));
    const int plain_type = dashed ? 2 : 1;
    const int own_type = line.style == MISS || (cont.dash == -1 && !dashed) ? plain_type : line.style;
    gset_linetype(band.style == MISS ? own_type : band.style);

    const float own_width = line.width == FMISS ? 0.0F : line.width;
    gset_linewidth(band.width == FMISS ? own_width : band.width);
}

Cont_scan cont_make_scan() {
    Cont_scan scan;
    scan.max_lines = most_lines();
    scan.traced = traced_cell();
    if (cont_has_values()) {
        scan.listed = listed_levels();
        scan.ascending = std::is_sorted(scan.listed.begin(), scan.listed.end());
    } else {
        scan.ladder = cont_ladder();
        scan.first_band = cont_band_of(cont.conlo);
        scan.first_rest = std::fmod(scan.ladder.first, cont.color_num);
    }
    return scan;
}

void cont_trace_point(const Cont_scan& scan) {
    if (scan.traced.here) std::printf("GRIDPOINT: %f %f %f %f\n", cont.z[0], cont.z[1], cont.z[2], cont.z[3]);
}

void cont_draw_cell(const Cont_scan& scan) {
    cont.run = {};
    if (!cont_cell_complete()) return;
    const Cont_range range = cont_cell_range();
    if (cont.cont_type == CONT_LINE && range.low == range.high) cont.run = {just_below(range.low), range.low};
    if (is_left_blank(scan, range)) return;
    std::fill_n(cont.cross.begin(), 4, NO_CROSSING);
    std::fill_n(cont.cross.begin() + 4, 4, NOT_EVALUATED);
    cont.numsides = 0;
    if (cont_has_values()) {
        draw_listed_levels(scan, range);
    } else {
        draw_stepped_levels(scan, range);
    }
    if (scan.traced.here || (!cont_has_values() && scan.max_lines < SURELY_DRAWN)) cont.run = {};
    // Of a band that ends at the cell's one value it is the top, which may be the next one's bottom.
    if (cont.run.above < cont.run.most && !(range.low > cont.run.above)) cont.run = {};
    if (cont.run.above < FMISS && FMISS <= cont.run.most) cont.run = {};
}

}  // namespace zav
