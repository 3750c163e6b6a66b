/// Areas from edges.

#include "plot/contour/cont_rings.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <numeric>

#include "plot/contour/cont_state.h"

namespace zav {
namespace {

constexpr std::uint32_t EMPTY = 0xFFFFFFFFU;
constexpr std::size_t NONE = ~std::size_t{0};

/// Angle by which a way turns to the left, -pi to pi.
double turn_of(const Gpt& a, const Gpt& b, const Gpt& c) {
    const double ux = static_cast<double>(b.x) - a.x;
    const double uy = static_cast<double>(b.y) - a.y;
    const double vx = static_cast<double>(c.x) - b.x;
    const double vy = static_cast<double>(c.y) - b.y;
    return std::atan2(ux * vy - uy * vx, ux * vx + uy * vy);
}

/// True if `b` lies on the straight way from `a` to `c`, exactly.
bool is_straight(const Gpt& a, const Gpt& b, const Gpt& c) {
    const double ux = static_cast<double>(b.x) - a.x;
    const double uy = static_cast<double>(b.y) - a.y;
    const double vx = static_cast<double>(c.x) - b.x;
    const double vy = static_cast<double>(c.y) - b.y;
    return ux * vy == uy * vx && ux * vx + uy * vy >= 0.0;
}

}  // namespace

bool cont_layers_joined(const Cont_layer& lower, const Cont_layer& upper) {
    return lower.number + 1.0 == upper.number && lower.on && upper.on && lower.solid && upper.solid;
}

void Cont_rings::add(const Cont_vertex& from, const Cont_vertex& to, int layer, bool rim) {
    edges_.push_back({from.key, to.key, from.pt, to.pt, layer, rim});
}

void Cont_rings::draw(const std::vector<Cont_layer>& layers) {
    std::vector<int> order(layers.size());
    std::iota(order.begin(), order.end(), 0);
    std::sort(order.begin(), order.end(), [&](int a, int b) { return layers[a].number < layers[b].number; });
    sort_edges(order);
    for (std::size_t r = 0; r < order.size(); ++r) {
        outline_.clear();
        for (std::size_t i = starts_[r]; i < starts_[r + 1]; ++i) {
            if (!edges_[sorted_[i]].rim) outline_.push_back(sorted_[i]);
        }
        // A rim is one of all joined layers below its own, too.
        for (std::size_t top = r; top < order.size(); ++top) {
            if (top > r && !cont_layers_joined(layers[order[top - 1]], layers[order[top]])) break;
            const auto first = rims_.begin() + static_cast<std::ptrdiff_t>(rim_starts_[top]);
            outline_.insert(outline_.end(), first, rims_.begin() + static_cast<std::ptrdiff_t>(rim_starts_[top + 1]));
        }
        draw_layer(layers[order[r]]);
    }
    edges_.clear();
}

/// The edges by their layers in order, and among them the rims.
void Cont_rings::sort_edges(const std::vector<int>& order) {
    std::vector<std::size_t> rank(order.size());
    for (std::size_t r = 0; r < order.size(); ++r) rank[static_cast<std::size_t>(order[r])] = r;
    const auto rank_of = [&](const Edge& edge) { return rank[static_cast<std::size_t>(edge.layer)]; };
    starts_.assign(order.size() + 1, 0);
    for (const Edge& edge : edges_) ++starts_[rank_of(edge) + 1];
    std::partial_sum(starts_.begin(), starts_.end(), starts_.begin());
    std::vector<std::size_t> place = starts_;
    sorted_.resize(edges_.size());
    for (std::uint32_t e = 0; e < edges_.size(); ++e) sorted_[place[rank_of(edges_[e])]++] = e;
    rims_.clear();
    rim_starts_.assign(1, 0);
    for (std::size_t r = 0; r < order.size(); ++r) {
        for (std::size_t i = starts_[r]; i < starts_[r + 1]; ++i) {
            if (edges_[sorted_[i]].rim) rims_.push_back(sorted_[i]);
        }
        rim_starts_.push_back(rims_.size());
    }
}

void Cont_rings::draw_layer(const Cont_layer& layer) {
    if (outline_.empty()) return;
    slots_.assign(std::bit_ceil(2 * outline_.size()), EMPTY);
    used_.assign(outline_.size(), false);
    for (std::uint32_t i = 0; i < outline_.size(); ++i) {
        std::size_t slot = cont_slot(edges_[outline_[i]].from, slots_.size());
        while (slots_[slot] != EMPTY) slot = (slot + 1) & (slots_.size() - 1);
        slots_[slot] = i;
    }
    points_.clear();
    counts_.clear();
    for (std::size_t i = 0; i < outline_.size(); ++i) {
        if (!used_[i]) follow(i);
    }
    if (counts_.empty()) return;
    cont.con_off = layer.con_off;
    cont_set_fill_attributes();
    cont.fill_rings(static_cast<Gint>(counts_.size()), counts_.data(), points_.data());
}

/// The ring that an edge is part of.
void Cont_rings::follow(std::size_t start) {
    const std::size_t ring_start = points_.size();
    std::size_t i = start;
    do {
        used_[i] = true;
        add_point(edges_[outline_[i]].at, ring_start);
        i = next(i, start);
    } while (i != start && i != NONE);
    end_ring(ring_start);
}

/// The edge that goes on from the end of edge `from`, or `start`, which closes the ring. Where rings touch, the one
/// most to the left, so that they don't cross.
std::size_t Cont_rings::next(std::size_t from, std::size_t start) const {
    const Edge& edge = edges_[outline_[from]];
    std::size_t best = NONE;
    double most = 0.0;
    for (std::size_t slot = cont_slot(edge.to, slots_.size()); slots_[slot] != EMPTY;
         slot = (slot + 1) & (slots_.size() - 1)) {
        const std::uint32_t i = slots_[slot];
        const Edge& candidate = edges_[outline_[i]];
        if (candidate.from != edge.to || (used_[i] && i != start)) continue;
        if (best == NONE) {
            best = i;
            continue;
        }
        if (most == 0.0) most = turn_of(edge.at, edge.end, edges_[outline_[best]].end);
        const double turn = turn_of(edge.at, edge.end, candidate.end);
        if (turn <= most) continue;
        best = i;
        most = turn;
    }
    return best;
}

/// Adds a point to the ring at work; one on a straight line with its neighbours takes the place of the one before.
void Cont_rings::add_point(const Gpt& pt, std::size_t ring_start) {
    const std::size_t count = points_.size();
    if (count >= ring_start + 2 && is_straight(points_[count - 2], points_[count - 1], pt)) {
        points_.back() = pt;
    } else {
        points_.push_back(pt);
    }
}

void Cont_rings::end_ring(std::size_t ring_start) {
    const std::size_t count = points_.size() - ring_start;
    if (count < 3) {
        points_.resize(ring_start);
    } else {
        counts_.push_back(static_cast<Gint>(count));
    }
}

}  // namespace zav
