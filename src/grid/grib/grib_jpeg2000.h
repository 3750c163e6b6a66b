#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace zav {

/// First component of an image.
struct Jpeg2000Image {
    int x0 = 0;  ///< its upper left corner on the reference grid
    int y0 = 0;
    int width = 0;
    int height = 0;
    std::vector<std::int32_t> values;  ///< rows from the top, width values each
};

/// Decodes a JPEG 2000 codestream (ISO/IEC 15444-1) in memory, a single grey component. Its main header is looked at
/// first: an image of more than `max_points` points, or a coding that would take memory out of all proportion, is
/// refused before anything is allocated for it. False on any failure; nothing is printed.
bool jpeg2000_decode(const unsigned char* data, std::size_t size, std::size_t max_points, Jpeg2000Image* image);

}  // namespace zav
