// One grid or one domain of a file.

#include "files/files.h"
#include "frame/flag.h"
#include "frame/menu.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "grid/grd_read.h"
#include "grid/grd_tool.h"

namespace zav {
namespace {

constexpr int INPUT_GRIB = 23;
constexpr int ANSWER_LENGTH = 10;

/// Closes a handle when it goes out of use.
class Open_grid {
  public:
    explicit Open_grid(int fd) : fd_(fd) {}
    ~Open_grid() {
        if (fd_ >= 0) GRD_close(fd_);
    }
    Open_grid(const Open_grid&) = delete;
    Open_grid& operator=(const Open_grid&) = delete;
    int fd() const { return fd_; }

  private:
    int fd_;
};

int input_type() { return FLAG_get(FLAG_GRID_FORMAT) == INPUT_GRIB ? GRD_TYPE_GRIB : GRD_TYPE_ANY; }

/// Reads record `number` whole. Formats that can't be read at any number are stepped through.
bool read_number(int fd, GRD_report* grid, int number) {
    const int wanted = number;
    if (GRD_read(fd, grid, GRD_READ_ALL, &number) != 0) return false;
    GRD_report header;
    for (int at = number + 1; number < wanted; at++) {
        number = at;
        const int rep_type = at == wanted ? GRD_READ_ALL : GRD_READ_HEADER;
        if (GRD_read(fd, at == wanted ? grid : &header, rep_type, &number) != 0 || number != at) return false;
    }
    return true;
}

/// The grid that a selector names, from an open file. 1, or 0 with a warning by `caller`.
int read_selected(int fd, const std::string& selector, const char* caller, GRD_report* grid) {
    VAR_data params;
    int type = MISS;
    int number = GRD_parse_params(selector, &params, &type);
    if (number == MISS) number = 0;
    grid->source = 0;
    const bool search = number < 0;
    const bool found = search ? GRD_search(fd, grid, &params, type, -1) == 1 : read_number(fd, grid, number);
    if (!found) {
        GRD_free(grid);
        MESS_print(MESS_WARN, "%s: Grid not found in file\n", caller);
        return 0;
    }
    if (!search && !params.units.empty() && GRD_hooks().units != nullptr) GRD_hooks().units(grid, params.units);
    return 1;
}

/// The common part of the two readers of one grid. `date` is null for a named file, which has no index file.
int read_one(const std::string& name, const Date* date, const std::string& selector, const char* caller,
             GRD_report* grid, GRD_info* info, int* type) {
    GRD_init(grid);
    int file_type = type == nullptr ? static_cast<int>(GRD_TYPE_ANY) : *type;
    const Open_grid file(GRD_open(name, 0, &file_type));
    if (file.fd() < 0) {
        MESS_print(MESS_WARN, "%s: Unable to open grid file: %s\n", caller, name.c_str());
        return -1;
    }
    if (type != nullptr) *type = file_type;
    MESS_print(MESS_PROGRESS, "Reading from grid file: %s\n", name.c_str());
    std::string index;
    if (date != nullptr && FILE_hdr_set_date(date, index) == 1) GRD_hdr_open(file.fd(), index);
    GRD_info own;
    GRD_getinfo(file.fd(), info == nullptr ? &own : info);
    return read_selected(file.fd(), selector, caller, grid);
}

/// Header of the first record with grid number `type` on a grid that can be placed, or else of the last one on such a
/// grid; its number in `number`. False if the file has none.
bool find_record(int fd, int type, GRD_report* record, int* number) {
    bool found = false;
    GRD_report next;
    GRD_init(&next);
    for (int at = 0; GRD_read(fd, &next, GRD_READ_HEADER, &at) == 0; at++) {
        if (GRD_points(&next) == 0 || next.domain.proj == MISS) continue;
        found = true;
        *number = at;
        GRD_copy(record, &next);
        if (type == MISS || next.type == type) break;
    }
    return found;
}

int domain_file(const std::string& name, const char* caller) {
    int type = input_type();
    const int fd = GRD_open(name, 0, &type);
    if (fd < 0) {
        MESS_print(MESS_WARN, "%s: Unable to open grid file:%s\n", caller, name.c_str());
    } else {
        MESS_print(MESS_PROGRESS, "Getting domain from grid file:%s\n", name.c_str());
    }
    return fd;
}

}  // namespace

int GRD_read_file(const std::string& filename, GRD_report* grid, GRD_info* info, int* type) {
    std::string name = filename;
    std::string selector;
    FILE_extract_extra_info(name, selector);
    const std::string path = FILE_add_path(RES_get("grid_path"), name);
    return read_one(path, nullptr, selector, "GRD_read_file", grid, info, type);
}

int GRD_read_file_date(const Date* date, const std::string& extra, GRD_report* grid, GRD_info* info, int* type) {
    std::string name;
    FILE_set_date(date, name);
    return read_one(name, date, extra, "GRD_read_file_date", grid, info, type);
}

void GRD_learn_names(const Date* date) {
    if (GRD_get_specs().nspec != 0) return;
    std::string name;
    FILE_set_date(date, name);
    int type = input_type();
    if (type == GRD_TYPE_ANY) type = GRD_chktype(name);
    if (type != GRD_TYPE_CDF) return;
    const Open_grid file(GRD_open(name, 0, &type));
    GRD_info info;
    GRD_getinfo(file.fd(), &info);
}

int GRD_get_file_domain(const std::string& filename, Domain* domain) {
    int type = MISS;
    RES_getval("grid_type", &type, CV_int);
    const Open_grid file(domain_file(filename, "GRD_get_file_domain"));
    if (file.fd() < 0) return -1;
    GRD_getinfo(file.fd(), GRD_get_info());
    GRD_report record;
    int number = 0;
    if (!find_record(file.fd(), type, &record, &number)) return -1;
    *domain = record.domain;
    return 1;
}

int GRD_get_file_date_domain(const Date* date, Domain* domain) {
    const GRD_specs& specs = GRD_get_specs();
    int type = MISS;
    if (specs.nspec != 0) type = specs.spec[0].type;
    RES_getval("grid_type", &type, CV_int);
    Date when;
    if (date != nullptr) {
        when = *date;
    } else {
        GRD_get_date(&when);
    }
    std::string name;
    if (specs.nspec != 0) {
        name = GRD_piece_file(0, &when);
    } else {
        FILE_set_date(&when, name);
    }
    const Open_grid file(domain_file(name, "GRD_get_file_date_domain"));
    if (file.fd() < 0) return -1;
    std::string index;
    if (FILE_hdr_set_date(&when, index) == 1) GRD_hdr_open(file.fd(), index);
    GRD_getinfo(file.fd(), GRD_get_info());
    GRD_report record;
    int number = 0;
    if (!find_record(file.fd(), type, &record, &number)) return -1;
    // Only the whole record tells the size of a grid whose rows differ in length. One that can't be read keeps the
    // domain of its header.
    GRD_report whole;
    if (GRD_read(file.fd(), &whole, GRD_READ_ALL, &number) == 0) GRD_move(&record, &whole);
    if (specs.nspec != 0 && GRD_hooks().piece_setup != nullptr) {
        GRD_hooks().piece_setup(&record, specs.nx, specs.ny, nullptr);
    }
    *domain = record.domain;
    return 1;
}

int GRD_read_check(const std::string& filename, GRD_report* grid, GRD_info* info, int* type, const Domain* domain) {
    if (filename.empty() || FILE_is_stdio(filename) != 0 || FILE_exist(filename) == 0) return 0;
    const int policy = FLAG_get(FLAG_FILE_POLICY);
    if (policy == 1) return 0;
    if (policy < 1 && FLAG_batch() == 0) {
        std::string answer;
        ZAV_prompts(filename + ": exists overwrite (Y/N): ", answer, ANSWER_LENGTH);
        if (!answer.empty() && (answer[0] == 'Y' || answer[0] == 'y')) return 0;
    }
    *type = GRD_TYPE_ANY;
    const Open_grid file(GRD_open(filename, 0, type));
    if (file.fd() < 0) {
        MESS_print(MESS_WARN, "GRD_read_check: Grid file does not exist: %s\n", filename.c_str());
        return 0;
    }
    GRD_getinfo(file.fd(), info);
    int number = 0;
    const bool read = GRD_read(file.fd(), grid, GRD_READ_ALL, &number) == 0;
    if (read && DOM_comp(&grid->domain, domain) == 1) return 1;
    MESS_print(MESS_WARN, "GRD_read_check: %s file does not correspond to selected region\n", filename.c_str());
    GRD_free(grid);
    return 0;
}

}  // namespace zav
