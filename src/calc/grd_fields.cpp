// Fields by operators.

#include <algorithm>

#include "calc/grd_families.h"
#include "calc/grd_oper.h"
#include "calc/grd_trans.h"
#include "files/unittool.h"
#include "frame/string.h"
#include "grid/grd_tool.h"
#include "var/var_tool.h"

namespace zav {
namespace {

/// Result of a function whose operators gave `status`.
int done(int status) { return status == 0 ? 1 : GRD_refuse(); }

/// GRD_begin for a function whose first `num` arguments have to be grids.
bool begin(Math_frame& frame, int num) {
    for (int i = 1; i <= num; i++) {
        if (frame.argument(i) == nullptr) return GRD_refuse() != 0;
    }
    return GRD_begin(frame, num);
}

using Derivative = int (*)(const GRD_report* grid, GRD_report* ogrid);
using Of_winds = int (*)(const GRD_report* ugrid, const GRD_report* vgrid, GRD_report* ogrid);

int of_one(Math_frame& frame, Derivative derivative) {
    if (!begin(frame, 1)) return 0;
    if (derivative(frame.argument(1), frame.grids[0]) != 0) return GRD_refuse();
    GRD_label(frame, frame.argument(1));
    return 1;
}

int of_winds(Math_frame& frame, Of_winds derivative) {
    if (!begin(frame, 2)) return 0;
    if (derivative(frame.argument(1), frame.argument(2), frame.grids[0]) != 0) return GRD_refuse();
    return done(GRD_make_datatype(frame.grids[0], ""));
}

/// A field of work on the points of `model`; its operators give it values.
GRD_report work_grid(const GRD_report* model) {
    GRD_report work;
    GRD_init(&work);
    GRD_copy_info(&work, model);
    return work;
}

// Winds that blow along the height lines of a pressure level. Derivatives are per 100 km and f is in 1e-5 per second,
// so that the factors cancel.

constexpr float GRAVITY = 9.8F;  // m/s^2

int geostrophic(const GRD_report* z, GRD_report* wind, Derivative derivative, float factor) {
    const bool made = derivative(z, wind) == 0 && GRD_coriolis(wind, "div") == 0;
    return made ? GRD_scale(wind, factor) : -1;
}

int geostrophic_u(const GRD_report* z, GRD_report* wind) { return geostrophic(z, wind, GRD_dy, -GRAVITY); }
int geostrophic_v(const GRD_report* z, GRD_report* wind) { return geostrophic(z, wind, GRD_dx, GRAVITY); }

/// A component of the Q-vector: `along` differentiates along it.
int q_vector(Math_frame& frame, Derivative along) {
    constexpr double GAS_CONSTANT = 287.05;  // of dry air, J/(kg K)
    constexpr double PASCALS = 100.0;        // in a mb
    if (!begin(frame, 2)) return 0;
    const GRD_report* z = frame.argument(1);
    const GRD_report* t = frame.argument(2);
    const double pressure = frame.grids[0]->level;
    if (!(pressure > 0.0)) return GRD_refuse();
    GRD_report ug = work_grid(z), vg = work_grid(z);
    GRD_report ug_along = work_grid(z), vg_along = work_grid(z);
    GRD_report tx = work_grid(t), ty = work_grid(t);
    const bool made = geostrophic_u(z, &ug) == 0 && geostrophic_v(z, &vg) == 0 && along(&ug, &ug_along) == 0 &&
                      along(&vg, &vg_along) == 0 && GRD_dx(t, &tx) == 0 && GRD_dy(t, &ty) == 0;
    if (!made) return GRD_refuse();
    const double factor = -GAS_CONSTANT / (PASCALS * pressure);
    for (std::size_t i = 0; i < frame.points(); i++) {
        const float a = ug_along.grid[i], b = vg_along.grid[i], c = tx.grid[i], d = ty.grid[i];
        const bool missing = a == FMISS || b == FMISS || c == FMISS || d == FMISS;
        frame.ptr[0][i] = missing ? FMISS : static_cast<float>(factor * (a * c + b * d));
    }
    return 1;
}

/// Convergence of the wind, or with a third argument of what it carries. Units are those of the values, so the wind
/// that carries something is taken in m/s.
int converge(Math_frame& frame, float factor) {
    GRD_report* z = frame.argument(3);
    const bool carries = frame.given(3);
    if (carries && z == nullptr) return GRD_refuse();
    if (carries) {
        for (const int wind : {1, 2}) GRD_units(frame.argument(wind), "m/s");
    }
    if (!begin(frame, carries ? 3 : 2)) return 0;
    GRD_report* result = frame.grids[0];
    if (carries && !z->units.empty()) {
        UNIT_scale(z->units, 1e-5F, "/s", result->units);
        result->units = fit_text(result->units, GRD_UNITS_SIZE);
    }
    if (GRD_converge(frame.argument(1), frame.argument(2), z, result) != 0) return GRD_refuse();
    if (factor != 1.0F) GRD_scale(result, factor);
    GRD_make_datatype(result, "");
    GRD_label(frame, carries ? z : frame.argument(1));
    return 1;
}

}  // namespace

int math_place(Math_frame& frame) {
    const GRD_report* grid = frame.argument(1);
    if (!GRD_has_values(grid)) return GRD_refuse();
    GRD_report* result = frame.grids[0];
    GRD_copy(result, grid);
    if (GRD_alloc(result) != 1) return GRD_refuse();  // the values that GRD_copy shares are the argument's
    std::copy_n(grid->grid.get(), GRD_points(grid), result->grid.get());
    if (GRD_point_locate(result, std::string(frame.function.name)) != 0) return GRD_refuse();
    if (frame.type.empty()) return 1;
    result->var = VAR_search_var_num(frame.type);
    return done(GRD_make_datatype(result, ""));
}

int math_dx(Math_frame& frame) { return of_one(frame, GRD_dx); }

int math_dy(Math_frame& frame) { return of_one(frame, GRD_dy); }

int math_grad(Math_frame& frame) {
    if (!begin(frame, 1)) return 0;
    const GRD_report* grid = frame.argument(1);
    if (GRD_dx(grid, frame.grids[0]) != 0 || GRD_dy(grid, frame.grids[1]) != 0) return GRD_refuse();
    GRD_label(frame, grid);
    return 1;
}

int math_ugeos(Math_frame& frame) { return of_one(frame, geostrophic_u); }

int math_vgeos(Math_frame& frame) { return of_one(frame, geostrophic_v); }

int math_uq(Math_frame& frame) { return q_vector(frame, GRD_dx); }

int math_vq(Math_frame& frame) { return q_vector(frame, GRD_dy); }

int math_lapl(Math_frame& frame) { return of_one(frame, GRD_laplacian); }

int math_conv(Math_frame& frame) { return converge(frame, 1.0F); }

int math_diverg(Math_frame& frame) { return converge(frame, -1.0F); }

int math_def1(Math_frame& frame) { return of_winds(frame, GRD_deformation1); }

int math_def2(Math_frame& frame) { return of_winds(frame, GRD_deformation2); }

int math_vconv(Math_frame& frame) { return frame.argument(3) == nullptr ? GRD_refuse() : converge(frame, 1.0F); }

int math_rvort(Math_frame& frame) { return of_winds(frame, GRD_vorticity); }

int math_avort(Math_frame& frame) {
    if (of_winds(frame, GRD_vorticity) == 0) return 0;
    return done(GRD_coriolis(frame.grids[0], "add"));
}

int math_adv(Math_frame& frame) {
    if (!begin(frame, 3)) return 0;
    const GRD_report* z = frame.argument(3);
    if (GRD_advection(frame.argument(1), frame.argument(2), z, frame.grids[0]) != 0) return GRD_refuse();
    GRD_label(frame, z);
    return 1;
}

}  // namespace zav
