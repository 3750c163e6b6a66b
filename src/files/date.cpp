#include "files/date.h"

#include <algorithm>

#include "frame/mess.h"
#include "frame/string.h"

namespace zav {

const std::array<const char*, 12> months = {"JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                                            "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"};
const std::array<const char*, 12> months_lc = {"jan", "feb", "mar", "apr", "may", "jun",
                                               "jul", "aug", "sep", "oct", "nov", "dec"};
const std::array<const char*, 7> day_of_week = {"SUN", "MON", "TUE", "WED", "THU", "FRI", "SAT"};
const std::array<int, 13> num_day = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334, 365};
const std::array<int, 13> num_day_leap = {0, 31, 60, 91, 121, 152, 182, 213, 244, 274, 305, 335, 366};

namespace {

constexpr long DAY_SECS = 86400;
constexpr long YEAR_SECS = 365 * DAY_SECS;

bool outside(int value, int low, int high) { return value < low || value > high; }

void make_valid(Date& date) {
    if (date.year < 0) date.year = 1980;
    if (date.year < 50) date.year += 2000;
    if (date.year < 200) date.year += 1900;
    if (outside(date.month, 1, 12)) date.month = 1;
    if (outside(date.day, 0, 31)) date.day = 1;
    if (outside(date.hour, 0, 23)) date.hour = 0;
    if (outside(date.min, 0, 59)) date.min = 0;
    if (outside(date.sec, 0, 59)) date.sec = 0;
}

const std::array<int, 13>& days_before(int year) { return DATE_is_leap(year) ? num_day_leap : num_day; }

}  // namespace

void DATE_init(Date* date) { *date = Date{}; }

void DATE_print(std::uint32_t level, const Date* date) {
    MESS_print(level, "%d/%d/%d %2.2d:%2.2d:%2.2d\n", date->year, date->month, date->day, date->hour, date->min,
               date->sec);
}

void DATE_get_current_str(std::string& str) {
    Date now;
    DATE_get_gmdate(nullptr, &now);
    str = text_format("%2.2d %s %2.2d  %2.2d:%2.2d:%2.2dZ", now.year % 100, DATE_month(now.month), now.day, now.hour,
                      now.min, now.sec);
}

int DATE_is_leap(int year) { return year % 100 == 0 ? year % 400 == 0 : year % 4 == 0; }

long DATE_num_sec(Date* date) {
    make_valid(*date);
    // The plain four-year rule, true from 1901 to 2099.
    const long since_1900 = date->year - 1900L;
    long leap_days = since_1900 / 4 - 17;
    if (date->month < 3 && since_1900 % 4 == 0) leap_days--;
    const long days = date->day - 1 + num_day[date->month - 1] + leap_days;
    return date->sec + 60L * date->min + 3600L * date->hour + DAY_SECS * days + YEAR_SECS * (date->year - 1970L);
}

long DATE_num_sec_tm(const std::tm* datim) {
    Date date;
    date.year = static_cast<int>(std::clamp(datim->tm_year + 1900L, 0L, 1000000L));
    date.month = datim->tm_mon < 12 ? datim->tm_mon + 1 : 1;
    date.day = datim->tm_mday;
    date.hour = datim->tm_hour;
    date.min = datim->tm_min;
    date.sec = datim->tm_sec;
    return DATE_num_sec(&date);
}

long DATE_get_time(long* secs) {
    const long now = static_cast<long>(std::time(nullptr));
    if (secs != nullptr) *secs = now;
    return now;
}

void DATE_get_gmdate(const long* secs, Date* date) {
    DATE_init(date);
    const std::time_t time = secs != nullptr ? *secs : DATE_get_time(nullptr);
    std::tm parts{};
    if (gmtime_r(&time, &parts) == nullptr) return;  // a year beyond the range of an int
    date->year = parts.tm_year + 1900;
    date->month = parts.tm_mon + 1;
    date->day = parts.tm_mday;
    date->jday = parts.tm_yday + 1;
    date->wday = parts.tm_wday;
    date->hour = parts.tm_hour;
    date->min = parts.tm_min;
    date->sec = parts.tm_sec;
}

void DATE_julian_monday(int year, int julian, int* month, int* day) {
    const std::array<int, 13>& before = days_before(year);
    const int held = std::clamp(julian, 1, before[12]);
    int index = 1;
    while (held > before[index]) index++;
    *month = index;
    *day = held - before[index - 1];
}

void DATE_monday_julian(int year, int month, int day, int* julian) {
    *julian = days_before(year)[std::clamp(month, 1, 12) - 1] + std::clamp(day, 0, 366);
}

const char* DATE_month(int month) { return outside(month, 1, 12) ? "" : months[month - 1]; }

const char* DATE_month_lower(int month) { return outside(month, 1, 12) ? "" : months_lc[month - 1]; }

int DATE_decode_month(const std::string& str) {
    if (str.empty()) return 0;
    // The first letter settles these months in either case.
    switch (str[0]) {
        case 'F':
        case 'f':
            return 2;
        case 'S':
        case 's':
            return 9;
        case 'O':
        case 'o':
            return 10;
        case 'N':
        case 'n':
            return 11;
        case 'D':
        case 'd':
            return 12;
        default:
            break;
    }
    if (str.size() < 2) return 0;
    if (str.compare(0, 2, "JA") == 0 || str.compare(0, 2, "ja") == 0) return 1;

    struct Mark {
        char first, third;
        int month;
    };
    static constexpr std::array<Mark, 6> marks = {
        {{'J', 'N', 6}, {'J', 'L', 7}, {'M', 'R', 3}, {'M', 'Y', 5}, {'A', 'R', 4}, {'A', 'G', 8}}};
    if (str.size() < 3) return 0;
    const bool lower = str[0] >= 'a' && str[0] <= 'z';
    const char start = lower ? 'a' : 'A';
    if (outside(str[1], start, start + 25)) return 0;
    const int shift = lower ? 'a' - 'A' : 0;
    for (const Mark& mark : marks)
        if (str[0] == mark.first + shift && str[2] == mark.third + shift) return mark.month;
    return 0;
}

}  // namespace zav
