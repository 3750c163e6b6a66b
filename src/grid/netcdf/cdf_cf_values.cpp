#include "grid/netcdf/cdf_cf_values.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "frame/string.h"
#include "frame/zav.h"
#include "grid/netcdf/cdf_api.h"

namespace zav {
namespace {

/// Most numbers in an attribute that are looked at.
constexpr std::size_t MOST_NUMBERS = 1024;
/// Values that are read at once.
constexpr std::size_t BLOCK = std::size_t{1} << 20;

bool is_real_type(int type) { return type == NC_FLOAT || type == NC_DOUBLE; }

/// What is added to a negative number of a signed type that is meant as unsigned.
double unsigned_wrap(int type) {
    switch (type) {
        case NC_BYTE:
            return 256.0;
        case NC_SHORT:
            return 65536.0;
        case NC_INT:
            return 4294967296.0;
        default:
            return 0.0;
    }
}

/// What the library fills a variable with that isn't written; bytes have no such number.
bool default_fill(int type, double* fill) {
    switch (type) {
        case NC_SHORT:
            *fill = NC_FILL_SHORT;
            return true;
        case NC_INT:
            *fill = NC_FILL_INT;
            return true;
        case NC_FLOAT:
        case NC_DOUBLE:
            *fill = static_cast<double>(NC_FILL_FLOAT);
            return true;
        default:
            return false;
    }
}

bool is_unsigned(int nc, const Cdf_var& var) {
    std::string text = cf_text_att(nc, var.id, "_Unsigned");
    low_string(text);
    return text == "true";
}

void take_bounds(int nc, const Cdf_var& var, Cf_packing& packing) {
    bool real = false;
    const std::vector<double> range = cf_number_atts(nc, var.id, "valid_range", &real);
    if (range.size() == 2) {
        packing.low = range[0];
        packing.high = range[1];
        packing.of_values = real;
    }
    const std::vector<double> low = cf_number_atts(nc, var.id, "valid_min", &real);
    if (!low.empty()) packing.low = low[0];
    if (!low.empty()) packing.of_values = real;
    const std::vector<double> high = cf_number_atts(nc, var.id, "valid_max", &real);
    if (!high.empty()) packing.high = high[0];
    if (!high.empty()) packing.of_values = real;
    packing.of_values = packing.of_values && !is_real_type(var.type);
}

/// Reads the rows from `row` on, `rows` of them, in the order of the file: x or y fastest, as the dimensions stand.
bool read_rows(int nc, const Cdf_var& var, const Cf_slice& slice, std::size_t row, std::size_t rows, double* numbers) {
    Cdf_index start(slice.start);
    Cdf_index count(start.size(), 1);
    start[slice.y] = row;
    count[slice.y] = rows;
    start[slice.x] = 0;
    count[slice.x] = var.sizes[slice.x];
    if (!cdf_holds(nc, var, start, count)) return false;
    return cdf_api()->get_vara_double(nc, var.id, start.data(), count.data(), numbers) == NC_NOERR;
}

}  // namespace

std::string cf_text_att(int nc, int var, const char* name) {
    std::string text;
    return cdf_text_att(nc, var, name, text) ? text : std::string();
}

std::vector<double> cf_number_atts(int nc, int var, const char* name, bool* is_float) {
    const Cdf_api* api = cdf_api();
    nc_type type = 0;
    std::size_t size = 0;
    if (api->inq_att(nc, var, name, &type, &size) != NC_NOERR || size == 0 || size > MOST_NUMBERS) return {};
    if (type <= 0 || type > NC_UINT64 || type == NC_CHAR) return {};
    std::vector<double> values(size);
    if (api->get_att_double(nc, var, name, values.data()) != NC_NOERR) return {};
    if (is_float != nullptr) *is_float = is_real_type(type);
    return values;
}

std::string cf_dim_name(int nc, int dim) {
    std::array<char, NC_MAX_NAME + 1> name{};
    std::size_t size = 0;
    return cdf_api()->inq_dim(nc, dim, name.data(), &size) == NC_NOERR ? std::string(name.data()) : std::string();
}

bool cf_all_values(int nc, const Cdf_var& var, std::size_t most, std::vector<double>& values) {
    const Cdf_index start(var.sizes.size(), 0);
    std::size_t size = 1;
    for (const std::size_t length : var.sizes) {
        if (length == 0 || length > most / size) return false;
        size *= length;
    }
    if (!cdf_holds(nc, var, start, var.sizes) || cdf_blocks(nc, var, 0) < size) return false;
    values.resize(size);
    return cdf_api()->get_vara_double(nc, var.id, start.data(), var.sizes.data(), values.data()) == NC_NOERR;
}

float Cf_packing::value(double number) const {
    const double whole = number < 0.0 ? number + wrap : number;
    for (const double none : missing) {
        if (whole == none) return FMISS;
    }
    const double unpacked = whole * scale + offset;
    const double bounded = of_values ? unpacked : whole;
    if (!(bounded >= low && bounded <= high)) return FMISS;
    return std::fabs(unpacked) <= static_cast<double>(std::numeric_limits<float>::max()) ? static_cast<float>(unpacked)
                                                                                         : FMISS;
}

Cf_packing cf_packing(int nc, const Cdf_var& var) {
    Cf_packing packing;
    packing.low = -std::numeric_limits<double>::infinity();
    packing.high = std::numeric_limits<double>::infinity();
    cdf_number_att(nc, var.id, "scale_factor", &packing.scale);
    cdf_number_att(nc, var.id, "add_offset", &packing.offset);
    if (is_unsigned(nc, var)) packing.wrap = unsigned_wrap(var.type);
    packing.missing = cf_number_atts(nc, var.id, "_FillValue");
    double fill = 0.0;
    if (packing.missing.empty() && default_fill(var.type, &fill)) packing.missing.push_back(fill);
    const std::vector<double> more = cf_number_atts(nc, var.id, "missing_value");
    packing.missing.insert(packing.missing.end(), more.begin(), more.end());
    take_bounds(nc, var, packing);
    for (double& none : packing.missing) {
        if (none < 0.0) none += packing.wrap;
        if (var.type == NC_FLOAT) none = static_cast<double>(static_cast<float>(none));
    }
    if (!packing.of_values && packing.wrap > 0.0) {
        if (packing.low < 0.0 && std::isfinite(packing.low)) packing.low += packing.wrap;
        if (packing.high < 0.0) packing.high += packing.wrap;
    }
    return packing;
}

bool cf_read_slice(int nc, const Cdf_var& var, const Cf_slice& slice, float* grid) {
    const Cf_packing packing = cf_packing(nc, var);
    const std::size_t nx = var.sizes[slice.x];
    const std::size_t ny = var.sizes[slice.y];
    const std::size_t at_once = std::clamp<std::size_t>(BLOCK / nx, 1, ny);
    std::vector<double> numbers(nx * at_once);
    const bool columns = slice.x < slice.y;
    for (std::size_t row = 0; row < ny; row += at_once) {
        const std::size_t rows = std::min(at_once, ny - row);
        if (!read_rows(nc, var, slice, row, rows, numbers.data())) return false;
        for (std::size_t j = 0; j < rows; j++) {
            float* line = grid + nx * (slice.south_first ? ny - 1 - row - j : row + j);
            for (std::size_t i = 0; i < nx; i++) {
                const double number = columns ? numbers[i * rows + j] : numbers[j * nx + i];
                line[slice.east_first ? nx - 1 - i : i] = packing.value(number);
            }
        }
    }
    return true;
}

}  // namespace zav
