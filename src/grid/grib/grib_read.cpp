#include <cstdlib>
#include <new>

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

constexpr std::size_t INDEX_LINE = 160;  ///< longest line of the index file
constexpr int INDEX_TEXT = 129;          ///< size of a description in the index file
constexpr int EDITION1_SOURCE = 7;
constexpr int ECMWF = 98;

/// How far into the sections of an edition 2 field a read goes.
enum class Depth { walk, header, values };

/// Size of a file that stays where it stands.
long file_size(std::FILE* file) {
    const long here = std::ftell(file);
    std::fseek(file, 0, SEEK_END);
    const long size = std::ftell(file);
    std::fseek(file, here, SEEK_SET);
    return size;
}

/// Moves behind the keyword of the next GRIB message; other bulletins are passed over. False at the end of the file.
bool next_message(int grd_fd) {
    GribState& state = grib_state();
    for (;;) {
        if (GRIB_header(grd_fd) < 1) return false;
        const char kind = GRIB_get_type(grd_fd);
        if (kind == 'B') break;
        // BUFR has the length where edition 1 has it. A GRID text has none, and what follows it is searched.
        if (kind == 'R') GRIB_next(grd_fd, 1);
    }
    state.message_end = GRIB_next(grd_fd, 0);
    if (state.message_end < 0) state.message_end = file_size(grib_stream(grd_fd));
    state.bitmap = GribBitmap{};
    state.packing = GribPacking{};
    DOM_init(&state.dv);
    return true;
}

/// Moves to the first section of the record at the file's place. What follows its message counts as the next record
/// until a later field is found inside. False at the end of the file.
bool enter_record(int grd_fd) {
    GribState& state = grib_state();
    GribPlace& place = state.place;
    if (std::fseek(grib_stream(grd_fd), place.record.pos, SEEK_SET) != 0) return false;
    if (!place.record.inside && !next_message(grd_fd)) return false;
    place.next = GribStart{state.message_end, false};
    return true;
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
/// Notes in the place where another field follows. 0, 1 without a field.
int read_field(int grd_fd, GRD_report* grd, Depth depth) {
    GribState& state = grib_state();
    GribPlace& place = state.place;
    bool done = false;
    grd->domain = state.dv;  // a later field of the message has that of an earlier one
    grd->type = place.record.inside ? state.grid_id : 0;
    for (;;) {
        const long start = std::ftell(grib_stream(grd_fd));
        const bool found = start < state.message_end && GRIB_read_section(grd_fd) > 0;
        MESS_print(MESS_DEBUG, "SECT: %d %d\n", state.sect, static_cast<int>(state.slen));
        if (done) {
            if (found && state.sect >= 1 && state.sect <= 7) place.next = GribStart{start, true};
            return 0;
        }
        if (!found) break;
        if (state.sect == 7) {
            if (depth == Depth::values) GRIB_DS(grd_fd, grd);
            done = true;
        } else if (take_section(grd_fd, grd, depth) < 1 && depth != Depth::walk) {
            place.next.reset();  // later fields of the message may still be read
            return 0;
        }
        GRIB_skip_section(grd_fd);
    }
    MESS_print(MESS_WARN, "No product found\n");
    return 1;
}

/// Passes over a message in which there is no field: it is no record.
void pass_empty_message() {
    GribPlace& place = grib_state().place;
    place.record = *place.next;
    place.next.reset();
}

/// Learns where the record behind the one at the file's place starts. False at the end of the file.
bool find_next(int grd_fd) {
    GribState& state = grib_state();
    while (!state.place.next) {
        if (!enter_record(grd_fd)) return false;
        GRD_report unused;
        if (state.version == 2 && read_field(grd_fd, &unused, Depth::walk) != 0) pass_empty_message();
    }
    return true;
}

/// Moves on by one record. False at the end of the file.
bool step_record(int grd_fd, GRD_file* file) {
    GribPlace& place = grib_state().place;
    if (!find_next(grd_fd)) return false;
    place.record = *place.next;
    place.next.reset();
    place.num = ++file->num;
    return std::fseek(grib_stream(grd_fd), place.record.pos, SEEK_SET) == 0;
}

/// Reads the next line of the index file that holds an offset. Lines that don't, and ones that are too long to be read
/// whole, are told. False at the file's end.
bool read_index(GRD_file* file) {
    std::FILE* index = file->hfile.get();
    std::string line;
    while (fgetnline(index, line, INDEX_LINE + 1) >= 0) {
        if (line.size() > INDEX_LINE) {
            MESS_print(MESS_WARN, "GRIB index line is too long: %.40s...\n", line.c_str());
            fskiprest(index);
        }
        char* end = nullptr;
        const long offset = std::strtol(line.c_str(), &end, 10);
        if (end == line.c_str() || offset < 0) {
            if (!string_is_blank(line)) MESS_print(MESS_WARN, "GRIB index line has no offset: %.40s\n", line.c_str());
            continue;
        }
        while (*end == ' ' || *end == '\t') ++end;
        GribPlace& place = grib_state().place;
        place.record = GribStart{offset, false};
        place.next.reset();
        place.index_line = fit_text(end, INDEX_TEXT);
        return true;
    }
    return false;
}

/// Goes to record `wanted` by the index file. False if it doesn't hold it.
bool seek_index(GRD_file* file, int wanted) {
    if (file->num == 0) {  // the first line belongs to record 0, which may have been asked for or not
        std::rewind(file->hfile.get());
        read_index(file);
    }
    while (file->num < wanted) {
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

/// Reads the record that the file has entered. One for which there is no memory is told and has no values.
int read_entered(int grd_fd, GRD_report* grd, int rep_type) {
    GribState& state = grib_state();
    const Depth depth = rep_type == GRD_READ_HEADER ? Depth::header : Depth::values;
    try {
        return state.version == 2 ? read_field(grd_fd, grd, depth) : read_blocks(grd_fd, grd, rep_type);
    } catch (const std::bad_alloc&) {
        GRD_tell_no_memory(grd);
        state.packed = {};
        state.bitmap = GribBitmap{};
        state.place.next.reset();  // another field of the message may follow
        return 0;
    }
}

/// Reads the record at the file's place, and moves the file back to it.
int read_record(int grd_fd, GRD_report* grd, int rep_type) {
    int result = -1;
    if (enter_record(grd_fd)) {
        grd->datim.clear();
        grd->info.clear();
        grd->units.clear();
        grd->ltype = grd->level = grd->time = grd->var = MISS;
        grd->grid.reset();
        result = read_entered(grd_fd, grd, rep_type);
    }
    std::fseek(grib_stream(grd_fd), grib_state().place.record.pos, SEEK_SET);
    return result;
}

/// Starts afresh where the file stands if that isn't where the last read left it: another file, or one moved from
/// outside. False for a stream without positions.
bool take_up_place(const GRD_file* file) {
    GribPlace& place = grib_state().place;
    std::FILE* stream = file->file.get();
    const long here = std::ftell(stream);
    if (here < 0) return false;
    const bool indexed = file->hfile != nullptr;
    const bool same = place.stream == stream && place.num == file->num && (indexed || here == place.record.pos);
    if (same) return true;
    GRIB_reset();
    place.stream = stream;
    place.num = file->num;
    place.record.pos = here;
    return true;
}

/// Back to record 0.
void go_to_start(int grd_fd, GRD_file* file) {
    GRD_rewind(grd_fd);
    grib_state().place.stream = file->file.get();
}

/// Goes to record `wanted`, which doesn't lie behind the place. False if the file ends; it stays at its last record.
bool go_on_to(int grd_fd, GRD_file* file, int wanted) {
    if (file->hfile) return seek_index(file, wanted);
    while (file->num < wanted) {
        if (step_record(grd_fd, file)) continue;
        std::fseek(file->file.get(), grib_state().place.record.pos, SEEK_SET);
        return false;
    }
    return true;
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
    grib_state().complained = -1;
    info->grid_type = 0;
    if (!next_message(grd_fd) || GRIB_get_info(grd_fd, info) < 0) return -1;
    file->date = info->date;
    GRD_rewind(grd_fd);
    GRIB_reset();
    return 0;
}

int GRIB_read(int grd_fd, GRD_report* grd, int rep_type, int* grdnum, long* cur_pos, long* new_pos) {
    GRD_file* file = GRD_get_gfile(grd_fd);
    if (!file || !file->file || !grd || !grdnum || !take_up_place(file)) return -1;
    if (*grdnum < file->num) go_to_start(grd_fd, file);
    if (!go_on_to(grd_fd, file, *grdnum)) return -1;
    int result = 0;
    if (file->hfile && rep_type != GRD_READ_ALL) {
        record_from_index(file, grd, rep_type);
    } else {
        result = read_record(grd_fd, grd, rep_type);
        while (result == 1 && !file->hfile) {
            pass_empty_message();
            result = read_record(grd_fd, grd, rep_type);
        }
    }
    const GribPlace& place = grib_state().place;
    if (cur_pos) *cur_pos = place.record.pos;
    if (new_pos) *new_pos = place.next ? place.next->pos : -1;
    if (result >= 0) *grdnum = file->num;
    return result;
}

}  // namespace zav
