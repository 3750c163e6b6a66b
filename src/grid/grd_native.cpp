// The system's own text and binary grid files: labels, codes, domain and values, record after record.

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <limits>
#include <memory>
#include <new>
#include <utility>
#include <vector>

#include "files/date.h"
#include "files/files.h"
#include "frame/mess.h"
#include "frame/string.h"
#include "frame/tools.h"
#include "grid/grd_read.h"
#include "grid/grd_scan.h"
#include "grid/grd_state.h"
#include "grid/grd_tool.h"

namespace zav {
namespace {

constexpr const char* FILE_LINE = "ZAVGRID";
constexpr std::size_t FILE_LINE_LENGTH = 7;
constexpr std::size_t WORD_LENGTH = 255;
/// Values by which the store of a field that is being read starts; it grows with what the file really holds.
constexpr std::size_t FIRST_VALUES = 1U << 16;

/// Format digits of a record.
enum : int { DIGIT_WEST = 1, DIGIT_TEXT = 2, DIGIT_BINARY = 3, DIGIT_REFERENCE = 4 };

bool has_code_line(int digit) { return digit >= DIGIT_TEXT && digit <= DIGIT_REFERENCE; }

// Header lines

/// The date line, behind any file lines. False at the end of the file.
bool read_date_line(std::FILE* file, std::string& line) {
    do {
        if (fgetline(file, line) < 0) return false;
    } while (line.compare(0, FILE_LINE_LENGTH, FILE_LINE) == 0);
    trim_cr_string(line);
    return true;
}

/// The format digit and the text behind it. A line of another form is text as a whole, with digit 0.
int split_info(const std::string& line, std::string& info) {
    int digit = 0;
    int used = 0;
    const int found = std::sscanf(line.c_str(), "%9d-%n", &digit, &used);
    const bool marked = found == 1 && used > 0 && static_cast<std::size_t>(used) < line.size();
    info = marked ? line.substr(static_cast<std::size_t>(used)) : line;
    return marked ? digit : 0;
}

/// The units behind a colon, if one stands there. Blanks may come first, but not a line end.
void read_units(std::FILE* file, GRD_report* grd) {
    int c = std::getc(file);
    const bool colon = c == ':';
    if (colon) {
        do c = std::getc(file);
        while (c == ' ' || c == '\t');
    }
    if (c != EOF) std::ungetc(c, file);
    std::string word;
    if (colon && c != '\n' && scan_word(file, word, WORD_LENGTH)) grd->units = fit_text(word, GRD_UNITS_SIZE);
}

void read_codes(std::FILE* file, GRD_report* grd) {
    for (int* code :
         {&grd->source, &grd->version, &grd->model, &grd->type, &grd->ltype, &grd->level, &grd->time, &grd->var}) {
        if (!scan_int(file, code)) return;
    }
    read_units(file, grd);
}

void preset_codes(GRD_report* grd, int digit) {
    grd->grid.reset();
    grd->source = 1;
    grd->version = digit;
    grd->model = 1;
    grd->type = 0;
    grd->ltype = 0;
    grd->level = 0;
    grd->time = 0;
    grd->var = 0;
    grd->units.clear();
    DOM_init(&grd->domain);
}

// Values

float from_big_endian(const unsigned char* bytes) {
    const std::uint32_t word = static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
                               static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3];
    return std::bit_cast<float>(word);
}

float from_machine_order(const unsigned char* bytes) {
    std::array<unsigned char, 4> word{bytes[0], bytes[1], bytes[2], bytes[3]};
    return std::bit_cast<float>(word);
}

/// Reads values as long as `next` gives them. The store is never larger than twice what the file held.
template <class Next>
bool collect_values(std::vector<float>& values, std::size_t points, Next next) {
    values.reserve(std::min(points, FIRST_VALUES));
    while (values.size() < points) {
        float value = FMISS;
        if (!next(&value)) return false;
        values.push_back(value);
    }
    return true;
}

bool read_text_values(std::FILE* file, std::vector<float>& values, std::size_t points) {
    return collect_values(values, points, [file](float* value) { return scan_float(file, value); });
}

bool read_binary_values(std::FILE* file, std::vector<float>& values, std::size_t points,
                        float (*decode)(const unsigned char*)) {
    return collect_values(values, points, [file, decode](float* value) {
        std::array<unsigned char, 4> bytes{};
        if (std::fread(bytes.data(), 1, bytes.size(), file) != bytes.size()) return false;
        const float number = decode(bytes.data());
        *value = std::isfinite(number) ? number : FMISS;
        return true;
    });
}

/// Hands the values to the record without copying them.
void take_values(GRD_report* grd, std::vector<float>&& values) {
    auto owner = std::make_shared<std::vector<float>>(std::move(values));
    grd->grid = std::shared_ptr<float[]>(owner, owner->data());
}

/// Turns values in the order of the file into rows from the top and columns from the left.
void order_values(std::vector<float>& values, const Domain& domain, bool down, bool right) {
    const auto nx = static_cast<std::ptrdiff_t>(domain.nx);
    const auto ny = static_cast<std::ptrdiff_t>(domain.ny);
    const auto row = [&](std::ptrdiff_t j) { return values.begin() + j * nx; };
    for (std::ptrdiff_t j = 0; !down && j < ny / 2; j++) std::swap_ranges(row(j), row(j) + nx, row(ny - 1 - j));
    for (std::ptrdiff_t j = 0; !right && j < ny; j++) std::reverse(row(j), row(j) + nx);
}

/// Where the values of a record with a reference line stand.
struct Reference {
    std::string format;
    std::string name;
    long offset = 0;
    int xdir = 0;
    int ydir = 0;
};

bool read_reference(std::FILE* file, Reference* ref) {
    const bool words = scan_word(file, ref->format, 5) && scan_word(file, ref->name, FILE_NAME_SIZE - 1);
    return words && scan_long(file, &ref->offset) && scan_int(file, &ref->xdir) && scan_int(file, &ref->ydir);
}

bool read_referred_values(const Reference& ref, const Domain& domain, std::vector<float>& values, std::size_t points) {
    const file_ptr file = FILE_open_data(ref.name);
    if (!file || std::fseek(file.get(), ref.offset, SEEK_SET) != 0) {
        MESS_print(MESS_WARN, "GRD_read: Unable to open grid file: %s\n", ref.name.c_str());
        return false;
    }
    const bool text = ref.format[0] == 'A';
    const bool done = text ? read_text_values(file.get(), values, points)
                           : read_binary_values(file.get(), values, points, from_machine_order);
    if (done) order_values(values, domain, ref.ydir == 1, ref.xdir == 1);
    return done;
}

/// Passes over the values of a record.
void skip_values(std::FILE* file, int digit, std::size_t points) {
    if (digit == DIGIT_REFERENCE) {
        Reference ref;
        read_reference(file, &ref);
    } else if (digit == DIGIT_BINARY) {
        const bool fits = points <= static_cast<std::size_t>(std::numeric_limits<long>::max()) / 4;
        if (!fits || std::fseek(file, static_cast<long>(points) * 4, SEEK_CUR) != 0) {
            for (std::size_t left = points * 4; left > 0 && std::getc(file) != EOF;) left--;
        }
    } else {
        float value = 0.0F;
        while (points > 0 && scan_float(file, &value)) points--;
    }
    scan_space(file);
}

bool read_values(std::FILE* file, int digit, GRD_report* grd) {
    const std::size_t points = GRD_points(grd);
    if (points == 0) return false;
    bool done = false;
    try {
        std::vector<float> values;
        if (digit == DIGIT_REFERENCE) {
            Reference ref;
            done = read_reference(file, &ref) && read_referred_values(ref, grd->domain, values, points);
        } else if (digit == DIGIT_BINARY) {
            done = read_binary_values(file, values, points, from_big_endian);
        } else {
            done = read_text_values(file, values, points);
        }
        if (done) take_values(grd, std::move(values));
    } catch (const std::bad_alloc&) {
        GRD_tell_no_memory(grd);
        return false;
    }
    scan_space(file);
    return done;
}

/// Reads the record at which the file stands. 0; -1 at the end of the file and, with the record made empty, for one
/// that doesn't hold its values.
int read_record(GRD_file* gfile, GRD_report* grd, int rep_type) {
    std::FILE* file = gfile->file.get();
    std::string date = gfile->datim;
    std::string line;
    if (!read_date_line(file, date)) return -1;
    if (fgetline(file, line) < 0) return -1;
    trim_cr_string(line);
    std::string info;
    int digit = split_info(line, info);
    if (gfile->type == GRD_TYPE_DOMAIN) digit = gfile->itype;
    if (string_is_blank(info)) info.clear();
    grd->datim = fit_text(date, GRD_DATIM_SIZE);
    grd->info = fit_text(info, GRD_INFO_SIZE);
    preset_codes(grd, digit);
    if (has_code_line(digit)) read_codes(file, grd);
    if (gfile->type == GRD_TYPE_DOMAIN) {
        std::string word;
        if (scan_word(file, word, WORD_LENGTH)) DOM_decode(word, &grd->domain);
        std::getc(file);
    } else {
        native_read_domain(file, digit, grd);
        if (digit == DIGIT_BINARY) scan_line_end(file);
    }
    if (rep_type == GRD_READ_HEADER || rep_type == GRD_READ_LABELS) {
        skip_values(file, digit, GRD_points(grd));
        return 0;
    }
    if (read_values(file, digit, grd)) return 0;
    GRD_free(grd);
    return -1;
}

/// A text without line ends, so that it can't be taken for more lines than one.
std::string one_line(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < ' '; }, ' ');
    return text;
}

void write_value(std::FILE* file, float value, bool binary, const std::string& format) {
    if (binary) {
        const auto word = std::bit_cast<std::uint32_t>(value);
        for (int shift = 24; shift >= 0; shift -= 8) std::putc(static_cast<int>(word >> shift & 0xFFU), file);
    } else if (format.empty()) {
        std::fprintf(file, "%14.8e\n", static_cast<double>(value));
    } else {
        std::fprintf(file, "%s\n", format_value(format, static_cast<double>(value)).c_str());
    }
}

/// Moves the file to record `wanted`, or to the one that is read in its place; `*number` is that one's number.
void step(GRD_file* gfile, int wanted, int* number) {
    Grid_files& state = grid_files();
    std::FILE* file = gfile->file.get();
    *number = gfile->num;
    if (wanted < gfile->num) {
        grid_rewind(gfile);
        *number = 0;
    } else if (wanted == gfile->num + 1 && state.new_pos > 0) {
        std::fseek(file, state.new_pos, SEEK_SET);
        *number = gfile->num + 1;
    } else if (wanted == gfile->num) {
        std::fseek(file, state.cur_pos, SEEK_SET);
    } else if (state.new_pos < 0) {
        std::fseek(file, 0, SEEK_SET);
    }
}

}  // namespace

int native_getinfo(GRD_file* gfile, GRD_info* info) {
    std::FILE* file = gfile->file.get();
    std::string line;
    if (gfile->type == GRD_TYPE_TEXT || gfile->type == GRD_TYPE_BINARY) fskipline(file);
    if (gfile->type == GRD_TYPE_DOMAIN) {
        fgetline(file, line);
        gfile->itype = line.size() > 8 && line[8] == 'B' ? DIGIT_BINARY : 0;
        line.clear();
    }
    read_date_line(file, line);
    gfile->datim = fit_text(line, GRD_DATIM_SIZE);
    info->datim = fit_text(line, GRD_INFO_DATIM_SIZE);
    DATE_decode_label(line, &info->date);
    gfile->date = info->date;
    info->grid_type = 0;
    grid_files().cur_pos = 0;
    grid_files().new_pos = -1;
    return 0;
}

int native_read(GRD_file* gfile, GRD_report* grd, int rep_type, int* grdnum) {
    Grid_files& state = grid_files();
    std::FILE* file = gfile->file.get();
    int number = 0;
    step(gfile, *grdnum, &number);
    const long start = std::ftell(file);
    if (read_record(gfile, grd, rep_type) != 0) return -1;
    gfile->num = number;
    state.cur_pos = start;
    state.new_pos = std::ftell(file);
    *grdnum = number;
    return 0;
}

int native_write(GRD_file* gfile, GRD_report* grd) {
    std::FILE* file = gfile->file.get();
    const bool binary = gfile->type == GRD_TYPE_BINARY;
    fill_string(grd->units, ' ', '_');
    const std::string datim = one_line(grd->datim);
    const std::string units = one_line(grd->units);
    // A reader takes a format digit only if something stands behind it.
    const std::string info = grd->info.empty() ? " " : one_line(grd->info);
    std::fprintf(file, "%s\n%d-%s\n", datim.c_str(), binary ? DIGIT_BINARY : DIGIT_TEXT, info.c_str());
    std::fprintf(file, "%d %d %d %d %d %d %d %d", grd->source, grd->version, grd->model, grd->type, grd->ltype,
                 grd->level, grd->time, grd->var);
    if (!units.empty()) std::fprintf(file, ":%s", units.c_str());
    std::fprintf(file, "\n%s", native_domain_line(grd->domain).c_str());
    const std::string& format = grid_files().format;
    const std::size_t points = GRD_points(grd);
    for (std::size_t i = 0; i < points; i++) write_value(file, grd->grid[i], binary, format);
    if (binary) std::putc('\n', file);
    return std::fflush(file) == 0 && std::ferror(file) == 0 ? 0 : -1;
}

}  // namespace zav
