// Smoothing by the weights of a bell.

#include <cmath>
#include <cstddef>
#include <vector>

#include "calc/grd_cyclic.h"
#include "calc/grd_families.h"

namespace zav {
namespace {

constexpr int REACH = 4;  ///< points to each side

/// A row of weighted sums.
struct Sums {
    std::vector<double> values;
    std::vector<double> weights;

    explicit Sums(int nx) : values(static_cast<std::size_t>(nx)), weights(static_cast<std::size_t>(nx)) {}

    /// Adds the points of `row` that are there, `shift` columns away: column `i` of the sums takes point i + shift.
    void add(const float* row, int shift, int first, int last, double weight) {
        for (int i = first; i < last; i++) {
            const float value = row[i + shift];
            const double part = value == FMISS ? 0.0 : weight;
            values[static_cast<std::size_t>(i)] += part * value;
            weights[static_cast<std::size_t>(i)] += part;
        }
    }
};

/// Adds a row of the grid shifted by `shift` columns. A grid that goes round the globe has points beyond its edges.
void add_shifted(Sums& sums, const float* row, int nx, int cycle, int shift, double weight) {
    const int first = shift < 0 ? -shift : 0;
    const int last = shift > 0 ? nx - shift : nx;
    sums.add(row, shift, first, last, weight);
    if (cycle == 0) return;
    const auto beyond = [&](int i) {
        const int column = GRD_turned_column(i + shift, cycle);
        sums.add(row, column - i, i, i + 1, weight);
    };
    for (int i = 0; i < first; i++) beyond(i);
    for (int i = last; i < nx; i++) beyond(i);
}

}  // namespace

// Missing neighbours are left out with their weights: in the sum they would stand as a value of -9999.
int math_smooth(Math_frame& frame) {
    const GRD_report* grid = frame.argument(1);
    const float r = frame.argument(2) == nullptr ? frame.values[frame.place(2)] : 0.0F;
    if (grid == nullptr || r == 0.0F) return GRD_refuse();
    if (!GRD_begin(frame, 2)) return 0;
    const int nx = frame.nx;
    const int cycle = GRD_cycle(grid->domain);
    for (int row = 0; row < frame.ny; row++) {
        Sums sums(nx);
        for (int q = -REACH; q <= REACH; q++) {
            if (row + q < 0 || row + q >= frame.ny) continue;
            const float* from = frame.ptr[1] + static_cast<std::ptrdiff_t>(row + q) * nx;
            for (int p = -REACH; p <= REACH; p++) {
                if (p <= -nx || p >= nx) continue;
                add_shifted(sums, from, nx, cycle, p, std::exp((p * p + q * q) / static_cast<double>(r)));
            }
        }
        const float* own = frame.ptr[1] + static_cast<std::ptrdiff_t>(row) * nx;
        float* to = frame.ptr[0] + static_cast<std::ptrdiff_t>(row) * nx;
        for (int i = 0; i < nx; i++) {
            const auto at = static_cast<std::size_t>(i);
            to[i] = own[i] == FMISS ? FMISS : static_cast<float>(sums.values[at] / sums.weights[at]);
        }
    }
    return 1;
}

}  // namespace zav
