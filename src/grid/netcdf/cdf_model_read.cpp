// Model data sets in netCDF files: the walk through the slices of their variables.

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <new>

#include "files/time_code.h"
#include "frame/mess.h"
#include "frame/string.h"
#include "frame/tools.h"
#include "grid/grd_tool.h"
#include "grid/netcdf/cdf_model.h"
#include "grid/netcdf/cdf_model_state.h"
#include "map/maptran.h"

namespace zav {
namespace {

/// Numbers of the file from which on there is no value.
constexpr float NO_VALUE = 1e30F;

/// Codes of quantities with rules of their own.
enum : int { PRESSURE = 1, HEIGHT = 2, U_WIND = 23, PRECIPITATION = 50, SI = 100 };

/// Level types.
enum : int { SURFACE = 1, MAX_WIND = 6, TROPOPAUSE = 7, UNNAMED = 9, ISOBARIC = 100, SEA_LEVEL = 102 };

/// Variable numbers of pressure, at any level and at that of the sea.
enum : int { VAR_PRESSURE = 1, VAR_SEA_LEVEL_PRESSURE = 2 };

/// The slice that a record is.
struct Slice {
    const Model_var* entry = nullptr;
    int data_set = 0;  ///< code for the variable
    std::size_t time = 0;
    std::size_t level = 0;
};

// The walk

/// Moves to the variable that record `num` belongs to. False behind the last record.
bool enter(GRD_file* gfile, Model_file* file) {
    const auto number = static_cast<std::size_t>(gfile->num);
    if (number < 1 || number < file->first) gfile->cur_var = -1;
    if (gfile->cur_var < 0) gfile->max_num = 0;
    while (gfile->cur_var < 0 || (gfile->num >= gfile->max_num && gfile->cur_var + 1 < gfile->var_num)) {
        gfile->cur_var++;
        if (gfile->cur_var >= gfile->var_num) return false;
        file->first = static_cast<std::size_t>(gfile->max_num);
        gfile->max_num += static_cast<long>(file->vars[static_cast<std::size_t>(gfile->cur_var)].slices);
    }
    return gfile->num < gfile->max_num;
}

Slice slice_of(const GRD_file* gfile, const Model_file& file) {
    Slice slice;
    slice.entry = &file.vars[static_cast<std::size_t>(gfile->cur_var)];
    slice.data_set = model_set_of(gfile->itype, slice.entry->var.name);
    const std::size_t number = static_cast<std::size_t>(gfile->num) - file.first;
    const auto levels = static_cast<std::size_t>(std::max(file.level.size, 1L));
    slice.time = slice.entry->has_level ? number / levels : number;
    if (slice.entry->has_level) slice.level = number % levels;
    return slice;
}

// The header

/// A number as an int, `absent` if the file doesn't hold it or it isn't one.
int code_at(int nc, const Model_file& file, const Cdf_var& var, const Slice& slice, int absent) {
    double value = absent;
    if (!var.found() || !model_value(nc, file, var, slice.time, slice.level, &value)) return absent;
    return std::fabs(value) <= std::numeric_limits<int>::max() ? static_cast<int>(value) : MISS;
}

/// The time code of the slice, MISS if it has none.
int time_at(int nc, const Model_file& file, const Slice& slice) {
    constexpr double most_hours = 1e6;
    double hours = 0.0;
    if (!model_value(nc, file, file.times, slice.time, slice.level, &hours)) return MISS;
    if (std::fabs(hours) > most_hours) return MISS;
    return TIME_make({.end = std::lround(hours * static_cast<double>(TIME_HOUR))});
}

/// The level of a field that has no level dimension, by its quantity, its model and the data set.
void set_level_by_rules(const Slice& slice, GRD_report* grd) {
    const int code = slice.entry->quantity.code;
    const int kind = slice.data_set % 100;
    grd->level = 0;
    grd->ltype = UNNAMED;
    if (code == PRESSURE || code == PRESSURE + SI) grd->ltype = SEA_LEVEL;
    if (code == HEIGHT || code == HEIGHT + SI || code == PRECIPITATION) grd->ltype = SURFACE;
    if (grd->model == 10) grd->ltype = code == U_WIND ? SURFACE : SEA_LEVEL;
    if (kind > 9 && kind % 10 == 1) grd->ltype = TROPOPAUSE;
    if (kind > 9 && kind % 10 == 2) grd->ltype = MAX_WIND;
}

void set_level_and_time(int nc, const Model_file& file, const Slice& slice, GRD_report* grd) {
    const Model_var& entry = *slice.entry;
    const bool hours_72 = slice.data_set % 100 == MODEL_SET_500_HOUR_72;
    grd->time = entry.has_time ? time_at(nc, file, slice) : 0;
    if (entry.has_level) {
        grd->ltype = ISOBARIC;
        grd->level = code_at(nc, file, file.levels, slice, MISS);
    } else if (entry.has_time) {
        set_level_by_rules(slice, grd);
    } else {
        grd->ltype = hours_72 ? ISOBARIC : SURFACE;
        grd->level = hours_72 ? 500 : 0;
        grd->time = hours_72 ? 72 : 0;
    }
}

/// A polar stereographic grid that files give without coordinates, told by its size.
constexpr int POLAR_POINTS = 83;

/// The domain by the file and by what is known of the models' grids.
void set_domain(const Model_file& file, GRD_report* grd) {
    grd->type = 1;
    Domain& domain = grd->domain;
    domain = file.domain;
    if (!file.has_lat && file.x.size == POLAR_POINTS) {
        domain.proj = PROJ_POLAR;
        domain.clat = 50.8936F;
        domain.clon = -103.1524F;
        domain.plon = -105.0F;
        domain.nx = domain.ny = POLAR_POINTS;
        domain.dx = domain.dy = 0.9075464F;
    }
    switch (grd->model) {
        case 39:
        case 64:
            grd->type = 50;
            break;
        case 83:
            if (domain.proj != MISS || file.has_lat) break;
            grd->type = 211;
            domain.proj = PROJ_LAMBERT;
            domain.clat = 40.62F;
            domain.clon = -100.51F;
            domain.plon = -95.0F;
            domain.nx = 93;
            domain.ny = 65;
            domain.dx = domain.dy = 0.6263F;
            domain.param = {25.0F, 25.0F, 1.277F, FMISS, FMISS};
            break;
        case 69:
        case 78:
        case 77:
        case 10:
        case 25:
        case 44:
        case 31:
        case 40:
            grd->type = 11;
            break;
        default:
            break;
    }
    if (domain.nx != file.x.size || domain.ny != file.y.size) DOM_init(&domain);
}

/// Points in x of global grids whose last column is that of the first again, without that column.
constexpr int GLOBE_POINTS = 72;

/// Models whose later times lack the column that closes the globe get it back.
void close_globe(GRD_report* grd) {
    const bool open = (grd->model == 69 || grd->model == 78) && grd->time > 72;
    if (!open || grd->domain.nx != GLOBE_POINTS) return;
    grd->domain.nx++;
    grd->domain.clon += grd->domain.dx / 2.0F;
}

/// The block of the file that the slice is.
void block_of(const Model_file& file, const Slice& slice, Cdf_index* start, Cdf_index* count) {
    const Cdf_var& var = slice.entry->var;
    for (const int dim : var.dims)
        start->push_back(dim == file.time.id ? slice.time : dim == file.level.id ? slice.level : 0);
    count->assign(var.dims.size(), 1);
    std::copy(var.sizes.end() - 2, var.sizes.end(), count->end() - 2);
}

/// True for a slice that the file holds and that has values: the first one tells.
bool has_field(int nc, const Model_file& file, const Slice& slice) {
    Cdf_index start;
    Cdf_index count;
    block_of(file, slice, &start, &count);
    float first = 0.0F;
    if (!cdf_holds(nc, slice.entry->var, start, count)) return false;
    return cdf_floats(nc, slice.entry->var, start, Cdf_index(start.size(), 1), &first) && !(first >= NO_VALUE);
}

void make_empty(GRD_report* grd) {
    grd->source = 0;
    grd->var = 0;
    grd->ltype = 0;
    grd->level = 0;
    grd->time = 0;
}

/// Hours that the user adds to the time of precipitation, with the kind of range in front: 4000000 for amounts.
int precipitation_time(int time) {
    const char* added = std::getenv("GRIBQP");
    const long sum = added == nullptr ? time : static_cast<long>(time) + text_to_int(added);
    return sum >= 0 && sum <= std::numeric_limits<int>::max() ? static_cast<int>(sum) : time;
}

/// Everything but labels and values. False for a slice without a field, whose record is empty.
bool read_header(int nc, const Model_file& file, const Slice& slice, GRD_report* grd) {
    const Model_quantity& quantity = slice.entry->quantity;
    grd->grid.reset();
    grd->version = 1;
    grd->source = code_at(nc, file, file.center, slice, 0);
    grd->model = code_at(nc, file, file.model, slice, 0);
    set_level_and_time(nc, file, slice, grd);
    grd->var = quantity.var;
    if (grd->var == VAR_PRESSURE && grd->ltype == SEA_LEVEL) grd->var = VAR_SEA_LEVEL_PRESSURE;
    set_domain(file, grd);
    close_globe(grd);
    if (grd->time == MISS || grd->level == MISS || !has_field(nc, file, slice)) {
        make_empty(grd);
        return false;
    }
    if (quantity.code == PRECIPITATION) grd->time = precipitation_time(grd->time);
    return true;
}

// Labels and values

void make_labels(const Model_file& file, const Model_var& entry, GRD_report* grd) {
    grd->units = fit_text(entry.quantity.units, GRD_UNITS_SIZE);
    if (entry.quantity.code != 0) {
        GRD_make_datatype(grd, "");
    } else {
        grd->info = fit_text(entry.long_name + " (" + entry.quantity.units + ")", GRD_INFO_SIZE);
    }
    Date date = file.date;
    std::string label;
    DATE_make_label_for(grd->time, grd->source * 1000 + grd->model, file.has_date ? DATE_num_sec(&date) : 0, label);
    grd->datim = fit_text(label, GRD_DATIM_SIZE);
}

/// The value of a number of the file.
float value_of(const Model_var& entry, float number) {
    const auto is_number = [number](float missing) { return number == missing; };
    if (!(number <= NO_VALUE) || std::any_of(entry.missing.begin(), entry.missing.end(), is_number)) return FMISS;
    const auto value = static_cast<float>(static_cast<double>(number) * entry.scale + entry.offset);
    return std::isfinite(value) ? value : FMISS;
}

/// Puts the numbers of a slice in their places: rows from the north, columns from the west, a closing column.
void place_values(const Model_file& file, const Model_var& entry, const std::vector<float>& numbers, GRD_report* grd) {
    const auto columns = static_cast<std::size_t>(file.x.size);
    const auto rows = static_cast<std::size_t>(file.y.size);
    const auto nx = static_cast<std::size_t>(grd->domain.nx);
    for (std::size_t j = 0; j < rows; j++) {
        const float* from = numbers.data() + j * columns;
        float* row = grd->grid.get() + (file.north_first ? j : rows - 1 - j) * nx;
        std::transform(from, from + columns, row, [&entry](float number) { return value_of(entry, number); });
        if (file.east_first) std::reverse(row, row + columns);
        if (nx > columns) row[columns] = row[0];
    }
}

/// Reads the values. False with the reason told.
bool read_values(int nc, Model_file* file, const Slice& slice, GRD_report* grd) {
    if (GRD_points(grd) == 0) {
        if (!file->told_unplaced)
            MESS_print(MESS_WARN, "The points of %s in netCDF file can't be placed: no even latitudes and longitudes\n",
                       slice.entry->var.name.c_str());
        file->told_unplaced = true;
        return false;
    }
    Cdf_index start;
    Cdf_index count;
    block_of(*file, slice, &start, &count);
    try {
        std::vector<float> numbers(count.end()[-1] * count.end()[-2]);
        if (!cdf_floats(nc, slice.entry->var, start, count, numbers.data())) {
            MESS_print(MESS_WARN, "The values of %s can't be read from netCDF file\n", slice.entry->var.name.c_str());
            return false;
        }
        if (GRD_alloc(grd) == 0) return false;
        place_values(*file, *slice.entry, numbers, grd);
    } catch (const std::bad_alloc&) {
        GRD_tell_no_memory(grd);
        return false;
    }
    return true;
}

}  // namespace

int model_read(GRD_file* gfile, GRD_report* grd, int rep_type, int* grdnum) {
    Model_file& file = model_file(gfile);
    if (*grdnum != -1) gfile->num = *grdnum;
    if (gfile->num < 0 || !enter(gfile, &file)) return -1;
    *grdnum = gfile->num;
    const Slice slice = slice_of(gfile, file);
    const bool field = read_header(gfile->fd, file, slice, grd);
    if (!field || rep_type == GRD_READ_HEADER || rep_type == GRD_READ_LABELS) return 0;
    make_labels(file, *slice.entry, grd);
    if (read_values(gfile->fd, &file, slice, grd)) return 0;
    GRD_free(grd);
    return -1;
}

}  // namespace zav
