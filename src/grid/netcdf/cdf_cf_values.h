#pragma once

// Numbers of CF files: blocks of any rank, attributes of several numbers, and packed values.

#include <string>
#include <vector>

#include "grid/netcdf/cdf_file.h"

namespace zav {

/// A text attribute, empty where there is none.
std::string cf_text_att(int nc, int var, const char* name);
/// All numbers of a numeric attribute; empty where there is none. `is_float` takes whether they are floats or doubles.
std::vector<double> cf_number_atts(int nc, int var, const char* name, bool* is_float = nullptr);
/// Name of a dimension, empty if there is none.
std::string cf_dim_name(int nc, int dim);
/// All numbers of a variable of any rank, if the file holds them and they are no more than `most`.
bool cf_all_values(int nc, const Cdf_var& var, std::size_t most, std::vector<double>& values);

/// How the numbers of a variable become values.
struct Cf_packing {
    double scale = 1.0;
    double offset = 0.0;
    double wrap = 0.0;            ///< what is added to numbers below 0 of an unsigned type
    std::vector<double> missing;  ///< numbers that stand for no value
    double low = 0.0;             ///< numbers outside of these bounds are no values
    double high = 0.0;
    bool of_values = false;  ///< the bounds are those of values, not of the numbers in the file

    /// The value of a number, FMISS for none.
    float value(double number) const;
};
Cf_packing cf_packing(int nc, const Cdf_var& var);

/// The slice of a variable at `start` with rows along dimension `y` and columns along dimension `x`, packed values
/// taken apart, into `grid` from the north and the west: `south_first` and `east_first` tell the order of the file.
/// False if the file doesn't hold it.
struct Cf_slice {
    Cdf_index start;
    std::size_t x = 0;
    std::size_t y = 0;
    bool south_first = false;
    bool east_first = false;
};
bool cf_read_slice(int nc, const Cdf_var& var, const Cf_slice& slice, float* grid);

}  // namespace zav
