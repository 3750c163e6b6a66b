#pragma once

/// Parts of a GIF file that single pictures and animations share.

#include <string>

#include "image/img_pixels.h"

namespace zav {

/// Largest side of a picture.
constexpr int GIF_MOST_SIDE = 65535;

/// Bits of a palette index for so many colours, at least 1.
int gif_index_bits(int colors);

void gif_append_short(std::string& out, int value);
/// The signature, the screen and the palette of 2^`bits` colours.
void gif_append_head(std::string& out, int width, int height, const Pixel_color* colors, int bits);

/// Where a picture lies on the screen.
struct Gif_place {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};
/// The descriptor of a picture, up to its code size.
void gif_append_place(std::string& out, const Gif_place& place, bool interlaced, int code_size);

}  // namespace zav
