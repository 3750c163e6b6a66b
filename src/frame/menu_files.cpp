#include <algorithm>
#include <cstdio>
#include <functional>

#include "frame/flag.h"
#include "frame/hooks.h"
#include "frame/menu.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/string.h"
#include "frame/tools.h"
#include "frame/zav.h"

namespace zav {
namespace {

constexpr std::size_t ABBR_SIZE = 80;  // whole, as it names a variable of its file; the tables have 8 columns for it
constexpr std::size_t NAME_SIZE = 31;
constexpr M_type FILE_WARNING = 64;
constexpr const char* BLANKS = " \t\r\v\f";

/// One item of a compiled menu, shown in column 0 or not.
struct Item {
    const char* name;
    const char* abbr;
    int index;
    int shown;
};

constexpr Item TIME_ITEMS[] = {
    {"Back to previous menu", "back", 0, 1},
    {"Initialized", "init", 999, 1},
    {"3 hour", "h03", 3, 0},
    {"6 hour", "h06", 6, 1},
    {"9 hour", "h09", 9, 0},
    {"12 hour", "h12", 12, 1},
    {"18 hour", "h18", 18, 1},
    {"24 hour", "h24", 24, 1},
    {"30 hour", "h30", 30, 1},
    {"36 hour", "h36", 36, 1},
    {"42 hour", "h42", 42, 1},
    {"48 hour", "h48", 48, 1},
    {"60 hour", "h60", 60, 1},
    {"3 day", "d3", 72, 1},
    {"3.5 day", "e3", 84, 1},
    {"4 day", "d4", 96, 1},
    {"4.5 day", "e4", 108, 1},
    {"5 day", "d5", 120, 1},
    {"5.5 day", "e5", 132, 1},
    {"6 day", "d6", 144, 1},
    {"6.5 day", "e6", 156, 1},
    {"7 day", "d7", 168, 1},
    {"7.5 day", "e7", 180, 1},
    {"8 day", "d8", 192, 1},
    {"8.5 day", "e8", 204, 1},
    {"9 day", "d9", 216, 1},
    {"9.5 day", "e9", 228, 1},
    {"10 day", "d0", 240, 1},
};

constexpr Item LEVEL_ITEMS[] = {
    {"Back to previous menu", "back", 0, 1},
    {"Sea level", "sl", 2000, 1},
    {"Surface", "sfc", 2000, 1},
    {"1000 mb", "1000mb", 1000, 1},
    {"925 mb", "925mb", 925, 1},
    {"850 mb", "850mb", 850, 1},
    {"700 mb", "700mb", 700, 1},
    {"500 mb", "500mb", 500, 1},
    {"400 mb", "400mb", 400, 1},
    {"300 mb", "300mb", 300, 1},
    {"250 mb", "250mb", 250, 1},
    {"200 mb", "200mb", 200, 1},
    {"150 mb", "150mb", 150, 1},
    {"100 mb", "100mb", 100, 1},
    {"70 mb", "70mb", 70, 1},
    {"50 mb", "50mb", 50, 1},
    {"30 mb", "30mb", 30, 1},
    {"20 mb", "20mb", 20, 1},
    {"10 mb", "10mb", 10, 1},
    {"Tropopause", "trop", 1900, 1},
    {"Max wind", "wind", 1800, 1},
    {"Whole sounding", "snd", 1600, 1},
};

constexpr Item VARIABLE_ITEMS[] = {{"Return to previous menu", "back", 0, 1}};

template <std::size_t N>
std::vector<MENU_item> make_menu(const Item (&items)[N]) {
    std::vector<MENU_item> menu;
    for (const Item& item : items) menu.push_back({item.name, item.abbr, item.index, {item.shown}});
    return menu;
}

struct State {
    std::vector<MENU_item> tim_menu = make_menu(TIME_ITEMS);
    std::vector<MENU_item> lev_menu = make_menu(LEVEL_ITEMS);
    std::vector<MENU_item> var_menu = make_menu(VARIABLE_ITEMS);
    file_ptr var_file;
};
State state;

std::string text_of(std::string (*hook)()) { return hook != nullptr ? hook() : std::string(); }

/// Reads a whole line, however long. False at the end of the file.
bool read_line(std::FILE* file, std::string& line) {
    line.clear();
    int c = std::getc(file);
    if (c == EOF) return false;
    for (; c != EOF && c != '\n'; c = std::getc(file)) {
        if (c != '\0') line += static_cast<char>(c);
    }
    return true;
}

/// The next word of a line, behind `place`, which moves past it.
std::string next_word(const std::string& line, std::size_t& place) {
    const std::size_t start = std::min(line.find_first_not_of(BLANKS, place), line.size());
    place = std::min(line.find_first_of(BLANKS, start), line.size());
    return line.substr(start, place - start);
}

/// One line of a menu file.
struct MenuLine {
    std::string abbr;
    std::string name;
    std::string rule;
};

/// False for a line without the three fields.
bool split_line(const std::string& text, MenuLine& line) {
    std::size_t place = 0;
    line.abbr = fit_text(next_word(text, place), ABBR_SIZE);
    line.name = fit_text(next_word(text, place), NAME_SIZE);
    line.rule = next_word(text, place);
    if (line.rule.empty()) return false;
    trim_string(line.name);
    fill_string(line.name, '_', ' ');
    return true;
}

/// Passes over the lines that continue a variable string.
void skip_continuation(std::FILE* file, std::string text) {
    do {
        wstrim_string(text);
    } while (!text.empty() && text.back() == '\\' && read_line(file, text));
}

/// Whether a test such as "mo=eta" holds. A word of another kind doesn't.
bool test_holds(const std::string& word, const char* prefix, const std::string& text) {
    return strnicmp(word.c_str(), prefix, 3) == 0 && VAR_menu_display(word.substr(3), text) == 1;
}

/// Rule of the time menu: any of its words.
bool time_rule_holds(const std::string& rule) {
    const std::string model = text_of(ZAV_hooks().model_text);
    const std::vector<std::string> words = parse_string(rule, ',');
    return std::any_of(words.begin(), words.end(),
                       [&](const std::string& word) { return test_holds(word, "mo=", model); });
}

/// Rule of the level and variable menus: alternatives, each of which needs all its words.
bool joined_rule_holds(const std::string& rule, bool with_level) {
    const std::string model = text_of(ZAV_hooks().model_text);
    const std::string time = text_of(ZAV_hooks().time_text);
    const std::string level = with_level ? text_of(ZAV_hooks().level_text) : std::string();
    const auto word_holds = [&](const std::string& word) {
        return test_holds(word, "mo=", model) || test_holds(word, "ft=", time) || test_holds(word, "le=", level);
    };
    for (const std::string& alternative : parse_string(rule, ',')) {
        const std::vector<std::string> words = parse_string(alternative, '&');
        if (!words.empty() && std::all_of(words.begin(), words.end(), word_holds)) return true;
    }
    return false;
}

/// Fills a menu behind its item 0 with the lines whose rule shows them.
void read_items(std::FILE* file, std::vector<MENU_item>& menu, std::size_t size, bool has_strings,
                const std::function<bool(const std::string&)>& holds) {
    menu.resize(1);
    std::string text;
    // One place is the end of the menu.
    while (menu.size() + 1 < size && read_line(file, text)) {
        MenuLine line;
        const bool is_item = split_line(text, line);
        if (has_strings) skip_continuation(file, text);
        if (!is_item || line.rule == "0" || (line.rule != "1" && !holds(line.rule))) continue;
        menu.push_back({line.name, line.abbr, 1, {1}});
    }
}

file_ptr open_menu_file(const char* ending) { return ZAV_open_file(ZAV_lookup_path(RES_get_progname() + ending), "r"); }

}  // namespace

std::vector<MENU_item>& GRD_time_menu() { return state.tim_menu; }
std::vector<MENU_item>& UPA_level_menu() { return state.lev_menu; }
std::vector<MENU_item>& VAR_var_menu() { return state.var_menu; }

int GRD_read_time_menu() {
    const file_ptr file = open_menu_file(".tim");
    if (!file) return 0;
    read_items(file.get(), state.tim_menu, TIM_MENU_SIZE, false, time_rule_holds);
    return 1;
}

int UPA_read_level_menu() {
    const file_ptr file = open_menu_file(".lev");
    if (!file) return 0;
    read_items(file.get(), state.lev_menu, LEV_MENU_SIZE, false,
               [](const std::string& rule) { return joined_rule_holds(rule, false); });
    return 1;
}

int VAR_read_menu() {
    state.var_menu.resize(1);
    if (!state.var_file) return 0;
    std::rewind(state.var_file.get());
    read_items(state.var_file.get(), state.var_menu, VAR_MENU_SIZE, true,
               [](const std::string& rule) { return joined_rule_holds(rule, true); });
    return 1;
}

int VAR_open_file(const char* file) {
    const std::string name =
        file != nullptr && *file != '\0' ? std::string(file) : ZAV_lookup_path(RES_get_progname() + ".var");
    state.var_file.reset();
    state.var_file = ZAV_open_file(name, "r");
    if (state.var_file) return 1;
    MESS_print(FILE_WARNING, "VAR_open_file: Unable to open var file: %s\n", name.c_str());
    return 0;
}

std::FILE* VAR_menu_file() { return state.var_file.get(); }

int VAR_menu(const std::string& title, const std::string& prompt, std::string& string, int flag) {
    if (ZAV_hooks().init_variables != nullptr) ZAV_hooks().init_variables();
    if (FLAG_batch()) {
        string = state.var_menu.size() > 1 ? state.var_menu[1].abbr : "def";
        return 1;
    }
    while (true) {
        const int result = MENU_process(title, state.var_menu, 0, prompt, string, flag);
        if (result != MISS || stricmp(string.c_str(), "list") != 0) return result;
        VAR_print_file();
    }
}

void VAR_print_file() {
    MESS_print(MESS_PRINT, " Abbr    Description\n");
    std::FILE* file = state.var_file.get();
    if (file == nullptr) return;
    std::rewind(file);
    std::string text;
    while (read_line(file, text)) {
        MenuLine line;
        if (split_line(text, line)) MESS_print(MESS_PRINT, "%-8s %-50s\n", line.abbr.c_str(), line.name.c_str());
        skip_continuation(file, text);
    }
}

}  // namespace zav
