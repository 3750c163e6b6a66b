#pragma once

#include <initializer_list>
#include <string>
#include <variant>

namespace zav {

/// A cursor in a text. It owns a copy of the text, so that it may outlive the caller's.
struct parse_param {
    std::string ptr;   ///< text scanned
    int length = 0;    ///< its length
    int off = 0;       ///< where the next scan starts
    int len = 0;       ///< characters taken by the last scan
    int assigned = 0;  ///< results stored by the last scan
    int matched = 0;   ///< conversions satisfied by the last scan
    int done = 0;      ///< 1 if the last scan went through the whole pattern
};

/// Where a conversion stores: int for n, d, D; float for f, F; text for the others. Another type is left alone.
using scan_target = std::variant<int*, float*, std::string*>;

int scanp_list(parse_param* param, const char* pat, std::initializer_list<scan_target> targets);

/// Scans the text from `off` by a pattern and stores what its conversions give, in turn, at the pointers behind it.
/// A conversion is %, then optionally * (don't store), < (the width is an upper limit), a width, !mark! (stands for a
/// missing number), and one of
///   n characters taken so far; d, D number, D with blanks within its width; f, F float likewise;
///   N digits; A letters; s non-blanks; S rest; c characters, one without a width; w, W white space, W without
///   newlines; [set], [^set] with /A letters, /N digits, // slash; (a|b|c) the first alternative that stands there.
/// A blank takes white space, any other character itself. The first element that fails ends the scan.
/// The result is the number of conversions matched, -1 with an empty pattern or at the end of the text.
template <class... Target>
int scanp(parse_param* param, const char* pat, Target... targets) {
    return scanp_list(param, pat, {scan_target(targets)...});
}

/// A new text, scanned from its start.
void scanp_set(parse_param* param, const std::string& str);
int scanp_get_off(const parse_param* param);
/// Sets the position, held to the text.
void scanp_off(parse_param* param, int off);
/// Moves the position by `off`, held to the text.
void scanp_inc_off(parse_param* param, int off);
/// Accepts the last scan: moves the position behind it.
void scanp_inc(parse_param* param);
/// The text at the position. Valid until the text changes.
const char* scanp_str(const parse_param* param);
/// The character `off` places on from the position, a zero byte outside of the text.
char scanp_char(const parse_param* param, int off);
/// Overwrites the character `off` places on, if it is inside the text.
void scanp_replace(parse_param* param, int off, char ch);
/// Moves the position to the first place of `str` in the whole text. 1 if found, else 0.
int scanp_search(parse_param* param, const std::string& str);
/// Shows the cursor at the trace level.
void scanp_print(const parse_param* param);

}  // namespace zav
