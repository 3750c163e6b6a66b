#pragma once

#include <cstdio>
#include <string>

#include "map/region.h"

namespace zav {

struct Glim;

/// Passes of MAP_draw, added up: which items of the map list are drawn.
enum : int {
    MAP_PASS_UNDER = 1,  ///< items marked "-"
    MAP_PASS_OVER = 2,   ///< items marked "+"
    MAP_PASS_PLAIN = 4,  ///< items without a mark
};

/// Makes `domain` current and its limits the window of transformation 2, which is selected.
int MAP_setup(const Domain* domain);

/// Draws the background for the passes in `flag`.
int MAP_draw(int flag);

/// Draws one item of the map list. 0 if drawn, -1 if skipped or failed.
int MAP_process(const std::string& str);

/// Plots an open map database file. 1 if the projection is no map, 0 after an end record, else -1 at the end.
int MAP_map(std::FILE* map_file);

/// Draws latitude and longitude lines `dlat`, `dlon` degrees apart; axis lines on graphs.
int MAP_lines(float dlat, float dlon);

/// Draws a circle of `rad` kilometres about a map point.
int MAP_draw_circle(float x, float y, float rad);

/// Spacing of latitude and longitude lines, of plus marks (`dt`) and of extra labels (`ex`), degrees, 0 for none.
int MAP_latlon(float lat, float lon, int dt, int ex);
int MAP_get_latlon(float* lat, float* lon);

/// Map list to use when the resource "map_file" is not set.
int MAP_file(const std::string& file);

/// Draws a raw data file over the map; `label` 1 also sets the plot's labels from it. Result 0.
using MAP_raw_func = int (*)(const std::string& file, int label);
/// What draws the "rf:" items. Without one they are passed over.
void MAP_set_raw_func(MAP_raw_func func);

/// Attribute string for map lines.
int MAP_set_format(const std::string& str);

/// 1 tells that filled contours are drawn, which changes the default map colour.
int MAP_fill_cont(int value);

/// Window of transformation 2, map space of the plot.
int MAP_get_window(Glim* wind);
/// Vertical extent of that window in map units.
float MAP_get_vert();
/// Horizontal extent of that window in map units.
float MAP_get_hor();

}  // namespace zav
