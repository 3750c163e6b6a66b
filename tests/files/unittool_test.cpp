#include "files/unittool.h"

#include <gtest/gtest.h>

#include <unistd.h>
#include <cmath>
#include <filesystem>

#include "frame/resrc.h"
#include "frame/zav.h"
#include "support/support.h"

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
    struct Case {
        const char *from, *to;
        float value, result;
    };
    const Case cases[] = {
        {"C", "F", 100.0F, 212.0F},          {"K", "C", 273.15F, 0.0F},         {"K", "F", 233.15F, -40.0F},
        {"degC", "kelvin", 25.0F, 298.15F},  {"m/s", "kt", 10.0F, 19.43844F},   {"m/s", "mph", 10.0F, 22.36936F},
        {"kt", "km/h", 100.0F, 185.2F},      {"Pa", "mb", 101325.0F, 1013.25F}, {"hPa", "inHg", 1013.25F, 29.92126F},
        {"gpm", "ft", 5700.0F, 18700.79F},   {"gpm", "dam", 5460.0F, 546.0F},   {"km", "mi", 10.0F, 6.213712F},
        {"kg/m**2", "mm", 12.7F, 12.7F},     {"kg/m^2", "in", 25.4F, 1.0F},     {"mm", "in", 50.8F, 2.0F},
        {"kg/kg", "g/kg", 0.012F, 12.0F},    {"kg/kg", "gm/kg", 0.012F, 12.0F}, {"fraction", "%", 0.25F, 25.0F},
        {"%", "oktas", 50.0F, 4.0F},         {"/s", "1e-5/s", 3e-5F, 3.0F},     {"1/s", "10^-5 /s", 3e-5F, 3.0F},
        {"Pa/s", "mb/h", -1.0F, -36.0F},     {"kg/m2/s", "mm/h", 0.001F, 3.6F}, {"m**2/s**2", "gpm", 9806.65F, 1000.0F},
        {"hours", "min", 2.5F, 150.0F},      {"J/kg", "kJ/kg", 2500.0F, 2.5F},  {"W/m**2", "ly/min", 697.3333F, 1.0F},
        {"rad", "deg", 3.1415927F, 180.0F},  {"K_s-1", "K/day", 1e-4F, 8.64F},  {"1e-05 K/m", "K/100km", 2.0F, 2.0F},
        {"m s-1", "knots", 10.0F, 19.43844F}};
    for (const Case& c : cases) {
        const float tolerance = 2e-5F * std::max(std::fabs(c.result), std::fabs(c.value));
        EXPECT_NEAR(UNIT_cvt(c.value, c.from, c.to), c.result, tolerance) << c.from << " to " << c.to;
        EXPECT_NEAR(UNIT_cvt(c.result, c.to, c.from), c.value, tolerance) << c.to << " to " << c.from;
        EXPECT_EQ(UNIT_cvt(FMISS, c.from, c.to), FMISS);
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
