#pragma once

// Private to grid/: white-space separated items of a text stream.

#include <cstdio>
#include <string>

namespace zav {

/// Passes over white space. The character that follows, left unread, or EOF.
int scan_space(std::FILE* file);
/// The next item between white space, of at most `len` characters; what is longer stays unread. False at the end.
bool scan_word(std::FILE* file, std::string& word, std::size_t len);
/// The next integer. If no number stands there nothing but white space is taken, and `value` stays.
bool scan_int(std::FILE* file, int* value);
bool scan_long(std::FILE* file, long* value);
/// The next floating-point number, likewise. Infinite numbers and the like come as FMISS.
bool scan_float(std::FILE* file, float* value);
/// Passes over blanks and tabs, a carriage return and one newline, and nothing behind that.
void scan_line_end(std::FILE* file);
/// Leading integer of `text`, held to the range of an int; `text` moves behind it. False if there is none.
bool scan_text_int(const char** text, int* value);

}  // namespace zav
