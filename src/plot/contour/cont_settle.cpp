/// Edges of pieces that meet: two of one layer cancel.

#include <algorithm>

#include "plot/contour/cont_join.h"

namespace zav {
namespace {

/// Edges and segments kept before they are drawn: some 10 and 40 MB.
constexpr std::size_t MOST_EDGES = std::size_t{1} << 18;
constexpr std::size_t MOST_SEGMENTS = std::size_t{1} << 20;

constexpr Cont_key LEVEL_MASK = (Cont_key{1} << 24U) - 1;

}  // namespace

/// Sets the edges on a side of the cell at work against those of its neighbour there.
void Cont_join::settle_side(int side, const Border& border, const Edges& list) {
    Edges& mine = sides_[side];
    if (side == 1 && column_ == 0 && closed_) {
        first_edges_ = mine;
    } else if (border.layer == NOTHING) {
        for (const Edge& edge : mine) stay(edge);
    } else if (border.layer == PIECES) {
        settle(mine, list.data() + border.first, border.count);
    } else {
        // A whole neighbour's side runs the other way than the cell's own.
        Edge edge = whole_side(side, border.layer);
        std::swap(edge.from, edge.to);
        settle(mine, &edge, layers_[border.layer].on ? 1 : 0);
    }
}

void Cont_join::settle(const Edges& mine, const Edge* theirs, std::size_t count) {
    used_.assign(count, false);
    std::size_t expected = 0;  // both cells have their edges in the order of the bands
    for (const Edge& edge : mine) {
        std::size_t k = 0;
        for (; k < count; ++k) {
            const std::size_t at = (expected + k) % count;
            if (!used_[at] && edge.from.key == theirs[at].to.key && edge.to.key == theirs[at].from.key) break;
        }
        if (k == count) {
            stay(edge);
            continue;
        }
        const std::size_t at = (expected + k) % count;
        used_[at] = true;
        expected = at + 1;
        pair(edge, theirs[at]);
    }
    for (std::size_t k = 0; k < count; ++k) {
        if (!used_[k]) stay(theirs[k]);
    }
}

/// Two edges at one place, in opposite directions. Between a layer and the one that is painted over it runs one edge of
/// the latter.
void Cont_join::pair(const Edge& edge, const Edge& other) {
    if (edge.layer == other.layer) return;
    if (cont_layers_joined(layers_[other.layer], layers_[edge.layer])) {
        rings_.add(edge.from, edge.to, edge.layer, false);
    } else if (cont_layers_joined(layers_[edge.layer], layers_[other.layer])) {
        rings_.add(other.from, other.to, other.layer, false);
    } else {
        stay(edge);
        stay(other);
    }
}

void Cont_join::stay(const Edge& edge) { rings_.add(edge.from, edge.to, edge.layer, true); }

void Cont_join::add_segment(Cont_place from, Cont_place to) {
    if (!takes_lines || cont.fill_attrib[cont.con_off].color == CLR_NONE) return;
    Vertex a = vertex(from);
    Vertex b = vertex(to);
    if (a.key == b.key) return;
    Cont_chains::Segment segment{a, b, layer_, false, true, true};
    segment.on_points = (a.key & LEVEL_MASK) == 0 && (b.key & LEVEL_MASK) == 0;
    if (segment.on_points) {
        const Cont_range range = cont_cell_range();
        segment.below = range.low < layers_[layer_].nlevel;
        segment.above = range.high > layers_[layer_].nlevel;
    }
    if (!split_) return chains_.add(segment);
    for (const int way : {-1, 1}) {
        Vertex from_moved = a;
        Vertex to_moved = b;
        turn(&from_moved, way);
        turn(&to_moved, way);
        segment.from = from_moved;
        segment.to = to_moved;
        chains_.add(segment);
    }
}

bool Cont_join::has_many_edges() const { return rings_.size() > MOST_EDGES; }

bool Cont_join::has_many_segments() const { return chains_.size() > MOST_SEGMENTS; }

void Cont_join::draw_areas() { rings_.draw(layers_); }

void Cont_join::draw_lines() { chains_.draw(layers_); }

}  // namespace zav
