#pragma once

/// What the cells of a plot draw piece by piece becomes whole areas and lines. Private to the contour layer.

#include <array>
#include <cstdint>
#include <limits>
#include <unordered_map>
#include <vector>

#include "plot/contour/cont_cell.h"
#include "plot/contour/cont_chains.h"
#include "plot/contour/cont_rings.h"
#include "plot/contour/cont_state.h"

namespace zav {

/// Takes the pieces of cells, which come row by row from the top and from left to right in a row. Edges that two pieces
/// of one band share cancel; what remains goes to the rings and chains.
class Cont_join {
  public:
    /// `columns` cells in each row.
    Cont_join(const GRD_report& grid, int columns);

    // Called by the walk over the cells, for each cell of a row.

    void start_row(int j);
    /// Keeps out a cell that isn't drawn.
    void skip_cell(int i);
    /// The cell is loaded; the engine's pieces of it follow.
    void start_cell(int i, bool split);
    void end_cell();
    /// Draws the cell as one piece of the layer, without the engine.
    void whole_cell(int i, int layer);
    /// Whether the cells above and to the left are whole and of this layer, so that none of their edges stays.
    bool lies_within(int i, int layer) const { return above_[i].layer == layer && left_.layer == layer; }
    /// Notes such a cell.
    void put_within(int i, int layer) { below_[i] = {layer, 0, 0}; }
    void end_row();
    /// No cells follow below.
    void end_strip();

    // Called by the engine.

    /// The pass of band number `number` begins; `con_off` is its band, `entry` the one with the attributes of its line
    /// at `nlevel`.
    void start_pass(double number, int entry, float nlevel);
    /// What is evaluated next is the top of the band, or one of the ends of the levels.
    enum Level { TOP, CUT, FIRST };
    void set_level(Level level);
    void pass_to_lower();
    void add_piece(const Cont_place* places, int count);
    void add_segment(Cont_place from, Cont_place to);

    /// Layer of the pass at work.
    int layer() const { return layer_; }

    bool has_many_edges() const;
    bool has_many_segments() const;
    /// Draws what was joined, and forgets it: the areas from the lowest layer to the highest, the lines.
    void draw_areas();
    void draw_lines();

    /// True while lines are taken.
    bool takes_lines = true;

  private:
    /// A directed edge of a piece, with the piece on its left.
    struct Edge {
        Cont_vertex from;
        Cont_vertex to;
        int layer;
    };
    /// What a cell has on one side: the whole side in one layer, or edges in a list from `first` on.
    struct Border {
        int layer;
        std::size_t first;
        std::size_t count;
    };
    struct Known {
        double number = std::numeric_limits<double>::quiet_NaN();
        int layer = 0;
    };
    static constexpr int NOTHING = -1;  ///< the cell isn't drawn
    static constexpr int PIECES = -2;
    using Edges = std::vector<Edge>;

    /// A vertex with its place on the way round the cell, 0 to 4 counter-clockwise from corner 0, and the sides that it
    /// lies on.
    struct Vertex : Cont_vertex {
        float way;
        unsigned sides;
    };

    Vertex vertex(Cont_place place) const;
    Vertex corner(int number) const;
    Vertex crossing(int side, float d, int level, const Gpt& pt) const;
    Cont_key key(int column, int row, unsigned kind, int level) const;
    void add_edges(Vertex* vertices, int count);
    void add_inner(const Edge& edge);
    void add_side(int side, const Edge& edge);
    /// The place of a vertex at the right (`turn` 1) or left (-1) edge of a cyclic map.
    void turn(Vertex* vertex, int turn) const;

    /// Edges that look at each other across a side.
    void settle(const Edges& mine, const Edge* theirs, std::size_t count);
    void settle_side(int side, const Border& border, const Edges& list);
    void pair(const Edge& edge, const Edge& other);
    void stay(const Edge& edge);
    bool is_closed() const;
    Edge whole_side(int side, int layer) const;

    const GRD_report& grid_;
    int columns_;
    int row_ = 0;
    int column_ = 0;
    bool split_ = false;  ///< the cell lies about the edge of a cyclic map
    int layer_ = 0;
    int level_ = 0;        ///< name of the upper level
    int lower_level_ = 0;  ///< and of the lower one
    std::array<float, 4> lower_dz_{};
    std::vector<Cont_layer> layers_;
    std::unordered_map<double, int> layer_of_;  ///< by the number of the band
    std::array<Known, 64> known_;               ///< those looked for last
    Edges inner_;                               ///< edges within the cell that wait for the next band's
    std::array<Edges, 4> sides_;                ///< edges of the cell on its sides
    Border left_{NOTHING, 0, 0};
    Edges left_edges_;
    bool closed_;                ///< the last column of points lies on the first
    Edges first_edges_;          ///< left side of the first cell of a closed row
    std::vector<Border> above_;  ///< lower sides of the row above
    std::vector<Border> below_;  ///< and of the row at work
    Edges above_edges_;
    Edges below_edges_;
    std::vector<bool> used_;
    Cont_rings rings_;
    Cont_chains chains_;
};

/// Walks over all cells of the grid and draws what they give as whole areas and lines.
void cont_scan_joined(const GRD_report& grid, const Cont_scan& scan);

}  // namespace zav
