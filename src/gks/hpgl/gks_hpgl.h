#pragma once

/// HPGL output: HP-GL/2 in plotter units of 1/1015 inch with y upward, bare or in a PCL wrapper.

#include <string>
#include <vector>

#include "gks/gks.h"

namespace zav {

/// What opens the HPGL workstation for gopen_ws; `words` are those of the connection string. 0, or -1.
int ghpgl_open(const std::vector<std::string>& words);

/// The output that the first of the words, the environment or the default names.
std::string ghpgl_file_name(const std::vector<std::string>& words);

/// Sets the state of the pen to that of a new plot, and the wrapper to PCL.
void ghpgl_init();

/// Opens the output: "|" a command, "+" an existing file to add to, else a new file. False on failure.
bool ghpgl_open_file(const std::string& filename);

/// Writes the file's head, or on a page that is added to what resets the pen.
void ghpgl_init_file();

/// Ends the page and begins the next, in a file of several pages (gset_pages).
void ghpgl_new_page();

/// Writes the trailer and closes. 0, or -1 if no file is open or it couldn't be written whole.
int ghpgl_close_file();

/// What is written from here on, and was before, goes to its place; before that it waits.
void ghpgl_keep();
/// Closes a plot that was broken off: whole if it was kept, else without a trace.
void ghpgl_break_off();

/// 0 bare HP-GL/2, 1 in a PCL wrapper, 2 the same turned by 90 degrees.
void ghpgl_set_pcl(int pcl);
/// Turns the page by 90, 180 or 270 degrees; any other number doesn't.
void ghpgl_set_rotate(int degrees);
/// Width of line width 1, in mm.
void ghpgl_set_base_width(float width);

// Requests that are kept and change nothing: a plot has its size in inches, and its pen is black.

void ghpgl_set_scale(float scale);
void ghpgl_set_colorPS(int color);
int ghpgl_get_colorPS();
void ghpgl_set_reverse(int reverse);

/// State of the page: screening of the pen, shade of areas, line width and dash type; written where they change.
void ghpgl_set_color(int color);
void ghpgl_set_fill_color(int color);
void ghpgl_set_width(int color, float width);
void ghpgl_set_type(int type);

/// Writes to the file, if one is open.
void ghpgl_printf(const char* format, ...) __attribute__((format(printf, 1, 2)));

/// Pen up and down, to world coordinates or to output units.
void ghpgl_move(float x, float y);
void ghpgl_line(float x, float y);
void ghpgl_move_abs(float x, float y);
void ghpgl_line_abs(float x, float y);

/// Fills what closed rings of world coordinates enclose, by the nonzero rule.
void ghpgl_rings(Gint num_rings, const Gint* num_pt, const Gpt* array_pt);

/// Clips to the viewport whose corners are given in output units, margin included.
void ghpgl_clip(float left, float bottom, float right, float top);

}  // namespace zav
