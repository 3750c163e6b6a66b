#include "plot/background/map.h"

#include <array>
#include <cmath>

#include "files/files.h"
#include "frame/flag.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/status.h"
#include "frame/string.h"
#include "frame/tools.h"
#include "gks/gks.h"
#include "gks/gks_colr.h"
#include "gks/zavgks.h"
#include "plot/background/map_area.h"
#include "plot/background/map_state.h"
#include "plot/page/colors.h"
#include "plot/page/plt_tool.h"

namespace zav {

Map_background map_background;

namespace {

constexpr std::size_t NAME_SIZE = 251;
constexpr std::size_t FORMAT_SIZE = 41;
constexpr int WORD_LENGTH = 250;  ///< longest word of a map list file
constexpr int DASHED = 4;

/// The item list: the resource, the list set by MAP_file, or the maps that suit the domain.
std::string map_list() {
    const char* resource = RES_get("map_file");
    if (resource != nullptr && *resource != '\0') return resource;
    if (!map_background.map_name.empty()) return map_background.map_name;
    const float lat = MAP_get_clat();
    const float lon = MAP_get_clon();
    const bool america = lat > 25.0F && lat < 80.0F && lon > -160.0F && lon < -65.0F && MAP_get_vert() < 75.0F;
    if (america) return "zav.map";
    return PLT_letter() ? "cont.map,country.map" : "cont.map,lake.map,country.map,state.map";
}

void process_list_file(const std::string& name) {
    const file_ptr file = FILE_open_data(FILE_add_path(RES_get("file_path"), name));
    if (file == nullptr) {
        MESS_print(MESS_WARN, "MAP_draw: Unable to open map list file: %s\n", name.c_str());
        ZAV_note(STATUS_LAYER);
        return;
    }
    std::string word;
    while (fgetword(file.get(), word, WORD_LENGTH) > 0) MAP_process(word);
}

/// The latitude and longitude lines that MAP_latlon asked for.
void draw_set_lines() {
    if (!(map_background.latln > 0.0F)) return;
    const bool earth = map_shows_earth();
    Gattribs attrib;
    ATTRIB_init(&attrib);
    if (earth) attrib.style = DASHED;
    ATTRIB_get("color_line", earth ? "magenta:s4" : "red", &attrib);
    GPH_line_attr(&attrib);
    GPH_text_attr(&attrib, map_text_height());
    if (attrib.color != CLR_NONE) MAP_lines(map_background.latln, map_background.lonln);
}

/// The edge of the earth, as the plot's frame is drawn.
void draw_rim() {
    Gattribs attrib;
    ATTRIB_init(&attrib);
    ATTRIB_get("color_text", gget_inverse() != 0 ? "black" : "white", &attrib);
    const std::vector<Gpt> rim = Map_area().rim();
    GPH_line_attr(nullptr);
    GPH_line_attr(&attrib);
    if (attrib.color != CLR_NONE && !rim.empty()) gpolyline(static_cast<Gint>(rim.size()), rim.data());
}

}  // namespace

bool map_shows_earth() {
    const int proj = MAP_get_proj();
    return proj >= PROJ_POLAR && proj <= PROJ_LAST_MAP;
}

float map_text_height() { return map_shows_earth() ? 0.018F * MAP_get_vert() : 0.015F; }

float map_full_width(int proj, float y) {
    if (proj == PROJ_LATLON) return 360.0F;
    if (proj == PROJ_MERCATOR) return 400.31555892808814F;
    if (proj != PROJ_MOLLWEIDE) return 0.0F;
    const double part = y / 63.713;
    return part * part < 1.0 ? static_cast<float>(254.852 * std::sqrt(1.0 - part * part)) : 0.0F;
}

std::vector<float> map_repeats() {
    constexpr float SLIVER = 0.01F;  ///< what rounding may leave beyond the edge
    constexpr int MOST = 5;
    std::vector<float> repeats{-0.0F};  // which added leaves every number as it is, -0 too
    const int proj = MAP_get_proj();
    Glim window;
    if (PLT_letter() || (proj != PROJ_LATLON && proj != PROJ_MERCATOR) || MAP_get_window(&window) != 0) return repeats;
    const float full = map_full_width(proj, 0.0F);
    for (int k = 1; k <= MOST; ++k) {
        const float to_edge = full * (static_cast<float>(k) - 0.5F) + SLIVER;
        if (window.x_max > to_edge) repeats.push_back(full * static_cast<float>(k));
        if (window.x_min < -to_edge) repeats.push_back(-full * static_cast<float>(k));
    }
    return repeats;
}

bool map_place(float lat, float lon, Point& point) {
    constexpr float FARTHEST = 720.0F;
    point = {FMISS, FMISS};
    if (!(std::fabs(lat) <= 90.0F && std::fabs(lon) <= FARTHEST)) return false;
    MAP_tran(lat, lon, &point.x, &point.y);
    return point.x != FMISS && std::isfinite(point.x) && std::isfinite(point.y);
}

int MAP_setup(const Domain* domain) {
    MAP_domain(domain);
    MAP_limits limits;
    MAP_get_limits(&limits);
    const Glim window{limits.x_min, limits.x_max, limits.y_min, limits.y_max};
    gset_win(2, &window);
    gsel_norm_tran(2);
    return 0;
}

int MAP_draw(int flag) {
    if (!FLAG_getplot(PLOT_MAP)) return 0;
    map_background.over = flag;
    GPH_trans(2);
    GPH_line_attr(nullptr);
    GPH_text_font(nullptr);
    map_background.reg_found = 1;
    for (const std::string& word : parse_string(map_list(), ',')) {
        if (strnicmp(word, "fi:", 3) == 0) {
            process_list_file(word.substr(3));
        } else {
            MAP_process(word);
        }
    }
    draw_set_lines();
    if (!PLT_letter() && (flag & MAP_PASS_PLAIN) != 0) draw_rim();
    return 0;
}

int MAP_lines(float dlat, float dlon) {
    if (dlat == FMISS || dlon == FMISS) return -1;
    PLT_mess("Map-lalo: %.1f,%.1f", dlat, dlon);
    if (!map_shows_earth()) {
        map_graph_lines(dlat, dlon);
        return -1;
    }
    map_earth_lines(dlat, dlon);
    GPH_line_attr(nullptr);
    GPH_text_attr(nullptr, 1.0F);
    return 0;
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
    map_background.latln = lat;
    map_background.lonln = lon;
    map_background.dot = dt;
    map_background.extra = ex;
    return 0;
}

int MAP_get_latlon(float* lat, float* lon) {
    *lat = map_background.latln;
    *lon = map_background.lonln;
    return 0;
}

void MAP_set_raw_func(MAP_raw_func func) { map_background.raw_plot = func; }

int MAP_file(const std::string& file) {
    map_background.map_name = fit_text(file, NAME_SIZE);
    return 0;
}

int MAP_set_format(const std::string& str) {
    map_background.format = fit_text(str, FORMAT_SIZE);
    return 0;
}

int MAP_fill_cont(int value) {
    map_background.fill_cont = value;
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

}  // namespace zav
