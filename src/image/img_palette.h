#pragma once

/// A picture brought to a palette of at most 256 colours, for GIF and PNG.

#include <array>
#include <cstddef>
#include <vector>

#include "image/img_pixels.h"

namespace zav {

/// Colours that a palette holds.
constexpr int PALETTE_SIZE = 256;

/// An index for each pixel, and what the indices stand for, numbered as the pixel values are met.
struct Indexed_picture {
    int count = 0;                                   ///< of colours
    std::array<Pixel_value, PALETTE_SIZE> values{};  ///< the pixel value of each
    std::array<Pixel_color, PALETTE_SIZE> colors{};  ///< its components; black beyond `count`
    std::size_t width = 0;                           ///< of a row of indices
    std::vector<unsigned char> indices;              ///< row by row
    std::size_t lost = 0;                            ///< pixels whose value found no place: they have index 0

    /// Index of a pixel value, -1 for one that isn't there.
    int find(Pixel_value value) const;
};

/// The picture of a record, with `padded` the rest of its lines too, as pixels of value 0.
Indexed_picture img_index_pixels(const IMG_report& image, bool padded);

/// Pixel value of the record's background, -1 if it isn't known.
int img_background(const IMG_report& image);

}  // namespace zav
