// The time rule of a file: FILE_set_current, and the forced date.

#include <algorithm>
#include <cstdlib>

#include "files/files.h"
#include "files/files_state.h"
#include "frame/resrc.h"
#include "frame/string.h"

namespace zav {
namespace {

constexpr int SEARCH_STEPS = 500;

bool is_digit(char c) { return c >= '0' && c <= '9'; }

/// Reads a rule character by character.
class Rule {
  public:
    explicit Rule(const std::string& text) : text_(text) {}

    char next() const { return pos_ < text_.size() ? text_[pos_] : '\0'; }

    bool take(char lower) {
        if (next() != lower && next() != lower - 'a' + 'A') return false;
        pos_++;
        return true;
    }
    /// 1 or -1 by a sign, which is passed over; -1 without one.
    int take_sign() {
        if (next() != '+' && next() != '-') return -1;
        return text_[pos_++] == '+' ? 1 : -1;
    }
    /// Digits, as many as `limit` of them count.
    long take_number(int limit) {
        long value = 0;
        for (int count = 0; is_digit(next()); pos_++)
            if (count++ < limit) value = value * 10 + (next() - '0');
        return value;
    }
    /// "hours:minutes", or with a "d" in it "days d hours:minutes", in seconds.
    long take_offset() {
        const std::size_t end = std::min(text_.find_first_not_of("0123456789:d", pos_), text_.size());
        long secs = 0;
        if (text_.find('d', pos_) < end) {
            secs = 86400 * take_number(6);
            if (next() == 'd') pos_++;
        }
        secs += 3600 * take_number(6);
        if (next() == ':') {
            pos_++;
            secs += 60 * take_number(6);
        }
        return secs;
    }
    /// Number of steps behind a "#", or the default.
    int take_limit() {
        if (next() != '#') return SEARCH_STEPS;
        pos_++;
        if (!is_digit(next())) return SEARCH_STEPS;
        return std::max(static_cast<int>(take_number(4)), 1);
    }
    /// Date behind a "#" at the start.
    bool take_date(Date& date) {
        if (next() != '#') return false;
        pos_++;
        return read_date_groups(text_, pos_, date) > 0;
    }

    /// Passes over a whole rule. False if something else stands there too.
    bool is_whole() {
        Date unused;
        take_date(unused);
        take_sign();
        take_offset();
        take_sign();
        if (take('l')) {
            take('a');
            take_limit();
            take_sign();
        }
        take_offset();
        return pos_ == text_.size();
    }

  private:
    const std::string text_;
    std::size_t pos_ = 0;
};

/// Seconds of a date of file names: what isn't known is the start of its range.
long start_of(Date date) {
    if (date.day < 1) date.day = 1;
    return DATE_num_sec(&date);
}

long base_time(Rule& rule) {
    Date date;
    if (rule.take_date(date)) return start_of(date);
    const char* given = std::getenv("zavcurtime");
    if (given != nullptr) {
        const std::string text = given;
        std::size_t at = text.starts_with('#') ? 1 : 0;
        if (read_date_groups(text, at, date) > 0) return start_of(date);
    }
    return DATE_get_time(nullptr);
}

/// Moves a date back by `secs` and keeps its other fields in step.
void take_off(Date& date, long secs) {
    const long moved = DATE_num_sec(&date) - secs;
    DATE_get_gmdate(&moved, &date);
}

/// The latest moment up to `secs` that fits the forced date.
long forced_time(long secs, const Date& set) {
    Date date;
    DATE_get_gmdate(&secs, &date);
    if (set.month >= 0) {
        if (date.month < set.month) date.year--;
        date.month = set.month;
    }
    if (set.day >= 0) {
        if (date.day < set.day && --date.month < 1) {
            date.month = 12;
            date.year--;
        }
        date.day = set.day;
    }
    if (set.hour >= 0) {
        if (date.hour < set.hour) take_off(date, 86400);
        date.hour = set.hour;
    }
    if (set.min >= 0) {
        if (date.min < set.min) take_off(date, 3600);
        date.min = set.min;
    }
    return DATE_num_sec(&date);
}

void name_at(long secs, std::string& name) {
    Date date;
    DATE_get_gmdate(&secs, &date);
    FILE_set_date(&date, name);
}

bool is_present(const std::string& name) {
    const NamingState& names = naming();
    const long size = FILE_size(name);
    return (names.rmin_size > 0 && size > names.rmin_size) || size > names.min_size;
}

/// Steps from `secs` in the direction of `sign` until a file is there. The time of the last name tried.
long search_time(long secs, int sign, int limit) {
    std::string name;
    for (int step = 1;; step++) {
        name_at(secs, name);
        const int period = naming().late_off;
        // Without a step every name is the same.
        if (is_present(name) || step >= limit || period <= 0) return secs;
        secs += static_cast<long>(period) * sign;
    }
}

}  // namespace

long FILE_set_current(const char* cur, std::string& filename) {
    NamingState& names = naming();
    names.filename_type = 0;
    names.odd_name.clear();
    Rule rule(cur != nullptr ? cur : "la");

    long secs = forced_time(base_time(rule), names.set);
    int sign = rule.take_sign();
    if (is_digit(rule.next())) {
        secs += sign * rule.take_offset();
        sign = rule.take_sign();
    }
    if (rule.take('l')) {
        rule.take('a');
        secs = search_time(secs, sign, rule.take_limit());
        sign = rule.take_sign();
    }
    if (is_digit(rule.next())) secs += sign * rule.take_offset();

    name_at(secs, filename);
    const int period = names.late_off;
    return period > 0 ? secs - secs % period : secs;
}

std::size_t rule_start(const std::string& text) { return strnicmp(text, "cu", 2) == 0 ? 2 : 0; }

bool is_time_rule(const std::string& text) {
    if (text.starts_with('#')) return true;
    const bool current = strnicmp(text, "cu", 2) == 0;
    if (!current && strnicmp(text, "la", 2) != 0) return false;
    if (Rule(text.substr(rule_start(text))).is_whole()) return true;
    const std::string name = text.substr(0, text.find('#'));
    if (name.find_first_of("./") != std::string::npos) return false;
    return FILE_is_file(name) == 0 && FILE_is_file(FILE_add_path(RES_get("grid_path"), name)) == 0;
}

void FILE_get_date(Date* date) { *date = naming().file_date; }

void FILE_set_time(const Date* datim) { naming().set = *datim; }

void FILE_get_time(Date* datim) { *datim = naming().set; }

void FILE_reset_time() { clear_file_fields(naming().set); }

}  // namespace zav
