// Names of variables, units and levels in CF files.

#include "grid/netcdf/cdf_cf_names.h"

#include <array>
#include <cctype>
#include <map>
#include <vector>

#include "files/files.h"
#include "files/lookup_lines.h"
#include "frame/resrc.h"
#include "frame/string.h"
#include "frame/zav.h"

namespace zav {
namespace {

/// A line of the lookup file.
struct Line {
    Cf_meaning meaning;
    std::string units;  ///< empty for any
};

struct State {
    LookupLines file;
    std::map<std::string, std::vector<Line>> standard;
    std::map<std::string, std::vector<Line>> named;  ///< by the name in lower case
};
State state;

std::string lower(std::string text) {
    low_string(text);
    return text;
}

std::string field(const std::vector<std::string>& words, std::size_t place) {
    return place < words.size() && words[place] != "-" ? words[place] : std::string();
}

void load() {
    const int before = state.file.changes();
    state.file.load(FILE_add_path(RES_get("file_path"), "cf.lup"));
    if (state.file.changes() == before) return;
    state.standard.clear();
    state.named.clear();
    for (const std::string& text : state.file.lines()) {
        const std::vector<std::string> words = split_blanks(text);
        if (words.size() < 3) continue;
        std::string level = field(words, 3);
        const bool alone = level.size() > 2 && level.front() == '(' && level.back() == ')';
        if (alone) level = level.substr(1, level.size() - 2);
        const Line line{{words[2], level, alone}, field(words, 4)};
        if (words[0] == "std") state.standard[words[1]].push_back(line);
        if (words[0] == "var") state.named[lower(words[1])].push_back(line);
    }
}

/// Whole texts of units, in lower case.
struct Spelling {
    const char* text;
    const char* units;
};
constexpr std::array<Spelling, 47> SPELLINGS{{
    {"1", ""},
    {"-", ""},
    {"~", ""},
    {"none", ""},
    {"unitless", ""},
    {"dimensionless", ""},
    {"unknown", ""},
    {"(0 - 1)", "fraction"},
    {"0 - 1", "fraction"},
    {"0-1", "fraction"},
    {"percent", "%"},
    {"proportion", "fraction"},
    {"fraction", "fraction"},
    {"kelvin", "K"},
    {"degk", "K"},
    {"deg_k", "K"},
    {"degree_kelvin", "K"},
    {"degrees_kelvin", "K"},
    {"celsius", "C"},
    {"degc", "C"},
    {"deg_c", "C"},
    {"degrees_c", "C"},
    {"degree_c", "C"},
    {"degree_celsius", "C"},
    {"degrees_celsius", "C"},
    {"degf", "F"},
    {"deg_f", "F"},
    {"fahrenheit", "F"},
    {"degree_fahrenheit", "F"},
    {"pascal", "Pa"},
    {"pascals", "Pa"},
    {"hectopascal", "hPa"},
    {"hectopascals", "hPa"},
    {"millibar", "mb"},
    {"millibars", "mb"},
    {"mbar", "mb"},
    {"meter", "m"},
    {"meters", "m"},
    {"metre", "m"},
    {"metres", "m"},
    {"m of water equivalent", "m"},
    {"m of water", "m"},
    {"geopotential meter", "gpm"},
    {"geopotential meters", "gpm"},
    {"degree", "deg"},
    {"degrees", "deg"},
    {"degree true", "deg"},
}};

/// A unit and its exponent.
struct Factor {
    std::string unit;
    int power = 1;
};

bool is_letter(char c) { return std::isalpha(static_cast<unsigned char>(c)) != 0 || c == '_' || c == '%'; }
bool is_digit(char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; }

/// An exponent of one digit: "-2", "2", "**-2", "^-2". False for what is none.
bool read_power(const std::string& text, std::size_t* at, int* power) {
    if (text.compare(*at, 2, "**") == 0) {
        *at += 2;
    } else if (text.compare(*at, 1, "^") == 0) {
        ++*at;
    }
    const bool negative = text.compare(*at, 1, "-") == 0;
    if (negative || text.compare(*at, 1, "+") == 0) ++*at;
    if (*at >= text.size() || !is_digit(text[*at])) return false;
    *power = (text[*at] - '0') * (negative ? -1 : 1);
    ++*at;
    return *power != 0 && (*at >= text.size() || !is_digit(text[*at]));
}

/// Units and exponents of a product such as "kg m-2 s-1" or "W/m^2". False for a text of another form.
bool read_product(const std::string& text, std::vector<Factor>* factors) {
    bool divided = false;
    for (std::size_t at = 0; at < text.size();) {
        const char c = text[at];
        if (c == ' ' || c == '.' || (c == '*' && text.compare(at, 2, "**") != 0)) {
            ++at;
            continue;
        }
        if (c == '/' || (c == '1' && text.compare(at, 2, "1/") == 0)) {
            divided = true;
            at += c == '/' ? 1 : 2;
            continue;
        }
        Factor factor;
        while (at < text.size() && is_letter(text[at])) factor.unit += text[at++];
        if (factor.unit.empty()) return false;
        if (at < text.size() && text[at] != ' ' && text[at] != '/' && text[at] != '.' &&
            (text[at] != '*' || text.compare(at, 2, "**") == 0) && !read_power(text, &at, &factor.power)) {
            return false;
        }
        if (divided) factor.power = -factor.power;
        divided = false;
        factors->push_back(factor);
    }
    return !factors->empty();
}

std::string power_text(const Factor& factor) {
    const int power = factor.power < 0 ? -factor.power : factor.power;
    return power == 1 ? factor.unit : factor.unit + "^" + std::to_string(power);
}

/// Words for levels, of the typeOfLevel of ECMWF's tools and of dimension names.
struct Level_word {
    const char* word;
    int ltype;
    double factor;
};
constexpr std::array<Level_word, 34> LEVEL_WORDS{{
    {"surface", 1, 0.0},
    {"sfc", 1, 0.0},
    {"cloudBase", 2, 0.0},
    {"cloudTop", 3, 0.0},
    {"isothermZero", 4, 0.0},
    {"maxWind", 6, 0.0},
    {"tropopause", 7, 0.0},
    {"nominalTop", 8, 0.0},
    {"isobaricInhPa", 100, 0.01},
    {"isobaricInPa", 100, 0.01},
    {"meanSea", 102, 0.0},
    {"heightAboveSea", 103, 1.0},
    {"heightAboveGround", 105, 1.0},
    {"height_above_ground", 105, 1.0},
    {"altitude_above_msl", 103, 1.0},
    {"sigma", 107, 10000.0},
    {"hybrid", 109, 1.0},
    {"depthBelowLand", 111, 100.0},
    {"depthBelowLandLayer", 111, 100.0},
    {"depth_below_surface_layer", 111, 100.0},
    {"theta", 113, 1.0},
    {"isentrope", 113, 1.0},
    {"pressureFromGround", 115, 0.01},
    {"potentialVorticity", 117, 1e6},
    {"potential_vorticity_surface", 117, 1e6},
    {"eta", 119, 10000.0},
    {"depthBelowSea", 160, 1.0},
    {"entireAtmosphere", 200, 0.0},
    {"atmosphere", 200, 0.0},
    {"atmosphereSingleLayer", 200, 0.0},
    {"lowCloudLayer", 214, 0.0},
    {"middleCloudLayer", 224, 0.0},
    {"highCloudLayer", 234, 0.0},
    {"cloudCeiling", 215, 0.0},
}};

}  // namespace

std::string cf_units(const std::string& text) {
    const std::string low = lower(text);
    for (const Spelling& row : SPELLINGS) {
        if (low == row.text) return row.units;
    }
    std::vector<Factor> factors;
    if (!read_product(text, &factors)) return text;
    std::string units;
    for (const Factor& factor : factors) {
        if (factor.power > 0) units += (units.empty() ? "" : "*") + power_text(factor);
    }
    for (const Factor& factor : factors) {
        if (factor.power < 0) units += "/" + power_text(factor);
    }
    return units;
}

Cf_meaning cf_meaning(bool standard, const std::string& name, const std::string& units) {
    load();
    const auto& table = standard ? state.standard : state.named;
    const auto lines = table.find(standard ? name : lower(name));
    if (lines == table.end()) return {};
    for (const Line& line : lines->second) {
        if (line.units.empty() || line.units == units) return line.meaning;
    }
    return {};
}

int cf_level_type(const std::string& word, double* factor) {
    for (const Level_word& row : LEVEL_WORDS) {
        if (lower(word) != lower(row.word)) continue;
        *factor = row.factor;
        return row.ltype;
    }
    return MISS;
}

}  // namespace zav
