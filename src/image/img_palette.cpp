// The palette of a picture, and the index of each pixel.

#include "image/img_palette.h"

#include <algorithm>

#include "image/zavimg.h"

namespace zav {
namespace {

/// Indices by pixel value: a table with open addressing, four times as large as what it holds.
class Value_table {
  public:
    explicit Value_table(Indexed_picture& picture) : picture_(picture) {
        slots_.fill(EMPTY);
        low_.fill(EMPTY);
    }

    /// Index of a value of a byte that was taken before, else below 0.
    int known(Pixel_value value) const { return value < low_.size() ? low_[value] : EMPTY; }

    /// Index of a value, a new one if it is met first; below 0 with the palette full.
    int take(Pixel_value value) {
        std::size_t slot = (value * 2654435761U) >> 22;  // Knuth's multiplicative hash
        while (slots_[slot] != EMPTY) {
            if (picture_.values[static_cast<std::size_t>(slots_[slot])] == value) return slots_[slot];
            slot = (slot + 1) % slots_.size();
        }
        if (picture_.count == PALETTE_SIZE) return -1;
        slots_[slot] = static_cast<short>(picture_.count);
        if (value < low_.size()) low_[value] = slots_[slot];
        picture_.values[static_cast<std::size_t>(picture_.count)] = value;
        return picture_.count++;
    }

  private:
    static constexpr short EMPTY = -1;

    Indexed_picture& picture_;
    std::array<short, 1024> slots_{};
    std::array<short, 256> low_{};
};

}  // namespace

int Indexed_picture::find(Pixel_value value) const {
    const auto end = values.begin() + count;
    const auto place = std::find(values.begin(), end, value);
    return place == end ? -1 : static_cast<int>(place - values.begin());
}

int img_background(const IMG_report& image) {
    if (image.trans_color >= 0) return image.trans_color;
    return IMG_hooks().background != nullptr ? IMG_hooks().background() : -1;
}

Indexed_picture img_index_pixels(const IMG_report& image, bool padded) {
    Indexed_picture picture;
    const Pixel_layout layout(image);
    const auto seen = static_cast<std::size_t>(image.width);
    picture.width = padded ? static_cast<std::size_t>(layout.line_pixels()) : seen;
    picture.indices.resize(picture.width * static_cast<std::size_t>(image.height));
    Value_table table(picture);
    std::vector<Pixel_value> row(picture.width);
    unsigned char* to = picture.indices.data();
    for (int y = 0; y < image.height; ++y) {
        const auto line = static_cast<std::size_t>(y) * static_cast<std::size_t>(image.bytes_line);
        layout.read(image.data.data() + line, seen, row.data());
        for (std::size_t x = 0; x < row.size(); ++x, ++to) {
            if (const int known = table.known(row[x]); known >= 0) {
                *to = static_cast<unsigned char>(known);
                continue;
            }
            if (x > 0 && row[x] == row[x - 1]) {  // most of a chart: as its neighbour
                *to = to[-1];
                picture.lost += row[x] != picture.values[*to];
                continue;
            }
            const int index = table.take(row[x]);
            picture.lost += index < 0;
            *to = static_cast<unsigned char>(std::max(index, 0));
        }
    }
    const Pixel_colors colors(image);
    for (int i = 0; i < picture.count; ++i) {
        const auto at = static_cast<std::size_t>(i);
        picture.colors[at] = colors.of(picture.values[at]);
    }
    if (picture.lost > 0 && picture.width > seen) return img_index_pixels(image, false);
    return picture;
}

}  // namespace zav
