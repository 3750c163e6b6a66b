#include "plot/page/plt_tool.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdarg>
#include <cstdio>

#include "frame/flag.h"
#include "frame/status.h"
#include "frame/system.h"
#include "gks/gks_evnt.h"
#include "gks/gks_ws.h"
#include "gks/x11/gks_x11.h"
#include "plot/page/plt_state.h"

namespace zav {
namespace {

constexpr std::size_t MESSAGE_SIZE = 80;
constexpr int PLOT_TYPE_NONE = 99;
/// Most columns and rows of panels.
constexpr float MAX_PANELS = 8.0F;

PLT_state state;

/// In batch mode the rest of the run goes on in the background.
void leave_batch() {
    if (FLAG_batch() && !ZAV_back_proc()) ZAV_exit(STATUS_NO_PROCESS);
}

bool plotting_off() { return !FLAG_getplot(PLOT_ALL) || FLAG_get(FLAG_PLOT_TYPE) == PLOT_TYPE_NONE; }

}  // namespace

PLT_state& PLT_state_get() { return state; }

PLT_requests& PLT_layer_requests() { return state.requests; }

int PLT_open_page(float aspect) {
    state.dis_view = state.view_off;
    if (plotting_off()) return -1;
    GPH_setup(&state.work_id, &state.wk_type, aspect, &state.dis_view);
    return 0;
}

int PLT_reset(float aspect) {
    state.dis_view = state.view_off;
    PLT_set_label_type(std::clamp(PLT_get_label_type(), -1, 1));
    if (plotting_off()) return -1;
    return GPH_reset(&state.work_id, &state.wk_type, aspect, &state.dis_view);
}

int PLT_panel(float aspect) {
    const float height = state.dis_view.y_max - state.dis_view.y_min;
    if (aspect == 0.0F && height > 0.0F) aspect = (state.dis_view.x_max - state.dis_view.x_min) / height;
    state.dis_view = state.view_off;
    return GPH_panel(&state.work_id, &state.wk_type, aspect, &state.dis_view);
}

int PLT_close() {
    // A window is held in the background. What is printed is closed before, so that the status tells whether it is
    // whole.
    const bool on_display = gtype_is_WIN_PIX(state.wk_type);
    if (on_display) leave_batch();
    if (FLAG_get(FLAG_PLOT_TYPE) == PLOT_TYPE_NONE) return -1;
    gsel_norm_tran(2);
    if (state.dump == PLT_DUMP_NONE) GPH_hold(state.work_id);
    gclear_ws(state.work_id, GALWAYS);
    GPH_end(state.work_id);
    PLT_init_labels();
    if (!on_display) leave_batch();
    return 0;
}

void PLT_break_off() {
    gbreak_off();
    GPH_end(state.work_id);
    PLT_init_labels();
}

void PLT_exit(int val) {
    PLT_break_off();
    ZAV_exit(val);
}

int PLT_mess(const char* mess, ...) {
    std::array<char, MESSAGE_SIZE> text{};
    std::va_list args;
    va_start(args, mess);
    std::vsnprintf(text.data(), text.size(), mess, args);
    va_end(args);
    return gmessage(state.work_id, text.data());
}

int PLT_get_view(Glim* view) {
    *view = state.dis_view;
    return 0;
}

Gws_type PLT_get_work_type() { return state.wk_type; }

int PLT_border(int val) {
    state.border = val;
    return 0;
}

int PLT_get_full_lab() { return state.full_lab; }

void PLT_set_letter(bool on) { state.letter = on; }

bool PLT_letter() { return state.letter; }

int PLT_set_view_offset(float v) {
    state.view_offset = v;
    state.view_off = {0.0F, 0.0F, v, v};
    return 0;
}

int PLT_set_view_offsets(const Glim* offsets) {
    state.view_off = *offsets;
    return 0;
}

float PLT_get_view_offset() { return state.view_offset; }

int PLT_get_view_offsets(Glim* offsets) {
    *offsets = state.view_off;
    return 0;
}

int PLT_set_zoom(int val) {
    state.zoom = val;
    return 0;
}

int PLT_get_zoom() { return state.zoom; }

int PLT_set_bar(int val) {
    state.bar = val;
    return 0;
}

int PLT_bar() {
    if (state.bar || state.requests.bar < 1) return 0;
    state.bar = 1;
    return 1;
}

int PLT_panel_decode(const std::string& str) {
    float sx = 1.0F;
    float sy = 1.0F;
    float ox = 0.0F;
    float oy = 0.0F;
    const int num = std::sscanf(str.c_str(), "%fx%f+%f+%f", &sx, &sy, &ox, &oy);
    if (sx > 1.0F) {
        sx = std::clamp(sx, 1.0F, MAX_PANELS);
        sy = std::clamp(sy, 1.0F, MAX_PANELS);
        ox = ox / sx;
        oy = 1.0F - (1.0F + oy) / sy;
        sx = 1.0F / sx;
        sy = 1.0F / sy;
    }
    const bool has_extent = sx > 0.0F && sy > 0.0F && std::isfinite(sx + sy + ox + oy);
    return num == 4 && has_extent ? GPH_set_view_size(sx, sy, ox, oy) : 0;
}

int PLT_set_callback(PLT_event_func func) {
    state.callback = func;
    if (func != nullptr) gset_mouse_callback(func);
    return 0;
}

int PLT_set_zoom_func(PLT_redraw_func func) {
    state.zoom_func = func;
    return 0;
}

int PLT_set_resize_func(PLT_redraw_func func) {
    state.resize_func = func;
    return 0;
}

}  // namespace zav
