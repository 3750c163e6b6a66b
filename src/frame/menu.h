#pragma once

#include <array>
#include <cstdio>
#include <span>
#include <string>
#include <vector>

namespace zav {

/// One entry of a menu. Item 0 of a menu is the way back and isn't listed among the numbered ones.
struct MENU_item {
    std::string name;            ///< text shown; one that starts with "-" shows as a separator
    std::string abbr;            ///< what a pick returns as text
    int index = 0;               ///< result of a pick
    std::array<int, 10> disp{};  ///< 1 in each display column that shows the item
};

/// What a menu offers beside its items; the values add up.
enum : int { MENU_EXIT = 1, MENU_BACK = 2, MENU_HELP = 4 };

/// Shows the items of a display column. Result 1.
int MENU_print(const std::string& title, std::span<const MENU_item> menu, int menu_num, int flag);
/// Shows a menu and reads an answer into `string`: the abbreviation of a picked item, else the text typed.
/// Result: the item's index, 0 for back, -1 for exit (0 where only exit is offered), MISS for other text.
/// The end of standard input ends the program.
int MENU_process(const std::string& title, std::span<const MENU_item> menu, int menu_num, const std::string& prompt,
                 std::string& string, int flag);
/// Index of the first item, from 0 on, with this abbreviation or name in any case; MISS if there is none.
int MENU_search(const std::string& item, std::span<const MENU_item> menu);
/// Abbreviation of the first item with this index, null if there is none. Valid as long as the menu.
const char* MENU_get_abbr(int index, std::span<const MENU_item> menu);
/// 1 if the first item with this index is shown in that column, else 0.
int MENU_check(int index, std::span<const MENU_item> menu, int menu_num);

// Prompts. Each shows its text and reads a line of standard input, again after a "set" command and after a line that
// gives no value. An empty line leaves `str` and gives 0 for a number. The end of standard input ends the program.

/// One word of up to 19 characters.
std::string& ZAV_promptl(const std::string& prompt, std::string& str);
/// One word of up to `length` - 1 characters.
std::string& ZAV_prompts(const std::string& prompt, std::string& str, int length);
float ZAV_promptf(const std::string& prompt);
int ZAV_promptd(const std::string& prompt);
/// Does the prompt commands "set" and "exit". 1 if a "set" command was done, else 0.
int ZAV_set_command(const std::string& string);

/// Most items of a menu with its end.
constexpr int TIM_MENU_SIZE = 40;
constexpr int LEV_MENU_SIZE = 40;
constexpr int VAR_MENU_SIZE = 50;

/// The menus of the forecast time, the level and the variable.
std::vector<MENU_item>& GRD_time_menu();
std::vector<MENU_item>& UPA_level_menu();
std::vector<MENU_item>& VAR_var_menu();

/// Read a menu anew from the program's menu file in the directory of "file_path". 1, or 0 without a file, which
/// leaves the menu as it is.
int GRD_read_time_menu();
int UPA_read_level_menu();
int VAR_read_menu();

/// Opens the variable menu file, closing a former one: `file`, or the program's own for an absent or empty name.
/// 1, or 0 with a message.
int VAR_open_file(const char* file);
/// The open variable menu file, null without one. Each reader rewinds it.
std::FILE* VAR_menu_file();
/// Shows the variable menu and reads an answer, as MENU_process; in batch mode the first item or "def", result 1.
int VAR_menu(const std::string& title, const std::string& prompt, std::string& string, int flag);
/// 1 if the pattern `fstr` fits the text `ustr`: alternatives by |, ~ for not, ? and . for any character, * for any
/// text, [a-z] for a set. 0 otherwise and for an empty argument.
int VAR_menu_display(const std::string& fstr, const std::string& ustr);
/// Shows all lines of the variable menu file.
void VAR_print_file();

}  // namespace zav
