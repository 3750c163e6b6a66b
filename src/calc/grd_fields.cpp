// Fields by operators.

#include "calc/grd_families.h"

namespace zav {

int math_place(Math_frame&) { return GRD_refuse(); }

int math_dx(Math_frame&) { return GRD_refuse(); }

int math_dy(Math_frame&) { return GRD_refuse(); }

int math_grad(Math_frame&) { return GRD_refuse(); }

int math_ugeos(Math_frame&) { return GRD_refuse(); }

int math_vgeos(Math_frame&) { return GRD_refuse(); }

int math_uq(Math_frame&) { return GRD_refuse(); }

int math_vq(Math_frame&) { return GRD_refuse(); }

int math_lapl(Math_frame&) { return GRD_refuse(); }

int math_conv(Math_frame&) { return GRD_refuse(); }

int math_diverg(Math_frame&) { return GRD_refuse(); }

int math_def1(Math_frame&) { return GRD_refuse(); }

int math_def2(Math_frame&) { return GRD_refuse(); }

int math_vconv(Math_frame&) { return GRD_refuse(); }

int math_rvort(Math_frame&) { return GRD_refuse(); }

int math_avort(Math_frame&) { return GRD_refuse(); }

int math_adv(Math_frame&) { return GRD_refuse(); }

}  // namespace zav
