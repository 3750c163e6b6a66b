// Filled areas, their attributes and patterns.

#include <array>
#include <cstring>
#include <numeric>
#include <vector>

#include "gks/cairo/gks_cairo.h"
#include "gks/gks.h"
#include "gks/gks_colr.h"
#include "gks/gks_obj.h"
#include "gks/gks_pixels.h"
#include "gks/gks_tran.h"
#include "gks/hpgl/gks_hpgl.h"
#include "gks/meta/gks_meta.h"
#include "gks/ps/gks_ps.h"
#include "gks/x11/gks_x11.h"

namespace zav {
namespace {

using Pattern = std::array<unsigned char, 8>;

/// One byte a row, top row first, bit 0 the leftmost pixel. 11 to 18 darken a dot field step by step.
constexpr std::array<Pattern, 20> PATTERNS = {{
    {0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff}, {0xaa, 0x55, 0xaa, 0x55, 0xaa, 0x55, 0xaa, 0x55},
    {0x55, 0x00, 0x55, 0x00, 0x55, 0x00, 0x55, 0x00}, {0x24, 0x11, 0x82, 0x48, 0x42, 0x11, 0x28, 0x84},
    {0x33, 0x33, 0x00, 0x00, 0xcc, 0xcc, 0x00, 0x00}, {0x33, 0x33, 0x33, 0x33, 0x33, 0x33, 0x33, 0x33},
    {0x03, 0x06, 0x0c, 0x18, 0x30, 0x60, 0xc0, 0x81}, {0x81, 0xc0, 0x60, 0x30, 0x18, 0x0c, 0x06, 0x03},
    {0xff, 0xff, 0x00, 0x00, 0xff, 0xff, 0x00, 0x00}, {0xc3, 0x66, 0x3c, 0x18, 0x3c, 0x66, 0xc3, 0x81},
    {0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00, 0x00}, {0x40, 0x10, 0x20, 0x01, 0x00, 0x04, 0x08, 0x02},
    {0x08, 0xa0, 0x44, 0x11, 0x22, 0x10, 0x81, 0x44}, {0x45, 0x28, 0x94, 0x43, 0x50, 0x09, 0x52, 0xa8},
    {0x19, 0xca, 0x34, 0x1a, 0xe1, 0x32, 0xa5, 0xcc}, {0x55, 0xdc, 0x3b, 0xe2, 0x97, 0xaa, 0x65, 0x3e},
    {0x7a, 0xe5, 0x5f, 0xab, 0xf5, 0xeb, 0x5e, 0xb5}, {0xfe, 0xbb, 0xf5, 0x6f, 0xfe, 0xd7, 0xbd, 0xeb},
    {0xfd, 0xff, 0xef, 0x7f, 0xdf, 0xfe, 0xf7, 0xaf}, {0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff, 0xff},
}};

struct State {
    int fill_color = 1;
    int fill_inter_style = GSOLID;
    int fill_inter_index = 1;
    int print_solid = 0;  ///< fills print black
};
State state;

bool in_table(int pattern) { return pattern >= 0 && pattern < static_cast<int>(PATTERNS.size()); }

void fill_on_display(Gint num_pt, const Gpt* array_pt) {
    const Gpixels points(num_pt, array_pt);
    gx11_polygon(num_pt, points.data());
    gx11_lines(Gx_context::fill, num_pt, points.data());
}

void fill_postscript(Gint num_pt, const Gpt* array_pt) {
    if (state.fill_inter_style != GSOLID) return;
    gps_printf("%%%%FA:%d\n", num_pt);
    gps_printf("np\n");
    gps_move(array_pt[0].x, array_pt[0].y);
    for (int i = 1; i < num_pt; ++i) gps_line(array_pt[i].x, array_pt[i].y);
    gps_printf("cp\n");
    gps_set_fill_color(state.fill_color);
    gps_printf("fill\n");
}

void fill_hpgl(Gint num_pt, const Gpt* array_pt) {
    ghpgl_set_fill_color(state.fill_color);
    ghpgl_move(array_pt[0].x, array_pt[0].y);
    ghpgl_printf("PM0;");
    for (int i = 1; i < num_pt; ++i) ghpgl_line(array_pt[i].x, array_pt[i].y);
    ghpgl_printf("PM1;PM2;FP;\n");
}

void fill_picture(Gint num_rings, const Gint* num_pt, const Gpt* array_pt) {
    if (state.fill_inter_style != GSOLID && state.fill_inter_style != GPAT) return;
    gcairo_rings(num_rings, num_pt, array_pt);
    if (state.fill_inter_style == GSOLID) {
        gcairo_fill(state.fill_color);
    } else {
        gcairo_fill_pattern(state.fill_color, state.fill_inter_index);
    }
}

/// A display fills one ring at a time: the others hang on it by lines that are gone to and fro.
void fill_rings_on_display(Gint num_rings, const Gint* num_pt, const Gpt* array_pt) {
    std::vector<Gpt> chain;
    for (int ring = 0; ring < num_rings; array_pt += num_pt[ring], ++ring) {
        if (num_pt[ring] < 1) continue;
        chain.insert(chain.end(), array_pt, array_pt + num_pt[ring]);
        chain.push_back(array_pt[0]);
        if (ring > 0) chain.push_back(chain[0]);
    }
    const Gpixels points(static_cast<Gint>(chain.size()), chain.data());
    gx11_polygon(static_cast<Gint>(chain.size()), points.data());
}

void fill_rings_hpgl(Gint num_rings, const Gint* num_pt, const Gpt* array_pt) {
    ghpgl_set_fill_color(state.fill_color);
    ghpgl_rings(num_rings, num_pt, array_pt);
}

void fill_rings_postscript(Gint num_rings, const Gint* num_pt, const Gpt* array_pt) {
    if (state.fill_inter_style != GSOLID) return;
    gps_printf("%%%%FR:%d\n", num_rings);
    gps_set_fill_color(state.fill_color);
    gps_rings(num_rings, num_pt, array_pt);
}

int write_rings(Gint num_rings, const Gint* num_pt, const Gpt* array_pt) {
    gmeta_printf("FR %d", num_rings);
    for (int ring = 0; ring < num_rings; ++ring) gmeta_printf(" %d", num_pt[ring]);
    for (int ring = 0; ring < num_rings; array_pt += num_pt[ring], ++ring) {
        gmeta_printf("\n");
        gmeta_points(num_pt[ring], array_pt, false);
    }
    gmeta_printf("\n");
    return 1;
}

/// What the redraw store keeps of rings: their numbers of points, then the points.
void keep_rings(Gint num_rings, const Gint* num_pt, const Gpt* array_pt, std::size_t total) {
    const std::size_t counts = static_cast<std::size_t>(num_rings) * sizeof(Gint);
    char* kept = gnew_obj(GOBJ_FILL_RINGS, num_rings, counts + total * sizeof(Gpt), nullptr);
    if (kept == nullptr) return;
    std::memcpy(kept, num_pt, counts);
    std::memcpy(kept + counts, array_pt, total * sizeof(Gpt));
}

int write_metafile(Gint num_pt, const Gpt* array_pt) {
    gmeta_printf("FA %d ", num_pt);
    gmeta_points(num_pt, array_pt, true);
    if (num_pt % 4 != 0) gmeta_printf("\n");
    return 1;
}

}  // namespace

void greset_fill() {
    state.fill_color = 1;
    state.fill_inter_style = GSOLID;
    state.fill_inter_index = 1;
    state.print_solid = 0;
}

void ginit_fill(int type) {
    if (type == 0 || type == 1) gx11_init_context(Gx_context::fill, type);
}

void gdel_fill_pat() { gx11_delete_patterns(); }

int gfill_test(int pat, int x, int y) {
    if (!in_table(pat)) return 0;
    const auto row = static_cast<unsigned>(y) % 8;
    const auto bit = static_cast<unsigned>(x) % 8;
    return PATTERNS[pat][row] >> bit & 1;
}

int gfill_area(Gint num_pt, const Gpt* array_pt) {
    if (!gpts_in_win(num_pt, array_pt)) return 0;
    const int type = gget_win_type();
    if (gtype_is_META(type)) return write_metafile(num_pt, array_pt);

    gnew_obj(GOBJ_FILL, num_pt, static_cast<std::size_t>(num_pt) * sizeof(Gpt), array_pt);
    switch (type) {
        case GWS_WIN:
        case GWS_PIX:
            fill_on_display(num_pt, array_pt);
            break;
        case GWS_PS:
            fill_postscript(num_pt, array_pt);
            break;
        case GWS_HPGL:
            fill_hpgl(num_pt, array_pt);
            break;
        case GWS_CAIRO:
            fill_picture(1, &num_pt, array_pt);
            break;
        default:
            break;
    }
    return 0;
}

int gfill_rings(Gint num_rings, const Gint* num_pt, const Gpt* array_pt) {
    if (num_rings < 1) return 0;
    const Gint total = std::accumulate(num_pt, num_pt + num_rings, 0);
    if (!gpts_in_win(total, array_pt)) return 0;
    const int type = gget_win_type();
    if (gtype_is_META(type)) return write_rings(num_rings, num_pt, array_pt);

    keep_rings(num_rings, num_pt, array_pt, static_cast<std::size_t>(total));
    switch (type) {
        case GWS_WIN:
        case GWS_PIX:
            fill_rings_on_display(num_rings, num_pt, array_pt);
            break;
        case GWS_PS:
            fill_rings_postscript(num_rings, num_pt, array_pt);
            break;
        case GWS_HPGL:
            fill_rings_hpgl(num_rings, num_pt, array_pt);
            break;
        case GWS_CAIRO:
            fill_picture(num_rings, num_pt, array_pt);
            break;
        default:
            break;
    }
    return 0;
}

int gset_fill_colr_ind(Gint color) {
    if (color == state.fill_color) return 0;
    if (!gcheck_open("gset_fill_colr_ind")) return -1;
    if (!gcheck_color_set("gset_fill_colr_ind", &color)) return -1;
    if (color == state.fill_color) return 0;
    state.fill_color = color;
    if (gtype_is_META(gget_win_type())) {
        gmeta_printf("FA_CLR %d\n", color);
        return 0;
    }
    gnew_obj(GOBJ_FILL_COLR, color, 0, nullptr);
    gx11_foreground(Gx_context::fill, color);
    return 0;
}

int gset_fill_int_style(Gint style) {
    if (style == state.fill_inter_style) return 0;
    if (!gcheck_open("gset_fill_int_style")) return -1;
    state.fill_inter_style = style;
    if (gtype_is_META(gget_win_type())) {
        gmeta_printf("FA_INT %d\n", style);
        return 0;
    }
    gnew_obj(GOBJ_FILL_STYLE, style, 0, nullptr);
    gx11_fill_style(style, state.fill_inter_index);
    return 0;
}

int gset_fill_style_ind(Gint index) {
    if (index == state.fill_inter_index) return 0;
    if (!gcheck_open("gset_fill_style_ind")) return -1;
    if (!in_table(index)) {
        gerr_printf("gset_fill_style_ind", "invalid style index: %d\n", index);
        return -1;
    }
    state.fill_inter_index = index;
    if (gtype_is_META(gget_win_type())) {
        gmeta_printf("FA_ST %d\n", index);
        return 0;
    }
    gnew_obj(GOBJ_FILL_PATTERN, index, 0, nullptr);
    gx11_fill_style(state.fill_inter_style, index);
    return 0;
}

int gset_fill_print_solid(int solid) {
    state.print_solid = solid;
    gnew_obj(GOBJ_FILL_SOLID, solid, 0, nullptr);
    return 0;
}

int gget_fill_print_solid() { return state.print_solid; }
int gget_fill_colr() { return state.fill_color; }

}  // namespace zav
