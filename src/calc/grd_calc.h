#pragma once

#include <string>

#include "grid/zavgrd.h"

namespace zav {

/// Room of a function's frame: results, arguments and the end.
constexpr int GRD_MATH_MAX = 20;

/// Evaluates the function entries of the variable list, the deepest first, into their grids. Result 1.
int GRD_calc_var();
/// Runs the function `str`, "func" or "func-type". `grids[0]` takes the result, arguments follow up to a null; numbers
/// stand in `values` beside a null grid. Both hold GRD_MATH_MAX items. 1, or 0 if the function can't be run.
int GRD_math(const std::string& str, GRD_report** grids, float* values);
/// Makes the frame of a function ready: value pointers of `num` arguments, result with values, its codes and units.
/// 1, or 0 if an argument is missing.
int GRD_math_setup(float** ptr, int* nx, int* ny, int num, GRD_report** grids, const float* values,
                   const std::string& func, const std::string& type, const char* units);
/// Current value of argument `ind`: of its grid, or its number.
float GRD_get_math_val(int ind, float* const* ptr, const float* values);
/// Number of arguments of a frame.
int GRD_find_num_data(GRD_report* const* grids, const float* values);
/// 1 for the functions with two result grids.
int GRD_is_vect_func(const std::string& str);
/// 1 for the names that select a plot of their arguments.
int GRD_is_plot_func(const std::string& str);
/// Plot type that a function implies: 10 for a grid function, 20, 21, 23 for the plots of winds; 0 for another name.
int GRD_is_math_func(const std::string& str);

}  // namespace zav
