/// The contour plot of a grid: preparation, and the walk over all cells.

#include <new>

#include "calc/grd_trans.h"
#include "frame/flag.h"
#include "frame/mess.h"
#include "frame/status.h"
#include "gks/gks_colr.h"
#include "gks/gks_text.h"
#include "gks/gks_ws.h"
#include "gks/zavgks.h"
#include "plot/background/map.h"
#include "plot/contour/cont_join.h"
#include "plot/contour/cont_texts.h"
#include "plot/page/plt_tool.h"

namespace zav {
namespace {

constexpr float TEXT_SHARE = 0.015F;  ///< text height in heights of the plot

int place_grid(const GRD_report& grid) {
    if (cont.placed || CONT_place_grid(grid) == 0) return 0;
    MESS_print(MESS_WARN, "CONT_draw_contours: Unable to allocate grid arrays\n");
    return -1;
}

void read_line_attributes() {
    ATTRIB_init(&cont.ln_cont_attr);
    ATTRIB_get("color_cont", gget_inverse() ? "black" : "white", &cont.ln_cont_attr);
    CONT_format_decode_attrib(&cont.ln_cont_attr);
    if (cont.fill_pat != MISS) cont.ln_cont_attr.fill_pat = cont.fill_pat;
}

/// A grid on its own domain is drawn in its own coordinates, columns and rows from the lower left.
void use_grid_coordinates(const GRD_report& grid, const Glim& view) {
    cont.x_min = 0.0F;
    cont.x_max = static_cast<float>(grid.domain.nx - 1);
    cont.vert_size = static_cast<float>(grid.domain.ny - 1);
    const Glim window{0.0F, cont.x_max, 0.0F, cont.vert_size};
    gset_vp(3, &view);
    gset_win(3, &window);
    GPH_trans(3);
}

void start_attributes() {
    const Gtext_align centred{GCENTER_HOR, GHALF_VERT};
    gset_text_align(&centred);
    gset_char_ht(cont.scale * cont.vert_size * TEXT_SHARE);
    const bool has_lines = cont.cont_type == CONT_LINE || cont.cont_type == CONT_FILL_LINE;
    if (has_lines && cont.ln_cont_attr.color != CLR_NONE) gset_line_colr_ind(cont.ln_cont_attr.color);
    GPH_line_attr(&cont.ln_cont_attr);
    if (cont.dash == 1) gset_linetype(2);
    gset_fill_int_style(GSOLID);
}

void prepare_plot(GRD_report* grid, const Cont_source* texts) {
    Glim view;
    PLT_get_view(&view);
    CONT_set_fill_colors(nullptr, 0);
    if (cont.grid_max == FMISS) {
        GRD_maxmin(grid, &cont.grid_max, &cont.grid_min);
        CONT_set_cont_ext(grid);
    }
    read_line_attributes();
    cont_label_attributes();
    if (cont.grdx.empty()) {
        use_grid_coordinates(*grid, view);
    } else {
        cont.vert_size = MAP_get_vert();
    }
    if (texts != nullptr) cont_place_texts(*texts);
    start_attributes();
}

void scan_cells(const GRD_report& grid, Cont_scan scan) {
    for (int j = grid.domain.ny - 2; j >= 0; --j) {
        for (int i = 0; i < grid.domain.nx - 1; ++i) {
            cont_load_cell(grid, i, j);
            scan.traced.here = i == scan.traced.column && j == scan.traced.row;
            cont_trace_point(scan);
            cont_draw_cell(scan);
        }
    }
}

/// Draws the cells as whole areas and lines. On request, and where bands lie across each other, piece by piece.
int scan_grid(const GRD_report& grid) {
    const Cont_scan scan = cont_make_scan();
    if (PLT_letter() || (cont_has_values() && !scan.ascending)) {
        scan_cells(grid, scan);
        return 0;
    }
    try {
        cont_scan_joined(grid, scan);
        return 0;
    } catch (const std::bad_alloc&) {
        cont.join = nullptr;
        MESS_print(MESS_WARN, "CONT_draw_contours: Not enough memory to join areas and lines\n");
        ZAV_note(STATUS_LAYER);
        return -1;
    }
}

}  // namespace

int CONT_grid(const std::vector<float>& grx, const std::vector<float>& gry) {
    cont.grdx = grx;
    cont.grdy = gry;
    DOM_init(&cont.placed_grid);
    return 0;
}

int CONT_draw_contour(GRD_report* grid) { return cont_draw_about(grid, nullptr); }

int cont_draw_about(GRD_report* grid, const Cont_source* texts) {
    if (grid == nullptr || !grid->grid) return 0;
    if (place_grid(*grid) < 0) return -1;
    const bool is_line_of_points = grid->domain.nx < 2 || grid->domain.ny < 2;
    if (is_line_of_points && (cont.cont_type != CONT_VALUE || cont.grdx.empty())) return 0;
    prepare_plot(grid, texts);
    if (cont.cont_type == CONT_VALUE) {
        cont_draw_values(*grid);
    } else {
        return scan_grid(*grid);
    }
    return 0;
}

int CONT_draw(GRD_report* grid) {
    if (!FLAG_getplot(PLOT_DATA)) return -1;
    if (grid == nullptr) {
        MESS_print(MESS_WARN, "CONT_draw: Invalid grids\n");
        return -1;
    }
    if (!grid->grid) {
        MESS_print(MESS_WARN, "CONT_draw: Invalid grid arrays\n");
        return -1;
    }
    gkeep_output();  // from here on the page grows by megabytes
    if (!PLT_letter()) return cont_draw_field(grid);
    if (CONT_draw_contour(grid) < 0 || cont.cont_type == CONT_VALUE) return -1;
    CONT_draw_labels(grid);
    CONT_draw_maxmin(grid);
    return 0;
}

}  // namespace zav
