/// The pieces of cells, and what of their edges stays.

#include "plot/contour/cont_join.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "gks/gks_colr.h"

namespace zav {
namespace {

/// Names of levels that aren't the top of a layer.
constexpr int NO_LEVEL = 0;
constexpr int CUT_LEVEL = 1;
constexpr int FIRST_LEVEL = 2;
constexpr int OTHER_LEVELS = 3;

/// What a key names beside its grid point.
enum : unsigned { POINT, RIGHT_OF_IT, ABOVE_IT };

/// Sides that a corner lies on, and its place on the way round.
struct Corner {
    unsigned sides;
    float way;
};
constexpr std::array<Corner, 4> CORNERS{{{0b0011, 0}, {0b1001, 1}, {0b0110, 3}, {0b1100, 2}}};

}  // namespace

Cont_join::Cont_join(const GRD_report& grid, int columns) : grid_(grid), columns_(columns), closed_(is_closed()) {
    above_.assign(static_cast<std::size_t>(columns), {NOTHING, 0, 0});
    below_ = above_;
}

/// True for a grid laid round a pole, whose last column of points is the first one again.
bool Cont_join::is_closed() const {
    const auto nx = static_cast<std::size_t>(grid_.domain.nx);
    if (nx < 3 || cont.grdx.size() < nx) return false;
    constexpr float same_place = 1e-4F;  // map units of some 100 km
    bool any = false;
    for (std::size_t first = 0; first + nx <= cont.grdx.size(); first += nx) {
        const std::size_t last = first + nx - 1;
        if (cont.grdx[first] == FMISS && cont.grdx[last] == FMISS) continue;
        any = true;
        if (std::fabs(cont.grdx[first] - cont.grdx[last]) > same_place) return false;
        if (std::fabs(cont.grdy[first] - cont.grdy[last]) > same_place) return false;
        if (grid_.grid[first] != grid_.grid[last]) return false;
    }
    return any;
}

// Vertices.

Cont_key Cont_join::key(int column, int row, unsigned kind, int level) const {
    constexpr unsigned level_bits = 24;
    const auto stride = static_cast<std::uint64_t>(grid_.domain.nx);
    const auto in_row = static_cast<std::uint64_t>(closed_ && column == columns_ ? 0 : column);
    const std::uint64_t point = static_cast<std::uint64_t>(row) * stride + in_row;
    return ((point * 3 + kind) * 3 + 1) << level_bits | static_cast<std::uint64_t>(level);
}

Cont_join::Vertex Cont_join::corner(int number) const {
    const Cont_key name = key(column_ + number % 2, row_ + number / 2, POINT, NO_LEVEL);
    return {{name, cont_corner(number)}, CORNERS[number].way, CORNERS[number].sides};
}

/// The crossing on a side at fraction `d`; at its ends it is the corner.
Cont_join::Vertex Cont_join::crossing(int side, float d, int level, const Gpt& pt) const {
    if (d == 0.0F) return corner(CONT_SIDES[side].first);
    if (d == 1.0F) return corner(CONT_SIDES[side].second);
    const unsigned mask = 1U << static_cast<unsigned>(side);
    switch (side) {
        case 0:
            return {{key(column_, row_, RIGHT_OF_IT, level), pt}, d, mask};
        case 1:
            return {{key(column_, row_, ABOVE_IT, level), pt}, 4.0F - d, mask};
        case 2:
            return {{key(column_, row_ + 1, RIGHT_OF_IT, level), pt}, 3.0F - d, mask};
        default:
            return {{key(column_ + 1, row_, ABOVE_IT, level), pt}, 1.0F + d, mask};
    }
}

Cont_join::Vertex Cont_join::vertex(Cont_place place) const {
    const int side = place.number;
    switch (place.kind) {
        case Cont_place::UPPER:
            return crossing(side, cont.dz[side], level_, cont.at[side]);
        case Cont_place::LOWER:
            return crossing(side, lower_dz_[side], lower_level_, cont.pt[LOWER + side]);
        default:
            return corner(side);
    }
}

void Cont_join::turn(Vertex* vertex, int turn) const {
    constexpr Cont_key one_turn = Cont_key{1} << 24U;
    const float moved = cont_turned(vertex->pt, turn);
    if (moved == vertex->pt.x) return;
    vertex->pt.x = moved;
    vertex->key += turn > 0 ? one_turn : -one_turn;
}

// Cells.

void Cont_join::start_row(int j) {
    row_ = j;
    left_ = {NOTHING, 0, 0};
    left_edges_.clear();
    first_edges_.clear();
    below_edges_.clear();
}

void Cont_join::start_cell(int i, bool split) {
    column_ = i;
    split_ = split;
    inner_.clear();
    for (Edges& side : sides_) side.clear();
}

void Cont_join::start_pass(double number, int entry, float nlevel) {
    constexpr double largest = 1e15;
    const bool large = !(std::fabs(number) < largest);
    Known& known = known_[large ? 0 : static_cast<std::size_t>(static_cast<std::int64_t>(number)) % known_.size()];
    if (known.number != number) {
        const auto [place, is_new] = layer_of_.emplace(number, static_cast<int>(layers_.size()));
        known = {number, place->second};
        if (is_new) {
            const Gattribs& band = cont.fill_attrib[cont.con_off];
            const int pattern = band.fill_pat >= 0 ? band.fill_pat : cont.ln_cont_attr.fill_pat;
            layers_.push_back({number, cont.con_off, entry, nlevel, band.color != CLR_NONE, pattern <= 0});
        }
    }
    layer_ = known.layer;
}

void Cont_join::set_level(Level level) {
    constexpr std::array<int, 3> names{0, CUT_LEVEL, FIRST_LEVEL};
    level_ = level == TOP ? OTHER_LEVELS + layer_ : names[level];
}

void Cont_join::pass_to_lower() {
    lower_dz_ = cont.dz;
    lower_level_ = level_;
}

void Cont_join::add_piece(const Cont_place* places, int count) {
    if (!layers_[layer_].on) return;
    std::array<Vertex, CONT_VERTICES> vertices;
    for (int k = 0; k < count; ++k) vertices[k] = vertex(places[k]);
    if (!split_) return add_edges(vertices.data(), count);
    for (const int way : {-1, 1}) {
        std::array<Vertex, CONT_VERTICES> moved = vertices;
        for (int k = 0; k < count; ++k) turn(&moved[k], way);
        add_edges(moved.data(), count);
    }
}

/// Adds the sides of a polygon, with it on their left. Points that follow each other at one place are one.
void Cont_join::add_edges(Vertex* vertices, int count) {
    Vertex* const end =
        std::unique(vertices, vertices + count, [](const Vertex& a, const Vertex& b) { return a.key == b.key; });
    count = static_cast<int>(end - vertices);
    while (count > 1 && vertices[count - 1].key == vertices[0].key) --count;
    if (count < 3) return;
    int rises = 0;
    for (int k = 0; k < count; ++k) {
        const float step = vertices[(k + 1) % count].way - vertices[k].way;
        rises += (step > 0.0F) - (step < 0.0F);
    }
    if (rises < 0) std::reverse(vertices, vertices + count);
    for (int k = 0; k < count; ++k) {
        const Vertex& from = vertices[k];
        const Vertex& to = vertices[(k + 1) % count];
        const Edge edge{from, to, layer_};
        const unsigned common = from.sides & to.sides;
        if (common == 0) {
            add_inner(edge);
        } else {
            add_side(std::countr_zero(common), edge);
        }
    }
}

namespace {

template <typename Edge>
bool are_opposite(const Edge& a, const Edge& b) {
    return a.from.key == b.to.key && a.to.key == b.from.key;
}

}  // namespace

/// An edge within the cell: that of the band below, which lies there already, is the same the other way round.
void Cont_join::add_inner(const Edge& edge) {
    for (std::size_t k = inner_.size(); k-- > 0;) {
        if (!are_opposite(inner_[k], edge)) continue;
        pair(edge, inner_[k]);
        inner_.erase(inner_.begin() + static_cast<std::ptrdiff_t>(k));
        return;
    }
    inner_.push_back(edge);
}

void Cont_join::add_side(int side, const Edge& edge) {
    Edges& edges = sides_[side];
    if (!edges.empty() && are_opposite(edges.back(), edge)) {
        pair(edge, edges.back());
        edges.pop_back();
    } else {
        edges.push_back(edge);
    }
}

void Cont_join::end_cell() {
    for (const Edge& edge : inner_) stay(edge);
    settle_side(2, above_[column_], above_edges_);
    settle_side(1, left_, left_edges_);
    left_edges_.swap(sides_[3]);
    left_ = {PIECES, 0, left_edges_.size()};
    below_[column_] = {PIECES, below_edges_.size(), sides_[0].size()};
    below_edges_.insert(below_edges_.end(), sides_[0].begin(), sides_[0].end());
}

void Cont_join::skip_cell(int i) {
    below_[i] = {NOTHING, 0, 0};
    if (above_[i].layer == NOTHING && left_.layer == NOTHING) return;
    cont_load_cell(grid_, i, row_);
    column_ = i;
    for (Edges& side : sides_) side.clear();
    settle_side(2, above_[i], above_edges_);
    settle_side(1, left_, left_edges_);
    left_ = {NOTHING, 0, 0};
}

void Cont_join::whole_cell(int i, int layer) {
    cont_load_cell(grid_, i, row_);
    column_ = i;
    for (const int side : {1, 2}) {
        sides_[side].clear();
        if (layers_[layer].on) sides_[side].push_back(whole_side(side, layer));
    }
    if (above_[i].layer != layer) settle_side(2, above_[i], above_edges_);
    if (left_.layer != layer) settle_side(1, left_, left_edges_);
    left_ = below_[i] = {layer, 0, 0};
}

void Cont_join::end_row() {
    // The right side of the last cell looks at nothing, or at the first cell.
    column_ = columns_ - 1;
    if (left_.layer != PIECES) left_edges_.clear();
    if (left_.layer >= 0 && layers_[left_.layer].on) {
        cont_load_cell(grid_, column_, row_);
        left_edges_.push_back(whole_side(3, left_.layer));
    }
    settle(first_edges_, left_edges_.data(), left_edges_.size());
    above_.swap(below_);
    above_edges_.swap(below_edges_);
}

void Cont_join::end_strip() {
    for (int i = 0; i < columns_; ++i) {
        const Border& border = above_[i];
        column_ = i;
        if (border.layer >= 0 && layers_[border.layer].on) {
            cont_load_cell(grid_, i, row_);
            stay(whole_side(0, border.layer));
        } else if (border.layer == PIECES) {
            for (std::size_t k = 0; k < border.count; ++k) stay(above_edges_[border.first + k]);
        }
        above_[i] = {NOTHING, 0, 0};
    }
}

/// A side of a whole cell, with the cell on its left.
Cont_join::Edge Cont_join::whole_side(int side, int layer) const {
    constexpr std::array<std::array<int, 2>, 4> way{{{0, 1}, {2, 0}, {3, 2}, {1, 3}}};
    return {corner(way[side][0]), corner(way[side][1]), layer};
}

}  // namespace zav
