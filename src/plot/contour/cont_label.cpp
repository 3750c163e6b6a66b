/// Labels on contour lines, and the marks of maxima and minima.

#include <algorithm>
#include <cmath>

#include "frame/resrc.h"
#include "frame/string.h"
#include "gks/gks_colr.h"
#include "gks/gks_text.h"
#include "gks/zavgks.h"
#include "plot/contour/cont_texts.h"
#include "plot/page/plt_tool.h"

namespace zav {
namespace {

constexpr Gpt UPRIGHT{0.0F, 1.0F};
constexpr Gpt SIDEWAYS{1.0F, 0.0F};
/// Labels of one cell that may find room on paper, and those that are written one by one.
constexpr std::size_t MOST_LEGIBLE = 20;
constexpr std::size_t ALL_LEVELS = 100000;
/// Fraction at which a level belongs to another side, by side.
constexpr std::array<float, 4> FOREIGN_END{1.0F, 0.0F, 0.0F, 1.0F};

const char* contrast_color() { return gget_inverse() ? "black" : "white"; }

std::string line_label_default() {
    const char* label = RES_get("color_label");
    const char* line = RES_get("color_cont");
    const bool has_own = label != nullptr && *label != '\0';
    const bool has_line = line != nullptr && *line != '\0' && stricmp(line, "off") != 0;
    return has_own || !has_line ? contrast_color() : line;
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
std::vector<Cont_labelled> listed_levels() {
    std::vector<Cont_labelled> levels;
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

/// The columns and rows that labels stand on where they are placed by the grid.
struct Lattice {
    std::vector<bool> column;
    std::vector<bool> row;
    float cells = 1.0F;  ///< of which each has one label
};

/// Distance of labels in grid points, by default a fifth of the grid.
int label_space(int given, int points) { return std::max(given == MISS ? points / 5 : given, 1); }

bool is_on_lattice(int place, int space) { return place % space == cont.over; }

/// The lattice of a grid that is drawn as it is.
Lattice lattice_of(const GRD_report& grid, int x, int y) {
    Lattice lattice;
    for (int i = 0; i < grid.domain.nx; ++i) lattice.column.push_back(is_on_lattice(i, x));
    for (int j = 0; j < grid.domain.ny; ++j) lattice.row.push_back(is_on_lattice(j, y));
    lattice.cells = static_cast<float>(y) * static_cast<float>(x);
    return lattice;
}

/// The same of the field that is drawn of a grid.
Lattice lattice_of(const Cont_source& source) {
    const int x = label_space(cont.x_label_space, source.grid->domain.nx);
    const int y = label_space(cont.y_label_space, source.grid->domain.ny);
    if (source.steps == 1 && source.shown.empty()) return lattice_of(*source.grid, x, y);
    Lattice lattice;
    lattice.column.assign(static_cast<std::size_t>(source.field->domain.nx), false);
    lattice.row.assign(static_cast<std::size_t>(source.field->domain.ny), false);
    for (int i = 0; i < source.grid->domain.nx; ++i) {
        const int column = source.column(i);
        if (column >= 0 && is_on_lattice(i, x)) lattice.column[column] = true;
    }
    for (int j = 0; j < source.grid->domain.ny; ++j) {
        const int row = source.first_row + j * source.steps;
        if (is_on_lattice(j, y) && row >= 0 && row < source.field->domain.ny) lattice.row[row] = true;
    }
    const auto steps = static_cast<float>(source.steps);
    lattice.cells = static_cast<float>(y) * static_cast<float>(x) * steps * steps;
    return lattice;
}

/// The cells of the lattice.
class Lattice_scan {
  public:
    /// A cell that more than `most_levels` levels run through isn't labelled.
    Lattice_scan(const Lattice& lattice, std::size_t most_levels, std::vector<Cont_spot>* spots)
        : lattice_(&lattice),
          levels_(cont_label_levels()),
          max_lines_(most_lines()),
          most_levels_(most_levels),
          spots_(spots) {}

    bool has(int i, int j) const { return lattice_->column[i] || lattice_->row[j]; }

    /// Labels the cell at work, which lies in column `i`, row `j`.
    void take_cell(int i, int j) {
        if (!cont_cell_complete() || is_crowded()) return;
        const Cont_range range = cont_cell_range();
        if (!cont_has_values() && (range.high - range.low) / cont.intrvl > max_lines_) return;
        levels_.within(range, most_levels_, &found_);
        if (found_.size() > most_levels_) return;
        for (const Cont_labelled& label : found_) {
            if (!PLT_letter() && is_beside(range, label.level)) continue;
            const Label_crossings crossings = find_label_crossings(label.level);
            if (crossings.are(0, 2) && lattice_->row[j]) spots_->push_back({label, crossings.middle(), true, 0.0F});
            if (crossings.are(1, 3) && lattice_->column[i]) spots_->push_back({label, crossings.middle(), false, 0.0F});
        }
    }

  private:
    /// True for a level that the cell has on its rim only, and whose line may have been left out there.
    static bool is_beside(const Cont_range& range, float level) {
        return cont_may_be_flat(level) && !(range.low < level && range.high > level);
    }

    /// True when the lattice is so fine that labels would crowd.
    bool is_crowded() const {
        const float dx = cont.x[1] - cont.x[0];
        const float dy = cont.y[1] - cont.y[0];
        return cont.text_size * cont.text_size > (dx * dx + dy * dy) * lattice_->cells;
    }

    const Lattice* lattice_;
    Cont_label_levels levels_;
    float max_lines_;
    std::size_t most_levels_;
    std::vector<Cont_labelled> found_;
    std::vector<Cont_spot>* spots_;
};

void write_label(const Cont_spot& spot) {
    const int k = spot.label.k;
    const bool named = k < CONT_LEVELS && !cont.cont_label[k].empty();
    const Gpt up = spot.steep && cont.rot_label ? SIDEWAYS : UPRIGHT;
    gset_char_up_vec(&up);
    cont.text(&spot.pt, named ? cont.cont_label[k] : set_num("1.2.0", spot.label.level));
}

void outline_cell() {
    if (std::find(cont.x.begin(), cont.x.end(), FMISS) != cont.x.end()) return;
    const std::array<Gpt, 5> outline{cont_corner(0), cont_corner(1), cont_corner(3), cont_corner(2), cont_corner(0)};
    cont.polyline(5, outline.data());
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
    if (!PLT_letter()) GPH_text_attr(nullptr, 1.0F);  // another layer's letters may be wide
    GPH_text_attr(&attrib, cont.scale * cont.vert_size * CONT_TEXT_SHARE);
    cont.text_size = attrib.height == FMISS ? size : size * attrib.height;
    return true;
}

Cont_label_levels cont_label_levels() {
    Cont_label_levels levels;
    if (cont_has_values()) {
        levels.listed = listed_levels();
    } else {
        levels.ladder = labelled_ladder();
    }
    return levels;
}

void Cont_label_levels::within(const Cont_range& range, std::size_t most, std::vector<Cont_labelled>* found) const {
    found->clear();
    for (const Cont_labelled& label : listed) {
        if (label.level >= range.low && label.level <= range.high) found->push_back(label);
    }
    if (cont_has_values()) return;
    for (double number = ladder.below(range.low); number <= ladder.last; number = ladder.next(number)) {
        const float level = ladder.level(number);
        if (level > range.high || found->size() > most) return;
        const double k = std::min(number - ladder.first, static_cast<double>(CONT_LEVELS));
        if (level >= range.low && !cont_is_cut(level)) found->push_back({static_cast<int>(k), level});
    }
}

void cont_lattice_spots(const Cont_source& source, std::vector<Cont_spot>* spots) {
    const GRD_report& field = *source.field;
    const Lattice lattice = lattice_of(source);
    Lattice_scan scan(lattice, MOST_LEGIBLE, spots);
    for (int j = field.domain.ny - 2; j >= 0; --j) {
        for (int i = 0; i < field.domain.nx - 1; ++i) {
            if (!scan.has(i, j)) continue;
            cont_load_cell(field, i, j);
            scan.take_cell(i, j);
        }
    }
}

void cont_outline_cells(const GRD_report& grid) {
    for (int j = grid.domain.ny - 2; j >= 0; --j) {
        for (int i = 0; i < grid.domain.nx - 1; ++i) {
            cont_load_cell(grid, i, j);
            outline_cell();
        }
    }
}

int CONT_draw_labels(GRD_report* grid) {
    if (grid == nullptr || !grid->grid) return 0;
    cont.x_label_space = label_space(cont.x_label_space, grid->domain.nx);
    cont.y_label_space = label_space(cont.y_label_space, grid->domain.ny);
    if (cont.label_skip < 1) return 0;
    cont_label_attributes();
    if (!cont_start_labels(cont.scale * cont.vert_size * CONT_TEXT_SHARE)) return 0;
    const Lattice lattice = lattice_of(*grid, cont.x_label_space, cont.y_label_space);
    std::vector<Cont_spot> spots;
    Lattice_scan scan(lattice, ALL_LEVELS, &spots);
    for (int j = grid->domain.ny - 2; j >= 0; --j) {
        for (int i = 0; i < grid->domain.nx - 1; ++i) {
            if (!scan.has(i, j) && !cont.draw_grid) continue;
            cont_load_cell(*grid, i, j);
            if (cont.draw_grid) outline_cell();
            if (!scan.has(i, j)) continue;
            spots.clear();
            scan.take_cell(i, j);
            std::for_each(spots.begin(), spots.end(), write_label);
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
    for (const Cont_extreme& extreme : cont_find_extremes(*grid, cont.ext_radius)) {
        Gpt pt;
        if (cont_is_cut(extreme.value) || !cont_position(*grid, extreme.i, extreme.j, &pt)) continue;
        cont_write_mark(pt, extreme.maximum, set_num("3.3.0", extreme.value));
    }
    return 0;
}

}  // namespace zav
