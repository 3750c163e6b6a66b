#pragma once

// Private to grid/netcdf: the program's own layout, a series of grids as records along the dimension "grid".

#include <array>
#include <cstddef>

#include "grid/zavgrd.h"

namespace zav {

/// Characters of a text variable.
constexpr std::size_t OWN_TEXT_SIZE = 50;

/// What a variable holds for each record.
enum class Own_kind {
    field,   ///< the values: floats along x and y
    coord,   ///< coordinates of the points, in files of grid type 1: floats along x and y
    proj,    ///< the projection, a short, in files of grid type 0
    place,   ///< a number of the domain, a float, in files of grid type 0
    text,    ///< characters
    origin,  ///< a short that tells where the field comes from; 0 where it doesn't fit
    key,     ///< a short by which the field is found
    size     ///< a short: points of the domain
};

/// One variable of the layout.
struct Own_var {
    const char* name;
    Own_kind kind;
    const char* title;
    const char* long_name;
    const char* units = nullptr;
    float Domain::*real = nullptr;
    int Domain::*points = nullptr;
    int GRD_report::*code = nullptr;
    std::string GRD_report::*label = nullptr;
};

/// The variables in the order of the file.
inline constexpr std::array<Own_var, 22> OWN_VARS = {{
    {.name = "values", .kind = Own_kind::field, .title = "VALUES", .long_name = "Grid values"},
    {.name = "proj", .kind = Own_kind::proj, .title = "PROJ", .long_name = "Projection", .points = &Domain::proj},
    {"lat1", Own_kind::place, "CLAT", "Grid central latitude", "DEG", &Domain::clat},
    {"lat2", Own_kind::place, "LAT2", "Grid secondary latitude", "DEG", &Domain::plat},
    {"lon1", Own_kind::place, "CLON", "Grid central longitude", "DEG", &Domain::clon},
    {"lon2", Own_kind::place, "LON2", "Grid secondary longitude", "DEG", &Domain::plon},
    {"dx", Own_kind::place, "DX", "Grid spacing in X direction", "100 KM", &Domain::dx},
    {"dy", Own_kind::place, "DY", "Grid spacing in X direction", "100 KM", &Domain::dy},
    {"x_coord", Own_kind::coord, "X_COORD", "X coordinate gridpoint locations", "DEG"},
    {"y_coord", Own_kind::coord, "Y_COORD", "Y coordinate gridpoint locations", "DEG"},
    {.name = "datim",
     .kind = Own_kind::text,
     .title = "DATETIME",
     .long_name = "Grid date/time information",
     .label = &GRD_report::datim},
    {.name = "info",
     .kind = Own_kind::text,
     .title = "INFO",
     .long_name = "Grid variable information",
     .label = &GRD_report::info},
    {.name = "source",
     .kind = Own_kind::origin,
     .title = "SOURCE",
     .long_name = "Grid creation source",
     .code = &GRD_report::source},
    {.name = "version",
     .kind = Own_kind::origin,
     .title = "VERSION",
     .long_name = "Grid encoding version",
     .code = &GRD_report::version},
    {.name = "model",
     .kind = Own_kind::origin,
     .title = "MODEL",
     .long_name = "Model name",
     .code = &GRD_report::model},
    {.name = "type",
     .kind = Own_kind::origin,
     .title = "TYPE",
     .long_name = "Model grid type",
     .code = &GRD_report::type},
    {.name = "ltype",
     .kind = Own_kind::key,
     .title = "LTYPE",
     .long_name = "Vertical level type",
     .code = &GRD_report::ltype},
    {.name = "level",
     .kind = Own_kind::key,
     .title = "LEVEL",
     .long_name = "Vertical level value",
     .code = &GRD_report::level},
    {.name = "time",
     .kind = Own_kind::key,
     .title = "TIME",
     .long_name = "Forecast time",
     .units = "HOUR",
     .code = &GRD_report::time},
    {.name = "var", .kind = Own_kind::key, .title = "VAR", .long_name = "Grid variable type", .code = &GRD_report::var},
    {.name = "nx",
     .kind = Own_kind::size,
     .title = "NX",
     .long_name = "Gridpoints in X direction",
     .points = &Domain::nx},
    {.name = "ny",
     .kind = Own_kind::size,
     .title = "NY",
     .long_name = "Gridpoints in X direction",
     .points = &Domain::ny},
}};

/// A further variable, only in files with grids on a projection that has parameters of its own: floats along "grid" and
/// "param_len".
constexpr const char* OWN_PARAM = "param";
constexpr const char* OWN_PARAM_DIM = "param_len";

bool own_recognise(int nc);
int own_getinfo(GRD_file* gfile, GRD_info* info);
int own_read(GRD_file* gfile, GRD_report* grd, int rep_type, int* grdnum);

/// False, with the reason told, for a record that the layout can't keep: its key would come back as another one.
bool own_keeps(const GRD_report* grd);
/// Defines dimensions, variables and attributes. A file that has them already, opened for adding, keeps them.
int own_putinfo(GRD_file* gfile, const GRD_info* info);
/// Writes a record as number `*grd_num` behind those that the file had when it was opened.
int own_write(GRD_file* gfile, const GRD_report* grd, const int* grd_num);

}  // namespace zav
