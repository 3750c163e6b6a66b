// Horizontal derivatives by differences of neighbours.

#include "calc/grd_oper.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
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

/// Columns that are worked on at once. Formulas are written for one column (float) and for several (Lanes) alike:
/// choices are made by value, never by a branch.
constexpr int LANES = 4;
using Lanes [[gnu::vector_size(LANES * sizeof(float))]] = float;
using Mask = decltype(Lanes{} == Lanes{});

bool any(Mask mask) {
    std::array<long long, 2> halves;
    std::memcpy(halves.data(), &mask, sizeof mask);
    return (halves[0] | halves[1]) != 0;
}

/// Points with all their neighbours in the row, `LANES` of them from a column on. With `Whole` none of the values that
/// are asked for may be missing; it is noted if one is.
template <std::size_t Fields, bool Whole>
struct Inner_points {
    static constexpr bool WHOLE = Whole;
    const Rows<Fields>& rows;
    int column;
    mutable Mask missing{};
    Lanes east(std::size_t field, int steps) const { return load(rows[field].north(0) + column + steps); }
    Lanes north(std::size_t field, int steps) const { return load(rows[field].north(steps) + column); }
    Lanes load(const float* from) const {
        Lanes values;
        std::memcpy(&values, from, sizeof values);
        if constexpr (Whole) missing |= values == FMISS;
        return values;
    }
};

/// A point anywhere in its row. Neighbours beyond it are missing, or lie at the other end round the globe.
template <std::size_t Fields>
struct Any_point {
    static constexpr bool WHOLE = false;
    const Rows<Fields>& rows;
    int column;
    int count;  ///< columns of the row
    int cycle;
    float east(std::size_t field, int steps) const {
        int at = column + steps;
        if (cycle > 0) at += at < 0 ? cycle : (at >= cycle ? -cycle : 0);
        return at < 0 || at >= count ? FMISS : rows[field].north(0)[at];
    }
    float north(std::size_t field, int steps) const { return rows[field].north(steps)[column]; }
};

/// Difference of neighbours, the point itself standing for one that is missing.
template <class Value>
Value slope(Value before, Value here, Value after, float step) {
    const auto no_before = before == FMISS;
    const auto no_after = after == FMISS;
    const Value z1 = no_before ? here : before;
    const Value z2 = no_after ? here : after;
    const Value one = Value{} + step;
    return (z2 - z1) / ((no_before | no_after) ? one : one + one);
}

/// Second difference about a point, or about its neighbour if the one on the other side is missing. The values stand in
/// their order, `here` in the middle.
template <class Value>
Value bend(Value a, Value b, Value here, Value d, Value e, float step) {
    const auto no_after = d == FMISS;
    const auto one_sided = no_after | (b == FMISS);
    const Value middle = no_after ? b : (one_sided ? d : here);
    const Value first = one_sided ? here : b;
    const Value second = no_after ? a : (one_sided ? e : d);
    const Value value = (first + second - 2.0F * middle) / (step * step);
    const Value missing = Value{} + FMISS;
    return (middle == FMISS) | (second == FMISS) ? missing : value;
}

template <class Point>
auto slope_east(const Point& p, std::size_t field, const Steps& step) {
    if constexpr (Point::WHOLE) return (p.east(field, 1) - p.east(field, -1)) / (2.0F * step.x);
    return slope(p.east(field, -1), p.east(field, 0), p.east(field, 1), step.x);
}

template <class Point>
auto slope_north(const Point& p, std::size_t field, const Steps& step) {
    if constexpr (Point::WHOLE) return (p.north(field, 1) - p.north(field, -1)) / (2.0F * step.y);
    return slope(p.north(field, -1), p.north(field, 0), p.north(field, 1), step.y);
}

template <class Point>
auto laplacian(const Point& p, const Steps& step) {
    const auto here = p.east(0, 0);
    if constexpr (Point::WHOLE) {
        return (p.east(0, -1) + p.east(0, 1) - 2.0F * here) / (step.x * step.x) +
               (p.north(0, -1) + p.north(0, 1) - 2.0F * here) / (step.y * step.y);
    }
    const auto x = bend(p.east(0, -2), p.east(0, -1), here, p.east(0, 1), p.east(0, 2), step.x);
    // From north to south: the row below is looked at first.
    const auto y = bend(p.north(0, 2), p.north(0, 1), here, p.north(0, -1), p.north(0, -2), step.y);
    return (x == FMISS) | (y == FMISS) ? decltype(here + x){} + FMISS : x + y;
}

/// `formula` where no field is missing.
template <std::size_t Fields, class Points, class Formula>
auto result(const Points& points, const Steps& step, const Formula& formula) {
    auto missing = points.east(0, 0) == FMISS;
    for (std::size_t field = 1; field < Fields; field++) missing = missing | (points.east(field, 0) == FMISS);
    const auto value = formula(points, step);
    return missing ? decltype(value + value){} + FMISS : value;
}

/// `LANES` columns with regard to missing values.
template <std::size_t Fields, class Formula>
void put_careful(const Rows<Fields>& rows, int column, const Steps& step, float* to, const Formula& formula) {
    const Lanes values = result<Fields>(Inner_points<Fields, false>{rows, column}, step, formula);
    std::memcpy(to + column, &values, sizeof values);
}

/// `LANES` columns by the plain formula. Where it met a missing value.
template <std::size_t Fields, class Formula>
Mask put_plain(const Rows<Fields>& rows, int column, const Steps& step, float* to, const Formula& formula) {
    const Inner_points<Fields, true> whole{rows, column};
    const Lanes values = formula(whole, step);
    for (std::size_t field = 0; field < Fields; field++) whole.east(field, 0);
    std::memcpy(to + column, &values, sizeof values);
    return whole.missing;
}

template <std::size_t Fields, class Formula>
void do_row(const Rows<Fields>& rows, int nx, int cycle, const Steps& step, float* to, const Formula& formula) {
    const int count = cycle > 0 ? cycle : nx;
    const auto put = [&](int i) { to[i] = result<Fields>(Any_point<Fields>{rows, i, count, cycle}, step, formula); };
    int i = 0;
    for (; i < std::min(REACH, count); i++) put(i);
    for (; i + 2 * LANES <= count - REACH; i += 2 * LANES) {
        const Mask missing =
            put_plain<Fields>(rows, i, step, to, formula) | put_plain<Fields>(rows, i + LANES, step, to, formula);
        if (!any(missing)) continue;
        put_careful<Fields>(rows, i, step, to, formula);
        put_careful<Fields>(rows, i + LANES, step, to, formula);
    }
    for (; i < count; i++) put(i);
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
                const bool inside = at >= 0 && at < ny;
                const float* first = in[field]->grid.get();
                rows[field].from_south[static_cast<std::size_t>(REACH - south)] =
                    inside ? first + static_cast<std::ptrdiff_t>(at) * nx : beyond.data();
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
    return differentiate<1>("GRD_laplacian", {agrid}, bgrid, Along::BOTH,
                            [](const auto& p, const Steps& step) { return laplacian(p, step); });
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
