/// Not built yet: drawing the map background. Coastlines, borders, overlays and latitude and longitude lines draw
/// nothing, as with no map files; the window of map space, the settings and the event callback work.

#include "map/map.h"

#include <array>

#include "frame/string.h"
#include "gks/gks.h"
#include "gks/zavgks.h"
#include "map/maptran.h"
#include "plot/plt_tool.h"

namespace zav {
namespace {

constexpr std::size_t NAME_SIZE = 251;
constexpr std::size_t FORMAT_SIZE = 41;

struct State {
    std::string map_name;  ///< specification list
    std::string format;    ///< attribute string for maps
    float latln = 0.0F;    ///< line spacing in degrees, 0 and below for no lines
    float lonln = 0.0F;
    int dot = 0;        ///< spacing of plus marks
    int extra = 0;      ///< spacing of extra labels
    int fill_cont = 0;  ///< filled contours are on
};
State state;

bool is_map() {
    const int proj = MAP_get_proj();
    return proj >= PROJ_POLAR && proj <= PROJ_LAST_MAP;
}

}  // namespace

int MAP_setup(const Domain* domain) {
    MAP_domain(domain);
    MAP_limits limits;
    MAP_get_limits(&limits);
    const Glim window{limits.x_min, limits.x_max, limits.y_min, limits.y_max};
    gset_win(2, &window);
    gsel_norm_tran(2);
    return 0;
}

int MAP_draw(int /*flag*/) { return 0; }

int MAP_process(const std::string& /*str*/) { return -1; }

int MAP_map(std::FILE* /*map_file*/) { return is_map() ? -1 : 1; }

int MAP_lines(float dlat, float dlon) {
    if (dlat == FMISS || dlon == FMISS) return -1;
    return is_map() ? 0 : -1;
}

int MAP_draw_circle(float x, float y, float rad) {
    constexpr int POINTS = 49;
    constexpr float STEP = 7.5F;
    std::array<Gpt, POINTS> circle;
    for (int i = 0; i < POINTS; ++i) {
        MAP_offset(x, y, STEP * static_cast<float>(i), rad, &circle[i].x, &circle[i].y);
    }
    gpolyline(POINTS, circle.data());
    return 0;
}

int MAP_latlon(float lat, float lon, int dt, int ex) {
    state.latln = lat;
    state.lonln = lon;
    state.dot = dt;
    state.extra = ex;
    return 0;
}

int MAP_get_latlon(float* lat, float* lon) {
    *lat = state.latln;
    *lon = state.lonln;
    return 0;
}

int MAP_file(const std::string& file) {
    state.map_name = fit_text(file, NAME_SIZE);
    return 0;
}

int MAP_set_format(const std::string& str) {
    state.format = fit_text(str, FORMAT_SIZE);
    return 0;
}

int MAP_fill_cont(int value) {
    state.fill_cont = value;
    return 0;
}

int MAP_get_window(Glim* wind) { return GPH_get_win(2, wind); }

float MAP_get_vert() {
    Glim window;
    MAP_get_window(&window);
    return window.y_max - window.y_min;
}

float MAP_get_hor() {
    Glim window;
    MAP_get_window(&window);
    return window.x_max - window.x_min;
}

void MAP_callback(int /*type*/, const char* str, float x, float y) {
    const std::string event = str == nullptr ? "" : str;
    PLT_print_values(event, x, y);
    PLT_plot_zoom(event, x, y);
    PLT_plot_resize(event, x, y);
}

}  // namespace zav
