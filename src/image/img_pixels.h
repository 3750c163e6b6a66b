#pragma once

/// The pixels of a record as numbers, whatever their packing, and the colours of those numbers.

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

namespace zav {

struct IMG_report;

using Pixel_value = std::uint32_t;

/// How pixels stand in the lines of a record.
class Pixel_layout {
  public:
    explicit Pixel_layout(const IMG_report& image);

    /// Bits from one pixel to the next, 0 for a packing that nothing knows.
    int bits() const { return bits_; }
    /// Pixels that a line has room for.
    int line_pixels() const { return line_pixels_; }
    /// True for values of three bytes, whose mean is their grey; else their lowest byte is.
    bool is_mixed() const { return packing_ == Packing::mixed || packing_ == Packing::deep; }

    /// The first `count` values of a line.
    void read(const unsigned char* line, std::size_t count, Pixel_value* values) const;
    /// Puts indices in the place of the first `count` pixels of a line, other bytes of a pixel cleared.
    void store(unsigned char* line, std::size_t count, const unsigned char* indices) const;

  private:
    enum class Packing {
        unknown,
        mixed,  ///< three bytes of a pixel of four
        whole,  ///< all four bytes
        three,
        two,
        one,
        deep,  ///< components of two bytes, the higher one counts
        nibble,
        pair,
        bit,
    };

    Packing packing_ = Packing::unknown;
    int bits_ = 0;
    int line_pixels_ = 0;
    std::size_t bytes_ = 0;            ///< of a pixel, where it takes whole ones
    std::array<std::size_t, 4> at_{};  ///< places of a value's bytes in a pixel, the highest first
    std::size_t parts_ = 0;            ///< number of these
    std::size_t index_at_ = 0;         ///< place of an index in a pixel
    bool low_bit_first_ = true;

    void choose(const IMG_report& image);
    void set_bytes(Packing packing, std::size_t bytes, const std::vector<std::size_t>& at);
    void set_small(Packing packing, int bits);
    int shift_of(std::size_t x) const;
};

using Pixel_color = std::array<unsigned char, 3>;

/// Red, green and blue, 0 to 255, of the pixel values of a record.
class Pixel_colors {
  public:
    explicit Pixel_colors(const IMG_report& image);

    Pixel_color of(Pixel_value value) const;

  private:
    struct Mask {
        Pixel_value bits = 0;
        int shift = 0;  ///< down to bit 0
        int left = 0;   ///< then up to 8 bits, below 0 down
    };

    const IMG_report& image_;
    bool indexed_ = false;
    std::array<Mask, 3> masks_{};
    Pixel_value grey_max_ = 0;  ///< white of a grey picture, 0 for another
};

}  // namespace zav
