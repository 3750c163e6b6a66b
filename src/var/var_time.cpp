#include <cctype>
#include <cstdint>

#include "frame/flag.h"
#include "frame/string.h"
#include "var/var_state.h"

namespace zav {
namespace {

constexpr int KIND = 1000000;  // weight of the kind of range in a time code
constexpr int BEGIN = 1000;    // weight of the begin hour

/// Words of ranges with the kind of range in the time code.
struct range_word {
    const char* word;
    int kind;
};
constexpr range_word RANGES[] = {
    {"rng", 2}, {"avg", 3}, {"acc", 4}, {"dif", 5}, {"max", 6}, {"min", 7}, {"iavg", 13}, {"var", 18}, {"uavg", 23},
};
constexpr int RANGE_UNKNOWN = 2;

/// A time key cut up: word, range in hours behind a dash, kind of range.
struct time_key {
    std::string word;
    bool has_range = false;
    std::int64_t range = 0;
    bool has_kind = false;
    std::int64_t kind = 0;  // weighted
};

/// A whole number at the start of `text`, `pos` moving behind it. False if there is none.
bool take_whole(const std::string& text, std::size_t& pos, std::int64_t& num) {
    constexpr std::int64_t LIMIT = 2000000000;
    std::size_t at = pos;
    const bool minus = at < text.size() && text[at] == '-';
    if (at < text.size() && (text[at] == '-' || text[at] == '+')) at++;
    const std::size_t first = at;
    std::int64_t value = 0;
    for (; at < text.size() && std::isdigit(static_cast<unsigned char>(text[at])) != 0; at++) {
        if (value < LIMIT) value = value * 10 + (text[at] - '0');
    }
    if (at == first) return false;
    if (value > LIMIT) value = LIMIT;
    num = minus ? -value : value;
    pos = at;
    return true;
}

std::string word_at(const std::string& text, std::size_t pos) {
    const std::size_t start = text.find_first_not_of(" \t", pos);
    return start == std::string::npos ? "" : text.substr(start, text.find_first_of(" \t", start) - start);
}

std::int64_t kind_of(const std::string& word) {
    for (const range_word& row : RANGES) {
        if (stricmp(word.c_str(), row.word) == 0) return static_cast<std::int64_t>(row.kind) * KIND;
    }
    return static_cast<std::int64_t>(RANGE_UNKNOWN) * KIND;
}

time_key cut_key(const std::string& str) {
    time_key key;
    const std::size_t dash = str.find('-');
    key.word = str.substr(0, dash);
    if (dash == std::string::npos) return key;
    std::size_t pos = dash + 1;
    key.has_range = take_whole(str, pos, key.range);
    if (!key.has_range) return key;
    const std::string kind = word_at(str, pos);
    key.has_kind = !kind.empty();
    if (key.has_kind) key.kind = kind_of(kind);
    return key;
}

int inherit(int* time) {
    const var_state& vars = VAR_module();
    if (vars.base_ind >= 0) {
        *time = vars.base[vars.base_ind].time;
        return vars.base[vars.base_ind].tstat;
    }
    if (FLAG_getl(FLAG_TIME) != MISS) {
        *time = VAR_to_int(static_cast<double>(FLAG_getl(FLAG_TIME)));
        return 1;
    }
    *time = 0;
    return 2;
}

/// Code of the range that ends at hour `end`; `end` itself without a range of a kind.
int range_code(const time_key& key, std::int64_t end) {
    if (!key.has_kind) return VAR_to_int(static_cast<double>(end));
    const std::int64_t begin = end - key.range;
    return VAR_to_int(static_cast<double>(begin * BEGIN + end + key.kind));
}

int chosen_time(const time_key& key, int* time) {
    int chosen = 0;
    inherit(&chosen);
    if (chosen == MISS) chosen = 0;
    const int end = chosen % BEGIN;
    if (!key.has_range) {
        *time = chosen;
    } else if (!key.has_kind) {
        *time = VAR_to_int(static_cast<double>(end - key.range));
    } else {
        *time = range_code(key, end);
    }
    return 1;
}

bool letter_and_digit(const std::string& word, char letter) {
    return word.size() > 1 && std::tolower(static_cast<unsigned char>(word[0])) == letter &&
           std::isdigit(static_cast<unsigned char>(word[1])) != 0;
}

/// Hours of a number with its unit: "day", "d"; ".5day", "e" for half a day more; anything else is hours.
std::int64_t hours_of(std::int64_t number, const std::string& unit) {
    if (stricmp(unit, "day") == 0 || stricmp(unit, "d") == 0) return number * 24;
    if (stricmp(unit, ".5day") == 0 || stricmp(unit, "e") == 0) return number * 24 + 12;
    return number;
}

}  // namespace

int VAR_dec_time(const std::string& str, int* time) {
    if (str.empty()) return inherit(time);
    const time_key key = cut_key(str);
    std::size_t pos = 1;
    std::int64_t number = 0;
    if (stricmp(key.word, "time") == 0) return chosen_time(key, time);
    if (stricmp(key.word, "anal") == 0) {
        *time = key.has_kind ? VAR_to_int(static_cast<double>(key.range * BEGIN + key.kind)) : 0;
        return 2;
    }
    if (stricmp(key.word, "miss") == 0) {
        *time = MISS;
        return 2;
    }
    if (stricmp(key.word, "init") == 0 || stricmp(key.word, "in") == 0) {
        *time = 0;
        return 2;
    }
    if (letter_and_digit(key.word, 'h')) {
        take_whole(key.word, pos, number);
        *time = range_code(key, number);
        return 2;
    }
    if (letter_and_digit(key.word, 'd') || letter_and_digit(key.word, 'e')) {
        take_whole(key.word, pos, number);
        const bool half = std::tolower(static_cast<unsigned char>(key.word[0])) == 'e';
        *time = VAR_to_int(static_cast<double>(number * 24 + (half ? 12 : 0)));
        return 2;
    }
    if (key.word.empty() || std::isdigit(static_cast<unsigned char>(key.word[0])) == 0) return 0;
    pos = 0;
    take_whole(key.word, pos, number);
    *time = range_code(key, hours_of(number, word_at(key.word, pos)));
    return 2;
}

}  // namespace zav
