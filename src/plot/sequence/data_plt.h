#pragma once

#include <string>

#include "files/date.h"
#include "frame/zav.h"
#include "map/region.h"
#include "plot/page/plt_tool.h"

namespace zav {

struct GRD_report;

/// Data source of a run. The sequencer itself uses `plot`, `date`, `domain` and `callback`.
struct DATA_info {
    int plot = 0;  ///< number of the plot in a sequence, 0 for the first time
    int model = MISS;
    Date date;
    int (*out_raw)() = nullptr;
    int (*out_grid)() = nullptr;
    Domain domain;
    Domain grd_domain;
    GRD_report* report = nullptr;
    int (*get_var)() = nullptr;
    int (*read_report)() = nullptr;
    int (*rewind)() = nullptr;
    int (*get_data)() = nullptr;
    int (*plot_data)() = nullptr;
    int (*grid_data)() = nullptr;
    PLT_event_func callback = nullptr;
};

/// Once per plot: looks through the variables and the plot parameters for the order of map and data.
int DATA_plot_init();
/// Once per frame: selects the plot area and draws the map below the data.
int DATA_plot_start();
/// Once per panel: the same without selecting the plot area. The layers behind `ind` tell whether one will hide the
/// map, which then is drawn above the data alone.
int DATA_plot_begin(int ind);
/// Draws the map above the data and the labels.
int DATA_plot_end();
/// Starts labels, colour bar and vector key anew.
int DATA_new_frame();

/// Draws the layer that begins at variable `ind`; the index of the last variable it used.
int DATA_plot_grid(int ind, DATA_info* info);
/// Contour layer; `format` null takes the variable's.
int DATA_plot_cont(int ind, DATA_info* info, const char* format);
/// Vector layer; `units` null leaves the grids' units, empty asks for them, `format` null takes the variable's.
int DATA_plot_vect(int ind, DATA_info* info, std::string* units, const char* format);
/// Colour bar, once a frame. 0 if drawn, -1 if not.
int DATA_plot_bar();
/// Key of the longest vector, once a frame. 0 if drawn, -1 if not.
int DATA_plot_vect_bar();

int DATA_map_underlay();
int DATA_map_overlay();
/// Draws the variable `ind` if it is a map layer. 0, or -1 past the end.
int DATA_plot_map(int ind);
/// Starts a panel if variable `ind` is one. 0, or -1 past the end.
int DATA_plot_control(int ind, Domain* domain);
int DATA_plot_panel(int ind, Domain* domain);

}  // namespace zav
