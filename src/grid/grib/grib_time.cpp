#include "grid/grib/grib_time.h"

#include <span>

#include "files/time_code.h"
#include "frame/mess.h"
#include "frame/zav.h"

namespace zav {
namespace {

constexpr std::int64_t MINUTE = 60;
constexpr std::int64_t HOUR = 3600;
constexpr std::int64_t DAY = 24 * HOUR;
constexpr std::int64_t YEAR = 12;  ///< months

/// Length of a time unit.
struct Unit {
    int code;
    std::int64_t length;
    bool months;
};

constexpr Unit EDITION1[] = {
    {0, MINUTE, false},       {1, HOUR, false},      {2, DAY, false},        {3, 1, true},
    {4, YEAR, true},          {5, 10 * YEAR, true},  {6, 30 * YEAR, true},   {7, 100 * YEAR, true},
    {10, 3 * HOUR, false},    {11, 6 * HOUR, false}, {12, 12 * HOUR, false}, {13, 15 * MINUTE, false},
    {14, 30 * MINUTE, false}, {254, 1, false},
};

constexpr Unit EDITION2[] = {
    {0, MINUTE, false},    {1, HOUR, false},      {2, DAY, false},        {3, 1, true},
    {4, YEAR, true},       {5, 10 * YEAR, true},  {6, 30 * YEAR, true},   {7, 100 * YEAR, true},
    {10, 3 * HOUR, false}, {11, 6 * HOUR, false}, {12, 12 * HOUR, false}, {13, 1, false},
};

GribSpan find(std::span<const Unit> units, int code, std::int64_t number) {
    for (const Unit& unit : units) {
        if (unit.code == code) return {number * unit.length, unit.months, unit.length == DAY, true};
    }
    return {};
}

}  // namespace

GribSpan grib_span_edition1(int unit, std::int64_t number) { return find(EDITION1, unit, number); }

GribSpan grib_span_edition2(int unit, std::int64_t number) { return find(EDITION2, unit, number); }

GribSpan grib_sum(const GribSpan& one, const GribSpan& other) {
    const bool alike = one.months == other.months || one.amount == 0 || other.amount == 0;
    if (!one.known || !other.known || !alike) return {};
    const GribSpan& leads = other.amount != 0 ? other : one;
    return {one.amount + other.amount, leads.months, one.days && other.days, true};
}

int grib_time(int kind, const GribSpan& begin, const GribSpan& end) {
    const bool alike = begin.months == end.months || begin.amount == 0 || end.amount == 0;
    const bool months = (begin.months && begin.amount != 0) || (end.months && end.amount != 0);
    const std::int64_t step = months ? 1 : MINUTE;
    int code = MISS;
    if (begin.known && end.known && alike && begin.amount % step == 0 && end.amount % step == 0) {
        const TIME_unit unit = months ? TIME_unit::month : begin.days && end.days ? TIME_unit::day : TIME_unit::hour;
        code = TIME_make({kind, static_cast<long>(begin.amount / step), static_cast<long>(end.amount / step), unit});
    }
    static bool told = false;
    if (code == MISS && !told) MESS_print(MESS_WARN, "GRIB_read: The time of a field can't be read\n");
    told = told || code == MISS;
    return code;
}

}  // namespace zav
