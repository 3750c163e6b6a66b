// Pictures of many colours, dumped with a palette.
#include <gtest/gtest.h>

#include <cmath>
#include <set>

#include "image/img_reduce.h"
#include "image/pictures.h"
#include "support/support.h"

namespace zav {
namespace {

using test::Picture;
using test::Rgb;

/// A chart with smoothed lines: flat areas, and between them mixtures of their colours.
Picture smooth_chart() {
    const std::vector<Rgb> flat = {{255, 255, 255}, {30, 60, 200}, {230, 40, 30}, {250, 220, 60}, {0, 0, 0}};
    Picture picture{240, 160, {}};
    for (int y = 0; y < 160; ++y) {
        for (int x = 0; x < 240; ++x) {
            const double band = 2.0 + 2.0 * std::sin(x / 31.0) * std::cos(y / 23.0);
            const auto low = static_cast<std::size_t>(band);
            const double edge = std::min(1.0, (band - static_cast<double>(low)) * 4.0);
            Rgb color{};
            for (std::size_t i = 0; i < 3; ++i) {
                color[i] = static_cast<int>(flat[low][i] * edge + flat[low == 0 ? 4 : low - 1][i] * (1 - edge) + 0.5);
            }
            picture.pixels.push_back(color);
        }
    }
    return picture;
}

/// All mixtures, none of them often.
Picture rainbow() {
    Picture picture{128, 128, {}};
    for (int i = 0; i < 128 * 128; ++i) picture.pixels.push_back({i % 128 * 2, i / 128 * 2, (i * 37) % 256});
    return picture;
}

double mean_error(const Picture& a, const Picture& b) {
    double sum = 0;
    for (std::size_t i = 0; i < a.pixels.size(); ++i) {
        for (std::size_t part = 0; part < 3; ++part) sum += std::pow(a.pixels[i][part] - b.pixels.at(i)[part], 2);
    }
    return std::sqrt(sum / static_cast<double>(3 * a.pixels.size()));
}

class Reduced : public test::TempDirTest {
  protected:
    ~Reduced() override {
        IMG_hooks() = {};
        GIF_transparent(0);
    }
    static Picture dumped;
};
Picture Reduced::dumped;

TEST_F(Reduced, DumpsComeNearToTheirPicture) {
    IMG_hooks().get_picture = [](IMG_report* image) {
        *image = test::pack(dumped, test::PACKINGS[1], 4);
        return 1;
    };
    for (const Picture& picture : {smooth_chart(), rainbow()}) {
        dumped = picture;
        ASSERT_GT(std::set<Rgb>(picture.pixels.begin(), picture.pixels.end()).size(), 400U);
        const test::Output said = test::capture([&] {
            ASSERT_EQ(GIF_dump("x.gif"), 1);
            ASSERT_EQ(PNG_dump("x.png"), 1);
            ASSERT_EQ(GIF_dump("y.gif"), 1);
            ASSERT_EQ(XWD_dump("x.xwd"), 1);
        });
        EXPECT_EQ(said.out + said.err, "");
        const Picture gif = test::read_elsewhere("giftopnm x.gif");
        EXPECT_EQ(gif.pixels, test::read_elsewhere("pngtopnm x.png").pixels);
        EXPECT_EQ(test::read_file("x.gif"), test::read_file("y.gif"));
        const Picture peer = test::read_elsewhere("convert xwd:x.xwd +dither -colors 256 gif:- | giftopnm");
        EXPECT_LE(mean_error(gif, picture), 1.1 * mean_error(peer, picture));
    }
}

TEST_F(Reduced, FlatAreasKeepTheirColour) {
    Picture picture = smooth_chart();
    const std::vector<Rgb> before = picture.pixels;
    IMG_report image = test::pack(picture, test::PACKINGS[0], 4);
    IMG_hooks().background = [] { return 0x1E3CC8; };
    img_reduce_colors(&image);
    const Picture reduced = test::unpack(image);
    const Rgb blue = {30, 60, 200};
    std::size_t flat = 0;
    for (std::size_t i = 0; i < before.size(); ++i) {
        if (before[i] != blue) continue;
        EXPECT_EQ(reduced.pixels[i], blue);
        flat++;
    }
    EXPECT_GT(flat, 1000U);
    EXPECT_EQ(image.colors.at(static_cast<std::size_t>(image.trans_color)).b, static_cast<float>(200 / 255.0));
}

}  // namespace
}  // namespace zav
