// The map of the plot: what the options say of it, and whether the data lie on it.

#include <algorithm>
#include <array>
#include <cmath>
#include <string>
#include <utility>
#include <vector>

#include "calc/grd_cyclic.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/status.h"
#include "frame/string.h"
#include "grid/grd_tool.h"
#include "map/maptran.h"
#include "program/grd_plt.h"
#include "var/var_tool.h"

namespace zav {
namespace {

/// Options of the domain; the later one goes over the earlier.
constexpr std::array<const char*, 2> OPTIONS = {"region", "plot_domain"};
/// Steps of the lattices that are laid over a grid and over the map.
constexpr int LATTICE = 32;

struct State {
    std::array<std::string, OPTIONS.size()> texts;  ///< the options as they were last read
    bool faulty = false;                            ///< one of them couldn't be read
    Domain whole;                                   ///< what names a projection; unset without one
    Domain part;  ///< a size or a zoom, which goes over the whole or the file's domain
    Domain result;
    bool done = false;  ///< `result` is worked out
};
State state;

bool names_projection(const Domain& domain) {
    return domain.proj != MISS && domain.proj != PROJ_SIZE && domain.proj != PROJ_ZOOM;
}

std::array<std::string, OPTIONS.size()> option_texts() {
    std::array<std::string, OPTIONS.size()> texts;
    for (std::size_t i = 0; i < OPTIONS.size(); i++) {
        const char* text = RES_get(OPTIONS[i]);
        texts[i] = text != nullptr ? text : "";
    }
    return texts;
}

/// Takes the fields that are set in `from`. A projection comes with its reference and parameters.
void lay_over(Domain& domain, const Domain& from) {
    if (names_projection(from)) {
        domain = from;
        return;
    }
    const auto take = [](auto& field, auto value, auto unset) {
        if (value != unset) field = value;
    };
    take(domain.clat, from.clat, FMISS);
    take(domain.clon, from.clon, FMISS);
    take(domain.nx, from.nx, MISS);
    take(domain.ny, from.ny, MISS);
    take(domain.dx, from.dx, FMISS);
    take(domain.dy, from.dy, FMISS);
}

void take_text(const char* option, const std::string& text) {
    Domain given;
    const int result = DOM_decode(text, &given);
    if (result == MISS) return;
    if (result == -1 || given.proj == -1) {
        MESS_print(MESS_WARN, "Unknown region or faulty domain in \"%s\": %s\n", option, text.c_str());
        ZAV_note(STATUS_REGION);
        state.faulty = true;
        return;
    }
    if (!names_projection(given)) return lay_over(state.part, given);
    state.whole = given;
    DOM_init(&state.part);
}

/// Points of a lattice over the current domain that have a place on the earth.
std::vector<EarthPoint> lattice_places(const Domain& domain) {
    std::vector<EarthPoint> places;
    MAP_domain(&domain);
    for (int j = 0; j <= LATTICE; j++) {
        for (int i = 0; i <= LATTICE; i++) {
            Point at;
            EarthPoint place;
            MAP_grid_tran(static_cast<float>((domain.nx - 1.0) * i / LATTICE),
                          static_cast<float>((domain.ny - 1.0) * j / LATTICE), &at.x, &at.y);
            if (MAP_untran(at.x, at.y, &place.lat, &place.lon) == 1) places.push_back(place);
        }
    }
    return places;
}

bool any_inside(const std::vector<EarthPoint>& places, const Domain& domain) {
    MAP_domain(&domain);
    return std::any_of(places.begin(), places.end(), [](const EarthPoint& place) {
        Point at;
        return MAP_tran(place.lat, place.lon, &at.x, &at.y) == 1 && MAP_in_domain(at.x, at.y) != 0;
    });
}

bool on_earth(const Domain& domain) {
    return domain.proj >= PROJ_POLAR && domain.proj <= PROJ_LAST_MAP && domain.nx > 1 && domain.ny > 1;
}

std::string latitude_text(double lat) { return text_format("%.4g%s", std::fabs(lat), lat < 0 ? "S" : "N"); }

std::string longitude_text(double lon) {
    const double held = std::remainder(lon, 360.0);
    return text_format("%.4g%s", std::fabs(held), held < 0 ? "W" : "E");
}

/// Least and greatest latitude and longitude, the longitudes as they lie about the first.
std::string extent_text(const std::vector<EarthPoint>& places) {
    double south = 90.0;
    double north = -90.0;
    double west = 0.0;
    double east = 0.0;
    for (const EarthPoint& place : places) {
        const double turn = std::remainder(static_cast<double>(place.lon) - places[places.size() / 2].lon, 360.0);
        south = std::min(south, static_cast<double>(place.lat));
        north = std::max(north, static_cast<double>(place.lat));
        west = std::min(west, turn);
        east = std::max(east, turn);
    }
    const double middle = places[places.size() / 2].lon;
    return latitude_text(south) + " to " + latitude_text(north) + ", " + longitude_text(middle + west) + " to " +
           longitude_text(middle + east);
}

/// True if the plot parameters ask for the grid as it is, point by point: its map then ends at its last column.
bool draws_points() {
    bool letter = false;
    std::vector<std::string> items;
    RES_getvals("plot_param", items);
    for (const std::string& item : items) {
        if (stricmp(item, "letter") == 0) letter = true;
        if (stricmp(item, "noletter") == 0) letter = false;
    }
    return letter;
}

}  // namespace

bool GRD_read_domain() {
    const auto texts = option_texts();
    if (texts == state.texts) return !state.faulty || state.whole.proj != MISS;
    state = State{};
    state.texts = texts;
    for (std::size_t i = 0; i < texts.size(); i++) take_text(OPTIONS[i], texts[i]);
    return !state.faulty || state.whole.proj != MISS;
}

bool GRD_choose_domain(Domain* domain) {
    if (!GRD_read_domain()) return false;
    if (!state.done) {
        state.result = state.whole;
        if (state.result.proj == MISS) {
            GRD_get_file_date_domain(nullptr, &state.result);
            if (!draws_points()) state.result = GRD_close_domain(state.result);
        }
        lay_over(state.result, state.part);
        state.done = true;
    }
    *domain = state.result;
    return true;
}

void GRD_tell_outside(const Domain* map) {
    std::vector<Domain> told;
    if (!on_earth(*map)) return;
    const std::vector<EarthPoint> places = lattice_places(*map);
    for (int i = 0; i < VAR_get_num(); i++) {
        const GRD_report* grid = GRD_get_grid(i);
        if (VAR_is_fit_GRID(i) == 0 || !GRD_has_values(grid) || !on_earth(grid->domain)) continue;
        const Domain& own = grid->domain;
        const auto known = [&](const Domain& other) { return DOM_comp(&own, &other) != 0; };
        if (DOM_comp(&own, map) != 0 || std::any_of(told.begin(), told.end(), known)) continue;
        told.push_back(own);
        const std::vector<EarthPoint> points = lattice_places(own);
        if (points.empty() || any_inside(points, *map) || any_inside(places, own)) continue;
        const std::string what = VAR_make_datatype(grid->time, grid->ltype, grid->level, grid->var, grid->units);
        MESS_print(MESS_WARN, "Data lie outside of the map: %s is at %s\n", what.c_str(), extent_text(points).c_str());
        ZAV_note(STATUS_LAYER);
    }
    MAP_domain(map);
}

}  // namespace zav
