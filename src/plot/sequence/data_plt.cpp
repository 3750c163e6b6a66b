// Order of a plot: layers, map background, colour bar, vector key and labels of a frame or a panel.

#include "plot/sequence/data_plt.h"

#include <algorithm>
#include <array>

#include "calc/grd_calc.h"
#include "calc/grd_trans.h"
#include "frame/flag.h"
#include "frame/mess.h"
#include "frame/string.h"
#include "gks/gks.h"
#include "gks/gks_colr.h"
#include "gks/zavgks.h"
#include "grid/grd_tool.h"
#include "map/maptran.h"
#include "plot/background/map.h"
#include "plot/contour/cont.h"
#include "plot/page/colors.h"
#include "plot/page/plt_labl.h"
#include "plot/page/plt_room.h"
#include "plot/page/plt_tool.h"
#include "plot/wind/vect_plt.h"
#include "var/var_tool.h"

namespace zav {

namespace {

/// Plot type of station data drawn as filled areas.
constexpr int FILLED_STATIONS = 52;

/// What the layers of a frame may change, as the page began with it.
struct Page_settings {
    int fill = 0;
    int num_over = 0;
    int low_right = 1;  ///< the lower right labels are on
    PLT_requests requests;
    Glim view;  ///< the page's part of the display, as fractions
};

struct State {
    int fill = 0;       ///< 1 if a layer fills areas, so that the map goes over the data
    int first = 0;      ///< first variable of this frame
    bool under = true;  ///< the map lies under the data of this frame
    int bar = 0;        ///< 1 once the colour bar of this frame is drawn
    int vbar = 0;       ///< 1 once the vector key of this frame is drawn
    int vfunc = 0;      ///< 1 while a plot function of two grids is asked for
    int map = 0;        ///< 1: a variable is a map layer; -1: the page begins with a panel and has no map layer
    int panel = 0;      ///< panels begun in this frame
    int drawn = 0;      ///< layers drawn on the page outside of panels
    Page_settings page;
};
State state;

bool fills_areas(int type) { return type == CONT_FILL || type == CONT_FILL_LINE || type == FILLED_STATIONS; }

bool is_vector_type(int type) { return type >= VECT_ANY && type <= VECT_STREAMLINES; }

/// True for a vector that is drawn as one. One that names no plot type leaves the choice to the vector layer.
bool is_vector_layer(int ind) {
    const int type = VAR_get_type(ind);
    return VAR_is_plot_VECT(ind) != 0 && (is_vector_type(type) || type == VTYPE_GRID);
}

void find_map_layers() {
    state.map = 0;
    for (int i = 0; i < VAR_get_num(); i++) {
        if (VAR_is_type_MAP(i) != 0) state.map = 1;
    }
    if (state.map != 1 && VAR_get_num() > 0 && VAR_is_PANEL(0) != 0) state.map = -1;
}

/// The grids of a vector layer are converted to the layer's units, or lend it theirs.
void settle_units(GRD_report* const* grids, std::string* units) {
    if (units == nullptr || grids[0] == nullptr) return;
    if (units->empty()) {
        *units = fit_text(grids[0]->units, GRD_UNITS_SIZE);
        return;
    }
    GRD_units(grids[0], *units);
    if (grids[1] != nullptr) GRD_units(grids[1], *units);
    *units = fit_text(grids[0]->units, GRD_UNITS_SIZE);
}

/// How a variable is drawn.
enum class Layer { none, vector, contour };

/// Draws the vector layer that begins at `ind`, if there is one; `last` gets the last variable it used.
Layer draw_vector_forms(int ind, DATA_info* info, int* last) {
    const int type = VAR_get_type(ind);
    std::string* units = &VAR_get_var(ind)->units;
    const std::string format = VAR_get_format(ind);
    if (is_vector_layer(ind)) {
        VECT_set_type(type);
        *last = DATA_plot_vect(ind + 1, info, units, format.c_str());
        return Layer::vector;
    }
    if (VAR_is_plot_FUNC_VECT(ind) != 0) {
        VECT_set_type(type);
        *last = DATA_plot_vect(ind, info, units, format.c_str());
        return Layer::vector;
    }
    if (VAR_is_plot_FUNC(ind) != 0 && is_vector_type(type)) {
        VECT_set_type(type);
        if (GRD_is_plot_func(VAR_get_name(ind)) != 0) {
            state.vfunc = 1;
            *last = DATA_plot_vect(ind + 1, info, units, format.c_str());
            state.vfunc = 0;
        } else {
            *last = DATA_plot_vect(ind, info, nullptr, nullptr);
        }
        return Layer::vector;
    }
    return Layer::none;
}

Glim page_view() {
    Glim view;
    float x = 1.0F;
    float y = 1.0F;
    GPH_get_view_size(&view);
    ginq_maxview(PLT_get_work_type(), &x, &y);
    return {view.x_min / x, view.x_max / x, view.y_min / y, view.y_max / y};
}

void keep_page() {
    state.page = {state.fill, PLT_get_num_over(), FLAG_getplot(PLOT_TEXT_LR), PLT_layer_requests(), page_view()};
}

/// A panel starts as the page did, with nothing of the frame before it.
void restore_page() {
    state.fill = state.page.fill;
    FLAG_setplot(PLOT_TEXT_LR, state.page.low_right);
    PLT_layer_requests() = state.page.requests;
    PLT_init_labels();
    PLT_set_num_overlay(-state.page.num_over);
    MAP_fill_cont(0);
}

/// Makes room for an inset on paper and displays: what the page shows there would run through it.
void clear_panel() {
    const bool paper = gtype_is_PAGE(PLT_get_work_type());
    if (!paper && !gtype_is_WIN(PLT_get_work_type())) return;
    Glim view;
    Glim panel;
    Glim margins;
    PLT_get_view(&view);
    GPH_get_view_size(&panel);
    PLT_get_view_offsets(&margins);
    const float below = std::max(margins.y_min * (panel.y_max - panel.y_min), CONT_bar_room());
    const float above = margins.y_max * (panel.y_max - panel.y_min);
    const std::array<Gpt, 5> area{{{view.x_min, view.y_min - below},
                                   {view.x_max, view.y_min - below},
                                   {view.x_max, view.y_max + above},
                                   {view.x_min, view.y_max + above},
                                   {view.x_min, view.y_min - below}}};
    GPH_trans(1);
    GPH_fill_attr(nullptr);
    gset_fill_colr_ind(CLR_get_ind(paper || gget_inverse() != 0 ? "white" : "black"));
    gfill_area(static_cast<Gint>(area.size()), area.data());
    GPH_fill_attr(nullptr);
    GPH_trans(2);
}

/// True if a layer of this frame names a kind that fills areas.
bool will_fill() {
    if (PLT_letter()) return false;
    for (int i = state.first; i < VAR_get_num() && VAR_is_PANEL(i) == 0; i++) {
        if (VAR_is_plot_GRID(i) != 0 && fills_areas(VAR_get_type(i))) return true;
    }
    return false;
}

/// The map goes over layers that fill areas and would hide it, unless the user says how.
bool map_goes_over(bool fill) {
    const int order = CONT_get_map_order();
    return order == MISS ? fill : order == CONT_UNDER_MAP;
}

void end_frame() {
    DATA_map_overlay();
    PLT_labels();
}

/// The label of a layer that was drawn.
void label_layer(int ind) {
    if (VAR_is_LABEL(ind) == 0 && VAR_is_SUBREG(ind) == 0) return;
    if (is_vector_type(VAR_get_type(ind)) || is_vector_layer(ind) || PLT_get_label_type() < 0) {
        PLT_label_up_left(VAR_make_var_form_datatype(ind));
    } else {
        PLT_label_up_left(GRD_get_grid_info(ind));
    }
    PLT_next_overlay();
}

}  // namespace

int DATA_plot_init() {
    state.fill = fills_areas(FLAG_get(FLAG_PLOT_TYPE)) ? 1 : 0;
    find_map_layers();
    CONT_param_decode();  // tells the order of map and contours
    return 0;
}

int DATA_new_frame() {
    PLT_set_overlay(0);
    PLT_room().clear();
    state.under = true;
    state.bar = 0;
    state.vbar = 0;
    return 0;
}

int DATA_plot_begin() {
    DATA_new_frame();
    return DATA_map_underlay();
}

int DATA_plot_start() {
    // The former page may have left the plot in its last panel.
    if (state.panel > 0) {
        PLT_panel(0.0F);
        const Domain domain = *MAP_get_domain(nullptr);
        MAP_setup(&domain);
    }
    GPH_trans(2);
    keep_page();
    state.first = 0;
    // A page that begins with a panel has no map of its own: each panel draws one.
    if (state.map == -1) {
        DATA_new_frame();
    } else {
        DATA_plot_begin();
    }
    state.panel = 0;
    state.drawn = 0;
    return 0;
}

int DATA_plot_end() {
    end_frame();
    if (state.panel == 0) return 0;
    const Glim& view = state.page.view;
    GPH_set_view_size(view.x_max - view.x_min, view.y_max - view.y_min, view.x_min, view.y_min);
    restore_page();
    return 0;
}

int DATA_map_underlay() {
    // A second map would show beside the smoothed lines of the one over the data.
    state.under = state.map == 1 || !map_goes_over(state.fill != 0 || will_fill());
    const bool lines = state.map != 1 && state.under;
    return MAP_draw(lines ? MAP_PASS_UNDER | MAP_PASS_PLAIN : MAP_PASS_UNDER);
}

int DATA_map_overlay() {
    const bool over = !state.under || map_goes_over(state.fill != 0);
    if (state.map == 1 || !over) return MAP_draw(MAP_PASS_OVER);
    MAP_fill_cont(state.fill);
    return MAP_draw(MAP_PASS_OVER | MAP_PASS_PLAIN);
}

int DATA_plot_grid(int ind, DATA_info* info) {
    if (ind < 0 || ind >= VAR_get_num()) return ind;
    int last = ind;
    Layer layer = draw_vector_forms(ind, info, &last);
    if (layer != Layer::none) {
        DATA_plot_bar();
        DATA_plot_vect_bar();
    } else if (VAR_is_plot_GRID(ind) != 0) {
        layer = is_vector_type(VAR_get_type(ind)) ? Layer::vector : Layer::contour;
        last =
            layer == Layer::vector ? DATA_plot_vect(ind, info, nullptr, nullptr) : DATA_plot_cont(ind, info, nullptr);
        DATA_plot_bar();
        if (layer == Layer::vector) DATA_plot_vect_bar();
    }
    if (layer == Layer::none) return ind;
    if (state.panel == 0) state.drawn++;
    label_layer(ind);
    MESS_print(0x40000000, "GRID--BEG: %d END: %d\n", ind, last);
    return last;
}

/// The date of labels: that of the file's name, or where the name tells none, and in files of several dates, the grid's
/// own.
void label_date(const Date& of_file, const GRD_report* grid) {
    const bool own = GRD_has_values(grid) && (of_file.year == MISS || GRD_get_info()->own_dates);
    PLT_label_date(own && grid->date.year != MISS ? &grid->date : own ? &GRD_get_info()->date : &of_file);
}

int DATA_plot_cont(int ind, DATA_info* info, const char*) {
    GRD_report* grid = GRD_get_grid(ind);
    label_date(info->date, grid);
    PLT_label_for_time(VAR_get_time(ind));
    CONT_plot_setup(info->plot, ind, grid, &info->domain, info->callback);
    if (fills_areas(CONT_get_type())) state.fill = 1;
    CONT_draw(grid);
    return ind;
}

int DATA_plot_vect(int ind, DATA_info* info, std::string* units, const char* format) {
    const std::string own = VAR_get_format(ind);
    PLT_label_for_time(VAR_get_time(ind));
    VECT_set_format(VAR_get_type(ind), format != nullptr ? format : own.c_str());
    GRD_report* grids[3] = {nullptr, nullptr, nullptr};
    const int stop = GRD_find_param_grids(ind, 2, state.vfunc, grids, nullptr);
    label_date(info->date, grids[0]);
    settle_units(grids, units);
    VECT_plot_setup(info->plot, ind, grids[0], grids[1], &info->domain, info->callback);
    VECT_draw(grids[0], grids[1]);
    // Short of a component, the search stops behind the layer.
    return grids[1] != nullptr ? stop : std::max(stop - 1, ind);
}

int DATA_plot_bar() {
    if (state.bar != 0 || CONT_get_bar() < 1) return -1;
    GPH_trans(1);
    CONT_draw_bar(1, "");
    GPH_trans(2);
    state.bar = 1;
    return 0;
}

int DATA_plot_vect_bar() {
    if (state.vbar != 0 || VECT_get_vect() < 1) return -1;
    GPH_trans(1);
    VECT_draw_vect();
    GPH_trans(2);
    state.vbar = 1;
    return 0;
}

int DATA_plot_map(int ind) {
    if (ind < 0 || ind >= VAR_get_num()) return -1;
    if (VAR_is_type_MAP(ind) == 0) return 0;
    MAP_set_format(VAR_get_format(ind));
    MAP_draw(MAP_PASS_PLAIN);
    return 0;
}

int DATA_plot_control(int ind, Domain* domain) {
    if (ind < 0 || ind >= VAR_get_num()) return -1;
    if (VAR_is_PANEL(ind) == 0) return 0;
    MESS_print(MESS_PROGRESS, "New panel: %s\n", VAR_get_format(ind).c_str());
    return DATA_plot_panel(ind, domain);
}

int DATA_plot_panel(int ind, Domain* domain) {
    if (state.panel > 0 || state.drawn > 0) {
        end_frame();
        restore_page();
    }
    PLT_panel_decode(VAR_get_format(ind));
    PLT_panel(0.0F);
    if (state.drawn > 0) clear_panel();
    MAP_setup(domain);
    state.first = ind + 1;
    DATA_plot_begin();
    state.panel++;
    return 0;
}

}  // namespace zav
