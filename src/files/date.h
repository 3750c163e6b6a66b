#pragma once

#include <array>
#include <cstdint>
#include <ctime>
#include <functional>
#include <string>

#include "frame/zav.h"

namespace zav {

/// A date in universal time; MISS in each field that isn't known.
struct Date {
    int year = MISS;   ///< four digits
    int month = MISS;  ///< 1 to 12
    int day = MISS;    ///< 1 to 31
    int jday = MISS;   ///< day of the year, 1 to 366
    int wday = MISS;   ///< day of the week, 0 for Sunday
    int hour = MISS;
    int min = MISS;
    int sec = MISS;
};

/// Month and day names of labels and file names.
extern const std::array<const char*, 12> months;
extern const std::array<const char*, 12> months_lc;
extern const std::array<const char*, 7> day_of_week;
/// Days of the year before the month of that index plus one, in common and in leap years.
extern const std::array<int, 13> num_day;
extern const std::array<int, 13> num_day_leap;

/// Sets all fields to MISS.
void DATE_init(Date* date);
/// Shows a date at a message level.
void DATE_print(std::uint32_t level, const Date* date);

// Time zone of labels

/// Sets the zone from "[+-]name:hours": hours are added to universal time; "+" asks for a 12-hour clock, "-" for one
/// with the universal time in brackets behind it. A text of another form changes nothing.
void DATE_set_TZ(const std::string& str);
/// Seconds that are added to universal time in labels.
int DATE_get_tz_off();
/// The zone's name as it stands behind an hour: "Z", or a blank and a name.
const std::string& DATE_get_tz_str();

// Seconds and calendar

/// The present time as "98 MAR 15  12:00:00Z".
void DATE_get_current_str(std::string& str);
/// 1 in a leap year, else 0.
int DATE_is_leap(int year);
/// Seconds since 1970. Makes the fields valid in place: unknown and impossible ones take the start of their range.
long DATE_num_sec(Date* date);
/// The same for a broken-down time of the C library.
long DATE_num_sec_tm(const std::tm* datim);
/// The system's time in seconds since 1970; also stored at `secs` unless that is null.
long DATE_get_time(long* secs);
/// All eight fields from seconds since 1970; `secs` null means now.
void DATE_get_gmdate(const long* secs, Date* date);
/// Day of the year (held to the year) to month and day.
void DATE_julian_monday(int year, int julian, int* month, int* day);
/// Month (held to 1 through 12) and day to day of the year.
void DATE_monday_julian(int year, int month, int day, int* julian);

// Names

/// Name of a month in upper or lower case, an empty text outside of 1 to 12.
const char* DATE_month(int month);
const char* DATE_month_lower(int month);
/// 1 to 12 for a month name that is all upper or all lower case, 0 for an unknown one.
int DATE_decode_month(const std::string& str);

// Labels

/// Label of a date, in the form that its known fields allow: "1200Z 15 MAR 98". Result 0.
int DATE_make_label(const Date* date, std::string& str);
/// Reads a label, which may stand at the end of a longer text. A text of another form leaves all fields at MISS.
/// Result 0.
int DATE_decode_label(const std::string& str, Date* date);
/// The end of a time code as text: "12 hour"; with `flag` whole and half days are told as days. Returns `str`.
const std::string& DATE_fhour_label(std::string& str, int fhour, int flag);
/// Label of a forecast from seconds since 1970, with the model's name. `fhour` is a time code. 0, or -1 without a date.
int DATE_make_label_for(int fhour, int model, long seconds, std::string& str);
/// Label of a forecast from a date, with the model's name. Result 0.
int DATE_make_label_for_time(int fhour, int model, const Date* date, std::string& str);
/// The same with the model's name given, empty for none.
int DATE_make_label_for_time_mod(int fhour, const std::string& model, const Date* date, std::string& str);
/// Label of the valid time alone. Result 0.
int DATE_make_label_valid_time(int fhour, const Date* date, std::string& str);

/// Installs the look-up of a model's name by its number, source * 1000 + model. Until then labels name no model.
void DATE_set_model_lookup(std::function<std::string(int model)> lookup);

}  // namespace zav
