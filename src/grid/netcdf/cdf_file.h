#pragma once

// Private to grid/netcdf: a netCDF file's parts, each looked at before it is read. `nc` is the library's handle.

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace zav {

/// Most values that one read gives: a grid of 128 MB.
constexpr std::size_t CDF_MOST_VALUES = std::size_t{1} << 25;

/// First octets of a netCDF-4 file, which is an HDF5 file.
constexpr std::array<char, 8> CDF_HDF5_MAGIC = {'\x89', 'H', 'D', 'F', '\r', '\n', '\x1a', '\n'};

// Files

/// Opens a file for reading, the copy of a stream included. -1 if it isn't a netCDF file or its header lies.
int cdf_open_read(const std::string& path);
/// Opens a file for adding to it. -1 if it can't be.
int cdf_open_append(const std::string& path);
/// Makes a file, or an existing one anew, for definitions. -1 if it can't be.
int cdf_create(const std::string& path);
/// False if what was written isn't all in the file.
bool cdf_close(int nc);

// Dimensions

/// A dimension, by its id; -1 as id and size when there is none.
struct Cdf_dim {
    int id = -1;
    long size = -1;
};
Cdf_dim cdf_dim(int nc, const char* name);
/// The first of several names that the file has.
Cdf_dim cdf_dim(int nc, const std::vector<const char*>& names);
/// The dimension with that id.
Cdf_dim cdf_dim(int nc, int id);

// Variables

/// A variable, with id -1 when there is none.
struct Cdf_var {
    int id = -1;
    std::string name;
    int type = 0;                    ///< NC_FLOAT and kin
    std::vector<int> dims;           ///< ids of its dimensions, the slowest first
    std::vector<std::size_t> sizes;  ///< their sizes

    bool found() const { return id >= 0; }
};
int cdf_var_count(int nc);
/// The variable with that id, from 0.
Cdf_var cdf_var(int nc, int id);
/// The variable of that name, case as it stands.
Cdf_var cdf_var(int nc, const char* name);
/// The first of several names that the file has.
Cdf_var cdf_var(int nc, const std::vector<const char*>& names);
/// True for any type of number.
bool cdf_is_number(const Cdf_var& var);
/// True for characters and for netCDF-4's strings.
bool cdf_is_text(const Cdf_var& var);

// Attributes; `var` is a variable's id or CDF_GLOBAL

constexpr int CDF_GLOBAL = -1;
/// A text attribute without NULs and blanks at its end. False if there is none; one that isn't text counts as none.
bool cdf_text_att(int nc, int var, const char* name, std::string& text);
/// The first number of a numeric attribute. False if there is none.
bool cdf_number_att(int nc, int var, const char* name, double* value);

// Values. A read fails, and gives false, when the variable has another shape or type than asked for, when the place
// lies outside of it, when the file doesn't hold it (a file cut short), or when it is more than CDF_MOST_VALUES.

using Cdf_index = std::vector<std::size_t>;

/// The block of numbers from `start`, `count` in each dimension, in the order of the file. `values` has room for it.
bool cdf_floats(int nc, const Cdf_var& var, const Cdf_index& start, const Cdf_index& count, float* values);
/// True if `cdf_floats` can be asked for this block. Tells before room is made for it.
bool cdf_holds(int nc, const Cdf_var& var, const Cdf_index& start, const Cdf_index& count);
/// Number of blocks of a variable's last `tail` dimensions, as many as the file holds. Blocks are counted along the
/// dimensions in front of those, the last of them fastest. A netCDF-4 file holds at most one for each of its octets.
std::size_t cdf_blocks(int nc, const Cdf_var& var, std::size_t tail);
/// Tells that a file was cut short or has grids beyond CDF_MOST_VALUES, and how many can be read.
void cdf_tell_cut(std::size_t held, std::size_t claimed);
/// One number.
bool cdf_value(int nc, const Cdf_var& var, const Cdf_index& index, double* value);
/// All numbers of a variable of one dimension with at most `most` of them.
bool cdf_values(int nc, const Cdf_var& var, std::size_t most, std::vector<double>& values);
/// The text that a variable has at `index`: its characters along the last dimension, which `index` leaves out, up to a
/// NUL and without blanks at the end; or one string.
bool cdf_text(int nc, const Cdf_var& var, const Cdf_index& index, std::string& text);

}  // namespace zav
