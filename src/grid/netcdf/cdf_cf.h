#pragma once

// Files that follow the CF conventions: coordinate variables that say what they are.

#include "grid/zavgrd.h"

namespace zav {

/// True if a file that isn't in the program's own layout tells its coordinates by the CF or COARDS conventions.
bool cf_recognise(int nc);
/// 0 or -1.
int cf_getinfo(GRD_file* gfile, GRD_info* info);
/// 0, or -1 at the end of the file.
int cf_read(GRD_file* gfile, GRD_report* grd, int rep_type, int* grdnum);
void cf_close(GRD_file* gfile);

}  // namespace zav
