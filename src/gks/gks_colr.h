#pragma once

/// Colour indices: their components for paper, and their pixels on a display.

#include <string>

#include "gks/gks.h"

namespace zav {

/// Number of entries; the last is the background, which index -1 stands for.
constexpr int GCOLR_COUNT = 257;
constexpr int GCOLR_BACK_ENTRY = 256;

/// The colour table of the plot layers, which the kernel looks names and indices up in. Both calls may be absent.
struct Gcolor_table {
    int (*get_ind)(const std::string& name) = nullptr;                      ///< index of a name, below 0 unknown
    int (*get_rgb)(int ind, float* red, float* grn, float* blu) = nullptr;  ///< components of an index
};
void gset_color_table(const Gcolor_table& table);
const Gcolor_table& gget_color_table();

/// Sets the components, 0 to 1, of an index. 0, or -1 after a message.
int gset_colr_rep(Gint ws_id, Gint index, const Gcolr_rep* rep);

/// Sets the components of index `ind`, or with `ind` below 0 of any index, old or new. The pixel on displays, else 1.
int galloc_colr(int ind, float red, float grn, float blu);

void ginit_xcolr();
void ginit_background();

/// Pixel of the background.
int gget_back_color();

/// True for -1 to 256, and 500 to 508.
bool gis_valid_colr(int ind);

/// Line width of a pseudo-colour, 1, 2 or 4 times the normal one; 1 for any other colour.
int gpseudo_width(int ind);

/// True for a pseudo-colour, whose grey from 0 to 1 is then in `level`.
bool gis_pseudo_gray(int ind, float* level);

/// Checks a colour for an attribute setter, and makes it the index to store: 1 for a pseudo-colour on a display. False
/// after a message in the name of `func`, for an invalid colour or, but for a metafile, one that was never set.
bool gcheck_color_set(const char* func, Gint* color);

/// 1 if the colour of `ind` is near the components. With `pixel` set, `ind` is a pixel.
int gis_color_near(int ind, float red, float grn, float blu, int pixel);

/// Pixel of an index, -1 if it has none yet.
int gget_color_ind(int ind);

/// Components of an index, 0 to 1, or 0 to 255. 0, or -1 for an index outside the table.
int gget_color_rgb(int ind, float* red, float* grn, float* blu);
int gget_color_rgb256(int ind, int* red, int* grn, int* blu);

/// A true colour pixel from components of 16 bits.
long gget_color_rgb_Xval(long red, long grn, long blu);

void gset_local_colormap(int local);
int gget_local_colormap();
void gset_background(const std::string& name);
void gset_rw_colors(int read_write);
int gget_rw_colors();

/// Black on white.
void gset_inverse(int inverse);
int gget_inverse();
int gget_max_colr();

/// The screen's colormap, a private one (0 none), and the one in force.
void gset_def_cmap(unsigned long colormap);
unsigned long gget_def_cmap();
void gset_user_cmap(unsigned long colormap);
unsigned long gget_user_cmap();
unsigned long gget_colormap();

/// Prints an index's components, with read-write colours.
void gquery_xcolor(int ind);

}  // namespace zav
