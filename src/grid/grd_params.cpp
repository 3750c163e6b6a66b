// Selectors that name one grid, and the test of a record against a search key.

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>

#include "files/time_code.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/string.h"
#include "frame/tools.h"
#include "grid/grd_tool.h"
#include "grid/zavgrd.h"

namespace zav {
namespace {

/// Short variable keys of selectors.
struct Key {
    const char* name;
    bool exact;  ///< case counts
    int code;
};
constexpr std::array<Key, 14> KEYS = {{
    {"pr", true, 1},
    {"hh", false, 7},
    {"st", false, 11},
    {"rh", false, 52},
    {"li", false, 131},
    {"uw", false, 33},
    {"vw", false, 34},
    {"vv", false, 39},
    {"qp", false, 61},
    {"sc", false, 66},
    {"wh", false, 100},
    {"wp", false, 108},
    {"wd", false, 107},
    {"ss", false, 80},
}};

void decode_variable(const std::string& str, VAR_data* params) {
    const auto* key = std::find_if(KEYS.begin(), KEYS.end(), [&](const Key& row) {
        return row.exact ? str == row.name : stricmp(str, row.name) == 0;
    });
    if (key == KEYS.end()) {
        VAR_dec_var(str, params);
    } else {
        params->var[0] = key->code;
    }
}

void set_units(const std::string& str, VAR_data* params) { params->units = fit_text(str, GRD_UNITS_SIZE); }

void decode_level(const std::string& str, VAR_data* params) { VAR_dec_level(str, &params->ltype, &params->level); }

/// Two letters each of hour, level and variable, then units behind a colon.
int decode_fixed(const std::string& str, VAR_data* params) {
    if (str.empty()) return MISS;
    std::array<char, 3> hour{};
    std::array<char, 3> level{};
    std::array<char, 3> variable{};
    std::array<char, GRD_UNITS_SIZE> units{};
    const int found =
        std::sscanf(str.c_str(), "%2s%2s%2s:%14s", hour.data(), level.data(), variable.data(), units.data());
    if (found >= 1) VAR_dec_time(hour.data(), &params->time);
    if (found >= 2) decode_level(level.data(), params);
    if (found >= 3) decode_variable(variable.data(), params);
    if (found >= 4) set_units(units.data(), params);
    return -1;
}

int decode_fields(const std::string& str, VAR_data* params, int* type) {
    const std::vector<std::string> fields = parse_string(str, ':');
    if (fields.size() > 0) VAR_dec_time(fields[0], &params->time);
    if (fields.size() > 1) decode_level(fields[1], params);
    if (fields.size() > 2) decode_variable(fields[2], params);
    if (fields.size() > 3) set_units(fields[3], params);
    if (fields.size() > 4) *type = text_to_int(fields[4]);
    return -1;
}

int decode_number(const std::string& str, VAR_data* params) {
    int number = 0;
    if (std::sscanf(str.c_str(), "%9d", &number) != 1) return MISS;
    const std::size_t colon = str.find(':');
    if (colon != std::string::npos) set_units(str.substr(colon + 1), params);
    return std::max(number, 0);
}

bool var_fits(const GRD_report* grid, const VAR_data* params) {
    return std::any_of(params->var.begin(), params->var.end(),
                       [&](int var) { return var != MISS && var == grid->var; });
}

/// A range has to match as a whole, a single time matches what ends there.
bool time_fits(int time, int key) {
    if (key == MISS || time == key) return true;
    if (time == MISS) return false;
    const TIME_range has = TIME_split(time);
    const TIME_range wanted = TIME_split(key);
    const bool months = has.unit == TIME_unit::month;
    if (has.end != wanted.end || months != (wanted.unit == TIME_unit::month)) return false;
    return TIME_is_single(key) || (has.kind == wanted.kind && has.begin == wanted.begin);
}

bool fits(int value, int key) { return key == MISS || value == key; }

}  // namespace

int GRD_parse_params(const std::string& str, VAR_data* params, int* type) {
    VAR_data_init(params);
    RES_getval("grid_type", type, CV_int);
    if (str.empty()) return MISS;
    const std::string rest = str.substr(1);
    switch (str[0]) {
        case '#':
            return decode_number(rest, params);
        case ':':
            set_units(rest, params);
            return MISS;
        case '-':
            return decode_fixed(rest, params);
        case '+':
            return decode_fields(rest, params, type);
        default:
            return MISS;
    }
}

int GRD_set_params(VAR_data* params, int time, int ltype, int level, int var) {
    VAR_data_init(params);
    params->time = time;
    params->ltype = ltype;
    params->level = level;
    params->var = {var, 0, 0, 0, 0};
    return 0;
}

int GRD_test(const GRD_report* grid, const VAR_data* params, int type) {
    const bool match = var_fits(grid, params) && fits(grid->ltype, params->ltype) && fits(grid->level, params->level) &&
                       time_fits(grid->time, params->time) && fits(grid->type, type);
    const auto& var = params->var;
    MESS_print(MESS_DEBUG, "Searching: T-%d:%d LT-%d:%d L-%d:%d V-%d,%d,%d,%d,%d:%d G-%d:%d = %d\n", params->time,
               grid->time, params->ltype, grid->ltype, params->level, grid->level, var[0], var[1], var[2], var[3],
               var[4], grid->var, type, grid->type, match ? 1 : 0);
    return match ? 1 : 0;
}

}  // namespace zav
