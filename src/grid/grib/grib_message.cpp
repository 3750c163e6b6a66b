#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>

#include "frame/mess.h"
#include "frame/string.h"
#include "grid/grd_read.h"
#include "grid/grib/grib.h"
#include "grid/grib/grib_state.h"

namespace zav {
namespace {

constexpr long MAX_OLD_SIZE = 2000000;  ///< longest edition 1 message that is expected; longer ones need an end mark
constexpr int HEADER_FIELD = 31;        ///< size of the bulletin header's field
constexpr long KEYWORD_SIZE = 4;        ///< bytes of "GRIB"
constexpr long END_MARK = 4;            ///< bytes of "7777"

bool keyword_is(const char* word) { return std::memcmp(grib_state().head.data(), word, 4) == 0; }

/// Passes over all bytes but `a` and `b`. False at the end of the file.
bool skip_to(std::FILE* file, int a, int b) {
    for (;;) {
        const int c = std::getc(file);
        if (c == EOF) return false;
        if (c == a || c == b) return std::ungetc(c, file) != EOF;
    }
}

/// Reads what follows a keyword: 4 bytes, and 8 more in edition 2. False for an edition that isn't known.
bool read_indicator(std::FILE* file) {
    GribState& state = grib_state();
    grib_read_head(file, 8);
    const int edition = state.head[7];
    if (keyword_is("BUFR")) {
        state.version = 1;
        return true;
    }
    if (keyword_is("GRID")) return true;
    if (edition > 2) return false;
    state.version = edition;
    if (edition == 2) {
        grib_read_head(file, 16);
        state.discipline = state.head[6];
    }
    return true;
}

/// Where the next message is looked for behind one without a length, or whose length isn't borne out: at the next
/// keyword of a known edition or, with `by_mark`, at the header or keyword behind a run of "7". -1 without one.
long scan_for_end(std::FILE* file, bool by_mark) {
    constexpr std::uint64_t KEYWORD = 0x47524942;  // "GRIB"
    std::uint64_t last = 0;                        // the last eight bytes
    for (int c = getc_unlocked(file); c != EOF; c = getc_unlocked(file)) {
        last = last << 8 | static_cast<unsigned>(c);
        if (last >> 32 == KEYWORD && (last & 0xFF) <= 2) return std::ftell(file) - 8;
        if (by_mark && (last & 0xFFFFFF) == 0x373737) break;
    }
    for (int c = getc_unlocked(file); c != EOF; c = getc_unlocked(file)) {
        if (c == '*' || c == '\x03') return std::ftell(file);
        if (c == 'G' || c == 'B') return std::ftell(file) - 1;
    }
    return -1;
}

/// True if a message that ends at `end` has its end mark there.
bool has_end_mark(std::FILE* file, long end) {
    std::array<char, END_MARK> mark{};
    return std::fseek(file, end - END_MARK, SEEK_SET) == 0 &&
           std::fread(mark.data(), 1, mark.size(), file) == mark.size() && std::memcmp(mark.data(), "7777", 4) == 0;
}

/// Tells, once for each message, that it doesn't end where its length says.
void complain_of_length(long size) {
    GribState& state = grib_state();
    if (state.message_pos <= state.complained) return;
    state.complained = state.message_pos;
    if (state.version == 1 && size > MAX_OLD_SIZE) {
        MESS_print(MESS_WARN, "Invalid product size: %d\n", static_cast<int>(size));
    } else {
        MESS_print(MESS_WARN, "GRIB message at byte %ld doesn't end with 7777 after %ld bytes\n", state.message_pos,
                   size);
    }
}

/// Bytes between a message and the next one's header.
long gap(int style, int edition) {
    if (style == GRIB_STYLE_LDM) return 4;
    return style != GRIB_STYLE_OWN ? 0 : edition == 2 ? 4 : 1;
}

/// Position behind a message with a length, the next one's if that isn't borne out. -1 without one.
long behind_sized(std::FILE* file, int style) {
    GribState& state = grib_state();
    const Octets head(state.head.data(), state.head.size(), 0);
    state.grid_size = state.version == 2 ? static_cast<long>(head.u32(12)) : head.u24(4);
    const long end = state.message_pos + state.grid_size;
    if (state.grid_size > KEYWORD_SIZE + END_MARK && has_end_mark(file, end)) return end + gap(style, state.version);
    complain_of_length(state.grid_size);
    if (std::fseek(file, state.message_pos + KEYWORD_SIZE, SEEK_SET) != 0) return -1;
    return scan_for_end(file, false);
}

void keep_header(const char* text) { grib_state().wmo_header = fit_text(text, HEADER_FIELD); }

int try_style(int grd_fd, int style, long old_pos) {
    switch (style) {
        case GRIB_STYLE_OWN:
            return GRIB_header_zav(grd_fd);
        case GRIB_STYLE_LDM:
            return GRIB_header_ldm(grd_fd, old_pos);
        case GRIB_STYLE_OLD_OWN:
            return GRIB_header_old_zav(grd_fd);
        default:
            return GRIB_header_raw(grd_fd, old_pos);
    }
}

}  // namespace

std::FILE* grib_stream(int grd_fd) {
    const GRD_file* file = GRD_get_gfile(grd_fd);
    return file ? file->file.get() : nullptr;
}

bool grib_read_head(std::FILE* file, std::size_t size) {
    GribState& state = grib_state();
    size = std::min(size, state.head.size());
    if (state.head_len >= size) return true;
    state.head_len += std::fread(state.head.data() + state.head_len, 1, size - state.head_len, file);
    return state.head_len >= size;
}

int GRIB_header(int grd_fd) {
    GRD_file* file = GRD_get_gfile(grd_fd);
    std::FILE* stream = grib_stream(grd_fd);
    if (!stream) return -1;
    GribState& state = grib_state();
    state.head.fill(0);
    state.head_len = 0;
    const long old_pos = std::ftell(stream);
    if (old_pos < 0) return -1;
    if (state.prev_style != 0) {
        file->itype = state.prev_style;
        state.prev_style = 0;
    }
    if (file->itype >= GRIB_STYLE_OWN && file->itype <= GRIB_STYLE_RAW) {
        const int style = file->itype;
        const int result = try_style(grd_fd, style, old_pos);
        if (result != 0) return result;
        file->itype = GRIB_STYLE_UNKNOWN;
        if (style != GRIB_STYLE_RAW) state.prev_style = style;
    }
    for (const int style : {GRIB_STYLE_OWN, GRIB_STYLE_LDM, GRIB_STYLE_RAW, GRIB_STYLE_OLD_OWN}) {
        const int result = try_style(grd_fd, style, old_pos);
        if (result != 0) return result;
    }
    return 0;
}

int GRIB_header_zav(int grd_fd) {
    GRD_file* file = GRD_get_gfile(grd_fd);
    std::FILE* stream = grib_stream(grd_fd);
    if (!stream) return -1;
    char header[HEADER_FIELD] = "";
    int found = std::fscanf(stream, "%*[\r\n\x03]** %30[^\n]\n", header);
    if (found == 0) found = std::fscanf(stream, "** %30[^\n]\n", header);
    if (found < 0) return -1;
    if (found == 0) return 0;
    std::string text = header;
    text.resize(text.size() > 3 ? text.size() - 3 : 0);
    keep_header(text.c_str());
    GRIB_search(grd_fd);
    file->itype = GRIB_STYLE_OWN;
    return 1;
}

int GRIB_header_ldm(int grd_fd, long old_pos) {
    GRD_file* file = GRD_get_gfile(grd_fd);
    std::FILE* stream = grib_stream(grd_fd);
    if (!stream || std::ftell(stream) != old_pos) return 0;
    char header[HEADER_FIELD] = "";
    int found = std::fscanf(stream, "\x01\r\r\n%*d\r\r\n%30[^\r\n]\r\r\n", header);
    if (found < 1 && std::ftell(stream) == old_pos) {
        found = std::fscanf(stream, "\n\x03\x01\r\r\n%*d\r\r\n%30[^\r\n]\r\r\n", header);
    }
    if (found < 1) return 0;
    keep_header(header);
    GRIB_search(grd_fd);
    file->itype = GRIB_STYLE_LDM;
    return 1;
}

int GRIB_header_old_zav(int grd_fd) {
    GRD_file* file = GRD_get_gfile(grd_fd);
    std::FILE* stream = grib_stream(grd_fd);
    if (!stream) return -1;
    long size = 0;
    const int found = std::fscanf(stream, "GRIB: %18ld\n", &size);
    if (found < 0) return -1;
    if (found == 0) return 0;
    GribState& state = grib_state();
    state.grid_size = size + std::ftell(stream);
    char header[HEADER_FIELD] = "";
    if (std::fscanf(stream, "\x01\r\r\n%*[^\n]\n%30[^\r\n]\r\r\n", header) > 0) keep_header(header);
    file->itype = GRIB_STYLE_OLD_OWN;
    GRIB_search(grd_fd);
    return 1;
}

int GRIB_header_raw(int grd_fd, long old_pos) {
    GRD_file* file = GRD_get_gfile(grd_fd);
    std::FILE* stream = grib_stream(grd_fd);
    if (!stream) return 0;
    GribState& state = grib_state();
    file->itype = GRIB_STYLE_RAW;
    keep_header("GRIB01 KXXX 010000");
    // A failed try of the old style takes the keyword itself before it finds no colon behind it.
    if (std::ftell(stream) == old_pos + 4 && std::fseek(stream, old_pos, SEEK_SET) == 0 && grib_read_head(stream, 4) &&
        keyword_is("GRIB")) {
        state.message_pos = old_pos;
        if (read_indicator(stream)) return 1;
    }
    return GRIB_search(grd_fd) < 1 ? 0 : 1;
}

int GRIB_search(int grd_fd) {
    std::FILE* stream = grib_stream(grd_fd);
    if (!stream) return -1;
    GribState& state = grib_state();
    for (;;) {
        state.head.fill(0);
        state.head_len = 0;
        if (!skip_to(stream, 'G', 'B')) return -1;
        state.message_pos = std::ftell(stream);
        if (!grib_read_head(stream, 4)) return -1;
        if ((keyword_is("GRIB") || keyword_is("GRID") || keyword_is("BUFR")) && read_indicator(stream)) return 1;
    }
}

long GRIB_next(int grd_fd, int where) {
    GRD_file* file = GRD_get_gfile(grd_fd);
    std::FILE* stream = grib_stream(grd_fd);
    if (!stream) return -1;
    GribState& state = grib_state();
    const long here = std::ftell(stream);
    if (here < 0) return -1;
    const bool sized = (state.version == 2 && keyword_is("GRIB")) ||
                       (state.version == 1 && (keyword_is("GRIB") || keyword_is("BUFR")));
    long next = 0;
    if (file->itype == GRIB_STYLE_OLD_OWN && state.grid_size >= here && state.grid_size - here <= MAX_OLD_SIZE) {
        next = state.grid_size + 1;
    } else if (sized) {
        next = behind_sized(stream, file->itype);
    } else {
        next = scan_for_end(stream, true);
        state.version = 0;
    }
    if (std::fseek(stream, where && next > 0 ? next : here, SEEK_SET) != 0) return -1;
    return next;
}

int GRIB_get_version() { return grib_state().version; }

int GRIB_get_sect() { return grib_state().sect; }

long GRIB_get_slen() { return grib_state().slen; }

int GRIB_read_section(int grd_fd) {
    std::FILE* stream = grib_stream(grd_fd);
    if (!stream) return 0;
    GribState& state = grib_state();
    std::array<unsigned char, 5> bytes{};
    state.sect = 9;
    state.slen = 0;
    if (std::fread(bytes.data(), 1, 4, stream) < 4) return 0;
    if (bytes[0] == '7' && bytes[1] == '7') {
        state.sect = -1;
        return 0;
    }
    if (std::memcmp(bytes.data(), "GRIB", 4) == 0) {  // the end mark is missing, and this is the next message
        std::fseek(stream, -4, SEEK_CUR);
        return 0;
    }
    if (std::fread(bytes.data() + 4, 1, 1, stream) < 1) return 0;
    state.slen = static_cast<long>(Octets(bytes.data(), bytes.size(), 1).u32(1));
    state.sect_pos = std::ftell(stream);
    if (state.slen < 5) return 0;
    state.sect = bytes[4];
    MESS_print(MESS_DEBUG, "section: %d %d - %d\n", grd_fd, state.sect, static_cast<int>(state.slen));
    return state.sect < 9 ? 1 : 0;
}

void GRIB_skip_section(int grd_fd) {
    std::FILE* stream = grib_stream(grd_fd);
    if (!stream) return;
    const GribState& state = grib_state();
    MESS_print(MESS_DEBUG, "skip section: %d - %d\n", state.sect, static_cast<int>(state.slen));
    std::fseek(stream, state.sect_pos + state.slen - 5, SEEK_SET);
}

bool grib_read_bytes(std::FILE* file, std::size_t size, std::vector<unsigned char>& data) {
    constexpr std::size_t STEP = 1 << 20;
    data.clear();
    while (data.size() < size) {
        const std::size_t have = data.size();
        const std::size_t want = std::min(STEP, size - have);
        data.resize(have + want);
        const std::size_t got = std::fread(data.data() + have, 1, want, file);
        if (got < want) {
            data.resize(have + got);
            return false;
        }
    }
    return true;
}

int GRIB_get_info(int grd_fd, GRD_info* info) {
    GRD_file* file = GRD_get_gfile(grd_fd);
    std::FILE* stream = grib_stream(grd_fd);
    if (!stream || !info || !grib_read_head(stream, 48)) return -1;
    const GribState& state = grib_state();
    const unsigned char* head = state.head.data();
    const int edition = head[7];
    file->grid = edition;
    DATE_init(&info->date);
    Date& date = info->date;
    if (edition == 2) {
        const Octets section(head + 16, 32, 1);
        date.year = section.u16(13);
        date.month = section.u8(15);
        date.day = section.u8(16);
        date.hour = section.u8(17);
        date.min = section.u8(18);
    } else {
        const Octets block(head + (edition == 1 ? 8 : 4), 40, 1);
        date.year = block.u8(13);
        if (date.year < 50) date.year += 2000;
        if (date.year < 200) date.year += 1900;
        date.month = block.u8(14) > 12 ? 1 : block.u8(14);
        date.day = block.u8(15);
        date.hour = block.u8(16);
        date.min = 0;
        if (edition == 0 && block.u8(5) == 98) file->grid = 10;
    }
    DATE_make_label(&date, info->datim);
    info->datim = fit_text(info->datim, GRD_INFO_DATIM_SIZE);
    return 0;
}

void GRIB_get_WMO_header(int /*grd_fd*/, std::string& header) { header = grib_state().wmo_header.substr(0, 18); }

char GRIB_get_type(int /*grd_fd*/) { return static_cast<char>(grib_state().head[3]); }

long GRIB_get_raw(int grd_fd, long pos, std::vector<unsigned char>& data) {
    std::FILE* stream = grib_stream(grd_fd);
    if (!stream || std::fseek(stream, pos, SEEK_SET) != 0) return -1;
    if (GRIB_header(grd_fd) < 1) return -1;
    const GribState& state = grib_state();
    const long next = GRIB_next(grd_fd, 0);
    const long size = state.version == 1 || state.version == 2 ? state.grid_size : next - state.message_pos;
    if (next <= state.message_pos || size < 1 || size > MAX_OLD_SIZE) return -1;
    if (std::fseek(stream, state.message_pos, SEEK_SET) != 0) return -1;
    if (!grib_read_bytes(stream, static_cast<std::size_t>(size), data)) return -1;
    return static_cast<long>(data.size());
}

}  // namespace zav
