// Model data sets in netCDF files: what a file holds, its date and the place of its points.

#include "grid/netcdf/cdf_model.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <map>

#include "files/date.h"
#include "frame/mess.h"
#include "frame/string.h"
#include "grid/grd_scan.h"
#include "grid/netcdf/cdf_model_state.h"
#include "map/maptran.h"

namespace zav {
namespace {

/// Part of a step by which points of an even grid may lie beside their places.
constexpr double UNEVEN = 0.1;

struct State {
    std::map<int, Model_file> files;  ///< by the library's handle
};
State state;

// Variables

/// The file's number for missing values in an attribute, if it has one.
void add_missing(int nc, const char* name, Model_var* entry) {
    double value = 0.0;
    if (cdf_number_att(nc, entry->var.id, name, &value)) entry->missing.push_back(static_cast<float>(value));
}

/// Completes the entry of a variable. False if its slices aren't grids.
bool describe(int nc, const Model_file& file, Model_var* entry) {
    const Cdf_var& var = entry->var;
    const std::size_t rank = var.dims.size();
    if (!cdf_is_number(var) || rank < 2 || file.x.id < 0 || file.y.id < 0) return false;
    if (var.dims[rank - 1] != file.x.id || var.dims[rank - 2] != file.y.id) return false;
    entry->slices = 1;
    for (std::size_t i = 0; i + 2 < rank; i++) {
        entry->has_time |= var.dims[i] == file.time.id;
        entry->has_level |= var.dims[i] == file.level.id;
        if (var.dims[i] == file.time.id || var.dims[i] == file.level.id) entry->slices *= var.sizes[i];
    }
    cdf_text_att(nc, var.id, "long_name", entry->long_name);
    cdf_number_att(nc, var.id, "scale_factor", &entry->scale);
    cdf_number_att(nc, var.id, "add_offset", &entry->offset);
    add_missing(nc, "_FillValue", entry);
    add_missing(nc, "missing_value", entry);
    return true;
}

/// Leaves the variables the slices that the file holds, and tells if some are missing.
void count_slices(int nc, Model_file* file) {
    std::size_t claimed = 0;
    std::size_t held = 0;
    for (Model_var& entry : file->vars) {
        claimed += entry.slices;
        entry.slices = std::min(entry.slices, cdf_blocks(nc, entry.var, 2));
        held += entry.slices;
    }
    if (held < claimed) cdf_tell_cut(held, claimed);
}

/// Takes up the variables that are known, and the one that the user names.
void take_variables(GRD_file* gfile, Model_file* file) {
    const int nc = gfile->fd;
    const char* forced = std::getenv("GRIDVAR");
    gfile->var_nm = forced == nullptr ? "" : fit_text(forced, GRD_DATIM_SIZE);
    for (int id = 0; id < cdf_var_count(nc); id++) {
        Model_var entry;
        entry.var = cdf_var(nc, id);
        const std::string& name = entry.var.name;
        MESS_print(MESS_DEBUG, "VAR: %d %s\n", id, name.c_str());
        std::string units;
        cdf_text_att(nc, id, "units", units);
        if (!name.empty() && name == gfile->var_nm) {
            entry.quantity = {0, 0, units};
        } else if (!model_quantity(name, units, &entry.quantity)) {
            continue;
        }
        if (!describe(nc, *file, &entry)) continue;
        if (file->vars.size() == GRD_CDF_VARS) {
            MESS_print(MESS_WARN, "netCDF grid file has more than %d variables, %s isn't read\n", GRD_CDF_VARS,
                       name.c_str());
            continue;
        }
        gfile->var[file->vars.size()] = entry.quantity.code;
        file->vars.push_back(std::move(entry));
    }
    gfile->var_num = static_cast<int>(file->vars.size());
    count_slices(nc, file);
}

// Date

/// A whole number, MISS if it is none.
int whole(double value) { return std::fabs(value) < 1e6 ? static_cast<int>(value) : MISS; }

bool date_of_variables(int nc, const Model_file& file, std::array<int, 4>* parts) {
    constexpr std::array<const char*, 4> names = {"year", "month", "day", "hour"};
    for (std::size_t i = 0; i < names.size(); i++) {
        double value = 0.0;
        const Cdf_var var = cdf_var(nc, names[i]);
        if (!var.found() || !model_value(nc, file, var, 0, 0, &value)) return false;
        (*parts)[i] = whole(value);
    }
    return true;
}

/// The text "reftime": four numbers, or a label.
bool date_of_text(int nc, std::array<int, 4>* parts) {
    const Cdf_var var = cdf_var(nc, "reftime");
    std::string text;
    if (!var.found() || var.dims.empty() || !cdf_text(nc, var, Cdf_index(var.dims.size() - 1, 0), text)) return false;
    const char* at = text.c_str();
    if (std::all_of(parts->begin(), parts->end(), [&at](int& part) { return scan_text_int(&at, &part); })) return true;
    Date date;
    DATE_decode_label(text, &date);
    *parts = {date.year, date.month, date.day, date.hour};
    return date.year != MISS;
}

int within(int value, int least, int most) { return value < least || value > most ? least : value; }

/// The reference time. Parts that can't be take the start of their range, and the year 1980.
void read_date(int nc, Model_file* file) {
    std::array<int, 4> parts{};
    file->has_date = date_of_variables(nc, *file, &parts) || date_of_text(nc, &parts);
    if (!file->has_date) return;
    int year = parts[0];
    if (year >= 0 && year < 100) year += year < 50 ? 2000 : 1900;
    file->date.year = year < 1900 || year > 2155 ? 1980 : year;
    file->date.month = within(parts[1], 1, 12);
    file->date.day = within(parts[2], 1, 31);
    file->date.hour = within(parts[3], 0, 23);
    file->date.min = 0;
    file->date.sec = 0;
}

// Place

/// First value and step of evenly spaced coordinates, one for each of `size` points. False for any others.
bool read_axis(int nc, const Cdf_var& var, long size, double* first, double* step) {
    std::vector<double> values;
    if (size < 2 || !cdf_values(nc, var, static_cast<std::size_t>(size), values)) return false;
    if (values.size() != static_cast<std::size_t>(size) || !std::isfinite(values[0])) return false;
    *first = values[0];
    *step = values[1] - values[0];
    // Longitudes may start again behind 180 or 360 degrees.
    const auto turned = [](double angle) { return angle - 360.0 * std::round(angle / 360.0); };
    const double even = turned(*step);
    for (std::size_t i = 1; i < values.size(); i++) {
        const double off = turned(values[i] - values[0] - even * static_cast<double>(i));
        if (!(std::fabs(off) <= UNEVEN * std::fabs(even))) return false;
    }
    *step = even;
    return even != 0.0 && std::fabs(*first) <= 720.0;
}

/// The domain of latitudes and longitudes; unset if they aren't even.
void read_place(int nc, Model_file* file) {
    DOM_init(&file->domain);
    const Cdf_var lat = cdf_var(nc, "lat");
    file->has_lat = lat.found();
    double south = 0.0;
    double west = 0.0;
    double dx = 0.0;
    double dy = 0.0;
    const bool even = file->has_lat && read_axis(nc, lat, file->y.size, &south, &dy) &&
                      read_axis(nc, cdf_var(nc, "lon"), file->x.size, &west, &dx);
    if (!even) return;
    Domain& domain = file->domain;
    domain.proj = PROJ_LATLON;
    domain.nx = static_cast<int>(file->x.size);
    domain.ny = static_cast<int>(file->y.size);
    domain.clat = static_cast<float>(south + dy * (domain.ny - 1) / 2.0);
    const double middle = west + dx * (domain.nx - 1) / 2.0;
    domain.clon = static_cast<float>(middle - 360.0 * std::floor((middle + 180.0) / 360.0));
    domain.dx = static_cast<float>(std::fabs(dx));
    domain.dy = static_cast<float>(std::fabs(dy));
    file->north_first = dy < 0.0;
    file->east_first = dx < 0.0;
}

}  // namespace

Model_file& model_file(const GRD_file* gfile) { return state.files[gfile->fd]; }

bool model_value(int nc, const Model_file& file, const Cdf_var& var, std::size_t time, std::size_t level,
                 double* value) {
    Cdf_index index;
    for (const int dim : var.dims) index.push_back(dim == file.time.id ? time : dim == file.level.id ? level : 0);
    return cdf_value(nc, var, index, value) && std::isfinite(*value);
}

bool model_recognise(int) { return true; }

int model_getinfo(GRD_file* gfile, GRD_info* info) {
    const int nc = gfile->fd;
    Model_file& file = state.files[nc] = {};
    file.x = cdf_dim(nc, {"lon", "x"});
    file.y = cdf_dim(nc, {"lat", "y"});
    file.level = cdf_dim(nc, {"level", "plevl"});
    file.time = cdf_dim(nc, {"frtime", "anltime"});
    take_variables(gfile, &file);
    file.center = cdf_var(nc, "grib_center");
    file.model = cdf_var(nc, "grib_model");
    file.levels = cdf_var(nc, {"level", "plevl"});
    file.times = cdf_var(nc, {"frtime", "anlhour"});
    read_date(nc, &file);
    read_place(nc, &file);
    std::string title;
    cdf_text_att(nc, CDF_GLOBAL, "title", title);
    gfile->itype = model_data_set(title, cdf_dim(nc, "rtime").id >= 0);
    gfile->cur_var = -1;
    gfile->date = info->date = file.date;
    std::string label;
    if (file.has_date) DATE_make_label(&file.date, label);
    gfile->datim = info->datim = fit_text(label, GRD_INFO_DATIM_SIZE);
    info->grid_type = 0;
    return 0;
}

void model_close(GRD_file* gfile) { state.files.erase(gfile->fd); }

}  // namespace zav
