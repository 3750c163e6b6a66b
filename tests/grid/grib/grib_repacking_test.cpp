// Fields that ecCodes packed again, value by value against its own decoding.
#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "grid/grib/grib_jpeg2000.h"
#include "grid/grib/grib_messages.h"

namespace zav::grib_test {
namespace {

/// What ecCodes is asked to make of a field.
struct Repacked {
    const char* what;
    const char* file;
    const char* keys;
};

class Repacking : public Grib, public testing::WithParamInterface<Repacked> {};

TEST_P(Repacking, AgreesWithEcCodes) {
    if (!test::have_program("grib_set")) GTEST_SKIP() << "ecCodes isn't installed";
    const Repacked& c = GetParam();
    const std::string source = test::source_dir() + "/samples/" + c.file;
    int status = 0;
    test::run_command(std::string("grib_set -r -w shortName=t -s ") + c.keys + " -S '" + source + "' out.grb 2>&1",
                      &status);
    ASSERT_EQ(status, 0);
    std::istringstream listed(test::run_command("grib_get_data -w count=1 -m -9999 -F %.9g out.grb"));
    const std::string one = test::run_command("grib_copy -w count=1 out.grb one.grb; cat one.grb");
    const auto records = read(Bytes(one.begin(), one.end()));
    ASSERT_EQ(records.size(), 1U);
    const Values ours = values(records[0]);
    const int nx = records[0].domain.nx;
    const int ny = records[0].domain.ny;
    std::string line;
    std::getline(listed, line);
    int count = 0;
    double lat = 0.0;
    double lon = 0.0;
    double value = 0.0;
    const bool south_first = test::run_command("grib_get -p jScansPositively one.grb")[0] == '1';
    for (; listed >> lat >> lon >> value; ++count) {
        const int row = south_first ? ny - 1 - count / nx : count / nx;
        ASSERT_NEAR(ours[static_cast<std::size_t>(row * nx + count % nx)], value, 1e-6 * std::fabs(value)) << count;
    }
    EXPECT_EQ(count, nx * ny);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, Repacking,
    testing::Values(Repacked{"simple", "26011512_wave.grb2", "packingType=grid_simple,bitsPerValue=13"},
                    Repacked{"complex", "26011512_wave.grb2", "packingType=grid_complex"},
                    Repacked{"differences", "26011512_wave.grb2", "packingType=grid_complex_spatial_differencing"},
                    Repacked{"jpeg2000", "26011512_wave.grb2", "packingType=grid_jpeg"},
                    Repacked{"jpeg2000_of_one_row", "26011512_wave.grb2", "packingType=grid_jpeg,bitmapPresent=1"},
                    Repacked{"constant_complex", "26011512_wave.grb2", "packingType=grid_complex -d 281.5"},
                    Repacked{"edition1", "26011512_wavelc.grb", "packingType=grid_simple,bitsPerValue=11"}),
    [](const auto& kind) { return std::string(kind.param.what); });

/// Position of section `number` in an edition 2 message.
int section_at(const Bytes& message, int number) {
    std::size_t at = 16;
    while (at + 5 < message.size() && message[at + 4] != number) {
        at += static_cast<std::size_t>(message[at] << 24 | message[at + 1] << 16 | message[at + 2] << 8 |
                                       message[at + 3]);
    }
    return static_cast<int>(at);
}

TEST_F(Grib, AnImageCountsMoreThanTheNumberOfItsPoints) {
    if (!test::have_program("grib_set")) GTEST_SKIP() << "ecCodes isn't installed";
    const std::string source = test::source_dir() + "/samples/26011512_wave.grb2";
    const std::string text =
        test::run_command("grib_set -r -S -w count=2 -s packingType=grid_jpeg '" + source + "' out.grb; cat out.grb");
    const Bytes message(text.begin(), text.end());
    const Values expected = values(read(message).at(0));
    const std::size_t data = static_cast<std::size_t>(section_at(message, 7));
    const std::size_t size = message.size() - data - 5 - 4;  // between the section's head and the message's end mark
    Jpeg2000Image image;
    EXPECT_TRUE(jpeg2000_decode(&message[data + 5], size, expected.size(), &image));
    EXPECT_FALSE(jpeg2000_decode(&message[data + 5], size, expected.size() - 1, &image)) << "more than is allowed";
    Bytes changed = message;
    set(changed, section_at(message, 5) + 6, 3, 4);  // told to hold three values
    EXPECT_EQ(values(read(changed).at(0)), expected);
    const int grid = section_at(message, 3);
    const int ny = message[static_cast<std::size_t>(grid + 36)] << 8 | message[static_cast<std::size_t>(grid + 37)];
    set(changed, grid + 35, ny - 1, 4);  // a grid lower than the image: its first rows
    const Values lower = values(read(changed).at(0));
    ASSERT_EQ(lower.size() * static_cast<std::size_t>(ny), expected.size() * static_cast<std::size_t>(ny - 1));
    EXPECT_TRUE(std::equal(lower.begin(), lower.end(), expected.begin()));
    changed = message;
    changed[static_cast<std::size_t>(grid + 71)] |= 0x10;  // every second row runs backward
    const Values turned = values(read(changed).at(0));
    const long nx = static_cast<long>(expected.size()) / ny;
    for (long row = 0; row < ny; ++row) {
        Values line(turned.begin() + row * nx, turned.begin() + (row + 1) * nx);
        if (row % 2 == 1) std::reverse(line.begin(), line.end());
        ASSERT_TRUE(std::equal(line.begin(), line.end(), expected.begin() + row * nx)) << row;
    }
}

}  // namespace
}  // namespace zav::grib_test
