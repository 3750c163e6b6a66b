#include "frame/def_read.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <vector>

#include "frame/hooks.h"
#include "frame/mess.h"
#include "frame/string.h"
#include "frame/tools.h"

namespace zav {
namespace {

constexpr std::size_t NAME_SIZE = 30;
constexpr std::size_t TAG_COUNT = 10;
constexpr std::size_t LEVEL_COUNT = 10;
constexpr int LINE_LENGTH = 249;

/// State of a section between IF and END.
enum class Section { inactive, active, closed };

struct State {
    file_ptr def_file;
    std::string prog_name = "Zav";
    std::string prog_title;
    std::vector<std::string> tags;
    std::vector<Section> match;
    int deeper = 0;  // levels open beyond the last that is kept; all in them is inactive
    bool matches = true;
};
State state;

bool has_tag(const std::string& tag) { return searchstr(state.tags, tag); }

Section section_of(const std::string& tag) { return has_tag(tag) ? Section::active : Section::inactive; }

void warn_without_if(const char* word) { MESS_print(MESS_WARN, "DEF_get: %s without an if\n", word); }

void begin_section(const std::string& tag) {
    if (state.match.size() < LEVEL_COUNT) {
        state.match.push_back(section_of(tag));
    } else {
        ++state.deeper;
    }
}

/// `replacement` is what an inactive section becomes; one that was active is closed for good.
void change_section(const char* word, Section replacement) {
    if (state.match.empty()) return warn_without_if(word);
    if (state.deeper > 0) return;
    Section& top = state.match.back();
    top = top == Section::inactive ? replacement : Section::closed;
}

void end_section() {
    if (state.match.empty()) return warn_without_if("end");
    if (state.deeper > 0) {
        --state.deeper;
    } else {
        state.match.pop_back();
    }
}

/// Takes a conditional line. False if it is none.
bool take_condition(const std::string& key, const std::string& tag) {
    if (key == "IF") {
        begin_section(tag);
    } else if (key == "ELSE") {
        change_section("else", Section::active);
    } else if (key == "ELIF") {
        change_section("elif", section_of(tag));
    } else if (key == "END") {
        end_section();
    } else {
        return false;
    }
    state.matches = state.deeper == 0 && std::all_of(state.match.begin(), state.match.end(),
                                                     [](Section section) { return section == Section::active; });
    return true;
}

void remove_tag(const std::string& tag) {
    std::erase_if(state.tags, [&](const std::string& known) { return stricmp(known, tag) == 0; });
}

constexpr const char* BLANKS = " \t\r\v\f";

std::string first_word(const std::string& line, std::size_t start) {
    return line.substr(start, std::min(line.find_first_of(BLANKS, start), line.size()) - start);
}

struct Line {
    std::string key;
    std::string value;
    bool has_value = false;
};

/// The first two words of a line, the second with its blanks if it stands in double quotes.
Line split_line(const std::string& text) {
    Line line;
    std::size_t place = text.find_first_not_of(BLANKS);
    if (place == std::string::npos) return line;
    line.key = first_word(text, place);
    place = text.find_first_not_of(BLANKS, place + line.key.size());
    if (place == std::string::npos) return line;
    line.has_value = true;
    if (text[place] == '"') {
        line.value = text.substr(place + 1, std::min(text.find('"', place + 1), text.size()) - place - 1);
    } else {
        line.value = first_word(text, place);
    }
    return line;
}

/// What stands in front of the point in a full name.
std::string prefix() {
    if (state.prog_title.empty()) return state.prog_name;
    if (state.prog_title.front() == '+') return state.prog_name + "." + state.prog_title.substr(1);
    return state.prog_title;
}

/// Whether the key fits the full name.
bool fits(const std::string& key, const std::string& full) {
    std::size_t k = 0;
    std::size_t f = 0;
    while (k < key.size()) {
        if (key[k] == '*') {
            ++k;
            const std::string part = key.substr(k, std::min(key.find('*', k), key.size()) - k);
            f = full.find(part, f);
            if (f == std::string::npos) return false;
        } else {
            if (f >= full.size() || full[f] != key[k]) return false;
            ++k;
            ++f;
        }
    }
    return f == full.size();
}

/// The resource file of a directory: the first that exists, else the last.
std::string file_in_directory(const std::string& directory) {
    std::string path;
    for (const char* name : {"zav.cfg", ".zavdef", "Zav.res"}) {
        path = directory + (directory.back() == '/' ? "" : "/") + name;
        std::error_code ignored;
        if (std::filesystem::exists(path, ignored)) break;
    }
    return path;
}

}  // namespace

void DEF_prog(const std::string& name) {
    const std::size_t slash = name.rfind('/');
    state.prog_name = fit_text(slash == std::string::npos ? name : name.substr(slash + 1), NAME_SIZE);
}

void DEF_name(const std::string& name) { state.prog_title = fit_text(name, NAME_SIZE); }

void DEF_title(const std::string& title) { DEF_name(title); }

int DEF_tag(const std::string& str) {
    if (state.tags.size() >= TAG_COUNT) return -1;
    state.tags.push_back(str);
    return 0;
}

void DEF_clr_tag() { state.tags.clear(); }

int DEF_open(const std::string& filename) {
    std::string path = filename.empty() ? ".zavdef" : filename;
    if (ZAV_hooks().expand_user != nullptr) path = ZAV_hooks().expand_user(path);
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) path = file_in_directory(path);
    state.def_file.reset();
    state.def_file = ZAV_open_file(path, "r");
    return state.def_file ? 0 : -1;
}

bool DEF_trusted() {
    struct stat info {};
    if (!state.def_file || fstat(fileno(state.def_file.get()), &info) != 0) return false;
    const bool is_own = info.st_uid == geteuid() || info.st_uid == 0;
    return is_own && (info.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

void DEF_close() { state.def_file.reset(); }

int DEF_get(std::string& resrc, std::string& value) {
    std::string text;
    while (state.def_file && fgetnline(state.def_file.get(), text, LINE_LENGTH) >= 0) {
        if (text.empty() || text.front() == '#') continue;
        Line line = split_line(text);
        if (take_condition(line.key, line.value) || !line.has_value) continue;
        if (line.key == "DEF") DEF_tag(line.value);
        if (line.key == "UNDEF") remove_tag(line.value);
        if (!state.matches) continue;
        low_string(line.key);
        if (line.key.back() == ':') line.key.pop_back();
        resrc = line.key;
        value = line.value;
        return 1;
    }
    return -1;
}

int DEF_cmp(const std::string& resrc, const std::string& string) { return fits(string, prefix() + "." + resrc); }

int DEF_valid(const std::string& string) { return DEF_cmp(DEF_parse_name(string), string); }

std::string DEF_parse_name(const std::string& str) {
    const std::size_t mark = str.find_last_of(".*");
    return mark == std::string::npos ? str : str.substr(mark + 1);
}

int DEF_env(const std::string& resrc, const std::string& env, std::string& value) {
    for (const std::string& name : {"zav" + prefix() + "." + resrc, env, "zav" + resrc}) {
        const char* found = name.empty() ? nullptr : std::getenv(name.c_str());
        if (found == nullptr) continue;
        value = found;
        return 1;
    }
    return 0;
}

}  // namespace zav
