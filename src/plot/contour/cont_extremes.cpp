/// The search for maxima and minima.

#include <algorithm>
#include <cmath>
#include <limits>
#include <tuple>

#include "calc/grd_cyclic.h"
#include "plot/contour/cont_texts.h"
#include "plot/page/plt_tool.h"

namespace zav {
namespace {

constexpr float POLE = 89.99F;

/// The highest value of a block, `sign` times the grid's, and where it stands first.
struct Peak {
    float value = -std::numeric_limits<float>::infinity();
    int column = 0;
    int row = 0;
    bool alone = false;

    void take(float other, int at_column, int at_row) {
        if (other > value) {
            *this = {other, at_column, at_row, true};
        } else if (other == value) {
            alone = false;
        }
    }
};

/// Works on the rows as they are stored, from the top.
class Extreme_search {
  public:
    Extreme_search(const GRD_report& grid, int radius)
        : values_(grid.grid.get()),
          domain_(grid.domain),
          nx_(grid.domain.nx),
          ny_(grid.domain.ny),
          round_(PLT_letter() ? 0 : GRD_cycle(grid.domain)) {
        reach_ = std::min(radius, std::max(nx_, ny_));
        if (round_ > 0) nx_ = round_;
        stride_ = grid.domain.nx;
    }

    /// An extreme is the highest of any block of reach + 1 points that it lies in, so each block has one candidate (A.
    /// Neubeck and L. Van Gool, "Efficient Non-Maximum Suppression", ICPR 2006).
    std::vector<Cont_extreme> find() const {
        std::vector<Cont_extreme> found;
        const int side = reach_ + 1;
        for (int row = 0; row < ny_; row += side) {
            for (int column = 0; column < nx_; column += side) search_block(column, row, &found);
        }
        for (const int row : {0, ny_ - 1}) {
            if (is_pole(row)) search_pole(row, &found);
        }
        std::sort(found.begin(), found.end(),
                  [](const Cont_extreme& a, const Cont_extreme& b) { return std::tie(b.j, a.i) < std::tie(a.j, b.i); });
        return found;
    }

    float distance_beyond(const Cont_extreme& extreme) const {
        const float sign = extreme.maximum ? 1.0F : -1.0F;
        if (is_pole(ny_ - 1 - extreme.j)) return static_cast<float>(rows_below(ny_ - 1 - extreme.j, sign, ny_));
        const Peak peak{sign * extreme.value, extreme.i, ny_ - 1 - extreme.j, true};
        const int most = std::max(nx_, ny_);
        long nearest = static_cast<long>(most) * most;
        for (int ring = 1; static_cast<long>(ring) * ring < nearest; ++ring)
            nearest = search_ring(peak, sign, ring, nearest);
        return std::sqrt(static_cast<float>(nearest));
    }

  private:
    float at(int column, int row) const {
        return values_[static_cast<std::size_t>(row) * static_cast<std::size_t>(stride_) +
                       static_cast<std::size_t>(column)];
    }

    /// Column `column` of a row, which may lie beyond its ends; -1 for none.
    int column_of(int column) const {
        if (column >= 0 && column < nx_) return column;
        return round_ > 0 ? GRD_turned_column(column, round_) : -1;
    }

    /// True for a row whose points are all a pole of a grid that goes round the earth.
    bool is_pole(int row) const {
        if (round_ == 0 || domain_.proj != PROJ_LATLON) return false;
        const float lat = domain_.clat + (static_cast<float>(ny_ - 1) / 2.0F - static_cast<float>(row)) * domain_.dy;
        return std::fabs(lat) > POLE;
    }

    /// Rows next to a pole's, up to `most`, whose values all lie below the pole's.
    int rows_below(int pole, float sign, int most) const {
        const float value = sign * at(0, pole);
        const auto is_beyond = [&](int row, int column) { return !(sign * at(column, row) < value); };
        for (int away = 1; away < std::min(most + 1, ny_); ++away) {
            const int row = pole == 0 ? away : pole - away;
            for (int column = 0; column < nx_; ++column) {
                if (is_beyond(row, column) || cont_is_missing(at(column, row))) return away - 1;
            }
        }
        return most;
    }

    /// A pole that has one value is one point, in the middle of its row.
    void search_pole(int row, std::vector<Cont_extreme>* found) const {
        const float value = at(0, row);
        for (int column = 1; column < nx_; ++column) {
            if (at(column, row) != value) return;
        }
        if (cont_is_missing(value)) return;
        for (const float sign : {1.0F, -1.0F}) {
            if (rows_below(row, sign, reach_) < std::min(reach_, ny_ - 1)) continue;
            found->push_back({nx_ / 2, ny_ - 1 - row, value, sign > 0.0F});
        }
    }

    void search_block(int first_column, int first_row, std::vector<Cont_extreme>* found) const {
        Peak high;
        Peak low;
        const int last_row = std::min(first_row + reach_, ny_ - 1);
        const int last_column = std::min(first_column + reach_, nx_ - 1);
        for (int row = first_row; row <= last_row; ++row) {
            for (int column = first_column; column <= last_column; ++column) {
                const float value = at(column, row);
                if (cont_is_missing(value)) continue;
                high.take(value, column, row);
                low.take(-value, column, row);
            }
        }
        keep(high, 1.0F, found);
        keep(low, -1.0F, found);
    }

    void keep(const Peak& peak, float sign, std::vector<Cont_extreme>* found) const {
        if (!peak.alone || !stands_out(peak, sign, 1) || (reach_ > 1 && !stands_out(peak, sign, reach_))) return;
        found->push_back({peak.column, ny_ - 1 - peak.row, sign * peak.value, sign > 0.0F});
    }

    /// True when all within `reach` lie below, but for one that may be missing.
    bool stands_out(const Peak& peak, float sign, int reach) const {
        int missing = 0;
        const int last_row = std::min(peak.row + reach, ny_ - 1);
        // Round the earth no column comes twice.
        const int left = round_ > 0 ? std::min(reach, (nx_ - 1) / 2) : reach;
        const int right = round_ > 0 ? std::min(reach, nx_ / 2) : reach;
        for (int row = std::max(peak.row - reach, 0); row <= last_row; ++row) {
            for (int place = peak.column - left; place <= peak.column + right; ++place) {
                const int column = column_of(place);
                if (column < 0 || (column == peak.column && row == peak.row)) continue;
                const float value = at(column, row);
                if (cont_is_missing(value)) {
                    if (++missing > 1) return false;
                } else if (sign * value >= peak.value) {
                    return false;
                }
            }
        }
        return true;
    }

    /// The smaller of `nearest` and the square of the distance to a value on the ring that is no lower.
    long search_ring(const Peak& peak, float sign, int ring, long nearest) const {
        const auto look = [&](int across, int down) {
            const int row = peak.row + down;
            const int column = column_of(peak.column + across);
            if (row < 0 || row >= ny_ || column < 0) return;
            const float value = at(column, row);
            const long square = static_cast<long>(across) * across + static_cast<long>(down) * down;
            if (square < nearest && !cont_is_missing(value) && sign * value >= peak.value) nearest = square;
        };
        const int across = round_ > 0 ? std::min(ring, (nx_ - 1) / 2) : ring;
        for (int step = -across; step <= across; ++step) {
            look(step, -ring);
            look(step, ring);
        }
        for (int step = 1 - ring; step < ring && across == ring; ++step) {
            look(-ring, step);
            look(ring, step);
        }
        return nearest;
    }

    const float* values_;
    const Domain& domain_;
    int nx_;
    int ny_;
    int round_;
    int reach_ = 0;
    int stride_ = 0;
};

}  // namespace

std::vector<Cont_extreme> cont_find_extremes(const GRD_report& grid, int radius) {
    return Extreme_search(grid, radius).find();
}

float cont_extreme_distance(const GRD_report& grid, const Cont_extreme& extreme) {
    return Extreme_search(grid, 1).distance_beyond(extreme);
}

}  // namespace zav
