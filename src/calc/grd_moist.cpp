// Moist air.

#include "calc/grd_families.h"

namespace zav {

int math_dewp(Math_frame&) { return GRD_refuse(); }

int math_rhum(Math_frame&) { return GRD_refuse(); }

int math_wetblb(Math_frame&) { return GRD_refuse(); }

int math_show(Math_frame&) { return GRD_refuse(); }

int math_wchill(Math_frame&) { return GRD_refuse(); }

int math_wchill2(Math_frame&) { return GRD_refuse(); }

int math_heat(Math_frame&) { return GRD_refuse(); }

int math_theta(Math_frame&) { return GRD_refuse(); }

int math_thetae(Math_frame&) { return GRD_refuse(); }

int math_vtemp(Math_frame&) { return GRD_refuse(); }

int math_thetav(Math_frame&) { return GRD_refuse(); }

int math_vapor(Math_frame&) { return GRD_refuse(); }

int math_pr_alt(Math_frame&) { return GRD_refuse(); }

int math_shum(Math_frame&) { return GRD_refuse(); }

int math_mixrat(Math_frame&) { return GRD_refuse(); }

}  // namespace zav
