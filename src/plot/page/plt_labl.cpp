#include "plot/page/plt_labl.h"

#include <algorithm>
#include <array>
#include <vector>

#include "frame/string.h"
#include "frame/zav.h"

namespace zav {
namespace {

/// Size of a label with its end.
constexpr std::size_t LABEL_SIZE = 70;
/// A label longer than this one isn't replaced.
constexpr std::size_t LABEL_FULL = 68;
/// Longest line that labels are appended to.
constexpr std::size_t LINE_FULL = 59;
/// Bound on line counts given by settings.
constexpr int MAX_LINES = 100;

/// Least space under the plot that takes labels.
constexpr float LEAST_SPACE = 0.005F;

struct State {
    std::array<std::array<std::string, PLT_OVERLAYS>, PLT_LABELS> label;
    std::array<std::size_t, PLT_LABELS> label_ind{};  ///< where appended text goes
    int overlay = 0;
    int num_over = 0;   ///< highest overlay used
    int over_base = 0;  ///< line steps by which the stacks are moved
    int lab_type = 0;
    Date date;
    long fhour = 0;
};
State state;

const std::string no_label;

int held_overlay(int ind) {
    const int overlay = std::min(ind, PLT_OVERLAYS - 1);
    state.num_over = std::max(state.num_over, overlay);
    return overlay;
}

std::string two_digits(int value) { return value == MISS ? std::string() : text_format("%02d", value); }

/// What a code of a label format stands for; nothing for an unknown one or an unknown field.
std::string label_code(char code) {
    const int fhour = static_cast<int>(state.fhour);
    Date date = state.date;
    std::string text;
    // Without a date its labels would tell one of 1980.
    if (date.year == MISS && (code == 'D' || code == 'V' || code == 'W')) return text;
    switch (code) {
        case 'D':
            DATE_make_label(&date, text);
            return text;
        case 'V':
            DATE_make_label_valid_time(fhour, &date, text);
            return text;
        case 'W':
            date.hour = MISS;
            DATE_make_label_valid_time(fhour, &date, text);
            return text;
        case 'y':
            return date.year == MISS ? text : text_format("%02d", date.year % 100);
        case 'm':
            return two_digits(date.month);
        case 'b':
            return std::string(DATE_month(date.month)).substr(0, 3);
        case 'h':
            return two_digits(date.hour);
        case 'd':
            return two_digits(date.day);
        case 'n':
            return two_digits(date.min);
        case 'f':
            return DATE_fhour_label(text, fhour, 0);
        case 'F':
            return DATE_fhour_label(text, fhour, 1);
        case '%':
            return "%";
        default:
            return text;
    }
}

}  // namespace

int PLT_init_labels() {
    for (auto& position : state.label) position.fill("");
    state.label_ind.fill(0);
    state.num_over = 0;
    return 0;
}

int PLT_set_overlay(int ind) {
    state.overlay = held_overlay(ind);
    return 0;
}

int PLT_set_overlay_base(int ind) {
    state.over_base = std::max(held_overlay(ind), -MAX_LINES);
    return 0;
}

int PLT_set_num_overlay(int ind) {
    const int num = std::clamp(ind, -MAX_LINES, MAX_LINES);
    state.num_over = num < 0 ? -num : std::max(state.num_over, num);
    return 0;
}

int PLT_get_overlay_base() { return state.over_base; }

int PLT_get_num_over() { return state.num_over; }

int PLT_get_label_type() { return state.lab_type; }

int PLT_set_label_type(int type) {
    state.lab_type = type;
    return 0;
}

int PLT_next_overlay() {
    if (state.overlay >= PLT_OVERLAYS - 1) return -1;
    ++state.overlay;
    if (state.lab_type > 0) ++state.lab_type;
    if (state.lab_type < 0) --state.lab_type;
    for (int i = 0; i < PLT_LABELS; ++i) state.label_ind[i] = state.label[i][0].size();
    state.num_over = std::max(state.num_over, state.overlay);
    return state.overlay;
}

int PLT_set_label(int lab, const std::string& str) {
    if (state.overlay < 0) return 0;
    if (state.lab_type < 0 && state.overlay > 0) return PLT_label_strcat(lab, str);
    return PLT_label_strcpy(lab, str);
}

int PLT_label_up_left(const std::string& str) { return PLT_set_label(0, str); }
int PLT_label_up_center(const std::string& str) { return PLT_set_label(1, str); }
int PLT_label_up_right(const std::string& str) { return PLT_set_label(2, str); }
int PLT_label_low_left(const std::string& str) { return PLT_set_label(3, str); }
int PLT_label_low_center(const std::string& str) { return PLT_set_label(4, str); }
int PLT_label_low_right(const std::string& str) { return PLT_set_label(5, str); }

int PLT_label_strcpy(int lab, const std::string& str) {
    if (lab < 0 || lab >= PLT_LABELS || state.overlay < 0) return -1;
    std::string& label = state.label[lab][state.overlay];
    if (label.size() <= LABEL_FULL) label = fit_text(str, LABEL_SIZE);
    return 0;
}

int PLT_label_strcat(int lab, const std::string& str) {
    if (lab < 0 || lab >= PLT_LABELS) return -1;
    const std::size_t start = state.label_ind[lab];
    if (str.size() + start > LINE_FULL) return 0;
    state.label[lab][0] = state.label[lab][0].substr(0, start) + " " + str;
    return 0;
}

const std::string& PLT_get_label(int lab, int over) {
    const bool inside = lab >= 0 && lab < PLT_LABELS && over >= 0 && over < PLT_OVERLAYS;
    return inside ? state.label[lab][over] : no_label;
}

int PLT_label_date(const Date* date) {
    state.date = *date;
    return 0;
}

int PLT_label_for_time(long fhour) {
    state.fhour = fhour;
    return 0;
}

int PLT_label_format(const std::string& form, std::string& str) {
    std::string text;
    for (std::size_t i = 0; i < form.size(); ++i) {
        if (form[i] == '_') {
            text += ' ';
        } else if (form[i] != '%') {
            text += form[i];
        } else if (++i < form.size()) {
            text += label_code(form[i]);
        }
    }
    str = text;
    return 0;
}

}  // namespace zav
