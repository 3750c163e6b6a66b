// Text as Cairo and file formats take it.

#include "gks/cairo/gks_cairo_state.h"

namespace zav {
namespace {

/// Bytes of the UTF-8 character that begins at `at`; 0 if none does.
std::size_t utf8_length(const std::string& text, std::size_t at) {
    const auto byte = [&text](std::size_t i) { return i < text.size() ? static_cast<unsigned char>(text[i]) : 0U; };
    const unsigned first = byte(at);
    const std::size_t length = first < 0x80 ? 1 : first < 0xC2 ? 0 : first < 0xE0 ? 2 : first < 0xF0 ? 3 : 4;
    if (first > 0xF4) return 0;
    for (std::size_t i = 1; i < length; ++i) {
        if ((byte(at + i) & 0xC0) != 0x80) return 0;
    }
    // Neither longer than need be, nor a surrogate, nor beyond the last character.
    const unsigned second = byte(at + 1);
    const bool faulty = (first == 0xE0 && second < 0xA0) || (first == 0xED && second > 0x9F) ||
                        (first == 0xF0 && second < 0x90) || (first == 0xF4 && second > 0x8F);
    return faulty ? 0 : length;
}

bool is_utf8(const std::string& text) {
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t length = utf8_length(text, at);
        if (length == 0) return false;
        at += length;
    }
    return true;
}

}  // namespace

std::string gcairo_utf8(const std::string& text) {
    const std::string line = gout_line(text);
    if (is_utf8(line)) return line;
    std::string result;
    for (const char c : line) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x80) {
            result += c;
        } else {
            result += static_cast<char>(0xC0 | byte >> 6);
            result += static_cast<char>(0x80 | (byte & 0x3F));
        }
    }
    return result;
}

}  // namespace zav
