#include "frame/tools.h"

#include <algorithm>
#include <bit>
#include <climits>
#include <cmath>
#include <cstdlib>

namespace zav {
namespace {

struct State {
    bool swap = false;
};
State state;

int peek(std::FILE* ifile) {
    const int c = getc_unlocked(ifile);
    if (c != EOF) std::ungetc(c, ifile);
    return c;
}

/// Passes over a newline that the last read left.
void skip_newline(std::FILE* ifile) {
    const int c = getc_unlocked(ifile);
    if (c != '\n' && c != EOF) std::ungetc(c, ifile);
}

int swap_bytes(void* ptr, std::size_t size, std::size_t num) {
    if (!state.swap) return -1;
    auto* bytes = static_cast<unsigned char*>(ptr);
    for (std::size_t i = 0; i < num; ++i) std::reverse(bytes + i * size, bytes + (i + 1) * size);
    return 0;
}

int read_swapped(void* data, std::size_t size, std::FILE* file) {
    if (std::fread(data, size, 1, file) != 1) return 0;
    swap_bytes(data, size, 1);
    return 1;
}

int write_swapped(void* data, std::size_t size, std::FILE* file) {
    swap_bytes(data, size, 1);
    return std::fwrite(data, size, 1, file) == 1;
}

bool is_space(int c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

}  // namespace

int fgetline(std::FILE* ifile, std::string& string) { return fgetnline(ifile, string, LINE_LIMIT); }

int fgetnline(std::FILE* ifile, std::string& string, int len) {
    string.clear();
    if (len < 1) return -1;
    skip_newline(ifile);
    if (peek(ifile) == EOF) return -1;
    while (static_cast<int>(string.size()) < len) {
        const int c = getc_unlocked(ifile);
        if (c == '\n') std::ungetc(c, ifile);
        if (c == '\n' || c == EOF) break;
        string += static_cast<char>(c);
    }
    return static_cast<int>(string.size());
}

int fgetstring(std::FILE* ifile, std::string& string, int len) { return std::min(fgetnline(ifile, string, len), 1); }

int fget_rawstring(std::FILE* ifile, std::string& string, int len) {
    const int result = fgetstring(ifile, string, len);
    if (!string.empty() && string.back() == '\r') string.pop_back();
    std::replace_if(
        string.begin(), string.end(), [](char c) { return static_cast<unsigned char>(c) < ' ' || c == 0x7F; }, ' ');
    return result;
}

int fskipline(std::FILE* ifile) {
    skip_newline(ifile);
    if (peek(ifile) == EOF) return -1;
    fskiprest(ifile);
    return 0;
}

void fskiprest(std::FILE* ifile) {
    int c = 0;
    do {
        c = getc_unlocked(ifile);
    } while (c != '\n' && c != EOF);
    if (c == '\n') std::ungetc(c, ifile);
}

int fgetword(std::FILE* ifile, std::string& word, int len) {
    word.clear();
    int c = 0;
    do {
        c = getc_unlocked(ifile);
    } while (is_space(c));
    while (c != EOF && !is_space(c) && static_cast<int>(word.size()) < len) {
        word += static_cast<char>(c);
        c = getc_unlocked(ifile);
    }
    if (c != EOF) std::ungetc(c, ifile);
    return word.empty() ? -1 : 1;
}

void swap_setup(int flag) {
    constexpr bool little = std::endian::native == std::endian::little;
    switch (flag) {
        case 1:
            state.swap = little;
            break;
        case 2:
            state.swap = !little;
            break;
        case -1:
            state.swap = false;
            break;
        default:
            state.swap = true;
            break;
    }
}

int swap_long(void* ptr) { return swap_bytes(ptr, 4, 1); }
int swap_short(void* ptr) { return swap_bytes(ptr, 2, 1); }
int swap_double(void* ptr) { return swap_bytes(ptr, 8, 1); }
int swap_longs(void* ptr, std::size_t num) { return swap_bytes(ptr, 4, num); }
int swap_shorts(void* ptr, std::size_t num) { return swap_bytes(ptr, 2, num); }

int fread_long_swap(void* data, std::FILE* file) { return read_swapped(data, 4, file); }
int fread_short_swap(void* data, std::FILE* file) { return read_swapped(data, 2, file); }
int fread_double_swap(void* data, std::FILE* file) { return read_swapped(data, 8, file); }
int fwrite_long_swap(void* data, std::FILE* file) { return write_swapped(data, 4, file); }
int fwrite_short_swap(void* data, std::FILE* file) { return write_swapped(data, 2, file); }

float linear_interp(float x, float x1, float x2, float y1, float y2) { return y1 + (x - x1) * (y2 - y1) / (x2 - x1); }

void fswap(float* x, float* y) { std::swap(*x, *y); }

int float2int(float x) {
    if (x == 0 || !std::isfinite(x)) return 0;
    float size = std::fabs(x);
    int e = static_cast<int>(std::log10(double{size}) + 5) - 5;
    if (e > 0) {
        for (int i = 1; i < e; ++i) size /= 10;
    } else if (e == 0) {
        size *= 10;
    } else {
        for (int i = 0; i < 2 - e; ++i) size *= 10;
        e += 10;
    }
    const int code = 100 * e + static_cast<int>(size) % 100;
    return x < 0 ? -code : code;
}

int text_to_int(const char* text) {
    return static_cast<int>(std::clamp(std::strtol(text, nullptr, 10), long{INT_MIN}, long{INT_MAX}));
}

}  // namespace zav
