// Domain texts, region files and their menu.
#include <gtest/gtest.h>

#include <cstdio>
#include <sstream>

#include "frame/flag.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "map/region.h"
#include "support/support.h"

namespace zav {
namespace {

class Region : public test::TempDirTest {
  protected:
    void SetUp() override {
        FLAG_reset(MISS);
        DOM_set_prompt_region(1);
        RES_put("file_path", dir.path().string());
        for (const char* name : {"plot_domain", "region", "grid_domain", "stat_prior"}) RES_put(name, "");
    }
};

/// The fields of a domain that a text decodes into, with its result.
std::string decoded(const std::string& text) {
    Domain domain;
    int result = 0;
    test::capture([&] { result = DOM_decode(text, &domain); });
    char line[200];
    std::snprintf(line, sizeof line, "%d: %d %g %g c %g %g n %d %d d %g %g", result, domain.proj, domain.plat,
                  domain.plon, domain.clat, domain.clon, domain.nx, domain.ny, domain.dx, domain.dy);
    return line;
}

TEST_F(Region, TextsDecodeByTheFirstPatternThatFits) {
    struct {
        const char* text;
        const char* want;
    } const cases[] = {
        {"ps,-90,40,-100,30,20,1,2", "1: 1 -9999 -90 c 40 -100 n 30 20 d 1 2"},
        {"ll,40,-100,30,20,1,2", "1: 2 -9999 -9999 c 40 -100 n 30 20 d 1 2"},
        {"ps,-90,40,-100,1.1,2.2", "1: 1 -9999 -90 c 40 -100 n 25 17 d 1.1 2.2"},
        {"ps:90:-100,45,-100,61,45,1.2", "1: 1 90 -100 c 45 -100 n 61 45 d 1.2 1.2"},
        {"lc:25:-90:25:25,-95,40,-95,2,2", "1: 4 25 -95 c 40 -95 n 25 17 d 2 2"},
        {"lc,50,10,61,45,0.8", "1: 4 -9999 -9999 c 50 10 n 61 45 d 0.8 0.8"},
        {"lc,10,50,12,2,2", "1: 4 -9999 10 c 50 12 n 25 17 d 2 2"},
        {"ps,40,-100,25,17,1.2", "1: 1 -9999 -9999 c 40 -100 n 25 17 d 1.2 1.2"},
        {"40,-100,30,20,1,2", "1: 1 -9999 -9999 c 40 -100 n 30 20 d 1 2"},
        {"me,40,-100,1,2", "1: 3 -9999 -9999 c 40 -100 n 25 17 d 1 2"},
        {"40,-100,30,20,1", "1: 1 -9999 -9999 c 40 -100 n 30 20 d 1 1"},
        {"lc:25:-95:25:25,40,-100,2", "1: 4 25 -95 c 40 -100 n 25 17 d 2 2"},
        {"40,-100,30,20", "1: 1 -9999 -9999 c 40 -100 n 30 20 d 1.2 1.2"},
        {"40,-100,3", "1: 1 -9999 -9999 c 40 -100 n 25 17 d 3 3"},
        {"ps:-100,40,-100", "1: 1 -9999 -100 c 40 -100 n 25 17 d 1.2 1.2"},
        {"zoom,40,-100", "1: 50 -9999 -9999 c 40 -100 n 25 17 d 1 1"},
        {"size,300,200", "1: 51 -9999 -9999 c -9999 -9999 n 300 200 d -9999 -9999"},
        {"sizes,300.7,200", "1: 51 -9999 -9999 c -9999 -9999 n 300 200 d -9999 -9999"},
        {"40,-100", "1: 1 -9999 -9999 c 40 -100 n 25 17 d 1.2 1.2"},
        {"none", "1: 1 -9999 -9999 c -9999 -9999 n 25 17 d 1.2 1.2"},
        {"sat:e:0:-75:421.64,0,-75,100,100,1,1", "1: 9 0 -75 c 0 -75 n 100 100 d 1 1"},
        {"se", "2: 1 -9999 -88 c 31 -88 n 25 17 d 1.1 1.1"},
        {"nowhere", "2: -1 -9999 -9999 c -9999 -9999 n -9999 -9999 d -9999 -9999"},
    };
    for (const auto& c : cases) EXPECT_EQ(decoded(c.text), c.want) << c.text;
    for (const char* text : {"a,b", "40,-100,x", "ps,40,-100,1,2,3,4,5,6", "ps:x:y,40,-100", "nan,nan", ",,,"}) {
        EXPECT_EQ(decoded(text).substr(0, 2), "-1") << text;
    }
    for (const char* text : {"", "miss"}) EXPECT_EQ(decoded(text).substr(0, 5), "-9999") << text;
    EXPECT_EQ(DOM_decode(static_cast<const char*>(nullptr), nullptr), MISS);
}

TEST_F(Region, ProjectionWordsAreToldByTheirBeginning) {
    struct {
        const char* word;
        int proj;
    } const cases[] = {{"LATLON", 2}, {"la", 8},     {"lambert", 4}, {"polar", 1}, {"xp", 25},
                       {"xpp", -1},   {"", -1},      {"miss", MISS}, {"ortho", 5}, {"missing", -1},
                       {"xlogp", 22}, {"rteph", 44}, {"hodo", 23}};
    for (const auto& c : cases) EXPECT_EQ(DOM_proj_str(c.word), c.proj) << c.word;
}

TEST_F(Region, PrintedDomainsReadBack) {
    for (const char* text : {"ps:60:-100,40,-95,61,45,1.2", "lc:25:-95:25:35:1,40,-100,30,20,0.5,0.25",
                             "ll,0,0,73,37,5,5", "sat:e,10,-75,100,80,1,1", "sat:e:0:-75:421.6400:1,10,-75,100,80,1,1",
                             "la:45:-100,44,-90,30,30,1,1", "ps::-100,40,-95,61,45,1.2", "ll:60:,1,2,3,4,5,6"}) {
        Domain first;
        Domain second;
        ASSERT_EQ(DOM_decode(text, &first), 1) << text;
        ASSERT_EQ(DOM_decode(DOM_text(&first), &second), 1) << DOM_text(&first);
        EXPECT_EQ(DOM_comp(&first, &second), 1) << DOM_text(&first);
    }
    Domain domain;
    DOM_decode("lc:25:-95:25:35,40,-100,30,20,0.5,0.25", &domain);
    const test::Output shown = test::capture([&] { DOM_print(MESS_PRINT, &domain); });
    EXPECT_EQ(shown.out, "lamb:25.000:-95.000:25.000:35.000:,40.000,-100.000,30,20,0.5000,0.2500\n");
    EXPECT_FLOAT_EQ(DOM_aspect(&domain), 29.0F / 19.0F);
    DOM_decode("sat:e,10,-75,100,80,1,1", &domain);
    EXPECT_EQ(domain.ellipse, 1);
    domain.ny = 1;
    EXPECT_EQ(DOM_aspect(&domain), 1.0F);
}

TEST_F(Region, MissingReferenceEqualsTheCentre) {
    Domain dom1;
    Domain dom2;
    DOM_decode("40,-100", &dom1);
    DOM_decode("ps:40:-100,40,-100", &dom2);
    EXPECT_TRUE(DOM_comp(&dom1, &dom2) && DOM_comp(&dom2, &dom1) && DOM_comp_proj(&dom1, &dom2));
    dom2.nx++;
    EXPECT_FALSE(DOM_comp(&dom1, &dom2));
    EXPECT_TRUE(DOM_comp_proj(&dom1, &dom2));
    dom2.plat = 41;
    EXPECT_FALSE(DOM_comp_proj(&dom1, &dom2));
}

TEST_F(Region, FilesGiveRegionsAndTheMenu) {
    const std::string shown =
        "aa First_region 1 ll,1,2,3\nhidden Not_shown 0 ll,4,5,6\nlongabbr " + std::string(30, 'n') + " 1 se\n";
    dir.write("zav.reg", shown);
    dir.write("other.reg", "# comment\nbb Two 1 ll,7,8,9\ncc Self 1 other.reg:cc\n");
    dir.write("one.reg", "ll,10,11,12\n");
    EXPECT_EQ(decoded("AA"), "2: 2 -9999 -9999 c 1 2 n 25 17 d 3 3");
    EXPECT_EQ(decoded("other.reg:bb"), "2: 2 -9999 -9999 c 7 8 n 25 17 d 9 9");
    EXPECT_EQ(decoded("fi:other.reg"), "2: 2 -9999 -9999 c 7 8 n 25 17 d 9 9");
    EXPECT_EQ(decoded("one.reg:anything"), "2: 2 -9999 -9999 c 10 11 n 25 17 d 12 12");
    EXPECT_EQ(decoded("other.reg:cc").substr(0, 5), "2: -1") << "a region that names itself";
    EXPECT_EQ(decoded("|touch pwned:x").substr(0, 5), "2: -1");
    EXPECT_FALSE(std::filesystem::exists(dir.file("pwned")));

    EXPECT_EQ(DOM_get_region_name(2), "New England");
    EXPECT_EQ(DOM_read_menu("absent.reg"), 0);
    EXPECT_EQ(DOM_read_menu("zav.reg"), 1);
    EXPECT_EQ(DOM_get_region_name(1), "First region");
    EXPECT_EQ(DOM_get_region_name(2), std::string(20, 'n'));
    EXPECT_EQ(DOM_get_region_name(3), "");
    EXPECT_EQ(DOM_get_region_name(99), "");
    dir.write("short.reg", "bb Two 1 ll,7,8,9\n");
    EXPECT_EQ(decoded("short.reg:").substr(0, 5), "2: -1");
    EXPECT_EQ(DOM_get_region_name(1) + DOM_get_region_name(2), "Two") << "nothing stays of a longer file";
    DOM_read_menu("zav.reg");
    EXPECT_EQ(test::capture([] { DOM_print_file("zav.reg"); }).out.substr(0, 42),
              " Abbr    Description\naa       First region");
    Domain domain;
    EXPECT_EQ(DOM_get_region(&domain, 4), 2);
    EXPECT_EQ(domain.clat, 1.0F);
    int result = 0;
    test::capture([&] { result = DOM_prompt_region(&domain, 0); }, "list\nx,y\n2\n");
    EXPECT_EQ(result, 2);
    EXPECT_EQ(domain.clat, 31.0F) << "the menu's abbreviation is cut to five characters";
    test::capture([&] { result = DOM_prompt_region(&domain, 0); }, "list\nx,y\n1\n");
    EXPECT_EQ(result, 2);
    EXPECT_EQ(domain.clat, 1.0F);
    RES_put("plot_domain", "miss");
    RES_put("region", "50,60");
    EXPECT_EQ(DOM_prompt_region(&domain, 1), 1);
    EXPECT_EQ(domain.clat, 50.0F);
    EXPECT_EQ(DOM_prompt_region(&domain, 0), 0);
}

TEST_F(Region, ResourcesGiveDomainsInTheirOrder) {
    Domain domain;
    EXPECT_EQ(DOM_get_region(&domain, 1), 0);
    EXPECT_EQ(DOM_get_grid_domain(&domain), 0);
    RES_put("plot_domain", "10,20");
    RES_put("region", "30,40");
    EXPECT_EQ(DOM_get_region(&domain, 1), 1);
    EXPECT_EQ(domain.clat, 10.0F);
    DOM_get_region(&domain, 2);
    EXPECT_EQ(domain.clat, 30.0F);
    DOM_get_grid_domain(&domain);
    EXPECT_EQ(domain.clat, 30.0F);
    RES_put("grid_domain", "se");
    EXPECT_EQ(DOM_get_grid_domain(&domain), 2);
}

TEST_F(Region, HeightSetsTheStationPriority) {
    struct {
        float size;
        const char* adjust;
        int prior;
    } const cases[] = {{51, "", 1},  {50, "", 2},  {12.6F, "", 3}, {7, "", 4},  {4, "", 5}, {3, "", 6},
                       {7, "+2", 6}, {7, "-1", 3}, {7, "9", 9},    {7, "x", 4}, {7, "+", 4}};
    for (const auto& c : cases) {
        RES_put("stat_prior", c.adjust);
        DOM_set_base_prior(c.size);
        EXPECT_EQ(DOM_get_prior(), c.prior) << c.size << c.adjust;
    }
}

TEST(RegionShipped, EveryRegionDecodes) {
    RES_put("file_path", test::source_dir() + "/share/zav");
    ASSERT_EQ(DOM_read_menu("zav.reg"), 1);
    const std::string file = test::read_file(test::source_dir() + "/share/zav/zav.reg");
    std::istringstream lines(file);
    std::string abbr, name, show, text, line;
    int count = 0;
    while (std::getline(lines, line)) {
        std::istringstream words(line);
        ASSERT_TRUE(words >> abbr >> name >> show >> text) << line;
        EXPECT_LE(abbr.size(), 5U) << line;
        EXPECT_LE(name.size(), 20U) << line;
        Domain domain;
        EXPECT_EQ(DOM_decode(abbr, &domain), 2) << line;
        EXPECT_GT(domain.proj, 0) << line;
        EXPECT_TRUE(domain.nx > 1 && domain.ny > 1 && domain.dx > 0 && domain.dy > 0) << line;
        count++;
    }
    EXPECT_GT(count, 50);
}

}  // namespace
}  // namespace zav
