#pragma once

/// State that the units of the wind layer share. Private to plot/vect_*.cpp and their tests.

#include <array>
#include <string>
#include <vector>

#include "frame/zav.h"
#include "gks/gks.h"
#include "grid/zavgrd.h"
#include "plot/page/plt_tool.h"
#include "plot/wind/vect_plt.h"

namespace zav {

/// Variables whose choices are remembered from plot to plot.
constexpr int VECT_VARIABLES = 60;

/// What the first plot of a time sequence settled for a variable.
struct Vect_memory {
    int vect_type = MISS;
    float intrvl = FMISS;
    float base = FMISS;
    float color_high = FMISS;  ///< end of the speeds over which the colours are spread
};

struct Vect_state {
    int plot_type = MISS;  ///< type handed in with the format
    int vect_type = MISS;  ///< type in force
    int type_set = 0;      ///< 1: a type chosen before the set-up outlives VECT_init
    std::array<Vect_memory, VECT_VARIABLES> memory{};
    float intrvl = FMISS;         ///< speed interval
    float scale = 1.0F;           ///< size of arrows and barbs
    float arrow_scale = 1.0F;     ///< size and spacing of the arrowheads along streamlines
    float base = FMISS;           ///< speed of one unit of arrow length; the crossing limit of streamlines
    float grid_max = FMISS;       ///< largest speed
    std::string units;            ///< of the speeds, empty when not known
    float min_cut = FMISS;        ///< speeds outside the cuts are not drawn
    float max_cut = FMISS;        ///<
    float vect_size = 0.0F;       ///< length of the longest arrow, or of a barb's staff, in plot units
    float vert_size = 0.0F;       ///< height of the plot window in plot units
    const float* grdx = nullptr;  ///< plot position of each grid point; null: the plot is in grid space
    const float* grdy = nullptr;  ///<
    std::string format;           ///< plot format, at most 99 characters
    int xskip = 1;                ///< thinning steps, at least 1
    int yskip = 1;                ///<
    bool skip_given = false;      ///< the user gave them: winds aren't thinned by their size on paper
    float head_size = 0.0F;       ///< largest head of an arrow in plot units, 0: all in proportion to the arrows
    int uvgrid = 1;               ///< 1: components are relative to the grid
    Gattribs attrib;              ///< lines and areas of the point at work
    std::vector<int> num;         ///< crossing counters of a streamline plot, the last one for places off the mesh
    PLT_event_func callback = nullptr;
    GRD_report* ugrd_ptr = nullptr;  ///< grids being set up, owned by the caller
    GRD_report* vgrd_ptr = nullptr;
};

/// The one wind layer; one pair of grids is drawn at a time.
extern Vect_state vect;

/// Reads the resource "con_base": cuts and base.
void vect_read_base();

/// True when a list of levels or an interval colours arrows and lines by their speed.
bool vect_has_bands();

/// Colour and line of the band that a speed lies in.
void vect_band_attributes(float spd);

/// Turns the components of thinned points to the axes of the map and draws streamlines of at most `length` steps.
/// 0, or -1 without memory.
int vect_draw_streamlines(GRD_report* ugrid, GRD_report* vgrid, float length);

/// Draws streamlines whose distance and heads are lengths on the page, on a map of the earth. 0, or -1 with a message
/// when there is no memory.
int vect_draw_flow(const GRD_report& ugrid, const GRD_report& vgrid);

/// Map position of the point in column `i`, stored row `j`: from the positions handed in, or on the current map.
/// False off the map.
bool vect_map_position(const GRD_report& grid, int i, int j, float* x, float* y);

/// Direction in plot space of a wind along `dir` at the point in column `i`, stored row `j`, whose map position is
/// (x, y). In grid space the cells are square, whatever their sides on the map.
float vect_plot_direction(const GRD_report& grid, int i, int j, float dir, float x, float y);

}  // namespace zav
