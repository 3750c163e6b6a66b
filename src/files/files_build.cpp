// From a date to a name: FILE_set_date and its kin, and the pattern of all names.

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <optional>

#include "files/files.h"
#include "files/files_state.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/string.h"

namespace zav {
namespace {

/// How a date element is written: width, and the field that it takes.
struct DateElement {
    char code;
    int width;
    int Date::*field;
};
constexpr std::array<DateElement, 8> date_elements = {{{'Y', 4, &Date::year},
                                                       {'y', 2, &Date::year},
                                                       {'m', 2, &Date::month},
                                                       {'b', 3, &Date::month},
                                                       {'d', 2, &Date::day},
                                                       {'j', 3, &Date::day},
                                                       {'h', 2, &Date::hour},
                                                       {'n', 2, &Date::min}}};

const DateElement& date_element(char code) {
    return *std::find_if(date_elements.begin(), date_elements.end() - 1,
                         [code](const DateElement& element) { return element.code == code; });
}

int cut(int value, int step) { return value - value % step; }

/// Value of a field by the forced date, the date, and the multiple asked for; MISS for an unknown one.
int field_value(const Piece& piece, int forced, int own) {
    const int multiple = std::max(piece.number, 1);
    const bool clock = piece.code == 'h' || piece.code == 'n';
    if (forced >= 0) return clock ? cut(forced, multiple) : forced;
    if (own < 0) return MISS;
    if (forced != MISS) {
        const Period period = forced_period(piece.code, forced);
        const int last = piece.code == 'h' ? 23 : piece.code == 'n' ? 59 : own;
        return std::min(cut(own, period.step) + period.first, last);
    }
    if (piece.code == 'y') return cut(own, 100) + cut(own % 100, multiple);
    return cut(own, multiple);
}

/// Text of %j; the month of a day is that of the date, or the forced one.
std::string day_of_year_text(const Date& date, int day) {
    Date& out = naming().file_date;
    const Date& set = naming().set;
    const int year = set.year >= 0 ? set.year : date.year;
    const int month = set.month >= 0 ? set.month : date.month;
    out.day = day;
    if (day < 0) return "000";
    out.month = month;
    int julian = 0;
    DATE_monday_julian(year, month, day, &julian);
    return text_format("%3.3d", julian);
}

std::string date_text(const Piece& piece, const Date& date) {
    const DateElement& element = date_element(piece.code);
    const int value = field_value(piece, naming().set.*element.field, date.*element.field);
    if (piece.code == 'j') return day_of_year_text(date, value);
    naming().file_date.*element.field = value;
    if (piece.code == 'b') return value >= 1 && value <= 12 ? DATE_month_lower(value) : "xxx";
    if (value < 0) return std::string(element.width, '0');
    const int shown = piece.code == 'y' ? value % 100 : value;
    return text_format("%0*d", element.width, shown);
}

/// Directory of the given full name: what stands before as many slashes as the template has separators.
std::optional<std::string> given_directory(const NamingState& names) {
    const std::string& conv = names.conv;
    const std::string& name = names.filename;
    long left = std::count_if(conv.begin(), conv.end(), [](char c) { return c == '/' || c == ':'; });
    std::size_t end = name.size();
    while (left > 0 && end > 0)
        if (name[--end] == '/') left--;
    if (left > 0) return std::nullopt;
    return name.substr(0, end);
}

/// Output of one template element. `path` goes over the paths of the resources.
std::string built_text(const Piece& piece, const Date& date, const std::optional<std::string>& path) {
    switch (piece.kind) {
        case Piece::Kind::group_start:
        case Piece::Kind::group_end:
            return "";
        case Piece::Kind::percent:
            return "%";
        case Piece::Kind::date:
            note_step(piece);
            return date_text(piece, date);
        case Piece::Kind::ext:
            return naming().ext;
        case Piece::Kind::path:
            return path ? *path : path_value(piece);
        case Piece::Kind::resource: {
            const char* value = RES_get(piece.name);
            return path ? *path : value != nullptr ? value : "";
        }
        case Piece::Kind::key:
            return key_text(piece);
        default:
            return std::string(1, piece.code == ' ' ? '_' : piece.code);
    }
}

/// The texts of a template's elements in a row. A path that ends in a slash doesn't double the template's.
template <class Text>
std::string join_pieces(const std::string& conv, const Text& text_of) {
    std::string out;
    bool after_path = false;
    for (const Piece& piece : parse_template(conv)) {
        const bool slash = piece.kind == Piece::Kind::plain && piece.code == '/';
        if (!after_path || !slash || !out.ends_with('/')) out += text_of(piece);
        after_path = piece.kind == Piece::Kind::path || piece.kind == Piece::Kind::resource;
    }
    return out;
}

/// True if the name that the user gave is the one of `date`, though the template would make another.
bool is_odd_name(const NamingState& names, const Date& date) {
    return !names.header && !names.odd_name.empty() && same_file_fields(date, names.odd_date);
}

/// Shell text that stands for itself.
std::string quoted(const std::string& text) {
    constexpr std::string_view SAFE = "_-+=.,:/%@*";
    std::string out;
    for (const char c : text) {
        const bool plain = std::isalnum(static_cast<unsigned char>(c)) || SAFE.find(c) != std::string_view::npos;
        if (c == '\n') continue;
        if (!plain) out += '\\';
        out += c;
    }
    return out;
}

/// Path of a resource as shell text; a "~" in front still means a home directory.
std::string quoted_path(const std::string& path) { return quoted(FILE_add_user_path(path)); }

std::string date_pattern(char code) {
    switch (code) {
        case 'Y':
            return "?[0-9]??";
        case 'b':
            return "?[a-z]?";
        case 'j':
            return "?[0-9]?";
        default:
            return "[0-9]?";
    }
}

std::string key_pattern(const Piece& piece) {
    const std::string& value = FILE_get_key(piece.code);
    if (!value.empty()) return quoted(value);
    return piece.number > 0 ? std::string(std::min<std::size_t>(piece.number, FILE_NAME_SIZE), '?') : "*";
}

std::string pattern_text(const Piece& piece) {
    switch (piece.kind) {
        case Piece::Kind::group_start:
        case Piece::Kind::group_end:
            return "";
        case Piece::Kind::percent:
            return "%";
        case Piece::Kind::date:
            return date_pattern(piece.code);
        case Piece::Kind::ext:
            return naming().ext.empty() ? "*" : quoted(naming().ext);
        case Piece::Kind::path:
            return quoted_path(path_value(piece));
        case Piece::Kind::resource: {
            const char* value = RES_get(piece.name);
            return value != nullptr ? quoted_path(value) : "";
        }
        case Piece::Kind::key:
            return key_pattern(piece);
        default:
            return piece.code == ' ' ? "_" : quoted(std::string(1, piece.code));
    }
}

}  // namespace

int FILE_set_date(const Date* datim, std::string& out_file) {
    NamingState& names = naming();
    const std::string conv = current_template();
    if (conv.empty()) {
        out_file = names.filename.empty() ? "filename" : names.filename;
        names.filename_type = 1;
        return 1;
    }
    if (FILE_is_stdio(conv)) {
        out_file.assign(1, '-');
        names.filename_type = 0;
        return 1;
    }
    std::optional<std::string> path;
    if (names.filename_type == 1 && FILE_fullpath(names.filename)) {
        path = given_directory(names);
        if (path) MESS_print(0x40000000, "Extracted path: %s\n", path->c_str());
    }
    names.late_off = MISS;
    const Date date = datim != nullptr ? *datim : names.file_date;
    if (datim != nullptr) clear_file_fields(names.file_date);
    if (date.year == MISS && !names.filename.empty()) {
        out_file = names.filename;
        names.filename_type = 1;
        return 1;
    }

    std::string name = join_pieces(conv, [&](const Piece& piece) { return built_text(piece, date, path); });
    if (is_odd_name(names, date)) name = names.odd_name;
    names.filename = out_file = fit_text(name, FILE_NAME_SIZE);
    return 0;
}

int FILE_hdr_set_date(const Date* datim, std::string& out_file) {
    NamingState& names = naming();
    out_file.clear();
    const int year = datim != nullptr ? datim->year : names.file_date.year;
    if (year == MISS || names.hconv.empty()) return 0;

    // The header file's name is a by-product: the data file stays the current one.
    const Date date = datim != nullptr ? *datim : names.file_date;
    const Date file_date = names.file_date;
    const std::string filename = names.filename;
    const int filename_type = names.filename_type;
    const int late_off = names.late_off;
    names.header = true;
    FILE_set_date(&date, out_file);
    names.header = false;
    names.file_date = file_date;
    names.filename = filename;
    names.filename_type = filename_type;
    names.late_off = late_off;
    return !out_file.empty();
}

int FILE_set_date_off(const Date* datim, int offset, std::string& out_file) {
    Date date = datim != nullptr ? *datim : naming().file_date;
    const long secs = DATE_num_sec(&date) + offset;
    DATE_get_gmdate(&secs, &date);
    FILE_set_date(&date, out_file);
    const int step = FILE_get_late_off();
    return offset / (step > 0 ? step : 100000);
}

void FILE_list_file() {
    std::string pattern = join_pieces(FILE_add_user_path(current_template()), pattern_text);
    if (pattern.starts_with('-')) pattern.insert(0, "./");
    const std::string command = "ls -x " + pattern + " 2>/dev/null";
    MESS_print(MESS_DEBUG, "SEARCH: %s\n", command.c_str());
    std::fflush(stdout);
    if (std::system(command.c_str()) == -1) return;  // no shell: nothing is shown
}

}  // namespace zav
