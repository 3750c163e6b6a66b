#pragma once

/// Private to the picture workstation: what the connection string asks for, and the page at work.

#include <cairo.h>

#include <string>
#include <string_view>

#include "gks/gks_out.h"
#include "gks/gks_ws.h"

namespace zav {

enum class Gpicture_format { png, pdf, svg };

/// A picture as it was asked for.
struct Gpicture {
    Gpicture_format format = Gpicture_format::png;
    std::string file;  ///< name of the output, or "|" and a command
    double width = 0;  ///< of the whole picture: pixels of PNG, points of PDF and SVG
    double height = 0;
    double line_width = 1;  ///< factor on the base width
    bool transparent = false;
    bool gray = false;  ///< black lines and grey fills
};

/// How output units lie on a picture. A raster is drawn finer than it is written.
struct Gpicture_layout {
    double scale = 1;       ///< units of the surface for a point
    double page_width = 0;  ///< points, margins included
    double page_height = 0;
    double margin = 0;      ///< points
    double base_width = 1;  ///< points of line width 1
    int fineness = 1;       ///< pixels drawn for one that is written, in x and in y
};

Gpicture_layout gcairo_layout(const Gpicture& picture);

/// Begins the first page. False, after a message, if the output can't be opened or there is no memory for the picture.
bool gcairo_begin(const Gpicture& picture, const Gpicture_layout& layout);

/// The page at work, null while none is open.
cairo_t* gcairo_page();
const Gpicture& gcairo_picture();
const Gpicture_layout& gcairo_page_layout();

/// Forgets what is known of the page's pen.
void gcairo_reset_pen();

/// Writes the pixels of an image surface that is `fineness` times as fine as the PNG. False without memory.
bool gcairo_write_png(cairo_surface_t* surface, int fineness, bool transparent, const std::string& title,
                      Gout_file& out);

/// A font of the system. Its measures are those of size 1.
struct Gcairo_font {
    cairo_font_face_t* face = nullptr;
    std::string family;
    bool bold = false, italic = false;
    double cap_height = 1;
};

/// The font of a name, "family" with ":bold" and ":italic" behind it. A family that isn't there is told.
const Gcairo_font& gcairo_font(const std::string& name);
/// Advance of a text in the font that was asked for last, at size 1.
double gcairo_text_width(const std::string& utf8);
/// How letters are drawn: unhinted, so that they have the same shape and width everywhere. The caller's to destroy.
cairo_font_options_t* gcairo_font_options();

/// Keeps a text of an SVG page, whose letters are outlines, so that it can be searched. `matrix` places it on the page
/// as points with y downward; `size` and `width` are in its units.
void gcairo_svg_text(const std::string& utf8, const Gcairo_font& font, const cairo_matrix_t& matrix, double size,
                     double width);
/// An SVG with the coordinates of its paths cut to hundredths of a point, about half as long.
std::string gcairo_svg_short(std::string_view text);
/// A text as XML has it.
std::string gcairo_svg_escaped(const std::string& text);
/// What stands for the texts kept in front of the end of an SVG; forgets them.
std::string gcairo_svg_texts();

/// A text as UTF-8: itself if it is that, else as Latin-1. Control characters become blanks.
std::string gcairo_utf8(const std::string& text);

}  // namespace zav
