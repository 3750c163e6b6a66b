// Time axes of the CF conventions: a unit, "since", and a date.

#include "grid/netcdf/cdf_cf_time.h"

#include <array>
#include <cctype>
#include <cmath>
#include <cstdlib>

#include "files/lookup_lines.h"
#include "frame/string.h"

namespace zav {
namespace {

constexpr std::int64_t MINUTE = 60;
constexpr std::int64_t HOUR = 3600;
constexpr std::int64_t DAY = 86400;
/// Moments further off are mistakes; their seconds stay far from the range of the type.
constexpr double FARTHEST = 1e12;

/// Spellings that UDUNITS takes.
struct Unit {
    const char* name;
    double seconds;
};
constexpr std::array<Unit, 28> UNITS{{
    {"ns", 1e-9},
    {"nanosecond", 1e-9},
    {"nanoseconds", 1e-9},
    {"us", 1e-6},
    {"microsecond", 1e-6},
    {"microseconds", 1e-6},
    {"ms", 1e-3},
    {"msec", 1e-3},
    {"millisecond", 1e-3},
    {"milliseconds", 1e-3},
    {"s", 1.0},
    {"sec", 1.0},
    {"secs", 1.0},
    {"second", 1.0},
    {"seconds", 1.0},
    {"min", 60.0},
    {"mins", 60.0},
    {"minute", 60.0},
    {"minutes", 60.0},
    {"h", 3600.0},
    {"hr", 3600.0},
    {"hrs", 3600.0},
    {"hour", 3600.0},
    {"hours", 3600.0},
    {"d", 86400.0},
    {"day", 86400.0},
    {"days", 86400.0},
    {"week", 604800.0},
}};

constexpr std::array<const char*, 5> SINCE = {"since", "after", "from", "ref", "@"};

/// Days from 1970 to a date of the present calendar (E. G. Richards, in: Explanatory Supplement to the Astronomical
/// Almanac, 3rd edition, 15.11), and of the Julian one.
std::int64_t gregorian_days(std::int64_t year, int month, int day) {
    const std::int64_t a = (14 - month) / 12;
    const std::int64_t y = year + 4800 - a;
    const std::int64_t m = month + 12 * a - 3;
    return day + (153 * m + 2) / 5 + 365 * y + y / 4 - y / 100 + y / 400 - 32045 - 2440588;
}
std::int64_t julian_days(std::int64_t year, int month, int day) {
    const std::int64_t a = (14 - month) / 12;
    const std::int64_t y = year + 4800 - a;
    const std::int64_t m = month + 12 * a - 3;
    return day + (153 * m + 2) / 5 + 365 * y + y / 4 - 32083 - 2440588;
}

bool digit(char c) { return std::isdigit(static_cast<unsigned char>(c)) != 0; }

/// Reads a text from its front.
class Reader {
  public:
    explicit Reader(const std::string& text) : text_(text) {}

    bool at_end() const { return at_ >= text_.size(); }
    char peek() const { return at_end() ? '\0' : text_[at_]; }
    bool take(char c) {
        if (peek() != c) return false;
        ++at_;
        return true;
    }
    void blanks() {
        while (peek() == ' ' || peek() == '\t') ++at_;
    }
    /// A number of up to `most` digits; how many there were.
    int number(int most, int* value) {
        int count = 0;
        *value = 0;
        for (; count < most && digit(peek()); ++count, ++at_) *value = *value * 10 + (text_[at_] - '0');
        return count;
    }
    /// A fraction behind a point, which may lack.
    double fraction() {
        if (!take('.')) return 0.0;
        double scale = 0.1;
        double sum = 0.0;
        for (; digit(peek()); ++at_, scale /= 10.0) sum += scale * (text_[at_] - '0');
        return sum;
    }
    std::string word() {
        const std::size_t start = at_;
        while (std::isalpha(static_cast<unsigned char>(peek())) != 0) ++at_;
        return text_.substr(start, at_ - start);
    }
    /// True if a sign or digits and a colon follow, as of a zone.
    bool is_zone() const { return peek() == '+' || peek() == '-' || digit(peek()); }

  private:
    std::string text_;
    std::size_t at_ = 0;
};

struct Calendar_day {
    int year = 0;
    int month = 1;
    int day = 1;
};

/// "1900-01-01", "1900-1-1", "19000101".
bool read_day(Reader& in, Calendar_day* date) {
    const bool negative = in.take('-');
    const int digits = in.number(8, &date->year);
    if (digits == 0) return false;
    if (digits == 8) {
        date->day = date->year % 100;
        date->month = date->year / 100 % 100;
        date->year /= 10000;
    } else if (in.take('-')) {
        if (in.number(2, &date->month) == 0) return false;
        if (in.take('-') && in.number(2, &date->day) == 0) return false;
    }
    if (negative) date->year = -date->year;
    static constexpr std::array<int, 12> LENGTHS = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return date->year > -4700 && date->month >= 1 && date->month <= 12 && date->day >= 1 &&
           date->day <= LENGTHS[static_cast<std::size_t>(date->month - 1)];
}

/// "12", "12:30", "12:30:15.5", "1230"; the seconds of it.
bool read_clock(Reader& in, double* seconds) {
    int hour = 0;
    int min = 0;
    int sec = 0;
    const int digits = in.number(6, &hour);
    if (digits == 0 || digits == 5) return false;
    if (digits > 2) {
        sec = digits == 6 ? hour % 100 : 0;
        const int rest = digits == 6 ? hour / 100 : hour;
        min = rest % 100;
        hour = rest / 100;
    } else if (in.take(':')) {
        if (in.number(2, &min) == 0) return false;
        if (in.take(':') && in.number(2, &sec) == 0) return false;
    }
    *seconds = static_cast<double>(hour * HOUR + min * MINUTE + sec) + in.fraction();
    return hour <= 24 && min < 60 && sec <= 60;
}

/// "Z", "UTC", "GMT", "+01:00", "-0600", "0:00", or nothing; its seconds east.
bool read_zone(Reader& in, double* seconds) {
    *seconds = 0.0;
    std::string word = in.word();
    low_string(word);
    if (!word.empty() && word != "z" && word != "utc" && word != "gmt") return false;
    in.blanks();
    if (in.at_end()) return true;
    const bool negative = in.peek() == '-';
    if (!in.take('+')) in.take('-');
    if (!read_clock(in, seconds)) return false;
    if (negative) *seconds = -*seconds;
    in.blanks();
    return in.at_end();
}

std::string lower(std::string text) {
    low_string(text);
    return text;
}

/// The calendars of which every date is one of the program's.
bool known_calendar(const std::string& calendar) {
    return calendar.empty() || calendar == "standard" || calendar == "gregorian" || calendar == "proleptic_gregorian";
}

}  // namespace

double cf_unit_seconds(const std::string& unit) {
    const std::string name = lower(unit);
    for (const Unit& row : UNITS) {
        if (name == row.name) return row.seconds;
    }
    return name == "weeks" ? 7.0 * DAY : 0.0;
}

bool cf_read_date(const std::string& text, bool mixed, std::int64_t* seconds) {
    Reader in(text);
    Calendar_day date;
    double clock = 0.0;
    double zone = 0.0;
    in.blanks();
    if (!read_day(in, &date)) return false;
    in.blanks();
    if (in.take('T') || in.take('t') || in.is_zone()) {
        if (!read_clock(in, &clock)) return false;
        in.blanks();
    }
    if (!read_zone(in, &zone)) return false;
    constexpr int CHANGED = 15821015;
    const bool julian = mixed && date.year * 10000 + date.month * 100 + date.day < CHANGED;
    const std::int64_t days =
        julian ? julian_days(date.year, date.month, date.day) : gregorian_days(date.year, date.month, date.day);
    *seconds = days * DAY + std::llround(clock - zone);
    return true;
}

Cf_clock cf_clock(const std::string& units, const std::string& calendar) {
    Cf_clock clock;
    const std::string kind = lower(calendar);
    const std::vector<std::string> words = split_blanks(units);
    if (!known_calendar(kind)) {
        clock.refused = "its calendar is " + calendar;
        return clock;
    }
    if (words.size() >= 3 && lower(words[0]) == "day" && words[1] == "as") {
        clock.absolute = words[2].rfind("%Y%m%d", 0) == 0;
        clock.step = clock.absolute ? static_cast<double>(DAY) : 0.0;
    } else if (words.size() >= 3) {
        const std::string since = lower(words[1]);
        bool known = false;
        for (const char* word : SINCE) known = known || since == word;
        std::string date = words[2];
        for (std::size_t i = 3; i < words.size(); i++) date += " " + words[i];
        if (known && cf_read_date(date, kind != "proleptic_gregorian", &clock.origin)) {
            clock.step = cf_unit_seconds(words[0]);
        }
    }
    clock.days = clock.step == static_cast<double>(DAY);
    if (clock.step == 0.0)
        clock.refused = units.empty() ? "its time has no units" : "the units of its time are " + units;
    return clock;
}

bool cf_moment(const Cf_clock& clock, double value, std::int64_t* seconds) {
    if (clock.step <= 0.0 || !std::isfinite(value)) return false;
    if (clock.absolute) {
        if (!(value >= 10101.0 && value < 1e8)) return false;
        const double day = std::floor(value);
        const std::string text = text_format("%08.0f", day);
        if (!cf_read_date(text, true, seconds)) return false;
        *seconds += std::llround((value - day) * DAY);
        return true;
    }
    const double span = value * clock.step;
    if (std::fabs(span) > FARTHEST) return false;
    *seconds = clock.origin + std::llround(span);
    return true;
}

Date cf_date(std::int64_t seconds) {
    Date date;
    const long secs = static_cast<long>(seconds);
    DATE_get_gmdate(&secs, &date);
    return date;
}

}  // namespace zav
