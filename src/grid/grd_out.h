#pragma once

#include <string>

#include "frame/mess.h"
#include "grid/zavgrd.h"

namespace zav {

/// File type to write by the resource "out_file", `type` if that names none, 0 for no output. The file kind goes to
/// FILE_set_name, a result that isn't 0 to flag FLAG_GRID_FORMAT.
int GRD_out_file(int type);
/// Writes one grid to a file of its own, asking before an existing one is overwritten. 1, or 0 if nothing was written.
int GRD_save_file(const std::string& filename, GRD_report* grid, GRD_info* info, int type);
/// The same dialogue, leaving the file open. The handle, or 0 for `type` 0 and for failures.
int GRD_open_out_file(const std::string& filename, int type);
/// Writes a grid to a file of GRD_open_out_file and closes it. Result 0.
int GRD_save_grid(int grd_fd, GRD_report* grid, GRD_info* info);
/// Shows a record's header and domain. -1 if the level isn't shown, else 0.
int GRD_print(M_type level, GRD_report* grid);
/// Shows one line about a record: kinds -2, -1, 0 date and label; 1 codes; 2 domain; 3 label. Result 0.
int GRD_print_info(M_type level, GRD_report* grid, int type);

}  // namespace zav
