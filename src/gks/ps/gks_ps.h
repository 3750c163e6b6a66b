#pragma once

/// PostScript output, in points of 1/72 inch with y upward.

#include <string>
#include <vector>

#include "gks/gks.h"
#include "gks/gks_ws.h"

namespace zav {

struct IMG_report;

/// What opens the PostScript workstation for gopen_ws; `words` are those of the connection string. 0, or -1.
int gps_open(const std::vector<std::string>& words);

/// The output that the first of the words, the environment or the default names.
std::string gps_file_name(const std::vector<std::string>& words);

/// Opens the output: "|" a command, "+" an existing file to add to, else a new file. False on failure.
bool gps_open_file(const std::string& filename);

void gps_init();

/// Writes the file's head, or on a page that is added to the lines that reset the state.
void gps_init_file();

/// Ends the page and begins the next, in a file of several pages (gset_pages).
void gps_new_page();

/// Writes the trailer and closes. 0, or -1 if no file is open or it couldn't be written whole.
int gps_close_file();

/// What is written from here on, and was before, goes to its place; before that it waits.
void gps_keep();
/// Closes a plot that was broken off: whole if it was kept, else without a trace.
void gps_break_off();

/// Paper size in inches.
void gps_set_size(float x, float y);
void gps_set_EPS(int eps);
/// What an EPS file's bounding box holds: the plot's area, and the paper's, where plots may be added.
void gps_set_box(const Gdevice_area& area, const Gdevice_area& paper);

/// 1 portrait, 0 landscape.
void gps_set_orient(int portrait);
void gps_set_scale(float scale);
void gps_set_colorPS(int color);
int gps_get_colorPS();
void gps_set_reverse(int reverse);
void gps_set_base_width(int width);

/// Keeps the grey level of a colour index, for PostScript and HPGL.
void gps_set_color_rep(int ind, float red, float green, float blue);
float gps_get_gray(int ind);

/// State of the page: pen colour, fill colour, line width and dash type; written where they change.
void gps_set_color(int color);
void gps_set_fill_color(int color);
void gps_set_width(int color, float width);
void gps_set_type(int type);

/// Writes to the file, if one is open.
void gps_printf(const char* format, ...) __attribute__((format(printf, 1, 2)));

/// Path steps, to world coordinates or to output units.
void gps_move(float x, float y);
void gps_line(float x, float y);
void gps_move_abs(float x, float y);
void gps_line_abs(float x, float y);

/// Fills what closed rings of world coordinates enclose, by the nonzero rule.
void gps_rings(Gint num_rings, const Gint* num_pt, const Gpt* array_pt);

/// Clips to the viewport whose corners are given in output units, margin included.
void gps_clip(float left, float bottom, float right, float top);

/// Writes an image of indexed pixels over the current viewport; (x, y) is the viewport's origin in the image.
void gps_image(const IMG_report* image, int x, int y);

}  // namespace zav
