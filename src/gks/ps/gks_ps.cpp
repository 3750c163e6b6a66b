// PostScript output: the file, the state of the page, and paths.

#include "gks/ps/gks_ps.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdarg>
#include <ctime>
#include <string>
#include <string_view>

#include "files/files.h"
#include "frame/mess.h"
#include "gks/gks_colr.h"
#include "gks/gks_out.h"
#include "gks/gks_tran.h"
#include "gks/gks_ws.h"

namespace zav {
namespace {

constexpr float BLACK = 0.0F;
constexpr float WHITE = 1.0F;
constexpr float SMALLEST_BASE = 0.001F;  // dots; stands for a base width of none
constexpr int NO_COLOR = -9999;

/// A box on the page in whole points.
struct Gps_box {
    int left = 0, bottom = 0, right = 0, top = 0;
};

/// What ends the last page of a file: enough bytes for any of the program's own endings.
constexpr std::size_t LONGEST_ENDING = 256;
constexpr std::string_view ENDING_START = "%%End of plot\n";

struct State {
    Gout_file out;
    std::string ending;  ///< of a file that is added to, as it was
    int pages = 0;       ///< pages begun in a file of several, 0 in a file of one
    Gps_box box;         ///< what an EPS file says that it paints
    int pr_color = 0;    ///< colour output; else grey
    int pr_rev = 0;      ///< reverse the grey scale
    int pr_port = 0;     ///< portrait; else landscape
    int pr_eps = 0;
    float pr_scale = 1;
    float sx = 11, sy = 8.5F;  ///< paper, inches
    float base_width = 1;      ///< dots of line width 1
    float line_width = 1;      ///< last one written, as a multiple of base_width
    int line_type = 1;         ///< last one written
    std::array<float, GCOLR_COUNT> gray{};
    float gray_level = 0;  ///< present grey, -1 while in colour
    int ps_col_ind = -1;   ///< present colour index
};
State state;

bool in_table(int ind) { return ind >= 0 && ind < GCOLR_COUNT; }

void set_gray(float level, const char* text) {
    if (state.gray_level == level) return;
    gps_printf("%s setgray\n", text);
    state.gray_level = level;
}

/// Black, white or grey 0.7. False for a colour of the table.
bool set_pseudo_color(int color) {
    float level = 0;
    if (!gis_pseudo_gray(color, &level)) return false;
    set_gray(level, level == BLACK ? "0" : level == WHITE ? "1" : ".7");
    return true;
}

void set_rgb(int color) {
    if (color == state.ps_col_ind && state.gray_level < 0) return;
    float red = 0;
    float grn = 0;
    float blu = 0;
    gget_color_rgb(color, &red, &grn, &blu);
    gps_printf("%4.2f %4.2f %4.2f setrgbcolor\n", red, grn, blu);
    state.ps_col_ind = color;
    state.gray_level = -1;
}

// The file's pen is one dot wide, whatever line width 1 stands for.
void write_initial_width() {
    gps_printf("1 dot lw\n");
    state.line_width = 1 / std::max(state.base_width, SMALLEST_BASE);
}

void write_initial_color() { gps_printf(state.pr_color ? "0 0 0 setrgbcolor\n" : "0 setgray\n"); }

void write_plot_line() { gps_printf("%%%%ZAV Plot: %s\n", gout_line(gget_win_title()).c_str()); }

void write_comments() {
    const bool pages = gget_pages();
    if (state.pr_eps) {
        const Gps_box& box = state.box;
        gps_printf("%%!PS-Adobe-3.0 EPSF-3.0\n");
        gps_printf("%%%%BoundingBox: %d %d %d %d\n", box.left, box.bottom, box.right, box.top);
    } else {
        gps_printf(pages ? "%%!PS-Adobe-3.0\n" : "%%!PS-Adobe-1.0\n");
    }
    gps_printf("%%%%Title: ZAV Graphics Display: %s\n", gout_line(gget_win_title()).c_str());
    gps_printf("%%%%Creator: ZAV Postscript Processor-2.0\n");
    const std::time_t now = std::time(nullptr);
    const char* date = std::ctime(&now);
    gps_printf("%%%%CreationDate: %s", date != nullptr ? date : "\n");
    if (pages) gps_printf("%%%%Pages: (atend)\n");
    gps_printf("%%%%EndComments\n");
}

void write_abbreviations() {
    gps_printf("/inch {72 mul} def\n");
    gps_printf("/dot {.33 mul} def\n");
    gps_printf("/mv {moveto} def\n");
    gps_printf("/ln {lineto} def\n");
    gps_printf("/lw {setlinewidth} def\n");
    gps_printf("/np {newpath} def\n");
    gps_printf("/cp {closepath} def\n");
}

void write_dictionary() {
    if (gget_pages()) {
        gps_printf("%%%%BeginProlog\n30 dict begin\n");
        write_abbreviations();
        gps_printf("%%%%EndProlog\n");
        return;
    }
    gps_printf("%%%%Postscript initialization\n");
    if (!state.pr_eps) gps_printf("30 dict begin\n/saveobj save def\n");
    write_abbreviations();
}

void write_origin() {
    if (!state.pr_port) {
        gps_printf("90 rotate\n");
        if (state.pr_eps) {
            gps_printf("0. inch -%.2f inch translate\n", state.sy);
        } else {
            gps_printf(".25 inch -%.2f inch translate\n", state.sy - 0.25);
        }
    } else if (!state.pr_eps) {
        gps_printf(".25 inch .25 inch translate\n");
    }
}

/// What each page begins with: its axes and the state of the pen.
void begin_page() {
    if (gget_pages()) {
        ++state.pages;
        gps_printf("%%%%Page: %d %d\n/saveobj save def\n", state.pages, state.pages);
    }
    write_origin();
    write_initial_color();
    gps_printf("2 setlinejoin\n");
    write_initial_width();
    gps_printf("[] 0 setdash\n");
    if (state.pr_scale != 1) gps_printf("%.2f %.2f scale\n", state.pr_scale, state.pr_scale);
    gps_printf("%%%%Begin plot\n");
    write_plot_line();
}

void end_page() {
    state.out.write(ENDING_START);
    if (!state.pr_eps) gps_printf("saveobj restore\n");
    gps_printf("showpage\n");
}

void end_file() {
    if (gget_pages()) gps_printf("%%%%Trailer\n%%%%Pages: %d\n", state.pages);
    if (!state.pr_eps) gps_printf("end\n");
    gps_printf("%%%%EOF\n");
}

/// A plot that is added goes in front of what ends the last page, so that it is painted on that page. A file that this
/// program hasn't ended gets a page of its own behind what it holds, as it does for each of several pages.
void find_ending() {
    state.ending.clear();
    if (gget_pages()) return;
    const std::string text = state.out.end_of_file(LONGEST_ENDING);
    const std::size_t start = text.rfind(ENDING_START);
    if (start == std::string::npos || !text.ends_with("%%EOF\n")) return;
    if (text.find("showpage\n", start) == std::string::npos) return;
    state.ending = text.substr(start);
    state.out.cut_end(state.ending.size());
}

/// A number with two decimals at `at`; the place behind it. A hundred times a float is exact in a double, so rounding
/// that to even gives the digits of printf's "%.2f".
char* put_number(char* at, char* end, float value) {
    constexpr float most = 1e7F;
    if (!(std::fabs(value) < most)) return std::to_chars(at, end, value, std::chars_format::fixed, 2).ptr;
    const auto hundredths = static_cast<int>(std::nearbyint(std::fabs(static_cast<double>(value)) * 100.0));
    if (std::signbit(value)) *at++ = '-';
    at = std::to_chars(at, end, hundredths / 100).ptr;
    *at++ = '.';
    *at++ = static_cast<char>('0' + hundredths / 10 % 10);
    *at++ = static_cast<char>('0' + hundredths % 10);
    return at;
}

/// A point and its operator: the text of printf's "%3.2f %3.2f", made without its cost, as a page holds tens of
/// thousands of them.
void put_point(float x, float y, std::string_view action) {
    constexpr std::size_t longest = 48;  // digits of the largest float, its decimals and sign
    std::array<char, 2 * longest> text;
    char* const end = text.data() + text.size();
    char* at = put_number(text.data(), end, x);
    *at++ = ' ';
    at = put_number(at, end, y);
    at = std::copy(action.begin(), action.end(), at);
    state.out.write(text.data(), static_cast<std::size_t>(at - text.data()));
}

}  // namespace

bool gps_open_file(const std::string& filename) {
    if (FILE_is_stdio(filename)) MESS_use_stderr();
    gout_tell(filename);
    if (!state.out.open(filename)) return false;
    find_ending();
    return true;
}

void gps_init() {
    state.gray_level = 0;
    state.ps_col_ind = -1;
    state.line_width = 1;
    state.line_type = 1;  // the file's head sets solid lines
}

void gps_init_file() {
    if (!state.ending.empty()) {
        write_initial_color();
        write_initial_width();
        gps_printf("[] 0 setdash\n");
        write_plot_line();
        return;
    }
    if (gget_pages() && state.pr_eps) {
        MESS_print(MESS_WARN, "gps_init_file: An EPS file has one page: plain PostScript is written\n");
        state.pr_eps = 0;
    }
    state.pages = 0;
    write_comments();
    write_dictionary();
    begin_page();
}

void gps_new_page() {
    if (!gget_pages() || !state.out.is_open()) return;
    end_page();
    gps_init();
    begin_page();
}

void gps_keep() { state.out.keep(); }

void gps_break_off() {
    if (state.out.kept()) {
        gps_close_file();
    } else {
        state.out.abandon();
    }
}

int gps_close_file() {
    if (!state.out.is_open()) return -1;
    if (state.ending.empty()) {
        end_page();
        end_file();
    } else {
        state.out.write(state.ending);
    }
    if (!state.out.close("gps_close_file")) return -1;
    MESS_print(MESS_PROGRESS, "Created Postscript file\n");
    return 0;
}

void gps_set_box(const Gdevice_area& area, const Gdevice_area& paper) {
    const auto scale = static_cast<double>(state.pr_scale);
    const double left = scale * std::min(area.x, paper.x);
    const double bottom = scale * std::min(area.y, paper.y);
    const double right = scale * std::max(area.x + area.width, paper.x + paper.width);
    const double top = scale * std::max(area.y + area.height, paper.y + paper.height);
    const auto down = [](double value) { return gtruncate(std::floor(value)); };
    const auto up = [](double value) { return gtruncate(std::ceil(value)); };
    // A sheet that lies on its side is turned: its upper edge is the page's left one.
    const double edge = 72 * std::round(100.0 * static_cast<double>(state.sy)) / 100;
    if (state.pr_port) {
        state.box = {down(left), down(bottom), up(right), up(top)};
    } else {
        state.box = {down(edge - top), down(left), up(edge - bottom), up(right)};
    }
}

void gps_set_size(float x, float y) {
    state.sx = x;
    state.sy = y;
}

void gps_set_EPS(int eps) { state.pr_eps = eps; }
void gps_set_orient(int portrait) { state.pr_port = portrait; }
void gps_set_scale(float scale) { state.pr_scale = scale; }
void gps_set_colorPS(int color) { state.pr_color = color; }
int gps_get_colorPS() { return state.pr_color; }
void gps_set_reverse(int reverse) { state.pr_rev = reverse; }
void gps_set_base_width(int width) { state.base_width = static_cast<float>(width); }

void gps_set_color_rep(int ind, float red, float green, float blue) {
    if (!in_table(ind)) return;
    const float gray = static_cast<float>((0.9 * red + green + 0.8 * blue) / 2.7);
    state.gray[ind] = state.pr_rev ? 1 - gray : gray;
    if (ind == state.ps_col_ind) state.ps_col_ind = NO_COLOR;  // the next use writes its new components
}

float gps_get_gray(int ind) { return in_table(ind) ? state.gray[ind] : 0; }

void gps_set_color(int color) {
    if (set_pseudo_color(color)) return;
    if (state.pr_color) {
        set_rgb(color);
    } else {
        set_gray(BLACK, "0");
    }
}

void gps_set_fill_color(int color) {
    if (state.pr_color) {
        if (!set_pseudo_color(color)) set_rgb(color);
        return;
    }
    if (gget_fill_print_solid()) {
        gps_printf("0 setgray\n");
        state.gray_level = 0;
        return;
    }
    if (color == GCOLR_BACK) {
        set_gray(WHITE, "1");
        return;
    }
    if (set_pseudo_color(color)) return;
    const float gray = gps_get_gray(color);
    if (gray == state.gray_level) return;
    gps_printf("%3.3f setgray\n", gray);
    state.gray_level = gray;
}

void gps_set_width(int color, float width) {
    const int factor = gpseudo_width(color);
    const float multiple = factor == 1 ? static_cast<float>(gget_line_print_bold()) : static_cast<float>(factor);
    if (multiple * width == state.line_width) return;
    const float dots = multiple * state.base_width * width;
    if (factor == 1) {
        gps_printf("%2.1f dot lw\n", dots);
    } else {
        gps_printf("%d dot lw\n", gtruncate(dots));
    }
    state.line_width = multiple * width;
}

void gps_set_type(int type) {
    if (type == state.line_type) return;
    state.line_type = type;
    constexpr std::array<const char*, 5> dashes = {"[]", "[6]", "[3 6]", "[6 6 3 6]", "[2]"};
    if (type >= 1 && type <= static_cast<int>(dashes.size())) gps_printf("%s 0 setdash\n", dashes[type - 1]);
}

void gps_printf(const char* format, ...) {
    if (!state.out.is_open()) return;
    std::va_list args;
    va_start(args, format);
    state.out.vprintf(format, args);
    va_end(args);
}

void gps_move(float x, float y) { gps_move_abs(xW_ps(x), yW_ps(y)); }
void gps_line(float x, float y) { gps_line_abs(xW_ps(x), yW_ps(y)); }
void gps_move_abs(float x, float y) { put_point(x, y, " mv\n"); }
void gps_line_abs(float x, float y) { put_point(x, y, " ln\n"); }

void gps_clip(float left, float bottom, float right, float top) {
    gps_printf("initclip\n");
    gps_printf("np\n");
    gps_move_abs(left, bottom);
    gps_line_abs(left, top);
    gps_line_abs(right, top);
    gps_line_abs(right, bottom);
    gps_printf("cp\n");
    gps_printf("clip\n");
}

}  // namespace zav
