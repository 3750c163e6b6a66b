#include <algorithm>
#include <cctype>

#include "files/files.h"
#include "frame/flag.h"
#include "frame/menu.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/status.h"
#include "frame/string.h"
#include "frame/system.h"
#include "gks/cairo/gks_cairo.h"
#include "gks/gks_colr.h"
#include "gks/gks_ws.h"
#include "gks/hpgl/gks_hpgl.h"
#include "gks/meta/gks_meta.h"
#include "gks/ps/gks_ps.h"
#include "gks/x11/gks_x11.h"
#include "gks/zavgks.h"

namespace zav {
namespace {

constexpr int WORKSTATION = 1;
constexpr const char* DEVICE_PROMPT = "Display (D) or Postscript (P): ";

struct State {
    GPH_color_table colors;
    int ws_open = 0;
    Gws_type wk_type = GWS_ASK;   ///< type chosen
    Gws_type wk_itype = GWS_ASK;  ///< type as first asked for
    float xvp = 1.0F;             ///< largest NDC extents of the display
    float yvp = 1.0F;
    float sizex = 1.0F;  ///< size of the panel as a fraction of the display
    float sizey = 1.0F;
    float offx = 0.0F;  ///< its offset
    float offy = 0.0F;
};
State state;

std::string resource_text(const char* name) {
    const char* value = RES_get(name);
    return value != nullptr ? value : "";
}

void open_workstation(Gint ws_id, const std::string& conn_id, Gws_type ws_type) {
    if (gopen_gks(nullptr, 10000) != 0) {
        MESS_print(MESS_ERROR, "GPH_begin: Error opening Kernel System\n");
        gemergency_close_gks();
        ZAV_exit(STATUS_NO_GRAPHICS);
    }
    if (gopen_ws(ws_id, conn_id, ws_type) != 0) {
        MESS_print(MESS_ERROR, "GPH_begin: Error opening workstation\n");
        ZAV_exit(STATUS_NO_GRAPHICS);
    }
}

void hand_over_colors() {
    const int num = state.colors.get_num != nullptr ? state.colors.get_num() : 0;
    for (int i = 0; i < num; ++i) {
        float red = 0.0F;
        float grn = 0.0F;
        float blu = 0.0F;
        state.colors.get_rgb(i, &red, &grn, &blu);
        GPH_set_color(i, red, grn, blu);
    }
}

}  // namespace

void GPH_set_color_table(const GPH_color_table& table) { state.colors = table; }

int GPH_setup(Gint* ws_id, Gws_type* ws_type, float asp_ratio, Glim* offset) {
    std::string conn_id;
    RES_getval("device", &conn_id, CV_device);
    const int device = FLAG_get(FLAG_DEVICE);
    *ws_type = device > 0 ? device : FLAG_batch() ? static_cast<int>(GWS_WIN) : static_cast<int>(GWS_ASK);
    GPH_set_win_title();
    if (state.colors.read != nullptr) state.colors.read(nullptr);
    RES_getval("draw", {}, CV_draw);
    GPH_begin(ws_id, conn_id, ws_type);
    return GPH_reset(ws_id, ws_type, asp_ratio, offset);
}

bool GPH_prints_on_stdout() {
    std::string conn_id;
    RES_getval("device", &conn_id, CV_device);
    const int device = FLAG_get(FLAG_DEVICE);
    const std::vector<std::string> words = parse_string(conn_id, ',');
    switch (device) {
        case GWS_PS:
            return FILE_is_stdio(gps_file_name(words)) != 0;
        case GWS_HPGL:
            return FILE_is_stdio(ghpgl_file_name(words)) != 0;
        case GWS_META:
            return FILE_is_stdio(gmeta_file_name(words)) != 0;
        case GWS_CAIRO:
            return FILE_is_stdio(gcairo_file_name(words)) != 0;
        default:
            return false;
    }
}

int GPH_begin(Gint* ws_id, const std::string& conn_id, Gws_type* ws_type) {
    FILE_delete("zavgks.err");
    *ws_id = WORKSTATION;
    state.wk_itype = *ws_type;
    if (*ws_type == GWS_ASK) {
        std::string answer;
        ZAV_prompts(DEVICE_PROMPT, answer, 10);
        *ws_type = RES_set_device(answer);
        FLAG_set(FLAG_DEVICE, *ws_type);
    }
    state.wk_type = *ws_type;
    if (!state.ws_open) open_workstation(*ws_id, conn_id, *ws_type);
    state.ws_open = 1;
    return gactivate_ws(*ws_id);
}

int GPH_reset(Gint* ws_id, Gws_type* ws_type, float asp_ratio, Glim* offset) {
    gclear_ws(*ws_id, GALWAYS);
    ginq_maxview(*ws_type, &state.xvp, &state.yvp);
    const Glim display{0.0F, state.xvp, 0.0F, state.yvp};
    gset_ws_win(*ws_id, &display);
    gset_vp(1, &display);
    gset_win(1, &display);
    GPH_panel(ws_id, ws_type, asp_ratio, offset);
    hand_over_colors();
    GPH_text_font(nullptr);
    return 0;
}

int GPH_panel(Gint*, Gws_type*, float asp_ratio, Glim* offset) {
    const float sizex = state.sizex;
    const float sizey = state.sizey;
    const Glim limits{
        state.xvp * (offset->x_min * sizex + state.offx), state.xvp * (sizex + state.offx - sizex * offset->x_max),
        state.yvp * (offset->y_min * sizey + state.offy), state.yvp * (sizey + state.offy - sizey * offset->y_max)};
    Gaspect aspect{asp_ratio, 1.0F};
    if (asp_ratio == 0.0F) aspect = {sizex * state.xvp, sizey * state.yvp};
    gset_aspect(&limits, offset, aspect, {2, 2});
    for (const int tran : {2, 3}) {
        gset_vp(tran, offset);
        gset_win(tran, offset);
    }
    GPH_line_attr(nullptr);
    GPH_fill_attr(nullptr);
    GPH_mark_attr(nullptr, 1.0F);
    GPH_text_attr(nullptr, 1.0F);
    return 0;
}

int GPH_hold(Gint ws_id) {
    gupdate_window();
    if (gtype_is_WIN(state.wk_type)) ghold(ws_id);
    return 0;
}

int GPH_end(Gint ws_id) {
    gdeactivate_ws(ws_id);
    gclose_ws(ws_id);
    gclose_gks();
    state.ws_open = 0;
    FLAG_set(FLAG_DEVICE, state.wk_itype);
    return 0;
}

int GPH_set_win_title() {
    const std::string name = resource_text("name");
    const std::string title = resource_text("title");
    const std::string program = RES_get_progname();
    gset_prog_name(name.empty() ? program : name);
    if (!title.empty()) {
        gset_win_title(title);
    } else if (!name.empty()) {
        gset_win_title(name[0] == '+' ? name.substr(1) : name);
    } else {
        gset_win_title(program);
    }
    return 0;
}

int GPH_device_prompt(int* ws_type) {
    if (*ws_type != GWS_ASK) return *ws_type;
    std::string answer;
    ZAV_promptl(DEVICE_PROMPT, answer);
    const bool paper = answer == "P" || answer == "p";
    *ws_type = paper ? GWS_PS : GWS_WIN;
    return *ws_type;
}

int gdevice_setup(const std::string& str, std::string& conn_id) {
    const std::size_t comma = str.find(',');
    conn_id = comma == std::string::npos ? "" : str.substr(comma + 1);
    return RES_set_device(str.substr(0, comma));
}

int GPH_set_view_size(float sx, float sy, float ox, float oy) {
    state.sizex = sx;
    state.sizey = sy;
    state.offx = ox;
    state.offy = oy;
    return 0;
}

int GPH_get_view_size(Glim* limit) {
    *limit = {state.offx * state.xvp, state.xvp * (state.offx + state.sizex), state.offy * state.yvp,
              state.yvp * (state.offy + state.sizey)};
    return 0;
}

int ginq_maxview(Gint ws_type, Gfloat* xvp, Gfloat* yvp) {
    *xvp = *yvp = 1.0F;
    Gint err = 0;
    Gdsp_size size;
    ginq_disp_space_size(ws_type, &err, &size);
    const Gpt extent = size.coord_size;
    if (err != 0 || extent.x <= 0.0F || extent.y <= 0.0F) return -1;
    if (extent.x > extent.y) {
        *yvp = extent.y / extent.x;
    } else {
        *xvp = extent.x / extent.y;
    }
    return 0;
}

int gset_aspect(const Glim* vin, Glim* vout, Gaspect asp, Gcenter center) {
    const float xdiff = vin->x_max - vin->x_min;
    const float ydiff = vin->y_max - vin->y_min;
    Gpt size{xdiff, ydiff};
    if (asp.y / ydiff > asp.x / xdiff) {
        size.x = asp.x * ydiff / asp.y;
    } else {
        size.y = asp.y * xdiff / asp.x;
    }
    const auto place = [](int code, float low, float high, float extent) {
        if (code == 2) return low + 0.5F * (high - low - extent);
        return code == 3 ? high - extent : 0.0F;
    };
    const Gpt low{place(center.x, vin->x_min, vin->x_max, size.x), place(center.y, vin->y_min, vin->y_max, size.y)};
    *vout = {low.x, low.x + size.x, low.y, low.y + size.y};
    return 0;
}

}  // namespace zav
