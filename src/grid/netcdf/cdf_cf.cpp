// Files that follow the CF conventions: recognition, and one slice of a variable as a record.

#include "grid/netcdf/cdf_cf.h"

#include <cmath>
#include <map>

#include "frame/mess.h"
#include "frame/string.h"
#include "grid/grd_tool.h"
#include "grid/netcdf/cdf_cf_file.h"
#include "grid/netcdf/cdf_cf_values.h"
#include "grid/netcdf/cdf_file.h"
#include "var/var_tool.h"

namespace zav {
namespace {

/// Format number of netCDF records.
constexpr int VERSION = 1;
/// Numbers of ensemble members among those of variables, which have three digits then.
constexpr int CONTROL = 19300000;
constexpr int MEMBER = 19340000;
constexpr int MEMBER_STEP = 1000;
constexpr int MEMBERS_END = 660;

struct State {
    std::map<int, Cf_file> files;  ///< by the library's handle
};
State state;

/// The file of a handle, looked through at the first need.
Cf_file& file_of(const GRD_file* gfile) {
    const auto known = state.files.find(gfile->fd);
    if (known != state.files.end()) return known->second;
    Cf_file& file = state.files[gfile->fd];
    file.nc = gfile->fd;
    file.source = cf_source(file.nc);
    cf_find_fields(&file);
    cf_sort_records(&file);
    return file;
}

int to_int(double value) {
    return value > -1e9 && value < 1e9 ? static_cast<int>(std::lround(value)) : static_cast<int>(MISS);
}

/// A layer's code as the readers of GRIB make it from two bounds, in metres or parts of 10000.
bool take_layer(int ltype, double one, double other, GRD_report* grd) {
    struct Layer {
        int single;
        int layer;
        double unit;
    };
    static constexpr Layer LAYERS[] = {{103, 104, 0.01}, {105, 106, 0.01}, {107, 108, 0.01}, {111, 112, 100.0}};
    for (const Layer& layer : LAYERS) {
        if (layer.single != ltype || one == other) continue;
        grd->ltype = layer.layer;
        grd->level = 1000 * to_int(one * layer.unit) + to_int(other * layer.unit);
        return true;
    }
    return false;
}

void take_level(const Cf_file& file, const Cf_field& field, const Cdf_index& place, GRD_report* grd) {
    grd->ltype = field.quantity.ltype;
    grd->level = field.quantity.level;
    if (!field.level.found()) return;
    const Cf_coord& coord = file.coords[static_cast<std::size_t>(field.level.coord)];
    const Cf_vertical& vertical = coord.vertical;
    // A level of the name's own stands where the axis says nothing but that it is one, or that it is the surface.
    const bool own = field.quantity.ltype != 1 && (vertical.ltype == 1 || !field.quantity.alone);
    if (own && vertical.factor == 0.0 && vertical.ltype <= 1) return;
    const std::size_t index = cf_index(file, field.level, place);
    if (!coord.bounds.empty()) {
        const double metres = vertical.ltype == 111 ? vertical.factor / 100.0 : vertical.factor;
        if (take_layer(vertical.ltype, coord.bounds[2 * index] * metres, coord.bounds[2 * index + 1] * metres, grd))
            return;
    }
    grd->ltype = vertical.ltype;
    grd->level = to_int(coord.values[index] * vertical.factor);
}

/// Number of an ensemble member, MISS for a field that isn't one.
int member_of(const Cf_file& file, const Cf_field& field, const Cdf_index& place) {
    if (!field.member.found()) return MISS;
    const Cf_coord& coord = file.coords[static_cast<std::size_t>(field.member.coord)];
    return coord.values.size() < 2 ? static_cast<int>(MISS) : to_int(coord.values[cf_index(file, field.member, place)]);
}

void take_variable(const Cf_file& file, const Cf_field& field, const Cdf_index& place, bool labels, GRD_report* grd) {
    const int member = member_of(file, field, place);
    grd->var = field.quantity.var;
    grd->units = fit_text(field.quantity.units, GRD_UNITS_SIZE);
    if (labels) {
        std::string text = VAR_make_datalevel(grd->time, grd->ltype, grd->level);
        if (!text.empty()) text += ' ';
        if (member != MISS) text += text_format("Ens[%d] ", member);
        grd->info = fit_text(text + VAR_str(grd->var, grd->units), GRD_INFO_SIZE);
    }
    if (member < 0 || member >= MEMBERS_END || grd->var >= MEMBER_STEP) return;
    grd->var += member == 0 ? CONTROL : MEMBER + MEMBER_STEP * member;
}

/// The header of a record.
void take_header(const Cf_file& file, const Cf_field& field, const Cdf_index& place, bool labels, GRD_report* grd) {
    const Cf_time time = cf_time(file, field, place);
    grd->grid.reset();
    grd->source = file.source;
    grd->version = VERSION;
    grd->model = 0;
    grd->type = 0;
    grd->domain = field.domain;
    DATE_init(&grd->date);
    if (time.start != CF_NO_MOMENT) grd->date = cf_date(time.start);
    grd->time = time.code;
    take_level(file, field, place, grd);
    grd->info.clear();
    grd->datim.clear();
    take_variable(file, field, place, labels, grd);
    if (!labels || grd->date.year == MISS) return;
    DATE_make_label_for_time(grd->time, grd->source * 1000 + grd->model, &grd->date, grd->datim);
    grd->datim = fit_text(grd->datim, GRD_DATIM_SIZE);
}

void read_values(const Cf_file& file, const Cf_field& field, const Cdf_index& place, GRD_report* grd) {
    if (!field.refused.empty()) {
        MESS_print(MESS_WARN, "CDF_read: %s is not decoded, as %s\n", field.var.name.c_str(), field.refused.c_str());
        return;
    }
    Cdf_index count(place.size(), 1);
    count[field.x] = field.var.sizes[field.x];
    count[field.y] = field.var.sizes[field.y];
    const bool held = cdf_holds(file.nc, field.var, place, count);
    if (held && GRD_alloc(grd) == 0) return;
    const Cf_slice slice{place, field.x, field.y, field.south_first, field.east_first};
    if (held && cf_read_slice(file.nc, field.var, slice, grd->grid.get())) return;
    MESS_print(MESS_WARN, "CDF_read: The values of %s can't be read\n", field.var.name.c_str());
    grd->grid.reset();
}

}  // namespace

bool cf_recognise(int nc) {
    const std::string conventions = cf_text_att(nc, CDF_GLOBAL, "Conventions");
    if (conventions.find("CF") != std::string::npos || conventions.find("COARDS") != std::string::npos) return true;
    if (cdf_dim(nc, {"frtime", "anltime"}).id >= 0) return false;
    const int count = cdf_var_count(nc);
    for (int id = 0; id < count; id++) {
        const Cdf_var var = cdf_var(nc, id);
        if (!cdf_is_number(var) || var.dims.empty() || var.dims.size() > 2) continue;
        const std::string units = cf_text_att(nc, id, "units");
        if (units.empty() && cf_text_att(nc, id, "standard_name").empty()) continue;
        const Cf_role role = cf_role(nc, var, false);
        if (role == Cf_role::x || role == Cf_role::y) return true;
    }
    return false;
}

int cf_getinfo(GRD_file* gfile, GRD_info* info) {
    const Cf_file& file = file_of(gfile);
    info->grid_type = 0;
    DATE_init(&gfile->date);
    if (!file.columns.empty() && file.columns.front() != CF_NO_MOMENT) gfile->date = cf_date(file.columns.front());
    DATE_make_label(&gfile->date, gfile->datim);
    info->date = gfile->date;
    info->own_dates = true;
    info->datim = fit_text(gfile->datim, GRD_INFO_DATIM_SIZE);
    if (!file.fields.empty()) {
        info->max_x = file.fields.front().domain.nx;
        info->max_y = file.fields.front().domain.ny;
    }
    return 0;
}

int cf_read(GRD_file* gfile, GRD_report* grd, int rep_type, int* grdnum) {
    Cf_file& file = file_of(gfile);
    const int number = *grdnum < 0 ? gfile->num : *grdnum;
    Cdf_index place;
    const Cf_field* field = cf_locate(&file, number, &place);
    if (field == nullptr) return -1;
    take_header(file, *field, place, rep_type != GRD_READ_HEADER, grd);
    if (rep_type == GRD_READ_ALL) read_values(file, *field, place, grd);
    gfile->num = number;
    *grdnum = number;
    return 0;
}

void cf_close(GRD_file* gfile) { state.files.erase(gfile->fd); }

}  // namespace zav
