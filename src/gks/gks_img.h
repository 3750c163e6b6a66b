#pragma once

/// Images on a workstation, and the picture of a display.

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

/// Reads the picture that primitives draw into. 1, or 0 without a display.
int gget_image(IMG_report* image);

}  // namespace zav
