// What plot formats and plot parameters tell the contour layer.

#include <algorithm>
#include <array>
#include <climits>
#include <cstdio>
#include <cstdlib>

#include "frame/flag.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/status.h"
#include "frame/string.h"
#include "frame/tools.h"
#include "plot/contour/cont_state.h"
#include "plot/page/plt_labl.h"

namespace zav {

namespace {

/// Longest numeric format of a value plot.
constexpr std::size_t NUM_FORM_SIZE = 10;

/// Up to four integers with one character between them.
struct Integers {
    std::array<int, 4> value{};
    int count = 0;
};

Integers read_integers(const char* text, char separator) {
    Integers read;
    while (read.count < 4) {
        char* end = nullptr;
        const long value = std::strtol(text, &end, 10);
        if (end == text) break;
        read.value[read.count++] = static_cast<int>(std::clamp<long>(value, INT_MIN, INT_MAX));
        if (*end == '\0' || (separator != '\0' && *end != separator)) break;
        text = end + 1;
    }
    return read;
}

/// One number: labelling interval and search radius as its two digits; more: each by itself, then the spacing.
void take_label_numbers(const Integers& numbers) {
    const auto& value = numbers.value;
    if (numbers.count == 1) CONT_set_label_type(value[0] / 10, value[0] % 10);
    if (numbers.count >= 2) CONT_set_label_type(value[0], value[1]);
    if (numbers.count == 3) CONT_set_label_space(value[2], value[2]);
    if (numbers.count == 4) CONT_set_label_space(value[2], value[3]);
}

float read_float(const char* text) { return std::strtof(text, nullptr); }

void take_offset(const char* text) {
    // In heights of the map: steps of the width and the height of the numbers drawn.
    constexpr float x_step = 0.012F;
    constexpr float y_step = 0.02F;
    float x = cont.x_off;
    float y = cont.y_off;
    const int count = std::sscanf(text, "%f%f", &x, &y);
    if (count >= 1) cont.x_off = x;
    if (count >= 2) cont.y_off = y;
    cont.x_off *= x_step;
    cont.y_off *= y_step;
}

void take_skip(const char* text) {
    const Integers numbers = read_integers(text, '\0');
    if (numbers.count == 1) CONT_set_skip(numbers.value[0], numbers.value[0]);
    if (numbers.count >= 2) CONT_set_skip(numbers.value[0], numbers.value[1]);
}

void take_smooth(const char* text) { cont_read_smooth(text, &cont.smooth); }

/// A word of a plot format: `prefix` words match the begin of a field, and `act` gets what stands behind it.
struct Format_word {
    const char* word;
    bool prefix;
    int type;                        ///< contour type that the word names, MISS for none
    void (*act)(const char* value);  ///< what else it does, null for nothing
};

constexpr std::array<Format_word, 25> FORMAT_WORDS = {{
    {"value", false, CONT_VALUE, nullptr},
    {"gvalue", false, CONT_VALUE, nullptr},
    {"cf", false, CONT_FILL, nullptr},
    {"lcf", false, CONT_FILL_LINE, nullptr},
    {"ln", false, CONT_LINE, nullptr},
    {"dln", false, CONT_LINE, [](const char*) { CONT_set_dash(1); }},
    {"ndln", false, CONT_LINE, [](const char*) { CONT_set_dash(-1); }},
    {"nolr", false, MISS, [](const char*) { FLAG_setplot(PLOT_TEXT_LR, 0); }},
    {"bar", false, MISS, [](const char*) { CONT_set_bar(3); }},
    {"nobar", false, MISS, [](const char*) { CONT_set_bar(-2); }},
    {"rlab", true, MISS, [](const char*) { cont.rot_label = 1; }},
    {"hlab", true, MISS, [](const char*) { cont.rot_label = 0; }},
    {"labs", true, MISS, [](const char*) { PLT_set_label_type(-1); }},
    {"in=", true, MISS, [](const char* value) { cont.intrvl = read_float(value); }},
    {"cb=", true, MISS, [](const char* value) { cont.base = read_float(value); }},
    {"mn=", true, MISS, [](const char* value) { cont.min_cut = read_float(value); }},
    {"mx=", true, MISS, [](const char* value) { cont.max_cut = read_float(value); }},
    {"sc=", true, MISS, [](const char* value) { cont.scale = read_float(value); }},
    {"xy=", true, MISS, take_offset},
    {"sk=", true, MISS, take_skip},
    {"sm=", true, MISS, take_smooth},
    {"cof=", true, MISS, [](const char* value) { CONT_set_fill_colors(value, 1); }},
    {"fi=", true, MISS, [](const char* value) { CONT_set_fill_pat(text_to_int(value)); }},
    {"%", true, MISS, nullptr},
    {"lab=", true, MISS, [](const char* value) { take_label_numbers(read_integers(value, '.')); }},
}};

bool starts_with(const std::string& text, const char* prefix) {
    return strnicmp(text.c_str(), prefix, static_cast<int>(std::string(prefix).size())) == 0;
}

const Format_word* find_word(const std::string& field) {
    for (const Format_word& word : FORMAT_WORDS) {
        if (word.prefix ? starts_with(field, word.word) : stricmp(field.c_str(), word.word) == 0) return &word;
    }
    return nullptr;
}

/// A word of the resource "plot_param"; `skip` characters stand in front of its value.
struct Param_word {
    const char* word;
    bool prefix;
    std::size_t skip;
    void (*act)(const char* value);
};

void take_label_parameter(const char* text) {
    const Integers numbers = read_integers(text, ':');
    take_label_numbers(numbers.count > 1 ? numbers : read_integers(text, '.'));
}

constexpr std::array<Param_word, 10> PARAM_WORDS = {{
    {"fill", true, 5, [](const char* value) { CONT_set_fill_pat(ATTR_parse_fill_pat(value)); }},
    {"lab", true, 4, take_label_parameter},
    {"rlab", true, 0, [](const char*) { cont.rot_label = 1; }},
    {"hlab", true, 0, [](const char*) { cont.rot_label = 0; }},
    {"maxl", true, 5, [](const char* value) { cont.max_line_fact = text_to_int(value); }},
    {"conmin", true, 7, [](const char* value) { cont.min_cut = read_float(value); }},
    {"conmax", true, 7, [](const char* value) { cont.max_cut = read_float(value); }},
    {"grid", false, 0, [](const char*) { CONT_draw_grid(1); }},
    {"mapcon", false, 0, [](const char*) { cont.mapcon = CONT_OVER_MAP; }},
    {"conmap", false, 0, [](const char*) { cont.mapcon = CONT_UNDER_MAP; }},
}};

}  // namespace

int cont_read_smooth(const std::string& text, int* steps) {
    constexpr int MOST_STEPS = 8;
    const Integers read = read_integers(text.c_str(), '\0');
    if (read.count != 1 || read.value[0] < 1 || read.value[0] > MOST_STEPS) {
        MESS_print(MESS_WARN, "Smoothing (sm) has to be a number from 1 to %d: %s\n", MOST_STEPS, text.c_str());
        ZAV_note(STATUS_WORD);
        return -1;
    }
    *steps = read.value[0];
    return 0;
}

int CONT_format_decode_type(const char* format) {
    if (format == nullptr) return -1;
    int type = MISS;
    for (const std::string& field : parse_string(format, ':')) {
        const Format_word* word = find_word(field);
        if (word == nullptr) continue;
        if (word->type != MISS) type = word->type;
        if (word->act != nullptr) word->act(field.c_str() + std::string(word->word).size());
        if (field[0] == '%') cont.num_form = fit_text(field, NUM_FORM_SIZE);
    }
    if (type != MISS) CONT_set_type(type);
    return 0;
}

int CONT_format_decode_attrib(Gattribs* attr) {
    for (const std::string& field : parse_string(cont.format, ':')) {
        if (field.size() < 3) continue;
        const char* value = field.c_str() + 3;
        if (starts_with(field, "co=")) attr->color = CLR_get_ind(value);
        if (starts_with(field, "wi=")) attr->width = read_float(value);
        if (starts_with(field, "st=")) attr->style = text_to_int(value);
        if (starts_with(field, "fp=")) attr->fill_pat = ATTR_parse_fill_pat(value);
    }
    return 0;
}

int CONT_param_decode() {
    std::vector<std::string> items;
    RES_getvals("plot_param", items);
    for (const std::string& item : items) {
        for (const Param_word& word : PARAM_WORDS) {
            if (word.prefix ? !starts_with(item, word.word) : stricmp(item.c_str(), word.word) != 0) continue;
            word.act(item.size() > word.skip ? item.c_str() + word.skip : "");
            break;
        }
    }
    return 0;
}

}  // namespace zav
