#include "plot/page/plt_labl.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <vector>

#include "frame/flag.h"
#include "frame/resrc.h"
#include "frame/string.h"
#include "frame/zav.h"
#include "gks/gks_colr.h"
#include "gks/gks_ws.h"
#include "plot/page/colors.h"
#include "plot/page/plt_state.h"

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
    std::array<bool, PLT_LABELS> done{};  ///< positions that hold one text of the resource "label"
};
State state;

const std::string no_label;

int set_label(int lab, const std::string& str) {
    if (state.overlay < 0) return 0;
    if (state.lab_type < 0 && state.overlay > 0) return PLT_label_strcat(lab, str);
    return PLT_label_strcpy(lab, str);
}

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

constexpr std::array<const char*, PLT_LABELS> POSITION_NAMES{"ul", "uc", "ur", "ll", "lc", "lr"};

/// Stores one item of the resource "label".
void take_label_item(const std::string& item) {
    const auto is_position = [&item](const char* name) { return strnicmp(item, name, 2) == 0; };
    const auto found = std::find_if(POSITION_NAMES.begin(), POSITION_NAMES.end(), is_position);
    if (found == POSITION_NAMES.end() || item.size() < 3) return;
    const int lab = static_cast<int>(found - POSITION_NAMES.begin());
    const bool single = item[2] == ':';
    const std::size_t start = single ? 3 : 4;
    std::string text;
    PLT_label_format(item.size() > start ? item.substr(start) : "", text);
    const bool digit = std::isdigit(static_cast<unsigned char>(item[2])) != 0;
    PLT_set_overlay(digit ? item[2] - '0' : 0);
    set_label(lab, text);
    PLT_set_overlay(0);
    if (single) state.done[lab] = true;
}

/// Where a row of labels goes.
struct Label_layout {
    float dy = 0.0F;     ///< line step
    float upper = 0.0F;  ///< first line of the upper row
    float lower = 0.0F;  ///< first line of the lower row
    int num = 1;         ///< lines
};

Label_layout lay_out(const Glim& view, float space) {
    Label_layout layout;
    layout.num = state.lab_type < 0 ? 1 : std::max(state.num_over, 1);
    const auto num = static_cast<float>(layout.num);
    layout.dy = std::min(space / num, 0.03F * (view.y_max - view.y_min));
    const float gap = PLT_get_full_lab() ? -0.2F * layout.dy - num * layout.dy : 0.2F * layout.dy;
    const float base = static_cast<float>(state.over_base) * layout.dy;
    layout.upper = view.y_max + gap + base;
    layout.lower = view.y_min - gap - (num - 1.0F) * layout.dy + base;
    return layout;
}

void print_position(int lab, const Glim& view, const Label_layout& layout) {
    const int column = lab % 3;
    const bool upper = lab < 3;
    const float margin = 0.01F * (view.x_max - view.x_min);
    const std::array<float, 3> x{view.x_min + margin, 0.5F * (view.x_min + view.x_max), view.x_max - margin};
    constexpr std::array<int, 3> ALIGN{GLEFT_HOR, GCENTER_HOR, GRIGHT_HOR};
    GPH_text_align(ALIGN[column], upper ? GBASE_VERT : GCAP_VERT);
    const float first = upper ? layout.upper : layout.lower;
    const int last = std::min(layout.num, PLT_OVERLAYS);
    for (int i = 0; i < last; ++i) {
        const std::string& text = PLT_get_label(lab, i);
        const Gpt point{x[column], first + static_cast<float>(i) * layout.dy};
        if (!text.empty()) GPH_pprint(&point, text);
        if (!text.empty() && upper) gadd_page_title(text);
        if (state.done[lab]) break;
    }
}

/// False where the colour bar or the vector key takes a label's place.
bool has_room(int lab) {
    if (lab == 3 || lab == 4) return PLT_layer_requests().bar < 1;
    if (lab == 5) return PLT_layer_requests().vector_key <= 0;
    return true;
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

int PLT_label_up_left(const std::string& str) { return set_label(0, str); }
int PLT_label_up_center(const std::string& str) { return set_label(1, str); }
int PLT_label_up_right(const std::string& str) { return set_label(2, str); }
int PLT_label_low_left(const std::string& str) { return set_label(3, str); }
int PLT_label_low_center(const std::string& str) { return set_label(4, str); }
int PLT_label_low_right(const std::string& str) { return set_label(5, str); }

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

int PLT_labels() {
    std::vector<std::string> items;
    state.done.fill(false);
    RES_getvals("label", items);
    for (const std::string& item : items) take_label_item(item);

    PLT_state& plot = PLT_state_get();
    Gattribs attrib;
    ATTRIB_get("color_text", gget_inverse() ? "black" : "white", &attrib);
    PLT_mess("Labels");
    gsel_norm_tran(1);
    GPH_get_view_size(&plot.dis_size);
    GPH_line_attr(nullptr);
    GPH_text_attr(nullptr, 1.0F);
    GPH_text_font(nullptr);
    GPH_text_rotate(0.0F);
    GPH_line_attr(&attrib);

    if (plot.border && FLAG_getplot(PLOT_BORDER)) GPH_border(&plot.dis_view);
    const float space = plot.full_lab ? PLT_FULL_LABEL_SPACE : plot.dis_view.y_min - plot.dis_size.y_min;
    if (space < LEAST_SPACE) return -1;
    if (!FLAG_getplot(PLOT_TEXT)) return 0;

    const Label_layout layout = lay_out(plot.dis_view, space);
    GPH_text_attr(&attrib, 0.75F * layout.dy);
    for (int lab = 0; lab < PLT_LABELS; ++lab) {
        if (FLAG_getplot(PLOT_TEXT_UL + lab) && has_room(lab)) print_position(lab, plot.dis_view, layout);
    }
    return 0;
}

}  // namespace zav
