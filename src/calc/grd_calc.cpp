// Evaluation of the function entries of the variable list.

#include "calc/grd_calc.h"

#include <algorithm>
#include <array>

#include "calc/grd_functions.h"
#include "calc/grd_trans.h"
#include "files/date.h"
#include "frame/mess.h"
#include "frame/status.h"
#include "frame/string.h"
#include "grid/grd_tool.h"
#include "var/var_tool.h"

namespace zav {
namespace {

constexpr M_type MESS_TRACE = 0x40000000;
constexpr M_type MESS_MATH = 64;
constexpr std::size_t TYPE_NAME_SIZE = 10;

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

using Frame_grids = std::array<GRD_report*, GRD_MATH_MAX>;

/// The label of a result's time. Records of files in the own formats have no date, only such a label: without a date
/// the result takes that of an argument for the same time, and without one names no date.
std::string time_label(const GRD_report* result, const Frame_grids& arguments) {
    const int model = result->source * 1000 + result->model;
    std::string label;
    if (result->date.year != MISS) {
        DATE_make_label_for_time(result->time, model, &result->date, label);
        return label;
    }
    const auto told = std::find_if(arguments.begin(), arguments.end(), [result](const GRD_report* grid) {
        return grid != nullptr && GRD_has_values(grid) && grid->time == result->time && !grid->datim.empty();
    });
    if (told != arguments.end()) return (*told)->datim;
    DATE_make_label_for(result->time, model, 0, label);
    return label;
}

/// Units and label that the entry asks for.
void finish_result(GRD_report* grid, const std::string& units, const Frame_grids& arguments) {
    if (!units.empty()) GRD_units(grid, units);
    grid->datim = fit_text(time_label(grid, arguments), GRD_DATIM_SIZE);
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
    Frame_grids grds{};
    std::array<float, GRD_MATH_MAX> values{};
    values.fill(FMISS);
    grds[0] = result;
    if (vector) grds[1] = next;
    GRD_find_param_grids(j + results, GRD_MATH_MAX - 1 - results, level + 1, &grds[static_cast<std::size_t>(results)],
                         &values[static_cast<std::size_t>(results)]);
    MESS_print(MESS_PROGRESS, "Performing grid math: %s\n", name.c_str());
    if (GRD_math(name, grds.data(), values.data()) != 1) {
        ZAV_note(STATUS_LAYER);
        GRD_free(result);
        if (vector) GRD_free(next);
        return vector;
    }
    Frame_grids arguments = grds;  // the results may have the labels of an earlier time
    std::fill_n(arguments.begin(), results, nullptr);
    finish_result(result, VAR_get_units(j), arguments);
    if (vector) finish_result(next, VAR_get_units(j + 1), arguments);
    return vector;
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

int GRD_math(const std::string& str, GRD_report** grids, float* values) {
    std::string type;
    const std::string func = split_name(str, type);
    const Math_function* row = GRD_find_function(func);
    if (row == nullptr) {
        MESS_print(MESS_MATH, "GRD_math: Math function not available: %s\n", func.c_str());
        return 0;
    }
    const int num = std::max(GRD_find_num_data(grids, values) - (row->results - 1), 0);
    if (num > row->most) {
        MESS_print(MESS_MATH, "GRD_math: %s(%s) has %d arguments\n", func.c_str(), row->arguments, num);
        return 0;
    }
    Math_frame frame{*row, type, grids, values, num};
    return row->run(frame);
}

int GRD_is_vect_func(const std::string& str) {
    const Math_function* row = GRD_find_function(function_of(str));
    return row != nullptr && row->results == 2 ? 1 : 0;
}

int GRD_is_plot_func(const std::string& str) { return GRD_is_math_func(str) > VTYPE_GRID ? 1 : 0; }

int GRD_is_math_func(const std::string& str) {
    const Math_function* row = GRD_find_function(function_of(str));
    return row != nullptr ? row->plot : 0;
}

}  // namespace zav
