// Not built yet: the zoom of a window's picture. What follows is what the kernel does without a window: the picture is
// never zoomed.

#include "gks/gks_zoom.h"

namespace zav {

int gzoom(int, int, int, int, int) { return 0; }
int gunzoom() { return 0; }
void greset_zoom() {}
int gget_zoom() { return 1; }
float xZ_p(float x) { return x; }
float yZ_p(float y) { return y; }

}  // namespace zav
