#include <algorithm>
#include <cmath>
#include <cstdarg>
#include <cstdio>
#include <string_view>

#include "frame/string.h"
#include "frame/tools.h"

namespace zav {
namespace {

constexpr int MAX_FIELD = 9;
constexpr int MAX_DIGITS = 40;

/// The numbers of a "field.sig.min" format; those that aren't there are 0.
struct NumberFormat {
    int field = 0;
    int sig = 0;
    int min = 0;
};

NumberFormat read_number_format(const std::string& format) {
    NumberFormat numbers;
    int* const places[] = {&numbers.field, &numbers.sig, &numbers.min};
    std::size_t start = 0;
    for (int* place : places) {
        if (start == std::string::npos) break;
        *place = std::clamp(text_to_int(format.substr(start)), -MAX_DIGITS, MAX_DIGITS);
        start = format.find('.', start);
        if (start != std::string::npos) ++start;
    }
    return numbers;
}

/// Passes over a number of at most two digits. False if there are more.
bool skip_two_digits(const std::string& format, std::size_t& place) {
    const std::size_t start = place;
    while (place < format.size() && format[place] >= '0' && format[place] <= '9') ++place;
    return place - start <= 2;
}

/// Passes over one conversion whose "%" is behind `place`. False if it isn't one of `kinds`.
bool skip_conversion(const std::string& format, std::size_t& place, std::string_view kinds) {
    while (place < format.size() && std::string_view("-+ #0").find(format[place]) != std::string_view::npos) ++place;
    if (!skip_two_digits(format, place)) return false;
    if (place < format.size() && format[place] == '.' && !skip_two_digits(format, ++place)) return false;
    return place < format.size() && kinds.find(format[place++]) != std::string_view::npos;
}

/// True if the text holds one conversion, of one of `kinds`.
bool has_one_conversion(const std::string& format, std::string_view kinds) {
    if (format.find('\0') != std::string::npos) return false;
    int count = 0;
    std::size_t place = 0;
    while ((place = format.find('%', place)) != std::string::npos) {
        ++place;
        if (place < format.size() && format[place] == '%') {
            ++place;
            continue;
        }
        if (!skip_conversion(format, place, kinds)) return false;
        ++count;
    }
    return count == 1;
}

}  // namespace

std::string text_format(const char* format, ...) {
    std::va_list args;
    va_start(args, format);
    const int length = std::vsnprintf(nullptr, 0, format, args);
    va_end(args);
    if (length <= 0) return {};
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    va_start(args, format);
    std::vsnprintf(text.data(), text.size(), format, args);
    va_end(args);
    text.pop_back();
    return text;
}

std::string set_num(const std::string& format, float x) {
    NumberFormat numbers = read_number_format(format);
    if (std::fabs(x) < 1e-5) x = 0;
    int magnitude = 2;
    if (x != 0 && std::isfinite(x)) magnitude = static_cast<int>(std::floor(std::log10(std::fabs(double{x}))));
    if (numbers.field < 1) numbers.field = numbers.sig + 1;
    numbers.field = std::min(numbers.field, MAX_FIELD);
    const int decimals = std::max({numbers.sig - (magnitude + 1), numbers.min, 0});
    return text_format("%*.*f", std::max(numbers.field, decimals), decimals, double{x});
}

bool format_is_safe(const std::string& format) { return has_one_conversion(format, "fFeEgGaA"); }

bool format_is_safe_int(const std::string& format) { return has_one_conversion(format, "dioxXu"); }

std::string format_value(const std::string& format, double x) {
    const char* checked = format_is_safe(format) ? format.c_str() : "%g";
    const int length = std::snprintf(nullptr, 0, checked, x);
    if (length <= 0) return {};
    std::string text(static_cast<std::size_t>(length) + 1, '\0');
    std::snprintf(text.data(), text.size(), checked, x);
    text.pop_back();
    return text;
}

}  // namespace zav
