// Functions of operators and places: against real forecasts as ecCodes reads them, closed forms, units and labels.

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "calc/grd_oper.h"
#include "calc/made_grid.h"
#include "frame/resrc.h"
#include "grid/grd_read.h"
#include "support/support.h"
#include "var/var_tool.h"

namespace zav {
namespace {

using test::call_math;
using test::made_grid;

constexpr double RADIANS = M_PI / 180.0;
constexpr double DEGREE = 1.11195;   // of latitude, in 100 km
constexpr double ROTATION = 14.584;  // of the earth, twice, in 1e-5 per second

struct Listed {
    std::vector<double> lat, lon, value;
};

/// The points of the first field that fits, as ecCodes lists them, row by row from the first.
Listed listed(const std::string& path, const std::string& where) {
    std::istringstream text(
        test::run_command("grib_get_data -m -9999 -L '%.7f %.7f' -F %.9g -w " + where + " '" + path + "' 2>/dev/null"));
    Listed points;
    std::string line;
    std::getline(text, line);
    for (double lat, lon, value; text >> lat >> lon >> value;) {
        points.lat.push_back(lat);
        points.lon.push_back(lon);
        points.value.push_back(value);
    }
    return points;
}

/// A record on the grid of a file's first field, with its values from another source.
GRD_report on_grid_of(const std::string& path, const std::vector<double>& values) {
    GRD_report grid;
    int type = GRD_TYPE_GRIB;
    int number = 0;
    const int fd = GRD_open(path, 0, &type);
    EXPECT_EQ(GRD_read(fd, &grid, GRD_READ_ALL, &number), 0) << path;
    GRD_close(fd);
    EXPECT_EQ(GRD_points(&grid), values.size()) << path;
    for (std::size_t k = 0; k < std::min(values.size(), GRD_points(&grid)); ++k)
        grid.grid[k] = static_cast<float>(values[k]);
    return grid;
}

TEST(GrdPlaces, PointsOfRealGridsLieWhereEcCodesPutsThem) {
    if (!test::have_program("grib_get_data")) GTEST_SKIP() << "no ecCodes";
    Domain before;
    DOM_decode("ll,40,0,6,4,1,1", &before);
    MAP_domain(&before);
    MAP_get_domain(&before);
    for (const char* name : {"gfs_2p5deg_f120_cut.grib2", "eta_lambert_f24_cut.grib2", "ngm_polar_f48.grib2"}) {
        const std::string path = test::data_file(name);
        const Listed points = listed(path, "count=1");
        GRD_report grid = on_grid_of(path, points.value);
        const auto nx = static_cast<std::size_t>(grid.domain.nx);
        const bool from_south = points.lat.front() < points.lat.back();
        grid.grid[3] = FMISS;
        GRD_report lat, lon;
        ASSERT_EQ(call_math("lat", {&grid}, &lat) + call_math("lon", {&grid}, &lon), 2);
        for (std::size_t k = 0; k < points.lat.size(); ++k) {
            const std::size_t row = from_south ? points.lat.size() / nx - 1 - k / nx : k / nx;
            const std::size_t at = row * nx + k % nx;
            if (at == 3) continue;
            ASSERT_NEAR(lat.grid[at], points.lat[k], 2e-3) << name << ' ' << k;
            const double east = std::remainder(lon.grid[at] - points.lon[k], 360.0);
            ASSERT_NEAR(east * std::cos(points.lat[k] * RADIANS), 0, 2e-3) << name << ' ' << k;
            ASSERT_LE(std::fabs(lon.grid[at]), 180.0F);
        }
        EXPECT_TRUE(lat.grid[3] == FMISS && lon.grid[3] == FMISS && lat.grid[0] != grid.grid[0]);
        EXPECT_EQ(lat.info + lat.units + lon.info + lon.units, "Latitude (deg)degLongitude (deg)deg");
        EXPECT_EQ(lat.var, 0);
    }
    Domain after;
    MAP_get_domain(&after);
    EXPECT_EQ(DOM_text(&after), DOM_text(&before));
    MAP_domain(nullptr);
}

TEST(GrdPlaces, PointsOffTheEarthAreMissing) {
    GRD_report globe = made_grid("ortho:40:0,40,0,41,41,4,4", [](int, int) { return 1; });
    GRD_report graph = made_grid("ll,40,0,4,4,1,1", [](int, int) { return 1; });
    graph.domain.proj = MISS;
    GRD_report x, lat;
    ASSERT_EQ(call_math("lat", {&globe}, &lat) + call_math("projx", {&globe}, &x), 2);
    ASSERT_EQ(GRD_coriolis(&globe, "add") + GRD_coriolis(&graph, "add"), 0);
    EXPECT_TRUE(lat.grid[0] == FMISS && globe.grid[0] == FMISS && graph.grid[5] == FMISS);
    EXPECT_NEAR(lat.grid[20 * 41 + 20], 40, 1e-4);
    EXPECT_NEAR(globe.grid[20 * 41 + 20], 1 + ROTATION * std::sin(40 * RADIANS), 1e-4);
    EXPECT_NEAR(x.grid[20 * 41 + 30], 40, 1e-4);
    EXPECT_TRUE(x.info == "Projection X" && x.units.empty());
}

// Functions

/// Central differences in double precision of winds on the whole globe, with the turning of the earth.
std::vector<double> worked_vorticity(const Listed& u, const Listed& v, double planetary) {
    constexpr int NX = 144;
    constexpr int NY = 73;
    std::vector<double> vorticity(NX * NY, FMISS);
    for (int j = 1; j < NY - 1; ++j) {
        const double lat = (90 - 2.5 * j) * RADIANS;
        for (int i = 0; i < NX; ++i) {
            const auto at = [&](const Listed& f, int column, int row) {
                return f.value[static_cast<std::size_t>(row * NX + (column + NX) % NX)];
            };
            const double across = (at(v, i + 1, j) - at(v, i - 1, j)) / (5 * DEGREE * std::cos(lat));
            const double along = (at(u, i, j - 1) - at(u, i, j + 1)) / (5 * DEGREE);
            vorticity[static_cast<std::size_t>(j * NX + i)] = across - along + planetary * std::sin(lat);
        }
    }
    return vorticity;
}

void expect_vorticity(const std::string& path, const std::string& function, const Listed& u, const Listed& v,
                      double planetary, GRD_report& result) {
    GRD_report east = on_grid_of(path, u.value);
    GRD_report north = on_grid_of(path, v.value);
    east.units = north.units = "m/s";
    ASSERT_EQ(call_math(function, {&east, &north}, &result), 1);
    const std::vector<double> worked = worked_vorticity(u, v, planetary);
    for (std::size_t k = 0; k < worked.size(); ++k)
        ASSERT_NEAR(result.grid[k], worked[k], 2e-5) << function << ' ' << k;
}

TEST(GrdFields, VorticityOfAForecastWithoutASeam) {
    if (!test::have_program("grib_get_data")) GTEST_SKIP() << "no ecCodes";
    const std::string path = test::data_file("gfs_2p5deg_f120_cut.grib2");
    const Listed u = listed(path, "shortName=u,level=250"), v = listed(path, "shortName=v,level=250");
    GRD_report relative, absolute;
    expect_vorticity(path, "rvort", u, v, 0, relative);
    expect_vorticity(path, "avort", u, v, ROTATION, absolute);
    EXPECT_EQ(absolute.units, "1e-05 m/s/m");
}

TEST(GrdFields, AbsoluteVorticityIsThatOfTheModel) {
    const std::string path = test::data_file("gfs_2p5deg_f120.grib2");
    if (path.empty()) GTEST_SKIP() << test::NO_DATA_FILE;
    if (!test::have_program("grib_get_data")) GTEST_SKIP() << "no ecCodes";
    const std::string level = "typeOfLevel=isobaricInhPa,level=500,shortName=";
    const Listed own = listed(path, level + "absv");
    GRD_report found;
    expect_vorticity(path, "avort", listed(path, level + "u"), listed(path, level + "v"), ROTATION, found);
    double n = 0, a = 0, b = 0, aa = 0, bb = 0, ab = 0;
    for (std::size_t k = 0; k < own.value.size(); ++k) {
        if (std::fabs(own.lat[k]) > 70) continue;
        const double x = 1e-5 * found.grid[k], y = own.value[k];
        n += 1, a += x, b += y, aa += x * x, bb += y * y, ab += x * y;
    }
    const double correlation = (n * ab - a * b) / std::sqrt((n * aa - a * a) * (n * bb - b * b));
    EXPECT_GT(correlation, 0.94);
    EXPECT_LT(std::fabs(a - b) / n, 1e-6);
}

/// Geostrophic winds and Q-vectors of fields z and t whose derivatives are straight lines along the differences taken,
/// on a grid by latitude and longitude in degrees. The reference is worked out in metres and seconds.
struct Field_case {
    const char* function;
    double (*z)(double lat, double lon);
    double (*t)(double lat, double lon);
    double (*value)(double lat);
    double part;  ///< of the value, for the error of differences
};

double f_at(double lat) { return ROTATION * 1e-5 * std::sin(lat * RADIANS); }
double metres(double lat) { return DEGREE * 1e5 * std::cos(lat * RADIANS); }  // of a degree of longitude
constexpr double METRES = DEGREE * 1e5;                                       // of latitude
constexpr double GAS = 287.05 / 50000;                                        // at 500 mb

const std::vector<Field_case> FIELD_CASES{
    {"ugeos", [](double lat, double lon) { return 5000 - 20 * lat + lon; }, nullptr,
     [](double lat) { return 9.8 / f_at(lat) * 20 / METRES; }, 1e-4},
    {"vgeos", [](double lat, double lon) { return 5000 - 20 * lat + 10 * lon; }, nullptr,
     [](double lat) { return 9.8 / f_at(lat) * 10 / metres(lat); }, 1e-4},
    // d(vg)/dx dT/dy alone
    {"uq", [](double, double lon) { return lon * lon; }, [](double lat, double) { return 280 - lat; },
     [](double lat) { return GAS * 9.8 / f_at(lat) * 2 / std::pow(metres(lat), 2) / METRES; }, 2e-3},
    // d(ug)/dx dT/dx alone
    {"uq", [](double lat, double lon) { return lat * lon; }, [](double, double lon) { return 280 + lon; },
     [](double lat) { return GAS * 9.8 / f_at(lat) / METRES / std::pow(metres(lat), 2); }, 2e-3},
    // d(vg)/dy dT/dy alone: vg goes as 1 / sin(2 lat)
    {"vq", [](double, double lon) { return 50 * lon; }, [](double lat, double) { return 280 - lat; },
     [](double lat) {
         const double vg = 9.8 / f_at(lat) * 50 / metres(lat);
         return GAS * vg * -2 / std::tan(2 * lat * RADIANS) * RADIANS / METRES / METRES;
     },
     0.02},
    // d(ug)/dy dT/dx alone: ug goes as 1 / sin(lat)
    {"vq", [](double lat, double) { return -50 * lat; }, [](double, double lon) { return 280 + lon; },
     [](double lat) {
         const double ug = 9.8 / f_at(lat) * 50 / METRES;
         return GAS * ug / std::tan(lat * RADIANS) * RADIANS / METRES / metres(lat);
     },
     0.02},
};

TEST(GrdFields, WindsAndQVectorsOfKnownHeights) {
    const char* domain = "ll,28,0,11,31,1,1";
    for (const Field_case& c : FIELD_CASES) {
        GRD_report z = made_grid(domain, [&](int i, int j) { return c.z(43 - j, i - 5); });
        GRD_report t = made_grid(domain, [&](int i, int j) { return c.t == nullptr ? 0.0 : c.t(43 - j, i - 5); });
        GRD_report result;
        result.level = 500;
        const std::vector<GRD_report*> arguments = c.t == nullptr ? std::vector{&z} : std::vector{&z, &t};
        ASSERT_EQ(call_math(c.function, arguments, &result), 1) << c.function;
        // Q-vectors come in 1e-10 of K/m a second and a pascal.
        const double unit = c.t == nullptr ? 1 : 1e-10;
        for (int k = 3 * 11; k < 28 * 11; ++k) {
            if (k % 11 < 2 || k % 11 > 8) continue;
            const double value = c.value(43 - k / 11) / unit;
            ASSERT_NEAR(result.grid[k], value, std::fabs(value) * c.part) << c.function << ' ' << k;
        }
    }
}

}  // namespace
}  // namespace zav
