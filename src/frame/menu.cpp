#include "frame/menu.h"

#include <algorithm>

#include "frame/mess.h"
#include "frame/string.h"
#include "frame/tools.h"
#include "frame/zav.h"

namespace zav {
namespace {

/// Most items that stand in one column.
constexpr std::size_t ONE_COLUMN = 12;
constexpr const char* SEPARATOR = " --------------------               ";

/// The items from 1 on that a column shows.
std::vector<const MENU_item*> shown_items(std::span<const MENU_item> menu, int menu_num) {
    std::vector<const MENU_item*> shown;
    if (menu_num < 0 || menu_num >= static_cast<int>(std::tuple_size_v<decltype(MENU_item::disp)>)) return shown;
    for (std::size_t i = 1; i < menu.size(); ++i) {
        if (menu[i].disp[static_cast<std::size_t>(menu_num)] == 1) shown.push_back(&menu[i]);
    }
    return shown;
}

void print_item(const MENU_item& item, std::size_t number, const char* end) {
    if (!item.name.empty() && item.name.front() == '-') {
        MESS_print(MESS_PRINT, "%s", SEPARATOR);
        if (*end == '\n') MESS_print(MESS_PRINT, "\n");
    } else {
        MESS_print(MESS_PRINT, " %2d: %-30s", static_cast<int>(number), item.name.c_str());
        MESS_text(MESS_PRINT, end);
    }
}

void print_two_columns(const std::vector<const MENU_item*>& items) {
    const std::size_t rows = (items.size() + 1) / 2;
    for (std::size_t row = 0; row < rows; ++row) {
        print_item(*items[row], row + 1, " ");
        if (row + rows < items.size()) {
            print_item(*items[row + rows], row + rows + 1, "\n");
        } else {
            MESS_print(MESS_PRINT, "\n");
        }
    }
}

void print_exit_lines(const std::string& back, bool two_columns, int flag) {
    const bool with_back = (flag & MENU_BACK) != 0;
    const bool with_exit = (flag & MENU_EXIT) != 0;
    if (with_back) MESS_print(MESS_PRINT, "  0: %-30s", back.c_str());
    if (with_back) MESS_text(MESS_PRINT, with_exit && two_columns ? " " : "\n");
    if (with_back && with_exit) MESS_print(MESS_PRINT, " -1: Exit program                  \n");
    if (with_exit && !with_back) MESS_print(MESS_PRINT, "  0: Exit program                  \n");
}

void list_abbreviations(std::span<const MENU_item> menu, const std::vector<const MENU_item*>& shown) {
    std::string list = menu.empty() ? std::string() : menu.front().abbr;
    for (const MENU_item* item : shown) list += (list.empty() ? "" : ",") + item->abbr;
    MESS_print(MESS_PRINT, "%s\n\n", list.c_str());
}

bool is_named(const MENU_item& item, const std::string& text) {
    return stricmp(item.abbr, text) == 0 || stricmp(item.name, text) == 0;
}

/// The result of the words and numbers that every menu knows; MISS if the answer is none of them.
int process_common(const std::vector<const MENU_item*>& shown, std::string& string, int flag) {
    const bool with_back = (flag & MENU_BACK) != 0;
    const bool with_exit = (flag & MENU_EXIT) != 0;
    if (with_exit && stricmp(string.c_str(), "exit") == 0) return with_back ? -1 : 0;
    if (with_back && stricmp(string.c_str(), "main") == 0) return 0;
    if (!string_is_num(string)) return MISS;

    const int number = text_to_int(string);
    const int lowest = with_exit ? -1 : with_back ? 0 : 1;
    if (number < lowest || number > static_cast<int>(shown.size())) return MISS;
    if (number <= 0) return number;
    const MENU_item& item = *shown[static_cast<std::size_t>(number) - 1];
    string = item.abbr;
    return item.index;
}

/// The result of an answer that may name an item.
int process_name(std::span<const MENU_item> menu, const std::vector<const MENU_item*>& shown, std::string& string) {
    std::vector<const MENU_item*> candidates = shown;
    if (!menu.empty()) candidates.insert(candidates.begin(), &menu.front());
    for (const MENU_item* item : candidates) {
        if (!is_named(*item, string)) continue;
        string = item->abbr;
        return item->index;
    }
    return MISS;
}

const MENU_item* find_index(int index, std::span<const MENU_item> menu) {
    const auto found =
        std::find_if(menu.begin(), menu.end(), [index](const MENU_item& item) { return item.index == index; });
    return found != menu.end() ? &*found : nullptr;
}

}  // namespace

int MENU_print(const std::string& title, std::span<const MENU_item> menu, int menu_num, int flag) {
    const std::vector<const MENU_item*> items = shown_items(menu, menu_num);
    const bool two_columns = items.size() > ONE_COLUMN;
    MESS_text(MESS_PRINT, title);
    MESS_print(MESS_PRINT, "\n");
    if (two_columns) {
        print_two_columns(items);
    } else {
        for (std::size_t i = 0; i < items.size(); ++i) print_item(*items[i], i + 1, "\n");
    }
    if ((flag & MENU_HELP) != 0) MESS_print(MESS_PRINT, " 99: Help                          \n");
    print_exit_lines(menu.empty() ? std::string() : menu.front().name, two_columns, flag);
    MESS_print(MESS_PRINT, "\n");
    return 1;
}

int MENU_process(const std::string& title, std::span<const MENU_item> menu, int menu_num, const std::string& prompt,
                 std::string& string, int flag) {
    const std::vector<const MENU_item*> shown = shown_items(menu, menu_num);
    MENU_print(title, menu, menu_num, flag);
    while (true) {
        std::string answer;
        ZAV_promptl(prompt, answer);
        if (answer.empty()) continue;
        if (answer != "?") {
            string = answer;
            break;
        }
        list_abbreviations(menu, shown);
    }
    const std::string typed = string;
    const int result = process_common(shown, string, flag);
    // A pick whose index happens to be MISS has changed the text already.
    return result != MISS || string != typed ? result : process_name(menu, shown, string);
}

int MENU_search(const std::string& item, std::span<const MENU_item> menu) {
    const auto found =
        std::find_if(menu.begin(), menu.end(), [&](const MENU_item& entry) { return is_named(entry, item); });
    return found != menu.end() ? found->index : MISS;
}

const char* MENU_get_abbr(int index, std::span<const MENU_item> menu) {
    const MENU_item* item = find_index(index, menu);
    return item != nullptr ? item->abbr.c_str() : nullptr;
}

int MENU_check(int index, std::span<const MENU_item> menu, int menu_num) {
    const MENU_item* item = find_index(index, menu);
    if (item == nullptr || menu_num < 0 || menu_num >= static_cast<int>(item->disp.size())) return 0;
    return item->disp[static_cast<std::size_t>(menu_num)] == 1;
}

}  // namespace zav
