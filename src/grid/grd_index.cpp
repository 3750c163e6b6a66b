// Index files, which list the messages of a GRIB file so that a search needn't read it.

#include <cctype>

#include "files/files.h"
#include "grid/grd_read.h"
#include "grid/grd_scan.h"
#include "grid/grd_state.h"

namespace zav {
namespace {

constexpr const char* ITEM_MARK = "/ GRIB";

/// The code that an item's letter names, null for another letter.
int* item_code(char letter, GRD_report* grd) {
    switch (letter) {
        case 'S':
            return &grd->source;
        case 'M':
            return &grd->model;
        case 'G':
            return &grd->type;
        case 'T':
            return &grd->time;
        case 'L':
            return &grd->ltype;
        case 'H':
            return &grd->level;
        case 'V':
            return &grd->var;
        default:
            return nullptr;
    }
}

const char* skip_blanks(const char* text) {
    while (std::isspace(static_cast<unsigned char>(*text)) != 0) text++;
    return text;
}

/// Items of a letter and a number, as long as they match.
int decode_items(const char* text, GRD_report* grd) {
    int found = 0;
    while (*text != 0) {
        const char letter = *text++;
        int value = 0;
        if (!scan_text_int(&text, &value)) break;
        if (int* code = item_code(letter, grd)) *code = value;
        found = 1;
        text = skip_blanks(text);
    }
    return found;
}

/// Numbers alone, the source in front of them with a colon.
int decode_numbers(const char* text, GRD_report* grd) {
    int value = 0;
    if (!scan_text_int(&text, &value)) return 0;
    if (*text == ':') {
        grd->source = value;
        text++;
        if (!scan_text_int(&text, &value)) return 1;
    }
    grd->model = value;
    for (int* code : {&grd->type, &grd->time, &grd->ltype, &grd->level, &grd->var}) {
        if (!scan_text_int(&text, code)) break;
    }
    return 1;
}

}  // namespace

int GRD_hdr_open(int grd_fd, const std::string& filename) {
    GRD_file* gfile = GRD_get_gfile(grd_fd);
    if (gfile == nullptr || grid_files().use_hdrfile == 0) return -1;
    if (gfile->type != GRD_TYPE_GRIB || filename.empty()) return -1;
    gfile->hfile = FILE_open(filename, "r");
    return gfile->hfile ? 0 : -1;
}

int GRD_decode_index(const std::string& desc, GRD_report* grd) {
    const std::size_t mark = desc.find(ITEM_MARK);
    if (mark != std::string::npos) {
        const std::size_t word = desc.find_first_of(" \t", mark + 2);
        return word == std::string::npos ? 0 : decode_items(skip_blanks(desc.c_str() + word), grd);
    }
    const std::size_t slash = desc.find('/');
    return slash == std::string::npos ? 0 : decode_numbers(desc.c_str() + slash + 1, grd);
}

}  // namespace zav
