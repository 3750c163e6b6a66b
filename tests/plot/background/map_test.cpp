// The map background as data: what is drawn, and where.

#include "plot/background/map.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "frame/string.h"
#include "map/maptran.h"
#include "plot/background/map_levels.h"
#include "plot/background/map_state.h"
#include "plot/meta_plot.h"
#include "plot/page/plt_paper.h"
#include "plot/page/plt_tool.h"
#include "support/table.h"

namespace zav {
namespace {

class MapBackground : public test::MetaPlot {
  protected:
    void TearDown() override {
        map_background = {};
        RES_put("map_file", "");
        RES_put("color_text", "");
        PLT_set_letter(false);
    }
    const char* rim = "none";  ///< colour of the earth's edge
    test::Drawn draw_map(const std::string& domain, const std::string& list, int passes = MAP_PASS_PLAIN) {
        RES_put("map_file", list);
        RES_put("color_text", rim);
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
    PLT_set_letter(true);
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
                EXPECT_TRUE(step > 0.0 && step < 7.0) << domain << ' ' << step;
                length += step;
            }
        }
        ASSERT_EQ(drawn.paths.size(), 3U) << domain;
        const double of_ellipse = 254.852 * std::sqrt(1.0 - std::pow(drawn.paths[0].pts[0].y / 63.713, 2));
        EXPECT_NEAR(length, 2 * (width > 0.0 ? width : of_ellipse), 1e-2) << domain;
    }
    // A window wider than the earth shows what comes round again.
    dir.write("line.map", record({{10, 100}, {10, 110}}));
    const test::Drawn twice = draw_map("ll,0,0,109,37,5,5", dir.file("line.map"));
    ASSERT_EQ(twice.paths.size(), 2U);
    EXPECT_NEAR(twice.paths[1].pts[0].x, twice.paths[0].pts[0].x - 360, 1e-3);
    // On a disc the points behind the limb are left out.
    const test::Drawn disc = draw_map("or:0:30,0,30,61,61,2", dir.file("round.map"));
    ASSERT_FALSE(disc.paths.empty());
    for (const test::Drawn_mark& path : disc.paths) {
        for (const Gpt& pt : path.pts) EXPECT_LT(std::hypot(pt.x, pt.y), 63.8);
    }
    rim = "1";
    for (const char* domain : {"or:90:30,90,30,67,67,2", "or:-10:30,-10,30,67,67,2"}) {
        const test::Drawn edge = draw_map(domain, "");
        for (const Gpt& pt : edge.paths.back().pts) EXPECT_NEAR(std::hypot(pt.x, pt.y), 63.7, 0.1) << domain;
    }
}

TEST_F(MapBackground, ItemsAreChosen) {
    dir.write("a.map", record({{44, -98}, {46, -96}}));
    plot("lc:45:-97:45,45,-97,61,41,1", [this] {
        std::string list;
        for (const auto& row : test::data_cells("plot/map_items.tsv")) {
            if (list != row[0]) map_background.reg_found = 1;
            list = row[0];
            std::string item = row[1];
            if (const std::size_t at = item.find('#'); at != std::string::npos) item.replace(at, 1, dir.file("a.map"));
            map_background.over = std::stoi(row[2]);
            EXPECT_EQ(MAP_process(item), row[3] == "drawn" ? 0 : -1) << list << ' ' << row[1] << ' ' << row[2];
        }
    });
}

/// On a map of the world all lines are labelled at their begin.
TEST_F(MapBackground, LinesOfTheWorldAreLabelled) {
    struct Case {
        const char* item;
        int dlat, dlon;
        const char* color;
    };
    for (const Case& c :
         {Case{"lalo:30:60:Blue", 30, 60, "blue"}, Case{"lalo:45::Blue", 45, 45, "blue"},
          Case{"lalo:::Blue", 5, 5, "blue"}, Case{"lalo::20:Red", 5, 20, "red"}, Case{"lalo=20", 20, 20, "magenta"}}) {
        std::set<std::string> want{"EQ@-176.4,0", "PM@0,-86.4"};
        for (int lat = c.dlat; lat < 90; lat += c.dlat) {
            want.insert(text_format("%dN@-176.4,%d", lat, lat));
            want.insert(text_format("%dS@-176.4,%d", lat, -lat));
        }
        for (int lon = c.dlon; lon <= 180; lon += c.dlon) {
            want.insert(lon == 180 ? "DL@180,-86.4" : text_format("%dE@%d,-86.4", lon, lon));
            if (lon < 180) want.insert(text_format("%dW@%d,-86.4", lon, -lon));
        }
        const test::Drawn drawn = draw_map("ll,0,0,73,37,5,5", c.item);
        std::set<std::string> labels;
        for (const auto& t : drawn.texts)
            labels.insert(text_format("%s@%.4g,%.4g", t.str.c_str(), t.pts[0].x, t.pts[0].y));
        EXPECT_EQ(labels, want) << c.item;
        EXPECT_EQ(drawn.texts.size(), want.size()) << c.item;
        for (const test::Drawn_mark& path : drawn.paths) EXPECT_EQ(path.number("PL_CLR"), CLR_get_ind(c.color));
    }
    EXPECT_TRUE(draw_map("ll,0,0,73,37,5,5", "lalo:30:60:off").paths.empty());
}

TEST_F(MapBackground, GraphsHaveNumbersAtTheirAxes) {
    for (const auto& row : test::data_cells("plot/graphs.tsv")) {
        const test::Drawn drawn = draw_map(row[0], row[1]);
        std::string got = std::to_string(drawn.paths.size()) + " lines";
        for (const auto& t : drawn.texts) got += text_format(" %s@%.3g,%.3g", t.str.c_str(), t.pts[0].x, t.pts[0].y);
        EXPECT_EQ(got, row[2]) << row[0];
    }
}

/// All steps of the lattice that lie in the window, and none else, in whole strokes; meridians that meet at a pole end
/// before it.
TEST_F(MapBackground, LinesFollowTheLattice) {
    const std::map<std::string, float> ends{{"ps:90:-100,90,-100,61,61,2", 80},
                                            {"lc:45:-101:45,80,-101,61,61,1", 80},
                                            {"or:60:0,60,0,61,61,2", 80},
                                            {"la:0:-101,0,-101,141,141,2", 80}};
    for (const auto& [domain, end] : ends) {
        const test::Drawn drawn = draw_map(domain, "lalo:20:40");
        std::vector<std::pair<Gpt, Gpt>> drawn_steps;
        for (const test::Drawn_mark& path : drawn.paths) {
            for (std::size_t i = 1; i < path.pts.size(); ++i) drawn_steps.emplace_back(path.pts[i - 1], path.pts[i]);
        }
        std::vector<std::pair<EarthPoint, EarthPoint>> steps;
        for (float lon = -180; lon < 180; lon += 2.5F) {
            for (float lat = -80; lat <= 80; lat += 20) steps.push_back({{lat, lon}, {lat, lon + 2.5F}});
        }
        for (float lon = -160; lon <= 160; lon += 40) {
            for (float lat = -end; lat < end; lat += 2.5F) steps.push_back({{lat, lon}, {lat + 2.5F, lon}});
        }
        std::size_t found = 0;
        for (const auto& [from, to] : steps) {
            Point a;
            Point b;
            if (!map_place(from.lat, from.lon, a) || !map_place(to.lat, to.lon, b)) continue;
            const auto is_step = [&a, &b](const std::pair<Gpt, Gpt>& step) {
                return std::hypot(step.first.x - a.x, step.first.y - a.y) < 1e-3 &&
                       std::hypot(step.second.x - b.x, step.second.y - b.y) < 1e-3;
            };
            const double length = std::hypot(b.x - a.x, b.y - a.y);
            const bool inside = MAP_in_domain(a.x, a.y) && MAP_in_domain(b.x, b.y) && length < 20;
            const auto count = std::count_if(drawn_steps.begin(), drawn_steps.end(), is_step);
            EXPECT_TRUE(count == 1 || (count == 0 && !inside)) << domain << ' ' << from.lat << ' ' << from.lon;
            EXPECT_TRUE(count == 0 || length < 60) << domain << ' ' << from.lat << ' ' << from.lon;
            found += static_cast<std::size_t>(count);
        }
        EXPECT_GT(found, 100U) << domain;
        EXPECT_EQ(found, drawn_steps.size()) << domain;
        EXPECT_LT(drawn.paths.size(), 40U) << domain;
    }
}

/// A window wider than the earth has each line as often as it shows it, in steps no longer than elsewhere.
TEST_F(MapBackground, LinesComeRoundAgain) {
    std::set<float> meridians;
    std::set<float> parallels;
    for (const test::Drawn_mark& path : draw_map("ll,0,0,109,37,5,5", "lalo:30:60").paths) {
        for (std::size_t i = 1; i < path.pts.size(); ++i) {
            const Gpt step{path.pts[i].x - path.pts[i - 1].x, path.pts[i].y - path.pts[i - 1].y};
            EXPECT_NEAR(step.x * step.y, 0, 1e-3) << path.pts[i].x << ' ' << path.pts[i].y;
            if (std::fabs(step.x) < 1e-3) meridians.insert(std::round(path.pts[i].x * 100) / 100);
            if (std::fabs(step.y) < 1e-3) parallels.insert(std::round(path.pts[i].x * 100) / 100);
        }
    }
    EXPECT_EQ(meridians, (std::set<float>{-240, -180, -120, -60, 0, 60, 120, 180, 240}));
    EXPECT_LE(*parallels.begin(), -267.5F);
    EXPECT_GE(*parallels.rbegin(), 267.5F);
}

/// A record is drawn if any of its points is in the window, whichever it begins with.
TEST_F(MapBackground, RecordsThatReachIntoTheWindow) {
    for (const auto& [lat, lon] : Degrees{{45, -140}, {45, -60}, {85, -97}, {5, -97}, {70, -130}, {10, -60}}) {
        Degrees line;
        for (int k = 0; k <= 40; ++k) {
            line.emplace_back(45 + (lat - 45) * static_cast<float>(k) / 40,
                              -97 + (lon + 97) * static_cast<float>(k) / 40);
        }
        for (int way = 0; way < 2; ++way) {
            dir.write("ray.map", record(line));
            EXPECT_EQ(draw_map("ll,45,-97,21,11,1,1", dir.file("ray.map")).paths.size(), 1U) << lat << ' ' << lon;
            std::reverse(line.begin(), line.end());
        }
    }
}

/// Plus marks at multiples of 20 degrees, and labels along the lines.
TEST_F(MapBackground, MarksAndLabelsInside) {
    RES_put("map_file", "[");
    const test::Drawn drawn = plot("ll,0,0,73,37,5,5", [] {
        MAP_latlon(30, 40, 20, 40);
        MAP_draw(MAP_PASS_PLAIN);
    });
    int arms = 0;
    for (const test::Drawn_mark& path : drawn.paths) {
        const float dx = path.pts[1].x - path.pts[0].x;
        const float dy = path.pts[1].y - path.pts[0].y;
        if (std::fabs(std::hypot(dx, dy) - 0.2) > 1e-3) continue;
        arms++;
        EXPECT_NEAR(std::remainder(path.pts[0].x + dx / 2, 20), 0, 1e-3);
        EXPECT_NEAR(std::remainder(path.pts[0].y + dy / 2, 20), 0, 1e-3);
    }
    EXPECT_EQ(arms, 7 * (2 * 18 - 1));  // from 60 S to 60 N and 160 W to 180 E, where one arm would cross the edge
    std::map<std::string, std::string> places;
    for (const test::Drawn_mark& text : drawn.texts) {
        places[text.str] += text_format("%g,%g ", text.pts[0].x, text.pts[0].y);
    }
    EXPECT_EQ(places["30N"], "-176.4,30 -180,30 -140,30 -100,30 -60,30 -20,30 20,30 60,30 100,30 140,30 180,30 ");
    EXPECT_EQ(places["40E"], "40,-86.4 40,-65 40,-25 40,15 40,55 ");
}

TEST_F(MapBackground, LinesGoOnAcrossRecords) {
    const std::string from_end = record({{46, -96}, {46, -92}});
    dir.write("a.map", record({{44, -98}, {46, -96}}) + from_end + from_end);
    const test::Drawn drawn = draw_map("lc:45:-97:45,45,-97,61,41,1", dir.file("a.map"));
    ASSERT_EQ(drawn.paths.size(), 2U);
    EXPECT_EQ(drawn.paths[0].pts.size(), 3U);
    PLT_set_letter(true);
    EXPECT_EQ(draw_map("lc:45:-97:45,45,-97,61,41,1", dir.file("a.map")).paths.size(), 3U);
}

TEST_F(MapBackground, PatternsMakeAreas) {
    dir.write("a.map", record({{44, -98}, {46, -96}, {44, -96}, {44, -98}}));
    const test::Drawn drawn = draw_map("lc:45:-97:45,45,-97,61,41,1", dir.file("a.map") + ":Red:fi=hat");
    ASSERT_EQ(drawn.paths.size(), 1U);
    EXPECT_TRUE(drawn.paths[0].filled);
    EXPECT_EQ(drawn.paths[0].number("FA_CLR"), CLR_get_ind("red"));
    EXPECT_EQ(drawn.paths[0].number("FA_ST"), 9);
}

TEST_F(MapBackground, LevelsSuitTheScale) {
    dir.write("own.map", record({{44, -98}, {46, -96}}));
    const std::string shipped = test::source_dir() + "/share/zav/";
    const std::map<std::string, std::string> wanted{
        {"ll,0,0,73,37,5,5", "cont_110m.map -"},
        {"ll:0:0:0,0,180,73,37,5,5", "cont_110m.map -"},
        {"lc:90:-100:30:60:1,46,-100,57,41,1.6", "cont.map -"},
        {"lc:90:10:40:60:1,51,10,41,31,1", "cont.map -"},
        {"me,52,5,41,31,0.8", "cont_10m.map state_10m.map"},
        {"ps:-90:170:-60,-42,172,41,31,0.4", "cont_10m.map state_10m.map"},
        {"ll,18.2,-66.3,31,21,0.1", "cont_1m.map state_1m.map"},
        {"lc,60,6,31,21,0.1", "cont_1m.map state_1m.map"},
    };
    for (const auto& [domain, files] : wanted) {
        plot(domain, [&, &files = files, &domain = domain] {
            const auto level = [&](const char* name) {
                const std::vector<std::string> found = map_levels(shipped + name);
                return found.empty() ? "-" : found[0].substr(shipped.size());
            };
            EXPECT_EQ(level("cont.map") + " " + level("state.map"), files) << domain << ' ' << map_scale();
            EXPECT_EQ(map_levels(dir.file("own.map")), std::vector{dir.file("own.map")});
            PLT_set_letter(true);
            EXPECT_EQ(map_levels(shipped + "cont.map"), std::vector{shipped + "cont.map"});
            PLT_set_letter(false);
        });
    }
    // 40 steps of 200 km, true to scale in the middle.
    plot("ps:90:-100:60,60,-100,61,41,2.0", [] {
        const Glim view = PLT_paper_view();
        EXPECT_NEAR(map_scale() * (view.y_max - view.y_min), 8000.0F, 80.0F);
    });
}

/// Points keep apart on paper, whatever the map; no ring is a speck, and lines are few where a continent is shown.
TEST_F(MapBackground, NothingIsFinerThanPaper) {
    for (const char* domain : {"ll,0,0,73,37,5,5", "lc:90:-126:48:56:1,52,-126,41,31,0.4", "me,18.2,-66.3,31,21,0.1",
                               "lc:90:-100:30:60:1,46,-100,57,41,1.6", "or:60:10,60,10,61,61,2"}) {
        Gpt mm{};
        RES_put("map_file", "");
        const test::Drawn drawn = plot(domain, [&mm] {
            MAP_draw(MAP_PASS_PLAIN);
            mm = PLT_paper_scale();
        });
        EXPECT_GT(drawn.paths.size(), 10U) << domain;
        EXPECT_LT(drawn.paths.size(), 2000U) << domain;
        for (const test::Drawn_mark& path : drawn.paths) {
            float reach = 0.0F;
            for (std::size_t i = 1; i < path.pts.size(); ++i) {
                const Gpt& a = path.pts[i - 1];
                const Gpt& b = path.pts[i];
                reach = std::max({reach, std::fabs(b.x - path.pts[0].x) * mm.x, std::fabs(b.y - path.pts[0].y) * mm.y});
                if (i + 1 == path.pts.size()) continue;
                EXPECT_GT(std::hypot((b.x - a.x) * mm.x, (b.y - a.y) * mm.y), 0.149) << domain;
            }
            const bool closed = path.pts[0].x == path.pts.back().x && path.pts[0].y == path.pts.back().y;
            EXPECT_TRUE(!closed || reach > 0.16F) << domain;
        }
    }
}

bool is_inside(const std::vector<Gpt>& ring, float x, float y) {
    bool inside = false;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const Gpt& a = ring[i == 0 ? ring.size() - 1 : i - 1];
        const Gpt& b = ring[i];
        if ((a.y > y) != (b.y > y) && x < a.x + (y - a.y) / (b.y - a.y) * (b.x - a.x)) inside = !inside;
    }
    return inside;
}

/// Land is filled and water isn't, across the date line, at the poles, behind limbs and at every scale.
TEST_F(MapBackground, LandIsFilled) {
    const auto places = test::data_cells("plot/land_places.tsv");
    for (const char* domain :
         {"ll,0,0,73,37,5,5", "ll,0,180,73,37,5,5", "me,0,180,101,57,3.9", "ps:90:-100:60,90,-100,61,61,2.6",
          "ps:-90:0:-60,-90,0,61,61,1.6", "lc:90:-100:30:60:1,46,-100,57,41,1.6", "or:40:-140,40,-140,65,65,2",
          "mo:0:20,0,20,145,73,2.5", "mo:0:180,0,180,145,73,2.5", "sat:0:10,0,10,65,65,2", "la:90:0,90,0,121,121,2",
          "lc:90:20:40:60:1,51,20,57,41,0.6", "me,18.2,-66.3,31,21,0.1", "lc:90:180:60:70:1,67.5,180,31,21,0.1"}) {
        const test::Drawn drawn = draw_map(domain, "land.map:Red:fi=sol");
        ASSERT_FALSE(drawn.paths.empty()) << domain;
        int seen = 0;
        for (const auto& row : places) {
            Point at;
            if (!map_place(std::stof(row[1]), std::stof(row[2]), at) || MAP_in_domain(at.x, at.y) == 0) continue;
            const auto covers = [&at](const test::Drawn_mark& p) { return p.filled && is_inside(p.pts, at.x, at.y); };
            const bool land = std::any_of(drawn.paths.begin(), drawn.paths.end(), covers);
            EXPECT_EQ(land, row[3] == "land") << domain << ' ' << row[0];
            seen++;
        }
        EXPECT_GT(seen, 0) << domain;
    }
    // On an equal-area map the land, but for its lakes, has its share of the earth: 29 per cent.
    const test::Drawn world = draw_map("mo:0:20,0,20,145,73,2.5", "land.map:Red:fi=sol");
    int all = 0;
    int land = 0;
    for (float x = -126.0F; x < 127.0F; x += 2.5F) {
        for (float y = -63.0F; y < 64.0F; y += 2.5F) {
            if (std::hypot(x / 127.426F, y / 63.713F) > 1.0F) continue;
            all++;
            land += std::any_of(world.paths.begin(), world.paths.end(),
                                [x, y](const test::Drawn_mark& path) { return is_inside(path.pts, x, y); });
        }
    }
    EXPECT_NEAR(static_cast<double>(land) / all, 0.287, 0.01);
}

}  // namespace
}  // namespace zav
