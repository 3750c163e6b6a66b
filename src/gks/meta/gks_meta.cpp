// Metafile output: the text record and CGM.

#include "gks/meta/gks_meta.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <limits>
#include <string_view>

#include "files/files.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/string.h"
#include "gks/gks_obj.h"
#include "gks/gks_out.h"
#include "gks/gks_tran.h"
#include "gks/gks_ws.h"

namespace zav {
namespace {

constexpr int META_DEPTH = 10;  // reported in place of a display's
constexpr int UNITS = 100;      // device units of a nominal inch
constexpr Gdevice_area NOMINAL_AREA = {0, 0, 10 * UNITS, 8 * UNITS};
constexpr int POINTS_A_LINE = 4;
constexpr int LONG_FORM = 31;           // length in an element's header that announces a word with the length
constexpr int LARGEST_POLYLINE = 8191;  // points whose bytes the 15 bits of that word can count

struct State {
    Gout_file out;
    int meta_type = GMETA_TEXT;
};
State state;

/// An element of the CGM's head, with the bytes behind its header word.
struct Element {
    int maj, min, len;
    std::string_view bytes;
};

using std::string_view_literals::operator""sv;

constexpr Element CGM_HEAD[] = {
    {0, 1, 0, ""sv},                                  // BEGIN METAFILE
    {1, 1, 2, "\x00\x01"sv},                          // METAFILE VERSION
    {1, 2, 11, "\x0AZAVCGM-1.0\x00"sv},               // METAFILE DESCRIPTION
    {1, 11, 6, "\x00\x01\xFF\xFF\x00\x01"sv},         // METAFILE ELEMENT LIST
    {1, 9, 1, "\xFF\x00"sv},                          // MAXIMUM COLOUR INDEX
    {2, 6, 8, "\x00\x00\x00\x00\x27\x10\x1F\x40"sv},  // VDC EXTENT
    {0, 3, 0, ""sv},                                  // BEGIN PICTURE
    {0, 4, 0, ""sv},                                  // BEGIN PICTURE BODY
};

void put_word(int value) {
    const auto word = static_cast<std::uint16_t>(value);
    const std::array<unsigned char, 2> bytes = {static_cast<unsigned char>(word >> 8),
                                                static_cast<unsigned char>(word & 0xFF)};
    state.out.write(bytes.data(), bytes.size());
}

/// A place beyond all floats lies as far out as one can, so that other readers find a number.
double held_finite(float value) {
    constexpr float most = std::numeric_limits<float>::max();
    return std::isnan(value) ? 0 : static_cast<double>(std::clamp(value, -most, most));
}

void put_coordinate(float value) { put_word(std::clamp(gtruncate(value), -32767, 32767)); }

void write_text_head() {
    gmeta_printf("ZAVMETA\n");
    gmeta_printf("#Title: ZAV Graphics Display: %s\n", gout_line(gget_win_title()).c_str());
    gmeta_printf("#Creator: ZAV Metafile Processor-1.0\n");
    const std::time_t now = std::time(nullptr);
    const char* date = std::ctime(&now);
    gmeta_printf("#CreationDate: %s", date != nullptr ? date : "\n");
}

void write_cgm_head() {
    for (const Element& element : CGM_HEAD) {
        gcgm_control(element.maj, element.min, element.len, 0);
        state.out.write(element.bytes);
    }
}

void read_parameters(const std::vector<std::string>& words) {
    for (std::size_t i = 1; i < words.size(); ++i) {
        if (stricmp(words[i], "cgm") == 0) state.meta_type = GMETA_CGM;
        if (stricmp(words[i], "zav") == 0) state.meta_type = GMETA_TEXT;
    }
}

/// Geometry in nominal inches: size and offset, size alone, or offset alone.
void read_inches(const char* text, Gdevice_area* area) {
    const auto units = [](int inches) { return gtruncate(static_cast<double>(UNITS) * inches); };
    int width = 0;
    int height = 0;
    int x = 0;
    int y = 0;
    const int count = std::sscanf(text, "%dx%d%d%d", &width, &height, &x, &y);
    if (count >= 2) {
        area->width = units(width);
        area->height = units(height);
    }
    if (count == 4 || (count < 2 && std::sscanf(text, "%d%d", &x, &y) == 2)) {
        area->x = units(x);
        area->y = units(y);
    }
}

Gdevice_area drawing_area() {
    Gdevice_area area = NOMINAL_AREA;
    const char* geometry = RES_get("geometry");
    if (geometry != nullptr && !gws_panel_geometry(geometry, &area)) read_inches(geometry, &area);
    area.width = std::max(area.width, 2);
    area.height = std::max(area.height, 2);
    return area;
}

}  // namespace

std::string gmeta_file_name(const std::vector<std::string>& words) {
    if (!words.empty() && !words[0].empty()) return words[0];
    if (const char* name = std::getenv("zavmeta_out"); name != nullptr && *name != '\0') return name;
    return state.meta_type == GMETA_CGM ? "zav.cgm" : "zav.meta";
}

int gmeta_open(const std::vector<std::string>& words) {
    gset_cache(0);
    gset_redraw(0);
    read_parameters(words);
    gset_area(drawing_area());
    gset_win_type(GWS_META);
    gset_win_depth(META_DEPTH);
    if (!gmeta_open_file(gmeta_file_name(words))) {
        gerr_printf("gopen_ws", "unable to open metafile\n");
        return -1;
    }
    gmeta_init_file();
    return 0;
}

void gmeta_set_type(int type) { state.meta_type = type; }
int gmeta_get_type() { return state.meta_type; }

bool gmeta_open_file(const std::string& filename) {
    if (FILE_is_stdio(filename)) MESS_use_stderr();
    MESS_print(MESS_PROGRESS, "Creating metafile: %s\n", filename.c_str());
    return state.out.open(filename);
}

void gmeta_init_file() {
    if (state.meta_type == GMETA_CGM) {
        write_cgm_head();
    } else {
        write_text_head();
    }
}

void gmeta_new_picture() {
    gmeta_printf("PICTURE\n");
    if (state.meta_type != GMETA_CGM) return;
    gcgm_control(0, 5, 0, 0);  // END PICTURE
    gcgm_control(0, 3, 0, 0);
    gcgm_control(0, 4, 0, 0);
}

void gmeta_keep() { state.out.keep(); }

void gmeta_break_off() {
    if (state.out.kept()) {
        gmeta_close_file();
    } else {
        state.out.abandon();
    }
}

int gmeta_close_file() {
    if (!state.out.is_open()) return -1;
    if (state.meta_type == GMETA_CGM && !state.out.appended()) gcgm_control(0, 5, 0, 0);
    if (!state.out.close("gmeta_close_file")) return -1;
    MESS_print(MESS_PROGRESS, "Created metafile\n");
    return 0;
}

void gmeta_printf(const char* mess, ...) {
    if (state.meta_type != GMETA_TEXT || !state.out.is_open()) return;
    std::va_list args;
    va_start(args, mess);
    state.out.vprintf(mess, args);
    va_end(args);
}

void gmeta_points(Gint num_pt, const Gpt* array_pt, bool last_break) {
    for (int i = 0; i < num_pt; ++i) {
        gmeta_printf("%f,%f ", held_finite(array_pt[i].x), held_finite(array_pt[i].y));
        const bool fourth = i % POINTS_A_LINE == POINTS_A_LINE - 1;
        if (fourth && (last_break || i < num_pt - 1)) gmeta_printf("\n   ");
    }
}

int gcgm_control(int maj, int min, int len, int param) {
    if (!state.out.is_open()) return -1;
    put_word((maj & 0xF) << 12 | (min & 0x7F) << 5 | (len & 0x1F));
    if (param > 0 || len == LONG_FORM) put_word(param);
    return 0;
}

void gcgm_polyline(Gint num_pt, const Gpt* array_pt) {
    // A list too long for one element goes on in a further one, from the point where the first ends.
    for (int start = 0; start < num_pt - 1; start += LARGEST_POLYLINE - 1) {
        const int count = std::min(num_pt - start, LARGEST_POLYLINE);
        if (gcgm_control(4, 1, LONG_FORM, 4 * count) != 0) return;
        for (int i = 0; i < count; ++i) gcgm_point(array_pt[start + i].x, array_pt[start + i].y);
    }
}

void gcgm_point(float x, float y) { gcgm_ps_point(xW_ps(x), yW_ps(y)); }

void gcgm_ps_point(float x, float y) {
    put_coordinate(x);
    put_coordinate(y);
}

void gcgm_set_color(int) {}
void gcgm_set_fill_color(int) {}
void gcgm_set_width(int, float) {}
void gcgm_set_type(int) {}

}  // namespace zav
