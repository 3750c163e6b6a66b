// Derivatives of grids: a second working-out on random grids, fields known in closed form, edges and gaps.

#include "calc/grd_oper.h"

#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "calc/made_grid.h"

namespace zav {
namespace {

using test::made_grid;
using test::made_on_map;

constexpr double RADIANS = M_PI / 180.0;
constexpr double DEGREE = 1.11195;  // of latitude, in 100 km

// A second working-out, point by point with a branch for each case.

struct Worked {
    const GRD_report* grid;
    int cycle;  ///< columns of a turn, 0 for a grid with edges

    float at(int i, int j) const {
        const Domain& d = grid->domain;
        if (cycle > 0) i = ((i % cycle) + cycle) % cycle;
        return i < 0 || i >= d.nx || j < 0 || j >= d.ny ? FMISS : grid->grid[j * d.nx + i];
    }
    static float step_x(const Domain& d, int j) {
        if (d.proj != PROJ_LATLON) return d.param[2] == FMISS ? d.dx : d.dx * d.param[2];
        const float lat = static_cast<float>(d.clat - d.dy * ((d.ny - 1) / 2.0) + d.dy * (d.ny - 1 - j));
        return static_cast<float>(std::cos(lat * 0.017453292519943295) * d.dx * DEGREE);
    }
    static float step_y(const Domain& d) {
        if (d.proj == PROJ_LATLON) return static_cast<float>(d.dy * DEGREE);
        return d.param[2] == FMISS ? d.dy : d.dy * d.param[2];
    }
    float difference(int i, int j, int di, int dj, float step) const {
        float divisor = 2 * step;
        float z1 = at(i - di, j - dj);
        float z2 = at(i + di, j + dj);
        if (z1 == FMISS) {
            z1 = at(i, j);
            divisor = step;
        }
        if (z2 == FMISS) {
            z2 = at(i, j);
            divisor = step;
        }
        return (z2 - z1) / divisor;
    }
    float dx(int i, int j) const { return difference(i, j, 1, 0, step_x(grid->domain, j)); }
    float dy(int i, int j) const { return difference(i, j, 0, -1, step_y(grid->domain)); }
    float second(int i, int j, int di, int dj, float step) const {
        const float d = step * step;
        const float z = at(i, j);
        const float after = at(i + di, j + dj);
        const float before = at(i - di, j - dj);
        if (after == FMISS) {
            const float far = at(i - 2 * di, j - 2 * dj);
            return before == FMISS || far == FMISS ? FMISS : (z + far - 2 * before) / d;
        }
        if (before == FMISS) {
            const float far = at(i + 2 * di, j + 2 * dj);
            return far == FMISS ? FMISS : (z + far - 2 * after) / d;
        }
        return (before + after - 2 * z) / d;
    }
    float laplacian(int i, int j) const {
        const float x = second(i, j, 1, 0, step_x(grid->domain, j));
        const float y = second(i, j, 0, 1, step_y(grid->domain));
        return x == FMISS || y == FMISS ? FMISS : x + y;
    }
};

using Fields = std::vector<Worked>;

struct Operator {
    const char* name;
    std::size_t fields;
    bool at_poles;
    int (*run)(const std::vector<GRD_report>& in, GRD_report* out);
    float (*value)(const Fields& f, int i, int j);
};

const std::vector<Operator> OPERATORS{
    {"dx", 1, false, [](const auto& in, GRD_report* out) { return GRD_dx(&in[0], out); },
     [](const Fields& f, int i, int j) { return f[0].dx(i, j); }},
    {"dy", 1, true, [](const auto& in, GRD_report* out) { return GRD_dy(&in[0], out); },
     [](const Fields& f, int i, int j) { return f[0].dy(i, j); }},
    {"laplacian", 1, false, [](const auto& in, GRD_report* out) { return GRD_laplacian(&in[0], out); },
     [](const Fields& f, int i, int j) { return f[0].laplacian(i, j); }},
    {"converge", 2, false, [](const auto& in, GRD_report* out) { return GRD_converge(&in[0], &in[1], nullptr, out); },
     [](const Fields& f, int i, int j) { return -f[0].dx(i, j) - f[1].dy(i, j); }},
    {"converge z", 3, false, [](const auto& in, GRD_report* out) { return GRD_converge(&in[0], &in[1], &in[2], out); },
     [](const Fields& f, int i, int j) { return (-f[0].dx(i, j) - f[1].dy(i, j)) * f[2].at(i, j); }},
    {"vorticity", 2, false, [](const auto& in, GRD_report* out) { return GRD_vorticity(&in[0], &in[1], out); },
     [](const Fields& f, int i, int j) { return f[1].dx(i, j) - f[0].dy(i, j); }},
    {"deformation1", 2, false, [](const auto& in, GRD_report* out) { return GRD_deformation1(&in[0], &in[1], out); },
     [](const Fields& f, int i, int j) { return f[0].dx(i, j) - f[1].dy(i, j); }},
    {"deformation2", 2, false, [](const auto& in, GRD_report* out) { return GRD_deformation2(&in[0], &in[1], out); },
     [](const Fields& f, int i, int j) { return -f[0].dy(i, j) - f[1].dx(i, j); }},
    {"advection", 3, false, [](const auto& in, GRD_report* out) { return GRD_advection(&in[0], &in[1], &in[2], out); },
     [](const Fields& f, int i, int j) { return -f[0].at(i, j) * f[2].dx(i, j) - f[1].at(i, j) * f[2].dy(i, j); }},
};

/// Domains of random size, with edges, round the globe, and round it with the first meridian again.
struct Random_grids {
    std::mt19937 random{20110115};
    int cycle = 0;

    int number(int from, int to) { return std::uniform_int_distribution<int>(from, to)(random); }
    Domain domain() {
        Domain d;
        DOM_decode("ps:90:-105,60,-105,5,5,1,1", &d);
        d.nx = number(1, 14);
        d.ny = number(1, 9);
        const int kind = number(0, 4);
        cycle = 0;
        d.dx = 0.25F * static_cast<float>(number(1, 9));
        d.dy = 0.5F * static_cast<float>(number(1, 5));
        if (kind == 0) d.param[2] = 0.75F;
        if (kind < 2) return d;
        d.proj = PROJ_LATLON;
        d.clat = static_cast<float>(number(-60, 60));
        if (number(0, 2) == 0) {  // from pole to pole
            d.ny = 9;
            d.dy = 22.5F;
            d.clat = 0;
        }
        if (kind == 2) return d;
        cycle = number(4, 14);
        d.nx = cycle + kind - 3;
        d.dx = 360.0F / static_cast<float>(cycle);
        return d;
    }
    std::vector<GRD_report> fields(std::size_t count) {
        const Domain d = domain();
        const double missing = std::array{0.0, 0.05, 0.5}[static_cast<std::size_t>(number(0, 2))];
        std::vector<GRD_report> made(count);
        for (GRD_report& grid : made) {
            grid.domain = d;
            EXPECT_EQ(GRD_alloc(&grid), 1);
            for (int k = 0; k < d.nx * d.ny; ++k) {
                const bool again = cycle > 0 && k % d.nx == cycle;
                const bool none = std::uniform_real_distribution<>(0, 1)(random) < missing;
                grid.grid[k] = again  ? grid.grid[k - cycle]
                               : none ? FMISS
                                      : 0.01F * static_cast<float>(number(-5000, 5000));
            }
        }
        return made;
    }
};

float worked_out(const Operator& op, const Fields& f, int i, int j) {
    const Domain& d = f[0].grid->domain;
    const double lat = d.clat + d.dy * ((d.ny - 1) / 2.0 - j);
    if (d.proj == PROJ_LATLON && std::fabs(lat) == 90 && !op.at_poles) return FMISS;
    for (const Worked& field : f) {
        if (field.at(i, j) == FMISS) return FMISS;
    }
    return op.value(f, i, j);
}

TEST(GrdOper, RandomGridsAgreeWithASecondWorkingOut) {
    Random_grids grids;
    for (int round = 0; round < 4000; ++round) {
        const Operator& op = OPERATORS[static_cast<std::size_t>(round) % OPERATORS.size()];
        const std::vector<GRD_report> in = grids.fields(op.fields);
        GRD_report out;
        ASSERT_EQ(op.run(in, &out), 0);
        Fields worked;
        for (const GRD_report& grid : in) worked.push_back({&grid, grids.cycle});
        const Domain& d = in[0].domain;
        ASSERT_EQ(GRD_points(&out), GRD_points(&in[0]));
        for (int k = 0; k < d.nx * d.ny; ++k) {
            ASSERT_EQ(out.grid[k], worked_out(op, worked, k % d.nx, k / d.nx))
                << op.name << ' ' << DOM_text(&d) << ' ' << k % d.nx << ',' << k / d.nx;
        }
    }
}

TEST(GrdOper, LinesAndParabolasOfAMapAreExact) {
    for (const char* domain :
         {"ps:90:-105,60,-105,21,15,1,2", "ps:-90:20,-60,20,14,15,1,1", "lc:25:-95,40,-95,21,9,2,1"}) {
        for (const float factor : {FMISS, 0.5F}) {
            GRD_report line = made_on_map(domain, [](double x, double y) { return 3 * x - 2 * y + 5; });
            GRD_report bowl = made_on_map(domain, [](double x, double y) { return 2 * x * x - x * y + 3 * y * y; });
            line.domain.param[2] = bowl.domain.param[2] = factor;
            const double scale = factor == FMISS ? 1 : factor;
            GRD_report dx, dy, bend;
            ASSERT_EQ(GRD_dx(&line, &dx) + GRD_dy(&line, &dy) + GRD_laplacian(&bowl, &bend), 0);
            for (std::size_t k = 0; k < GRD_points(&line); ++k) {
                ASSERT_NEAR(dx.grid[k], 3 / scale, 2e-4) << domain << k;
                ASSERT_NEAR(dy.grid[k], -2 / scale, 2e-4) << domain << k;
                ASSERT_NEAR(bend.grid[k], 10 / (scale * scale), 0.05) << domain << k;
            }
        }
    }
}

/// A wave round the globe, cos(lat)^2 cos(2 lon), whose derivatives are known. Their errors stay below those that
/// central differences have, at the seam too, where a difference to one side would be ten times as far off.
TEST(GrdOper, WavesRoundTheGlobeHaveNoSeam) {
    constexpr double STEP = 2.5;
    for (const char* domain : {"ll,0,0,144,73,2.5,2.5", "ll,0,1.25,145,73,2.5,2.5"}) {
        const auto lat = [](int j) { return (90 - STEP * j) * RADIANS; };
        const auto lon = [](int i) { return STEP * i * RADIANS; };
        const GRD_report wave =
            made_grid(domain, [&](int i, int j) { return std::pow(std::cos(lat(j)), 2) * std::cos(2 * lon(i)); });
        GRD_report dx, dy, bend;
        ASSERT_EQ(GRD_dx(&wave, &dx) + GRD_dy(&wave, &dy) + GRD_laplacian(&wave, &bend), 0);
        const double unit = DEGREE / RADIANS;  // of the sphere's radius
        const double h = STEP * RADIANS;
        for (int k = 0; k < wave.domain.nx * wave.domain.ny; ++k) {
            const int i = k % wave.domain.nx;
            const int j = k / wave.domain.nx;
            const double c = std::cos(lat(j));
            const bool pole = j == 0 || j == wave.domain.ny - 1;
            const double slope_x = -2 * c * std::sin(2 * lon(i));
            const double slope_y = -std::sin(2 * lat(j)) * std::cos(2 * lon(i));
            const double bend_both = (-4 - 2 * std::cos(2 * lat(j))) * std::cos(2 * lon(i));
            if (pole) {
                ASSERT_EQ(dx.grid[k], FMISS);
                ASSERT_EQ(bend.grid[k], FMISS);
                ASSERT_NEAR(dy.grid[k] * unit, slope_y, 1.01 * h);
                continue;
            }
            ASSERT_NEAR(dx.grid[k] * unit, slope_x, 8 * h * h / 6 * c + 1e-4 / c) << domain << ' ' << i << ',' << j;
            ASSERT_NEAR(dy.grid[k] * unit, slope_y, 4 * h * h / 6 + 1e-5) << domain << ' ' << i << ',' << j;
            ASSERT_NEAR(bend.grid[k] * unit * unit, bend_both, 24 * h * h / 12 + 2e-4 / (c * c)) << i << ',' << j;
        }
    }
}

/// Wind of a sphere that turns: its vorticity without the metric term is sin(lat) U / radius.
TEST(GrdOper, TurningSphere) {
    const auto lat = [](int j) { return (80 - 2 * j) * RADIANS; };
    const GRD_report u = made_grid("ll,0,10,20,81,3,2", [&](int, int j) { return 40 * std::cos(lat(j)); });
    const GRD_report v = made_grid("ll,0,10,20,81,3,2", [](int, int) { return 0; });
    GRD_report vorticity, conv, second;
    ASSERT_EQ(GRD_vorticity(&u, &v, &vorticity) + GRD_converge(&u, &v, nullptr, &conv), 0);
    ASSERT_EQ(GRD_deformation2(&u, &v, &second), 0);
    const double difference = std::sin(2 * RADIANS) / (2 * RADIANS);  // of a sine over its own step
    for (int k = 20; k < 20 * 80; ++k) {
        ASSERT_NEAR(vorticity.grid[k], 40 * std::sin(lat(k / 20)) * difference * RADIANS / DEGREE, 1e-5);
        ASSERT_EQ(second.grid[k], vorticity.grid[k]);
        ASSERT_EQ(conv.grid[k], 0);
    }
}

/// Neighbours that are missing, by hand: spacing 2, values with a gap each way, and a point alone.
TEST(GrdOper, EdgesAndGaps) {
    const float M = FMISS;
    const std::vector<float> values{1, 3, M, 9, 15,  //
                                    M, 4, 8, M, 7,   //
                                    2, M, 6, 1, M};
    const std::vector<float> dx{1, 1, M, 3, 3, M, 2, 2, M, 0, 0, M, -2.5F, -2.5F, M};
    const std::vector<float> dy{0, -0.5F, M, 0, 4, M, -0.5F, 1, M, 4, 0, M, 1, 0, M};
    const GRD_report grid =
        made_grid("ps:90:0,60,0,5,3,2,2", [&](int i, int j) { return values[static_cast<std::size_t>(5 * j + i)]; });
    GRD_report x, y;
    ASSERT_EQ(GRD_dx(&grid, &x) + GRD_dy(&grid, &y), 0);
    for (std::size_t k = 0; k < values.size(); ++k) {
        EXPECT_EQ(x.grid[k], dx[k]) << k;
        EXPECT_EQ(y.grid[k], dy[k]) << k;
    }
}

TEST(GrdOper, GridsThatDontFitAreRefused) {
    const char* domain = "ll,40,0,6,4,1,1";
    const GRD_report grid = made_grid(domain, [](int i, int j) { return i * i + j; });
    const GRD_report other = made_grid("ll,40,0,6,5,1,1", [](int i, int) { return i; });
    GRD_report flat = made_grid(domain, [](int i, int) { return i; });
    flat.domain.dx = 0;
    GRD_report out, wrong = other;
    const GRD_report none;
    EXPECT_EQ(GRD_dx(nullptr, &out), -1);
    EXPECT_EQ(GRD_dx(&none, &out), -1);
    EXPECT_EQ(GRD_dx(&grid, nullptr), -1);
    EXPECT_EQ(GRD_dx(&grid, &wrong), -1);
    EXPECT_EQ(GRD_dx(&flat, &out), -1);
    EXPECT_EQ(GRD_dy(&flat, &out), 0);
    EXPECT_EQ(GRD_vorticity(&grid, &other, &out), -1);
    EXPECT_EQ(GRD_advection(&grid, &grid, nullptr, &out), -1);
    EXPECT_EQ(GRD_coriolis(nullptr, "add") + GRD_coriolis(&wrong, "ad") + GRD_point_locate(&out, "latitude"), -3);
}

TEST(GrdOper, OutputMayBeAnInput) {
    const GRD_report grid = made_grid("ll,40,0,9,7,1,1", [](int i, int j) { return i * i * j + j * j; });
    GRD_report apart, self, copy;
    ASSERT_EQ(GRD_laplacian(&grid, &apart), 0);
    self = made_grid("ll,40,0,9,7,1,1", [](int i, int j) { return i * i * j + j * j; });
    GRD_copy(&copy, &grid);  // shares the values
    ASSERT_EQ(GRD_laplacian(&self, &self) + GRD_laplacian(&grid, &copy), 0);
    for (int k = 0; k < 63; ++k) {
        EXPECT_EQ(self.grid[k], apart.grid[k]);
        EXPECT_EQ(copy.grid[k], apart.grid[k]);
        EXPECT_EQ(grid.grid[k], static_cast<float>(k % 9 * (k % 9) * (k / 9) + k / 9 * (k / 9)));
    }
}

// Places

TEST(GrdCoriolis, CombinesValuesWithTheTurningOfTheEarth) {
    const double f = 14.584 * std::sqrt(0.5);  // at 45 degrees
    struct Row {
        const char* oper;
        double value;
    };
    for (const Row& row : {Row{"add", 5 + f}, Row{"SUB", 5 - f}, Row{"sub-", f - 5}, Row{"mul", 5 * f},
                           Row{"Div", 5 / 10.3124}, Row{"div-", f / 5}}) {
        GRD_report grid = made_grid("ll,0,0,3,3,1,45", [](int i, int) { return i == 2 ? FMISS : 5; });
        ASSERT_EQ(GRD_coriolis(&grid, row.oper), 0);
        EXPECT_NEAR(grid.grid[0], row.value, 1e-5) << row.oper;
        EXPECT_EQ(grid.grid[2], FMISS);
    }
    // On the equator the arithmetic gives what it gives, however the spacing is rounded.
    for (const char* domain : {"ll,0,0,5,751,0.24,0.24", "merc,0,0,5,7,0.3,0.3"}) {
        GRD_report grid = made_grid(domain, [](int, int) { return 1; });
        ASSERT_EQ(GRD_coriolis(&grid, "div"), 0);
        const int middle = grid.domain.ny / 2 * 5;
        EXPECT_TRUE(std::isinf(grid.grid[middle])) << domain << grid.grid[middle];
        EXPECT_TRUE(std::isfinite(grid.grid[middle - 1]) && std::isfinite(grid.grid[middle + 5])) << domain;
    }
}

/// Rows at the poles are those at the poles, however the spacing is rounded.
TEST(GrdOper, PolesOfRoundedSpacings) {
    for (const char* domain : {"ll,0,0,5,751,0.24,0.24", "ll,0,0,5,541,0.3333333,0.3333333", "ll,0,0,5,1801,0.1,0.1"}) {
        const GRD_report grid = made_grid(domain, [](int i, int) { return i; });
        GRD_report out;
        ASSERT_EQ(GRD_dx(&grid, &out), 0);
        const int last = grid.domain.ny * 5 - 5;
        EXPECT_TRUE(out.grid[0] == FMISS && out.grid[last] == FMISS) << domain;
        EXPECT_TRUE(out.grid[5] > 1 && out.grid[last - 5] > 1) << domain;
    }
}

}  // namespace
}  // namespace zav
