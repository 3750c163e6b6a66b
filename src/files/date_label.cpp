#include <cmath>
#include <cstdio>
#include <utility>

#include "files/date.h"
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

/// "12Z", or "12 PM EST [17Z]". `padded` gives the 24-hour clock two digits.
std::string hour_text(const Date& date, const Date& universal, bool padded) {
    if (state.tz_pm == 0) return text_format(padded ? "%2.2d%s" : "%d%s", date.hour, state.tz_str.c_str());
    std::string text = half_day_clock(date.hour, "") + state.tz_str;
    if (state.tz_pm < 0) text += text_format(" [%2.2dZ]", universal.hour);
    return text;
}

/// A time code cut up for labels.
struct TimeCode {
    int kind = 0;
    int start = 0;
    int end = MISS;
    int shown = MISS;  // hour that the label tells

    bool is_hour() const { return shown != 0 && shown != MISS; }
    long end_secs() const { return end == MISS ? 0 : 3600L * end; }
};

int no_long_period(int hours) { return hours == 800 || hours == 900 ? 0 : hours; }

TimeCode split_time_code(int fhour) {
    TimeCode code;
    if (fhour != MISS) {
        code.kind = fhour / 1000000;
        code.start = no_long_period(fhour / 1000 % 1000);
        code.end = no_long_period(fhour % 1000);
    }
    code.shown = code.kind < 6 ? code.end : code.start;
    return code;
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

/// Moment of a made-valid date and the hours of a time code behind it.
Moment valid_time(Date copy, const TimeCode& code) {
    if (copy.hour == MISS) copy.hour = 0;
    if (copy.min == MISS) copy.min = 0;
    return Moment(DATE_num_sec(&copy) + code.end_secs());
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
    str.clear();
    if (fhour >= 901) {
        str = text_format("%d month", fhour - 900);
    } else if (fhour >= 801) {
        str = text_format("%d day", fhour - 800);
    } else if (fhour > 60 || (flag && fhour >= 12)) {
        if (fhour % 24 == 0) str = text_format("%d day", fhour / 24);
        if (fhour % 24 == 12) str = text_format("%d.5 day", fhour / 24);
    }
    if (str.empty() && fhour != 0 && fhour != MISS) str = text_format("%d hour", fhour);
    return str;
}

int DATE_make_label_for_time_mod(int fhour, const std::string& model, const Date* date, std::string& str) {
    const TimeCode code = split_time_code(fhour);
    const bool has_hour = date->hour != MISS;
    DATE_fhour_label(str, code.shown, !has_hour);
    if (code.is_hour()) str += ' ';
    str += model;

    const Date copy = valid_copy(*date);
    if (code.kind == 0 && !code.is_hour()) {
        std::string label;
        DATE_make_label(&copy, label);
        str += (model.empty() ? "Analysis for " : " analysis for ") + label;
        return 0;
    }

    const bool forecast = code.start < 1 || code.end != 0;
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
    DATE_fhour_label(str, code.shown, 0);
    if (code.is_hour()) str += ' ';
    str += model_name(model);
    if (seconds == 0) {
        if (code.shown == 0) str += " analysis";
        return -1;
    }

    const bool late_start = code.start >= 6 && code.end == 0;
    const bool forecast = !late_start && code.is_hour();
    str += late_start ? " analysis valid" : forecast ? " valid" : " analysis for";
    const Moment moment(seconds + code.end_secs());
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
