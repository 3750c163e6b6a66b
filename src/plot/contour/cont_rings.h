#pragma once

/// Areas of a plot, put together from the edges that stay between its layers. Private to the contour layer.

#include <cstdint>
#include <vector>

#include "gks/gks.h"

namespace zav {

/// Names a point where pieces meet, whatever its position: a grid point, or the crossing of a level with the side
/// between two of them; about the edge of a cyclic map also which of its places.
using Cont_key = std::uint64_t;

struct Cont_vertex {
    Cont_key key;
    Gpt pt;
};

/// A band of the plot. Bands that follow each other in number and are both painted all over are joined: the lower one
/// reaches on under the upper one, so that no background shows between the two.
struct Cont_layer {
    double number = 0.0;
    int con_off = 0;      ///< its band in the set of bands
    int entry = 0;        ///< band with the attributes of the line at its top
    float nlevel = 0.0F;  ///< level of that line
    bool on = false;
    bool solid = false;
};

/// True if `upper` is painted over `lower`.
bool cont_layers_joined(const Cont_layer& lower, const Cont_layer& upper);

/// Start of the search for a key in a hash table of `slots` places, a power of 2.
inline std::size_t cont_slot(Cont_key key, std::size_t slots) {
    constexpr std::uint64_t golden = 0x9E3779B97F4A7C15U;  // 2^64 over the golden ratio
    return (key * golden >> 32U) & (slots - 1);
}

class Cont_rings {
  public:
    /// An edge from a point to the next, with `layer` on its left and on its right the layer below, or with `rim`
    /// nothing that is joined to it.
    void add(const Cont_vertex& from, const Cont_vertex& to, int layer, bool rim);
    std::size_t size() const { return edges_.size(); }

    /// Fills the layers from the lowest to the highest, and forgets them.
    void draw(const std::vector<Cont_layer>& layers);

  private:
    struct Edge {
        Cont_vertex from;
        Cont_vertex to;
        int layer;
        bool rim;
    };
    /// An edge as an outline goes along it, the other way round with `turned`.
    struct Way {
        std::uint32_t edge;
        bool turned;
    };

    void sort_edges(const std::vector<int>& order);
    std::size_t shortest_reach(const std::vector<std::size_t>& tops) const;
    void add_inner(std::size_t r, bool turned);
    void add_rims(std::size_t r);
    void draw_layer(const Cont_layer& layer);
    Cont_vertex start_of(Way way) const;
    Cont_vertex end_of(Way way) const;
    void follow(std::size_t start);
    std::size_t next(std::size_t from, std::size_t start) const;
    void add_point(const Gpt& pt, std::size_t ring_start);
    void end_ring(std::size_t ring_start);

    std::vector<Edge> edges_;
    std::vector<std::uint32_t> sorted_;    ///< edges by layer
    std::vector<std::size_t> starts_;      ///< of each layer there
    std::vector<std::uint32_t> rims_;      ///< the rims among them
    std::vector<std::size_t> rim_starts_;  ///< of each layer there
    std::vector<Way> outline_;             ///< edges of the layer at work
    std::vector<std::uint32_t> slots_;     ///< the same by their first points: a hash table of places in outline_
    std::vector<bool> used_;
    std::vector<Gpt> points_;
    std::vector<Gint> counts_;
};

}  // namespace zav
