/// Smoothing of a field by refinement.

#include "calc/grd_refine.h"

#include <array>
#include <cmath>
#include <exception>
#include <vector>

#include "calc/grd_cyclic.h"
#include "frame/zav.h"
#include "grid/grd_tool.h"

namespace zav {
namespace {

/// Weights of the points before, at both ends of, and behind a step.
using Weights = std::array<float, 4>;

Weights weights_at(double t) {
    const auto weight = [](double value) { return static_cast<float>(value); };
    return {weight(((-0.5 * t + 1.0) * t - 0.5) * t), weight((1.5 * t - 2.5) * t * t + 1.0),
            weight(((-1.5 * t + 2.0) * t + 0.5) * t), weight((0.5 * t - 0.5) * t * t)};
}

std::vector<Weights> weights_of(int n) {
    std::vector<Weights> weights;
    for (int k = 0; k < n; ++k) weights.push_back(weights_at(static_cast<double>(k) / n));
    return weights;
}

bool is_missing(float value) { return value == FMISS || !std::isfinite(value); }

/// The value before `a` where there is none: on the parabola through the next three, on the line through two.
float continued(float a, float b, float c) { return is_missing(c) ? 2.0F * a - b : 3.0F * (a - b) + c; }

/// The points on a step from `b` to `c`, the first one being `b` itself; `a` and `d` may be missing.
void refine_step(float a, float b, float c, float d, const std::vector<Weights>& weights, float* to,
                 std::ptrdiff_t stride) {
    *to = b;
    const bool known = !is_missing(b) && !is_missing(c);
    const float before = !known || !is_missing(a) ? a : continued(b, c, d);
    const float behind = !known || !is_missing(d) ? d : continued(c, b, a);
    for (std::size_t k = 1; k < weights.size(); ++k) {
        const Weights& w = weights[k];
        to += stride;
        *to = known ? w[0] * before + w[1] * b + w[2] * c + w[3] * behind : FMISS;
    }
}

/// A row of `count` values in steps cut into as many as there are weights. `cycle` columns make a turn, 0 for none.
void refine_row(const float* row, int count, int cycle, const std::vector<Weights>& weights, float* to) {
    const auto at = [&](int i) {
        if (cycle > 0) return row[GRD_turned_column(i, cycle)];
        return i < 0 || i >= count ? FMISS : row[i];
    };
    const bool closed = cycle == count;
    for (int i = 0; i < (closed ? count : count - 1); ++i) {
        refine_step(at(i - 1), row[i], at(i + 1), at(i + 2), weights, to, 1);
        to += weights.size();
    }
    if (!closed) *to = row[count - 1];
}

Domain refined_domain(const Domain& domain, int n) {
    Domain refined = domain;
    const bool closed = GRD_cycle(domain) == domain.nx;
    refined.dx = domain.dx / static_cast<float>(n);
    refined.dy = domain.dy / static_cast<float>(n);
    refined.nx = closed ? domain.nx * n : (domain.nx - 1) * n + 1;
    refined.ny = (domain.ny - 1) * n + 1;
    if (!closed) return refined;
    // The last step ends at the first column, so that the middle lies half of the new points farther.
    const double ahead = GRD_column_degrees(domain) * (0.5 - 0.5 / n);
    if (refined.plon == FMISS) refined.plon = domain.clon;
    refined.clon = static_cast<float>(std::remainder(domain.clon + ahead, 360.0));
    return refined;
}

void refine_values(const GRD_report& grid, int n, GRD_report& refined) {
    const std::vector<Weights> weights = weights_of(n);
    const int cycle = GRD_cycle(grid.domain);
    const std::ptrdiff_t nx = refined.domain.nx;
    float* values = refined.grid.get();
    for (int j = 0; j < grid.domain.ny; ++j) {
        refine_row(&grid.grid[static_cast<std::ptrdiff_t>(j) * grid.domain.nx], grid.domain.nx, cycle, weights,
                   values + j * n * nx);
    }
    const auto at = [&](std::ptrdiff_t i, int j) {
        return j < 0 || j >= grid.domain.ny ? FMISS : values[j * n * nx + i];
    };
    for (int j = 0; j + 1 < grid.domain.ny; ++j) {
        for (std::ptrdiff_t i = 0; i < nx; ++i) {
            refine_step(at(i, j - 1), at(i, j), at(i, j + 1), at(i, j + 2), weights, values + j * n * nx + i, nx);
        }
    }
}

}  // namespace

int GRD_refine(const GRD_report& grid, int n, GRD_report& refined) {
    refined = {};
    if (n < 1 || !GRD_has_values(&grid)) return -1;
    const long long across = static_cast<long long>(grid.domain.nx) * n;
    const long long down = static_cast<long long>(grid.domain.ny) * n;
    if (across > GRD_MOST_REFINED || down > GRD_MOST_REFINED || across * down > GRD_MOST_REFINED) return -1;
    refined = grid;
    refined.domain = refined_domain(grid.domain, n);
    refined.grid = nullptr;
    try {
        refined.grid = std::shared_ptr<float[]>(new float[GRD_points(&refined)]);
        refine_values(grid, n, refined);
    } catch (const std::exception&) {
        refined = {};
        return -1;
    }
    return 0;
}

}  // namespace zav
