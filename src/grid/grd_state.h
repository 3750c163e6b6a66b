#pragma once

// Private to grid/: the open files, and the readers of the formats that GRD_read chooses from.

#include <array>
#include <memory>
#include <string>

#include "grid/zavgrd.h"

namespace zav {

/// State of the grid file frame. The positions describe the file last used.
struct Grid_files {
    std::array<std::unique_ptr<GRD_file>, GRD_FILE_MAX> gfile;
    long cur_pos = 0;   ///< start of the record last read
    long new_pos = -1;  ///< start of the next one, -1 before the first read
    int use_hdrfile = 1;
    std::string format;   ///< format of text values, empty for the standard one
    int wind_dec = 0;     ///< GRID messages: components of a wind read so far, 0 to 2
    int wind_before = 0;  ///< the same at the start of the record last read
};
Grid_files& grid_files();

/// Back to the first record of a file that isn't netCDF.
void grid_rewind(GRD_file* gfile);

// Native formats

int native_getinfo(GRD_file* gfile, GRD_info* info);
int native_read(GRD_file* gfile, GRD_report* grd, int rep_type, int* grdnum);
int native_write(GRD_file* gfile, GRD_report* grd);
/// Reads the domain line. `version` is the record's format digit.
void native_read_domain(std::FILE* file, int version, GRD_report* grd);
/// The domain that formats without an earth's shape and without a polar map's true latitude keep in place of a grid's
/// own: points on the sphere, with the steps of a polar map as they are at 60 degrees.
Domain native_domain(const Domain& grid);
/// The domain line as it is written, with its line end.
std::string native_domain_line(const Domain& domain);

// Text GRID messages

int message_getinfo(GRD_file* gfile, GRD_info* info);
int message_read(GRD_file* gfile, GRD_report* grd, int rep_type, int* grdnum);

}  // namespace zav
