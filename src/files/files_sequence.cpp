// A sequence of files, by a list of names or by the steps of the template.

#include <algorithm>
#include <string>
#include <vector>

#include "files/files.h"
#include "files/files_state.h"
#include "frame/resrc.h"
#include "frame/string.h"

namespace zav {
namespace {

/// Longest span and step, about 31 years.
constexpr long SPAN_LIMIT = 1000000000;

struct State {
    Date first_date;
    int secs = 0;
    int nsecs = 0;
    int offset = 100000;
    int skip = 0;
    int num_hour = 0;
    int def_hours = 0;
    std::vector<std::string> files;
    std::size_t file_ind = 0;
};
State state;

int held(long secs) { return static_cast<int>(std::clamp(secs, -SPAN_LIMIT, SPAN_LIMIT)); }

/// "hours:minutes", each of the two optional, in seconds. A "-" in front holds for both.
int span_secs(const std::string& text) {
    const bool negative = text.starts_with('-');
    const std::string span = text.substr(negative ? 1 : 0);
    const std::size_t colon = span.find(':');
    long secs = 3600L * text_to_int(span.substr(0, colon));
    if (colon != std::string::npos) secs += 60L * text_to_int(span.substr(colon + 1));
    return held(negative ? -secs : secs);
}

std::vector<std::string> span_words() {
    const char* value = RES_get("num_hour");
    return parse_string(value, ',');
}

bool has_span() { return RES_get("num_hour") != nullptr; }

void name_of(long secs, std::string& file) {
    Date date = state.first_date;
    const long time = DATE_num_sec(&date) + secs;
    DATE_get_gmdate(&time, &date);
    FILE_set_date(&date, file);
}

int step_by(int secs, std::string& file) {
    state.secs = held(static_cast<long>(state.secs) + secs);
    name_of(state.secs, file);
    return 1;
}

}  // namespace

int FILE_num_hour() {
    if (!has_span()) return state.def_hours;
    const std::vector<std::string> words = span_words();
    return words.empty() ? 0 : span_secs(words[0]);
}

int FILE_get_skip() {
    const std::vector<std::string> words = span_words();
    return words.size() > 1 ? span_secs(words[1]) : naming().late_off;
}

int FILE_get_offset() { return naming().late_off > 0 ? naming().late_off : 100000; }

int FILE_get_num_hour() { return state.num_hour; }

int FILE_get_nsecs() { return state.nsecs; }

void FILE_set_nsecs(int val) { state.nsecs = held(val); }

void FILE_set_def_hours(int hour) { state.def_hours = held(hour); }

void FILE_first(const Date* datim) {
    RES_getvals("filename", state.files);
    state.file_ind = 0;
    if (!state.files.empty() && is_time_rule(state.files[0]) && state.files[0][0] != '#') state.files.clear();
    state.first_date = *datim;
    state.num_hour = FILE_num_hour();
    state.skip = FILE_get_skip();
    state.offset = FILE_get_offset();
    if (state.skip > 0 && state.skip / state.offset > 0)
        state.offset = held(static_cast<long>(state.offset) * (state.skip / state.offset));
    state.secs = 0;
    if (state.num_hour < 0) {
        const long steps = (static_cast<long>(state.num_hour) - state.offset + 1) / state.offset;
        state.secs = held(state.offset * steps);
    }
    state.nsecs = state.secs;
}

int FILE_get_next(std::string& file) {
    const std::size_t count = state.files.size();
    if (count > 1 || (count == 1 && !has_span())) {
        if (state.file_ind >= count) return 0;
        FILE_set_file(state.files[state.file_ind++], file);
        return 1;
    }
    if (state.nsecs > std::max(state.num_hour, 0)) return 0;
    if (state.num_hour != 0)
        name_of(state.nsecs, file);
    else
        file = naming().filename;
    state.nsecs = held(static_cast<long>(state.nsecs) + state.offset);
    return 1;
}

int FILE_next_file(std::string& file) { return step_by(state.offset, file); }

int FILE_prev_file(std::string& file) { return step_by(-state.offset, file); }

int FILE_get_num_file() {
    const std::size_t count = state.files.size();
    return count > 1 ? static_cast<int>(count) - 1 : state.num_hour;
}

}  // namespace zav
