#include <algorithm>
#include <array>
#include <vector>

#include "calc/grd_calc.h"
#include "calc/grd_trans.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/zav.h"
#include "grid/grd_tool.h"
#include "map/maptran.h"
#include "plot/sequence/plt_plot.h"
#include "station/cty_tool.h"
#include "var/var_tool.h"

namespace zav {
namespace {

/// Level of the read-out.
constexpr M_type LEVEL_VALUES = 8;

/// True if the run goes over several files that the user named.
bool file_list_in_use() {
    std::vector<std::string> names;
    RES_getvals("filename", names);
    return names.size() > 1;
}

/// Station at the pointer, and whether its text was shown already.
struct Station {
    bool found = false;
    bool shown = false;
    CTY_locate place;
};

Station find_station(float x, float y) {
    Station station;
    float lat = FMISS;
    float lon = FMISS;
    MAP_untran(x, y, &lat, &lon);
    if (lat == FMISS || lon == FMISS) return station;
    station.found = CTY_search_loc(lat, lon, &station.place) > 0;
    if (!station.found) return station;
    MAP_untran(station.place.x, station.place.y, &lat, &lon);
    MESS_print(LEVEL_VALUES, "Id: %s Lat: %6.2f Lon: %7.2f ", station.place.id.c_str(), static_cast<double>(lat),
               static_cast<double>(lon));
    return station;
}

void print_station_text(Station& station, const char* before) {
    const char* text = CTY_get_data(station.place.id);
    if (text == nullptr) return;
    MESS_print(LEVEL_VALUES, "%s%s\n", before, text);
    station.shown = true;
}

void print_name(int ind) {
    const std::string& name = VAR_get_name(ind);
    if (name.empty()) {
        MESS_print(LEVEL_VALUES, "Var: #%5d - ", ind);
    } else {
        MESS_print(LEVEL_VALUES, "Var: %6.6s - ", name.c_str());
    }
}

/// The components of a vector layer, which begin at or behind entry `ind`. Result: the last entry used.
int print_vector(int ind, float x, float y) {
    const bool plot_func = VAR_is_plot_FUNC(ind) && !VAR_is_plot_FUNC_VECT(ind) && GRD_is_plot_func(VAR_get_name(ind));
    const int start = VAR_is_plot_VECT(ind) || plot_func ? ind + 1 : ind;
    std::array<GRD_report*, 3> grids{};
    const int stop = GRD_find_param_grids(start, 2, plot_func ? 1 : 0, grids.data(), nullptr);
    print_name(ind);
    if (grids[0] != nullptr && grids[1] != nullptr) {
        GRD_print_value2(x, y, grids[0], grids[1]);
    } else {
        MESS_print(LEVEL_VALUES, "\n");
    }
    return std::max(ind, grids[1] != nullptr ? stop : stop - 1);
}

void print_scalar(int ind, float x, float y, Station& station) {
    if (VAR_is_type_CONT(ind)) {
        print_name(ind);
        GRD_print_value(x, y, GRD_get_grid(ind));
    } else if (VAR_is_type_PLOT(ind) && station.found && !station.shown) {
        print_name(ind);
        print_station_text(station, "");
    }
}

/// True for a layer of two components; a vector without a plot type of its own is one too.
bool is_vector(int ind) {
    if (VAR_is_plot_VECT(ind)) return VAR_is_type_VECT(ind) || VAR_get_type(ind) == VTYPE_GRID;
    return VAR_is_type_VECT(ind) && VAR_is_PLOT(ind);
}

void print_variables(float x, float y, Station& station) {
    for (int i = 0; i < VAR_get_num(); ++i) {
        if (VAR_is_type_MAP(i)) continue;
        if (is_vector(i)) {
            i = print_vector(i, x, y);
        } else if (VAR_is_PLOT(i) || VAR_is_CALC(i)) {
            print_scalar(i, x, y, station);
        }
    }
}

void print_all_values(float x, float y) {
    Station station = find_station(x, y);
    const int num = VAR_get_num();
    if (file_list_in_use() && station.found) {
        MESS_print(LEVEL_VALUES, "\n");
    } else if (num >= 2) {
        if (station.found) MESS_print(LEVEL_VALUES, "\n");
        print_variables(x, y, station);
    } else if (num == 1 && VAR_is_type_CONT(0)) {
        GRD_print_value(x, y, GRD_get_grid(0));
    } else if (num == 1 && station.found) {
        print_station_text(station, "= ");
    }
}

}  // namespace

int PLT_print_location(const std::string&, float x, float y) {
    float lat = FMISS;
    float lon = FMISS;
    MAP_untran(x, y, &lat, &lon);
    MESS_print(LEVEL_VALUES, "Lat: %6.2f Lon: %7.2f XY: %6.2f %6.2f Pixel: %6.2f %6.2f\n", static_cast<double>(lat),
               static_cast<double>(lon), static_cast<double>(x), static_cast<double>(y), static_cast<double>(xW_p(x)),
               static_cast<double>(yW_p(y)));
    return 0;
}

int PLT_print_values(const std::string& event, float x, float y) {
    if (event == "v-Alt") {
        PLT_print_location(event, x, y);
        print_all_values(x, y);
    } else if (event == "e-Alt" && !file_list_in_use() && VAR_get_num() == 1) {
        GRD_edit_value(event, x, y, GRD_get_grid(0));
    }
    return 0;
}

}  // namespace zav
