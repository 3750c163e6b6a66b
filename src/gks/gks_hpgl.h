#pragma once

/// HPGL output, in plotter units of 1/1015 inch with y upward.

#include <string>
#include <vector>

#include "gks/gks.h"

namespace zav {

/// What opens the HPGL workstation for gopen_ws; `words` are those of the connection string. 0, or -1.
int ghpgl_open(const std::vector<std::string>& words);

void ghpgl_init();

/// Opens the output: "|" a command, "+" an existing file to add to, else a new file. False on failure.
bool ghpgl_open_file(const std::string& filename);
void ghpgl_init_file();

/// 0, or -1 if no file is open.
int ghpgl_close_file();

/// 0 bare HP-GL/2, 1 in a PCL wrapper, 2 the same turned by 90 degrees.
void ghpgl_set_pcl(int pcl);
void ghpgl_set_rotate(int degrees);
void ghpgl_set_scale(float scale);
void ghpgl_set_base_width(float width);
void ghpgl_set_colorPS(int color);
int ghpgl_get_colorPS();
void ghpgl_set_reverse(int reverse);

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

}  // namespace zav
