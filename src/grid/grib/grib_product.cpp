#include <array>
#include <cmath>
#include <limits>

#include "frame/mess.h"
#include "frame/string.h"
#include "frame/zav.h"
#include "grid/grib/grib.h"
#include "grid/grib/grib_state.h"
#include "grid/grib/grib_time.h"
#include "grid/zavgrd.h"

namespace zav {
namespace {

/// What a template adds to the ensemble description.
enum class Kind { plain, member, derived, probability, local };

/// A product definition template.
struct Template {
    int code;
    Kind kind;
    int process;  ///< octet of the statistical process; 0 for a field at one time
    int length;   ///< octets of the interval's length
    const char* trace;
};

/// Templates of WMO code table 4.0 that are decoded.
constexpr Template TEMPLATES[] = {
    {0, Kind::plain, 0, 0, "4.0: Analysis or forecast on horizontal level at a fixed time\n"},
    {1, Kind::member, 0, 0, "4.1: Individual ensemble member, horizontal level, fixed time\n"},
    {2, Kind::derived, 0, 0, "4.2: Derived forecast based on all ensemble members, horizontal level, fixed time\n"},
    {5, Kind::probability, 0, 0, "4.5: Probability forecast, horizontal level, fixed time\n"},
    {8, Kind::plain, 47, 50, "4.8: Average, accumulation or extreme value on horizontal level at a fixed time\n"},
    {9, Kind::probability, 60, 63, "4.9: Probability forecast, horizontal level/layer, time range\n"},
    {11, Kind::member, 50, 53, "4.11: Individual ensemble member, horizontal level, time range\n"},
    {12, Kind::derived, 49, 52, "4.12: Derived forecast based on all ensemble members, horizontal level, time range\n"},
    {50008, Kind::local, 0, 0, "JMA local sect 50008\n"},
};

/// A code that is beyond an int wraps, as nothing of it has a meaning then.
int as_int(std::int64_t value) { return static_cast<int>(value); }

int whole(double value) { return grib_to_int(value); }

/// Two bounds as a layer's code.
int layer(std::int64_t top, std::int64_t bottom) { return as_int(top * 1000 + bottom); }

/// The surfaces of a field, in the units of WMO code table 4.5.
struct Surfaces {
    int type1;
    int type2;
    double level1;
    double level2;
};

struct Level {
    int ltype;
    int level;
};

/// Level of a field at one time, and of probabilities over an interval.
Level instant_level(const Surfaces& s) {
    const double a = s.level1;
    const double b = s.level2;
    const bool single = s.type2 == 255;
    const int hundreds = layer(whole(a) / 100, whole(b) / 100);
    const int hundredths = layer(whole(100 * a + 0.01), whole(100 * b + 0.01));
    switch (s.type1) {
        case 100:
            if (single) return {100, whole(a / 100)};
            return {101, layer(whole(a / 1000), whole(b / 1000))};
        case 101:
            return {102, 0};
        case 102:
            return single ? Level{103, whole(a)} : Level{104, hundreds};
        case 103:
            return single ? Level{105, a == FMISS ? MISS : whole(a + 0.5)} : Level{106, hundreds};
        case 104:
            return single ? Level{107, whole(10000 * a + 0.01)} : Level{108, hundredths};
        case 105:
            return {109, whole(a)};
        case 106:
            return single ? Level{111, whole(100 * a + 0.01)} : Level{112, hundredths};
        case 107:
            return {single ? 113 : 114, whole(a)};
        case 108:
            if (single) return {115, whole(a / 100)};
            return {116, layer(whole(a / 100), whole(b / 100))};
        case 109:
            return {117, whole(1000000 * a + (a > 0 ? 0.01 : -0.01))};
        case 111:
            return {single ? 119 : 120, whole(a)};
        default:
            return {s.type1, whole(a)};
    }
}

/// Level of a field over an interval, where it differs.
Level interval_level(const Surfaces& s) {
    const double a = s.level1;
    const double b = s.level2;
    const bool single = s.type2 == 255;
    switch (s.type1) {
        case 103:
            if (single) return {105, whole(a)};
            return instant_level(s);
        case 104:
            if (single) return {107, whole(a / 100)};
            return {108, layer(whole(a), whole(b))};
        case 106:
            return {single ? 111 : 112, whole(a)};
        case 108:
            if (single) return {115, whole(100 * a)};
            return {116, layer(whole(100 * a), whole(100 * b))};
        case 109:
            return {130, whole(1000000 * a + 0.0005)};
        case 111:
            return {single ? 117 : 118, whole(a)};
        default:
            return instant_level(s);
    }
}

double surface_value(const Octets& section, int number, int scale) {
    if (section.u16(number) == 0xFFFF || scale == -127) return FMISS;
    const double value = section.s32(number);
    return scale == 0 ? value : value * std::pow(10.0, -scale);
}

/// True for a surface of WMO code table 4.5 that has no value by nature: ground, tropopause, cloud layers and the like.
bool is_valueless(int type) { return type < 20 || type == 101 || (type >= 162 && type <= 167) || type >= 200; }

void decode_level(const Octets& section, bool interval, GRD_report* grd) {
    const int scale = section.u8(24) > 128 ? 128 - section.u8(24) : section.u8(24);
    const Surfaces surfaces{section.u8(23), section.u8(29), surface_value(section, 25, scale),
                            surface_value(section, 31, scale)};
    const Level level = interval ? interval_level(surfaces) : instant_level(surfaces);
    grd->ltype = level.ltype;
    grd->level = level.level;
    if (surfaces.level1 == FMISS) grd->level = is_valueless(surfaces.type1) ? 0 : MISS;
    MESS_print(MESS_DEBUG, "Scale: %d\n", scale);
    MESS_print(MESS_DEBUG, "LEV %d %d %f %f\n", surfaces.type1, surfaces.type2, surfaces.level1, surfaces.level2);
}

/// Time from the reference time to the end of the whole interval; `octet` is the first of that date.
GribSpan span_to_end(const Octets& section, int octet) {
    Date start = grib_state().date;
    Date end;
    end.year = section.u16(octet);
    end.month = section.u8(octet + 2);
    end.day = section.u8(octet + 3);
    end.hour = section.u8(octet + 4);
    end.min = section.u8(octet + 5);
    end.sec = section.u8(octet + 6);
    start.sec = 0;
    const bool known = end.month >= 1 && end.month <= 12;  // asked before the count of seconds makes the date valid
    return {DATE_num_sec(&end) - DATE_num_sec(&start), false, false, known};
}

/// The interval's end: its begin and length, or its date where the length is missing, one of several, or can't be true.
GribSpan interval_end(const Octets& section, const Template& product, const GribSpan& begin) {
    constexpr std::int64_t MISSING = 0xFFFFFFFF;
    constexpr int DATE_BEFORE = 12;  // octets from the date of the end to the process
    constexpr int COUNT_BEFORE = 5;  // to the number of intervals
    constexpr int LONGEST_IN_OCTET = 251;
    const int unit = section.u8(product.length - 1);
    const std::int64_t length = section.u32(product.length);
    const bool unlikely =
        product.code == 8 && section.u8(product.process) == 255 && section.u8(18) == 1 && length >= LONGEST_IN_OCTET;
    const bool several = section.u8(product.process - COUNT_BEFORE) > 1;
    if (length == MISSING || unlikely || several) {
        const GribSpan end = span_to_end(section, product.process - DATE_BEFORE);
        if (end.known) return end;
    }
    return grib_sum(begin, grib_span_edition2(unit, length));
}

void decode_interval(const Octets& section, const Template& product, GRD_report* grd) {
    const GribSpan begin = grib_span_edition2(section.u8(18), section.s32(19));
    const GribSpan end = interval_end(section, product, begin);
    const int process = section.u8(product.process);
    static constexpr std::array<int, 5> KINDS{3, 4, 6, 7, 5};
    const bool known = process < static_cast<int>(KINDS.size());
    grd->time = MISS;
    if (known || product.code == 8) {
        constexpr int RANGE = 2;
        grd->time = grib_time(known ? KINDS[static_cast<std::size_t>(process)] : RANGE, begin, end);
    }
    MESS_print(MESS_DEBUG, "TIM %d %d %d\n", grd->time, as_int(begin.amount), as_int(end.amount));
}

/// Limit of a probability; `scale` is the octet of its scale factor, the value follows it.
float limit(const Octets& section, int scale) {
    if (section.u16(scale + 1) == 0xFFFF) return FMISS;
    return static_cast<float>(section.u32(scale + 1) * std::pow(10.0, -section.s8(scale)));
}

void decode_probability(const Octets& section, int code, GRD_report* grd) {
    GribEnsemble& ens = grib_state().ens;
    ens.type = 5;
    const int process = section.u8(12);
    const int kind = section.u8(37);
    if (process == 2 || process == 4 || process == 5) {
        if (kind <= 2) ens.prob_type = kind + (code == 9 && process != 4 ? 4 : 1);
        if (code == 9 && process == 2 && (kind == 3 || kind == 4)) ens.prob_type = kind + 4;
    }
    ens.prob_var = grd->var;
    grd->var = 191;
    ens.prob_low = limit(section, 38);
    ens.prob_up = limit(section, 43);
}

void decode_kind(const Octets& section, const Template& product, GRD_report* grd) {
    GribEnsemble& ens = grib_state().ens;
    if (product.kind == Kind::plain || product.kind == Kind::local) return;
    ens.ens = 1;
    const int octet = section.u8(35);
    switch (product.kind) {
        case Kind::member:
            ens.type = octet <= 1 ? 1 : octet <= 3 ? octet : 0;
            ens.id = section.u8(36);
            ens.prod = 1;
            break;
        case Kind::derived:
            ens.prod = octet == 1 ? 2 : octet == 2 ? 11 : 0;
            if (product.code == 2) ens.type = 5;
            break;
        default:
            decode_probability(section, product.code, grd);
            break;
    }
}

void decode_product(const Octets& section, const Template& product, GRD_report* grd) {
    MESS_print(MESS_DEBUG, "%s", product.trace);
    const GribParam param = GRIB_get_ver2_param(grd->source, grib_state().discipline, section.u8(10), section.u8(11));
    grd->var = param.ind;
    grd->units = fit_text(param.units, GRD_UNITS_SIZE);
    if (product.kind == Kind::local) {
        grd->ltype = 1;
        grd->level = 0;
        grd->time = 0;
        return;
    }
    grd->model = section.u8(14);
    decode_kind(section, product, grd);
    if (product.process == 0) {
        const int unit = section.u8(18);
        grd->time = grib_time(0, grib_span_edition2(unit, 0), grib_span_edition2(unit, section.s32(19)));
    } else {
        decode_interval(section, product, grd);
    }
    decode_level(section, product.process != 0 && product.code != 9, grd);
}

}  // namespace

int GRIB_PDS(int grd_fd, GRD_report* grd) {
    if (!grib_read_section_body(grd_fd)) return 0;
    GribState& state = grib_state();
    const Octets section(state.section.data(), state.section.size(), 6);
    grd->version = state.version;
    grd->source = state.source;
    grd->date = state.date;
    state.ens = GribEnsemble{};
    for (const Template& product : TEMPLATES) {
        if (product.code == section.u16(8)) decode_product(section, product, grd);
    }
    MESS_print(MESS_DEBUG, "Source: %d\n", grd->source);
    MESS_print(MESS_DEBUG, "Model: %d\n", grd->model);
    MESS_print(MESS_DEBUG, "Init time: %d/%d/%d %2.2d:%2.2d\n", grd->date.year, grd->date.month, grd->date.day,
               grd->date.hour, grd->date.min);
    MESS_print(MESS_DEBUG, "Grid type: %d\n", grd->type);
    MESS_print(MESS_DEBUG, "Grid time: %d\n", grd->time);
    MESS_print(MESS_DEBUG, "Level type: %d\n", grd->ltype);
    MESS_print(MESS_DEBUG, "Level: %d\n", grd->level);
    MESS_print(MESS_DEBUG, "Variable: %d %s\n", grd->var, grd->units.c_str());
    GRIB_set_var(grd);
    DATE_make_label_for_time(grd->time, grd->source * 1000 + grd->model, &grd->date, grd->datim);
    grd->datim = fit_text(grd->datim, GRD_DATIM_SIZE);
    return 1;
}

}  // namespace zav
