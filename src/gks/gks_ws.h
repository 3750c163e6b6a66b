#pragma once

/// The door to every workstation: opening, closing, size, titles. What each type does there is in its own files.

#include <string>
#include <vector>

#include "gks/gks.h"

namespace zav {

/// Opens the workstation of type `ws_type`; `conn_id` is its comma-separated connection string, the file or display
/// first. 0, or -1 after a message.
int gopen_ws(Gint ws_id, const Gconn_id& conn_id, Gws_type ws_type);

/// Closes it. 0, or -1 if nothing is open.
int gclose_ws(Gint ws_id);

/// Clears a window and the redraw store; other workstations have no pages to clear. 0.
int gclear_ws(Gint ws_id, Gclear_flag flag);

Gint gget_ws_id();

/// Size of the drawing area in device units. Setting it works out the transformations again, windows and viewports
/// stay.
/// Whether the next output file is to hold several pages.
void gset_pages(bool pages);
bool gget_pages();
/// Goes on to the next page of print output, the next picture of a metafile.
void gnew_page();

/// Says that the plot holds something worth keeping: print output waits for it before it touches a file or starts a
/// command. Closing a workstation keeps what it holds.
void gkeep_output();
/// Ends a plot that is broken off: whole if it was kept, else nothing is left of it.
void gbreak_off();

void gset_win_size(int width, int height);
void gget_win_size(int* width, int* height);
int gget_window_width();
int gget_window_height();

/// Stores the size of the drawing area, and resizes a window that is open.
void gset_xsize(int width, int height);

/// Offset of the plot in the device.
void gset_xoff(int x, int y);
void gget_win_offset(int* x, int* y);

/// Colour depth of the workstation in bits; 10 on paper and metafiles.
int gget_win_depth();
void gset_win_depth(int depth);

/// Application name for display defaults, at most 20 characters.
void gset_prog_name(const std::string& name);
const std::string& gget_prog_name();

/// Title of the window and of print files, at most 60 characters.
void gset_win_title(const std::string& title);
const std::string& gget_win_title();

/// Adds a text to the title of the page, which file formats keep beside the picture. A new page starts without one.
void gadd_page_title(const std::string& text);
/// The texts of the page's title, or that of the window if it has none.
std::string gget_page_title();

/// Geometry that overrides the resource on displays, at most 40 characters.
void gset_geometry(const std::string& geometry);
const std::string& gget_geometry();

// ---- shared by the workstations that write files

/// A drawing area in device units.
struct Gdevice_area {
    int x = 0, y = 0, width = 0, height = 0;
};

/// Takes over a drawing area, size and offset, before the transformations are worked out.
void gset_area(const Gdevice_area& area);

/// Panel form of a geometry, "P" and "%fx%f+%f+%f": fractions of the area, or above 1 a count of panels on the page
/// with the panel's column and row, rows counted from the top. False if `str` doesn't begin with the letter.
bool gws_panel_geometry(const std::string& str, Gdevice_area* area);

/// Geometry of a page in points: that of a panel, or in hundredths of an inch size and offset, size alone or offset
/// alone. The area keeps an extent of at least 2.
void gws_geometry(const std::string& str, Gdevice_area* area);

/// Paper size of a name in any case, in inches, long side first. False for an unknown name.
bool gws_paper_size(const std::string& name, float* sx, float* sy);

/// Value behind a parameter word that begins with `key` in any case and a separator: "scale=0.5". Null if the word is
/// another, or has no value.
const char* gws_param_value(const std::string& word, const char* key);

}  // namespace zav
