#pragma once

#include <array>
#include <string>
#include <string_view>
#include <vector>

#include "calc/grd_calc.h"

namespace zav {

struct Math_function;

/// One call of a function. Results come first in `grids`, then the arguments up to a null; a number stands in `values`
/// beside a null grid.
struct Math_frame {
    const Math_function& function;
    std::string type;                        ///< name of the result's variable, of "func-type"; empty if none is given
    GRD_report** grids;                      ///< GRD_MATH_MAX places
    float* values;                           ///< GRD_MATH_MAX places
    int num;                                 ///< arguments given
    std::array<float*, GRD_MATH_MAX> ptr{};  ///< values of results and arguments, null for a number
    int nx = 0;                              ///< points of the result, once the frame is set up
    int ny = 0;                              ///<

    /// Place of argument `number`, counted from 1.
    int place(int number) const;
    /// Grid of an argument, null for a number and behind the last.
    GRD_report* argument(int number) const;
    /// True if an argument is there, as a grid or as a number.
    bool given(int number) const;
    std::size_t points() const { return static_cast<std::size_t>(nx) * static_cast<std::size_t>(ny); }
};

/// When a point of the result is missing.
enum class Missing {
    ANY,       ///< where any argument is
    ALL,       ///< where all arguments are
    NEVER,     ///< nowhere
    OPERATOR,  ///< as the operators of calc/grd_oper.h have it
    OWN,       ///< as the function's comment tells
};

/// Where the result's units come from.
struct Result_units {
    enum class From { COPIED, TEXT, BLANK, FIRST, SCALED } from = From::COPIED;
    const char* text = "";  ///< the units, or what is put behind those that are scaled
    float scale = 1.0F;     ///< factor of scaled ones
    int argument = 1;       ///< the argument whose units are scaled
};

/// A row of the catalogue.
struct Math_function {
    std::string_view name;
    const char* arguments;  ///< as a user reads them; what may be left out behind ";", "..." for any number
    int least;              ///< arguments that it needs
    int most;               ///< arguments that it takes
    int results;            ///< result grids
    int plot;               ///< plot type that the name implies in a variable string, 0 for none
    Missing missing;
    Result_units units;
    const char* label;  ///< behind the variable's name in the label of the result; empty: the usual label
    /// Units that arguments are brought to before. "K?" brings a dew point to K and leaves a humidity in percent.
    std::array<const char*, 4> convert;
    /// Computes the result. 1, or 0 if it can't be, with what was told.
    int (*run)(Math_frame& frame);
};

/// The catalogue.
const std::vector<Math_function>& GRD_functions();
/// The row of a function, null for an unknown name.
const Math_function* GRD_find_function(std::string_view name);

/// Brings arguments to the units of the row, makes the frame ready for its first `num` arguments and gives the result
/// its variable, units and label. True, or false with "GRD_math: Invalid grids\n".
bool GRD_begin(Math_frame& frame, int num);
/// The same with units worked out by the function itself, null for those that were copied.
bool GRD_begin(Math_frame& frame, int num, const char* units);
/// Labels the results by the row's label as derived from `source`, unless the name gave a variable.
void GRD_label(Math_frame& frame, const GRD_report* source);
/// Says that the grids of a call are invalid. Result 0.
int GRD_refuse();
/// True if an argument is a grid of the variable `name`. Of a name that the variable table lacks, none is.
bool GRD_is_variable(const GRD_report* grid, const char* name);
/// True if an argument is a dew point by its variable.
bool GRD_is_dew_point(const GRD_report* grid);

}  // namespace zav
