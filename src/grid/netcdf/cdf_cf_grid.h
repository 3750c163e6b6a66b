#pragma once

// Where the points of a CF file lie, from the numbers of its coordinate variables.

#include <map>
#include <string>
#include <vector>

#include "map/region.h"

namespace zav {

/// The numbers of a coordinate variable as even steps.
struct Cf_steps {
    bool even = false;
    double first = 0.0;
    double last = 0.0;
    double step = 0.0;      ///< below 0 where the numbers fall; 0 for a single one
    double rounding = 0.0;  ///< what the numbers are rounded to
    int count = 0;
};

/// Looks whether numbers go in even steps, but for their rounding: `single` says that they were floats. With `round`
/// they are longitudes, which may step over 360 or 180 degrees.
Cf_steps cf_steps(const std::vector<double>& values, bool single, bool round);

/// A grid mapping: the attributes of its variable.
struct Cf_mapping {
    std::string name;  ///< attribute "grid_mapping_name"
    std::map<std::string, std::vector<double>> numbers;

    /// The first number of an attribute, or `other` where it isn't there.
    double number(const char* attribute, double other) const;
    bool has(const char* attribute) const { return numbers.count(attribute) > 0; }
};

/// The domain of a grid of latitudes and longitudes in degrees. Empty, or why there is none.
std::string cf_place_latlon(const Cf_steps& lat, const Cf_steps& lon, Domain* domain);
/// The domain of a grid on a map's plane, coordinates in metres. Empty, or why there is none.
std::string cf_place_plane(const Cf_mapping& mapping, const Cf_steps& x, const Cf_steps& y, Domain* domain);

}  // namespace zav
