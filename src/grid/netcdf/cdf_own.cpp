// The program's own layout of netCDF files: reading.

#include "grid/netcdf/cdf_own.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "files/date.h"
#include "files/unittool.h"
#include "frame/mess.h"
#include "frame/string.h"
#include "frame/tools.h"
#include "grid/grd_tool.h"
#include "grid/netcdf/cdf_file.h"
#include "map/maptran.h"

namespace zav {
namespace {

/// Models numbered above this one are on latitude-longitude grids where a file doesn't tell the projection.
constexpr int LAST_POLAR_MODEL = 9;

/// A number as an int, MISS if it is none or doesn't fit.
int code_of(double value) {
    constexpr double most = std::numeric_limits<int>::max();
    return std::fabs(value) <= most ? static_cast<int>(value) : MISS;
}

/// Whole number in a global attribute, MISS without one.
int attribute(int nc, const char* name) {
    double value = FMISS;
    return cdf_number_att(nc, CDF_GLOBAL, name, &value) ? code_of(value) : MISS;
}

/// One number of a record, `absent` if the file doesn't hold it.
double number_at(int nc, const char* name, std::size_t record, double absent) {
    double value = absent;
    const Cdf_var var = cdf_var(nc, name);
    return var.found() && cdf_value(nc, var, {record}, &value) && std::isfinite(value) ? value : absent;
}

std::string text_at(int nc, const char* name, std::size_t record) {
    std::string text;
    const Cdf_var var = cdf_var(nc, name);
    if (var.found()) cdf_text(nc, var, {record}, text);
    return text.substr(0, OWN_TEXT_SIZE);
}

void read_params(int nc, std::size_t record, Domain* domain) {
    const Cdf_var var = cdf_var(nc, OWN_PARAM);
    for (std::size_t i = 0; i < domain->param.size() && var.found(); i++) {
        double value = FMISS;
        if (cdf_value(nc, var, {record, i}, &value) && std::isfinite(value))
            domain->param[i] = static_cast<float>(value);
    }
}

/// True for a grid whose points have a place on the map.
bool is_placed(const Domain& domain) {
    const bool centre = domain.clat != FMISS && domain.clon != FMISS;
    return centre && domain.dx != FMISS && domain.dy != FMISS && domain.dx != 0.0F && domain.dy != 0.0F;
}

/// Where the points of a record lie. The projection is unset if nothing tells.
void read_place(const GRD_file* gfile, std::size_t record, GRD_report* grd) {
    const int nc = gfile->fd;
    DOM_init(&grd->domain);
    const bool regular = gfile->grid != 1;
    for (const Own_var& var : OWN_VARS) {
        const bool number = var.kind == Own_kind::size || (regular && var.kind == Own_kind::proj);
        if (number) grd->domain.*var.points = code_of(number_at(nc, var.name, record, MISS));
        if (regular && var.kind == Own_kind::place)
            grd->domain.*var.real = static_cast<float>(number_at(nc, var.name, record, FMISS));
    }
    if (!cdf_var(nc, "proj").found()) grd->domain.proj = grd->model > LAST_POLAR_MODEL ? PROJ_LATLON : PROJ_POLAR;
    if (regular) read_params(nc, record, &grd->domain);
    if (!is_placed(grd->domain)) grd->domain.proj = MISS;
    if (grd->domain.nx < 1 || grd->domain.ny < 1) grd->domain.nx = grd->domain.ny = MISS;
}

void read_header(const GRD_file* gfile, std::size_t record, GRD_report* grd) {
    for (const Own_var& var : OWN_VARS) {
        if (var.label != nullptr) grd->*var.label = text_at(gfile->fd, var.name, record);
        if (var.code != nullptr) grd->*var.code = code_of(number_at(gfile->fd, var.name, record, MISS));
    }
    read_place(gfile, record, grd);
    // The layout has units in the text alone.
    std::string name;
    std::string units;
    UNIT_parse(grd->info, name, units);
    grd->units = fit_text(units, GRD_UNITS_SIZE);
}

/// The values of a record, which stand with x running fastest whatever the names of the dimensions say.
bool read_values(int nc, std::size_t record, GRD_report* grd) {
    const Cdf_var var = cdf_var(nc, "values");
    if (GRD_points(grd) == 0) return false;
    const Cdf_index start = {record, 0, 0};
    const Cdf_index count = {1, static_cast<std::size_t>(grd->domain.nx), static_cast<std::size_t>(grd->domain.ny)};
    if (!cdf_holds(nc, var, start, count) || GRD_alloc(grd) == 0) return false;
    if (!cdf_floats(nc, var, start, count, grd->grid.get())) return false;
    float* values = grd->grid.get();
    std::replace_if(
        values, values + GRD_points(grd), [](float value) { return !std::isfinite(value); }, FMISS);
    return true;
}

}  // namespace

bool own_recognise(int nc) { return cdf_dim(nc, "grid").id >= 0; }

int own_getinfo(GRD_file* gfile, GRD_info* info) {
    const int nc = gfile->fd;
    const Cdf_var values = cdf_var(nc, "values");
    const long records = std::max(cdf_dim(nc, "grid").size, 0L);
    const long held = values.sizes.size() == 3 ? static_cast<long>(cdf_blocks(nc, values, 2)) : 0;
    gfile->itype = 0;
    gfile->max_num = std::min(records, held);
    if (held < records) cdf_tell_cut(static_cast<std::size_t>(held), static_cast<std::size_t>(records));
    gfile->grid = info->grid_type = std::max(attribute(nc, "grid_type"), 0);
    DATE_init(&info->date);
    const int year = attribute(nc, "year");
    info->date.year = year < 1900 ? year : year - 1900;
    info->date.month = attribute(nc, "month");
    info->date.day = attribute(nc, "day");
    info->date.hour = attribute(nc, "hour");
    gfile->date = info->date;
    std::string label;
    DATE_make_label(&info->date, label);
    info->datim = fit_text(label, GRD_INFO_DATIM_SIZE);
    gfile->datim = info->datim;
    return 0;
}

int own_read(GRD_file* gfile, GRD_report* grd, int rep_type, int* grdnum) {
    if (*grdnum != -1) gfile->num = *grdnum;
    if (gfile->num < 0 || gfile->num >= gfile->max_num) return -1;
    const auto record = static_cast<std::size_t>(gfile->num);
    read_header(gfile, record, grd);
    *grdnum = gfile->num;
    if (rep_type == GRD_READ_HEADER || rep_type == GRD_READ_LABELS) return 0;
    const bool placed = grd->domain.proj != MISS;
    if (placed && read_values(gfile->fd, record, grd)) return 0;
    MESS_print(MESS_WARN,
               placed ? "The values of grid %d can't be read from netCDF file\n"
                      : "The points of grid %d in netCDF file have no place\n",
               gfile->num);
    GRD_free(grd);
    return -1;
}

}  // namespace zav
