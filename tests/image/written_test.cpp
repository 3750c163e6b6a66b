// Pictures of all packings written in all formats, read by other programs and by our own readers.
#include <gtest/gtest.h>

#include "image/pictures.h"
#include "support/support.h"

namespace zav {
namespace {

using test::Picture;

struct Format {
    const char* name;
    const char* file;
    int (*write)(const std::string& filename, IMG_report* image);
    const char* check;      ///< a program that examines the file
    const char* elsewhere;  ///< a program that reads it
};

const std::vector<Format> FORMATS = {
    {"GIF", "x.gif", GIF_write, "gifsicle --info -o info.txt x.gif", "giftopnm x.gif"},
    {"GIF interlaced", "x.gif",
     [](const std::string& name, IMG_report* image) {
         GIF_interlace(1);
         const int result = GIF_write(name, image);
         GIF_interlace(0);
         return result;
     },
     "gifsicle --info -o info.txt x.gif", "giftopnm x.gif"},
    {"PNG", "x.png", PNG_write, "pngcheck -q x.png", "pngtopnm x.png"},
    {"XWD", "x.xwd", XWD_write, "xwdtopnm -quiet x.xwd", "xwdtopnm x.xwd"},
};

using Parameters = std::tuple<test::Packing, Format>;

class Written : public test::TempDirTest, public ::testing::WithParamInterface<Parameters> {};

TEST_P(Written, IsReadAlikeElsewhere) {
    const auto& [packing, format] = GetParam();
    std::mt19937 random(7);
    const bool is_xwd = std::string(format.name) == "XWD";
    // Of 24 bits with the lowest byte first xwdtopnm turns every second pixel's colours round.
    const std::string elsewhere = is_xwd && packing.bits_pixel == 24 ? "convert x.xwd ppm:-" : format.elsewhere;
    // It stretches components that our formats shift, so that they differ in bits which the packing hasn't.
    const int tolerance = !is_xwd ? 0 : packing.depth == 15 || packing.depth == 16 ? 7 : packing.depth == 30 ? 1 : 0;
    const int colors = packing.depth == 1 ? 2 : packing.depth == 4 ? 16 : 200;
    for (const auto& [width, height, pad] :
         std::vector<std::array<int, 3>>{{37, 29, 4}, {1, 1, 1}, {64, 3, 1}, {7, 40, 2}}) {
        SCOPED_TRACE(std::to_string(width) + "x" + std::to_string(height));
        Picture picture = test::random_picture(random, width, height, colors);
        IMG_report image = test::pack(picture, packing, pad);
        const IMG_report before = image;
        ASSERT_EQ(format.write(format.file, &image), 1);
        int status = -1;
        const std::string said = test::run_command(std::string(format.check) + " 2>&1 >/dev/null", &status);
        EXPECT_EQ(status, 0) << said;
        EXPECT_LE(test::difference(test::read_elsewhere(elsewhere), picture), tolerance);

        IMG_report again;
        ASSERT_EQ(IMG_read(format.file, &again, 0), 1);
        if (is_xwd) {
            EXPECT_EQ(again.data, before.data);
            EXPECT_EQ(again.color_type, before.color_type);
            EXPECT_EQ(again.blu, before.blu);
        } else {
            EXPECT_EQ(test::unpack(again).pixels, picture.pixels);
        }
        // GIF leaves indices in the place of the pixels, the others the picture.
        if (format.file[2] != 'g') {
            EXPECT_EQ(image.data, before.data);
        }
    }
}

INSTANTIATE_TEST_SUITE_P(All, Written,
                         ::testing::Combine(::testing::ValuesIn(test::PACKINGS), ::testing::ValuesIn(FORMATS)),
                         [](const auto& row) {
                             return test::case_name(std::string(std::get<0>(row.param).name) + " " +
                                                    std::get<1>(row.param).name);
                         });

}  // namespace
}  // namespace zav
