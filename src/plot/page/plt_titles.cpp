#include "plot/page/plt_titles.h"

#include <algorithm>

#include "frame/string.h"
#include "gks/gks_text.h"

namespace zav {
namespace {

enum : int { LEFT = 0, CENTRE = 1, RIGHT = 2 };

struct Short_word {
    const char* full;
    const char* brief;
};
/// Words of titles that are understood when shortened, the least telling first.
constexpr std::array<Short_word, 24> SHORT_WORDS{{
    {"INTERVAL:", "INT:"},       {"Accumulated", "Acc"}, {"Accumulation", "Acc"}, {"Temperature", "Temp"},
    {"Precipitation", "Precip"}, {"Pressure", "Pres"},   {"Humidity", "Hum"},     {"Relative", "Rel"},
    {"Geopotential", "Geopot"},  {"Potential", "Pot"},   {"Velocity", "Vel"},     {"Vertical", "Vert"},
    {"Component", "Comp"},       {"Direction", "Dir"},   {"Vorticity", "Vort"},   {"Absolute", "Abs"},
    {"Equivalent", "Equiv"},     {"Convective", "Conv"}, {"Radiation", "Rad"},    {"Atmosphere", "Atm"},
    {"Surface", "Sfc"},          {"Maximum", "Max"},     {"Minimum", "Min"},      {"hour", "h"},
}};

float width_of(const std::string& text, float height) { return ginq_text_size(text, height).x; }

struct Extent {
    float low;
    float high;
};

Extent extent_of(int column, const std::string& text, const PLT_title_space& space, float height) {
    const float width = width_of(text, height);
    const float x = space.anchor[column];
    if (column == LEFT) return {x, x + width};
    if (column == RIGHT) return {x - width, x};
    return {x - width / 2.0F, x + width / 2.0F};
}

bool is_inside(int column, const std::string& text, const PLT_title_space& space, float height) {
    const Extent extent = extent_of(column, text, space, height);
    return text.empty() || (extent.low >= space.x_min && extent.high <= space.x_max);
}

/// Shortens one word of the text. False if it holds none that can be.
bool shorten(std::string* text) {
    for (const Short_word& word : SHORT_WORDS) {
        const int size = static_cast<int>(std::string(word.full).size());
        for (std::size_t at = 0; at < text->size(); ++at) {
            const std::size_t end = at + static_cast<std::size_t>(size);
            const bool begins = at == 0 || (*text)[at - 1] == ' ';
            const bool ends = end == text->size() || (end < text->size() && (*text)[end] == ' ');
            if (!begins || !ends || strnicmp(text->substr(at), word.full, size) != 0) continue;
            text->replace(at, static_cast<std::size_t>(size), word.brief);
            return true;
        }
    }
    return false;
}

/// Shortens words, those of the longest text first, until the line fits. False if it can't.
bool shorten_to_fit(PLT_title_line* line, const PLT_title_space& space, float height) {
    while (!PLT_title_fits(*line, space, height)) {
        std::array<int, 3> order{LEFT, CENTRE, RIGHT};
        std::stable_sort(order.begin(), order.end(),
                         [line](int a, int b) { return (*line)[a].size() > (*line)[b].size(); });
        if (std::none_of(order.begin(), order.end(), [line](int column) { return shorten(&(*line)[column]); })) {
            return false;
        }
    }
    return true;
}

/// Breaks a text between words so that each part is within the limits; a longer word stands alone.
std::vector<std::string> parts_of(int column, const std::string& text, const PLT_title_space& space, float height) {
    if (is_inside(column, text, space, height)) return {text};
    std::vector<std::string> parts;
    for (const std::string& word : parse_string(text, ' ')) {
        if (word.empty()) continue;
        if (!parts.empty() && is_inside(column, parts.back() + " " + word, space, height)) {
            parts.back() += " " + word;
        } else {
            parts.push_back(word);
        }
    }
    return parts;
}

/// Sets the parts of a text under each other, in the highest lines with room. A part alone in its line counts as
/// fitting.
void set_parts(int column, const std::vector<std::string>& parts, const PLT_title_space& space, float height,
               std::vector<PLT_title_line>* lines) {
    const auto fits_from = [&](std::size_t start) {
        for (std::size_t i = 0; i < parts.size() && start + i < lines->size(); ++i) {
            PLT_title_line line = (*lines)[start + i];
            line[column] = parts[i];
            const bool alone = std::all_of(line.begin(), line.end(), [&](const std::string& text) {
                return text.empty() || &text == &line[column];
            });
            if (!alone && !PLT_title_fits(line, space, height)) return false;
        }
        return true;
    };
    std::size_t start = 0;
    while (!fits_from(start)) ++start;
    lines->resize(std::max(lines->size(), start + parts.size()));
    for (std::size_t i = 0; i < parts.size(); ++i) (*lines)[start + i][column] = parts[i];
}

}  // namespace

bool PLT_title_fits(const PLT_title_line& line, const PLT_title_space& space, float height) {
    const float gap = 1.5F * height;
    float end = space.x_min - gap;
    for (int column = 0; column < 3; ++column) {
        if (line[column].empty()) continue;
        const Extent extent = extent_of(column, line[column], space, height);
        if (extent.low < end + gap || !is_inside(column, line[column], space, height)) return false;
        end = extent.high;
    }
    return true;
}

std::vector<PLT_title_line> PLT_title_lines(const PLT_title_line& row, const PLT_title_space& space, float height) {
    PLT_title_line brief = row;
    if (shorten_to_fit(&brief, space, height)) return {brief};
    std::vector<PLT_title_line> lines;
    for (const int column : {LEFT, RIGHT, CENTRE}) {
        if (!row[column].empty())
            set_parts(column, parts_of(column, row[column], space, height), space, height, &lines);
    }
    return lines;
}

}  // namespace zav
