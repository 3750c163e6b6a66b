#pragma once

/// The display: a window of its own, or a pixmap of another program's window. Ids of the X server (windows, pixmaps,
/// colormaps) are plain numbers here, so that no unit outside has to know its library.

#include <string>

#include "gks/gks_ws.h"

namespace zav {

using Gxid = unsigned long;

/// A point in pixels, -9999 in an unset coordinate.
struct Gxpoint {
    short x = -9999, y = -9999;
};

/// What opens and closes a display for gopen_ws and gclose_ws. `words` are those of the connection string.
int gx11_open(Gws_type ws_type, const std::vector<std::string>& words);
void gx11_close();

/// Waits at the end of a plot, on a window only, until the user is done. 0.
int ghold(Gint ws_id);

/// Takes over a new size: above 0 the one given, at or below 0 the window's own. 1 if it changed, else 0.
int gresize_window(int width, int height);

/// Copies the pixmap to the window. 0, or -1 without them.
int gupdate_window();
void gsync();
void gbell(int percent);

void gset_iconic(int icon);
void gset_fixed_size();

/// What a client asks of the window's owner: 1 clear, 2 new frame, 9 end.
void gset_pix_mode(int mode);
int gget_pix_mode();
void gset_icon_bitmap(const unsigned char* bits);

/// Calls `callback` every `secs` seconds while a plot is held.
void gset_refresh_callback(int secs, void (*callback)());

/// Text behind the title in the window's name.
void gset_win_title_extra(const std::string& extra);
std::string gget_win_title_extra();

/// Cursor, 0 to 8, set and shown on displays only. The previous number.
int gset_cursor(int cursor);
int gset_cursor_type(int cursor);
int gget_cursor_type();

/// 1 if there is a connection to a display.
int ghas_display();
Gxid gget_root_window();
Gxid gget_base_window();
void gset_base_window(Gxid window);

/// The pixmap that primitives draw into. 0 means the base pixmap.
Gxid gget_draw_window();
void gset_draw_window(Gxid window);
int gget_screen();
unsigned long gget_red_mask();
unsigned long gget_grn_mask();
unsigned long gget_blu_mask();
void gget_root_size(int* width, int* height);

// ---- output of the primitives to the display; positions in pixels

/// Which graphics context a call is about.
enum class Gx_context { line, marker, fill, text };

void gx11_clip(const Gxrect& clip_rect);
void gx11_lines(Gx_context context, Gint num_pt, const Gxpoint* points);
void gx11_polygon(Gint num_pt, const Gxpoint* points);
void gx11_clear_rect(const Gxrect& rect);
void gx11_foreground(Gx_context context, int color);
void gx11_foreground_black(Gx_context context);
void gx11_line_width(Gx_context context, int width);
void gx11_line_dashes(int line_type);
void gx11_fill_style(int style, int pattern);

/// Creates (`type` 0) or sets again (1) a graphics context.
void gx11_init_context(Gx_context context, int type);

/// Line width 0, solid lines and bevel joins in all four contexts, at the end of an open.
void gx11_init_contexts_done();

/// Pixel for a colour; `pixel` is the one that its index has, -1 for none.
int gx11_alloc_color(int pixel, float red, float grn, float blu);

/// An index has another colour: the contexts that use it take its pixel.
void gx11_color_changed(int index);

/// Settles the background, by the resource or `name`, and clears the window with it.
void gx11_init_background(const std::string& name);

/// Frees the pattern pixmaps.
void gx11_delete_patterns();

/// A line, or a rectangle with its corners in any order, in the line context, for rubber bands.
void gxline(Gxid drawable, const Gxpoint* p1, const Gxpoint* p2);
void gxrect(Gxid drawable, const Gxpoint* p1, const Gxpoint* p2);

/// Graphics function of the line context: 3 copies, 6 is exclusive or.
void gset_line_gc_func(int function);
int gget_line_gc_func();

}  // namespace zav
