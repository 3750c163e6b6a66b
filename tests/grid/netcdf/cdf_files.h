#pragma once

#include <gtest/gtest.h>

#include <string>

#include "grid/grd_read.h"
#include "grid/grd_tool.h"
#include "support/support.h"

namespace zav::test {

/// The text of tests/data/netcdf/NAME.cdl.
inline std::string cdl_text(const std::string& name) {
    return read_file(source_dir() + "/tests/data/netcdf/" + name + ".cdl");
}

/// Makes a netCDF file of a text with ncgen, in the format `kind` ("classic", "64-bit offset", "64-bit data", "nc4").
/// Its path.
inline std::string make_netcdf(const TempDir& dir, const std::string& cdl, const std::string& kind = "classic") {
    const std::string path = dir.file("made.nc");
    int status = 0;
    run_command("ncgen -k '" + kind + "' -o '" + path + "' '" + dir.write("made.cdl", cdl) + "'", &status);
    EXPECT_EQ(status, 0) << cdl;
    return path;
}

/// An open grid file, closed with this object.
class OpenGrid {
  public:
    explicit OpenGrid(const std::string& path) : fd_(GRD_open(path, 0, &type_)) {
        if (fd_ >= 0) {
            EXPECT_EQ(GRD_getinfo(fd_, &info), 0);
        }
    }
    ~OpenGrid() {
        if (fd_ >= 0) GRD_close(fd_);
    }
    OpenGrid(const OpenGrid&) = delete;
    OpenGrid& operator=(const OpenGrid&) = delete;

    bool open() const { return fd_ >= 0; }
    /// Reads record `number`; the result of GRD_read.
    int read(int number, GRD_report* grd, int rep_type = GRD_READ_ALL) const {
        int at = number;
        const int result = GRD_read(fd_, grd, rep_type, &at);
        if (result == 0) {
            EXPECT_EQ(at, number);
        }
        return result;
    }

    GRD_info info;

  private:
    int type_ = 0;
    int fd_;
};

}  // namespace zav::test
