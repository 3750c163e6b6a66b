#pragma once

/// X window dumps: the header of file version 7 (X11/XWDFile.h), 25 numbers of 32 bits, the highest byte first.

#include <cstddef>

namespace zav {

constexpr std::size_t XWD_FIELDS = 25;
constexpr std::size_t XWD_HEADER_BYTES = 4 * XWD_FIELDS;
constexpr unsigned XWD_VERSION = 7;
/// Bytes of a colour: its pixel (32 bits), red, green and blue (16 bits each), flags and a pad byte.
constexpr std::size_t XWD_COLOR_BYTES = 12;

/// Places of the numbers in the header.
enum Xwd_field : std::size_t {
    XWD_HEADER_SIZE,
    XWD_FILE_VERSION,
    XWD_PIXMAP_FORMAT,
    XWD_PIXMAP_DEPTH,
    XWD_PIXMAP_WIDTH,
    XWD_PIXMAP_HEIGHT,
    XWD_XOFFSET,
    XWD_BYTE_ORDER,
    XWD_BITMAP_UNIT,
    XWD_BITMAP_BIT_ORDER,
    XWD_BITMAP_PAD,
    XWD_BITS_PER_PIXEL,
    XWD_BYTES_PER_LINE,
    XWD_VISUAL_CLASS,
    XWD_RED_MASK,
    XWD_GREEN_MASK,
    XWD_BLUE_MASK,
    XWD_BITS_PER_RGB,
    XWD_COLORMAP_ENTRIES,
    XWD_NCOLORS,
    XWD_WINDOW_WIDTH,
    XWD_WINDOW_HEIGHT,
    XWD_WINDOW_X,
    XWD_WINDOW_Y,
    XWD_WINDOW_BDRWIDTH,
};

/// Pixmap formats.
enum : unsigned { XWD_XY_BITMAP = 0, XWD_XY_PIXMAP = 1, XWD_Z_PIXMAP = 2 };
/// Visual classes.
enum : unsigned { XWD_STATIC_GRAY = 0, XWD_PSEUDO_COLOR = 3, XWD_TRUE_COLOR = 4, XWD_DIRECT_COLOR = 5 };

}  // namespace zav
