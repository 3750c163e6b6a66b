#pragma once

#include <array>
#include <string>

namespace zav::test {

/// A picture in memory, its rows from the top.
struct Raster {
    int width = 0, height = 0;
    std::string bytes;  ///< red, green, blue and alpha of each pixel

    std::array<int, 4> at(int x, int y) const;
    /// The pixel as "RRGGBBAA".
    std::string hex(int x, int y) const;
};

/// Reads a picture through ImageMagick's `convert`, whose operations may stand in `operations`.
Raster read_raster(const std::string& file, const std::string& operations = "");

/// The first page of a PostScript file of a letter sheet on its side, at two pixels a point, cut to what a picture of
/// 1536x1176 pixels shows.
Raster read_sheet(const std::string& file);

/// Pixels that differ although neither picture has an edge within two pixels of them; all of them where the sizes
/// differ.
int differences_off_edges(const Raster& a, const Raster& b);

}  // namespace zav::test
