// Coordinate variables by standard name, units, axis and the names that are usual.

#include "grid/netcdf/cdf_cf_axes.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "frame/string.h"
#include "grid/netcdf/cdf_api.h"
#include "grid/netcdf/cdf_cf_names.h"
#include "grid/netcdf/cdf_cf_values.h"

namespace zav {
namespace {

/// Most numbers of a coordinate: more than hours in a century.
constexpr std::size_t MOST_VALUES = std::size_t{1} << 20;

struct Role_word {
    const char* word;
    Cf_role role;
};

constexpr std::array<Role_word, 31> STANDARD_NAMES{{
    {"longitude", Cf_role::x},
    {"projection_x_coordinate", Cf_role::x},
    {"grid_longitude", Cf_role::x},
    {"projection_x_angular_coordinate", Cf_role::x},
    {"latitude", Cf_role::y},
    {"projection_y_coordinate", Cf_role::y},
    {"grid_latitude", Cf_role::y},
    {"projection_y_angular_coordinate", Cf_role::y},
    {"time", Cf_role::valid},
    {"forecast_reference_time", Cf_role::reference},
    {"forecast_period", Cf_role::period},
    {"realization", Cf_role::member},
    {"air_pressure", Cf_role::level},
    {"height", Cf_role::level},
    {"altitude", Cf_role::level},
    {"depth", Cf_role::level},
    {"height_above_mean_sea_level", Cf_role::level},
    {"height_above_reference_ellipsoid", Cf_role::level},
    {"height_above_geopotential_datum", Cf_role::level},
    {"geopotential_height", Cf_role::level},
    {"model_level_number", Cf_role::level},
    {"atmosphere_sigma_coordinate", Cf_role::level},
    {"atmosphere_hybrid_sigma_pressure_coordinate", Cf_role::level},
    {"atmosphere_hybrid_height_coordinate", Cf_role::level},
    {"atmosphere_ln_pressure_coordinate", Cf_role::level},
    {"hybrid_sigma_pressure", Cf_role::level},
    {"air_potential_temperature", Cf_role::level},
    {"ertel_potential_vorticity", Cf_role::level},
    {"ocean_sigma_coordinate", Cf_role::level},
    {"ocean_s_coordinate", Cf_role::level},
    {"depth_below_land", Cf_role::level},
}};

/// Names of coordinates, in lower case.
constexpr std::array<Role_word, 40> NAMES{{
    {"lon", Cf_role::x},
    {"lons", Cf_role::x},
    {"longitude", Cf_role::x},
    {"x", Cf_role::x},
    {"rlon", Cf_role::x},
    {"lat", Cf_role::y},
    {"lats", Cf_role::y},
    {"latitude", Cf_role::y},
    {"y", Cf_role::y},
    {"rlat", Cf_role::y},
    {"time", Cf_role::valid},
    {"valid_time", Cf_role::valid},
    {"forecast_reference_time", Cf_role::reference},
    {"reftime", Cf_role::reference},
    {"analysis_time", Cf_role::reference},
    {"initial_time0_hours", Cf_role::reference},
    {"step", Cf_role::period},
    {"forecast_period", Cf_role::period},
    {"forecast_time", Cf_role::period},
    {"forecast_time0", Cf_role::period},
    {"leadtime", Cf_role::period},
    {"lead_time", Cf_role::period},
    {"forecast_hour", Cf_role::period},
    {"number", Cf_role::member},
    {"member", Cf_role::member},
    {"ensemble", Cf_role::member},
    {"ensemble_member", Cf_role::member},
    {"realization", Cf_role::member},
    {"ens", Cf_role::member},
    {"ens0", Cf_role::member},
    {"level", Cf_role::level},
    {"lev", Cf_role::level},
    {"plev", Cf_role::level},
    {"isobaric", Cf_role::level},
    {"pressure", Cf_role::level},
    {"pressure_level", Cf_role::level},
    {"height", Cf_role::level},
    {"depth", Cf_role::level},
    {"altitude", Cf_role::level},
    {"model_level", Cf_role::level},
}};

std::string lower(std::string text) {
    low_string(text);
    return text;
}

template <std::size_t N>
Cf_role role_of(const std::array<Role_word, N>& words, const std::string& text) {
    for (const Role_word& row : words) {
        if (text == row.word) return row.role;
    }
    return Cf_role::none;
}

/// "degrees_north" and its kin, of a letter.
bool is_degrees(const std::string& units, const char* toward, const char* letter) {
    for (const char* word : {"degrees_", "degree_", "degrees", "degree", "deg_"}) {
        if (units == word + std::string(toward) || units == word + std::string(letter)) return true;
    }
    return false;
}
bool is_degrees_east(const std::string& units) { return is_degrees(units, "east", "e"); }
bool is_degrees_north(const std::string& units) { return is_degrees(units, "north", "n"); }

bool is_since(const std::string& units) {
    return units.find(" since ") != std::string::npos || units.rfind("day as %", 0) == 0;
}

/// Seconds of the unit of a time axis' text or a lone unit of time.
bool is_period_unit(const std::string& units) { return cf_unit_seconds(units) > 0.0; }

struct Pressure_unit {
    const char* unit;
    double millibars;
};
constexpr std::array<Pressure_unit, 5> PRESSURES{
    {{"Pa", 0.01}, {"hPa", 1.0}, {"mb", 1.0}, {"kPa", 10.0}, {"bar", 1000.0}}};
constexpr std::array<Pressure_unit, 4> LENGTHS{{{"m", 1.0}, {"km", 1000.0}, {"cm", 0.01}, {"ft", 0.3048}}};

template <std::size_t N>
double unit_factor(const std::array<Pressure_unit, N>& table, const std::string& units) {
    for (const Pressure_unit& row : table) {
        if (units == row.unit) return row.millibars;
    }
    return 0.0;
}

Cf_role role_by_axis(const std::string& axis) {
    if (axis == "x") return Cf_role::x;
    if (axis == "y") return Cf_role::y;
    if (axis == "z") return Cf_role::level;
    if (axis == "t") return Cf_role::valid;
    if (axis == "e") return Cf_role::member;
    return Cf_role::none;
}

/// A dimension name with a number behind it, as converters make them for several axes of a kind: "isobaric3", "lev_2".
std::string plain_name(const std::string& name) {
    std::size_t end = name.size();
    while (end > 0 && name[end - 1] >= '0' && name[end - 1] <= '9') --end;
    if (end > 1 && end < name.size() && name[end - 1] == '_') --end;
    return lower(name.substr(0, end));
}

bool has_word(const std::string& text, const char* word) { return lower(text).find(word) != std::string::npos; }

/// Level type of a length by what the axis is called.
Cf_vertical vertical_length(const std::string& standard, const std::string& name, const std::string& text, bool down,
                            double metres) {
    const bool above_sea = standard == "altitude" || standard == "height_above_mean_sea_level" ||
                           standard == "height_above_reference_ellipsoid" ||
                           standard == "height_above_geopotential_datum" || standard == "geopotential_height" ||
                           has_word(text, "altitude") || has_word(name, "altitude") || name == "alt";
    if (above_sea) return {103, metres, false};
    const bool deep = standard == "depth" || has_word(name, "depth") || has_word(text, "depth") || down;
    if (!deep) return {105, metres, false};
    const bool land = has_word(text, "land") || has_word(text, "soil") || has_word(text, "ground") ||
                      has_word(name, "soil") || has_word(name, "surface_layer");
    return land ? Cf_vertical{111, 100.0 * metres, false} : Cf_vertical{160, metres, false};
}

/// Pressures that come without units go by their size.
Cf_vertical vertical_pressure(const std::vector<double>& values) {
    constexpr double HIGHEST_MILLIBARS = 1200.0;
    const double largest = values.empty() ? 0.0 : *std::max_element(values.begin(), values.end());
    return {100, largest > HIGHEST_MILLIBARS ? 0.01 : 1.0, false};
}

/// Numbers of model levels; those that aren't whole are counted.
Cf_vertical vertical_model(const std::vector<double>& values) {
    const bool whole = std::all_of(values.begin(), values.end(), [](double value) {
        return value >= 0.0 && value < 1e6 && value == std::floor(value);
    });
    return {109, 1.0, !whole};
}

/// What the numbers of a vertical coordinate are, by its name, standard name and units.
Cf_vertical vertical_of(int nc, const Cdf_var& var, const std::vector<double>& values) {
    const std::string standard = cf_text_att(nc, var.id, "standard_name");
    const std::string units = cf_units(cf_text_att(nc, var.id, "units"));
    const std::string text = cf_text_att(nc, var.id, "long_name");
    const std::string name = plain_name(var.name);
    const double pressure = unit_factor(PRESSURES, units);
    double factor = 0.0;
    int word = cf_level_type(var.name, &factor);
    if (word == MISS) word = cf_level_type(name, &factor);
    if (word == 100 && pressure > 0.0) return {100, pressure, false};
    if (word == 100) return vertical_pressure(values);
    if (word == 115) return {115, pressure > 0.0 ? pressure : factor, false};
    const double length = unit_factor(LENGTHS, units);
    if (word != MISS) return {word, length > 0.0 ? factor * length : factor, false};
    if (standard == "air_potential_temperature") return {113, 1.0, false};
    if (standard == "ertel_potential_vorticity") return {117, 1e6, false};
    if (standard == "atmosphere_sigma_coordinate" || units == "sigma_level" || text == "sigma") {
        return {107, 10000.0, false};
    }
    if (pressure > 0.0) return {100, pressure, false};
    if (length > 0.0) {
        const bool down = lower(cf_text_att(nc, var.id, "positive")) == "down";
        return vertical_length(standard, name, text, down, length);
    }
    const bool isobaric = name == "plev" || name == "isobaric" || name == "pressure" || name == "pressure_level" ||
                          standard == "air_pressure" || has_word(text, "pressure");
    if (isobaric) return vertical_pressure(values);
    const bool told = !standard.empty() || !units.empty() || !text.empty();
    if (!told && values.size() == 1) return {0, 0.0, false};
    return vertical_model(values);
}

/// The moments that numbers of a time axis mean. Single precision says no more than some seconds to minutes of a time
/// far from its origin: what lies so near a whole hour is that hour.
std::vector<std::int64_t> moments_of(const Cf_coord& coord, const std::vector<double>& values) {
    constexpr double SINGLE = 1.2e-7;
    constexpr std::int64_t HOUR = 3600;
    std::vector<std::int64_t> moments(values.size(), CF_NO_MOMENT);
    for (std::size_t i = 0; i < values.size(); i++) {
        std::int64_t moment = 0;
        if (!cf_moment(coord.clock, values[i], &moment)) continue;
        const double doubt = coord.single ? std::fabs(values[i]) * coord.clock.step * SINGLE : 0.0;
        const std::int64_t past = ((moment + HOUR / 2) % HOUR + HOUR) % HOUR - HOUR / 2;
        moments[i] = std::fabs(static_cast<double>(past)) <= doubt ? moment - past : moment;
    }
    return moments;
}

void load_bounds(int nc, Cf_coord* coord) {
    std::string name = cf_text_att(nc, coord->var.id, "bounds");
    if (name.empty()) return;
    const Cdf_var var = cdf_var(nc, name.c_str());
    if (!cdf_is_number(var) || var.sizes.size() != coord->var.sizes.size() + 1 || var.sizes.back() != 2) return;
    for (std::size_t i = 0; i < coord->var.dims.size(); i++) {
        if (var.dims[i] != coord->var.dims[i]) return;
    }
    if (!cf_all_values(nc, var, 2 * MOST_VALUES, coord->bounds)) coord->bounds.clear();
}

void load_place(int nc, Cf_coord* coord) {
    const std::string units = cf_text_att(nc, coord->var.id, "units");
    const std::string low = lower(units);
    const std::string name = plain_name(coord->var.name);
    const double length = unit_factor(LENGTHS, cf_units(units));
    const std::string& standard = coord->standard_name;
    const bool told = standard == "longitude" || standard == "latitude";
    const bool by_units = (is_degrees_east(low) || is_degrees_north(low)) && standard.rfind("grid_", 0) != 0;
    const bool by_name = name.rfind("lon", 0) == 0 || name.rfind("lat", 0) == 0;
    coord->degrees = told || by_units || (by_name && length == 0.0 && standard.empty());
    coord->metres = length > 0.0 ? length : 1.0;
}

void load_level(int nc, Cf_coord* coord) {
    coord->vertical = vertical_of(nc, coord->var, coord->values);
    load_bounds(nc, coord);
    for (std::size_t i = 0; coord->vertical.by_place && i < coord->values.size(); i++) {
        coord->values[i] = static_cast<double>(i + 1);
    }
}

void load_period(int nc, Cf_coord* coord) {
    const std::string units = cf_text_att(nc, coord->var.id, "units");
    coord->clock.step = cf_unit_seconds(units);
    if (coord->clock.step == 0.0) coord->clock.refused = "the units of its forecast time are " + units;
    coord->moments = moments_of(*coord, coord->values);
}

/// True for a short series of times behind the date that they are counted from: a forecast and its start.
bool counts_from_start(const Cf_coord& coord) {
    constexpr std::int64_t LONGEST_FORECAST = 16 * 86400;
    if (coord.clock.absolute || coord.clock.step == 0.0) return false;
    return std::all_of(coord.moments.begin(), coord.moments.end(), [&](std::int64_t moment) {
        return moment != CF_NO_MOMENT && moment >= coord.clock.origin &&
               moment - coord.clock.origin <= LONGEST_FORECAST;
    });
}

void load_time(int nc, Cf_coord* coord) {
    const int id = coord->var.id;
    coord->clock = cf_clock(cf_text_att(nc, id, "units"), cf_text_att(nc, id, "calendar"));
    coord->initial = has_word(cf_text_att(nc, id, "long_name"), "initial time");
    load_bounds(nc, coord);
    coord->moments = moments_of(*coord, coord->values);
    coord->bound_moments = moments_of(*coord, coord->bounds);
    if (coord->role != Cf_role::valid) return;
    // One converter writes the start of the forecast as a number beside the units of the time.
    double value = 0.0;
    if (cdf_number_att(nc, id, "reference_time", &value) && cf_moment(coord->clock, value, &coord->start)) return;
    coord->start = counts_from_start(*coord) ? coord->clock.origin : CF_NO_MOMENT;
}

}  // namespace

Cf_role cf_role(int nc, const Cdf_var& var, bool named) {
    const std::string standard = cf_text_att(nc, var.id, "standard_name");
    const std::string told_units = cf_text_att(nc, var.id, "units");
    const std::string units = lower(told_units);
    const std::string long_name = lower(cf_text_att(nc, var.id, "long_name"));
    const Cf_role told = role_of(STANDARD_NAMES, standard);
    const std::string name = plain_name(var.name);
    const Cf_role by_name = role_of(NAMES, name);
    if (told == Cf_role::valid && by_name == Cf_role::reference) return by_name;
    if (told != Cf_role::none) return told;
    if (is_degrees_east(units)) return Cf_role::x;
    if (is_degrees_north(units)) return Cf_role::y;
    const bool start = has_word(long_name, "reference time") || has_word(long_name, "initial time");
    if (is_since(units))
        return by_name == Cf_role::reference || (start && name != "time") ? Cf_role::reference : Cf_role::valid;
    double factor = 0.0;
    if (cf_level_type(name, &factor) != MISS || cf_level_type(var.name, &factor) != MISS) return Cf_role::level;
    if (by_name == Cf_role::period || by_name == Cf_role::valid)
        return is_period_unit(units) ? Cf_role::period : by_name;
    if (!named) return by_name == Cf_role::member || by_name == Cf_role::level ? by_name : Cf_role::none;
    if (unit_factor(PRESSURES, cf_units(told_units)) > 0.0) return Cf_role::level;
    const Cf_role by_axis = role_by_axis(lower(cf_text_att(nc, var.id, "axis")));
    if (by_axis != Cf_role::none) return by_axis;
    if (!cf_text_att(nc, var.id, "positive").empty()) return Cf_role::level;
    return by_name;
}

bool cf_load(int nc, const Cdf_var& var, Cf_role role, Cf_coord* coord) {
    coord->role = role;
    coord->var = var;
    if (!cdf_is_number(var) || !cf_all_values(nc, var, MOST_VALUES, coord->values)) return false;
    const Cf_packing packing = cf_packing(nc, var);
    for (double& value : coord->values) value = value * packing.scale + packing.offset;
    coord->single = var.type == NC_FLOAT;
    coord->standard_name = cf_text_att(nc, var.id, "standard_name");
    switch (role) {
        case Cf_role::x:
        case Cf_role::y:
            load_place(nc, coord);
            break;
        case Cf_role::level:
            load_level(nc, coord);
            break;
        case Cf_role::period:
            load_period(nc, coord);
            break;
        case Cf_role::valid:
        case Cf_role::reference:
            load_time(nc, coord);
            break;
        default:
            break;
    }
    return true;
}

}  // namespace zav
