// The codes of GIF, both ways.

#include "image/gif_lzw.h"

#include <algorithm>
#include <cstring>

namespace zav {
namespace {

constexpr std::size_t FIRST_PIXELS = 1U << 16;
/// A string may run over what is wanted.
constexpr std::size_t LONGEST_STRING = LZW_TABLE_SIZE;
/// Bytes that are copied at a time.
constexpr std::size_t STEP = 16;
constexpr std::size_t ROOM = LONGEST_STRING + STEP;

/// A sub-block of the writer holds one byte less than the format allows.
constexpr std::size_t BLOCK_BYTES = 254;

/// A slot of the writer's table: the string's code below its key, never 0 as no string has the code 0.
constexpr std::uint32_t EMPTY = 0;

}  // namespace

Lzw_reader::Lzw_reader(const std::vector<unsigned char>& stream, int code_size)
    : stream_(stream), code_size_(code_size), clear_code_(1 << code_size), end_info_code_(clear_code_ + 1) {
    clear_table();
}

void Lzw_reader::clear_table() {
    coded_size_ = code_size_ + 1;
    table_ptr_ = end_info_code_ + 1;
}

/// The next code, -1 at the end of the stream.
int Lzw_reader::read_data() {
    while (waiting_ < coded_size_) {
        if (at_ == stream_.size()) return -1;
        bits_ |= static_cast<std::uint64_t>(stream_[at_++]) << waiting_;
        waiting_ += 8;
    }
    const int code = static_cast<int>(bits_ & ((1U << coded_size_) - 1U));
    bits_ >>= coded_size_;
    waiting_ -= coded_size_;
    return code;
}

/// The string of the next entry may be used while it is being made, but for the first code behind a clear code.
bool Lzw_reader::is_defined(int code, bool first) const {
    if (first) return code < clear_code_;
    return code < table_ptr_ || (code == table_ptr_ && table_ptr_ < LZW_TABLE_SIZE);
}

/// The last string and the pixel behind it. A full table stays as it is until a clear code comes.
void Lzw_reader::add_entry(const Place& previous) {
    if (table_ptr_ == LZW_TABLE_SIZE) return;
    table_[static_cast<std::size_t>(table_ptr_)] = {previous.start, previous.length + 1};
    table_ptr_++;
}

bool Lzw_reader::decode(std::vector<unsigned char>& pixels, std::size_t most) {
    bool valid = true;
    Place previous;  // of length 0 behind a clear code
    std::size_t out = 0;
    pixels.resize(std::min(most, FIRST_PIXELS) + ROOM);
    while (out < most) {
        const int code = read_data();
        if (code < 0 || code == end_info_code_) break;
        if (code == clear_code_) {
            clear_table();
            previous = {};
            continue;
        }
        valid = is_defined(code, previous.length == 0);
        if (!valid) break;
        if (pixels.size() < out + ROOM) pixels.resize(std::min(most, 2 * out) + ROOM);
        unsigned char* to = pixels.data() + out;
        if (previous.length > 0) add_entry(previous);
        if (table_ptr_ == 1 << coded_size_ && coded_size_ < LZW_MOST_BITS) coded_size_++;
        std::size_t length = 1;
        if (code < clear_code_) {
            *to = static_cast<unsigned char>(code);
        } else {
            const Place& string = table_[static_cast<std::size_t>(code)];
            const unsigned char* from = pixels.data() + string.start;
            length = string.length;
            // Its last pixel may be the first that is written here.
            for (std::size_t i = 0; i + 1 < length; i += STEP) std::memmove(to + i, from + i, STEP);
            to[length - 1] = from[length - 1];
        }
        previous = {out, length};
        out += length;
    }
    pixels.resize(std::min(out, most));
    return valid;
}

Lzw_writer::Lzw_writer(std::string& out, int code_size)
    : out_(out),
      stream_(FIRST_PIXELS),
      code_size_(code_size),
      clear_code_(1 << code_size),
      end_info_code_(clear_code_ + 1),
      coded_size_(code_size + 1) {
    clear_table();
}

void Lzw_writer::out_code(int code) {
    temp_data_ |= static_cast<std::uint64_t>(code) << data_bits_;
    data_bits_ += coded_size_;
    // All waiting bits are stored, but only whole bytes count: that is quicker than to ask how many there are.
    if (stream_.size() < size_ + sizeof temp_data_) stream_.resize(2 * stream_.size());
    for (std::size_t i = 0; i < 4; ++i) stream_[size_ + i] = static_cast<unsigned char>(temp_data_ >> 8 * i);
    size_ += static_cast<std::size_t>(data_bits_ / 8);
    temp_data_ >>= data_bits_ / 8 * 8;
    data_bits_ %= 8;
    if (h_table_ind_ > (1 << coded_size_) - 1 && coded_size_ < LZW_MOST_BITS) coded_size_++;
}

void Lzw_writer::clear_table() {
    out_code(clear_code_);
    h_table_.fill(EMPTY);
    latest_.fill({});
    coded_size_ = code_size_ + 1;
    h_table_ind_ = end_info_code_ + 1;
}

void Lzw_writer::add(const unsigned char* pixels, std::size_t count) {
    if (count == 0) return;
    std::size_t i = 0;
    if (prev_data_ < 0) prev_data_ = pixels[i++];
    for (; i < count; ++i) {
        Latest& latest = latest_[static_cast<std::size_t>(prev_data_)];
        if (latest.pixel == pixels[i]) {
            prev_data_ = latest.code;
            continue;
        }
        const std::uint32_t hash_data = static_cast<std::uint32_t>(prev_data_) | static_cast<std::uint32_t>(pixels[i])
                                                                                     << 12;
        std::size_t slot = (hash_data * 2654435761U) >> 18;  // Knuth's multiplicative hash, to 14 bits
        while (h_table_[slot] != EMPTY && h_table_[slot] >> 12 != hash_data) slot = (slot + 1) % SLOTS;
        if (h_table_[slot] != EMPTY) {
            prev_data_ = static_cast<int>(h_table_[slot] & 0xFFFU);
            continue;
        }
        out_code(prev_data_);
        prev_data_ = pixels[i];
        if (h_table_ind_ >= LZW_TABLE_SIZE) {
            clear_table();
        } else {
            latest = {static_cast<short>(pixels[i]), static_cast<short>(h_table_ind_)};
            h_table_[slot] = hash_data << 12 | static_cast<std::uint32_t>(h_table_ind_++);
        }
    }
}

void Lzw_writer::finish() {
    if (prev_data_ >= 0) out_code(prev_data_);
    out_code(end_info_code_);
    if (data_bits_ > 0) size_++;  // the last bits stand there already
    for (std::size_t at = 0; at < size_; at += BLOCK_BYTES) {
        const std::size_t count = std::min(BLOCK_BYTES, size_ - at);
        out_ += static_cast<char>(count);
        out_.append(reinterpret_cast<const char*>(&stream_[at]), count);
    }
    out_ += '\0';
}

}  // namespace zav
