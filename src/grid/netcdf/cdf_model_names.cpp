#include "grid/netcdf/cdf_model_names.h"

#include <array>
#include <cstring>
#include <string_view>

#include "frame/string.h"

namespace zav {
namespace {

/// Units, by their text or the start of it, with which a quantity has another code.
struct Units_row {
    const char* text;
    bool start;  ///< the text may go on
    int code;
    const char* units;
};

/// A quantity with the names of its variables. `units` are those of GRIB edition 0.
struct Quantity_row {
    std::array<const char*, 6> names;
    int code;
    int var;
    const char* units;
    std::array<Units_row, 3> other;
};

constexpr std::array<Quantity_row, 14> QUANTITIES = {{
    {{"pressure", "Psl", "Ptrop", "Pmaxwind", "P"},
     1,
     1,
     "hPa",
     {{{"pascals", false, 101, "Pa"}, {"Pa", false, 101, "Pa"}}}},
    {{"gpt_hgt", "H", "Zsfc", "Ztrop", "Zwind", "Z"},
     2,
     7,
     "10 m",
     {{{"geopotential meters", false, 102, "gpm"}, {"gp m", false, 102, "gpm"}}}},
    {{"temp", "Ttrop", "T"}, 4, 11, "C", {{{"kelvin", true, 104, "K"}, {"degK", false, 104, "K"}}}},
    {{"rel_hum", "RH"}, 13, 52, "%", {}},
    {{"lift_indx", "LI"}, 15, 131, "dC", {}},
    {{"u_wind", "Utrop", "Umaxwind", "Usfc", "U"}, 23, 33, "m/s", {}},
    {{"v_wind", "Vtrop", "Vmaxwind", "Vsfc", "V"}, 24, 34, "m/s", {}},
    {{"vert_vel", "omega"},
     40,
     39,
     "mb/s",
     {{{"pascals/second", false, 140, "Pa/s"}, {"Pa/second", false, 140, "Pa/s"}, {"Pa/s", false, 140, "Pa/s"}}}},
    {{"precip"}, 50, 61, "mm", {}},
    {{"snow"}, 51, 66, "cm", {}},
    {{"sea_temp", "SST"},
     61,
     80,
     ".1 C",
     {{{"degC", false, 62, "C"}, {"celsius", false, 62, "C"}, {"degK", false, 161, "K"}}}},
    {{"wave_hgt"}, 64, 100, ".5 m", {{{"meters", false, 164, "m"}}}},
    {{"wave_per"}, 76, 108, "s", {}},
    {{"wave_dir"}, 75, 107, "10 deg", {{{"degrees", true, 175, "deg"}}}},
}};

bool is_named(const Quantity_row& row, const std::string& name) {
    for (const char* known : row.names) {
        if (known != nullptr && stricmp(name.c_str(), known) == 0) return true;
    }
    return false;
}

const Quantity_row* find_row(const std::string& name) {
    for (const Quantity_row& row : QUANTITIES) {
        if (is_named(row, name)) return &row;
    }
    return nullptr;
}

bool are_units(const Units_row& row, const std::string& units) {
    if (row.text == nullptr || units.empty()) return false;
    if (!row.start) return stricmp(units.c_str(), row.text) == 0;
    return strnicmp(units.c_str(), row.text, static_cast<int>(std::strlen(row.text))) == 0;
}

/// Starts of titles with the tens of the data set's code.
struct Title_row {
    std::string_view start;
    int code;
};
constexpr std::array<Title_row, 4> TITLES = {
    {{"NMC Earl", 10}, {"NMC Exte", 20}, {"ECMWF:", 30}, {"NMC Glob", MODEL_SET_NAMED}}};
/// Words anywhere in a title with what they add.
constexpr std::array<Title_row, 3> TITLE_WORDS = {{{"Trop", 1}, {"Maximum", 2}, {"72 hours", 3}}};
constexpr int WITHOUT_RTIME = 100;

}  // namespace

bool model_quantity(const std::string& name, const std::string& units, Model_quantity* quantity) {
    const Quantity_row* row = find_row(name);
    if (row == nullptr) return false;
    // Units that the file tells are those of its values, known or not.
    *quantity = {row->code, row->var, units.empty() ? row->units : units};
    for (const Units_row& other : row->other) {
        if (are_units(other, units)) *quantity = {other.code, row->var, other.units};
    }
    return true;
}

int model_data_set(const std::string& title, bool has_rtime) {
    int code = 1;
    for (const Title_row& row : TITLES) {
        if (title.starts_with(row.start)) code = row.code;
    }
    for (const Title_row& row : TITLE_WORDS) {
        if (title.find(row.start) != std::string::npos) code += row.code;
    }
    return has_rtime ? code : code + WITHOUT_RTIME;
}

int model_set_of(int data_set, const std::string& name) {
    const bool open = data_set >= 10 && data_set % 10 == 0;
    const bool named = data_set % 100 / 10 == MODEL_SET_NAMED / 10;
    if (!open && !named) return data_set;
    const char* level = name.empty() ? "" : name.c_str() + 1;
    const int told = stricmp(level, "trop") == 0 ? 1 : stricmp(level, "maxwind") == 0 ? 2 : 0;
    return data_set / 100 * 100 + MODEL_SET_NAMED + told;
}

}  // namespace zav
