#pragma once

#include <cstdint>
#include <string>

#include "files/date.h"

namespace zav {

/// How the numbers of a time axis are meant: the attributes "units" and "calendar".
struct Cf_clock {
    double step = 0.0;        ///< seconds of a unit; 0 where the axis can't be read
    std::int64_t origin = 0;  ///< seconds from 1970 to the date behind "since", universal time
    bool days = false;        ///< it counts days
    bool absolute = false;    ///< the numbers are dates themselves, YYYYMMDD and the fraction of a day
    std::string refused;      ///< why it can't be read, empty if it can
};

/// Seconds of a unit of time in the spellings of UDUNITS, in any case; 0 for another unit, and for months and years,
/// which have no one length.
double cf_unit_seconds(const std::string& unit);
/// Reads "hours since 1900-01-01 00:00:00.0" and its kin. `calendar` may be empty.
Cf_clock cf_clock(const std::string& units, const std::string& calendar);
/// Seconds from 1970 to the moment that a number of the axis means. False for a number that means none.
bool cf_moment(const Cf_clock& clock, double value, std::int64_t* seconds);
/// The date of a moment.
Date cf_date(std::int64_t seconds);
/// Reads a date and time with a zone, as it may stand behind "since": seconds from 1970. With `mixed`
/// days up to 4 October 1582 are those of the Julian calendar; without it the present one goes on backward. False for
/// another text.
bool cf_read_date(const std::string& text, bool mixed, std::int64_t* seconds);

}  // namespace zav
