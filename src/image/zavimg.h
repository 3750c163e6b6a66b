#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "files/date.h"
#include "frame/mess.h"
#include "map/region.h"

namespace zav {

/// Palette entry; components from 0 to 1.
struct IMG_color {
    float r = 0.0F;
    float g = 0.0F;
    float b = 0.0F;
};

/// Longest description of an image with its end.
constexpr std::size_t IMG_INFO_SIZE = 75;
/// Longest date text of an image with its end.
constexpr std::size_t IMG_DATIM_SIZE = 50;
/// `source` of images of the native format.
constexpr int IMG_SOURCE_NATIVE = 50;

/// An image in memory. Without a palette and without masks its pixels are grey, from black to white.
struct IMG_report {
    int source = 0;  ///< origin, 50 for the native format
    int type = 0;
    int version = 0;
    std::string datim;  ///< date text, at most 49 characters
    Date date;          ///< the same, decoded
    std::string info;   ///< description, at most 74 characters
    int width = 0;      ///< pixels
    int height = 0;     ///< pixels
    int depth = 0;      ///< bits of a pixel that carry colour
    float xres = 0.0F;
    float yres = 0.0F;
    float xoff = 0.0F;
    float yoff = 0.0F;
    int bits_pixel = 0;  ///< bits that a pixel takes in `data`
    int bytes_line = 0;  ///< bytes from one line to the next in `data`
    int byte_order = 1;  ///< 1 most significant byte first, 0 least significant first
    int color_type = 0;  ///< 1 indexed through `colors`, 0 true colour through the masks
    int num_colors = 0;
    unsigned red = 0;  ///< colour masks of a true colour pixel
    unsigned grn = 0;
    unsigned blu = 0;
    std::vector<IMG_color> colors;
    int trans_color = -1;  ///< transparent colour, -1 none
    Domain domain;         ///< where the picture lies on the earth
    std::vector<unsigned char> data;
    int bit_order = 0;  ///< at 1 bit a pixel: 0 the lowest bit of a byte comes first, 1 the highest
};

/// What the formats ask of the floors above. Installed at start.
struct image_hooks {
    /// Fills a record with the picture of the present workstation. 1, or 0. Empty: there is no picture.
    int (*get_picture)(IMG_report* image) = nullptr;
    /// Depth of the present workstation, the deepest X window dump that is read. Empty: any depth is.
    int (*window_depth)() = nullptr;
    /// Pixel of the background, which transparent GIF files leave out; below 0 unknown. Empty: unknown.
    int (*background)() = nullptr;
    /// Title of the window, kept in PNG files. Empty: an empty text.
    std::string (*window_title)() = nullptr;
    /// Margin below and above the plot, as a fraction of the page. Empty: 0.
    float (*view_offset)() = nullptr;
    /// Label of the plot at a position of the first overlay. Empty: an empty text.
    std::string (*label)(int position) = nullptr;
};
image_hooks& IMG_hooks();

/// Sets a record to its start.
int IMG_init(IMG_report* image);
/// Reads an image file of any format; `type` 1 asks for the header fields only. Above 0, or 0 on failure.
int IMG_read(const std::string& filename, IMG_report* image, int type);
/// Frees the pixels and the palette.
int IMG_free(IMG_report* image);
int IMG_copy(IMG_report* image1, const IMG_report* image2);
/// Prints the fields, one a line.
int IMG_print(M_type lev, const IMG_report* image);

// Readers of one format. Pixels that a cut file lacks are 0.

/// Reads the native format, its pixels whatever `type` says. 1, 0 without memory, -1 on failure.
int IMG_read_zav(const std::string& filename, IMG_report* image, int type);
/// Reads the first picture of a GIF file. 1, or 0 on failure.
int GIF_read(const std::string& filename, IMG_report* image, int type);
/// Reads a PNG file, by its name as it stands. 1, or 0 on failure.
int PNG_read(const std::string& filename, IMG_report* image, int type);
/// Reads an X window dump, by its name as it stands and whatever `type` says. The record's `depth` is the deepest
/// picture accepted. 1, or 0 on failure, told on standard error.
int XWD_read(const std::string& filename, IMG_report* image, int type);

// Writers of an image record: 1, or 0 on failure.

/// Writes the native format: one byte a pixel, grey or index. `type` 1 compresses an image of grey bytes.
int IMG_write(const std::string& filename, IMG_report* image, int type);
/// Writes a GIF file of up to 256 colours; further ones become the first. The pixels of the record become indices.
int GIF_write(const std::string& filename, IMG_report* image);
/// Writes a PNG file with a palette, by the same rule. The record stays as it is.
int PNG_write(const std::string& filename, IMG_report* image);
/// Writes an X window dump, with all colours.
int XWD_write(const std::string& filename, IMG_report* image);

// Writers of the workstation's picture: 1, or 0 on failure. Where GIF and PNG can't hold all its colours, it gets a
// palette of 256 that comes near to them.

int IMG_dump(const std::string& filename);
int GIF_dump(const std::string& filename);
int PNG_dump(const std::string& filename);
int XWD_dump(const std::string& filename);

/// 1 writes GIF files interlaced, from now on.
int GIF_interlace(int val);
/// 1 writes GIF files with a transparent background, from now on.
int GIF_transparent(int val);

}  // namespace zav
