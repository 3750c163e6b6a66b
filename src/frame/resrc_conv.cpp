#include <algorithm>
#include <climits>
#include <cstdlib>
#include <iterator>
#include <limits>

#include "frame/flag.h"
#include "frame/hooks.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/string.h"
#include "frame/tools.h"
#include "frame/zav.h"

namespace zav {
namespace {

struct WordCode {
    const char* word;
    int code;
};

constexpr WordCode BOOL_WORDS[] = {{"true", 1}, {"on", 1}, {"yes", 1}, {"false", 0}, {"off", 0}, {"no", 0}};

constexpr WordCode FILE_WORDS[] = {{"use", 3}, {"reuse", 3}, {"over", 1}, {"calc", 1}, {"recalc", 1}, {"app", 2}};

constexpr WordCode PLOT_WORDS[] = {
    {"raw", 0},     {"none", 99}, {"value", 17},  {"gvalue", 17}, {"cf", 15},    {"lcf", 16},
    {"ln", 12},     {"dln", 13},  {"ndln", 14},   {"vect", 21},   {"barb", 22},  {"strm", 23},
    {"stream", 23}, {"an", 54},   {"number", 54}, {"pm", 55},     {"stuve", 61}, {"skewt", 62},
    {"ema", 63},    {"teph", 64}, {"rteph", 65},  {"hodo", 69},
};

/// Components of CV_draw; "text" switches the border as well.
constexpr WordCode DRAW_WORDS[] = {
    {"text", PLOT_TEXT},       {"text", PLOT_BORDER},     {"text_ul", PLOT_TEXT_UL}, {"text_uc", PLOT_TEXT_UC},
    {"text_ur", PLOT_TEXT_UR}, {"text_ll", PLOT_TEXT_LL}, {"text_lc", PLOT_TEXT_LC}, {"text_lr", PLOT_TEXT_LR},
    {"data", PLOT_DATA},       {"map", PLOT_MAP},         {"grid", PLOT_GRID},       {"sum", PLOT_SUMMARY},
    {"bord", PLOT_BORDER},
};

template <std::size_t N>
const WordCode* find_word(const WordCode (&table)[N], const std::string& word) {
    const auto found = std::find_if(std::begin(table), std::end(table),
                                    [&](const WordCode& row) { return stricmp(row.word, word.c_str()) == 0; });
    return found != std::end(table) ? found : nullptr;
}

template <std::size_t N>
int set_flag(int flag, const WordCode (&table)[N], const std::string& word) {
    const WordCode* row = find_word(table, word);
    if (row == nullptr) return 0;
    FLAG_set(flag, row->code);
    return 1;
}

/// The pointer of that type in `out`, null if `out` holds another.
template <class T>
T* target(const res_out& out) {
    T* const* pointer = std::get_if<T*>(&out);
    return pointer != nullptr ? *pointer : nullptr;
}

template <class T>
int store(const res_out& out, const T& value) {
    T* place = target<T>(out);
    if (place == nullptr) return 0;
    *place = value;
    return 1;
}

bool is_digit(char c) { return c >= '0' && c <= '9'; }

template <class T>
T held(long value) {
    return static_cast<T>(std::clamp(value, long{std::numeric_limits<T>::min()}, long{std::numeric_limits<T>::max()}));
}

bool starts_number(const std::string& data) {
    return !data.empty() && (is_digit(data[0]) || data[0] == '-' || data[0] == '+');
}

/// What may stand in front of a number: signs of cut-offs, and the comma behind a base left out.
constexpr const char* CUT_SIGNS = "<>,";

bool is_float(const std::string& data) {
    char* end = nullptr;
    std::strtof(data.c_str(), &end);
    return end != data.c_str();
}

int convert_bool(const char* data, const res_out& out) {
    if (data == nullptr || *data == '\0') return store(out, 1);
    const WordCode* row = find_word(BOOL_WORDS, data);
    return row != nullptr ? store(out, row->code) : 0;
}

int convert_int(const std::string& data, const res_out& out) {
    if (!starts_number(data)) return 0;
    const bool hexadecimal = data.size() > 1 && (data[1] == 'x' || data[1] == 'X');
    return store(out, held<int>(std::strtol(data.c_str(), nullptr, hexadecimal ? 16 : 10)));
}

std::string as_path(const std::string& data) {
    if (stricmp(data, "none") == 0) return {};
    return data.empty() || data.back() == '/' ? data : data + '/';
}

void draw_word(const std::string& word, bool is_first) {
    const char sign = word.empty() ? ' ' : word.front();
    const bool is_signed = sign == '+' || sign == '-';
    const std::string name = is_signed ? word.substr(1) : word;
    if (is_first && !is_signed) FLAG_resetplot(0);
    if (stricmp(name, "none") == 0) FLAG_setplot(PLOT_ALL, 0);
    if (stricmp(name, "all") == 0) FLAG_setplot(PLOT_ALL, 1);
    for (const WordCode& row : DRAW_WORDS) {
        if (stricmp(row.word, name.c_str()) == 0) FLAG_setplot(row.code, sign == '-' ? 0 : 1);
    }
}

int convert_draw(const std::string& data) {
    const std::vector<std::string> words = parse_string(data, ',');
    for (std::size_t i = 0; i < words.size(); ++i) draw_word(words[i], i == 0);
    return !words.empty();
}

/// Reads numbers one behind the other, as scanf's %d does.
class NumberReader {
  public:
    explicit NumberReader(const char* text) : text_(text) {}

    /// A number of at most `width` characters. False, and `value` as it was, if there is none.
    bool number(int& value, int width = INT_MAX) {
        const char* place = text_;
        while (*place == ' ' || *place == '\t') ++place;
        const bool negative = width > 0 && *place == '-';
        if (width > 0 && (*place == '-' || *place == '+')) ++place, --width;
        if (width < 1 || !is_digit(*place)) return false;
        long sum = 0;
        for (; width > 0 && is_digit(*place); ++place, --width)
            sum = std::min(sum * 10 + (*place - '0'), long{INT_MAX});
        text_ = place;
        value = static_cast<int>(negative ? -sum : sum);
        return true;
    }

    bool literal(char c) {
        if (*text_ != c) return false;
        ++text_;
        return true;
    }

  private:
    const char* text_;
};

/// The date fields that a text of the resource "hour" forces.
forced_date read_forced_date(const std::string& data) {
    forced_date date{MISS, MISS, MISS, MISS, MISS};
    const bool has_colon = data.find(':') != std::string::npos;
    const bool compact = !has_colon && !data.empty() && is_digit(data[0]);
    NumberReader read(data.c_str());
    if (read.literal('#')) {
        if (read.number(date.year, 4) && read.number(date.month, 2) && read.number(date.day, 2) &&
            read.number(date.hour, 2)) {
            read.number(date.min, 2);
        }
    } else if (data.size() == 6 && !has_colon) {
        if (read.number(date.month, 2) && read.number(date.day, 2)) read.number(date.hour, 2);
    } else if (data.size() == 4 && compact) {
        if (read.number(date.day, 2)) read.number(date.hour, 2);
    } else if (data.size() == 3 && compact) {
        if (read.number(date.day, 1)) read.number(date.hour, 2);
    } else if (data.find('d') != std::string::npos) {
        if (read.number(date.day) && read.literal('d') && read.number(date.hour) && read.literal(':')) {
            read.number(date.min);
        }
    } else if (read.literal(':')) {
        read.number(date.min);
    } else if (data.compare(0, 2, "-:") == 0) {
        NumberReader minutes(data.c_str() + 2);
        if (minutes.number(date.min)) date.min = -date.min;
    } else {
        if (read.number(date.hour) && read.literal(':')) read.number(date.min);
        if (data[0] == '-' && date.hour == 0) {
            date.hour = MISS;
            if (date.min != MISS) date.min = -date.min;
        }
    }
    return date;
}

int convert_hour(const std::string& data) {
    if (data.empty()) return 0;
    if (ZAV_hooks().set_forced_date != nullptr) ZAV_hooks().set_forced_date(read_forced_date(data));
    return 1;
}

/// True for the name of a picture file, which stands for its device.
bool names_picture(const std::string& word) {
    const std::size_t dot = word.rfind('.');
    if (dot == std::string::npos || word.front() == '|') return false;
    const std::string ending = word.substr(dot + 1);
    return stricmp(ending, "png") == 0 || stricmp(ending, "pdf") == 0 || stricmp(ending, "svg") == 0;
}

int convert_device(const std::string& data, const res_out& out) {
    std::string* name = target<std::string>(out);
    if (name == nullptr) return 0;
    const std::vector<std::string> words = parse_string(data, ',');
    FLAG_set(FLAG_DEVICE, words.empty() ? 1 : RES_set_device(words.front()));
    if (!words.empty() && names_picture(words.front())) {
        *name = data;
    } else if (words.size() > 1) {
        *name = data.substr(data.find(',') + 1);
    }
    return 1;
}

int convert_domain(const std::string& data, const res_out& out) {
    Domain* domain = target<Domain>(out);
    if (domain == nullptr || ZAV_hooks().decode_domain == nullptr) return 0;
    return ZAV_hooks().decode_domain(data, domain) > 0;
}

int set_batch() {
    FLAG_set_batch(1);
    if (MESS_check_set() == 0) MESS_set(0, MESS_PRINT | MESS_ERROR | MESS_WARN);
    return 1;
}

int set_help() {
    FLAG_set(FLAG_HELP_ASKED, 1);
    return 1;
}

/// The conversions that need a value.
int convert_text(const std::string& data, const res_out& out, DEF_convert cvt) {
    const char first = data.empty() ? '\0' : data.front();
    switch (cvt) {
        case CV_int:
            return convert_int(data, out);
        case CV_short:
            return is_digit(first) ? store(out, held<short>(std::strtol(data.c_str(), nullptr, 10))) : 0;
        case CV_long:
            return is_digit(first) ? store(out, std::strtol(data.c_str(), nullptr, 10)) : 0;
        case CV_float:
            return store(out, std::strtof(data.c_str(), nullptr));
        case CV_string:
        case CV_strcpy:
            return store(out, data);
        case CV_path:
            return store(out, as_path(data));
        case CV_mess:
            MESS_set_str(data);
            return 1;
        case CV_draw:
            return convert_draw(data);
        case CV_hour:
            return convert_hour(data);
        case CV_region:
        case CV_domain:
            return convert_domain(data, out);
        case CV_file_param:
            return set_flag(FLAG_FILE_POLICY, FILE_WORDS, data);
        case CV_device:
            return convert_device(data, out);
        case CV_plot_type:
            return set_flag(FLAG_PLOT_TYPE, PLOT_WORDS, data);
        case CV_color:
            return store(out, std::strtol(data.c_str(), nullptr, 10));
        case CV_strings:
            return store(out, parse_string(data, '\n'));
        default:
            return 0;
    }
}

}  // namespace

bool RES_target_fits(const res_out& out, DEF_convert cvt) {
    switch (cvt) {
        case CV_bool:
        case CV_int:
            return target<int>(out) != nullptr;
        case CV_short:
            return target<short>(out) != nullptr;
        case CV_long:
        case CV_color:
            return target<long>(out) != nullptr;
        case CV_float:
            return target<float>(out) != nullptr;
        case CV_string:
        case CV_strcpy:
        case CV_path:
        case CV_device:
            return target<std::string>(out) != nullptr;
        case CV_strings:
            return target<std::vector<std::string>>(out) != nullptr;
        case CV_region:
        case CV_domain:
            return target<Domain>(out) != nullptr;
        default:
            return true;
    }
}

bool RES_is_readable(const std::string& data, DEF_convert cvt) {
    switch (cvt) {
        case CV_bool:
            return find_word(BOOL_WORDS, data) != nullptr;
        case CV_int:
            return starts_number(data);
        case CV_float:
            return is_float(data.substr(std::min(data.find_first_not_of(CUT_SIGNS), data.size())));
        case CV_file_param:
            return find_word(FILE_WORDS, data) != nullptr;
        case CV_plot_type:
            return find_word(PLOT_WORDS, data) != nullptr;
        default:
            return true;
    }
}

int RES_conv_data(const char* data, const res_out& out, DEF_convert cvt) {
    switch (cvt) {
        case CV_bool:
            return convert_bool(data, out);
        case CV_batch:
            return set_batch();
        case CV_help:
            return set_help();
        default:
            return data != nullptr ? convert_text(data, out, cvt) : 0;
    }
}

int RES_set_device(const std::string& str) {
    constexpr int picture = 7;
    if (names_picture(str)) return picture;
    switch (str.empty() ? '\0' : str.front()) {
        case 'p':
        case 'P':
            return 4;
        case 'h':
        case 'H':
        case 'q':
        case 'Q':
            return 5;
        case 'm':
        case 'M':
            return 3;
        case 'i':
        case 'I':
            return picture;
        case 'w':
        case 'W':
            return 6;
        default:
            return 1;
    }
}

}  // namespace zav
