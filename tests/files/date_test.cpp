#include "files/date.h"
#include "files/time_code.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <ctime>

#include "support/table.h"

namespace zav {
namespace {

Date make_date(int year, int month, int day, int hour = MISS, int min = MISS, int sec = MISS) {
    Date date;
    date.year = year;
    date.month = month;
    date.day = day;
    date.hour = hour;
    date.min = min;
    date.sec = sec;
    return date;
}

std::string label(const Date& date) {
    std::string text;
    EXPECT_EQ(DATE_make_label(&date, text), 0);
    return text;
}

TEST(Seconds, AgreeWithTheSystemCalendarFrom1901To2099) {
    for (long secs = -2177452800L; secs < 4102444800L; secs += 86400L * 17 + 3671) {
        const std::time_t time = secs;
        std::tm parts{};
        ASSERT_NE(gmtime_r(&time, &parts), nullptr);
        Date date =
            make_date(parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec);
        ASSERT_EQ(DATE_num_sec(&date), secs);
        ASSERT_EQ(DATE_num_sec_tm(&parts), secs);
        Date back;
        DATE_get_gmdate(&secs, &back);
        ASSERT_EQ(back.year * 1000 + back.jday, (parts.tm_year + 1900) * 1000 + parts.tm_yday + 1);
        ASSERT_EQ(back.wday, parts.tm_wday);
        int month = 0, day = 0, julian = 0;
        DATE_julian_monday(back.year, back.jday, &month, &day);
        ASSERT_EQ(month * 100 + day, back.month * 100 + back.day);
        DATE_monday_julian(back.year, month, day, &julian);
        ASSERT_EQ(julian, back.jday);
    }
}

TEST(Seconds, MakeTheDateValidInPlace) {
    struct Case {
        int given, year;
    };
    for (const Case& c : {Case{98, 1998}, Case{5, 2005}, Case{MISS, 1980}, Case{150, 2050}, Case{49, 2049}}) {
        Date date = make_date(c.given, 13, 32, 24, 60, 60);
        DATE_num_sec(&date);
        EXPECT_EQ(date.year, c.year);
        EXPECT_EQ(date.month, 1);
        EXPECT_EQ(date.day, 1);
        EXPECT_EQ(date.hour + date.min + date.sec, 0);
    }
    Date zero = make_date(1998, 3, 0, 0), last = make_date(1998, 2, 28, 0);
    EXPECT_EQ(DATE_num_sec(&zero), DATE_num_sec(&last));
}

TEST(MonthName, IsReadInOneCaseOnly) {
    for (int month = 1; month <= 12; month++) {
        EXPECT_EQ(DATE_decode_month(DATE_month(month)), month);
        EXPECT_EQ(DATE_decode_month(DATE_month_lower(month)), month);
    }
    for (const char* text : {"Jan", "mAR", "", "J", "MA", "XYZ", "A1R", "jUN"})
        EXPECT_EQ(DATE_decode_month(text), 0) << text;
    EXPECT_STREQ(DATE_month(0), "");
    EXPECT_STREQ(DATE_month_lower(13), "");
}

TEST(Label, FollowsWhatIsKnown) {
    for (const test::Case& c : test::cases("files/dates")) {
        const Date date = make_date(c.number(0), c.number(1), c.number(2), c.number(3), c.number(4));
        EXPECT_EQ(label(date), c.text(5)) << c.line();
    }
}

TEST(Label, IsReadBackAlsoBehindOtherText) {
    for (const test::Case& c : test::cases("files/labels_read")) {
        Date date;
        DATE_decode_label(c.text(0), &date);
        EXPECT_EQ(date.year * 10000 + date.month * 100 + date.day, 19980315) << c.line();
        EXPECT_EQ(date.hour, c.number(1)) << c.line();
        EXPECT_EQ(date.min, c.number(2)) << c.line();
        EXPECT_EQ(date.sec, c.number(3)) << c.line();
    }
    for (const char* bad : {"", "Z", "12Z", "15 MAR 98", "12 15 MAR 98 no date here", "98 03 15 12"}) {
        Date date = make_date(1, 1, 1, 1, 1, 1);
        DATE_decode_label(bad, &date);
        EXPECT_EQ(date.year, MISS) << bad;
        EXPECT_EQ(date.hour, MISS) << bad;
    }
}

TEST(Label, TellsForecastHoursAsTimeSpans) {
    for (const test::Case& c : test::cases("files/time_spans")) {
        std::string text;
        EXPECT_EQ(DATE_fhour_label(text, c.number(0), c.number(1)), c.text(2)) << c.line();
    }
}

TEST(Label, NamesForecastModelAndValidTime) {
    DATE_set_model_lookup([](int model) { return model == 7002 ? std::string("NGM") : std::string(); });
    for (const test::Case& c : test::cases("files/valid_times")) {
        const Date date = make_date(1998, 3, 15, c.number(2), c.number(2) == MISS ? MISS : 0);
        std::string text = "old";
        DATE_make_label_for_time(c.number(0), c.number(1), &date, text);
        EXPECT_EQ(text, c.text(3)) << c.line();
        DATE_make_label_valid_time(c.number(0), &date, text);
        EXPECT_EQ(text, c.text(4)) << c.line();
    }

    std::string text;
    EXPECT_EQ(DATE_make_label_for(12, 7002, 889920000L, text), 0);  // 1998-03-15 00Z
    EXPECT_EQ(text, "12 hour NGM valid 12Z SUN 15 MAR 98");
    EXPECT_EQ(DATE_make_label_for(0, 7002, 889920000L, text), 0);
    EXPECT_EQ(text, "NGM analysis for 00Z 15 MAR 98");
    EXPECT_EQ(DATE_make_label_for(6006000, 7002, 889920000L, text), 0);
    EXPECT_EQ(text, "6 hour NGM analysis valid 00Z 15 MAR 98");
    EXPECT_EQ(DATE_make_label_for(0, 7002, 0, text), -1);
    EXPECT_EQ(text, "NGM analysis");
    EXPECT_EQ(DATE_make_label_for(24, 7002, 0, text), -1);
    EXPECT_EQ(text, "24 hour NGM");
}

TEST(TimeCode, ComesApartAndTogether) {
    for (const long step : {1L, 5L, 15L, 30L, 60L, 180L, 1440L}) {
        for (long end = 0; end <= (step == TIME_HOUR ? 799 : 999) * step && end <= 100 * TIME_DAY; end += step) {
            const long begin = end / 2 / step * step;
            for (const int kind : {0, 2, 7, 23}) {
                const TIME_range range{kind, kind == 0 ? 0 : begin, end};
                const int code = TIME_make(range);
                const TIME_range back = TIME_split(code);
                ASSERT_NE(code, MISS) << end;
                ASSERT_EQ(back.kind, kind) << code;
                ASSERT_EQ(back.begin, range.begin) << code;
                ASSERT_EQ(back.end, end) << code;
                ASSERT_EQ(TIME_make(back), code);
            }
        }
    }
    for (const long far : {1001L, 3000L * TIME_HOUR, -1L}) EXPECT_EQ(TIME_make({4, 0, far}), MISS) << far;
}

// Last: the zone and its clock stay for the run.
TEST(TimeZone, MovesLabels) {
    for (const test::Case& c : test::cases("files/zones")) {
        DATE_set_TZ(c.text(0));
        EXPECT_EQ(label(make_date(1998, 3, 15, c.number(1), 0)), c.text(2)) << c.line();
    }
    EXPECT_EQ(label(make_date(1998, 3, 15)), "15 MAR 98");
    for (const char* bad : {"", "XX", "XX:", "XX:nan", "XX:1e30", ":5"}) {
        DATE_set_TZ(bad);
        EXPECT_EQ(DATE_get_tz_off(), -12600) << bad;
        EXPECT_EQ(DATE_get_tz_str(), " NST") << bad;
    }
}

}  // namespace
}  // namespace zav
