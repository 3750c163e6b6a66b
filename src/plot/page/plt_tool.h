#pragma once

#include <string>

#include "gks/gks.h"
#include "gks/zavgks.h"
#include "map/region.h"
#include "plot/page/plt_labl.h"

namespace zav {

/// Mouse and key callback: `type` 2 for keys and resizes, 3 for buttons; event text; position in plot coordinates.
using PLT_event_func = void (*)(int type, const char* str, float x, float y);
/// Draws the whole plot anew on a domain.
using PLT_redraw_func = int (*)(Domain* domain);

/// Kinds of image output.
enum : int { PLT_DUMP_NONE = 0, PLT_DUMP_XWD = 1, PLT_DUMP_GIF = 2, PLT_DUMP_IMG = 3, PLT_DUMP_PNG = 4 };

/// What the layers want beside the plot; labels give way to it.
struct PLT_requests {
    int bar = 0;         ///< colour bar: 1 for levels, 2 by parameter, 3 by format, -2 none
    int vector_key = 0;  ///< 1: the key of the longest arrow
};
PLT_requests& PLT_layer_requests();

/// Opens the workstation for a plot of the given width over height. 0, or -1 when plotting is off.
int PLT_open_page(float aspect);
/// Starts a further plot on the open workstation. 0, or -1 when plotting is off.
int PLT_reset(float aspect);
/// Moves to the panel set by PLT_panel_decode. An aspect of 0 keeps that of the present plot.
int PLT_panel(float aspect);
/// Shows the plot to the user and closes the workstation; in batch mode the rest of the run goes on in the background.
/// 0 or -1.
int PLT_close();
/// Closes the workstation of a plot that came to nothing: its output is left as it was before, unless gkeep_output said
/// that it holds something.
void PLT_break_off();
/// Breaks off and ends the program with status `val`.
[[noreturn]] void PLT_exit(int val);
/// Leaves a comment of at most 79 characters in the output.
int PLT_mess(const char* mess, ...) __attribute__((format(printf, 1, 2)));

/// The plot's viewport in the page.
int PLT_get_view(Glim* view);
Gws_type PLT_get_work_type();
/// Switches the border round the viewport.
int PLT_border(int val);
int PLT_get_full_lab();
/// Charts are drawn for today's fine grids: areas and lines joined, marks and labels kept apart, winds thinned to what
/// paper holds. With `on` (the plot parameter "letter") each point and cell is drawn as the grid has it.
void PLT_set_letter(bool on);
bool PLT_letter();

/// Margins: none left and right, `v` below and above.
int PLT_set_view_offset(float v);
/// Margins on the four sides, as fractions of the panel.
int PLT_set_view_offsets(const Glim* offsets);
float PLT_get_view_offset();
int PLT_get_view_offsets(Glim* offsets);
int PLT_set_zoom(int val);
int PLT_get_zoom();
int PLT_set_bar(int val);
/// 1 the first time in a frame that a colour bar is wanted, then 0.
int PLT_bar();

/// Panel from "SXxSY+OX+OY": fractions of the page, or with SX above 1 columns, rows, column, row.
int PLT_panel_decode(const std::string& str);

int PLT_set_callback(PLT_event_func func);
int PLT_set_zoom_func(PLT_redraw_func func);
int PLT_set_resize_func(PLT_redraw_func func);

}  // namespace zav
