#pragma once

/// Metafiles: a text record of kernel calls that can be played back, and a binary CGM (ISO 8632-3) of polylines and
/// clip rectangles.

#include <string>
#include <vector>

#include "gks/gks.h"

namespace zav {

/// Forms of a metafile.
enum : int { GMETA_TEXT = 0, GMETA_CGM = 1 };

/// What opens the metafile workstation for gopen_ws; `words` are those of the connection string. 0, or -1.
int gmeta_open(const std::vector<std::string>& words);

/// The output that the first of the words, the environment or the default names.
std::string gmeta_file_name(const std::vector<std::string>& words);

void gmeta_set_type(int type);
int gmeta_get_type();

/// Opens the output: "|" a command, "+" an existing file to add to, else a new file. False on failure.
bool gmeta_open_file(const std::string& filename);
void gmeta_init_file();

/// Ends the picture and begins the next.
void gmeta_new_picture();

/// 0, or -1 if no file is open or it couldn't be written whole.
int gmeta_close_file();

/// As gps_keep and gps_break_off.
void gmeta_keep();
void gmeta_break_off();

/// Writes to the text form. Nothing on a CGM or with no file open, so that a caller needn't ask.
void gmeta_printf(const char* mess, ...) __attribute__((format(printf, 1, 2)));

/// The points of a text item, "%f,%f " each, with a break after each fourth point; `last_break` breaks also where the
/// fourth point is the last. No line end.
void gmeta_points(Gint num_pt, const Gpt* array_pt, bool last_break);

/// An element's header: class, id, length, and a 16-bit word if `param` is above 0 or `len` is 31. -1 if no file is
/// open, else 0.
int gcgm_control(int maj, int min, int len, int param);

/// A polyline of world coordinates, or one point in world coordinates or output units.
void gcgm_polyline(Gint num_pt, const Gpt* array_pt);
void gcgm_point(float x, float y);
void gcgm_ps_point(float x, float y);

/// No attribute reaches a CGM.
void gcgm_set_color(int color);
void gcgm_set_fill_color(int color);
void gcgm_set_width(int color, float width);
void gcgm_set_type(int type);

/// Plays a text metafile back through the kernel. 0.
int gread_metafile(const std::string& filename);

}  // namespace zav
