#pragma once

/// Streamlines at an even distance from each other. Private to plot/wind and its tests.

#include <vector>

#include "plot/wind/vect_page.h"

namespace zav {

/// A streamline, from its upwind end on: points in millimetres, and the speed at each.
struct Streamline {
    std::vector<Gpt> points;
    std::vector<float> speeds;
};

/// Distance of the points of a streamline.
constexpr float STREAM_STEP_MM = 0.5F;

/// Lines that lie about `distance` millimetres apart and cover the page, none nearer to another than a part of that (B.
/// Jobard and W. Lefer, Creating evenly-spaced streamlines of arbitrary density, Visualization in Scientific Computing,
/// 1997). Memory that isn't there throws.
std::vector<Streamline> VECT_even_lines(const Page_wind& wind, float distance);

}  // namespace zav
