// Fields that don't fit into memory: each reader tells it in words and the run goes on to its end.

#include <gtest/gtest.h>

#include "e2e/program.h"
#include "support/support.h"

namespace zav::test {
namespace {

std::string number(std::uint64_t value, int octets) {
    std::string text;
    for (int i = octets - 1; i >= 0; --i) text += static_cast<char>(value >> (8 * i));
    return text;
}

std::string section(int number_of, const std::string& body) {
    return number(body.size() + 5, 4) + static_cast<char>(number_of) + body;
}

/// A field of 3000 by 3000 points of 500 mb height; `packing` is section 5 from its octet 10 on.
std::string edition2(const std::string& packing, const std::string& values) {
    const std::string grid = number(0, 25) + number(3000, 4) + number(3000, 4) + number(0, 8) + number(60000000, 4) +
                             number(230000000, 4) + '\x30' + number(20000000, 4) + number(300000000, 4) + number(0, 9);
    const std::string product = number(0, 4) + number(0x0305, 2) + number(0, 6) + number(1, 1) + number(24, 4) +
                                number(0x6400, 2) + number(50000, 4) + '\xFF' + number(0, 5);
    const std::string body = section(1, number(7, 7) + number(2011, 2) + number(0x010A0C, 3) + number(0, 4)) +
                             section(3, grid) + section(4, product) + section(5, number(9000000, 4) + packing) +
                             section(6, "\xFF") + section(7, values);
    return "GRIB" + number(2, 4) + number(body.size() + 20, 8) + body + "7777";
}

/// A field of 2000 by 2000 points in 32 bits each, the most that edition 1 allows.
std::string edition1() {
    const std::string product = number(28, 3) + number(0x020700FF80076401, 8) + number(0xF4, 1) +
                                number(0x0B010A0C0001, 6) + number(24, 1) + number(0, 5) + number(21, 1) + number(0, 3);
    const std::string grid = number(32, 3) + number(0x00FF00, 3) + number(2000, 2) + number(2000, 2) +
                             number(60000, 3) + number(130000, 3) + '\x80' + number(20000, 3) + number(60000, 3) +
                             number(20, 2) + number(20, 2) + number(0, 5);
    const std::string body = product + grid + number(11 + 16000000, 3) + number(0, 3) + number(0x44138800, 4) + '\x20' +
                             std::string(16000000, '\0') + "7777";
    return "GRIB" + number(body.size() + 8, 3) + '\x01' + body;
}

std::string native(char digit, const std::string& value) {
    std::string text = std::string("ZAVGRID\n1200Z 10 JAN 11\n") + digit +
                       "-24 hour 500 mb Height (gpm)\n7 2 96 0 100 500 24 7:gpm\nLL 40 -95 0.01 0.01 3000 3000\n";
    for (int i = 0; i < 9000000; ++i) text += value;
    return text + "\n";
}

struct Reader {
    const char* what;
    std::string (*file)();
};

class Memory : public testing::TestWithParam<Reader> {};

TEST_P(Memory, AFieldThatDoesntFitIsTold) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the address sanitizer needs memory without a limit";
#endif
    const TempDir dir;
    dir.write("big.grd", GetParam().file());
    const std::string options = "-ft h24 -le 500 -va hght -pl ln -in 60 -de p,x.ps big.grd";
    const Outcome run = run_program(dir.path(), options, "", "ulimit -v 30000");
    EXPECT_EQ(run.status, 20) << run.err;
    EXPECT_NE(run.err.find("GRD_alloc: No memory for grid field\n"), std::string::npos) << run.err;
    EXPECT_EQ(read_page(dir.file("x.ps")).pages, 0);
    const Outcome roomy = run_program(dir.path(), options);
    EXPECT_EQ(roomy.status, 0) << roomy.err;
}

INSTANTIATE_TEST_SUITE_P(
    Readers, Memory,
    testing::Values(Reader{"grib1", edition1},
                    Reader{"simple",
                           [] {
                               return edition2(number(0x000045A00000, 6) + number(0, 4) + "\x08" + number(0, 1),
                                               std::string(9000000, '\0'));
                           }},
                    Reader{"constant", [] { return edition2(number(0x000045A00000, 6) + number(0, 6), ""); }},
                    Reader{"complex",
                           [] {
                               return edition2(number(0x000245A00000, 6) + number(0, 4) + number(0x08000100, 4) +
                                                   number(0, 8) + number(1, 4) + number(0x0008, 2) + number(1, 4) +
                                                   '\x01' + number(9000000, 4) + number(0, 1),
                                               number(0x010000, 3));
                           }},
                    Reader{"run_length",
                           [] {
                               return edition2(number(0x00C80800010001, 7) + number(0, 1) + number(5000, 2),
                                               std::string("\x01\x01", 2));
                           }},
                    Reader{"native_text", [] { return native('2', "0\n"); }},
                    Reader{"native_binary", [] { return native('3', std::string(4, '\0')); }}),
    [](const auto& kind) { return std::string(kind.param.what); });

}  // namespace
}  // namespace zav::test
