#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <random>
#include <tuple>

#include "plot/contour/cont_support.h"
#include "support/support.h"

namespace zav {
namespace {

using test::draw;
using test::make_grid;
using test::sent;
using test::set_interval;
using test::set_levels;
using test::start_contours;

/// One cell's corners in the engine's order: lower left, lower right, upper left, upper right.
GRD_report cell(float z0, float z1, float z2, float z3) { return make_grid(2, 2, {z2, z3, z0, z1}); }

using Segment = std::array<float, 4>;  ///< x1, y1, x2, y2, the lower point first

/// What a grid's lines at the levels set before are, in order of place, each turned about x and y as told.
std::vector<Segment> segments(GRD_report grid, bool flip_x = false, bool flip_y = false) {
    sent = {};
    draw(grid);
    std::vector<Segment> found;
    for (auto line : sent.lines) {
        for (Gpt& pt : line) {
            if (flip_x) pt.x = static_cast<float>(grid.domain.nx - 1) - pt.x;
            if (flip_y) pt.y = static_cast<float>(grid.domain.ny - 1) - pt.y;
        }
        if (std::tie(line[1].x, line[1].y) < std::tie(line[0].x, line[0].y)) std::swap(line[0], line[1]);
        found.push_back({line[0].x, line[0].y, line[1].x, line[1].y});
    }
    std::sort(found.begin(), found.end());
    return found;
}

void expect_same(const std::vector<Segment>& got, const std::vector<Segment>& want, const char* what) {
    ASSERT_EQ(got.size(), want.size()) << what;
    for (std::size_t i = 0; i < got.size(); ++i) {
        for (int k = 0; k < 4; ++k) EXPECT_NEAR(got[i][k], want[i][k], 1e-5) << what;
    }
}

/// Corners with values of their own, which a level may meet exactly.
TEST(ContTrace, MirroredAndNegatedCellsHaveTheSameLines) {
    std::mt19937 random(5);
    std::vector<float> values(9);
    std::iota(values.begin(), values.end(), -4.0F);
    for (int n = 0; n < 2000; ++n) {
        std::shuffle(values.begin(), values.end(), random);
        const float z0 = values[0], z1 = values[1], z2 = values[2], z3 = values[3];
        const float level = n % 2 == 0 ? values[4] + 0.37F : values[n % 4];
        start_contours(CONT_LINE);
        set_levels({level});
        const auto lines = segments(cell(z0, z1, z2, z3));
        expect_same(segments(cell(z1, z0, z3, z2), true, false), lines, "left and right");
        expect_same(segments(cell(z2, z3, z0, z1), false, true), lines, "up and down");
        set_levels({-level});
        expect_same(segments(cell(-z0, -z1, -z2, -z3)), lines, "negated");
    }
}

/// A field with all slopes.
GRD_report bumps(int n) {
    std::vector<float> values;
    for (int j = 0; j < n; ++j) {
        for (int i = 0; i < n; ++i) values.push_back(8.0F * std::sin(0.37F * i) * std::cos(0.29F * j) + 0.11F * i);
    }
    return make_grid(n, n, values);
}

/// However far off a value is, the rest of the chart is drawn as if it were missing, in the same colours.
TEST(ContTrace, OneStrayValueLeavesTheChart) {
    const auto draw_with = [](float stray, int type) {
        GRD_report grid = bumps(20);
        grid.grid[47] = stray;
        start_contours(type);
        cont.intrvl = 0.5F;
        cont.base = 0.0F;
        CONT_set_cont_ext(&grid);
        return segments(grid);
    };
    for (const int type : {CONT_LINE, CONT_FILL_LINE}) {
        const auto clean = draw_with(FMISS, type);
        EXPECT_GT(clean.size(), 1000U);
        std::vector<int> bands;
        for (const auto& area : sent.areas) bands.push_back(area.band);
        for (const float stray : {-99999.0F, 1e9F, 9.999e20F, -1e20F}) {
            EXPECT_EQ(draw_with(stray, type), clean) << stray;
            ASSERT_EQ(sent.areas.size(), bands.size()) << stray;
            for (std::size_t i = 0; i < bands.size(); ++i) EXPECT_EQ(sent.areas[i].band, bands[i]) << stray;
        }
    }
}

struct Cell_case {
    const char* what;
    std::array<float, 4> z;
    float level;
    std::vector<std::array<float, 4>> lines;  ///< x1, y1, x2, y2
};

TEST(ContTrace, CornersAndFlatSides) {
    const std::vector<Cell_case> cases{
        {"all on the level", {5, 5, 5, 5}, 5, {}},
        {"touch corner 0", {5, 7, 8, 9}, 5, {}},
        {"diagonal 0 to 3", {5, 9, 9, 5}, 5, {{0, 0, 1, 1}}},
        {"diagonal 1 to 2", {9, 5, 5, 9}, 5, {{0, 1, 1, 0}}},
        {"flat bottom", {5, 5, 9, 7}, 5, {{0, 0, 1, 0}}},
        {"flat left", {5, 9, 5, 7}, 5, {{0, 0, 0, 1}}},
        {"flat top", {9, 7, 5, 5}, 5, {{0, 1, 1, 1}}},
        {"flat right", {9, 5, 7, 5}, 5, {{1, 0, 1, 1}}},
        {"corner 0 and the opposite side", {5, 9, 1, 9}, 5, {{0, 0, 0.5F, 1}}},
        {"saddle exactly in the middle", {10, 0, 0, 10}, 5, {{1, 0.5F, 0.5F, 0}, {0.5F, 1, 0, 0.5F}}},
        {"saddle below the middle", {10, 0, 0, 10}, 8, {{0.8F, 1, 1, 0.8F}, {0.2F, 0, 0, 0.2F}}},
    };
    for (const Cell_case& c : cases) {
        GRD_report grid = cell(c.z[0], c.z[1], c.z[2], c.z[3]);
        start_contours(CONT_LINE);
        set_levels({c.level});
        draw(grid);
        ASSERT_EQ(sent.lines.size(), c.lines.size()) << c.what;
        for (std::size_t i = 0; i < c.lines.size(); ++i) {
            EXPECT_NEAR(sent.lines[i][0].x, c.lines[i][0], 1e-6) << c.what;
            EXPECT_NEAR(sent.lines[i][0].y, c.lines[i][1], 1e-6) << c.what;
            EXPECT_NEAR(sent.lines[i][1].x, c.lines[i][2], 1e-6) << c.what;
            EXPECT_NEAR(sent.lines[i][1].y, c.lines[i][3], 1e-6) << c.what;
        }
    }
}

TEST(ContTrace, CellsLeftOut) {
    const std::vector<float> ramp{0, 10, 20, 0, 10, 20, 0, 10, 20};  // lines run upward
    const auto lines = [](std::vector<float> values, int nx, int ny, auto settings) {
        GRD_report grid = make_grid(nx, ny, values);
        start_contours(CONT_LINE);
        set_interval(0, 1, 21);
        settings();
        draw(grid);
        return sent.lines.size();
    };
    const auto nothing = [] {};
    EXPECT_EQ(lines(ramp, 3, 3, nothing), 2U * 22U);  // the middle column, flat at 10, is drawn by both its cells
    std::vector<float> holed = ramp;
    holed[4] = FMISS;
    EXPECT_EQ(lines(holed, 3, 3, nothing), 0U);
    EXPECT_EQ(lines(ramp, 9, 1, nothing), 0U);
    EXPECT_EQ(lines(ramp, 1, 9, nothing), 0U);
    EXPECT_EQ(lines(ramp, 3, 3, [] { cont.max_line_fact = 9; }), 0U);
    EXPECT_EQ(lines(std::vector<float>(9, 5.0F), 3, 3, nothing), 0U);
    const auto listed = [] { set_levels({2, 3, 4, 5, 6, 7, 8}); };
    EXPECT_EQ(lines(ramp, 3, 3,
                    [listed] {
                        listed();
                        cont.max_line_fact = 1;
                    }),
              2U * 7U);
}

TEST(ContTrace, AttributesPerLevel) {
    GRD_report grid = make_grid(2, 2, {0, 10, 0, 10});
    start_contours(CONT_LINE);
    set_levels({1, 2, 3});
    cont.fill_attrib[1].color = -1;  // switched off
    draw(grid);
    ASSERT_EQ(sent.lines.size(), 2U);
    EXPECT_NEAR(sent.lines[0][0].x, 0.1, 1e-6);
    EXPECT_NEAR(sent.lines[1][0].x, 0.3, 1e-6);
}

struct Wrap_case {
    int proj;
    float x1, x2;
    std::vector<std::pair<float, float>> drawn;
};

TEST(ContSend, LinesAboutTheMapEdge) {
    const std::vector<Wrap_case> cases{
        {PROJ_LATLON, 10, 20, {{10, 20}}},
        {PROJ_LATLON, -179, 179, {{-179, -181}, {181, 179}}},
        {PROJ_LATLON, 179, -179, {{179, 181}, {-181, -179}}},
        {PROJ_MERCATOR, 200, -200, {{200, 200.31555F}, {-200.31555F, -200}}},
        {PROJ_LAMBERT, -30, 30, {}},
        {PROJ_LAMBERT, -20, 29, {{-20, 29}}},
        {PROJ_MOLLWEIDE, -120, 120, {{134.852F, 120}, {-120, -134.852F}}},
        {PROJ_POLAR, -120, 120, {{-120, 120}}},
    };
    for (const Wrap_case& c : cases) {
        start_contours(CONT_LINE);
        MAP_proj(c.proj);
        std::array<Gpt, 2> line{{{c.x1, 0}, {c.x2, 0}}};
        EXPECT_EQ(CONT_draw_lines(CONT_LINE, 2, line.data()), 0);
        ASSERT_EQ(sent.lines.size(), c.drawn.size()) << c.proj << ' ' << c.x1;
        for (std::size_t i = 0; i < c.drawn.size(); ++i) {
            EXPECT_NEAR(sent.lines[i][0].x, c.drawn[i].first, 1e-3);
            EXPECT_NEAR(sent.lines[i][1].x, c.drawn[i].second, 1e-3);
        }
    }
    cont.con_off = 3;
    cont.fill_attrib[3].color = -1;
    std::array<Gpt, 2> line{};
    EXPECT_EQ(CONT_draw_lines(CONT_LINE, 2, line.data()), -1);
}

TEST(ContSend, PolygonsAboutTheMapEdge) {
    struct Row {
        int proj;
        float x1, x2;
        std::size_t drawn;
    };
    const std::vector<Row> rows{{PROJ_LATLON, 178, 179, 1}, {PROJ_LATLON, 179, -179, 2},
                                {PROJ_LATLON, 179, 181, 2}, {PROJ_MERCATOR, 199, 201, 2},
                                {PROJ_LAMBERT, -40, 40, 0}, {PROJ_MOLLWEIDE, -126, 126, 2},
                                {PROJ_POLAR, -120, 120, 1}};
    for (const Row& row : rows) {
        start_contours(CONT_FILL);
        MAP_proj(row.proj);
        std::array<Gpt, 5> box{{{row.x1, 0}, {row.x2, 0}, {row.x2, 1}, {row.x1, 1}, {row.x1, 0}}};
        CONT_draw_lines(CONT_FILL, 5, box.data());
        ASSERT_EQ(sent.areas.size(), row.drawn) << row.proj << ' ' << row.x1;
        for (const auto& area : sent.areas) {
            EXPECT_TRUE(row.drawn == 1 || test::area_of(area.pts) < 5) << row.proj;
        }
    }
}

TEST(ContTrace, SkippedLevelsWouldDrawNothing) {
    std::mt19937 random(11);
    std::uniform_real_distribution<float> value(-50, 50);
    for (int n = 0; n < 240; ++n) {
        GRD_report grid = cell(value(random), value(random), value(random), value(random));
        const float interval = 0.3F + std::fabs(value(random)) / 10.0F;
        const float cut = value(random);
        std::vector<float> mixed(20);
        for (float& level : mixed) level = n % 4 == 0 ? std::round(value(random)) : value(random);
        mixed[7] = grid.grid[n % 4];
        std::vector<float> rising = mixed;
        std::sort(rising.begin(), rising.end());
        const auto run = [&](const char* traced) {
            start_contours(n % 2 == 0 ? CONT_LINE : CONT_FILL_LINE);
            set_interval(-60, interval, static_cast<int>(120 / interval) + 1);
            if (n % 5 == 0) set_levels(n % 10 == 0 ? rising : mixed);
            if (n % 3 == 1) cont.min_cut = cut;
            if (n % 4 == 2) cont.max_cut = cut;
            setenv("gridloc", traced, 1);
            draw(grid);
            unsetenv("gridloc");
            return sent;
        };
        const test::Sent some = run("9,9");
        test::Sent all;
        test::capture([&] { all = run("0,0"); });  // the traced cell walks every level
        const auto same = [](const Gpt& a, const Gpt& b) { return a.x == b.x && a.y == b.y; };
        const auto same_line = [&](const auto& a, const auto& b) {
            return std::equal(a.begin(), a.end(), b.begin(), b.end(), same);
        };
        const auto same_area = [&](const auto& a, const auto& b) {
            return a.band == b.band && same_line(a.pts, b.pts);
        };
        ASSERT_TRUE(std::equal(some.lines.begin(), some.lines.end(), all.lines.begin(), all.lines.end(), same_line));
        ASSERT_TRUE(std::equal(some.areas.begin(), some.areas.end(), all.areas.begin(), all.areas.end(), same_area));
    }
}

TEST(ContTrace, InterpolationTakesTheShorterWay) {
    Gpt pt;
    MAP_proj(PROJ_LATLON);
    int_xy(&pt, -179, 10, 179, 20, 0.5F);
    EXPECT_NEAR(pt.x, 180, 1e-4);
    EXPECT_NEAR(pt.y, 15, 1e-4);
    MAP_proj(PROJ_POLAR);
    int_xy(&pt, -100, 0, 100, 0, 0.25F);
    EXPECT_NEAR(pt.x, -50, 1e-4);
}

}  // namespace
}  // namespace zav
