// netCDF grid files: opening, and the way to the layout that a file is in.

#include "grid/netcdf/grd_cdf.h"

#include <array>
#include <cstddef>

#include "files/files.h"
#include "grid/netcdf/cdf_cf.h"
#include "grid/netcdf/cdf_file.h"
#include "grid/netcdf/cdf_model.h"
#include "grid/netcdf/cdf_own.h"

namespace zav {
namespace {

/// A way in which grids stand in netCDF files.
struct Layout {
    bool (*recognise)(int nc);
    int (*getinfo)(GRD_file* gfile, GRD_info* info);
    int (*read)(GRD_file* gfile, GRD_report* grd, int rep_type, int* grdnum);
    void (*close)(GRD_file* gfile);
};

void nothing_to_close(GRD_file*) {}

/// The first that recognises a file is its layout.
constexpr std::array<Layout, 3> LAYOUTS = {{
    {own_recognise, own_getinfo, own_read, nothing_to_close},
    {cf_recognise, cf_getinfo, cf_read, cf_close},
    {model_recognise, model_getinfo, model_read, model_close},
}};

const Layout& layout_of(const GRD_file* gfile) { return LAYOUTS[static_cast<std::size_t>(gfile->layout)]; }

void find_layout(GRD_file* gfile) {
    while (!layout_of(gfile).recognise(gfile->fd)) gfile->layout++;
}

}  // namespace

int CDF_open(const std::string& filename, int f_access, GRD_file* gfile) {
    const bool add = f_access == 2 && FILE_exist(filename) != 0;
    gfile->fd = f_access == 0 ? cdf_open_read(filename) : add ? cdf_open_append(filename) : cdf_create(filename);
    if (gfile->fd < 0) return -1;
    if (f_access == 0) find_layout(gfile);
    if (!add) return 0;
    GRD_info info;
    if (own_recognise(gfile->fd) && own_getinfo(gfile, &info) == 0) return 0;
    cdf_close(gfile->fd);
    return -1;
}

int CDF_getinfo(GRD_file* gfile, GRD_info* info) { return layout_of(gfile).getinfo(gfile, info); }

int CDF_putinfo(GRD_file* gfile, const GRD_info* info) { return own_putinfo(gfile, info); }

int CDF_read(GRD_file* gfile, GRD_report* grd, int rep_type, int* grdnum) {
    return layout_of(gfile).read(gfile, grd, rep_type, grdnum);
}

bool CDF_keeps(const GRD_report* grd) { return own_keeps(grd); }

int CDF_write(GRD_file* gfile, const GRD_report* grd, const int* grd_num) { return own_write(gfile, grd, grd_num); }

int CDF_close(GRD_file* gfile) {
    layout_of(gfile).close(gfile);
    return cdf_close(gfile->fd) ? 0 : -1;
}

}  // namespace zav
