// Functions of operators and places: closed forms, units and labels.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>

#include "calc/grd_oper.h"
#include "calc/grd_trans.h"
#include "calc/made_grid.h"
#include "frame/resrc.h"
#include "support/support.h"
#include "support/table.h"
#include "var/var_tool.h"

namespace zav {
namespace {

using test::call_math;
using test::made_grid;

constexpr double RADIANS = M_PI / 180.0;
constexpr double DEGREE = 1.11195;   // of latitude, in 100 km
constexpr double ROTATION = 14.584;  // of the earth, twice, in 1e-5 per second

TEST(GrdPlaces, PointsOffTheEarthAreMissing) {
    Domain before, after;
    DOM_decode("ll,40,0,6,4,1,1", &before);
    MAP_domain(&before);
    MAP_get_domain(&before);
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
    MAP_get_domain(&after);
    EXPECT_EQ(DOM_text(&after), DOM_text(&before));  // the map stays as it was
    MAP_domain(nullptr);
    EXPECT_TRUE(lat.var == 0 && lat.grid[20 * 41 + 20] != globe.grid[20 * 41 + 20]);
}

// Functions

TEST(GrdFields, UnitsAndLabels) {
    RES_put("file_path", test::source_dir() + "/share/zav");
    VAR_read_varfile();
    const auto field = [](const char* var, const char* units) {
        GRD_report grid = made_grid("ll,40,0,6,5,1,1", [](int i, int j) { return 3 * i * j + 20 * j; });
        grid.var = VAR_search_var_num(var);
        grid.units = units;
        return grid;
    };
    std::map<char, GRD_report> fields;
    for (const test::Case& row : test::cases("grid_function_labels")) {
        const std::string function = row.text(0), letters = row.text(1);
        fields = {{'u', field("uwnd", "m/s")}, {'v', field("vwnd", "m/s")}, {'z', field("hght", "m")},
                  {'t', field("temp", "K")},   {'n', field("rhum", "")},    {'k', field("uwnd", "kt")}};
        std::vector<GRD_report*> grids;
        std::vector<GRD_report*> numbers;
        for (const char& letter : letters) {
            grids.push_back(&fields[letter]);
            numbers.push_back(&letter == &letters.back() ? nullptr : &fields[letter]);
        }
        GRD_report result, second;
        GRD_report* pair = function == "grad" ? &second : nullptr;
        result.level = 500;
        EXPECT_EQ(call_math(function, grids, &result, pair), 1) << function;
        if (pair != nullptr) {
            EXPECT_EQ(second.units, row.text(2));
        }
        EXPECT_EQ(result.units, row.text(2)) << function;
        EXPECT_NE(result.info.find(row.text(3)), std::string::npos) << function << ": " << result.info;
        EXPECT_EQ(result.var, row.text(4).empty() ? 0 : VAR_search_var_num(row.text(4))) << function;
        EXPECT_EQ(call_math(function, numbers, &result, pair), 0) << function;
    }
    GRD_report no_level, carried, plain;
    EXPECT_EQ(call_math("uq", {&fields['z'], &fields['u']}, &no_level), 0);
    GRD_report knots = field("uwnd", "kt"), metres_a_second = field("uwnd", "m/s"), a, b;
    ASSERT_EQ(call_math("avort", {&knots, &knots}, &a), 1);
    ASSERT_EQ(GRD_scale(&metres_a_second, 1852.0F / 3600), 0);
    ASSERT_EQ(call_math("avort", {&metres_a_second, &metres_a_second}, &b), 1);
    EXPECT_NEAR(a.grid[8], b.grid[8], 1e-4);
    knots = field("uwnd", "kt");  // the wind that carries something is taken in m/s
    GRD_report other = knots;
    other.grid.reset();
    GRD_alloc(&other);
    std::copy_n(knots.grid.get(), GRD_points(&knots), other.grid.get());
    ASSERT_EQ(call_math("conv", {&knots, &other, &fields['t']}, &carried), 1);
    ASSERT_EQ(call_math("conv", {&metres_a_second, &metres_a_second, &fields['t']}, &plain), 1);
    EXPECT_NEAR(carried.grid[8], plain.grid[8], 1e-3 * std::fabs(plain.grid[8]));
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
