/// The marks of maxima and minima, kept apart on paper.

#include <algorithm>
#include <cmath>
#include <exception>

#include "frame/mess.h"
#include "frame/string.h"
#include "gks/gks_text.h"
#include "plot/contour/cont_texts.h"
#include "plot/page/plt_room.h"
#include "plot/page/plt_tool.h"

namespace zav {
namespace {

constexpr float MARGIN = 0.7F;          ///< about a mark, in millimetres, as the next two
constexpr float GAP_MARGIN = 0.3F;      ///< between its texts and lines
constexpr float NEAR_EDGE = 0.5F;       ///< of the frame
constexpr float FINE_DISTANCE = 12.0F;  ///< over which a mark of a fine grid is an extreme, in millimetres
/// Square millimetres: a grid of a tenth of the points asks for a tenth of the distance.
constexpr float NOISE = 10.0F;
constexpr float POLE = 89.99F;

/// A mark that may be drawn.
struct Mark {
    Cont_extreme extreme;
    Gpt pt;
    std::string text;
    float distance = 0.0F;  ///< over which it is an extreme, in grid steps
    int order = 0;          ///< in which it was found
};

struct State {
    std::vector<Mark> marks;
};
State state;

/// The more marked first.
bool goes_before(const Mark& a, const Mark& b) {
    if (a.distance != b.distance) return a.distance > b.distance;
    if (a.extreme.maximum != b.extreme.maximum) return a.extreme.maximum;
    if (a.extreme.value != b.extreme.value) return (a.extreme.value > b.extreme.value) == a.extreme.maximum;
    return a.order < b.order;
}

Glim box_about(const Gpt& middle, const Gpt& size, const Cont_paper& paper, float margin) {
    const Gpt low = paper.at({middle.x - size.x / 2.0F, middle.y - size.y / 2.0F});
    const Gpt high = paper.at({middle.x + size.x / 2.0F, middle.y + size.y / 2.0F});
    return {low.x - margin, high.x + margin, low.y - margin, high.y + margin};
}

Gpt value_place(const Gpt& pt) { return {pt.x, pt.y - CONT_LETTER_SHARE * cont.text_size}; }

Glim letter_box(const Mark& mark, const Cont_paper& paper, float margin) {
    const char* letter = mark.extreme.maximum ? "H" : "L";
    return box_about(mark.pt, ginq_text_size(letter, CONT_LETTER_SHARE * cont.text_size), paper, margin);
}

Glim value_box(const Mark& mark, const Cont_paper& paper, float margin) {
    const Gpt size = ginq_text_size(mark.text, CONT_TEXT_SHARE * cont.text_size);
    return box_about(value_place(mark.pt), size, paper, margin);
}

/// What a mark takes on paper, its letter and the value below.
Glim box_of(const Mark& mark, const Cont_paper& paper) {
    const Glim letter = letter_box(mark, paper, MARGIN);
    const Glim value = value_box(mark, paper, MARGIN);
    return {std::min(letter.x_min, value.x_min), std::max(letter.x_max, value.x_max), value.y_min, letter.y_max};
}

/// How far a range has to move to lie between the limits.
float move_between(float low, float high, float least, float most) {
    if (low < least) return least - low;
    return high > most ? most - high : 0.0F;
}

/// Moves a mark that the frame would cut. False if its point isn't on the plot, or it doesn't fit.
bool bring_inside(Mark* mark, const Cont_paper& paper, const Glim& view) {
    const Gpt at = paper.at(mark->pt);
    if (!PLT_box_inside({at.x, at.x, at.y, at.y}, view)) return false;
    const Glim inner{view.x_min + NEAR_EDGE, view.x_max - NEAR_EDGE, view.y_min + NEAR_EDGE, view.y_max - NEAR_EDGE};
    const Glim box = box_of(*mark, paper);
    mark->pt.x += move_between(box.x_min, box.x_max, inner.x_min, inner.x_max) / paper.unit.x;
    mark->pt.y += move_between(box.y_min, box.y_max, inner.y_min, inner.y_max) / paper.unit.y;
    return PLT_box_inside(box_of(*mark, paper), view);
}

/// On a fine grid every bump is an extreme; a chart shows those of its own scale.
bool is_noise(const Mark& mark, float step) {
    const float asked = std::min(FINE_DISTANCE, NOISE / std::max(step, 1e-6F));
    return mark.distance * step < asked;
}

/// Number of the pole that a row lies on, 0 for none: all points of it are one place.
int pole_of(const Domain& domain, int j) {
    if (domain.proj != PROJ_LATLON) return 0;
    const float lat = domain.clat + (static_cast<float>(j) - static_cast<float>(domain.ny - 1) / 2.0F) * domain.dy;
    return lat > POLE ? 1 : lat < -POLE ? -1 : 0;
}

std::vector<Mark> candidates(const Cont_source& source, const Cont_paper& paper) {
    std::vector<Mark> marks;
    const Glim view = PLT_room_view();
    const int decimals = cont_decimals();
    for (const Cont_extreme& extreme : cont_find_extremes(*source.grid, cont.ext_radius)) {
        Mark mark{extreme, {}, cont_value_text(extreme.value, decimals), 0.0F, static_cast<int>(marks.size())};
        if (cont_is_cut(extreme.value) || !source.position(extreme.i, extreme.j, &mark.pt)) continue;
        if (!bring_inside(&mark, paper, view)) continue;
        mark.distance = cont_extreme_distance(*source.grid, extreme);
        if (!is_noise(mark, cont_paper_step(source, paper, extreme.i, extreme.j))) marks.push_back(mark);
    }
    return marks;
}

void choose(const Cont_source& source, const Cont_paper& paper) {
    std::vector<Mark> marks = candidates(source, paper);
    std::sort(marks.begin(), marks.end(), goes_before);
    std::array<bool, 3> pole_taken{};
    for (const Mark& mark : marks) {
        const int pole = pole_of(source.grid->domain, mark.extreme.j);
        const Glim box = box_of(mark, paper);
        if ((pole != 0 && pole_taken[pole + 1]) || !PLT_room().is_free(box)) continue;
        pole_taken[pole + 1] = true;
        PLT_room().add(box);
        cont_open_gap(letter_box(mark, paper, GAP_MARGIN), paper);
        cont_open_gap(value_box(mark, paper, GAP_MARGIN), paper);
        state.marks.push_back(mark);
    }
    std::sort(state.marks.begin(), state.marks.end(), [](const Mark& a, const Mark& b) { return a.order < b.order; });
}

}  // namespace

void cont_write_mark(const Gpt& pt, bool maximum, const std::string& value) {
    const Gpt below = value_place(pt);
    gset_char_ht(CONT_LETTER_SHARE * cont.text_size);
    cont.text(&pt, maximum ? "H" : "L");
    gset_char_ht(CONT_TEXT_SHARE * cont.text_size);
    cont.text(&below, value);
}

void cont_place_marks(const Cont_source& source, const Cont_paper& paper) {
    state.marks.clear();
    if (cont.ext_radius < 1 || source.grid->domain.nx < 2 || source.grid->domain.ny < 2) return;
    if (!cont_start_labels(cont.scale * cont.vert_size)) return;
    try {
        choose(source, paper);
    } catch (const std::exception&) {
        MESS_print(MESS_WARN, "CONT_draw: Not enough memory for the marks of maxima and minima\n");
    }
}

void cont_write_marks() {
    if (state.marks.empty() || !cont_start_labels(cont.scale * cont.vert_size)) return;
    const Gpt upright{0.0F, 1.0F};
    gset_char_up_vec(&upright);
    for (const Mark& mark : state.marks) cont_write_mark(mark.pt, mark.extreme.maximum, mark.text);
    state.marks.clear();
}

}  // namespace zav
