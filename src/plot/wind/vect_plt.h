#pragma once

#include <string>

#include "map/region.h"
#include "plot/page/plt_tool.h"
#include "plot/wind/vecttool.h"

namespace zav {

struct GRD_report;

/// Plot types of a pair of wind components.
enum : int { VECT_ANY = 20, VECT_VECTORS = 21, VECT_BARBS = 22, VECT_STREAMLINES = 23, VECT_NONE = 99 };

/// Settles type, speed interval, cuts and labels for a pair of grids. `ind` is the variable, `plot` the number of the
/// plot in a sequence. Result 0.
int VECT_plot_setup(int plot, int ind, GRD_report* ugrid, GRD_report* vgrid, Domain* domain, PLT_event_func call);
/// Draws the pair that was set up. 0, or -1 after a message.
int VECT_draw(GRD_report* ugrid, GRD_report* vgrid);
/// Key of the longest arrow.
int VECT_draw_vect();
/// One streamline from column `i`, row `j` counted from the bottom, of at most `length` steps.
int VECT_stream(GRD_report* ugrid, GRD_report* vgrid, int i, int j, float length);
int VECT_init();
/// The plot type, after a question if none is known.
int VECT_prompt_type();
int VECT_format_decode_type();
int VECT_format_decode_attrib(Gattribs* attr);
int VECT_param_decode();
/// Plot type and format of the layer; a null format is empty.
int VECT_set_format(int type, const char* form);
/// Plot positions of the grid points, owned by the caller; null for grid space.
int VECT_grid(const float* grx, const float* gry);

int VECT_set_scale(float scale);
int VECT_set_intrvl(float intrvl);
float VECT_get_intrvl();
int VECT_set_max(float max);
int VECT_set_type(int type);
int VECT_get_type();
/// 1 asks for the key of the longest arrow.
int VECT_set_vect(int val);
int VECT_get_vect();
float VECT_get_vector_size();
int VECT_set_base(float base);

}  // namespace zav
