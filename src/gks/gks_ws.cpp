// The door to every workstation: opening, closing, and the settings that all of them share.

#include "gks/gks_ws.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

#include "frame/string.h"
#include "gks/cairo/gks_cairo.h"
#include "gks/gks_colr.h"
#include "gks/gks_evnt.h"
#include "gks/gks_loop.h"
#include "gks/gks_obj.h"
#include "gks/gks_text.h"
#include "gks/gks_tran.h"
#include "gks/hpgl/gks_hpgl.h"
#include "gks/meta/gks_meta.h"
#include "gks/ps/gks_ps.h"
#include "gks/x11/gks_x11.h"

namespace zav {
namespace {

constexpr std::size_t NAME_SIZE = 21;
constexpr std::size_t TITLE_SIZE = 61;
constexpr std::size_t GEOMETRY_SIZE = 41;
constexpr int CURSOR_WAIT = 8;
constexpr int MODE_CLEAR = 1;

struct State {
    int open_graphics = 0;
    int win_width = 640, win_height = 512;  // drawing area, device units
    int win_x = 0, win_y = 0;               // offset of the plot in the device
    int depth = 0;                          // bits of a pixel
    bool pages = false;                     // print output holds several pages
    std::string prog_name = "X11_Graph";
    std::string win_title = "X11_Graph";
    std::string geometry;
    std::string page_title;
};
State state;

struct Paper {
    const char* name;
    float sx, sy;  // inches
};

constexpr Paper PAPERS[] = {
    {"letter", 11.0F, 8.5F}, {"legal", 14.0F, 8.5F}, {"11x17", 17.0F, 11.0F}, {"a4", 11.69F, 8.26F},
    {"a3", 16.54F, 11.69F},  {"a2", 23.39F, 16.54F}, {"a1", 33.11F, 23.39F},  {"b4", 14.33F, 10.12F},
    {"b3", 20.27F, 14.33F},  {"b2", 28.66F, 20.27F}, {"b1", 40.55F, 28.66F},  {"ansid", 34.0F, 22.0F},
};

bool print_as_hpgl() {
    const char* print = std::getenv("zavprint");
    return print != nullptr && stricmp(print, "hpgl") == 0;
}

int open_device(Gws_type type, const std::vector<std::string>& words) {
    switch (type) {
        case GWS_WIN:
        case GWS_PIX:
            return gx11_open(type, words);
        case GWS_META:
            return gmeta_open(words);
        case GWS_PS:
            return gps_open(words);
        case GWS_HPGL:
            return ghpgl_open(words);
        case GWS_CAIRO:
            return gcairo_open(words);
        default:
            gerr_printf("gopen_ws", "unknown workstation type: %d\n", type);
            return -1;
    }
}

/// The code that a workstation type has in ginit_plot.
int init_code(Gws_type type) {
    switch (type) {
        case GWS_PS:
        case GWS_CAIRO:
            return 2;
        case GWS_HPGL:
            return 3;
        case GWS_META:
            return 4;
        default:
            return 0;
    }
}

/// Geometry in hundredths of an inch: size and offset, size alone, or offset alone.
void read_hundredths(const std::string& text, Gdevice_area* area) {
    constexpr double points_per_hundredth = 0.72;
    const auto points = [](int hundredths) { return gtruncate(points_per_hundredth * hundredths); };
    int width = 0;
    int height = 0;
    int x = 0;
    int y = 0;
    const int count = std::sscanf(text.c_str(), "%dx%d%d%d", &width, &height, &x, &y);
    if (count >= 2) {
        area->width = points(width);
        area->height = points(height);
    }
    if (count == 4 || (count < 2 && std::sscanf(text.c_str(), "%d%d", &x, &y) == 2)) {
        area->x = points(x);
        area->y = points(y);
    }
}

float hold(float value, float low, float high) { return value < low ? low : value > high ? high : value; }

}  // namespace

int gopen_ws(Gint, const Gconn_id& conn_id, Gws_type ws_type) {
    if (ws_type == GWS_PS && print_as_hpgl()) ws_type = GWS_HPGL;
    state.page_title.clear();
    if (open_device(ws_type, parse_string(conn_id, ',')) != 0) return -1;
    state.open_graphics = 1;
    ginit_objs();
    ginit_plot(init_code(ws_type));
    gsetup_fonts();
    ginit_background();
    if (gtype_is_PIX(ws_type) && gget_pix_mode() == MODE_CLEAR) gclear_frame(-3);
    if (gtype_is_WIN_PIX(ws_type)) {
        gsync();
        gcheck_event();
    }
    gset_cursor(CURSOR_WAIT);
    return 0;
}

int gclose_ws(Gint) {
    if (!state.open_graphics) return -1;
    const int type = gget_win_type();
    state.win_width = 0;
    state.win_height = 0;
    int result = 0;
    switch (type) {
        case GWS_WIN:
        case GWS_PIX:
            gx11_close();
            if (type == GWS_WIN) gclear_objs();
            break;
        case GWS_META:
            result = gmeta_close_file();
            break;
        case GWS_PS:
            result = gps_close_file();
            break;
        case GWS_HPGL:
            result = ghpgl_close_file();
            break;
        case GWS_CAIRO:
            result = gcairo_close();
            break;
        default:
            break;
    }
    state.open_graphics = 0;
    return result;
}

void gset_pages(bool pages) { state.pages = pages; }
bool gget_pages() { return state.pages; }

void gnew_page() {
    if (!state.open_graphics) return;
    const int type = gget_win_type();
    if (gtype_is_PS(type)) gps_new_page();
    if (gtype_is_HPGL(type)) ghpgl_new_page();
    if (gtype_is_META(type)) gmeta_new_picture();
    if (gtype_is_CAIRO(type)) gcairo_new_page();
    if (gtype_is_PAGE(type) || gtype_is_META(type)) gtran_clip();
    state.page_title.clear();
}

void gkeep_output() {
    gps_keep();
    ghpgl_keep();
    gmeta_keep();
    gcairo_keep();
}

void gbreak_off() {
    gps_break_off();
    ghpgl_break_off();
    gmeta_break_off();
    gcairo_break_off();
    state.open_graphics = 0;
}

int gclear_ws(Gint, Gclear_flag) {
    if (!gtype_is_WIN(gget_win_type())) return 0;
    gclear_frame(-3);
    gclear_objs();
    return 0;
}

int gchk_graphics() { return state.open_graphics; }

Gint gget_ws_id() { return 1; }

void gset_win_size(int width, int height) {
    state.win_width = width;
    state.win_height = height;
    ginit_tran(10);
}

void gget_win_size(int* width, int* height) {
    *width = state.win_width;
    *height = state.win_height;
}

int gget_window_width() { return state.win_width; }
int gget_window_height() { return state.win_height; }

void gset_xsize(int width, int height) {
    state.win_width = width;
    state.win_height = height;
    if (gget_root_window() != 0) gresize_window(width, height);
}

void gset_xoff(int x, int y) {
    state.win_x = x;
    state.win_y = y;
}

void gget_win_offset(int* x, int* y) {
    *x = state.win_x;
    *y = state.win_y;
}

int gget_win_depth() { return state.depth; }
void gset_win_depth(int depth) { state.depth = depth; }

void gset_area(const Gdevice_area& area) {
    state.win_width = area.width;
    state.win_height = area.height;
    state.win_x = area.x;
    state.win_y = area.y;
}

void gset_prog_name(const std::string& name) { state.prog_name = fit_text(name, NAME_SIZE); }
const std::string& gget_prog_name() { return state.prog_name; }

void gset_win_title(const std::string& title) { state.win_title = fit_text(title, TITLE_SIZE); }
const std::string& gget_win_title() { return state.win_title; }

void gadd_page_title(const std::string& text) {
    if (!state.page_title.empty()) state.page_title += ", ";
    state.page_title += text;
}

std::string gget_page_title() { return state.page_title.empty() ? state.win_title : state.page_title; }

void gset_geometry(const std::string& geometry) { state.geometry = fit_text(geometry, GEOMETRY_SIZE); }
const std::string& gget_geometry() { return state.geometry; }

bool gws_panel_geometry(const std::string& str, Gdevice_area* area) {
    if (str.empty() || (str[0] != 'P' && str[0] != 'p')) return false;
    float fx = 1;
    float fy = 1;
    float ox = 0;
    float oy = 0;
    std::sscanf(str.c_str() + 1, "%fx%f+%f+%f", &fx, &fy, &ox, &oy);
    if (fx > 1) {  // panels on the page; their rows count from the top, paper from the bottom
        fx = hold(fx, 1, 8);
        fy = hold(fy, 1, 8);
        ox = ox / fx;
        oy = 1 - (1 + oy) / fy;
        fx = 1 / fx;
        fy = 1 / fy;
    }
    const Gdevice_area page = *area;
    const auto width = static_cast<float>(page.width);
    const auto height = static_cast<float>(page.height);
    area->x = gtruncate(ox * width);
    area->y = gtruncate(oy * height);
    area->width = gtruncate(fx * width);
    area->height = gtruncate(fy * height);
    return true;
}

void gws_geometry(const std::string& str, Gdevice_area* area) {
    constexpr int least = 2;
    if (!gws_panel_geometry(str, area)) read_hundredths(str, area);
    area->width = std::max(area->width, least);
    area->height = std::max(area->height, least);
}

bool gws_paper_size(const std::string& name, float* sx, float* sy) {
    for (const Paper& paper : PAPERS) {
        if (stricmp(name.c_str(), paper.name) != 0) continue;
        *sx = paper.sx;
        *sy = paper.sy;
        return true;
    }
    return false;
}

const char* gws_param_value(const std::string& word, const char* key) {
    const std::size_t length = std::string(key).size();
    if (word.size() < length + 2 || strnicmp(word.c_str(), key, static_cast<int>(length)) != 0) return nullptr;
    return word.c_str() + length + 1;
}

}  // namespace zav
