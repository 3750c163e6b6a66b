#pragma once

#include <functional>
#include <string>
#include <vector>

#include "grid/zavgrd.h"
#include "map/region.h"

namespace zav {

struct Gattribs;
struct Gpt;

/// Contour types.
enum : int {
    CONT_LINE = 12,
    CONT_FILL = 15,
    CONT_FILL_LINE = 16,
    CONT_VALUE = 17,
};

/// Order of map and contours.
enum : int { CONT_UNDER_MAP = 0, CONT_OVER_MAP = 1 };

/// Most contour levels and bands, the ending entry of a level list inside them.
constexpr int CONT_LEVELS = 256;
/// Most bands of an interval that have entries of their own; the colours come back after these.
constexpr int CONT_BANDS = 2000;

/// Mouse and key events of a contour plot: type, event string, position.
using CONT_event = void (*)(int type, const char* str, float x, float y);

// Drawing, cont_scan.cpp and its neighbours.

/// Contours a grid on the current map. 0; -1 when data are switched off, after a value plot, and with a message
/// for an absent grid.
int CONT_draw(GRD_report* grid);

/// Lines, fills or values of the grid, without labels. 0, or -1 when the grid can't be placed on the map.
int CONT_draw_contour(GRD_report* grid);

/// Sends a line of two points (type 12), a polygon (15) or both (16) to the kernel, split at the edge of cyclic
/// maps. -1 when the band at work is off, else 0.
int CONT_draw_lines(int type, int num_pt, Gpt* pts);

/// Presets the plot positions of the grid points.
int CONT_grid(const std::vector<float>& grx, const std::vector<float>& gry);

/// Works out the plot positions of the grid's points on the current map, none for a grid on its own map. What is known
/// of the same grid and map is kept. 0, or -1 without memory.
int CONT_place_grid(const GRD_report& grid);
/// The same for points drawn one by one instead of cells: each place of a grid that goes round the globe counts once,
/// wherever the map shows it.
int CONT_place_points(const GRD_report& grid);

/// Those positions in the grid's own layout, x FMISS off the map; null for a grid on its own map.
const float* CONT_grid_x();
const float* CONT_grid_y();

/// Calls `take` with the stored index of each point in the map's window. False where all points count: the grid on its
/// own map, or drawn as the grid has it.
bool CONT_each_shown(const GRD_report& grid, const std::function<void(std::size_t)>& take);

// Annotation, cont_label.cpp.

/// Writes the labels of contour lines. Result 0.
int CONT_draw_labels(GRD_report* grid);
/// Marks maxima and minima. Result 0.
int CONT_draw_maxmin(GRD_report* grid);
/// Draws the colour bar below the plot (`orient` 1). 0, or -1 if no bar can be drawn.
int CONT_draw_bar(int orient, const std::string& label);
/// Height of the page below the plot that a bar with its numbers may take; 0 with the plot parameter "letter".
float CONT_bar_room();
/// Value of the bar's box under a page position, FMISS beside the bar.
float CONT_get_bar_value(float x, float y);
/// Makes the band under the pointer blink for the event "f-Al...".
int CONT_flash_value(const char* str, float x, float y);

// Set-up, cont_setup*.cpp.

/// Settles type, interval, levels, colours and labels for `grid`, the variable of index `ind`; `plot` is the number
/// of the plot in a sequence. Result 0.
int CONT_plot_setup(int plot, int ind, GRD_report* grid, const Domain* domain, CONT_event call);
/// Puts the settings of a single plot back to their start values.
int CONT_init();
/// Range, interval and levels from the settings and `grid`, which may be null. -1 when no range is known.
int CONT_set_cont_ext(GRD_report* grid);
/// Interval that divides the range into about `num` bands, rounded up at its leading digit.
float CONT_calc_intrvl(float max, float min, int num);
/// Takes the settings of a plot format. -1 for an absent one.
int CONT_format_decode_type(const char* format);
/// Line attributes of the plot format in force.
int CONT_format_decode_attrib(Gattribs* attr);
/// Takes the settings of the resource "plot_param".
int CONT_param_decode();
float CONT_prompt_intrvl();
int CONT_prompt_type();

/// Builds the set of bands from a list, a level file or the colour table; `flag` 0 lets the resource "color_fill"
/// override `string`. Only the first call after CONT_init acts.
int CONT_set_fill_colors(const char* string, int flag);
/// One entry of such a list.
int CONT_decode_fill_color(const std::string& str);
/// All fields but the colour become not given.
int CONT_fill_attrib_init(Gattribs* attrib);
/// Attributes of the band that `value` lies in; colour -1 for none.
int CONT_get_fill_attrib(float value, Gattribs* attrib);
int CONT_get_fill_attrib_ind(int ind, Gattribs* attrib);

// Settings.

int CONT_set_bar(int bar);
int CONT_get_bar();
int CONT_set_scale(float scale);
int CONT_set_skip(int x, int y);
/// Step of value plots whose plot format gives none.
int CONT_set_usual_skip(int x, int y);
/// Steps, 1 to 8, into which each step of a grid is cut before it is contoured, where a plot format gives none. -1 with
/// a message for another text.
int CONT_set_usual_smooth(const std::string& text);
/// CONT_UNDER_MAP or CONT_OVER_MAP where a plot parameter gives the order, else MISS.
int CONT_get_map_order();
int CONT_set_plot_offset(float x, float y);
int CONT_set_fill_pat(int pat);
int CONT_get_fill_pat();
int CONT_reset_fill_set();
int CONT_get_num_cont();
int CONT_set_dash(int dash);
int CONT_set_intrvl(float intrvl);
float CONT_get_intrvl();
int CONT_set_range(float max, float min);
int CONT_set_bar_range(float max, float min);
/// Range over which a palette is spread in place of the plot's levels; FMISS for these.
int CONT_set_color_range(float max, float min);
int CONT_get_type();
int CONT_set_label_type(int skip, int rad);
int CONT_set_over(int over);
int CONT_set_label_space(int x, int y);
int CONT_set_base(float base);
float CONT_get_base();
int CONT_draw_grid(int val);
/// Stores the contour type; 52 counts as filled.
int CONT_set_type(int ind);
/// Stores the limits that are given.
int CONT_set_cutoff(float max, float min);
/// Takes the plot type of a variable and its format, null for none.
int CONT_set_format(int type, const char* form);
/// Copies entries up to one with a colour below -1.
int CONT_set_fill_attribs(const std::vector<Gattribs>& attrib);
/// Explicit levels. -1 once the set of bands is built.
int CONT_set_values(const float* values, int num);
/// Leaves the value-list mode.
int CONT_reset_values();
/// Number of explicit levels, which are copied to `values` unless it is null; 0 in interval mode.
int CONT_get_values(float* values);

}  // namespace zav
