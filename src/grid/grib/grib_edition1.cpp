#include <algorithm>
#include <cmath>
#include <cstdint>

#include "frame/mess.h"
#include "frame/string.h"
#include "frame/zav.h"
#include "grid/grib/grib.h"
#include "grid/grib/grib_ecmwf.h"
#include "grid/grib/grib_state.h"
#include "grid/grib/grib_time.h"
#include "grid/zavgrd.h"

namespace zav {
namespace {

constexpr std::size_t MAX_PDB = 450;  ///< octets of a product block that are looked at
constexpr int US_CENTRE = 7;
constexpr int ENSEMBLE_SUBCENTRE = 2;

/// A full year of a two-digit one.
int full_year(int year) {
    if (year < 50) year += 2000;
    if (year < 200) year += 1900;
    return year;
}

/// Time codes by the time range indicator, octet 21. Indicators that aren't here leave the time missing.
void decode_time(const Octets& block, GRD_report* grd) {
    const int unit = block.u8(18);
    const GribSpan start = grib_span_edition1(unit, 0);
    const GribSpan p1 = grib_span_edition1(unit, block.u8(19));
    const GribSpan p2 = grib_span_edition1(unit, block.u8(20));
    const GribSpan averaged = grib_span_edition1(unit, std::int64_t{block.u16(22)} * block.u8(20));
    const int indicator = block.u8(21);
    grd->time = MISS;
    switch (indicator) {
        case 0:
            grd->time = grib_time(0, start, p1);
            break;
        case 1:
            grd->time = 0;
            break;
        case 2:
        case 3:
        case 4:
        case 5:
            grd->time = grib_time(indicator, p1, p2);
            break;
        case 10:
            grd->time = grib_time(0, start, grib_span_edition1(unit, block.u16(19)));
            break;
        case 113:
        case 118:
            grd->time = grib_time(indicator - 100, p1, averaged);
            break;
        case 123:
            grd->time = grib_time(indicator - 100, start, averaged);
            break;
        default:
            break;
    }
}

/// True for a level type that has no value by nature: surface, tropopause, cloud layers and the like.
bool is_valueless(int ltype) { return ltype <= 10 || ltype >= 200; }

void decode_level(const Octets& block, GRD_report* grd) {
    grd->ltype = block.u8(10);
    switch (grd->ltype) {
        case 1:
        case 4:
        case 6:
        case 7:
        case 102:
        case 200:
            grd->level = 0;
            break;
        case 5:
        case 100:
        case 103:
        case 105:
        case 107:
        case 111:
        case 113:
        case 117:
        case 119:
            grd->level = block.u16(11);
            break;
        case 101:
        case 104:
        case 106:
        case 108:
        case 109:
        case 112:
        case 114:
        case 116:
        case 120:
            grd->level = block.u8(11) * 1000 + block.u8(12);
            break;
        default:
            grd->level = is_valueless(grd->ltype) ? 0 : MISS;
            break;
    }
}

/// The parameter by its table. A local table has numbers of its own, so that no other table names its parameters.
void decode_variable(const Octets& block, GRD_report* grd) {
    constexpr int US_TABLE = 129;
    constexpr int REFLECTIVITY = 212;
    const int table = block.u8(4);
    const int param = block.u8(9);
    const bool ecmwf = grd->source == GRIB_ECMWF && table == GRIB_ECMWF_TABLE;
    grib_state().table = table;
    if (table == US_TABLE && param == REFLECTIVITY && grd->source != GRIB_ECMWF) {
        grd->var = 491;
    } else if (grd->version == 1 && table >= GRIB_FIRST_LOCAL_TABLE && !ecmwf) {
        grd->var = table * GRIB_TABLE + param;
    } else {
        grd->var = param == 177 && grd->source != GRIB_ECMWF ? 571 : param;
    }
}

float ibm_float(const Octets& block, int number) {
    const unsigned char* bytes = block.bytes(number, 4);
    return bytes ? GRIB_flt_conv(bytes) : 0.0F;
}

/// The US centre's description of an ensemble field behind the standard's octets.
void decode_ensemble(const Octets& block, GRD_report* grd) {
    GribEnsemble& ens = grib_state().ens;
    ens = GribEnsemble{};
    if (grd->source != US_CENTRE || block.u8(26) != ENSEMBLE_SUBCENTRE) return;
    ens.ens = 1;
    ens.type = block.u8(42);
    ens.id = block.u8(43);
    ens.prod = block.u8(44);
    ens.smooth = block.u8(45);
    MESS_print(MESS_DEBUG, "Ens: %d %d %d %d\n", ens.type, ens.id, ens.prod, ens.smooth);
    if (grd->var != 191 && grd->var != 192) return;
    ens.prob_var = block.u8(46);
    ens.prob_type = block.u8(47);
    ens.prob_low = ibm_float(block, 48);
    ens.prob_up = ibm_float(block, 52);
    MESS_print(MESS_DEBUG, "%d %d %f %f\n", ens.prob_var, ens.prob_type, static_cast<double>(ens.prob_low),
               static_cast<double>(ens.prob_up));
    const int var = grd->var;
    grd->var = ens.prob_var;
    GRIB_units(grd);
    grd->var = var;
}

/// The grid that the block's grid number names, for a message without a grid description.
void default_grid(GRD_report* grd) {
    GribState& state = grib_state();
    DOM_init(&grd->domain);
    state.ydir = 1;
    state.xalt = 0;
    state.pole = 0;
    state.thin = 0;
    state.rows.clear();
    state.lat = FMISS;
    GRIB_set_domain(grd->type, &grd->domain);
    const int type = grd->type;
    state.pole = (type >= 21 && type <= 26) || (type >= 61 && type <= 64) ? 1 : 0;
    if (type == 21 || type == 22 || type == 25 || type == 61 || type == 62) state.lat = 0.0F;
    if (type == 23 || type == 24 || type == 26 || type == 63 || type == 64) state.lat = -90.0F;
}

}  // namespace

Octets grib_product() {
    const GribState& state = grib_state();
    return {state.head.data() + state.pdb_start, state.pdb_len, 1};
}

int GRIB_PDB(int grd_fd, GRD_report* grd, int /*rep_type*/) {
    std::FILE* stream = grib_stream(grd_fd);
    if (!stream || !grd) return -1;
    GribState& state = grib_state();
    if (!grib_read_head(stream, 28)) return -1;
    state.version = state.head[7];
    state.pdb_start = state.version == 1 ? 8 : 4;
    const long length = Octets(state.head.data() + state.pdb_start, 20, 1).u16(2);
    state.pdb_len = std::min(static_cast<std::size_t>(length), MAX_PDB);
    if (!grib_read_head(stream, static_cast<std::size_t>(state.pdb_start) + state.pdb_len)) return -1;
    const long behind = std::max(length, 28L - state.pdb_start) + state.pdb_start + state.message_pos;
    if (std::fseek(stream, behind, SEEK_SET) != 0) return -1;
    GRIB_decode_PDB(state.head.data() + state.pdb_start - 1, static_cast<long>(state.pdb_len) + 1, grd);
    GRIB_set_var(grd);
    DATE_make_label_for_time(grd->time, grd->source * 1000 + grd->model, &grd->date, grd->datim);
    grd->datim = fit_text(grd->datim, GRD_DATIM_SIZE);
    return 1;
}

int GRIB_decode_PDB(const unsigned char* data, long size, GRD_report* grd) {
    GribState& state = grib_state();
    const Octets block(data + 1, size > 1 ? static_cast<std::size_t>(size - 1) : 0, 1);
    grd->source = block.u8(5);
    grd->model = block.u8(6);
    grd->type = block.u8(7);
    state.grid_id = grd->type;
    grd->version = state.version;
    DATE_init(&grd->date);
    grd->date.year = full_year(block.u8(13));
    grd->date.month = block.u8(14);
    grd->date.day = block.u8(15);
    grd->date.hour = block.u8(16);
    grd->date.min = block.u8(17);
    decode_time(block, grd);
    decode_level(block, grd);
    decode_variable(block, grd);
    GRIB_units(grd);
    if (grd->ltype == 1 && grd->model == 44 && grd->var == 7 && grd->version == 1) grd->var = 161;
    state.dscale = 1.0F;
    decode_ensemble(block, grd);
    if (grd->version == 1) state.dscale = grib_decimal(block.s16(27));
    default_grid(grd);
    MESS_print(MESS_DEBUG, "Source: %d\n", grd->source);
    MESS_print(MESS_DEBUG, "Model: %d\n", grd->model);
    MESS_print(MESS_DEBUG, "Init time: %d/%d/%d %2.2d:%2.2d\n", grd->date.year, grd->date.month, grd->date.day,
               grd->date.hour, grd->date.min);
    MESS_print(MESS_DEBUG, "Grid type: %d\n", grd->type);
    MESS_print(MESS_DEBUG, "Grid time: %d\n", grd->time);
    MESS_print(MESS_DEBUG, "Level type: %d\n", grd->ltype);
    return 1;
}

}  // namespace zav
