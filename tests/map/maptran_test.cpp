#include "map/maptran.h"

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "frame/zav.h"
#include "support/support.h"

namespace zav {
namespace {

constexpr double RADIANS = 3.14159265358979 / 180.0;

struct Place {
    double lat;
    double lon;
};

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

Domain with_params(Domain d, float p0, float p1, int ellipse = 0) {
    d.param[0] = p0;
    d.param[1] = p1;
    d.ellipse = ellipse;
    return d;
}

struct Case {
    const char* name;
    Domain domain;
    const char* proj;    ///< arguments of the reference program
    double unit;         ///< reference units (metres) in one map unit
    double lat1, lat2;   ///< latitudes to try
    double reach;        ///< longitudes to try on both sides of the reference
    double back = 1e-4;  ///< tolerance of the way back, degrees
};

std::ostream& operator<<(std::ostream& out, const Case& c) { return out << c.name; }

constexpr double KM100 = 1e5;
constexpr double DEGREE = 6371220.0 * RADIANS;
constexpr double SCAN = 1e5 * (421.64 - 63.7122) / 421.64;
constexpr double SCAN_ELLIPSE = 1e5 * (421.64 - 63.78137) / 421.64;

const std::vector<Case> CASES{
    {"PolarNorth", make_domain(PROJ_POLAR, 90, -105), "+proj=stere +lat_0=90 +lat_ts=60 +lon_0=-105", KM100, -20, 90,
     179},
    {"PolarTrueAt45", with_params(make_domain(PROJ_POLAR, 60, 10), 45, FMISS),
     "+proj=stere +lat_0=90 +lat_ts=45 +lon_0=10", KM100, 0, 90, 179},
    {"PolarSouthTruePositive", with_params(make_domain(PROJ_POLAR, -90, 20), 45, FMISS),
     "+proj=stere +lat_0=-90 +lat_ts=-45 +lon_0=20", KM100, -90, 20, 179},
    {"PolarSouth", make_domain(PROJ_POLAR, -90, 20), "+proj=stere +lat_0=-90 +lat_ts=-60 +lon_0=20", KM100, -90, 20,
     179},
    {"LatLon", make_domain(PROJ_LATLON, 0, -30), "+proj=eqc +lon_0=-30", DEGREE, -90, 90, 179},
    {"Mercator", make_domain(PROJ_MERCATOR, 0, 170), "+proj=merc +lon_0=170", KM100, -85, 85, 179},
    {"Lambert", make_domain(PROJ_LAMBERT, 40, -95), "+proj=lcc +lat_1=30 +lat_2=60 +lat_0=90 +lon_0=-95", KM100, -20,
     89, 150},
    {"LambertTangent", with_params(make_domain(PROJ_LAMBERT, 25, -95), 25, 25),
     "+proj=lcc +lat_1=25 +lat_2=25 +lat_0=90 +lon_0=-95", KM100, -20, 89, 150},
    {"LambertOneTrueLatitude", with_params(make_domain(PROJ_LAMBERT, 25, -95), 50, FMISS),
     "+proj=lcc +lat_1=50 +lat_2=50 +lat_0=90 +lon_0=-95", KM100, -20, 89, 150},
    {"LambertSouth", with_params(make_domain(PROJ_LAMBERT, -30, 135), 18, 36),
     "+proj=lcc +lat_1=-18 +lat_2=-36 +lat_0=-90 +lon_0=135", KM100, -89, 20, 150},
    {"LambertSouthNegative", with_params(make_domain(PROJ_LAMBERT, -90, 134), -15, -40),
     "+proj=lcc +lat_1=-15 +lat_2=-40 +lat_0=-90 +lon_0=134", KM100, -89, 20, 150},
    {"LambertSouthTangent", with_params(make_domain(PROJ_LAMBERT, -40, 25), 30, 30),
     "+proj=lcc +lat_1=-30 +lat_2=-30 +lat_0=-90 +lon_0=25", KM100, -89, 20, 150},
    {"LambertSouthTangentNegative", with_params(make_domain(PROJ_LAMBERT, -40, 25), -60, -60),
     "+proj=lcc +lat_1=-60 +lat_2=-60 +lat_0=-90 +lon_0=25", KM100, -89, 0, 150},
    {"LambertNorthNegative", with_params(make_domain(PROJ_LAMBERT, 40, -95), -30, -60),
     "+proj=lcc +lat_1=30 +lat_2=60 +lat_0=90 +lon_0=-95", KM100, -20, 89, 150},
    {"Orthographic", make_domain(PROJ_ORTHO, 35, -20), "+proj=ortho +lat_0=35 +lon_0=-20", KM100, -10, 88, 60, 1e-3},
    {"Mollweide", make_domain(PROJ_MOLLWEIDE, 0, 60), "+proj=moll +lon_0=60", KM100* std::sqrt(2.0), -89, 89, 179},
    {"Azimuthal", make_domain(PROJ_AZIMUTHAL, 50, 5), "+proj=laea +lat_0=50 +lon_0=5", KM100, -60, 88, 170},
    {"AzimuthalNorthPole", make_domain(PROJ_AZIMUTHAL, 90, 5), "+proj=laea +lat_0=90 +lon_0=5", KM100, -60, 89, 179},
    {"AzimuthalSouthPole", make_domain(PROJ_AZIMUTHAL, -90, 5), "+proj=laea +lat_0=-90 +lon_0=5", KM100, -89, 60, 179},
    {"SatelliteSphere", with_params(make_domain(PROJ_SATELLITE, 0, 9), 421.64F, 1), "+proj=geos +lon_0=9 +h=35792780",
     SCAN, -60, 60, 40, 1e-3},
    {"SatelliteEllipsoid", with_params(make_domain(PROJ_SATELLITE, 0, 9), 421.64F, 1, 1),
     "+proj=geos +lon_0=9 +h=35785863 +a=6378137 +b=6356752", SCAN_ELLIPSE, -70, 70, 40, 1e-3},
};

std::vector<Place> places_of(const Case& c) {
    constexpr int STEPS = 12;
    std::vector<Place> places;
    for (int i = 0; i <= STEPS; ++i) {
        for (int j = 0; j <= STEPS; ++j) {
            const double lat = c.lat1 + (c.lat2 - c.lat1) * i / STEPS;
            places.push_back({lat, c.domain.plon + c.reach * (2.0 * j / STEPS - 1.0)});
        }
    }
    return places;
}

std::string with_sphere(const Case& c) {
    const std::string arguments = c.proj;
    return arguments.find("+a=") == std::string::npos ? arguments + " +R=6371220" : arguments;
}

/// Runs the reference program over pairs of numbers.
std::vector<Point> reference(const std::string& options, const std::vector<std::pair<double, double>>& input) {
    const test::TempDir dir;
    std::ostringstream text;
    text.precision(12);
    for (const auto& [a, b] : input) text << a << ' ' << b << '\n';
    const std::string file = dir.write("in", text.str());
    std::istringstream output(test::run_command("proj -f %.9f " + options + " " + file));
    std::vector<Point> result;
    std::string a;
    std::string b;
    while (output >> a >> b) result.push_back({std::stof(a), std::stof(b)});
    return result;
}

class Projection : public ::testing::TestWithParam<Case> {
  protected:
    void SetUp() override {
        if (!test::have_program("proj")) GTEST_SKIP() << "no PROJ here";
    }
};

TEST_P(Projection, AgreesWithReferenceForward) {
    const Case& c = GetParam();
    const std::vector<Place> places = places_of(c);
    std::vector<std::pair<double, double>> input;
    for (const Place& p : places) input.emplace_back(static_cast<float>(p.lon), static_cast<float>(p.lat));
    const std::vector<Point> expected = reference(with_sphere(c), input);
    ASSERT_EQ(expected.size(), places.size());
    ASSERT_EQ(MAP_domain(&c.domain), 0);
    for (std::size_t i = 0; i < places.size(); ++i) {
        float x = 0;
        float y = 0;
        ASSERT_EQ(MAP_tran(static_cast<float>(places[i].lat), static_cast<float>(places[i].lon), &x, &y), 1);
        EXPECT_NEAR(x, expected[i].x / c.unit, 1e-4) << places[i].lat << ' ' << places[i].lon;
        EXPECT_NEAR(y, expected[i].y / c.unit, 1e-4) << places[i].lat << ' ' << places[i].lon;
    }
}

TEST_P(Projection, AgreesWithReferenceBack) {
    const Case& c = GetParam();
    ASSERT_EQ(MAP_domain(&c.domain), 0);
    std::vector<Point> points;
    std::vector<std::pair<double, double>> input;
    for (const Place& p : places_of(c)) {
        Point pt;
        MAP_tran(static_cast<float>(p.lat), static_cast<float>(p.lon), &pt.x, &pt.y);
        points.push_back(pt);
        input.emplace_back(pt.x * c.unit, pt.y * c.unit);
    }
    const std::vector<Point> expected = reference("-I " + with_sphere(c), input);
    ASSERT_EQ(expected.size(), points.size());
    for (std::size_t i = 0; i < points.size(); ++i) {
        float lat = 0;
        float lon = 0;
        ASSERT_EQ(MAP_untran(points[i].x, points[i].y, &lat, &lon), 1);
        const double east = std::remainder(lon - expected[i].x, 360.0) * std::cos(lat * RADIANS);
        EXPECT_NEAR(lat, expected[i].y, c.back) << points[i].x << ' ' << points[i].y;
        EXPECT_NEAR(east, 0.0, c.back) << points[i].x << ' ' << points[i].y;
    }
}

INSTANTIATE_TEST_SUITE_P(All, Projection, ::testing::ValuesIn(CASES),
                         [](const ::testing::TestParamInfo<Case>& row) { return row.param.name; });

TEST(Maptran, ClampsAndWraps) {
    struct Row {
        int proj;
        float plat, lat, lon, same_lat, same_lon;
    };
    const std::vector<Row> rows{
        {PROJ_LATLON, 0, 10, 190, 10, -170},     {PROJ_LATLON, 0, 10, 1270, 10, -170},
        {PROJ_POLAR, 90, -80, 30, -75, 30},      {PROJ_POLAR, -90, 80, 30, 75, 30},
        {PROJ_MERCATOR, 0, 89.99F, 5, 89.9F, 5}, {PROJ_MERCATOR, 0, -90, 5, -89.9F, 5},
        {PROJ_LAMBERT, 40, -89.5F, 5, -89, 5},   {PROJ_LAMBERT, -40, 89.5F, 5, 89, 5},
    };
    for (const Row& row : rows) {
        const Domain d = make_domain(row.proj, row.plat, 0);
        MAP_domain(&d);
        float x1 = 0, y1 = 0, x2 = 1, y2 = 1;
        EXPECT_EQ(MAP_tran(row.lat, row.lon, &x1, &y1), 1);
        EXPECT_EQ(MAP_tran(row.same_lat, row.same_lon, &x2, &y2), 1);
        EXPECT_EQ(x1, x2) << row.proj;
        EXPECT_EQ(y1, y2) << row.proj;
    }
    float x = 0;
    float y = 0;
    const Domain d = make_domain(PROJ_LATLON, 0, 0);
    MAP_domain(&d);
    MAP_tran(10, 190, &x, &y);
    EXPECT_EQ(x, -170.0F);
    MAP_tran(0, 3e30F, &x, &y);  // a longitude far beyond the precision of a float ends too
    EXPECT_LE(std::fabs(x), 180.0F);
}

TEST(Maptran, HidesWhatTheProjectionCannotShow) {
    struct Row {
        Domain domain;
        float lat, lon;
        int result;
    };
    const float limb = static_cast<float>(std::acos(63.7122 / 421.61) / RADIANS);
    const std::vector<Row> rows{
        {make_domain(PROJ_ORTHO, 0, 0), 0, 90.01F, 0},
        {make_domain(PROJ_ORTHO, 0, 0), 0, 89.99F, 1},
        {make_domain(PROJ_SATELLITE, 0, 0), 0, limb + 0.01F, 0},
        {make_domain(PROJ_SATELLITE, 0, 0), 0, limb - 0.01F, 1},
        {make_domain(PROJ_AZIMUTHAL, 0, 0), 0, 179.9F, 1},
    };
    for (const Row& row : rows) {
        MAP_domain(&row.domain);
        float x = 0;
        float y = 0;
        EXPECT_EQ(MAP_tran(row.lat, row.lon, &x, &y), row.result) << row.domain.proj << ' ' << row.lon;
        EXPECT_EQ(x == FMISS && y == FMISS, row.result == 0) << row.domain.proj << ' ' << row.lon;
    }
    for (const int proj : {PROJ_ORTHO, PROJ_MOLLWEIDE, PROJ_AZIMUTHAL, PROJ_SATELLITE}) {
        const Domain d = make_domain(proj, 0, 0);
        MAP_domain(&d);
        float lat = 0;
        float lon = 0;
        EXPECT_EQ(MAP_untran(5, 200, &lat, &lon), 0) << proj;
        EXPECT_EQ(lat, FMISS);
        EXPECT_EQ(lon, FMISS);
    }
}

TEST(Maptran, PolesAndCentres) {
    float a = 0;
    float b = 0;
    for (const int proj : {PROJ_POLAR, PROJ_LAMBERT}) {
        const Domain d = make_domain(proj, 50, -77);
        MAP_domain(&d);
        EXPECT_EQ(MAP_untran(0, 0, &a, &b), 1);
        EXPECT_EQ(a, 90.0F);
        EXPECT_EQ(b, -77.0F);
    }
    const Domain azimuthal = make_domain(PROJ_AZIMUTHAL, 50, -77);
    MAP_domain(&azimuthal);
    EXPECT_EQ(MAP_untran(0, 0, &a, &b), 0);
    EXPECT_EQ(a, 50.0F);
    EXPECT_EQ(b, -77.0F);

    const Domain mollweide = make_domain(PROJ_MOLLWEIDE, 0, 0);
    MAP_domain(&mollweide);
    EXPECT_EQ(MAP_tran(90, 50, &a, &b), 1);
    EXPECT_EQ(a, 0.0F);
    EXPECT_NEAR(b, 63.7122, 1e-3);

    Domain satellite = make_domain(PROJ_SATELLITE, 0, 0);
    MAP_domain(&satellite);
    MAP_tran(20, 30, &a, &b);
    const float tangent = a / 421.61F;
    satellite.param[1] = 1;
    MAP_domain(&satellite);
    MAP_tran(20, 30, &a, &b);
    EXPECT_NEAR(a, 421.61F * std::atan(tangent), 1e-4);
}

TEST(Maptran, LimitsAndGrid) {
    Domain d = make_domain(PROJ_LATLON, 40, -100);
    d.dx = 2.0F;
    MAP_domain(&d);
    MAP_limits lim;
    MAP_get_limits(&lim);
    EXPECT_EQ(lim.x_min, -10.0F);
    EXPECT_EQ(lim.x_max, 10.0F);
    EXPECT_EQ(lim.y_min, 37.0F);
    EXPECT_EQ(lim.y_max, 43.0F);
    float x = 0;
    float y = 0;
    EXPECT_EQ(MAP_grid_tran(0, 0, &x, &y), 0);
    EXPECT_EQ(x, lim.x_min);
    EXPECT_EQ(y, lim.y_max);
    MAP_grid_tran(10, 6, &x, &y);
    EXPECT_EQ(x, lim.x_max);
    EXPECT_EQ(y, lim.y_min);
    EXPECT_EQ(MAP_grid_tran(FMISS, 2, &x, &y), -1);
    EXPECT_EQ(x, FMISS);
    EXPECT_EQ(y, FMISS);
    MAP_grid_untran(-4, 42, &x, &y);
    EXPECT_EQ(x, 3.0F);
    EXPECT_EQ(y, 1.0F);

    EXPECT_EQ(MAP_in_domain(10, 37), 1);
    EXPECT_EQ(MAP_in_domain(10.01F, 37), 0);
    EXPECT_EQ(MAP_in_grid_domain(16, 46), 1);
    EXPECT_EQ(MAP_in_grid_domain(16.1F, 46), 0);

    EXPECT_EQ(MAP_domain(nullptr), -1);
    EXPECT_EQ(MAP_in_domain(1e6F, 0), 1);
    EXPECT_EQ(MAP_tran(12, 34, &x, &y), 1);
    EXPECT_EQ(x, 12.0F);
    EXPECT_EQ(y, 34.0F);
}

TEST(Maptran, DomainTransformKeepsTheCurrentDomain) {
    const Domain here = make_domain(PROJ_MERCATOR, 0, 0);
    const Domain one = make_domain(PROJ_LATLON, 0, 0);
    const Domain two = make_domain(PROJ_POLAR, 90, 0);
    MAP_domain(&here);
    float x = 0;
    float y = 0;
    MAP_domain_tran(&one, &two, -90, 60, &x, &y);
    EXPECT_NEAR(x, -63.7122 / 2, 1e-4);  // the plane is true at 60 degrees
    EXPECT_NEAR(y, 0.0, 1e-4);
    MAP_domain_tran(&one, &one, 500, 600, &x, &y);
    EXPECT_EQ(x, 500.0F);
    EXPECT_EQ(MAP_get_proj(), PROJ_MERCATOR);
    MAP_domain_tran(MAP_get_domain(nullptr), &one, 0, 0, &x, &y);
    EXPECT_EQ(MAP_get_proj(), PROJ_MERCATOR);
}

TEST(Maptran, OffsetAndFactor) {
    Domain d = make_domain(PROJ_LATLON, 0, 0);
    MAP_domain(&d);
    float x = 0;
    float y = 0;
    MAP_offset(10, 60, 90, 111.195F, &x, &y);
    EXPECT_NEAR(x, 12.0, 1e-4);  // a degree of latitude is two of longitude at 60 degrees
    EXPECT_NEAR(y, 60.0, 1e-4);
    EXPECT_EQ(MAP_factor(60, 0), 1.0F);
    d.proj = PROJ_POLAR;
    MAP_domain(&d);
    EXPECT_NEAR(MAP_factor(60, 0), 1.0, 1e-4);
    EXPECT_NEAR(MAP_factor(90, 0), 0.933, 1e-4);
    d.proj = PROJ_LAMBERT;
    d.param = {30, 60, 0.75F, FMISS, FMISS};
    MAP_domain(&d);
    EXPECT_EQ(MAP_factor(60, 0), 0.75F);
}

TEST(Maptran, PlotGridThinsPoints) {
    const Domain d = make_domain(PROJ_LATLON, 0, 0);  // 11 by 7 points one degree apart
    MAP_domain(&d);
    const auto passed = [](int limit) {
        int count = 0;
        MAP_set_plot_limit(limit);
        MAP_plot_grid_init();
        for (int i = 0; i < 40; ++i) count += MAP_plot_grid(-4.95F + 0.25F * static_cast<float>(i), 2.9F);
        return count;
    };
    EXPECT_EQ(passed(0), 40);
    EXPECT_EQ(passed(1), 10);
    EXPECT_EQ(passed(2), 20);
    EXPECT_EQ(passed(-1), 40);
    EXPECT_EQ(passed(-5), 2);
    EXPECT_EQ(MAP_plot_grid(5.5F, 0), 0);
    EXPECT_EQ(passed(1 << 30), 40);  // too fine a grid to be laid out
    MAP_set_plot_limit(0);
}

struct Graph_case {
    int proj;
    float clat, clon, dx, dy;
    float first, second;  ///< data point
    double x, y;          ///< its place
};

TEST(Maptran, GraphsAndDiagrams) {
    const double theta = 273.15 * std::pow(1000.0 / 700.0, 0.286);
    const std::vector<Graph_case> cases{
        {PROJ_XY, 100, 10, 50, 20, 125, 15, 100 + 11 * 0.5, 10 + 7 * 0.25},
        {PROJ_CATEGORY, 100, 10, 50, 20, 125, 15, 100 + 11 * 0.5, 10 + 7 * 0.25},
        {PROJ_XY_DOWN, 100, 0, 50, -20, 125, 15, 100 + 11 * 0.5, 7 * 0.75},
        {PROJ_XLOGY, 0, 1000, 10, -900, 4, 500, 4, -std::log(500.0)},
        {PROJ_EMAGRAM, -40, 1000, 80, -900, 4, 500, 4, -std::log(500.0)},
        {PROJ_HODOGRAPH, -50, -50, 100, 100, 90, 25, 25, 0},
        {PROJ_STUVE, -40, 1000, 80, -900, 4, 500, 4, -std::pow(500.0, 0.285714)},
        {PROJ_TEPHI_PLAIN, -40, 1000, 80, -800, 0, 700, 0, std::log(theta)},
        {PROJ_PIXEL, 0, 0, 640, 512, 33, 44, 33, -44},
    };
    for (const Graph_case& c : cases) {
        Domain d = make_domain(c.proj, c.clat, c.clon);
        d.dx = c.dx;
        d.dy = c.dy;
        MAP_domain(&d);
        float x = 0, y = 0, first = 0, second = 0;
        EXPECT_EQ(MAP_tran(c.first, c.second, &x, &y), 1);
        EXPECT_NEAR(x, c.x, 1e-4) << c.proj;
        EXPECT_NEAR(y, c.y, 1e-4) << c.proj;
        EXPECT_EQ(MAP_untran(x, y, &first, &second), 1);
        EXPECT_NEAR(first, c.first, 1e-3) << c.proj;
        EXPECT_NEAR(second, c.second, c.proj == PROJ_TEPHI_PLAIN ? 1.0 : 0.01) << c.proj;
    }
}

TEST(Maptran, SkewtAndTephigramReturn) {
    const MAP_limits view{0.1F, 0.9F, 0.2F, 0.8F};
    MAP_set_view(&view);
    for (const int proj : {PROJ_SKEWT, PROJ_TEPHIGRAM}) {
        Domain d = make_domain(proj, -40, 1000);
        d.dx = 80;
        d.dy = -800;
        MAP_domain(&d);
        MAP_limits lim;
        MAP_get_limits(&lim);
        EXPECT_EQ(lim.x_min, -40.0F);
        EXPECT_EQ(lim.x_max, 40.0F);
        float x = 0, y = 0, temp = 0, pressure = 0;
        EXPECT_EQ(MAP_tran(-10, 600, &x, &y), 1);
        EXPECT_EQ(MAP_untran(x, y, &temp, &pressure), 1);
        EXPECT_NEAR(temp, -10, 0.02) << proj;
        EXPECT_NEAR(pressure, 600, 1.5) << proj;
    }
    // on a skew-T the isotherms run along the diagonal of the viewport
    Domain d = make_domain(PROJ_SKEWT, -40, 1000);
    d.dx = 80;
    d.dy = -800;
    MAP_domain(&d);
    float x = 0;
    float y = 0;
    MAP_tran(-40, 200, &x, &y);
    EXPECT_NEAR(x, -40 + 80 * 0.75, 1e-3);
}

}  // namespace
}  // namespace zav
