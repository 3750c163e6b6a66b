#pragma once

#include <string>

#include "plot/page/plt_tool.h"

namespace zav {

/// Decodes the plot parameters and opens the workstation for a plot of the given width over height. 0, or -1 when
/// plotting is off.
int PLT_open(float aspect);
/// Goes on to the next page of a sequence. 0, or -1 when plotting is off.
int PLT_next_page(float aspect);
/// Decodes the resources "plot_param" and "out_file".
int PLT_param_decode();

/// Image output of the following plots; an empty name takes the default of the type.
int PLT_set_dump(int type, const std::string& filename);
/// Writes the image file of a frame. 0, or -1 when none is wanted or it fails.
int PLT_dump(int frame);

/// Redraws by `func` each `sec` seconds while the plot is held.
int PLT_set_refresh_func(int sec, PLT_redraw_func func);

// Reactions to an event; each looks for its own events and ignores the others.

int PLT_plot_zoom(const std::string& event, float x, float y);
int PLT_plot_resize(const std::string& event, float x, float y);
void PLT_plot_refresh();
/// Prints the position in earth, plot and pixel coordinates.
int PLT_print_location(const std::string& event, float x, float y);
/// Prints the values of the plotted variables at a point.
int PLT_print_values(const std::string& event, float x, float y);

}  // namespace zav
