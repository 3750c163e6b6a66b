// Grid files behind one interface: handles, recognition of the format, and the way to its reader.

#include "grid/grd_read.h"

#include <algorithm>
#include <array>
#include <string_view>

#include "files/files.h"
#include "frame/string.h"
#include "grid/grd_state.h"
#include "grid/grd_tool.h"
#include "grid/grib/grib.h"
#include "grid/netcdf/grd_cdf.h"

namespace zav {
namespace {

/// Bytes by which a file is recognised.
constexpr std::size_t TYPE_BYTES = 200;
constexpr std::size_t HEADER_BYTES = 160;
constexpr std::size_t FORMAT_SIZE = 15;

Grid_files state;

bool valid_handle(int grd_fd) { return grd_fd >= 0 && grd_fd < GRD_FILE_MAX; }

bool begins(std::string_view text, std::string_view key) { return text.substr(0, key.size()) == key; }

bool is_stream_type(int type) {
    constexpr std::array<int, 6> types = {GRD_TYPE_OLD,    GRD_TYPE_TEXT, GRD_TYPE_BINARY,
                                          GRD_TYPE_DOMAIN, GRD_TYPE_GRIB, GRD_TYPE_MESSAGE};
    return std::find(types.begin(), types.end(), type) != types.end();
}

bool is_native(int type) { return type >= GRD_TYPE_OLD && type <= GRD_TYPE_DOMAIN; }

bool has_file_line(int type) { return type >= GRD_TYPE_TEXT && type <= GRD_TYPE_DOMAIN; }

/// The type to open a file with, 0 if it can't be told.
int settle_type(const std::string& filename, int f_access, int type) {
    if (f_access != 0 && FILE_is_stdio(filename)) {
        const bool fits = type == GRD_TYPE_TEXT || type == GRD_TYPE_BINARY || type == GRD_TYPE_GRIB;
        return fits ? type : static_cast<int>(GRD_TYPE_TEXT);
    }
    if (type != GRD_TYPE_ANY) return type;
    return f_access == 0 ? std::max(GRD_chktype(filename), 0) : 0;
}

bool open_stream(const std::string& filename, int f_access, GRD_file* gfile) {
    constexpr std::array<const char*, 3> modes = {"r", "w", "a"};
    if (f_access < 0 || f_access > 2) return false;
    gfile->file = FILE_open(filename, modes[static_cast<std::size_t>(f_access)]);
    if (gfile->file && f_access == 0) {
        // Fields are looked through in many short steps back and forth, which a small buffer is filled anew for.
        gfile->buffer.resize(std::size_t{1} << 16);
        std::setvbuf(gfile->file.get(), gfile->buffer.data(), _IOFBF, gfile->buffer.size());
    }
    gfile->fd = 1;
    return gfile->file != nullptr;
}

}  // namespace

Grid_files& grid_files() { return state; }

void grid_rewind(GRD_file* gfile) {
    GRIB_reset();
    state.wind_dec = 0;
    std::FILE* file = gfile->file.get();
    if (file == nullptr || file == stdout) return;
    std::rewind(file);
    if (has_file_line(gfile->type)) fskipline(file);
    gfile->num = 0;
    state.cur_pos = 0;
    state.new_pos = -1;
}

int GRD_chktype(const std::string& filename) {
    const std::string path = FILE_keep_stream(filename);
    if (path.empty()) return -1;
    const file_ptr file = FILE_open(path, "r");
    if (!file) return -1;
    std::array<char, TYPE_BYTES> bytes{};
    const std::size_t size = std::fread(bytes.data(), 1, bytes.size(), file.get());
    const std::string_view text(bytes.data(), size);
    if (text.empty()) return -1;
    const char first = text[0];
    if (first == ' ' || (first >= '0' && first <= '9')) return GRD_TYPE_OLD;
    if (begins(text, "ZAVGRID4")) return GRD_TYPE_DOMAIN;
    if (begins(text, "ZAVGRID")) return GRD_TYPE_TEXT;
    if (begins(text, "CDF") || begins(text, "\x89HDF\r\n\x1a\n")) return GRD_TYPE_CDF;
    if (begins(text, "GRIB") || first == '*' || first == '\x01') return GRD_TYPE_GRIB;
    if (begins(text, "GRID")) return GRD_TYPE_MESSAGE;
    return text.find("GRIB") != std::string_view::npos ? static_cast<int>(GRD_TYPE_GRIB) : -1;
}

int GRD_open(const std::string& filename, int f_access, int* f_type) {
    const auto slot = std::find(state.gfile.begin(), state.gfile.end(), nullptr);
    if (slot == state.gfile.end()) return -1;
    const std::string path = f_access == 0 ? FILE_keep_stream(filename) : filename;
    if (f_access == 0 && path.empty()) return -1;
    const int type = settle_type(path, f_access, *f_type);
    if (type == GRD_TYPE_ANY) return -1;
    *f_type = type;
    auto gfile = std::make_unique<GRD_file>();
    gfile->type = type;
    const bool opened = is_stream_type(type)   ? open_stream(path, f_access, gfile.get())
                        : type == GRD_TYPE_CDF ? CDF_open(path, f_access, gfile.get()) == 0
                                               : false;
    if (!opened) return -1;
    if (f_access == 0) {
        GRIB_reset();
        state.cur_pos = 0;
        state.new_pos = -1;
        state.wind_dec = 0;
    }
    *slot = std::move(gfile);
    return static_cast<int>(slot - state.gfile.begin());
}

int GRD_use_hdr_file(int val) {
    state.use_hdrfile = val;
    return 0;
}

int GRD_set_format(const std::string& str) {
    const std::string format = fit_text(str, FORMAT_SIZE);
    state.format = format_is_safe(format) ? format : std::string();
    return 0;
}

GRD_file* GRD_get_gfile(int ind) {
    return valid_handle(ind) ? state.gfile[static_cast<std::size_t>(ind)].get() : nullptr;
}

int GRD_getinfo(int grd_fd, GRD_info* info) {
    GRD_file* gfile = GRD_get_gfile(grd_fd);
    if (gfile == nullptr) return -1;
    if (info != nullptr) info->own_dates = false;
    if (is_native(gfile->type)) return native_getinfo(gfile, info);
    switch (gfile->type) {
        case GRD_TYPE_CDF:
            return CDF_getinfo(gfile, info);
        case GRD_TYPE_GRIB:
            return GRIB_getinfo(grd_fd, info);
        case GRD_TYPE_MESSAGE:
            return message_getinfo(gfile, info);
        default:
            return -1;
    }
}

int GRD_putinfo(int grd_fd, const GRD_info* info) {
    GRD_file* gfile = GRD_get_gfile(grd_fd);
    if (gfile == nullptr) return -1;
    switch (gfile->type) {
        case GRD_TYPE_OLD:
        case GRD_TYPE_GRIB:
        case GRD_TYPE_MESSAGE:
            return 0;
        case GRD_TYPE_TEXT:
        case GRD_TYPE_BINARY:
            return std::fputs("ZAVGRID\n", gfile->file.get()) < 0 ? -1 : 0;
        case GRD_TYPE_CDF:
            return CDF_putinfo(gfile, info);
        default:
            return -1;
    }
}

int GRD_read(int grd_fd, GRD_report* grd, int rep_type, int* grdnum) {
    GRD_file* gfile = GRD_get_gfile(grd_fd);
    if (gfile == nullptr) return -1;
    if (is_native(gfile->type)) return native_read(gfile, grd, rep_type, grdnum);
    switch (gfile->type) {
        case GRD_TYPE_CDF:
            return CDF_read(gfile, grd, rep_type, grdnum);
        case GRD_TYPE_GRIB:
            state.wind_dec = 0;
            return GRIB_read(grd_fd, grd, rep_type, grdnum, &state.cur_pos, &state.new_pos);
        case GRD_TYPE_MESSAGE:
            return message_read(gfile, grd, rep_type, grdnum);
        default:
            return -1;
    }
}

int GRD_write(int grd_fd, GRD_report* grd, int, int* grd_num) {
    GRD_file* gfile = GRD_get_gfile(grd_fd);
    if (gfile == nullptr || !GRD_has_values(grd)) return -1;
    switch (gfile->type) {
        case GRD_TYPE_OLD:
        case GRD_TYPE_TEXT:
        case GRD_TYPE_BINARY:
            return native_write(gfile, grd);
        case GRD_TYPE_CDF:
            return CDF_write(gfile, grd, grd_num);
        case GRD_TYPE_GRIB: {
            // A message that was read raw passes through as it is: `source` bytes in place of the values.
            const std::size_t held = GRD_points(grd) * sizeof(float);
            const std::size_t bytes = std::min(held, static_cast<std::size_t>(std::max(grd->source, 0)));
            std::fwrite(grd->grid.get(), 1, bytes, gfile->file.get());
            return -1;
        }
        default:
            return -1;
    }
}

int GRD_rewind(int grd_fd) {
    GRD_file* gfile = GRD_get_gfile(grd_fd);
    if (gfile == nullptr) return -1;
    if (gfile->type == GRD_TYPE_CDF) {
        gfile->cur_var = -1;
        gfile->num = 0;
    } else {
        grid_rewind(gfile);
    }
    return 0;
}

int GRD_close(int grd_fd) {
    if (!valid_handle(grd_fd)) return -1;
    auto& slot = state.gfile[static_cast<std::size_t>(grd_fd)];
    if (!slot) return 0;
    const bool complete = slot->type != GRD_TYPE_CDF || CDF_close(slot.get()) == 0;
    if (slot->type == GRD_TYPE_GRIB) GRIB_reset();
    if (slot->file.get() == stdout) std::fflush(stdout);
    slot.reset();
    return complete ? 0 : -1;
}

int GRD_setpos(int grd_fd, long offset, int grdnum) {
    GRD_file* gfile = GRD_get_gfile(grd_fd);
    if (gfile == nullptr || gfile->type != GRD_TYPE_GRIB) return 1;
    GRIB_reset();
    std::fseek(gfile->file.get(), offset, SEEK_SET);
    gfile->num = grdnum;
    state.cur_pos = offset;
    state.new_pos = offset;
    return 1;
}

long GRD_get_pos(int) { return state.cur_pos; }

int GRD_get_header(int grd_fd, std::string& header) {
    header.clear();
    GRD_file* gfile = GRD_get_gfile(grd_fd);
    if (gfile == nullptr || !gfile->file) return -1;
    std::FILE* file = gfile->file.get();
    if (std::fseek(file, state.cur_pos, SEEK_SET) != 0) return -1;
    std::array<char, HEADER_BYTES> bytes{};
    const std::size_t size = std::fread(bytes.data(), 1, bytes.size(), file);
    header.assign(bytes.data(), size);
    std::fseek(file, state.cur_pos, SEEK_SET);
    return 0;
}

}  // namespace zav
