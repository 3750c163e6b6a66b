#pragma once

#include <string>

#include "gks/gks.h"
#include "gks/gks_text.h"

namespace zav {

// The toolkit above the graphics kernel: opens the one workstation, places the plot area in it, applies attribute
// records, and draws the small shapes. Transformation 1 spans the whole display, 2 is map or data space in the plot
// area, 3 is the plot area in display coordinates.

/// The colour table of the plot layers. Without its calls no colours are handed to the workstation.
struct GPH_color_table {
    int (*read)(const char* filename) = nullptr;                            ///< loads the table
    int (*get_num)() = nullptr;                                             ///< entries in use
    int (*get_rgb)(int ind, float* red, float* grn, float* blu) = nullptr;  ///< components of an entry
};
void GPH_set_color_table(const GPH_color_table& table);

/// Reads the device resources and the colour table, opens the workstation and places the plot area. `offset` holds
/// the margins (left, right, bottom, top, fractions of the panel) on entry and the plot area in NDC on exit.
/// `asp_ratio` is width over height, 0 for the panel's own. A workstation that can't be opened ends the program.
int GPH_setup(Gint* ws_id, Gws_type* ws_type, float asp_ratio, Glim* offset);
/// True if the device that the resources name writes to standard output.
bool GPH_prints_on_stdout();
/// Opens the workstation of type `*ws_type`, asking for one if that is 0.
int GPH_begin(Gint* ws_id, const std::string& conn_id, Gws_type* ws_type);
/// Clears the open workstation and starts a new plot on it; arguments as GPH_setup.
int GPH_reset(Gint* ws_id, Gws_type* ws_type, float asp_ratio, Glim* offset);
/// Places the plot area in the current panel and resets the attributes; arguments as GPH_setup.
int GPH_panel(Gint* ws_id, Gws_type* ws_type, float asp_ratio, Glim* offset);
/// Shows what has been drawn; in a window, waits for the user.
int GPH_hold(Gint ws_id);
/// Closes the workstation and the kernel.
int GPH_end(Gint ws_id);

/// Window title and program name from the resources.
int GPH_set_win_title();
/// Asks for the device if `*ws_type` is 0.
int GPH_device_prompt(int* ws_type);
/// Cuts a device text at its first comma: the rest goes to `conn_id`, the result is the workstation type.
int gdevice_setup(const std::string& str, std::string& conn_id);

/// Size and offset of the panel as fractions of the display.
int GPH_set_view_size(float sx, float sy, float ox, float oy);
/// The panel in NDC.
int GPH_get_view_size(Glim* limit);
/// Height of the window of the current transformation.
float GPH_get_vert_win_size();

/// Largest NDC extents of the display: 1 on the longer side, the ratio on the shorter.
int ginq_maxview(Gint ws_type, Gfloat* xvp, Gfloat* yvp);
/// Fits the ratio `asp` into `vin`. `center` 2 centres, 3 aligns with the high side, others place the low side at 0.
int gset_aspect(const Glim* vin, Glim* vout, Gaspect asp, Gcenter center);

int GPH_trans(int trans);
int GPH_view(int tran, const Glim* view);
int GPH_win(int tran, const Glim* win);
int GPH_get_view(int tran, Glim* view);
int GPH_get_win(int tran, Glim* win);
int GPH_print_view(const Glim* view);

// Attributes from a record; null resets to defaults, fields of -9999 and negative colours are left alone.

int GPH_line_attr(const Gattribs* attrib);
int GPH_fill_attr(const Gattribs* attrib);
/// The marker size is the record's height times `scale`, or `scale` itself when the record has none.
int GPH_mark_attr(const Gattribs* attrib, float scale);
/// The text height is the record's height times `scale`, or `scale` itself. -1 for a null record, else 0.
int GPH_text_attr(const Gattribs* attrib, float scale);
/// Sets the colour of index `ind` on the open workstation.
int GPH_set_color(int ind, float red, float grn, float blu);

/// Selects a font by name or number, the default font for null.
int GPH_text_font(const char* str);
/// Name of the default font, at most 19 characters.
int GPH_set_def_font(const std::string& str);
/// Text alignment: `x` a Gtext_hor, `y` a Gtext_ver.
int GPH_text_align(int x, int y);
int GPH_get_text_align(int* x, int* y);
/// Turns text `rot` degrees clockwise.
int GPH_text_rotate(float rot);

// Shapes, in world coordinates of the current transformation.

int GPH_line(Gfloat x1, Gfloat y1, Gfloat x2, Gfloat y2);
int GPH_mark(Gfloat x1, Gfloat y1);
int GPH_border(const Glim* limit);
int GPH_rect(Gfloat x1, Gfloat y1, Gfloat x2, Gfloat y2);
int GPH_frect(Gfloat x1, Gfloat y1, Gfloat x2, Gfloat y2);
int GPH_circle(float x, float y, float rad);
int GPH_fcircle(float x, float y, float rad);
int GPH_pprint(const Gpt* pt, const std::string& str);
/// Formatted text of at most 59 characters.
int GPH_pprintf(const Gpt* pt, const char* format, ...) __attribute__((format(printf, 2, 3)));
/// Formatted text of at most 99 characters.
int GPH_printf(Gfloat x1, Gfloat y1, const char* format, ...) __attribute__((format(printf, 3, 4)));

}  // namespace zav
