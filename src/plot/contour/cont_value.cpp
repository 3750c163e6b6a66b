/// Grid values as numbers.

#include <algorithm>
#include <cctype>
#include <cmath>

#include "frame/string.h"
#include "gks/gks_text.h"
#include "gks/zavgks.h"
#include "plot/background/map.h"
#include "plot/contour/cont_texts.h"
#include "plot/page/plt_paper.h"
#include "plot/page/plt_thin.h"
#include "plot/page/plt_tool.h"

namespace zav {
namespace {

/// Height of the numbers in heights of the plot, as the grid has it.
constexpr float TEXT_SHARE = 0.015F;
/// Height of the numbers on paper, in millimetres, and the space about them, in heights.
constexpr float TEXT_MM = 2.2F;
constexpr float SPACE_BESIDE = 1.0F;
constexpr float SPACE_BELOW = 1.2F;
/// Space between numbers and the frame, in millimetres.
constexpr float FRAME_MM = 0.5F;
/// Least scale of numbers that still take room.
constexpr float LEAST_SCALE = 0.2F;
/// Digits that the range of the values shows.
constexpr int RANGE_DIGITS = 2;

struct State {
    int decimals = 0;  ///< of all values of a plot
};
State state;

Gtext_hor side_of_point() {
    if (cont.x_off < 0.0F) return GRIGHT_HOR;
    return cont.x_off > 0.0F ? GLEFT_HOR : GCENTER_HOR;
}

/// Attributes of a value: those of its band once there are bands, else the label's.
Gattribs value_attributes(float value) {
    if (cont.intrvl == FMISS && !cont_has_values()) return cont.ln_lab_attr;
    Gattribs attrib;
    CONT_get_fill_attrib(value, &attrib);
    if (attrib.width == FMISS) attrib.width = 0.0F;
    if (attrib.expan == FMISS && !PLT_letter()) attrib.expan = 1.0F;
    return attrib;
}

float text_height() {
    if (PLT_letter()) return cont.scale * cont.vert_size * TEXT_SHARE;
    return cont.scale * TEXT_MM / PLT_paper_scale().y;
}

/// True when no value differs from its text with so many decimals.
bool all_fit(const GRD_report& grid, int decimals) {
    const double scale = std::pow(10.0, decimals);
    const auto points = static_cast<std::size_t>(grid.domain.nx) * static_cast<std::size_t>(grid.domain.ny);
    return std::all_of(grid.grid.get(), grid.grid.get() + points, [scale](float value) {
        const double scaled = value * scale;
        return cont_is_missing(value) || std::fabs(std::nearbyint(scaled) - scaled) <= 1e-6 * std::fabs(scaled);
    });
}

/// Decimals that tell the values of a plot apart, the same for all of them; none for codes and counts.
int decimals_of(const GRD_report& grid) {
    const float range = cont.grid_max > cont.grid_min ? cont.grid_max - cont.grid_min : std::fabs(cont.grid_max);
    if (!std::isfinite(range) || range == 0.0F) return 0;
    const int most = RANGE_DIGITS - 1 - static_cast<int>(std::floor(std::log10(range)));
    int decimals = 0;
    while (decimals < most && !all_fit(grid, decimals)) ++decimals;
    return cont_readable_decimals(decimals);
}

std::string value_text(float value) {
    if (!cont.num_form.empty()) return format_value(cont.num_form, value);
    if (PLT_letter()) return set_num("1.1.0", value);
    return cont_value_text(value, state.decimals);
}

/// Draws the value of column `i`, row `j` from the bottom, if it has one and a place.
void draw_value(const GRD_report& grid, int i, int j, float height) {
    Gpt pt;
    const float value = cont_value_at(grid, i, j);
    if (cont_is_missing(value) || !cont_position(grid, i, j, &pt)) return;
    const float vert = MAP_get_vert();
    const Gattribs attrib = value_attributes(value);
    GPH_text_attr(&attrib, height);
    pt = {pt.x + cont.x_off * vert, pt.y + cont.y_off * vert};
    if (attrib.color != CLR_NONE) cont.text(&pt, value_text(value));
}

bool is_due(int place, int skip) { return skip < 2 || place % skip == 0; }

/// The values at every which column and row.
void draw_by_step(const GRD_report& grid) {
    const float height = text_height();
    for (int j = grid.domain.ny - 1; j >= 0; --j) {
        for (int i = 0; i < grid.domain.nx; ++i) {
            if (is_due(i, cont.x_skip) && is_due(j, cont.y_skip)) draw_value(grid, i, j, height);
        }
    }
}

/// Width of the widest number, in plot units, by a sample of the values. Digits may differ in width.
float widest_text(const GRD_report& grid, float height) {
    constexpr std::size_t SAMPLES = 2000;
    const auto points = static_cast<std::size_t>(grid.domain.nx) * static_cast<std::size_t>(grid.domain.ny);
    float widest = 0.0F;
    const auto measure = [&widest, height](float value) {
        if (cont_is_missing(value)) return;
        std::string text = value_text(value);
        std::replace_if(
            text.begin(), text.end(), [](unsigned char c) { return std::isdigit(c) != 0; }, '0');
        widest = std::max(widest, ginq_text_size(text, height).x);
    };
    for (std::size_t k = 0; k < points; k += points / SAMPLES + 1) measure(grid.grid[k]);
    measure(cont.grid_max);
    measure(cont.grid_min);
    return widest;
}

/// What a number takes on paper: a box, but a circle where the grid's rows don't run level, as boxes pack badly there.
PLT_room room_of(const GRD_report& grid, bool level) {
    const Gpt unit = PLT_paper_scale();
    const float scale = std::max(std::fabs(cont.scale), LEAST_SCALE);
    const float width = widest_text(grid, text_height()) * std::fabs(unit.x);
    const float room = width + SPACE_BESIDE * scale * TEXT_MM;
    const Gtext_hor side = side_of_point();
    const float middle = side == GCENTER_HOR ? 0.0F : (side == GLEFT_HOR ? 0.5F : -0.5F);
    const float vert = MAP_get_vert();
    return {room,
            level ? (1.0F + SPACE_BELOW) * scale * TEXT_MM : room,
            level,
            {cont.x_off * vert * unit.x + middle * width, cont.y_off * vert * unit.y},
            {0.5F * width + FRAME_MM, 0.5F * scale * TEXT_MM + FRAME_MM}};
}

/// As many values as paper holds.
void draw_by_room(const GRD_report& grid) {
    const int last = grid.domain.ny - 1;
    const float height = text_height();
    GPH_text_attr(&cont.ln_lab_attr, height);
    const PLT_lattice lattice{grid.domain.nx, grid.domain.ny,
                              [&](int i, int j, Gpt* pt) { return cont_position(grid, i, last - j, pt); },
                              [&](int i, int j) { return !cont_is_missing(cont_value_at(grid, i, last - j)); }};
    for (const PLT_grid_point& point : PLT_thin(lattice, room_of(grid, PLT_rows_are_level(lattice)))) {
        draw_value(grid, point.i, last - point.j, height);
    }
}

}  // namespace

void cont_draw_values(const GRD_report& grid) {
    if (cont.ln_lab_attr.color == CLR_NONE) return;
    state.decimals = decimals_of(grid);
    const Gtext_align align{side_of_point(), GHALF_VERT};
    gset_text_align(&align);
    gset_text_width(0.0F);
    if (!PLT_letter()) gset_expan(1.0F);
    if (PLT_letter() || cont.skip_given) {
        draw_by_step(grid);
    } else {
        draw_by_room(grid);
    }
}

}  // namespace zav
