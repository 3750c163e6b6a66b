#include "map/maptran.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "frame/zav.h"
#include "support/support.h"
#include "support/table.h"

namespace zav {
namespace {

constexpr double RADIANS = 3.14159265358979 / 180.0;

Domain make_domain(int proj, float plat, float plon) {
    Domain d;
    d.proj = proj;
    d.plat = d.clat = plat;
    d.plon = d.clon = plon;
    d.dx = d.dy = 1.0F;
    d.nx = 11;
    d.ny = 7;
    return d;
}

struct Case {
    std::string name, text, proj;
    double unit, lat1, lat2, reach, back;
};

std::ostream& operator<<(std::ostream& out, const Case& c) { return out << c.name; }

std::vector<Case> cases() {
    std::vector<Case> all;
    for (const auto& row : test::data_cells("projections.tsv")) {
        const auto number = [&](int k) { return std::stod(row.at(k)); };
        all.push_back({row[0], row[1], row[2], number(3), number(4), number(5), number(6), number(7)});
    }
    return all;
}

class Projection : public ::testing::TestWithParam<Case> {};

/// Places over the whole earth that a map shows: as the reference program has them, and back.
TEST_P(Projection, AgreesWithReferenceAndComesBack) {
    if (!test::have_program("proj")) GTEST_SKIP() << "no PROJ here";
    const Case& c = GetParam();
    Domain d;
    ASSERT_EQ(DOM_decode(c.text, &d), 1);
    constexpr int STEPS = 12;
    std::vector<EarthPoint> places;
    std::ostringstream input;
    input.precision(12);
    for (int k = 0; k < (STEPS + 1) * (STEPS + 1); ++k) {
        const double lat = c.lat1 + (c.lat2 - c.lat1) * (k / (STEPS + 1)) / STEPS;
        const double lon = d.plon + c.reach * (2.0 * (k % (STEPS + 1)) / STEPS - 1.0);
        places.push_back({static_cast<float>(lat), static_cast<float>(lon)});
        input << places.back().lon << ' ' << places.back().lat << '\n';
    }
    const test::TempDir dir;
    const std::string sphere = c.proj.find("+a=") == std::string::npos ? " +R=6371220 " : " ";
    std::istringstream output(test::run_command("proj -f %.9f " + c.proj + sphere + dir.write("in", input.str())));
    ASSERT_EQ(MAP_domain(&d), 0);
    for (const EarthPoint& place : places) {
        double east = 0, north = 0;
        ASSERT_TRUE(output >> east >> north);
        float x = 0, y = 0, lat = 0, lon = 0;
        ASSERT_EQ(MAP_tran(place.lat, place.lon, &x, &y), 1);
        EXPECT_NEAR(std::hypot(x - east / c.unit, y - north / c.unit), 0, 2e-4) << place.lat << ' ' << place.lon;
        const bool centre = x == 0 && y == 0 && d.proj == PROJ_AZIMUTHAL;
        ASSERT_EQ(MAP_untran(x, y, &lat, &lon), centre ? 0 : 1);
        EXPECT_NEAR(lat, place.lat, c.back) << x << ' ' << y;
        EXPECT_NEAR(std::remainder(lon - place.lon, 360.0) * std::cos(lat * RADIANS), 0.0, c.back) << x << ' ' << y;
    }
}

INSTANTIATE_TEST_SUITE_P(All, Projection, ::testing::ValuesIn(cases()),
                         [](const ::testing::TestParamInfo<Case>& row) { return row.param.name; });

using Pair = std::pair<float, float>;

/// Both results of a transform.
template <typename Transform>
Pair both(Transform transform, float a, float b) {
    Pair result;
    transform(a, b, &result.first, &result.second);
    return result;
}

TEST(Maptran, ClampsAndWraps) {
    struct Row {
        int proj;
        float plat, lat, lon, same_lat, same_lon;
    };
    const std::vector<Row> rows{
        {PROJ_LATLON, 0, 10, 190, 10, -170},     {PROJ_LATLON, 0, 10, 1270, 10, -170},
        {PROJ_POLAR, 90, -80, 30, -75, 30},      {PROJ_POLAR, -90, 80, 30, 75, 30},
        {PROJ_MERCATOR, 0, 89.99F, 5, 89.9F, 5}, {PROJ_MERCATOR, 0, -90, 5, -89.9F, 5},
        {PROJ_LAMBERT, 0, -89.5F, 5, -89, 5},    {PROJ_LAMBERT, -40, 89.5F, 5, 89, 5},
    };
    for (const Row& row : rows) {
        const Domain d = make_domain(row.proj, row.plat, 0);
        MAP_domain(&d);
        EXPECT_EQ(both(MAP_tran, row.lat, row.lon), both(MAP_tran, row.same_lat, row.same_lon)) << row.proj;
    }
    const Domain d = make_domain(PROJ_LATLON, 0, 0);
    MAP_domain(&d);
    EXPECT_EQ(both(MAP_tran, 10, 190), Pair(-170, 10));
    EXPECT_LE(std::fabs(both(MAP_tran, 0, 3e30F).first), 180.0F);  // far beyond the precision of a float
}

TEST(Maptran, HidesWhatTheProjectionCannotShow) {
    const float limb = static_cast<float>(std::acos(63.7122 / 421.61) / RADIANS);
    struct {
        int proj;
        float lon;
        int result;
    } const rows[] = {{PROJ_ORTHO, 90.01F, 0},           {PROJ_ORTHO, 89.99F, 1},     {PROJ_SATELLITE, limb + 0.01F, 0},
                      {PROJ_SATELLITE, limb - 0.01F, 1}, {PROJ_AZIMUTHAL, 179.9F, 1}, {PROJ_MOLLWEIDE, 179.9F, 1}};
    for (const auto& row : rows) {
        const Domain d = make_domain(row.proj, 0, 0);
        MAP_domain(&d);
        Pair at;
        EXPECT_EQ(MAP_tran(0, row.lon, &at.first, &at.second), row.result) << row.proj << ' ' << row.lon;
        EXPECT_EQ(at == Pair(FMISS, FMISS), row.result == 0) << row.proj << ' ' << row.lon;
        EXPECT_EQ(MAP_untran(5, 200, &at.first, &at.second), 0) << row.proj;
        EXPECT_EQ(at, Pair(FMISS, FMISS));
    }
}

TEST(Maptran, PolesAndCentres) {
    for (const int proj : {PROJ_POLAR, PROJ_LAMBERT, PROJ_AZIMUTHAL}) {
        const Domain d = make_domain(proj, 50, -77);
        MAP_domain(&d);
        EXPECT_EQ(both(MAP_untran, 0, 0), Pair(proj == PROJ_AZIMUTHAL ? 50 : 90, -77));
    }
    const Domain mollweide = make_domain(PROJ_MOLLWEIDE, 0, 0);
    MAP_domain(&mollweide);
    EXPECT_EQ(both(MAP_tran, 90, 50).first, 0.0F);
    EXPECT_NEAR(both(MAP_tran, 90, 50).second, 63.7122, 1e-3);
    Domain satellite = make_domain(PROJ_SATELLITE, 0, 0);
    MAP_domain(&satellite);
    const float tangent = both(MAP_tran, 20, 30).first / 421.61F;
    satellite.param[1] = 1;
    MAP_domain(&satellite);
    EXPECT_NEAR(both(MAP_tran, 20, 30).first, 421.61F * std::atan(tangent), 1e-4);
}

TEST(Maptran, LimitsAndGrid) {
    Domain d = make_domain(PROJ_LATLON, 40, -100);
    d.dx = 2.0F;
    MAP_domain(&d);
    EXPECT_EQ(both(MAP_grid_tran, 0, 0), Pair(-10, 43));
    EXPECT_EQ(both(MAP_grid_tran, 10, 6), Pair(10, 37));
    EXPECT_EQ(both(MAP_grid_untran, -4, 42), Pair(3, 1));
    for (auto* transform : {MAP_grid_tran, MAP_grid_untran}) {
        EXPECT_EQ(both(transform, FMISS, 2), Pair(FMISS, FMISS));
    }
    Pair corner;
    MAP_get_up_left(&corner.first, &corner.second);
    EXPECT_EQ(corner, Pair(-10, 43));
    // Bounds count as inside; a grid's domain has three steps more on each side.
    for (const auto& [x, y, beyond] : {std::array{10.0F, 37.0F, 10.01F}, {-10, 43, -10.01F}}) {
        const float aside = std::copysign(6.0F, x), away = y - 40;
        EXPECT_TRUE(MAP_in_domain(x, y) == 1 && MAP_in_domain(beyond, y) == 0 && MAP_in_domain(x, y + away / 9) == 0);
        EXPECT_EQ(MAP_in_grid_domain(x + aside, y + away), 1);
        EXPECT_EQ(MAP_in_grid_domain(beyond + aside, y + away) + MAP_in_grid_domain(x, y + away * 1.1F), 0);
    }
    EXPECT_EQ(MAP_domain(nullptr), -1);
    EXPECT_EQ(MAP_in_domain(1e6F, 0) + MAP_in_grid_domain(1e6F, 0), 2);
    EXPECT_EQ(both(MAP_tran, 12, 34), Pair(12, 34));
}

TEST(Maptran, DomainTransformKeepsTheCurrentDomain) {
    const Domain here = make_domain(PROJ_MERCATOR, 0, 0);
    const Domain one = make_domain(PROJ_LATLON, 0, 0);
    const Domain two = make_domain(PROJ_POLAR, 90, 0);
    MAP_domain(&here);
    float x = 0, y = 0;
    MAP_domain_tran(&one, &two, -90, 60, &x, &y);
    EXPECT_NEAR(std::hypot(x + 63.7122 / 2, y), 0, 1e-4);  // the plane is true at 60 degrees
    MAP_domain_tran(&one, &one, 500, 600, &x, &y);
    EXPECT_EQ(Pair(x, y), Pair(500, 600));
    MAP_domain_tran(MAP_get_domain(nullptr), &one, 0, 0, &x, &y);
    EXPECT_EQ(MAP_get_proj(), PROJ_MERCATOR);
}

TEST(Maptran, OffsetAndFactor) {
    Domain d = make_domain(PROJ_LATLON, 0, 0);
    MAP_domain(&d);
    float x = 0, y = 0;
    MAP_offset(10, 60, 90, 111.195F, &x, &y);
    EXPECT_NEAR(std::hypot(x - 12, y - 60), 0, 1e-4);  // a degree of latitude is two of longitude at 60 degrees
    EXPECT_EQ(MAP_factor(60, 0), 1.0F);
    d.proj = PROJ_POLAR;
    MAP_domain(&d);
    EXPECT_NEAR(MAP_factor(60, 0), 1.0, 1e-4);
    d.proj = PROJ_LAMBERT;
    d.param = {30, 60, 0.75F, FMISS, FMISS};
    MAP_domain(&d);
    EXPECT_EQ(MAP_factor(60, 0), 0.75F);
}

/// One point in each cell of a mesh that is finer or coarser than the grid by the limit.
TEST(Maptran, PlotGridThinsPoints) {
    std::mt19937 random(6);
    for (const int limit : {0, 1, 2, 5, -1, -2, -5, 1 << 30}) {
        const Domain d = make_domain(PROJ_LATLON, 0, 0);  // 11 by 7 points one degree apart
        MAP_domain(&d);
        MAP_set_plot_limit(limit);
        MAP_plot_grid_init();
        std::set<int> taken;
        for (int i = 0; i < 500; ++i) {
            const float gx = std::uniform_real_distribution<float>(-0.5F, 10.5F)(random);
            const float gy = std::uniform_real_distribution<float>(-0.5F, 6.5F)(random);
            const double scale = limit > 0 ? limit : -1.0 / limit;
            const double across = limit > 0 ? limit * 11.0 : 11.0;
            bool passes = gx >= 0 && gx <= 10 && gy >= 0 && gy <= 6;
            if (passes && limit != -1)
                passes = taken.insert(static_cast<int>(gx * scale + across * std::trunc(gy * scale))).second;
            if (limit == 0 || limit == 1 << 30) passes = true;  // no mesh, or too fine a one to be laid out
            EXPECT_EQ(MAP_plot_grid(gx - 5, 3 - gy), passes ? 1 : 0) << limit << ": " << gx << ' ' << gy;
        }
    }
    MAP_set_plot_limit(0);
}

/// Natural logarithm of the potential temperature at a temperature (degrees Celsius) and pressure.
double log_theta(double celsius, double pressure) {
    return std::log((celsius + 273.15) * std::pow(1000 / pressure, 0.286));
}

/// Place of a data point before the limits are known.
EarthPoint plain_place(int proj, double a, double b) {
    const auto at = [](double x, double y) { return EarthPoint{static_cast<float>(x), static_cast<float>(y)}; };
    switch (proj) {
        case PROJ_STUVE:
            return at(a, -std::pow(b, 0.285714));
        case PROJ_TEPHIGRAM:
            return at(a, std::log(b));
        case PROJ_TEPHI_PLAIN:
            return at(a, log_theta(a, b));
        case PROJ_PIXEL:
            return at(a, -b);
        default:
            return at(a, -std::log(b));
    }
}

struct Graph {
    Domain d;
    MAP_limits lim, view;

    MAP_limits corners() const {
        const double x = d.clat, y = d.clon;
        const auto end_x = static_cast<float>(x + d.nx);
        if (d.proj == PROJ_XY || d.proj == PROJ_CATEGORY)
            return {d.clat, end_x, d.clon, d.clon + static_cast<float>(d.ny)};
        if (d.proj == PROJ_XY_DOWN) return {d.clat, end_x, -d.clon, static_cast<float>(d.ny) - d.clon};
        if (d.proj == PROJ_HODOGRAPH) return {d.clat, d.clat + d.dx, d.clon + d.dy, d.clon};
        const EarthPoint low = plain_place(d.proj, x, y);
        // A tephigram's corners are each found along one side.
        const EarthPoint high = plain_place(d.proj, d.proj == PROJ_TEPHI_PLAIN ? x : x + d.dx, y + d.dy);
        const auto xs = std::minmax({low.lat, static_cast<float>(x + d.dx)});
        const auto ys = std::minmax({low.lon, high.lon});
        return {xs.first, xs.second, ys.first, ys.second};
    }
    std::pair<double, double> place(double a, double b) const {
        const double kx = d.nx / d.dx, ky = d.ny / d.dy, width = lim.x_max - lim.x_min, height = lim.y_max - lim.y_min;
        const double across = view.x_max - view.x_min, up = view.y_max - view.y_min;
        if (d.proj == PROJ_XY || d.proj == PROJ_CATEGORY)
            return {lim.x_min + (a - lim.x_min) * kx, lim.y_min + (b - lim.y_min) * ky};
        if (d.proj == PROJ_XY_DOWN) return {lim.x_min + (a - lim.x_min) * kx, lim.y_min + (lim.y_min - b) * ky};
        if (d.proj == PROJ_HODOGRAPH) return {b * std::sin(a * RADIANS), b * std::cos(a * RADIANS)};
        if (d.proj == PROJ_SKEWT) return {a + width * up / across / height * (-std::log(b) - lim.y_min), -std::log(b)};
        if (d.proj == PROJ_TEPHIGRAM) {  // turned by 45 degrees about the view's lower left corner
            const double right = (a - lim.x_min) / width * across, above = (log_theta(a, b) - lim.y_min) / height * up;
            const double turned = (above + right) / 2 + view.x_min;
            return {lim.x_min + (turned - view.x_min) * width / across,
                    lim.y_min + (above + view.y_min - turned + view.x_min - view.y_min) * height / up};
        }
        const EarthPoint at = plain_place(d.proj, a, b);
        return {at.lat, at.lon};
    }
};

TEST(Maptran, GraphsAndDiagramsFollowTheirFormulas) {
    std::mt19937 random(8);
    const auto any = [&](double from, double to) {
        return static_cast<float>(std::uniform_real_distribution<double>(from, to)(random));
    };
    for (const int proj : {PROJ_XY, PROJ_XLOGY, PROJ_HODOGRAPH, PROJ_CATEGORY, PROJ_XY_DOWN, PROJ_SKEWT, PROJ_STUVE,
                           PROJ_EMAGRAM, PROJ_TEPHIGRAM, PROJ_TEPHI_PLAIN, PROJ_PIXEL}) {
        for (int n = 0; n < 200; ++n) {
            SCOPED_TRACE(proj);
            Graph g;
            g.d = make_domain(proj, any(-80, 10), any(900, 1050));
            g.d.dx = any(40, 90);
            g.d.dy = any(-850, -300);
            g.d.nx = 2 + n;
            g.d.ny = 300 - n;
            g.view = {any(0, 0.4), any(0.6, 1), any(0, 0.4), any(0.6, 1)};
            MAP_set_view(&g.view);
            MAP_domain(&g.d);
            MAP_get_limits(&g.lim);
            const MAP_limits want = g.corners();
            EXPECT_NEAR(std::hypot(g.lim.x_min - want.x_min, g.lim.x_max - want.x_max), 0, 1e-4);
            EXPECT_NEAR(std::hypot(g.lim.y_min - want.y_min, g.lim.y_max - want.y_max), 0, 1e-3);
            const float a = any(-60, 40), b = any(50, 1050);
            float x = 0, y = 0, first = 0, second = 0;
            EXPECT_EQ(MAP_tran(a, b, &x, &y), 1);
            const auto [px, py] = g.place(a, b);
            EXPECT_NEAR(std::hypot(x - px, y - py), 0, 1e-3);
            EXPECT_EQ(MAP_untran(x, y, &first, &second), 1);
            EXPECT_NEAR(std::remainder(first - a, proj == PROJ_HODOGRAPH ? 360.0 : 1e9), 0, 2e-2);
            // The powers of potential temperature and its inverse aren't quite each other's.
            const bool tephigram = proj == PROJ_TEPHIGRAM || proj == PROJ_TEPHI_PLAIN;
            EXPECT_NEAR(second, tephigram ? 1000 * std::pow(b / 1000, 0.286 * 3.5) : b, 0.2);
        }
    }
    float dir = 0, rad = 0;
    const Domain d = make_domain(PROJ_HODOGRAPH, -50, -50);
    MAP_domain(&d);
    for (const auto& [x, y, want] : {std::array{0.0F, 0.0F, 0.0F}, {-1, 0, 270}, {0, -1, 180}, {0, 2, 0}}) {
        MAP_untran(x, y, &dir, &rad);
        EXPECT_EQ(dir, want);
    }
}

}  // namespace
}  // namespace zav
