#include "files/time_code.h"

#include <algorithm>
#include <array>

#include "frame/string.h"
#include "frame/zav.h"

namespace zav {
namespace {

constexpr int KIND = 1000000;
constexpr int BEGIN = 1000;
constexpr int STEP_KIND = 100;  ///< weight in T of the step that B and E count
constexpr int DAYS = 800;       ///< days count from here
constexpr int MONTHS = 900;     ///< months count from here
constexpr int LAST = 999;

/// Minutes that B and E count, by T / 100. A time takes the first in this order that it is a multiple of, so that it
/// has one code only.
constexpr std::array<long, 6> STEPS{TIME_HOUR, 30, 15, 5, 1, 3 * TIME_HOUR};
constexpr std::array<std::size_t, 5> ORDER{5, 1, 2, 3, 4};

/// Minutes of a number of hours or days.
long hours_or_days(int number) {
    return number > DAYS && number <= MONTHS ? (number - DAYS) * TIME_DAY : (number == DAYS ? 0 : number * TIME_HOUR);
}

int join(int kind, long begin, long end) { return static_cast<int>(kind * long{KIND} + begin * BEGIN + end); }

bool multiples(const TIME_range& range, long step) { return range.begin % step == 0 && range.end % step == 0; }

/// Code in days. MISS where it can't hold both times.
int day_code(const TIME_range& range) {
    const auto days = [](long minutes) { return DAYS + minutes / TIME_DAY; };
    if (!multiples(range, TIME_DAY) || days(std::max(range.begin, range.end)) > MONTHS) return MISS;
    return join(range.kind, range.kind == 0 ? 0 : days(range.begin), days(range.end));
}

/// Code in hours, or in days beyond them and for what is told in days. MISS where neither holds both times.
int hour_code(const TIME_range& range) {
    const bool in_hours = multiples(range, TIME_HOUR) && std::max(range.begin, range.end) < DAYS * TIME_HOUR;
    if (!in_hours || (range.unit == TIME_unit::day && day_code(range) != MISS)) return day_code(range);
    return join(range.kind, range.begin / TIME_HOUR, range.end / TIME_HOUR);
}

}  // namespace

TIME_range TIME_split(int code) {
    TIME_range range;
    if (code == MISS) return range;
    if (code < 0) {
        range.end = code * TIME_HOUR;
        return range;
    }
    const int marked = code / KIND;
    const auto place = static_cast<std::size_t>(marked / STEP_KIND);
    const int begin = code / BEGIN % BEGIN;
    const int end = code % BEGIN;
    range.kind = marked % STEP_KIND;
    if (place > 0 && place < STEPS.size()) {
        range.begin = begin * STEPS[place];
        range.end = end * STEPS[place];
    } else if (end > MONTHS) {
        range.unit = TIME_unit::month;
        range.begin = std::max(begin - MONTHS, 0);
        range.end = end - MONTHS;
    } else {
        range.unit = end > DAYS ? TIME_unit::day : TIME_unit::hour;
        range.begin = hours_or_days(begin);
        range.end = hours_or_days(end);
    }
    return range;
}

int TIME_make(const TIME_range& range) {
    if (range.begin < 0 || range.end < 0 || range.kind < 0 || range.kind >= STEP_KIND) return MISS;
    const long last = std::max(range.begin, range.end);
    if (range.unit == TIME_unit::month) {
        if (last > LAST - MONTHS) return MISS;
        return join(range.kind, range.kind == 0 ? 0 : MONTHS + range.begin, MONTHS + range.end);
    }
    const int code = hour_code(range);
    if (code != MISS) return code;
    for (const std::size_t place : ORDER) {
        const long step = STEPS[place];
        if (!multiples(range, step) || last / step > LAST) continue;
        return join(range.kind + static_cast<int>(place) * STEP_KIND, range.begin / step, range.end / step);
    }
    return MISS;
}

bool TIME_is_single(int code) { return code <= BEGIN || (code / KIND % STEP_KIND == 0 && code / BEGIN % BEGIN == 0); }

std::string TIME_text(long span, TIME_unit unit) {
    if (unit == TIME_unit::month) return text_format("%ld month", span);
    if (unit == TIME_unit::day) return text_format("%ld day", span / TIME_DAY);
    if (span % TIME_HOUR == 0) return text_format("%ld hour", span / TIME_HOUR);
    if (span < TIME_HOUR) return text_format("%ld min", span);
    return text_format("%ld:%2.2ld hour", span / TIME_HOUR, span % TIME_HOUR);
}

}  // namespace zav
