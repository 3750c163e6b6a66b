// HPGL output: the file, the state of the pen, and paths.

#include "gks/hpgl/gks_hpgl.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdarg>
#include <string_view>

#include "files/files.h"
#include "frame/mess.h"
#include "gks/gks_colr.h"
#include "gks/gks_out.h"
#include "gks/gks_tran.h"
#include "gks/gks_ws.h"
#include "gks/ps/gks_ps.h"

namespace zav {
namespace {

constexpr float BLACK = 0.0F;
constexpr float WHITE = 1.0F;
constexpr float UNKNOWN = -1.0F;  // grey that another plot has left

constexpr std::string_view PCL_START = "\033E\033%1B\033&l1O\n";  // reset, enter HP-GL/2, landscape page
constexpr std::string_view PCL_END = "\033%0A\033E";              // back to PCL, reset, which puts the page out
constexpr std::string_view PLOT_END = "SP;PG;\n";

struct State {
    Gout_file out;
    std::string ending;       ///< of a file that is added to, as it was
    int pcl = 1;              ///< 0 bare HP-GL/2, 1 PCL wrapper, 2 PCL wrapper and a turn by 90 degrees
    float gray_level = 0;     ///< present pen grey, 0 black, 1 white
    float fill_level = 0;     ///< present fill grey
    float base_width = 0.2F;  ///< mm of line width 1
    float line_width = 1;     ///< last one written, as a multiple of base_width
    int line_type = 1;        ///< last one written
    int pr_color = 0;         ///< colour asked for
    int pr_rev = 0;           ///< reversed greys asked for
    int pr_rot = 0;           ///< degrees
    float pr_scale = 1;
};
State state;

/// Of a page just begun: a solid black pen of line width 1, black areas.
void reset_pen(float fill_level) {
    state.gray_level = BLACK;
    state.fill_level = fill_level;
    state.line_width = 1;
    state.line_type = 1;
}

// White is transparent on a printer that has just been reset: what is to cover something would leave it to be seen.
void write_pen() {
    ghpgl_printf("PW%.1f;SV;LT;\n", static_cast<double>(state.base_width));
    ghpgl_printf("TR0;\n");
}

void begin_page() {
    if (state.pcl != 0) state.out.write(PCL_START);
    ghpgl_printf("IN;SP1;PA;\n");
    if (state.pcl == 2) ghpgl_printf("RO90;\n");
    if (state.pr_rot == 90 || state.pr_rot == 180 || state.pr_rot == 270) ghpgl_printf("RO%d;\n", state.pr_rot);
    reset_pen(BLACK);
    write_pen();
}

void end_page() {
    state.out.write(PLOT_END);
    if (state.pcl != 0) state.out.write(PCL_END);
}

/// A plot that is added goes in front of what ends the last page, so that it is drawn on that page, by the pen that is
/// still selected. A file that this program hasn't ended gets a page of its own behind what it holds, as it does for
/// each of several pages.
void find_ending() {
    state.ending.clear();
    if (gget_pages()) return;
    const std::string text = state.out.end_of_file(PLOT_END.size() + PCL_END.size());
    const std::string wrapped = std::string(PLOT_END) + std::string(PCL_END);
    for (const std::string& ending : {wrapped, std::string(PLOT_END)}) {
        if (!text.ends_with(ending)) continue;
        state.ending = ending;
        state.out.cut_end(ending.size());
        return;
    }
}

/// A coordinate as printf's "%.0f" has it, without its cost, as a page holds tens of thousands of them.
char* put_number(char* at, char* end, float value) { return std::to_chars(at, end, std::lrint(value)).ptr; }

void put_point(std::string_view action, float x, float y) {
    std::array<char, 64> text;                        // an action and two whole numbers
    char* const end = text.data() + text.size() - 2;  // room for what stands behind the numbers
    char* at = std::copy(action.begin(), action.end(), text.data());
    at = put_number(at, end, x);
    *at++ = ',';
    at = put_number(at, end, y);
    *at++ = ';';
    state.out.write(text.data(), static_cast<std::size_t>(at - text.data()));
}

/// Grey of a colour as an area has it.
float fill_gray(int color) {
    float level = 0;
    return gis_pseudo_gray(color, &level) ? level : gps_get_gray(color);
}

}  // namespace

void ghpgl_init() {
    state.pcl = 1;
    reset_pen(BLACK);
}

bool ghpgl_open_file(const std::string& filename) {
    if (FILE_is_stdio(filename)) MESS_use_stderr();
    gout_tell(filename);
    if (!state.out.open(filename)) return false;
    find_ending();
    return true;
}

void ghpgl_init_file() {
    if (state.ending.empty()) {
        begin_page();
        return;
    }
    reset_pen(UNKNOWN);
    write_pen();
}

void ghpgl_new_page() {
    if (!gget_pages() || !state.out.is_open()) return;
    end_page();
    begin_page();
}

int ghpgl_close_file() {
    if (!state.out.is_open()) return -1;
    if (state.ending.empty()) {
        end_page();
    } else {
        state.out.write(state.ending);
    }
    if (!state.out.close("ghpgl_close_file")) return -1;
    MESS_print(MESS_PROGRESS, "Created HPGL file\n");
    return 0;
}

void ghpgl_keep() { state.out.keep(); }

void ghpgl_break_off() {
    if (state.out.kept()) {
        ghpgl_close_file();
    } else {
        state.out.abandon();
    }
}

void ghpgl_set_pcl(int pcl) { state.pcl = pcl; }
void ghpgl_set_rotate(int degrees) { state.pr_rot = degrees; }
void ghpgl_set_base_width(float width) { state.base_width = width; }
void ghpgl_set_scale(float scale) { state.pr_scale = scale; }
void ghpgl_set_colorPS(int color) { state.pr_color = color; }
int ghpgl_get_colorPS() { return state.pr_color; }
void ghpgl_set_reverse(int reverse) { state.pr_rev = reverse; }

void ghpgl_set_color(int color) {
    float level = BLACK;
    gis_pseudo_gray(color, &level);
    if (state.gray_level == level) return;
    state.gray_level = level;
    ghpgl_printf(level == BLACK ? "SV;\n" : level == WHITE ? "SV1,0;\n" : "SV1,30;\n");
}

void ghpgl_set_fill_color(int color) {
    if (gget_fill_print_solid()) {
        ghpgl_printf("FT1;\n");
        state.fill_level = BLACK;
        return;
    }
    const float gray = color == GCOLR_BACK ? WHITE : fill_gray(color);
    if (state.fill_level == gray) return;
    state.fill_level = gray;
    ghpgl_printf("FT10,%.0f;\n", 100.0 - 100.0 * static_cast<double>(gray));
}

void ghpgl_set_width(int color, float width) {
    if (width == 0) width = 1;
    const int factor = gpseudo_width(color);
    const float multiple = static_cast<float>(factor == 1 ? gget_line_print_bold() : factor) * width;
    if (multiple == state.line_width) return;
    ghpgl_printf("PW%.1f;\n", static_cast<double>(state.base_width * multiple));
    state.line_width = multiple;
}

void ghpgl_set_type(int type) {
    if (type == state.line_type) return;
    state.line_type = type;
    // Pattern, its length in mm, and the mode that takes the length so.
    constexpr std::array<const char*, 5> types = {"LT", "LT2,5,1", "LT5,8,1", "LT6,10,1", "LT2,1,1"};
    if (type >= 1 && type <= static_cast<int>(types.size())) ghpgl_printf("%s;\n", types[type - 1]);
}

void ghpgl_printf(const char* format, ...) {
    if (!state.out.is_open()) return;
    std::va_list args;
    va_start(args, format);
    state.out.vprintf(format, args);
    va_end(args);
}

void ghpgl_move(float x, float y) { ghpgl_move_abs(xW_ps(x), yW_ps(y)); }
void ghpgl_line(float x, float y) { ghpgl_line_abs(xW_ps(x), yW_ps(y)); }
void ghpgl_move_abs(float x, float y) { put_point("PU", x, y); }
void ghpgl_line_abs(float x, float y) { put_point("PD", x, y); }

void ghpgl_clip(float left, float bottom, float right, float top) {
    const auto whole = [](float value) { return std::lrint(value); };
    ghpgl_printf("IW %ld,%ld,%ld,%ld;\n", whole(left), whole(bottom), whole(right), whole(top));
}

}  // namespace zav
