#include <gtest/gtest.h>

#include <algorithm>

#include "frame/resrc.h"
#include "plot/contour/cont_support.h"

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

TEST_F(ContLabel, LinesAreLabelledOnTheLattice) {
    GRD_report ramp = field(40, 30, [](int column, int) { return static_cast<float>(column); });
    set_interval(0.5F, 2, 20);  // upright lines midway between the columns
    label(ramp);
    EXPECT_EQ(cont.x_label_space, 8);
    EXPECT_EQ(cont.y_label_space, 6);
    EXPECT_EQ(sent.texts.size(), 5U * 10U);  // every second line, on rows 0, 6, 12, 18 and 24
    for (const auto& text : sent.texts) {
        EXPECT_EQ(std::fmod(text.pt.y - 0.5F, 6.0F), 0.0F);
        EXPECT_EQ(std::fmod(text.pt.x - 0.5F, 4.0F), 0.0F);
        EXPECT_NEAR(std::stof(text.str), text.pt.x, 0.51);  // two digits
    }
    GRD_report level = field(40, 30, [](int, int row) { return static_cast<float>(row); });
    start_contours(CONT_LINE);
    set_interval(0.5F, 2, 15);
    cont.label_skip = 1;
    label(level);
    EXPECT_EQ(sent.texts.size(), 5U * 15U);  // every line, on columns 0, 8, 16, 24 and 32
}

TEST_F(ContLabel, StepThatIsLostBesideTheBaseEnds) {
    GRD_report ramp = field(21, 3, [](int column, int) { return 100000000.0F + 8.0F * static_cast<float>(column); });
    set_interval(100000008.0F, 1, 20);
    cont.base = 100000000.0F;
    label(ramp);
    EXPECT_EQ(sent.texts.size(), 0U);
}

TEST_F(ContLabel, BaseKeepsLabelledLevelsInPlace) {
    GRD_report ramp = field(21, 3, [](int column, int) { return static_cast<float>(column); });
    set_interval(0.5F, 1, 20);
    cont.base = -5.5F;
    cont.y_label_space = 2;
    label(ramp);
    ASSERT_FALSE(sent.texts.empty());
    EXPECT_NEAR(sent.texts[0].pt.x, 0.5, 1e-4);
    start_contours(CONT_LINE);
    set_interval(0.5F, 1, 20);
    cont.base = 5.5F;
    cont.y_label_space = 2;
    label(ramp);
    EXPECT_NEAR(sent.texts[0].pt.x, 1.5, 1e-4);
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

TEST(ContBar, ValueUnderThePointer) {
    start_contours(CONT_FILL);
    set_interval(10, 5, 4);
    EXPECT_EQ(CONT_get_bar_value(0.1F, 0.01F), FMISS);
    cont.bar_lim = {0.1F, 0.5F, 0.0F, 0.03F};
    cont.bar_inc = 0.1F;
    EXPECT_EQ(CONT_get_bar_value(0.15F, 0.01F), 10);
    EXPECT_EQ(CONT_get_bar_value(0.35F, 0.01F), 20);
    EXPECT_EQ(CONT_get_bar_value(0.35F, 0.04F), FMISS);
    test::set_levels({1, 10, 100, 1000});
    EXPECT_EQ(CONT_get_bar_value(0.35F, 0.01F), 100);
}

TEST(ContBar, LevelsOfARange) {
    struct Row {
        float base, interval, max, min, low, high;
        int count;
    };
    const std::vector<Row> rows{{2, 5, 20, 0, -3, 22, 5},
                                {FMISS, 10, 47, 3, 0, 50, 5},
                                {FMISS, 10, 50, 3, 0, 60, 6},
                                {FMISS, 1, 7.5F, 7.5F, 7, 8, 1}};
    for (const Row& row : rows) {
        start_contours(CONT_FILL);
        cont.base = row.base;
        cont.intrvl = row.interval;
        cont_set_levels(row.max, row.min);
        EXPECT_EQ(cont.conlo, row.low);
        EXPECT_EQ(cont.conhi, row.high);
        EXPECT_EQ(cont.num_cont, row.count);
    }
}

}  // namespace
}  // namespace zav
