// Opening and closing of the kernel, its reports, and what concerns no single primitive.

#include <array>
#include <cstdarg>
#include <cstdio>
#include <string>

#include "files/files.h"
#include "frame/mess.h"
#include "gks/cairo/gks_cairo.h"
#include "gks/gks.h"
#include "gks/gks_colr.h"
#include "gks/gks_evnt.h"
#include "gks/gks_loop.h"
#include "gks/gks_obj.h"
#include "gks/gks_out.h"
#include "gks/gks_text.h"
#include "gks/gks_tran.h"
#include "gks/hpgl/gks_hpgl.h"
#include "gks/meta/gks_meta.h"
#include "gks/ps/gks_ps.h"
#include "gks/x11/gks_x11.h"

namespace zav {
namespace {

struct State {
    bool errors_open = false;
    file_ptr err_file;  ///< a named error file; none for standard error
    int win_type = GWS_ASK;
};
State state;

std::string format_text(const char* format, std::va_list args) {
    std::va_list again;
    va_copy(again, args);
    const int size = std::vsnprintf(nullptr, 0, format, again);
    va_end(again);
    if (size < 0) return {};
    std::string text(static_cast<std::size_t>(size), '\0');
    std::vsnprintf(text.data(), text.size() + 1, format, args);
    return text;
}

void clear_on_paper(const Glim& l) {
    gps_printf("%%%%CLR\n");
    gps_printf("np\n");
    gps_move(l.x_min, l.y_min);
    gps_line(l.x_min, l.y_max);
    gps_line(l.x_max, l.y_max);
    gps_line(l.x_max, l.y_min);
    gps_line(l.x_min, l.y_min);
    gps_printf("cp\n");
    gps_set_fill_color(GCOLR_BACK);
    gps_printf("fill\n");
}

constexpr Gint CORNERS = 4;

std::array<Gpt, CORNERS> corners_of(const Glim& l) {
    return {{{l.x_min, l.y_min}, {l.x_min, l.y_max}, {l.x_max, l.y_max}, {l.x_max, l.y_min}}};
}

void clear_on_plotter(const Glim& l) {
    ghpgl_set_fill_color(GCOLR_BACK);
    ghpgl_rings(1, &CORNERS, corners_of(l).data());
}

void clear_on_picture(const Glim& l) {
    gcairo_rings(1, &CORNERS, corners_of(l).data());
    gcairo_clear();
}

void clear_on_display(const Glim& l) {
    const short x = gpixel(xW_p(l.x_min));
    const short y = gpixel(yW_p(l.y_max));
    const int width = gtruncate(xW_p(l.x_max) - static_cast<float>(x) + 0.5F);
    const int height = gtruncate(yW_p(l.y_min) - static_cast<float>(y) + 0.5F);
    if (width < 0 || height < 0) return;
    gx11_clear_rect({x, y, static_cast<unsigned short>(width), static_cast<unsigned short>(height)});
}

}  // namespace

int gopen_gks(const char* err_file, int) {
    state.err_file.reset();
    if (err_file != nullptr) state.err_file = FILE_open(err_file, "w");
    state.errors_open = err_file == nullptr || state.err_file != nullptr;
    return state.errors_open ? 0 : 1;
}

int gclose_gks() {
    state.err_file.reset();
    state.errors_open = false;
    return 0;
}

int gactivate_ws(Gint) { return 0; }
int gdeactivate_ws(Gint) { return 0; }
int gemergency_close_gks() { return 0; }

void gerr_printf(const char* func, const char* format, ...) {
    if (!state.errors_open) return;
    std::va_list args;
    va_start(args, format);
    const std::string text = format_text(format, args);
    va_end(args);
    MESS_print(MESS_WARN, "%s: ", func);
    MESS_print(MESS_WARN, "%s\n", text.c_str());
    if (state.err_file) std::fprintf(state.err_file.get(), "%s: %s\n", func, text.c_str());
}

bool gcheck_open(const char* func) {
    if (gchk_graphics()) return true;
    gerr_printf(func, "GKS not opened\n");
    return false;
}

void gset_win_type(int type) { state.win_type = type; }
int gget_win_type() { return state.win_type; }

bool gtype_is_WIN(int type) { return type == GWS_WIN; }
bool gtype_is_META(int type) { return type == GWS_META; }
bool gtype_is_PS(int type) { return type == GWS_PS; }
bool gtype_is_HPGL(int type) { return type == GWS_HPGL; }
bool gtype_is_PIX(int type) { return type == GWS_PIX; }
bool gtype_is_WIN_PIX(int type) { return gtype_is_WIN(type) || gtype_is_PIX(type); }
bool gtype_is_CAIRO(int type) { return type == GWS_CAIRO; }
bool gtype_is_PAGE(int type) { return gtype_is_PS(type) || gtype_is_HPGL(type) || gtype_is_CAIRO(type); }

int ginit_plot(int type) {
    if (type == -1) return -1;
    greset_text();
    greset_line();
    greset_marker();
    greset_fill();
    ginit_loop();
    ginit_tran(type);
    ginit_text(type);
    ginit_line(type);
    ginit_marker(type);
    ginit_fill(type);
    if (type == 0 && gtype_is_PIX(gget_win_type())) gset_rw_colors(0);
    if (type == 0 || type == 1) {
        ginit_event(type);
        gx11_init_contexts_done();
    }
    return 0;
}

int gcreate_seg(Gint seg) {
    if (gtype_is_META(gget_win_type())) {
        gmeta_printf("SEG_CR %d\n", seg);
        return -1;
    }
    gnew_obj(GOBJ_SEG_CREATE, seg, 0, nullptr);
    return 0;
}

int gclose_seg(Gint seg) {
    if (gtype_is_META(gget_win_type())) {
        gmeta_printf("SEG_CL %d\n", seg);
        return -1;
    }
    gnew_obj(GOBJ_SEG_CLOSE, seg, 0, nullptr);
    return 0;
}

int gdel_seg(Gint seg) {
    if (gtype_is_META(gget_win_type())) {
        gmeta_printf("SEG_DE %d\n", seg);
        return -1;
    }
    gdel_seg_objs(seg);
    return 0;
}

int gmessage(Gint ws_id, const std::string& str) {
    gnew_obj(GOBJ_MESSAGE, ws_id, str.size(), str.data());
    const int type = gget_win_type();
    if (gtype_is_META(type)) gmeta_printf("ME %s\n", gout_line(str).c_str());
    if (gtype_is_PS(type)) gps_printf("%%%%Message: %s\n", gout_line(str).c_str());
    return 0;
}

int gclear_region(const Glim* limit) {
    const Glim& l = *limit;
    const int type = gget_win_type();
    if (gtype_is_META(type)) {
        gmeta_printf("CLR_REG %f %f %f %f\n", l.x_min, l.y_min, l.x_max, l.y_max);
        return 0;
    }
    gnew_obj(GOBJ_CLEAR_REGION, 1, sizeof(Glim), &l);
    if (gtype_is_WIN_PIX(type)) clear_on_display(l);
    if (gtype_is_PS(type)) clear_on_paper(l);
    if (gtype_is_HPGL(type)) clear_on_plotter(l);
    if (gtype_is_CAIRO(type)) clear_on_picture(l);
    return 0;
}

}  // namespace zav
