#include "frame/scanp.h"

#include "frame/zav.h"
#include "support/support.h"

namespace zav {
namespace {

struct Case {
    const char* pattern;
    const char* text;
    int result;  // conversions matched
    int taken;
    int done;
    const char* stored;  // the number or text, "" for nothing
};

void check_cursor(const Case& c, int result, const parse_param& param) {
    EXPECT_EQ(result, c.result);
    EXPECT_EQ(param.len, c.taken);
    EXPECT_EQ(param.done, c.done);
    EXPECT_EQ(param.off, 0);
}

TEST(Scanp, TakesIntegers) {
    const Case cases[] = {{"%5d", "123 4", 0, 0, 0, ""},
                          {"%<5d", "123 4", 1, 3, 1, "123"},
                          {"%5D", "  123", 1, 5, 1, "123"},
                          {"%5D", "123  ", 1, 5, 1, "123"},
                          {"%5D", "     ", 0, 0, 0, ""},
                          {"%d", "-", 0, 0, 0, ""},
                          {"%2d", "-512", 1, 2, 1, "-5"},
                          {"%3!///!d", "///", 1, 3, 1, "-9999"},
                          {"%3!///!d x", "ab x", 0, 0, 0, ""},
                          {"%3!//!dab", "ab", 0, 2, 1, ""},
                          {"%d", "99999999999999999999", 1, 20, 1, "2147483647"},
                          {"ab %n", "ab  c", 1, 4, 1, "4"},
                          {"%q%d", "12", 1, 2, 1, "12"}};
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.pattern) + " on " + c.text);
        parse_param param;
        scanp_set(&param, c.text);
        int value = 77;
        check_cursor(c, scanp(&param, c.pattern, &value), param);
        EXPECT_EQ(std::to_string(value), *c.stored != '\0' ? c.stored : "77");
    }
}

TEST(Scanp, TakesNumbers) {
    const Case cases[] = {
        {"%!-!f", "-", 1, 1, 1, "-9999"}, {"%!-!f", "--", 1, 1, 1, "-9999"},   {"%!-!f", "12.5", 1, 4, 1, "12.5"},
        {"%f", "1.5e", 1, 3, 1, "1.5"},   {"%f", "1.5e-2x", 1, 6, 1, "0.015"}, {"%f", "1.2.3", 1, 3, 1, "1.2"},
        {"%f", ".", 0, 0, 0, ""},         {"%6F", " -.5  ", 1, 6, 1, "-0.5"}};
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.pattern) + " on " + c.text);
        parse_param param;
        scanp_set(&param, c.text);
        float value = 77;
        check_cursor(c, scanp(&param, c.pattern, &value), param);
        EXPECT_FLOAT_EQ(value, *c.stored != '\0' ? std::stof(c.stored) : 77);
    }
}

TEST(Scanp, TakesText) {
    const Case cases[] = {{"%[^$]", "ab c$d", 1, 4, 1, "ab c"},   {"%[/A/N]", "a1B2 x", 1, 4, 1, "a1B2"},
                          {"%[//x]", "x/x-", 1, 3, 1, "x/x"},     {"%(METAR|SPECI)", "SPECI KXYZ", 1, 5, 1, "SPECI"},
                          {"%(METAR|SPECI)", "TAF", 0, 0, 0, ""}, {"%*<(a|b)%A", "xy", 2, 2, 1, "xy"},
                          {"%3c", "a b c", 1, 3, 1, "a b"},       {"%c", "xyz", 1, 1, 1, "x"},
                          {"%N%*A", "12ab", 2, 4, 1, "12"},       {"%*s %*s ", "AB CD ", 2, 6, 1, ""},
                          {"%A-%A", "ab+cd", 1, 2, 0, "ab"},      {"%*w%S", " \nrest of it", 2, 12, 1, "rest of it"}};
    for (const Case& c : cases) {
        SCOPED_TRACE(std::string(c.pattern) + " on " + c.text);
        parse_param param;
        scanp_set(&param, c.text);
        std::string value = "77";
        check_cursor(c, scanp(&param, c.pattern, &value), param);
        EXPECT_EQ(value, *c.stored != '\0' ? c.stored : "77");
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
