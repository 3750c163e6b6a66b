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

/// A square of a projection about a place.
Domain square(int proj, float clat, float clon, float plat, int points) {
    Domain d;
    d.proj = proj;
    d.plat = plat;
    d.plon = clon + 7;
    d.clat = clat;
    d.clon = clon;
    if (proj == PROJ_LAMBERT) d.param = {plat / 2, plat, 1, FMISS, FMISS};
    d.dx = d.dy = 1;
    d.nx = d.ny = points;
    return d;
}

/// A pair of grids, on a plane without rotation of directions unless a domain is given.
struct Field {
    GRD_report u, v;
    Field(int nx, int ny, const std::function<Gpt(int, int)>& wind) : Field(plain(nx, ny), wind) {}
    Field(const Domain& domain, const std::function<Gpt(int, int)>& wind) {
        const int nx = domain.nx;
        const int ny = domain.ny;
        for (GRD_report* grid : {&u, &v}) {
            grid->domain = domain;
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
    static Domain plain(int nx, int ny) {
        Domain d = square(PROJ_MERCATOR, 40, -90, 40, nx);
        d.ny = ny;
        return d;
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

/// Place of grid coordinates of `grid` on `map`.
Point on_map(const Domain& grid, const Domain& map, float gx, float gy) {
    Point from;
    Point to;
    MAP_domain(&grid);
    MAP_grid_tran(gx, gy, &from.x, &from.y);
    MAP_domain_tran(&grid, &map, from.x, from.y, &to.x, &to.y);
    return to;
}

/// One projection, as far as its maps are drawn on.
struct Map_case {
    const char* name;
    int proj;
};
std::ostream& operator<<(std::ostream& out, const Map_case& c) { return out << c.name; }

class Maps : public Wind, public testing::WithParamInterface<Map_case> {
  protected:
    /// Draws both grids on a map about a place.
    void draw(Field& field, int type, float clat, float clon, float plat) {
        map = square(GetParam().proj, clat, clon, plat, 201);
        MAP_setup(&map);
        GPH_trans(2);
        EXPECT_EQ(field.draw(type), 0);
    }
    Domain map;
};

/// A wind along a grid's rows or columns is drawn toward the next column or row, in either hemisphere.
TEST_P(Maps, GridWindsLeadToTheNextPoint) {
    std::vector<std::pair<Point, Point>> ways;
    const auto all = drawn([&] {
        for (const float side : {1.0F, -1.0F}) {
            for (const int proj : {PROJ_POLAR, PROJ_LATLON, PROJ_MERCATOR, PROJ_LAMBERT}) {
                const Domain grid = square(proj, 30 * side, -68, 60 * side, 3);
                for (const Gpt wind : {Gpt{0.05F, 0}, Gpt{0, 0.05F}}) {
                    Field field(grid, [&](int i, int j) { return i == 1 && j == 1 ? wind : Gpt{FMISS, FMISS}; });
                    draw(field, VECT_VECTORS, 35 * side, -60, 50 * side);
                    ways.emplace_back(on_map(grid, map, 1 - wind.x, 1 + wind.y),
                                      on_map(grid, map, 1 + wind.x, 1 - wind.y));
                }
            }
        }
    });
    ASSERT_EQ(all.size(), 3 * ways.size());  // a shaft and two lines of the head each
    for (std::size_t k = 0; k < ways.size(); ++k) {
        const auto& [from, to] = ways[k];
        const Gpt start = all[3 * k].pts[0];
        EXPECT_NEAR(std::hypot(start.x - (from.x + to.x) / 2, start.y - (from.y + to.y) / 2), 0, 0.01) << k;
        const double way = std::atan2(to.x - from.x, to.y - from.y) * 180 / M_PI;
        EXPECT_NEAR(std::remainder(bearing(all[3 * k]) - way, 360), 0, 0.1) << k;
    }
}

/// Looking along the staff from the station, feathers stand to the right in the north, to the left in the south.
TEST_P(Maps, FeathersChangeSidesAtTheEquator) {
    const std::vector<float> lats{10, 0, -5};
    const auto all = drawn([&] {
        for (const float lat : lats) {
            Field field(square(PROJ_LATLON, lat, -85, 0, 1), [](int, int) { return Gpt{30, -40}; });
            draw(field, VECT_BARBS, 5, -90, 45);
        }
    });
    ASSERT_EQ(all.size(), 3 * lats.size());  // staff, flag as an area and as a line
    for (std::size_t k = 0; k < lats.size(); ++k) {
        const std::vector<Gpt>& staff = all[3 * k].pts;
        const std::vector<Gpt>& flag = all[3 * k + 1].pts;
        const float cross =
            (staff[1].x - staff[0].x) * (flag[1].y - flag[0].y) - (staff[1].y - staff[0].y) * (flag[1].x - flag[0].x);
        EXPECT_NEAR(cross, lats[k] < 0 ? 0.5 : -0.5, 1e-3) << lats[k];
    }
}

INSTANTIATE_TEST_SUITE_P(All, Maps,
                         testing::Values(Map_case{"polar", PROJ_POLAR}, Map_case{"latlon", PROJ_LATLON},
                                         Map_case{"mercator", PROJ_MERCATOR}, Map_case{"lambert", PROJ_LAMBERT},
                                         Map_case{"orthographic", PROJ_ORTHO}, Map_case{"mollweide", PROJ_MOLLWEIDE},
                                         Map_case{"azimuthal", PROJ_AZIMUTHAL}, Map_case{"satellite", PROJ_SATELLITE}),
                         [](const auto& row) { return std::string(row.param.name); });

/// In grid space cells are square: a grid whose cells aren't has its directions stretched with them.
TEST_F(Wind, OblongCellsStretchTheirWinds) {
    Domain domain = Field::plain(3, 3);
    domain.dx = 2;
    Field field(domain, [](int, int) { return Gpt{4, 3}; });
    for (const Stroke& s : drawn([&] { EXPECT_EQ(field.draw(VECT_VECTORS), 0); })) {
        if (std::hypot(s.pts[1].x - s.pts[0].x, s.pts[1].y - s.pts[0].y) < 0.9F) continue;
        EXPECT_NEAR(bearing(s), std::atan2(4.0 / 2, 3.0) * 180 / M_PI, 0.01);
    }
}

/// The pole's row of a global grid states one wind from as many meridians as it has columns.
TEST_F(Wind, APolesRowIsOneWind) {
    std::vector<float> expected;
    const auto all = drawn([&] {
        for (const float pole : {90.0F, -90.0F}) {
            for (const int proj : {PROJ_POLAR, PROJ_ORTHO, PROJ_AZIMUTHAL}) {
                Domain grid = square(PROJ_LATLON, pole, 0, 0, 8);
                grid.plon = 0;
                grid.dx = 45;
                grid.ny = 1;
                Field field(grid, [&](int i, int) {  // toward the meridian of Greenwich
                    const double lon = (i - 3.5) * 45 * M_PI / 180;
                    return Gpt{static_cast<float>(-20 * std::sin(lon)),
                               static_cast<float>((pole > 0 ? -20 : 20) * std::cos(lon))};
                });
                Domain map = square(proj, pole, 30, pole, 201);
                map.plon = 30;
                MAP_setup(&map);
                GPH_trans(2);
                EXPECT_EQ(field.draw(VECT_VECTORS), 0);
                expected.insert(expected.end(), 8, pole > 0 ? -150.0F : -30.0F);
            }
        }
    });
    ASSERT_EQ(all.size(), 3 * expected.size());
    for (std::size_t k = 0; k < expected.size(); ++k) {
        EXPECT_NEAR(std::remainder(bearing(all[3 * k]) - expected[k], 360), 0, 0.1) << k / 8;
    }
}

/// Every period-th stroke of a streamline has a head; the period is ten times the scale.
TEST_F(Wind, HeadsFollowTheScale) {
    Field field(41, 41, [](int, int) { return Gpt{1, 1}; });
    MAP_setup(&field.u.domain);
    const Glim window{0, 40, 0, 40};
    gset_win(2, &window);
    GPH_trans(2);
    vect.attrib.color = 1;
    vect.base = 9;
    for (const float scale : {0.7F, 0.9F, 1.3F}) {
        vect.arrow_scale = scale;
        EXPECT_EQ(VECT_stream(&field.u, &field.v, 0, 0, 40), 0);
    }
    std::string periods;
    int shafts = 0;
    for (const Stroke& s : strokes()) {
        const bool shaft = std::fabs(s.pts[1].x - s.pts[0].x - s.pts[1].y + s.pts[0].y) < 1e-4F;
        if (!shaft && shafts > 0) periods += std::to_string(shafts) + ' ';
        shafts = shaft ? shafts + 1 : 0;
    }
    EXPECT_EQ(periods, "7 7 7 7 7 14 9 9 9 17 13 13 ");  // 40 steps each; what is left counts to the next line
}

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
