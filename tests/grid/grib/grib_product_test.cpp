// Product sections of edition 2: a message of the shipped sample with another product in it.
#include <gtest/gtest.h>

#include <cstdint>
#include <string>

#include "frame/mess.h"
#include "grid/grd_read.h"
#include "grid/grd_tool.h"
#include "support/support.h"

namespace zav {
namespace {

/// Sets octets of a section by their published numbers.
void set(std::string& section, std::size_t octet, std::uint64_t value, std::size_t octets) {
    for (std::size_t i = 0; i < octets; i++) {
        section[octet - 1 + i] = static_cast<char>(value >> (8 * (octets - 1 - i)) & 0xFF);
    }
}

std::uint32_t number_at(const std::string& text, std::size_t at) {
    std::uint32_t number = 0;
    for (std::size_t i = at; i < at + 4; i++) number = number << 8 | static_cast<unsigned char>(text[i]);
    return number;
}

/// The sample's first message with another section 4.
std::string with_product(const std::string& product) {
    constexpr std::size_t HEAD = 16;
    const std::string file = test::read_file(test::source_dir() + "/samples/26011512_wave.grb2");
    std::string message = file.substr(0, number_at(file, HEAD - 4));
    std::size_t at = HEAD;
    while (message[at + 4] != 4) at += number_at(message, at);
    message.replace(at, number_at(message, at), product);
    set(message, HEAD - 3, message.size(), 4);
    return message;
}

GRD_report read_product(const test::TempDir& dir, const std::string& product) {
    int type = GRD_TYPE_GRIB;
    const int fd = GRD_open(dir.write("test.grb2", with_product(product)), 0, &type);
    GRD_report grd;
    int number = 0;
    EXPECT_EQ(GRD_read(fd, &grd, GRD_READ_HEADER, &number), 0);
    GRD_close(fd);
    return grd;
}

TEST(GribProduct, TimesComeInHoursOrMinutes) {
    MESS_set(0, MESS_NONE);
    const test::TempDir dir;
    struct Case {
        int code, unit, begin, process, length_unit;
        std::uint32_t length;
        int time;
    };
    constexpr std::uint32_t MISSING = 0xFFFFFFFF;
    const Case cases[] = {
        {8, 11, 1, 1, 11, 1, 4006012},     {8, 1, 2, 2, 1, 12, 6002014},
        {8, 1, 0, 1, 0, 60, 4000001},      {8, 0, 15, 1, 0, 15, 204001002},
        {8, 10, 2, 0, 10, 2, 3006012},     {8, 13, 3600, 3, 13, 7200, 7001003},
        {8, 1, 6, 1, 1, MISSING, 4006024}, {8, 1, 6, 255, 1, 252, 2006024},
        {8, 1, 6, 9, 1, 6, 2006012},       {0, 0, 60, 0, 0, 0, 1},
        {0, 0, 10, 0, 0, 0, 300000002},    {0, 12, 3, 0, 0, 0, 36},
        {0, 2, 3, 0, 0, 0, 803},           {0, 1, 900, 0, 0, 0, 500000300},
        {0, 13, 90, 0, 0, 0, MISS},        {0, 1, -1, 0, 0, 0, MISS},
        {0, 3, 2, 0, 0, 0, 902},           {11, 1, 12, 2, 1, 12, 6012024},
        {12, 1, 12, 4, 1, 12, 5012024},    {9, 1, 12, 1, 0, 720, 4012024},
        {9, 1, 12, 9, 1, 12, MISS},
    };
    for (const Case& c : cases) {
        const std::size_t process = c.code == 11 ? 50 : c.code == 12 ? 49 : c.code == 9 ? 60 : 47;
        std::string product(75, 0);
        set(product, 1, product.size(), 4);
        set(product, 5, 4, 1);
        set(product, 8, static_cast<std::uint64_t>(c.code), 2);
        set(product, 18, static_cast<std::uint64_t>(c.unit), 1);
        set(product, 19, static_cast<std::uint64_t>(c.begin < 0 ? 0x80000000U - c.begin : c.begin), 4);
        set(product, 23, 1, 1);
        set(product, 29, 255, 1);
        if (c.code != 0) {
            set(product, process - 12, 2026, 2);  // the sample's run is 12Z on 15 January 2026
            set(product, process - 10, 0x01100C, 3);
            set(product, process, static_cast<std::uint64_t>(c.process), 1);
            set(product, process + 2, static_cast<std::uint64_t>(c.length_unit), 1);
            set(product, process + 3, c.length, 4);
        }
        EXPECT_EQ(read_product(dir, product).time, c.time)
            << "template " << c.code << ", unit " << c.unit << ", begin " << c.begin << ", process " << c.process;
    }
}

}  // namespace
}  // namespace zav
