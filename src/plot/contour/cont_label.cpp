/// Labels on contour lines, and the marks of maxima and minima.

#include <algorithm>
#include <cmath>

#include "calc/grd_cyclic.h"
#include "frame/resrc.h"
#include "frame/string.h"
#include "gks/gks_colr.h"
#include "gks/gks_text.h"
#include "gks/zavgks.h"
#include "plot/contour/cont_state.h"
#include "plot/page/plt_tool.h"

namespace zav {
namespace {

constexpr float TEXT_SHARE = 0.015F;
constexpr float MARK_SHARE = 0.02F;
constexpr Gpt UPRIGHT{0.0F, 1.0F};
constexpr Gpt SIDEWAYS{1.0F, 0.0F};
/// Fraction at which a level belongs to another side, by side.
constexpr std::array<float, 4> FOREIGN_END{1.0F, 0.0F, 0.0F, 1.0F};

/// A level that gets labels.
struct Labelled {
    int k;
    float level;
};

const char* contrast_color() { return gget_inverse() ? "black" : "white"; }

std::string line_label_default() {
    const char* label = RES_get("color_label");
    const char* line = RES_get("color_cont");
    const bool has_own = label != nullptr && *label != '\0';
    const bool has_line = line != nullptr && *line != '\0' && stricmp(line, "off") != 0;
    return has_own || !has_line ? contrast_color() : line;
}

void settle_label_space(const GRD_report& grid) {
    if (cont.x_label_space == MISS) cont.x_label_space = grid.domain.nx / 5;
    if (cont.y_label_space == MISS) cont.y_label_space = grid.domain.ny / 5;
    cont.x_label_space = std::max(cont.x_label_space, 1);
    cont.y_label_space = std::max(cont.y_label_space, 1);
}

float most_lines() {
    if (cont.max_line_fact <= 0) return 10000.0F;
    return static_cast<float>(cont.color_num) * static_cast<float>(cont.max_line_fact);
}

/// Levels to label in interval mode. With a base, labelled levels keep their place from plot to plot.
Cont_ladder labelled_ladder() {
    Cont_ladder ladder = cont_ladder();
    ladder.stride = cont.label_skip;
    if (cont.base == FMISS) return ladder;
    const double from_base = ladder.origin + ladder.first * ladder.step - cont.base;
    const double levels = std::nearbyint(from_base / ladder.step);
    // By whole strides from the base: the first of them that isn't below the levels of the plot, above it when the base
    // is.
    const double rest = std::fmod(-levels, ladder.stride);
    const bool above = levels < 0.0 ? !(rest > 0.0) : rest < 0.0;
    ladder.first += above ? rest + ladder.stride : rest;
    return ladder;
}

/// The levels of a list that get labels, those between the cuts.
std::vector<Labelled> listed_levels() {
    std::vector<Labelled> levels;
    const int count = std::min(cont.num_cont, CONT_LEVELS);
    int start = 0;
    if (cont.base != FMISS) {
        const auto end = cont.cont_value.begin() + std::max(count, 0);
        const auto found = std::find(cont.cont_value.begin(), end, cont.base);
        if (found != end) start = static_cast<int>(found - cont.cont_value.begin());
    }
    for (int k = start; k < count; k += cont.label_skip) {
        if (!cont_is_cut(cont.cont_value[k])) levels.push_back({k, cont.cont_value[k]});
        if (k > CONT_LEVELS - cont.label_skip) break;
    }
    return levels;
}

/// Fraction at which `level` crosses a side, below 0 if it doesn't.
float label_crossing(int side, float level) {
    const float z1 = cont.z[CONT_SIDES[side].first];
    const float z2 = cont.z[CONT_SIDES[side].second];
    if (z1 == z2) return DZ_FLAT;
    const float d = (level - z1) / (z2 - z1);
    if (d == FOREIGN_END[side]) return DZ_CORNER;
    return d < 0.0F || d > 1.0F ? DZ_NONE : d;
}

struct Label_crossings {
    std::array<float, 4> at{};
    std::array<int, 4> sides{};
    int count = 0;

    bool are(int side1, int side2) const { return count == 2 && sides[0] == side1 && sides[1] == side2; }
    Gpt middle() const {
        const Gpt a = cont_side_point(sides[0], at[sides[0]]);
        const Gpt b = cont_side_point(sides[1], at[sides[1]]);
        return {(a.x + b.x) / 2.0F, (a.y + b.y) / 2.0F};
    }
};

Label_crossings find_label_crossings(float level) {
    Label_crossings found;
    for (int side = 0; side < 4; ++side) {
        found.at[side] = label_crossing(side, level);
        if (found.at[side] >= 0.0F) found.sides[found.count++] = side;
    }
    if (found.count == 3) found.count = 2;
    return found;
}

void write_label(const Labelled& label, const Gpt& pt, const Gpt& up) {
    const bool named = label.k < CONT_LEVELS && !cont.cont_label[label.k].empty();
    gset_char_up_vec(&up);
    cont.text(&pt, named ? cont.cont_label[label.k] : set_num("1.2.0", label.level));
}

bool on_column(int i) { return i % cont.x_label_space == cont.over; }

bool on_row(int j) { return j % cont.y_label_space == cont.over; }

void label_level(const Labelled& label, int i, int j) {
    const Label_crossings found = find_label_crossings(label.level);
    if (found.are(0, 2) && on_row(j)) write_label(label, found.middle(), cont.rot_label ? SIDEWAYS : UPRIGHT);
    if (found.are(1, 3) && on_column(i)) write_label(label, found.middle(), UPRIGHT);
}

/// True when the lattice is so fine that labels would crowd.
bool is_crowded() {
    const float dx = cont.x[1] - cont.x[0];
    const float dy = cont.y[1] - cont.y[0];
    const float lattice = static_cast<float>(cont.y_label_space) * static_cast<float>(cont.x_label_space);
    return cont.text_size * cont.text_size > (dx * dx + dy * dy) * lattice;
}

/// What stays the same for all labels of a plot.
struct Label_scan {
    std::vector<Labelled> listed;
    Cont_ladder ladder;
    float max_lines = 0.0F;
};

/// Outside its range of values a cell has no crossings.
void label_stepped_levels(const Cont_ladder& ladder, const Cont_range& range, int i, int j) {
    for (double number = ladder.below(range.low); number <= ladder.last; number = ladder.next(number)) {
        const float level = ladder.level(number);
        if (level > range.high) return;
        const double k = std::min(number - ladder.first, static_cast<double>(CONT_LEVELS));
        if (!cont_is_cut(level)) label_level({static_cast<int>(k), level}, i, j);
    }
}

void label_cell(const Label_scan& scan, int i, int j) {
    if (!cont_cell_complete() || is_crowded()) return;
    const Cont_range range = cont_cell_range();
    if (cont_has_values()) {
        for (const Labelled& label : scan.listed) label_level(label, i, j);
    } else if ((range.high - range.low) / cont.intrvl <= scan.max_lines) {
        label_stepped_levels(scan.ladder, range, i, j);
    }
}

void outline_cell() {
    if (std::find(cont.x.begin(), cont.x.end(), FMISS) != cont.x.end()) return;
    const std::array<Gpt, 5> outline{cont_corner(0), cont_corner(1), cont_corner(3), cont_corner(2), cont_corner(0)};
    cont.polyline(5, outline.data());
}

/// How a point compares with its neighbours.
struct Neighbours {
    int compared = 0;
    int missing = 0;
    int score = 0;

    void add(float value, float neighbour) {
        if (cont_is_missing(neighbour)) {
            ++missing;
            return;
        }
        ++compared;
        if (neighbour < value) ++score;
        if (neighbour > value) --score;
    }
    bool is_maximum() const { return score == compared && missing <= 1; }
    bool is_minimum() const { return score == -compared && missing <= 1; }
    bool is_none() const { return !is_maximum() && !is_minimum(); }
};

Neighbours compare_neighbours(const GRD_report& grid, int i, int j, float value) {
    Neighbours found;
    const int reach = std::min(cont.ext_radius, std::max(grid.domain.nx, grid.domain.ny));
    const int last_row = std::min(j + reach, grid.domain.ny - 1);
    const int cycle = PLT_letter() ? 0 : GRD_cycle(grid.domain);
    const int first_column = cycle > 0 ? i - std::min(reach, (cycle - 1) / 2) : std::max(i - reach, 0);
    const int last_column = cycle > 0 ? i + std::min(reach, (cycle - 1) / 2) : std::min(i + reach, grid.domain.nx - 1);
    for (int row = std::max(j - reach, 0); row <= last_row; ++row) {
        for (int column = first_column; column <= last_column; ++column) {
            if (row == j && column == i) continue;
            found.add(value, cont_value_at(grid, cycle > 0 ? GRD_turned_column(column, cycle) : column, row));
            if (found.is_none()) return found;
        }
    }
    return found;
}

void mark_extreme(const Gpt& pt, const char* mark, float value) {
    const Gpt below{pt.x, pt.y - MARK_SHARE * cont.text_size};
    gset_char_ht(MARK_SHARE * cont.text_size);
    cont.text(&pt, mark);
    gset_char_ht(TEXT_SHARE * cont.text_size);
    cont.text(&below, set_num("3.3.0", value));
}

}  // namespace

void cont_label_attributes() {
    GPH_line_attr(nullptr);
    ATTRIB_init(&cont.ln_lab_attr);
    ATTRIB_init(&cont.fill_lab_attr);
    ATTRIB_get("color_label", line_label_default(), &cont.ln_lab_attr);
    ATTRIB_get("color_clabel", "black", &cont.fill_lab_attr);
    CONT_format_decode_attrib(&cont.ln_lab_attr);
    CONT_format_decode_attrib(&cont.fill_lab_attr);
}

bool cont_start_labels(float size) {
    const Gattribs& attrib = cont_is_filled() ? cont.fill_lab_attr : cont.ln_lab_attr;
    if (cont.fill_lab_attr.color == CLR_NONE || attrib.color == CLR_NONE) return false;
    GPH_text_attr(&attrib, cont.scale * cont.vert_size * TEXT_SHARE);
    cont.text_size = attrib.height == FMISS ? size : size * attrib.height;
    return true;
}

int CONT_draw_labels(GRD_report* grid) {
    if (grid == nullptr || !grid->grid) return 0;
    settle_label_space(*grid);
    if (cont.label_skip < 1) return 0;
    cont_label_attributes();
    if (!cont_start_labels(cont.scale * cont.vert_size * TEXT_SHARE)) return 0;
    Label_scan scan;
    scan.max_lines = most_lines();
    if (cont_has_values()) {
        scan.listed = listed_levels();
    } else {
        scan.ladder = labelled_ladder();
    }
    for (int j = grid->domain.ny - 2; j >= 0; --j) {
        for (int i = 0; i < grid->domain.nx - 1; ++i) {
            const bool on_lattice = on_column(i) || on_row(j);
            if (!on_lattice && !cont.draw_grid) continue;
            cont_load_cell(*grid, i, j);
            if (cont.draw_grid) outline_cell();
            if (on_lattice) label_cell(scan, i, j);
        }
    }
    gset_char_up_vec(&UPRIGHT);
    return 0;
}

int CONT_draw_maxmin(GRD_report* grid) {
    if (grid == nullptr || !grid->grid || cont.ext_radius < 1) return 0;
    if (grid->domain.nx < 2 || grid->domain.ny < 2) return 0;
    cont_label_attributes();
    if (!cont_start_labels(cont.scale * cont.vert_size)) return 0;
    gset_char_up_vec(&UPRIGHT);
    for (int j = grid->domain.ny - 1; j >= 0; --j) {
        for (int i = 0; i < grid->domain.nx; ++i) {
            Gpt pt;
            const float value = cont_value_at(*grid, i, j);
            if (cont_is_missing(value) || cont_is_cut(value) || !cont_position(*grid, i, j, &pt)) continue;
            const Neighbours found = compare_neighbours(*grid, i, j, value);
            if (found.is_none()) continue;
            mark_extreme(pt, found.is_maximum() ? "H" : "L", value);
        }
    }
    return 0;
}

}  // namespace zav
