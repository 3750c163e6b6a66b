#pragma once

/// Lengths on paper: what is to be legible has its size and distance in millimetres, whatever the grid and the map.

#include "gks/gks.h"

namespace zav {

/// Width of a whole page in millimetres, the long side of the sheet's drawing area (10.5 inches). Displays and pictures
/// are measured as if they were printed at this width.
constexpr float PLT_PAGE_MM = 266.7F;

/// Position on the page, in millimetres from its lower left corner, of a point in the coordinates of the selected
/// transformation.
Gpt PLT_on_paper(const Gpt& pt);

/// Millimetres on the page of one unit of the selected transformation, in x and in y.
Gpt PLT_paper_scale();

/// The plot's viewport on the page, in millimetres.
Glim PLT_paper_view();

}  // namespace zav
