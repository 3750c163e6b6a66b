// The search for all entries of the variable list, in one file or in the files of a model in pieces.

#include <algorithm>

#include "files/files.h"
#include "frame/flag.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/status.h"
#include "frame/string.h"
#include "grid/grd_hints.h"
#include "grid/grd_out.h"
#include "grid/grd_read.h"
#include "grid/grd_tool.h"

namespace zav {
namespace {

/// Value of flag FLAG_GRID_FORMAT that says that the input is GRIB.
constexpr int INPUT_GRIB = 23;

/// Warnings of the two searches.
struct Words {
    const char* no_file;
    const char* no_grid;
};
constexpr Words DATE_WORDS = {"GRD_search_file_date: unable to open file: ",
                              "GRD_search_file_date: grid not found in file: "};
constexpr Words FILE_WORDS = {"GRD_search_file: Unable to open grid file: ",
                              "GRD_search_file: Grid not found in file: "};

void prepare_table(bool list) {
    GRD_init_grids();
    if (list) MESS_print(MESS_OUT4, "Grids used:\n");
    for (int i = 0; i < VAR_get_num(); i++) {
        GRD_set_var(i);
        if (!list) continue;
        MESS_print(MESS_OUT4, "%3d: ", i);
        VAR_print(MESS_OUT4, VAR_get_var(i));
    }
}

/// Opens a file and reads its description. The handle, or -1 with the warning.
int open_file(const std::string& name, const Words& words, const Date* date) {
    int type = FLAG_get(FLAG_GRID_FORMAT) == INPUT_GRIB ? GRD_TYPE_GRIB : GRD_TYPE_ANY;
    const int fd = GRD_open(name, 0, &type);
    if (fd < 0) {
        MESS_print(MESS_WARN, "%s%s\n", words.no_file, name.c_str());
        return -1;
    }
    MESS_print(MESS_PROGRESS, "Reading from grid file: %s\n", name.c_str());
    std::string index;
    if (date != nullptr && FILE_hdr_set_date(date, index) == 1) GRD_hdr_open(fd, index);
    GRD_getinfo(fd, GRD_get_info());
    return fd;
}

/// Adds to the records that a search walked those behind them, which tell what else it could have taken; with `all`
/// those before its first as well.
void complete_list(int fd, int first, bool all, std::vector<Record_codes>* records) {
    if (all && first > 0) records->clear();
    const int start = all ? 0 : first;
    GRD_list_records(fd, records->empty() ? start : records->back().number + 1, records);
}

/// Tells what wasn't found and what comes nearest to it, and where several records would have done.
void report_search(const Words& words, int fd, int type, int first, const Date& date,
                   std::vector<Record_codes> records) {
    bool missing = false;
    for (int i = 0; i < VAR_get_num(); i++) missing |= VAR_is_fit_GRID(i) != 0 && GRD_is_empty(GRD_get_grid(i));
    complete_list(fd, first, missing, &records);
    for (int i = 0; i < VAR_get_num(); i++) {
        if (VAR_is_fit_GRID(i) == 0) continue;
        const VAR_data& params = *VAR_get_var(i);
        if (!GRD_is_empty(GRD_get_grid(i))) {
            if (VAR_is_get_GRID(i) != 0) GRD_tell_choice(records, params, type, first, date);
            continue;
        }
        MESS_print(MESS_WARN, "%s%d ", words.no_grid, i);
        VAR_print_info(MESS_WARN, &params);
        GRD_tell_nearest(records, params, type, first, date);
        ZAV_note(STATUS_LAYER);
    }
}

/// True if the file has a record of that date.
bool has_date(int fd, const Date& date) {
    GRD_report header;
    GRD_init(&header);
    for (int number = 0; GRD_read(fd, &header, GRD_READ_HEADER, &number) == 0; number++) {
        if (header.date.year != MISS && GRD_date_fits(date, header.date)) return true;
    }
    return false;
}

/// The date that the records of a file with dates of their own must have: the one that the user forces, or that of the
/// file's name if it has records of it. Unknown where the user names a record by its number.
Date date_of_records(int fd, const Date* of_name) {
    Date date;
    if (!GRD_get_info()->own_dates || RES_get("grid_num") != nullptr) return date;
    FILE_get_time(&date);
    const bool forced = date.year >= 0 || date.month >= 0 || date.day >= 0 || date.hour >= 0 || date.min >= 0;
    if (forced || of_name == nullptr || of_name->year == MISS) return date;
    return has_date(fd, *of_name) ? *of_name : Date();
}

/// The search in one file. False if it can't be opened.
bool search_single(const std::string& name, const Words& words, const Date* date) {
    const int fd = open_file(name, words, date);
    if (fd < 0) return false;
    int type = MISS;
    RES_getval("grid_type", &type, CV_int);
    const int first = std::max(text_to_int(FILE_get_ext_info()), 0);
    const Date wanted = date_of_records(fd, date);
    std::vector<Record_codes> walked;
    GRD_search_from(fd, first, GRD_get_grids(), VAR_get_vars().data(), type, VAR_get_num(), wanted, &walked);
    report_search(words, fd, type, first, wanted, std::move(walked));
    GRD_close(fd);
    return true;
}

void search_pieces(const Date* date) {
    const GRD_specs& specs = GRD_get_specs();
    for (int n = 0; n < specs.nspec; n++) {
        const int fd = open_file(GRD_piece_file(n, date), DATE_WORDS, date);
        if (fd < 0) continue;
        GRD_search_piece(fd, n, GRD_get_grids(), VAR_get_vars().data(), VAR_get_num());
        GRD_close(fd);
    }
}

/// Writes the grids of the list that the resource "out_file" asks for.
void write_grids() {
    FILE_save_name_conv();
    for (int i = VAR_get_num() - 1; i >= 0; i--) {
        if (VAR_is_type_GRID(i) == 0 || !GRD_has_values(GRD_get_grid(i))) continue;
        const int type = GRD_out_file(0);
        if (type == 0) break;
        FILE_set_key('x', VAR_get_model_str());
        FILE_set_key('f', VAR_get_time_key(i));
        FILE_set_key('l', VAR_get_level_key(i));
        FILE_set_key('v', VAR_get_name(i));
        std::string name;
        FILE_set_date(&GRD_get_info()->date, name);
        GRD_save_file(name, GRD_get_grid(i), GRD_get_info(), type);
    }
    FILE_restore_name_conv();
}

void finish() {
    if (GRD_hooks().calc_var != nullptr) GRD_hooks().calc_var();
    write_grids();
}

}  // namespace

void GRD_take_named_file() {
    GRD_specs& specs = GRD_get_specs();
    const int given = FILE_is_given();
    specs.named = given != 0 ? FILE_get_filename() : std::string();
    if (given == 2) specs.nspec = 0;
}

std::string GRD_piece_file(int ind, const Date* date) {
    const GRD_specs& specs = GRD_get_specs();
    FILE_set_name(specs.spec[static_cast<std::size_t>(ind)].name);
    if (!specs.named.empty() && date->year != MISS) FILE_set_filename(specs.named);
    std::string name;
    FILE_set_date(date, name);
    return name;
}

int GRD_search_file_date(const Date* date) {
    prepare_table(true);
    if (GRD_get_specs().nspec == 0) {
        std::string name;
        FILE_set_date(date, name);
        if (!search_single(name, DATE_WORDS, date)) return -1;
    } else {
        search_pieces(date);
    }
    finish();
    return 1;
}

int GRD_search_file(const std::string& filename) {
    prepare_table(false);
    if (!search_single(filename, FILE_WORDS, nullptr)) return -1;
    finish();
    return 1;
}

}  // namespace zav
