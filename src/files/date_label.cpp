#include <cmath>
#include <cstdio>
#include <utility>

#include "files/date.h"
#include "files/time_code.h"
#include "frame/string.h"

namespace zav {
namespace {

struct State {
    std::string tz_str = "Z";
    int tz_off = 0;
    int tz_pm = 0;  // 0 a 24-hour clock, 1 a 12-hour clock, -1 a 12-hour clock with universal time in brackets
    std::function<std::string(int)> model_lookup;
};
State state;

bool outside(int value, int low, int high) { return value < low || value > high; }

int two_digits(int year) { return (year < 0 ? 1980 : year) % 100; }

std::string half_day_clock(int hour, const std::string& minutes) {
    if (hour >= 13) return text_format("%d%s PM", hour - 12, minutes.c_str());
    if (hour == 12) return "12" + minutes + " PM";
    if (hour == 0) return "12" + minutes + " AM";
    return text_format("%d%s AM", hour, minutes.c_str());
}

/// "1200Z", or "12:00 PM EST [1700Z]". `universal` is the time in brackets.
std::string hour_minute_text(const Date& date, const Date& universal) {
    if (state.tz_pm == 0) return text_format("%2.2d%2.2d%s", date.hour, date.min, state.tz_str.c_str());
    std::string text = half_day_clock(date.hour, text_format(":%2.2d", date.min)) + state.tz_str;
    if (state.tz_pm < 0) text += text_format(" [%2.2d%2.2dZ]", universal.hour, universal.min);
    return text;
}

/// "12Z", or "12 PM EST [17Z]", with the minutes of a time off the hour. `padded` gives the 24-hour clock two digits.
std::string hour_text(const Date& date, const Date& universal, bool padded) {
    if (date.min > 0) return hour_minute_text(date, universal);
    if (state.tz_pm == 0) return text_format(padded ? "%2.2d%s" : "%d%s", date.hour, state.tz_str.c_str());
    std::string text = half_day_clock(date.hour, "") + state.tz_str;
    if (state.tz_pm < 0) text += text_format(" [%2.2dZ]", universal.hour);
    return text;
}

/// A time code as labels tell it.
struct TimeCode {
    TIME_range range;
    long shown = 0;  ///< the time that the label begins with: minutes or months

    bool is_forecast() const { return shown != 0; }
    bool is_late_start() const { return range.begin > 0 && range.end == 0; }
};

TimeCode split_time_code(int fhour) {
    constexpr int FIRST_OF_FORECASTS = 10;  // kinds of ranges over several forecasts, whose end isn't a time
    TimeCode code{TIME_split(fhour)};
    const bool at_start = code.range.kind >= FIRST_OF_FORECASTS || (code.range.kind >= 6 && code.is_late_start());
    code.shown = at_start ? code.range.begin : code.range.end;
    return code;
}

/// The time that a label begins with. `half_days` tells days and half days from 12 hours on.
std::string forecast_text(const TimeCode& code, bool half_days) {
    constexpr long HALF_DAY = TIME_DAY / 2;
    constexpr long LAST_IN_HOURS = 60 * TIME_HOUR;
    if (!code.is_forecast()) return "";
    const bool in_days = code.range.unit == TIME_unit::hour && code.shown % HALF_DAY == 0 &&
                         (code.shown > LAST_IN_HOURS || (half_days && code.shown > 0));
    if (!in_days) return TIME_text(code.shown, code.range.unit);
    return text_format(code.shown % TIME_DAY == 0 ? "%ld day" : "%ld.5 day", code.shown / TIME_DAY);
}

std::string model_name(int model) { return state.model_lookup ? state.model_lookup(model) : std::string(); }

/// A moment as universal and as local date.
struct Moment {
    Date universal;
    Date local;

    explicit Moment(long secs) {
        DATE_get_gmdate(&secs, &universal);
        const long shifted = secs + state.tz_off;
        DATE_get_gmdate(&shifted, &local);
    }
    const char* week_day() const { return outside(local.wday, 0, 6) ? "" : day_of_week[local.wday]; }
};

Date valid_copy(const Date& date) {
    Date copy = date;
    if (copy.hour != MISS && outside(copy.hour, 0, 23)) copy.hour = 0;
    if (outside(copy.day, 1, 31)) copy.day = 1;
    if (outside(copy.month, 1, 12)) copy.month = 1;
    if (copy.year < 0) copy.year = 1980;
    return copy;
}

/// Moment of the end of a time code behind a date.
Moment end_of(Date date, const TIME_range& range) {
    if (range.unit != TIME_unit::month) return Moment(DATE_num_sec(&date) + 60 * range.end);
    const long month = date.month - 1 + range.end;
    date.year += static_cast<int>(month / 12);
    date.month = static_cast<int>(month % 12) + 1;
    return Moment(DATE_num_sec(&date));
}

/// The same of a made-valid date.
Moment valid_time(Date copy, const TimeCode& code) {
    if (copy.hour == MISS) copy.hour = 0;
    if (copy.min == MISS) copy.min = 0;
    return end_of(copy, code.range);
}

}  // namespace

void DATE_set_TZ(const std::string& str) {
    std::size_t at = 0;
    int clock = state.tz_pm;
    if (!str.empty() && (str[0] == '+' || str[0] == '-')) {
        clock = str[0] == '+' ? 1 : -1;
        at = 1;
    }
    char name[5] = "";
    float hours = 0.0F;
    if (std::sscanf(str.c_str() + at, "%4[^:]:%f", name, &hours) != 2) return;
    if (!std::isfinite(hours) || std::fabs(hours) > 48.0F) return;
    state.tz_pm = clock;
    state.tz_str = std::string(" ") + name;
    state.tz_off = static_cast<int>(hours * 3600.0F);
}

int DATE_get_tz_off() { return state.tz_off; }

const std::string& DATE_get_tz_str() { return state.tz_str; }

void DATE_set_model_lookup(std::function<std::string(int model)> lookup) { state.model_lookup = std::move(lookup); }

int DATE_make_label(const Date* date, std::string& str) {
    Date copy = *date;
    Date universal = *date;
    // A date without an hour has no time of day that a zone could move.
    const bool has_hour = copy.month != MISS && copy.day != MISS && copy.hour != MISS;
    if (state.tz_off != 0 && has_hour) {
        const Moment moment(DATE_num_sec(&copy));
        universal = moment.universal;
        copy = moment.local;
    }

    const int year = two_digits(copy.year);
    if (copy.month == MISS) {
        str = text_format("%2.2d", year);
        return 0;
    }
    if (copy.day == MISS) {
        str = text_format("%3s %2.2d", DATE_month(copy.month), year);
        return 0;
    }
    if (copy.hour == MISS) {
        str = text_format("%2d %3s %2.2d", copy.day, DATE_month(copy.month), year);
        return 0;
    }
    for (Date* part : {&copy, &universal}) {
        if (outside(part->month, 1, 12)) part->month = 1;
        if (outside(part->day, 0, 31)) part->day = 1;
        if (outside(part->hour, 0, 23)) part->hour = 0;
        if (part->min != MISS && outside(part->min, 0, 59)) part->min = 0;
    }
    const std::string hour = copy.min == MISS ? hour_text(copy, universal, true) : hour_minute_text(copy, universal);
    str = text_format("%s %2d %3s %2.2d", hour.c_str(), copy.day, DATE_month(copy.month), year);
    return 0;
}

namespace {

/// What a label holds. The forms differ in how they give the time of day.
struct LabelFields {
    int hour = MISS, min = MISS, sec = MISS, day = MISS, year = MISS;
    char month[4] = "";
};

bool read_hour_form(const char* text, LabelFields& f) {
    f = LabelFields{};
    return std::sscanf(text, "%2dZ %2d %3s %2d", &f.hour, &f.day, f.month, &f.year) == 4;
}

bool read_minute_form(const char* text, LabelFields& f) {
    f = LabelFields{};
    if (std::sscanf(text, "%2d%2dZ %2d %3s %2d", &f.hour, &f.min, &f.day, f.month, &f.year) != 5) return false;
    if (text[0] == ' ') std::sscanf(text, "%1d%2d", &f.hour, &f.min);  // a time of three digits
    return true;
}

bool read_second_form(const char* text, LabelFields& f) {
    f = LabelFields{};
    return std::sscanf(text, "%2d:%2d:%2dZ %2d %3s %2d", &f.hour, &f.min, &f.sec, &f.day, f.month, &f.year) == 6;
}

bool read_label(const std::string& str, LabelFields& f) {
    const char* text = str.c_str();
    const std::size_t length = str.size();
    return read_hour_form(text, f) || (length >= 15 && read_minute_form(text + length - 15, f)) ||
           (length >= 19 && read_second_form(text + length - 19, f)) ||
           (length >= 13 && read_hour_form(text + length - 13, f));
}

}  // namespace

int DATE_decode_label(const std::string& str, Date* date) {
    DATE_init(date);
    LabelFields fields;
    if (!read_label(str, fields)) return 0;
    date->hour = fields.hour;
    date->min = fields.min;
    date->sec = fields.sec;
    date->day = fields.day;
    date->month = DATE_decode_month(fields.month);
    date->year = fields.year;
    if (date->year < 50) date->year += 2000;
    if (date->year < 200) date->year += 1900;
    return 0;
}

const std::string& DATE_fhour_label(std::string& str, int fhour, int flag) {
    TimeCode code{TIME_split(fhour)};
    code.shown = code.range.end;
    str = forecast_text(code, flag != 0);
    return str;
}

int DATE_make_label_for_time_mod(int fhour, const std::string& model, const Date* date, std::string& str) {
    const TimeCode code = split_time_code(fhour);
    const bool has_hour = date->hour != MISS;
    str = forecast_text(code, !has_hour);
    if (code.is_forecast()) str += ' ';
    str += model;

    const Date copy = valid_copy(*date);
    if (code.range.kind == 0 && !code.is_forecast()) {
        std::string label;
        DATE_make_label(&copy, label);
        str += (model.empty() ? "Analysis for " : " analysis for ") + label;
        return 0;
    }

    const bool forecast = !code.is_late_start();
    str += forecast ? " valid" : model.empty() ? "Analysis valid" : " analysis valid";
    const Moment moment = valid_time(copy, code);
    const Date& local = moment.local;
    const int year = two_digits(local.year);
    const char* month = DATE_month(local.month);
    const std::string hour = hour_text(local, moment.universal, false);
    if (forecast && has_hour)
        str += text_format(" %s %3s %2d %3s %2.2d", hour.c_str(), moment.week_day(), local.day, month, year);
    else if (forecast)
        str += text_format(" %3s %2d %3s %2d", moment.week_day(), local.day, month, year);
    else if (has_hour)
        str += text_format(" %s %2d %3s %2.2d", hour.c_str(), local.day, month, year);
    else
        str += text_format(" %2d %3s %2d", local.day, month, year);
    return 0;
}

int DATE_make_label_for_time(int fhour, int model, const Date* date, std::string& str) {
    return DATE_make_label_for_time_mod(fhour, model_name(model), date, str);
}

int DATE_make_label_for(int fhour, int model, long seconds, std::string& str) {
    const TimeCode code = split_time_code(fhour);
    str = forecast_text(code, false);
    if (code.is_forecast()) str += ' ';
    str += model_name(model);
    if (seconds == 0) {
        if (code.shown == 0) str += " analysis";
        return -1;
    }

    const bool late_start = code.range.begin >= 6 * TIME_HOUR && code.range.end == 0;
    const bool forecast = !late_start && code.is_forecast();
    str += late_start ? " analysis valid" : forecast ? " valid" : " analysis for";
    Date start;
    DATE_get_gmdate(&seconds, &start);
    const Moment moment = end_of(start, code.range);
    const Date& local = moment.local;
    const std::string hour = hour_text(local, moment.universal, true);
    const char* month = DATE_month(local.month);
    if (forecast)
        str += text_format(" %s %3s %2d %3s %2.2d", hour.c_str(), moment.week_day(), local.day, month,
                           two_digits(local.year));
    else
        str += text_format(" %s %2d %3s %2.2d", hour.c_str(), local.day, month, two_digits(local.year));
    return 0;
}

int DATE_make_label_valid_time(int fhour, const Date* date, std::string& str) {
    const Moment moment = valid_time(valid_copy(*date), split_time_code(fhour));
    const Date& local = moment.local;
    const char* month = DATE_month(local.month);
    const int year = two_digits(local.year);
    if (date->hour == MISS) {
        str = text_format("%3s %2d %3s %2.2d", moment.week_day(), local.day, month, year);
        return 0;
    }
    const std::string hour = hour_text(local, moment.universal, false);
    str = text_format("%s %3s %2d %3s %2.2d", hour.c_str(), moment.week_day(), local.day, month, year);
    return 0;
}

}  // namespace zav
