// Not built yet: files that follow the CF conventions. None is recognised.

#include "grid/netcdf/cdf_cf.h"

namespace zav {

bool cf_recognise(int) { return false; }
int cf_getinfo(GRD_file*, GRD_info*) { return -1; }
int cf_read(GRD_file*, GRD_report*, int, int*) { return -1; }
void cf_close(GRD_file*) {}

}  // namespace zav
