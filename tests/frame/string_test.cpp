#include "frame/string.h"

#include <cmath>
#include <limits>

#include "frame/tools.h"
#include "frame/zav.h"
#include "support/support.h"
#include "support/table.h"

namespace zav {
namespace {

using Words = std::vector<std::string>;

TEST(WordList, KeepsEmptyFieldsButDropsThoseAtTheEnd) {
    EXPECT_EQ(parse_string("a,b,,", ','), (Words{"a", "b"}));
    EXPECT_EQ(parse_string("a,,b", ','), (Words{"a", "", "b"}));
    EXPECT_EQ(parse_string(",a", ','), (Words{"", "a"}));
    EXPECT_EQ(parse_string("a", ','), (Words{"a"}));
    EXPECT_TRUE(parse_string("", ',').empty());
    EXPECT_TRUE(parse_string(",,,", ',').empty());
    EXPECT_TRUE(parse_string(static_cast<const char*>(nullptr), ',').empty());
}

TEST(Compare, IgnoresCaseAndTreatsAnEmptyPrefixAsNoMatch) {
    EXPECT_EQ(stricmp("ABC", "abc"), 0);
    EXPECT_LT(stricmp("ABC", "abd"), 0);
    EXPECT_GT(stricmp("b", "A"), 0);
    EXPECT_EQ(stricmp(nullptr, "a"), 1);
    EXPECT_EQ(strnicmp("abcd", "ABxy", 2), 0);
    EXPECT_NE(strnicmp("ab", "abc", 3), 0);
    EXPECT_NE(strnicmp("abc", "xyz", 0), 0);
    EXPECT_EQ(strnicmp("abc", "Axx", 0), 0);
    EXPECT_EQ(chk_arg("TWO", {"one", "two"}), 1);
    EXPECT_EQ(chk_arg("2", {"one", "two"}), 2);
    EXPECT_EQ(chk_arg("3", {"one", "two"}), MISS);
}

struct Change {
    void (*change)(std::string&);
    std::string before;
    std::string after;
};

TEST(Change, EditsInPlace) {
    const Change cases[] = {
        {[](std::string& s) { fill_string(s, '_', ' '); }, "a_b_", "a b "},
        {[](std::string& s) { strip_string(s, ' '); }, " a b ", "ab"},
        {wstrim_string, "a b \r\n", "a b"},
        {trim_string, "  ", ""},
        {strip_spaces, " a   b  ", " a b"},
        {strip_escape, "a\\,b\\\\c\\", "a,b\\c"},
        {[](std::string& s) { shift_string(s, 2); }, "abcd", "ab"},
        {[](std::string& s) { shift_string(s, -3); }, "abcd", "d"},
        {[](std::string& s) { shift_string(s, 9); }, "abcd", ""},
        {clean_line, std::string("a\tb\xE9") + "c\x01\r", "a b c"},
        {clean_line, "ab\xE9", "ab "},
    };
    for (const Change& c : cases) {
        std::string text = c.before;
        c.change(text);
        EXPECT_EQ(text, c.after) << "of " << c.before;
    }
}

TEST(Tests, TellNumbersApart) {
    EXPECT_TRUE(string_is_num("-12"));
    EXPECT_TRUE(string_is_num("-"));
    EXPECT_FALSE(string_is_num("1.5"));
    EXPECT_FALSE(string_is_num(""));
    EXPECT_TRUE(string_is_num_len("12ab", 2));
    EXPECT_FALSE(string_is_num_len("12", 3));
    EXPECT_TRUE(string_is_blank(nullptr));
    EXPECT_FALSE(string_is_blank(" x"));
}

TEST(SetNum, KeepsSignificantDigits) {
    for (const test::Case& c : test::cases("frame/numbers")) {
        EXPECT_EQ(set_num(c.text(0), static_cast<float>(c.real(1))), c.text(2)) << c.line();
    }
    EXPECT_NE(set_num("5.3.1", std::numeric_limits<float>::infinity()), "");
}

TEST(Format, AcceptsOneNumericConversionOnly) {
    for (const char* good : {"%f", "%5.1f mb", "%-8.3e", "100%% %g", "%+.0f"})
        EXPECT_TRUE(format_is_safe(good)) << good;
    for (const char* bad :
         {"", "text", "%s", "%n", "%f %f", "%d", "%*f", "%Lf", "%999f", "%.100f", "%", "%f%", "%ld", "%5.1"}) {
        EXPECT_FALSE(format_is_safe(bad)) << bad;
    }
    EXPECT_TRUE(format_is_safe_int("%3.3d"));
    EXPECT_FALSE(format_is_safe_int("%f"));
    EXPECT_EQ(format_value("%.1f mb", 2.25), "2.2 mb");
    EXPECT_EQ(format_value("%s", 2.5), "2.5");
}

TEST(Float2int, CodesTwoDigitsAndAPower) {
    for (const test::Case& c : test::cases("frame/two_digits")) {
        EXPECT_EQ(float2int(static_cast<float>(c.real(0))), c.number(1)) << c.line();
    }
    EXPECT_EQ(float2int(std::nanf("")), 0);
    EXPECT_EQ(linear_interp(1.5F, 1, 3, 10, 30), 15);
}

class Lines : public test::TempDirTest {};

TEST_F(Lines, StopAtTheNewlineAndTheLimit) {
    const std::string path = dir.write("lines", "abc\n\nlonger line\nlast");
    const file_ptr file(std::fopen(path.c_str(), "r"));
    std::string line;
    EXPECT_EQ(fgetnline(file.get(), line, 80), 3);
    EXPECT_EQ(line, "abc");
    EXPECT_EQ(fgetstring(file.get(), line, 80), 0);
    EXPECT_EQ(line, "");
    EXPECT_EQ(fgetnline(file.get(), line, 6), 6);
    EXPECT_EQ(fgetnline(file.get(), line, 6), 5);
    EXPECT_EQ(line, " line");
    EXPECT_EQ(fgetstring(file.get(), line, 80), 1);
    EXPECT_EQ(line, "last");
    EXPECT_EQ(fgetline(file.get(), line), -1);
    EXPECT_EQ(fgetstring(file.get(), line, 80), -1);
}

TEST_F(Lines, RawStringAndSkippedLines) {
    const std::string path = dir.write("lines", "a\tb\r\nskipped\n  word next\n");
    const file_ptr file(std::fopen(path.c_str(), "r"));
    std::string line;
    EXPECT_EQ(fget_rawstring(file.get(), line, 80), 1);
    EXPECT_EQ(line, "a b");
    EXPECT_EQ(fskipline(file.get()), 0);
    fskiprest(file.get());
    EXPECT_EQ(fgetword(file.get(), line, 80), 1);
    EXPECT_EQ(line, "word");
    EXPECT_EQ(fgetword(file.get(), line, 2), 1);
    EXPECT_EQ(line, "ne");
}

TEST_F(Lines, SwapReadsBothByteOrders) {
    const std::string path = dir.write("bytes", std::string("\x01\x02\x03\x04\x05\x06", 6));
    const file_ptr file(std::fopen(path.c_str(), "r"));
    std::uint32_t value = 0;
    std::uint16_t half = 0;
    swap_setup(1);
    EXPECT_EQ(fread_long_swap(&value, file.get()), 1);
    EXPECT_EQ(value, 0x01020304U);
    swap_setup(2);
    EXPECT_EQ(fread_short_swap(&half, file.get()), 1);
    EXPECT_EQ(half, 0x0605U);
    EXPECT_EQ(fread_short_swap(&half, file.get()), 0);
    swap_setup(-1);
    EXPECT_EQ(swap_long(&value), -1);
    swap_setup(0);
    std::uint16_t pair[] = {0x0102, 0x0304};
    EXPECT_EQ(swap_shorts(pair, 2), 0);
    EXPECT_EQ(pair[1], 0x0403U);
}

}  // namespace
}  // namespace zav
