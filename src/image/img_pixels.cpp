// Pixels of all packings.

#include "image/img_pixels.h"

#include <algorithm>
#include <bit>
#include <climits>
#include <cstring>

#include "frame/mess.h"
#include "image/zavimg.h"

namespace zav {
namespace {

bool has_masks(const IMG_report& image) { return (image.red | image.grn | image.blu) != 0; }

/// Neither a palette nor masks say what a pixel means.
bool is_grey(const IMG_report& image) { return image.colors.empty() && !has_masks(image); }

}  // namespace

Pixel_layout::Pixel_layout(const IMG_report& image) {
    choose(image);
    if (bits_ == 0 || image.bytes_line < 0) return;
    line_pixels_ = static_cast<int>(std::min<long>(8L * image.bytes_line / bits_, INT_MAX));
}

void Pixel_layout::set_bytes(Packing packing, std::size_t bytes, const std::vector<std::size_t>& at) {
    packing_ = packing;
    bytes_ = bytes;
    bits_ = static_cast<int>(8 * bytes);
    parts_ = at.size();
    std::copy(at.begin(), at.end(), at_.begin());
}

void Pixel_layout::set_small(Packing packing, int bits) {
    packing_ = packing;
    bits_ = bits;
}

void Pixel_layout::choose(const IMG_report& image) {
    constexpr int DEPTH_DEEP = 48;  // three components of 16 bits
    const bool high_first = image.byte_order != 0;
    const int depth = image.depth;
    const int bits = image.bits_pixel != 0 ? image.bits_pixel : depth;
    low_bit_first_ = image.bit_order == 0;

    if (depth == DEPTH_DEEP && bits == 64) return set_bytes(Packing::deep, 8, {2, 4, 6});
    if (depth == DEPTH_DEEP && bits == 48) return set_bytes(Packing::deep, 6, {0, 2, 4});
    if (depth == DEPTH_DEEP && bits == 32) return set_bytes(Packing::one, 4, {0});  // grey and alpha
    if (depth == 24 && bits == 16) return set_bytes(Packing::one, 2, {0});          // grey and alpha
    if (depth == 16 && bits == 16 && is_grey(image)) return set_bytes(Packing::one, 2, {high_first ? 0U : 1U});
    if (bits == 32 && ((image.red | image.grn | image.blu) >> 24) != 0) {
        if (high_first) return set_bytes(Packing::whole, 4, {0, 1, 2, 3});
        return set_bytes(Packing::whole, 4, {3, 2, 1, 0});
    }
    if (bits == 32 && high_first) return set_bytes(Packing::mixed, 4, {1, 2, 3});
    if (bits == 32) return set_bytes(Packing::mixed, 4, {2, 1, 0});
    if (depth == 24 && high_first) return set_bytes(Packing::three, 3, {0, 1, 2});
    if (depth == 24) return set_bytes(Packing::three, 3, {2, 1, 0});
    if (depth == 16 || bits == 16) {
        index_at_ = high_first ? 1 : 0;
        if (high_first) return set_bytes(Packing::two, 2, {0, 1});
        return set_bytes(Packing::two, 2, {1, 0});
    }
    if (depth == 8 || bits == 8) return set_bytes(Packing::one, 1, {0});
    if (depth == 4) return set_small(Packing::nibble, 4);
    if (depth == 2) return set_small(Packing::pair, 2);
    if (depth == 1) return set_small(Packing::bit, 1);
}

/// Place of a small pixel in its byte.
int Pixel_layout::shift_of(std::size_t x) const {
    const int in_byte = static_cast<int>(x % static_cast<std::size_t>(8 / bits_)) * bits_;
    return packing_ == Packing::bit && low_bit_first_ ? in_byte : 8 - bits_ - in_byte;
}

void Pixel_layout::read(const unsigned char* line, std::size_t count, Pixel_value* values) const {
    if (bits_ < 8) {
        const unsigned mask = (1U << bits_) - 1U;
        for (std::size_t x = 0; x < count; ++x) {
            values[x] = line[x * static_cast<std::size_t>(bits_) / 8] >> shift_of(x) & mask;
        }
    } else if (parts_ == 1) {
        for (std::size_t x = 0; x < count; ++x) values[x] = line[x * bytes_ + at_[0]];
    } else if (parts_ == 3) {
        for (std::size_t x = 0; x < count; ++x, line += bytes_) {
            values[x] = static_cast<Pixel_value>(line[at_[0]] << 16 | line[at_[1]] << 8 | line[at_[2]]);
        }
    } else {
        for (std::size_t x = 0; x < count; ++x, line += bytes_) {
            values[x] = 0;
            for (std::size_t i = 0; i < parts_; ++i) values[x] = values[x] << 8 | line[at_[i]];
        }
    }
}

void Pixel_layout::store(unsigned char* line, std::size_t count, const unsigned char* indices) const {
    if (bits_ == 8) {
        std::memcpy(line, indices, count);
        return;
    }
    if (bits_ > 8) {
        std::memset(line, 0, count * bytes_);
        for (std::size_t x = 0; x < count; ++x) line[x * bytes_ + index_at_] = indices[x];
        return;
    }
    const unsigned mask = (1U << bits_) - 1U;
    for (std::size_t x = 0; x < count; ++x) {
        unsigned char& byte = line[x * static_cast<std::size_t>(bits_) / 8];
        const int shift = shift_of(x);
        byte = static_cast<unsigned char>((byte & ~(mask << shift)) | (indices[x] & mask) << shift);
    }
}

Pixel_colors::Pixel_colors(const IMG_report& image) : image_(image) {
    indexed_ = !image.colors.empty() && (image.color_type != 0 || !has_masks(image));
    if (indexed_) return;
    if (image.depth <= 16 && !has_masks(image)) {
        grey_max_ = image.depth >= 8 ? 255U : (1U << std::max(image.depth, 1)) - 1U;
        return;
    }
    std::array<Pixel_value, 3> bits = {image.red, image.grn, image.blu};
    const bool grey = image.color_type != 0;  // grey and alpha: the value stands for all three
    if (!has_masks(image))
        bits = grey ? std::array<Pixel_value, 3>{0xFF, 0xFF, 0xFF} : std::array<Pixel_value, 3>{0xFF0000, 0xFF00, 0xFF};
    for (std::size_t i = 0; i < masks_.size(); ++i) {
        masks_[i] = {bits[i], bits[i] == 0 ? 0 : std::countr_zero(bits[i]), 8 - std::popcount(bits[i])};
    }
    MESS_print(MESS_DEBUG, "mask: %d-%d %d-%d %d-%d\n", masks_[0].shift, masks_[0].left, masks_[1].shift,
               masks_[1].left, masks_[2].shift, masks_[2].left);
}

Pixel_color Pixel_colors::of(Pixel_value value) const {
    Pixel_color color{};
    if (indexed_) {
        const IMG_color& entry = image_.colors[value < image_.colors.size() ? value : 0];
        const auto byte = [](float part) -> unsigned char {
            return part > 0.0F ? static_cast<unsigned char>(std::min(255.0F * part, 255.0F)) : 0;
        };
        return {byte(entry.r), byte(entry.g), byte(entry.b)};
    }
    if (grey_max_ != 0) {
        color.fill(static_cast<unsigned char>(std::min(value, grey_max_) * 255 / grey_max_));
        return color;
    }
    for (std::size_t i = 0; i < color.size(); ++i) {
        const Mask& mask = masks_[i];
        const Pixel_value part = (value & mask.bits) >> mask.shift;
        color[i] = static_cast<unsigned char>(mask.left >= 0 ? part << mask.left : part >> -mask.left);
    }
    return color;
}

}  // namespace zav
