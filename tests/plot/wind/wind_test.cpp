// Whole wind fields on grids and maps, read back from a text metafile.

#include <random>

#include "frame/string.h"
#include "map/maptran.h"
#include "plot/background/map.h"
#include "plot/contour/cont.h"
#include "plot/page/plt_paper.h"
#include "plot/wind/vect_plt.h"
#include "plot/wind/vect_state.h"
#include "plot/wind/wind_page.h"
#include "support/table.h"

namespace zav {
namespace {

float bearing(const Stroke& s) {
    return static_cast<float>(std::atan2(s.pts[1].x - s.pts[0].x, s.pts[1].y - s.pts[0].y) * 180 / M_PI);
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
    /// The largest speed.
    float largest() const {
        float max = 0;
        for (int k = 0; k < u.domain.nx * u.domain.ny; ++k) {
            if (u.grid[k] != FMISS && v.grid[k] != FMISS) max = std::max(max, std::hypot(u.grid[k], v.grid[k]));
        }
        return max;
    }
    int draw(int type) {
        CONT_init();
        VECT_init();
        VECT_set_type(type);
        VECT_set_max(largest());
        return VECT_draw(&u, &v);
    }
};

std::string projection_name(int proj) {
    Domain domain;
    domain.proj = proj;
    const std::string text = DOM_text(&domain);
    return text.substr(0, text.find(':'));
}

class Maps : public Wind, public testing::WithParamInterface<int> {
  protected:
    /// Draws both grids on a map about a place.
    void draw(Field& field, int type, float clat, float clon, float plat) {
        map = square(GetParam(), clat, clon, plat, 201);
        MAP_setup(&map);
        GPH_trans(2);
        EXPECT_EQ(field.draw(type), 0);
    }
    Domain map;
};

INSTANTIATE_TEST_SUITE_P(All, Maps,
                         testing::Values(PROJ_POLAR, PROJ_LATLON, PROJ_MERCATOR, PROJ_LAMBERT, PROJ_ORTHO,
                                         PROJ_MOLLWEIDE, PROJ_AZIMUTHAL, PROJ_SATELLITE),
                         [](const auto& row) { return projection_name(row.param); });

/// Place of grid coordinates of `grid` on `map`.
Point on_map(const Domain& grid, const Domain& map, float gx, float gy) {
    Point from;
    Point to;
    MAP_domain(&grid);
    MAP_grid_tran(gx, gy, &from.x, &from.y);
    MAP_domain_tran(&grid, &map, from.x, from.y, &to.x, &to.y);
    return to;
}

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

/// A random wind that turns from place to place, with gaps and calms.
std::function<Gpt(int, int)> eddies(std::mt19937& random) {
    std::uniform_real_distribution<float> any(-1, 1);
    const float a = any(random), b = any(random), c = any(random), d = any(random);
    return [=, &random](int i, int j) mutable {
        const float chance = any(random);
        if (chance > 0.97F) return chance > 0.98F ? Gpt{FMISS, 3} : Gpt{3, FMISS};
        if (chance < -0.97F) return Gpt{0, 0};
        return Gpt{9 * a + 12 * std::sin(b * static_cast<float>(j) + c),
                   9 * d + 12 * std::sin(a * static_cast<float>(i) + d)};
    };
}

/// Random settings of the layer, told by the resources that a user has.
void choose_settings(std::mt19937& random) {
    const auto one_of = [&](std::initializer_list<const char*> texts) {
        return texts.begin()[random() % texts.size()];
    };
    RES_put("plot_scale", one_of({"1", "2", "0.5"}));
    RES_put("con_base", one_of({"", "3", ">7", "<16", ">6,<18,2"}));
    RES_put("plot_param", one_of({"uvgrid,wv_skip=1", "uvgrid,wv_skip=2", "uvgrid,wv_skip=3:2", "uvew,wv_skip=1:2"}));
    VECT_param_decode();
}

/// In grid space cells are square: a grid whose cells aren't has its directions stretched with them.
TEST_F(Wind, PointsOfAGridAreThoseOfThePage) {
    std::mt19937 random(1);
    const auto all = drawn([&] {
        for (int n = 0; n < 16; ++n) {
            Domain domain = Field::plain(4 + n % 5, 3 + n % 4);
            domain.dx = n % 3 == 0 ? 2 : 1;
            Field field(domain, eddies(random));
            choose_settings(random);
            const int type = n % 2 == 0 ? VECT_BARBS : VECT_VECTORS;
            EXPECT_EQ(field.draw(type), 0);
        }
    });
    expect_page(all, "points");
}

/// Sizes are those of the grid's spacing.
TEST_P(Maps, PointsAreThoseOfThePage) {
    std::mt19937 random(2);
    const auto all = drawn([&] {
        for (int n = 0; n < 8; ++n) {
            constexpr std::array PROJS{PROJ_POLAR, PROJ_LATLON, PROJ_MERCATOR, PROJ_LAMBERT};
            const float side = n < 4 ? 1 : -1;
            Domain grid = square(PROJS[n % 4], 6 * side, -75, 60 * side, 5);
            grid.dx = 1.5F;
            grid.dy = 4;
            Field field(grid, eddies(random));
            choose_settings(random);
            const int type = n % 2 == 0 ? VECT_VECTORS : VECT_BARBS;
            draw(field, type, 5, -70, 45);
        }
    });
    expect_page(all, "points_" + projection_name(GetParam()));
}

/// On paper a staff has 6 mm and the longest arrow the distance of the arrows, whatever the grid and the map; the key
/// of the longest arrow is as long as that.
TEST_F(Wind, SizesAreThoseOfPaper) {
    PLT_set_letter(false);
    float mm = 0;
    const auto lengths = [&](const Domain& map, int points, const char* format, const char* scale) {
        SetUp();
        PLT_set_letter(false);
        RES_put("plot_scale", scale);
        RES_put("color_text", "1");
        const auto all = drawn([&] {
            Field field(points, points, [](int, int) { return Gpt{20, -20}; });
            VECT_set_format(MISS, format);
            VECT_format_decode_type();
            MAP_setup(map.proj == MISS ? &field.u.domain : &map);
            GPH_trans(2);
            EXPECT_EQ(field.draw(VECT_get_type()), 0);
            mm = PLT_paper_scale().y;
            GPH_trans(1);
            VECT_set_vect(1);
            VECT_draw_vect();
        });
        const auto length = [](const Stroke& s) {
            return std::hypot(s.pts[1].x - s.pts[0].x, s.pts[1].y - s.pts[0].y);
        };
        for (const Stroke& stroke : all) {  // none is cut by the frame
            const auto inside = [&](const Gpt& pt) {
                return std::min(pt.x, pt.y) >= 0 && pt.x < points && pt.y < points;
            };
            const bool all_of = std::all_of(stroke.pts.begin(), stroke.pts.end(), inside);
            EXPECT_TRUE(all_of || map.proj != MISS || std::string(format) == "vect:sk=1");
        }
        EXPECT_NEAR(length(all[all.size() - 3]) * PLT_PAGE_MM, length(all[0]) * mm, 1e-3);
        return text_format("%.2f %.2f", length(all[0]) * mm, length(all[1]) * mm);
    };
    const Domain polar = square(PROJ_POLAR, 40, -90, 60, 41);
    const Domain none;
    EXPECT_EQ(lengths(none, 101, "barb", "1").substr(0, 5), "6.00 ");
    EXPECT_EQ(lengths(polar, 31, "barb", "2").substr(0, 6), "12.00 ");
    EXPECT_EQ(lengths(none, 101, "vect", "1"), "8.50 1.98");  // a head of 1.4 mm along and across
    EXPECT_EQ(lengths(polar, 101, "vect", "2"), "17.00 3.96");
    EXPECT_EQ(lengths(none, 5, "vect", "1"), "12.00 1.98");
    EXPECT_EQ(lengths(none, 101, "vect:sk=1", "1"), "4.00 1.98");
    EXPECT_EQ(lengths(none, 31, "vect:sk=1", "1"), "6.54 1.98");  // a step of this grid
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
            // Along the axis of a polar grid, at the pole alone.
            const Domain grid = square(PROJ_POLAR, pole, 23, pole, 3);
            Field field(grid, [](int i, int j) { return Gpt{0, i == 1 && j == 1 ? 20.0F : 0.0F}; });
            EXPECT_EQ(field.draw(VECT_VECTORS), 0);
            expected.push_back(0);
        }
    });
    ASSERT_EQ(all.size(), 3 * expected.size());
    for (std::size_t k = 0; k < expected.size(); ++k) {
        EXPECT_NEAR(std::remainder(bearing(all[3 * k]) - expected[k], 360), 0, 0.1) << k / 8;
    }
}

/// A west wind blows along the parallels on every map, across the seam of the grid too.
TEST_P(Maps, StreamlinesOfAWestWindKeepTheirLatitude) {
    PLT_set_letter(false);
    Domain globe = square(PROJ_LATLON, 0, 100, 0, 72);
    globe.ny = 37;
    globe.dx = globe.dy = 5;
    PLT_set_letter(false);
    const auto all = drawn([&] {
        Field field(globe, [](int, int) { return Gpt{10, 0}; });
        draw(field, VECT_STREAMLINES, 35, -60, 50);
    });
    int over_seam = 0;
    MAP_domain(&map);
    for (const Stroke& line : all) {
        std::vector<EarthPoint> places(line.pts.size());
        for (std::size_t k = 0; k < places.size(); ++k) MAP_tran_pe({line.pts[k].x, line.pts[k].y}, &places[k]);
        if (places.size() < 20 || std::fabs(places[0].lat) > 75) continue;
        for (std::size_t k = 1; k < places.size(); ++k) {
            ASSERT_NEAR(places[k].lat, places[0].lat, 0.6) << k;
            ASSERT_GT(std::remainder(places[k].lon - places[k - 1].lon, 360), 0) << k;
        }
        const auto beyond = [](const EarthPoint& place) { return std::remainder(place.lon + 80, 360); };
        if (beyond(places.front()) < 0 && beyond(places.back()) > 0) ++over_seam;
    }
    EXPECT_GT(over_seam, 5);
}

/// Lines through eddies, gaps and calms: their order, their ends, the mesh that thins them, heads and cuts.
TEST_F(Wind, StreamlinesAreThoseOfThePage) {
    std::mt19937 random(4);
    const auto all = drawn([&] {
        for (int n = 0; n < 8; ++n) {
            Field field(5 + n % 4, 6 - n % 3, eddies(random));
            choose_settings(random);
            vect.arrow_scale = std::array{1.0F, 0.7F, 0.05F, 1.3F}[n % 4];
            EXPECT_EQ(field.draw(VECT_STREAMLINES), 0);
        }
        for (int n = 0; n < 4; ++n) {
            Domain grid = square(n % 2 == 0 ? PROJ_LATLON : PROJ_LAMBERT, 30, -75, 60, 5);
            grid.dx = grid.dy = 2;
            Field field(grid, eddies(random));
            choose_settings(random);
            const Domain map = square(n % 3 == 0 ? PROJ_ORTHO : PROJ_POLAR, 32, -70, 50, 201);
            MAP_setup(&map);
            GPH_trans(2);
            EXPECT_EQ(field.draw(VECT_STREAMLINES), 0);
        }
    });
    expect_page(all, "streamlines");
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
    const auto all = drawn([&] {
        for (const float scale : {0.7F, 0.9F, 1.3F}) {
            vect.arrow_scale = scale;
            EXPECT_EQ(VECT_stream(&field.u, &field.v, 0, 0, 40), 0);
        }
    });
    std::string periods;
    int shafts = 0;
    for (const Stroke& s : all) {
        const bool shaft = std::fabs(s.pts[1].x - s.pts[0].x - s.pts[1].y + s.pts[0].y) < 1e-4F;
        if (!shaft && shafts > 0) periods += std::to_string(shafts) + ' ';
        shafts = shaft ? shafts + 1 : 0;
    }
    EXPECT_EQ(periods, "7 7 7 7 7 14 9 9 9 17 13 13 ");  // 40 steps each; what is left counts to the next line
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

/// What plot formats and plot parameters set.
TEST_F(Wind, FormatsAndParametersAreTaken) {
    const auto cases = test::data_cells("wind_settings.tsv");
    EXPECT_EQ(cases.size(), 10U);
    for (const auto& row : cases) {
        vect = {};
        VECT_init();
        VECT_set_vect(0);
        VECT_set_format(MISS, row[0].c_str());
        RES_put("plot_param", row[1]);
        VECT_format_decode_type();
        VECT_param_decode();
        std::ostringstream is;
        is << vect.vect_type << ' ' << vect.xskip << ':' << vect.yskip << ' ' << vect.scale << ' ' << vect.arrow_scale
           << ' ' << vect.intrvl << ' ' << vect.base << ' ' << vect.min_cut << ' ' << vect.max_cut << " key "
           << VECT_get_vect() << " uv " << vect.uvgrid;
        EXPECT_EQ(is.str(), row[2]) << row[0] << ' ' << row[1];
    }
}

/// The largest speed of a field whose winds all lie along an axis.
TEST_F(Wind, TheLargestSpeedIsFoundAlongAnAxisToo) {
    Field field(4, 3, [](int i, int) { return Gpt{0, i == 0 ? FMISS : static_cast<float>(-i)}; });
    VECT_set_type(VECT_BARBS);
    test::capture([&] { EXPECT_EQ(VECT_plot_setup(0, 0, &field.u, &field.v, nullptr, nullptr), 0); });
    EXPECT_EQ(vect.grid_max, 3.0F);
}

/// The type of a layer: the one set, else that of the flag, else the answer to a question.
TEST_F(Wind, TypesAreSettledInTheirOrder) {
    struct {
        int set, flag;
        const char* answer;
        int want;
    } const cases[] = {{VECT_BARBS, VECT_VECTORS, "", 22},
                       {VECT_ANY, VECT_STREAMLINES, "", 23},
                       {10, VECT_BARBS, "", 22},
                       {MISS, VECT_VECTORS, "", 21},
                       {MISS, MISS, "None", 99},
                       {MISS, 24, "barb", 22},
                       {MISS, 20, "strm", 23},
                       {MISS, 20, "Sx", 23},
                       {MISS, 20, "bx", 22},
                       {MISS, 20, "yes", 23},
                       {MISS, 20, "x", 21},
                       {MISS, 20, "", 21},
                       {MISS, 20, "stream", 23},
                       {MISS, 20, "vect", 21},
                       {VECT_NONE, 21, "barb", 22}};
    for (const auto& c : cases) {
        vect = {};
        vect.vect_type = c.set;
        FLAG_set(FLAG_PLOT_TYPE, c.flag);
        int type = 0;
        const std::string asked = test::capture([&] { type = VECT_prompt_type(); }, std::string(c.answer) + "\n").out;
        EXPECT_EQ(type, c.want) << c.set << ' ' << c.flag << ' ' << c.answer;
        EXPECT_EQ(VECT_get_type(), c.want);
        EXPECT_EQ(vect.type_set, 0);
    }
    VECT_set_type(VECT_BARBS);
    VECT_init();  // a type chosen before the layer opens outlives that
    EXPECT_EQ(VECT_get_type(), VECT_BARBS);
    FLAG_set(FLAG_PLOT_TYPE, MISS);
}

}  // namespace
}  // namespace zav
