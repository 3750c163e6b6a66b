// Random fields packed by a small encoder of its own, value by value against what went in.
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstring>
#include <random>

#include "grid/grib/grib_messages.h"

namespace zav::grib_test {
namespace {

/// Bits, most significant first.
class Bits {
  public:
    void put(std::int64_t value, int width) {
        for (int bit = width - 1; bit >= 0; --bit) {
            if (count_++ % 8 == 0) bytes.push_back(0);
            bytes.back() = static_cast<unsigned char>(bytes.back() | (value >> bit & 1) << (7 - (count_ - 1) % 8));
        }
    }
    void align() { count_ = 8 * static_cast<long>(bytes.size()); }
    /// A signed number of `octets`, sign and magnitude.
    void put_signed(std::int64_t value, int octets) {
        put(value < 0, 1);
        put(std::abs(value), 8 * octets - 1);
    }

    Bytes bytes;

  private:
    long count_ = 0;
};

int bits_for(std::int64_t most) {
    int bits = 0;
    while (most >> bits != 0) ++bits;
    return bits;
}

/// Scale and layout of a message, and what its points hold: a packed number, or nothing.
struct Field {
    int nx = 1;
    int ny = 1;
    int scanning = 0;
    int eighths = 0;  ///< the reference value
    int binary = 0;
    int decimal = 0;
    std::vector<std::int64_t> numbers;  ///< in the order of the message
    std::vector<bool> there;

    std::size_t points() const { return static_cast<std::size_t>(nx * ny); }
    float value(std::int64_t n) const {
        const float sfac = std::ldexp(1.0F, binary);
        const float dscale = static_cast<float>(std::pow(10.0, -decimal));
        return dscale * (static_cast<float>(n) * sfac + static_cast<float>(eighths) / 8.0F);
    }
    /// The grid that has to come out: a walk over the message's points.
    Values grid() const {
        Values out(points(), FMISS);
        for (int i = 0; i < nx * ny; ++i) {
            const int line = i / nx;
            const int row = scanning & 0x40 ? ny - 1 - line : line;
            const int column = scanning & 0x10 && line % 2 == 1 ? nx - 1 - i % nx : i % nx;
            if (there[i]) out[static_cast<std::size_t>(row * nx + column)] = value(numbers[i]);
        }
        return out;
    }
    Bytes map() const {
        Bits bits;
        for (const bool point : there) bits.put(point, 1);
        return bits.bytes;
    }
    Bytes packing(int type, int length, std::size_t told) const {
        Bytes section = section2(5, length);
        set(section, 6, static_cast<std::int64_t>(told), 4);
        set(section, 10, type, 2);
        const float reference = static_cast<float>(eighths) / 8.0F;
        std::uint32_t word = 0;
        std::memcpy(&word, &reference, 4);
        set(section, 12, word, 4);
        set(section, 16, binary < 0 ? 0x8000 - binary : binary, 2);
        set(section, 18, decimal < 0 ? 0x8000 - decimal : decimal, 2);
        return section;
    }
};

class Packing : public Grib {
  protected:
    int below(int n) { return std::uniform_int_distribution<int>(0, n - 1)(random_); }
    int between(int a, int b) { return a + below(b - a + 1); }

    /// A field of numbers from `least` on; `gaps` of ten points are empty.
    Field make(std::int64_t least, int width, int gaps) {
        Field field;
        field.nx = between(1, 19);
        field.ny = between(1, 11);
        field.scanning = below(2) * 0x40 | below(2) * 0x10;
        field.eighths = between(-4000, 4000);
        field.binary = between(-4, 4);
        field.decimal = between(-2, 3);
        std::uniform_int_distribution<std::int64_t> number(0, (std::int64_t{1} << width) - 1);
        const int calm = between(0, 9);  // neighbours that are alike make groups without width
        for (std::size_t i = 0; i < field.points(); ++i) {
            const bool same = i > 0 && below(10) < calm;
            field.numbers.push_back(same ? field.numbers.back() : least + number(random_));
            field.there.push_back(below(10) >= gaps);
        }
        return field;
    }

    void expect_grid(const Field& field, const Bytes& message, const std::string& what) {
        const auto records = read(message);
        ASSERT_EQ(records.size(), 1U) << what;
        ASSERT_EQ(values(records[0]), field.grid()) << what;
    }

    std::mt19937 random_{20261123};
};

Bytes whole(const Field& field, const Bytes& drs, const Bytes& bms, const Bytes& packed) {
    return message2(0,
                    {identification(), latlon(field.nx, field.ny, field.scanning), product(), drs, bms, data(packed)});
}

/// What octets 6 to 9 of section 5 count.
enum : int { TOLD_VALUES = 0, TOLD_POINTS = 1, TOLD_FEWER = 2 };

TEST_F(Packing, SimpleNumbersOfAllWidths) {
    for (int i = 0; i < 400; ++i) {
        const int width = i % 33;
        Field field = make(0, width, i % 3 == 0 ? between(1, 10) : 0);
        const bool mapped = i % 3 == 0;
        const int told = mapped && i % 2 == 0 ? TOLD_POINTS : i % 7 == 1 ? TOLD_FEWER : TOLD_VALUES;
        std::size_t count = static_cast<std::size_t>(std::count(field.there.begin(), field.there.end(), true));
        if (told == TOLD_FEWER) count /= 2;
        const Bytes map = field.map();
        Bits bits;
        std::size_t taken = 0;
        for (std::size_t point = 0; point < field.points(); ++point) {
            if (taken == count) field.there[point] = false;
            if (!field.there[point]) continue;
            bits.put(field.numbers[point], width);
            ++taken;
        }
        Bytes drs = field.packing(0, 21, told == TOLD_POINTS ? field.points() : count);
        set(drs, 20, width);
        expect_grid(field, whole(field, drs, mapped ? bitmap(0, map) : bitmap(255), bits.bytes), std::to_string(i));
    }
}

/// One group of complex packing: `length` points whose numbers are `reference` and `width` bits more.
struct Group {
    std::size_t length = 0;
    std::int64_t reference = 0;
    int width = 0;
};

/// What complex packing can vary.
struct Complex {
    int order = 0;
    int miss_type = 0;
    int spat_bytes = 2;
    bool mapped = false;
};

/// Packs a field by groups of random length. `kinds[i]`: 0 a number, 1 and 2 a missing point.
class Packer {
  public:
    Packer(const Field& field, const Complex& form, const std::vector<int>& kinds, std::mt19937& random)
        : field_(field), form_(form), kinds_(kinds), random_(random) {
        difference();
        group();
    }

    Bytes section5(std::size_t told) const {
        Bytes section = field_.packing(form_.order > 0 ? 3 : 2, form_.order > 0 ? 49 : 47, told);
        set(section, 20, reference_bits_);
        set(section, 23, form_.miss_type);
        set(section, 32, static_cast<std::int64_t>(groups_.size()), 4);
        set(section, 36, least_width_);
        set(section, 37, width_bits_);
        set(section, 38, 1, 4);
        set(section, 42, 1);
        set(section, 43, static_cast<std::int64_t>(groups_.back().length), 4);
        set(section, 47, length_bits_);
        if (form_.order > 0) {
            set(section, 48, form_.order);
            set(section, 49, form_.spat_bytes);
        }
        return section;
    }

    Bytes section7() const {
        Bits bits;
        for (int i = 0; i < form_.order; ++i) bits.put_signed(first_[i], form_.spat_bytes);
        if (form_.order > 0) bits.put_signed(least_, form_.spat_bytes);
        for (const Group& group : groups_) bits.put(group.reference, reference_bits_);
        bits.align();
        for (const Group& group : groups_) bits.put(group.width - least_width_, width_bits_);
        bits.align();
        for (const Group& group : groups_) bits.put(&group == &groups_.back() ? 0 : group.length - 1, length_bits_);
        bits.align();
        std::size_t point = 0;
        for (const Group& group : groups_) {
            const std::int64_t most = (std::int64_t{1} << group.width) - 1;
            for (std::size_t i = 0; i < group.length; ++i, ++point) {
                const int kind = kinds_[point];
                bits.put(kind == 0 ? packed_[point] - group.reference : most + 1 - kind, group.width);
            }
        }
        return bits.bytes;
    }

    bool fits() const {
        const std::int64_t limit = std::int64_t{1} << (8 * form_.spat_bytes - 1);
        return form_.order == 0 || (std::abs(least_) < limit && first_[0] < limit && first_[1] < limit);
    }

  private:
    /// The numbers, or their differences less the least one.
    void difference() {
        packed_ = field_.numbers;
        std::vector<std::size_t> at;
        for (std::size_t i = 0; i < kinds_.size(); ++i) {
            if (kinds_[i] == 0) at.push_back(i);
        }
        for (int i = 0; i < form_.order && i < static_cast<int>(at.size()); ++i) first_[i] = field_.numbers[at[i]];
        if (form_.order == 0) return;
        const std::size_t order = static_cast<std::size_t>(form_.order);
        least_ = std::int64_t{1} << 40;
        for (std::size_t i = order; i < at.size(); ++i) {
            const std::int64_t last = field_.numbers[at[i - 1]];
            const std::int64_t guess = order == 1 ? last : 2 * last - field_.numbers[at[i - 2]];
            packed_[at[i]] = field_.numbers[at[i]] - guess;
            least_ = std::min(least_, packed_[at[i]]);
        }
        if (at.size() <= order) least_ = -3;
        for (std::size_t i = 0; i < at.size(); ++i) packed_[at[i]] = i < order ? 0 : packed_[at[i]] - least_;
    }

    void group() {
        std::size_t start = 0;
        std::int64_t largest = 0;
        while (start < kinds_.size()) {
            Group group;
            group.length = std::min<std::size_t>(1 + random_() % 9, kinds_.size() - start);
            std::int64_t low = -1;
            std::int64_t high = -1;
            int codes = 0;  // codes that the group needs for missing points
            for (std::size_t i = start; i < start + group.length; ++i) {
                codes = std::max(codes, kinds_[i] == 0 ? 0 : form_.miss_type);
                if (kinds_[i] != 0) continue;
                low = low < 0 ? packed_[i] : std::min(low, packed_[i]);
                high = std::max(high, packed_[i]);
            }
            group.reference = std::max<std::int64_t>(low, 0);
            group.width = codes == 0 && low == high ? 0 : bits_for(high - group.reference + form_.miss_type);
            const auto kind = kinds_.begin() + static_cast<long>(start);
            if (low < 0 &&
                std::count(kind, kind + static_cast<long>(group.length), *kind) == static_cast<long>(group.length)) {
                group.width = 0;
                group.reference = -*kind;  // all ones, or one less, once the bits are known
            } else if (low < 0) {
                group.width = 2;
            }
            largest = std::max(largest, group.reference);
            groups_.push_back(group);
            start += group.length;
        }
        reference_bits_ = bits_for(largest + form_.miss_type);
        least_width_ = 64;
        for (Group& group : groups_) {
            if (group.reference < 0) group.reference += std::int64_t{1} << reference_bits_;
            least_width_ = std::min(least_width_, group.width);
        }
        for (const Group& group : groups_) {
            width_bits_ = std::max(width_bits_, bits_for(group.width - least_width_));
            length_bits_ = std::max(length_bits_, bits_for(static_cast<std::int64_t>(group.length) - 1));
        }
    }

    const Field& field_;
    Complex form_;
    const std::vector<int>& kinds_;
    std::mt19937& random_;
    std::vector<std::int64_t> packed_;
    std::array<std::int64_t, 2> first_{};
    std::int64_t least_ = 0;
    std::vector<Group> groups_;
    int reference_bits_ = 0;
    int width_bits_ = 0;
    int length_bits_ = 0;
    int least_width_ = 0;
};

TEST_F(Packing, ComplexGroups) {
    int tried = 0;
    for (int i = 0; i < 1200; ++i) {
        const Complex form{i % 3, i / 3 % 3, between(1, 4), i / 9 % 2 == 1 && i / 3 % 3 == 0};
        const bool gaps = form.miss_type > 0 || form.mapped;
        // Without differences a number is what its group holds: not below 0.
        Field field =
            make(form.order > 0 ? -between(0, 40) : 0, between(0, 6 * form.spat_bytes), gaps ? between(1, 9) : 0);
        const Field all = field;
        std::vector<int> kinds;
        if (form.mapped) {
            field.numbers.clear();
            for (std::size_t p = 0; p < all.points(); ++p) {
                if (all.there[p]) field.numbers.push_back(all.numbers[p]);
            }
            kinds.assign(field.numbers.size(), 0);
        } else {
            for (const bool there : field.there) kinds.push_back(there ? 0 : between(1, form.miss_type));
        }
        if (kinds.empty()) continue;
        const Packer packer(field, form, kinds, random_);
        if (!packer.fits()) continue;
        ++tried;
        const std::size_t told = form.mapped && i % 2 == 0 ? all.points() : kinds.size();
        const Bytes bms = form.mapped ? bitmap(0, all.map()) : bitmap(255);
        expect_grid(all, whole(all, packer.section5(told), bms, packer.section7()), std::to_string(i));
    }
    EXPECT_GT(tried, 600);
}

TEST_F(Packing, NoGroupsAreAConstant) {
    for (const int type : {2, 3}) {
        for (const bool mapped : {false, true}) {
            Field field = make(0, 0, mapped ? 3 : 0);
            const Bytes bms = mapped ? bitmap(0, field.map()) : bitmap(255);
            expect_grid(field, whole(field, field.packing(type, 49, field.points()), bms, {}), std::to_string(type));
        }
    }
}

TEST_F(Packing, RunsOfLevels) {
    for (int i = 0; i < 300; ++i) {
        const int width = between(2, 8);
        const int levels = between(1, (1 << width) - 2);  // at least one code is left for a digit of a count
        Field field = make(0, 3, 0);
        field.scanning = 0;  // rows lie as in the message, whatever the mode says
        field.eighths = field.binary = 0;
        field.decimal = between(0, 2);
        Bits bits;
        Values expected;
        while (expected.size() < field.points()) {
            const int level = between(0, levels);
            const std::int64_t base = (1 << width) - levels - 1;
            const int left = static_cast<int>(field.points() - expected.size());
            const int run = base == 1 ? 1 : std::min(between(1, 40), left);  // digits of base 1 count nothing
            bits.put(level, width);
            for (std::int64_t rest = run - 1; rest > 0; rest /= base) bits.put(levels + 1 + rest % base, width);
            const float table = static_cast<float>(std::pow(10.0, -field.decimal)) * static_cast<float>(7 * level + 3);
            expected.insert(expected.end(), static_cast<std::size_t>(run), level == 0 ? FMISS : table);
        }
        bits.put(1, width);  // closes the last run
        Bytes drs = section2(5, 17 + 2 * levels);
        set(drs, 6, static_cast<std::int64_t>(field.points()), 4);
        set(drs, 10, 200, 2);
        set(drs, 12, width);
        set(drs, 13, levels, 2);
        set(drs, 15, levels, 2);
        set(drs, 17, field.decimal);
        for (int level = 1; level <= levels; ++level) set(drs, 16 + 2 * level, 7 * level + 3, 2);
        const auto records = read(whole(field, drs, bitmap(255), bits.bytes));
        ASSERT_EQ(values(records.at(0)), expected) << i;
    }
}

TEST_F(Packing, Edition1) {
    for (int i = 0; i < 400; ++i) {
        const int width = i % 33;
        const bool mapped = i % 3 == 0;
        Field field = make(0, width, mapped ? between(1, 9) : 0);
        field.scanning &= 0x40;
        Bytes map(6, 0);
        const Bytes marks = field.map();
        set(map, 1, 6 + static_cast<std::int64_t>(marks.size()), 3);
        Bits bits;
        for (std::size_t point = 0; point < field.points(); ++point) {
            if (field.there[point]) bits.put(field.numbers[point], width);
        }
        Bytes grid = latlon1(field.nx, field.ny, 0);
        set(grid, 28, field.scanning);
        if (mapped) grid = join({grid, map, marks});
        Bytes message = message1(
            [&](Bytes& block) {
                set(block, 8, mapped ? 0xC0 : 0x80);
                set(block, 27, field.decimal < 0 ? 0x8000 - field.decimal : field.decimal, 2);
            },
            grid, bits.bytes, width);
        const int block4 = 8 + 28 + static_cast<int>(grid.size());
        set(message, block4 + 4, 0x20);  // integers, packed like others
        set(message, block4 + 5, field.binary < 0 ? 0x8000 - field.binary : field.binary, 2);
        // In the form of the reference an eighth of 16^4 is 2 to the 13.
        set(message, block4 + 7, (field.eighths < 0 ? 0xC4000000 : 0x44000000) + (std::abs(field.eighths) << 5), 4);
        expect_grid(field, message, std::to_string(i));
    }
}

/// The plausibility test of packed numbers, told step by step.
struct Watch {
    int max = 0;
    int limit = 0;
    int count = 0;
    int before = -1;
    bool garbled = false;
    std::array<int, 20> jumps{};

    void start_row() {
        count = 0;
        jumps.fill(0);
    }
    float see(int n) {
        jumps[static_cast<std::size_t>(count % 20)] = count > 0 && before >= 0 && std::abs(n - before) > limit;
        if (std::count(jumps.begin(), jumps.end(), 1) > max) garbled = true;
        before = n;
        ++count;
        return garbled ? FMISS : static_cast<float>(n);
    }
};

/// A row of `n` values on `nx` points.
Values stretched(const Values& row, int nx) {
    Values out;
    const float step = static_cast<float>(row.size() - 1) / static_cast<float>(nx - 1);
    float f = 0.0F;
    std::size_t k = 2;
    for (int x = 0; x < nx; ++x, f += step) {
        if (f >= 1.0F && k < row.size()) {
            ++k;
            f -= 1.0F;
        }
        const float a = row[k - 2];
        const float b = row[k - 1];
        out.push_back(a == FMISS || b == FMISS ? FMISS : f * b + (1.0F - f) * a);
    }
    return out;
}

TEST_F(Packing, RowsOfEdition1StretchedAndWatched) {
    read(message1([](Bytes&) {}, latlon1(2, 2, 0), {1, 2, 3, 4}, 8));  // the first field of a run has another limit
    for (int i = 0; i < 300; ++i) {
        const bool thin = i % 2 == 0;
        const int ny = between(1, 5);
        std::vector<int> lengths;
        for (int row = 0; row < ny; ++row) lengths.push_back(thin || row == 0 ? between(2, 40) : lengths[0]);
        const int nx = *std::max_element(lengths.begin(), lengths.end());
        Watch watch{between(1, 8), 1 << 7};
        Bytes grid = latlon1(thin ? 0xFFFF : nx, ny, 0);
        set(grid, 5, thin ? 33 : 255);
        const bool south = below(2) == 0;
        set(grid, 28, south ? 0x40 : 0);
        Bytes packed;
        Values expected;
        for (const int length : lengths) {
            if (thin) put(grid, length, 2);
            watch.start_row();
            Values row;
            for (int x = 0; x < length; ++x) {
                packed.push_back(static_cast<unsigned char>(below(4) == 0 ? between(60, 255) : between(0, 120)));
                if (thin && x == 2) watch.start_row();
                row.push_back(watch.see(packed.back()));
            }
            if (thin) row = stretched(row, nx);
            expected.insert(south ? expected.begin() : expected.end(), row.begin(), row.end());
        }
        grid.resize(grid.size() + below(3));  // room behind is passed over
        set(grid, 1, static_cast<std::int64_t>(grid.size()), 3);
        GRIB_set_max_bad(watch.max);
        const auto records = read(message1([](Bytes&) {}, grid, packed, 8));
        GRIB_set_max_bad(-1);
        ASSERT_EQ(records.size(), 1U);
        ASSERT_EQ(values(records[0]), expected) << i;
    }
}

/// Of the grids told by a number alone, some (of table B of edition 1) state their pole's row by one value.
TEST_F(Packing, PolesOfNumberedGridsStandOnce) {
    for (const int number : {21, 22, 23, 24, 25, 26, 61, 62, 63, 64}) {
        const bool round = number == 25 || number == 26;  // the first column isn't told again
        const int nx = number > 60 ? 91 : round ? 73 : 37;
        const int ny = number > 60 ? 46 : round ? 19 : 37;
        const bool south = number != 25 && number % 40 > 22;
        Bytes packed;
        Values expected;
        for (int row = 0; row < ny; ++row) {
            const int points = row == (south ? 0 : ny - 1) ? 1 : round ? nx - 1 : nx;
            packed.insert(packed.end(), static_cast<std::size_t>(points), static_cast<unsigned char>(row));
            expected.insert(expected.begin(), static_cast<std::size_t>(nx), static_cast<float>(row));
        }
        const auto records = read(message1([&](Bytes& block) { set(block, 7, number); }, {}, packed, 8));
        EXPECT_TRUE(records.size() == 1 && values(records[0]) == expected) << number;
    }
}

}  // namespace
}  // namespace zav::grib_test
