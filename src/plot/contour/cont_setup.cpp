// What comes before a grid is contoured: the order in which formats, resources and prompts settle type and levels.

#include <array>

#include "frame/flag.h"
#include "frame/menu.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/string.h"
#include "gks/zavgks.h"
#include "grid/grd_tool.h"
#include "plot/background/map.h"
#include "plot/contour/cont_state.h"
#include "plot/page/plt_labl.h"
#include "var/var_tool.h"

namespace zav {

namespace {

constexpr int PLOT_TYPE_NONE = 99;

bool plot_is_off() { return FLAG_get(FLAG_PLOT_TYPE) == PLOT_TYPE_NONE; }

Cont_memory& memory_of(int ind) {
    return cont.memory[static_cast<std::size_t>(ind >= 0 && ind < CONT_VARIABLES ? ind : 0)];
}

void recall_choices(const Cont_memory& memory) {
    if (!memory.settled) return;
    cont.cont_type = memory.cont_type;
    cont.intrvl = memory.intrvl;
    cont.dash = memory.dash;
    cont.base = memory.base;
    CONT_set_color_range(memory.color_high, memory.color_low);
}

/// Shows the range and asks for the interval where nothing gives it.
void ask_interval(float max, float min) {
    if (FLAG_get(FLAG_PLOT_TYPE) == CONT_VALUE || cont.cont_type == CONT_VALUE) return;
    if (cont.intrvl != FMISS || cont_has_values()) return;
    if (FLAG_batch() == 0 && RES_get("con_interval") == nullptr) {
        MESS_print(MESS_PRINT, "Maximum value: %f\n", static_cast<double>(max));
        MESS_print(MESS_PRINT, "Minimum value: %f\n\n", static_cast<double>(min));
    }
    CONT_prompt_intrvl();
}

/// Cut-offs and base: ">" and "<" items set the cuts, any other the base.
void read_base() {
    std::vector<std::string> items;
    RES_getvals("con_base", items);
    for (const std::string& item : items) {
        const bool cut = !item.empty() && (item[0] == '>' || item[0] == '<');
        float value = 0.0F;
        RES_conv_data(item.c_str() + (cut ? 1 : 0), &value, CV_float);
        if (cut && item[0] == '<') {
            cont.max_cut = value;
        } else {
            if (cut) cont.min_cut = value;
            cont.base = value;
        }
    }
}

std::string level_text() {
    constexpr std::size_t longest = 74;
    std::string text = "LEVELS: ";
    for (int k = 0; k < cont.num_cont && k < CONT_LEVELS && cont.cont_value[k] != FMISS; k++) {
        if (k > 0) text += ",";
        text += set_num("1.1.1", cont.cont_value[k]);
        if (text.size() > longest) break;
    }
    return text;
}

void set_labels(const GRD_report* grid, float max, float min) {
    PLT_label_up_left(grid->info);
    PLT_label_up_right(grid->datim);
    PLT_label_low_right("LO: " + set_num("5.3.1", min) + "  HI: " + set_num("5.3.1", max));
    if (cont_has_values()) {
        PLT_label_low_left(level_text());
    } else if (FLAG_get(FLAG_PLOT_TYPE) != CONT_VALUE && cont.intrvl != FMISS) {
        PLT_label_low_left("INTERVAL: " + set_num("5.1.1", cont.intrvl));
    }
}

/// An answer to the question for the contour type.
struct Type_word {
    const char* word;
    int type;
    int dash;
};
constexpr std::array<Type_word, 8> TYPE_WORDS = {{
    {"none", PLOT_TYPE_NONE, 0},
    {"value", CONT_VALUE, 0},
    {"gvalue", CONT_VALUE, 0},
    {"cf", CONT_FILL, 0},
    {"lcf", CONT_FILL_LINE, 0},
    {"ln", CONT_LINE, 0},
    {"dln", CONT_LINE, 1},
    {"ndln", CONT_LINE, -1},
}};

int ask_type() {
    std::string answer;
    ZAV_prompts("Color fill (C) or Line (L) contours: ", answer, 10);
    for (const Type_word& word : TYPE_WORDS) {
        if (stricmp(answer, word.word) != 0) continue;
        if (word.dash != 0) cont.dash = word.dash;
        return word.type;
    }
    const bool fill = !answer.empty() && std::string("cCyY").find(answer[0]) != std::string::npos;
    return fill ? CONT_FILL : CONT_LINE;
}

/// The plot type flag as a contour type.
int type_of_flag(int flag) {
    constexpr int dashed = 13;
    constexpr int low_dashed = 14;
    if (flag == dashed) cont.dash = 1;
    if (flag == low_dashed) cont.dash = -1;
    return flag == dashed || flag == low_dashed ? static_cast<int>(CONT_LINE) : flag;
}

/// Steps that depend on the values of the grid.
void settle_levels(GRD_report* grid) {
    float max = FMISS;
    float min = FMISS;
    cont_shown_range(*grid, &max, &min);
    CONT_set_range(max, min);
    ask_interval(max, min);
    if (cont_has_values()) CONT_set_bar(CONT_get_bar() == -2 ? 0 : 1);
    read_base();
    if (RES_getval("plot_scale", &cont.scale, CV_float) != 0 && !(cont.scale > 0.0F)) cont.scale = 1.0F;
    CONT_format_decode_type(RES_get("plot_format"));
    CONT_prompt_type();
    CONT_set_cont_ext(grid);
    MAP_fill_cont(cont.cont_type == CONT_FILL || cont.cont_type == CONT_FILL_LINE ? 1 : 0);
    set_labels(grid, max, min);
}

}  // namespace

int CONT_init() {
    cont.cont_type = MISS;
    cont.intrvl = FMISS;
    cont.cont_value[0] = FMISS;
    cont.cont_label.fill("");
    cont.base = FMISS;
    cont.grid_min = FMISS;
    cont.grid_max = FMISS;
    cont.min_cut = FMISS;
    cont.max_cut = FMISS;
    cont.dash = 0;
    cont.color_fill_set = 0;
    cont.palette = {};
    CONT_set_color_range(FMISS, FMISS);
    cont.fill_pat = MISS;
    cont.format.clear();
    cont.num_form.clear();
    cont.scale = 1.0F;
    cont.label_skip = 2;
    cont.ext_radius = 2;
    cont.x_label_space = MISS;
    cont.y_label_space = MISS;
    cont.x_skip = cont.usual_x_skip;
    cont.y_skip = cont.usual_y_skip;
    cont.skip_given = cont.usual_skip_given;
    cont.smooth = cont.usual_smooth;
    cont.over = 0;
    return 0;
}

float CONT_prompt_intrvl() {
    float intrvl = 0.0F;
    if (RES_get("con_interval") != nullptr) {
        RES_getval("con_interval", &intrvl, CV_float);
    } else if (FLAG_batch() == 0) {
        intrvl = ZAV_promptf("Enter the contour interval: ");
    }
    if (intrvl < 0.0F) intrvl = 0.0F;
    CONT_set_intrvl(intrvl);
    return intrvl;
}

int CONT_prompt_type() {
    int type = cont.cont_type;
    if (type == MISS) {
        const int flag = FLAG_get(FLAG_PLOT_TYPE);
        if (flag >= 1) {
            type = type_of_flag(flag);
        } else {
            type = FLAG_batch() != 0 ? static_cast<int>(CONT_FILL) : ask_type();
        }
    }
    CONT_set_type(type);
    return type;
}

int CONT_plot_setup(int plot, int ind, GRD_report* grid, const Domain*, CONT_event call) {
    if (plot_is_off()) return 0;
    cont.callback = call;
    cont.grd_ptr = grid;
    CONT_init();
    GPH_text_font(nullptr);
    CONT_set_format(VAR_get_type(ind), VAR_get_format(ind).c_str());
    // A variable without data at the first time of a sequence is settled at the first at which it has some.
    Cont_memory& memory = memory_of(ind);
    if (plot == 0) memory = {};
    recall_choices(memory);
    CONT_format_decode_type(cont.format.c_str());
    CONT_param_decode();
    CONT_set_fill_colors(nullptr, 0);
    if (grid == nullptr || !GRD_has_values(grid)) return 0;

    MESS_print(MESS_PROGRESS, "Contouring data for %s\n\n", grid->info.c_str());
    settle_levels(grid);
    if (!memory.settled) {
        memory = {true, cont.cont_type, cont.dash, cont.intrvl, cont.cbase, cont.conlo, cont.conhi};
    }
    return 0;
}

}  // namespace zav
