// Garbled grid files: every reader ends with a result, whatever the bytes. Seeded, so that a failure comes again.
#include <gtest/gtest.h>
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "grid/grib/grib_messages.h"
#include "support/table.h"

namespace zav {
namespace {

using Bytes = std::vector<char>;

/// The beginnings of the samples and of all files of the lists.
std::vector<Bytes> seeds() {
    constexpr std::size_t MOST = 40000;
    std::vector<Bytes> files;
    std::vector<std::string> folders = test::data_folders();
    folders.push_back(test::source_dir() + "/samples");
    for (const std::string& folder : folders) {
        for (const auto& entry : std::filesystem::directory_iterator(folder)) {
            if (entry.path().filename().string().find(".gr") == std::string::npos) continue;
            const std::string bytes = test::read_file(entry.path()).substr(0, MOST);
            EXPECT_FALSE(bytes.empty()) << entry.path();
            files.emplace_back(bytes.begin(), bytes.end());
        }
    }
    std::sort(files.begin(), files.end());
    EXPECT_GE(files.size(), 8U);
    return files;
}

/// Reads a file as a search does: headers first, then the values of each record, and back to the start.
void read_all(const std::string& path, int type) {
    const int fd = GRD_open(path, 0, &type);
    if (fd < 0) return;
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
        read_all(path_, type_);
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
    }

    std::vector<Bytes> files_;
    test::TempDir folder_;
    std::string path_;
    int type_ = GRD_TYPE_GRIB;
    std::mt19937 random_{20110110};

    std::size_t below(std::size_t n) { return std::uniform_int_distribution<std::size_t>(0, n - 1)(random_); }

    /// A file that is cut, or has bytes changed, or a piece of another one put in. Early bytes matter, later are alike.
    Bytes damaged(Bytes bytes, int round) {
        static constexpr unsigned char EXTREMES[] = {0, 1, 0x7F, 0x80, 0xFE, 0xFF};
        const auto place = [&](std::size_t most) {
            return static_cast<long>(below(std::min(bytes.size(), below(10) < 8 ? most : bytes.size())));
        };
        if (round % 8 < 2) {
            bytes.resize(static_cast<std::size_t>(place(260)));
        } else if (round % 8 < 7) {
            for (std::size_t n = 1 + below(4); n > 0; --n) {
                bytes[static_cast<std::size_t>(place(260))] =
                    static_cast<char>(below(2) ? EXTREMES[below(6)] : below(256));
            }
        } else {
            const Bytes other = files_[below(files_.size())];
            const long from = static_cast<long>(below(other.size()));
            const long count = std::min(static_cast<long>(below(300)) + 1, static_cast<long>(other.size()) - from);
            bytes.insert(bytes.begin() + place(600), other.begin() + from, other.begin() + from + count);
        }
        return bytes;
    }
};

TEST_F(GribMutation, AnyFileDamaged) {
    for (const Bytes& file : files_) {
        for (int round = 0; round < 160; ++round) try_bytes(damaged(file, round));
    }
}

/// Native files and text messages, whose type is told by what is left of them.
TEST_F(GribMutation, AnyTextDamaged) {
    type_ = GRD_TYPE_ANY;
    for (const test::Row& row : test::data_table("native_records.tsv")) {
        std::string text = test::unescaped(row.at("text"));
        if (row.at("type") == "22") {
            for (int i = 0; i < 320; ++i) text += i < 10 ? " 1071 20001 10000 23 31000" : " 100";
        }
        for (int round = 0; round < 80; ++round) try_bytes(damaged({text.begin(), text.end()}, round));
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

/// A message of some 200 bytes whose grid would be `nx` by `ny` points, packed by `packing` with `bits` bits.
Bytes small_message(std::int64_t nx, std::int64_t ny, int packing, int bits, std::int64_t groups) {
    using namespace grib_test;
    auto grid = latlon(0, 0, 0);
    set(grid, 31, nx, 4);
    set(grid, 35, ny, 4);
    auto packed = section2(5, packing == 0 ? 21 : 49);
    set(packed, 6, 0xFFFFFFFF, 4);
    set(packed, 10, packing, 2);
    set(packed, 20, bits);
    if (packing != 0) {
        set(packed, 32, groups, 4);
        set(packed, 38, 0x7FFFFFFF, 4);
        set(packed, 42, 255);
        set(packed, 43, 0xFFFFFFFF, 4);
        set(packed, 48, 2);
        set(packed, 49, 2);
    }
    const auto whole =
        message2(0, {identification(), grid, product(), packed, bitmap(255), data(grib_test::Bytes(10, 1))});
    return {whole.begin(), whole.end()};
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
