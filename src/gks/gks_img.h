#pragma once

/// Images on a workstation, and the picture of a display.

#include <array>
#include <string>

namespace zav {

struct IMG_report;

int gread_image_file(const std::string& filename, IMG_report* image);
int gquery_image_file(const std::string& filename, IMG_report* image);
void gsetup_image_colors(IMG_report* image, int trans);

/// Places an image over the current viewport; a negative x or y counts from the far side. 1, or 0.
int gload_image(IMG_report* image, int x, int y);
int gload_image_file(const std::string& filename, int x, int y);

/// The same without the pixels of the background colour. 1, or 0.
int goverlay_image(IMG_report* image, const char* background, int x, int y);
int goverlay_image_file(const std::string& filename, const char* background, int x, int y);

/// Format of gsave_image_file: 56 GIF, 58 PNG, any other XWD.
void gset_save_image_type(int type);
int gget_save_image_type();
int gsave_image_file(const std::string& filename);

// Samples of an image of indexed pixels, for workstations that draw it.

/// Farthest place of a viewport in an image; no viewport is as wide.
constexpr int GIMAGE_FARTHEST = 100000;
/// Pixel value at a place, -1 outside of the image.
int gimage_value(const IMG_report& image, int row, int column);
/// Red, green and blue of a pixel value, 0 to 255.
std::array<int, 3> gimage_color(int value);

/// Reads the picture that primitives draw into. 1, or 0 without a display.
int gget_image(IMG_report* image);

}  // namespace zav
