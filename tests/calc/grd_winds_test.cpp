// Wind functions: by hand, and along the axes of grids against short ways that PROJ places.

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <sstream>
#include <tuple>

#include "calc/grd_oper.h"
#include "calc/made_grid.h"
#include "frame/string.h"
#include "support/support.h"
#include "support/table.h"

namespace zav {
namespace {

using test::call_math;
using test::made_grid;

constexpr double RADIANS = M_PI / 180.0;

TEST(GrdWinds, SpeedsAndDirections) {
    const std::vector<std::array<float, 4>> rows{{0, 0, 0, 0},   {0, -5, 5, 0},  {-5, 0, 5, 90},
                                                 {0, 5, 5, 180}, {5, 0, 5, 270}, {-3, -4, 5, 36.8699F}};
    const auto column = [&](std::size_t part) {
        return made_grid("ll,40,0,6,1,1,1", [&](int i, int) { return rows[static_cast<std::size_t>(i)][part]; });
    };
    GRD_report u = column(0), v = column(1), speed = column(2), dir = column(3);
    const std::vector<GRD_report*> components{&u, &v}, turned{&dir, &speed};
    for (const auto& [function, given, want] : {std::tuple{"mag", &components, &speed},
                                                {"ewdir", &components, &dir},
                                                {"wdir", &components, &dir},
                                                {"uwnd", &turned, &u},
                                                {"vwndg", &turned, &v}}) {
        GRD_report result;
        ASSERT_EQ(call_math(function, *given, &result), 1) << function;
        for (int k = 0; k < 6; ++k) EXPECT_NEAR(result.grid[k], want->grid[k], 1e-4) << function << ' ' << k;
        for (int k = 0; want == &dir && k < 6; ++k) EXPECT_FALSE(std::signbit(result.grid[k])) << function << ' ' << k;
    }
}

/// Winds from all sides on grids of a projection: each blows along the way that a short step leads on the map.
struct Blown {
    GRD_report dir, speed, lat, lon;
    explicit Blown(const std::string& domain)
        : dir(made_grid(domain, [](int i, int j) { return std::fmod(37.0 * i + 101.0 * j, 360.0); })),
          speed(made_grid(domain, [](int i, int j) { return 5 + i % 3 + j; })),
          lat(made_grid(domain, [](int, int) { return 0; })),
          lon(lat) {
        lon.grid.reset();
        GRD_alloc(&lon);
        std::fill_n(lon.grid.get(), GRD_points(&lon), 0.0F);
        EXPECT_EQ(GRD_point_locate(&lat, "lat") + GRD_point_locate(&lon, "lon"), 0);
    }
};

/// Directions of the steps on the map of PROJ's `arguments`, clockwise from its y axis.
std::vector<double> directions_by_proj(const std::string& arguments, const Blown& blown) {
    constexpr double STEP = 0.002;  // degrees
    std::string input;
    for (std::size_t k = 0; k < GRD_points(&blown.lat); ++k) {
        const double lat = blown.lat.grid[k];
        const double toward = (blown.dir.grid[k] + 180.0) * RADIANS;
        for (const double step : {-STEP, STEP}) {
            input += text_format("%.9f %.9f\n", blown.lon.grid[k] + step * std::sin(toward) / std::cos(lat * RADIANS),
                                 lat + step * std::cos(toward));
        }
    }
    const test::TempDir dir;
    std::istringstream placed(
        test::run_command("proj -f %.4f +R=6371220 " + arguments + " < " + dir.write("places", input)));
    std::vector<double> directions;
    for (double x0, y0, x1, y1; placed >> x0 >> y0 >> x1 >> y1;)
        directions.push_back(std::atan2(x1 - x0, y1 - y0) / RADIANS);
    return directions;
}

TEST(GrdWinds, BlowAlongTheAxesOfTheirGridAsByProj) {
    if (!test::have_program("proj")) GTEST_SKIP() << "no PROJ";
    int grids = 0;
    for (const test::Case& row : test::cases("projections")) {
        const std::string name = row.text(0);
        const bool keeps_angles =
            name.starts_with("Polar") || name.starts_with("Lambert") || name.starts_with("Mercator");
        std::string domain = row.text(1);
        const bool at_apex = domain.starts_with("lc:-90");  // half of the grid lies where the cone is cut
        if (!keeps_angles || at_apex) continue;
        domain = domain.substr(0, domain.rfind(",11,7")) + ",14,11,4,3";
        const Blown blown(domain);
        const std::vector<double> truth = directions_by_proj(row.text(2), blown);
        ASSERT_EQ(truth.size(), 14U * 11U) << name;
        GRD_report dir = blown.dir, speed = blown.speed;
        GRD_report u, v, back, east, north;
        ASSERT_EQ(call_math("uwndg", {&dir, &speed}, &u) + call_math("vwndg", {&dir, &speed}, &v), 2);
        ASSERT_EQ(call_math("ewdir", {&u, &v}, &back), 1);
        GRD_copy(&east, &u);
        GRD_copy(&north, &v);
        for (std::size_t k = 0; k < truth.size(); ++k) {
            if (std::fabs(blown.lat.grid[k]) > 89.9) continue;
            const double along = truth[k] * RADIANS;
            const double was =
                std::fmod(37.0 * static_cast<double>(k % 14) + 101.0 * static_cast<double>(k / 14), 360.0);
            ASSERT_NEAR(u.grid[k], speed.grid[k] * std::sin(along), 0.01) << name << ' ' << k;
            ASSERT_NEAR(v.grid[k], speed.grid[k] * std::cos(along), 0.01) << name << ' ' << k;
            ASSERT_NEAR(std::remainder(back.grid[k] - was, 360.0), 0, 1e-3) << name << ' ' << k;
            ASSERT_TRUE(back.grid[k] >= 0 && back.grid[k] <= 360);
            ASSERT_EQ(dir.grid[k], static_cast<float>(was)) << "the argument has changed";
        }
        ASSERT_EQ(GRD_correct_UV(&east, &north), 0);  // in place
        for (std::size_t k = 0; k < truth.size(); ++k) {
            const double from = dir.grid[k] * RADIANS;
            ASSERT_NEAR(east.grid[k], -speed.grid[k] * std::sin(from), 1e-3) << name << ' ' << k;
            ASSERT_NEAR(north.grid[k], -speed.grid[k] * std::cos(from), 1e-3) << name << ' ' << k;
        }
        grids++;
    }
    EXPECT_EQ(grids, 13);
}

/// On maps that bend angles components go there and back; off the earth there are none.
TEST(GrdWinds, ComeBackOnMapsThatBendAngles) {
    for (const char* domain : {"or:40:0,40,0,41,41,4,4", "la:50:5,50,5,21,15,5,5", "mo:0:60,0,60,31,15,5,5"}) {
        GRD_report dir = made_grid(domain, [](int i, int j) { return (17 * i + 31 * j) % 360; });
        GRD_report speed = made_grid(domain, [](int, int) { return 10; });
        GRD_report u, v, back;
        ASSERT_EQ(call_math("uwndg", {&dir, &speed}, &u) + call_math("vwndg", {&dir, &speed}, &v), 2);
        ASSERT_EQ(call_math("ewdir", {&u, &v}, &back), 1);
        int placed = 0;
        for (std::size_t k = 0; k < GRD_points(&dir); ++k) {
            if (back.grid[k] == FMISS) continue;
            ASSERT_NEAR(std::remainder(back.grid[k] - dir.grid[k], 360.0), 0, 0.02) << domain << ' ' << k;
            placed++;
        }
        EXPECT_GT(placed, 300) << domain;
        EXPECT_EQ(u.grid[0] == FMISS, std::string(domain).starts_with("or")) << domain;
    }
}

}  // namespace
}  // namespace zav
