#pragma once

#include <array>
#include <cstddef>
#include <memory>
#include <string>
#include <vector>

#include "files/date.h"
#include "frame/tools.h"
#include "frame/zav.h"
#include "map/region.h"

namespace zav {

/// Grids in use at once. Entry i of the variable list goes with grid i of the table.
constexpr int GRD_MAX = 60;
/// Grid files open at once; a handle is an index below it.
constexpr int GRD_FILE_MAX = 15;
/// Variables taken up from one netCDF file.
constexpr int GRD_CDF_VARS = 15;

// Sizes of the text fields, their end included.
constexpr std::size_t GRD_DATIM_SIZE = 50;
constexpr std::size_t GRD_INFO_SIZE = 70;
constexpr std::size_t GRD_UNITS_SIZE = 15;
constexpr std::size_t GRD_INFO_DATIM_SIZE = 40;

/// File types.
enum : int {
    GRD_TYPE_ANY = 0,      ///< not known: found out from the file, for reading
    GRD_TYPE_OLD = 1,      ///< native text without a file line
    GRD_TYPE_TEXT = 2,     ///< native text with the file line "ZAVGRID"
    GRD_TYPE_BINARY = 3,   ///< native binary, for writing; reading tells it from text by each record's format digit
    GRD_TYPE_DOMAIN = 4,   ///< file line "ZAVGRID4", read only
    GRD_TYPE_CDF = 11,     ///< netCDF
    GRD_TYPE_GRIB = 21,    ///< GRIB editions 0, 1 and 2
    GRD_TYPE_MESSAGE = 22  ///< text GRID messages
};

/// How much of a record GRD_read reads.
enum : int {
    GRD_READ_ALL = 0,     ///< header and values
    GRD_READ_HEADER = 1,  ///< the header, as fast as possible
    GRD_READ_LABELS = 2,  ///< the header with its labels
};

/// A gridded field: what it is, where its points lie, and its values.
struct GRD_report {
    int type = 0;       ///< grid number by which the producer knows this layout
    int source = 0;     ///< originating centre (WMO table C-1); 0: none is known, or the record holds no field
    int version = 0;    ///< encoding version: GRIB edition, or format digit of a native file
    std::string datim;  ///< date/time label, up to 49 characters
    std::string info;   ///< what the field is: level, variable, units; up to 69 characters
    Date date;          ///< reference time
    int model = 0;      ///< generating model within its source
    int ltype = MISS;   ///< level type
    int level = MISS;   ///< level in the units of its type; a layer holds top * 1000 + bottom
    int time = MISS;    ///< forecast time code
    int var = MISS;     ///< variable number
    std::string units;  ///< units of the values, up to 14 characters; empty when not known
    Domain domain;      ///< where the points lie
    /// domain.nx * domain.ny values, row after row from the north, x growing within a row. FMISS where missing.
    std::shared_ptr<float[]> grid;
};

/// Description of a grid file as a whole.
struct GRD_info {
    std::string datim;  ///< date label, up to 39 characters
    int max_x = 0;      ///< points in x, for netCDF output
    int max_y = 0;      ///< points in y, for netCDF output
    int grid_type = 0;  ///< 0 regular; 1: the file has arrays of point coordinates
    Date date;
    bool own_dates = false;  ///< its records have dates of their own, which labels tell and the user may choose by
};

/// An open grid file.
struct GRD_file {
    std::vector<char> buffer;  ///< of the data's stream, which it outlives
    file_ptr file;             ///< the data; null for netCDF
    file_ptr hfile;            ///< GRIB index file, null if none
    std::string datim;         ///< date line of the file
    Date date;                 ///< date of the file
    int fd = -1;               ///< netCDF handle; 1 for stream files
    int grid = 0;        ///< GRIB: edition of the first message, 10 for edition 0 of centre 98; netCDF: "grid_type"
    int type = 0;        ///< file type
    int itype = 0;       ///< subtype: 3 for binary files of type 4; GRIB header style; netCDF data set code
    int layout = 0;      ///< netCDF: which of the layouts of grid/netcdf/grd_cdf.cpp it is in
    std::string var_nm;  ///< netCDF: the variable forced by the environment
    std::array<int, GRD_CDF_VARS> var{};  ///< netCDF: variable codes
    int var_num = 0;                      ///< netCDF: number of usable variables
    int cur_var = -1;                     ///< netCDF: the one being read, -1 before the first
    int num = 0;                          ///< number of the record at which the file stands, from 0
    long max_num = 0;                     ///< netCDF: records so far
};

// Models that are spread over several files, each holding a piece of the domain.

constexpr int GRD_SPEC_MAX = 12;           ///< most pieces
constexpr std::size_t GRD_SPEC_NAME = 20;  ///< size of a file kind with its end

/// One piece.
struct GRD_spec {
    int x = 0;         ///< column in the layout
    int y = 0;         ///< row in the layout
    int type = MISS;   ///< grid number to search for in this piece, MISS for any
    std::string name;  ///< file kind, for FILE_set_name
};

/// The layout of a model.
struct GRD_specs {
    int nspec = 0;  ///< pieces, 0 when the model lies in one file
    int nx = 1;     ///< pieces side by side
    int ny = 1;     ///< pieces above each other
    std::array<GRD_spec, GRD_SPEC_MAX> spec;
    std::string named;  ///< file that the user named, whose directory holds the pieces; empty without one
};

}  // namespace zav
