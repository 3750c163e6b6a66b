#include <algorithm>
#include <string>

#include "frame/mess.h"
#include "gks/gks_evnt.h"
#include "gks/gks_zoom.h"
#include "gks/x11/gks_x11.h"
#include "map/maptran.h"
#include "plot/page/plt_state.h"
#include "plot/sequence/plt_plot.h"

namespace zav {
namespace {

/// Level of notes on the domain.
constexpr M_type LEVEL_DOMAIN = 512;
constexpr int CURSOR_BUSY = 8;
constexpr int BAND_RECTANGLE = 2;

/// What the zoom keeps from one event to the next.
struct State {
    Point press;  ///< corner where the button went down
    bool armed = false;
    Domain orig_dom;  ///< domain before the first zoom
};
State state;

void redraw(PLT_redraw_func func, Domain& domain) {
    gsel_norm_tran(0);
    const int cursor = gget_cursor_type();
    gset_cursor(CURSOR_BUSY);
    if (func != nullptr) func(&domain);
    gsel_norm_tran(2);
    gupdate_window();
    gset_cursor(cursor);
}

void tell_domain(const char* what, const Domain& domain) {
    MESS_print(LEVEL_DOMAIN, "%s", what);
    DOM_print(LEVEL_DOMAIN, &domain);
}

bool shows_earth(const Domain& domain) { return domain.proj >= PROJ_POLAR && domain.proj <= PROJ_LAST_MAP; }

/// Takes the box as the new extent of a map. False if its centre isn't on the earth.
bool zoom_map(Domain& domain, const MAP_limits& box) {
    float lat = 0.0F;
    float lon = 0.0F;
    MAP_untran(0.5F * (box.x_min + box.x_max), 0.5F * (box.y_min + box.y_max), &lat, &lon);
    if (lat == FMISS || lon == FMISS || domain.nx < 2 || domain.ny < 2) return false;
    const float height = box.y_max - box.y_min;
    const float step = std::max((box.x_max - box.x_min) / static_cast<float>(domain.nx - 1),
                                height / static_cast<float>(domain.ny - 1));
    domain.clat = lat;
    domain.clon = lon;
    domain.dx = domain.dy = step;
    DOM_set_base_prior(height);
    return true;
}

/// Takes the box as the new extent of a diagram, in the diagram's own coordinates.
bool zoom_graph(Domain& domain, const MAP_limits& box) {
    Point low{box.x_min, box.y_min};
    Point high{box.x_max, box.y_max};
    if (domain.proj != PROJ_HODOGRAPH) {
        MAP_untran(box.x_min, box.y_min, &low.x, &low.y);
        MAP_untran(box.x_max, box.y_max, &high.x, &high.y);
        if (low.x == FMISS || high.x == FMISS) return false;
    }
    domain.clat = low.x;
    domain.clon = low.y;
    domain.dx = domain.proj == PROJ_SKEWT ? box.x_max - box.x_min : high.x - low.x;
    domain.dy = high.y - low.y;
    return true;
}

/// Zooms to the box between the press and (x, y). 0, or -1 for a box that is none.
int zoom_in(float x, float y) {
    const MAP_limits box{std::min(state.press.x, x), std::max(state.press.x, x), std::min(state.press.y, y),
                         std::max(state.press.y, y)};
    if (!(box.x_max > box.x_min) || !(box.y_max > box.y_min)) return -1;
    Domain domain;
    MAP_get_domain(&domain);
    const Domain before = domain;
    if (!(shows_earth(domain) ? zoom_map(domain, box) : zoom_graph(domain, box))) return -1;
    PLT_state& plot = PLT_state_get();
    if (plot.zoom == 0) state.orig_dom = before;
    ++plot.zoom;
    tell_domain("New domain: ", domain);
    redraw(plot.zoom_func, domain);
    return 0;
}

void zoom_back() {
    PLT_state& plot = PLT_state_get();
    Domain domain = state.orig_dom;
    tell_domain("Original domain: ", domain);
    if (shows_earth(domain)) DOM_set_base_prior(static_cast<float>(domain.ny - 1) * domain.dy);
    plot.zoom = 0;
    redraw(plot.zoom_func, domain);
}

bool begins(const std::string& event, const std::string& with) { return event.starts_with(with); }

}  // namespace

int PLT_plot_zoom(const std::string& event, float x, float y) {
    PLT_state& plot = PLT_state_get();
    if (event == "B1-P-Shft") {
        state.press = {x, y};
        state.armed = true;
        gset_rubber_band(BAND_RECTANGLE);
        return 0;
    }
    const bool armed = state.armed;
    state.armed = false;
    if (armed && begins(event, "B1-R")) return zoom_in(x, y);
    if (event == "u-Alt") {
        if (gget_zoom() == 1 && plot.zoom > 0) zoom_back();
    } else if (event == "r-Alt") {
        Domain domain;
        MAP_get_domain(&domain);
        redraw(plot.zoom_func, domain);
    }
    return 0;
}

int PLT_plot_resize(const std::string& event, float, float) {
    if (event != "size") return 0;
    Domain domain;
    MAP_get_domain(&domain);
    redraw(PLT_state_get().resize_func, domain);
    return 0;
}

int PLT_set_refresh_func(int sec, PLT_redraw_func func) {
    PLT_state_get().refresh_func = func;
    gset_refresh_callback(sec, PLT_plot_refresh);
    return 0;
}

void PLT_plot_refresh() {
    Domain domain;
    MAP_get_domain(&domain);
    redraw(PLT_state_get().refresh_func, domain);
}

}  // namespace zav
