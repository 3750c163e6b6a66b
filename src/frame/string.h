#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace zav {

// Word lists

/// Cuts a text at `delim`. Delimiters at its end are dropped; empty fields in the middle stay. Empty for an empty text.
std::vector<std::string> parse_string(const std::string& string, char delim);
/// The same; an absent text gives no words.
std::vector<std::string> parse_string(const char* string, char delim);
/// True if a word of the list equals `s2` in any case.
bool searchstr(const std::vector<std::string>& s1, const std::string& s2);
/// Index of a word in a list, in any case; or the number that `arg` is, from 1 to the number of items; else MISS.
int chk_arg(const std::string& arg, const std::vector<std::string>& items);

// Compares without regard to case, of ASCII letters

/// Below, at, or above 0 as the lower-case forms compare; 1 if either is absent.
int stricmp(const char* s1, const char* s2);
int stricmp(const std::string& s1, const std::string& s2);
/// The same for the first `n` characters. An `n` of 0 compares the first characters all the same, so that an empty
/// prefix isn't a match for everything.
int strnicmp(const char* s1, const char* s2, int n);
int strnicmp(const std::string& s1, const std::string& s2, int n);

// Trimming and changing, all in place

/// Each `tar` becomes `fill`.
void fill_string(std::string& string, char tar, char fill);
/// Each `tar` is removed.
void strip_string(std::string& string, char tar);
/// Each newline and carriage return is removed.
void wsstrip_string(std::string& string);
/// The same, then trailing blanks are removed.
void wstrim_string(std::string& string);
/// Trailing blanks are removed.
void trim_string(std::string& string);
/// Trailing carriage returns are removed.
void trim_cr_string(std::string& string);
/// Trailing blanks are removed and runs of blanks become one.
void strip_spaces(std::string& string);
/// Each backslash is removed, the character behind it stays.
void strip_escape(std::string& string);
/// `num` above 0 cuts the last `num` characters, below 0 the first.
void shift_string(std::string& string, int num);
/// ASCII upper case. 0 for an empty text, else 1.
int up_string(std::string& string);
/// ASCII lower case. 0 for an empty text, else 1.
int low_string(std::string& string);
/// Cuts control characters at the end; then control characters and bytes from 128 become blanks.
void clean_line(std::string& line);

// Tests

/// An optional "-", then digits only. False for an empty text, true for a "-" alone.
bool string_is_num(const std::string& string);
/// The first `len` characters are digits.
bool string_is_num_len(const std::string& string, int len);
/// Letters only, at least one.
bool string_is_alpha(const std::string& string);
/// Holds a "." or an "E".
bool string_is_float(const std::string& string);
/// Nothing above a blank; true of an empty or absent text.
bool string_is_blank(const std::string& string);
bool string_is_blank(const char* string);

// Making

/// The text cut to what a field of `size` bytes holds: `size` - 1 characters.
std::string fit_text(std::string_view text, std::size_t size);
/// Adds `s2` so that `s1` stays within `m` characters. False if it is full.
bool strmcat(std::string& s1, const std::string& s2, std::size_t m);
/// The last place of `s2` in `s1`, npos if there is none.
std::size_t strlstr(const std::string& s1, const std::string& s2);
/// Text made as by printf.
std::string text_format(const char* format, ...) __attribute__((format(printf, 1, 2)));
/// A number as text with significant digits. `format` is "field.sig.min": width, digits, least number of decimals.
std::string set_num(const std::string& format, float x);

/// True if `format` holds one numeric conversion that takes a double, and no other, with a width and precision that
/// stay below 100. Texts from users and files may be used as formats only if so.
bool format_is_safe(const std::string& format);
/// The same for a conversion that takes an int.
bool format_is_safe_int(const std::string& format);
/// `x` through a format from outside, or through "%g" if the format isn't safe.
std::string format_value(const std::string& format, double x);

}  // namespace zav
