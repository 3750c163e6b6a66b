/// The contour plot of a grid: preparation, the walk over all cells, and the levels of each cell.

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "calc/grd_trans.h"
#include "frame/flag.h"
#include "frame/mess.h"
#include "gks/gks_colr.h"
#include "gks/gks_text.h"
#include "gks/gks_ws.h"
#include "gks/zavgks.h"
#include "plot/background/map.h"
#include "plot/contour/cont_state.h"
#include "plot/page/plt_tool.h"

namespace zav {
namespace {

constexpr float TEXT_SHARE = 0.015F;  ///< text height in heights of the plot
constexpr float ANY_NUMBER_OF_LINES = 10000.0F;

/// The cell that the environment variable "gridloc" asks to trace.
struct Traced_cell {
    int column = -1;
    int row = -1;
    bool here = false;
};

/// What stays the same for all cells of a plot.
struct Scan {
    float max_lines = ANY_NUMBER_OF_LINES;
    Cont_ladder ladder;         ///< levels of interval mode
    int first_band = 0;         ///< band of the lowest of them
    double first_rest = 0.0;    ///< its number modulo the bands
    std::vector<float> listed;  ///< levels of value-list mode
    bool ascending = false;     ///< the list rises, so that a cell needs but a part of it
    Traced_cell traced;
};

float most_lines() {
    const int fact = cont.max_line_fact;
    if (fact < 0) return -static_cast<float>(cont.color_num) * static_cast<float>(fact);
    return fact > 0 ? static_cast<float>(fact) : ANY_NUMBER_OF_LINES;
}

Traced_cell traced_cell() {
    Traced_cell cell;
    const char* place = std::getenv("gridloc");
    if (place != nullptr && std::sscanf(place, "%9d,%9d", &cell.column, &cell.row) < 1) cell = {};
    return cell;
}

int place_grid(const GRD_report& grid) {
    if (cont.placed || CONT_place_grid(grid) == 0) return 0;
    MESS_print(MESS_WARN, "CONT_draw_contours: Unable to allocate grid arrays\n");
    return -1;
}

void read_line_attributes() {
    ATTRIB_init(&cont.ln_cont_attr);
    ATTRIB_get("color_cont", gget_inverse() ? "black" : "white", &cont.ln_cont_attr);
    CONT_format_decode_attrib(&cont.ln_cont_attr);
    if (cont.fill_pat != MISS) cont.ln_cont_attr.fill_pat = cont.fill_pat;
}

/// A grid on its own domain is drawn in its own coordinates, columns and rows from the lower left.
void use_grid_coordinates(const GRD_report& grid, const Glim& view) {
    cont.x_min = 0.0F;
    cont.x_max = static_cast<float>(grid.domain.nx - 1);
    cont.vert_size = static_cast<float>(grid.domain.ny - 1);
    const Glim window{0.0F, cont.x_max, 0.0F, cont.vert_size};
    gset_vp(3, &view);
    gset_win(3, &window);
    GPH_trans(3);
}

void start_attributes() {
    const Gtext_align centred{GCENTER_HOR, GHALF_VERT};
    gset_text_align(&centred);
    gset_char_ht(cont.scale * cont.vert_size * TEXT_SHARE);
    const bool has_lines = cont.cont_type == CONT_LINE || cont.cont_type == CONT_FILL_LINE;
    if (has_lines && cont.ln_cont_attr.color != CLR_NONE) gset_line_colr_ind(cont.ln_cont_attr.color);
    GPH_line_attr(&cont.ln_cont_attr);
    if (cont.dash == 1) gset_linetype(2);
    gset_fill_int_style(GSOLID);
}

void prepare_plot(GRD_report* grid) {
    Glim view;
    PLT_get_view(&view);
    CONT_set_fill_colors(nullptr, 0);
    if (cont.grid_max == FMISS) {
        GRD_maxmin(grid, &cont.grid_max, &cont.grid_min);
        CONT_set_cont_ext(grid);
    }
    read_line_attributes();
    cont_label_attributes();
    if (cont.grdx.empty()) {
        use_grid_coordinates(*grid, view);
    } else {
        cont.vert_size = MAP_get_vert();
    }
    start_attributes();
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

Scan make_scan() {
    Scan scan;
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

void trace_level(const Scan& scan, const char* mark, float level) {
    if (!scan.traced.here) return;
    std::printf("%s: %f side: %.2f %.2f %.2f %.2f nside: %d cross: %d %d %d %d tside: %.2f\n", mark, level, cont.dz[2],
                cont.dz[3], cont.dz[0], cont.dz[1], cont.numsides, cont.cross[0], cont.cross[1], cont.cross[2],
                cont.cross[3], cont.total);
}

void evaluate(const Scan& scan, const char* mark, float level) {
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
}

float top_of(float level) { return cont.cont_type == CONT_LINE ? level : level + cont.intrvl; }

/// Index of the band whose line attributes the level takes: in a combined plot that of the band above.
int line_entry() { return cont.cont_type == CONT_FILL_LINE ? cont_wrap_band(cont.con_off + 1.0) : cont.con_off; }

/// One pass of the level loop, of the band from `clevel` up. True when the cell is done.
bool draw_pass(const Scan& scan, float clevel, const Cont_range& range) {
    float level = clevel;
    float nlevel = top_of(clevel);
    if (range.low > nlevel) return false;
    if (cont.min_cut != FMISS && cont.min_cut > clevel) {
        if (nlevel < cont.min_cut) return false;
        level = cont.min_cut;
        evaluate(scan, "BB-val", level);
    }
    if (cont.max_cut != FMISS && nlevel > cont.max_cut) {
        if (cont.max_cut <= clevel) return false;
        nlevel = cont.max_cut;
    }
    pass_to_lower();
    if (cont_is_filled()) cont_set_fill_attributes();
    cont_set_line_attributes(line_entry(), nlevel);
    if (cont_is_filled() && cont_fill_top(level, nlevel, range)) return true;
    evaluate(scan, "CC-val", nlevel);
    return false;
}

/// True if nothing of the band from `level` up is drawn, nor of any above it: a line beyond the cell's values, or one
/// beyond the upper cut.
bool is_past(float level, const Cont_range& range) {
    if (cont.cont_type == CONT_LINE && level > range.high) return true;
    return cont.max_cut != FMISS && level >= cont.max_cut && top_of(level) > cont.max_cut;
}

/// Walks the list. The first level is evaluated before its pass; below it nothing is drawn.
void draw_listed_levels(const Scan& scan, const Cont_range& range) {
    const bool in_part = scan.ascending && !scan.traced.here;
    std::size_t k = 0;
    if (in_part) {
        // From the band that holds the cell's lowest value, which may be the one that ends at it.
        const auto above = std::lower_bound(scan.listed.begin(), scan.listed.end(), range.low);
        k = static_cast<std::size_t>(std::max<std::ptrdiff_t>(above - scan.listed.begin() - 2, 0));
    }
    for (; k < scan.listed.size(); ++k) {
        float clevel = scan.listed[k];
        cont_step_level(static_cast<int>(k), &clevel);
        if (in_part && is_past(clevel, range)) return;
        if (scan.traced.here) std::printf("Loop %d\n", static_cast<int>(k));
        if (k == 0) evaluate(scan, "AA-val", clevel);
        cont.con_off = cont_wrap_band(static_cast<double>(k));
        if (draw_pass(scan, clevel, range)) return;
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
void draw_stepped_levels(const Scan& scan, const Cont_range& range) {
    const Cont_ladder& ladder = scan.ladder;
    double number = scan.traced.here ? ladder.first : lowest_level(ladder, range);
    if (number > ladder.last || (!scan.traced.here && is_past(ladder.level(number), range))) return;
    // By the rests, since numbers may be too large for their difference to be exact.
    double band = scan.first_band + std::fmod(number, cont.color_num) - scan.first_rest;
    for (; number <= ladder.last; number = ladder.next(number)) {
        const float level = ladder.level(number);
        if (!scan.traced.here && is_past(level, range)) return;
        if (scan.traced.here) std::printf("Loop %.0f\n", number - ladder.first);
        cont.con_off = cont_wrap_band(band++);
        if (draw_pass(scan, level, range)) return;
    }
}

bool is_left_blank(const Scan& scan, const Cont_range& range) {
    if (cont.cont_type == CONT_LINE && range.low == range.high) return true;
    if (!cont_has_values() && (range.high - range.low) / cont.intrvl > scan.max_lines) return true;
    return cont.min_cut != FMISS && cont.min_cut > range.high;
}

void draw_cell(const Scan& scan) {
    if (!cont_cell_complete()) return;
    const Cont_range range = cont_cell_range();
    if (is_left_blank(scan, range)) return;
    std::fill_n(cont.cross.begin(), 4, NO_CROSSING);
    std::fill_n(cont.cross.begin() + 4, 4, NOT_EVALUATED);
    cont.numsides = 0;
    if (cont_has_values()) {
        draw_listed_levels(scan, range);
    } else {
        draw_stepped_levels(scan, range);
    }
}

void scan_cells(const GRD_report& grid) {
    Scan scan = make_scan();
    for (int j = grid.domain.ny - 2; j >= 0; --j) {
        for (int i = 0; i < grid.domain.nx - 1; ++i) {
            cont_load_cell(grid, i, j);
            scan.traced.here = i == scan.traced.column && j == scan.traced.row;
            if (scan.traced.here) {
                std::printf("GRIDPOINT: %f %f %f %f\n", cont.z[0], cont.z[1], cont.z[2], cont.z[3]);
            }
            draw_cell(scan);
        }
    }
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

int CONT_grid(const std::vector<float>& grx, const std::vector<float>& gry) {
    cont.grdx = grx;
    cont.grdy = gry;
    DOM_init(&cont.placed_grid);
    return 0;
}

int CONT_draw_contour(GRD_report* grid) {
    if (grid == nullptr || !grid->grid) return 0;
    if (place_grid(*grid) < 0) return -1;
    const bool is_line_of_points = grid->domain.nx < 2 || grid->domain.ny < 2;
    if (is_line_of_points && (cont.cont_type != CONT_VALUE || cont.grdx.empty())) return 0;
    prepare_plot(grid);
    if (cont.cont_type == CONT_VALUE) {
        cont_draw_values(*grid);
    } else {
        scan_cells(*grid);
    }
    return 0;
}

int CONT_draw(GRD_report* grid) {
    if (!FLAG_getplot(PLOT_DATA)) return -1;
    if (grid == nullptr) {
        MESS_print(MESS_WARN, "CONT_draw: Invalid grids\n");
        return -1;
    }
    if (!grid->grid) {
        MESS_print(MESS_WARN, "CONT_draw: Invalid grid arrays\n");
        return -1;
    }
    gkeep_output();  // from here on the page grows by megabytes
    if (!PLT_letter()) return cont_draw_field(grid);
    if (CONT_draw_contour(grid) < 0 || cont.cont_type == CONT_VALUE) return -1;
    CONT_draw_labels(grid);
    CONT_draw_maxmin(grid);
    return 0;
}

}  // namespace zav
