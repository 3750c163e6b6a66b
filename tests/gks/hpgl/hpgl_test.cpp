// HPGL output: the file's text, and what a plotter makes of it.

#include "gks/hpgl/gks_hpgl.h"

#include <cmath>
#include <random>

#include "gks/gks_img.h"
#include "gks/kernel_scene.h"
#include "image/zavimg.h"
#include "support/plotter.h"

namespace zav {
namespace {

using test::PlotItem;
using test::PlotPage;

class Hpgl : public test::KernelTest {
  protected:
    void SetUp() override {
        KernelTest::SetUp();
        plain_plotter();
    }
    void TearDown() override {
        KernelTest::TearDown();
        plain_plotter();
    }

    /// Undoes what an earlier connection asked of the plot.
    static void plain_plotter() {
        ghpgl_set_rotate(0);
        ghpgl_set_base_width(0.2F);
        gset_line_print_bold(1);
    }

    std::string draw_to(const std::string& connection, const std::function<void()>& draw) {
        EXPECT_EQ(open(connection, GWS_HPGL), 0) << said;
        test::set_color(0, 1, 1, 1);
        test::set_color(1, 0, 0, 0);
        draw();
        EXPECT_EQ(close(), 0) << said;
        const std::string name = connection.substr(connection[0] == '+' ? 1 : 0);
        return test::read_file(name.substr(0, name.find(',')));
    }

    /// The only page of a sound file.
    static PlotPage page_of(const std::string& text) {
        const test::Plot plot = test::read_plot(text);
        EXPECT_EQ(plot.fault, "");
        EXPECT_EQ(plot.pages.size(), 1U);
        return plot.pages.empty() ? PlotPage{} : plot.pages[0];
    }
};

const std::string PCL = "\033E\033%1B\033&l1O\n";
const std::string PCL_END = "\033%0A\033E";

void draw_square(float x1, float y1, float x2, float y2, int color) {
    const Gpt points[] = {{x1, y1}, {x2, y1}, {x2, y2}, {x1, y2}};
    gset_fill_colr_ind(color);
    gfill_area(4, points);
}

TEST_F(Hpgl, HeadAndTrailerAreAsToldForEachForm) {
    struct {
        std::string words, start, turns, width, end;
    } const cases[] = {
        {"", PCL, "", "0.2", PCL_END},
        {",NOPCL", "", "", "0.2", ""},
        {",nopcl,pcl", PCL, "", "0.2", PCL_END},
        {",lj,lwidth=0.35", PCL, "RO90;\n", "0.3", PCL_END},
        {",lj,Port", PCL, "RO90;\nRO90;\n", "0.2", PCL_END},
        {",rot:180,nopcl,lwidth:1.5", "", "RO180;\n", "1.5", ""},
        {",port,rot=270", PCL, "RO270;\n", "0.2", PCL_END},
        {",port,land", PCL, "", "0.2", PCL_END},
        {",color,eps", PCL, "", "0.2", PCL_END},
    };
    for (const auto& c : cases) {
        plain_plotter();
        const std::string text = draw_to("a.hpgl" + c.words, [] {
            const Gpt line[] = {{0, 0}, {1, 0.5F}};
            gpolyline(2, line);
        });
        EXPECT_EQ(text, c.start + "IN;SP1;PA;\n" + c.turns + "PW" + c.width +
                            ";SV;LT;\nTR0;\nIW 10,10,7621,7621;\nPU10,10;PD7621,3816;\nSP;PG;\n" + c.end)
            << c.words;
        EXPECT_EQ(said, "Created HPGL file\n") << c.words;
        page_of(text);
    }
}

TEST_F(Hpgl, PaperAndGeometryGiveTheDrawingArea) {
    struct {
        const char *env, *words, *geometry;
        int x, y, width, height;
    } const cases[] = {
        {nullptr, "", "", 10, 10, 10150, 7612},
        {nullptr, ",letter", "", 10, 10, 10657, 8120},
        {nullptr, ",LEGAL", "", 10, 10, 13702, 8120},
        {nullptr, ",11x17", "", 10, 10, 16747, 10657},
        {nullptr, ",a4", "", 10, 10, 11357, 7876},
        {nullptr, ",a3", "", 10, 10, 16280, 11357},
        {nullptr, ",a2", "", 10, 10, 23233, 16280},
        {nullptr, ",a1", "", 10, 10, 33099, 23233},
        {nullptr, ",b4", "", 10, 10, 14037, 9764},
        {nullptr, ",b3", "", 10, 10, 20066, 14037},
        {nullptr, ",b2", "", 10, 10, 28582, 20066},
        {nullptr, ",b1", "", 10, 10, 40650, 28582},
        {nullptr, ",ansid", "", 10, 10, 34002, 21822},
        {nullptr, ",a4,sz=4.5x8", "", 10, 10, 4060, 7612},
        {"a4,nopcl", "", "", 10, 10, 11357, 7876},
        {"a4", ",sz=4.5x8", "", 10, 10, 4060, 7612},
        {"roll=30", "", "", 10, 10, 29942, 23345},
        {"a4", ",roll=30", "", 10, 10, 11357, 7876},
        {nullptr, "", "P0.5x0.25+0.5+0.75", 5075, 5709, 5075, 1903},
        {nullptr, "", "p2x2", 0, 3806, 5075, 3806},
        {nullptr, "", "P2x2+1+1", 5075, 0, 5075, 3806},
        {nullptr, "", "400x300+100+50", 1025, 517, 4060, 3045},
        {nullptr, "", "333x222", 10, 10, 3379, 2253},
        {nullptr, "", "+100+-50", 1025, -497, 10150, 7612},
        {nullptr, "", "0x0", 10, 10, 2, 2},
        {nullptr, "", "nonsense", 10, 10, 10150, 7612},
    };
    for (const auto& c : cases) {
        const test::EnvSetting param("zavhp_param", c.env);
        const test::EnvSetting geometry("zavhp_geometry", c.geometry);
        const std::string name = std::string(c.words) + " " + c.geometry;
        ASSERT_EQ(open(std::string("a.hpgl") + c.words, GWS_HPGL), 0);
        int x = 0;
        int y = 0;
        gget_win_offset(&x, &y);
        EXPECT_EQ(x, c.x) << name;
        EXPECT_EQ(y, c.y) << name;
        EXPECT_EQ(gget_window_width(), c.width) << name;
        EXPECT_EQ(gget_window_height(), c.height) << name;
        EXPECT_EQ(gget_win_depth(), 10);
        close();
    }
}

TEST_F(Hpgl, AttributesAreWrittenWhereTheyChange) {
    const std::string text = draw_to("a.hpgl,nopcl", [] {
        test::set_color(5, 0.5F, 0.5F, 0.5F);
        test::set_color(6, 1, 0, 0);
        for (const int color : {1, 500, 503, 504, 506, 508, 1}) ghpgl_set_color(color);
        for (const float width : {0.0F, 1.0F, 2.0F, 2.0F}) ghpgl_set_width(1, width);
        ghpgl_set_width(507, 1);  // twice as wide as 1, which is as wide as it was
        ghpgl_set_width(508, 1);
        gset_line_print_bold(3);
        ghpgl_set_width(1, 1.5F);
        ghpgl_set_width(501, 1.5F);
        for (const int color : {1, 5, 5, -1, 0, 6, 506, 503, 1}) ghpgl_set_fill_color(color);
        gset_fill_print_solid(1);
        for (const int color : {5, -1}) ghpgl_set_fill_color(color);
        gset_fill_print_solid(0);
        ghpgl_set_fill_color(1);
        for (const int type : {1, 2, 2, 3, 4, 5, 9, 1}) ghpgl_set_type(type);
    });
    EXPECT_EQ(text.substr(text.find("7621;\n") + 6),
              "SV1,0;\nSV1,30;\nSV;\nPW0.4;\nPW0.8;\nPW0.9;\nPW0.6;\n"
              "FT10,50;\nFT10,0;\nFT10,67;\nFT10,30;\nFT10,0;\nFT10,100;\nFT1;\nFT1;\n"
              "LT2,5,1;\nLT5,8,1;\nLT6,10,1;\nLT2,1,1;\nLT;\nSP;PG;\n");
}

TEST_F(Hpgl, LinesAreasMarksAndTextsLieWhereTheyWereDrawn) {
    // A window of 200 by 100 in the view (0.1, 0.25) to (0.9, 0.65) of 7611 units, and the page's corner at 10.
    const auto at = [](double x, double y) {
        return test::PlotPoint{std::nearbyint(10 + 7611 * (0.1 + 0.8 * (x + 50) / 200)),
                               std::nearbyint(10 + 7611 * (0.25 + 0.4 * (y + 20) / 100))};
    };
    std::mt19937 chance(7);
    const auto pick = [&chance](int low, int high) { return std::uniform_int_distribution<int>(low, high)(chance); };
    std::vector<test::PlotPath> wanted;
    const std::string text = draw_to("a.hpgl", [&] {
        const Glim world = {-50, 150, -20, 80};
        const Glim view = {0.1F, 0.9F, 0.25F, 0.65F};
        gset_win(2, &world);
        gset_vp(2, &view);
        gsel_norm_tran(2);
        for (int i = 0; i < 200; ++i) {
            std::vector<Gpt> points;
            wanted.emplace_back();
            for (int count = pick(3, 40); count > 0; --count) {
                points.push_back({static_cast<float>(pick(-49, 149)), static_cast<float>(pick(-19, 79))});
                wanted.back().push_back(at(points.back().x, points.back().y));
            }
            const int size = static_cast<int>(points.size());
            i % 2 == 0 ? gpolyline(size, points.data()) : gfill_area(size, points.data());
        }
        const Gpt outside[] = {{200, 100}, {300, 100}};
        gpolyline(2, outside);
    });
    const PlotPage page = page_of(text);
    std::size_t count = 0;
    for (const PlotItem& item : page.items) {
        if (item.kind == PlotItem::CLIP) continue;
        ASSERT_LT(count, wanted.size());
        EXPECT_EQ(item.kind, count % 2 == 0 ? PlotItem::LINE : PlotItem::AREA);
        ASSERT_EQ(item.paths.size(), 1U);
        const test::PlotPath& path = item.paths[0];
        ASSERT_EQ(path.size(), wanted[count].size()) << count;
        for (std::size_t i = 0; i < path.size(); ++i) {
            ASSERT_NEAR(path[i].x, wanted[count][i].x, 1) << count;  // 1 where floats fall beside a half
            ASSERT_NEAR(path[i].y, wanted[count][i].y, 1) << count;
        }
        ++count;
    }
    EXPECT_EQ(count, wanted.size());
    const auto clips = page.of_kind(PlotItem::CLIP);
    EXPECT_EQ(clips.back().paths[0], (test::PlotPath{{771, 1913}, {6860, 4957}}));
}

// Sizes in plotter units: a mark of height 2 is trunc(203 / 2) to each side, letters of their height in the window.
TEST_F(Hpgl, MarksAndTextsHaveTheirSize) {
    const PlotPage page = page_of(draw_to("a.hpgl", [] {
        gset_marker_size(2);
        gset_marker_type(6);
        gset_marker_width(2);
        gset_marker_colr_ind(506);
        gset_char_ht(0.105F);
        gset_text_colr_ind(503);
        gset_linetype(2);
        const Gpt place = {0.5F, 0.5F};
        const Gpt line[] = {{0, 0}, {1, 1}};
        gpolyline(2, line);
        gpolymarker(1, &place);
        gtext(&place, "A");
    }));
    const auto lines = page.of_kind(PlotItem::LINE);
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0].dashes, "2,5,1");
    const test::PlotPath square = {
        {3714.5, 3916.5}, {3916.5, 3916.5}, {3916.5, 3714.5}, {3714.5, 3714.5}, {3714.5, 3916.5}};
    ASSERT_EQ(lines[1].paths[0].size(), square.size());
    for (std::size_t i = 0; i < square.size(); ++i) {
        EXPECT_NEAR(lines[1].paths[0][i].x, square[i].x, 0.6) << i;
        EXPECT_NEAR(lines[1].paths[0][i].y, square[i].y, 0.6) << i;
    }
    EXPECT_EQ(lines[1].dashes, "");
    EXPECT_NEAR(lines[1].grey, 0.7, 1e-9);
    EXPECT_NEAR(lines[1].width, 0.4, 1e-9);
    // From the baseline to the cap height, 799 units.
    EXPECT_NEAR(lines[2].paths[0][1].y - lines[2].paths[0][0].y, 0.105 * 7611, 1);
    EXPECT_EQ(lines[2].grey, 1);
    EXPECT_NEAR(lines[2].width, 0.2, 1e-9);
}

TEST_F(Hpgl, RingsFillWhatTheyEnclose) {
    std::mt19937 chance(11);
    std::uniform_real_distribution<double> part(0, 1);
    for (int round = 0; round < 60; ++round) {
        std::vector<test::PlotPath> rings;
        std::vector<Gint> counts;
        std::vector<Gpt> points;
        for (int ring = 0; ring < 1 + round % 5; ++ring) {
            // Stars about any place, the ones against the others; some of them without an area.
            const double x = part(chance), y = part(chance), size = round % 7 == 6 ? 0 : 0.4 * part(chance);
            const double turn = part(chance) < 0.5 ? 1 : -1;
            rings.emplace_back();
            counts.push_back(3 + static_cast<int>(20 * part(chance)));
            for (int i = 0; i < counts.back(); ++i) {
                const double angle = turn * 6.2832 * i / counts.back();
                const double far = size * (0.3 + 0.7 * part(chance));
                points.push_back(
                    {static_cast<float>(x + far * std::cos(angle)), static_cast<float>(y + far * std::sin(angle))});
                rings.back().push_back({10 + 7611.0 * points.back().x, 10 + 7611.0 * points.back().y});
            }
        }
        const PlotPage page = page_of(
            draw_to("a.hpgl", [&] { gfill_rings(static_cast<int>(counts.size()), counts.data(), points.data()); }));
        const auto areas = page.of_kind(PlotItem::AREA);
        ASSERT_EQ(areas.size(), round % 7 == 6 ? 0U : 1U) << round;
        EXPECT_TRUE(areas.empty() || areas[0].nonzero);
        if (areas.empty()) continue;
        for (const test::PlotPath& ring : areas[0].paths) EXPECT_EQ(ring.front(), ring.back()) << round;
        for (int i = 0; i < 300; ++i) {
            const test::PlotPoint place = {7611 * part(chance), 7611 * part(chance)};
            const int turns = winding(rings, place);
            const bool near_edge =
                winding(rings, {place.x + 2, place.y}) != turns || winding(rings, {place.x - 2, place.y}) != turns ||
                winding(rings, {place.x, place.y + 2}) != turns || winding(rings, {place.x, place.y - 2}) != turns;
            if (near_edge) continue;
            EXPECT_EQ(winding(areas[0].paths, place), turns) << round;
        }
    }
}

TEST_F(Hpgl, PatternsAndClearedRegionsAreAreas) {
    const PlotPage page = page_of(draw_to("a.hpgl", [] {
        test::set_color(5, 0.5F, 0.5F, 0.5F);
        gset_fill_int_style(GPAT);
        gset_fill_style_ind(3);
        draw_square(0, 0, 1, 1, 5);
        const Glim region = {0, 0.5F, 0, 0.1F};
        gclear_region(&region);
        draw_square(0, 0, 0.1F, 0.1F, 1);
    }));
    const auto areas = page.of_kind(PlotItem::AREA);
    ASSERT_EQ(areas.size(), 3U);
    EXPECT_EQ(areas[0].grey, 0.5);
    EXPECT_EQ(areas[1].grey, 1);
    EXPECT_EQ(winding(areas[1].paths, {10 + 7611 * 0.49, 10 + 7611 * 0.09}) != 0, true);
    EXPECT_EQ(winding(areas[1].paths, {10 + 7611 * 0.51, 10 + 7611 * 0.09}), 0);
    EXPECT_EQ(areas[2].grey, 0);
}

TEST_F(Hpgl, ImagesAreTold) {
    ASSERT_EQ(open("a.hpgl", GWS_HPGL), 0);
    IMG_report image;
    IMG_init(&image);
    int result = -1;
    const test::Output output = test::capture([&] { result = gload_image(&image, 0, 0); });
    EXPECT_EQ(result, 0);
    EXPECT_EQ(output.out + output.err, "gload_image: HPGL can't hold an image\n");
}

TEST_F(Hpgl, AddedPlotsStandOnTheLastPage) {
    const auto draw = [](float low, int line_type) {
        const Gpt line[] = {{0, low}, {1, low}};
        gset_linetype(line_type);
        gset_linewidth(3);
        gset_line_colr_ind(506);
        gpolyline(2, line);
        draw_square(low, low, low + 0.1F, low + 0.1F, 1);
        draw_square(low, low, low + 0.05F, low + 0.05F, 0);
    };
    const auto lower = [&] { draw(0.1F, 2); };
    const auto upper = [&] { draw(0.5F, 1); };
    for (const std::string words : {"", ",nopcl", ",lj"}) {
        const std::string first = draw_to("a.hpgl" + words, lower);
        const std::string both = draw_to("+a.hpgl,nopcl,rot=180", upper);
        plain_plotter();
        const std::string second = draw_to("b.hpgl" + words, upper);
        const std::size_t end = first.find("SP;PG;\n");
        EXPECT_EQ(both.substr(0, end), first.substr(0, end)) << words;
        EXPECT_TRUE(both.ends_with(first.substr(end))) << words;
        EXPECT_TRUE(both.substr(end).starts_with("PW0.2;SV;LT;\n")) << words;
        const PlotPage page = page_of(both);
        EXPECT_EQ(page.turn, words == ",lj" ? 90 : 0);
        const auto items = page.items;
        const auto alone = page_of(second).items;
        ASSERT_EQ(items.size(), 2 * alone.size()) << words;
        for (std::size_t i = 0; i < alone.size(); ++i) {
            const PlotItem& item = items[alone.size() + i];
            EXPECT_EQ(item.paths, alone[i].paths) << words << i;
            EXPECT_EQ(item.grey, alone[i].grey) << words << i;
            EXPECT_EQ(item.width, alone[i].width) << words << i;
            EXPECT_EQ(item.dashes, alone[i].dashes) << words << i;
        }
    }
    // Several pages follow those of the file.
    const std::string one = draw_to("c.hpgl", lower);
    gset_pages(true);
    const std::string after = draw_to("+c.hpgl", [&] {
        upper();
        gnew_page();
        lower();
    });
    gset_pages(false);
    const test::Plot pages = test::read_plot(after);
    EXPECT_EQ(pages.fault, "");
    EXPECT_EQ(pages.pages.size(), 3U);
    EXPECT_TRUE(after.starts_with(one));
    // What isn't the program's own ending stays, and a page of its own follows; so does one in a new file.
    for (const std::string before : {"IN;SP1;PU0,0;SP0;\n", ""}) {
        dir.write("other.hpgl", before);
        const std::string text = draw_to("+other.hpgl,nopcl", lower);
        EXPECT_EQ(text.find("IN;SP1;PA;\n"), before.size());
        EXPECT_TRUE(text.starts_with(before) && text.ends_with("SP;PG;\n"));
    }
}

TEST_F(Hpgl, EachPageBeginsAnew) {
    const auto draw = [] {
        gset_linetype(3);
        const Gpt line[] = {{0, 0}, {1, 1}};
        gpolyline(2, line);
        draw_square(0, 0, 1, 1, 0);
    };
    gset_pages(true);
    const std::string text = draw_to("a.hpgl,port", [&] {
        draw();
        gnew_page();
        draw();
        gnew_page();
        draw_square(0, 0, 1, 1, 1);
    });
    gset_pages(false);
    const test::Plot plot = test::read_plot(text);
    EXPECT_EQ(plot.fault, "");
    ASSERT_EQ(plot.pages.size(), 3U);
    for (const PlotPage& page : plot.pages) {
        EXPECT_TRUE(page.pcl);
        EXPECT_EQ(page.turn, 90);
        EXPECT_EQ(page.items.at(0).kind, PlotItem::CLIP);
    }
    EXPECT_EQ(plot.pages[1].items.at(1).dashes, "5,8,1");
    EXPECT_EQ(plot.pages[1].items.at(2).grey, 1);
    EXPECT_EQ(plot.pages[2].items.at(1).grey, 0);
}

TEST_F(Hpgl, OutputWaitsUntilItIsKept) {
    dir.write("old.hpgl", "old");
    for (const char* name : {"old.hpgl", "+old.hpgl", "new.hpgl", "+new.hpgl", "|cat > piped.hpgl"}) {
        ASSERT_EQ(open(name, GWS_HPGL), 0) << name;
        draw_square(0, 0, 1, 1, 1);
        gbreak_off();
        EXPECT_EQ(test::read_file("old.hpgl"), "old") << name;
        EXPECT_FALSE(std::filesystem::exists("new.hpgl")) << name;
        EXPECT_FALSE(std::filesystem::exists("piped.hpgl")) << name;
    }
    ASSERT_EQ(open("old.hpgl", GWS_HPGL), 0);
    gkeep_output();
    gbreak_off();
    page_of(test::read_file("old.hpgl"));
}

TEST_F(Hpgl, NamesFilesAndPipesAreAnnounced) {
    struct {
        const char *connection, *env, *said;
        int result;
    } const cases[] = {
        {"deep/a.hpgl", nullptr, "Creating: deep/a.hpgl\n", 0},
        {"+deep/a.hpgl", nullptr, "Appending to: deep/a.hpgl\n", 0},
        {"|cat > piped.hpgl", nullptr, "Spooling to: cat > piped.hpgl\n", 0},
        {"", "named.hpgl", "Creating: named.hpgl\n", 0},
        {",nopcl", "", "Creating: zav.hpgl\n", 0},
        {"deep/a.hpgl/b", nullptr, "Creating: deep/a.hpgl/b\ngopen_ws: unable to open HPGL file\n\n", -1},
    };
    for (const auto& c : cases) {
        const test::EnvSetting name("zavhp_out", c.env);
        EXPECT_EQ(open(c.connection, GWS_HPGL), c.result) << c.connection;
        EXPECT_EQ(said, c.said);
        EXPECT_EQ(close(), c.result) << c.connection;
    }
    page_of(test::read_file("piped.hpgl"));
    // The environment sends what is for a printer of pages to a plotter.
    const test::EnvSetting print("zavprint", "HPGL");
    ASSERT_EQ(open("a.ps,color,eps,nopcl", GWS_PS), 0);
    EXPECT_EQ(said, "Creating: a.ps\n");
    EXPECT_EQ(gget_win_type(), GWS_HPGL);
    close();
    page_of(test::read_file("a.ps"));
}

}  // namespace
}  // namespace zav
