// Colour indices and their components. The pixels that a display gives them are allocated by its own files.

#include "gks/gks_colr.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "frame/mess.h"
#include "frame/string.h"
#include "gks/gks_obj.h"
#include "gks/gks_tran.h"
#include "gks/meta/gks_meta.h"
#include "gks/ps/gks_ps.h"
#include "gks/x11/gks_x11.h"

namespace zav {
namespace {

constexpr int UNSET = -1;
constexpr int SET_WITHOUT_PIXEL = -2;  // an index that has components, on a workstation without pixels
constexpr float NEAR_COLOR = 0.01F;    // sum of the components' differences
constexpr std::size_t BACKGROUND_SIZE = 51;
constexpr M_type TRACE = 0x10000000;

constexpr std::array<int, GCOLR_COUNT> all_unset() {
    std::array<int, GCOLR_COUNT> table{};
    table.fill(UNSET);
    return table;
}

struct State {
    Gcolor_table table;
    std::array<int, GCOLR_COUNT> color_ind = all_unset();
    std::array<float, GCOLR_COUNT> red{}, grn{}, blu{};
    int max_color_ind = 0;
    unsigned long def_colormap = 0;
    unsigned long user_colormap = 0;
    int rw_colors = 1;
    int local_cmap = 0;
    int inverse = 0;
    std::string background;
};
State state;

bool is_pseudo(int ind) { return ind >= GCOLR_PSEUDO_FIRST && ind <= GCOLR_PSEUDO_LAST; }

/// Place of an index in the table; below 0 if it has none.
int entry_of(int ind) {
    if (ind == GCOLR_BACK) return GCOLR_BACK_ENTRY;
    return ind >= 0 && ind < GCOLR_COUNT ? ind : -1;
}

float distance(int entry, float red, float grn, float blu) {
    return std::abs(state.red[entry] - red) + std::abs(state.grn[entry] - grn) + std::abs(state.blu[entry] - blu);
}

/// The last index in use that is near the colour, or a new one. With the table full, the one that comes nearest.
int find_index(float red, float grn, float blu) {
    int found = -1;
    for (int i = 0; i < state.max_color_ind; ++i) {
        if (distance(i, red, grn, blu) < NEAR_COLOR) found = i;
    }
    if (found >= 0) {
        MESS_print(TRACE, "Used existing ind: %d (%.2f %.2f %.2f)\n", found, red, grn, blu);
        return found;
    }
    if (state.max_color_ind + 1 < GCOLR_BACK_ENTRY) {
        const int ind = ++state.max_color_ind;
        MESS_print(TRACE, "Allocated new ind: %d (%.2f %.2f %.2f)\n", ind, red, grn, blu);
        return ind;
    }
    found = 0;
    for (int i = 1; i < GCOLR_BACK_ENTRY; ++i) {
        if (distance(i, red, grn, blu) < distance(found, red, grn, blu)) found = i;
    }
    return found;
}

void store(int entry, float red, float grn, float blu) {
    state.red[entry] = red;
    state.grn[entry] = grn;
    state.blu[entry] = blu;
    gps_set_color_rep(entry, red, grn, blu);
}

float component(float value) { return value > 0 ? std::min(value, 1.0F) : 0; }

/// A component of 16 bits in the place of its mask.
long in_mask(long value, unsigned long mask) {
    int shift = 0;
    while (shift < 32 && mask != 0 && !(mask >> shift & 1)) ++shift;
    int width = 0;
    while (width < 16 && (mask >> (shift + width) & 1)) ++width;
    return (value & 0xFFFF) >> (16 - width) << shift;
}

}  // namespace

void gset_color_table(const Gcolor_table& table) { state.table = table; }
const Gcolor_table& gget_color_table() { return state.table; }

bool gis_valid_colr(int ind) { return (ind >= GCOLR_BACK && ind <= GCOLR_BACK_ENTRY) || is_pseudo(ind); }

int gpseudo_width(int ind) {
    constexpr std::array<int, 3> widths = {1, 2, 4};
    return is_pseudo(ind) ? widths[(ind - GCOLR_PSEUDO_FIRST) % 3] : 1;
}

bool gis_pseudo_gray(int ind, float* level) {
    constexpr std::array<float, 3> levels = {0.0F, 1.0F, 0.7F};
    if (!is_pseudo(ind)) return false;
    *level = levels[(ind - GCOLR_PSEUDO_FIRST) / 3];
    return true;
}

bool gcheck_color_set(const char* func, Gint* color) {
    if (!gis_valid_colr(*color)) {
        gerr_printf(func, "invalid color index: %d\n", *color);
        return false;
    }
    const int type = gget_win_type();
    if (is_pseudo(*color)) {
        if (gtype_is_WIN_PIX(type)) *color = 1;
        return true;
    }
    // A metafile only hands indices on: it is the workstation of the playback that needs their colours.
    if (gtype_is_META(type) || gget_color_ind(*color) != UNSET) return true;
    gerr_printf(func, "color index not initialized\n");
    return false;
}

int galloc_colr(int ind, float red, float grn, float blu) {
    if (ind >= GCOLR_COUNT) return -1;
    red = component(red);
    grn = component(grn);
    blu = component(blu);
    const int entry = ind < 0 ? find_index(red, grn, blu) : ind;
    if (entry < GCOLR_BACK_ENTRY) state.max_color_ind = std::max(state.max_color_ind, entry);
    store(entry, red, grn, blu);
    if (gtype_is_WIN_PIX(gget_win_type())) {
        state.color_ind[entry] = gx11_alloc_color(state.color_ind[entry], red, grn, blu);
        return state.color_ind[entry];
    }
    if (state.color_ind[entry] == UNSET) state.color_ind[entry] = SET_WITHOUT_PIXEL;
    return 1;
}

int gset_colr_rep(Gint ws_id, Gint index, const Gcolr_rep* rep) {
    if (!gcheck_open("gset_colr_rep")) return -1;
    if (is_pseudo(index)) return 0;
    if (!gis_valid_colr(index)) {
        gerr_printf("gset_colr_rep", "invalid color index: %d\n", index);
        return -1;
    }
    if (gtype_is_META(gget_win_type())) {
        gmeta_printf("CLR %d %d %f %f %f\n", ws_id, index, rep->red, rep->green, rep->blue);
        return 0;
    }
    gnew_obj(GOBJ_COLR_REP, index, sizeof(Gcolr_rep), rep);
    galloc_colr(index, rep->red, rep->green, rep->blue);
    if (gtype_is_WIN_PIX(gget_win_type())) gx11_color_changed(index);
    return 0;
}

void ginit_xcolr() { state.color_ind = all_unset(); }

void ginit_background() {
    const int type = gget_win_type();
    if (gtype_is_WIN_PIX(type)) {
        gx11_init_background(state.background);
        return;
    }
    if (gtype_is_META(type)) return;
    store(GCOLR_BACK_ENTRY, 1, 1, 1);  // paper is white
    state.color_ind[GCOLR_BACK_ENTRY] = SET_WITHOUT_PIXEL;
}

int gget_back_color() { return gget_color_ind(GCOLR_BACK); }

int gis_color_near(int ind, float red, float grn, float blu, int pixel) {
    if (ind == -1) return 0;
    int entry = entry_of(ind);
    if (pixel) {
        const auto place = std::find(state.color_ind.begin(), state.color_ind.end(), ind);
        entry = place == state.color_ind.end() ? -1 : static_cast<int>(place - state.color_ind.begin());
    }
    return entry >= 0 && distance(entry, red, grn, blu) < NEAR_COLOR;
}

int gget_color_ind(int ind) {
    const int entry = entry_of(ind);
    return entry < 0 ? UNSET : state.color_ind[entry];
}

int gget_color_rgb(int ind, float* red, float* grn, float* blu) {
    const int entry = entry_of(ind);
    *red = entry < 0 ? 0 : state.red[entry];
    *grn = entry < 0 ? 0 : state.grn[entry];
    *blu = entry < 0 ? 0 : state.blu[entry];
    return entry < 0 ? -1 : 0;
}

int gget_color_rgb256(int ind, int* red, int* grn, int* blu) {
    float r = 0;
    float g = 0;
    float b = 0;
    const int result = gget_color_rgb(ind, &r, &g, &b);
    *red = gtruncate(r * 255);
    *grn = gtruncate(g * 255);
    *blu = gtruncate(b * 255);
    return result;
}

long gget_color_rgb_Xval(long red, long grn, long blu) {
    return in_mask(red, gget_red_mask()) | in_mask(grn, gget_grn_mask()) | in_mask(blu, gget_blu_mask());
}

void gset_local_colormap(int local) { state.local_cmap = local; }
int gget_local_colormap() { return state.local_cmap; }
void gset_background(const std::string& name) { state.background = fit_text(name, BACKGROUND_SIZE); }
void gset_rw_colors(int read_write) { state.rw_colors = read_write; }
int gget_rw_colors() { return state.rw_colors; }
void gset_inverse(int inverse) { state.inverse = inverse; }
int gget_inverse() { return state.inverse; }
int gget_max_colr() { return state.max_color_ind; }
void gset_def_cmap(unsigned long colormap) { state.def_colormap = colormap; }
unsigned long gget_def_cmap() { return state.def_colormap; }
void gset_user_cmap(unsigned long colormap) { state.user_colormap = colormap; }
unsigned long gget_user_cmap() { return state.user_colormap; }
unsigned long gget_colormap() { return state.user_colormap != 0 ? state.user_colormap : state.def_colormap; }

void gquery_xcolor(int ind) {
    const int entry = entry_of(ind);
    if (!state.rw_colors || entry < 0) return;
    MESS_print(TRACE, "%d (%.2f %.2f %.2f)\n", ind, state.red[entry], state.grn[entry], state.blu[entry]);
}

}  // namespace zav
