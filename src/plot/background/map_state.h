#pragma once

#include <string>
#include <vector>

#include "map/maptran.h"
#include "plot/background/map.h"

namespace zav {

/// State of the map background, shared by its files.
struct Map_background {
    std::string map_name;  ///< map list, at most 250 characters
    std::string format;    ///< attribute string for maps, at most 40 characters
    float latln = 0.0F;    ///< line spacing in degrees, 0 and below for no lines
    float lonln = 0.0F;
    int dot = 0;    ///< spacing of plus marks in degrees, 0 for none
    int extra = 0;  ///< spacing of labels repeated along the lines in degrees, 0 for none
    int over = 0;   ///< passes in force, MAP_PASS_*
    int reg_found =
        1;  ///< region blocks: 1 none met, 2 inside one that holds, 0 inside one that doesn't, -1 behind one
    int fill_cont = 0;  ///< filled contours are on
    bool fill = false;  ///< the map file at work is filled; in the letter way those behind it too
    MAP_raw_func raw_plot = nullptr;
};
extern Map_background map_background;

/// True if the current domain shows the earth.
bool map_shows_earth();

/// Text height of map labels, in units of the transformation that they are drawn in.
float map_text_height();

/// Width of the whole earth at map position `y` where the map is cut along a meridian and goes on at its other side:
/// codes 2, 3 and 7. 0 on others.
float map_full_width(int proj, float y);

/// Distances by which what is drawn of the earth has to be moved to fill a window that goes on beyond the meridian at
/// which the map is cut, 0 among them. In the letter way it is drawn once.
std::vector<float> map_repeats();

/// Position on the map. False for a point that it can't show.
bool map_place(float lat, float lon, Point& point);

/// Latitude and longitude lines with labels on a map.
void map_earth_lines(float dlat, float dlon);
/// Lines of constant value with labels on a graph.
void map_graph_lines(float dlat, float dlon);

/// True for a spacing of lines that can be drawn: a number that isn't so small that only colour would remain.
bool map_step_is_good(float step);

}  // namespace zav
