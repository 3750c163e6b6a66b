// Plain settings of the contour layer: each stores or tells one piece of its state.

#include <algorithm>
#include <cmath>

#include "frame/string.h"
#include "plot/contour/cont_state.h"
#include "plot/page/plt_tool.h"

namespace zav {

namespace {

/// Longest plot format.
constexpr std::size_t FORMAT_SIZE = 100;

/// Type and dash that a plot type code of a variable stands for; others leave both alone.
struct Line_kind {
    int code;
    int type;
    int dash;
};
constexpr std::array<Line_kind, 2> LINE_KINDS = {{{13, CONT_LINE, 1}, {14, CONT_LINE, -1}}};

}  // namespace

int CONT_set_bar(int bar) {
    PLT_layer_requests().bar = bar;
    return 0;
}

int CONT_get_bar() { return PLT_layer_requests().bar; }

int CONT_set_scale(float scale) {
    cont.scale = scale;
    return 0;
}

int CONT_set_skip(int x, int y) {
    cont.x_skip = std::max(x, 1);
    cont.y_skip = std::max(y, 1);
    cont.skip_given = true;
    return 0;
}

int CONT_set_usual_skip(int x, int y) {
    cont.usual_x_skip = std::max(x, 1);
    cont.usual_y_skip = std::max(y, 1);
    cont.usual_skip_given = true;
    return CONT_set_skip(x, y);
}

int CONT_set_usual_smooth(const std::string& text) { return cont_read_smooth(text, &cont.usual_smooth); }

int CONT_get_map_order() { return cont.mapcon; }

int CONT_set_plot_offset(float x, float y) {
    cont.x_off = x;
    cont.y_off = y;
    return 0;
}

int CONT_set_fill_pat(int pat) {
    cont.fill_pat = pat;
    return 0;
}

int CONT_get_fill_pat() { return cont.fill_pat; }

int CONT_reset_fill_set() {
    cont.color_fill_set = 0;
    return 0;
}

int CONT_get_num_cont() { return cont.num_cont; }

int CONT_set_dash(int dash) {
    cont.dash = dash;
    return 0;
}

int CONT_set_intrvl(float intrvl) {
    cont.intrvl = intrvl;
    return 0;
}

float CONT_get_intrvl() { return cont.intrvl; }

int CONT_set_range(float max, float min) {
    cont.grid_max = max;
    cont.grid_min = min;
    return 0;
}

int CONT_set_bar_range(float max, float min) {
    cont.bar_max = max;
    cont.bar_min = min;
    return 0;
}

int CONT_set_color_range(float max, float min) {
    cont.color_high = max;
    cont.color_low = min;
    return 0;
}

int CONT_get_type() { return cont.cont_type; }

int CONT_set_label_type(int skip, int rad) {
    cont.label_skip = skip;
    cont.ext_radius = rad;
    return 0;
}

int CONT_set_over(int over) {
    cont.over = over;
    return 0;
}

int CONT_set_label_space(int x, int y) {
    cont.x_label_space = x;
    cont.y_label_space = y;
    return 0;
}

int CONT_set_base(float base) {
    cont.base = base;
    return 0;
}

float CONT_get_base() { return cont.base; }

int CONT_draw_grid(int val) {
    cont.draw_grid = val;
    return 0;
}

int CONT_set_type(int ind) {
    constexpr int filled_stations = 52;
    cont.cont_type = ind == filled_stations ? static_cast<int>(CONT_FILL) : ind;
    return 0;
}

int CONT_set_cutoff(float max, float min) {
    if (max != FMISS) cont.max_cut = max;
    if (min != FMISS) cont.min_cut = min;
    return 0;
}

int CONT_set_format(int type, const char* form) {
    cont.format = form != nullptr ? fit_text(form, FORMAT_SIZE) : "";
    for (const Line_kind& kind : LINE_KINDS) {
        if (type != kind.code) continue;
        cont.cont_type = kind.type;
        cont.dash = kind.dash;
    }
    if (type == CONT_LINE || type == CONT_FILL || type == CONT_FILL_LINE || type == CONT_VALUE) cont.cont_type = type;
    return 0;
}

int CONT_set_fill_attribs(const std::vector<Gattribs>& attrib) {
    int count = 0;
    for (const Gattribs& entry : attrib) {
        if (entry.color < -1 || count == CONT_LEVELS) break;
        cont.fill_attrib[count++] = entry;
    }
    if (count == 0) {
        cont.fill_attrib[0].color = 1;
        CONT_fill_attrib_init(&cont.fill_attrib[0]);
        count = 1;
    }
    cont.color_num = count;
    return 0;
}

int CONT_set_values(const float* values, int num) {
    if (cont.color_fill_set != 0) return -1;
    int count = 0;
    const int most = std::min(num, CONT_LEVELS - 1);
    while (count < most && values[count] != FMISS) {
        cont.cont_value[count] = values[count];
        count++;
    }
    cont.cont_value[count] = FMISS;
    cont.num_cont = count;
    if (count == 0) return 0;
    cont.intrvl = count > 1 ? values[1] - values[0] : FMISS;
    cont.grid_min = values[0];
    cont.grid_max = values[count - 1];
    return 0;
}

int CONT_reset_values() {
    if (!cont_has_values()) return 0;
    cont.intrvl = FMISS;
    cont.grid_min = FMISS;
    cont.grid_max = FMISS;
    cont.cont_value[0] = FMISS;
    return 0;
}

int CONT_get_values(float* values) {
    if (!cont_has_values()) return 0;
    const int count = std::clamp(cont.num_cont, 0, CONT_LEVELS);
    if (values != nullptr) std::copy_n(cont.cont_value.begin(), count, values);
    return count;
}

}  // namespace zav
