#include "grid/grd_out.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <vector>

#include "files/files.h"
#include "frame/flag.h"
#include "frame/resrc.h"
#include "frame/status.h"
#include "frame/string.h"
#include "grid/grd_read.h"
#include "grid/grd_tool.h"
#include "grid/netcdf/grd_cdf.h"

namespace zav {
namespace {

constexpr const char* DEFAULT_KIND = "grd_grd";

/// Words of the resource "out_file" that name a format. The first that a word begins with counts.
struct Format {
    const char* word;
    int type;
    const char* kind;  ///< file kind without text behind the word
};
constexpr std::array<Format, 4> FORMATS = {{
    {"zavb", GRD_TYPE_BINARY, "grd_zav"},
    {"zav", GRD_TYPE_TEXT, "grd_zav"},
    {"cdf", GRD_TYPE_CDF, "grd_cdf"},
    {"grib", GRD_TYPE_GRIB, "grd_grib"},
}};

/// Takes one word of the output choice.
void take_word(const std::string& word, int* type, std::string& kind) {
    if (stricmp(word, "none") == 0 || strnicmp(word, "gif", 3) == 0) return;
    for (const Format& row : FORMATS) {
        const std::size_t length = std::strlen(row.word);
        if (strnicmp(word, row.word, static_cast<int>(length)) != 0) continue;
        *type = row.type;
        kind = word.size() > length + 1 ? word.substr(length + 1) : row.kind;
        return;
    }
    if (*type == 0) *type = GRD_TYPE_TEXT;
    kind = word;
}

/// How a dialogue's caller names itself when a file can't be opened for appending.
struct Dialogue {
    const char* caller;
    const char* append_verb;
};

/// The dialogue of an output file, in its directory. The handle, or -1 with the warning.
int open_output(const std::string& name, int type, const Dialogue& words) {
    const int answer = FILE_overwrite(name, 1);
    const bool append = answer == 2;
    if (answer < 0 || answer > 2) {
        MESS_print(MESS_WARN, "%s: Unable to overwrite grid file: %s\n", words.caller, name.c_str());
        return -1;
    }
    const int fd = GRD_open(name, append ? 2 : 1, &type);
    if (fd < 0) {
        MESS_print(MESS_WARN, "%s: Unable to %s grid file: %s\n", words.caller, append ? words.append_verb : "create",
                   name.c_str());
        ZAV_note(STATUS_OUTPUT);
    } else {
        MESS_print(MESS_PROGRESS, "%s grid file: %s\n", append ? "Appending to" : "Creating", name.c_str());
    }
    return fd;
}

bool write_grid(int grd_fd, GRD_report* grid, const GRD_info* info) {
    int number = 0;
    GRD_info file = *info;
    file.max_x = std::max(file.max_x, grid->domain.nx);
    file.max_y = std::max(file.max_y, grid->domain.ny);
    const bool started = GRD_putinfo(grd_fd, &file) == 0;
    const bool written = started && GRD_write(grd_fd, grid, GRD_READ_ALL, &number) == 0;
    const bool closed = GRD_close(grd_fd) == 0;
    return written && closed;
}

void complete_labels(GRD_report* grid, int kind) {
    if (grid->info.empty()) GRD_make_datatype(grid, "");
    if (!grid->datim.empty()) return;
    std::string label;
    if (kind == -2) {
        DATE_make_label_for(grid->time, grid->model, 0, label);
    } else {
        const int model = kind == 0 ? grid->source * 1000 + grid->model : grid->model;
        DATE_make_label_for_time(grid->time, model, &grid->date, label);
    }
    grid->datim = fit_text(label, GRD_DATIM_SIZE);
}

}  // namespace

int GRD_out_file(int type) {
    std::vector<std::string> words;
    RES_getvals("out_file", words);
    int chosen = 0;
    std::string kind = DEFAULT_KIND;
    for (const std::string& word : words) take_word(word, &chosen, kind);
    if (chosen == 0) chosen = type;
    if (chosen == 0) return 0;
    FILE_set_name(kind);
    FLAG_set(FLAG_GRID_FORMAT, chosen);
    return chosen;
}

int GRD_save_file(const std::string& filename, GRD_report* grid, GRD_info* info, int type) {
    if (type == 0) return 0;
    const std::string name = FILE_add_path(RES_get("grid_path"), filename);
    // A file that is there stays as it is where the new grid can't be kept in one.
    const bool keeps = type != GRD_TYPE_CDF || CDF_keeps(grid);
    const int fd = keeps ? open_output(name, type, {"GRD_save_file", "open"}) : -1;
    if (keeps && fd < 0) return 0;
    if (keeps && write_grid(fd, grid, info)) return 1;
    MESS_print(MESS_WARN, "GRD_save_file: Unable to create grid file: %s\n", name.c_str());
    ZAV_note(STATUS_OUTPUT);
    return 0;
}

int GRD_open_out_file(const std::string& filename, int type) {
    if (type == 0) return 0;
    const std::string name = FILE_add_path(RES_get("grid_path"), filename);
    const int fd = open_output(name, type, {"GRD_open_out_file", "create"});
    return fd < 0 ? 0 : fd;
}

int GRD_save_grid(int grd_fd, GRD_report* grid, GRD_info* info) {
    if (!write_grid(grd_fd, grid, info)) {
        MESS_print(MESS_WARN, "GRD_save_grid: Unable to write grid file\n");
        ZAV_note(STATUS_OUTPUT);
    }
    return 0;
}

int GRD_print(M_type level, GRD_report* grid) {
    if (MESS_check(level) == 0) return -1;
    GRD_print_info(level, grid, 1);
    GRD_print_info(level, grid, 2);
    MESS_print(level, "Domain: ");
    DOM_print(level, &grid->domain);
    return 0;
}

int GRD_print_info(M_type level, GRD_report* grid, int type) {
    if (MESS_check(level) == 0) return 0;
    const Domain& domain = grid->domain;
    const auto real = [](float value) { return static_cast<double>(value); };
    switch (type) {
        case -2:
        case -1:
        case 0:
            complete_labels(grid, type);
            MESS_print(level, type == 0 ? "%s-%s\n" : "%s - %s\n", grid->datim.c_str(), grid->info.c_str());
            break;
        case 1:
            MESS_print(level, "Model: %d Ltype: %d Level: %d Var: %d [%s] Hour: %d Grid: %d\n", grid->model,
                       grid->ltype, grid->level, grid->var, grid->units.c_str(), grid->time, grid->type);
            break;
        case 2:
            if (domain.proj == MISS) break;
            MESS_print(level, "Proj: %d Lat: %3.2f Lon: %3.2f NX: %d NY: %d DX: %3.2f DY: %3.2f\n", domain.proj,
                       real(domain.clat), real(domain.clon), domain.nx, domain.ny, real(domain.dx), real(domain.dy));
            break;
        case 3:
            GRD_make_datatype(grid, "");
            MESS_print(level, "%s\n", grid->info.c_str());
            break;
        default:
            break;
    }
    return 0;
}

}  // namespace zav
