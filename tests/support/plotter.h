#pragma once

#include <string>
#include <vector>

namespace zav::test {

struct PlotPoint {
    double x = 0, y = 0;

    bool operator==(const PlotPoint&) const = default;
};
using PlotPath = std::vector<PlotPoint>;

/// What a plotter is told to draw, in plotter units.
struct PlotItem {
    enum Kind { CLIP, LINE, AREA };
    Kind kind = LINE;
    std::vector<PlotPath>
        paths;             ///< of a line one, of a clip its lower left and upper right corner, of an area its rings
    double grey = 0;       ///< 0 black, 1 white
    double width = 0;      ///< mm, of a line
    std::string dashes;    ///< parameters of the line type
    bool nonzero = false;  ///< rule of an area

    bool operator==(const PlotItem&) const = default;
};

struct PlotPage {
    bool pcl = false;  ///< stands in a PCL wrapper
    int turn = 0;      ///< degrees
    std::vector<PlotItem> items;

    std::vector<PlotItem> of_kind(PlotItem::Kind kind) const;
};

/// An HPGL file read by what a plotter does with it.
struct Plot {
    std::vector<PlotPage> pages;
    std::string fault;  ///< the first thing that is no sound HP-GL/2, or not in its place; empty for a sound file
};

Plot read_plot(const std::string& text);

/// Writes a page as PostScript on a letter sheet that lies on its side; `units` of the plotter are a point, and its
/// place (10, 10) is the corner of the sheet's margins.
std::string plot_as_postscript(const PlotPage& page, double units);

/// Turns of an area's rings about a place.
int winding(const std::vector<PlotPath>& rings, const PlotPoint& place);

}  // namespace zav::test
