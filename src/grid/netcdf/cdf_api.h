#pragma once

#include <netcdf.h>

namespace zav {

/// The functions of the netCDF library in use. Each gives NC_NOERR or an error; none prints anything.
struct Cdf_api {
    decltype(&::nc_open) open = nullptr;
    decltype(&::nc_create) create = nullptr;
    decltype(&::nc_redef) redef = nullptr;
    decltype(&::nc_enddef) enddef = nullptr;
    decltype(&::nc_sync) sync = nullptr;
    decltype(&::nc_close) close = nullptr;
    decltype(&::nc_strerror) strerror = nullptr;
    // What a file holds
    decltype(&::nc_inq) inq = nullptr;
    decltype(&::nc_inq_format) inq_format = nullptr;
    decltype(&::nc_inq_dimid) inq_dimid = nullptr;
    decltype(&::nc_inq_dim) inq_dim = nullptr;
    decltype(&::nc_inq_varid) inq_varid = nullptr;
    decltype(&::nc_inq_var) inq_var = nullptr;
    decltype(&::nc_inq_var_chunking) inq_var_chunking = nullptr;
    decltype(&::nc_inq_att) inq_att = nullptr;
    // Reading; numbers are converted
    decltype(&::nc_get_att_text) get_att_text = nullptr;
    decltype(&::nc_get_att_string) get_att_string = nullptr;
    decltype(&::nc_get_att_double) get_att_double = nullptr;
    decltype(&::nc_free_string) free_string = nullptr;
    decltype(&::nc_get_vara_float) get_vara_float = nullptr;
    decltype(&::nc_get_vara_double) get_vara_double = nullptr;
    decltype(&::nc_get_vara_text) get_vara_text = nullptr;
    decltype(&::nc_get_vara_string) get_vara_string = nullptr;
    // Writing
    decltype(&::nc_def_dim) def_dim = nullptr;
    decltype(&::nc_def_var) def_var = nullptr;
    decltype(&::nc_put_att_text) put_att_text = nullptr;
    decltype(&::nc_put_att_short) put_att_short = nullptr;
    decltype(&::nc_put_att_float) put_att_float = nullptr;
    decltype(&::nc_put_vara_float) put_vara_float = nullptr;
    decltype(&::nc_put_vara_short) put_vara_short = nullptr;
    decltype(&::nc_put_vara_text) put_vara_text = nullptr;
};

/// The netCDF library, loaded at the first call. Null if it can't be loaded, which is told once.
const Cdf_api* cdf_api();

}  // namespace zav
