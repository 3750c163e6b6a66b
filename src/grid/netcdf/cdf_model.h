#pragma once

// Private to grid/netcdf: the layouts that have no header of their own. Results and arguments are those of the
// functions of grid/grd_read.h.

#include "grid/zavgrd.h"

namespace zav {

// Variables named after their quantity, each with a slice for every forecast time and level

bool model_recognise(int nc);
int model_getinfo(GRD_file* gfile, GRD_info* info);
int model_read(GRD_file* gfile, GRD_report* grd, int rep_type, int* grdnum);
void model_close(GRD_file* gfile);

}  // namespace zav
