#include "calc/grd_trans.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "frame/zav.h"
#include "map/maptran.h"
#include "support/support.h"

namespace zav {
namespace {

GRD_report make_grid(int nx, int ny, const std::vector<float>& values) {
    GRD_report grid;
    grid.domain.proj = PROJ_LATLON;
    grid.domain.plat = grid.domain.plon = 0;
    grid.domain.clat = 40;
    grid.domain.clon = -100;
    grid.domain.dx = 2;
    grid.domain.dy = 1;
    grid.domain.nx = nx;
    grid.domain.ny = ny;
    grid.grid = std::shared_ptr<float[]>(new float[values.size()]);
    std::copy(values.begin(), values.end(), grid.grid.get());
    return grid;
}

TEST(GrdTrans, MaxMin) {
    struct Row {
        std::vector<float> values;
        float max, min;
    };
    const std::vector<Row> rows{{{FMISS, 3, -7, 12, FMISS}, 12, -7},
                                {{5}, 5, 5},
                                {{FMISS, FMISS}, FMISS, FMISS},
                                {{FMISS, -20000}, -20000, -20000},
                                {{NAN, 2, -INFINITY, 1, INFINITY}, 2, 1}};
    for (const Row& row : rows) {
        const GRD_report grid = make_grid(static_cast<int>(row.values.size()), 1, row.values);
        float max = 0, min = 0;
        EXPECT_EQ(GRD_maxmin(&grid, &max, &min), 0);
        EXPECT_EQ(max, row.max);
        EXPECT_EQ(min, row.min);
    }
    const GRD_report empty;
    float max = 0, min = 0;
    EXPECT_EQ(GRD_maxmin(&empty, &max, &min), -1);
    EXPECT_EQ(max, FMISS);
}

TEST(GrdTrans, LargestWindPassesOverZeroComponents) {
    float max = 0;
    const GRD_report u = make_grid(6, 1, {3, 100, FMISS, -6, INFINITY, 1});
    const GRD_report v = make_grid(6, 1, {4, 0, 50, 8, 1, NAN});
    EXPECT_EQ(GRD_UVmax(&u, &v, &max), 0);
    EXPECT_FLOAT_EQ(max, 10);
    const GRD_report calm = make_grid(6, 1, {0, 0, 0, 0, 0, 0});
    EXPECT_EQ(GRD_UVmax(&u, &calm, &max), 0);
    EXPECT_EQ(max, FMISS);
    EXPECT_EQ(GRD_UVmax(&u, nullptr, &max), -1);
}

TEST(GrdTrans, ValueAtAPoint) {
    const GRD_report grid = make_grid(3, 3, {0, 10, 20, 30, 40, 50, 60, 70, FMISS});
    struct Row {
        float x, y, value;
    };
    const std::vector<Row> rows{
        {0, 0, 0},         {0.5F, 0, 5},        {0, 0.5F, 15},      {0.25F, 0.5F, 17.5F},
        {1, 1, FMISS},     {0.999F, 1, 39.99F}, {2, 0.5F, 35},      {2, 0, 20},
        {0.5F, 2, 60},     {2, 2, FMISS},       {-0.01F, 0, FMISS}, {2.5F, 0, FMISS},
        {2.00005F, 0, 20}, {0, 2.0002F, FMISS}, {0, 1e30F, FMISS},  {NAN, 0, FMISS},
    };
    for (const Row& row : rows) {
        EXPECT_NEAR(GRD_get_value(&grid, row.x, row.y), row.value, 1e-3) << row.x << ' ' << row.y;
    }
    const GRD_report whole = make_grid(2, 2, {1, 2, 3, 4});
    EXPECT_EQ(GRD_get_value(&whole, 1, 1), 4);
}

TEST(GrdTrans, ValueOnAnotherMap) {
    const GRD_report grid = make_grid(3, 3, {0, 10, 20, 30, 40, 50, 60, 70, 80});  // 98 to 102 W, 39 to 41 N
    Domain mercator = grid.domain;
    mercator.proj = PROJ_MERCATOR;
    MAP_domain(&mercator);
    float x = 0, y = 0;
    MAP_tran(40.5F, -101, &x, &y);
    EXPECT_NEAR(GRD_get_value_domain(&grid, &mercator, &x, &y), 20, 0.01);
    EXPECT_NEAR(x, 0.5, 1e-3);
    EXPECT_NEAR(y, 0.5, 1e-3);
    EXPECT_EQ(MAP_get_proj(), PROJ_MERCATOR);

    GRD_report empty = grid;  // the place is told without values too
    empty.grid.reset();
    MAP_tran(40.5F, -101, &x, &y);
    EXPECT_EQ(GRD_get_value_domain(&empty, &mercator, &x, &y), FMISS);
    EXPECT_NEAR(std::hypot(x - 0.5, y - 0.5), 0, 1e-3);

    MAP_domain(&grid.domain);
    x = -100;
    y = 40;
    EXPECT_NEAR(GRD_get_value_domain(&grid, nullptr, &x, &y), 40, 1e-3);
}

TEST(GrdTrans, PlotPositions) {
    const GRD_report grid = make_grid(3, 2, {1, 2, 3, 4, 5, 6});
    Domain target = grid.domain;
    target.proj = PROJ_ORTHO;
    target.plat = 40;
    target.plon = 0;
    Domain current = grid.domain;
    current.proj = PROJ_MERCATOR;
    MAP_domain(&current);
    std::vector<float> x;
    std::vector<float> y;
    ASSERT_EQ(GRD_proj_XY(&grid, &target, x, y), 0);
    EXPECT_EQ(MAP_get_proj(), PROJ_MERCATOR);
    ASSERT_EQ(x.size(), 6U);
    MAP_domain(&target);
    for (int j = 0; j < 2; ++j) {
        for (int i = 0; i < 3; ++i) {
            float px = 0, py = 0;
            MAP_tran(40.5F - static_cast<float>(j), -102.0F + 2.0F * static_cast<float>(i), &px, &py);
            EXPECT_NEAR(x[j * 3 + i], px, 1e-4);
            EXPECT_NEAR(y[j * 3 + i], py, 1e-4);
        }
    }
    target.plon = 80;  // the far side
    ASSERT_EQ(GRD_proj_XY(&grid, &target, x, y), 0);
    EXPECT_EQ(x[0], FMISS);
}

TEST(GrdTrans, PrintsAndEditsValues) {
    GRD_report grid = make_grid(3, 3, {0, 10, 20, 30, 40, 50, 60, 70, FMISS});
    MAP_domain(&grid.domain);
    const auto print = [&grid](float x, float y) { return test::capture([&] { GRD_print_value(x, y, &grid); }).out; };
    EXPECT_EQ(print(-102, 40.5F), "Grid:   0.00,  0.50 =  15.00\n");
    EXPECT_EQ(print(-98, 39), "Grid:   2.00,  2.00\n");
    EXPECT_EQ(test::capture([&] { GRD_print_value2(-98, 39, &grid, &grid); }).out, "Grid:   2.00,  2.00 = \n");
    EXPECT_EQ(test::capture([&] { GRD_print_value2(-102, 41, &grid, &grid); }).out,
              "Grid:   0.00,  0.00 =   0.00,  0.00\n");
    int result = 0;
    const auto edit = [&](float x, float y) {
        return test::capture([&] { result = GRD_edit_value("e-Alt", x, y, &grid); }, "99\n").out;
    };
    EXPECT_EQ(edit(-99.2F, 40.2F).substr(0, 27), "Grid:   1,  1 Val =  40.00 ");
    EXPECT_EQ(result, 0);
    EXPECT_EQ(grid.grid[4], 99);
    EXPECT_EQ(edit(-90, 40), "Grid:   6,  1 Off grid\n");
    EXPECT_EQ(result, -1);
}

TEST(GrdTrans, WholeGridArithmetic) {
    GRD_report grid = make_grid(3, 1, {2, FMISS, -4});
    EXPECT_EQ(GRD_scale(&grid, 2.5F), 0);
    EXPECT_EQ(GRD_offset(&grid, 1), 0);
    EXPECT_EQ(grid.grid[0], 6);
    EXPECT_EQ(grid.grid[1], FMISS);
    EXPECT_EQ(grid.grid[2], -9);
    grid.units = "1e-5 /s";
    grid.info = "Vorticity (1e-5 /s)";
    EXPECT_EQ(GRD_units(&grid, "/s"), 0);
    EXPECT_NEAR(grid.grid[0], 6e-5, 1e-9);
    EXPECT_EQ(grid.grid[1], FMISS);
    EXPECT_EQ(grid.units, "/s");
    EXPECT_EQ(grid.info, "Vorticity (/s)");
    EXPECT_EQ(GRD_units(&grid, "mb"), -1) << "no conversion: values and units stay";
    EXPECT_NEAR(grid.grid[0], 6e-5, 1e-9);
    EXPECT_EQ(grid.info, "Vorticity (/s)");
    GRD_report empty;
    EXPECT_EQ(GRD_scale(&empty, 2), -1);
    EXPECT_EQ(GRD_units(&empty, "K"), -1);
}

TEST(GrdTrans, PiecesMakeAWhole) {
    const std::vector<float> values(121, 5.0F);
    const GRD_report tile = make_grid(11, 11, values);
    GRD_report whole;
    ASSERT_EQ(GRD_piece_setup(&whole, 2, 2, &tile), 0);
    EXPECT_EQ(whole.domain.nx, 21);
    EXPECT_EQ(whole.domain.ny, 21);
    EXPECT_FLOAT_EQ(whole.domain.clat, 35);  // the upper left corner stays at 45 N, 110 W
    EXPECT_FLOAT_EQ(whole.domain.clon, -90);
    EXPECT_EQ(whole.grid[440], FMISS);
    for (int y = 0; y < 2; ++y) {
        for (int x = 0; x < 2; ++x) EXPECT_EQ(GRD_piece_grid(&whole, x, y, &tile), 0);
    }
    for (int i = 0; i < 441; ++i) ASSERT_EQ(whole.grid[i], 5) << i;
    EXPECT_EQ(GRD_piece_grid(&whole, 2, 0, &tile), -1);
    EXPECT_EQ(GRD_piece_grid(&whole, -1, 0, &tile), -1);
    EXPECT_EQ(GRD_piece_grid(&whole, 1 << 30, 1 << 30, &tile), -1);
    EXPECT_EQ(GRD_piece_setup(&whole, 1 << 30, 2, &tile), -1);
    GRD_report same = tile;
    EXPECT_EQ(GRD_piece_setup(&same, 3, 1, nullptr), 0);
    EXPECT_EQ(same.domain.nx, 31);
    EXPECT_EQ(same.domain.ny, 11);
    EXPECT_EQ(same.grid, tile.grid);
}

}  // namespace
}  // namespace zav
