#pragma once

// Shared by the sources of the file naming unit alone.

#include <array>
#include <string>
#include <vector>

#include "files/date.h"

namespace zav {

constexpr std::size_t EXT_SIZE = 20;  ///< longest value of %e with its end

/// Process-wide state of file naming and selection.
struct NamingState {
    std::string conv;      ///< template of data files
    std::string hconv;     ///< template of the header or index file that goes with them
    std::string ext;       ///< value of %e
    std::string ext_info;  ///< extended file information
    std::array<std::string, 256> keys;
    int min_size = 0;       ///< smallest size, from the convention
    int rmin_size = 0;      ///< the same, from a plot parameter
    std::string filename;   ///< the current file name
    int filename_type = 0;  ///< 1: the name was given as such and not made from a date
    int late_off = 3600;    ///< step of the template in seconds
    bool header = false;    ///< a walk uses hconv in place of conv

    Date set;        ///< forced date
    Date file_date;  ///< date that the last walk established

    /// A name from the user that departs from its template behind a date: it stays the name of that date.
    std::string odd_name;
    Date odd_date;
};

NamingState& naming();

/// Element of a template.
struct Piece {
    enum class Kind { plain, percent, date, ext, path, key, resource, group_start, group_end, rest };
    Kind kind = Kind::plain;
    char code = 0;          ///< the character, or the letter behind the percent sign
    int number = 0;         ///< the number between the two, 0 for none
    std::string name;       ///< resource of a path or of %{name}
    bool optional = false;  ///< inside of a group
};

std::vector<Piece> parse_template(const std::string& text);

/// The template in force, data file or header.
const std::string& current_template();

/// Value of a path element: its resource, or "." where that has no value.
std::string path_value(const Piece& piece);
/// Text of a key in the width of its element; a single "0" for a key without value.
std::string key_text(const Piece& piece);

/// Takes the period of a date element into the step: the smallest of a template counts.
void note_step(const Piece& piece);

/// A negative forced field as a period: every `step`, starting at `first`.
struct Period {
    int step = 1;
    int first = 0;
};
/// For %d and slower the field is the step; for %h and %n it is 100 first + step. Both come back in range.
Period forced_period(char code, int field);

/// Reads up to five groups of digits, YYYYMMDDHHNN, from `at` on. Complete groups only. `at` moves behind them.
int read_date_groups(const std::string& text, std::size_t& at, Date& date);

/// True for a text that chooses a file by time: "#date", or one that begins with "la" or "cu" and is no file's name.
bool is_time_rule(const std::string& text);
/// Where the rule begins in such a text: behind "cu".
std::size_t rule_start(const std::string& text);

/// The five fields that file names hold: year to minute.
void clear_file_fields(Date& date);
bool same_file_fields(const Date& a, const Date& b);

}  // namespace zav
