#pragma once

#include <string>

namespace zav {

/// Opens a symbol file, null for "wx.smb". 0, or -1 when it is open already or can't be opened.
int WX_symb_file(const char* file);
/// Draws the weather symbol whose name begins `str`, in a box of size `sz`. 1 when a symbol was drawn, else 0.
int WX_symb(float x, float y, const std::string& str, float sz);
/// Station circle with a cloud cover code. Result 0.
int WX_cloud(float x_center, float y_center, float rad, char cover);

}  // namespace zav
