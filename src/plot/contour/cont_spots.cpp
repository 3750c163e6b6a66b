/// Places on contour lines where a label may stand, found by following the lines a little way over paper.

#include <algorithm>
#include <cmath>

#include "plot/contour/cont_texts.h"
#include "plot/page/plt_room.h"

namespace zav {
namespace {

constexpr float SPOT_DISTANCE = 4.0F;  ///< of the grid's rows and columns that are looked at, in millimetres
constexpr float FAR = 40.0F;           ///< a line that seems to go on beyond this crosses the edge of a cyclic map
/// Levels between two neighbours, above which their lines are too close for labels.
constexpr std::size_t MOST_LEVELS = 3;
/// Cells that a line is followed through.
constexpr int MOST_CELLS = 2000;
/// Length of line beyond the label's ends that has to be straight too, in millimetres.
constexpr float BEYOND = 1.0F;

/// Side of the neighbour that a line comes in by when it leaves by a side, and where that neighbour lies.
struct Way_on {
    int side;
    int across;
    int up;
};
constexpr std::array<Way_on, 4> WAY_ON{{{2, 0, -1}, {3, -1, 0}, {0, 0, 1}, {1, 1, 0}}};

class Spot_search {
  public:
    Spot_search(const GRD_report& grid, const Cont_paper& paper, bool (*is_free)(const Cont_spot&, const Cont_paper&),
                std::vector<Cont_spot>* spots)
        : grid_(grid), paper_(paper), is_free_(is_free), spots_(spots), levels_(cont_label_levels()) {
        view_ = PLT_room_view();
        nx_ = grid.domain.nx;
        ny_ = grid.domain.ny;
    }

    void search(int stride) {
        for (int j = stride / 2; j < ny_; j += stride) {
            for (int i = 0; i + 1 < nx_; ++i) look_between(i, j, i + 1, j);
        }
        for (int i = stride / 2; i < nx_; i += stride) {
            for (int j = 0; j + 1 < ny_; ++j) look_between(i, j, i, j + 1);
        }
    }

  private:
    /// Labels the levels between two neighbours in a row or column.
    void look_between(int i1, int j1, int i2, int j2) {
        const float z1 = cont_value_at(grid_, i1, j1);
        const float z2 = cont_value_at(grid_, i2, j2);
        Gpt a;
        if (z1 == z2 || cont_is_missing(z1) || cont_is_missing(z2) || !cont_position(grid_, i1, j1, &a)) return;
        const Gpt mm = paper_.at(a);
        if (!PLT_box_inside({mm.x, mm.x, mm.y, mm.y}, view_)) return;
        levels_.within({std::min(z1, z2), std::max(z1, z2)}, MOST_LEVELS, &found_);
        if (found_.size() > MOST_LEVELS) return;
        for (const Cont_labelled& label : found_) {
            if (is_between(z1, z2, label.level)) look_at(label, i1, j1, j1 == j2 ? 0 : 1);
        }
    }

    static bool is_between(float z1, float z2, float level) { return (z1 < level) != (z2 < level); }

    /// A spot on side `side` (0 bottom, 1 left) of the cell at (`i`, `j`), where the line is followed both ways.
    void look_at(const Cont_labelled& label, int i, int j, int side) {
        const Way_on& back = WAY_ON[side];
        int column = i;
        int row = j;
        int way_in = side;
        if (!load(column, row)) {
            column += back.across;
            row += back.up;
            way_in = back.side;
            if (!load(column, row)) return;
        }
        Cont_spot spot{label, crossing(way_in, label.level), false, 0.0F};
        if (!is_free_(spot, paper_)) return;
        const float reach = cont_label_half(label, false, paper_).x + BEYOND;
        const Gpt at = paper_.at(spot.pt);
        const Gpt ahead = follow(i, j, side, label.level, at, reach);
        const Gpt behind = follow(i + back.across, j + back.up, back.side, label.level, at, reach);
        const Gpt chord{ahead.x - behind.x, ahead.y - behind.y};
        spot.steep = std::fabs(chord.y) > std::fabs(chord.x);
        spot.bend = 1.0F - std::hypot(chord.x, chord.y) / (2.0F * reach);
        spots_->push_back(spot);
    }

    /// Takes a cell to work. False outside of the grid, and for one that has no lines.
    bool load(int i, int j) const {
        if (i < 0 || j < 0 || i + 1 >= nx_ || j + 1 >= ny_) return false;
        cont_load_cell(grid_, i, j);
        return cont_cell_complete();
    }

    static Gpt crossing(int side, float level) {
        const float z1 = cont.z[CONT_SIDES[side].first];
        const float z2 = cont.z[CONT_SIDES[side].second];
        return cont_side_point(side, (level - z1) / (z2 - z1));
    }

    /// The point on paper `reach` millimetres along the line from `at`, or where it ends, in the cell that it comes
    /// into by `side`.
    Gpt follow(int i, int j, int side, float level, Gpt at, float reach) const {
        for (int n = 0; n < MOST_CELLS && load(i, j); ++n) {
            const int out = way_out(side, level, at);
            if (out < 0) break;
            const Gpt next = paper_.at(crossing(out, level));
            const float length = std::hypot(next.x - at.x, next.y - at.y);
            if (length > FAR) break;
            if (length >= reach) {
                const float share = reach / length;
                return {at.x + (next.x - at.x) * share, at.y + (next.y - at.y) * share};
            }
            reach -= length;
            at = next;
            i += WAY_ON[out].across;
            j += WAY_ON[out].up;
            side = WAY_ON[out].side;
        }
        return at;
    }

    /// The side by which a line leaves the cell at work, the nearest of three; -1 for none.
    int way_out(int side, float level, const Gpt& from) const {
        int out = -1;
        float nearest = 0.0F;
        for (int other = 0; other < 4; ++other) {
            const auto [a, b] = CONT_SIDES[other];
            if (other == side || !is_between(cont.z[a], cont.z[b], level)) continue;
            const Gpt to = paper_.at(crossing(other, level));
            const float distance = std::hypot(to.x - from.x, to.y - from.y);
            if (out < 0 || distance < nearest) {
                out = other;
                nearest = distance;
            }
        }
        return out;
    }

    const GRD_report& grid_;
    const Cont_paper& paper_;
    bool (*is_free_)(const Cont_spot&, const Cont_paper&);
    std::vector<Cont_spot>* spots_;
    Cont_label_levels levels_;
    std::vector<Cont_labelled> found_;
    Glim view_;
    int nx_ = 0;
    int ny_ = 0;
};

}  // namespace

void cont_line_spots(const GRD_report& grid, const Cont_paper& paper, float step,
                     bool (*is_free)(const Cont_spot&, const Cont_paper&), std::vector<Cont_spot>* spots) {
    const float stride = std::clamp(SPOT_DISTANCE / std::max(step, 1e-6F), 1.0F, 1e6F);
    Spot_search(grid, paper, is_free, spots).search(static_cast<int>(stride));
}

}  // namespace zav
