// Damage between and inside messages: what stands behind it is still found, and the damage is told.
#include <gtest/gtest.h>
#include <sys/resource.h>
#include <unistd.h>

#include <fstream>

#include "grid/grib/grib_messages.h"

namespace zav::grib_test {
namespace {

Bytes good2(unsigned char value) {
    return message2(0, {identification(), latlon(2, 2, 0), product(), simple(4, 8), bitmap(255),
                        data({value, value, value, value})});
}

Bytes good1(unsigned char value) {
    return message1([](Bytes&) {}, latlon1(2, 2, 0), {value, value, value, value}, 8);
}

/// Edition 0 has neither a length nor an edition in front of its product block.
Bytes good0(unsigned char value) {
    Bytes bytes = good1(value);
    bytes.erase(bytes.begin() + 4, bytes.begin() + 8);
    bytes.erase(bytes.begin() + 28, bytes.begin() + 32);
    set(bytes, 5, 24, 3);
    set(bytes, 8, 0);
    return bytes;
}

Bytes cut(Bytes bytes, std::size_t from_end) {
    bytes.resize(bytes.size() - from_end);
    return bytes;
}

Bytes with(Bytes bytes, int octet, std::int64_t value, int octets) {
    set(bytes, octet, value, octets);
    return bytes;
}

constexpr float EMPTY = -1.0F;  ///< in place of the value of a record that has none

struct Damage {
    const char* what;
    Bytes bytes;
    std::vector<float> records;  ///< one value of each record in front of the sound message
    const char* told;
};

class GribDamage : public Grib, public testing::WithParamInterface<Damage> {};

TEST_P(GribDamage, TheNextMessageIsFound) {
    const Damage& c = GetParam();
    for (const Bytes& next : {good1(7), good2(7), good0(7)}) {
        MESS_set(0, MESS_WARN);
        int last = 0;
        std::vector<GRD_report> records;
        const test::Output said = test::capture([&] { records = read(join({c.bytes, next, good1(8)}), &last); });
        std::vector<float> found;
        for (const GRD_report& record : records) found.push_back(record.grid ? record.grid[0] : EMPTY);
        std::vector<float> expected = c.records;
        expected.insert(expected.end(), {7.0F, 8.0F});
        EXPECT_EQ(found, expected);
        EXPECT_EQ(last, -1);
        const std::size_t first = (said.out + said.err).find(c.told);
        EXPECT_NE(first, std::string::npos) << said.out << said.err;
    }
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, GribDamage,
    testing::Values(
        Damage{"edition0_without_end_mark", cut(good0(5), 4), {5}, ""},
        Damage{"edition1_without_end_mark", cut(good1(5), 4), {5}, "at byte 0 doesn't end with 7777 after 87 bytes"},
        Damage{"edition2_without_end_mark", cut(good2(5), 4), {5}, "at byte 0 doesn't end with 7777 after 183 bytes"},
        Damage{"edition1_cut_in_its_data", cut(good1(5), 6), {EMPTY}, "GRIB_BDB: data section too short"},
        Damage{"edition2_cut_in_its_data", cut(good2(5), 6), {EMPTY}, "GRIB_DS: data section too short"},
        Damage{"edition2_cut_in_its_grid", cut(good2(5), 100), {}, "No product found"},
        Damage{"edition1_length_0", with(good1(5), 5, 0, 3), {5}, "doesn't end with 7777 after 0 bytes"},
        Damage{
            "edition1_length_beyond_the_file", with(good1(5), 5, 0xFFFFFF, 3), {5}, "Invalid product size: 16777215"},
        Damage{"edition2_length_beyond_the_file", with(good2(5), 9, 1 << 30, 8), {5}, "doesn't end with 7777"},
        Damage{"edition2_length_too_short", with(good2(5), 9, 100, 8), {5}, "doesn't end with 7777 after 100 bytes"},
        Damage{"end_mark_in_front", join({{'7', '7', '7', '7'}, with(good1(5), 5, 0, 3)}), {5}, "after 0 bytes"},
        Damage{"second_field_cut",
               join({cut(message2(0, {identification(), latlon(2, 2, 0), product(), simple(4, 0), bitmap(255), data({}),
                                      product(), simple(4, 8)}),
                         4)}),
               {0},
               "doesn't end with 7777"}),
    [](const auto& kind) { return std::string(kind.param.what); });

TEST_F(Grib, LongMessagesOfEdition1AreRead) {
    const std::size_t points = 1200 * 1700;
    Bytes packed(points, 1);
    packed.back() = 9;
    const auto records = read(join({message1([](Bytes&) {}, latlon1(1200, 1700, 0), packed, 8), good1(7)}));
    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(records[0].grid[points - 1], 9.0F);
    EXPECT_EQ(records[1].grid[0], 7.0F);
}

TEST_F(Grib, DataThatTheFileCutsEndTheSearch) {
    for (const std::size_t missing : {5, 7, 8}) {
        int last = 0;
        EXPECT_EQ(read(join({good1(1), cut(good1(5), missing)}), &last).size(), 1U) << missing;
        EXPECT_EQ(last, -1) << missing;
    }
}

TEST_F(Grib, DamageIsToldOnce) {
    MESS_set(0, MESS_WARN);
    const test::Output said = test::capture([&] { read(join({good1(1), cut(good1(2), 4), good1(3)})); });
    const std::string text = said.out + said.err;
    EXPECT_EQ(text.find("doesn't end"), text.rfind("doesn't end"));
    EXPECT_NE(text.find("at byte 87"), std::string::npos) << text;
}

TEST_F(Grib, IndexLinesThatAreTooLongOrNoneDontEndTheSearch) {
    const Bytes file = join({with(good1(1), 13, 98, 1), good1(2), good1(3)});
    const std::string name = dir.write("test.grib", std::string(file.begin(), file.end()));
    const std::string size = std::to_string(good1(1).size());
    std::string longest = std::to_string(2 * good1(1).size()) + " c / GRIB T12 V7";
    longest.resize(160, ' ');
    const std::string index = dir.write("test.ind", "0 a / GRIB T0 V7\n\nno offset\n" + size + " b / GRIB T6 V7 " +
                                                        std::string(200, 'x') + "\n" + longest + "\n");
    MESS_set(0, MESS_WARN);
    int type = GRD_TYPE_GRIB;
    const int fd = GRD_open(name, 0, &type);
    ASSERT_EQ(GRD_hdr_open(fd, index), 0);
    GRD_info info;
    ASSERT_EQ(GRD_getinfo(fd, &info), 0);
    std::vector<int> times;
    std::vector<float> found;
    const test::Output said = test::capture([&] {
        GRD_report grd;
        for (int number = 0; GRD_read(fd, &grd, GRD_READ_HEADER, &number) == 0; ++number) {
            times.push_back(grd.time);
            EXPECT_EQ(grd.source, 7) << "the index doesn't tell the centre, and only edition 0 is taken as another's";
            ASSERT_EQ(GRD_read(fd, &grd, GRD_READ_ALL, &number), 0);
            found.push_back(grd.grid[0]);
        }
    });
    GRD_close(fd);
    EXPECT_EQ(times, (std::vector<int>{0, 6, 12}));
    EXPECT_EQ(found, (std::vector<float>{1, 2, 3}));
    const std::string text = said.out + said.err;
    EXPECT_NE(text.find("GRIB index line is too long: " + size + " b / GRIB T6"), std::string::npos) << text;
    EXPECT_EQ(text.find("too long"), text.rfind("too long"));
    EXPECT_NE(text.find("GRIB index line has no offset: no offset"), std::string::npos) << text;
}

/// One group of complex packing as long as the counts tell, with the number 7 for all its points, or of `width` bits.
Bytes one_group(std::int64_t points, int miss_type, int width) {
    Bytes section = section2(5, 47);
    set(section, 6, points, 4);
    set(section, 10, 2, 2);
    set(section, 20, 8);
    set(section, 23, miss_type);
    set(section, 32, 1, 4);
    set(section, 36, width);
    set(section, 43, points, 4);
    return section;
}

/// Lets the process have so many octets of addresses more than now, while it lives.
class Narrow {
  public:
    explicit Narrow(rlim_t more) {
        getrlimit(RLIMIT_AS, &before_);
        rlim_t pages = 0;
        std::ifstream("/proc/self/statm") >> pages;
        const rlimit narrow{pages * static_cast<rlim_t>(getpagesize()) + more, before_.rlim_max};
        setrlimit(RLIMIT_AS, &narrow);
    }
    ~Narrow() { setrlimit(RLIMIT_AS, &before_); }
    Narrow(const Narrow&) = delete;
    Narrow& operator=(const Narrow&) = delete;

  private:
    rlimit before_{};
};

/// Counts alone, of values beyond the grid or of points without bits, take no memory.
TEST_F(Grib, CountsBeyondTheDataTakeNoMemory) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer needs the address space";
#endif
    struct Case {
        int side;
        Bytes packing;
        Values expected;
        const char* told;
    };
    for (const Case& c :
         {Case{2, one_group(0xFFFFFFFF, 1, 0), {7, 7, 7, 7}, ""},
          Case{5000, one_group(25000000, 0, 8), {}, "GRIB_DS: data section too short for its grid\n"}}) {
        MESS_set(0, MESS_WARN);
        std::vector<GRD_report> records;
        const Bytes bytes =
            message2(0, {identification(), latlon(c.side, c.side, 0), product(), c.packing, bitmap(255), data({7})});
        const test::Output said = test::capture([&] {
            const Narrow narrow(50000000);
            records = read(bytes);
        });
        ASSERT_EQ(records.size(), 1U);
        EXPECT_EQ(values(records[0]), c.expected) << c.side;
        const std::string text = said.out + said.err;
        EXPECT_NE(text.find(c.told), std::string::npos) << text;
        EXPECT_EQ(text.find("No memory"), std::string::npos) << text;
    }
}

/// A grid without points, or of a side that is longer than 2000, isn't decoded; the next one is.
TEST_F(Grib, SidesOfEdition1HaveLimits) {
    for (const auto& [nx, ny] : {std::pair{0, 2}, {2, 0}, {2001, 2}, {2, 2001}, {2, 2000}, {2000, 2}}) {
        const bool good = nx * ny == 4000;
        const Bytes one = message1([](Bytes&) {}, latlon1(nx, ny, 0), Bytes(2 * 2001, 5), 8);
        const auto records = read(join({one, good1(7)}));
        ASSERT_EQ(records.size(), 2U);
        EXPECT_EQ(values(records[0]), good ? Values(4000, 5.0F) : Values{}) << nx << ' ' << ny;
        EXPECT_EQ(records[0].domain.ny, good ? ny : MISS) << nx << ' ' << ny;
        EXPECT_EQ(values(records[1]), Values(4, 7.0F));
    }
}

}  // namespace
}  // namespace zav::grib_test
