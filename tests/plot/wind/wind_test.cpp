// Whole wind fields on grids and maps, read back from a text metafile.

#include <random>

#include "calc/grd_trans.h"
#include "map/maptran.h"
#include "plot/background/map.h"
#include "plot/contour/cont.h"
#include "plot/wind/vect_plt.h"
#include "plot/wind/vect_state.h"
#include "plot/wind/vecttool.h"
#include "plot/wind/wind_page.h"

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
    /// The same values in arrays of their own: drawing turns components in place.
    Field copy() const {
        Field other(u.domain, [](int, int) { return Gpt{}; });
        std::copy_n(u.grid.get(), u.domain.nx * u.domain.ny, other.u.grid.get());
        std::copy_n(v.grid.get(), u.domain.nx * u.domain.ny, other.v.grid.get());
        return other;
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

/// Place of grid coordinates of `grid` on `map`.
Point on_map(const Domain& grid, const Domain& map, float gx, float gy) {
    Point from;
    Point to;
    MAP_domain(&grid);
    MAP_grid_tran(gx, gy, &from.x, &from.y);
    MAP_domain_tran(&grid, &map, from.x, from.y, &to.x, &to.y);
    return to;
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
                         [](const auto& row) {
                             Domain domain;
                             domain.proj = row.param;
                             const std::string text = DOM_text(&domain);
                             return text.substr(0, text.find(':'));
                         });

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

bool passes(float spd, float low, float high) { return (low == FMISS || spd > low) && (high == FMISS || spd < high); }

/// Arrows or barbs of a field on the current map, or in grid space if that is its own.
void points_of(Page& page, const Field& field, int type, float max) {
    Domain map;
    MAP_get_domain(&map);
    const Domain& grid = field.u.domain;
    const bool own = DOM_comp(&map, &grid) != 0;
    double size = vect.scale * (vect.base == FMISS ? 1 : max / vect.base);
    if (!own) size *= grid.dx;
    for (int j = 0; j < grid.ny; j += vect.yskip) {
        for (int i = 0; i < grid.nx; i += vect.xskip) {
            const float u = field.u.grid[j * grid.nx + i];
            const float v = field.v.grid[j * grid.nx + i];
            float dir = 0, spd = 0;
            if (vect2wind(u, v, &dir, &spd) != 0 || !passes(spd, vect.min_cut, vect.max_cut)) continue;
            const auto x = static_cast<float>(i), y = static_cast<float>(j);
            Point at;
            MAP_domain(&grid);
            MAP_grid_tran(x, y, &at.x, &at.y);
            if (vect.uvgrid != 0) dir = MAP_undir_adj(dir, at.x, at.y);
            const Point to = own ? at : on_map(grid, map, x, y);
            MAP_domain(&map);
            if (to.x == FMISS) continue;
            float lat = 0, lon = 0;
            MAP_untran(to.x, to.y, &lat, &lon);
            double turned = MAP_dir_adj(dir, to.x, to.y) * M_PI / 180;
            if (own) turned = std::atan2(std::sin(turned) / grid.dx, std::cos(turned) / grid.dy);
            turned *= 180 / M_PI;
            const Point drawn = own ? Point{x, static_cast<float>(grid.ny - 1 - j)} : to;
            if (type == VECT_BARBS) page.barb(drawn.x, drawn.y, turned, spd, size, 0, lat < 0);
            if (type == VECT_VECTORS) page.vect(drawn.x, drawn.y, turned, spd / max, size, 1);
        }
    }
}

/// In grid space cells are square: a grid whose cells aren't has its directions stretched with them.
TEST_F(Wind, PointsOfAGridFollowTheRules) {
    std::mt19937 random(1);
    Page page;
    const auto all = drawn([&] {
        for (int n = 0; n < 60; ++n) {
            Domain domain = Field::plain(7 + n % 5, 4 + n % 7);
            domain.dx = n % 3 == 0 ? 2 : 1;
            Field field(domain, eddies(random));
            choose_settings(random);
            const int type = n % 2 == 0 ? VECT_BARBS : VECT_VECTORS;
            const Field before = field.copy();
            EXPECT_EQ(field.draw(type), 0);
            points_of(page, before, type, before.largest());
        }
    });
    expect_same(all, page.strokes);
}

/// Feathers change sides at the equator; sizes are those of the grid's spacing.
TEST_P(Maps, PointsFollowTheRules) {
    std::mt19937 random(2);
    Page page;
    const auto all = drawn([&] {
        for (int n = 0; n < 24; ++n) {
            constexpr std::array PROJS{PROJ_POLAR, PROJ_LATLON, PROJ_MERCATOR, PROJ_LAMBERT};
            const float side = n % 8 < 4 ? 1 : -1;
            Domain grid = square(PROJS[n % 4], 12 * side, -75, 60 * side, 9);
            grid.dx = 1.5F;
            grid.dy = 4;
            Field field(grid, eddies(random));
            const Field before = field.copy();
            choose_settings(random);
            const int type = n % 3 == 0 ? VECT_VECTORS : VECT_BARBS;
            draw(field, type, 5, -70, 45);
            points_of(page, before, type, before.largest());
        }
    });
    expect_same(all, page.strokes);
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

/// One streamline by its rules, in the single precision that decides where cells begin.
class Line_model {
  public:
    Line_model(Page& to, const Field& on, std::vector<int>& counts) : page(to), field(on), counters(counts) {}

    void draw(int i, int j, float length) {
        const Domain& grid = field.u.domain;
        MAP_get_domain(&map);
        own = DOM_comp(&map, &grid) != 0;
        std::vector<float> xs, ys;  // to the last bit as the layer has them
        GRD_proj_XY(&field.u, &map, xs, ys);
        const auto place = static_cast<std::size_t>((grid.ny - 1 - j) * grid.nx + i);
        const Point start = own ? Point{static_cast<float>(i), static_cast<float>(j)} : Point{xs[place], ys[place]};
        float x = start.x, y = start.y, last_x = 0, last_y = 0, last_dir = FMISS, dir = FMISS;
        const auto period = std::max(1, static_cast<int>(10.0F * vect.arrow_scale));
        bool valid = true;
        std::size_t last_cell = 0;
        int same = 0;
        if (x == FMISS) return;
        for (int k = 0; static_cast<float>(k) < length; ++k) {
            const Gpt g = grid_point(x, y);
            const float u = GRD_get_value(&field.u, g.x, g.y);
            const float v = GRD_get_value(&field.v, g.x, g.y);
            const std::size_t cell = cell_of(g);
            same = k > 0 && cell == last_cell ? same + 1 : 0;
            if (same == 0) counters[cell]++;
            last_cell = cell;
            const bool missing = u == FMISS || v == FMISS;
            const float spd = missing ? FMISS : std::sqrt(u * u + v * v);
            valid = !(vect.min_cut != FMISS && vect.min_cut > spd) && !(vect.max_cut != FMISS && spd > vect.max_cut);
            last_dir = dir;
            dir = missing ? FMISS : spd < 0.01F ? 0 : static_cast<float>(std::atan2(-u, -v) * (180.0 / M_PI));
            const float change = std::fabs(dir - last_dir);
            const bool full = static_cast<float>(counters[cell]) > vect.base && (k < 1 || k >= 6);
            if (full || same > 6 * vect.xskip || spd < 0.001F || (k > 0 && change > 120 && change < 240)) {
                if (k > 0 && valid && last_dir != FMISS)
                    page.vect(last_x, last_y, last_dir, 0.25, 1, 4 * vect.arrow_scale);
                return;
            }
            if (valid) page.vect(x, y, dir, 0.25, 1, k % period == period - 1 ? 4 * vect.arrow_scale : 0);
            last_x = x;
            last_y = y;
            x += u / (4 * spd);
            y += v / (4 * spd);
        }
    }

  private:
    Gpt grid_point(float x, float y) const {
        const Domain& grid = field.u.domain;
        if (own) return {x, static_cast<float>(grid.ny - 1) - y};
        Point at;
        Gpt g;
        MAP_domain_tran(&map, &grid, x, y, &at.x, &at.y);
        MAP_domain(&grid);
        MAP_grid_untran(at.x, at.y, &g.x, &g.y);
        MAP_domain(&map);
        return g;
    }
    std::size_t cell_of(const Gpt& g) const {
        const int column = static_cast<int>(0.0001 + 2.0F * g.x / static_cast<float>(vect.xskip));
        const int row = static_cast<int>(0.0001 + 2.0F * g.y / static_cast<float>(vect.yskip));
        const int index = column + 2 * field.u.domain.nx * row;
        const int size = static_cast<int>(counters.size());
        return index < 0 || index >= size - 2 ? size - 1 : index;
    }

    Page& page;
    const Field& field;
    std::vector<int>& counters;
    Domain map;
    bool own = true;
};

/// Every seed of a field whose components lie along the axes of the plot.
void streamlines_of(Page& page, const Field& field) {
    const Domain& grid = field.u.domain;
    std::vector<int> counters(4 * grid.nx * grid.ny + 1);
    if (!(vect.base > 0)) vect.base = 1;
    for (const auto& [us, vs] : {std::pair(1, 1), {1, -1}, {-1, 1}, {-1, -1}}) {
        for (int ni = 0; ni < grid.nx; ni += vect.xskip) {
            for (int nj = 0; nj < grid.ny; nj += vect.yskip) {
                const int i = us > 0 ? ni : grid.nx - 1 - ni;
                const int j = vs > 0 ? nj : grid.ny - 1 - nj;
                const auto column = static_cast<float>(i), row = static_cast<float>(grid.ny - 1 - j);
                const float u = GRD_get_value(&field.u, column, row), v = GRD_get_value(&field.v, column, row);
                const bool seed = u != FMISS && v != FMISS && u * us > 0 && v * vs > 0;
                if (seed) Line_model(page, field, counters).draw(i, j, vect.scale * 4.0F * static_cast<float>(grid.nx));
            }
        }
    }
}

/// Lines through eddies, gaps and calms: their order, their ends, the mesh that thins them, heads and cuts.
TEST_F(Wind, StreamlinesFollowTheRules) {
    std::mt19937 random(4);
    Page page;
    const auto all = drawn([&] {
        for (int n = 0; n < 40; ++n) {
            Field field(9 + n % 7, 7 + n % 6, eddies(random));
            choose_settings(random);
            vect.arrow_scale = std::array{1.0F, 0.7F, 0.05F, 1.3F}[n % 4];
            EXPECT_EQ(field.draw(VECT_STREAMLINES), 0);  // turned to the map's axes, which are the grid's
            streamlines_of(page, field);
        }
        for (int n = 0; n < 12; ++n) {
            Domain grid = square(n % 2 == 0 ? PROJ_LATLON : PROJ_LAMBERT, 30, -75, 60, 9);
            grid.dx = grid.dy = 2;
            Field field(grid, eddies(random));
            choose_settings(random);
            const Domain map = square(n % 3 == 0 ? PROJ_ORTHO : PROJ_POLAR, 32, -70, 50, 201);
            MAP_setup(&map);
            GPH_trans(2);
            EXPECT_EQ(field.draw(VECT_STREAMLINES), 0);
            streamlines_of(page, field);
        }
    });
    expect_same(all, page.strokes);
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
    const auto cases = test::read_table("wind_settings.tsv");
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
