// GRIB messages made by hand, octet by octet, with results worked out from the code tables.
#include "grid/grib/grib.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "frame/resrc.h"
#include "grid/grib/grib_messages.h"

namespace zav::grib_test {
namespace {

TEST_F(Grib, LaterFieldReusesTheBitMap) {
    const auto records =
        read(message2(0, {identification(), latlon(3, 2, 0), product(), simple(4, 8), bitmap(0, {0xD8}),
                          data({1, 2, 3, 4}), product(), simple(4, 8), bitmap(254), data({5, 6, 7, 8})}));
    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(values(records[0]), (Values{1, 2, FMISS, 3, 4, FMISS}));
    EXPECT_EQ(values(records[1]), (Values{5, 6, FMISS, 7, 8, FMISS}));
    EXPECT_EQ(records[1].domain.nx, 3);
}

TEST_F(Grib, ImageThatIsLeftOutIsAConstant) {
    Bytes drs = section2(5, 23);
    set(drs, 6, 4, 4);
    set(drs, 10, 40, 2);
    set(drs, 12, 0x40400000, 4);  // reference 3
    const auto records =
        read(message2(0, {identification(), latlon(3, 2, 0), product(), drs, bitmap(0, {0xD8}), data({})}));
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(values(records[0]), (Values{3, 3, FMISS, 3, 3, FMISS}));
}

TEST_F(Grib, QuasiRegularRowsAreStretched) {
    struct Case {
        int last;  ///< longitude of the last point, in degrees
        Bytes rows;
        Bytes packed;
        Values expected;
    };
    const Case cases[] = {{20, {3, 2}, {1, 2, 3, 10, 20}, {1, 2, 3, 10, 15, 20}},
                          {280, {4, 2}, {1, 2, 3, 4, 10, 20}, {1, 2, 3, 4, 10, 15, 20, 15}}};  // round the earth
    for (const Case& c : cases) {
        Bytes grid = latlon(0, 2, 0);
        set(grid, 31, 0xFFFFFFFF, 4);
        set(grid, 11, 1);
        set(grid, 60, c.last * 1000000, 4);
        grid.insert(grid.end(), c.rows.begin(), c.rows.end());
        set(grid, 1, 74, 4);
        const auto records =
            read(message2(0, {identification(), grid, product(), simple(static_cast<int>(c.packed.size()), 8),
                              bitmap(255), data(c.packed)}));
        ASSERT_EQ(records.size(), 1U);
        EXPECT_EQ(values(records[0]), c.expected) << c.last;
    }
}

TEST_F(Grib, ParameterFileTakesTheFirstLineThatFits) {
    dir.write("grib2_var.lup", "# comment\n7 0 0 0 nosuch K Local\n0 0 0 0 nosuch C General\n");
    RES_new(0, "file_path", dir.path().c_str(), CV_string);
    GribParam param = GRIB_get_ver2_param(7, 0, 0, 0);
    EXPECT_EQ(param.units, "K");
    EXPECT_EQ(param.ind, 0);
    param = GRIB_get_ver2_param(98, 0, 0, 0);
    EXPECT_EQ(param.units, "C");
    EXPECT_EQ(GRIB_get_ver2_param(7, 2, 1, 3).ind, 2001003);
}

TEST_F(Grib, EnsembleEndsWithItsField) {
    Bytes member = product(1, 37);
    set(member, 35, 2);
    set(member, 36, 3);
    const std::vector<Bytes> rest{simple(6, 0), bitmap(255), data({})};
    const Bytes first = message2(0, {identification(), latlon(3, 2, 0), member, rest[0], rest[1], rest[2]});
    const Bytes second = message2(0, {identification(), latlon(3, 2, 0), product(), rest[0], rest[1], rest[2]});
    const auto records = read(join({first, second}));
    ASSERT_EQ(records.size(), 2U);
    EXPECT_EQ(records[0].var - records[1].var, 19323000);
    EXPECT_TRUE(records[0].info.find("Ens[-3]") != std::string::npos);
}

/// A grid of 5 degrees with a single value for its pole, which is its last or its first row; the last column repeats
/// the first one.
TEST_F(Grib, PolesAndClosingColumnsOfGridsWithoutDescription) {
    for (const int type : {25, 26}) {
        Bytes packed(1 + 72 * 18, 5);
        (type == 25 ? packed.back() : packed.front()) = 9;
        packed[type == 25 ? 72 : 1] = 7;
        Values expected(19 * 73, 5.0F);
        const auto row = [&](int number) { return expected.begin() + number * 73; };
        std::fill_n(row(type == 25 ? 0 : 18), 73, 9.0F);
        *row(17) = *(row(17) + 72) = 7.0F;
        const auto records = read(message1([&](Bytes& block) { set(block, 7, type); }, {}, packed, 8));
        ASSERT_EQ(records.size(), 1U);
        EXPECT_EQ(values(records[0]), expected) << type;
    }
}

TEST_F(Grib, VerticalCoordinatesArePassedOver) {
    const auto records = read(message1([](Bytes&) {}, latlon1(2, 2, 3), {1, 2, 3, 4}, 8));
    ASSERT_EQ(records.size(), 1U);
    EXPECT_EQ(values(records[0]), (Values{1, 2, 3, 4}));
}

TEST_F(Grib, BulletinsOfAFeed) {
    const Bytes message = message1([](Bytes&) {}, latlon1(2, 2, 0), {1, 2, 3, 4}, 8);
    const std::string start = "\x01\r\r\n123\r\r\nHTXA98 KWBC 151200\r\r\n";
    const std::string end = "\r\r\n\x03";
    const Bytes head(start.begin(), start.end());
    const Bytes tail(end.begin(), end.end());
    const auto records = read(join({head, message, tail, head, message, tail}));
    EXPECT_EQ(records.size(), 2U);
    EXPECT_EQ(header, "HTXA98 KWBC 151200");
    EXPECT_EQ(read(message).size(), 1U);
    EXPECT_EQ(header, "GRIB01 KXXX 010000");
    // Fillers of any kind between messages, and an edition 2 message among them
    const Bytes other =
        message2(0, {identification(), latlon(3, 2, 0), product(), simple(6, 0), bitmap(255), data({})});
    EXPECT_EQ(read(join({message, {'\r', '\n', '\r', '\n'}, other, {0, 0, 0}, message})).size(), 3U);
}

TEST_F(Grib, RecordsInAnyOrder) {
    Bytes file;
    for (int i = 1; i <= 3; ++i) {
        const Bytes one = data({static_cast<unsigned char>(2 * i - 1)});
        const Bytes two = data({static_cast<unsigned char>(2 * i)});
        file = join({file, message2(0, {identification(), latlon(1, 1, 0), product(), simple(1, 8), bitmap(255), one,
                                        product(), simple(1, 8), bitmap(255), two})});
    }
    const std::string path = dir.write("order.grib", std::string(file.begin(), file.end()));
    int type = 0;
    const int fd = GRD_open(path, 0, &type);
    GRD_info info;
    ASSERT_EQ(GRD_getinfo(fd, &info), 0);
    for (const int wanted : {4, 1, 1, 5, 0, 3, 2}) {
        GRD_report grd;
        int number = wanted;
        ASSERT_EQ(GRD_read(fd, &grd, GRD_READ_ALL, &number), 0) << wanted;
        EXPECT_EQ(number, wanted);
        EXPECT_EQ(grd.grid[0], static_cast<float>(wanted + 1));
    }
    GRD_close(fd);
}

TEST_F(Grib, TracesOfRunsAndHeadersWithLabels) {
    Bytes drs = section2(5, 27);
    for (const auto& [octet, value] : {std::pair{9, 6}, {11, 200}, {12, 3}, {14, 5}, {16, 5}}) set(drs, octet, value);
    const Bytes message =
        message2(0, {identification(), latlon(3, 2, 0), product(), drs, bitmap(255), data({0b10011111, 0b00000010})});
    dir.write("runs.grb", std::string(message.begin(), message.end()));
    int type = GRD_TYPE_GRIB;
    const int fd = GRD_open("runs.grb", 0, &type);
    GRD_report grd;
    int number = 0;
    MESS_set(0, MESS_DEBUG);
    const test::Output said = test::capture([&] { GRD_read(fd, &grd, GRD_READ_LABELS, &number); });
    MESS_set(0, MESS_NONE);
    GRD_close(fd);
    EXPECT_TRUE(GRD_has_values(&grd));  // in edition 2 labels come with the values
    // 3-bit numbers 4 7 6 0 1, of which 6 and 7 are digits of a count
    for (const char* line : {"num = 2 mult = 2 new_val = 7\n", "num = 2 mult = 4 new_val = 6\n",
                             "cnt = 2 new_val = 0 val = 4\nbyte: 2 loc: 2 0 new_val = 0 val = 4 num = 2\n"}) {
        EXPECT_NE((said.out + said.err).find(line), std::string::npos) << said.out << said.err;
    }
}

TEST_F(Grib, ParametersOutsideOfTheirTableAreToldOnce) {
    const Bytes message = message1(
        [](Bytes& block) {
            set(block, 4, 128);
            set(block, 5, 98);
            set(block, 9, 255);
        },
        latlon1(2, 2, 0), {1, 2, 3, 4}, 8);
    MESS_set(0, MESS_WARN);
    const test::Output said = test::capture([&] { read(join({message, message})); });
    const std::string text = said.out + said.err;
    const std::size_t first = text.find("Invalid GRIB variable: 255\n");
    EXPECT_NE(first, std::string::npos) << text;
    EXPECT_EQ(first, text.rfind("Invalid GRIB variable"));
}

TEST_F(Grib, OtherPackingsOfEdition1AreRefused) {
    for (const int flags : {0x80, 0x40, 0x10, 0xC0, 0x50}) {
        Bytes message = message1([](Bytes&) {}, latlon1(2, 2, 0), {1, 2, 3, 4}, 8);
        set(message, 8 + 28 + 32 + 4, flags);
        MESS_set(0, MESS_WARN);
        std::vector<GRD_report> records;
        const test::Output said = test::capture([&] { records = read(join({message, message})); });
        ASSERT_EQ(records.size(), 2U) << flags;
        EXPECT_FALSE(records[1].grid) << flags;
        const std::string words = "GRIB_BDB: packing of this field is not decoded: " + std::to_string(flags >> 4);
        EXPECT_NE((said.out + said.err).find(words), std::string::npos) << said.out << said.err;
    }
}

}  // namespace
}  // namespace zav::grib_test
