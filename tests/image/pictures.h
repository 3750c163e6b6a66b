#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <vector>

#include "image/zavimg.h"

namespace zav::test {

using Rgb = std::array<int, 3>;

/// A picture as its colours, from which records of all kinds are made.
struct Picture {
    int width = 0;
    int height = 0;
    std::vector<Rgb> pixels;

    const Rgb& at(int x, int y) const { return pixels[static_cast<std::size_t>(y * width + x)]; }
    Rgb& at(int x, int y) { return pixels[static_cast<std::size_t>(y * width + x)]; }
};

/// Random patches of at most `colors` colours, so that both long runs and noise are there.
Picture random_picture(std::mt19937& random, int width, int height, int colors);

/// The picture that a command writes in a portable format.
Picture read_elsewhere(const std::string& command);

/// Ways in which an X server may hand over a picture.
struct Packing {
    const char* name;
    int depth;
    int bits_pixel;
    int byte_order;
    std::array<unsigned, 3> masks;  ///< all 0: through a palette
};
extern const std::vector<Packing> PACKINGS;

/// The picture as a record, its lines padded to `pad` bytes. Colours that a packing can't hold are changed in
/// `picture`.
IMG_report pack(Picture& picture, const Packing& packing, int pad);

/// A record of one byte a pixel with the palette of the picture.
IMG_report indexed(const Picture& picture);

/// The largest difference of a component, 256 where the sizes differ.
int difference(const Picture& a, const Picture& b);

/// The colours of a record, worked out bit by bit.
Picture unpack(const IMG_report& image);

}  // namespace zav::test
