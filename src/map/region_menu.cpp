#include <algorithm>
#include <cstdio>

#include "files/files.h"
#include "files/lookup_lines.h"
#include "frame/flag.h"
#include "frame/resrc.h"
#include "frame/string.h"
#include "frame/system.h"
#include "frame/tools.h"
#include "map/region_state.h"

namespace zav {
namespace {

constexpr int ABBR_SIZE = 6;   // 5 characters and the end
constexpr int NAME_SIZE = 21;  // 20 characters and the end
constexpr int LINE_MAX_LENGTH = 500;
constexpr int EXIT_BAD_DOMAIN = 43;
constexpr int TRIES = 5;

/// One line of a region file, read by its words.
struct region_line {
    std::string abbr;
    std::string name;
    int show = 0;
    std::string domain;
};

std::string region_path(const std::string& file) {
    return FILE_add_path(RES_get("file_path"), file.empty() ? REGION_FILE : file);
}

/// Where a region file is: beside the lookup files, or else in the current folder.
std::string find_regions(const std::string& file) {
    const std::string path = region_path(file);
    if (FILE_is_file(path) != 0 || file.empty() || file == REGION_FILE) return path;
    if (FILE_is_file(file) != 0) return file;
    MESS_print(MESS_WARN, "Region file not found: %s, nor %s in the current folder\n", path.c_str(), file.c_str());
    return path;
}

file_ptr open_regions(const std::string& file) {
    const std::string path = find_regions(file);
    // Opened as a plain file: its name may come out of the domain text of a data file, and must not start a command.
    file_ptr stream(FILE_is_file(path) != 0 ? std::fopen(FILE_add_user_path(path).c_str(), "r") : nullptr);
    if (stream == nullptr) MESS_print(MESS_DEBUG, "Unable to open region file: %s\n", path.c_str());
    return stream;
}

bool next_region(std::FILE* file, region_line& line) {
    std::string show;
    if (fgetword(file, line.abbr, LINE_MAX_LENGTH) != 1 || fgetword(file, line.name, LINE_MAX_LENGTH) != 1 ||
        fgetword(file, show, LINE_MAX_LENGTH) != 1 || fgetword(file, line.domain, LINE_MAX_LENGTH) != 1) {
        return false;
    }
    line.abbr = fit_text(line.abbr, ABBR_SIZE);
    line.name = fit_text(line.name, NAME_SIZE);
    fill_string(line.name, '_', ' ');
    line.show = text_to_int(show);
    return true;
}

/// True if a line's abbreviation, or its part that the menu has room for, is the one asked for, in any case.
bool is_region(const std::string& abbr, const std::string& name) {
    return stricmp(abbr, name) == 0 || stricmp(fit_text(abbr, ABBR_SIZE), name) == 0;
}

/// The menu, with the built-in regions at the first need.
std::vector<MENU_item>& region_menu() {
    std::vector<MENU_item>& menu = DOM_module().menu;
    if (!menu.empty()) return menu;
    menu.resize(REGION_MENU_SIZE);
    menu[0].name = "Return to previous menu";
    menu[0].abbr = "back";
    menu[0].disp[0] = 1;
    std::size_t item = 1;
    for (const def_region& row : DEF_REGIONS) {
        menu[item].name = row.name;
        menu[item].abbr = row.abbr;
        menu[item].index = 1;
        menu[item++].disp[0] = 1;
    }
    return menu;
}

/// The region menu, of the region file if it wasn't read yet and is there.
std::vector<MENU_item>& need_menu() {
    if (DOM_module().num_regs == 0) DOM_read_menu(REGION_FILE);
    return region_menu();
}

/// A resource with a text in it, else null.
const char* set_resource(const char* name) {
    const char* text = RES_get(name);
    return text != nullptr && text[0] != '\0' ? text : nullptr;
}

void end_invalid() {
    MESS_print(MESS_ERROR, "Invalid domain\n");
    ZAV_exit(EXIT_BAD_DOMAIN);
}

/// Takes the answer of DOM_prompt_region from a text that is set: the question isn't asked again.
int decode_for_good(const std::string& text, Domain* domain) {
    const int result = DOM_decode(text, domain);
    if (result == -1) end_invalid();
    DOM_module().prompt_region = 0;
    return result;
}

/// One round of the region menu. 1 when `result` is the answer, 0 to ask again.
int ask_region(Domain* domain, int& result) {
    std::string text;
    const int pick = MENU_process("\n        Region Menu\n", region_menu(), DOM_module().menu_type,
                                  "Enter the region: ", text, MENU_EXIT + MENU_BACK);
    if (stricmp(text, "list") == 0) {
        DOM_print_file(REGION_FILE);
        return 0;
    }
    if (pick == -1) ZAV_exit(0);
    if (pick == 0) {
        result = 0;
        return 1;
    }
    result = DOM_decode(text, domain);
    if (result == MISS || result > 0) return 1;
    MESS_print(MESS_WARN, "Invalid domain\n");
    return 0;
}

}  // namespace

int DOM_get_def_region(const std::string& region, Domain* domain) {
    for (const def_region& row : DEF_REGIONS) {
        if (domain == nullptr || stricmp(region.c_str(), row.abbr) != 0) continue;
        DOM_init(domain);
        domain->proj = 1;
        domain->nx = DEF_NX;
        domain->ny = DEF_NY;
        domain->clat = row.clat != FMISS ? row.clat : ZAV_promptf("Enter the central latitude: ");
        domain->clon = row.clon != FMISS ? row.clon : ZAV_promptf("Enter the central longitude: ");
        domain->plon = domain->clon;
        domain->dx = domain->dy = row.step;
        DOM_set_base_prior(domain->dy * static_cast<float>(domain->ny - 1));
        FLAG_set(FLAG_DOMAIN, 1);
        return 1;
    }
    return 0;
}

int DOM_read_menu(const std::string& file) {
    const file_ptr stream = open_regions(file);
    if (stream == nullptr) return 0;
    std::vector<MENU_item>& menu = region_menu();
    // Nothing of a longer file read before may stay behind the end.
    std::fill(menu.begin() + 1, menu.begin() + 1 + REGION_FILE_MAX, MENU_item{});
    int num = 1;
    region_line line;
    while (num <= REGION_FILE_MAX && next_region(stream.get(), line)) {
        if (line.show == 0) continue;
        menu[num].name = line.name;
        menu[num].abbr = line.abbr;
        menu[num].index = num;
        menu[num++].disp[0] = 1;
    }
    DOM_module().num_regs = num;
    return 1;
}

int DOM_search_file(const std::string& file, const char* str, std::string& domstr) {
    const file_ptr stream = open_regions(file);
    if (stream == nullptr) return 0;
    const bool any = str == nullptr || str[0] == '\0';
    std::string line;
    while (fgetnline(stream.get(), line, LINE_MAX_LENGTH) >= 0) {
        if (!line.empty() && line[0] == '#') continue;
        const std::vector<std::string> words = split_blanks(line);
        if (words.size() == 1) {
            domstr = words[0];
            return 1;
        }
        if (words.size() < 4 || (!any && !is_region(words[0], str))) continue;
        domstr = words[3];
        return 1;
    }
    return 0;
}

void DOM_print_file(const std::string& file) {
    const file_ptr stream = open_regions(file);
    if (stream == nullptr) return;
    MESS_print(MESS_PRINT, " Abbr    Description\n");
    region_line line;
    while (next_region(stream.get(), line)) {
        MESS_print(MESS_PRINT, "%-8s %-50s\n", line.abbr.c_str(), line.name.c_str());
    }
}

int DOM_get_region(Domain* domain, int flag) {
    const char* text = flag == 1 || flag == 3 || flag == 4 ? set_resource("plot_domain") : nullptr;
    if (text == nullptr) text = set_resource("region");
    if (text != nullptr) return DOM_decode(text, domain);
    return flag == 4 ? DOM_decode(need_menu()[1].abbr, domain) : 0;
}

int DOM_get_grid_domain(Domain* domain) {
    for (const char* name : {"grid_domain", "region", "plot_domain"}) {
        const char* text = set_resource(name);
        if (text != nullptr) return DOM_decode(text, domain);
    }
    return 0;
}

int DOM_prompt_region(Domain* domain, int flag) {
    if (DOM_module().prompt_region == 0) return 0;
    const char* const given[] = {flag == 1 ? set_resource("plot_domain") : nullptr, set_resource("region")};
    for (const char* text : given) {
        const int result = text != nullptr ? decode_for_good(text, domain) : 0;
        if (result > 0) return result;
    }
    const std::vector<MENU_item>& menu = need_menu();
    if (FLAG_batch() != 0) return decode_for_good(menu[1].abbr, domain);
    for (int i = 0; i < TRIES; i++) {
        int result = 0;
        if (ask_region(domain, result) != 0) return result;
    }
    return -1;
}

void DOM_set_prompt_region(int val) { DOM_module().prompt_region = val; }

std::string DOM_get_region_name(int region) {
    const std::vector<MENU_item>& menu = region_menu();
    return region >= 0 && region < REGION_MENU_SIZE ? menu[region].name : "";
}

}  // namespace zav
