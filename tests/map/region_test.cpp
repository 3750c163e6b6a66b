// Domain texts, region files and their menu.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <map>
#include <sstream>

#include "frame/flag.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "map/maptran.h"
#include "map/region_state.h"
#include "support/support.h"
#include "support/table.h"

namespace zav {
namespace {

class Region : public test::TempDirTest {
  protected:
    void SetUp() override {
        FLAG_reset(MISS);
        DOM_module() = {};
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
    const auto cases = test::data_cells("domain_texts.tsv");
    EXPECT_GT(cases.size(), 20U);
    for (const auto& row : cases) EXPECT_EQ(decoded(row[0]), row[1]) << row[0];
    for (const char* text : {"a,b", "40,-100,x", "ps,40,-100,1,2,3,4,5,6", "ps:x:y,40,-100", "nan,nan", ",,,"}) {
        Domain domain;
        EXPECT_EQ(test::capture([&] { EXPECT_EQ(DOM_decode(text, &domain), -1) << text; }).err,
                  "DOM_decode: Invalid plot domain\n");
    }
    for (const char* text : {"", "miss"}) EXPECT_EQ(decoded(text).substr(0, 5), "-9999") << text;
    EXPECT_EQ(DOM_decode(static_cast<const char*>(nullptr), nullptr), MISS);
}

TEST_F(Region, ProjectionWordsAreToldByTheirBeginning) {
    std::istringstream words(
        "ll 2 lat 2 polar 1 ps 1 sat 9 lamb 4 lambaz 8 lc 4 la 8 gn 6 or 5 mo 7 me 3 pix 99 xy 20 xlogy 22 xlogp 22 "
        "cat 24 skewt 40 ema 42 teph 43 rteph 44 therm 40 stuve 41 hodo 23 vert 22 xp 25 zoom 50 size 51 miss -9999");
    std::string word;
    for (int proj = 0; words >> word >> proj;) {
        EXPECT_EQ(DOM_proj_str(word), proj) << word;
        EXPECT_EQ(DOM_proj_str(word + "q"), word == "xp" || word == "miss" ? -1 : proj) << word;
        std::transform(word.begin(), word.end(), word.begin(), [](unsigned char c) { return std::toupper(c); });
        EXPECT_EQ(MAP_proj_str(word), proj) << word;
    }
    for (const char* none : {"", "l", "x", "q"}) EXPECT_EQ(DOM_proj_str(none), -1) << none;
}

TEST_F(Region, ProjectionsArePrintedByName) {
    std::map<int, std::string> names;
    for (const auto& row : test::data_cells("projection_names.tsv")) names[std::stoi(row[0])] = row[1];
    for (Domain domain; domain.proj < 120; ++domain.proj) {
        domain.proj = std::max(domain.proj, 0);
        const std::string text = DOM_text(&domain);
        EXPECT_EQ(text.substr(0, text.find(':')), names[domain.proj]) << domain.proj;
    }
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
    // A field that differs makes another domain, those behind the first two on the same plane.
    const std::vector<float Domain::*> fields{&Domain::plat, &Domain::plon, &Domain::clat,
                                              &Domain::clon, &Domain::dx,   &Domain::dy};
    for (std::size_t i = 0; i < fields.size() + 5; ++i) {
        Domain other = dom2;
        if (i < fields.size()) other.*fields[i] += 1;
        const std::size_t k = i - fields.size();
        int* const counts[] = {&other.nx, &other.ny, &other.proj, &other.ellipse};
        if (i >= fields.size() && k < 4) ++*counts[k];
        if (k == 4) other.param[4] = 1;
        const int same_plane = i >= 2 && i < fields.size() + 2 ? 1 : 0;
        EXPECT_TRUE(DOM_comp(&dom2, &other) == 0 && DOM_comp(&other, &dom2) == 0) << i;
        EXPECT_TRUE(DOM_comp_proj(&dom2, &other) == same_plane && DOM_comp_proj(&other, &dom2) == same_plane) << i;
    }
    EXPECT_TRUE(DOM_comp(nullptr, &dom2) == 0 && DOM_comp(&dom2, nullptr) == 0);
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
    test::capture([&] { result = DOM_prompt_region(&domain, 0); }, "x,y\nx,y\nx,y\nx,y\nx,y\n1\n");
    EXPECT_EQ(result, -1) << "five tries";
}

/// Each choice of resources, which name the latitudes 10, 30 and 50, against the order that each question takes.
TEST_F(Region, ResourcesGiveDomainsInTheirOrder) {
    for (int set = 0; set < 8; ++set) {
        const float plot = (set & 1) != 0 ? 10.0F : 0;
        const float region = (set & 2) != 0 ? 30.0F : 0;
        const float grid = (set & 4) != 0 ? 50.0F : 0;
        RES_put("plot_domain", plot != 0 ? "10,20" : "");
        RES_put("region", region != 0 ? "30,40" : "");
        RES_put("grid_domain", grid != 0 ? "50,60" : "");
        const auto check = [&](int result, const Domain& domain, std::vector<float> order) {
            const auto first = std::find_if(order.begin(), order.end(), [](float lat) { return lat != 0; });
            const float lat = first == order.end() ? FMISS : *first;
            EXPECT_EQ(result, lat == FMISS ? 0 : lat == 39 ? 2 : 1) << set;  // 39: the first region of the menu
            EXPECT_EQ(domain.clat, lat) << set;
        };
        for (int flag = 0; flag < 6; ++flag) {
            const bool both = flag == 1 || flag == 3 || flag == 4;
            Domain domain;
            const int result = DOM_get_region(&domain, flag);
            check(result, domain, {both ? plot : 0, region, flag == 4 ? 39.0F : 0});
            FLAG_set_batch(1);
            DOM_set_prompt_region(1);
            Domain asked;
            const int answer = DOM_prompt_region(&asked, flag);
            check(answer, asked, {flag == 1 ? plot : 0, region, 39});
            EXPECT_EQ(DOM_prompt_region(&asked, flag), 0) << "asked once";
            FLAG_set_batch(0);
        }
        Domain domain;
        const int result = DOM_get_grid_domain(&domain);
        check(result, domain, {grid, region, plot});
    }
}

TEST_F(Region, AWrongRegionEndsTheQuestion) {
    Domain domain;
    RES_put("region", "a,b");
    EXPECT_EXIT(DOM_prompt_region(&domain, 1), ::testing::ExitedWithCode(43), "Invalid domain\n");
    RES_put("region", "");
    EXPECT_EXIT(test::capture([&] { DOM_prompt_region(&domain, 0); }, "exit\n"), ::testing::ExitedWithCode(0), "");
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
    std::istringstream words(test::read_file(test::source_dir() + "/share/zav/zav.reg"));
    int count = 0;
    for (std::string abbr, name, show, text; words >> abbr >> name >> show >> text; ++count) {
        EXPECT_TRUE(abbr.size() <= 5 && name.size() <= 20) << abbr;
        Domain domain;
        EXPECT_EQ(DOM_decode(abbr, &domain), 2) << abbr;
        EXPECT_TRUE(domain.proj > 0 && domain.nx > 1 && domain.ny > 1 && domain.dx > 0 && domain.dy > 0) << abbr;
    }
    EXPECT_GT(count, 50);
}

}  // namespace
}  // namespace zav
