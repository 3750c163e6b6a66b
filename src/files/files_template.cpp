#include <algorithm>
#include <array>
#include <cctype>

#include "files/files.h"
#include "files/files_state.h"
#include "frame/resrc.h"

namespace zav {
namespace {

constexpr int NUMBER_LIMIT = 9999;

struct PathElement {
    char code;
    const char* resource;
};
constexpr std::array<PathElement, 10> path_elements = {{{'C', "con_path"},
                                                        {'D', "data_path"},
                                                        {'F', "file_path"},
                                                        {'R', "raw_path"},
                                                        {'G', "grid_path"},
                                                        {'W', "watch_path"},
                                                        {'I', "image_path"},
                                                        {'T', "text_path"},
                                                        {'M', "model_path"},
                                                        {'S', "sat_path"}}};

bool is_digit(char c) { return c >= '0' && c <= '9'; }

bool is_date_code(char c) { return std::string_view("Yymbdjhn").find(c) != std::string_view::npos; }

/// Reads the element behind a percent sign at `at`, which moves behind it. False at the end of the template.
bool read_element(const std::string& text, std::size_t& at, Piece& piece) {
    while (at < text.size() && is_digit(text[at]))
        piece.number = std::min(piece.number * 10 + (text[at++] - '0'), NUMBER_LIMIT);
    if (at == text.size()) return false;
    const char code = text[at++];
    piece.code = code;
    piece.kind = Piece::Kind::key;
    if (code == '%') piece.kind = Piece::Kind::percent;
    if (code == 'e') piece.kind = Piece::Kind::ext;
    if (is_date_code(code)) piece.kind = Piece::Kind::date;
    for (const PathElement& element : path_elements)
        if (element.code == code) {
            piece.kind = Piece::Kind::path;
            piece.name = element.resource;
        }
    if (code == '{') {
        const std::size_t end = std::min(text.find('}', at), text.size());
        piece.kind = Piece::Kind::resource;
        piece.name = text.substr(at, end - at);
        at = std::min(end + 1, text.size());
    }
    return true;
}

Piece::Kind plain_kind(char c) {
    switch (c) {
        case '{':
            return Piece::Kind::group_start;
        case '}':
            return Piece::Kind::group_end;
        case '*':
            return Piece::Kind::rest;
        default:
            return Piece::Kind::plain;
    }
}

int digits_value(const std::string& text, std::size_t at, int count) {
    int value = 0;
    for (int i = 0; i < count; i++) value = value * 10 + (text[at + i] - '0');
    return value;
}

bool has_digits(const std::string& text, std::size_t at, std::size_t count) {
    return at + count <= text.size() && std::all_of(text.begin() + at, text.begin() + at + count, is_digit);
}

}  // namespace

std::vector<Piece> parse_template(const std::string& text) {
    std::vector<Piece> pieces;
    std::size_t at = 0;
    bool in_group = false;
    while (at < text.size()) {
        Piece piece;
        piece.optional = in_group;
        const char c = text[at++];
        if (c == '%') {
            if (!read_element(text, at, piece)) break;
        } else {
            piece.kind = plain_kind(c);
            piece.code = c;
            if (c == '{' || c == '}') in_group = c == '{';
        }
        pieces.push_back(piece);
    }
    return pieces;
}

const std::string& current_template() { return naming().header ? naming().hconv : naming().conv; }

std::string path_value(const Piece& piece) {
    const char* value = RES_get(piece.name);
    return value != nullptr && value[0] != '\0' ? value : ".";
}

std::string key_text(const Piece& piece) {
    std::string text = FILE_get_key(piece.code);
    const std::size_t width = static_cast<std::size_t>(std::min<int>(piece.number, FILE_NAME_SIZE));
    if (text.empty()) return "0";
    if (width > 0) text.resize(width, '_');
    return text;
}

Period forced_period(char code, int field) {
    const int size = std::min(-static_cast<long>(field), 1000000L);
    if (code != 'h' && code != 'n') return {std::max(size, 1), 0};
    const int step = std::max(size % 100, 1);
    return {step, size / 100 % step};
}

void note_step(const Piece& piece) {
    const Date& set = naming().set;
    struct Unit {
        int secs;
        int forced;
    };
    Unit unit{};
    switch (piece.code) {
        case 'd':
        case 'j':
            unit = {86400, set.day};
            break;
        case 'h':
            unit = {3600, set.hour};
            break;
        case 'n':
            unit = {60, set.min};
            break;
        default:
            return;
    }
    int count = std::max(piece.number, 1);
    if (unit.forced < 0 && unit.forced != MISS)
        count = std::min(forced_period(piece.code, unit.forced).step, NUMBER_LIMIT);
    const int secs = unit.secs * count;
    int& step = naming().late_off;
    if (step == MISS || secs < step) step = secs;
}

int read_date_groups(const std::string& text, std::size_t& at, Date& date) {
    const std::array<int*, 5> fields = {&date.year, &date.month, &date.day, &date.hour, &date.min};
    int groups = 0;
    for (int* field : fields) {
        const int width = groups == 0 ? 4 : 2;
        if (!has_digits(text, at, width)) break;
        *field = digits_value(text, at, width);
        at += width;
        groups++;
    }
    return groups;
}

void clear_file_fields(Date& date) { date.year = date.month = date.day = date.hour = date.min = MISS; }

bool same_file_fields(const Date& a, const Date& b) {
    return a.year == b.year && a.month == b.month && a.day == b.day && a.hour == b.hour && a.min == b.min;
}

}  // namespace zav
