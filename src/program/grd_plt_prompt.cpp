// The three nested questions: forecast time, vertical level, variable.

#include <cstdio>

#include "files/files.h"
#include "frame/flag.h"
#include "frame/menu.h"
#include "frame/resrc.h"
#include "frame/string.h"
#include "frame/system.h"
#include "frame/zav.h"
#include "plot/contour/cont.h"
#include "program/grd_plt.h"
#include "station/cty_tool.h"
#include "var/var_tool.h"

namespace zav {

namespace {

/// Longest time string and variable string.
constexpr std::size_t TIME_SIZE = 200;
constexpr std::size_t VARIABLE_SIZE = 301;

/// What a menu answer means to the prompt loops.
constexpr int ANSWER_BACK = 0;

struct State {
    int time_prompt = 1;
    int level_prompt = 1;
    int variable_prompt = 1;
    bool time_init = false;      ///< the time menu file was read
    bool variable_init = false;  ///< the variable menu file was opened
    std::string variable;
    std::vector<std::string> times;
};
State state;

/// Shows a menu. False for the way back; the item "Exit program" ends the program.
bool ask(const char* title, const std::vector<MENU_item>& menu, const char* prompt, std::string& answer, int* index) {
    *index = MENU_process(title, menu, 0, prompt, answer, MENU_EXIT | MENU_BACK);
    if (*index < 0 && *index != MISS) ZAV_exit(0);
    return *index != ANSWER_BACK;
}

}  // namespace

void GRD_set_prompt_time(int val) { state.time_prompt = val; }
void UPA_set_prompt_level(int val) { state.level_prompt = val; }
void GRD_set_prompt_variable(int val) { state.variable_prompt = val; }
const std::string& GRD_get_variable() { return state.variable; }
const std::vector<std::string>& GRD_get_times() { return state.times; }

int GRD_prompt_time() {
    if (!state.time_init) GRD_read_time_menu();
    state.time_init = true;
    if (state.time_prompt == 0) return 0;

    std::string text;
    int hour = 0;
    if (const char* given = RES_get("time")) {
        text = fit_text(given, TIME_SIZE);
        hour = MENU_search(text, GRD_time_menu());
        state.time_prompt = 0;
    } else if (!ask("\n        Forecast Time Menu\n", GRD_time_menu(), "Enter the time: ", text, &hour)) {
        return 0;
    }
    state.times = parse_string(text, ',');
    if (state.times.empty()) state.times.emplace_back();
    VAR_dec_time(state.times[0], &hour);
    FLAG_setl(FLAG_TIME, hour);
    return 1;
}

int UPA_prompt_level() {
    UPA_read_level_menu();
    if (state.level_prompt == 0) return 0;

    std::string text;
    int level = 0;
    const char* given = RES_get("level");
    if (given != nullptr || FLAG_batch() != 0) {
        text = given != nullptr ? given : "500";
        level = MENU_search(text, UPA_level_menu());
        state.level_prompt = 0;
    } else if (!ask("\n        Vertical Level Menu\n", UPA_level_menu(), "Enter the level: ", text, &level)) {
        return 0;
    }
    int ltype = MISS;
    VAR_dec_level(text, &ltype, &level);
    FLAG_set(FLAG_LEVEL, level);
    FLAG_setl(FLAG_LTYPE, ltype);
    VAR_set_level_str(text);
    return 1;
}

int GRD_prompt_variable() {
    if (!state.variable_init) VAR_open_file(nullptr);
    state.variable_init = true;
    VAR_read_menu();
    if (state.variable_prompt == 0) return 0;

    int result = 1;
    if (const char* given = RES_get("variable")) {
        state.variable = fit_text(given, VARIABLE_SIZE);
        state.variable_prompt = 0;
    } else {
        result = VAR_menu("\n        Variable Menu\n", "Enter the variable: ", state.variable, MENU_EXIT | MENU_BACK);
        state.variable = fit_text(state.variable, VARIABLE_SIZE);
        if (FLAG_batch() != 0) state.variable_prompt = 0;
        if (result == ANSWER_BACK) return 0;
        if (result < 0 && result != MISS) ZAV_exit(0);
    }
    VAR_setup(nullptr, state.variable);
    if (CONT_get_bar() != 0) CONT_set_bar(2);
    return result;
}

int GRD_prompt_id(std::string& id, float* lat, float* lon) {
    constexpr int longest = 41;
    if (const char* given = RES_get("identifier")) {
        id = given;
    } else {
        ZAV_prompts("\nEnter a station or lat,lon: ", id, longest);
    }
    FILE_set_key('i', id);
    if (std::sscanf(id.c_str(), "%f,%f", lat, lon) == 2) return 1;
    CTY_data place;
    const int found = CTY_get("sao.cty", id, &place);
    *lat = place.lat;
    *lon = place.lon;
    return found;
}

}  // namespace zav
