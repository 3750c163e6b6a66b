// Functions of operators and places: against real forecasts as ecCodes reads them, closed forms, units and labels.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <sstream>

#include "calc/grd_oper.h"
#include "calc/grd_trans.h"
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

GRD_report first_field(const std::string& path) {
    GRD_report grid;
    int type = GRD_TYPE_GRIB;
    int number = 0;
    const int fd = GRD_open(path, 0, &type);
    EXPECT_EQ(GRD_read(fd, &grid, GRD_READ_ALL, &number), 0) << path;
    GRD_close(fd);
    return grid;
}

struct Place {
    double lat, lon, value;
};

/// The points of the first field that fits, as ecCodes lists them, its rows from the north.
std::vector<Place> listed(const std::string& path, const std::string& where) {
    std::istringstream text(
        test::run_command("grib_get_data -m -9999 -L '%.7f %.7f' -F %.9g -w " + where + " '" + path + "' 2>/dev/null"));
    std::vector<Place> points;
    std::string line;
    std::getline(text, line);
    for (Place at{}; text >> at.lat >> at.lon >> at.value;) points.push_back(at);
    const auto nx = static_cast<std::ptrdiff_t>(first_field(path).domain.nx);
    const auto count = static_cast<std::ptrdiff_t>(points.size());
    if (count > 0 && points.front().lat < points.back().lat) {
        for (std::ptrdiff_t row = 0; row < count / nx / 2; ++row)
            std::swap_ranges(&points[row * nx], &points[row * nx] + nx, &points[count - (row + 1) * nx]);
    }
    return points;
}

/// A record on the grid of a file's first field with other values.
GRD_report on_grid_of(const std::string& path, const std::vector<Place>& points) {
    GRD_report grid = first_field(path);
    EXPECT_EQ(GRD_points(&grid), points.size()) << path;
    for (std::size_t k = 0; k < std::min(points.size(), GRD_points(&grid)); ++k)
        grid.grid[k] = static_cast<float>(points[k].value);
    grid.units = "m/s";
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
        const std::vector<Place> points = listed(path, "count=1");
        GRD_report grid = on_grid_of(path, points);
        grid.grid[3] = FMISS;
        GRD_report lat, lon;
        ASSERT_EQ(call_math("lat", {&grid}, &lat) + call_math("lon", {&grid}, &lon), 2);
        for (std::size_t k = 0; k < points.size(); ++k) {
            if (k == 3) continue;
            ASSERT_NEAR(lat.grid[k], points[k].lat, 2e-3) << name << ' ' << k;
            const double east = std::remainder(lon.grid[k] - points[k].lon, 360.0);
            ASSERT_NEAR(east * std::cos(points[k].lat * RADIANS), 0, 2e-3) << name << ' ' << k;
            ASSERT_LE(std::fabs(lon.grid[k]), 180.0F);
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

const std::string PRESSURE = "typeOfLevel=isobaricInhPa,level=";

GRD_report vorticity_of(const std::string& path, const std::string& function, const std::string& level) {
    GRD_report u = on_grid_of(path, listed(path, PRESSURE + level + ",shortName=u"));
    GRD_report v = on_grid_of(path, listed(path, PRESSURE + level + ",shortName=v"));
    GRD_report result;
    EXPECT_EQ(call_math(function, {&u, &v}, &result), 1) << path;
    return result;
}

/// The models' own vorticity comes from finer grids and the whole sphere, so that it can agree in the large only.
TEST(GrdFields, AbsoluteVorticityIsThatOfTheModels) {
    if (test::data_file("gfs_2p5deg_f120.grib2").empty()) GTEST_SKIP() << test::NO_DATA_FILE;
    if (!test::have_program("grib_get_data")) GTEST_SKIP() << "no ecCodes";
    struct Row {
        const char* file;
        double correlation, difference;
    };
    for (const Row& row : {Row{"gfs_2p5deg_f120.grib2", 0.94, 1e-6}, Row{"eta_lambert_f24.grib2", 0.98, 2e-6}}) {
        const std::string path = test::data_file(row.file);
        const GRD_report found = vorticity_of(path, "avort", "500");
        double n = 0, a = 0, b = 0, aa = 0, bb = 0, ab = 0;
        const std::vector<Place> own = listed(path, PRESSURE + "500,shortName=absv");
        for (std::size_t k = 0; k < own.size(); ++k) {
            if (std::fabs(own[k].lat) > 70 || found.grid[k] == FMISS) continue;
            const double x = 1e-5 * found.grid[k];
            const double y = own[k].value;
            n += 1, a += x, b += y, aa += x * x, bb += y * y, ab += x * y;
        }
        ASSERT_GT(n, 5000) << row.file;
        EXPECT_GT((n * ab - a * b) / std::sqrt((n * aa - a * a) * (n * bb - b * b)), row.correlation) << row.file;
        EXPECT_LT(std::fabs(a - b) / n, row.difference) << row.file;
    }
}

TEST(GrdFields, UnitsAndLabels) {
    RES_put("file_path", test::source_dir() + "/share/zav");
    VAR_read_varfile();
    struct Row {
        const char* function;
        const char* arguments;
        const char* units;
        const char* label;
        const char* var;
    };
    const std::vector<Row> rows{
        {"dx", "z", "1e-05 m/m", "", "dx"},
        {"grad", "z", "1e-05 m/m", "Gradient", "grad"},
        {"lapl", "z", "1e-10 m/m^2", "Height Laplacian", "lapl"},
        {"conv", "uv", "1e-05 m/s/m", "U Wind Convergence", "conv"},
        {"conv", "uvt", "1e-05 K/s", "Temperature Convergence", "conv"},
        {"conv", "uvn", "1e-05 m/s/m", "Convergence", "conv"},
        {"diverg", "uv", "1e-05 m/s/m", "U Wind Divergence", "diverg"},
        {"diverg-hght", "uv", "1e-05 m/s/m", "Height", "hght"},
        {"vconv", "uvt", "1e-05 K/s", "Convergence", "vconv"},
        {"rvort", "uv", "1e-05 m/s/m", "Relative Vorticity", "rvort"},
        {"avort", "kk", "1e-05 m/s/m", "Absolute Vorticity", "avort"},
        {"adv", "uvt", "1e-05 K/s", "Temperature Advection", "adv"},
        {"ugeos", "z", "m/s", "U Geostrophic Wind", "ugeos"},
        {"uq", "zt", "", "U Q-Vector", "uq"},
        {"spd", "uv", "m/s", "U Wind Speed", "spd"},
        {"ewdir", "uv", "deg", "Wind Direction", "wdir"},
        {"lat", "z", "deg", "Latitude (deg)", ""},
        {"lat-hght", "z", "deg", "Height", "hght"},
    };
    const auto field = [](const char* var, const char* units) {
        GRD_report grid = made_grid("ll,40,0,6,5,1,1", [](int i, int j) { return 3 * i * j + 20 * j; });
        grid.var = VAR_search_var_num(var);
        grid.units = units;
        return grid;
    };
    std::map<char, GRD_report> fields;
    for (const Row& row : rows) {
        fields = {{'u', field("uwnd", "m/s")}, {'v', field("vwnd", "m/s")}, {'z', field("hght", "m")},
                  {'t', field("temp", "K")},   {'n', field("rhum", "")},    {'k', field("uwnd", "kt")}};
        std::vector<GRD_report*> grids;
        std::vector<GRD_report*> numbers;
        for (const char* c = row.arguments; *c != 0; ++c) {
            grids.push_back(&fields[*c]);
            numbers.push_back(c[1] == 0 ? nullptr : &fields[*c]);
        }
        GRD_report result, second;
        GRD_report* pair = std::string(row.function) == "grad" ? &second : nullptr;
        result.level = 500;
        EXPECT_EQ(call_math(row.function, grids, &result, pair), 1) << row.function;
        EXPECT_EQ(result.units, row.units) << row.function;
        EXPECT_NE(result.info.find(row.label), std::string::npos) << row.function << ": " << result.info;
        EXPECT_EQ(result.var, *row.var == 0 ? 0 : VAR_search_var_num(row.var)) << row.function;
        EXPECT_EQ(call_math(row.function, numbers, &result, pair), 0) << row.function;
    }
    GRD_report no_level;
    EXPECT_EQ(call_math("uq", {&fields['z'], &fields['u']}, &no_level), 0);
    GRD_report knots = field("uwnd", "kt"), metres_a_second = field("uwnd", "m/s"), a, b;
    ASSERT_EQ(call_math("avort", {&knots, &knots}, &a), 1);
    ASSERT_EQ(GRD_scale(&metres_a_second, 1852.0F / 3600), 0);
    ASSERT_EQ(call_math("avort", {&metres_a_second, &metres_a_second}, &b), 1);
    EXPECT_NEAR(a.grid[8], b.grid[8], 1e-4);
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
    // d(vg)/dy dT/dy alone: vg goes as 1 / sin(2 lat)
    {"vq", [](double, double lon) { return 50 * lon; }, [](double lat, double) { return 280 - lat; },
     [](double lat) {
         const double vg = 9.8 / f_at(lat) * 50 / metres(lat);
         return GAS * vg * -2 / std::tan(2 * lat * RADIANS) * RADIANS / METRES / METRES;
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
