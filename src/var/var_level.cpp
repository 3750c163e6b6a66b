#include <cctype>
#include <cstdint>
#include <cstdlib>
#include <utility>

#include "frame/flag.h"
#include "frame/string.h"
#include "frame/tools.h"
#include "var/var_state.h"

namespace zav {
namespace {

constexpr float FEET = 0.3048F;  // metres in a foot

/// Keywords that name a level of their own, with its level type.
struct level_word {
    const char* word;
    int ltype;
};
constexpr level_word LEVEL_WORDS[] = {
    {"none", 0},        {"snd", 0},         {"miss", MISS},     {"sfc", 1},         {"sf", 1},
    {"sea", 1},         {"se", 1},          {"frz", 4},         {"lcl", 5},         {"mwnd", 6},
    {"trop", 7},        {"sl", 102},        {"whole", 200},     {"top_frz", 204},   {"gcld_bot", 206},
    {"gcld_top", 207},  {"blcld_bot", 209}, {"blcld_top", 210}, {"blcld_lyr", 211}, {"lcld_bot", 212},
    {"lcld_top", 213},  {"lcld_lyr", 214},  {"cld_ceil", 215},  {"mcld_bot", 222},  {"mcld_top", 223},
    {"mcld_lyr", 224},  {"hcld_bot", 232},  {"hcld_top", 233},  {"hcld_lyr", 234},  {"conv_bot", 242},
    {"conv_top", 243},  {"conv_lyr", 244},  {"wbzero", 245},    {"maxepot", 246},   {"equilib", 247},
    {"sconv_bot", 248}, {"sconv_top", 249}, {"dconv_bot", 251}, {"dconv_top", 252}, {"sclw_bot", 253},
    {"sclw_top", 254},
};

/// Units of a level, with the level type of a single level and of a layer, and the factor to the level's number.
struct level_unit {
    const char* unit;
    int single;
    int layer;  // MISS: no layers in this unit
    float factor;
};
constexpr level_unit LEVEL_UNITS[] = {
    {"mb", 100, 101, 1.0F},      {"hpa", 100, 101, 1.0F},   {"m", 103, 104, 1.0F},   {"ft", 103, 104, FEET},
    {"m_ag", 105, 106, 1.0F},    {"ft_ag", 105, 106, FEET}, {"k", 113, 114, 1.0F},   {"mb_ag", 115, 116, 1.0F},
    {"sig", 107, 108, 10000.0F}, {"lev", 109, MISS, 1.0F},  {"pv", 117, MISS, 1.0F}, {"eta", 119, 120, 10000.0F},
};

const level_unit* find_unit(const std::string& unit) {
    for (const level_unit& row : LEVEL_UNITS) {
        if (stricmp(unit.c_str(), row.unit) == 0) return &row;
    }
    return nullptr;
}

int code(std::int64_t high, std::int64_t low) { return VAR_to_int(static_cast<double>(high * 1000 + low)); }

/// Code of a layer from its two numbers, by level type.
int layer_code(int ltype, float first, float second) {
    const int num1 = VAR_to_int(first);
    const int num2 = VAR_to_int(second);
    switch (ltype) {
        case 101:
            return code(num2 / 10, num1 / 10);
        case 104:
        case 106:
            return code(num2 / 100, num1 / 100);
        case 108:
        case 120:
            return code(VAR_to_int(1000.0F * second), VAR_to_int(1000.0F * first));
        default:
            return code(num2, num1);
    }
}

/// Keys of one letter and a number or two: "p850", "h1000-2000".
struct letter_key {
    char letter;
    int single;
    int layer;
    float factor;
};
constexpr letter_key LETTERS[] = {
    {'p', 100, 101, 1.0F}, {'h', 103, 104, 1.0F},     {'a', 105, 106, 1.0F},
    {'k', 113, 114, 1.0F}, {'s', 107, 108, 10000.0F},
};

bool decode_letter(const std::string& str, int* ltype, int* level) {
    if (str.size() < 2 || std::isdigit(static_cast<unsigned char>(str[1])) == 0) return false;
    for (const letter_key& row : LETTERS) {
        if (std::tolower(static_cast<unsigned char>(str[0])) != row.letter) continue;
        char* end = nullptr;
        float first = std::strtof(str.c_str() + 1, &end);
        if (*end == 0) {
            *ltype = row.single;
            *level = VAR_to_int(row.factor * first);
            return true;
        }
        if (*end != '-') return false;
        const char* second_text = end + 1;
        float second = std::strtof(second_text, &end);
        if (end == second_text || *end != 0) return false;
        if (row.layer == 101 && first < second) std::swap(first, second);
        *ltype = row.layer;
        *level = layer_code(row.layer, first, second);
        return true;
    }
    return false;
}

bool starts_with(const std::string& text, const char* word) {
    const std::string start = word;
    return strnicmp(text, start, static_cast<int>(start.size())) == 0;
}

/// N of a text "sfc[N]", 0 without one.
int surface_number(const std::string& text) {
    return text.size() > 4 && text[3] == '[' ? text_to_int(text.substr(4)) : 0;
}

bool decode_single(const std::string& text, int* ltype, int* level) {
    if (starts_with(text, "sfc") && (text.size() == 3 || text[3] == '[')) {
        *ltype = 1;
        *level = surface_number(text);
        return true;
    }
    const key_number number = VAR_read_number(text);
    const level_unit* unit = find_unit(number.unit.empty() ? "mb" : number.unit);
    if (!number.found || unit == nullptr) return false;
    *ltype = unit->single;
    *level = VAR_to_int(number.value * unit->factor);
    return true;
}

/// Words that stand for the first number of a pressure layer. False for another text.
bool pressure_word(const std::string& text, float& number) {
    if (starts_with(text, "sfc")) {
        const bool numbered = text.size() > 3 && text[3] == '[';
        number = numbered ? 2000.0F + static_cast<float>(surface_number(text)) : 1900.0F;
    } else if (starts_with(text, "maxt")) {
        number = 1910.0F;
    } else if (starts_with(text, "trop")) {
        number = 1950.0F;
    } else {
        return false;
    }
    return true;
}

void to_metres(key_number& number, const level_unit* own, const level_unit* other) {
    const level_unit* unit = own != nullptr ? own : other;
    if (unit != nullptr && unit->factor == FEET) number.value *= FEET;
}

/// The unit of a layer's two numbers: mb if neither has one. Null for unlike, unknown units and those without layers.
const level_unit* layer_unit(const key_number& num1, const key_number& num2) {
    const std::string& name = num1.unit.empty() ? num2.unit : num1.unit;
    const std::string& other = num2.unit.empty() ? name : num2.unit;
    const level_unit* unit = find_unit(name.empty() ? "mb" : name);
    const level_unit* second = find_unit(other.empty() ? "mb" : other);
    if (unit == nullptr || second == nullptr || unit->layer != second->layer) return nullptr;
    return unit->layer == MISS ? nullptr : unit;
}

bool decode_layer(const std::string& first, const std::string& second, bool above, int* ltype, int* level) {
    key_number num1 = VAR_read_number(first);
    key_number num2 = VAR_read_number(second);
    float word_number = 0.0F;
    const bool has_word = pressure_word(first, word_number);
    const level_unit* unit = layer_unit(num1, num2);
    if (unit == nullptr || !num2.found || (!num1.found && !has_word)) return false;
    *ltype = unit->layer;
    to_metres(num1, find_unit(num1.unit), find_unit(num2.unit));
    to_metres(num2, find_unit(num2.unit), find_unit(num1.unit));
    if (*ltype == 104 || *ltype == 106) {
        if (starts_with(first, "trop")) num1.value = above ? 99500.0F : 99600.0F;
    } else if (*ltype == 101) {
        if (has_word) {
            num1.value = word_number;
        } else if (num1.value < num2.value) {
            std::swap(num1.value, num2.value);
        }
    }
    *level = layer_code(*ltype, num1.value, num2.value);
    return true;
}

/// Place of the sign between the two parts of a layer, npos for a single level.
std::size_t split_place(const std::string& str) {
    if (str.size() > 1 && (str[1] == '-' || str[1] == '+')) return 1;
    const std::size_t dash = str.find('-', 1);
    return dash != std::string::npos ? dash : str.find('+');
}

int decode_key(const std::string& str, int* ltype, int* level) {
    if (stricmp(str, "level") == 0) {
        *ltype = VAR_to_int(static_cast<double>(FLAG_getl(FLAG_LTYPE)));
        *level = FLAG_get(FLAG_LEVEL);
        return 1;
    }
    for (const level_word& row : LEVEL_WORDS) {
        if (stricmp(str.c_str(), row.word) != 0) continue;
        *ltype = row.ltype;
        *level = row.ltype == MISS ? MISS : 0;
        return 2;
    }
    if (decode_letter(str, ltype, level)) return 2;
    if (str == "-") {
        *ltype = 9;
        *level = 0;
        return 2;
    }
    const std::size_t split = split_place(str);
    const bool read = split == std::string::npos
                          ? decode_single(str, ltype, level)
                          : decode_layer(str.substr(0, split), str.substr(split + 1), str[split] == '+', ltype, level);
    return read ? 2 : 0;
}

int inherit(int* ltype, int* level) {
    const var_state& vars = VAR_module();
    if (vars.base_ind >= 0) {
        *ltype = vars.base[vars.base_ind].ltype;
        *level = vars.base[vars.base_ind].level;
        return vars.base[vars.base_ind].lstat;
    }
    if (FLAG_getl(FLAG_LTYPE) == MISS) return 2;
    *ltype = VAR_to_int(static_cast<double>(FLAG_getl(FLAG_LTYPE)));
    *level = FLAG_get(FLAG_LEVEL);
    return 1;
}

}  // namespace

key_number VAR_read_number(const std::string& text) {
    key_number number;
    char* end = nullptr;
    number.value = std::strtof(text.c_str(), &end);
    number.found = end != text.c_str();
    if (!number.found) return key_number{};
    std::string rest = end;
    rest.erase(0, rest.find_first_not_of(" \t") == std::string::npos ? rest.size() : rest.find_first_not_of(" \t"));
    number.unit = rest.substr(0, rest.find_first_of(" \t"));
    return number;
}

int VAR_dec_level(const std::string& str, int* ltype, int* level) {
    const int result = str.empty() ? inherit(ltype, level) : decode_key(str, ltype, level);
    MESS_print(0x40000000, "Level: %s = %d %ld\n", str.c_str(), *ltype, static_cast<long>(*level));
    return result;
}

void VAR_get_level(int ltype, int level, float* l1, float* l2) {
    const auto high = static_cast<float>(level / 1000);
    const auto low = static_cast<float>(level % 1000);
    float factor = 1.0F;
    switch (ltype) {
        case 101:
            factor = 10.0F;
            break;
        case 104:
        case 106:
            factor = 100.0F;
            break;
        case 114:
        case 116:
            break;
        default:
            *l1 = static_cast<float>(level);
            *l2 = FMISS;
            return;
    }
    *l1 = high * factor;
    *l2 = low * factor;
    if (*l1 > *l2) std::swap(*l1, *l2);
}

void VAR_enc_level(int coord, float l1, float l2, int* ltype, int* level) {
    /// Level types of a layer, and of the single level that becomes one when a second number is given.
    struct layer_type {
        int layer;
        int single;
        int unit;  // size of one step of the code
    };
    constexpr layer_type LAYERS[] = {{101, 100, 10}, {104, 103, 100}, {106, 105, 100}, {114, 113, 1}, {108, 107, 1}};
    *ltype = coord;
    *level = VAR_to_int(l1);
    for (const layer_type& row : LAYERS) {
        if (coord != row.layer && (coord != row.single || l2 == FMISS)) continue;
        *ltype = row.layer;
        *level = code(VAR_to_int(l2) / row.unit, VAR_to_int(l1) / row.unit);
        return;
    }
}

}  // namespace zav
