// The map background of whole pages: what is chosen by scale, place and pass, and map files that are wrong.

#include <gtest/gtest.h>

#include <filesystem>

#include <algorithm>
#include <cmath>

#include "e2e/program.h"
#include "support/support.h"

namespace zav::test {
namespace {

const std::string SAMPLE = test::source_dir() + "/samples/26011512_wave.grb2";
const std::string SHARE = test::source_dir() + "/share/zav/";
/// The map alone, with one contour line at the most.
const std::string MAP_ALONE =
    "-me warn -ft h24 -le 500 -va hght:gpm:ln:in=50000 -cocl off -dr map,bord,data -de p,x.ps ";

/// Lines of the map background on a page: all but the border.
std::size_t map_lines(const TempDir& dir, const std::string& options) {
    const Outcome outcome = run_program(dir.path(), MAP_ALONE + options + " " + SAMPLE);
    EXPECT_TRUE(outcome.status == 0 || outcome.err.starts_with("Data lie outside")) << options << outcome.err;
    EXPECT_TRUE(renders(dir.file("x.ps"))) << options;
    return read_page(dir.file("x.ps")).lines.size();
}

TEST(Map, ListsThatShipSuitThePlace) {
    const TempDir dir;
    const std::string here = "-pd lc,45,-97,61,45,0.9 ";
    const std::size_t usual = map_lines(dir, here);
    EXPECT_GT(usual, 50U);
    EXPECT_EQ(map_lines(dir, here + "-mf ''"), usual) << "an empty list takes the map that suits the place";
    EXPECT_EQ(map_lines(dir, here + "-mf zav.map"), usual);
    EXPECT_GT(map_lines(dir, here + "-mf fi:map.lst"), 50U) << "a map and lines of the sphere";
    const std::string far = "-pd lc,45,10,61,45,0.9 ";
    EXPECT_EQ(map_lines(dir, far), map_lines(dir, far + "-mf cont.map,lake.map,country.map,state.map"));
}

TEST(Map, NoStrokeRunsAcrossThePage) {
    for (const char* domain :
         {"ps:90:0,90,0,61,61,2.4", "ps:-90:180,-90,0,61,61,2.4", "ll,0,0,361,181,1", "ll:0:180,0,180,361,181,1",
          "me:0:180,0,180,181,151,2.2", "or:0:180,0,180,61,61,2.2", "or:60:10,60,10,61,61,2",
          "mo:0:180,0,180,181,91,1.5", "la:90:0,90,0,121,121,2", "sat:0:180,0,180,121,121,1.1"}) {
        const TempDir dir;
        EXPECT_GT(map_lines(dir, std::string("-pd ") + domain), 20U) << domain;
        double longest = 0.0;
        for (const PagePath& line : read_page(dir.file("x.ps")).lines) {
            if (line.size() == 5) continue;  // the border
            for (std::size_t i = 1; i < line.size(); i++) {
                longest = std::max(longest, std::hypot(line[i].x - line[i - 1].x, line[i].y - line[i - 1].y));
            }
        }
        EXPECT_LT(longest, 60.0) << domain;
    }
}

TEST(Map, WrongFilesLeaveTheRestOfThePage) {
    const TempDir dir;
    const std::string good = read_file(SHARE + "cont.map");
    ASSERT_GT(good.size(), 10000U);
    dir.write("empty.map", "");
    dir.write("text.map", "A map of the world, some day.\n");
    dir.write("cut.map", good.substr(0, 5003));
    std::string lies = good.substr(0, 400);
    lies[0] = lies[1] = static_cast<char>(0xFF);
    dir.write("lies.map", lies);
    std::string wild = good.substr(0, 4000);
    for (std::size_t i = 22; i < wild.size(); i++) wild[i] = static_cast<char>(i * 83);
    dir.write("wild.map", wild);
    std::string packed = read_file(SHARE + "cont_110m.map").substr(0, 9001);
    dir.write("packed.map", packed);
    for (std::size_t i = 40; i < packed.size(); i += 7) packed[i] = static_cast<char>(i * 83);
    dir.write("wildpack.map", packed);
    dir.write("units.map", packed.replace(8, 4, 4, '\0'));
    dir.write("text2.map", "3 1 1 1 1 0\n1e38 nan\n-400 9999 x\n-5 1 1 1 1 0\n");
    dir.write("self.lst", "fi:" + dir.file("self.lst") + "\n" + dir.file("self.lst") + "\n");
    dir.write("odd.lst",
              "[ [1 [a,b,c [9,8,7,6,5,4 >:: <<<< lalo lalo=0 lalo=-5:x lalo=1e-9 im: mf:absent rf: + - s+\n");
    for (const char* name :
         {"absent.map", "empty.map", "text.map", "cut.map", "lies.map", "wild.map", "text2.map", "packed.map",
          "wildpack.map", "units.map", "fi:self.lst", "fi:odd.lst", "fi:absent.lst", "fi:", ",,,", "mf:self.lst"}) {
        std::string item = name;
        const std::size_t prefix = item.find(':') == std::string::npos ? 0 : item.find(':') + 1;
        if (item.size() > prefix && item[0] != ',') item = item.substr(0, prefix) + dir.file(item.substr(prefix));
        const Outcome outcome = run_program(
            dir.path(), "-me warn -ft h24 -le 500 -va hght:gpm:ln:in=60 -mf '" + item + "' -de p,x.ps " + SAMPLE);
        EXPECT_EQ(outcome.status, outcome.err.empty() ? 0 : 20) << name << outcome.err;
        EXPECT_TRUE(renders(dir.file("x.ps"))) << name;
        EXPECT_GT(segments_of(read_page(dir.file("x.ps"))).size(), 300U) << name;
    }
}

TEST(Map, ARegionSetAtAPromptHoldsForTheNextPlot) {
    const TempDir dir;
    const std::string first = "h24\n500\nhght\nset region=";
    const auto run = [&](const std::string& region, const std::string& page) {
        return run_program(dir.path(), "-pl ln -de p," + page + " " + SAMPLE,
                           first + region + "\n60\nhght\n60\n0\n0\n0\n");
    };
    const Outcome known = run("us", "x.ps");
    EXPECT_EQ(known.status, 0) << known.err;
    run_program(dir.path(), "-me warn -ft h24 -le 500 -va hght -pl ln -in 60 -re us -de p,us.ps " + SAMPLE);
    EXPECT_TRUE(page_without_date(dir.file("x.ps")) == page_without_date(dir.file("us.ps")));
    const Outcome unknown = run("usx", "y.ps");
    EXPECT_EQ(unknown.status, 24);
    EXPECT_NE(unknown.err.find("Unknown region or faulty domain in \"region\": usx\n"), std::string::npos);
    EXPECT_EQ(read_page(dir.file("y.ps")).pages, 1) << "the page before it stays";
}

}  // namespace
}  // namespace zav::test
