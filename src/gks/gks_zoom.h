#pragma once

/// Zoom of the picture by pixel replication.

namespace zav {

/// Zooms frame `ind` about (x, y); `flag` again after a frame change. 1 if done, else 0.
int gzoom(int ind, int x, int y, int factor, int flag);
int gunzoom();
void greset_zoom();

/// Zoom factor, 1 for none.
int gget_zoom();

/// Pixel of the zoomed view as pixel of the unzoomed picture.
float xZ_p(float x);
float yZ_p(float y);

}  // namespace zav
