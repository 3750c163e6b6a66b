#include <cstdio>
#include <cstdlib>
#include <vector>

#include "files/lookup_lines.h"
#include "frame/hooks.h"
#include "frame/menu.h"
#include "frame/string.h"
#include "var/var_state.h"

namespace zav {
namespace {

constexpr std::size_t RULE_TEXT_SIZE = 21;  // 20 characters and the end
constexpr std::size_t SOURCE_NAME_SIZE = 41;

/// A lookup file of numbered names. A file that can't be opened is reported once.
struct name_file {
    const char* file;    // name in the directory of the lookup files
    const char* caller;  // function that reports
    LookupLines lines;
    std::string reported;  // path whose absence was reported
};

/// A line of the table of models; any source if it is MISS.
struct model_line {
    int source = MISS;
    int model = MISS;
    std::string name;
};

struct State {
    std::string model_str;
    std::string level_str;
    std::string time_str;
    name_file models{"mod_name.lup", "VAR_model", {}, {}};
    name_file sources{"source.lup", "VAR_source", {}, {}};
    std::vector<model_line> model_lines;
    int model_changes = 0;  ///< of the file when they were read
};
State state;

bool load(name_file& file) {
    const std::string path = ZAV_lookup_path(file.file);
    if (file.lines.load(path)) {
        file.reported.clear();
        return true;
    }
    if (file.reported != path) MESS_print(64, "%s: Unable to open file: %s\n", file.caller, path.c_str());
    file.reported = path;
    return false;
}

/// A number at `ptr`, which moves behind it. False, with `ptr` unmoved, if there is none.
bool take_number(const char*& ptr, int& num) {
    char* end = nullptr;
    const long value = std::strtol(ptr, &end, 10);
    if (end == ptr) return false;
    num = VAR_to_int(static_cast<double>(value));
    ptr = end;
    return true;
}

std::string rest_of_line(const char* ptr) {
    std::string name = ptr;
    const std::size_t start = name.find_first_not_of(" \t");
    name.erase(0, start == std::string::npos ? name.size() : start);
    wstrim_string(name);
    return name;
}

/// "source:model name" or "model name". False for another line.
bool read_model(const std::string& line, int& source, int& model, std::string& name) {
    const char* ptr = line.c_str();
    source = MISS;
    if (!take_number(ptr, model)) return false;
    if (*ptr == ':') {
        source = model;
        ptr++;
        if (!take_number(ptr, model)) return false;
    }
    name = rest_of_line(ptr);
    return !name.empty();
}

/// Takes the table of models apart if it was read anew.
void read_models() {
    const LookupLines& file = state.models.lines;
    if (state.model_changes == file.changes()) return;
    state.model_changes = file.changes();
    state.model_lines.clear();
    for (const std::string& line : file.lines()) {
        model_line item;
        if (read_model(line, item.source, item.model, item.name)) state.model_lines.push_back(item);
    }
}

/// One line of the variable menu file, its continuation lines joined.
struct menu_line {
    std::string abbr;
    std::string name;
    std::string text;  ///< the variable string, without blanks
};

/// The next line of a stream, without its end. False at the end of the file.
bool next_line(std::FILE* file, std::string& line) {
    line.clear();
    char part[512];
    while (std::fgets(part, sizeof part, file) != nullptr) {
        line += part;
        if (!line.empty() && line.back() == '\n') break;
    }
    if (line.empty()) return false;
    wsstrip_string(line);
    return true;
}

/// The text behind the first three words.
std::string behind_words(const std::string& line) {
    std::size_t pos = 0;
    for (int word = 0; word < 3 && pos != std::string::npos; word++) {
        pos = line.find_first_not_of(" \t", pos);
        if (pos != std::string::npos) pos = line.find_first_of(" \t", pos);
    }
    return pos == std::string::npos ? "" : line.substr(pos);
}

void strip_blanks(std::string& text) {
    strip_string(text, ' ');
    strip_string(text, '\t');
}

bool next_menu_line(std::FILE* file, menu_line& item) {
    std::string line;
    if (!next_line(file, line)) return false;
    const std::vector<std::string> words = split_blanks(line);
    item.abbr = words.empty() ? "" : words[0];
    item.name = words.size() > 1 ? words[1] : "";
    item.text = behind_words(line);
    strip_blanks(item.text);
    while (!item.text.empty() && item.text.back() == '\\') {
        item.text.pop_back();
        if (!next_line(file, line)) break;
        strip_blanks(line);
        item.text += line;
    }
    return true;
}

}  // namespace

int VAR_lookup(const std::string& name, std::string& str) {
    std::FILE* file = VAR_menu_file();
    if (name.empty() || file == nullptr) return 0;
    std::rewind(file);
    menu_line item;
    while (next_menu_line(file, item)) {
        if (item.abbr != name || item.text.empty()) continue;
        str = item.text;
        return 1;
    }
    MESS_print(0x40000000, "VAR_lookup: not found\n");
    return 0;
}

int VAR_search_name_file(const std::string& str, std::string& name) {
    std::FILE* file = VAR_menu_file();
    if (str.empty() || file == nullptr) return 0;
    std::rewind(file);
    menu_line item;
    while (next_menu_line(file, item)) {
        if (item.name.empty() || stricmp(item.abbr, str) != 0) continue;
        name = item.name;
        fill_string(name, '_', ' ');
        return 1;
    }
    return 0;
}

std::string VAR_model(int rmod) {
    const bool with_source = rmod > 1000;
    const int model = with_source ? rmod % 1000 : rmod;
    const int source = with_source ? rmod / 1000 : MISS;
    if (!load(state.models)) return "";
    read_models();
    for (const model_line& line : state.model_lines) {
        if (line.model == model && (line.source == MISS || line.source == source)) return line.name;
    }
    return "";
}

std::string VAR_source(int source) {
    if (!load(state.sources)) return "";
    for (const std::string& line : state.sources.lines.lines()) {
        const char* ptr = line.c_str();
        int num = MISS;
        if (take_number(ptr, num) && num == source) return fit_text(rest_of_line(ptr), SOURCE_NAME_SIZE);
    }
    return "";
}

void VAR_set_model_str(const std::string& str) { state.model_str = fit_text(str, RULE_TEXT_SIZE); }
void VAR_set_level_str(const std::string& str) { state.level_str = fit_text(str, RULE_TEXT_SIZE); }
void VAR_set_time_str(const std::string& str) { state.time_str = fit_text(str, RULE_TEXT_SIZE); }
const std::string& VAR_get_model_str() { return state.model_str; }
const std::string& VAR_get_level_str() { return state.level_str; }
const std::string& VAR_get_time_str() { return state.time_str; }

}  // namespace zav
