#pragma once

#include <cstdint>

namespace zav {

/// A number of time units: seconds, or months for units whose length varies.
struct GribSpan {
    std::int64_t amount = 0;
    bool months = false;
    bool days = false;   ///< the unit is a day, as labels tell it
    bool known = false;  ///< the unit is one of the code tables
};

/// `number` units of edition 1's code table 4.
GribSpan grib_span_edition1(int unit, std::int64_t number);
/// `number` units of edition 2's code table 4.4.
GribSpan grib_span_edition2(int unit, std::int64_t number);
/// The sum of two spans; unknown if one of them is, or for seconds with months.
GribSpan grib_sum(const GribSpan& one, const GribSpan& other);
/// Time code of a range of `kind`, or with kind 0 of the time `end`. MISS, with a warning at the first, for times that
/// have none: other than whole minutes, before the reference time, or too far off.
int grib_time(int kind, const GribSpan& begin, const GribSpan& end);

}  // namespace zav
