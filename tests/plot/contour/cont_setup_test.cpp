// Interval, levels and bands against numbers worked out by hand.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>
#include <random>
#include <sstream>

#include "calc/grd_trans.h"
#include "frame/flag.h"
#include "frame/resrc.h"
#include "frame/status.h"
#include "frame/string.h"
#include "grid/grd_tool.h"
#include "plot/contour/cont.h"
#include "plot/contour/cont_state.h"
#include "plot/contour/cont_support.h"
#include "plot/meta_plot.h"
#include "plot/page/plt_labl.h"
#include "plot/page/plt_tool.h"
#include "support/table.h"
#include "var/var_tool.h"

namespace zav {
namespace {

class ContSetup : public ::testing::Test {
  protected:
    void SetUp() override {
        FLAG_reset(MISS);
        PLT_set_letter(false);
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
    std::mt19937 random(8);
    std::uniform_real_distribution<double> power(-3.9, 4.7);
    for (int n = 0; n < 5000; ++n) {
        const double share = std::pow(10.0, power(random));
        const int num = n % 20 + 1;
        const auto min = static_cast<float>(n % 3 * share);
        const double digit = std::min(1000.0, std::pow(10.0, std::floor(std::log10(share))));
        const double steps = share / digit;
        if (std::fabs(steps - std::round(steps)) < 1e-4) continue;  // rounding may decide
        const float intrvl = CONT_calc_intrvl(static_cast<float>(min + num * share), min, num);
        EXPECT_NEAR(intrvl / (digit * std::ceil(steps)), 1.0, 1e-5) << share;
    }
    EXPECT_FLOAT_EQ(CONT_calc_intrvl(5.0F, 5.0F, 7), 1.0F);
    EXPECT_FLOAT_EQ(CONT_calc_intrvl(0.0005F, 0.0F, 10), 0.00005F);
    EXPECT_FLOAT_EQ(CONT_calc_intrvl(2.73e-8F, 0.0F, 1), 3e-8F);
    EXPECT_FLOAT_EQ(CONT_calc_intrvl(30.0F, 0.0F, 0), 30.0F);
    EXPECT_FLOAT_EQ(CONT_calc_intrvl(3.0F, 0.0F, 1), 3.0F);
}

TEST_F(ContSetup, LevelsAreMultiplesFromTheBase) {
    std::mt19937 random(9);
    std::uniform_real_distribution<float> any(-900, 900);
    for (int n = 0; n < 3000; ++n) {
        const float low = any(random);
        const float high = low + std::fabs(any(random)) + 1.0F;
        const float base = n % 3 == 0 ? FMISS : any(random);
        const float intrvl = 3.0F + std::fabs(any(random)) / 20.0F;
        levels(low, high, base, intrvl);
        EXPECT_EQ(cont.cbase, base == FMISS ? cont.conlo : base);
        const float from = base == FMISS ? 0.0F : base;
        const double below = std::floor((static_cast<double>(low) - from) / intrvl);
        const double above = std::floor((static_cast<double>(high) - from) / intrvl) + 1.0;
        EXPECT_NEAR(cont.conlo, from + below * intrvl, 1e-2) << low << ' ' << from << ' ' << intrvl;
        EXPECT_NEAR(cont.conhi, from + above * intrvl, 1e-2) << high << ' ' << from << ' ' << intrvl;
        EXPECT_EQ(cont.num_cont, static_cast<int>(above - below)) << low << ' ' << high << ' ' << from << ' ' << intrvl;
    }
    levels(-7.0F, -7.0F, FMISS, 0.0F);
    EXPECT_FLOAT_EQ(cont.intrvl, 1.0F);
    EXPECT_FLOAT_EQ(cont.conlo, -7.0F);
}

/// Band of a value among levels, -1 outside of them or of the cuts: the last of a list has no upper end.
TEST_F(ContSetup, ValuesTakeTheirBand) {
    std::mt19937 random(10);
    for (int n = 0; n < 4000; ++n) {
        const bool listed = n % 2 == 0;
        const auto first = static_cast<float>(random() % 9);
        std::vector<float> levels(1 + random() % 6, first);
        for (std::size_t i = 1; i < levels.size(); ++i) levels[i] = levels[i - 1] + 1.5F;
        test::start_contours(CONT_FILL);
        test::set_interval(first, 1.5F, 9);
        if (listed) test::set_levels(levels);
        if (n % 3 == 1) cont.min_cut = first + 1.0F;
        if (n % 5 == 1) cont.max_cut = first + 3.0F;
        const float value = static_cast<float>(random() % 40) / 2.0F - 5.0F;
        const int steps = static_cast<int>(std::floor((value - first) / 1.5F));
        int want = listed ? std::clamp<int>(steps, -1, static_cast<int>(levels.size()) - 1) : (steps + 20) % 10;
        if ((n % 3 == 1 && value < first + 1.0F) || (n % 5 == 1 && value > first + 3.0F)) want = -1;
        Gattribs attrib;
        CONT_get_fill_attrib(n % 50 == 0 ? FMISS : value, &attrib);
        EXPECT_EQ(attrib.color, n % 50 == 0 ? -1 : want) << listed << ' ' << first << ' ' << value;
    }
}

TEST_F(ContSetup, NoIntervalRunsAway) {
    using Limits = std::numeric_limits<float>;
    for (const float intrvl : {1e-30F, 1e-7F, 1e30F, -5.0F, Limits::infinity(), Limits::quiet_NaN()}) {
        CONT_init();
        CONT_set_fill_colors(nullptr, 0);
        levels(240.0F, 310.0F, FMISS, intrvl);
        const Cont_ladder ladder = cont_ladder();
        int walked = 0;
        for (double n = ladder.below(240.0F); walked < 1000 && n <= ladder.last; n = ladder.next(n)) walked++;
        EXPECT_TRUE(walked < 1000 && ladder.level(ladder.below(250.0F)) <= 250.0F) << intrvl;
        EXPECT_TRUE(std::isfinite(cont.conlo)) << intrvl;
    }
}

/// The bands of a set as text: "level colour label width;".
std::string bands_of(const char* list) {
    CONT_init();
    CONT_set_fill_colors(list, 1);
    EXPECT_EQ(CONT_set_fill_colors("red-blue", 1), -1) << "the set is closed until the next plot";
    std::string bands;
    for (int i = 0; i < cont.color_num; ++i) {
        const Gattribs& band = cont.fill_attrib[i];
        if (cont_has_values()) bands += text_format("%g ", cont.cont_value[i]);
        bands += text_format("%d %s", band.color, cont.cont_label[i].c_str());
        bands += band.width == FMISS ? ";" : text_format(" %g;", band.width);
    }
    EXPECT_TRUE(!cont_has_values() || cont.cont_value[cont.color_num] == FMISS) << list;
    return bands;
}

TEST_F(ContSetup, ListsAndFilesMakeBands) {
    const test::TempDir folder;
    RES_put("file_path", folder.path().string());
    for (const auto& row : test::data_cells("plot/bands.tsv")) {
        std::string lines = row[0];
        std::replace(lines.begin(), lines.end(), '|', '\n');
        folder.write("bands.lev", lines);
        EXPECT_EQ(bands_of(lines == row[0] ? row[0].c_str() : "bands.lev"), row[1]) << row[0];
        EXPECT_EQ(cont.fill_attrib[cont.color_num].color, -2);
    }
    // Levels given before give way to the colours of a table, which has none.
    RES_put("color_table", folder.write("two.clr", "Black 0 0 0\nRed 1 0 0\nEND\nBlue 0 0 1\n").c_str());
    CLR_read_table(nullptr);
    CONT_init();
    const float own[] = {1.0F, 4.0F, FMISS};
    EXPECT_EQ(CONT_set_values(own, 3), 0);
    EXPECT_EQ(CONT_set_fill_colors(nullptr, 0), -1);
    EXPECT_FALSE(cont_has_values());
    EXPECT_EQ(bands_of(nullptr), "0 ;1 ;");
    RES_put("color_table", folder.write("none.clr", "END\n").c_str());
    CLR_read_table(nullptr);
    RES_put("color_table", "");
}

TEST_F(ContSetup, LevelFilesOfAnyContentAreHarmless) {
    const test::TempDir folder;
    RES_put("file_path", folder.path().string());
    std::string junk;
    for (int i = 0; i < 10000; i++) junk += std::to_string(i) + ":blue\n";
    for (int i = 0; i < 300; i++) junk += static_cast<char>(i);
    folder.write("junk.lev", junk);
    EXPECT_TRUE(bands_of("junk.lev").ends_with(";253 2 253;254 2 254;"));
    EXPECT_EQ(cont.color_num, CONT_LEVELS - 1);
    const std::string usual = bands_of(nullptr);
    folder.write("empty.lev", "# levels to come\n\n");
    for (const char* faulty : {"absent.lev", "empty.lev", "."}) {
        std::string bands;
        const test::Output said = test::capture([&] { bands = bands_of(faulty); });
        EXPECT_NE((said.out + said.err).find(faulty), std::string::npos) << faulty;
        EXPECT_EQ(bands, usual) << faulty;
        EXPECT_EQ(ZAV_noted(), STATUS_LAYER) << faulty;
    }
    bands_of("1-99999999999,-2147483648--5");
    EXPECT_LE(cont.color_num, CONT_LEVELS);
}

/// Colours of the bands of a filled field from `min` to `max`, as "#rrggbb", the lowest first.
std::vector<std::string> band_colors(int variable, float min, float max, float intrvl, float color_max = FMISS) {
    GRD_report grid;
    grid.var = variable;
    grid.units = "K";
    CLR_clear_table();
    cont = Cont_state{};
    cont.grd_ptr = &grid;
    CONT_set_type(CONT_FILL);
    CONT_set_color_range(color_max, min);
    CONT_set_fill_colors(nullptr, 0);
    CONT_set_range(max, min);
    CONT_set_intrvl(intrvl);
    CONT_set_cont_ext(nullptr);
    std::vector<std::string> colors;
    for (int k = 0; k < cont.num_cont; ++k) {
        Gattribs band;
        CONT_get_fill_attrib(cont.conlo + (static_cast<float>(k) + 0.5F) * cont.intrvl, &band);
        colors.push_back(CLR_get_name(band.color));
    }
    cont.grd_ptr = nullptr;
    return colors;
}

TEST_F(ContSetup, PalettesSpreadOverTheBandsAndNeverComeBack) {
    PLT_set_letter(false);
    RES_put("file_path", test::source_dir() + "/share/zav");
    VAR_read_varfile();
    constexpr int HEIGHT = 7;
    constexpr int TEMPERATURE = 11;
    for (const float intrvl : {10.0F, 60.0F, 0.0F, 5000.0F}) {
        std::vector<std::string> colors = band_colors(HEIGHT, 4893.0F, 5826.0F, intrvl);
        EXPECT_EQ(colors.size(), intrvl == 10.0F ? 94U : intrvl == 60.0F ? 17U : intrvl == 0.0F ? 15U : 2U);
        EXPECT_EQ(colors.front(), CLR_get_name(PAL_color(PAL_find("height"), 0.0F))) << intrvl;
        EXPECT_EQ(colors.back(), CLR_get_name(PAL_color(PAL_find("height"), 1.0F))) << intrvl;
        std::sort(colors.begin(), colors.end());
        EXPECT_EQ(std::unique(colors.begin(), colors.end()), colors.end()) << intrvl;
    }
    // Temperatures have the middle at 273.15 K, and a half of the palette on one side of it.
    const std::vector<std::string> about_zero = band_colors(TEMPERATURE, 243.15F, 303.15F, 1.0F);
    EXPECT_EQ(about_zero[29], CLR_get_name(PAL_color(PAL_find("temperature"), 0.5F - 0.5F * 0.65F / 30.35F)));
    EXPECT_EQ(band_colors(TEMPERATURE, 280.5F, 300.5F, 1.0F).front(), "#ffffbf");
    EXPECT_EQ(band_colors(TEMPERATURE, 240.5F, 260.5F, 1.0F).back(), "#ffffbf");
    // A later page of a sequence keeps the colours of the first, and the last one beyond its range.
    const std::vector<std::string> first = band_colors(HEIGHT, 5000.0F, 5500.0F, 50.0F);
    const std::vector<std::string> later = band_colors(HEIGHT, 5000.0F, 5900.0F, 50.0F, cont.conhi);
    EXPECT_TRUE(std::equal(first.begin(), first.end(), later.begin()));
    EXPECT_EQ(later.back(), first.back());
    PLT_set_letter(true);
    EXPECT_EQ(band_colors(HEIGHT, 4893.0F, 5826.0F, 60.0F)[0], "");
    PLT_set_letter(false);
    EXPECT_EQ(cont.color_num, 15);
}

using Settings = std::map<std::string, std::string>;

/// Words of a text, "name=value" each.
Settings read_settings(const std::string& text, Settings settings = {}) {
    std::istringstream words(text);
    for (std::string name, value; std::getline(words >> std::ws, name, '=') && words >> value;) settings[name] = value;
    return settings;
}

/// What plot formats and parameters set: those named, and no other.
TEST_F(ContSetup, WordsReachTheSettings) {
    const auto settings = [] {
        return read_settings(text_format(
            "type=%d dash=%d intrvl=%g base=%g low=%g high=%g scale=%g x=%g y=%g xskip=%d yskip=%d label=%d radius=%d "
            "xspace=%d yspace=%d pattern=%d bar=%d lines=%d grid=%d order=%d along=%d right=%d joined=%d form=(%s)",
            cont.cont_type, cont.dash, cont.intrvl, cont.base, cont.min_cut, cont.max_cut, cont.scale, cont.x_off,
            cont.y_off, cont.x_skip, cont.y_skip, cont.label_skip, cont.ext_radius, cont.x_label_space,
            cont.y_label_space, cont.fill_pat, CONT_get_bar(), cont.max_line_fact, cont.draw_grid, CONT_get_map_order(),
            cont.rot_label, FLAG_getplot(PLOT_TEXT_LR), PLT_get_label_type(), cont.num_form.c_str()));
    };
    const auto start = [] {
        cont = Cont_state{};
        CONT_set_bar(0);
        FLAG_setplot(PLOT_TEXT_LR, 1);
        PLT_set_label_type(0);
    };
    for (const auto& row : test::data_cells("plot/contour_words.tsv")) {
        start();
        const Settings want = read_settings(row[2], settings());
        RES_put("plot_param", row[1].c_str());
        EXPECT_EQ(row[0] == "format" ? CONT_format_decode_type(row[1].c_str()) : CONT_param_decode(), 0);
        EXPECT_EQ(settings(), want) << row[1];
    }
    RES_put("plot_param", "");
    start();
    EXPECT_EQ(CONT_format_decode_type(nullptr), -1);
}

class ContAttributes : public test::MetaPlot {};

/// Levels -2, 0, 2 and 4 of a list whose third band has a style and a width of its own.
TEST_F(ContAttributes, LinesTakeThoseOfTheirBandOrThePlot) {
    for (const auto& row : test::data_cells("plot/line_attributes.tsv")) {
        const char* format = row[0].c_str();
        const test::Drawn drawn = plot("ps:90:0,90,0,5,5,1", [&] {
            std::vector<float> values(25);
            for (int i = 0; i < 25; i++) values[i] = 2.0F * static_cast<float>(i % 5) - 3.0F;
            GRD_report grid = test::make_grid(5, 5, values);
            MAP_get_domain(&grid.domain);
            cont = Cont_state{};
            CONT_set_format(CONT_LINE, format);
            CONT_format_decode_type(format);
            CONT_set_fill_colors("-2:blue,0:red,2:green:st=3:wi=5,4:cyan", 1);
            CONT_set_base(row[1].empty() ? FMISS : std::stof(row[1]));
            CONT_set_cont_ext(&grid);
            CONT_set_label_type(0, 0);
            CONT_draw(&grid);
        });
        std::map<float, std::string> levels;  // upright lines amid the columns
        for (const test::Drawn_mark& line : drawn.paths) {
            levels[line.pts[0].x] += text_format("%g %g %s;", line.number("PL_TYPE", 1), line.number("PL_LW", 0),
                                                 CLR_get_name(static_cast<int>(line.number("PL_CLR", 1))).c_str());
        }
        ASSERT_EQ(levels.size(), 4U) << format;
        for (const auto& [x, lines] : levels) {
            const std::string& want = row[2 + static_cast<std::size_t>(x)];
            EXPECT_EQ(lines, want) << format << ' ' << row[1];
        }
    }
}

/// Range of the points of all cells under a lattice of places in the window of the current map, `more` steps of the
/// lattice wider on each side.
Cont_range range_under(const GRD_report& grid, int more) {
    Cont_range range{INFINITY, -INFINITY};
    const Domain map = *MAP_get_domain(nullptr);
    Glim window;
    MAP_get_window(&window);
    for (int n = -more; n <= 200 + more; ++n) {
        for (int m = -more; m <= 200 + more; ++m) {
            float x = window.x_min + (window.x_max - window.x_min) * static_cast<float>(n) / 200;
            float y = window.y_min + (window.y_max - window.y_min) * static_cast<float>(m) / 200;
            if (GRD_get_value_domain(&grid, &map, &x, &y) == FMISS) continue;
            for (const float row : {std::floor(y), std::ceil(y)}) {
                for (const float column : {std::floor(x), std::ceil(x)}) {
                    const float value = GRD_get_value(&grid, column, row);
                    range = {std::min(range.low, value), std::max(range.high, value)};
                }
            }
        }
    }
    return range;
}

/// On maps of all sizes, from the globe to a part of one cell: what is under the map, and nothing far from it.
TEST_F(ContAttributes, TheRangeIsThatOfWhatTheMapShows) {
    PLT_set_letter(false);
    for (const auto& row : test::data_cells("plot/shown_ranges.tsv")) {
        const std::string file = test::data_file(row[0]);
        VAR_set_def_type(VTYPE_CONT);
        ASSERT_EQ(VAR_setup(nullptr, row[1].c_str()), 1);
        plot(row[2], [&] {
            ASSERT_EQ(GRD_search_file(file), 1) << row[1];
            const GRD_report& grid = *GRD_get_grid(0);
            Cont_range shown{};
            cont = Cont_state{};
            PLT_set_letter(false);
            cont_shown_range(grid, &shown.high, &shown.low);
            const Cont_range least = range_under(grid, 0);
            const Cont_range most = range_under(grid, std::stoi(row[3]));
            EXPECT_TRUE(most.low <= shown.low && shown.low <= least.low) << row[2] << ' ' << shown.low;
            EXPECT_TRUE(least.high <= shown.high && shown.high <= most.high) << row[2] << ' ' << shown.high;
            PLT_set_letter(true);
            cont_shown_range(grid, &shown.high, &shown.low);
            PLT_set_letter(false);
            EXPECT_TRUE(shown.low < most.low || shown.high > most.high || row[4] == "whole") << row[2];
        });
    }
    VAR_reset();
}

}  // namespace
}  // namespace zav
