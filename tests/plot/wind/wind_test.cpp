// Barbs, arrows, tracks, weather symbols, station circles and whole wind fields, read back from a text metafile.

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "frame/flag.h"
#include "frame/resrc.h"
#include "frame/zav.h"
#include "gks/gks_text.h"
#include "gks/zavgks.h"
#include "map/maptran.h"
#include "plot/background/map.h"
#include "plot/contour/cont.h"
#include "plot/sequence/plt_plot.h"
#include "plot/wind/vect_plt.h"
#include "plot/wind/vect_state.h"
#include "plot/wind/vecttool.h"
#include "plot/wind/windbarb.h"
#include "plot/wind/wx_symb.h"
#include "support/support.h"

namespace zav {
namespace {

/// A line or, `filled`, an area.
struct Stroke {
    bool filled = false;
    std::vector<Gpt> pts;
};

std::vector<Stroke> read_strokes(const std::string& page) {
    std::vector<Stroke> strokes;
    std::istringstream words(page);
    std::string key;
    while (words >> key) {
        int count = 0;
        if ((key != "PL" && key != "FA") || !(words >> count)) continue;
        Stroke stroke{key == "FA", {}};
        Gpt pt;
        char comma = 0;
        for (int k = 0; k < count && words >> pt.x >> comma >> pt.y; ++k) stroke.pts.push_back(pt);
        strokes.push_back(stroke);
    }
    return strokes;
}

float bearing(const Stroke& s) {
    return static_cast<float>(std::atan2(s.pts[1].x - s.pts[0].x, s.pts[1].y - s.pts[0].y) * 180 / M_PI);
}

class Wind : public test::TempDirTest {
  protected:
    void SetUp() override {
        RES_put("file_path", dir.path().string() + "/");
        FLAG_reset(MISS);
        FLAG_resetplot(1);
        RES_put("color_cont", "1");
        test::capture([this] {
            RES_put("device", "meta," + dir.file("out"));
            ASSERT_EQ(PLT_open(1.0F), 0);
        });
    }
    void TearDown() override {
        if (gchk_graphics() != 0) test::capture([] { PLT_close(); });
    }
    std::vector<Stroke> strokes() {
        test::capture([] { PLT_close(); });
        return read_strokes(test::read_file(dir.file("out")));
    }
    /// What `action` draws.
    std::vector<Stroke> drawn(const std::function<void()>& action) {
        action();
        return strokes();
    }
};

struct Speed_case {
    float speed;
    int flags;
    int full;
    int half;
};

class Feathers : public Wind, public testing::WithParamInterface<Speed_case> {};

TEST_P(Feathers, ReadTheSpeed) {
    const Speed_case& c = GetParam();
    int flags = 0;
    int full = 0;
    int half = 0;
    for (const Stroke& s : drawn([&] { EXPECT_EQ(WIND_barb(0.5F, 0.5F, 0, c.speed, 0.2F, 0), 0); })) {
        if (s.filled) flags++;
        if (s.filled || s.pts.size() != 2) continue;
        const float across = s.pts[1].x - s.pts[0].x;
        if (std::fabs(across - 0.1F) < 0.001F) full++;
        if (std::fabs(across - 0.05F) < 0.001F) half++;
    }
    EXPECT_EQ(flags, c.flags);
    EXPECT_EQ(full, c.full);
    EXPECT_EQ(half, c.half);
}

INSTANTIATE_TEST_SUITE_P(Table, Feathers,
                         testing::Values(Speed_case{2.9F, 0, 0, 0}, Speed_case{3, 0, 0, 1}, Speed_case{7, 0, 0, 1},
                                         Speed_case{8, 0, 1, 0}, Speed_case{15, 0, 1, 1}, Speed_case{48, 1, 0, 0},
                                         Speed_case{50, 1, 0, 0}, Speed_case{65, 1, 1, 1}, Speed_case{305, 6, 0, 0}),
                         [](const auto& given) {
                             std::ostringstream speed;
                             speed << given.param.speed << " kt";
                             return test::case_name(speed.str());
                         });

TEST_F(Wind, NothingIsDrawnWithoutAWind) {
    EXPECT_TRUE(drawn([] {
                    EXPECT_EQ(WIND_barb(0, 0, 90, 0, 1, 0), -1);
                    EXPECT_EQ(WIND_barb(0, 0, FMISS, 10, 1, 0), -1);
                    EXPECT_EQ(WIND_barb(0, 0, 90, NAN, 1, 0), -1);
                    EXPECT_EQ(WIND_vect(0, 0, 90, FMISS, 1, 1), -1);
                    EXPECT_EQ(WIND_track(0, 0, 90, 0, 1, 4, 0), -1);
                }).empty());
}

TEST_F(Wind, ATrackHasItsTicksAndHead) {
    const auto all = drawn([] { EXPECT_EQ(WIND_track(0.2F, 0.5F, 270, 0.4F, 0.1F, 4, 0), 0); });
    ASSERT_EQ(all.size(), 7U);  // shaft, four ticks, two lines of the head
    EXPECT_NEAR(all[0].pts[1].x, 0.6F, 1e-5);
    EXPECT_NEAR(all[2].pts[0].x, 0.3F, 1e-5);
    EXPECT_NEAR(std::fabs(all[2].pts[0].y - all[2].pts[1].y), 0.04F, 1e-5);
}

TEST(WindConversion, GoesBothWays) {
    float u, v, dir, spd;
    ASSERT_EQ(wind2vect(270, 10, &u, &v), 0);
    EXPECT_NEAR(u, 10, 1e-5);
    EXPECT_NEAR(v, 0, 1e-5);
    ASSERT_EQ(vect2wind(3, -4, &dir, &spd), 0);
    EXPECT_NEAR(spd, 5, 1e-5);
    EXPECT_NEAR(dir, 323.1301F, 1e-3);  // 360 - atan(3 / 4)
    EXPECT_EQ(vect2wind(FMISS, 1, &dir, &spd), -1);
    EXPECT_EQ(dir, FMISS);
}

// Arrows on each map point where the map carries a step along the wind.
class Arrows : public Wind, public testing::WithParamInterface<int> {};

TEST_P(Arrows, PointWhereTheAirGoes) {
    Domain domain;
    domain.proj = GetParam();
    domain.plat = domain.proj == PROJ_POLAR ? 90.0F : 40.0F;
    domain.plon = -100;
    domain.param[0] = 75;  // satellite longitude and cone: what each projection makes of it
    if (domain.proj == PROJ_LAMBERT) {
        domain.param[0] = 30;
        domain.param[1] = 60;
        domain.param[2] = 1;
    }
    domain.clat = 40;
    domain.clon = -90;
    domain.dx = domain.dy = 1;
    domain.nx = domain.ny = 41;
    MAP_setup(&domain);
    GPH_trans(2);
    const float lat = 38;
    const float lon = -83;
    const float wind_dir = 235;
    float x, y, x2, y2;
    ASSERT_EQ(MAP_tran(lat, lon, &x, &y), 1);
    const double to = (wind_dir - 180) * M_PI / 180;
    // On a map in degrees directions are those of the compass, whatever the length of a degree.
    const double shrink = domain.proj == PROJ_LATLON ? 1.0 : std::cos(lat * M_PI / 180);
    ASSERT_EQ(MAP_tran(static_cast<float>(lat + 0.2 * std::cos(to)),
                       static_cast<float>(lon + 0.2 * std::sin(to) / shrink), &x2, &y2),
              1);
    const auto all = drawn([&] { EXPECT_EQ(WIND_vect_map(x, y, wind_dir, 1, 1, 0), 0); });
    ASSERT_EQ(all.size(), 1U);
    EXPECT_NEAR(bearing(all[0]), std::atan2(x2 - x, y2 - y) * 180 / M_PI, 1.0);
}

INSTANTIATE_TEST_SUITE_P(Maps, Arrows,
                         testing::Values(static_cast<int>(PROJ_POLAR), static_cast<int>(PROJ_LATLON),
                                         static_cast<int>(PROJ_MERCATOR), static_cast<int>(PROJ_LAMBERT)),
                         [](const auto& given) {
                             return std::string(given.param == PROJ_POLAR      ? "polar"
                                                : given.param == PROJ_LATLON   ? "latlon"
                                                : given.param == PROJ_MERCATOR ? "mercator"
                                                                               : "lambert");
                         });

/// A pair of grids on a plane without rotation of directions, drawn in grid space.
struct Field {
    GRD_report u, v;
    Field(int nx, int ny, const std::function<Gpt(int, int)>& wind) {
        for (GRD_report* grid : {&u, &v}) {
            grid->domain.proj = PROJ_LATLON;
            grid->domain.plat = grid->domain.clat = 40;
            grid->domain.plon = grid->domain.clon = -90;
            grid->domain.dx = grid->domain.dy = 1;
            grid->domain.nx = nx;
            grid->domain.ny = ny;
            grid->grid = std::shared_ptr<float[]>(new float[static_cast<std::size_t>(nx) * ny]);
        }
        for (int j = 0; j < ny; ++j) {
            for (int i = 0; i < nx; ++i) {
                const Gpt w = wind(i, ny - 1 - j);
                u.grid[j * nx + i] = w.x;
                v.grid[j * nx + i] = w.y;
            }
        }
        MAP_domain(&u.domain);
    }
    int draw(int type) {
        CONT_init();
        VECT_init();
        VECT_set_type(type);
        float max = 0;
        for (int k = 0; k < u.domain.nx * u.domain.ny; ++k) {
            if (u.grid[k] != FMISS) max = std::max(max, std::hypot(u.grid[k], v.grid[k]));
        }
        VECT_set_max(max);
        return VECT_draw(&u, &v);
    }
};

TEST_F(Wind, MissingAndCalmPointsHaveNoArrow) {
    Field field(5, 5, [](int i, int j) { return i == 2 ? Gpt{FMISS, 1} : j == 2 ? Gpt{0, 0} : Gpt{3, 4}; });
    const auto all = drawn([&] { EXPECT_EQ(field.draw(VECT_VECTORS), 0); });
    int shafts = 0;
    for (const Stroke& s : all) {
        if (std::fabs(std::hypot(s.pts[1].x - s.pts[0].x, s.pts[1].y - s.pts[0].y) - 1) > 0.001F) continue;
        shafts++;
        EXPECT_NEAR(bearing(s), 36.87, 0.01);
        EXPECT_NE(s.pts[0].x, 2.0F);
        EXPECT_NE(s.pts[0].y, 2.0F);
    }
    EXPECT_EQ(shafts, 16);
}

TEST_F(Wind, StreamlinesOfAUniformFieldAreStraight) {
    Field field(11, 11, [](int, int) { return Gpt{2, 1}; });
    const auto all = drawn([&] { EXPECT_EQ(field.draw(VECT_STREAMLINES), 0); });
    ASSERT_GT(all.size(), 50U);
    int along = 0;
    for (const Stroke& s : all) along += std::fabs(bearing(s) - 63.435F) < 0.05F ? 1 : 0;
    EXPECT_GT(along, static_cast<int>(all.size()) / 2);
}

TEST_F(Wind, StreamlinesOfSolidRotationStayOnTheirCircles) {
    Field field(41, 41, [](int i, int j) { return Gpt{-(j - 20.0F), i - 20.0F}; });
    const auto all = drawn([&] { EXPECT_EQ(field.draw(VECT_STREAMLINES), 0); });
    ASSERT_GT(all.size(), 100U);
    for (const Stroke& s : all) {
        const float r = std::hypot(s.pts[0].x - 20, s.pts[0].y - 20);
        const float length = std::hypot(s.pts[1].x - s.pts[0].x, s.pts[1].y - s.pts[0].y);
        if (std::fabs(length - 0.25F) > 0.001F || r < 3) continue;
        // A step along the tangent leaves the circle by half its square over the radius.
        EXPECT_NEAR(std::hypot(s.pts[1].x - 20, s.pts[1].y - 20), r, 0.04F / r);
    }
}

TEST_F(Wind, AFieldWithoutAWestWindStartsNoLine) {
    Field field(11, 11, [](int, int) { return Gpt{0, 5}; });
    EXPECT_TRUE(drawn([&] { EXPECT_EQ(field.draw(VECT_STREAMLINES), 0); }).empty());
}

TEST_F(Wind, GridsThatDoNotMatchAreRefused) {
    Field field(11, 11, [](int, int) { return Gpt{1, 1}; });
    field.v.domain.nx = 5;
    const auto output = test::capture([&] { EXPECT_EQ(field.draw(VECT_VECTORS), -1); });
    EXPECT_NE((output.out + output.err).find("VECT_draw: Invalid grids\n"), std::string::npos);
    field.v.domain.nx = 11;
    field.v.grid.reset();
    const auto second = test::capture([&] { EXPECT_EQ(VECT_draw(&field.u, &field.v), -1); });
    EXPECT_NE((second.out + second.err).find("VECT_draw: Invalid grid arrays\n"), std::string::npos);
}

TEST_F(Wind, ParametersThinTheField) {
    RES_put("plot_param", "wv_skip=0:3,strm_sc=-1,vbar");
    VECT_param_decode();
    EXPECT_EQ(vect.xskip, 1);
    EXPECT_EQ(vect.yskip, 3);
    EXPECT_EQ(vect.arrow_scale, 1.0F);
    EXPECT_EQ(VECT_get_vect(), 1);
    VECT_set_format(VECT_VECTORS, "barb:sk=-4:MN=5");
    VECT_format_decode_type();
    EXPECT_EQ(VECT_get_type(), VECT_BARBS);
    EXPECT_EQ(vect.xskip, 1);
    EXPECT_EQ(vect.min_cut, 5.0F);
}

std::string many_symbols(int count) {
    std::string text;
    for (int k = 0; k < count; ++k) text += "N" + std::to_string(1000 + k) + " 0,0 1,1 L\n$\n";
    return text;
}

TEST_F(Wind, SymbolsAreFoundByTheirFirstListedPrefix) {
    dir.write("prefix.smb", "T 0,0 1,0 L 0,0 1,0 1,1 F\n$\nTS 0,0 1,1 L\n$\n");
    GPH_text_align(GLEFT_HOR, GBOTTOM_VERT);
    const auto all = drawn([] {
        EXPECT_EQ(WX_symb_file("prefix.smb"), 0);
        EXPECT_EQ(WX_symb(0.2F, 0.2F, "tsra", 0.5F), 1);
        EXPECT_EQ(WX_symb(0, 0, "X", 1), 0);
        EXPECT_EQ(WX_symb(0, 0, " T", 1), 0);
    });
    ASSERT_EQ(all.size(), 2U);
    EXPECT_NEAR(all[0].pts[1].x, 0.7F, 1e-5);
    EXPECT_TRUE(all[1].filled);
}

TEST_F(Wind, HostileSymbolFilesAreRead) {
    const std::string name(300, 'A');
    std::string pairs;
    for (int k = 0; k < 21; ++k) pairs += "0." + std::to_string(10 + k) + ",0.5 ";
    dir.write("many.smb", many_symbols(101));
    dir.write("open.smb", "Z 0,0 1,1 L 0.5,inf nan,nan");
    dir.write("long.smb", name + " 0,0 1,1 L\n$\nP " + pairs + "F\n$\n");
    dir.write("void.smb", "");
    const auto all = drawn([&] {
        EXPECT_EQ(WX_symb_file("many.smb"), 0);
        EXPECT_EQ(WX_symb(0, 0, "N1099", 1), 1);
        EXPECT_EQ(WX_symb(0, 0, "N1100", 1), 0);
        EXPECT_EQ(WX_symb_file("MANY.smb"), -1);
        EXPECT_EQ(WX_symb_file("open.smb"), 0);
        EXPECT_EQ(WX_symb(0, 0, "Z", 1), 1);
        EXPECT_EQ(WX_symb_file("long.smb"), 0);
        EXPECT_EQ(WX_symb(0, 0, name, 1), 1);
        EXPECT_EQ(WX_symb(0, 0, "P", 1), 1);
        EXPECT_EQ(WX_symb_file("void.smb"), 0);
        EXPECT_EQ(WX_symb(0, 0, "P", 1), 0);
    });
    ASSERT_EQ(all.size(), 4U);
    EXPECT_EQ(all[3].pts.size(), 20U);
    EXPECT_FALSE(all[3].filled);
}

TEST_F(Wind, TheShippedSymbolsAreComplete) {
    RES_put("file_path", test::source_dir() + "/share/zav/");
    EXPECT_EQ(WX_symb_file("ww.smb"), 0);
    for (int ww = 0; ww < 100; ++ww) {
        const std::string code = std::string(ww < 10 ? "0" : "") + std::to_string(ww);
        EXPECT_EQ(WX_symb(0.5F, 0.5F, code, 0.1F), 1) << code;
    }
    EXPECT_EQ(WX_symb_file(nullptr), 0);
    for (const char* code : {"TSRA", "-SN", "FZRA", "BR", "61", "95"}) EXPECT_EQ(WX_symb(0, 0, code, 1), 1) << code;
}

struct Cover_case {
    char cover;
    int lines;
    std::vector<std::size_t> areas;
};

class Clouds : public Wind, public testing::WithParamInterface<Cover_case> {};

TEST_P(Clouds, ShowTheCover) {
    const Cover_case& c = GetParam();
    int lines = 0;
    std::vector<std::size_t> areas;
    for (const Stroke& s : drawn([&] { WX_cloud(0.5F, 0.5F, 0.1F, c.cover); })) {
        if (s.filled) {
            areas.push_back(s.pts.size());
        } else {
            lines++;
        }
    }
    EXPECT_EQ(lines, c.lines);
    EXPECT_EQ(areas, c.areas);
}

INSTANTIATE_TEST_SUITE_P(Codes, Clouds,
                         testing::Values(Cover_case{'0', 1, {}}, Cover_case{'F', 2, {}}, Cover_case{'2', 1, {6}},
                                         Cover_case{'3', 2, {6}}, Cover_case{'4', 1, {8}}, Cover_case{'5', 2, {8}},
                                         Cover_case{'6', 1, {12}}, Cover_case{'7', 1, {8, 8}}, Cover_case{'O', 0, {13}},
                                         Cover_case{'9', 3, {}}, Cover_case{'?', 2, {}}),
                         [](const auto& given) {
                             const char cover = given.param.cover;
                             return cover == '?' ? std::string("unknown") : std::string("code_") + cover;
                         });

}  // namespace
}  // namespace zav
