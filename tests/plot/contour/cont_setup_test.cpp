// Interval, levels and bands against numbers worked out by hand.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "frame/flag.h"
#include "frame/resrc.h"
#include "frame/status.h"
#include "grid/grd_tool.h"
#include "plot/contour/cont.h"
#include "plot/contour/cont_state.h"
#include "plot/meta_plot.h"

namespace zav {
namespace {

class ContSetup : public ::testing::Test {
  protected:
    void SetUp() override {
        FLAG_reset(MISS);
        CLR_clear_table();
        for (const char* name : {"magenta", "lmagenta", "blue", "lblue", "cyan", "lcyan", "green", "lgreen", "brown",
                                 "yellow", "red", "lred", "dgray", "lgray", "white"}) {
            CLR_add(name, 0.5F, 0.5F, 0.5F);
        }
        CONT_init();
    }

    /// Levels of an interval plot of a field between two values.
    static void levels(float min, float max, float base, float intrvl) {
        CONT_set_range(max, min);
        CONT_set_base(base);
        CONT_set_intrvl(intrvl);
        CONT_set_cont_ext(nullptr);
    }
};

TEST_F(ContSetup, IntervalIsRoundedUpAtItsLeadingDigit) {
    struct Case {
        float max, min;
        int num;
        float expected;
    };
    for (const Case& c : {Case{12345.0F, 0.0F, 10, 2000.0F}, Case{12.3F, 0.0F, 14, 0.9F}, Case{5.0F, 5.0F, 7, 1.0F},
                          Case{0.0005F, 0.0F, 10, 0.00005F}, Case{30.0F, 0.0F, 0, 30.0F}, Case{110.0F, 0.0F, 1, 200.0F},
                          Case{0.123F, 0.0F, 10, 0.02F}, Case{40.0F, -1.0F, 10, 5.0F}}) {
        EXPECT_FLOAT_EQ(CONT_calc_intrvl(c.max, c.min, c.num), c.expected) << c.max << " " << c.min << " " << c.num;
    }
}

TEST_F(ContSetup, LevelsAreMultiplesFromTheBase) {
    levels(0.0F, 20.0F, 2.0F, 5.0F);
    EXPECT_FLOAT_EQ(cont.conlo, -3.0F);
    EXPECT_FLOAT_EQ(cont.conhi, 22.0F);
    EXPECT_EQ(cont.num_cont, 5);
    EXPECT_FLOAT_EQ(cont.cbase, 2.0F);
    levels(5013.0F, 5891.0F, FMISS, 60.0F);
    EXPECT_FLOAT_EQ(cont.conlo, 4980.0F);
    EXPECT_FLOAT_EQ(cont.conhi, 5940.0F);
    EXPECT_EQ(cont.num_cont, 16);
    levels(-7.0F, -7.0F, FMISS, 0.0F);
    EXPECT_FLOAT_EQ(cont.intrvl, 1.0F);
    EXPECT_FLOAT_EQ(cont.conlo, -7.0F);
}

TEST_F(ContSetup, NoIntervalRunsAway) {
    for (const float intrvl : {1e-30F, 1e-7F, 1e30F, std::numeric_limits<float>::infinity(), -5.0F,
                               std::numeric_limits<float>::quiet_NaN()}) {
        CONT_init();
        CONT_set_fill_colors(nullptr, 0);
        levels(240.0F, 310.0F, FMISS, intrvl);
        const Cont_ladder ladder = cont_ladder();
        int walked = 0;
        for (double n = ladder.below(240.0F); walked < 1000 && n <= ladder.last; n = ladder.next(n)) walked++;
        EXPECT_LT(walked, 1000) << intrvl;
        EXPECT_LE(ladder.level(ladder.below(250.0F)), 250.0F) << intrvl;
        EXPECT_TRUE(std::isfinite(cont.conlo)) << intrvl;
    }
}

TEST_F(ContSetup, ListsMakeBandsAndFillInMissingLevels) {
    CONT_set_fill_colors("0:blue:la=cold,green-cyan,30:co=red:wi=2", 1);
    // green (6) down to cyan (4) are three entries between the two levels.
    ASSERT_EQ(cont.color_num, 5);
    const float expected[] = {0.0F, 7.5F, 15.0F, 22.5F, 30.0F, FMISS};
    for (int i = 0; i < 6; i++) EXPECT_FLOAT_EQ(cont.cont_value[i], expected[i]) << i;
    EXPECT_EQ(cont.cont_label[0], "cold");
    EXPECT_EQ(cont.cont_label[4], "30");
    EXPECT_EQ(cont.fill_attrib[1].color, 6);
    EXPECT_EQ(cont.fill_attrib[3].color, 4);
    EXPECT_FLOAT_EQ(cont.fill_attrib[4].width, 2.0F);
    EXPECT_EQ(cont.fill_attrib[5].color, -2);
    Gattribs attrib;
    CONT_set_cont_ext(nullptr);
    CONT_get_fill_attrib(16.0F, &attrib);
    EXPECT_EQ(attrib.color, 5);
    CONT_get_fill_attrib(-0.5F, &attrib);
    EXPECT_EQ(attrib.color, -1);
    EXPECT_EQ(CONT_set_fill_colors("red-blue", 1), -1) << "the set is closed until the next plot";
}

TEST_F(ContSetup, LevelFilesOfAnyContentAreHarmless) {
    const test::TempDir folder;
    RES_put("file_path", folder.path().string());
    folder.write("good.lev", "# temperature\n@old\n-10:blue\n0:green\n10:red:la=warm\n");
    std::string junk;
    for (int i = 0; i < 10000; i++) junk += std::to_string(i) + ":blue\n";
    for (int i = 0; i < 300; i++) junk += static_cast<char>(i);
    folder.write("junk.lev", junk);

    CONT_set_fill_colors("good.lev", 1);
    EXPECT_EQ(cont.color_num, 3);
    EXPECT_FLOAT_EQ(cont.cont_value[0], -10.0F);
    EXPECT_EQ(cont.cont_label[2], "warm");
    CONT_init();
    CONT_set_fill_colors("junk.lev", 1);
    EXPECT_EQ(cont.color_num, CONT_LEVELS - 1);
    EXPECT_FLOAT_EQ(cont.cont_value[CONT_LEVELS - 2], 254.0F);
    EXPECT_EQ(cont.cont_value[CONT_LEVELS - 1], FMISS);
    CONT_init();
    CONT_set_fill_colors(nullptr, 0);
    const auto usual = cont.fill_attrib;
    const int usual_count = cont.color_num;
    folder.write("empty.lev", "# levels to come\n\n");
    for (const char* faulty : {"absent.lev", "empty.lev", "."}) {
        CONT_init();
        const test::Output said = test::capture([faulty] { CONT_set_fill_colors(faulty, 1); });
        EXPECT_NE((said.out + said.err).find(faulty), std::string::npos) << faulty;
        EXPECT_EQ(cont.color_num, usual_count) << faulty;
        EXPECT_FALSE(cont_has_values()) << faulty;
        for (int i = 0; i < usual_count; i++) EXPECT_EQ(cont.fill_attrib[i].color, usual[i].color) << faulty;
        EXPECT_EQ(ZAV_noted(), STATUS_LAYER) << faulty;
    }
    CONT_init();
    CONT_set_fill_colors("1-99999999999,-2147483648--5", 1);
    EXPECT_LE(cont.color_num, CONT_LEVELS);
}

TEST_F(ContSetup, FormatFieldsReachTheSettings) {
    CONT_format_decode_type("DLN:in=4.5:cb=-2:mn=1:mx=9:sc=1.5:xy=2 -1:sk=3:%4.1f:lab=42:bar:unknown");
    EXPECT_EQ(cont.cont_type, CONT_LINE);
    EXPECT_EQ(cont.dash, 1);
    EXPECT_FLOAT_EQ(cont.intrvl, 4.5F);
    EXPECT_FLOAT_EQ(cont.base, -2.0F);
    EXPECT_FLOAT_EQ(cont.min_cut, 1.0F);
    EXPECT_FLOAT_EQ(cont.max_cut, 9.0F);
    EXPECT_FLOAT_EQ(cont.x_off, 0.024F);
    EXPECT_FLOAT_EQ(cont.y_off, -0.02F);
    EXPECT_EQ(cont.y_skip, 3);
    EXPECT_EQ(cont.num_form, "%4.1f");
    EXPECT_EQ(cont.label_skip, 4);
    EXPECT_EQ(cont.ext_radius, 2);
    EXPECT_EQ(CONT_get_bar(), 3);
    CONT_format_decode_type("lab=1.3.7.9:lcf:nobar");
    EXPECT_EQ(cont.label_skip, 1);
    EXPECT_EQ(cont.y_label_space, 9);
    EXPECT_EQ(cont.cont_type, CONT_FILL_LINE);
    EXPECT_EQ(CONT_get_bar(), -2);
    CONT_format_decode_type("sk=0:sk=-99999999999:lab=::::in=x:%s%n:xy=:cof=:::");
    EXPECT_GE(cont.x_skip, 1);
    EXPECT_EQ(CONT_format_decode_type(nullptr), -1);
}

TEST_F(ContSetup, ParametersOfTheRunReachTheSettings) {
    EXPECT_EQ(CONT_get_map_order(), MISS);
    RES_put("plot_param", "lab 1:3:5,maxl=4,conmin=2.5,conmax=7,fill=hat,MAPCON,grid,rlab");
    CONT_param_decode();
    EXPECT_EQ(cont.label_skip, 1);
    EXPECT_EQ(cont.x_label_space, 5);
    EXPECT_EQ(cont.max_line_fact, 4);
    EXPECT_FLOAT_EQ(cont.min_cut, 2.5F);
    EXPECT_FLOAT_EQ(cont.max_cut, 7.0F);
    EXPECT_EQ(cont.fill_pat, 9);
    EXPECT_EQ(CONT_get_map_order(), CONT_OVER_MAP);
    EXPECT_EQ(cont.draw_grid, 1);
    EXPECT_EQ(cont.rot_label, 1);
    RES_put("plot_param", "conmap,hlab");
    CONT_param_decode();
    EXPECT_EQ(CONT_get_map_order(), CONT_UNDER_MAP);
    EXPECT_EQ(cont.rot_label, 0);
}

class ContAttributes : public test::MetaPlot {};

/// Levels -2, 0, 2 and 4 of a list whose third band has a style and a width of its own.
TEST_F(ContAttributes, LinesTakeThoseOfTheirBandOrThePlot) {
    struct Case {
        const char* format;
        float base;
        std::array<float, 4> types;  ///< line types of the levels
        float width;                 ///< of the levels without their own
        const char* color;           ///< null: those of the bands
    };
    for (const Case& c : {Case{"ln", FMISS, {1, 1, 3, 1}, 0, "white"}, Case{"dln", FMISS, {2, 2, 3, 2}, 0, "white"},
                          Case{"ndln", FMISS, {2, 1, 3, 1}, 0, "white"}, Case{"ndln", 3, {2, 2, 3, 1}, 0, "white"},
                          Case{"ndln:st=5:wi=2:co=red", FMISS, {5, 1, 3, 1}, 2, "red"},
                          Case{"ln:st=4:wi=3:co=off", FMISS, {4, 4, 3, 4}, 3, nullptr}}) {
        const test::Drawn drawn = plot("ps:90:0,90,0,5,5,1", [&] {
            GRD_report grid;
            MAP_get_domain(&grid.domain);
            grid.grid = std::shared_ptr<float[]>(new float[25]);
            for (int i = 0; i < 25; i++) grid.grid[i] = 2.0F * static_cast<float>(i % 5) - 3.0F;
            cont = Cont_state{};
            CONT_set_format(CONT_LINE, c.format);
            CONT_format_decode_type(c.format);
            CONT_set_fill_colors("-2:blue,0:red,2:green:st=3:wi=5,4:cyan", 1);
            CONT_set_base(c.base);
            CONT_set_cont_ext(&grid);
            CONT_set_label_type(0, 0);
            CONT_draw(&grid);
        });
        ASSERT_EQ(drawn.paths.size(), 16U) << c.format;
        const char* bands[] = {"blue", "red", "green", "cyan"};
        for (const test::Drawn_mark& line : drawn.paths) {
            const auto level = static_cast<std::size_t>(line.pts[0].x);  // upright lines amid the columns
            EXPECT_EQ(line.number("PL_TYPE", 1), c.types[level]) << c.format;
            EXPECT_EQ(line.number("PL_LW", 0), level == 2 ? 5 : c.width) << c.format;
            EXPECT_EQ(line.number("PL_CLR", 1), CLR_get_ind(c.color != nullptr ? c.color : bands[level])) << c.format;
        }
    }
}

}  // namespace
}  // namespace zav
