/// Gaps in contour lines behind their labels.

#include <algorithm>
#include <cmath>
#include <utility>

#include "plot/contour/cont_texts.h"
#include "plot/page/plt_room.h"

namespace zav {
namespace {

/// Shortest piece between two gaps, in millimetres.
constexpr float SHORTEST = 2.0F;

struct State {
    PLT_boxes gaps;
    Cont_paper paper;
    std::vector<int> near;                        ///< gaps that a segment may meet
    std::vector<std::pair<float, float>> hidden;  ///< parts of a segment within gaps, as fractions of it
    std::vector<Gpt> piece;                       ///< what is drawn on from here
    bool from_gap = false;                        ///< the piece begins at a gap
};
State state;

/// Narrows the part of a segment, as fractions of it, to where one coordinate lies between the limits.
void clip(float from, float to, float low, float high, std::pair<float, float>* part) {
    if (from == to) {
        if (from < low || from > high) part->second = -1.0F;
        return;
    }
    const float a = (low - from) / (to - from);
    const float b = (high - from) / (to - from);
    part->first = std::max(part->first, std::min(a, b));
    part->second = std::min(part->second, std::max(a, b));
}

/// Finds the parts of a segment on paper that lie within gaps.
void find_hidden(const Gpt& a, const Gpt& b) {
    state.hidden.clear();
    state.gaps.near({std::min(a.x, b.x), std::max(a.x, b.x), std::min(a.y, b.y), std::max(a.y, b.y)}, &state.near);
    for (const int number : state.near) {
        const Glim& gap = state.gaps.all()[number];
        std::pair<float, float> part{0.0F, 1.0F};
        clip(a.x, b.x, gap.x_min, gap.x_max, &part);
        clip(a.y, b.y, gap.y_min, gap.y_max, &part);
        if (part.first < part.second) state.hidden.push_back(part);
    }
    std::sort(state.hidden.begin(), state.hidden.end());
}

void send_piece() {
    if (state.piece.size() > 1) cont.polyline(static_cast<Gint>(state.piece.size()), state.piece.data());
    state.piece.clear();
}

float piece_length() {
    float length = 0.0F;
    for (std::size_t k = 1; k < state.piece.size(); ++k) {
        const Gpt a = state.paper.at(state.piece[k - 1]);
        const Gpt b = state.paper.at(state.piece[k]);
        length += std::hypot(b.x - a.x, b.y - a.y);
    }
    return length;
}

/// Ends the piece at a gap. A stub between two texts would be read as a minus.
void end_piece() {
    if (state.from_gap && piece_length() < SHORTEST) state.piece.clear();
    send_piece();
    state.from_gap = true;
}

Gpt between(const Gpt& a, const Gpt& b, float d) { return {a.x + (b.x - a.x) * d, a.y + (b.y - a.y) * d}; }

/// Goes on from the point reached to `b`; the piece at work is empty within a gap.
void draw_segment(const Gpt& a, const Gpt& b) {
    float done = 0.0F;
    for (const auto& [first, last] : state.hidden) {
        if (first > done) {
            if (state.piece.empty()) state.piece.push_back(between(a, b, done));
            state.piece.push_back(between(a, b, first));
        }
        end_piece();
        done = std::max(done, last);
    }
    if (done >= 1.0F) return;
    if (state.piece.empty()) state.piece.push_back(between(a, b, done));
    state.piece.push_back(b);
}

}  // namespace

void cont_close_gaps() { state.gaps.clear(); }

void cont_open_gap(const Glim& box, const Cont_paper& paper) {
    state.gaps.add(box);
    state.paper = paper;
}

int cont_open_line(Gint num_pt, const Gpt* pts) {
    if (state.gaps.all().empty()) return cont.polyline(num_pt, pts);
    state.piece.clear();
    state.from_gap = false;
    for (Gint i = 1; i < num_pt; ++i) {
        find_hidden(state.paper.at(pts[i - 1]), state.paper.at(pts[i]));
        draw_segment(pts[i - 1], pts[i]);
    }
    send_piece();
    return 0;
}

}  // namespace zav
