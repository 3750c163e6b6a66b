// Not built yet: the X11 workstation. What follows is what the kernel does where there is no display: opening a window
// fails with its message, there are no windows and pixmaps, and drawing into them does nothing.

#include "gks/x11/gks_x11.h"

#include "frame/mess.h"

namespace zav {
namespace {

constexpr int FUNCTION_COPY = 3;

struct State {
    int cursor = 0;
    int pix_mode = 0;
    int line_function = FUNCTION_COPY;
};
State state;

}  // namespace

int gx11_open(Gws_type, const std::vector<std::string>&) {
    MESS_print(MESS_WARN, "gopen_ws: unable to connect to display\n");
    return -1;
}

void gx11_close() {}
int ghold(Gint) { return 0; }
int gresize_window(int, int) { return 0; }
int gupdate_window() { return -1; }
void gsync() {}
void gbell(int) {}

void gset_iconic(int) {}
void gset_fixed_size() {}
void gset_pix_mode(int mode) { state.pix_mode = mode; }
int gget_pix_mode() { return state.pix_mode; }
void gset_icon_bitmap(const unsigned char*) {}
void gset_refresh_callback(int, void (*)()) {}
void gset_win_title_extra(const std::string&) {}
std::string gget_win_title_extra() { return {}; }

int gset_cursor(int cursor) {
    const int previous = state.cursor;
    if (gtype_is_WIN_PIX(gget_win_type())) state.cursor = cursor;
    return previous;
}

int gset_cursor_type(int cursor) { return gset_cursor(cursor); }
int gget_cursor_type() { return state.cursor; }

int ghas_display() { return 0; }
Gxid gget_root_window() { return 0; }
Gxid gget_base_window() { return 0; }
void gset_base_window(Gxid) {}
Gxid gget_draw_window() { return 0; }
void gset_draw_window(Gxid) {}
int gget_screen() { return 0; }
unsigned long gget_red_mask() { return 0; }
unsigned long gget_grn_mask() { return 0; }
unsigned long gget_blu_mask() { return 0; }

void gget_root_size(int* width, int* height) {
    *width = 0;
    *height = 0;
}

void gx11_clip(const Gxrect&) {}
void gx11_lines(Gx_context, Gint, const Gxpoint*) {}
void gx11_polygon(Gint, const Gxpoint*) {}
void gx11_clear_rect(const Gxrect&) {}
void gx11_foreground(Gx_context, int) {}
void gx11_foreground_black(Gx_context) {}
void gx11_line_width(Gx_context, int) {}
void gx11_line_dashes(int) {}
void gx11_fill_style(int, int) {}
void gx11_init_context(Gx_context, int) {}
void gx11_init_contexts_done() {}
int gx11_alloc_color(int pixel, float, float, float) { return pixel; }
void gx11_color_changed(int) {}
void gx11_init_background(const std::string&) {}
void gx11_delete_patterns() {}
void gxline(Gxid, const Gxpoint*, const Gxpoint*) {}
void gxrect(Gxid, const Gxpoint*, const Gxpoint*) {}
void gset_line_gc_func(int function) { state.line_function = function; }
int gget_line_gc_func() { return state.line_function; }

}  // namespace zav
