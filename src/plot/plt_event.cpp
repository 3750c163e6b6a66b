#include <algorithm>
#include <cmath>
#include <vector>

#include "calc/grd_trans.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/string.h"
#include "gks/gks_evnt.h"
#include "gks/gks_x11.h"
#include "gks/gks_zoom.h"
#include "grid/grd_tool.h"
#include "map/maptran.h"
#include "plot/plt_state.h"
#include "station/cty_tool.h"
#include "var/var_tool.h"

namespace zav {
namespace {

/// Levels of the read-out and of notes on the domain.
constexpr M_type LEVEL_VALUES = 8;
constexpr M_type LEVEL_DOMAIN = 512;
constexpr int CURSOR_BUSY = 8;
constexpr int BAND_RECTANGLE = 2;

/// What the zoom keeps from one event to the next.
struct State {
    Point press;        ///< corner where the button went down
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

/// True if the run goes over several files that the user named.
bool file_list_in_use() {
    std::vector<std::string> names;
    RES_getvals("filename", names);
    return names.size() > 1;
}

/// True for an entry of the variable list that has values of its own to read out.
bool has_values(int ind) { return !VAR_is_type_MAP(ind) && (VAR_is_PLOT(ind) || VAR_is_calc_GRID(ind)); }

/// Station at the pointer, and whether its text was shown already.
struct Station {
    bool found = false;
    bool shown = false;
    CTY_locate place;
};

void print_station_text(Station& station, const char* format_equal) {
    const char* text = CTY_get_data(station.place.id);
    if (text == nullptr) return;
    MESS_print(LEVEL_VALUES, "%s%s\n", format_equal, text);
    station.shown = true;
}

void print_grids(int ind, float x, float y) {
    if (!VAR_is_type_VECT(ind)) {
        GRD_print_value(x, y, GRD_get_grid(ind));
        return;
    }
    std::vector<GRD_report*> grids(2, nullptr);
    const int first = VAR_is_VECT(ind) ? ind + 1 : ind;
    GRD_find_param_grids(first, 2, 0, grids.data(), nullptr);
    if (grids[0] != nullptr && grids[1] != nullptr) GRD_print_value2(x, y, grids[0], grids[1]);
}

void print_variable(int ind, float x, float y, Station& station) {
    const std::string& name = VAR_get_name(ind);
    if (name.empty()) {
        MESS_print(LEVEL_VALUES, "Var: #%5d - ", ind);
    } else {
        MESS_print(LEVEL_VALUES, "Var: %6.6s - ", name.c_str());
    }
    if (VAR_is_type_VECT(ind) || VAR_is_type_CONT(ind)) {
        print_grids(ind, x, y);
    } else if (VAR_is_type_PLOT(ind) && station.found && !station.shown) {
        print_station_text(station, "");
    } else {
        MESS_print(LEVEL_VALUES, "\n");
    }
}

void print_all_values(const std::string& event, float x, float y) {
    PLT_print_location(event, x, y);
    float lat = FMISS;
    float lon = FMISS;
    MAP_untran(x, y, &lat, &lon);
    Station station;
    station.found = CTY_search_loc(lat, lon, &station.place) > 0;
    if (station.found) {
        float station_lat = lat;
        float station_lon = lon;
        MAP_untran(station.place.x, station.place.y, &station_lat, &station_lon);
        MESS_print(LEVEL_VALUES, "Id: %s Lat: %6.2f Lon: %7.2f ", station.place.id.c_str(),
                   static_cast<double>(station_lat), static_cast<double>(station_lon));
    }
    const int num = VAR_get_num();
    if (file_list_in_use()) {
        if (station.found) MESS_print(LEVEL_VALUES, "\n");
    } else if (num >= 2) {
        if (station.found) MESS_print(LEVEL_VALUES, "\n");
        for (int i = 0; i < num; ++i) {
            if (has_values(i)) print_variable(i, x, y, station);
        }
    } else if (num == 1) {
        if (VAR_is_type_CONT(0)) {
            GRD_print_value(x, y, GRD_get_grid(0));
        } else if (station.found) {
            print_station_text(station, "= ");
        }
    }
}

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

void PLT_plot_refresh() {
    Domain domain;
    MAP_get_domain(&domain);
    redraw(PLT_state_get().refresh_func, domain);
}

int PLT_print_location(const std::string&, float x, float y) {
    float lat = FMISS;
    float lon = FMISS;
    MAP_untran(x, y, &lat, &lon);
    MESS_print(LEVEL_VALUES, "Lat: %6.2f Lon: %7.2f XY: %6.2f %6.2f Pixel: %6.2f %6.2f\n", static_cast<double>(lat),
               static_cast<double>(lon), static_cast<double>(x), static_cast<double>(y),
               static_cast<double>(xW_p(x)), static_cast<double>(yW_p(y)));
    return 0;
}

int PLT_print_values(const std::string& event, float x, float y) {
    if (event == "v-Alt") print_all_values(event, x, y);
    const bool edits = event == "e-Alt" && !file_list_in_use() && VAR_get_num() == 1;
    if (edits) GRD_edit_value(event, x, y, GRD_get_grid(0));
    return 0;
}

}  // namespace zav
