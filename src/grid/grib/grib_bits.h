#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace zav {

/// Reads values of any width up to 32 bits from bytes in memory, most significant bit first. A value costs one load of
/// 8 bytes, except at the very end of the data.
class BitReader {
  public:
    BitReader() = default;
    BitReader(const unsigned char* data, std::size_t size) : data_(data), bits_(static_cast<std::uint64_t>(size) * 8) {}

    /// True if the next `count` bits are there.
    bool has(std::uint64_t count) const { return count <= bits_ - position_; }

    /// The next `width` bits (0 to 32); -1 when they aren't there.
    std::int64_t read(unsigned width) {
        if (!has(width)) return -1;
        if (width == 0) return 0;
        const std::size_t byte = static_cast<std::size_t>(position_ >> 3);
        const unsigned shift = static_cast<unsigned>(position_ & 7);
        position_ += width;
        const std::uint64_t word = load(byte) << shift;
        return static_cast<std::int64_t>(word >> (64 - width));
    }

    /// Moves on to the next whole byte.
    void align() { position_ = (position_ + 7) & ~std::uint64_t{7}; }

    /// Passes over `count` bits; false if they aren't there.
    bool skip(std::uint64_t count) {
        if (!has(count)) return false;
        position_ += count;
        return true;
    }

    std::uint64_t position() const { return position_; }

  private:
    std::uint64_t load(std::size_t byte) const {
        std::uint64_t word = 0;
        const std::size_t left = static_cast<std::size_t>(bits_ >> 3) - byte;
        std::memcpy(&word, data_ + byte, left >= sizeof(word) ? sizeof(word) : left);
        if constexpr (std::endian::native == std::endian::little) word = __builtin_bswap64(word);
        return word;
    }

    const unsigned char* data_ = nullptr;
    std::uint64_t bits_ = 0;
    std::uint64_t position_ = 0;
};

/// Big-endian numbers at their published octet numbers. Octets behind the end read as 0. Signed numbers are sign and
/// magnitude, as GRIB has them.
class Octets {
  public:
    /// `data` holds the octets from number `first` on.
    Octets(const unsigned char* data, std::size_t size, int first) : data_(data), size_(size), first_(first) {}

    int u8(int number) const {
        const std::size_t at = static_cast<std::size_t>(number - first_);
        return number >= first_ && at < size_ ? data_[at] : 0;
    }
    int u16(int number) const { return u8(number) << 8 | u8(number + 1); }
    int u24(int number) const { return u16(number) << 8 | u8(number + 2); }
    std::uint32_t u32(int number) const {
        return static_cast<std::uint32_t>(u16(number)) << 16 | static_cast<std::uint32_t>(u16(number + 2));
    }
    int s8(int number) const { return u8(number) & 0x80 ? -(u8(number) & 0x7F) : u8(number); }
    int s16(int number) const { return u8(number) & 0x80 ? -(u16(number) & 0x7FFF) : u16(number); }
    int s24(int number) const { return u8(number) & 0x80 ? -(u24(number) & 0x7FFFFF) : u24(number); }
    int s32(int number) const {
        const int magnitude = static_cast<int>(u32(number) & 0x7FFFFFFFU);
        return u8(number) & 0x80 ? -magnitude : magnitude;
    }
    /// The bytes from octet `number` on, with at least `count` of them; null if they aren't there.
    const unsigned char* bytes(int number, std::size_t count) const {
        const std::size_t at = static_cast<std::size_t>(number - first_);
        return number >= first_ && at <= size_ && count <= size_ - at ? data_ + at : nullptr;
    }
    /// Number of the octet behind the last one.
    int end() const { return first_ + static_cast<int>(size_); }

  private:
    const unsigned char* data_;
    std::size_t size_;
    int first_;
};

}  // namespace zav
