#pragma once

// The coordinate variables of a CF file: what each is a coordinate of, and its numbers.

#include <cstdint>
#include <limits>
#include <string>
#include <vector>

#include "frame/zav.h"
#include "grid/netcdf/cdf_cf_time.h"
#include "grid/netcdf/cdf_file.h"

namespace zav {

enum class Cf_role {
    none,
    x,          ///< longitude, or metres eastward on a map
    y,          ///< latitude, or metres northward on a map
    level,      ///< vertical
    valid,      ///< the time for which a field holds
    reference,  ///< the start of the forecast
    period,     ///< time from the start of the forecast
    member      ///< of an ensemble
};

/// How the numbers of a vertical coordinate become levels.
struct Cf_vertical {
    int ltype = 1;
    double factor = 0.0;    ///< what the file's numbers are multiplied by; 0 for a level type without a number
    bool by_place = false;  ///< the level is the place along the axis, from 1
};

/// What stands for a number that means no moment.
constexpr std::int64_t CF_NO_MOMENT = std::numeric_limits<std::int64_t>::max();

/// A coordinate variable.
struct Cf_coord {
    Cf_role role = Cf_role::none;
    Cdf_var var;
    std::string standard_name;
    bool single = false;         ///< its numbers are floats
    bool degrees = false;        ///< of x and y: latitude and longitude, not a map's plane
    double metres = 1.0;         ///< of x and y on a plane: length of its unit
    Cf_vertical vertical;        ///< of level
    Cf_clock clock;              ///< of valid and reference; of period its unit alone
    bool initial = false;        ///< of valid: it is said to be the time at which forecasts start
    std::vector<double> values;  ///< in the order of the file; of levels that are counted the count
    std::vector<double> bounds;  ///< two numbers for each value, where the file has them
    /// Seconds from 1970 of valid and reference, seconds of period; CF_NO_MOMENT for a number that means none.
    std::vector<std::int64_t> moments;
    std::vector<std::int64_t> bound_moments;
    std::int64_t start = CF_NO_MOMENT;  ///< of valid: the start of the forecast, where the axis itself tells it
};

/// What a variable is a coordinate of by its attributes and name. `named` says that it has the name of its dimension.
Cf_role cf_role(int nc, const Cdf_var& var, bool named);
/// Reads a coordinate variable of that role. False if its numbers can't be read.
bool cf_load(int nc, const Cdf_var& var, Cf_role role, Cf_coord* coord);

}  // namespace zav
