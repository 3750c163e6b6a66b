#include <cstdlib>

#include "frame/mess.h"
#include "frame/string.h"
#include "frame/tools.h"
#include "grid/grd_read.h"
#include "grid/grd_tool.h"
#include "grid/grib/grib.h"
#include "grid/grib/grib_state.h"
#include "var/var_tool.h"

namespace zav {
namespace {

constexpr int INDEX_LINE = 160;
constexpr int INDEX_TEXT = 129;  ///< size of a description in the index file
constexpr int EDITION1_SOURCE = 7;
constexpr int ECMWF = 98;

/// How far into the sections of an edition 2 field a read goes.
enum class Depth { walk, header, values };

/// The next GRIB message; other bulletins are passed over. 1, or -1 at the end of the file.
int next_message(int grd_fd) {
    GribState& state = grib_state();
    for (;;) {
        if (GRIB_header(grd_fd) < 1) return -1;
        const char kind = GRIB_get_type(grd_fd);
        if (kind == 'B') break;
        // BUFR has the length where edition 1 has it. A GRID text has none, and what follows it is searched.
        if (kind == 'R') {
            const long behind = std::ftell(grib_stream(grd_fd));
            if (GRIB_next(grd_fd, 1) < behind) std::fseek(grib_stream(grd_fd), behind, SEEK_SET);
        }
    }
    state.bitmap = GribBitmap{};
    state.packing = GribPacking{};
    DOM_init(&state.dv);
    return 1;
}

/// Deals with a section other than the data. Positive, or the result that ends the read.
int take_section(int grd_fd, GRD_report* grd, Depth depth) {
    GribState& state = grib_state();
    const bool product = depth != Depth::walk;
    switch (state.sect) {
        case 1:
            GRIB_IDS(grd_fd, grd);
            return 1;
        case 3:
            return GRIB_GDS(grd_fd, grd);
        case 4:
            if (product) GRIB_PDS(grd_fd, grd);
            return 1;
        case 5:
            if (product) GRIB_DRS(grd_fd, grd);
            return 1;
        case 6: {
            // A later field of the message may use this map, so its place is kept when it isn't read.
            std::FILE* stream = grib_stream(grd_fd);
            const int indicator = depth == Depth::values ? MISS : std::getc(stream);
            if (depth == Depth::values) {
                GRIB_BMS(grd_fd);
            } else if (indicator != 254) {
                state.bitmap = GribBitmap{};
                if (indicator != 255 && state.slen > 6) {
                    state.bitmap.pending = state.sect_pos + 1;
                    state.bitmap.pending_size = static_cast<std::size_t>(state.slen - 6);
                }
            }
            return 1;
        }
        default:
            return 1;
    }
}

/// Reads the sections of one edition 2 field; the file stands behind the indicator section or at a repeated section.
/// Notes in the state whether another field follows. 0, 1 without a field.
int read_field(int grd_fd, GRD_report* grd, Depth depth) {
    GribState& state = grib_state();
    GribPlace& place = state.place;
    std::FILE* stream = grib_stream(grd_fd);
    bool done = false;
    bool another = false;
    int result = 0;
    place.more = false;
    grd->domain = state.dv;  // a later field of the message has that of an earlier one
    grd->type = state.place.inside ? state.grid_id : 0;
    for (;;) {
        const long start = std::ftell(stream);
        another = GRIB_read_section(grd_fd) > 0;
        MESS_print(MESS_DEBUG, "SECT: %d %d\n", state.sect, static_cast<int>(state.slen));
        place.next = done ? start : std::ftell(stream);
        if (done || !another) break;
        if (state.sect == 7) {
            if (depth == Depth::values) GRIB_DS(grd_fd, grd);
            done = true;
        } else if (take_section(grd_fd, grd, depth) < 1 && depth != Depth::walk) {
            place.next = std::ftell(stream);
            place.walked = true;
            return 0;
        }
        GRIB_skip_section(grd_fd);
    }
    place.walked = true;
    if (!done) {
        MESS_print(MESS_WARN, "No product found\n");
        result = 1;
    } else if (state.sect == -1) {
        place.next = std::ftell(stream);
    } else {
        place.more = another && state.sect >= 1 && state.sect <= 7;
    }
    return result;
}

/// Learns what follows the record at the file's place without reading it. False at the end of the file.
bool walk_record(int grd_fd) {
    GribState& state = grib_state();
    std::FILE* stream = grib_stream(grd_fd);
    if (std::fseek(stream, state.place.pos, SEEK_SET) != 0) return false;
    if (!state.place.inside && next_message(grd_fd) < 1) return false;
    state.place.more = false;
    state.place.walked = true;
    if (state.version != 2) return true;
    GRD_report unused;
    return read_field(grd_fd, &unused, Depth::walk) == 0;
}

/// Moves on by one record. False at the end of the file.
bool step_record(int grd_fd, GRD_file* file) {
    GribState& state = grib_state();
    GribPlace& place = state.place;
    std::FILE* stream = grib_stream(grd_fd);
    if (!place.walked && !walk_record(grd_fd)) return false;
    if (place.more || place.inside) {
        place.pos = place.next;
    } else {
        if (std::fseek(stream, place.pos, SEEK_SET) != 0 || next_message(grd_fd) < 1) return false;
        const long next = GRIB_next(grd_fd, 1);
        if (next <= state.message_pos) return false;  // a length that would lead back
        place.pos = next;
    }
    place.inside = place.more;
    place.more = false;
    place.walked = false;
    place.num = ++file->num;
    return std::fseek(stream, place.pos, SEEK_SET) == 0;
}

/// Reads the next line of the index file. False at its end.
bool read_index(GRD_file* file) {
    std::string line;
    if (fgetnline(file->hfile.get(), line, INDEX_LINE) < 0) return false;
    GribPlace& place = grib_state().place;
    char* end = nullptr;
    const long offset = std::strtol(line.c_str(), &end, 10);
    if (end == line.c_str() || offset < 0) return false;
    while (*end == ' ' || *end == '\t') ++end;
    place.pos = offset;
    place.index_line = fit_text(end, INDEX_TEXT);
    place.inside = false;
    place.more = false;
    place.walked = false;
    return true;
}

/// Goes to record `wanted` by the index file. False if it doesn't hold it.
bool seek_index(GRD_file* file, int wanted) {
    if (wanted == 0 && file->num == 0) {
        std::rewind(file->hfile.get());
        read_index(file);
    }
    while (file->num < wanted) {
        // The first line belongs to record 0, which may not have been asked for.
        if (file->num == 0 && grib_state().place.index_line.empty() && !read_index(file)) return false;
        if (!read_index(file)) return false;
        grib_state().place.num = ++file->num;
    }
    return true;
}

/// The record as the index line tells it.
void record_from_index(GRD_file* file, GRD_report* grd, int rep_type) {
    GRD_free(grd);
    GRD_init(grd);
    grd->version = 1;
    grd->source = file->grid == 10 ? ECMWF : EDITION1_SOURCE;
    grd->date = file->date;
    grib_state().table = 0;
    GRD_decode_index(grib_state().place.index_line, grd);
    GRIB_units(grd);
    GRIB_set_domain(grd->type, &grd->domain);
    if (rep_type == GRD_READ_HEADER) return;
    grd->info = fit_text(VAR_make_datatype(grd->time, grd->ltype, grd->level, grd->var, grd->units), GRD_INFO_SIZE);
    DATE_make_label_for_time(grd->time, grd->source * 1000 + grd->model, &grd->date, grd->datim);
    grd->datim = fit_text(grd->datim, GRD_DATIM_SIZE);
}

/// Reads an edition 0 or 1 message behind its first bytes. 0 or -1.
int read_blocks(int grd_fd, GRD_report* grd, int rep_type) {
    int result = GRIB_PDB(grd_fd, grd, rep_type);
    if (result < 1) return result;
    result = GRIB_GDB(grd_fd, grd);
    if (result < 1 || rep_type != GRD_READ_ALL) return result < 0 ? -1 : 0;
    result = GRIB_BMB(grd_fd, grd);
    if (result > 0) result = GRIB_BDB(grd_fd, grd);
    return result < 0 ? -1 : 0;
}

/// Reads the record at the file's place.
int read_record(int grd_fd, GRD_report* grd, int rep_type) {
    GribState& state = grib_state();
    std::FILE* stream = grib_stream(grd_fd);
    if (std::fseek(stream, state.place.pos, SEEK_SET) != 0) return -1;
    if (!state.place.inside && next_message(grd_fd) < 1) {
        std::fseek(stream, state.place.pos, SEEK_SET);
        return -1;
    }
    grd->datim.clear();
    grd->info.clear();
    grd->ltype = grd->level = grd->time = grd->var = MISS;
    grd->grid.reset();
    int result = 0;
    if (state.version == 2) {
        result = read_field(grd_fd, grd, rep_type == GRD_READ_ALL ? Depth::values : Depth::header);
    } else {
        result = read_blocks(grd_fd, grd, rep_type);
        state.place.more = false;
        state.place.walked = true;
    }
    std::fseek(stream, state.place.pos, SEEK_SET);
    return result;
}

}  // namespace

void GRIB_reset() {
    GribState& state = grib_state();
    state.place = GribPlace{};
    state.prev_style = 0;
    state.bitmap = GribBitmap{};
}

int GRIB_getinfo(int grd_fd, GRD_info* info) {
    GRD_file* file = GRD_get_gfile(grd_fd);
    if (!file || !file->file || !info) return -1;
    GRIB_reset();
    info->grid_type = 0;
    if (next_message(grd_fd) < 1 || GRIB_get_info(grd_fd, info) < 0) return -1;
    file->date = info->date;
    GRD_rewind(grd_fd);
    GRIB_reset();
    return 0;
}

int GRIB_read(int grd_fd, GRD_report* grd, int rep_type, int* grdnum, long* cur_pos, long* new_pos) {
    GRD_file* file = GRD_get_gfile(grd_fd);
    std::FILE* stream = grib_stream(grd_fd);
    if (!stream || !grd || !grdnum) return -1;
    GribPlace& place = grib_state().place;
    const long here = std::ftell(stream);
    if (here < 0) return -1;
    const bool indexed = file->hfile != nullptr;
    const bool moved = place.stream != stream || place.num != file->num || (!indexed && here != place.pos);
    if (moved) {
        GRIB_reset();
        place.stream = stream;
        place.num = file->num;
        place.pos = here;
    }
    if (*grdnum < file->num) {
        GRD_rewind(grd_fd);
        GRIB_reset();
        file->num = 0;
        place.stream = stream;
        std::fseek(stream, 0, SEEK_SET);
        if (indexed) std::rewind(file->hfile.get());
    }
    if (indexed) {
        if (!seek_index(file, *grdnum)) return -1;
    } else {
        while (file->num < *grdnum) {
            if (step_record(grd_fd, file)) continue;
            std::fseek(stream, place.pos, SEEK_SET);
            return -1;
        }
    }
    int result = 0;
    if (indexed && rep_type != GRD_READ_ALL) {
        record_from_index(file, grd, rep_type);
    } else {
        result = read_record(grd_fd, grd, rep_type);
    }
    if (cur_pos) *cur_pos = place.pos;
    if (new_pos) *new_pos = place.more || place.inside ? place.next : -1;
    if (result >= 0) *grdnum = file->num;
    return result;
}

}  // namespace zav
