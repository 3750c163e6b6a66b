// Not built yet: HPGL output. What follows is what the workstation does when its file can't be opened: opening it fails
// with its message, and nothing is ever written.

#include "gks/gks_hpgl.h"

namespace zav {

int ghpgl_open(const std::vector<std::string>&) {
    gerr_printf("gopen_ws", "unable to open HPGL file\n");
    return -1;
}

void ghpgl_init() {}
bool ghpgl_open_file(const std::string&) { return false; }
void ghpgl_init_file() {}
int ghpgl_close_file() { return -1; }

void ghpgl_set_pcl(int) {}
void ghpgl_set_rotate(int) {}
void ghpgl_set_scale(float) {}
void ghpgl_set_base_width(float) {}
void ghpgl_set_colorPS(int) {}
int ghpgl_get_colorPS() { return 0; }
void ghpgl_set_reverse(int) {}

void ghpgl_set_color(int) {}
void ghpgl_set_fill_color(int) {}
void ghpgl_set_width(int, float) {}
void ghpgl_set_type(int) {}

void ghpgl_printf(const char*, ...) {}
void ghpgl_move(float, float) {}
void ghpgl_line(float, float) {}
void ghpgl_move_abs(float, float) {}
void ghpgl_line_abs(float, float) {}

}  // namespace zav
