// Images on PostScript.

#include <algorithm>
#include <array>
#include <cstdio>
#include <string>
#include <vector>

#include "gks/gks_img.h"
#include "gks/gks_tran.h"
#include "gks/ps/gks_ps.h"
#include "image/zavimg.h"

namespace zav {
namespace {

constexpr int SAMPLES_A_LINE = 80;

/// The hexadecimal texts of all pixel values, in the mode of the output.
struct Samples {
    std::array<std::string, 256> pixel;
    std::string white;
};

Samples make_samples(bool color) {
    Samples samples;
    samples.white = color ? "FFFFFF" : "FF";
    for (int value = 0; value < 256; ++value) {
        std::array<char, 8> text{};
        if (!color) {
            std::snprintf(text.data(), text.size(), "%02X", static_cast<unsigned>(value));
        } else {
            const std::array<int, 3> parts = gimage_color(value);
            const auto byte = [&parts](std::size_t i) { return static_cast<unsigned>(parts[i]); };
            std::snprintf(text.data(), text.size(), "%02X%02X%02X", byte(0), byte(1), byte(2));
        }
        samples.pixel[static_cast<std::size_t>(value)] = text.data();
    }
    return samples;
}

/// Text of the sample at a place of the image; white outside it.
const std::string& sample_at(const IMG_report& image, const Samples& samples, int row, int column) {
    const int value = gimage_value(image, row, column);
    return value < 0 ? samples.white : samples.pixel[static_cast<std::size_t>(value)];
}

}  // namespace

void gps_image(const IMG_report* image, int x, int y) {
    if (image == nullptr) return;
    x = std::clamp(x, -GIMAGE_FARTHEST, GIMAGE_FARTHEST);
    y = std::clamp(y, -GIMAGE_FARTHEST, GIMAGE_FARTHEST);
    Gxrect viewport;
    gget_xviewport(&viewport);
    Grectangle place;
    gget_gviewport(&place);
    const int w = viewport.width;
    const int h = viewport.height;
    if (w == 0 || h == 0) return;
    const bool color = gps_get_colorPS() != 0;

    gps_printf("gsave\n");
    gps_printf("%d %d translate\n", place.x, place.y);
    gps_printf("%d %d scale\n", w, h);
    gps_printf("/picstr %d string def\n", w);
    gps_printf("%d %d 8 [ %d 0 0 %d 0 %d ]\n", w, h, w, -h, h);
    gps_printf("{ currentfile picstr readhexstring pop }\n");
    gps_printf(color ? "false 3 colorimage\n" : "image\n");

    const Samples samples = make_samples(color);
    std::string line;
    for (int row = 0; row < h; ++row) {
        line.clear();
        for (int column = 0; column < w; ++column) {
            if (column > 0 && column % SAMPLES_A_LINE == 0) line += '\n';
            line += sample_at(*image, samples, y + row, x + column);
        }
        gps_printf("%s\n", line.c_str());
    }
    gps_printf("grestore\n");
}

}  // namespace zav
