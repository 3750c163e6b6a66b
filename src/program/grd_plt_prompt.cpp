// The three nested questions: forecast time, vertical level, variable.

#include <cstdio>
#include <vector>

#include "files/files.h"
#include "frame/flag.h"
#include "frame/menu.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/status.h"
#include "frame/string.h"
#include "frame/system.h"
#include "frame/zav.h"
#include "grid/grd_tool.h"
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

/// Tells of a word that can't be read. One that an option gave ends the run, as nobody can be asked for another.
void refuse(const char* what, const std::string& word, bool given) {
    MESS_print(MESS_WARN, "%s can't be read: %s\n", what, word.c_str());
    if (given || FLAG_batch() != 0) ZAV_exit(STATUS_WORD);
}

/// Takes a list of times, the first as the chosen one. False, with a warning, if one can't be read.
bool take_times(const std::string& text, bool given) {
    state.times = parse_string(text, ',');
    if (state.times.empty()) state.times.emplace_back();
    for (std::size_t i = state.times.size(); i-- > 0;) {
        int hour = 0;
        if (VAR_dec_time(state.times[i], &hour) == 0) {
            refuse("Time", state.times[i], given);
            return false;
        }
        if (i == 0) FLAG_setl(FLAG_TIME, hour);
    }
    return true;
}

bool take_level(const std::string& text, bool given) {
    int ltype = MISS;
    int level = MISS;
    if (VAR_dec_level(text, &ltype, &level) == 0) {
        refuse("Level", text, given);
        return false;
    }
    FLAG_set(FLAG_LEVEL, level);
    FLAG_setl(FLAG_LTYPE, ltype);
    VAR_set_level_str(text);
    return true;
}

/// Compiles the variable string. False, with a warning, if nothing of it can be read; a layer that nobody knows is told
/// of, and the others are drawn.
bool take_variable(bool given) {
    bool compiled = VAR_setup(nullptr, state.variable) != 0;
    if (!VAR_unknown().empty()) {
        Date date;
        GRD_get_date(&date);
        GRD_learn_names(&date);
        compiled = VAR_setup(nullptr, state.variable) != 0;
    }
    const std::vector<int> unknown = VAR_unknown();
    if (!compiled || static_cast<int>(unknown.size()) == VAR_get_num()) {
        refuse("Variable", state.variable, given);
        return false;
    }
    for (const int i : unknown) {
        MESS_print(MESS_WARN, "Variable can't be read: %s\n", VAR_get_name(i).c_str());
        ZAV_note(STATUS_WORD);
    }
    return true;
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

    if (const char* given = RES_get("time")) {
        state.time_prompt = 0;
        return take_times(fit_text(given, TIME_SIZE), true) ? 1 : 0;
    }
    std::string text;
    int index = 0;
    do {
        if (!ask("\n        Forecast Time Menu\n", GRD_time_menu(), "Enter the time: ", text, &index)) return 0;
    } while (!take_times(text, false));
    return 1;
}

int UPA_prompt_level() {
    UPA_read_level_menu();
    if (state.level_prompt == 0) return 0;

    const char* given = RES_get("level");
    if (given != nullptr || FLAG_batch() != 0) {
        state.level_prompt = 0;
        return take_level(given != nullptr ? given : "500", true) ? 1 : 0;
    }
    std::string text;
    int index = 0;
    do {
        if (!ask("\n        Vertical Level Menu\n", UPA_level_menu(), "Enter the level: ", text, &index)) return 0;
    } while (!take_level(text, false));
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
        if (!take_variable(true)) return 0;
    } else {
        do {
            result =
                VAR_menu("\n        Variable Menu\n", "Enter the variable: ", state.variable, MENU_EXIT | MENU_BACK);
            state.variable = fit_text(state.variable, VARIABLE_SIZE);
            if (FLAG_batch() != 0) state.variable_prompt = 0;
            if (result == ANSWER_BACK) return 0;
            if (result < 0 && result != MISS) ZAV_exit(0);
        } while (!take_variable(false));
    }
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
