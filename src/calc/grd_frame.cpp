// The frame of one call of a grid function.

#include <algorithm>

#include "calc/grd_functions.h"
#include "calc/grd_trans.h"
#include "files/unittool.h"
#include "frame/mess.h"
#include "frame/string.h"
#include "grid/grd_tool.h"
#include "var/var_tool.h"

namespace zav {
namespace {

constexpr M_type MESS_MATH = 64;

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
    // A function of numbers alone has no points: that is no lack of memory.
    return GRD_points(result) > 0 && GRD_alloc(result) == 1;
}

/// The functions walk through all grids of a frame at once, so all have to have the size of the first.
bool same_sizes(GRD_report* const* first, GRD_report* const* last) {
    return std::all_of(first, last, [&](const GRD_report* grid) {
        return grid == nullptr || (grid->domain.nx == (*first)->domain.nx && grid->domain.ny == (*first)->domain.ny);
    });
}

/// Brings an argument to the units of its place in the row.
void convert(GRD_report* grid, const char* units) {
    if (units == nullptr || !GRD_has_values(grid)) return;
    const std::string text = units;
    if (text != "K?") {
        GRD_units(grid, text);
    } else if (GRD_is_dew_point(grid)) {
        GRD_units(grid, "K");
    }
}

std::string result_units(const Math_frame& frame) {
    const Result_units& units = frame.function.units;
    const GRD_report* from = frame.argument(units.argument);
    std::string text = units.text;
    if (units.from == Result_units::From::FIRST) text = from != nullptr ? from->units : "";
    if (units.from == Result_units::From::SCALED)
        UNIT_scale(from != nullptr ? from->units : "", units.scale, units.text, text);
    return text;
}

}  // namespace

int Math_frame::place(int number) const { return function.results - 1 + number; }

GRD_report* Math_frame::argument(int number) const { return number <= num ? grids[place(number)] : nullptr; }

bool Math_frame::given(int number) const {
    return number <= num && (grids[place(number)] != nullptr || values[place(number)] != FMISS);
}

bool GRD_is_variable(const GRD_report* grid, const char* name) {
    const int number = VAR_search_var_num(name);
    return grid != nullptr && number != 0 && grid->var == number;
}

bool GRD_is_dew_point(const GRD_report* grid) { return GRD_is_variable(grid, "dewp"); }

bool GRD_begin(Math_frame& frame, int num) {
    for (int i = 1; i <= std::min(num, static_cast<int>(frame.function.convert.size())); i++)
        convert(frame.argument(i), frame.function.convert[static_cast<std::size_t>(i - 1)]);
    if (!GRD_begin(frame, num, result_units(frame).c_str())) return false;
    if (frame.function.units.from == Result_units::From::BLANK) {
        frame.grids[0]->units.clear();
        GRD_make_datatype(frame.grids[0], "");
    }
    return true;
}

bool GRD_begin(Math_frame& frame, int num, const char* units) {
    const std::string func(frame.function.name);
    const int ready =
        GRD_math_setup(frame.ptr.data(), &frame.nx, &frame.ny, num, frame.grids, frame.values, func, frame.type, units);
    return ready == 1 || GRD_refuse() != 0;
}

int GRD_refuse() {
    MESS_print(MESS_MATH, "GRD_math: Invalid grids\n");
    return 0;
}

void GRD_label(Math_frame& frame, const GRD_report* source) {
    if (!frame.type.empty() || *frame.function.label == 0 || source == nullptr) return;
    for (int i = 0; i < frame.function.results; i++) GRD_make_devtype(frame.grids[i], source, frame.function.label);
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

}  // namespace zav
