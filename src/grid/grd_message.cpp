// Text GRID messages: groups of digits with a sector of the globe each, 19 by 15 points 5 degrees apart. A message
// starts with the word "GRID", which the numbers of centre and sector follow in the same word or in the next.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

#include "files/date.h"
#include "frame/string.h"
#include "grid/grd_scan.h"
#include "grid/grd_state.h"
#include "grid/grd_tool.h"
#include "map/maptran.h"

namespace zav {
namespace {

constexpr std::size_t WORD_LENGTH = 79;
constexpr const char* KEYWORD = "GRID";
constexpr std::size_t KEYWORD_LENGTH = 4;
constexpr double RADIANS = 0.017453292519943334;

constexpr int POINTS_X = 19;
constexpr int POINTS_Y = 15;
constexpr float SPACING = 5.0F;
constexpr int GRID_NUMBER = 70;  ///< grid number of sector 0
constexpr int WIND = 22;         ///< variable of direction and speed, which becomes the two components that follow
constexpr int LEVEL_PRESSURE = 10;
constexpr int LEVEL_HEIGHT = 13;
constexpr int LEVEL_SEA = 12;

/// Centres of the sectors 1 to 12.
constexpr std::array<EarthPoint, 12> SECTORS = {{{55, -45},
                                                 {55, -135},
                                                 {55, 135},
                                                 {55, 45},
                                                 {0, -45},
                                                 {0, -135},
                                                 {0, 135},
                                                 {0, 45},
                                                 {-55, -45},
                                                 {-55, -135},
                                                 {-55, 135},
                                                 {-55, 45}}};
constexpr int LAST_FROM_SOUTH = 4;  ///< sectors up to this one run from south to north

/// Factors by the digit of the scale group.
constexpr std::array<float, 10> SCALES = {1.0F,  0.1F,   0.01F,   0.001F,   0.0001F,
                                          10.0F, 100.0F, 1000.0F, 10000.0F, 100000.0F};

/// How the values of a message are written.
struct Packing {
    int sign_mode = 0;
    int digits = 0;
    float scale = 1.0F;
    float offset = 0.0F;
};

/// The words of a message, one at a time.
struct Words {
    std::FILE* file;
    std::string w;

    bool next() { return scan_word(file, w, WORD_LENGTH); }
    bool starts(char digit) const { return !w.empty() && w[0] == digit; }
    /// Number that `count` characters from place `at` on make, 0 if there is none.
    int digits(std::size_t at, std::size_t count) const {
        return at < w.size() ? static_cast<int>(std::strtol(w.substr(at, count).c_str(), nullptr, 10)) : 0;
    }
};

bool is_keyword(const std::string& word) { return word.compare(0, KEYWORD_LENGTH, KEYWORD) == 0; }

/// Moves to the start of the next message. Its position, or that of the end of the file.
long find_message(std::FILE* file) {
    Words words{file, {}};
    for (int c = scan_space(file); c != EOF; c = scan_space(file)) {
        const long start = c == KEYWORD[0] ? std::ftell(file) : 0;
        words.next();
        if (!is_keyword(words.w)) continue;
        std::fseek(file, start, SEEK_SET);
        return start;
    }
    return std::ftell(file);
}

/// The first word of a message, without the keyword.
bool first_word(Words& words) {
    if (!words.next()) return false;
    if (!is_keyword(words.w)) return true;
    words.w.erase(0, KEYWORD_LENGTH);
    return !words.w.empty() || words.next();
}

int full_year(int year) { return year < 50 ? 2000 + year : 1900 + year; }

bool read_date(Words& words, Date* date) {
    if (words.starts('6')) {
        date->year = full_year(words.digits(1, 2));
        date->month = words.digits(3, 2);
        if (!words.next()) return false;
    }
    if (words.starts('7')) {
        date->day = words.digits(1, 2);
        date->hour = words.digits(3, 2);
        if (!words.next()) return false;
    }
    return true;
}

void take_variable(int var, GRD_report* grd) {
    Grid_files& state = grid_files();
    if (var != WIND) {
        state.wind_dec = 0;
    } else {
        state.wind_dec = state.wind_dec == 1 ? 2 : 1;
    }
    grd->var = var + state.wind_dec;
}

/// Variable, level, date and time. False at the end of the file.
bool read_groups(Words& words, GRD_report* grd) {
    if (words.starts('1')) {
        take_variable(words.digits(1, 2), grd);
        if (!words.next()) return false;
    }
    if (words.starts('2')) {
        grd->ltype = LEVEL_PRESSURE;
        grd->level = words.digits(1, 2) * 10;
        if (!words.next()) return false;
    }
    if (words.starts('3')) {
        grd->level = words.digits(1, 2) * 10;
        grd->ltype = grd->level == 0 ? LEVEL_SEA : LEVEL_HEIGHT;
        if (!words.next()) return false;
    }
    if (!read_date(words, &grd->date)) return false;
    grd->time = 0;
    if (words.starts('8')) {
        grd->time = words.digits(2, 3);
        if (!words.next()) return false;
    }
    return !words.starts('0') || words.next();
}

bool read_packing(Words& words, int var, Packing* packing) {
    if (!words.next()) return false;
    if (words.starts('1')) {
        packing->sign_mode = words.digits(4, 1);
        if (!words.next()) return false;
    }
    if (words.starts('2')) {
        packing->digits = words.digits(1, 1) - (packing->sign_mode == 1 ? 1 : 0);
        if (!words.next()) return false;
    }
    if (!words.starts('3')) return true;
    packing->scale = SCALES[static_cast<std::size_t>(std::clamp(words.digits(1, 1), 0, 9))];
    float offset = 0.0F;
    if (words.w.size() > 2) {
        offset = std::strtof(words.w.c_str() + 2, nullptr);
        if (!std::isfinite(offset)) return false;
    } else if (!scan_float(words.file, &offset)) {
        return false;
    }
    packing->offset = (var == 4 ? -offset : offset) * packing->scale;
    return words.next();
}

void set_sector(int sector, Domain* domain) {
    DOM_init(domain);
    domain->proj = PROJ_LATLON;
    domain->nx = POINTS_X;
    domain->ny = POINTS_Y;
    domain->dx = SPACING;
    domain->dy = SPACING;
    if (sector < 1 || sector > static_cast<int>(SECTORS.size())) return;
    domain->clat = SECTORS[static_cast<std::size_t>(sector - 1)].lat;
    domain->clon = SECTORS[static_cast<std::size_t>(sector - 1)].lon;
}

/// `count` digits as a number. False if they aren't there.
bool take_digits(std::FILE* file, int count, int* value) {
    *value = 0;
    for (int i = 0; i < count; i++) {
        const int c = std::getc(file);
        if (c < '0' || c > '9') {
            if (c != EOF) std::ungetc(c, file);
            return false;
        }
        *value = *value * 10 + (c - '0');
    }
    return true;
}

/// One value; FMISS for what is no number.
float read_value(std::FILE* file, const Packing& packing, int wind) {
    int sign = 0;
    int value = 0;
    scan_space(file);
    if (packing.digits < 3 || packing.digits > 5) return FMISS;
    if (packing.sign_mode == 1 && !take_digits(file, 1, &sign)) return FMISS;
    if (!take_digits(file, packing.digits, &value)) return FMISS;
    scan_space(file);
    if (sign == 1 || packing.sign_mode == 3) value = -value;
    if (wind == 0) return packing.offset + static_cast<float>(value) * packing.scale;
    const double direction = value / 100 * RADIANS;
    const double speed = value % 100;
    return static_cast<float>((wind == 1 ? std::sin(direction) : std::cos(direction)) * -speed);
}

bool read_rows(Words& words, int sector, const Packing& packing, GRD_report* grd) {
    if (GRD_alloc(grd) == 0) return false;
    const int wind = grid_files().wind_dec;
    for (int j = 0; j < POINTS_Y; j++) {
        const int row = sector <= LAST_FROM_SOUTH ? POINTS_Y - 1 - j : j;
        float* values = &grd->grid[static_cast<std::size_t>(row) * POINTS_X];
        const bool uniform = words.starts('9');
        std::string skipped;
        if (!scan_word(words.file, skipped, WORD_LENGTH)) break;
        if (uniform) {
            std::fill_n(values, POINTS_X, read_value(words.file, packing, wind));
        } else {
            for (int i = 0; i < POINTS_X; i++) values[i] = read_value(words.file, packing, wind);
        }
        // Behind the last row stands the next message, which a search looks for from here.
        if (j + 1 < POINTS_Y && !words.next()) break;
    }
    return true;
}

/// The record at which the file stands. 0, or -1.
int read_record(std::FILE* file, GRD_report* grd, int rep_type) {
    Words words{file, {}};
    if (!first_word(words)) return -1;
    grd->grid.reset();
    grd->units.clear();
    grd->source = words.digits(0, 2);
    grd->model = grd->source;
    const int sector = words.digits(2, 3);
    grd->version = 1;
    grd->type = sector + GRID_NUMBER;
    grd->date.min = 0;
    grd->date.sec = 0;
    Packing packing;
    const bool header = words.next() && words.next() && words.next() && read_groups(words, grd) &&
                        read_packing(words, grd->var, &packing);
    if (!header) return -1;
    set_sector(sector, &grd->domain);
    if (rep_type != GRD_READ_ALL) return 0;
    GRD_make_datatype(grd, "");
    std::string label;
    Date date = grd->date;
    DATE_make_label_for(grd->time, grd->model, DATE_num_sec(&date), label);
    grd->datim = fit_text(label, GRD_DATIM_SIZE);
    if (sector < 1 || sector > static_cast<int>(SECTORS.size())) return 0;
    return read_rows(words, sector, packing, grd) ? 0 : -1;
}

/// Moves to record `wanted`, or to the next one for a number further ahead. Its number.
int step(GRD_file* gfile, int wanted) {
    Grid_files& state = grid_files();
    std::FILE* file = gfile->file.get();
    if (wanted < gfile->num || state.new_pos < 0) {
        grid_rewind(gfile);
        return 0;
    }
    if (wanted == gfile->num) {
        state.wind_dec = state.wind_before;
        std::fseek(file, state.cur_pos, SEEK_SET);
        return gfile->num;
    }
    std::fseek(file, state.new_pos, SEEK_SET);
    return gfile->num + 1;
}

}  // namespace

int message_getinfo(GRD_file* gfile, GRD_info* info) {
    Words words{gfile->file.get(), {}};
    find_message(words.file);
    DATE_init(&info->date);
    bool more = first_word(words) && words.next() && words.next() && words.next();
    for (const char digit : {'1', '2', '3'}) {
        if (more && words.starts(digit)) more = words.next();
    }
    if (more) read_date(words, &info->date);
    std::string label;
    DATE_make_label(&info->date, label);
    info->datim = fit_text(label, GRD_INFO_DATIM_SIZE);
    info->grid_type = 0;
    gfile->date = info->date;
    grid_files().new_pos = -1;
    grid_rewind(gfile);
    return 0;
}

int message_read(GRD_file* gfile, GRD_report* grd, int rep_type, int* grdnum) {
    Grid_files& state = grid_files();
    std::FILE* file = gfile->file.get();
    const int number = step(gfile, *grdnum);
    const int wind_before = state.wind_dec;
    const long start = find_message(file);
    if (read_record(file, grd, rep_type) != 0) {
        state.wind_dec = wind_before;
        return -1;
    }
    state.wind_before = wind_before;
    gfile->num = number;
    state.cur_pos = start;
    state.new_pos = find_message(file);
    *grdnum = number;
    return 0;
}

}  // namespace zav
