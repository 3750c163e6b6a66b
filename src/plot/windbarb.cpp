// Not built yet: wind barbs, arrows and tracks. What follows is what they do with a missing wind: nothing is drawn.

#include "plot/windbarb.h"

namespace zav {

int WIND_barb(float, float, float, float, float, float) { return -1; }

int WIND_barb_map(float, float, float, float, float, float) { return -1; }

int WIND_vect(float, float, float, float, float, float) { return -1; }

int WIND_vect_map(float, float, float, float, float, float) { return -1; }

int WIND_track(float, float, float, float, float, int, int) { return -1; }

}  // namespace zav
