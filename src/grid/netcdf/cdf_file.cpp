// A netCDF file's parts through the library. Nothing is asked of it before shapes, types and the file's real size have
// been looked at.

#include "grid/netcdf/cdf_file.h"

#include <algorithm>
#include <limits>
#include <map>
#include <memory>

#include "files/files.h"
#include "frame/mess.h"
#include "frame/status.h"
#include "frame/string.h"
#include "grid/netcdf/cdf_api.h"
#include "grid/netcdf/cdf_classic.h"

namespace zav {
namespace {

/// Longest text attribute and most numbers in an attribute that are looked at.
constexpr std::size_t MOST_ATTRIBUTE = 65536;
/// Longest text of a variable.
constexpr std::size_t MOST_TEXT = 4096;

/// What is known of an open file beside the library.
struct Known_file {
    bool classic = false;
    std::size_t size = 0;   ///< in octets
    Classic_layout layout;  ///< of a classic file
};

struct State {
    std::map<int, Known_file> files;  ///< by the library's handle
};
State state;

/// A path that the library takes as a file's name whatever the name is: it reads some as URLs or for options in them.
std::string safe_path(std::FILE* file) { return text_format("/proc/self/fd/%d", fileno(file)); }

bool is_hdf5(std::FILE* file) {
    std::array<char, CDF_HDF5_MAGIC.size()> bytes{};
    const std::size_t size = std::fread(bytes.data(), 1, bytes.size(), file);
    std::rewind(file);
    return size == bytes.size() && bytes == CDF_HDF5_MAGIC;
}

std::size_t file_size(std::FILE* file) {
    std::fseek(file, 0, SEEK_END);
    const long size = std::ftell(file);
    std::rewind(file);
    return size < 0 ? 0 : static_cast<std::size_t>(size);
}

/// Opens a file by the library's `mode`. -1 if it isn't what it says it is.
int open_file(const std::string& path, int mode) {
    if (FILE_is_stream(path) != 0) return -1;
    const file_ptr file = FILE_open(path, "r");
    if (!file || FILE_is_file(safe_path(file.get())) == 0) return -1;
    Known_file known;
    known.classic = !is_hdf5(file.get());
    known.size = file_size(file.get());
    if (known.classic && !classic_read_layout(file.get(), &known.layout)) return -1;
    const Cdf_api* api = cdf_api();
    int nc = -1;
    if (api == nullptr || api->open(safe_path(file.get()).c_str(), mode, &nc) != NC_NOERR) return -1;
    state.files[nc] = std::move(known);
    return nc;
}

/// Text without what follows a NUL and without blanks at its end.
std::string trimmed(std::string text) {
    text.resize(std::min(text.size(), text.find('\0')));
    trim_string(text);
    return text;
}

/// Takes over a string of the library.
std::string take_string(const Cdf_api* api, std::size_t count, char** strings) {
    std::string text = count == 0 || strings[0] == nullptr ? "" : strings[0];
    api->free_string(count, strings);
    return text;
}

bool is_number_type(int type) { return type > 0 && type <= NC_UINT64 && type != NC_CHAR; }

/// Number of values of a block, 0 if it doesn't lie inside of the variable or is too large.
std::size_t block_size(const Cdf_var& var, const Cdf_index& start, const Cdf_index& count) {
    if (!var.found() || start.size() != var.sizes.size() || count.size() != var.sizes.size()) return 0;
    std::size_t size = 1;
    for (std::size_t i = 0; i < count.size(); i++) {
        if (count[i] == 0 || start[i] >= var.sizes[i] || count[i] > var.sizes[i] - start[i]) return 0;
        if (count[i] > CDF_MOST_VALUES / size) return 0;
        size *= count[i];
    }
    return size;
}

/// A netCDF-4 variable may be packed, but what the library has to unpack at once stays within a grid's size; one that
/// isn't packed has to be there.
bool unpacked_is_bounded(const Known_file& known, int nc, const Cdf_var& var) {
    constexpr std::size_t most_octets = CDF_MOST_VALUES * 4;
    if (known.classic || var.sizes.empty()) return true;
    std::vector<std::size_t> chunk(var.sizes.size());
    int storage = 0;
    if (cdf_api()->inq_var_chunking(nc, var.id, &storage, chunk.data()) != NC_NOERR) return false;
    if (storage != NC_CHUNKED) return true;
    std::size_t octets = sizeof(double);
    for (const std::size_t size : chunk) {
        if (size == 0 || size > most_octets / octets) return false;
        octets *= size;
    }
    return true;
}

/// True if the file holds that block.
bool file_holds(int nc, const Cdf_var& var, const Cdf_index& start, const Cdf_index& count) {
    const auto known = state.files.find(nc);
    if (known == state.files.end() || block_size(var, start, count) == 0) return false;
    if (!known->second.classic) return unpacked_is_bounded(known->second, nc, var);
    Cdf_index last(start);
    for (std::size_t i = 0; i < last.size(); i++) last[i] += count[i] - 1;
    return classic_holds(known->second.layout, var.id, last);
}

}  // namespace

// Files

int cdf_open_read(const std::string& path) { return open_file(path, NC_NOWRITE); }

int cdf_open_append(const std::string& path) { return open_file(path, NC_WRITE); }

int cdf_create(const std::string& path) {
    if (FILE_is_stream(path) != 0 || cdf_api() == nullptr) return -1;
    const file_ptr file = FILE_open(path, "w");
    if (!file || FILE_is_file(safe_path(file.get())) == 0) return -1;
    int nc = -1;
    if (cdf_api()->create(safe_path(file.get()).c_str(), NC_CLOBBER, &nc) != NC_NOERR) return -1;
    state.files[nc];
    return nc;
}

bool cdf_close(int nc) {
    if (state.files.erase(nc) == 0) return false;
    return cdf_api()->close(nc) == NC_NOERR;
}

// Dimensions

Cdf_dim cdf_dim(int nc, int id) {
    std::array<char, NC_MAX_NAME + 1> name{};
    std::size_t size = 0;
    if (cdf_api()->inq_dim(nc, id, name.data(), &size) != NC_NOERR) return {};
    return {id, static_cast<long>(std::min(size, static_cast<std::size_t>(std::numeric_limits<int>::max())))};
}

Cdf_dim cdf_dim(int nc, const char* name) {
    int id = -1;
    return cdf_api()->inq_dimid(nc, name, &id) == NC_NOERR ? cdf_dim(nc, id) : Cdf_dim{};
}

Cdf_dim cdf_dim(int nc, const std::vector<const char*>& names) {
    for (const char* name : names) {
        const Cdf_dim dim = cdf_dim(nc, name);
        if (dim.id >= 0) return dim;
    }
    return {};
}

// Variables

int cdf_var_count(int nc) {
    int dims = 0;
    int vars = 0;
    int atts = 0;
    int record = -1;
    return cdf_api()->inq(nc, &dims, &vars, &atts, &record) == NC_NOERR ? vars : 0;
}

Cdf_var cdf_var(int nc, int id) {
    std::array<char, NC_MAX_NAME + 1> name{};
    std::array<int, NC_MAX_VAR_DIMS> dims{};
    nc_type type = 0;
    int rank = 0;
    int atts = 0;
    if (cdf_api()->inq_var(nc, id, name.data(), &type, &rank, dims.data(), &atts) != NC_NOERR) return {};
    Cdf_var var;
    var.id = id;
    var.name = name.data();
    var.type = type;
    var.dims.assign(dims.begin(), dims.begin() + rank);
    for (const int dim : var.dims) {
        std::size_t size = 0;
        if (cdf_api()->inq_dim(nc, dim, name.data(), &size) != NC_NOERR) return {};
        var.sizes.push_back(size);
    }
    return var;
}

Cdf_var cdf_var(int nc, const char* name) {
    int id = -1;
    return cdf_api()->inq_varid(nc, name, &id) == NC_NOERR ? cdf_var(nc, id) : Cdf_var{};
}

Cdf_var cdf_var(int nc, const std::vector<const char*>& names) {
    for (const char* name : names) {
        Cdf_var var = cdf_var(nc, name);
        if (var.found()) return var;
    }
    return {};
}

bool cdf_is_number(const Cdf_var& var) { return var.found() && is_number_type(var.type); }

bool cdf_is_text(const Cdf_var& var) { return var.found() && (var.type == NC_CHAR || var.type == NC_STRING); }

// Attributes

bool cdf_text_att(int nc, int var, const char* name, std::string& text) {
    const Cdf_api* api = cdf_api();
    nc_type type = 0;
    std::size_t size = 0;
    if (api->inq_att(nc, var, name, &type, &size) != NC_NOERR || size > MOST_ATTRIBUTE) return false;
    if (type == NC_CHAR) {
        std::string value(size, '\0');
        if (size > 0 && api->get_att_text(nc, var, name, value.data()) != NC_NOERR) return false;
        text = trimmed(std::move(value));
        return true;
    }
    if (type != NC_STRING || size == 0) return false;
    std::vector<char*> strings(size, nullptr);
    if (api->get_att_string(nc, var, name, strings.data()) != NC_NOERR) return false;
    text = trimmed(take_string(api, size, strings.data()));
    return true;
}

bool cdf_number_att(int nc, int var, const char* name, double* value) {
    const Cdf_api* api = cdf_api();
    nc_type type = 0;
    std::size_t size = 0;
    if (api->inq_att(nc, var, name, &type, &size) != NC_NOERR) return false;
    if (!is_number_type(type) || size == 0 || size > MOST_ATTRIBUTE) return false;
    std::vector<double> values(size);
    if (api->get_att_double(nc, var, name, values.data()) != NC_NOERR) return false;
    *value = values[0];
    return true;
}

// Values

bool cdf_holds(int nc, const Cdf_var& var, const Cdf_index& start, const Cdf_index& count) {
    return cdf_is_number(var) && file_holds(nc, var, start, count);
}

std::size_t cdf_blocks(int nc, const Cdf_var& var, std::size_t tail) {
    const auto known = state.files.find(nc);
    if (known == state.files.end() || !cdf_is_number(var) || tail > var.sizes.size()) return 0;
    const std::size_t leading = var.sizes.size() - tail;
    std::size_t high = 1;
    for (std::size_t i = 0; i < leading; i++) {
        if (var.sizes[i] == 0) return 0;
        high = std::min(high, known->second.size / var.sizes[i] + 1) * var.sizes[i];
    }
    high = std::min(high, known->second.size);
    const auto held = [&](std::size_t block) {
        Cdf_index start(var.sizes.size(), 0);
        Cdf_index count(var.sizes);
        for (std::size_t i = leading; i-- > 0; block /= var.sizes[i]) {
            start[i] = block % var.sizes[i];
            count[i] = 1;
        }
        return file_holds(nc, var, start, count);
    };
    // Blocks stand in order, so those that are missing are the last ones.
    std::size_t low = 0;
    while (low < high) {
        const std::size_t middle = low + (high - low) / 2;
        if (held(middle)) {
            low = middle + 1;
        } else {
            high = middle;
        }
    }
    return low;
}

void cdf_tell_cut(std::size_t held, std::size_t claimed) {
    ZAV_note(STATUS_LAYER);
    MESS_print(MESS_WARN, "netCDF grid file is cut short, or its grids are too large: %zu of %zu can be read\n", held,
               claimed);
}

bool cdf_floats(int nc, const Cdf_var& var, const Cdf_index& start, const Cdf_index& count, float* values) {
    if (!cdf_holds(nc, var, start, count)) return false;
    const int result = cdf_api()->get_vara_float(nc, var.id, start.data(), count.data(), values);
    // Doubles beyond a float's range come as infinities; the rest of the block is read.
    return result == NC_NOERR || result == NC_ERANGE;
}

bool cdf_value(int nc, const Cdf_var& var, const Cdf_index& index, double* value) {
    const Cdf_index count(index.size(), 1);
    if (!cdf_holds(nc, var, index, count)) return false;
    return cdf_api()->get_vara_double(nc, var.id, index.data(), count.data(), value) == NC_NOERR;
}

bool cdf_values(int nc, const Cdf_var& var, std::size_t most, std::vector<double>& values) {
    if (var.sizes.size() != 1 || var.sizes[0] > most) return false;
    const Cdf_index start = {0};
    if (!cdf_holds(nc, var, start, var.sizes)) return false;
    values.resize(var.sizes[0]);
    return cdf_api()->get_vara_double(nc, var.id, start.data(), var.sizes.data(), values.data()) == NC_NOERR;
}

bool cdf_text(int nc, const Cdf_var& var, const Cdf_index& index, std::string& text) {
    const Cdf_api* api = cdf_api();
    Cdf_index start(index);
    Cdf_index count(index.size(), 1);
    if (!cdf_is_text(var)) return false;
    if (var.type == NC_STRING) {
        char* string = nullptr;
        if (!file_holds(nc, var, start, count)) return false;
        if (api->get_vara_string(nc, var.id, start.data(), count.data(), &string) != NC_NOERR) return false;
        text = trimmed(take_string(api, 1, &string));
        return true;
    }
    if (var.sizes.size() != index.size() + 1) return false;
    start.push_back(0);
    count.push_back(std::min(var.sizes.back(), MOST_TEXT));
    if (!file_holds(nc, var, start, count)) return false;
    std::string value(count.back(), '\0');
    if (api->get_vara_text(nc, var.id, start.data(), count.data(), value.data()) != NC_NOERR) return false;
    text = trimmed(std::move(value));
    return true;
}

}  // namespace zav
