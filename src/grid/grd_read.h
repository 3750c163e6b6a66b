#pragma once

#include <string>

#include "grid/zavgrd.h"

namespace zav {

// Grid files of all formats. The order of calls is GRD_open, GRD_hdr_open if there is an index file, GRD_getinfo (or
// GRD_putinfo), GRD_read (or GRD_write) as often as needed, GRD_close. One file is read at a time.

/// File type by the first 200 bytes, or -1.
int GRD_chktype(const std::string& filename);
/// Opens a file: `f_access` 0 reads, 1 writes anew, 2 appends. `*f_type` 0 is found out, for reading. The handle, or
/// -1.
int GRD_open(const std::string& filename, int f_access, int* f_type);
/// Attaches an index file to a GRIB file. 0 or -1.
int GRD_hdr_open(int grd_fd, const std::string& filename);
/// 0 ignores index files.
int GRD_use_hdr_file(int val);
/// Format of the values of native text files, up to 14 characters; empty for the standard one. Result 0.
int GRD_set_format(const std::string& str);
/// Reads the date of a file. 0 or -1.
int GRD_getinfo(int grd_fd, GRD_info* info);
/// Starts a file for writing. 0 or -1.
int GRD_putinfo(int grd_fd, const GRD_info* info);
/// Reads record `*grdnum`, which takes the number of the record read. 0; -1 at the end of the file or for a bad handle;
/// 1 for a record without a field.
int GRD_read(int grd_fd, GRD_report* grd, int rep_type, int* grdnum);
/// Writes a record at the end of the file. 0 or -1. Blanks in `units` become "_" in the record too.
int GRD_write(int grd_fd, GRD_report* grd, int rep_type, int* grd_num);
/// Back to the first record. 0 or -1.
int GRD_rewind(int grd_fd);
/// Closes a file. 0; -1 for a bad handle, and for a netCDF file that doesn't hold all that was written.
int GRD_close(int grd_fd);

/// GRIB only: moves to a byte offset and calls the record there number `grdnum`. Result 1.
int GRD_setpos(int grd_fd, long offset, int grdnum);
/// Position of the record last read.
long GRD_get_pos(int grd_fd);
/// The next 160 bytes from the position of the record last read. 0, or -1 for a bad handle.
int GRD_get_header(int grd_fd, std::string& header);
/// The file of a handle, null if there is none.
GRD_file* GRD_get_gfile(int ind);
/// Decodes the description of an index line into the record's codes. 1 if it held any, else 0.
int GRD_decode_index(const std::string& desc, GRD_report* grd);

}  // namespace zav
