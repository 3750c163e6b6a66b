#pragma once

#include <string>

#include "grid/zavgrd.h"
#include "var/var_tool.h"

namespace zav {

struct Record_codes;

// One record

/// Empties labels, values and codes. `version`, `units`, `date` and `domain` stay. Result 0.
int GRD_init(GRD_report* grid);
/// Gives the record domain.nx * domain.ny values, all missing. 1, or 0 with a warning when there is no memory or no
/// size.
int GRD_alloc(GRD_report* grid);
/// Gives the warning of GRD_alloc for other memory that a record needs; the record loses its values.
void GRD_tell_no_memory(GRD_report* grid);
/// Lets go of the values and makes source and domain unset; other fields stay. Result 0.
int GRD_free(GRD_report* grid);
/// Copies `grid1` to `grid2`; both then share one block of values. Result 0.
int GRD_copy(GRD_report* grid2, const GRD_report* grid1);
/// Copies `grid1` to `grid2` and initialises `grid1`. Result 0.
int GRD_move(GRD_report* grid2, GRD_report* grid1);
/// Copies date, domain, units and origin, but no values and nothing that tells variable, level and time. Result 0.
int GRD_copy_info(GRD_report* grid2, const GRD_report* grid1);
/// Describes a file to be written. Result 0.
int GRD_set_info(GRD_info* info, const Date* date, const Domain* domain);
/// Makes `info` from the record's codes and units. `oper` isn't used. Result 0.
int GRD_make_datatype(GRD_report* grid, const std::string& oper);
/// Makes `info` of `ogrid` for a quantity derived from `igrid`: the variable's name and `str`. Result 0.
int GRD_make_devtype(GRD_report* ogrid, const GRD_report* igrid, const std::string& str);
/// True for a record with values that fit its domain.
bool GRD_has_values(const GRD_report* grid);
/// True for a record without a field: neither origin nor values. Origin 0 alone may be a field of no known centre.
bool GRD_is_empty(const GRD_report* grid);
/// Points of the record's domain, 0 if it has no size.
std::size_t GRD_points(const GRD_report* grid);

// The table of GRD_MAX records. An index outside of it gives null, an empty text or -1.

/// Initialises all records. Result 0.
int GRD_init_grids();
/// The table, initialised at first use.
GRD_report* GRD_get_grids();
GRD_report* GRD_get_grid(int ind);
/// Copies a record into the table, as GRD_copy.
int GRD_set_grid(int ind, const GRD_report* grd);
int GRD_alloc_grid(int ind);
int GRD_set_grid_info(int ind, const std::string& str);
const std::string& GRD_get_grid_info(int ind);
/// Sets label and, unless it is null, date.
int GRD_set_grid_date(int ind, const Date* date, const std::string& str);
/// Lays a record out on a domain, refined by the grid factor.
int GRD_set_grid_domain(int ind, const Domain* dom);
int GRD_get_grid_domain(int ind, Domain* dom);
/// Steps into which a step of GRD_set_grid_domain's domain is cut. Below 1 changes nothing.
int GRD_set_grid_factor(int fact);
int GRD_get_grid_factor();
/// Takes what is wanted in a record from the entry of the variable list that goes with it.
int GRD_set_var(int ind);
/// The date of the run; null takes the date of file selection.
int GRD_set_date(const Date* datim);
int GRD_get_date(Date* datim);

// Search keys

/// Decodes a selector ("#3:C", "-..", "+hour:level:variable:units:grid", ":C") into a key. `type` takes the grid
/// number. The number of a record, -1 when the key has to be searched for, or MISS for no selection.
int GRD_parse_params(const std::string& str, VAR_data* params, int* type);
/// A key for one variable. Result 0.
int GRD_set_params(VAR_data* params, int time, int ltype, int level, int var);
/// 1 if a record fits a key and a grid number, MISS for any; else 0.
int GRD_test(const GRD_report* grid, const VAR_data* params, int type);

// Search

/// Fills `grids[i]` from an open file for each of `num` keys; the first record that fits wins. Filled ones are left,
/// and so are entries that aren't plain variables, unless `num` is negative. 1 when none is missing, else 0.
int GRD_search(int grd_fd, GRD_report* grids, const VAR_data* params, int type, int num);
/// The same from record `first` on, of records whose dates have the fields of `date`. The headers that were met go into
/// `walked`, unless it is null.
int GRD_search_from(int grd_fd, int first, GRD_report* grids, const VAR_data* params, int type, int num,
                    const Date& date, std::vector<Record_codes>* walked);
/// The same for piece `ind` of a model in several files: each piece is copied to its place. The last that fits wins.
int GRD_search_piece(int grd_fd, int ind, GRD_report* grids, const VAR_data* params, int num);
/// Fills the table for the variable list from the files of a date, calculates what is to be calculated and writes what
/// is to be written. 1, or -1 if the file can't be opened.
int GRD_search_file_date(const Date* date);
/// The same for a named file.
int GRD_search_file(const std::string& filename);
/// Collects the grids that make up plot parameter `level` from the entry `start` on, at most `num` (negative: 1000).
/// Constants go to `values` unless that is null. `grds` takes a null behind the last.
/// Result: the index at which the walk stopped: that of the last item of `num`, or with fewer that of the first entry
/// that no longer belongs.
int GRD_find_param_grids(int start, int num, int level, GRD_report** grds, float* values);
/// Description of the file last read by the list searches.
GRD_info* GRD_get_info();
/// The pieces of the model.
GRD_specs& GRD_get_specs();
/// Makes a file that the user named go over the model: one that the convention makes tells the directory of all pieces,
/// any other is the only file.
void GRD_take_named_file();
/// Name of piece `ind` for a date.
std::string GRD_piece_file(int ind, const Date* date);

// One grid

/// One grid of a named file; the name may carry a selector. 1, 0 if not found, -1 if the file can't be opened.
int GRD_read_file(const std::string& filename, GRD_report* grid, GRD_info* info, int* type);
/// One grid of the file of a date; `extra` is the selector. Results as GRD_read_file.
int GRD_read_file_date(const Date* date, const std::string& extra, GRD_report* grid, GRD_info* info, int* type);
/// Makes the variables of the file of a date known that only the file itself has names for.
void GRD_learn_names(const Date* date);
/// Domain of the first fitting record of a file. 1 or -1.
int GRD_get_file_domain(const std::string& filename, Domain* domain);
/// The same for the file of a date, null for the date of the run; for a model in pieces the whole. 1 or -1.
int GRD_get_file_date_domain(const Date* date, Domain* domain);
/// 1 if an existing file can be used in place of a new calculation, its grid read into `grid`; else 0.
int GRD_read_check(const std::string& filename, GRD_report* grid, GRD_info* info, int* type, const Domain* domain);

/// Calls into units above this one. An empty one has the effect that its line tells.
struct grid_hooks {
    /// GRD_units. Empty: the values keep their units.
    int (*units)(GRD_report* grid, const std::string& units) = nullptr;
    /// GRD_piece_setup and GRD_piece_grid. Empty: models in pieces stay empty.
    int (*piece_setup)(GRD_report* grid, int nx, int ny, const GRD_report* piece) = nullptr;
    int (*piece_grid)(GRD_report* grid, int x, int y, const GRD_report* piece) = nullptr;
    /// GRD_calc_var. Empty: nothing is calculated.
    int (*calc_var)() = nullptr;
};
/// The hooks in force.
grid_hooks& GRD_hooks();

}  // namespace zav
