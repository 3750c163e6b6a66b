// The map background as data: what is drawn, and where.

#include "plot/background/map.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "map/maptran.h"
#include "plot/background/map_state.h"
#include "plot/meta_plot.h"

namespace zav {
namespace {

class MapBackground : public test::MetaPlot {
  protected:
    void TearDown() override {
        map_background = {};
        RES_put("map_file", "");
    }
    test::Drawn draw_map(const std::string& domain, const std::string& list, int passes = MAP_PASS_PLAIN) {
        RES_put("map_file", list);
        return plot(domain, [passes] { MAP_draw(passes); });
    }
};

using Degrees = std::vector<std::pair<float, float>>;  ///< latitude, longitude

/// A record of a map file in the binary form, whose limits say nothing true.
std::string record(const Degrees& points) {
    std::string bytes;
    const auto put = [&bytes](std::uint32_t value, int count) {
        for (int i = count - 1; i >= 0; --i) bytes += static_cast<char>(value >> (8 * i));
    };
    put(static_cast<std::uint32_t>(points.size()), 2);
    for (int i = 0; i < 5; ++i) put(0, 4);
    for (const auto& [lat, lon] : points) {
        put(std::bit_cast<std::uint32_t>(lat), 4);
        put(std::bit_cast<std::uint32_t>(lon), 4);
    }
    return bytes;
}

TEST_F(MapBackground, CoastsLieWhereTheProjectionPutsThem) {
    Degrees coast;
    for (int i = 0; i < 1500; ++i) coast.emplace_back(10.0F + 0.02F * i, -120.0F + 30.0F * std::sin(0.01F * i));
    const Degrees island{{1, -60}, {2, -59.5F}, {0.5F, -59}};
    std::string text = "1500 0 0 0 0 0\n";
    for (const auto& [lat, lon] : coast) text += std::to_string(lat) + " " + std::to_string(lon) + "\n";
    dir.write("text.map",
              text + "3 90 -90 180 -180 7\n1 -60 2 -59.5\n0.5 -59\n0 0 0 0 0 0\n3 0 0 0 0 0\n1 1 2 2 3 3\n");
    dir.write("binary.map", record(coast) + record(island) + record({}) + record(island));
    for (const char* domain : {"lc:25:-95:25,25,-95,61,45,2.4", "ps:90:-100,45,-100,61,45,3", "me:0:-90,20,-90,61,45,2",
                               "ll:0:-90,20,-90,121,81,1", "or:20:-90,20,-90,61,61,2", "mo:0:-90,20,-90,61,45,2"}) {
        for (const char* file : {"text.map", "binary.map"}) {
            const test::Drawn drawn = draw_map(domain, dir.file(file) + ":Green");
            ASSERT_EQ(drawn.paths.size(), 2U) << domain << file;
            for (const test::Drawn_mark& path : drawn.paths) {
                const Degrees& want = path.pts.size() == island.size() ? island : coast;
                EXPECT_EQ(path.number("PL_CLR"), CLR_get_ind("green"));
                EXPECT_FALSE(path.filled);
                ASSERT_EQ(path.pts.size(), want.size()) << domain << file;
                for (std::size_t i = 0; i < want.size(); ++i) {
                    float x = 0;
                    float y = 0;
                    MAP_tran(want[i].first, want[i].second, &x, &y);
                    ASSERT_NEAR(path.pts[i].x, x, 1e-3) << domain << i;
                    ASSERT_NEAR(path.pts[i].y, y, 1e-3) << domain << i;
                }
            }
        }
    }
}

/// A line twice round the earth leaves the map at one edge and comes in at the other.
TEST_F(MapBackground, LinesGoOnAtTheOtherEdge) {
    Degrees round;
    for (int lon = -360; lon <= 360; lon += 5) round.emplace_back(20.0F, std::remainder(lon + 1.0F, 360.0F));
    dir.write("round.map", record(round));
    const std::map<std::string, double> widths{{"ll:0:30,0,30,361,181,1", 360.0},
                                               {"me:0:30,0,30,181,91,2.2", 400.31555892808814},
                                               {"mo:0:30,0,30,181,91,1.5", 0.0}};
    for (const auto& [domain, width] : widths) {
        const test::Drawn drawn = draw_map(domain, dir.file("round.map"));
        double length = 0.0;
        for (const test::Drawn_mark& path : drawn.paths) {
            for (std::size_t i = 1; i < path.pts.size(); ++i) {
                const double step = path.pts[i].x - path.pts[i - 1].x;
                EXPECT_GT(step, 0.0) << domain;
                EXPECT_LT(step, 7.0) << domain;
                length += step;
            }
        }
        EXPECT_EQ(drawn.paths.size(), 3U) << domain;
        EXPECT_TRUE(width == 0.0 || std::fabs(length - 2 * width) < 1e-2) << domain << ' ' << length;
    }
    // On a disc the points behind the limb are left out.
    const test::Drawn disc = draw_map("or:0:30,0,30,61,61,2", dir.file("round.map"));
    ASSERT_FALSE(disc.paths.empty());
    for (const test::Drawn_mark& path : disc.paths) {
        for (const Gpt& pt : path.pts) EXPECT_LT(std::hypot(pt.x, pt.y), 63.8);
    }
}

struct Choice {
    const char* item;
    int passes;
    bool drawn;
};

/// On a map 40 units high about 45 N 97 W. Items of one list, in their order.
TEST_F(MapBackground, ItemsAreChosen) {
    dir.write("a.map", record({{44, -98}, {46, -96}}));
    const std::string file = dir.file("a.map");
    const std::vector<std::vector<Choice>> lists{
        {{"#", 4, true}, {"#", 3, false}, {"-#", 1, true}, {"-#", 6, false}, {"+#", 2, true}, {"+#", 5, false}},
        {{">39:#", 4, true}, {">41:#", 4, false}, {"s+39:#", 4, true}, {"s+41:#", 4, false}},
        {{"<41:#", 4, true}, {"<39:#", 4, false}, {"s-41:#", 4, true}, {"s-39:#", 4, false}},
        {{">39<41:#", 4, true}, {">30<39:#", 4, false}, {"<41>39:#", 4, true}, {"<50>41:#", 4, false}},
        {{"s+39:s-41:#", 4, true}, {"s+30:s-39:#", 4, false}, {"s-41:s+39:#", 4, true}, {"s-50:s+41:#", 4, false}},
        // the block that holds ends at the next "["; a bare one holds if none did
        {{"[50,40,-90,-100", 4, false},
         {"#", 4, true},
         {"[", 4, false},
         {"#", 4, false},
         {"[", 4, false},
         {"#", 4, true}},
        {{"[50,46,-90,-100", 4, false},
         {"#", 4, false},
         {"[40,50,-96,-90", 4, false},
         {"#", 4, false},
         {"[", 4, false},
         {"#", 4, true}},
        {{"[40,50,-100,-90,41", 4, false}, {"#", 4, true}},
        {{"[40,50,-100,-90,39", 4, false}, {"#", 4, false}},
        // blocks hold in every pass
        {{"[0,10,0,10", 2, false}, {"+#", 2, false}, {"[40,50,-100,-90", 2, false}, {"+#", 2, true}},
    };
    for (std::size_t n = 0; n < lists.size(); ++n) {
        plot("lc:45:-97:45,45,-97,61,41,1", [&] {
            map_background.reg_found = 1;
            for (const Choice& c : lists[n]) {
                std::string item = c.item;
                if (const std::size_t at = item.find('#'); at != std::string::npos) item.replace(at, 1, file);
                map_background.over = c.passes;
                EXPECT_EQ(MAP_process(item), c.drawn ? 0 : -1) << n << ' ' << c.item << ' ' << c.passes;
            }
        });
    }
}

struct Lines_case {
    const char* item;
    float dlat, dlon;
    const char* color;
};

/// On a map of the world all lines begin at an edge, and are labelled there.
TEST_F(MapBackground, LinesOfTheWorldAreSpacedAndLabelled) {
    for (const Lines_case& c : {Lines_case{"lalo:30:60:Blue", 30, 60, "blue"},
                                Lines_case{"lalo:45::Blue", 45, 45, "blue"}, Lines_case{"lalo:::Blue", 5, 5, "blue"},
                                Lines_case{"lalo::20:Red", 5, 20, "red"}, Lines_case{"lalo=20", 20, 20, "magenta"}}) {
        const test::Drawn drawn = draw_map("ll,0,0,73,37,5,5", c.item);
        std::set<float> lats;
        std::set<float> lons;
        for (const test::Drawn_mark& path : drawn.paths) {
            const Gpt& a = path.pts.front();
            const Gpt& b = path.pts.back();
            EXPECT_EQ(path.number("PL_CLR"), CLR_get_ind(c.color)) << c.item;
            if (a.y == b.y) lats.insert(a.y);
            if (a.x == b.x) lons.insert(a.x);
        }
        std::map<std::string, Gpt> labels;
        for (const test::Drawn_mark& text : drawn.texts) labels[text.str] = text.pts[0];
        for (float lat = 0; lat < 90; lat += c.dlat) {
            const std::string number = std::to_string(std::lround(lat));
            for (const float side : {1.0F, -1.0F}) {
                EXPECT_EQ(lats.count(side * lat), 1U) << c.item << lat;
                const std::string name = lat == 0.0F ? "EQ" : number + (side > 0 ? "N" : "S");
                ASSERT_EQ(labels.count(name), 1U) << c.item << name;
                EXPECT_NEAR(labels[name].x, -180 + 3.6, 1e-3) << name;
                EXPECT_NEAR(labels[name].y, side * lat, 1e-3) << name;
            }
        }
        EXPECT_EQ(lats.size(), 2 * static_cast<std::size_t>(std::ceil(90 / c.dlat)) - 1) << c.item;
        for (float lon = 0; lon < 180; lon += c.dlon) {
            const std::string number = std::to_string(std::lround(lon));
            for (const float side : {1.0F, -1.0F}) {
                EXPECT_EQ(lons.count(side * lon), 1U) << c.item << lon;
                const std::string name = lon == 0.0F ? "PM" : number + (side > 0 ? "E" : "W");
                ASSERT_EQ(labels.count(name), 1U) << c.item << name;
                EXPECT_NEAR(labels[name].x, side * lon, 1e-3) << name;
                EXPECT_NEAR(labels[name].y, -90 + 3.6, 1e-3) << name;
            }
        }
    }
    EXPECT_TRUE(draw_map("ll,0,0,73,37,5,5", "lalo:30:60:off").paths.empty());
}

/// Meridians stop short of the pole where they meet there, at a parallel of the lattice.
TEST_F(MapBackground, MeridiansEndAtTheLastParallel) {
    const std::map<std::string, float> ends{
        {"ps:90:-100,90,-100,61,61,2", 80}, {"lc:45:-100:45,80,-100,61,61,1", 80}, {"or:60:0,60,0,61,61,2", 90}};
    for (const auto& [domain, end] : ends) {
        float north = 0;
        for (const test::Drawn_mark& path : draw_map(domain, "lalo:20:40").paths) {
            for (const Gpt& pt : path.pts) {
                float lat = 0;
                float lon = 0;
                MAP_untran(pt.x, pt.y, &lat, &lon);
                north = std::max(north, lat);
            }
        }
        EXPECT_NEAR(north, end, 0.05) << domain;
    }
}

TEST_F(MapBackground, PatternsMakeAreas) {
    dir.write("a.map", record({{44, -98}, {46, -96}, {44, -96}, {44, -98}}));
    const test::Drawn drawn = draw_map("lc:45:-97:45,45,-97,61,41,1", dir.file("a.map") + ":Red:fi=hat");
    ASSERT_EQ(drawn.paths.size(), 1U);
    EXPECT_TRUE(drawn.paths[0].filled);
    EXPECT_EQ(drawn.paths[0].number("FA_CLR"), CLR_get_ind("red"));
    EXPECT_EQ(drawn.paths[0].number("FA_ST"), 9);
}

}  // namespace
}  // namespace zav
