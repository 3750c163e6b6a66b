#pragma once

#include <string>

#include "grid/zavgrd.h"

namespace zav {

// netCDF grid files. Each is called by the function of grid/grd_read.h that its name tells.

/// Opens a netCDF file. 0, or -1 if it can't be opened.
int CDF_open(const std::string& filename, int f_access, GRD_file* gfile);
/// 0 or -1.
int CDF_getinfo(GRD_file* gfile, GRD_info* info);
/// 0 or -1.
int CDF_putinfo(GRD_file* gfile, const GRD_info* info);
/// 0, or -1 at the end of the file.
int CDF_read(GRD_file* gfile, GRD_report* grd, int rep_type, int* grdnum);
/// False, with the reason told, for a record that can't be kept in a netCDF file.
bool CDF_keeps(const GRD_report* grd);
/// 0 or -1.
int CDF_write(GRD_file* gfile, const GRD_report* grd, const int* grd_num);
/// 0, or -1 if what was written isn't all in the file.
int CDF_close(GRD_file* gfile);

}  // namespace zav
