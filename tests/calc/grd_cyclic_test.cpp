// Grids that go round the globe: told from others, read across their seam, and refined.

#include "calc/grd_cyclic.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>

#include "calc/grd_refine.h"
#include "calc/grd_trans.h"
#include "frame/zav.h"
#include "map/maptran.h"

namespace zav {
namespace {

GRD_report make_grid(int proj, int nx, int ny, float step, const std::function<double(int, int)>& value) {
    GRD_report grid;
    grid.domain.proj = proj;
    grid.domain.clat = 0;
    grid.domain.clon = 11;
    grid.domain.dx = grid.domain.dy = step;
    grid.domain.nx = nx;
    grid.domain.ny = ny;
    grid.grid = std::shared_ptr<float[]>(new float[static_cast<std::size_t>(nx) * static_cast<std::size_t>(ny)]);
    for (int k = 0; k < nx * ny; ++k) grid.grid[k] = static_cast<float>(value(k % nx, k / nx));
    return grid;
}

TEST(GrdCyclic, ColumnsOfATurn) {
    struct Row {
        int proj;
        int nx;
        float dx;
        int cycle;
    };
    for (const Row& row :
         {Row{PROJ_LATLON, 144, 2.5F, 144}, Row{PROJ_LATLON, 145, 2.5F, 144}, Row{PROJ_LATLON, 143, 2.5F, 0},
          Row{PROJ_LATLON, 146, 2.5F, 0}, Row{PROJ_LATLON, 640, 0.5625F, 640}, Row{PROJ_LATLON, 640, 0.563F, 0},
          Row{PROJ_LATLON, 1440, 0.25001F, 1440}, Row{PROJ_LATLON, 3, 120, 0}, Row{PROJ_MERCATOR, 100, 4.0031556F, 100},
          Row{PROJ_MERCATOR, 100, 4.0072F, 100}, Row{PROJ_MERCATOR, 100, 4.1F, 0}, Row{PROJ_POLAR, 144, 2.5F, 0}}) {
        Domain domain;
        domain.proj = row.proj;
        domain.nx = row.nx;
        domain.dx = domain.dy = row.dx;
        EXPECT_EQ(GRD_cycle(domain), row.cycle) << row.nx << ' ' << row.dx;
    }
}

TEST(GrdCyclic, ValuesAcrossTheSeam) {
    const auto wave = [](int i, int j) { return i % 8 + 10 * j; };
    const GRD_report once = make_grid(PROJ_LATLON, 8, 3, 45, wave);
    const GRD_report repeated = make_grid(PROJ_LATLON, 9, 3, 45, wave);
    const GRD_report open = make_grid(PROJ_LATLON, 7, 3, 45, wave);
    for (const GRD_report* grid : {&once, &repeated}) {
        EXPECT_FLOAT_EQ(GRD_get_value(grid, 7.25F, 1), 15.25F);  // from 17 back to 10
        EXPECT_FLOAT_EQ(GRD_get_value(grid, -0.5F, 0), 3.5F);
        EXPECT_FLOAT_EQ(GRD_get_value(grid, -17, 2), 27);
        EXPECT_FLOAT_EQ(GRD_get_value(grid, 19.5F, 1.5F), 18.5F);
        EXPECT_EQ(GRD_get_value(grid, 7.5F, -0.1F), FMISS);
        EXPECT_EQ(GRD_get_value(grid, INFINITY, 1), FMISS);
    }
    EXPECT_EQ(GRD_get_value(&open, 6.5F, 1), FMISS);
    float x = 0;
    float y = 0;  // 180 degrees from the middle, half a step beyond the last column
    MAP_domain(&once.domain);
    ASSERT_EQ(MAP_tran(0, -169, &x, &y), 1);
    EXPECT_FLOAT_EQ(GRD_get_value_domain(&once, nullptr, &x, &y), 13.5F);
}

TEST(GrdRefine, KeepsPointsAndParabolas) {
    const auto parabola = [](double i, double j) { return 3 - i + 0.5 * i * i + 0.25 * i * j - 0.125 * j * j; };
    for (const int n : {2, 3, 8}) {
        const GRD_report grid = make_grid(PROJ_POLAR, 7, 5, 1, parabola);
        GRD_report fine;
        ASSERT_EQ(GRD_refine(grid, n, fine), 0);
        ASSERT_EQ(fine.domain.nx, 6 * n + 1);
        ASSERT_EQ(fine.domain.ny, 4 * n + 1);
        for (int k = 0; k < fine.domain.nx * fine.domain.ny; ++k) {
            const double i = static_cast<double>(k % fine.domain.nx) / n;
            const double j = static_cast<double>(k / fine.domain.nx) / n;
            EXPECT_NEAR(fine.grid[k], parabola(i, j), 2e-5) << n << ' ' << i << ' ' << j;
        }
    }
}

/// Round the globe the refined wave has no edge: its error is the same at all steps, and the grid closes.
TEST(GrdRefine, GoesRoundTheGlobe) {
    constexpr int COUNT = 24;
    constexpr int FINER = 4;
    for (const int repeated : {0, 1}) {
        const GRD_report grid =
            make_grid(PROJ_LATLON, COUNT + repeated, 2, 15, [](int i, int) { return std::cos(2 * M_PI * i / COUNT); });
        GRD_report fine;
        ASSERT_EQ(GRD_refine(grid, FINER, fine), 0);
        EXPECT_EQ(GRD_cycle(fine.domain), COUNT * FINER);
        for (int i = 0; i < fine.domain.nx; ++i) {
            EXPECT_NEAR(fine.grid[i], std::cos(2 * M_PI * i / (COUNT * FINER)), 6e-4) << i;
        }
        Point given;
        Point refined;
        const auto west = [](const Domain& domain, Point* at) {
            MAP_domain(&domain);
            MAP_grid_tran(0, 0, &at->x, &at->y);
            EarthPoint place;
            MAP_tran_pe(*at, &place);
            return place.lon;
        };
        EXPECT_NEAR(std::remainder(west(grid.domain, &given) - west(fine.domain, &refined), 360.0), 0, 1e-3);
    }
}

TEST(GrdRefine, MissingPointsStayMissing) {
    const auto hole = [](int i, int j) { return i == 3 && j == 2 ? FMISS : 2.0 * i - j; };
    const GRD_report grid = make_grid(PROJ_POLAR, 7, 5, 1, hole);
    GRD_report fine;
    ASSERT_EQ(GRD_refine(grid, 4, fine), 0);
    for (int k = 0; k < fine.domain.nx * fine.domain.ny; ++k) {
        const double i = (k % fine.domain.nx) / 4.0;
        const double j = (k / fine.domain.nx) / 4.0;
        const bool beside = std::fabs(i - 3) < 1 && std::fabs(j - 2) < 1;
        if (beside) {
            EXPECT_EQ(fine.grid[k], FMISS) << i << ' ' << j;
        } else {
            EXPECT_NEAR(fine.grid[k], 2 * i - j, 1e-5) << i << ' ' << j;
        }
    }
    GRD_report vast = grid;
    vast.domain.nx = vast.domain.ny = 1 << 14;
    EXPECT_EQ(GRD_refine(vast, 8, fine), -1);
    EXPECT_EQ(fine.grid, nullptr);
}

}  // namespace
}  // namespace zav
