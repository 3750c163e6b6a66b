// The program's own layout of netCDF files: writing.

#include <algorithm>
#include <cmath>
#include <limits>
#include <string_view>

#include "files/unittool.h"
#include "frame/mess.h"
#include "frame/string.h"
#include "grid/grd_state.h"
#include "grid/grd_tool.h"
#include "grid/netcdf/cdf_api.h"
#include "grid/netcdf/cdf_file.h"
#include "grid/netcdf/cdf_own.h"
#include "map/maptran.h"

namespace zav {
namespace {

bool fits_short(int value) {
    return value >= std::numeric_limits<short>::min() && value <= std::numeric_limits<short>::max();
}

short to_short(int value) { return fits_short(value) ? static_cast<short>(value) : short{0}; }

/// Makes definitions and notes whether one failed.
class Definer {
  public:
    explicit Definer(int nc) : nc_(nc) {}

    int dim(const char* name, std::size_t size) {
        int id = -1;
        check(cdf_api()->def_dim(nc_, name, size, &id));
        return id;
    }
    int var(const char* name, int type, const std::vector<int>& dims) {
        int id = -1;
        check(cdf_api()->def_var(nc_, name, type, static_cast<int>(dims.size()), dims.data(), &id));
        return id;
    }
    void text(int var, const char* name, std::string_view value) {
        check(cdf_api()->put_att_text(nc_, var, name, value.size(), value.data()));
    }
    void number(int var, const char* name, short value) {
        check(cdf_api()->put_att_short(nc_, var, name, NC_SHORT, 1, &value));
    }
    /// Values that nobody wrote count as missing.
    void missing(int var) { check(cdf_api()->put_att_float(nc_, var, "_FillValue", NC_FLOAT, 1, &FMISS)); }
    bool end() {
        check(cdf_api()->enddef(nc_));
        return good_;
    }

  private:
    void check(int result) { good_ = good_ && result == NC_NOERR; }

    int nc_;
    bool good_ = true;
};

/// Ids of the dimensions.
struct Dims {
    int grid = -1;
    int x = -1;
    int y = -1;
    int text = -1;
};

void define_var(Definer& file, const Dims& dims, const Own_var& var) {
    int id = -1;
    const bool field = var.kind == Own_kind::field || var.kind == Own_kind::coord;
    if (field) {
        id = file.var(var.name, NC_FLOAT, {dims.grid, dims.x, dims.y});
    } else if (var.kind == Own_kind::text) {
        id = file.var(var.name, NC_CHAR, {dims.grid, dims.text});
    } else {
        id = file.var(var.name, var.kind == Own_kind::place ? NC_FLOAT : NC_SHORT, {dims.grid});
    }
    file.text(id, "name", var.title);
    file.text(id, "long_name", var.long_name);
    if (var.units != nullptr) file.text(id, "units", var.units);
    if (field) file.missing(id);
}

/// True for what files of that grid type hold.
bool is_in_file(const Own_var& var, int grid_type) {
    if (var.kind == Own_kind::coord) return grid_type == 1;
    return grid_type != 1 || (var.kind != Own_kind::proj && var.kind != Own_kind::place);
}

void define_date(Definer& file, const Date& date) {
    // A date of a file in this layout counts its years from 1900.
    const int year = date.year >= 0 && date.year < 200 ? date.year + 1900 : date.year;
    file.number(CDF_GLOBAL, "year", to_short(year));
    file.number(CDF_GLOBAL, "month", to_short(date.month));
    file.number(CDF_GLOBAL, "day", to_short(date.day));
    file.number(CDF_GLOBAL, "hour", to_short(date.hour));
}

/// The text of a field with its units, which the layout keeps nowhere else: where it is too long, its middle goes.
std::string info_text(const GRD_report* grd) {
    std::string name;
    std::string units;
    UNIT_parse(grd->info, name, units);
    if (!grd->units.empty()) units = grd->units;
    if (units.empty()) return grd->info.substr(0, OWN_TEXT_SIZE);
    const std::string tail = " (" + units + ")";
    return name.substr(0, OWN_TEXT_SIZE - std::min(tail.size(), OWN_TEXT_SIZE)) + tail;
}

/// Writes the parts of one record.
class Record {
  public:
    Record(int nc, std::size_t number) : nc_(nc), number_(number) {}

    bool field(const char* name, const GRD_report* grd) const {
        const Cdf_var var = cdf_var(nc_, name);
        const auto nx = static_cast<std::size_t>(grd->domain.nx);
        const auto ny = static_cast<std::size_t>(grd->domain.ny);
        if (var.sizes.size() != 3 || nx > var.sizes[1] || ny > var.sizes[2]) return false;
        return put(cdf_api()->put_vara_float, var, {number_, 0, 0}, {1, nx, ny}, grd->grid.get());
    }
    /// A text with the NUL behind it, as far as there is room.
    bool text(const char* name, const std::string& value) const {
        const std::size_t size = std::min(value.size() + 1, OWN_TEXT_SIZE);
        return put(cdf_api()->put_vara_text, cdf_var(nc_, name), {number_, 0}, {1, size}, value.c_str());
    }
    bool real(const char* name, float value) const {
        return put(cdf_api()->put_vara_float, cdf_var(nc_, name), {number_}, {1}, &value);
    }
    bool code(const char* name, int value) const {
        const short number = to_short(value);
        return put(cdf_api()->put_vara_short, cdf_var(nc_, name), {number_}, {1}, &number);
    }
    bool params(const Domain& domain) const {
        return put(cdf_api()->put_vara_float, cdf_var(nc_, OWN_PARAM), {number_, 0}, {1, domain.param.size()},
                   domain.param.data());
    }

  private:
    template <class Put, class Value>
    bool put(Put function, const Cdf_var& var, const Cdf_index& start, const Cdf_index& count,
             const Value* value) const {
        if (!var.found() || var.sizes.size() != start.size()) return false;
        return function(nc_, var.id, start.data(), count.data(), value) == NC_NOERR;
    }

    int nc_;
    std::size_t number_;
};

bool has_params(const Domain& domain) {
    return std::any_of(domain.param.begin(), domain.param.end(), [](float value) { return value != FMISS; });
}

/// The domain as it is kept; the true latitude at which a polar map has its steps anyway needs no telling.
Domain kept_domain(const Domain& grid) {
    Domain domain = native_domain(grid);
    if (domain.proj == PROJ_POLAR && std::fabs(domain.param[0]) == 60.0F) domain.param[0] = FMISS;
    return domain;
}

/// Adds the variable for projections with parameters to a file that doesn't have it yet.
bool define_params(int nc) {
    if (cdf_var(nc, OWN_PARAM).found()) return true;
    if (cdf_api()->redef(nc) != NC_NOERR) return false;
    Definer file(nc);
    const int id =
        file.var(OWN_PARAM, NC_FLOAT, {cdf_dim(nc, "grid").id, file.dim(OWN_PARAM_DIM, Domain().param.size())});
    file.text(id, "name", "PARAM");
    file.text(id, "long_name", "Parameters of projection");
    file.missing(id);
    return file.end();
}

bool write_var(const Record& record, const Own_var& var, const GRD_report* grd, const Domain& domain) {
    switch (var.kind) {
        case Own_kind::field:
            return record.field(var.name, grd);
        case Own_kind::coord:
            return true;  // nothing is known of them
        case Own_kind::place:
            return record.real(var.name, domain.*var.real);
        case Own_kind::text:
            return record.text(var.name, var.label == &GRD_report::info ? info_text(grd) : grd->*var.label);
        case Own_kind::proj:
        case Own_kind::size:
            return record.code(var.name, domain.*var.points);
        default:
            return record.code(var.name, grd->*var.code);
    }
}

}  // namespace

bool own_keeps(const GRD_report* grd) {
    for (const Own_var& var : OWN_VARS) {
        const bool key = var.kind == Own_kind::key;
        if (!key && var.kind != Own_kind::size) continue;
        const int value = key ? grd->*var.code : grd->domain.*var.points;
        if (fits_short(value)) continue;
        MESS_print(MESS_WARN, "netCDF grid files have no room for %s %d, native ones (zav) do\n", var.name, value);
        return false;
    }
    if (grd->domain.ellipse == 0) return true;
    MESS_print(MESS_WARN, "netCDF grid files have no room for projections of the ellipsoid\n");
    return false;
}

int own_putinfo(GRD_file* gfile, const GRD_info* info) {
    if (own_recognise(gfile->fd)) return 0;
    if (info->max_x < 1 || info->max_y < 1) return -1;
    gfile->grid = info->grid_type == 1 ? 1 : 0;
    Definer file(gfile->fd);
    Dims dims;
    dims.grid = file.dim("grid", NC_UNLIMITED);
    dims.x = file.dim("x", static_cast<std::size_t>(info->max_x));
    dims.y = file.dim("y", static_cast<std::size_t>(info->max_y));
    dims.text = file.dim("string_len", OWN_TEXT_SIZE);
    for (const Own_var& var : OWN_VARS) {
        if (is_in_file(var, gfile->grid)) define_var(file, dims, var);
    }
    file.text(CDF_GLOBAL, "source", "ZAV");
    file.text(CDF_GLOBAL, "version", "1.0");
    file.number(CDF_GLOBAL, "grid_type", to_short(gfile->grid));
    define_date(file, info->date);
    return file.end() ? 0 : -1;
}

int own_write(GRD_file* gfile, const GRD_report* grd, const int* grd_num) {
    if (!own_keeps(grd) || *grd_num < 0) return -1;
    const Domain domain = kept_domain(grd->domain);
    const bool with_params = gfile->grid != 1 && has_params(domain);
    if (with_params && !define_params(gfile->fd)) return -1;
    const Record record(gfile->fd, static_cast<std::size_t>(gfile->max_num + *grd_num));
    for (const Own_var& var : OWN_VARS) {
        if (is_in_file(var, gfile->grid) && !write_var(record, var, grd, domain)) return -1;
    }
    return !with_params || record.params(domain) ? 0 : -1;
}

}  // namespace zav
