#include <cstdlib>
#include <deque>
#include <limits>
#include <new>
#include <unordered_map>

#include "files/lookup_lines.h"
#include "frame/hooks.h"
#include "frame/string.h"
#include "var/var_state.h"

namespace zav {
namespace {

constexpr std::size_t TABLE_MAX = 750;
constexpr std::size_t DESC_NAME_SIZE = 50;
constexpr std::size_t DESC_ABBR_SIZE = 10;

/// Numbers of variables that data files bring along: those that have room for an ensemble code, then further ones.
constexpr int OWN_FIRST = 700;
constexpr int OWN_COUNT = 300;
constexpr int OWN_FURTHER = 300000000;

/// The variable table with an index by number and one by abbreviation in lower case. The first entry of each counts.
struct State {
    bool done = false;  // read, or found absent at `path`
    std::string path;   // file of the last attempt
    std::vector<VAR_desc> list;
    std::unordered_map<int, std::size_t> by_num;
    std::unordered_map<std::string, std::size_t> by_abbr;
};
State state;

/// Variables that data files bring along. They outlive the table's file.
struct Own {
    std::deque<VAR_desc> list;
    std::unordered_map<std::string, std::size_t> by_abbr;
};
Own own;

int own_number(std::size_t place) {
    const int count = static_cast<int>(place);
    return count < OWN_COUNT ? OWN_FIRST + count : OWN_FURTHER + count;
}

const VAR_desc* find_own(int num) {
    const bool further = num >= OWN_FURTHER;
    const long place = further ? num - OWN_FURTHER : num - OWN_FIRST;
    const bool held = place >= (further ? OWN_COUNT : 0) && place < static_cast<long>(own.list.size());
    return held && (further || place < OWN_COUNT) ? &own.list[static_cast<std::size_t>(place)] : nullptr;
}

std::string lower(const std::string& text) {
    std::string low = text;
    low_string(low);
    return low;
}

/// Up to five integers separated by commas, as far as they can be read.
std::array<int, VAR_IND> read_numbers(const std::string& text) {
    std::array<int, VAR_IND> ind;
    ind.fill(MISS);
    const char* ptr = text.c_str();
    for (int& num : ind) {
        char* end = nullptr;
        const long value = std::strtol(ptr, &end, 10);
        if (end == ptr) break;
        num = VAR_to_int(static_cast<double>(value));
        if (*end != ',') break;
        ptr = end + 1;
    }
    return ind;
}

/// One line: numbers, abbreviation, long name. False for a line that holds no variable.
bool read_line(const std::string& line, VAR_desc& desc) {
    constexpr const char* BLANKS = " \t";
    const std::size_t first = line.find_first_not_of(BLANKS);
    if (first == std::string::npos) return false;
    const std::size_t first_end = line.find_first_of(BLANKS, first);
    const std::size_t second = line.find_first_not_of(BLANKS, first_end);
    if (first_end == std::string::npos || second == std::string::npos) return false;
    const std::size_t second_end = line.find_first_of(BLANKS, second);
    const std::size_t third = line.find_first_not_of(BLANKS, second_end);

    desc.ind = read_numbers(line.substr(first, first_end - first));
    if (desc.ind[0] == MISS) return false;
    std::string abbr = line.substr(second, second_end == std::string::npos ? second_end : second_end - second);
    wstrim_string(abbr);
    std::string name = second_end == std::string::npos || third == std::string::npos ? abbr : line.substr(third);
    wstrim_string(name);
    desc.abbr = fit_text(abbr, DESC_ABBR_SIZE);
    desc.name = fit_text(name.empty() ? abbr : name, DESC_NAME_SIZE);
    return !desc.abbr.empty();
}

void add_entry(const VAR_desc& desc) {
    const std::size_t place = state.list.size();
    state.list.push_back(desc);
    state.by_num.try_emplace(desc.ind[0], place);
    state.by_abbr.try_emplace(lower(desc.abbr), place);
}

void need_table() {
    if (!state.done || (state.list.empty() && state.path != ZAV_lookup_path("variable.lup"))) VAR_read_varfile();
}

/// Number of a variable without its ensemble code.
int plain_number(int variable) {
    constexpr int PROBABILITIES = 1910000000;
    constexpr int PROBABILITY_STEP = 10000;
    constexpr int MEMBERS = 19;  // millions in which members, means and deviations lie
    if (variable >= PROBABILITIES) return (variable - PROBABILITIES) / PROBABILITY_STEP;
    return variable / 1000000 == MEMBERS ? variable % 1000 : variable;
}

}  // namespace

int VAR_to_int(double value) {
    if (!(value == value)) return 0;
    if (value >= static_cast<double>(std::numeric_limits<int>::max())) return std::numeric_limits<int>::max();
    if (value <= static_cast<double>(std::numeric_limits<int>::min())) return std::numeric_limits<int>::min();
    return static_cast<int>(value);
}

int VAR_read_varfile() {
    state = State{};
    state.done = true;
    state.path = ZAV_lookup_path("variable.lup");
    LookupLines file;
    if (!file.load(state.path)) {
        MESS_print(64, "VAR_read_varfile: Unable to open file: %s\n", state.path.c_str());
        return 0;
    }
    try {
        for (const std::string& line : file.lines()) {
            VAR_desc desc;
            if (state.list.size() == TABLE_MAX) break;
            if (read_line(line, desc)) add_entry(desc);
        }
    } catch (const std::bad_alloc&) {
        return -1;
    }
    return 1;
}

const VAR_desc* VAR_find_abbr(const std::string& abbr) {
    need_table();
    const std::string key = lower(abbr);
    const auto hit = state.by_abbr.find(key);
    if (hit != state.by_abbr.end()) return &state.list[hit->second];
    const auto brought = own.by_abbr.find(key);
    return brought == own.by_abbr.end() ? nullptr : &own.list[brought->second];
}

const VAR_desc* VAR_find_num(int num) {
    need_table();
    const auto hit = state.by_num.find(num);
    return hit == state.by_num.end() ? find_own(num) : &state.list[hit->second];
}

std::string VAR_str(int variable, const std::string& units) {
    const int num = plain_number(variable);
    const VAR_desc* desc = VAR_find_num(num);
    std::string text;
    if (desc == nullptr) {
        MESS_print(0x40000000, "VAR_str: no var: %d\n", num);
        text = text_format("v%d", num);
    } else {
        text = VAR_label_type() < 0 ? desc->abbr : desc->name;
    }
    if (!units.empty()) text += " (" + units + ")";
    return text;
}

std::string VAR_abbr(int variable) {
    const int num = plain_number(variable);
    const VAR_desc* desc = VAR_find_num(num);
    return desc == nullptr ? text_format("v%d", num) : desc->abbr;
}

int VAR_add(const std::string& abbr, const std::string& name) {
    if (const VAR_desc* known = VAR_find_abbr(abbr)) return known->ind[0];
    VAR_desc desc;
    desc.ind[0] = own_number(own.list.size());
    desc.abbr = abbr;
    desc.name = fit_text(name.empty() ? abbr : name, DESC_NAME_SIZE);
    own.by_abbr[lower(abbr)] = own.list.size();
    own.list.push_back(desc);
    return desc.ind[0];
}

int VAR_search_var_num(const std::string& str) {
    const VAR_desc* desc = VAR_find_abbr(str);
    return desc == nullptr ? 0 : desc->ind[0];
}

}  // namespace zav
