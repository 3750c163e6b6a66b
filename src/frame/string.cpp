#include "frame/string.h"

#include <algorithm>
#include <cstdlib>

#include "frame/tools.h"
#include "frame/zav.h"

namespace zav {
namespace {

unsigned char lower(char c) { return static_cast<unsigned char>(c >= 'A' && c <= 'Z' ? c - 'A' + 'a' : c); }

bool is_digit(char c) { return c >= '0' && c <= '9'; }

bool is_alpha(char c) { return lower(c) >= 'a' && lower(c) <= 'z'; }

bool is_control(char c) { return static_cast<unsigned char>(c) < ' ' || c == 0x7F; }

bool is_high(char c) { return static_cast<unsigned char>(c) >= 0x80; }

/// Difference of the lower-case forms within the first `n` characters.
int compare(const char* s1, const char* s2, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) {
        const int difference = lower(s1[i]) - lower(s2[i]);
        if (difference != 0 || s1[i] == '\0') return difference;
    }
    return 0;
}

void trim_end(std::string& string, char tar) {
    while (!string.empty() && string.back() == tar) string.pop_back();
}

}  // namespace

std::vector<std::string> parse_string(const std::string& string, char delim) {
    std::vector<std::string> words;
    const std::size_t last = string.find_last_not_of(delim);
    if (last == std::string::npos) return words;
    std::size_t start = 0;
    while (start <= last + 1) {
        const std::size_t end = std::min(string.find(delim, start), last + 1);
        words.push_back(string.substr(start, end - start));
        start = end + 1;
    }
    return words;
}

std::vector<std::string> parse_string(const char* string, char delim) {
    return string != nullptr ? parse_string(std::string(string), delim) : std::vector<std::string>();
}

bool searchstr(const std::vector<std::string>& s1, const std::string& s2) {
    return std::any_of(s1.begin(), s1.end(), [&](const std::string& word) { return stricmp(word, s2) == 0; });
}

int chk_arg(const std::string& arg, const std::vector<std::string>& items) {
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (stricmp(arg, items[i]) == 0) return static_cast<int>(i);
    }
    if (!string_is_num(arg)) return MISS;
    const int number = text_to_int(arg);
    return number >= 1 && static_cast<std::size_t>(number) <= items.size() ? number : MISS;
}

int stricmp(const char* s1, const char* s2) {
    if (s1 == nullptr || s2 == nullptr) return 1;
    return compare(s1, s2, std::string::npos);
}

int stricmp(const std::string& s1, const std::string& s2) { return stricmp(s1.c_str(), s2.c_str()); }

int strnicmp(const char* s1, const char* s2, int n) {
    if (s1 == nullptr || s2 == nullptr) return 1;
    return compare(s1, s2, static_cast<std::size_t>(std::max(n, 1)));
}

int strnicmp(const std::string& s1, const std::string& s2, int n) { return strnicmp(s1.c_str(), s2.c_str(), n); }

void fill_string(std::string& string, char tar, char fill) { std::replace(string.begin(), string.end(), tar, fill); }

void strip_string(std::string& string, char tar) { std::erase(string, tar); }

void wsstrip_string(std::string& string) {
    std::erase_if(string, [](char c) { return c == '\n' || c == '\r'; });
}

void wstrim_string(std::string& string) {
    wsstrip_string(string);
    trim_string(string);
}

void trim_string(std::string& string) { trim_end(string, ' '); }

void trim_cr_string(std::string& string) { trim_end(string, '\r'); }

void strip_spaces(std::string& string) {
    trim_string(string);
    const auto end =
        std::unique(string.begin(), string.end(), [](char left, char right) { return left == ' ' && right == ' '; });
    string.erase(end, string.end());
}

void strip_escape(std::string& string) {
    std::string kept;
    for (std::size_t i = 0; i < string.size(); ++i) {
        if (string[i] == '\\' && ++i == string.size()) break;
        kept += string[i];
    }
    string = kept;
}

void shift_string(std::string& string, int num) {
    const std::size_t cut = std::min(string.size(), static_cast<std::size_t>(std::labs(num)));
    string.erase(num > 0 ? string.size() - cut : 0, cut);
}

int up_string(std::string& string) {
    for (char& c : string) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    return !string.empty();
}

int low_string(std::string& string) {
    for (char& c : string) c = static_cast<char>(lower(c));
    return !string.empty();
}

void clean_line(std::string& line) {
    while (!line.empty() && is_control(line.back())) line.pop_back();
    std::replace_if(
        line.begin(), line.end(), [](char c) { return is_control(c) || is_high(c); }, ' ');
}

bool string_is_num(const std::string& string) {
    if (string.empty()) return false;
    const std::size_t start = string.front() == '-' ? 1 : 0;
    return std::all_of(string.begin() + static_cast<std::ptrdiff_t>(start), string.end(), is_digit);
}

bool string_is_num_len(const std::string& string, int len) {
    if (len < 0 || static_cast<std::size_t>(len) > string.size()) return false;
    return std::all_of(string.begin(), string.begin() + len, is_digit);
}

bool string_is_alpha(const std::string& string) {
    return !string.empty() && std::all_of(string.begin(), string.end(), is_alpha);
}

bool string_is_float(const std::string& string) { return string.find_first_of(".E") != std::string::npos; }

bool string_is_blank(const std::string& string) {
    return std::all_of(string.begin(), string.end(), [](char c) { return static_cast<unsigned char>(c) <= ' '; });
}

bool string_is_blank(const char* string) { return string == nullptr || string_is_blank(std::string(string)); }

std::string fit_text(std::string_view text, std::size_t size) {
    return std::string(text.substr(0, size > 0 ? size - 1 : 0));
}

bool strmcat(std::string& s1, const std::string& s2, std::size_t m) {
    if (s1.size() >= m) return false;
    s1.append(s2, 0, m - s1.size());
    return true;
}

std::size_t strlstr(const std::string& s1, const std::string& s2) { return s1.rfind(s2); }

}  // namespace zav
