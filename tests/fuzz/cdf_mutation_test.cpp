// Garbled netCDF files: whatever the octets, reading ends with a result, soon, and with memory that the file justifies.
#include <sys/resource.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <string>
#include <utility>
#include <vector>

#include "frame/mess.h"
#include "grid/netcdf/cdf_files.h"

namespace zav {
namespace {

/// Octets of the small files up to which their headers reach at most.
constexpr std::size_t HEADER = 1800;

class CdfMutation : public test::TempDirTest {
  protected:
    CdfMutation() { MESS_set(0, MESS_NONE); }

    /// Reads a file as a search does: the headers of all records, then the values of each.
    void read_all(const std::string& bytes) {
        std::filesystem::remove("mutant.nc");  // a file that is cut to nothing first waits for the disk
        test::write_file("mutant.nc", bytes);
        const auto start = std::chrono::steady_clock::now();
        int type = GRD_TYPE_CDF;
        const int fd = GRD_open("mutant.nc", 0, &type);
        if (fd < 0) return;
        opened_++;
        GRD_info info;
        GRD_getinfo(fd, &info);
        int records = 0;
        GRD_report head;
        for (int at = 0; GRD_read(fd, &head, GRD_READ_HEADER, &at) == 0; at++) records++;
        for (int at = 0; at < std::min(records, 40); at++) {
            GRD_report grd;
            int number = at;
            if (GRD_read(fd, &grd, GRD_READ_ALL, &number) != 0 || !GRD_has_values(&grd)) continue;
            fields_++;
            // The last value is touched: the block is as large as the domain says.
            volatile float last = grd.grid[GRD_points(&grd) - 1];
            (void)last;
        }
        GRD_close(fd);
        EXPECT_LE(static_cast<std::size_t>(records), bytes.size());
        EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(5));
    }
    /// The small files of tests/data/netcdf, in the formats of the classic kind.
    std::vector<std::string> classic_files() {
        std::vector<std::string> files;
        for (const auto& [name, kind] :
             {std::pair{"own", "classic"}, {"model", "64-bit offset"}, {"own", "64-bit data"}})
            files.push_back(test::read_file(test::make_netcdf(dir, test::cdl_text(name), kind)));
        return files;
    }

    int opened_ = 0;
    int fields_ = 0;
};

TEST_F(CdfMutation, CutAtEveryLength) {
    for (const std::string& file : classic_files()) {
        for (std::size_t size = 0; size < file.size(); size += size < HEADER ? 1 : 97) read_all(file.substr(0, size));
    }
    EXPECT_GT(fields_, 100);
}

TEST_F(CdfMutation, EveryOctetOfAHeaderChanged) {
    rusage before{};
    getrusage(RUSAGE_SELF, &before);
    for (const std::string& file : classic_files()) {
        for (std::size_t at = 0; at < std::min(file.size(), HEADER); at++) {
            for (const int value : {0, 0xFF}) {
                std::string bytes = file;
                bytes[at] = static_cast<char>(value);
                read_all(bytes);
            }
        }
    }
    EXPECT_GT(opened_, 2000);
    EXPECT_GT(fields_, 5000);
    rusage after{};
    getrusage(RUSAGE_SELF, &after);
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 300 * 1024) << "kilobytes";
}

TEST_F(CdfMutation, PackedFilesCutAtManyLengths) {
    for (const char* name : {"model", "own"}) {
        const std::string file = test::read_file(test::make_netcdf(dir, test::cdl_text(name), "nc4"));
        for (std::size_t size = 0; size < file.size(); size += 97) read_all(file.substr(0, size));
        read_all(file);
    }
    EXPECT_GT(fields_, 10);
}

/// Sizes and records that a small file claims: no room is made for what isn't there, and the walk has an end.
TEST_F(CdfMutation, SizesThatLie) {
    rusage before{};
    getrusage(RUSAGE_SELF, &before);
    const std::string grid =
        "lat = 2; lon = 3; variables: float frtime(frtime); float lat(lat); float lon(lon); float T(frtime, lat, lon); "
        "data: frtime = 0, 6; lat = 1, 2; lon = 1, 2, 3; T = 1, 2, 3, 4, 5, 6, 1, 2, 3, 4, 5, 6; }";
    for (const char* frtime : {"UNLIMITED", "2"}) {
        const std::string file = test::read_file(test::make_netcdf(
            dir, "netcdf a { dimensions: frtime = " + std::string(frtime) + "; " + grid, "64-bit offset"));
        read_all(file);
        EXPECT_EQ(fields_, 2);
        fields_ = 0;
        // A name is filled up to four octets, its size follows; the number of records is the second word.
        const std::vector<std::size_t> sizes = {4, file.find("frtime") + 8, file.find("lat") + 4, file.find("lon") + 4};
        for (unsigned choice = 1; choice < 16; choice++) {
            for (const char* size : {"\x7F\xFF\xFF\xFF", "\0\0\xB4\0", "\xFF\xFF\xFF\xFF"}) {
                std::string bytes = file;
                for (std::size_t i = 0; i < sizes.size(); i++)
                    if ((choice >> i & 1U) != 0) bytes.replace(sizes[i], 4, size, 4);
                read_all(bytes);
            }
        }
        EXPECT_LE(fields_, 200);
        fields_ = 0;
    }
    rusage after{};
    getrusage(RUSAGE_SELF, &after);
    EXPECT_LT(after.ru_maxrss - before.ru_maxrss, 300 * 1024) << "kilobytes";
}

}  // namespace
}  // namespace zav
