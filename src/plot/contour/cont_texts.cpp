/// Marks and labels on paper: what both need.

#include "plot/contour/cont_texts.h"

#include <algorithm>
#include <cmath>

#include "frame/string.h"
#include "plot/page/plt_paper.h"

namespace zav {
namespace {

constexpr int MOST_DECIMALS = 9;
/// Part of an interval by which a level may differ from its text.
constexpr double LEVEL_TOLERANCE = 1e-4;

bool fits(double value, double tolerance, int decimals) {
    const double scale = std::pow(10.0, decimals);
    return std::fabs(std::nearbyint(value * scale) - value * scale) <= tolerance * scale;
}

/// Distance of a point of the grid from a place on paper; `FMISS` when it isn't on the map.
float distance_to(const Cont_source& source, const Cont_paper& paper, const Gpt& from, int i, int j) {
    Gpt pt;
    if (!source.position(i, j, &pt)) return FMISS;
    const Gpt to = paper.at(pt);
    return std::hypot(to.x - from.x, to.y - from.y);
}

float shorter(float a, float b) {
    if (a == FMISS || b == FMISS) return std::max(a, b);
    return std::min(a, b);
}

}  // namespace

Cont_paper cont_paper() { return {PLT_on_paper({0.0F, 0.0F}), PLT_paper_scale()}; }

int Cont_source::column(int i) const {
    const auto refined = static_cast<std::size_t>(i) * static_cast<std::size_t>(steps);
    if (shown.empty()) return static_cast<int>(refined);
    const bool is_known = refined < shown.size() && shown[refined] < field->domain.nx;
    return is_known ? shown[refined] : -1;
}

bool Cont_source::position(int i, int j, Gpt* pt) const {
    if (i < 0 || j < 0 || i >= grid->domain.nx || j >= grid->domain.ny) return false;
    const int at = column(i);
    const int row = first_row + j * steps;
    return at >= 0 && row >= 0 && row < field->domain.ny && cont_position(*field, at, row, pt);
}

float cont_paper_step(const Cont_source& source, const Cont_paper& paper, int i, int j) {
    Gpt pt;
    if (!source.position(i, j, &pt)) return 0.0F;
    const Gpt mm = paper.at(pt);
    const auto to = [&](int column, int row) { return distance_to(source, paper, mm, column, row); };
    // By the nearer neighbour, since the other may lie across the edge of a cyclic map.
    const float across = shorter(to(i - 1, j), to(i + 1, j));
    const float along = shorter(to(i, j - 1), to(i, j + 1));
    if (across == FMISS || along == FMISS) return std::max({across, along, 0.0F});
    return (across + along) / 2.0F;
}

int cont_decimals() {
    std::vector<double> levels;
    double gap = cont.intrvl;
    if (cont_has_values()) {
        const int count = std::min(cont.num_cont, CONT_LEVELS);
        gap = 0.0;
        for (int k = 0; k < count && cont.cont_value[k] != FMISS; ++k) {
            const double above = levels.empty() ? 0.0 : std::fabs(cont.cont_value[k] - levels.back());
            if (above > 0.0) gap = gap > 0.0 ? std::min(gap, above) : above;
            levels.push_back(cont.cont_value[k]);
        }
        if (gap == 0.0 && !levels.empty()) gap = std::fabs(levels.front());
    } else {
        levels = {cont.intrvl, cont.base == FMISS ? 0.0 : cont.base};
    }
    int decimals = 0;
    const auto all_fit = [&] {
        return std::all_of(levels.begin(), levels.end(),
                           [&](double level) { return fits(level, LEVEL_TOLERANCE * gap, decimals); });
    };
    while (decimals < MOST_DECIMALS && !all_fit()) ++decimals;
    return cont_readable_decimals(decimals);
}

int cont_readable_decimals(int decimals) {
    constexpr int READABLE = 6;
    constexpr float SMALL = 1e-3F;
    const bool is_small = std::max(std::fabs(cont.grid_max), std::fabs(cont.grid_min)) < SMALL;
    return decimals > READABLE && is_small ? CONT_EXPONENT : std::min(decimals, MOST_DECIMALS);
}

std::string cont_value_text(float value, int decimals) {
    if (decimals == CONT_EXPONENT) return text_format("%.2e", double{value});
    const double scale = std::pow(10.0, decimals);
    const bool is_zero = std::fabs(value * scale) < 0.5;  // without a sign
    return text_format("%.*f", decimals, is_zero ? 0.0 : double{value});
}

void cont_place_texts(const Cont_source& source) {
    const Cont_paper paper = cont_paper();
    cont_close_gaps();
    if (!(paper.unit.x != 0.0F && paper.unit.y != 0.0F)) return;
    cont_place_marks(source, paper);
    cont_place_labels(source, paper);
}

void cont_write_texts(const Cont_source& source) {
    cont_close_gaps();
    cont_label_attributes();
    if (cont.draw_grid) cont_outline_cells(*source.field);
    cont_write_labels();
    cont_write_marks();
}

}  // namespace zav
