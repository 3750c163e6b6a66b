#include <gtest/gtest.h>

#include <algorithm>

#include "frame/resrc.h"
#include "frame/string.h"
#include "plot/contour/cont_support.h"
#include "plot/page/plt_tool.h"

namespace zav {
namespace {

using test::draw;
using test::make_grid;
using test::sent;
using test::set_interval;
using test::start_contours;

/// Values by column and row, rows counted from the top.
template <typename Field>
GRD_report field(int nx, int ny, Field value) {
    std::vector<float> values;
    for (int row = 0; row < ny; ++row) {
        for (int column = 0; column < nx; ++column) values.push_back(value(column, row));
    }
    return make_grid(nx, ny, values);
}

class ContLabel : public ::testing::Test {
  protected:
    void SetUp() override {
        RES_put("color_label", "1");
        RES_put("color_clabel", "1");
        start_contours(CONT_LINE);
    }

    void label(GRD_report& grid) {
        draw(grid);
        sent = {};
        CONT_draw_labels(&grid);
    }

    std::vector<std::string> marks(GRD_report& grid) {
        draw(grid);
        sent = {};
        CONT_draw_maxmin(&grid);
        std::vector<std::string> found;
        for (const auto& text : sent.texts) {
            found.push_back(text.str + "@" + std::to_string(std::lround(text.pt.x)) + "," +
                            std::to_string(std::lround(text.pt.y)));
        }
        return found;
    }
};

/// Labels that a field without equal values must have: in the cells of the lattice's rows where a level runs through
/// bottom and top, in those of its columns where it runs through left and right, in the middle of the line.
std::vector<std::string> expected_labels(const GRD_report& grid, const std::vector<float>& levels) {
    std::vector<std::string> labels;
    for (int j = 0; j < grid.domain.ny - 1; ++j) {
        for (int i = 0; i < grid.domain.nx - 1; ++i) {
            const float z[4] = {cont_value_at(grid, i, j), cont_value_at(grid, i + 1, j), cont_value_at(grid, i, j + 1),
                                cont_value_at(grid, i + 1, j + 1)};
            for (const float level : levels) {
                const auto at = [level](float a, float b) { return (level - a) / (b - a); };
                const auto cuts = [level](float a, float b) { return (a < level) != (b < level); };
                const bool upright = cuts(z[0], z[1]) && cuts(z[2], z[3]) && !cuts(z[0], z[2]) && !cuts(z[1], z[3]);
                const bool level_line = cuts(z[0], z[2]) && cuts(z[1], z[3]) && !cuts(z[0], z[1]) && !cuts(z[2], z[3]);
                const std::string text = set_num("1.2.0", level);
                if (upright && j % 6 == 0) {
                    labels.push_back(
                        text_format("%s %.2f %.2f", text.c_str(), i + (at(z[0], z[1]) + at(z[2], z[3])) / 2, j + 0.5F));
                } else if (level_line && i % 8 == 0) {
                    labels.push_back(
                        text_format("%s %.2f %.2f", text.c_str(), i + 0.5F, j + (at(z[0], z[2]) + at(z[1], z[3])) / 2));
                }
            }
        }
    }
    std::sort(labels.begin(), labels.end());
    return labels;
}

TEST_F(ContLabel, LinesAreLabelledOnTheLattice) {
    GRD_report waves = field(40, 30, [](int column, int row) {
        return 20.0F * std::sin(0.21F * column) + 17.0F * std::cos(0.33F * row) + 0.07F * column;
    });
    const auto labels = [&](auto settings) {
        start_contours(CONT_LINE);
        set_interval(-40, 2, 41);
        settings();
        label(waves);
        std::vector<std::string> found;
        for (const auto& text : sent.texts) {
            found.push_back(text_format("%s %.2f %.2f", text.str.c_str(), text.pt.x, text.pt.y));
        }
        std::sort(found.begin(), found.end());
        return found;
    };
    const auto every = [](float first, float step) {
        std::vector<float> levels;
        for (float level = first; level < 42; level += step) levels.push_back(level);
        return levels;
    };
    const auto second = expected_labels(waves, every(-40, 4));
    EXPECT_GT(second.size(), 50U);
    EXPECT_EQ(labels([] {}), second);
    EXPECT_EQ(labels([] { cont.label_skip = 1; }), expected_labels(waves, every(-40, 2)));
    EXPECT_EQ(labels([] { cont.label_skip = 3; }), expected_labels(waves, every(-40, 6)));
    EXPECT_EQ(labels([] { cont.base = 6; }), expected_labels(waves, every(-38, 4)));
    EXPECT_EQ(labels([] { cont.base = -46; }), expected_labels(waves, every(-38, 4)));
    EXPECT_EQ(labels([] {
                  cont.min_cut = -4;
                  cont.max_cut = 8;
              }),
              expected_labels(waves, {-4, 0, 4, 8}));
    EXPECT_EQ(labels([] { test::set_levels({-12, -3, 1, 5, 9}); }), expected_labels(waves, {-12, 1, 9}));
    EXPECT_EQ(labels([] {
                  test::set_levels({-12, -3, 1, 5, 9});
                  cont.base = -3;
              }),
              expected_labels(waves, {-3, 5}));
}

TEST_F(ContLabel, NothingIsLabelledWhen) {
    GRD_report ramp = field(40, 30, [](int column, int) { return static_cast<float>(column); });
    const auto count = [&](auto settings) {
        start_contours(CONT_LINE);
        set_interval(0.5F, 2, 20);
        settings();
        label(ramp);
        return sent.texts.size();
    };
    EXPECT_EQ(count([] { cont.label_skip = 0; }), 0U);
    EXPECT_EQ(count([] { cont.scale = 2000; }), 0U);  // the text is larger than the lattice
    EXPECT_EQ(count([] { cont.max_cut = 0; }), 0U);
    EXPECT_EQ(count([] { cont.cont_label[0] = "first"; }), 50U);
    EXPECT_EQ(std::count_if(sent.texts.begin(), sent.texts.end(), [](const auto& t) { return t.str == "first"; }), 5);
    RES_put("color_clabel", "off");
    EXPECT_EQ(count([] {}), 0U);
}

TEST_F(ContLabel, Extremes) {
    constexpr int N = 9;
    const auto hill = [](int column, int row) {
        return 50.0F - static_cast<float>((column - 4) * (column - 4) + (row - 4) * (row - 4));
    };
    using Marks = std::vector<std::string>;
    GRD_report grid = field(N, N, hill);
    set_interval(0, 5, 12);
    const Marks found = marks(grid);
    EXPECT_EQ(std::count(found.begin(), found.end(), "H@4,4"), 1);
    EXPECT_EQ(std::count(found.begin(), found.end(), "L@0,0"), 1);  // a corner is compared with what there is
    EXPECT_EQ(found.size(), 2U * 5U);

    grid.grid[4 * N + 3] = 50;  // a plateau of two
    EXPECT_EQ(marks(grid).size(), 2U * 4U);
    grid.grid[4 * N + 3] = FMISS;  // one missing neighbour
    EXPECT_EQ(marks(grid).size(), 2U * 5U);
    grid.grid[4 * N + 5] = FMISS;  // two
    EXPECT_EQ(marks(grid).size(), 2U * 4U);

    cont.ext_radius = 0;
    EXPECT_TRUE(marks(grid).empty());
}

/// A row of boxes without gaps, one a band, with the value of its left edge under it.
TEST(ContBar, BoxesStandSideBySide) {
    struct Case {
        int type, count;
        std::vector<float> levels;  ///< a list, empty for levels 10 apart from -20
    };
    for (const Case& c : {Case{CONT_FILL, 5, {}}, Case{CONT_FILL_LINE, 5, {}}, Case{CONT_LINE, 5, {}},
                          Case{CONT_VALUE, 5, {}}, Case{CONT_FILL, 31, {}}, Case{CONT_FILL, 4, {1, 2, 5, 10}}}) {
        start_contours(c.type);
        set_interval(-20, 10, c.count);
        if (!c.levels.empty()) test::set_levels(c.levels);
        PLT_reset(0.0F);
        ASSERT_EQ(CONT_draw_bar(1, ""), 0);
        Glim view;
        PLT_get_view(&view);
        const Glim& bar = cont.bar_lim;
        const float width = view.x_max - view.x_min;
        EXPECT_NEAR(bar.x_min, view.x_min + 0.03F * width, 1e-6);
        EXPECT_NEAR(bar.x_max, view.x_min + width / 2, 1e-6);
        EXPECT_LT(bar.y_max, view.y_min);
        const float box = (bar.x_max - bar.x_min) / static_cast<float>(c.count);
        ASSERT_EQ(sent.areas.size(), c.type == CONT_LINE ? 0U : static_cast<std::size_t>(c.count));
        for (std::size_t i = 0; i < sent.areas.size(); ++i) {
            const auto& area = sent.areas[i];
            EXPECT_EQ(area.band, static_cast<int>(i) % 10);
            EXPECT_NEAR(area.pts[0].x, bar.x_min + static_cast<float>(i) * box, 1e-5);
            EXPECT_NEAR(area.pts[2].x - area.pts[0].x, box, 1e-5);
            EXPECT_NEAR(area.pts[0].y, (bar.y_min + bar.y_max) / 2, 1e-6);
            EXPECT_NEAR(area.pts[2].y, bar.y_max, 1e-6);
        }
        EXPECT_EQ(sent.lines.size(), c.type == CONT_LINE || c.type == CONT_FILL_LINE ? 5U : 0U);
        const int skip = c.count / 15 + 1;
        const int texts = c.levels.empty() ? c.count / skip + 1 : c.count;
        ASSERT_EQ(sent.texts.size(), static_cast<std::size_t>(texts)) << c.count;
        for (int n = 0; n < texts; ++n) {
            const int i = n * skip;
            EXPECT_EQ(std::stof(sent.texts[n].str), c.levels.empty() ? -20.0F + 10.0F * i : c.levels[i]);
            EXPECT_NEAR(sent.texts[n].pt.x, bar.x_min + static_cast<float>(i) * box, 1e-4);
            EXPECT_NEAR(sent.texts[n].pt.y, bar.y_min, 1e-6);
        }
        EXPECT_EQ(CONT_get_bar_value(bar.x_min + 2.5F * box, bar.y_max), c.levels.empty() ? 0.0F : 5.0F);
        EXPECT_EQ(CONT_get_bar_value(bar.x_max + box, bar.y_max), FMISS);
    }
    start_contours(CONT_FILL);
    set_interval(-20, 10, 201);
    EXPECT_EQ(CONT_draw_bar(1, ""), -1);
}

}  // namespace
}  // namespace zav
