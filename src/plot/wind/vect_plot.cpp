// The whole plot of a single wind field.

#include "calc/grd_trans.h"
#include "frame/flag.h"
#include "frame/mess.h"
#include "gks/gks.h"
#include "plot/background/map.h"
#include "plot/contour/cont.h"
#include "plot/wind/vect_state.h"

namespace zav {

namespace {

/// Opens the graphics, or starts a further plot on them. True when they were opened.
bool open_plot(Domain* domain) {
    const float aspect = DOM_aspect(domain);
    if (gchk_graphics() != 0) {
        PLT_reset(aspect);
        return false;
    }
    PLT_open(aspect);
    PLT_set_callback(vect.callback);
    PLT_set_zoom_func(VECT_plot);
    PLT_set_resize_func(VECT_plot);
    return true;
}

void draw_plot(Domain* domain) {
    MAP_setup(domain);
    MAP_draw(MAP_PASS_UNDER | MAP_PASS_PLAIN);
    VECT_plot_setup(0, 0, vect.ugrd_ptr, vect.vgrd_ptr, domain, vect.callback);
    VECT_draw(vect.ugrd_ptr, vect.vgrd_ptr);
    GPH_trans(1);
    if (VECT_get_type() != VECT_STREAMLINES && VECT_get_vect() > 0) VECT_draw_vect();
    if (CONT_get_bar() > 0) CONT_draw_bar(1, "");
    GPH_trans(2);
    MAP_draw(MAP_PASS_OVER);
    PLT_labels();
    PLT_dump(0);
}

}  // namespace

int VECT_plot_grid(GRD_report* ugrid, GRD_report* vgrid, Domain* domain, PLT_event_func call) {
    if (FLAG_get(FLAG_PLOT_TYPE) == VECT_NONE) return 0;
    vect.callback = call;
    vect.ugrd_ptr = ugrid;
    vect.vgrd_ptr = vgrid;
    return VECT_plot(domain);
}

int VECT_plot(Domain* domain) {
    if (FLAG_get(FLAG_PLOT_TYPE) == VECT_NONE) return 0;
    Domain area = domain != nullptr ? *domain : Domain{};
    const GRD_report* grid = vect.ugrd_ptr;
    if (area.clat == FMISS && grid != nullptr) area = grid->domain;
    const bool opened = open_plot(&area);
    std::vector<float> grdx;
    std::vector<float> grdy;
    if (grid != nullptr && DOM_comp(&area, &grid->domain) == 0) {
        MESS_print(MESS_PROGRESS, "Computing plot domain...\n");
        if (GRD_proj_XY(grid, &area, grdx, grdy) == 0 && !grdx.empty()) VECT_grid(grdx.data(), grdy.data());
    }
    draw_plot(&area);
    VECT_grid(nullptr, nullptr);
    if (opened) PLT_close();
    return 0;
}

}  // namespace zav
