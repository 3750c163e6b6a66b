#include "frame/scanp.h"

#include "frame/zav.h"
#include "support/support.h"
#include "support/table.h"

namespace zav {
namespace {

void check_cursor(const test::Case& c, int result, const parse_param& param) {
    EXPECT_EQ(result, c.number(2));
    EXPECT_EQ(param.len, c.number(3));
    EXPECT_EQ(param.done, c.number(4));
    EXPECT_EQ(param.off, 0);
}

TEST(Scanp, TakesIntegers) {
    for (const test::Case& c : test::cases("frame/scan_integers")) {
        SCOPED_TRACE(c.line());
        parse_param param;
        scanp_set(&param, c.text(1));
        int value = 77;
        check_cursor(c, scanp(&param, c.text(0).c_str(), &value), param);
        EXPECT_EQ(std::to_string(value), c.text(5).empty() ? "77" : c.text(5));
    }
}

TEST(Scanp, TakesNumbers) {
    for (const test::Case& c : test::cases("frame/scan_numbers")) {
        SCOPED_TRACE(c.line());
        parse_param param;
        scanp_set(&param, c.text(1));
        float value = 77;
        check_cursor(c, scanp(&param, c.text(0).c_str(), &value), param);
        EXPECT_FLOAT_EQ(value, c.text(5).empty() ? 77.0F : std::stof(c.text(5)));
    }
}

TEST(Scanp, TakesText) {
    for (const test::Case& c : test::cases("frame/scan_texts")) {
        SCOPED_TRACE(c.line());
        parse_param param;
        scanp_set(&param, c.text(1));
        std::string value = "77";
        check_cursor(c, scanp(&param, c.text(0).c_str(), &value), param);
        EXPECT_EQ(value, c.text(5).empty() ? "77" : c.text(5));
    }
}

TEST(Scanp, KeepsTheCursorUntilAccepted) {
    parse_param param;
    scanp_set(&param, "--- 3.5 ");
    float first = 0;
    float second = 0;
    int place = 0;
    EXPECT_EQ(scanp(&param, "%!---!f %n%!---!f ", &first, &place, &second), 3);
    EXPECT_EQ(first, FMISS);
    EXPECT_EQ(place, 4);
    EXPECT_EQ(second, 3.5F);
    EXPECT_EQ(param.assigned, 3);
    scanp_inc(&param);
    EXPECT_EQ(scanp(&param, "%f", &first), -1);
    EXPECT_EQ(scanp_search(&param, "3.5"), 1);
    scanp_replace(&param, 1, ',');
    EXPECT_STREQ(scanp_str(&param), "3,5 ");
    scanp_inc_off(&param, 1000000);
    scanp_inc_off(&param, -2000000000);
    EXPECT_EQ(scanp_char(&param, 0), '-');
    EXPECT_EQ(scanp_char(&param, -1), '\0');
}

TEST(Scanp, HoldsWordsToTheirLimit) {
    parse_param param;
    scanp_set(&param, std::string(200, 'x'));
    std::string word;
    EXPECT_EQ(scanp(&param, "%s", &word), 1);
    EXPECT_EQ(word.size(), 80U);
    EXPECT_EQ(scanp(&param, "%<79s", &word), 1);
    EXPECT_EQ(word.size(), 79U);
}

TEST(Scanp, SurvivesBrokenPatterns) {
    for (const char* pattern :
         {"%", "%*", "%<", "%99999999999d", "%!", "%![", "%[", "%(", "%5", "%[^", "%(|", "%!!f"}) {
        parse_param param;
        scanp_set(&param, "text 12");
        std::string word;
        scanp(&param, pattern, &word);
        EXPECT_LE(param.len, param.length) << pattern;
    }
    parse_param before;
    scanp_set(&before, "text");
    before.off = -1;
    EXPECT_EQ(scanp(&before, "%*s"), -1);
}

}  // namespace
}  // namespace zav
