#pragma once

/// Lines of a plot, put together from the segments of its cells. Private to the contour layer.

#include <cstdint>
#include <vector>

#include "plot/contour/cont_rings.h"

namespace zav {

class Cont_chains {
  public:
    /// A segment of the line at the top of `layer`. `on_points`: both ends are grid points on the level, so that the
    /// cell on its other side may have it too; `below` and `above` tell whether the cell has values below and above the
    /// level.
    struct Segment {
        Cont_vertex from;
        Cont_vertex to;
        int layer;
        bool on_points;
        bool below;
        bool above;
    };
    void add(const Segment& segment) { segments_.push_back(segment); }
    std::size_t size() const { return segments_.size(); }

    /// Draws the lines from the lowest level to the highest, and forgets them.
    void draw(const std::vector<Cont_layer>& layers);

  private:
    using Ends = std::vector<std::uint32_t>;

    void leave_out(float level);
    void draw_line();
    void mate_ends();
    void follow(std::uint32_t end);
    const Cont_vertex& vertex(std::uint32_t end) const;

    std::vector<Segment> segments_;
    std::vector<std::uint32_t> line_;  ///< segments of the level at work
    Ends mates_;                       ///< by ends, two for each segment of line_: the end that each meets
    Ends slots_;                       ///< ends that wait for a mate: a hash table by key
    std::vector<bool> used_;
    std::vector<Gpt> points_;
};

}  // namespace zav
