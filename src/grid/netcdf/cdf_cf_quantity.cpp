// What the variables of CF files are: numbers of the variable table, units, levels and kinds of time ranges.

#include <algorithm>
#include <array>
#include <cstdio>

#include "files/lookup_lines.h"
#include "frame/string.h"
#include "grid/grib/grib.h"
#include "grid/grib/grib_ecmwf.h"
#include "grid/netcdf/cdf_cf_file.h"
#include "grid/netcdf/cdf_cf_names.h"
#include "grid/netcdf/cdf_cf_values.h"
#include "var/var_tool.h"

namespace zav {
namespace {

constexpr int US_CENTRE = 7;

/// Attributes of a variable.
struct Attributes {
    int nc;
    int var;

    std::string text(const char* name) const { return cf_text_att(nc, var, name); }
    std::vector<double> numbers(const char* name) const { return cf_number_atts(nc, var, name); }
    /// The number of an attribute, MISS where there is none.
    int number(const char* name) const {
        const std::vector<double> values = numbers(name);
        return values.empty() || !(values[0] >= 0.0 && values[0] < 1e9) ? MISS : static_cast<int>(values[0]);
    }
};

struct Level {
    int ltype = MISS;
    int level = MISS;
};

Level level_of_key(const std::string& key) {
    Level level;
    if (!key.empty()) VAR_dec_level(key, &level.ltype, &level.level);
    return level;
}

bool ends_in_number(const std::string& name, std::size_t* end) {
    const std::size_t mark = name.rfind('_');
    *end = mark;
    return mark != std::string::npos && mark > 0 && mark + 1 < name.size() &&
           std::all_of(name.begin() + static_cast<std::ptrdiff_t>(mark) + 1, name.end(),
                       [](char c) { return c >= '0' && c <= '9'; });
}

/// The names by which a variable may be known: its own, without the number that tells it from another of the same name,
/// and those that converters keep beside or in it ("TMP_500mb", "TMP_P0_L100_GLL0").
std::vector<std::string> names_of(const Attributes& attributes, const std::string& own) {
    std::vector<std::string> names = {own};
    std::size_t end = 0;
    if (ends_in_number(own, &end)) names.push_back(own.substr(0, end));
    const std::string kept = attributes.text("GRIB_shortName");
    if (!kept.empty()) names.push_back(kept);
    const std::size_t mark = own.find('_');
    const bool made = own.find("_P0_") != std::string::npos || own.find("_GDS") != std::string::npos ||
                      attributes.text("short_name") == own;
    if (made && mark != std::string::npos) names.push_back(own.substr(0, mark));
    return names;
}

/// What the lookup file says, the standard name first.
Cf_meaning look_up(const Attributes& attributes, const std::vector<std::string>& names, const std::string& units) {
    Cf_meaning meaning = cf_meaning(true, attributes.text("standard_name"), units);
    for (const std::string& name : names) {
        const Cf_meaning by_name = cf_meaning(false, name, units);
        if (by_name.abbr.empty()) continue;
        if (meaning.abbr.empty()) return by_name;
        if (meaning.level.empty() && meaning.abbr == by_name.abbr) meaning = by_name;
        break;
    }
    return meaning;
}

/// A parameter of GRIB edition 2 by its numbers. 0 for one that the table doesn't have.
int edition2_number(int source, double discipline, double category, double number) {
    const auto valid = [](double value) { return value >= 0.0 && value < 256.0; };
    if (!valid(discipline) || !valid(category) || !valid(number)) return 0;
    const GribParam param =
        GRIB_get_ver2_param(source, static_cast<int>(discipline), static_cast<int>(category), static_cast<int>(number));
    return param.name.empty() ? 0 : param.ind;
}

/// A parameter of ECMWF's table 128.
int ecmwf_number(int param, Level* level) {
    for (const GribTranslation& row : GRIB_ECMWF_PARAMS) {
        if (row.param != param) continue;
        if (row.ltype != MISS) *level = {row.ltype, row.level == MISS ? 0 : row.level};
        return row.var;
    }
    return 0;
}

/// Parameters that tools keep when they turn GRIB into netCDF: "param" and "code" with "table" of CDI, the numbers of
/// the netCDF library of Unidata, of the command language of NCAR, and of ECMWF's reader.
int grib_number(const Attributes& attributes, int source, Level* level) {
    int number = 0;
    int category = 0;
    int discipline = 0;
    const std::string param = attributes.text("param");
    if (std::sscanf(param.c_str(), "%3d.%3d.%3d", &number, &category, &discipline) == 3) {
        return edition2_number(source, discipline, category, number);
    }
    const std::vector<double> three = attributes.numbers("Grib2_Parameter");
    if (three.size() == 3) return edition2_number(source, three[0], three[1], three[2]);
    const std::vector<double> four = attributes.numbers("parameter_template_discipline_category_number");
    if (four.size() == 4) return edition2_number(source, four[1], four[2], four[3]);
    const int kept = attributes.number("GRIB_paramId");
    if (kept > 0 && kept < 256) return ecmwf_number(kept, level);
    const int code = attributes.number("code");
    const int table = attributes.number("table");
    if (code <= 0 || code > 255) return 0;
    constexpr int FIRST_OWN = 128;
    if (table == GRIB_ECMWF_TABLE) return ecmwf_number(code, level);
    const bool common = table >= 1 && table <= 3 && (code < FIRST_OWN || source == US_CENTRE);
    return common ? code : 0;
}

/// The level in words beside the variable: "500 mb", "2 m above ground", "mean sea level".
Level told_level(const Attributes& attributes) {
    const std::string text = attributes.text("level");
    const std::string type = attributes.text("GRIB_typeOfLevel");
    double number = 0.0;
    std::array<char, 24> unit{};
    double factor = 0.0;
    if (text == "mean sea level") return {102, 0};
    if (text == "surface" || text == "tropopause") return {text == "surface" ? 1 : 7, 0};
    if (std::sscanf(text.c_str(), "%12lf %23[a-z ]", &number, unit.data()) == 2 && number >= 0.0 && number < 1e6) {
        const std::string word = unit.data();
        if (word == "mb") return {100, static_cast<int>(number)};
        if (word == "m above ground") return {105, static_cast<int>(number)};
        if (word == "m above mean sea level") return {103, static_cast<int>(number)};
    }
    const int ltype = cf_level_type(type, &factor);
    if (ltype != MISS && factor == 0.0) return {ltype, 0};
    // Surfaces without a number, of WMO code table 4.5.
    const int surface = attributes.number("Grib2_Level_Type");
    if (surface == 101) return {102, 0};
    if (surface == 10) return {200, 0};
    const bool valueless = (surface >= 1 && surface < 10) || (surface >= 200 && surface < 255);
    return valueless ? Level{surface, 0} : Level{};
}

/// The kind of time range that "cell_methods" tells for the time axis.
int range_kind(const Cf_file& file, const Cf_field& field, const std::string& methods) {
    struct Method {
        const char* word;
        int kind;
    };
    static constexpr std::array<Method, 6> METHODS{
        {{"mean", 3}, {"sum", 4}, {"maximum", 6}, {"minimum", 7}, {"max", 6}, {"min", 7}}};
    if (!field.valid.found()) return 0;
    const std::string axis = file.coords[static_cast<std::size_t>(field.valid.coord)].var.name + ":";
    bool of_time = false;
    for (const std::string& word : split_blanks(methods)) {
        if (word.back() == ':') {
            of_time = of_time || word == axis || word == "time:";
            continue;
        }
        for (const Method& method : METHODS) {
            if (of_time && word == method.word) return method.kind;
        }
        of_time = false;
    }
    return 0;
}

struct Centre {
    const char* text;
    int number;
};
/// Parts of the attributes "institution" and "GRIB_centre" (WMO common code table C-11).
constexpr std::array<Centre, 8> CENTRES{{{"ECMWF", 98},
                                         {"European Centre for Medium", 98},
                                         {"ecmf", 98},
                                         {"US National Weather Service", 7},
                                         {"National Centers for Environmental Prediction", 7},
                                         {"NCEP", 7},
                                         {"kwbc", 7},
                                         {"Deutscher Wetterdienst", 78}}};

}  // namespace

int cf_source(int nc) {
    for (const char* attribute : {"GRIB_centre", "institution", "Originating_or_generating_Center"}) {
        const std::string text = cf_text_att(nc, CDF_GLOBAL, attribute);
        for (const Centre& centre : CENTRES) {
            if (text.find(centre.text) != std::string::npos) return centre.number;
        }
    }
    return 0;
}

Cf_quantity cf_quantity(const Cf_file& file, const Cf_field& field) {
    const Attributes attributes{file.nc, field.var.id};
    Cf_quantity quantity;
    quantity.units = cf_units(attributes.text("units"));
    const std::vector<std::string> names = names_of(attributes, field.var.name);
    const Cf_meaning meaning = look_up(attributes, names, quantity.units);
    Level level = level_of_key(meaning.level);
    quantity.var = meaning.abbr.empty() ? 0 : VAR_search_var_num(meaning.abbr);
    if (quantity.var == 0) quantity.var = grib_number(attributes, file.source, &level);
    if (quantity.var == 0) quantity.var = VAR_search_var_num(field.var.name);
    if (quantity.var == 0) quantity.var = VAR_add(field.var.name, attributes.text("long_name"));
    const Level told = told_level(attributes);
    const bool better = told.ltype != MISS && (told.ltype != 1 || level.ltype == MISS);
    if (better) level = told;
    if (level.ltype != MISS) {
        quantity.ltype = level.ltype;
        quantity.level = level.level;
        quantity.alone = meaning.alone && !better;
    }
    quantity.kind = range_kind(file, field, attributes.text("cell_methods"));
    quantity.from_start = attributes.text("GRIB_stepType") == "accum";
    return quantity;
}

}  // namespace zav
