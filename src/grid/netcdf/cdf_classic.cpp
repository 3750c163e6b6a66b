// The header of classic netCDF files (Unidata, NetCDF User's Guide, appendix on file formats): big-endian numbers,
// lists that begin with a tag and a count, names and values filled up to four octets.

#include "grid/netcdf/cdf_classic.h"

#include <netcdf.h>

#include <algorithm>
#include <array>
#include <limits>

namespace zav {
namespace {

/// Tags of the lists.
enum : std::uint64_t { TAG_DIMENSION = 10, TAG_VARIABLE = 11, TAG_ATTRIBUTE = 12 };

/// Octets of a value by its type, NC_BYTE to NC_UINT64.
constexpr std::array<std::uint64_t, 12> TYPE_SIZES = {0, 1, 1, 2, 4, 4, 8, 1, 2, 4, 8, 8};
constexpr std::uint64_t LAST_CLASSIC_TYPE = NC_DOUBLE;
constexpr std::uint64_t LAST_TYPE = NC_UINT64;
constexpr std::uint64_t MOST = std::numeric_limits<std::int64_t>::max();

std::uint64_t filled(std::uint64_t octets) { return (octets + 3) / 4 * 4; }

/// The product, or MOST if it is larger.
std::uint64_t times(std::uint64_t a, std::uint64_t b) { return a != 0 && b > MOST / a ? MOST : a * b; }
/// The sum, or MOST if it is larger.
std::uint64_t plus(std::uint64_t a, std::uint64_t b) { return b > MOST - std::min(a, MOST) ? MOST : a + b; }

/// Reads a header from start to end. After the first fault nothing is read any more.
class Header {
  public:
    Header(std::FILE* file, Classic_layout* layout) : file_(file), layout_(layout) {}

    bool read();

  private:
    std::uint64_t number(int octets);
    std::uint64_t word() { return number(4); }
    /// A count or size: 8 octets in CDF-5.
    std::uint64_t size() { return number(version_ == 5 ? 8 : 4); }
    /// Number of items in a list; each takes at least `least` octets.
    std::uint64_t list(std::uint64_t tag, std::uint64_t least);
    void pass(std::uint64_t octets);
    void name();
    std::uint64_t type();
    void dimensions();
    void attributes();
    void variable();
    void set_record_steps();

    std::FILE* file_;
    Classic_layout* layout_;
    int version_ = 0;
    bool good_ = true;
    std::uint64_t at_ = 0;             ///< octets read
    std::vector<std::uint64_t> dims_;  ///< sizes, 0 for the record dimension
    std::vector<std::size_t> record_vars_;
};

std::uint64_t Header::number(int octets) {
    std::array<unsigned char, 8> bytes{};
    const auto count = static_cast<std::size_t>(octets);
    if (good_) good_ = std::fread(bytes.data(), 1, count, file_) == count;
    if (!good_) return 0;
    at_ += count;
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < count; i++) value = value << 8 | bytes[i];
    if (value > MOST) good_ = false;
    return good_ ? value : 0;
}

std::uint64_t Header::list(std::uint64_t tag, std::uint64_t least) {
    const std::uint64_t found = word();
    const std::uint64_t count = size();
    if (found != tag && (found != 0 || count != 0)) good_ = false;
    if (count > layout_->file_size / least) good_ = false;
    return good_ ? count : 0;
}

void Header::pass(std::uint64_t octets) {
    if (octets > layout_->file_size - std::min(at_, layout_->file_size)) good_ = false;
    if (!good_) return;
    good_ = std::fseek(file_, static_cast<long>(octets), SEEK_CUR) == 0;
    at_ += octets;
}

void Header::name() {
    const std::uint64_t length = size();
    if (length > NC_MAX_NAME) good_ = false;
    pass(filled(length));
}

std::uint64_t Header::type() {
    const std::uint64_t code = word();
    if (code == 0 || code > (version_ == 5 ? LAST_TYPE : LAST_CLASSIC_TYPE)) good_ = false;
    return good_ ? code : 0;
}

void Header::dimensions() {
    for (std::uint64_t left = list(TAG_DIMENSION, 8); left > 0 && good_; left--) {
        name();
        dims_.push_back(size());
    }
    if (std::count(dims_.begin(), dims_.end(), 0) > 1) good_ = false;
}

void Header::attributes() {
    for (std::uint64_t left = list(TAG_ATTRIBUTE, 12); left > 0 && good_; left--) {
        name();
        const std::uint64_t octets = TYPE_SIZES[type()];
        const std::uint64_t values = size();
        if (values > layout_->file_size) good_ = false;
        if (good_) pass(filled(octets * values));
    }
}

void Header::variable() {
    Classic_var var;
    name();
    const std::uint64_t rank = size();
    if (rank > NC_MAX_VAR_DIMS) good_ = false;
    bool record = false;
    for (std::uint64_t i = 0; i < rank && good_; i++) {
        const std::uint64_t id = size();
        if (id >= dims_.size()) good_ = false;
        if (!good_) return;
        const bool is_record = dims_[id] == 0;
        if (is_record && i > 0) good_ = false;
        record = record || is_record;
        var.sizes.push_back(is_record ? 1 : dims_[id]);
    }
    attributes();
    var.element = TYPE_SIZES[type()];
    size();  // the size in octets, which follows from the dimensions
    var.begin = number(version_ == 1 ? 4 : 8);
    if (record) record_vars_.push_back(layout_->vars.size());
    layout_->vars.push_back(std::move(var));
}

/// A record holds one record of each variable, each filled up to four octets unless it is the only one.
void Header::set_record_steps() {
    std::uint64_t step = 0;
    for (const std::size_t i : record_vars_) {
        const Classic_var& var = layout_->vars[i];
        std::uint64_t octets = var.element;
        for (const std::uint64_t dim : var.sizes) octets = times(octets, dim);
        step = plus(step, record_vars_.size() > 1 && octets < MOST - 4 ? filled(octets) : octets);
    }
    for (const std::size_t i : record_vars_) layout_->vars[i].record_step = step;
}

bool Header::read() {
    std::fseek(file_, 0, SEEK_END);
    layout_->file_size = static_cast<std::uint64_t>(std::max(std::ftell(file_), 0L));
    std::rewind(file_);
    const std::uint64_t magic = word();
    version_ = static_cast<int>(magic & 0xFFU);
    const bool known = version_ == 1 || version_ == 2 || version_ == 5;
    if (!good_ || magic >> 8 != 0x434446U || !known) return false;  // "CDF"
    size();  // the number of records, which what the file holds bounds
    dimensions();
    attributes();
    for (std::uint64_t left = list(TAG_VARIABLE, 28); left > 0 && good_; left--) variable();
    if (good_) set_record_steps();
    return good_;
}

}  // namespace

bool classic_read_layout(std::FILE* file, Classic_layout* layout) { return Header(file, layout).read(); }

bool classic_holds(const Classic_layout& layout, int var, const std::vector<std::size_t>& last) {
    if (var < 0 || static_cast<std::size_t>(var) >= layout.vars.size()) return false;
    const Classic_var& place = layout.vars[static_cast<std::size_t>(var)];
    if (last.size() != place.sizes.size()) return false;
    const bool record = place.record_step > 0;
    std::uint64_t index = 0;
    for (std::size_t i = record ? 1 : 0; i < last.size(); i++) index = plus(times(index, place.sizes[i]), last[i]);
    std::uint64_t end = plus(place.begin, times(plus(index, 1), place.element));
    if (record) end = plus(end, times(last[0], place.record_step));
    return end <= layout.file_size;
}

}  // namespace zav
