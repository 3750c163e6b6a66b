#pragma once

/// The codes of GIF: strings of pixels as numbers of 3 to 12 bits, the lowest bit first (GIF89a, appendix F).

#include <array>
#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace zav {

constexpr int LZW_MOST_BITS = 12;
constexpr int LZW_TABLE_SIZE = 1 << LZW_MOST_BITS;

/// Decodes a stream, its sub-blocks joined.
class Lzw_reader {
  public:
    /// `code_size` from 1 to 8.
    Lzw_reader(const std::vector<unsigned char>& stream, int code_size);

    /// The first `most` pixels, or as many as came. False if a code stands there that nothing defines.
    bool decode(std::vector<unsigned char>& pixels, std::size_t most);

  private:
    struct Place {
        std::size_t start = 0;  ///< of the string among the pixels
        std::size_t length = 0;
    };

    const std::vector<unsigned char>& stream_;
    std::size_t at_ = 0;
    std::uint64_t bits_ = 0;  ///< waiting
    int waiting_ = 0;         ///< number of these
    const int code_size_;
    const int clear_code_;
    const int end_info_code_;
    int coded_size_ = 0;
    int table_ptr_ = 0;  ///< next free entry
    std::array<Place, LZW_TABLE_SIZE> table_{};

    int read_data();
    void clear_table();
    bool is_defined(int code, bool first) const;
    void add_entry(const Place& previous);
};

/// Encodes pixels into sub-blocks.
class Lzw_writer {
  public:
    /// `code_size` from 2 to 8. The sub-blocks go behind what `out` holds at the end.
    Lzw_writer(std::string& out, int code_size);

    /// Takes further pixels, all below 2^code_size.
    void add(const unsigned char* pixels, std::size_t count);
    /// Writes what waits, and the end.
    void finish();

  private:
    /// Slots of the table of strings, four for each string, so that most are found at once.
    static constexpr std::size_t SLOTS = 4 * LZW_TABLE_SIZE;

    std::string& out_;
    std::vector<unsigned char> stream_;  ///< the codes, with room for further ones
    std::size_t size_ = 0;               ///< whole bytes in it
    std::uint64_t temp_data_ = 0;        ///< bits behind these
    int data_bits_ = 0;                  ///< number of them, below 8
    const int code_size_;
    const int clear_code_;
    const int end_info_code_;
    int coded_size_ = 0;
    int h_table_ind_ = 0;  ///< next code to assign
    int prev_data_ = -1;   ///< code of the string matched so far
    std::array<std::uint32_t, SLOTS> h_table_{};
    /// The string made last of each code and a pixel behind it, tried first: in runs it is the one.
    struct Latest {
        short pixel = -1;
        short code = 0;
    };
    std::array<Latest, LZW_TABLE_SIZE> latest_{};

    void out_code(int code);
    void clear_table();
};

}  // namespace zav
