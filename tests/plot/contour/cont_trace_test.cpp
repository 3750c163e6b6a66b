#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <tuple>

#include "frame/string.h"
#include "plot/contour/cont_support.h"
#include "support/support.h"
#include "support/table.h"

namespace zav::test {
namespace {

/// One cell's corners in the engine's order: lower left, lower right, upper left, upper right.
GRD_report cell(float z0, float z1, float z2, float z3) { return make_grid(2, 2, {z2, z3, z0, z1}); }

/// Lines as text: "x1,y1 x2,y2;", none for a line that isn't drawn.
std::string text_of(const std::vector<std::vector<Gpt>>& lines) {
    std::string text;
    for (const auto& line : lines) {
        for (const Gpt& pt : line) text += text_format("%.4g,%.4g ", pt.x + 0.0F, pt.y + 0.0F);
        text.back() = ';';
    }
    return text;
}

/// The grid's lines at the levels set before, in order of place.
std::string lines_of(GRD_report grid) {
    const auto before = [](const Gpt& a, const Gpt& b) { return std::tie(a.x, a.y) < std::tie(b.x, b.y); };
    sent = {};
    draw(grid);
    for (auto& line : sent.lines) std::sort(line.begin(), line.end(), before);
    std::sort(sent.lines.begin(), sent.lines.end(), [before](const auto& a, const auto& b) {
        return std::lexicographical_compare(a.begin(), a.end(), b.begin(), b.end(), before);
    });
    return text_of(sent.lines);
}

TEST(ContTrace, LinesOfCells) {
    for (const auto& row : test::data_cells("plot/cells.tsv")) {
        std::array<float, 5> v{};
        std::sscanf(row[1].c_str(), "%f %f %f %f %f", v.data(), &v[1], &v[2], &v[3], &v[4]);
        start_contours(CONT_LINE);
        set_levels({v[4]});
        EXPECT_EQ(lines_of(cell(v[0], v[1], v[2], v[3])), row[2]) << row[0];
        const auto [low, high] = std::minmax_element(v.begin(), v.begin() + 4);
        start_contours(CONT_FILL_LINE);
        set_levels({-100, v[4]});
        const std::string filled = lines_of(cell(v[0], v[1], v[2], v[3]));
        EXPECT_EQ(*low < v[4] && v[4] < *high ? filled : row[2], row[2]) << row[0] << " filled";
        start_contours(CONT_LINE);
        set_levels({-v[4]});
        EXPECT_EQ(lines_of(cell(-v[0], -v[1], -v[2], -v[3])), row[2]) << row[0] << " negated";
    }
}

/// Lines and bands that were sent.
std::string chart() {
    std::string text = text_of(sent.lines);
    for (const auto& area : sent.areas) text += std::to_string(area.band) + ": " + text_of({area.pts});
    return text;
}

/// However far off a value is, the rest of the chart is drawn as if it were missing, in the same colours.
TEST(ContTrace, OneStrayValueLeavesTheChart) {
    const auto draw_with = [](float stray, int type) {
        std::vector<float> values(400);
        for (int i = 0; i < 400; ++i)
            values[i] = 8 * std::sin(0.37F * (i % 20)) * std::cos(0.29F * (i / 20)) + 0.11F * (i % 20);
        values[47] = stray;
        GRD_report grid = make_grid(20, 20, values);
        start_contours(type);
        cont.intrvl = 0.5F;
        cont.base = 0.0F;
        CONT_set_cont_ext(&grid);
        draw(grid);
        return chart();
    };
    for (const int type : {CONT_LINE, CONT_FILL_LINE}) {
        const auto clean = draw_with(FMISS, type);
        EXPECT_GT(sent.lines.size(), 1000U);
        for (const float stray : {-99999.0F, 1e9F, 9.999e20F, -1e20F})
            EXPECT_EQ(draw_with(stray, type), clean) << stray;
    }
}

TEST(ContTrace, CellsLeftOut) {
    const std::vector<float> ramp{0, 10, 20, 0, 10, 20, 0, 10, 20};  // lines run upward
    const auto lines = [](const std::vector<float>& values, int nx, int ny, int most, bool listed) {
        GRD_report grid = make_grid(nx, ny, values);
        start_contours(CONT_LINE);
        set_interval(0, 1, 21);
        if (listed) set_levels({2, 3, 4, 5, 6, 7, 8});
        cont.max_line_fact = most;
        draw(grid);
        return sent.lines.size();
    };
    // The middle column, flat at 10, is drawn by both its cells. A negative limit is one of times the bands.
    for (const int most : {0, 10, -1}) EXPECT_EQ(lines(ramp, 3, 3, most, false), 2U * 22U) << most;
    EXPECT_EQ(lines(ramp, 3, 3, 9, false), 0U);
    EXPECT_EQ(lines(ramp, 3, 3, 1, true), 2U * 7U);
    EXPECT_EQ(lines(ramp, 9, 1, 0, false) + lines(ramp, 1, 9, 0, false), 0U);
    EXPECT_EQ(lines({0, 10, 20, 0, FMISS, 20, 0, 10, 20}, 3, 3, 0, false), 0U);
    EXPECT_EQ(lines(std::vector<float>(9, 5.0F), 3, 3, 0, false), 0U);
}

/// Lines, sides of polygons and places between two points about the edges of maps.
TEST(ContSend, AboutTheMapEdge) {
    const std::vector<std::string> names{"", "polar", "latlon", "mercator", "lambert", "", "", "mollweide"};  // by code
    for (const auto& row : test::data_cells("plot/map_edge.tsv")) {
        float x1 = 0, y1 = 0, x2 = 0, y2 = 0, part = 0;
        std::sscanf(row[2].c_str(), "%f,%f %f,%f %f", &x1, &y1, &x2, &y2, &part);
        start_contours(CONT_LINE);
        MAP_proj(static_cast<int>(std::find(names.begin(), names.end(), row[1]) - names.begin()));
        std::vector<std::vector<Gpt>> drawn;
        if (row[0] == "between") {
            drawn.resize(1, std::vector<Gpt>(1));
            int_xy(drawn[0].data(), x1, y1, x2, y2, part);
        } else {
            std::array<Gpt, 5> box{{{x1, y1}, {x2, y1}, {x2, y2}, {x1, y2}, {x1, y1}}};
            if (row[0] == "line") box[1].y = y2;
            EXPECT_EQ(CONT_draw_lines(row[0] == "line" ? CONT_LINE : CONT_FILL, row[0] == "line" ? 2 : 5, box.data()),
                      0);
            drawn = sent.lines;
            for (const auto& area : sent.areas) drawn.push_back(area.pts);
        }
        EXPECT_EQ(text_of(drawn), row[3]) << row[0] << ' ' << row[1] << ' ' << row[2];
    }
    cont.con_off = 3;
    cont.fill_attrib[3].color = -1;
    std::array<Gpt, 2> line{};
    EXPECT_EQ(CONT_draw_lines(CONT_LINE, 2, line.data()), -1);
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
            return chart();
        };
        const std::string some = run("9,9");
        test::capture([&] { ASSERT_EQ(run("0,0"), some); });  // the traced cell walks every level
    }
}

}  // namespace
}  // namespace zav::test
