// Pictures of the kernel: each primitive and attribute beside the PostScript page, patterns, transparency and texts.

#include <algorithm>

#include "gks/gks_img.h"
#include "gks/kernel_scene.h"
#include "image/zavimg.h"
#include "support/raster.h"
#include "support/table.h"

namespace zav {
namespace {

class Picture : public test::KernelTest {
  protected:
    /// Fills NDC rectangles of the picture, whose pixel (12, 1163) is its lower left corner.
    static void fill_box(float x0, float y0, float x1, float y1) {
        const std::vector<Gpt> box = {{x0, y0}, {x1, y0}, {x1, y1}, {x0, y1}};
        gfill_area(4, box.data());
    }
    void TearDown() override {
        gset_system_font("");
        gset_inverse(0);
        KernelTest::TearDown();
    }
};

TEST_F(Picture, ShowsWhatThePageDoes) {
    for (const std::string words : {",color", ",gray"}) {
        ASSERT_EQ(open("x.ps" + words), 0);
        test::draw_scene();
        close();
        ASSERT_EQ(open("x.png,1536x1176" + words, GWS_CAIRO), 0) << said;
        test::draw_scene();
        EXPECT_EQ(close(), 0) << said;
        EXPECT_EQ(test::differences_off_edges(test::read_raster("x.png"), test::read_sheet("x.ps")), 0) << words;
    }
}

TEST_F(Picture, LaysPatternsOnWholePixels) {
    const auto rows = test::data_cells("fill_patterns.tsv");
    for (int k = 0; k < 20 * 64; ++k) {
        const char digit = rows.at(k / 64).at(1).at(k % 64 / 8 * 9 + k % 8);
        EXPECT_EQ(gfill_test(k / 64, k % 8, k % 64 / 8), digit == '1' ? 1 : 0) << k / 64;
    }
    for (const int pattern : {0, 3, 7, 10, 14}) {
        ASSERT_EQ(open("x.png,768x588,transparent", GWS_CAIRO), 0);
        test::set_color(1, 1, 0, 0);
        gset_fill_colr_ind(1);
        gset_fill_int_style(GPAT);
        gset_fill_style_ind(pattern);
        fill_box(0.1F, 0.1F, 0.45F, 0.5F);
        fill_box(0.45F, 0.1F, 0.6F, 0.5F);
        close();
        const test::Raster picture = test::read_raster("x.png");
        for (int y = 320; y < 500; ++y) {
            for (int x = 70; x < 340; ++x)
                ASSERT_EQ(picture.hex(x, y), gfill_test(pattern, x, y) ? "FF0000FF" : "00000000") << x << ' ' << y;
        }
    }
}

TEST_F(Picture, LeavesHolesOfRingsAndClearsOnlyWhatItShould) {
    ASSERT_EQ(open("x.png,768x588,transparent", GWS_CAIRO), 0);
    test::set_color(1, 0, 0, 1);
    gset_fill_colr_ind(1);
    const std::vector<Gpt> rings = {{0.1F, 0.1F}, {0.9F, 0.1F}, {0.9F, 0.9F}, {0.1F, 0.9F},
                                    {0.3F, 0.3F}, {0.3F, 0.7F}, {0.7F, 0.7F}, {0.7F, 0.3F}};
    const std::vector<Gint> counts = {4, 4};
    gfill_rings(2, counts.data(), rings.data());
    const Glim region = {0.75F, 0.85F, 0.2F, 0.8F};
    gclear_region(&region);
    close();
    const test::Raster picture = test::read_raster("x.png");
    const auto at = [&picture](double x, double y) {
        return picture.hex(static_cast<int>(6 + 575 * x), static_cast<int>(582 - 575 * y));
    };
    EXPECT_EQ(at(0.2, 0.5), "0000FFFF");
    EXPECT_EQ(at(0.5, 0.5), "00000000");
    EXPECT_EQ(at(0.8, 0.5), "00000000") << "cleared";
    EXPECT_EQ(at(0.87, 0.5), "0000FFFF");
    EXPECT_EQ(at(0.05, 0.5), "00000000");
}

TEST_F(Picture, MayBeLongAndNarrow) {
    ASSERT_EQ(open("x.png,20000x60", GWS_CAIRO), 0) << said;
    EXPECT_EQ(close(), 0) << said;
    EXPECT_EQ(test::read_file("x.png").substr(16, 8), std::string("\0\0\x4E\x20\0\0\0\x3C", 8));  // the header's size
}

TEST_F(Picture, PutsImagesOverTheViewport) {
    ASSERT_EQ(open("x.png,768x588", GWS_CAIRO), 0);
    test::set_color(0, 1, 1, 0);
    test::set_color(1, 0, 1, 0);
    IMG_report image;
    image.width = image.height = image.bytes_line = 100;
    image.data.assign(10000, 1);
    std::fill(image.data.begin(), image.data.begin() + 5000, 0);
    EXPECT_EQ(gload_image(&image, -200, -200), 1);
    close();
    const test::Raster picture = test::read_raster("x.png");
    const int top = 588 - 6 - 576;
    EXPECT_EQ(picture.hex(6 + 201, top + 202), "FFFF00FF");
    EXPECT_EQ(picture.hex(6 + 298, top + 298), "00FF00FF");
    EXPECT_EQ(picture.hex(6 + 303, top + 250), "FFFFFFFF");
}

TEST_F(Picture, WritesTextsForTheSearch) {
    gset_system_font("DejaVu Sans");
    ASSERT_EQ(open("x.svg", GWS_CAIRO), 0);
    test::set_color(1, 0, 0, 0);
    const Gpt place = {0.5F, 0.5F};
    const Gpt outside = {0.5F, 1.5F};
    gset_char_ht(0.05F);
    gtext(&place, "<a & \"b\">");
    gtext(&place, "M\xFCnchen 5\xB0");
    gtext(&place, "Z\xC3\xBCrich");
    gtext(&outside, "unseen");
    EXPECT_EQ(close(), 0) << said;
    const std::string text = test::run_command("xmllint --xpath '//*[local-name()=\"text\"]' x.svg");
    EXPECT_NE(text.find(">&lt;a &amp; \"b\"&gt;</text>"), std::string::npos) << text;
    EXPECT_NE(text.find(">München 5°</text>"), std::string::npos) << text;
    EXPECT_NE(text.find(">Zürich</text>"), std::string::npos) << text;
    EXPECT_EQ(text.find("unseen"), std::string::npos);
}

}  // namespace
}  // namespace zav
