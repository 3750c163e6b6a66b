#pragma once

// Private to grid/netcdf: what the names and units of a model data set's variables mean.

#include <string>

namespace zav {

/// Codes of a quantity. Those of such data sets are the numbers of GRIB edition 0, with 100 added for SI units.
struct Model_quantity {
    int code = 0;       ///< in the data set's numbering; 0 for a quantity that only the user knows
    int var = 0;        ///< variable number
    std::string units;  ///< units of the values
};

/// The quantity of a variable with that name, in any case, and units. False for a name that isn't known.
bool model_quantity(const std::string& name, const std::string& units, Model_quantity* quantity);

/// Kinds of data sets, by the title of the file; the kind is the code modulo 100.
enum : int {
    MODEL_SET_NAMED = 40,       ///< to 49: the level is told by the variable's name
    MODEL_SET_500_HOUR_72 = 13  ///< 500 mb fields of 72 hours
};
/// Code of a data set by its title, 1 if it tells nothing; 100 is added for one without reference times.
int model_data_set(const std::string& title, bool has_rtime);
/// The code for a variable of that name: data sets whose title doesn't tell the level have it in the names.
int model_set_of(int data_set, const std::string& name);

}  // namespace zav
