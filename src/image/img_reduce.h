#pragma once

/// Pictures of many colours brought to a palette that comes near to them.

#include <array>
#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <vector>

#include "image/img_pixels.h"

namespace zav {

struct IMG_report;

/// Counts the colours of pictures and chooses a palette for them (median cut: the box of colours with the largest
/// spread is cut in two at its mean, until there are enough). The same pictures always give the same palette.
class Color_reducer {
  public:
    /// Adds the colours of a picture.
    void count(const IMG_report& image);
    /// Adds a colour that so many pixels have.
    void add(const Pixel_color& color, std::uint64_t pixels);
    /// Chooses at most `most` colours: exactly those counted if they are no more.
    const std::vector<Pixel_color>& choose(std::size_t most);
    /// Index of the colour chosen that is nearest.
    int index_of(const Pixel_color& color);

  private:
    struct Counted {
        Pixel_color color{};
        std::uint64_t pixels = 0;
    };
    /// A box of colours: a part of `colors_`.
    struct Box {
        std::size_t first = 0;
        std::size_t last = 0;  ///< one behind
        std::size_t part = 0;  ///< component along which it is to be cut
        double spread = 0.0;   ///< sum of squared distances to the mean along that
        double mean = 0.0;     ///< of the component
    };

    std::unordered_map<std::uint32_t, std::size_t> places_;  ///< of colours in `colors_`
    std::vector<Counted> colors_;
    std::vector<Pixel_color> chosen_;
    std::unordered_map<std::uint32_t, int> nearest_;

    Box make_box(std::size_t first, std::size_t last) const;
    void cut(std::vector<Box>& boxes, std::size_t which);
    Pixel_color color_of(const Box& box) const;
};

/// The colours of a picture, row by row.
std::vector<Pixel_color> img_colors(const IMG_report& image);

/// Gives a picture of more colours than a palette holds a palette of 256; another stays as it is.
void img_reduce_colors(IMG_report* image);

}  // namespace zav
