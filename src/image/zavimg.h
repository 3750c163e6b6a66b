#pragma once

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

/// An image in memory.
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
};

int IMG_init(IMG_report* image);
/// Reads an image file of any format; `type` 1 asks for the header fields only. Above 0, or 0 on failure.
int IMG_read(const std::string& filename, IMG_report* image, int type);
/// Reads the native format. 1, 0 without memory, -1 on failure.
int IMG_read_zav(const std::string& filename, IMG_report* image, int type);
/// Writes the native format, `type` 1 compressed. 1, or 0 on failure.
int IMG_write(const std::string& filename, IMG_report* image, int type);
int IMG_free(IMG_report* image);
int IMG_copy(IMG_report* image1, const IMG_report* image2);
int IMG_print(M_type lev, const IMG_report* image);

// Writers of the workstation's picture: 1, or 0 or below on failure.

int IMG_dump(const std::string& filename);
int GIF_dump(const std::string& filename);
int PNG_dump(const std::string& filename);
int XWD_dump(const std::string& filename);

// Writers of an image record: above 0, or 0 or below on failure.

int GIF_write(const std::string& filename, IMG_report* image);
int PNG_write(const std::string& filename, IMG_report* image);
int XWD_write(const std::string& filename, IMG_report* image);

/// 1 writes GIF files interlaced.
int GIF_interlace(int val);
/// 1 writes GIF files with a transparent background.
int GIF_transparent(int val);

}  // namespace zav
