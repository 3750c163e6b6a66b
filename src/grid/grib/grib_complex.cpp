#include <algorithm>
#include <span>

#include "frame/mess.h"
#include "frame/zav.h"
#include "grid/grib/grib.h"
#include "grid/grib/grib_state.h"

namespace zav {
namespace {

/// Undoes spatial differencing over the values as they come. Sums wrap, so that a garbled field can't overflow.
class Differences {
  public:
    Differences(int order, std::int64_t first, std::int64_t second, std::int64_t least)
        : order_(order), first_(first), second_(second), least_(least) {}

    std::int64_t add(std::int64_t value) {
        if (order_ != 1 && order_ != 2) return value;
        std::uint64_t result = 0;
        if (count_ == 0) {
            result = static_cast<std::uint64_t>(first_);
        } else if (count_ == 1 && order_ == 2) {
            result = static_cast<std::uint64_t>(second_);
        } else {
            result = static_cast<std::uint64_t>(value) + static_cast<std::uint64_t>(least_);
            result += order_ == 1 ? last_ : 2 * last_ - before_;
        }
        if (count_ < 2) ++count_;
        before_ = last_;
        last_ = result;
        return static_cast<std::int64_t>(result);
    }

  private:
    int order_;
    std::int64_t first_;
    std::int64_t second_;
    std::int64_t least_;
    int count_ = 0;
    std::uint64_t last_ = 0;
    std::uint64_t before_ = 0;
};

/// A signed value of `octets` octets, sign and magnitude.
std::int64_t read_extra(BitReader& bits, int octets) {
    const bool negative = bits.read(1) == 1;
    const std::int64_t magnitude = std::max<std::int64_t>(bits.read(static_cast<unsigned>(octets * 8 - 1)), 0);
    return negative ? -magnitude : magnitude;
}

Differences read_differences(BitReader& bits, const GribPacking& packing) {
    if (packing.type != 3 || packing.spat_bytes < 1 || packing.spat_bytes > 4) return {packing.order, 0, 0, 0};
    const std::int64_t first = read_extra(bits, packing.spat_bytes);
    const std::int64_t second = packing.order == 2 ? read_extra(bits, packing.spat_bytes) : 0;
    const std::int64_t least = read_extra(bits, packing.spat_bytes);
    MESS_print(MESS_DEBUG, "DS1 %d %d %d\n", static_cast<int>(first), static_cast<int>(second),
               static_cast<int>(least));
    return {packing.order, first, second, least};
}

/// One group of values with a common reference and width.
struct Group {
    std::int64_t reference;
    unsigned width;
    std::int64_t length;
};

/// Walks the three lists that describe the groups side by side, without a copy of them.
class Groups {
  public:
    /// `bits` stands at the lists and is moved behind them.
    Groups(BitReader& bits, const GribPacking& packing) : packing_(packing) {
        good_ = take_list(bits, packing.num_bits_gref, &references_) &&
                take_list(bits, packing.num_bits_gwidth, &widths_) && take_list(bits, packing.num_bits_glen, &lengths_);
    }

    bool good() const { return good_; }

    Group next() {
        ++count_;
        const std::int64_t width = packing_.ref_gwidth + widths_.read(static_cast<unsigned>(packing_.num_bits_gwidth));
        std::int64_t length =
            packing_.ref_glen + lengths_.read(static_cast<unsigned>(packing_.num_bits_glen)) * packing_.inc_glen;
        if (count_ == packing_.num_group) length = packing_.last_glen;
        return {references_.read(static_cast<unsigned>(packing_.num_bits_gref)),
                static_cast<unsigned>(std::min<std::int64_t>(width, 64)), length};
    }

  private:
    bool take_list(BitReader& bits, int width, BitReader* list) const {
        *list = bits;
        if (width > 32 || !bits.skip(static_cast<std::uint64_t>(packing_.num_group) * static_cast<unsigned>(width))) {
            return false;
        }
        bits.align();
        return true;
    }

    const GribPacking& packing_;
    BitReader references_;
    BitReader widths_;
    BitReader lengths_;
    long count_ = 0;
    bool good_ = false;
};

constexpr std::int64_t all_ones(unsigned width) { return (std::int64_t{1} << width) - 1; }

/// True if `value` stands for a missing point among values whose greatest is `most`.
bool is_missing(int miss_type, std::int64_t value, std::int64_t most) {
    return miss_type > 0 && (value == most || (miss_type == 2 && value == most - 1));
}

/// The points of one group, whose bits are all there.
void unpack_group(const Group& group, const GribPacking& packing, BitReader& bits, Differences& differences,
                  const GribScale& scale, std::span<float> values) {
    const std::int64_t most = all_ones(group.width == 0 ? static_cast<unsigned>(packing.num_bits_gref) : group.width);
    if (group.width == 0 && is_missing(packing.miss_type, group.reference, most)) {
        std::fill(values.begin(), values.end(), FMISS);
        return;
    }
    const int miss_type = group.width == 0 ? 0 : packing.miss_type;
    for (float& value : values) {
        const std::int64_t packed = bits.read(group.width);
        const bool missing = is_missing(miss_type, packed, most);
        value = missing ? FMISS : scale.value(static_cast<float>(differences.add(packed + group.reference)));
    }
}

}  // namespace

bool grib_unpack_complex(const GribState& state, std::size_t count, std::vector<float>& values) {
    const GribPacking& packing = state.packing;
    // A group without a point says nothing, so there are no more groups than values.
    if (packing.num_group < 0 || static_cast<std::size_t>(packing.num_group) > count) return false;
    const GribScale scale(state);
    BitReader bits = state.bits;
    Differences differences = read_differences(bits, packing);
    Groups groups(bits, packing);
    if (!groups.good()) return false;
    values.clear();
    values.reserve(std::min(count, state.packed.size() * 8));
    for (long g = 0; g < packing.num_group; ++g) {
        const Group group = groups.next();
        const std::uint64_t room = count - values.size();
        const std::uint64_t length =
            std::min(static_cast<std::uint64_t>(std::max<std::int64_t>(group.length, 0)), room);
        if (group.width > 32 || !bits.has(length * group.width)) return false;
        const std::size_t start = values.size();
        values.resize(start + length);
        unpack_group(group, packing, bits, differences, scale, std::span(values).subspan(start));
    }
    return true;
}

}  // namespace zav
