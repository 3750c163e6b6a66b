// The records of a CF file in the order of the runs that they belong to, and the time of each.

#include <algorithm>

#include "files/time_code.h"
#include "frame/mess.h"
#include "grid/netcdf/cdf_cf_file.h"

namespace zav {
namespace {

/// Most records of a file.
constexpr long MOST_RECORDS = 1L << 22;

/// How the start of a variable's forecasts is told.
enum class Start { none, reference, axis, initial, valid_less_period, valid, begin };

Start start_of(const Cf_file& file, const Cf_field& field) {
    if (field.reference.found()) return Start::reference;
    if (!field.valid.found()) return Start::none;
    const Cf_coord& valid = file.coords[static_cast<std::size_t>(field.valid.coord)];
    if (field.period.found()) {
        const bool apart = !field.period.places.empty() && field.period.places != field.valid.places;
        return valid.initial || apart ? Start::initial : Start::valid_less_period;
    }
    if (valid.start != CF_NO_MOMENT) return Start::axis;
    return field.quantity.kind != 0 && !valid.bound_moments.empty() ? Start::begin : Start::valid;
}

std::int64_t moment_at(const Cf_file& file, const Cf_link& link, const Cdf_index& place) {
    return file.coords[static_cast<std::size_t>(link.coord)].moments[cf_index(file, link, place)];
}

std::int64_t difference(std::int64_t one, std::int64_t other) {
    return one == CF_NO_MOMENT || other == CF_NO_MOMENT ? CF_NO_MOMENT : one - other;
}

/// The bound of the interval that ends at a place, or begins it with `which` 0.
std::int64_t bound_at(const Cf_file& file, const Cf_field& field, const Cdf_index& place, std::size_t which) {
    const Cf_coord& valid = file.coords[static_cast<std::size_t>(field.valid.coord)];
    return valid.bound_moments[2 * cf_index(file, field.valid, place) + which];
}

std::int64_t start_at(const Cf_file& file, const Cf_field& field, const Cdf_index& place) {
    switch (start_of(file, field)) {
        case Start::reference:
            return moment_at(file, field.reference, place);
        case Start::axis:
            return file.coords[static_cast<std::size_t>(field.valid.coord)].start;
        case Start::initial:
        case Start::valid:
            return moment_at(file, field.valid, place);
        case Start::valid_less_period:
            return difference(moment_at(file, field.valid, place), moment_at(file, field.period, place));
        case Start::begin:
            return bound_at(file, field, place, 0);
        default:
            return CF_NO_MOMENT;
    }
}

/// Places of the dimensions along which the start changes.
std::vector<std::size_t> run_places(const Cf_file& file, const Cf_field& field) {
    std::vector<std::size_t> places;
    const auto add = [&places](const Cf_link& link) {
        places.insert(places.end(), link.places.begin(), link.places.end());
    };
    switch (start_of(file, field)) {
        case Start::reference:
            add(field.reference);
            break;
        case Start::valid_less_period:
            add(field.period);
            add(field.valid);
            break;
        case Start::initial:
        case Start::valid:
        case Start::begin:
            add(field.valid);
            break;
        default:
            break;
    }
    std::sort(places.begin(), places.end());
    places.erase(std::unique(places.begin(), places.end()), places.end());
    return places;
}

/// Sets the indices of some dimensions from a number that counts through them, the last fastest.
void unfold(long number, const std::vector<std::size_t>& places, const Cdf_var& var, Cdf_index* place) {
    for (std::size_t i = places.size(); i-- > 0;) {
        const long size = static_cast<long>(var.sizes[places[i]]);
        (*place)[places[i]] = static_cast<std::size_t>(number % size);
        number /= size;
    }
}

/// Number of slices along some dimensions, at most MOST_RECORDS.
long slices_along(const Cdf_var& var, const std::vector<std::size_t>& places) {
    long slices = 1;
    for (const std::size_t place : places) {
        slices = static_cast<long>(std::min<std::size_t>(var.sizes[place], MOST_RECORDS)) * slices;
        if (slices > MOST_RECORDS) return MOST_RECORDS;
    }
    return slices;
}

/// The group of variables with the same starts as this one.
std::size_t group_of(Cf_file* file, const Cf_field& field) {
    Cf_group group;
    group.coords = {field.reference.coord, field.valid.coord, field.period.coord,
                    static_cast<int>(start_of(*file, field))};
    for (const std::size_t place : field.runs) {
        group.dims.push_back(field.var.dims[place]);
        group.sizes.push_back(field.var.sizes[place]);
    }
    for (std::size_t i = 0; i < file->groups.size(); i++) {
        if (file->groups[i].coords == group.coords && file->groups[i].dims == group.dims) return i;
    }
    const long count = slices_along(field.var, field.runs);
    Cdf_index place(field.var.sizes.size(), 0);
    for (long i = 0; i < count; i++) {
        unfold(i, field.runs, field.var, &place);
        group.starts.push_back(start_at(*file, field, place));
    }
    file->groups.push_back(group);
    return file->groups.size() - 1;
}

/// A start, and how many of the same moment stand before it in its group.
using Key = std::pair<std::int64_t, long>;

/// The starts of a group in their order, each with its number.
std::vector<std::pair<Key, long>> sorted_starts(const Cf_group& group) {
    std::vector<std::pair<Key, long>> sorted;
    for (std::size_t i = 0; i < group.starts.size(); i++)
        sorted.push_back({{group.starts[i], 0}, static_cast<long>(i)});
    std::sort(sorted.begin(), sorted.end());
    for (std::size_t i = 1; i < sorted.size(); i++) {
        const Key& before = sorted[i - 1].first;
        if (before.first == sorted[i].first.first) sorted[i].first.second = before.second + 1;
    }
    return sorted;
}

/// Gives each start its column. Several starts of a group at the same moment have columns of their own.
void make_columns(Cf_file* file) {
    std::vector<Key> keys;
    for (const Cf_group& group : file->groups) {
        for (const auto& [key, start] : sorted_starts(group)) keys.push_back(key);
    }
    std::sort(keys.begin(), keys.end());
    keys.erase(std::unique(keys.begin(), keys.end()), keys.end());
    for (const Key& key : keys) file->columns.push_back(key.first);
    for (Cf_group& group : file->groups) {
        for (const auto& [key, start] : sorted_starts(group)) {
            const auto column = std::lower_bound(keys.begin(), keys.end(), key) - keys.begin();
            group.columns.emplace_back(static_cast<std::size_t>(column), start);
        }
    }
}

void number_records(Cf_file* file) {
    file->numbers.assign(file->columns.size() + 1, 0);
    for (const Cf_group& group : file->groups) {
        for (const auto& [column, start] : group.columns) file->numbers[column + 1] += group.slices;
    }
    for (std::size_t i = 1; i < file->numbers.size(); i++) file->numbers[i] += file->numbers[i - 1];
    if (file->numbers.back() <= MOST_RECORDS) return;
    MESS_print(MESS_WARN, "CDF_getinfo: The file has %ld fields, of which the first %ld are read\n",
               file->numbers.back(), MOST_RECORDS);
    for (long& number : file->numbers) number = std::min(number, MOST_RECORDS);
}

/// Lays the records of a column out.
void enter_column(Cf_file* file, std::size_t column) {
    file->column = column;
    file->parts.clear();
    long first = 0;
    for (std::size_t i = 0; i < file->fields.size(); i++) {
        const Cf_field& field = file->fields[i];
        const auto& columns = file->groups[field.group].columns;
        const auto found = std::lower_bound(columns.begin(), columns.end(), std::pair(column, -1L));
        if (found == columns.end() || found->first != column) continue;
        file->parts.push_back({first, i, found->second});
        first += field.slices;
    }
}

/// An interval in seconds from 1970; none where it doesn't end behind its begin.
struct Interval {
    std::int64_t begin = 0;
    std::int64_t end = 0;
    bool days = false;  ///< the axis counts days
};

/// The interval that a field is a mean, sum or extreme of by its time's bounds.
Interval interval_at(const Cf_file& file, const Cf_field& field, const Cdf_index& place) {
    if (field.quantity.kind == 0 || !field.valid.found() || start_of(file, field) == Start::initial) return {};
    const Cf_coord& valid = file.coords[static_cast<std::size_t>(field.valid.coord)];
    if (valid.bound_moments.empty()) return {};
    const std::int64_t begin = bound_at(file, field, place, 0);
    const std::int64_t end = bound_at(file, field, place, 1);
    return begin == CF_NO_MOMENT || end == CF_NO_MOMENT ? Interval{} : Interval{begin, end, valid.clock.days};
}

/// Seconds from the start of the forecast to a place's time.
std::int64_t lead_at(const Cf_file& file, const Cf_field& field, const Cdf_index& place, std::int64_t start) {
    if (field.period.found()) return moment_at(file, field.period, place);
    const bool valid = field.valid.found() && start_of(file, field) != Start::initial;
    return valid ? difference(moment_at(file, field.valid, place), start) : 0;
}

/// Code of an interval, counted from the start. Whole months from there on are told as such.
int interval_code(int kind, std::int64_t start, const Interval& interval, bool days) {
    constexpr std::int64_t MINUTE = 60;
    constexpr std::int64_t DAY = 86400;
    const Date first = cf_date(interval.begin);
    const Date last = cf_date(interval.end);
    const bool midnights = interval.begin % DAY == 0 && interval.end % DAY == 0;
    if (interval.begin == start && midnights && first.day == 1 && last.day == 1) {
        const long months = 12L * (last.year - first.year) + last.month - first.month;
        const int code = TIME_make({kind, 0, months, TIME_unit::month});
        if (code != MISS) return code;
    }
    const std::int64_t begin = interval.begin - start;
    const std::int64_t end = interval.end - start;
    if (begin % MINUTE != 0 || end % MINUTE != 0) return MISS;
    return TIME_make({kind, static_cast<long>(begin / MINUTE), static_cast<long>(end / MINUTE),
                      days ? TIME_unit::day : TIME_unit::hour});
}

}  // namespace

std::size_t cf_index(const Cf_file& file, const Cf_link& link, const Cdf_index& place) {
    const Cdf_var& var = file.coords[static_cast<std::size_t>(link.coord)].var;
    std::size_t index = 0;
    for (std::size_t i = 0; i < link.places.size(); i++) index = index * var.sizes[i] + place[link.places[i]];
    return index;
}

void cf_sort_records(Cf_file* file) {
    for (Cf_field& field : file->fields) {
        field.runs = run_places(*file, field);
        for (std::size_t i = 0; i < field.var.dims.size(); i++) {
            const bool run = std::find(field.runs.begin(), field.runs.end(), i) != field.runs.end();
            if (i != field.x && i != field.y && !run) field.rest.push_back(i);
        }
        field.slices = slices_along(field.var, field.rest);
        field.group = group_of(file, field);
        file->groups[field.group].slices += field.slices;
    }
    make_columns(file);
    number_records(file);
    if (!file->columns.empty()) enter_column(file, 0);
}

const Cf_field* cf_locate(Cf_file* file, long number, Cdf_index* place) {
    if (file->numbers.empty() || number < 0 || number >= file->numbers.back()) return nullptr;
    const auto behind = std::upper_bound(file->numbers.begin(), file->numbers.end(), number);
    const std::size_t column = static_cast<std::size_t>(behind - file->numbers.begin()) - 1;
    if (column != file->column) enter_column(file, column);
    const long inside = number - file->numbers[column];
    const auto next = std::upper_bound(file->parts.begin(), file->parts.end(), inside,
                                       [](long value, const Cf_part& part) { return value < part.first; });
    const Cf_part& part = *(next - 1);
    const Cf_field& field = file->fields[part.field];
    place->assign(field.var.sizes.size(), 0);
    unfold(part.start, field.runs, field.var, place);
    unfold(inside - part.first, field.rest, field.var, place);
    return &field;
}

Cf_time cf_time(const Cf_file& file, const Cf_field& field, const Cdf_index& place) {
    constexpr int ACCUMULATION = 4;
    Cf_time time;
    time.start = start_at(file, field, place);
    if (time.start == CF_NO_MOMENT) return time;
    const Interval interval = interval_at(file, field, place);
    if (interval.end > interval.begin) {
        time.code = interval_code(field.quantity.kind, time.start, interval, interval.days);
        if (time.code != MISS) return time;
    }
    const std::int64_t lead = lead_at(file, field, place, time.start);
    if (field.quantity.from_start && lead != CF_NO_MOMENT && lead > 0) {
        time.code = interval_code(ACCUMULATION, time.start, {time.start, time.start + lead}, false);
        return time;
    }
    const bool minutes = lead != CF_NO_MOMENT && lead % 60 == 0;
    time.code = minutes ? TIME_make({0, 0, static_cast<long>(lead / 60), TIME_unit::hour}) : static_cast<int>(MISS);
    return time;
}

}  // namespace zav
