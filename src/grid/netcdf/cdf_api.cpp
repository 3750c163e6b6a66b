// The netCDF library, loaded when the first netCDF file is met: with it come dozens of other libraries, which would
// cost every start of the program some milliseconds and 100 MB of address space.

#include "grid/netcdf/cdf_api.h"

#include <dlfcn.h>

#include <memory>

#include "frame/mess.h"

namespace zav {
namespace {

/// Takes the functions of a loaded library. False if one is missing.
class Loader {
  public:
    explicit Loader(void* library) : library_(library) {}

    template <class Function>
    void take(Function& function, const char* name) {
        function = reinterpret_cast<Function>(dlsym(library_, name));
        if (function == nullptr) complete_ = false;
    }
    bool complete() const { return complete_; }

  private:
    void* library_;
    bool complete_ = true;
};

bool take_functions(void* library, Cdf_api* api) {
    Loader loader(library);
    loader.take(api->open, "nc_open");
    loader.take(api->create, "nc_create");
    loader.take(api->redef, "nc_redef");
    loader.take(api->enddef, "nc_enddef");
    loader.take(api->sync, "nc_sync");
    loader.take(api->close, "nc_close");
    loader.take(api->strerror, "nc_strerror");
    loader.take(api->inq, "nc_inq");
    loader.take(api->inq_format, "nc_inq_format");
    loader.take(api->inq_dimid, "nc_inq_dimid");
    loader.take(api->inq_dim, "nc_inq_dim");
    loader.take(api->inq_varid, "nc_inq_varid");
    loader.take(api->inq_var, "nc_inq_var");
    loader.take(api->inq_var_chunking, "nc_inq_var_chunking");
    loader.take(api->inq_att, "nc_inq_att");
    loader.take(api->get_att_text, "nc_get_att_text");
    loader.take(api->get_att_string, "nc_get_att_string");
    loader.take(api->get_att_double, "nc_get_att_double");
    loader.take(api->free_string, "nc_free_string");
    loader.take(api->get_vara_float, "nc_get_vara_float");
    loader.take(api->get_vara_double, "nc_get_vara_double");
    loader.take(api->get_vara_text, "nc_get_vara_text");
    loader.take(api->get_vara_string, "nc_get_vara_string");
    loader.take(api->def_dim, "nc_def_dim");
    loader.take(api->def_var, "nc_def_var");
    loader.take(api->put_att_text, "nc_put_att_text");
    loader.take(api->put_att_short, "nc_put_att_short");
    loader.take(api->put_att_float, "nc_put_att_float");
    loader.take(api->put_vara_float, "nc_put_vara_float");
    loader.take(api->put_vara_short, "nc_put_vara_short");
    loader.take(api->put_vara_text, "nc_put_vara_text");
    return loader.complete();
}

/// The library stays loaded to the end of the process.
std::unique_ptr<const Cdf_api> load() {
    void* library = dlopen(ZAV_NETCDF_NAME, RTLD_NOW | RTLD_LOCAL);
    auto api = std::make_unique<Cdf_api>();
    if (library != nullptr && take_functions(library, api.get())) return api;
    const char* reason = dlerror();
    MESS_print(MESS_WARN, "netCDF files can't be used, the library can't be loaded: %s\n",
               reason == nullptr ? ZAV_NETCDF_NAME : reason);
    return nullptr;
}

}  // namespace

const Cdf_api* cdf_api() {
    static const std::unique_ptr<const Cdf_api> api = load();
    return api.get();
}

}  // namespace zav
