#include "grid/grd_hints.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <set>
#include <tuple>

#include "files/date.h"
#include "files/lookup_lines.h"
#include "files/time_code.h"
#include "frame/mess.h"
#include "frame/string.h"
#include "grid/grd_read.h"
#include "grid/grd_tool.h"

namespace zav {
namespace {

/// Most variables and records that a line names.
constexpr std::size_t NAMED_MAX = 12;
constexpr std::size_t CHOICES_MAX = 6;
constexpr std::size_t RUNS_MAX = 12;

/// Variable numbers from here to the end are those of ensemble members, a plain number in their last three digits.
constexpr int ENSEMBLE_FIRST = 19000000;
constexpr int ENSEMBLE_END = 20000000;
constexpr int MEMBER_STEP = 1000;
constexpr int MEMBER_CONTROL = 300;
constexpr int MEMBER_LOW = 320;
constexpr int MEMBER_HIGH = 340;

bool is_member(int var) { return var >= ENSEMBLE_FIRST && var < ENSEMBLE_END; }

int plain_variable(int var) { return is_member(var) ? var % MEMBER_STEP : var; }

/// Beginnings of the words that an ensemble number may have.
std::vector<std::string> member_words(int var) {
    const int member = (var - ENSEMBLE_FIRST) / MEMBER_STEP;
    std::vector<std::string> words = {"ensmean[]", "ensdev[]"};
    if (member == MEMBER_CONTROL) words.emplace_back("ens[0]");
    // "ens[-22]" would be read as the number of "ens[+2]".
    if (member > MEMBER_HIGH) words.push_back(text_format("ens[+%d]", member - MEMBER_HIGH));
    if (member > MEMBER_LOW) words.push_back(text_format("ens[-%d]", member - MEMBER_LOW));
    return words;
}

/// The word for a variable: one that is read as its number, or the number itself.
std::string variable_word(int var) {
    std::vector<std::string> words;
    if (is_member(var)) {
        for (const std::string& word : member_words(var)) words.push_back(word + VAR_abbr(plain_variable(var)));
    }
    words.push_back(VAR_abbr(var));
    for (const std::string& word : words) {
        VAR_data data;
        VAR_data_init(&data);
        if (VAR_dec_var(word, &data) == var || data.var[0] == var) return word;
    }
    return std::to_string(var);
}

/// Words for a time of that many minutes, or for the span behind a dash.
std::vector<std::string> span_words(long minutes) {
    std::vector<std::string> words;
    if (minutes % TIME_HOUR == 0) words.push_back(std::to_string(minutes / TIME_HOUR));
    words.push_back(std::to_string(minutes) + "min");
    return words;
}

/// The word for a time code, or that of its end where no word is read as the code. Days and months are numbers as in
/// the code.
std::string time_word(int time) {
    constexpr std::array<const char*, 9> kinds = {"acc", "avg", "dif", "max", "min", "rng", "iavg", "uavg", "var"};
    constexpr int coded = 1000;
    const TIME_range range = TIME_split(time);
    const int end = time % coded;
    const int begin = time / coded % coded;
    const std::vector<std::string> ends = span_words(range.end);
    const std::string hours = ends.size() > 1 ? "h" : "";
    std::vector<std::string> words;
    if (TIME_is_single(time)) {
        if (time == 0) words.emplace_back("init");
        words.push_back(text_format("h%d", end));
        words.push_back(hours + ends.front());
    }
    for (const char* kind : kinds) {
        words.push_back(text_format("h%d-%d%s", end, end - begin, kind));
        for (const std::string& span : span_words(range.end - range.begin)) {
            words.push_back(hours + ends.front() + "-" + span + kind);
        }
    }
    for (const std::string& word : words) {
        int code = MISS;
        if (VAR_dec_time(word, &code) == 2 && code == time) return word;
    }
    return range.unit == TIME_unit::hour ? hours + ends.front() : text_format("h%d", end);
}

/// Words of levels without a number.
constexpr std::array<const char*, 36> LEVEL_NAMES = {
    "sfc",       "sl",        "trop",      "mwnd",      "frz",       "lcl",       "whole",    "top_frz",  "wbzero",
    "cld_ceil",  "gcld_bot",  "gcld_top",  "blcld_bot", "blcld_top", "blcld_lyr", "lcld_bot", "lcld_top", "lcld_lyr",
    "mcld_bot",  "mcld_top",  "mcld_lyr",  "hcld_bot",  "hcld_top",  "hcld_lyr",  "conv_bot", "conv_top", "conv_lyr",
    "sconv_bot", "sconv_top", "dconv_bot", "dconv_top", "sclw_bot",  "sclw_top",  "maxepot",  "equilib",  "sfc[0]"};
constexpr std::array<const char*, 9> LEVEL_UNITS = {"mb", "m_ag", "m", "k", "sig", "mb_ag", "pv", "lev", "eta"};
/// What codes of levels and layers are multiplied by to get the numbers of words.
constexpr std::array<double, 5> LEVEL_SCALES = {1.0, 10.0, 100.0, 0.01, 0.0001};

std::vector<std::string> level_words(int level) {
    std::vector<std::string> words(LEVEL_NAMES.begin(), LEVEL_NAMES.end());
    for (const double scale : LEVEL_SCALES) {
        const double top = level / 1000 * scale;
        const double bottom = level % 1000 * scale;
        for (const char* unit : LEVEL_UNITS) {
            words.push_back(text_format("%g%s", level * scale, unit));
            words.push_back(text_format("%g-%g%s", top, bottom, unit));
            words.push_back(text_format("%g-%g%s", bottom, top, unit));
        }
    }
    return words;
}

/// The word for a level: the first that is read as its codes, else the one for any level.
std::string level_word(int ltype, int level) {
    for (const std::string& word : level_words(level)) {
        int read_type = MISS;
        int read_level = MISS;
        if (VAR_dec_level(word, &read_type, &read_level) == 2 && read_type == ltype && read_level == level) return word;
    }
    return "miss";
}

/// The options that choose a record.
std::string options_of(const Record_codes& record) {
    return "-ft " + time_word(record.time) + " -le " + level_word(record.ltype, record.level) + " -va " +
           variable_word(record.var);
}

bool is_wanted_variable(int var, const VAR_data& params) {
    return std::any_of(params.var.begin(), params.var.end(), [&](int wanted) {
        return wanted > 0 && (var == wanted || plain_variable(var) == plain_variable(wanted));
    });
}

/// In what a record departs from a key.
struct Departure {
    bool ltype;
    bool level;
    bool time;
    bool member;
    bool type;
    bool date;

    int count() const { return ltype + level + time + member + type + date; }
};

bool key_fits(const Record_codes& record, const VAR_data& params, int type) {
    GRD_report header;
    GRD_init(&header);
    header.time = record.time;
    header.ltype = record.ltype;
    header.level = record.level;
    header.var = record.var;
    header.type = record.type;
    return GRD_test(&header, &params, type) != 0;
}

bool time_fits(const Record_codes& record, int time) {
    VAR_data key;
    VAR_data_init(&key);
    key.time = time;
    key.var[0] = record.var;
    return key_fits(record, key, MISS);
}

Departure departure_of(const Record_codes& record, const VAR_data& params, int type, const Date& date) {
    return {params.ltype != MISS && record.ltype != params.ltype,
            params.level != MISS && record.level != params.level,
            !time_fits(record, params.time),
            std::find(params.var.begin(), params.var.end(), record.var) == params.var.end(),
            type != MISS && record.type != type,
            !GRD_date_fits(date, record.date)};
}

/// Minutes between a date that was asked for and another one, 0 where one of them isn't known.
long date_apart(Date wanted, Date own) {
    if (wanted.year < 0 || own.year == MISS) return 0;
    return std::labs(DATE_num_sec(&wanted) - DATE_num_sec(&own)) / 60;
}

/// How far a record is from a key; of equally many departures the one of nearer level, date and time.
std::tuple<int, long, long> distance_of(const Record_codes& record, const VAR_data& params, int type,
                                        const Date& date) {
    const Departure departure = departure_of(record, params, type, date);
    const auto apart = [](int one, int other) { return std::labs(static_cast<long>(one) - other); };
    return {departure.count() + (departure.ltype ? 1 : 0), apart(record.level, params.level),
            date_apart(date, record.date) + std::labs(TIME_split(record.time).end - TIME_split(params.time).end)};
}

std::string departure_text(const Departure& departure) {
    std::string text;
    const auto add = [&text](bool said, const char* word) {
        if (said) text += (text.empty() ? "another " : ", ") + std::string(word);
    };
    add(departure.date, "date");
    add(departure.time, "time");
    add(departure.level || departure.ltype, "level");
    add(departure.member, "member");
    add(departure.type, "grid number");
    return text;
}

/// The variables of a file, each once.
std::string variable_list(const std::vector<Record_codes>& records) {
    std::set<int> seen;
    std::string text;
    for (const Record_codes& record : records) {
        if (!seen.insert(record.var).second) continue;
        if (seen.size() > NAMED_MAX) return text + ", ...";
        text += (text.empty() ? "" : ", ") + variable_word(record.var);
    }
    return text;
}

std::string date_text(const Record_codes& record) {
    std::string label;
    DATE_make_label(&record.date, label);
    return label;
}

/// The option that chooses a date.
std::string date_option(const Date& date) {
    return date.year == MISS
               ? std::string()
               : text_format(" -ho '#%04d%02d%02d%02d%02d'", date.year, date.month, date.day, date.hour, date.min);
}

}  // namespace

bool GRD_date_fits(const Date& wanted, const Date& own) {
    for (int Date::*field : {&Date::year, &Date::month, &Date::day, &Date::hour, &Date::min}) {
        if (wanted.*field >= 0 && own.*field != MISS && wanted.*field != own.*field) return false;
    }
    return true;
}

Record_codes GRD_codes_of(const GRD_report& header, int number) {
    return {number, header.time, header.ltype, header.level, header.var, header.type, header.date};
}

void GRD_list_records(int grd_fd, int first, std::vector<Record_codes>* records) {
    const LookupHold hold;
    GRD_report header;
    GRD_init(&header);
    for (int number = first; GRD_read(grd_fd, &header, GRD_READ_HEADER, &number) == 0; number++) {
        records->push_back(GRD_codes_of(header, number));
    }
}

void GRD_tell_nearest(const std::vector<Record_codes>& records, const VAR_data& params, int type, int first,
                      const Date& date) {
    const Record_codes* nearest = nullptr;
    for (const Record_codes& record : records) {
        if (!is_wanted_variable(record.var, params)) continue;
        const bool nearer =
            nearest == nullptr || distance_of(record, params, type, date) < distance_of(*nearest, params, type, date);
        if (nearer) nearest = &record;
    }
    if (nearest == nullptr) {
        if (!records.empty()) MESS_print(MESS_WARN, "The file has: -va %s\n", variable_list(records).c_str());
        return;
    }
    const Departure departure = departure_of(*nearest, params, type, date);
    if (departure.count() == 0) {
        const char* why = nearest->number < first ? "before the one that -gn names" : "but its values can't be read";
        MESS_print(MESS_WARN, "The file has it at record %d, %s\n", nearest->number, why);
        return;
    }
    std::string number = departure.type ? text_format(" -gt %d", nearest->type) : std::string();
    if (departure.date) number += date_option(nearest->date);
    MESS_print(MESS_WARN, "The nearest in the file has %s: %s%s\n", departure_text(departure).c_str(),
               options_of(*nearest).c_str(), number.c_str());
}

void GRD_tell_choice(const std::vector<Record_codes>& records, const VAR_data& params, int type, int first,
                     const Date& date) {
    const Record_codes* taken = nullptr;
    const Record_codes* last = nullptr;
    std::size_t others = 0;
    std::size_t runs = 0;
    std::string choices;
    for (const Record_codes& record : records) {
        if (record.number < first || !key_fits(record, params, type) || !GRD_date_fits(date, record.date)) continue;
        if (taken == nullptr) taken = last = &record;
        const bool same = record.var == taken->var && record.time == taken->time && record.ltype == taken->ltype &&
                          record.level == taken->level && record.type == taken->type;
        if (!same || &record == taken) continue;
        others++;
        const bool new_run = date_text(record) != date_text(*last);
        last = &record;
        if (new_run ? ++runs >= RUNS_MAX : others >= CHOICES_MAX) continue;
        choices += (choices.empty() ? "" : ", ") + std::to_string(record.number);
        if (new_run) choices += " (" + date_text(record) + ")";
    }
    if (others == 0) return;
    if (runs >= RUNS_MAX) choices += text_format(", ..., %d (%s)", last->number, date_text(*last).c_str());
    const char* how = runs > 0 && GRD_get_info()->own_dates ? "-ho DATE or -gn NUMBER" : "-gn NUMBER";
    MESS_print(MESS_WARN, "%zu records fit %s; number %d (%s) is taken. To choose, %s: %s\n", others + 1,
               options_of(*taken).c_str(), taken->number, date_text(*taken).c_str(), how, choices.c_str());
}

}  // namespace zav
