#pragma once

#include <string>

namespace zav {

// A forecast time or a range of times as one int: T * 1000000 + B * 1000 + E, with the kind of range T and its begin B
// and end E. Both count hours; from 801 on days, counted from 800; from 901 on months, counted from 900. Times that
// don't come out in whole hours, or lie too far off, have 100, 200 ... added to T, which says what B and E count then.

/// Minutes of an hour and of a day.
constexpr long TIME_HOUR = 60;
constexpr long TIME_DAY = 24 * TIME_HOUR;

/// What the code counts in. Labels tell it; begin and end are in minutes for hours and days.
enum class TIME_unit { hour, day, month };

/// A time code taken apart. Both times in minutes, in months if those are the unit.
struct TIME_range {
    int kind = 0;
    long begin = 0;
    long end = 0;
    TIME_unit unit = TIME_unit::hour;
};

/// Takes a time code apart; a missing one is a time of 0.
TIME_range TIME_split(int code);
/// The code of a range or, with kind 0, of the time `end`. MISS for times that no code holds.
int TIME_make(const TIME_range& range);
/// True for the code of a single time.
bool TIME_is_single(int code);
/// A span, in minutes or months, as text: "10 min", "1:30 hour", "36 hour", "40 day", "2 month".
std::string TIME_text(long span, TIME_unit unit);

}  // namespace zav
