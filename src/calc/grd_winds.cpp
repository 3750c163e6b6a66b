// Winds.

#include "calc/grd_families.h"

namespace zav {

int math_wspd(Math_frame&) { return GRD_refuse(); }

int math_wdir(Math_frame&) { return GRD_refuse(); }

int math_ewdir(Math_frame&) { return GRD_refuse(); }

int math_uwnd(Math_frame&) { return GRD_refuse(); }

int math_vwnd(Math_frame&) { return GRD_refuse(); }

int math_uwndg(Math_frame&) { return GRD_refuse(); }

int math_vwndg(Math_frame&) { return GRD_refuse(); }

}  // namespace zav
