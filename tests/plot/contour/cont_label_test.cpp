#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "frame/resrc.h"
#include "frame/string.h"
#include "grid/grd_tool.h"
#include "plot/contour/cont_support.h"
#include "plot/contour/cont_texts.h"
#include "plot/page/plt_room.h"
#include "plot/page/plt_tool.h"

namespace zav::test {
namespace {

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

    /// The texts sent, with their places.
    static std::vector<std::string> texts() {
        std::vector<std::string> found;
        for (const auto& t : sent.texts) found.push_back(text_format("%s %.2f %.2f", t.str.c_str(), t.pt.x, t.pt.y));
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
    std::mt19937 random(7);
    for (int n = 0; n < 40; ++n) {
        const bool listed = n % 3 == 0;
        std::vector<float> levels(listed ? 6 : 41);
        for (int k = 0; k < static_cast<int>(levels.size()); ++k) levels[k] = listed ? 5.0F * k - 12 : 2.0F * k - 40;
        start_contours(CONT_LINE);
        set_interval(-40, 2, 41);
        if (listed) test::set_levels(levels);
        const int skip = cont.label_skip = 1 + static_cast<int>(random() % 4);
        const int first = n % 2 == 0 ? 0 : static_cast<int>(random() % 5) - (listed ? 0 : 2);  // the base's number
        if (n % 2 == 1) cont.base = listed ? 5.0F * first - 12 : 2.0F * first - 40;
        if (n % 5 == 1) cont.min_cut = -4;
        if (n % 7 == 1) cont.max_cut = 8;
        std::vector<float> labelled;
        for (int k = listed ? first : 0; k < static_cast<int>(levels.size()); ++k) {
            const bool cut = (n % 5 == 1 && levels[k] < -4) || (n % 7 == 1 && levels[k] > 8);
            if ((k - first) % skip == 0 && !cut) labelled.push_back(levels[k]);
        }
        label(waves);
        auto found = texts();
        std::sort(found.begin(), found.end());
        ASSERT_EQ(found, expected_labels(waves, labelled)) << n;
        EXPECT_FALSE(found.empty()) << n;
    }
}

/// On a refined field of which the map shows a part, labels stand on the columns and rows of the grid itself.
TEST_F(ContLabel, ARefinedFieldKeepsTheLatticeOfItsGrid) {
    constexpr int STEPS = 3;
    const std::vector<int> no_columns;
    for (const bool steep : {true, false}) {
        GRD_report grid = field(11, 9, [](int, int) { return 0.0F; });
        // Rows 2 to 8 of the grid from the bottom.
        GRD_report refined = field(
            31, 19, [steep](int column, int row) { return static_cast<float>(steep ? column : row) / STEPS - 0.1F; });
        start_contours(CONT_LINE);
        set_interval(0, 1, 12);
        cont.label_skip = 4;
        cont.x_label_space = 5;
        cont.y_label_space = 3;
        draw(refined);
        cont.text_size = 0.001F;
        std::vector<Cont_spot> spots;
        cont_lattice_spots({&grid, &refined, STEPS, no_columns, -2 * STEPS}, &spots);
        std::vector<std::string> found;
        for (const Cont_spot& spot : spots) {
            EXPECT_EQ(spot.steep, steep);
            found.push_back(text_format("%g at %.1f", spot.label.level, steep ? spot.pt.y : spot.pt.x));
        }
        std::sort(found.begin(), found.end());
        const std::vector<std::string> rows{"0 at 12.5", "0 at 3.5", "4 at 12.5", "4 at 3.5", "8 at 12.5", "8 at 3.5"};
        const std::vector<std::string> columns{"0 at 0.5", "0 at 15.5", "4 at 0.5", "4 at 15.5"};
        EXPECT_EQ(found, steep ? rows : columns);
    }
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

/// Each point against all near it, of which one may be missing; round the globe near is near across the seam too.
TEST_F(ContLabel, ExtremesAreAboveOrBelowAllNear) {
    constexpr int NX = 11;
    constexpr int NY = 8;
    std::mt19937 random(4);
    for (int n = 0; n < 400; ++n) {
        GRD_report grid = field(
            NX, NY, [&random](int, int) { return random() % 12 == 0 ? FMISS : static_cast<float>(random() % 12); });
        const bool round = n % 5 == 4;
        start_contours(CONT_LINE, round);
        if (round) grid.domain.proj = PROJ_LATLON;
        if (round) grid.domain.dx = 360.0F / NX;
        set_interval(0, 2, 6);
        cont.scale = 2;
        const int radius = cont.ext_radius = n % 4;
        if (n % 3 == 1) cont.min_cut = 2;
        if (n % 3 == 2) cont.max_cut = 9;
        std::vector<std::string> want;
        for (int place = 0; place < NX * NY; ++place) {
            const float value = grid.grid[place];
            int missing = 0, above = 0, below = 0, same = -1;
            std::array<int, 2> nearest{NX * NX, NX * NX};  // squares of distances to a value no higher, no lower
            for (int near = 0; near < NX * NY; ++near) {
                const int down = std::abs(near / NX - place / NX);
                const int straight = std::abs(near % NX - place % NX);
                const int across = round ? std::min(straight, NX - straight) : straight;
                const int square = across * across + down * down;
                for (const int side : {0, 1}) {
                    const bool beyond = side == 0 ? grid.grid[near] <= value : grid.grid[near] >= value;
                    if (near != place && grid.grid[near] != FMISS && beyond)
                        nearest[side] = std::min(nearest[side], square);
                }
                if (std::max(down, across) > radius) continue;
                const float other = grid.grid[near];
                (other == FMISS ? missing : other > value ? above : other < value ? below : same)++;
            }
            const bool cut = (n % 3 == 1 && value < 2) || (n % 3 == 2 && value > 9);
            if (value == FMISS || cut || radius == 0 || missing > 1 || same > 0 || (above > 0 && below > 0)) continue;
            const int y = NY - 1 - place / NX;
            want.push_back(text_format("%s %.2f %.2f", below > 0 ? "H" : "L", float(place % NX), float(y)));
            EXPECT_FLOAT_EQ(cont_extreme_distance(grid, {place % NX, y, value, below > 0}),
                            std::sqrt(static_cast<float>(nearest[below > 0 ? 1 : 0])));
            want.push_back(text_format("%s %.2f %.2f", set_num("3.3.0", value).c_str(), float(place % NX),
                                       y - 0.02F * 2 * (NY - 1)));
        }
        draw(grid);
        sent = {};
        CONT_draw_maxmin(&grid);
        ASSERT_EQ(texts(), want) << n;
    }
}

TEST_F(ContLabel, APoleIsOnePoint) {
    for (const bool joined : {true, false}) {
        start_contours(CONT_LINE, joined);
        GRD_report globe = field(10, 7, [](int column, int row) {
            return row == 0 ? 50.0F : 10.0F * std::abs(row - 4) + static_cast<float>(column % 5);
        });
        globe.domain.proj = PROJ_LATLON;
        globe.domain.clat = 0;
        globe.domain.dx = 36;
        globe.domain.dy = 30;
        const std::vector<Cont_extreme> found = cont_find_extremes(globe, 2);
        const auto pole = std::find_if(found.begin(), found.end(), [](const Cont_extreme& e) { return e.j == 6; });
        ASSERT_EQ(pole != found.end(), joined);
        if (!joined) continue;
        EXPECT_TRUE(pole->maximum && pole->i == 5 && cont_extreme_distance(globe, *pole) == 7);
        for (int column = 0; column < 10; ++column) {  // a row of several values is none
            globe.grid[column] = 49;
            const auto more = cont_find_extremes(globe, 2);
            EXPECT_TRUE(std::none_of(more.begin(), more.end(), [](const Cont_extreme& e) {
                return e.j == 6 && e.i == 5;
            })) << column;
            globe.grid[column] = 50;
        }
    }
}

class LabelPage : public MetaPlot {};

/// The points of a fine grid give labels no places: those of a level stand 60 mm apart, as many as its line holds.
TEST_F(LabelPage, LabelsOfALevelStandApartOnFineGrids) {
    RES_put("color_label", "Red");
    Cont_paper paper{};
    const Drawn drawn = plot("ll,40,-100,401,301,0.1", [&paper] {
        cont = Cont_state{};
        cont.cont_type = CONT_LINE;
        cont.label_skip = 1;
        set_interval(0, 50, 6);
        GRD_report grid;
        MAP_get_domain(&grid.domain);
        ASSERT_EQ(GRD_alloc(&grid), 1);
        for (std::size_t k = 0; k < GRD_points(&grid); ++k) grid.grid[k] = static_cast<float>(k / 401) + 0.5F;
        CONT_draw(&grid);
        paper = cont_paper();
    });
    RES_put("color_label", "");
    std::map<std::string, std::vector<Gpt>> labels;
    for (const Drawn_mark& text : drawn.texts) labels[text.str].push_back(paper.at(text.pts[0]));
    EXPECT_EQ(labels.size(), 5U);
    for (const auto& [text, places] : labels) {
        EXPECT_GT(places.size(), 1U) << text;
        for (std::size_t i = 0; i < places.size(); ++i) {
            for (std::size_t k = 0; k < i; ++k) {
                EXPECT_GE(std::hypot(places[i].x - places[k].x, places[i].y - places[k].y), 60.0F) << text;
            }
        }
    }
}

/// Lines are cut at the gaps, and nothing else of them is lost.
TEST(ContOpen, LinesGoRoundTheirGaps) {
    std::mt19937 random(5);
    const auto any = [&random](float most) { return static_cast<float>(random() % 10000) / 10000.0F * most; };
    const Cont_paper paper{{10, 20}, {2, 0.5F}};
    start_contours(CONT_LINE);
    for (int n = 0; n < 20; ++n) {
        cont_close_gaps();
        PLT_boxes boxes;
        for (int k = 0; k < 30; ++k) {
            const Gpt low{any(250), any(200)};
            const Glim box{low.x, low.x + any(20), low.y, low.y + any(20)};
            const bool free = std::none_of(boxes.all().begin(), boxes.all().end(), [&box](const Glim& b) {
                return b.x_min < box.x_max && box.x_min < b.x_max && b.y_min < box.y_max && box.y_min < b.y_max;
            });
            ASSERT_EQ(boxes.is_free(box), free);
            boxes.add(box);
            cont_open_gap(box, paper);
        }
        std::vector<Gpt> line;
        for (int k = 0; k < 20; ++k) line.push_back({any(120), any(360)});
        sent = {};
        cont_open_line(20, line.data());
        const auto length = [](const std::vector<Gpt>& pts, auto counts) {
            double sum = 0;
            for (std::size_t i = 1; i < pts.size(); ++i) {
                for (int part = 0; part < 2000; ++part) {
                    const float d = (static_cast<float>(part) + 0.5F) / 2000;
                    const Gpt at{pts[i - 1].x + (pts[i].x - pts[i - 1].x) * d,
                                 pts[i - 1].y + (pts[i].y - pts[i - 1].y) * d};
                    if (counts(at)) sum += std::hypot(pts[i].x - pts[i - 1].x, pts[i].y - pts[i - 1].y) / 2000;
                }
            }
            return sum;
        };
        const auto outside = [&](const Gpt& pt) {
            const Gpt at = paper.at(pt);
            return std::none_of(boxes.all().begin(), boxes.all().end(), [&at](const Glim& b) {
                return PLT_box_inside({at.x, at.x, at.y, at.y},
                                      {b.x_min + 0.01F, b.x_max - 0.01F, b.y_min + 0.01F, b.y_max - 0.01F});
            });
        };
        double drawn = 0;
        double hidden = 0;
        for (const auto& piece : sent.lines) {
            drawn += length(piece, [](const Gpt&) { return true; });
            hidden += length(piece, [&](const Gpt& pt) { return !outside(pt); });
        }
        EXPECT_NEAR(drawn, length(line, outside), 5.0);
        EXPECT_NEAR(hidden, 0.0, 0.1);
    }
    cont_close_gaps();
}

TEST(ContLabelText, AllLevelsHaveTheDecimalsThatTheyNeed) {
    struct Case {
        float base, interval;
        std::vector<float> levels;
        const char* text;  ///< of 1012.5
    };
    for (const Case& c : {Case{FMISS, 4, {}, "1012"}, Case{FMISS, 2.5F, {}, "1012.5"}, Case{0.25F, 1, {}, "1012.50"},
                          Case{FMISS, 1e-5F, {}, "1012.50000"}, Case{0, 0, {0.1F, 0.5F, 25}, "1012.5"},
                          Case{0, 0, {1000, 1004, 1008}, "1012"}, Case{FMISS, 1e-30F, {}, "1.01e+03"}}) {
        start_contours(CONT_LINE);
        set_interval(0, c.interval, 5);
        cont.base = c.base;
        if (!c.levels.empty()) test::set_levels(c.levels);
        EXPECT_EQ(cont_value_text(1012.5F, cont_decimals()), c.text) << c.interval;
    }
    EXPECT_EQ(cont_value_text(-0.4F, 0), "0");
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
        if (!c.levels.empty()) CONT_set_bar_range(50, 0);  // a list keeps its levels
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
        const auto at = [&bar, box](const Gpt& pt) {
            return text_format("%.1f,%.1f ", (pt.x - bar.x_min) / box, (pt.y - bar.y_min) / (bar.y_max - bar.y_min));
        };
        std::string got;
        for (const auto& area : sent.areas) {
            got += std::to_string(area.band) + ": " + at(area.pts[0]) + at(area.pts[1]) + at(area.pts[2]);
        }
        for (const auto& edge : sent.lines) got += "edge " + at(edge[0]) + at(edge[1]);
        for (const auto& text : sent.texts) got += text.str + "@" + at(text.pt);
        std::string want;
        for (int i = 0; i < c.count && c.type != CONT_LINE; ++i) {
            want += text_format("%d: %d.0,0.5 %d.0,0.5 %d.0,1.0 ", i % 10, i, i + 1, i + 1);
        }
        for (int i = 1; i <= c.count && (c.type == CONT_LINE || c.type == CONT_FILL_LINE); ++i) {
            want += text_format("edge %d.0,0.5 %d.0,1.0 ", i, i);
        }
        for (int i = 0; i < c.count + (c.levels.empty() ? 1 : 0); i += c.count / 15 + 1) {
            const float level = c.levels.empty() ? 10.0F * i - 20 : c.levels[i];
            want += set_num("2.2.0", level) + text_format("@%d.0,0.0 ", i);
        }
        EXPECT_EQ(got, want);
        EXPECT_EQ(CONT_get_bar_value(bar.x_min + 2.5F * box, bar.y_max), c.levels.empty() ? 0.0F : 5.0F);
        EXPECT_EQ(CONT_get_bar_value(bar.x_max + box, bar.y_max), FMISS);
    }
    start_contours(CONT_FILL);
    EXPECT_EQ(CONT_draw_bar(1, ""), -1) << "all values are missing";
    set_interval(-20, 10, 201);
    EXPECT_EQ(CONT_draw_bar(1, ""), -1);
}

}  // namespace
}  // namespace zav::test
