// Files that other programs made, of all kinds, read pixel by pixel and passed on.
#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "image/pictures.h"
#include "support/support.h"
#include "support/table.h"

namespace zav {
namespace {

using test::Picture;
using test::Rgb;

void write_ppm(const std::string& file, const Picture& picture) {
    std::string text = "P6 " + std::to_string(picture.width) + " " + std::to_string(picture.height) + " 255\n";
    for (const Rgb& color : picture.pixels) {
        for (const int part : color) text += static_cast<char>(part);
    }
    test::write_file(file, text);
}

class Foreign : public test::TempDirTest, public ::testing::WithParamInterface<test::Row> {};

TEST_P(Foreign, FileIsReadPixelByPixel) {
    const test::Row& row = GetParam();
    std::mt19937 random(21);
    const int colors = std::stoi(row.at("colors"));
    for (const auto& [width, height] : {std::pair{61, 43}, std::pair{3, 70}}) {
        Picture picture = test::random_picture(random, width, height, colors);
        std::set<Rgb> seen;
        for (const Rgb& color : picture.pixels) seen.insert(color);
        for (int i = static_cast<int>(seen.size()); i < colors && i < width * height; ++i) {  // all of them are there
            picture.pixels[static_cast<std::size_t>(i)] = {i, 255 - i, 3};
        }
        write_ppm("b.ppm", picture);
        test::run_command("ppmtopgm b.ppm >m.pgm");
        int status = -1;
        test::run_command("(" + row.at("make") + ") 2>said", &status);
        ASSERT_EQ(status, 0) << test::read_file("said");
        const Picture truth = test::read_elsewhere(row.at("read"));
        ASSERT_EQ(truth.width, width);

        IMG_report image;
        ASSERT_EQ(IMG_read("x", &image, 0), 1);
        EXPECT_EQ(image.width, width);
        EXPECT_EQ(image.height, height);
        EXPECT_EQ(image.depth, std::stoi(row.at("depth")));
        EXPECT_EQ(image.bits_pixel, std::stoi(row.at("bits_pixel")));
        EXPECT_EQ(image.color_type, std::stoi(row.at("color_type")));
        EXPECT_EQ(image.num_colors, static_cast<int>(image.colors.size()));
        EXPECT_EQ(image.colors.empty(), row.at("palette") == "0");
        const int tolerance = std::stoi(row.at("tolerance"));
        EXPECT_LE(test::difference(test::unpack(image), truth), tolerance);

        IMG_report asked;
        ASSERT_EQ(IMG_read("x", &asked, 1), 1);
        EXPECT_EQ(asked.width, width);
        EXPECT_EQ(asked.num_colors, image.num_colors);
        EXPECT_EQ(asked.data.empty(), row.at("name").substr(0, 3) != "XWD");

        IMG_report passed_on;
        ASSERT_EQ(PNG_write("y.png", &image), 1);
        EXPECT_LE(test::difference(test::read_elsewhere("pngtopnm y.png"), truth), tolerance);
        if (image.bits_pixel > 32 || image.depth > 32 || image.bits_pixel < image.depth) return;
        ASSERT_EQ(XWD_write("y.xwd", &image), 1);
        // Of 24 bits with the lowest byte first xwdtopnm turns every second pixel's colours round.
        const bool low_first = image.bits_pixel == 24 && image.byte_order == 0;
        const std::string read = low_first ? "convert y.xwd ppm:-" : "xwdtopnm y.xwd";
        EXPECT_LE(test::difference(test::read_elsewhere(read), truth), tolerance);
    }
}

INSTANTIATE_TEST_SUITE_P(Made, Foreign, ::testing::ValuesIn(test::data_table("image/made_elsewhere.tsv")),
                         [](const auto& row) { return test::case_name(row.param.at("name")); });

}  // namespace
}  // namespace zav
