// Horizontal derivatives by differences of neighbours.

#include "calc/grd_oper.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <new>
#include <vector>

#include "calc/grd_cyclic.h"
#include "calc/grd_walk.h"
#include "frame/mess.h"
#include "grid/grd_tool.h"

namespace zav {
namespace {

constexpr int REACH = 2;                 ///< farthest neighbour that an operator looks at
constexpr double OF_A_DEGREE = 1.11195;  ///< distance of a degree of latitude, in 100 km
constexpr double DEGREE = 3.14159265358979323846 / 180.0;
constexpr float POLE = 90.0F;

/// Distances by which differences are divided, in a row.
struct Steps {
    float x = 0.0F;
    float y = 0.0F;
    bool at_pole = false;  ///< no distance in x
};

/// A row of one field and those about it; there, rows beyond the grid are missing throughout.
struct Field_rows {
    std::array<const float*, 2 * REACH + 1> from_south;
    const float* north(int steps) const { return from_south[static_cast<std::size_t>(REACH + steps)]; }
};

template <std::size_t Fields>
using Rows = std::array<Field_rows, Fields>;

/// A point with all its neighbours in the row.
template <std::size_t Fields>
struct Inner_point {
    const Rows<Fields>& rows;
    int column;
    float east(std::size_t field, int steps) const { return rows[field].north(0)[column + steps]; }
    float north(std::size_t field, int steps) const { return rows[field].north(steps)[column]; }
};

/// A point near the end of its row. Neighbours beyond it are missing, or lie at the other end round the globe.
template <std::size_t Fields>
struct Edge_point {
    const Rows<Fields>& rows;
    int column;
    int count;
    int cycle;
    float east(std::size_t field, int steps) const {
        const int at = cycle > 0 ? GRD_turned_column(column + steps, cycle) : column + steps;
        return at < 0 || at >= count ? FMISS : rows[field].north(0)[at];
    }
    float north(std::size_t field, int steps) const { return rows[field].north(steps)[column]; }
};

// Choices are made by value, never by a branch, so that the compiler can work on several columns at once.

/// Difference of neighbours, the point itself standing for one that is missing.
float slope(float before, float here, float after, float step) {
    const bool no_before = before == FMISS;
    const bool no_after = after == FMISS;
    const float z1 = no_before ? here : before;
    const float z2 = no_after ? here : after;
    return (z2 - z1) / ((no_before | no_after) ? step : 2.0F * step);
}

/// The five values of a row or a column about a point, in their order.
struct Five {
    float a, b, here, d, e;
};

/// Second difference about a point, or about its neighbour if the one on the other side is missing.
float bend(const Five& five, float step) {
    const bool no_after = five.d == FMISS;
    const bool no_before = !no_after & (five.b == FMISS);
    const float middle = no_after ? five.b : (no_before ? five.d : five.here);
    const float first = (no_after | no_before) ? five.here : five.b;
    const float second = no_after ? five.a : (no_before ? five.e : five.d);
    const float value = (first + second - 2.0F * middle) / (step * step);
    return (middle == FMISS) | (second == FMISS) ? FMISS : value;
}

template <class Point>
float slope_east(const Point& p, std::size_t field, const Steps& step) {
    return slope(p.east(field, -1), p.east(field, 0), p.east(field, 1), step.x);
}

template <class Point>
float slope_north(const Point& p, std::size_t field, const Steps& step) {
    return slope(p.north(field, -1), p.north(field, 0), p.north(field, 1), step.y);
}

/// Works out a row: `formula` at each point where no field is missing.
template <std::size_t Fields, class Formula>
void do_row(const Rows<Fields>& rows, int nx, int cycle, const Steps& step, float* to, const Formula& formula) {
    const auto result = [&](const auto& point) {
        bool missing = false;
        for (std::size_t field = 0; field < Fields; field++) missing |= point.east(field, 0) == FMISS;
        const float value = formula(point, step);
        return missing ? FMISS : value;
    };
    const int count = cycle > 0 ? cycle : nx;
    const int first = std::min(REACH, count);
    const int last = std::max(first, count - REACH);
    for (int i = 0; i < first; i++) to[i] = result(Edge_point<Fields>{rows, i, count, cycle});
        // The output is no input's block.
#pragma GCC ivdep
    for (int i = first; i < last; i++) to[i] = result(Inner_point<Fields>{rows, i});
    for (int i = last; i < count; i++) to[i] = result(Edge_point<Fields>{rows, i, count, cycle});
    if (count < nx) to[count] = to[0];
}

/// What an operator takes differences along.
enum class Along { ROWS, COLUMNS, BOTH };

bool is_spacing(float step) { return step != 0.0F && step != FMISS && std::isfinite(step); }

/// Distances between the points of a grid.
class Spacing {
  public:
    Spacing(const Domain& grid, Along along)
        : domain(grid), along_rows(along != Along::COLUMNS), sphere(grid.proj == PROJ_LATLON) {
        const float factor = grid.param[2] != FMISS ? grid.param[2] : 1.0F;
        plain = {grid.dx * factor, sphere ? static_cast<float>(grid.dy * OF_A_DEGREE) : grid.dy * factor};
        usable = (!along_rows || is_spacing(grid.dx)) && (along == Along::ROWS || is_spacing(grid.dy));
    }
    Steps of_row(int row) const {
        if (!sphere || !along_rows) return plain;
        const float lat = GRD_row_latitude(domain, row);
        if (std::fabs(lat) == POLE) return {0.0F, plain.y, true};
        return {static_cast<float>(std::cos(lat * DEGREE) * domain.dx * OF_A_DEGREE), plain.y};
    }

    bool usable = false;

  private:
    const Domain& domain;
    bool along_rows;
    bool sphere;
    Steps plain;
};

template <std::size_t Fields>
using Inputs = std::array<const GRD_report*, Fields>;

template <std::size_t Fields, class Formula>
void do_rows(const Inputs<Fields>& in, float* to, const Spacing& spacing, int cycle, const Formula& formula) {
    const int nx = in[0]->domain.nx;
    const int ny = in[0]->domain.ny;
    const std::vector<float> beyond(static_cast<std::size_t>(nx), FMISS);
    for (int row = 0; row < ny; row++, to += nx) {
        const Steps step = spacing.of_row(row);
        if (step.at_pole) {
            std::fill_n(to, nx, FMISS);
            continue;
        }
        Rows<Fields> rows;
        for (std::size_t field = 0; field < Fields; field++) {
            for (int south = -REACH; south <= REACH; south++) {
                const int at = row + south;
                const float* values = in[field]->grid.get() + static_cast<std::ptrdiff_t>(at) * nx;
                rows[field].from_south[static_cast<std::size_t>(REACH - south)] =
                    at < 0 || at >= ny ? beyond.data() : values;
            }
        }
        do_row<Fields>(rows, nx, cycle, step, to, formula);
    }
}

/// True if all inputs have values and the output has the room of the first, or none yet.
template <std::size_t Fields>
bool fit(const Inputs<Fields>& in, const GRD_report* out) {
    const auto same = [&](const GRD_report* grid) {
        return grid->domain.nx == in[0]->domain.nx && grid->domain.ny == in[0]->domain.ny;
    };
    const bool inputs = std::all_of(in.begin(), in.end(), [](const GRD_report* grid) { return GRD_has_values(grid); });
    if (!inputs || !std::all_of(in.begin(), in.end(), same) || out == nullptr) return false;
    return same(out) || (out->grid == nullptr && GRD_points(out) == 0);
}

template <std::size_t Fields, class Formula>
int differentiate(const char* name, const Inputs<Fields>& in, GRD_report* out, Along along, const Formula& formula) {
    if (!fit(in, out)) return -1;
    const Domain& domain = in[0]->domain;
    const Spacing spacing(domain, along);
    if (!spacing.usable) return -1;
    try {
        std::shared_ptr<float[]> values = out->grid;
        const bool shared = std::any_of(in.begin(), in.end(), [&](const auto* grid) { return grid->grid == values; });
        if (values == nullptr || shared) values = std::make_shared_for_overwrite<float[]>(GRD_points(in[0]));
        do_rows(in, values.get(), spacing, along == Along::COLUMNS ? 0 : GRD_cycle(domain), formula);
        if (GRD_points(out) == 0) GRD_copy_info(out, in[0]);
        out->grid = values;
        return 0;
    } catch (const std::bad_alloc&) {
        MESS_print(MESS_WARN, "%s: No memory for grid field\n", name);
        return -1;
    }
}

}  // namespace

int GRD_dx(const GRD_report* grid, GRD_report* ogrid) {
    return differentiate<1>("GRD_dx", {grid}, ogrid, Along::ROWS,
                            [](const auto& p, const Steps& step) { return slope_east(p, 0, step); });
}

int GRD_dy(const GRD_report* grid, GRD_report* ogrid) {
    return differentiate<1>("GRD_dy", {grid}, ogrid, Along::COLUMNS,
                            [](const auto& p, const Steps& step) { return slope_north(p, 0, step); });
}

int GRD_laplacian(const GRD_report* agrid, GRD_report* bgrid) {
    const auto formula = [](const auto& p, const Steps& step) {
        const float x = bend({p.east(0, -2), p.east(0, -1), p.east(0, 0), p.east(0, 1), p.east(0, 2)}, step.x);
        // The row below is looked at first.
        const float y = bend({p.north(0, 2), p.north(0, 1), p.north(0, 0), p.north(0, -1), p.north(0, -2)}, step.y);
        return (x == FMISS) | (y == FMISS) ? FMISS : x + y;
    };
    return differentiate<1>("GRD_laplacian", {agrid}, bgrid, Along::BOTH, formula);
}

int GRD_converge(const GRD_report* ugrid, const GRD_report* vgrid, const GRD_report* zgrid, GRD_report* ogrid) {
    const auto wind = [](const auto& p, const Steps& step) {
        return -slope_east(p, 0, step) - slope_north(p, 1, step);
    };
    if (zgrid == nullptr) return differentiate<2>("GRD_converge", {ugrid, vgrid}, ogrid, Along::BOTH, wind);
    return differentiate<3>("GRD_converge", {ugrid, vgrid, zgrid}, ogrid, Along::BOTH,
                            [&](const auto& p, const Steps& step) { return wind(p, step) * p.east(2, 0); });
}

int GRD_vorticity(const GRD_report* ugrid, const GRD_report* vgrid, GRD_report* ogrid) {
    return differentiate<2>("GRD_vorticity", {ugrid, vgrid}, ogrid, Along::BOTH, [](const auto& p, const Steps& step) {
        return slope_east(p, 1, step) - slope_north(p, 0, step);
    });
}

int GRD_deformation1(const GRD_report* ugrid, const GRD_report* vgrid, GRD_report* ogrid) {
    return differentiate<2>(
        "GRD_deformation1", {ugrid, vgrid}, ogrid, Along::BOTH,
        [](const auto& p, const Steps& step) { return slope_east(p, 0, step) - slope_north(p, 1, step); });
}

int GRD_deformation2(const GRD_report* ugrid, const GRD_report* vgrid, GRD_report* ogrid) {
    return differentiate<2>(
        "GRD_deformation2", {ugrid, vgrid}, ogrid, Along::BOTH,
        [](const auto& p, const Steps& step) { return -slope_north(p, 0, step) - slope_east(p, 1, step); });
}

int GRD_advection(const GRD_report* ugrid, const GRD_report* vgrid, const GRD_report* zgrid, GRD_report* agrid) {
    const auto formula = [](const auto& p, const Steps& step) {
        return -p.east(0, 0) * slope_east(p, 2, step) - p.east(1, 0) * slope_north(p, 2, step);
    };
    return differentiate<3>("GRD_advection", {ugrid, vgrid, zgrid}, agrid, Along::BOTH, formula);
}

}  // namespace zav
