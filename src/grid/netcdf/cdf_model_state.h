#pragma once

// Private to grid/netcdf: what is known of an open file with a model data set.

#include <array>
#include <cstddef>
#include <string>
#include <vector>

#include "files/date.h"
#include "grid/netcdf/cdf_file.h"
#include "grid/netcdf/cdf_model_names.h"
#include "grid/zavgrd.h"

namespace zav {

/// A variable that was taken up. Its last dimensions are y and x; a slice along them is a record.
struct Model_var {
    Cdf_var var;
    Model_quantity quantity;
    std::string long_name;
    std::size_t slices = 0;  ///< times its sizes of time and level, as far as the file holds them
    bool has_time = false;
    bool has_level = false;
    double scale = 1.0;  ///< the value is the file's number times `scale`, and `offset` more
    double offset = 0.0;
    std::vector<float> missing;  ///< the file's numbers for missing values
};

struct Model_file {
    Cdf_dim x;
    Cdf_dim y;
    Cdf_dim level;
    Cdf_dim time;
    std::vector<Model_var> vars;
    Cdf_var center;  ///< "grib_center", the source
    Cdf_var model;
    Cdf_var levels;
    Cdf_var times;
    bool has_lat = false;      ///< the file tells coordinates of its points
    Domain domain;             ///< from these; unset if they can't be used
    bool north_first = false;  ///< rows run from north to south
    bool east_first = false;   ///< columns run from east to west
    bool has_date = false;
    Date date;                   ///< reference time
    std::size_t first = 0;       ///< number of the first record of the variable at work
    bool told_unplaced = false;  ///< that a grid can't be placed was told
};

/// The state of an open file, from model_getinfo to model_close.
Model_file& model_file(const GRD_file* gfile);

/// The number that a variable has at a time and a level, along those of its dimensions; along others the first.
bool model_value(int nc, const Model_file& file, const Cdf_var& var, std::size_t time, std::size_t level,
                 double* value);

}  // namespace zav
