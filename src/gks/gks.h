#pragma once

/// The graphics kernel: its types, its one workstation's coordinate chain, and the three output primitives.
///
/// World coordinates of the selected transformation go to normalised device coordinates (NDC), and from there to
/// device units: pixels with y downward, or output units (points, plotter units) with y upward. All state is
/// process-wide; workstation identifiers are only passed along into metafile lines.

#include <string>

namespace zav {

using Gint = int;
using Gfloat = float;
using Gws_type = Gint;
using Gconn_id = std::string;  ///< connection string: comma-separated, the file or display first

/// Workstation types.
enum : int {
    GWS_ASK = 0,    ///< none chosen yet
    GWS_WIN = 1,    ///< X11 window with a backing pixmap
    GWS_META = 3,   ///< metafile, text or CGM
    GWS_PS = 4,     ///< PostScript
    GWS_HPGL = 5,   ///< HPGL
    GWS_PIX = 6,    ///< pixmap of another program's window
    GWS_CAIRO = 7,  ///< picture: PNG, PDF or SVG
};

/// Colour index of the background, and the pseudo-colours of print workstations: black, white and grey 0.7, each
/// in normal, double and fourfold width.
enum : int { GCOLR_BACK = -1, GCOLR_PSEUDO_FIRST = 500, GCOLR_PSEUDO_LAST = 508 };

/// Number of normalisation transformations, all of them writable.
constexpr int GTRAN_COUNT = 6;

struct Gpt {
    Gfloat x = 0, y = 0;
};

struct Gint_pt {
    Gint x_coord = 0, y_coord = 0;
};

/// Limits. The x pair comes first.
struct Glim {
    Gfloat x_min = 0, x_max = 0, y_min = 0, y_max = 0;
};

/// Limits with both extents, the kernel's private form.
struct Gcoords {
    float x_min = 0, y_min = 0, x_max = 1, y_max = 1, x_ext = 1, y_ext = 1;
};

/// A scale pair.
struct Gtransform {
    float x = 1, y = 1;
};

struct Gtran {
    Glim win, vp;
};

struct Grectangle {
    Gint x = 0, y = 0, width = 0, height = 0;
};

/// A rectangle in pixels, of the widths that an X server takes.
struct Gxrect {
    short x = 0, y = 0;
    unsigned short width = 0, height = 0;
};

enum Gcoord_unit { GMETER_UNIT = 0, GOTHER_UNIT = 1 };

struct Gdsp_size {
    Gcoord_unit coord_units = GOTHER_UNIT;
    Gpt coord_size;
    Gint_pt ras_size;
};

struct Gaspect {
    Gfloat x = 1, y = 1;
};

/// Placement codes of gset_aspect.
struct Gcenter {
    Gint x = 0, y = 0;
};

/// Colour components, 0 to 1.
struct Gcolr_rep {
    Gfloat red = 0, green = 0, blue = 0;
};

enum Gclear_flag { GCOND = 0, GALWAYS = 1 };

enum Gfill_int_style { GHOLLOW = 0, GSOLID = 1, GPAT = 2, GHATCH = 3 };

/// One drawing attribute set as a plot layer hands it on. -9999 in a field leaves that attribute alone.
struct Gattribs {
    Gint color = -9999;
    Gfloat width = -9999, height = -9999, expan = -9999;
    Gint style = -9999, fill_pat = -9999, font = -9999;
};

// ---- opening and errors

/// Opens the error channel: the named file, or standard error without a name. 0 if a channel is open, else 1.
int gopen_gks(const char* err_file, int memory);

/// Closes the error channel. 0.
int gclose_gks();

/// These three have nothing to do here and give 0.
int gactivate_ws(Gint ws_id);
int gdeactivate_ws(Gint ws_id);
int gemergency_close_gks();

/// Reports an error of function `func` at warning level, if the error channel is open. `format` brings its own line
/// end.
void gerr_printf(const char* func, const char* format, ...) __attribute__((format(printf, 2, 3)));

/// 1 while a workstation is open.
int gchk_graphics();

/// Type of the workstation in force (GWS_*).
void gset_win_type(int type);
int gget_win_type();

bool gtype_is_WIN(int type);
bool gtype_is_META(int type);
bool gtype_is_PS(int type);
bool gtype_is_HPGL(int type);
bool gtype_is_PIX(int type);
bool gtype_is_WIN_PIX(int type);
bool gtype_is_CAIRO(int type);

/// True for workstations whose page is white paper with y upward: PostScript, HPGL and pictures.
bool gtype_is_PAGE(int type);

/// Starts the primitives' attributes and transformations for a workstation just opened or changed. `type`: 0 X
/// workstation, 1 the same again after a redraw, 2 PostScript and pictures, 3 HPGL, 4 metafile, 10 only the size
/// changed; -1 does nothing and gives -1. Otherwise 0.
int ginit_plot(int type);

// ---- transformations

/// The coordinate chain's start, `type` as for ginit_plot.
void ginit_tran(int type);
void greset_clip();

/// Keeps two factors that no transform reads.
void gset_tran_mult(float x, float y);

/// Workstation window (NDC) and viewport (device units). 0.
int gset_ws_win(Gint ws_id, const Glim* ws_win_lim);
int gset_ws_vp(Gint ws_id, const Glim* ws_vp_lim);

/// Window (world) and viewport (NDC) of transformation `tran_num`, 0 to 5. 0, or -1 for another number.
int gset_win(Gint tran_num, const Glim* win_lim);
int gset_vp(Gint tran_num, const Glim* vp_lim);

/// Selects a transformation. 0, or -1 for a number outside 0 to 5.
int gsel_norm_tran(Gint tran_num);

/// Inquiries. `err_ind` becomes 0, or -1 on an error, which is also the result.
int ginq_norm_tran(Gint norm_tran, Gint* err_ind, Gtran* tran);
int ginq_cur_norm_tran_num(Gint* err_ind, Gint* norm_tran);
int ginq_disp_space_size(Gws_type ws_type, Gint* err_ind, Gdsp_size* dsp_size);

/// 1 if the bounding box of the points meets the current window (touching counts), else 0.
int gpts_in_win(Gint num_pt, const Gpt* array_pt);

/// The current viewport in pixels, y downward.
void gget_xviewport(Gxrect* clip_rect);

/// The current viewport: in pixels on displays, in output units (y from the bottom) on paper.
void gget_gviewport(Grectangle* clip_rect);

/// World to NDC, world to pixels, pixels to world, world to output units, NDC to pixels, NDC to output units.
float xW_NDC(float x);
float yW_NDC(float y);
float xW_p(float x);
float yW_p(float y);
float xp_W(float x);
float yp_W(float y);
float xW_ps(float x);
float yW_ps(float y);
float xNDC_p(float x);
float yNDC_p(float y);
float xNDC_ps(float x);
float yNDC_ps(float y);

/// A world coordinate of transformation `t1` as world coordinate of `t2`.
float xW_trans(float x, int t1, int t2);
float yW_trans(float y, int t1, int t2);

// ---- segments, messages, clearing

/// Segment marks: lines of a metafile and -1 there; otherwise marks in the redraw store and 0.
int gcreate_seg(Gint seg);
int gclose_seg(Gint seg);
int gdel_seg(Gint seg);

/// Keeps a text in the redraw store and writes it to a metafile or as a PostScript comment. 0.
int gmessage(Gint ws_id, const std::string& str);

/// Fills a world rectangle with the background. 0.
int gclear_region(const Glim* limit);

// ---- lines: 0, 1 on a metafile, -1 on an error

int gpolyline(Gint num_pt, const Gpt* array_pt);
int gset_line_colr_ind(Gint color);
int gset_linewidth(Gfloat width);
int gset_linetype(Gint type);
int gset_line_print_bold(int bold);
int gget_line_print_bold();
int gget_line_colr();
void greset_line();
void ginit_line(int type);

// ---- markers

int gpolymarker(Gint num_pt, const Gpt* array_pt);
int gset_marker_colr_ind(Gint color);
int gset_marker_size(Gfloat size);
int gset_marker_type(Gint type);
int gset_marker_width(Gfloat width);
int gget_marker_colr();
void greset_marker();
void ginit_marker(int type);

// ---- filled areas

int gfill_area(Gint num_pt, const Gpt* array_pt);

/// Fills what several rings enclose, by the nonzero rule: a ring that turns the other way than the one about it is a
/// hole. `num_pt` has the number of points of each, `array_pt` their points one ring after the other.
int gfill_rings(Gint num_rings, const Gint* num_pt, const Gpt* array_pt);
int gset_fill_colr_ind(Gint color);
int gset_fill_int_style(Gint style);
int gset_fill_style_ind(Gint index);
int gset_fill_print_solid(int solid);
int gget_fill_print_solid();
int gget_fill_colr();

/// Bit x mod 8 of row y mod 8 of a fill pattern, 0 to 19; 0 for another number.
int gfill_test(int pat, int x, int y);
void greset_fill();
void ginit_fill(int type);
void gdel_fill_pat();

}  // namespace zav
