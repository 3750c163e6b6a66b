#pragma once

// GRIB messages made by hand, octet by octet.

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "frame/mess.h"
#include "grid/grd_read.h"
#include "grid/grd_tool.h"
#include "grid/grib/grib.h"
#include "support/support.h"

namespace zav::grib_test {

using Bytes = std::vector<unsigned char>;

inline void put(Bytes& bytes, std::int64_t value, int octets) {
    for (int i = octets - 1; i >= 0; --i) bytes.push_back(static_cast<unsigned char>(value >> (8 * i)));
}

/// Sets an octet by its published number; the section starts at octet 1.
inline void set(Bytes& section, int octet, std::int64_t value, int octets = 1) {
    for (int i = 0; i < octets; ++i) {
        section[static_cast<std::size_t>(octet - 1 + i)] = static_cast<unsigned char>(value >> (8 * (octets - 1 - i)));
    }
}

inline Bytes section2(int number, int length) {
    Bytes section(static_cast<std::size_t>(length), 0);
    set(section, 1, length, 4);
    set(section, 5, number);
    return section;
}

inline Bytes join(const std::vector<Bytes>& parts) {
    Bytes all;
    for (const Bytes& part : parts) all.insert(all.end(), part.begin(), part.end());
    return all;
}

/// A message of these blocks or sections.
inline Bytes message(int edition, const std::vector<Bytes>& parts, int discipline = 0) {
    const Bytes body = join(parts);
    const std::int64_t size = static_cast<std::int64_t>(body.size()) + (edition == 2 ? 20 : 12);
    Bytes head{'G', 'R', 'I', 'B'};
    if (edition > 0) put(head, edition == 1 ? size : discipline, 3);
    if (edition > 0) put(head, edition, 1);
    if (edition == 2) put(head, size, 8);
    return join({head, body, {'7', '7', '7', '7'}});
}

inline Bytes message2(int discipline, const std::vector<Bytes>& sections) { return message(2, sections, discipline); }

inline Bytes identification() {
    Bytes section = section2(1, 21);
    set(section, 6, 7, 2);
    set(section, 13, 2011, 2);
    set(section, 15, 1);
    set(section, 16, 10);
    set(section, 17, 12);
    return section;
}

inline Bytes latlon(int nx, int ny, int scanning) {
    Bytes section = section2(3, 72);
    set(section, 31, nx, 4);
    set(section, 35, ny, 4);
    set(section, 47, 40000000, 4);
    set(section, 51, 10000000, 4);
    set(section, 56, 30000000, 4);
    set(section, 60, 20000000, 4);
    set(section, 72, scanning);
    return section;
}

inline Bytes product(int code = 0, int length = 34) {
    Bytes section = section2(4, length);
    set(section, 8, code, 2);
    set(section, 18, 1);
    set(section, 23, 1);
    set(section, 29, 255);
    return section;
}

inline Bytes simple(int points, int bits) {
    Bytes section = section2(5, 21);
    set(section, 6, points, 4);
    set(section, 20, bits);
    return section;
}

inline Bytes bitmap(int indicator, const Bytes& map = {}) {
    Bytes head = section2(6, 6);
    set(head, 1, 6 + static_cast<int>(map.size()), 4);
    set(head, 6, indicator);
    return join({head, map});
}

inline Bytes data(const Bytes& packed) {
    Bytes head = section2(7, 5);
    set(head, 1, 5 + static_cast<int>(packed.size()), 4);
    return join({head, packed});
}

class Grib : public test::TempDirTest {
  protected:
    void SetUp() override { MESS_set(0, MESS_NONE); }

    /// The records of a file of these bytes, read whole.
    std::vector<GRD_report> read(const Bytes& bytes, int* last = nullptr) {
        const std::string path = dir.write("test.grib", std::string(bytes.begin(), bytes.end()));
        std::vector<GRD_report> records;
        int type = GRD_TYPE_GRIB;
        const int fd = GRD_open(path, 0, &type);
        EXPECT_GE(fd, 0);
        int result = GRD_getinfo(fd, &about);
        for (int i = 0; result == 0 && i < 50; ++i) {
            GRD_report head;
            GRD_report grd;
            int number = i;
            result = GRD_read(fd, &head, GRD_READ_HEADER, &number);
            if (result == 0) result = GRD_read(fd, &grd, GRD_READ_ALL, &number);
            if (result == 0) records.push_back(grd);
        }
        if (last) *last = result;
        GRIB_get_WMO_header(fd, header);
        GRD_close(fd);
        return records;
    }

    static std::vector<float> values(const GRD_report& grd) {
        if (!grd.grid) return {};
        return {grd.grid.get(), grd.grid.get() + GRD_points(&grd)};
    }

    std::string header;
    GRD_info about;
};

using Values = std::vector<float>;

/// The product block of edition 1; that of edition 0 has its first 24 octets.
inline Bytes product1(bool grid, int length = 28) {
    Bytes block(static_cast<std::size_t>(length), 0);
    set(block, 1, length, 3);
    for (const auto& [octet, value] : {std::pair{4, 2},
                                       {5, 7},
                                       {7, 255},
                                       {8, grid ? 0x80 : 0},
                                       {9, 7},
                                       {10, 100},
                                       {13, 98},
                                       {14, 3},
                                       {15, 15},
                                       {16, 12},
                                       {18, 1}})
        set(block, octet, value);
    set(block, 11, 1000, 2);
    return block;
}

inline Bytes values1(const Bytes& packed, int bits) {
    Bytes values(11, 0);
    set(values, 1, 11 + static_cast<int>(packed.size()), 3);
    set(values, 11, bits);
    return join({values, packed});
}

/// An edition 1 message: product block changed by `change`, then the data block.
inline Bytes message1(const std::function<void(Bytes&)>& change, const Bytes& grid, const Bytes& packed, int bits) {
    Bytes block = product1(!grid.empty());
    change(block);
    return message(1, {block, grid, values1(packed, bits)});
}

inline Bytes latlon1(int nx, int ny, int vertical) {
    Bytes block(static_cast<std::size_t>(32 + 4 * vertical), 0);
    set(block, 1, static_cast<int>(block.size()), 3);
    set(block, 4, vertical);
    set(block, 5, vertical ? 33 : 255);
    set(block, 7, nx, 2);
    set(block, 9, ny, 2);
    set(block, 17, 0x80);
    set(block, 24, 1000, 2);
    set(block, 26, 1000, 2);
    return block;
}

}  // namespace zav::grib_test
