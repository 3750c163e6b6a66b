#include "files/unittool.h"

#include <gtest/gtest.h>

#include <unistd.h>
#include <cmath>
#include <filesystem>

#include "frame/resrc.h"
#include "frame/zav.h"
#include "support/support.h"
#include "support/table.h"

namespace zav {
namespace {

void use_shipped_table() { RES_put("file_path", test::source_dir() + "/share/zav"); }

/// A table of the test's own, in force as long as the object.
class OwnTable {
  public:
    explicit OwnTable(const std::string& text) {
        write(text);
        RES_put("file_path", dir_.path().string());
    }
    void write(const std::string& text) { dir_.write("units.lup", text); }
    void remove() { std::filesystem::remove(dir_.path() / "units.lup"); }

  private:
    test::TempDir dir_;
};

// Values from the definitions: NIST SP 811, WMO-No. 306.
TEST(Units, ShippedTableConvertsBothWays) {
    use_shipped_table();
    for (const test::Case& c : test::cases("files/units")) {
        const std::string from = c.text(0), to = c.text(1);
        const auto value = static_cast<float>(c.real(2)), result = static_cast<float>(c.real(3));
        const float tolerance = 2e-5F * std::max(std::fabs(result), std::fabs(value));
        EXPECT_NEAR(UNIT_cvt(value, from, to), result, tolerance) << c.line();
        EXPECT_NEAR(UNIT_cvt(result, to, from), value, tolerance) << c.line();
        EXPECT_EQ(UNIT_cvt(FMISS, from, to), FMISS);
    }
}

TEST(Units, NamesCompareWithoutCaseAndWithBlanksFilled) {
    const OwnTable table("# comment\nC F *1.8+32\nabc_d X *2-1\nx y 3\n");
    EXPECT_FLOAT_EQ(UNIT_cvt(100.0F, "c", "f"), 212.0F);
    EXPECT_FLOAT_EQ(UNIT_cvt(5.0F, "ABC d", "x"), 9.0F);
    EXPECT_FLOAT_EQ(UNIT_cvt(5.0F, "10 abc_d", "x"), 99.0F);
    EXPECT_FLOAT_EQ(UNIT_cvt(5.0F, "abc_d", "2 x"), 4.5F);
    EXPECT_FLOAT_EQ(UNIT_cvt(212.0F, "F", "C"), 212.0F) << "one line serves one direction";
    EXPECT_FLOAT_EQ(UNIT_cvt(4.0F, "x", "y"), 4.0F) << "a line without * leaves the value";
    EXPECT_FLOAT_EQ(UNIT_cvt(4.0F, "m/s", "m_/_s"), 4.0F);
    EXPECT_FLOAT_EQ(UNIT_cvt(4.0F, "", "F"), 4.0F);
    EXPECT_FLOAT_EQ(UNIT_cvt(4.0F, "C", ""), 4.0F);
    EXPECT_FLOAT_EQ(UNIT_cvt(4.0F, "- m", "m"), -4.0F);
    EXPECT_FLOAT_EQ(UNIT_cvt(4.0F, "0 m", "0 m/s"), 4.0F) << "a factor of 0 is none";
    EXPECT_FLOAT_EQ(UNIT_cvt(4.0F, "1e30^1e30 m", "inf"), 4.0F);
}

TEST(Units, TableIsReadAgainWhenItChanges) {
    OwnTable table("a b *2\n");
    EXPECT_FLOAT_EQ(UNIT_find("a", "b")(3.0F), 6.0F);
    table.write("a b *2.5+1\n");
    EXPECT_FLOAT_EQ(UNIT_find("a", "b")(3.0F), 8.5F);
    table.remove();
    EXPECT_FLOAT_EQ(UNIT_find("a", "b")(3.0F), 0.0F) << "without the file every value becomes 0";
    EXPECT_EQ(UNIT_find("a", "b")(FMISS), FMISS);
}

TEST(Units, TextsAreScaledAndSplit) {
    struct Case {
        const char* in;
        float scale;
        const char *mstr, *out;
    };
    for (const Case& c : {Case{"1e-5 /s", 100.0F, "", "1e-03 /s"}, Case{"m/s", 1e-5F, "/m", "1e-05 m/s/m"},
                          Case{"10^2 K", 1.0F, "/s", "1e+02 K/s"}, Case{"", 1e-5F, "/m", "1e-05 /m"}}) {
        std::string out;
        UNIT_scale(c.in, c.scale, c.mstr, out);
        EXPECT_EQ(out, c.out);
    }
    std::string var, units, text = "500 mb Temperature  (C)";
    UNIT_parse(text, var, units);
    EXPECT_EQ(var, "500 mb Temperature");
    EXPECT_EQ(units, "C");
    UNIT_change(text, "K");
    EXPECT_EQ(text, "500 mb Temperature (K)");
    UNIT_parse("no units (", var, units);
    EXPECT_EQ(var, "no units");
    EXPECT_EQ(units, "");
}

}  // namespace
}  // namespace zav
