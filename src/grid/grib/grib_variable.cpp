#include <array>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <set>
#include <span>

#include "frame/mess.h"
#include "frame/string.h"
#include "frame/tools.h"
#include "frame/zav.h"
#include "grid/grib/grib.h"
#include "grid/grib/grib_ecmwf.h"
#include "grid/grib/grib_state.h"
#include "grid/zavgrd.h"
#include "var/var_tool.h"

namespace zav {
namespace {

constexpr int PROB = 191;       ///< probability from an ensemble
constexpr int PROB_NORM = 192;  ///< the same, normalised

/// Parameters of edition 0.
constexpr std::array<GribTranslation, 31> EDITION0_TABLE{{
    {1, 1, "hPa"},    {2, 7, "10 m"},      {3, 8, "10 m"},         {4, 11, "C"},         {5, 15, "C"},
    {6, 16, "C"},     {8, 13, "C"},        {10, 17, "C"},          {11, 18, "dC"},       {12, 51, ".1 g/kg"},
    {13, 52, "%"},    {14, 53, ".1 g/kg"}, {15, 131, "dC"},        {17, 132, "dC"},      {21, 32, "m/s"},
    {23, 33, "m/s"},  {24, 34, "m/s"},     {29, 35, "10^5 m^2/s"}, {30, 43, "10^-5 /s"}, {31, 41, "10^-5 /s"},
    {40, 38, "mb/s"}, {44, 136, "m/s/km"}, {47, 54, "mm"},         {48, 63, "mm"},       {50, 61, "mm"},
    {51, 66, "cm"},   {55, 62, "mm"},      {61, 80, ".1 C"},       {64, 100, ".5 m"},    {75, 107, "10 deg"},
    {76, 108, "s"},
}};

/// Units of a run of edition 1 variables.
struct UnitRange {
    int first;
    int last;
    const char* units;
};

constexpr UnitRange EDITION1_UNITS[] = {
    {1, 2, "Pa"},          {3, 3, "Pa/s"},         {6, 6, "m^2/s^2"},   {7, 9, "m"},
    {10, 10, "Dobson"},    {11, 17, "K"},          {18, 18, "dK"},      {19, 19, "K/m"},
    {20, 20, "m"},         {21, 21, "Dbz"},        {22, 23, ""},        {24, 25, "dK"},
    {26, 26, "Pa"},        {27, 27, "gpm"},        {28, 30, ""},        {31, 31, "deg"},
    {32, 34, "m/s"},       {35, 36, "m^2/s"},      {37, 37, "m^2/s^2"}, {38, 38, "/s"},
    {39, 39, "Pa/s"},      {40, 40, "m/s"},        {41, 46, "/s"},      {47, 47, "deg"},
    {48, 49, "m/s"},       {50, 51, "kg/kg"},      {52, 52, "%"},       {53, 53, "kg/kg"},
    {54, 54, "kg/m^2"},    {55, 56, "Pa"},         {57, 58, "kg/m^2"},  {59, 59, "kg/m^2/s"},
    {60, 60, "%"},         {61, 63, "kg/m^2"},     {65, 65, "kg/m^2"},  {66, 66, "m"},
    {71, 71, "%"},         {76, 76, "kg/kg"},      {77, 77, "kg/m^3"},  {80, 80, "K"},
    {81, 81, ""},          {83, 83, "m"},          {84, 84, "%"},       {85, 85, "K"},
    {86, 86, "kg/m^2"},    {90, 90, "kg/m^2"},     {91, 91, ""},        {100, 100, "m"},
    {107, 107, "deg"},     {108, 108, "s"},        {111, 114, "W/m^2"}, {121, 122, "W/m^2"},
    {124, 125, "N/m^2"},   {128, 130, "Pa"},       {131, 132, "dK"},    {133, 133, "K"},
    {134, 134, ""},        {135, 135, "kg/kg/s"},  {136, 136, "/s"},    {138, 138, "/s^2"},
    {139, 139, "/s/m"},    {140, 144, ""},         {145, 145, "W/m^2"}, {146, 146, "J/kg"},
    {147, 148, "N/m^2"},   {149, 149, "m^2/s/kg"}, {151, 151, "km/s"},  {153, 154, "kg/kg"},
    {155, 155, "W/m^2"},   {156, 158, "J/kg"},     {160, 168, "W/m^2"}, {172, 172, "N/m^2"},
    {190, 190, "m^2/s^2"}, {191, 192, ""},         {193, 195, "%"},     {196, 197, "m/s"},
    {201, 201, "%"},       {204, 205, "W/m^2"},    {207, 207, "%"},     {208, 208, "kg-m/m^2"},
    {209, 209, ""},        {211, 212, "W/m^2"},    {213, 213, "%"},     {214, 214, "kg/m^2/s"},
    {216, 216, "K/s"},     {221, 221, "m"},        {222, 222, "gpm"},   {223, 223, "kg/m^2"},
    {226, 227, "N/m^2"},   {230, 230, "gpm"},      {491, 491, "dBZ"},   {571, 571, "deg"},
};

/// Warns of a parameter without a variable, once for each.
void warn_unknown(int param) {
    static std::set<int> told;
    if (told.insert(param).second) MESS_print(MESS_WARN, "Invalid GRIB variable: %d\n", param);
}

/// Takes the variable and units of a parameter. One that isn't in the table keeps its number, above `others`.
void translate(std::span<const GribTranslation> table, int others, GRD_report* grd) {
    grd->units.clear();
    for (const GribTranslation& entry : table) {
        if (entry.param != grd->var) continue;
        grd->var = entry.var;
        grd->units = entry.units;
        if (entry.ltype != MISS) grd->ltype = entry.ltype;
        if (entry.level != MISS) grd->level = entry.level;
        return;
    }
    warn_unknown(grd->var);
    grd->var += others;
}

const char* edition1_units(int var) {
    for (const UnitRange& range : EDITION1_UNITS) {
        if (var >= range.first && var <= range.last) return range.units;
    }
    return "-";
}

/// Threshold of a probability as part of a variable code.
int threshold_code(const GribEnsemble& ens) {
    float threshold = 0.0F;
    switch (ens.prob_type) {
        case 1:
        case 3:
        case 4:
        case 6:
        case 7:
            threshold = ens.prob_low;
            break;
        case 2:
        case 5:
        case 8:
            threshold = ens.prob_up;
            break;
        default:
            return 0;
    }
    if (!std::isfinite(threshold)) return 0;
    const int code = float2int(threshold);
    return code < 0 ? 5000 - code : code;
}

std::string level_text(const GRD_report* grd) {
    std::string text = VAR_make_datalevel(grd->time, grd->ltype, grd->level);
    if (!text.empty()) text += ' ';
    return text;
}

std::string member_text(const GribEnsemble& ens) {
    static constexpr std::array<const char*, 6> MARK{nullptr, "", "-", "+", "c", "w"};
    if (ens.type < 1 || ens.type > 5) return "";
    return "Ens[" + std::string(MARK[static_cast<std::size_t>(ens.type)]) + std::to_string(ens.id) + "] ";
}

/// The bound of a probability.
std::string bound_text(const GribEnsemble& ens) {
    const double low = static_cast<double>(ens.prob_low);
    const double up = static_cast<double>(ens.prob_up);
    std::array<char, 120> text{};
    switch (ens.prob_type) {
        case 1:
        case 4:
            std::snprintf(text.data(), text.size(), " below %.2f", low);
            break;
        case 2:
        case 5:
            std::snprintf(text.data(), text.size(), " above %.2f", up);
            break;
        case 3:
        case 6:
            std::snprintf(text.data(), text.size(), " in %.2f-%.2f", low, up);
            break;
        case 7:
            std::snprintf(text.data(), text.size(), " above %.2f", low);
            break;
        case 8:
            std::snprintf(text.data(), text.size(), " below %.2f", up);
            break;
        default:
            break;
    }
    return text.data();
}

void set_probability(GRD_report* grd, const GribEnsemble& ens) {
    std::string text = level_text(grd);
    if (ens.prob_type < 4) {
        text += grd->var == PROB ? "Ens prob (%) " : "Ens norm prob (%) ";
    } else {
        text += "Prob (%) ";
    }
    text += VAR_str(ens.prob_var) + bound_text(ens);
    if (!grd->units.empty()) text.append(1, ' ').append(grd->units);
    grd->info = text;
    grd->units.assign(1, '%');
    // Composite numbers of edition 2 don't fit; the code then wraps as an int does.
    const std::int64_t code = static_cast<std::int64_t>(grd->var) * 10000000 +
                              static_cast<std::int64_t>(ens.prob_var) * 10000 + ens.prob_type * 1000 +
                              threshold_code(ens);
    grd->var = static_cast<int>(code);
}

}  // namespace

void GRIB_units(GRD_report* grd) {
    constexpr int FIRST_OWN = 129;  // from here on ECMWF's fields without a table are taken as those of its own
    const int table = grd->version == 1 ? grib_state().table : 0;
    const bool ecmwf = grd->source == GRIB_ECMWF;
    if (ecmwf && grd->var < GRIB_LOCAL && (table == GRIB_ECMWF_TABLE || grd->var >= FIRST_OWN)) {
        translate(GRIB_ECMWF_PARAMS, GRIB_ECMWF_TABLE * GRIB_TABLE, grd);
    } else if (grd->version == 0 && !ecmwf) {
        translate(EDITION0_TABLE, 0, grd);
    } else if (grd->version == 1) {
        grd->units = grd->var < GRIB_LOCAL ? edition1_units(grd->var % GRIB_TABLE) : "-";
    } else {
        grd->units.clear();
    }
}

void GRIB_set_var(GRD_report* grd) {
    const GribEnsemble& ens = grib_state().ens;
    const int product = ens.ens ? ens.prod : 0;
    if (product == 1) {
        grd->info = level_text(grd) + member_text(ens) + VAR_str(grd->var, grd->units);
        grd->var += (ens.type - 1) * 20000 + 19300000 + ens.id * 1000;
    } else if (product == 2) {
        grd->var += 19000000;
        grd->info = level_text(grd) + "Ens mean " + VAR_str(grd->var, grd->units);
    } else if (product == 11 || product == 12) {
        grd->var += 19001000;
        grd->info = level_text(grd) + "Ens std dev " + VAR_str(grd->var, grd->units);
    } else if (grd->var == PROB || grd->var == PROB_NORM) {
        set_probability(grd, ens);
    } else {
        grd->info = VAR_make_datatype(grd->time, grd->ltype, grd->level, grd->var, grd->units);
    }
    grd->info = fit_text(grd->info, GRD_INFO_SIZE);
}

}  // namespace zav
