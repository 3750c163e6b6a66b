// What comes before a wind field is drawn: type, speed interval, cuts and labels.

#include <algorithm>
#include <cmath>

#include "calc/grd_trans.h"
#include "frame/flag.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/string.h"
#include "gks/zavgks.h"
#include "grid/grd_tool.h"
#include "plot/background/map.h"
#include "plot/contour/cont.h"
#include "plot/page/plt_labl.h"
#include "plot/wind/vect_state.h"
#include "var/var_tool.h"

namespace zav {

namespace {

/// Variable numbers whose names head the labels of wind plots.
constexpr int VAR_WIND = 332;
constexpr int VAR_STREAMLINES = 333;

/// Field and digits of speeds and levels in labels.
constexpr const char* SPEED_FORMAT = "5.3.1";
constexpr const char* LEVEL_FORMAT = "5.1.1";

Vect_memory& memory_of(int ind) { return vect.memory[ind >= 0 && ind < VECT_VARIABLES ? ind : 0]; }

void recall_choices(int ind) {
    const Vect_memory& memory = memory_of(ind);
    vect.vect_type = memory.vect_type;
    vect.intrvl = memory.intrvl;
    vect.base = memory.base;
    if (memory.color_high != FMISS) CONT_set_color_range(memory.color_high, 0.0F);
}

/// Speed of a wind, FMISS where a component is missing or not finite.
float speed_of(float u, float v) {
    const bool wind = u != FMISS && v != FMISS && std::isfinite(u) && std::isfinite(v);
    return wind ? std::hypot(u, v) : FMISS;
}

/// Largest speed of a field in which each wind runs along an axis, where GRD_UVmax finds none; FMISS without winds.
float largest_axis_speed(const GRD_report& ugrid, const GRD_report& vgrid) {
    const auto points = [](const Domain& d) { return static_cast<std::size_t>(d.nx) * static_cast<std::size_t>(d.ny); };
    const std::size_t count = std::min(points(ugrid.domain), points(vgrid.domain));
    float max = FMISS;
    for (std::size_t i = 0; i < count; ++i) max = std::max(max, speed_of(ugrid.grid[i], vgrid.grid[i]));
    return max;
}

/// Largest speed of the winds that the map shows, FMISS where it shows none or all count.
float largest_shown_speed(const GRD_report& ugrid, const GRD_report& vgrid) {
    float max = FMISS;
    CONT_each_shown(ugrid, [&](std::size_t k) { max = std::max(max, speed_of(ugrid.grid[k], vgrid.grid[k])); });
    return max;
}

void find_largest_speed(const GRD_report& ugrid, const GRD_report& vgrid) {
    const bool pair = ugrid.domain.nx == vgrid.domain.nx && ugrid.domain.ny == vgrid.domain.ny;
    float max = pair ? largest_shown_speed(ugrid, vgrid) : FMISS;
    if (max == FMISS) GRD_UVmax(&ugrid, &vgrid, &max);
    if (max == FMISS) max = largest_axis_speed(ugrid, vgrid);
    VECT_set_max(max);
}

/// The interval of the resource counts its bands from 0 up to the largest speed.
void settle_interval() {
    RES_getval("con_interval", &vect.intrvl, CV_float);
    if (!(vect.intrvl > 0.0F)) vect.intrvl = FMISS;
    vect_read_base();
    std::vector<std::string> items;
    RES_getvals("con_base", items);
    if (!items.empty()) CONT_set_cutoff(vect.max_cut, vect.min_cut);
    if (vect.intrvl != FMISS) {
        CONT_set_base(0.0F);
        CONT_set_intrvl(vect.intrvl);
        CONT_set_range(vect.grid_max, 0.0F);
        VECT_set_intrvl(vect.intrvl);
        // Levels that a contour layer before this one left would number the bands and the boxes of the bar.
        CONT_set_cont_ext(nullptr);
    }
    if (CONT_get_type() == MISS) CONT_set_type(CONT_FILL);
    MAP_fill_cont(0);
}

std::string level_text() {
    std::vector<float> values(CONT_LEVELS + 1);
    const int count = CONT_get_values(values.data());
    if (count > 0) {
        std::string text = "LEVELS: ";
        for (int i = 0; i < count; ++i) {
            if (i > 0) text += ',';
            text += set_num(LEVEL_FORMAT, values[i]);
        }
        return text;
    }
    if (vect.intrvl == FMISS) return "";
    CONT_set_intrvl(vect.intrvl);
    return "INTERVAL: " + set_num(LEVEL_FORMAT, vect.intrvl);
}

void set_labels(const GRD_report& grid) {
    const bool streamlines = FLAG_get(FLAG_PLOT_TYPE) == VECT_STREAMLINES;
    const int variable = streamlines ? VAR_STREAMLINES : VAR_WIND;
    PLT_label_up_left(VAR_make_datatype(grid.time, grid.ltype, grid.level, variable, "m/s"));
    PLT_label_up_right(grid.datim);
    if (streamlines || VECT_get_vect() == 0) PLT_label_low_right("MAX: " + set_num(SPEED_FORMAT, vect.grid_max));
    const std::string levels = level_text();
    if (CONT_get_bar() < 1) PLT_label_low_left(levels);
}

}  // namespace

void vect_read_base() {
    std::vector<std::string> items;
    RES_getvals("con_base", items);
    for (const std::string& item : items) {
        const char first = item.empty() ? '\0' : item[0];
        float* target = first == '>' ? &vect.min_cut : first == '<' ? &vect.max_cut : &vect.base;
        RES_conv_data(item.c_str() + (target != &vect.base ? 1 : 0), target, CV_float);
    }
}

int VECT_plot_setup(int plot, int ind, GRD_report* ugrid, GRD_report* vgrid, Domain* domain, PLT_event_func call) {
    // Winds without data at the first time of a sequence are settled at the first at which they have some.
    Vect_memory& memory = memory_of(ind);
    if (plot == 0) memory = {};
    if (FLAG_get(FLAG_PLOT_TYPE) == VECT_NONE || ugrid == nullptr || vgrid == nullptr) return 0;
    vect.callback = call;
    vect.ugrd_ptr = ugrid;
    vect.vgrd_ptr = vgrid;
    CONT_init();
    VECT_init();
    if (plot > 0) recall_choices(ind);
    VECT_format_decode_type();
    VECT_param_decode();
    if (!GRD_has_values(ugrid) || !GRD_has_values(vgrid)) return 0;

    if (domain != nullptr && domain->clat == FMISS) *domain = ugrid->domain;
    MESS_print(MESS_PROGRESS, "Plotting wind vectors\n\n");
    CONT_set_fill_colors(nullptr, 0);
    VECT_prompt_type();
    find_largest_speed(*ugrid, *vgrid);
    vect.units = PLT_letter() ? "m/s" : ugrid->units;
    settle_interval();
    set_labels(*ugrid);
    if (memory.vect_type == MISS) memory = {vect.vect_type, vect.intrvl, vect.base, vect.grid_max};
    return 0;
}

}  // namespace zav
