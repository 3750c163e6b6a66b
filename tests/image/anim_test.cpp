// Animated GIF files: each picture as other programs show it, the delays, and how little is stored.
#include <gtest/gtest.h>

#include <algorithm>

#include "image/gif_anim.h"
#include "image/pictures.h"
#include "support/support.h"

namespace zav {
namespace {

using test::Picture;

class Animation : public test::TempDirTest {};

TEST_F(Animation, ShowsItsPicturesForEver) {
    std::mt19937 random(61);
    std::vector<Picture> pictures = {test::random_picture(random, 60, 40, 50)};
    pictures.push_back(pictures[0]);
    for (int y = 5; y < 9; ++y) pictures[1].at(20 + y, y) = {1, 2, 3};
    pictures.push_back(pictures[1]);
    pictures.push_back(test::random_picture(random, 60, 40, 50));
    GIF_anim animation;
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        // The same pictures in different packings.
        ASSERT_EQ(animation.add(test::pack(pictures[i], test::PACKINGS[i], 4), static_cast<int>(10 * i) + 300), 1);
    }
    ASSERT_EQ(animation.write("x.gif"), 1);
    const std::string info = test::run_command("gifsicle --info x.gif 2>&1");
    EXPECT_NE(info.find("4 images"), std::string::npos) << info;
    EXPECT_NE(info.find("loop forever"), std::string::npos);
    EXPECT_NE(info.find("image #1 4x4 at 25,5\n    disposal asis delay 3.10s"), std::string::npos);
    EXPECT_NE(info.find("image #2 1x1"), std::string::npos);
    test::run_command("gifsicle --unoptimize x.gif >y.gif");
    for (std::size_t i = 0; i < pictures.size(); ++i) {
        const Picture shown = test::read_elsewhere("gifsicle y.gif '#" + std::to_string(i) + "' | giftopnm");
        EXPECT_EQ(test::difference(shown, pictures[i]), 0) << i;
    }
}

TEST_F(Animation, TakesPicturesOfOneSizeAndManyColours) {
    GIF_anim animation;
    test::capture([&] { EXPECT_EQ(animation.write("x.gif"), 0); });
    Picture all{100, 50, {}};
    for (int i = 0; i < 5000; ++i) all.pixels.push_back({i % 250, i / 20, 90});
    ASSERT_EQ(animation.add(test::pack(all, test::PACKINGS[0], 4), 5), 1);
    Picture other = all;
    std::reverse(other.pixels.begin(), other.pixels.end());
    ASSERT_EQ(animation.add(test::pack(other, test::PACKINGS[0], 4), 5), 1);
    Picture small{99, 50, std::vector<test::Rgb>(99 * 50)};
    const test::Output said =
        test::capture([&] { EXPECT_EQ(animation.add(test::pack(small, test::PACKINGS[0], 4), 5), 0); });
    EXPECT_NE((said.out + said.err).find("99x50 pixels among those of 100x50"), std::string::npos);
    ASSERT_EQ(animation.write("x.gif"), 1);
    EXPECT_LE(test::difference(test::read_elsewhere("gifsicle --unoptimize x.gif '#1' | giftopnm"), other), 24);
    EXPECT_FALSE(std::filesystem::exists("y.gif"));
}

}  // namespace
}  // namespace zav
