// Garbled GRIB files: every reader ends with a result, whatever the bytes. Seeded, so that a failure comes again.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

#include "frame/mess.h"
#include "grid/grd_read.h"
#include "grid/grd_tool.h"
#include "support/support.h"

namespace zav {
namespace {

using Bytes = std::vector<char>;

Bytes load(const std::string& path, std::size_t most) {
    std::ifstream in(path, std::ios::binary);
    Bytes bytes{std::istreambuf_iterator<char>(in), {}};
    if (bytes.size() > most) bytes.resize(most);
    return bytes;
}

std::vector<Bytes> seeds() {
    constexpr std::size_t MOST = 40000;
    std::vector<std::string> paths;
    for (const char* name : {"26011512_wave.grb2", "26011512_wavelc.grb"})
        paths.push_back(test::source_dir() + "/samples/" + name);
    for (const char* name :
         {"bulletin_40bytes.grib2", "bulletin_41bytes.grib1", "cmc_wind300_polar.grib1", "eta_lambert_f24_cut.grib2",
          "gfs_2p5deg_f120_cut.grib2", "jma_nowcast_runlength.grib2", "missing_values.grib1",
          "ndfd_temp_mercator.grib2", "ngm_polar_f48.grib2", "ngm_polar_jpeg2000.grib2", "reduced_latlon.grib1"}) {
        const std::string path = test::data_file(name);
        if (!path.empty()) paths.push_back(path);
    }
    std::vector<Bytes> files;
    for (const std::string& path : paths) {
        files.push_back(load(path, MOST));
        EXPECT_FALSE(files.back().empty()) << path;
    }
    return files;
}

/// Reads a file as a search does: headers first, then the values of each record, and back to the start.
void read_all(const std::string& path) {
    int type = GRD_TYPE_GRIB;
    const int fd = GRD_open(path, 0, &type);
    ASSERT_GE(fd, 0);
    GRD_info info;
    if (GRD_getinfo(fd, &info) == 0) {
        for (int i = 0; i < 40; ++i) {
            GRD_report head;
            GRD_report grd;
            int number = i;
            if (GRD_read(fd, &head, GRD_READ_HEADER, &number) != 0) break;
            if (GRD_read(fd, &grd, GRD_READ_ALL, &number) == 0 && grd.grid) {
                ASSERT_TRUE(GRD_has_values(&grd));
                // The last value is touched: the block is as large as the domain says.
                volatile float last = grd.grid[GRD_points(&grd) - 1];
                (void)last;
            }
        }
        GRD_report again;
        int first = 0;
        GRD_read(fd, &again, GRD_READ_ALL, &first);
    }
    GRD_close(fd);
}

class GribMutation : public testing::Test {
  protected:
    void SetUp() override {
        MESS_set(0, MESS_NONE);
        files_ = seeds();
        path_ = folder_.file("mutant.grib");
    }

    void try_bytes(const Bytes& bytes) {
        std::ofstream(path_, std::ios::binary | std::ios::trunc).write(bytes.data(), static_cast<long>(bytes.size()));
        const auto start = std::chrono::steady_clock::now();
        read_all(path_);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
    }

    std::vector<Bytes> files_;
    test::TempDir folder_;
    std::string path_;
    std::mt19937 random_{20110110};

    std::size_t below(std::size_t n) { return std::uniform_int_distribution<std::size_t>(0, n - 1)(random_); }
};

TEST_F(GribMutation, CutAnywhere) {
    for (const Bytes& file : files_) {
        for (int i = 0; i < 40; ++i) {
            // Every early byte matters, later ones are alike.
            const std::size_t size = i < 25 ? below(std::min<std::size_t>(file.size(), 260)) : below(file.size());
            try_bytes(Bytes(file.begin(), file.begin() + static_cast<long>(size)));
        }
    }
}

TEST_F(GribMutation, AnyByteChanged) {
    static constexpr unsigned char EXTREMES[] = {0, 1, 0x7F, 0x80, 0xFE, 0xFF};
    for (const Bytes& file : files_) {
        for (int i = 0; i < 120; ++i) {
            Bytes bytes = file;
            for (std::size_t n = 1 + below(4); n > 0; --n) {
                const std::size_t at =
                    below(10) < 8 ? below(std::min<std::size_t>(bytes.size(), 260)) : below(bytes.size());
                bytes[at] = static_cast<char>(below(2) ? EXTREMES[below(6)] : below(256));
            }
            try_bytes(bytes);
        }
    }
}

TEST_F(GribMutation, HeadersOfImages) {
    static constexpr char START[] = "\xFF\x4F\xFF\x51";
    int images = 0;
    for (const Bytes& file : files_) {
        const auto found = std::search(file.begin(), file.end(), START, START + 4);
        if (found == file.end()) continue;
        ++images;
        const std::size_t at = static_cast<std::size_t>(found - file.begin());
        for (int i = 0; i < 400; ++i) {
            Bytes bytes = file;
            for (std::size_t n = 1 + below(3); n > 0; --n) {
                bytes[at + below(std::min<std::size_t>(140, file.size() - at))] = static_cast<char>(below(256));
            }
            try_bytes(bytes);
        }
    }
    EXPECT_GT(images, 0);
}

TEST_F(GribMutation, PiecesInTheWrongPlace) {
    for (const Bytes& file : files_) {
        for (int i = 0; i < 25; ++i) {
            Bytes bytes = file;
            const Bytes& other = files_[below(files_.size())];
            const std::size_t from = below(other.size());
            const std::size_t count = std::min(below(300) + 1, other.size() - from);
            const long at = static_cast<long>(below(std::min<std::size_t>(bytes.size(), 600)));
            bytes.insert(bytes.begin() + at, other.begin() + static_cast<long>(from),
                         other.begin() + static_cast<long>(from + count));
            try_bytes(bytes);
        }
    }
}

void put(Bytes& bytes, std::uint64_t value, int octets) {
    for (int i = octets - 1; i >= 0; --i) bytes.push_back(i < 8 ? static_cast<char>(value >> (8 * i)) : 0);
}

/// A message of some 200 bytes whose grid would be `nx` by `ny` points, packed by `packing` with `bits` bits.
Bytes small_message(std::uint32_t nx, std::uint32_t ny, int packing, int bits, std::uint32_t groups) {
    Bytes body;
    put(body, 21, 4);
    put(body, 1, 1);
    for (const int value : {0, 7, 0, 0, 2, 1, 1, 2011 >> 8, 2011 & 255, 1, 10, 12, 0, 0, 0, 1}) put(body, value, 1);
    put(body, 72, 4);
    put(body, 3, 1);
    Bytes grid(67, 0);
    auto set = [&](int octet, std::uint32_t value) {
        for (int i = 0; i < 4; ++i)
            grid[static_cast<std::size_t>(octet - 6 + i)] = static_cast<char>(value >> (24 - 8 * i));
    };
    set(31, nx);
    set(35, ny);
    set(47, 45000000);
    set(60, 90000000);
    body.insert(body.end(), grid.begin(), grid.end());
    put(body, 34, 4);
    put(body, 4, 1);
    body.insert(body.end(), 29, 0);
    const int length5 = packing == 0 ? 21 : 49;
    put(body, static_cast<std::uint64_t>(length5), 4);
    put(body, 5, 1);
    put(body, 0xFFFFFFFFU, 4);
    put(body, static_cast<std::uint64_t>(packing), 2);
    put(body, 0, 8);
    put(body, static_cast<std::uint64_t>(bits), 1);
    put(body, 0, 1);
    if (packing != 0) {
        put(body, 0, 10);
        put(body, groups, 4);
        put(body, 0, 2);
        put(body, 0x7FFFFFFF, 4);
        put(body, 255, 1);
        put(body, 0xFFFFFFFFU, 4);
        put(body, 0, 1);
        put(body, 2, 1);
        put(body, 2, 1);
    }
    put(body, 6, 4);
    put(body, 6, 1);
    put(body, 255, 1);
    put(body, 15, 4);
    put(body, 7, 1);
    body.insert(body.end(), 10, 1);
    Bytes message{'G', 'R', 'I', 'B', 0, 0, 0, 2};
    put(message, body.size() + 20, 8);
    message.insert(message.end(), body.begin(), body.end());
    message.insert(message.end(), 4, '7');
    return message;
}

TEST_F(GribMutation, HugeGridsInSmallMessages) {
    rusage before{};
    getrusage(RUSAGE_SELF, &before);
    for (const auto& [nx, ny] :
         {std::pair{60000U, 60000U}, {60000U, 9000U}, {0x7FFFFFFFU, 1U}, {0xFFFFFFFFU, 9000U}, {3000U, 9000U}}) {
        for (const int bits : {1, 8, 32, 255}) try_bytes(small_message(nx, ny, 0, bits, 0));
        for (const std::uint32_t groups : {1U, 1000U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
            try_bytes(small_message(nx, ny, 3, 4, groups));
            try_bytes(small_message(nx, ny, 2, 0, groups));
        }
    }
    rusage after{};
    getrusage(RUSAGE_SELF, &after);
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 700 * 1024) << "kilobytes";
}

}  // namespace
}  // namespace zav
