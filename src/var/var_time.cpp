#include <cctype>
#include <cstdint>

#include "files/time_code.h"
#include "frame/flag.h"
#include "frame/string.h"
#include "var/var_state.h"

namespace zav {
namespace {

/// Words of ranges with the kind of range in the time code.
struct range_word {
    const char* word;
    int kind;
};
constexpr range_word RANGES[] = {
    {"rng", 2}, {"avg", 3}, {"acc", 4}, {"dif", 5}, {"max", 6}, {"min", 7}, {"iavg", 13}, {"var", 18}, {"uavg", 23},
};
constexpr int RANGE_UNKNOWN = 2;

/// A time key cut up: word, range behind a dash, kind of range.
struct time_key {
    std::string word;
    bool readable = true;  // what stands behind the dash is a range
    bool has_range = false;
    long range = 0;  // minutes
    bool has_kind = false;
    int kind = 0;
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

int kind_of(const std::string& word) {
    for (const range_word& row : RANGES) {
        if (stricmp(word.c_str(), row.word) == 0) return row.kind;
    }
    return RANGE_UNKNOWN;
}

/// Units of a number in a time key, in minutes, with the minutes added.
struct time_unit {
    const char* word;
    long minutes;
    long more;
};
constexpr time_unit UNITS[] = {
    {"", TIME_HOUR, 0},
    {"h", TIME_HOUR, 0},
    {"hr", TIME_HOUR, 0},
    {"hour", TIME_HOUR, 0},
    {"hours", TIME_HOUR, 0},
    {"min", 1, 0},
    {"mins", 1, 0},
    {"d", TIME_DAY, 0},
    {"day", TIME_DAY, 0},
    {"days", TIME_DAY, 0},
    {"e", TIME_DAY, TIME_DAY / 2},
    {".5day", TIME_DAY, TIME_DAY / 2},
};

/// Minutes of "1:30" from behind its hours; the place moves behind them. False for another text.
bool take_clock(const std::string& text, std::size_t& pos, long hours, long& minutes) {
    std::int64_t number = 0;
    std::size_t at = pos + 1;
    if (pos >= text.size() || text[pos] != ':' || !take_whole(text, at, number) || at != pos + 3 ||
        number >= TIME_HOUR) {
        return false;
    }
    minutes = hours * TIME_HOUR + static_cast<long>(number);
    pos = at;
    return true;
}

/// The range behind the dash of a key: hours, "30min" or "1:30", and a kind.
void read_range(const std::string& text, time_key& key) {
    std::size_t pos = 0;
    std::int64_t number = 0;
    key.readable = take_whole(text, pos, number);
    if (!key.readable) return;
    key.has_range = true;
    std::string kind;
    if (take_clock(text, pos, static_cast<long>(number), key.range)) {
        kind = word_at(text, pos);
    } else {
        constexpr std::size_t MIN = 3;
        kind = word_at(text, pos);
        const bool minutes = kind.size() > MIN && strnicmp(kind, "min", MIN) == 0;
        key.range = static_cast<long>(number) * (minutes ? 1 : TIME_HOUR);
        if (minutes) kind.erase(0, MIN);
    }
    key.has_kind = !kind.empty();
    if (key.has_kind) key.kind = kind_of(kind);
}

time_key cut_key(const std::string& str) {
    time_key key;
    const std::size_t dash = str.find('-');
    key.word = str.substr(0, dash);
    if (dash != std::string::npos) read_range(str.substr(dash + 1), key);
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

/// Code of the time `end`, or of the range of the key's length that ends there.
int range_code(const time_key& key, TIME_range end) {
    if (key.has_kind) {
        end.kind = key.kind;
        end.begin = end.end - key.range;
    }
    return TIME_make(end);
}

/// The same of a number as a time code counts: hours, or days or months from 801 on. Above 999 all are hours.
int numbered_code(const time_key& key, std::int64_t number) {
    constexpr std::int64_t CODED = 1000;
    const bool whole = key.range % TIME_HOUR == 0;
    const std::int64_t begin = number - key.range / TIME_HOUR;
    if (number >= CODED || !whole) return range_code(key, {0, 0, static_cast<long>(number) * TIME_HOUR});
    if (!key.has_kind) return static_cast<int>(number);
    if (begin < 0) return MISS;
    return static_cast<int>(key.kind * CODED * CODED + begin * CODED + number);
}

/// The chosen time, the one a range before it, or the range that ends there.
int chosen_code(const time_key& key) {
    int chosen = 0;
    inherit(&chosen);
    if (chosen == MISS) chosen = 0;
    if (!key.has_range) return chosen;
    TIME_range end = TIME_split(chosen);
    end.kind = 0;
    end.begin = 0;
    if (key.has_kind) return range_code(key, end);
    end.end -= key.range;
    return end.end < 0 ? static_cast<int>(end.end / TIME_HOUR) : TIME_make(end);
}

bool letter_and_digit(const std::string& word, char letter) {
    return word.size() > 1 && std::tolower(static_cast<unsigned char>(word[0])) == letter &&
           std::isdigit(static_cast<unsigned char>(word[1])) != 0;
}

/// Words for a time without a number.
struct time_word {
    const char* word;
    int time;
};
constexpr time_word WORDS[] = {{"anal", 0}, {"init", 0}, {"in", 0}, {"miss", MISS}};

/// "h12", "d3", "e3". False for a word of another form.
bool decode_letter(const time_key& key, int& time) {
    std::size_t pos = 1;
    std::int64_t number = 0;
    for (const time_unit& unit : UNITS) {
        const char letter = unit.word[0];
        if (letter == 0 || unit.word[1] != 0 || !letter_and_digit(key.word, letter)) continue;
        take_whole(key.word, pos, number);
        if (pos != key.word.size()) return false;
        time = letter == 'h' ? numbered_code(key, number)
                             : TIME_make({0, 0, static_cast<long>(number) * unit.minutes + unit.more});
        return true;
    }
    return false;
}

/// "36", "10min", "1:30", "3.5day". False for a word of another form.
bool decode_number(const time_key& key, int& time) {
    std::size_t pos = 0;
    std::int64_t number = 0;
    if (std::isdigit(static_cast<unsigned char>(key.word[0])) == 0) return false;
    take_whole(key.word, pos, number);
    TIME_range end;
    if (take_clock(key.word, pos, static_cast<long>(number), end.end)) {
        time = range_code(key, end);
        return pos == key.word.size();
    }
    const std::string word = word_at(key.word, pos);
    for (const time_unit& unit : UNITS) {
        if (stricmp(word.c_str(), unit.word) != 0) continue;
        end.end = static_cast<long>(number) * unit.minutes + unit.more;
        time = unit.minutes == TIME_HOUR ? numbered_code(key, number) : range_code(key, end);
        return true;
    }
    return false;
}

}  // namespace

int VAR_dec_time(const std::string& str, int* time) {
    if (str.empty()) return inherit(time);
    const time_key key = cut_key(str);
    if (!key.readable || key.word.empty()) return 0;
    if (stricmp(key.word, "time") == 0) {
        const int code = chosen_code(key);
        if (code == MISS) return 0;
        *time = code;
        return 1;
    }
    if (stricmp(key.word, "anal") == 0 && key.has_kind) {
        const int code = TIME_make({key.kind, key.range, 0});
        if (code == MISS) return 0;
        *time = code;
        return 2;
    }
    for (const time_word& row : WORDS) {
        if (stricmp(key.word.c_str(), row.word) != 0) continue;
        *time = row.time;
        return 2;
    }
    int code = MISS;
    if (!decode_letter(key, code) && !decode_number(key, code)) return 0;
    if (code == MISS) return 0;
    *time = code;
    return 2;
}

}  // namespace zav
