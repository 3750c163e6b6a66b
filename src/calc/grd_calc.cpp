// Evaluation of the function entries of the variable list.
//
// Not built yet: the functions themselves. GRD_math knows the names that select a plot of their arguments; any other
// function ends with the message and the result for one that isn't available.

#include "calc/grd_calc.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "calc/grd_trans.h"
#include "files/date.h"
#include "frame/mess.h"
#include "frame/string.h"
#include "grid/grd_tool.h"
#include "var/var_tool.h"

namespace zav {
namespace {

constexpr M_type MESS_TRACE = 0x40000000;
constexpr M_type MESS_MATH = 64;
constexpr std::size_t TYPE_NAME_SIZE = 10;

/// Plots that a function selects.
struct Plot_function {
    std::string_view name;
    int type;
};
constexpr std::array<Plot_function, 4> PLOT_FUNCTIONS = {
    {{"wind", VTYPE_WIND}, {"vect", VTYPE_VECT}, {"stream", VTYPE_STRM}, {"strm", VTYPE_STRM}}};

constexpr std::array<std::string_view, 2> VECTOR_FUNCTIONS = {"grad", "vdiff"};

/// Functions that a variable list takes for grid functions.
constexpr std::array<std::string_view, 61> GRID_FUNCTIONS = {
    "adv",     "copy", "max",   "min",    "add",   "sum",    "avg",   "interp", "sub",    "thick", "mul",
    "mod",     "sqrt", "pow",   "exp",    "log",   "log10",  "abs",   "div",    "sin",    "cos",   "tan",
    "asin",    "acos", "atan",  "atan2",  "dx",    "dy",     "dewp",  "rhum",   "wetblb", "show",  "wchill",
    "wchill2", "heat", "theta", "thetae", "vtemp", "thetav", "vapor", "shum",   "mixrat", "wspd",  "spd",
    "mag",     "wdir", "dir",   "dot",    "cross", "ugeos",  "vgeos", "uq",     "vq",     "lapl",  "conv",
    "diverg",  "def1", "def2",  "vconv",  "rvort", "avort"};

template <class Table>
bool listed(const Table& table, std::string_view name) {
    return std::find(table.begin(), table.end(), name) != table.end();
}

/// The function of "func-type", and the name of its result variable, empty if none is given.
std::string split_name(const std::string& str, std::string& type) {
    const std::size_t dash = str.find('-');
    type.clear();
    if (dash == std::string::npos) return str;
    const std::size_t end = str.find_first_of(" \t", dash);
    type = fit_text(str.substr(dash + 1, end == std::string::npos ? end : end - dash - 1), TYPE_NAME_SIZE);
    return str.substr(0, dash);
}

std::string function_of(const std::string& str) {
    std::string type;
    return split_name(str, type);
}

const Plot_function* find_plot_function(std::string_view name) {
    const auto* found = std::find_if(PLOT_FUNCTIONS.begin(), PLOT_FUNCTIONS.end(),
                                     [&](const Plot_function& row) { return row.name == name; });
    return found == PLOT_FUNCTIONS.end() ? nullptr : found;
}

/// Units and label that the entry asks for.
void finish_result(GRD_report* grid, const std::string& units) {
    if (!units.empty()) GRD_units(grid, units);
    std::string label;
    DATE_make_label_for_time(grid->time, grid->model, &grid->date, label);
    grid->datim = fit_text(label, GRD_DATIM_SIZE);
}

/// Evaluates entry `j`. True if it takes the next entry with it, as its second result.
bool evaluate(int j, int level) {
    GRD_report* result = GRD_get_grid(j);
    GRD_report* next = GRD_get_grid(j + 1);
    if (next == nullptr) return false;
    const std::string name = VAR_get_name(j);
    MESS_print(MESS_TRACE, "GRIDMATH: %d %d %s\n", j, VAR_get_flag(j), name.c_str());
    GRD_copy_info(result, next);
    GRD_make_datatype(result, "");
    const bool vector = VAR_is_FUNC_VECT(j + 1) != 0 || VAR_is_SUBFUNC_VECT(j + 1) != 0;
    const int results = vector ? 2 : 1;
    std::array<GRD_report*, GRD_MATH_MAX> grds{};
    std::array<float, GRD_MATH_MAX> values{};
    values.fill(FMISS);
    grds[0] = result;
    if (vector) grds[1] = next;
    GRD_find_param_grids(j + results, GRD_MATH_MAX - 1 - results, level + 1, &grds[static_cast<std::size_t>(results)],
                         &values[static_cast<std::size_t>(results)]);
    MESS_print(MESS_PROGRESS, "Performing grid math: %s\n", name.c_str());
    if (GRD_math(name, grds.data(), values.data()) != 1) {
        GRD_free(result);
        if (vector) GRD_free(next);
        return vector;
    }
    finish_result(result, VAR_get_units(j));
    if (vector) finish_result(next, VAR_get_units(j + 1));
    return vector;
}

/// Gives the result of a function values, unless it has some. One that says nothing of its points yet takes them from
/// the first argument that is a grid.
bool make_result(GRD_report* result, GRD_report* const* first, GRD_report* const* last) {
    if (result->grid != nullptr) return true;
    if (result->domain.nx < 1 || result->source == 0) {
        GRD_report* const* model = std::find_if(first, last, [](const GRD_report* grid) { return grid != nullptr; });
        if (model != last) {
            GRD_copy_info(result, *model);
            GRD_make_datatype(result, "");
        }
    }
    return GRD_alloc(result) == 1;
}

/// The functions walk through all grids of a frame at once, so all have to have the size of the first.
bool same_sizes(GRD_report* const* first, GRD_report* const* last) {
    return std::all_of(first, last, [&](const GRD_report* grid) {
        return grid == nullptr || (grid->domain.nx == (*first)->domain.nx && grid->domain.ny == (*first)->domain.ny);
    });
}

int highest_flag() {
    int highest = 0;
    for (int i = 0; i < VAR_get_num(); i++) highest = std::max(highest, VAR_get_flag(i));
    return highest;
}

}  // namespace

int GRD_calc_var() {
    for (int level = highest_flag() / 10 - 1; level >= 0; level--) {
        for (int j = 0; j < VAR_get_num(); j++) {
            const bool open = GRD_is_empty(GRD_get_grid(j)) && VAR_is_calc_GRID(j) != 0;
            if (open && VAR_get_flag(j) / 10 == level && evaluate(j, level)) j++;
        }
    }
    return 1;
}

int GRD_math(const std::string& str, GRD_report**, float*) {
    const std::string func = function_of(str);
    if (find_plot_function(func) != nullptr) return 1;
    MESS_print(MESS_MATH, "GRD_math: Math function not available: %s\n", func.c_str());
    return 0;
}

int GRD_math_setup(float** ptr, int* nx, int* ny, int num, GRD_report** grids, const float* values,
                   const std::string& func, const std::string& type, const char* units) {
    const int results = GRD_is_vect_func(func) != 0 ? 2 : 1;
    const int last = std::min(results + num, GRD_MATH_MAX);
    for (int i = results; i < last; i++) {
        ptr[i] = GRD_has_values(grids[i]) ? grids[i]->grid.get() : nullptr;
        if (ptr[i] == nullptr && values[i] == FMISS) return 0;
    }
    for (int i = 0; i < results; i++) {
        if (!make_result(grids[i], grids + results, grids + last)) return 0;
        ptr[i] = grids[i]->grid.get();
    }
    *nx = grids[0]->domain.nx;
    *ny = grids[0]->domain.ny;
    if (!same_sizes(grids, grids + last)) return 0;
    grids[0]->var = VAR_search_var_num(type.empty() ? func : type);
    if (units == nullptr || *units == 0) return 1;
    for (int i = 0; i < results; i++) {
        grids[i]->units = fit_text(units, GRD_UNITS_SIZE);
        GRD_make_datatype(grids[i], "");
    }
    return 1;
}

float GRD_get_math_val(int ind, float* const* ptr, const float* values) {
    return ptr[ind] != nullptr ? *ptr[ind] : values[ind];
}

int GRD_find_num_data(GRD_report* const* grids, const float* values) {
    int num = 0;
    while (num + 1 < GRD_MATH_MAX && (grids[num + 1] != nullptr || values[num + 1] != FMISS)) num++;
    return num;
}

int GRD_is_vect_func(const std::string& str) { return listed(VECTOR_FUNCTIONS, function_of(str)) ? 1 : 0; }

int GRD_is_plot_func(const std::string& str) { return find_plot_function(function_of(str)) != nullptr ? 1 : 0; }

int GRD_is_math_func(const std::string& str) {
    const std::string func = function_of(str);
    if (const Plot_function* plot = find_plot_function(func)) return plot->type;
    return listed(GRID_FUNCTIONS, func) ? static_cast<int>(VTYPE_GRID) : 0;
}

}  // namespace zav
