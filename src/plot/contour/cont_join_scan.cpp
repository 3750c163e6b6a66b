/// The walk over the cells of a plot whose areas and lines are joined. Most cells lie in one band, or have no line:
/// runs of them are gone through by their values alone.

#include <algorithm>
#include <cmath>

#include "plot/background/map.h"
#include "plot/contour/cont_join.h"

namespace zav {
namespace {

class Walk {
  public:
    Walk(const GRD_report& grid, const Cont_scan& scan);
    void all_rows();

  private:
    void row(int j);
    void cell(int i);
    int run(int i);
    bool is_alike(int i) const;
    bool is_placed(int i) const;
    bool is_outside(int i) const { return (beyond(i) & beyond(i + 1)) != 0; }
    unsigned beyond(int i) const;
    void end_strip(int j);

    const GRD_report& grid_;
    Cont_scan scan_;
    int columns_;  ///< cells in a row
    Cont_join join_;
    bool filled_ = cont_is_filled();
    Cont_edge_limits edge_ = cont_edge_limits();
    Glim window_{};           ///< of the map
    bool in_window_ = false;  ///< cells outside of it are left out
    int row_ = 0;
    std::size_t upper_ = 0;  ///< index of the first grid point on the upper side of the row, and on the lower
    std::size_t lower_ = 0;
    Cont_run run_;
    int run_layer_ = 0;
};

Walk::Walk(const GRD_report& grid, const Cont_scan& scan)
    : grid_(grid), scan_(scan), columns_(grid.domain.nx - 1), join_(grid, columns_) {
    if (cont.grdx.empty() || MAP_get_window(&window_) != 0) return;
    in_window_ = window_.x_min < window_.x_max && window_.y_min < window_.y_max;
}

void Walk::all_rows() {
    cont.join = &join_;
    for (int j = grid_.domain.ny - 2; j >= 0; --j) {
        row(j);
        if (j > 0 && (join_.has_many_edges() || join_.has_many_segments())) end_strip(j);
    }
    join_.end_strip();
    join_.draw_areas();
    join_.draw_lines();
    cont.join = nullptr;
}

/// Draws what was joined so far. The next strip of rows repeats the last one, so that no seam shows between the two;
/// the lines that it paints over are drawn again.
void Walk::end_strip(int j) {
    join_.end_strip();
    join_.draw_areas();
    const bool lines_too = join_.has_many_segments();
    if (lines_too) join_.draw_lines();
    if (!filled_) return;
    join_.takes_lines = lines_too;
    row(j);
    join_.takes_lines = true;
}

void Walk::row(int j) {
    const auto nx = static_cast<std::size_t>(grid_.domain.nx);
    row_ = j;
    lower_ = static_cast<std::size_t>(grid_.domain.ny - 1 - j) * nx;
    upper_ = lower_ - nx;
    join_.start_row(j);
    for (int i = 0; i < columns_;) {
        i = run(i);
        if (i < columns_) cell(i++);
    }
    if (filled_) join_.end_row();
}

/// Lets the engine draw a cell.
void Walk::cell(int i) {
    if (is_outside(i)) {
        if (filled_) join_.skip_cell(i);
        return;
    }
    cont_load_cell(grid_, i, row_);
    scan_.traced.here = i == scan_.traced.column && row_ == scan_.traced.row;
    cont_trace_point(scan_);
    const Cont_wrap wrap = cont_cell_complete() ? cont_cell_wrap() : Cont_wrap::CUT;
    if (wrap == Cont_wrap::CUT) {
        if (filled_) join_.skip_cell(i);
        return;
    }
    join_.start_cell(i, wrap == Cont_wrap::SPLIT);
    cont_draw_cell(scan_);
    if (filled_) join_.end_cell();
    run_ = cont.run;
    run_layer_ = join_.layer();
}

/// Goes on as long as cells are drawn as the last one that the engine drew. The first cell that may not be.
int Walk::run(int i) {
    if (!(run_.above < run_.most) || !is_alike(i) || !is_placed(i)) return i;
    const int end = std::min(columns_, grid_.domain.nx - 1);
    const bool traced = row_ == scan_.traced.row;
    for (; i < end && is_alike(i + 1) && is_placed(i + 1) && !(traced && i == scan_.traced.column); ++i) {
        if (!filled_) continue;
        if (is_outside(i)) return i;
        if (join_.lies_within(i, run_layer_)) {
            join_.put_within(i, run_layer_);
        } else {
            join_.whole_cell(i, run_layer_);
        }
    }
    return i;
}

/// Both values of a column.
bool Walk::is_alike(int i) const {
    const float* values = grid_.grid.get();
    const float upper = values[upper_ + static_cast<std::size_t>(i)];
    const float lower = values[lower_ + static_cast<std::size_t>(i)];
    return upper > run_.above && upper <= run_.most && lower > run_.above && lower <= run_.most;
}

/// Edges of the window that both points of a column lie beyond, a bit each.
unsigned Walk::beyond(int i) const {
    if (!in_window_) return 0;
    const auto code = [this](std::size_t point) {
        const Gpt pt{cont.grdx[point], cont.grdy[point]};
        return pt.x == FMISS ? 0U
                             : unsigned{pt.x < window_.x_min} | unsigned{pt.x > window_.x_max} << 1U |
                                   unsigned{pt.y < window_.y_min} << 2U | unsigned{pt.y > window_.y_max} << 3U;
    };
    const auto column = static_cast<std::size_t>(i);
    return code(upper_ + column) & code(lower_ + column);
}

/// Whether the points of a column are on the map, and not about its edge.
bool Walk::is_placed(int i) const {
    if (cont.grdx.empty() || !filled_) return true;
    const auto column = static_cast<std::size_t>(i);
    const float upper = cont.grdx[upper_ + column];
    const float lower = cont.grdx[lower_ + column];
    if (upper == FMISS || lower == FMISS) return false;
    if (edge_.step == 0.0F) return true;
    const std::size_t before = column > 0 ? column - 1 : 0;
    const float farthest = std::max({std::fabs(upper - lower), std::fabs(upper - cont.grdx[upper_ + before]),
                                     std::fabs(lower - cont.grdx[lower_ + before])});
    return farthest <= edge_.step && std::fabs(upper) <= edge_.x && std::fabs(lower) <= edge_.x;
}

}  // namespace

void cont_scan_joined(const GRD_report& grid, const Cont_scan& scan) { Walk(grid, scan).all_rows(); }

}  // namespace zav
