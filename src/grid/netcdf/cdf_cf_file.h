#pragma once

// A CF file as a series of records.

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "grid/netcdf/cdf_cf_axes.h"
#include "map/region.h"

namespace zav {

/// A coordinate of a variable: which, and for each of its dimensions the place in the variable's own.
struct Cf_link {
    int coord = -1;
    std::vector<std::size_t> places;

    bool found() const { return coord >= 0; }
};

/// What a variable is.
struct Cf_quantity {
    int var = 0;        ///< variable number
    std::string units;  ///< as the program writes them
    int ltype = 1;      ///< level that it has where no coordinate tells one
    int level = 0;
    bool alone = false;       ///< that level holds only for a variable without a vertical axis
    int kind = 0;             ///< of time ranges: 3 average, 4 accumulation, 6 maximum, 7 minimum; 0 for moments
    bool from_start = false;  ///< it accumulates from the start of the forecast
};

/// A variable on a horizontal grid; each slice of it is a record.
struct Cf_field {
    Cdf_var var;
    std::size_t x = 0;  ///< places of the horizontal dimensions
    std::size_t y = 0;
    bool south_first = false;
    bool east_first = false;
    Domain domain;        ///< unset for a grid that isn't decoded
    std::string refused;  ///< why its values aren't read, empty if they are
    Cf_quantity quantity;
    Cf_link reference, valid, period, level, member;
    std::vector<std::size_t> runs;  ///< places of the dimensions along which the start of the forecast changes
    std::vector<std::size_t> rest;  ///< places of the other ones
    std::size_t group = 0;          ///< of variables with the same runs
    long slices = 1;                ///< records of one run
};

/// Variables whose forecasts start at the same times.
struct Cf_group {
    std::vector<int> coords;         ///< the coordinates that tell the start, and how
    std::vector<int> dims;           ///< ids of the dimensions along which it changes
    std::vector<std::size_t> sizes;  ///< their sizes
    std::vector<std::int64_t> starts;
    long slices = 0;                                    ///< records of one run, of all of its variables
    std::vector<std::pair<std::size_t, long>> columns;  ///< columns of the file in which it has one of its starts
};

/// The slices of one variable among the records of a column.
struct Cf_part {
    long first = 0;  ///< record number inside the column
    std::size_t field = 0;
    long start = 0;  ///< which of its starts
};

struct Cf_file {
    int nc = -1;
    int source = 0;
    std::vector<Cf_coord> coords;
    std::map<int, int> coord_of;  ///< coordinates by the id of their variable
    std::vector<Cf_field> fields;
    std::vector<Cf_group> groups;
    std::vector<std::int64_t> columns;  ///< start of each run, CF_NO_MOMENT for fields that tell none
    std::vector<long> numbers;          ///< number of the first record of each column, and of the one behind the last
    std::size_t column = 0;             ///< the one that `parts` are those of
    std::vector<Cf_part> parts;
};

/// Finds the variables on grids and their coordinates.
void cf_find_fields(Cf_file* file);
/// What a variable is, by standard name, name and the attributes of converters.
Cf_quantity cf_quantity(const Cf_file& file, const Cf_field& field);
/// Originating centre by the file's attributes, 0 if they tell none.
int cf_source(int nc);

// Records, sorted by the start of their forecast. A place is one index for each dimension of the variable.

/// Puts the slices of all variables in order.
void cf_sort_records(Cf_file* file);
/// The variable and slice of a record. Null if there is no such record.
const Cf_field* cf_locate(Cf_file* file, long number, Cdf_index* place);
/// The start of the forecast and the time code at a place; CF_NO_MOMENT and 0 where the file tells none.
struct Cf_time {
    std::int64_t start = CF_NO_MOMENT;
    int code = 0;
};
Cf_time cf_time(const Cf_file& file, const Cf_field& field, const Cdf_index& place);
/// Index of a coordinate's number at a place of a variable.
std::size_t cf_index(const Cf_file& file, const Cf_link& link, const Cdf_index& place);

}  // namespace zav
