#include "grid/grd_scan.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <climits>
#include <cmath>
#include <cstdlib>

#include "frame/zav.h"

namespace zav {
namespace {

/// Longest number taken; a longer one counts as none.
constexpr std::size_t NUMBER_SIZE = 64;

bool is_space(int c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

/// Collects the characters at the stream's position that `takes` accepts, as many as a number may have.
template <class Accept>
void collect(std::FILE* file, std::array<char, NUMBER_SIZE>& text, Accept takes) {
    std::size_t size = 0;
    int c = scan_space(file);
    while (c != EOF && size + 1 < text.size() && takes(c, size)) {
        text[size++] = static_cast<char>(getc_unlocked(file));
        c = getc_unlocked(file);
        if (c != EOF) std::ungetc(c, file);
    }
    text[size] = 0;
}

int to_int(long number) { return static_cast<int>(std::clamp<long>(number, INT_MIN, INT_MAX)); }

bool starts_int(int c) { return std::isdigit(c) != 0 || c == '+' || c == '-'; }

/// The letters are those of "nan" and "inf".
bool starts_float(int c) { return starts_int(c) || c == '.' || c == 'n' || c == 'N' || c == 'i' || c == 'I'; }

}  // namespace

int scan_space(std::FILE* file) {
    int c = getc_unlocked(file);
    while (is_space(c)) c = getc_unlocked(file);
    if (c != EOF) std::ungetc(c, file);
    return c;
}

bool scan_word(std::FILE* file, std::string& word, std::size_t len) {
    word.clear();
    if (scan_space(file) == EOF) return false;
    while (word.size() < len) {
        const int c = getc_unlocked(file);
        if (c == EOF) break;
        if (is_space(c)) {
            std::ungetc(c, file);
            break;
        }
        word += static_cast<char>(c);
    }
    return true;
}

bool scan_long(std::FILE* file, long* value) {
    if (!starts_int(scan_space(file))) return false;
    std::array<char, NUMBER_SIZE> text{};
    collect(file, text,
            [](int c, std::size_t at) { return std::isdigit(c) != 0 || (at == 0 && (c == '+' || c == '-')); });
    char* end = nullptr;
    const long number = std::strtol(text.data(), &end, 10);
    if (end == text.data()) return false;
    *value = number;
    return true;
}

bool scan_int(std::FILE* file, int* value) {
    long number = 0;
    if (!scan_long(file, &number)) return false;
    *value = to_int(number);
    return true;
}

bool scan_float(std::FILE* file, float* value) {
    if (!starts_float(scan_space(file))) return false;
    std::array<char, NUMBER_SIZE> text{};
    collect(file, text, [](int c, std::size_t) { return std::isalnum(c) != 0 || c == '+' || c == '-' || c == '.'; });
    char* end = nullptr;
    const float number = std::strtof(text.data(), &end);
    if (end == text.data()) return false;
    *value = std::isfinite(number) ? number : FMISS;
    return true;
}

void scan_line_end(std::FILE* file) {
    int c = getc_unlocked(file);
    while (c == ' ' || c == '\t') c = getc_unlocked(file);
    if (c == '\r') c = getc_unlocked(file);
    if (c != '\n' && c != EOF) std::ungetc(c, file);
}

bool scan_text_int(const char** text, int* value) {
    char* end = nullptr;
    const long number = std::strtol(*text, &end, 10);
    if (end == *text) return false;
    *value = to_int(number);
    *text = end;
    return true;
}

}  // namespace zav
