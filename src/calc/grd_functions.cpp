// The catalogue of grid functions.

#include "calc/grd_functions.h"

#include <algorithm>

#include "calc/grd_families.h"
#include "var/var_tool.h"

namespace zav {
namespace {

using From = Result_units::From;

constexpr int ANY_NUMBER = GRD_MATH_MAX - 2;

constexpr Result_units COPIED{};
constexpr Result_units BLANK{From::BLANK};
constexpr Result_units OF_FIRST{From::FIRST};
constexpr Result_units PER_METRE{From::SCALED, "/m", 1e-5F};
constexpr Result_units PER_SQUARE_METRE{From::SCALED, "/m^2", 1e-10F};
constexpr Result_units PER_SECOND_OF_THIRD{From::SCALED, "/s", 1e-5F, 3};

constexpr Result_units in(const char* units) { return {From::TEXT, units}; }

constexpr int GRID = VTYPE_GRID;  ///< of names that a variable string takes for grid functions
constexpr int NONE = 0;           ///< of those that it doesn't

// clang-format off
const std::vector<Math_function> CATALOGUE = {
    // name, arguments, least, most, results, plot, missing, units, label, units of the arguments, computed by
    {"wind", "u,v", 0, ANY_NUMBER, 1, VTYPE_WIND, Missing::OWN, COPIED, "", {}, math_plot},
    {"vect", "u,v", 0, ANY_NUMBER, 1, VTYPE_VECT, Missing::OWN, COPIED, "", {}, math_plot},
    {"stream", "u,v", 0, ANY_NUMBER, 1, VTYPE_STRM, Missing::OWN, COPIED, "", {}, math_plot},
    {"strm", "u,v", 0, ANY_NUMBER, 1, VTYPE_STRM, Missing::OWN, COPIED, "", {}, math_plot},

    // Arithmetic
    {"smooth", "a,#r", 2, 2, 1, NONE, Missing::ANY, COPIED, "", {}, math_smooth},
    {"copy", "a", 1, 1, 1, GRID, Missing::ANY, COPIED, "", {}, math_copy},
    {"max", "a,b,...", 1, ANY_NUMBER, 1, GRID, Missing::ALL, COPIED, "", {}, math_max},
    {"min", "a,b,...", 1, ANY_NUMBER, 1, GRID, Missing::ALL, COPIED, "", {}, math_min},
    {"add", "a,b", 2, 2, 1, GRID, Missing::ANY, COPIED, "", {}, math_add},
    {"sum", "a,b,...", 1, ANY_NUMBER, 1, GRID, Missing::NEVER, OF_FIRST, "", {}, math_sum},
    {"avg", "a,b,...", 1, ANY_NUMBER, 1, GRID, Missing::ANY, OF_FIRST, "", {}, math_avg},
    {"interp", "a,f,b", 3, 3, 1, GRID, Missing::ANY, OF_FIRST, "", {}, math_interp},
    {"sub", "a,b", 2, 2, 1, GRID, Missing::ANY, OF_FIRST, "", {}, math_sub},
    {"thick", "a,b", 2, 2, 1, GRID, Missing::ANY, OF_FIRST, "", {}, math_sub},
    {"mul", "a,b", 2, 2, 1, GRID, Missing::ANY, COPIED, "", {}, math_mul},
    {"mod", "a,b", 2, 2, 1, GRID, Missing::ANY, COPIED, "", {}, math_mod},
    {"sqrt", "a", 1, 1, 1, GRID, Missing::ANY, COPIED, "", {}, math_sqrt},
    {"exp", "a", 1, 1, 1, GRID, Missing::ANY, COPIED, "", {}, math_exp},
    {"log", "a", 1, 1, 1, GRID, Missing::ANY, COPIED, "", {}, math_log},
    {"log10", "a", 1, 1, 1, GRID, Missing::ANY, COPIED, "", {}, math_log10},
    {"abs", "a", 1, 1, 1, GRID, Missing::ANY, COPIED, "", {}, math_abs},
    {"pow", "a,b", 2, 2, 1, GRID, Missing::ANY, COPIED, "", {}, math_pow},
    {"div", "a,b", 2, 2, 1, GRID, Missing::ANY, COPIED, "", {}, math_div},
    {"sin", "a", 1, 1, 1, GRID, Missing::ANY, COPIED, "", {}, math_sin},
    {"cos", "a", 1, 1, 1, GRID, Missing::ANY, COPIED, "", {}, math_cos},
    {"tan", "a", 1, 1, 1, GRID, Missing::ANY, COPIED, "", {}, math_tan},
    {"asin", "a", 1, 1, 1, GRID, Missing::ANY, COPIED, "", {}, math_asin},
    {"acos", "a", 1, 1, 1, GRID, Missing::ANY, COPIED, "", {}, math_acos},
    {"atan", "a", 1, 1, 1, GRID, Missing::ANY, COPIED, "", {}, math_atan},
    {"atan2", "a,b", 2, 2, 1, GRID, Missing::ANY, COPIED, "", {}, math_atan2},

    // Places and slopes
    {"lat", "a", 1, 1, 1, NONE, Missing::ANY, COPIED, "", {}, math_place},
    {"lon", "a", 1, 1, 1, NONE, Missing::ANY, COPIED, "", {}, math_place},
    {"projx", "a", 1, 1, 1, NONE, Missing::ANY, COPIED, "", {}, math_place},
    {"projy", "a", 1, 1, 1, NONE, Missing::ANY, COPIED, "", {}, math_place},
    {"dx", "a", 1, 1, 1, GRID, Missing::OPERATOR, PER_METRE, "", {}, math_dx},
    {"dy", "a", 1, 1, 1, GRID, Missing::OPERATOR, PER_METRE, "", {}, math_dy},
    {"grad", "a", 1, 1, 2, NONE, Missing::OPERATOR, PER_METRE, "Gradient", {}, math_grad},
    {"lapl", "a", 1, 1, 1, GRID, Missing::OPERATOR, PER_SQUARE_METRE, "Laplacian", {}, math_lapl},

    // Moist air
    {"dewp", "t,rh", 2, 2, 1, GRID, Missing::ANY, in("K"), "", {"K"}, math_dewp},
    {"rhum", "t,td", 2, 2, 1, GRID, Missing::ANY, in("%"), "", {"K", "K"}, math_rhum},
    {"wetblb", "t,humidity;p", 2, 3, 1, GRID, Missing::ANY, in("K"), "", {"K", "K?", "mb"}, math_wetblb},
    {"show", "t850,humidity,t500", 3, 3, 1, GRID, Missing::ANY, in("dC"), "", {"K", "K?", "K"}, math_show},
    {"wchill", "t,speed or t,u,v", 2, 3, 1, GRID, Missing::ANY, in("K"), "", {"K", "m/s", "m/s"}, math_wchill},
    {"wchill2", "t,speed or t,u,v", 2, 3, 1, GRID, Missing::ANY, in("K"), "", {"K", "m/s", "m/s"}, math_wchill2},
    {"heat", "t,humidity", 2, 2, 1, GRID, Missing::ANY, in("K"), "", {"K", "K?"}, math_heat},
    {"theta", "t;p", 1, 2, 1, GRID, Missing::ANY, in("K"), "", {"K", "mb"}, math_theta},
    {"thetae", "t,humidity;p", 2, 3, 1, GRID, Missing::ANY, in("K"), "", {"K", "K?", "mb"}, math_thetae},
    {"vtemp", "t,humidity;p", 2, 3, 1, GRID, Missing::ANY, in("K"), "", {"K", "K?", "mb"}, math_vtemp},
    {"thetav", "t,humidity;p", 2, 3, 1, GRID, Missing::ANY, in("K"), "", {"K", "K?", "mb"}, math_thetav},
    {"vapor", "td or t,rh", 1, 2, 1, GRID, Missing::ANY, in("mb"), "", {"K", "K?"}, math_vapor},
    {"pr_alt", "p", 1, 1, 1, NONE, Missing::ANY, in("m"), "", {"mb"}, math_pr_alt},
    {"shum", "td;p or t,rh;p", 1, 3, 1, GRID, Missing::ANY, in("gm/kg"), "", {"K", "K?", "mb"}, math_shum},
    {"mixrat", "td;p or t,rh;p", 1, 3, 1, GRID, Missing::ANY, in("gm/kg"), "", {"K", "K?", "mb"}, math_mixrat},

    // Winds
    {"wspd", "u,v", 2, 2, 1, GRID, Missing::ANY, in("m/s"), "", {"m/s", "m/s"}, math_wspd},
    {"spd", "u,v", 2, 2, 1, GRID, Missing::ANY, in("m/s"), "Speed", {"m/s", "m/s"}, math_wspd},
    {"mag", "u,v", 2, 2, 1, GRID, Missing::ANY, in("m/s"), "Magnitude", {"m/s", "m/s"}, math_wspd},
    {"wdir", "u,v", 2, 2, 1, GRID, Missing::ANY, in("deg"), "", {"m/s", "m/s"}, math_wdir},
    {"dir", "u,v", 2, 2, 1, GRID, Missing::ANY, in("deg"), "", {"m/s", "m/s"}, math_wdir},
    {"ewdir", "u,v", 2, 2, 1, NONE, Missing::ANY, in("deg"), "", {"m/s", "m/s"}, math_ewdir},
    {"uwnd", "direction,speed", 2, 2, 1, NONE, Missing::ANY, in("m/s"), "", {nullptr, "m/s"}, math_uwnd},
    {"vwnd", "direction,speed", 2, 2, 1, NONE, Missing::ANY, in("m/s"), "", {nullptr, "m/s"}, math_vwnd},
    {"uwndg", "direction,speed", 2, 2, 1, NONE, Missing::ANY, in("m/s"), "", {nullptr, "m/s"}, math_uwndg},
    {"vwndg", "direction,speed", 2, 2, 1, NONE, Missing::ANY, in("m/s"), "", {nullptr, "m/s"}, math_vwndg},
    {"dot", "ua,va,ub,vb", 4, 4, 1, GRID, Missing::ANY, in("m/s"), "", {}, math_dot},
    {"cross", "ua,va,ub,vb", 4, 4, 1, GRID, Missing::ANY, in("m/s"), "", {}, math_cross},
    {"vdiff", "ua,va,ub,vb", 4, 4, 2, NONE, Missing::ANY, COPIED, "Vector Diff", {}, math_vdiff},

    // Fields by operators
    {"ugeos", "z", 1, 1, 1, GRID, Missing::OPERATOR, in("m/s"), "", {"m"}, math_ugeos},
    {"vgeos", "z", 1, 1, 1, GRID, Missing::OPERATOR, in("m/s"), "", {"m"}, math_vgeos},
    {"uq", "z,t", 2, 2, 1, GRID, Missing::OPERATOR, BLANK, "", {"m", "K"}, math_uq},
    {"vq", "z,t", 2, 2, 1, GRID, Missing::OPERATOR, BLANK, "", {"m", "K"}, math_vq},
    {"conv", "u,v;z", 2, 3, 1, GRID, Missing::OPERATOR, PER_METRE, "Convergence", {}, math_conv},
    {"diverg", "u,v;z", 2, 3, 1, GRID, Missing::OPERATOR, PER_METRE, "Divergence", {}, math_diverg},
    {"def1", "u,v", 2, 2, 1, GRID, Missing::OPERATOR, PER_METRE, "", {}, math_def1},
    {"def2", "u,v", 2, 2, 1, GRID, Missing::OPERATOR, PER_METRE, "", {}, math_def2},
    {"vconv", "u,v,z", 3, 3, 1, GRID, Missing::OPERATOR, PER_METRE, "", {}, math_vconv},
    {"rvort", "u,v", 2, 2, 1, GRID, Missing::OPERATOR, PER_METRE, "", {}, math_rvort},
    {"avort", "u,v", 2, 2, 1, GRID, Missing::OPERATOR, PER_METRE, "", {"m/s", "m/s"}, math_avort},
    {"adv", "u,v,z", 3, 3, 1, GRID, Missing::OPERATOR, PER_SECOND_OF_THIRD, "Advection", {"m/s", "m/s"}, math_adv},
};
// clang-format on

}  // namespace

const std::vector<Math_function>& GRD_functions() { return CATALOGUE; }

const Math_function* GRD_find_function(std::string_view name) {
    const auto found =
        std::find_if(CATALOGUE.begin(), CATALOGUE.end(), [&](const Math_function& row) { return row.name == name; });
    return found == CATALOGUE.end() ? nullptr : &*found;
}

}  // namespace zav
