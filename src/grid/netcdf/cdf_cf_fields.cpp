// The variables of a CF file that lie on grids, with their coordinates.

#include <algorithm>
#include <set>

#include "files/lookup_lines.h"
#include "grid/grib/grib.h"
#include "grid/netcdf/cdf_cf_file.h"
#include "grid/netcdf/cdf_cf_grid.h"
#include "grid/netcdf/cdf_cf_values.h"

namespace zav {
namespace {

/// Number of a coordinate that can't be read.
constexpr int UNREADABLE = -2;

/// What the search for variables needs to know of a file.
struct Search {
    Cf_file* file = nullptr;
    std::vector<Cdf_var> vars;
    std::set<std::string> helpers;    ///< bounds and grid mappings, which are no fields
    std::vector<Cdf_var> horizontal;  ///< variables of two dimensions, or along one that both share, that are x or y
    std::map<int, int> axes;          ///< variables with the name of their dimension, by its id
    int valid = -1;                   ///< coordinates that are the only ones of their role in the file
    int reference = -1;
};

/// Most variables that are looked at: as many as the library promised to hold for long.
constexpr int MOST_VARIABLES = 8192;
/// Most variables with the latitudes or longitudes of each point.
constexpr std::size_t MOST_HORIZONTAL = 64;

Cf_coord& coord_at(const Search& search, int coord) { return search.file->coords[static_cast<std::size_t>(coord)]; }

bool is_named(int nc, const Cdf_var& var) { return var.dims.size() == 1 && cf_dim_name(nc, var.dims[0]) == var.name; }

/// The coordinate that a variable is, read at the first need. -1 for none, UNREADABLE.
int coord_of(Search& search, const Cdf_var& var) {
    Cf_file& file = *search.file;
    const auto known = file.coord_of.find(var.id);
    if (known != file.coord_of.end()) return known->second;
    int number = -1;
    const Cf_role role = cdf_is_number(var) ? cf_role(file.nc, var, is_named(file.nc, var)) : Cf_role::none;
    if (role != Cf_role::none) {
        Cf_coord coord;
        number = UNREADABLE;
        if (cf_load(file.nc, var, role, &coord)) {
            number = static_cast<int>(file.coords.size());
            file.coords.push_back(std::move(coord));
        }
    }
    file.coord_of[var.id] = number;
    return number;
}

/// The coordinate variable of a dimension, or -1, or UNREADABLE.
int axis_of(Search& search, int dim) {
    const auto found = search.axes.find(dim);
    return found == search.axes.end() ? -1 : coord_of(search, search.vars[static_cast<std::size_t>(found->second)]);
}

/// Takes up a coordinate whose dimensions all are among those of a field, but for the horizontal ones.
bool link_coord(const Search& search, const Cf_field& field, int coord, Cf_link* link) {
    Cf_link found;
    found.coord = coord;
    for (const int dim : coord_at(search, coord).var.dims) {
        const auto place = std::find(field.var.dims.begin(), field.var.dims.end(), dim);
        const auto number = static_cast<std::size_t>(place - field.var.dims.begin());
        if (place == field.var.dims.end() || number == field.x || number == field.y) return false;
        found.places.push_back(number);
    }
    *link = found;
    return true;
}

Cf_link* link_of(Cf_field& field, Cf_role role) {
    switch (role) {
        case Cf_role::level:
            return &field.level;
        case Cf_role::valid:
            return &field.valid;
        case Cf_role::reference:
            return &field.reference;
        case Cf_role::period:
            return &field.period;
        case Cf_role::member:
            return &field.member;
        default:
            return nullptr;
    }
}

/// Takes up a coordinate unless the field has a better one: one of a dimension of its own comes first, and a level with
/// a number before one without.
void offer_coord(const Search& search, Cf_field& field, int coord) {
    if (coord < 0) return;
    Cf_link* link = link_of(field, coord_at(search, coord).role);
    if (link == nullptr) return;
    const bool level = link == &field.level && link->found() && link->places.empty() &&
                       coord_at(search, link->coord).vertical.factor == 0.0 &&
                       coord_at(search, coord).vertical.factor != 0.0;
    if (!link->found() || level) link_coord(search, field, coord, link);
}

/// The horizontal dimensions of a variable. Empty with `field.x` and `field.y` set, why the grid isn't decoded, or "-"
/// for a variable that isn't on a grid.
std::string find_plane(Search& search, Cf_field& field, int* x, int* y) {
    bool unreadable = false;
    for (std::size_t i = 0; i < field.var.dims.size(); i++) {
        const int coord = axis_of(search, field.var.dims[i]);
        unreadable = unreadable || coord == UNREADABLE;
        if (coord < 0) continue;
        const Cf_role role = coord_at(search, coord).role;
        if (role == Cf_role::x) field.x = i;
        if (role == Cf_role::y) field.y = i;
        if (role == Cf_role::x) *x = coord;
        if (role == Cf_role::y) *y = coord;
    }
    const bool degrees = *x >= 0 && *y >= 0 && coord_at(search, *x).degrees && coord_at(search, *y).degrees;
    const bool mapped = *x >= 0 && *y >= 0 && !cf_text_att(search.file->nc, field.var.id, "grid_mapping").empty();
    if (degrees || mapped) return "";
    for (const Cdf_var& var : search.horizontal) {
        const auto shared = [&](int dim) {
            return std::find(field.var.dims.begin(), field.var.dims.end(), dim) != field.var.dims.end();
        };
        if (var.id == field.var.id || !std::all_of(var.dims.begin(), var.dims.end(), shared)) continue;
        return var.dims.size() == 1 ? "its points are listed one by one"
                                    : "its latitudes and longitudes are two-dimensional";
    }
    if (*x >= 0 && *y >= 0) return "";
    return unreadable && field.var.dims.size() >= 2 ? "its coordinates can't be read" : "-";
}

/// The mapping that a variable names, "name" or "name: coordinates".
Cf_mapping mapping_of(int nc, const Cdf_var& var) {
    Cf_mapping mapping;
    std::string name = cf_text_att(nc, var.id, "grid_mapping");
    name = name.substr(0, name.find_first_of(": "));
    const Cdf_var holder = name.empty() ? Cdf_var{} : cdf_var(nc, name.c_str());
    if (!holder.found()) return mapping;
    mapping.name = cf_text_att(nc, holder.id, "grid_mapping_name");
    for (const char* number : {"earth_radius", "semi_major_axis", "semi_minor_axis", "inverse_flattening",
                               "standard_parallel", "latitude_of_projection_origin", "longitude_of_central_meridian",
                               "longitude_of_projection_origin", "straight_vertical_longitude_from_pole",
                               "scale_factor_at_projection_origin", "false_easting", "false_northing"}) {
        const std::vector<double> values = cf_number_atts(nc, holder.id, number);
        if (!values.empty()) mapping.numbers[number] = values;
    }
    return mapping;
}

Cf_steps steps_of(const Cf_coord& coord) {
    Cf_steps steps = cf_steps(coord.values, coord.single, coord.degrees && coord.role == Cf_role::x);
    if (coord.degrees) return steps;
    for (double* metres : {&steps.first, &steps.last, &steps.step, &steps.rounding}) *metres *= coord.metres;
    return steps;
}

void place_field(const Search& search, Cf_field& field, int x, int y) {
    const Cf_coord& east = coord_at(search, x);
    const Cf_coord& north = coord_at(search, y);
    if (field.var.sizes[field.x] > static_cast<std::size_t>(GRIB_MAX_POINTS) / field.var.sizes[field.y]) {
        field.refused = "its grid is too large";
        return;
    }
    const Cf_steps columns = steps_of(east);
    const Cf_steps rows = steps_of(north);
    field.east_first = columns.step < 0.0;
    field.south_first = rows.step >= 0.0;
    field.refused = east.degrees && north.degrees
                        ? cf_place_latlon(rows, columns, &field.domain)
                        : cf_place_plane(mapping_of(search.file->nc, field.var), columns, rows, &field.domain);
    if (!field.refused.empty()) DOM_init(&field.domain);
}

/// The only time of a role that the file has, a scalar or of one dimension; -1 if there are none or several.
int only_time(Search& search, Cf_role role) {
    int found = -1;
    for (const Cdf_var& var : search.vars) {
        if (var.dims.size() > 1 || search.helpers.count(var.name) > 0) continue;
        if (role == Cf_role::valid && !var.dims.empty()) continue;
        const int coord = coord_of(search, var);
        if (coord < 0 || coord_at(search, coord).role != role) continue;
        if (found >= 0) return -1;
        found = coord;
    }
    return found;
}

/// The coordinates of the dimensions, those that the variable lists, and times that stand alone in the file.
void find_coords(Search& search, Cf_field& field) {
    const int nc = search.file->nc;
    for (const int dim : field.var.dims) offer_coord(search, field, axis_of(search, dim));
    for (const std::string& name : split_blanks(cf_text_att(nc, field.var.id, "coordinates"))) {
        const Cdf_var var = cdf_var(nc, name.c_str());
        if (var.found()) offer_coord(search, field, coord_of(search, var));
    }
    offer_coord(search, field, search.valid);
    offer_coord(search, field, search.reference);
}

/// Why the time of a field can't be told, empty if it can.
std::string time_refused(const Search& search, const Cf_field& field) {
    for (const Cf_link* link : {&field.reference, &field.valid, &field.period}) {
        if (link->found() && !coord_at(search, link->coord).clock.refused.empty()) {
            return coord_at(search, link->coord).clock.refused;
        }
    }
    return "";
}

void add_field(Search& search, const Cdf_var& var) {
    Cf_field field;
    field.var = var;
    int x = -1;
    int y = -1;
    const std::string why = find_plane(search, field, &x, &y);
    if (why == "-" || std::find(var.sizes.begin(), var.sizes.end(), std::size_t{0}) != var.sizes.end()) return;
    field.refused = why;
    if (field.x == field.y) {  // the horizontal dimensions of a grid that isn't decoded come last
        field.x = var.dims.size() - 1;
        field.y = var.dims.size() < 2 ? field.x : field.x - 1;
    }
    if (why.empty()) place_field(search, field, x, y);
    find_coords(search, field);
    if (field.refused.empty()) field.refused = time_refused(search, field);
    field.quantity = cf_quantity(*search.file, field);
    search.file->fields.push_back(std::move(field));
}

void list_helpers(Search& search) {
    const int nc = search.file->nc;
    for (const Cdf_var& var : search.vars) {
        for (const char* attribute : {"bounds", "climatology", "grid_mapping"}) {
            std::string name = cf_text_att(nc, var.id, attribute);
            name = name.substr(0, name.find_first_of(": "));
            if (!name.empty()) search.helpers.insert(name);
        }
    }
}

/// Notes latitudes and longitudes that aren't axes of their own.
void list_horizontal(Search& search) {
    const int nc = search.file->nc;
    for (const Cdf_var& var : search.vars) {
        if (var.dims.empty() || var.dims.size() > 2 || is_named(nc, var)) continue;
        if (search.helpers.count(var.name) > 0 || !cdf_is_number(var)) continue;
        const Cf_role role = cf_role(nc, var, false);
        if (role == Cf_role::x || role == Cf_role::y) search.horizontal.push_back(var);
        if (search.horizontal.size() >= MOST_HORIZONTAL) return;
    }
}

bool is_coordinate(const Search& search, const Cdf_var& var) {
    if (is_named(search.file->nc, var)) return true;
    return std::any_of(search.horizontal.begin(), search.horizontal.end(),
                       [&](const Cdf_var& other) { return other.id == var.id; });
}

}  // namespace

void cf_find_fields(Cf_file* file) {
    Search search;
    search.file = file;
    const int count = std::min(cdf_var_count(file->nc), MOST_VARIABLES);
    for (int id = 0; id < count; id++) {
        search.vars.push_back(cdf_var(file->nc, id));
        const Cdf_var& var = search.vars.back();
        if (is_named(file->nc, var)) search.axes.try_emplace(var.dims[0], id);
    }
    list_helpers(search);
    list_horizontal(search);
    search.valid = only_time(search, Cf_role::valid);
    search.reference = only_time(search, Cf_role::reference);
    for (const Cdf_var& var : search.vars) {
        if (!cdf_is_number(var) || var.dims.empty() || search.helpers.count(var.name) > 0) continue;
        if (!is_coordinate(search, var)) add_field(search, var);
    }
}

}  // namespace zav
