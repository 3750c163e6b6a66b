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
    edges_.push_back({from, to, layer, rim});
}

void Cont_rings::draw(const std::vector<Cont_layer>& layers) {
    std::vector<int> order(layers.size());
    std::iota(order.begin(), order.end(), 0);
    std::sort(order.begin(), order.end(), [&](int a, int b) { return layers[a].number < layers[b].number; });
    sort_edges(order);
    // The last of the layers joined to each, one upon the other.
    std::vector<std::size_t> tops(order.size());
    for (std::size_t r = order.size(); r-- > 0;) {
        const bool goes_on = r + 1 < order.size() && cont_layers_joined(layers[order[r]], layers[order[r + 1]]);
        tops[r] = goes_on ? tops[r + 1] : r;
    }
    const std::size_t reach = shortest_reach(tops);
    for (std::size_t r = 0; r < order.size(); ++r) {
        outline_.clear();
        const std::size_t top = std::min(tops[r], reach > tops[r] - r ? tops[r] : r + reach);
        add_inner(r, false);
        for (std::size_t above = r; above <= top; ++above) add_rims(above);
        if (top < tops[r]) add_inner(top + 1, true);
        draw_layer(layers[order[r]]);
    }
    edges_.clear();
}

/// How far layers reach on under those above them: all the way, or to the next where that takes fewer edges, as about
/// ragged gaps in the field, whose rims all the layers repeat.
std::size_t Cont_rings::shortest_reach(const std::vector<std::size_t>& tops) const {
    std::size_t all = 0;
    std::size_t next = 0;
    const auto rims = [&](std::size_t r) { return rim_starts_[r + 1] - rim_starts_[r]; };
    std::size_t below = 0;  // layers joined below this one
    for (std::size_t r = 0; r < tops.size(); ++r) {
        below = r > 0 && tops[r - 1] == tops[r] ? below + 1 : 0;
        const std::size_t inner = starts_[r + 1] - starts_[r] - rims(r);
        all += inner + rims(r) * (below + 1);
        next += 2 * inner + rims(r) * (below > 0 ? 2 : 1);
    }
    return all <= next ? NONE : 1;
}

void Cont_rings::add_inner(std::size_t r, bool turned) {
    for (std::size_t i = starts_[r]; i < starts_[r + 1]; ++i) {
        if (!edges_[sorted_[i]].rim) outline_.push_back({sorted_[i], turned});
    }
}

void Cont_rings::add_rims(std::size_t r) {
    for (std::size_t i = rim_starts_[r]; i < rim_starts_[r + 1]; ++i) outline_.push_back({rims_[i], false});
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
        std::size_t slot = cont_slot(start_of(outline_[i]).key, slots_.size());
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
    gset_fill_int_style(GSOLID);
    cont_set_fill_attributes();
    cont.fill_rings(static_cast<Gint>(counts_.size()), counts_.data(), points_.data());
}

Cont_vertex Cont_rings::start_of(Way way) const {
    const Edge& edge = edges_[way.edge];
    return way.turned ? edge.to : edge.from;
}

Cont_vertex Cont_rings::end_of(Way way) const { return start_of({way.edge, !way.turned}); }

/// The ring that an edge is part of.
void Cont_rings::follow(std::size_t start) {
    const std::size_t ring_start = points_.size();
    std::size_t i = start;
    do {
        used_[i] = true;
        add_point(start_of(outline_[i]).pt, ring_start);
        i = next(i, start);
    } while (i != start && i != NONE);
    end_ring(ring_start);
}

/// The edge that goes on from the end of edge `from`, or `start`, which closes the ring. Where rings touch, the one
/// most to the left, so that they don't cross.
std::size_t Cont_rings::next(std::size_t from, std::size_t start) const {
    const Cont_vertex end = end_of(outline_[from]);
    const auto turn = [&](std::size_t i) {
        return turn_of(start_of(outline_[from]).pt, end.pt, end_of(outline_[i]).pt);
    };
    std::size_t best = NONE;
    for (std::size_t slot = cont_slot(end.key, slots_.size()); slots_[slot] != EMPTY;
         slot = (slot + 1) & (slots_.size() - 1)) {
        const std::uint32_t i = slots_[slot];
        if (start_of(outline_[i]).key != end.key || (used_[i] && i != start)) continue;
        if (best == NONE || turn(i) > turn(best)) best = i;
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
