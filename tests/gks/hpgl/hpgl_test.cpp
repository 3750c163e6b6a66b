// HPGL output: the file's text, and what a plotter makes of it.

#include "gks/hpgl/gks_hpgl.h"

#include <cmath>
#include <random>

#include "gks/gks_img.h"
#include "gks/kernel_scene.h"
#include "image/zavimg.h"
#include "support/plotter.h"
#include "support/table.h"

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

void draw_line(const Gpt& from, const Gpt& to) {
    const Gpt line[] = {from, to};
    gpolyline(2, line);
}

void draw_square(float x1, float y1, float x2, float y2, int color) {
    const Gpt points[] = {{x1, y1}, {x2, y1}, {x2, y2}, {x1, y2}};
    gset_fill_colr_ind(color);
    gfill_area(4, points);
}

TEST_F(Hpgl, HeadAndTrailerAreAsToldForEachForm) {
    for (const test::Case& row : test::cases("gks/hpgl_heads")) {
        plain_plotter();
        const bool pcl = row.number(1) == 1;
        const std::string text = draw_to("a.hpgl" + row.text(0), [] { draw_line({0, 0}, {1, 0.5F}); });
        EXPECT_EQ(text, (pcl ? "\033E\033%1B\033&l1O\nIN;SP1;PA;\n" : "IN;SP1;PA;\n") + row.text(2) + "PW" +
                            row.text(3) + ";SV;LT;\nTR0;\nIW 10,10,7621,7621;\nPU10,10;PD7621,3816;\nSP;PG;\n" +
                            (pcl ? "\033%0A\033E" : ""));
        EXPECT_EQ(said, "Created HPGL file\n") << row.line();
    }
}

TEST_F(Hpgl, PaperAndGeometryGiveTheDrawingArea) {
    for (const test::Case& row : test::cases("gks/hpgl_areas")) {
        const test::EnvSetting param("zavhp_param", row.text(0).c_str());
        const test::EnvSetting geometry("zavhp_geometry", row.text(2).c_str());
        ASSERT_EQ(open("a.hpgl" + row.text(1), GWS_HPGL), 0);
        int x = 0, y = 0;
        gget_win_offset(&x, &y);
        const std::vector<int> area = {x, y, gget_window_width(), gget_window_height(), gget_win_depth()};
        EXPECT_EQ(area, (std::vector<int>{row.number(3), row.number(4), row.number(5), row.number(6), 10}))
            << row.line();
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

TEST_F(Hpgl, AWindowIsClippedToItsView) {
    const PlotPage page = page_of(draw_to("a.hpgl", [] {
        const Glim world = {-50, 150, -20, 80};
        const Glim view = {0.1F, 0.9F, 0.25F, 0.65F};
        gset_win(2, &world);
        gset_vp(2, &view);
        gsel_norm_tran(2);
        draw_line({-50, 30}, {40, 80});
        draw_line({200, 100}, {300, 100});
    }));
    EXPECT_EQ(page.of_kind(PlotItem::CLIP).back().paths[0], (test::PlotPath{{771, 1913}, {6860, 4957}}));
    ASSERT_EQ(page.of_kind(PlotItem::LINE).size(), 1U);
    EXPECT_EQ(page.of_kind(PlotItem::LINE)[0].paths[0], (test::PlotPath{{771, 3435}, {3511, 4957}}));
}

// Sizes in plotter units: a mark of height 2 is trunc(203 / 2) to each side, letters of their height in the window.
TEST_F(Hpgl, MarksTextsAndClearedRegionsHaveTheirSize) {
    const PlotPage page = page_of(draw_to("a.hpgl", [] {
        gset_marker_size(2);
        gset_marker_type(6);
        gset_marker_width(2);
        gset_marker_colr_ind(506);
        gset_char_ht(0.105F);
        gset_text_colr_ind(503);
        gset_linetype(2);
        const Gpt place = {0.5F, 0.5F};
        draw_line({0, 0}, {1, 1});
        gpolymarker(1, &place);
        gtext(&place, "A");
        const Glim region = {0, 0.5F, 0, 0.1F};
        gclear_region(&region);
        gset_fill_int_style(GPAT);
        gset_fill_style_ind(3);
        draw_square(0, 0, 1, 1, 1);
    }));
    const auto lines = page.of_kind(PlotItem::LINE);
    ASSERT_EQ(lines.size(), 3U);
    EXPECT_EQ(lines[0].dashes + lines[1].dashes, "2,5,1");
    const test::PlotPath square = {
        {3714.5, 3916.5}, {3916.5, 3916.5}, {3916.5, 3714.5}, {3714.5, 3714.5}, {3714.5, 3916.5}};
    ASSERT_EQ(lines[1].paths[0].size(), square.size());
    for (std::size_t i = 0; i < square.size(); ++i) {
        EXPECT_NEAR(std::hypot(lines[1].paths[0][i].x - square[i].x, lines[1].paths[0][i].y - square[i].y), 0, 0.8);
    }
    EXPECT_NEAR(lines[1].grey, 0.7, 1e-9);
    EXPECT_NEAR(lines[1].width, 0.4, 1e-9);
    // From the baseline to the cap height, 799 units.
    EXPECT_NEAR(lines[2].paths[0][1].y - lines[2].paths[0][0].y, 0.105 * 7611, 1);
    EXPECT_EQ(lines[2].grey, 1);
    EXPECT_NEAR(lines[2].width, 0.2, 1e-9);
    const auto areas = page.of_kind(PlotItem::AREA);
    ASSERT_EQ(areas.size(), 2U);
    EXPECT_EQ(areas[0].grey - areas[1].grey, 1);
    EXPECT_NE(winding(areas[0].paths, {10 + 7611 * 0.49, 10 + 7611 * 0.09}), 0);
    EXPECT_EQ(winding(areas[0].paths, {10 + 7611 * 0.51, 10 + 7611 * 0.09}), 0);
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
        gset_linetype(line_type);
        gset_linewidth(3);
        gset_line_colr_ind(506);
        draw_line({0, low}, {1, low});
        draw_square(low, low, low + 0.1F, low + 0.1F, 1);
        draw_square(low, low, low + 0.05F, low + 0.05F, 0);
    };
    const auto lower = [&] { draw(0.1F, 2); };
    const auto upper = [&] { draw(0.5F, 1); };
    for (const std::string words : {"", ",nopcl", ",lj"}) {
        SCOPED_TRACE(words);
        const std::string first = draw_to("a.hpgl" + words, lower);
        const std::string both = draw_to("+a.hpgl,nopcl,rot=180", upper);
        plain_plotter();
        const PlotPage second = page_of(draw_to("b.hpgl" + words, upper));
        const std::size_t end = first.find("SP;PG;\n");
        EXPECT_TRUE(both.starts_with(first.substr(0, end) + "PW0.2;SV;LT;\n") && both.ends_with(first.substr(end)));
        PlotPage page = page_of(both);
        EXPECT_EQ(page.turn, words == ",lj" ? 90 : 0);
        page.items.erase(page.items.begin(), page.items.begin() + static_cast<long>(page.items.size() / 2));
        EXPECT_TRUE(page.items == second.items);
    }
    // Several pages follow those of the file; so does one behind what isn't the program's own ending.
    const std::string one = draw_to("c.hpgl", lower);
    gset_pages(true);
    const std::string after = draw_to("+c.hpgl", [&] {
        upper();
        gnew_page();
        lower();
    });
    gset_pages(false);
    EXPECT_EQ(test::read_plot(after).fault, "");
    EXPECT_EQ(test::read_plot(after).pages.size(), 3U);
    EXPECT_TRUE(after.starts_with(one));
    for (const std::string before : {"IN;SP1;PU0,0;SP0;\n", ""}) {
        dir.write("other.hpgl", before);
        const std::string text = draw_to("+other.hpgl,nopcl", lower);
        EXPECT_TRUE(text.starts_with(before + "IN;SP1;PA;\n") && text.ends_with("SP;PG;\n"));
    }
}

TEST_F(Hpgl, EachPageBeginsAnew) {
    gset_pages(true);
    const test::Plot plot = test::read_plot(draw_to("a.hpgl,port", [] {
        gset_linetype(3);
        for (const int color : {0, 0, 1}) {
            draw_line({0, 0}, {1, 1});
            draw_square(0, 0, 1, 1, color);
            gnew_page();
        }
    }));
    gset_pages(false);
    EXPECT_EQ(plot.fault, "");
    ASSERT_EQ(plot.pages.size(), 4U);
    for (const std::size_t page : {0, 1, 2}) {
        EXPECT_TRUE(plot.pages[page].pcl);
        EXPECT_EQ(plot.pages[page].turn, 90);
        EXPECT_EQ(plot.pages[page].items.at(0).kind, PlotItem::CLIP);
        EXPECT_EQ(plot.pages[page].items.at(1).dashes, "5,8,1");
        EXPECT_EQ(plot.pages[page].items.at(2).grey, page < 2 ? 1 : 0);
    }
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
    for (const test::Case& row : test::cases("gks/hpgl_names")) {
        const test::EnvSetting name("zavhp_out", row.text(1).c_str());
        EXPECT_EQ(open(row.text(0), GWS_HPGL), row.number(3)) << row.line();
        EXPECT_EQ(said, row.text(2));
        EXPECT_EQ(close(), row.number(3)) << row.line();
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
