// Derivatives of grids: fields known in closed form, edges and gaps.

#include "calc/grd_oper.h"

#include <gtest/gtest.h>

#include <cmath>

#include "calc/made_grid.h"

namespace zav {
namespace {

using test::made_grid;
using test::made_on_map;

constexpr double RADIANS = M_PI / 180.0;
constexpr double DEGREE = 1.11195;  // of latitude, in 100 km

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
