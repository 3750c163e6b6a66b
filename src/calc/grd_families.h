#pragma once

// The functions that the rows of the catalogue name, by family. Each makes its frame ready with GRD_begin and computes.

#include "calc/grd_functions.h"

namespace zav {

// Arithmetic, point by point (grd_arith.cpp)

int math_plot(Math_frame& frame);
int math_copy(Math_frame& frame);
int math_max(Math_frame& frame);
int math_min(Math_frame& frame);
int math_add(Math_frame& frame);
int math_sum(Math_frame& frame);
int math_avg(Math_frame& frame);
int math_interp(Math_frame& frame);
int math_sub(Math_frame& frame);
int math_mul(Math_frame& frame);
int math_mod(Math_frame& frame);
int math_sqrt(Math_frame& frame);
int math_exp(Math_frame& frame);
int math_log(Math_frame& frame);
int math_log10(Math_frame& frame);
int math_abs(Math_frame& frame);
int math_pow(Math_frame& frame);
int math_div(Math_frame& frame);
int math_sin(Math_frame& frame);
int math_cos(Math_frame& frame);
int math_tan(Math_frame& frame);
int math_asin(Math_frame& frame);
int math_acos(Math_frame& frame);
int math_atan(Math_frame& frame);
int math_atan2(Math_frame& frame);
int math_vdiff(Math_frame& frame);
int math_dot(Math_frame& frame);
int math_cross(Math_frame& frame);
int math_smooth(Math_frame& frame);

// Moist air (grd_moist.cpp)

int math_dewp(Math_frame& frame);
int math_rhum(Math_frame& frame);
int math_wetblb(Math_frame& frame);
int math_show(Math_frame& frame);
int math_wchill(Math_frame& frame);
int math_wchill2(Math_frame& frame);
int math_heat(Math_frame& frame);
int math_theta(Math_frame& frame);
int math_thetae(Math_frame& frame);
int math_vtemp(Math_frame& frame);
int math_thetav(Math_frame& frame);
int math_vapor(Math_frame& frame);
int math_pr_alt(Math_frame& frame);
int math_shum(Math_frame& frame);
int math_mixrat(Math_frame& frame);

// Winds (grd_winds.cpp)

int math_wspd(Math_frame& frame);
int math_wdir(Math_frame& frame);
int math_ewdir(Math_frame& frame);
int math_uwnd(Math_frame& frame);
int math_vwnd(Math_frame& frame);
int math_uwndg(Math_frame& frame);
int math_vwndg(Math_frame& frame);

// Fields by operators (grd_fields.cpp)

int math_place(Math_frame& frame);
int math_dx(Math_frame& frame);
int math_dy(Math_frame& frame);
int math_grad(Math_frame& frame);
int math_ugeos(Math_frame& frame);
int math_vgeos(Math_frame& frame);
int math_uq(Math_frame& frame);
int math_vq(Math_frame& frame);
int math_lapl(Math_frame& frame);
int math_conv(Math_frame& frame);
int math_diverg(Math_frame& frame);
int math_def1(Math_frame& frame);
int math_def2(Math_frame& frame);
int math_vconv(Math_frame& frame);
int math_rvort(Math_frame& frame);
int math_avort(Math_frame& frame);
int math_adv(Math_frame& frame);

}  // namespace zav
