// Directions of winds on maps: against short ways placed by the projections, at random places.

#include <gtest/gtest.h>

#include <cmath>
#include <fstream>
#include <map>
#include <random>

#include "frame/zav.h"
#include "map/maptran.h"
#include "support/support.h"

namespace zav {
namespace {

constexpr double RADIANS = 3.14159265358979 / 180.0;

double angle(double a, double b) { return std::remainder(a - b, 360.0); }

/// Domain texts by name: every shipped region, and what they lack.
std::map<std::string, std::string> domains() {
    std::map<std::string, std::string> texts;
    for (const char* list : {"/share/zav/zav.reg", "/tests/data/more.reg"}) {
        std::ifstream file(test::source_dir() + list);
        std::string name, title, shown, text;
        while (file >> name >> title >> shown >> text) texts[name] = text;
    }
    return texts;
}

/// Map direction of a short way along `dir` about a place on the earth, degrees.
double direction_of_way(double lat, double lon, double dir) {
    constexpr double HALF = 0.02;
    const double north = HALF * std::cos(dir * RADIANS);
    const double east = HALF * std::sin(dir * RADIANS) / std::cos(lat * RADIANS);
    Point from, to;
    MAP_tran(static_cast<float>(lat - north), static_cast<float>(lon - east), &from.x, &from.y);
    MAP_tran(static_cast<float>(lat + north), static_cast<float>(lon + east), &to.x, &to.y);
    return std::atan2(to.x - from.x, to.y - from.y) / RADIANS;
}

/// Winds at one place of the map: drawn along their way, and read back; those of a grid on this map along its axes.
void check_winds(float x, float y, float lat, float lon, float dir) {
    const double way = direction_of_way(lat, lon, dir);
    EXPECT_NEAR(angle(MAP_dir_adj(dir, x, y), way), 0, 0.1) << lat << ' ' << lon << " along " << dir;
    const auto ahead = static_cast<float>(way * RADIANS);
    EXPECT_NEAR(angle(MAP_dir(x, y, x + std::sin(ahead), y + std::cos(ahead)), dir), 0, 0.1);
    for (const float side : {0.0F, 90.0F, 180.0F}) {
        const float wind = MAP_undir_adj(side, x, y);
        EXPECT_NEAR(angle(MAP_dir_adj(wind, x, y), side), 0, 2e-3) << x << ' ' << y;
        const auto to = static_cast<float>(wind * RADIANS);
        EXPECT_NEAR(angle(wind + MAP_uvdir_adj(std::sin(to), std::cos(to), x, y), side), 0, 2e-3);
    }
    const bool cylinder = MAP_get_proj() == PROJ_LATLON;  // components to east and north already
    EXPECT_EQ(cylinder ? MAP_undir_adj(dir, x, y) : dir, dir);
}

TEST(MaptranDir, PlacesComeBackAndWindsFollowTheirWays) {
    std::mt19937 random(7);
    std::uniform_real_distribution<float> part(-0.45F, 0.45F);
    std::uniform_real_distribution<float> any(0, 360);
    const auto all = domains();
    EXPECT_GT(all.size(), 100U);
    for (const auto& [name, text] : all) {
        SCOPED_TRACE(name);
        Domain d;
        ASSERT_EQ(DOM_decode(text, &d), 1);
        MAP_domain(&d);
        float xc, yc;
        MAP_tran_center(&xc, &yc);
        for (int i = 0; i < 50; ++i) {
            const float x = xc + (i == 0 ? 0 : part(random) * d.dx * static_cast<float>(d.nx - 1));
            const float y = yc + (i == 0 ? 0 : part(random) * d.dy * static_cast<float>(d.ny - 1));
            float lat = FMISS, lon = FMISS, x2 = 0, y2 = 0;
            MAP_untran(x, y, &lat, &lon);
            ASSERT_NE(lat, FMISS) << x << ' ' << y;
            MAP_tran(lat, lon, &x2, &y2);
            EXPECT_NEAR(std::hypot(x2 - x, y2 - y), 0, 1e-4);
            const double off = std::hypot(lat - d.clat, angle(lon, d.clon) * std::cos(lat * RADIANS));
            EXPECT_NEAR(i == 0 ? off : 0, 0, 1e-4);
            if (std::fabs(lat) < 89) check_winds(x, y, lat, lon, any(random));
        }
    }
}

TEST(MaptranDir, PolesAndPlacesOffTheMap) {
    const auto turned = [](const char* text, float x) {
        Domain d;
        DOM_decode(text, &d);
        MAP_domain(&d);
        return std::pair(MAP_dir_adj(10, x, x), MAP_undir_adj(10, x, x));
    };
    EXPECT_EQ(turned("ps:90:-105,90,0", 0), std::pair(115.0F, -95.0F));
    EXPECT_EQ(turned("ps:-90:20,-90,0", 0), std::pair(30.0F, -10.0F));
    EXPECT_EQ(turned("lc:90:20,50,0", 0), std::pair(10.0F, 10.0F));
    for (const char* text : {"or,0,0", "mo,0,0", "la,0,0", "sat,0,0"}) {
        EXPECT_EQ(turned(text, 300), std::pair(FMISS, FMISS)) << text;
        float x = 0, y = 0;
        MAP_offset(300, 300, 90, 100, &x, &y);
        EXPECT_EQ(x, FMISS) << text;
    }
}

}  // namespace
}  // namespace zav
