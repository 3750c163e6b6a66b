#pragma once

/// The wind as the page shows it: along the page's own axes, at places in millimetres from the map's lower left corner.
/// Private to plot/wind and its tests.

#include <vector>

#include "gks/gks.h"
#include "grid/zavgrd.h"

namespace zav {

/// A wind on the page.
struct Page_vector {
    float u = 0.0F;  ///< direction, of length 1
    float v = 0.0F;
    float spd = 0.0F;  ///< m/s, below 0 where there is none
};

class Page_wind {
  public:
    /// Takes the winds of two grids to a lattice of points a millimetre apart over the current map, whose
    /// transformation is selected. `along_grid`: their components run along columns and rows, else to east and north.
    /// Memory that isn't there throws.
    Page_wind(const GRD_report& ugrid, const GRD_report& vgrid, bool along_grid);
    /// A wind of its own for every millimetre, row by row from the lower left corner.
    Page_wind(int columns, int rows, std::vector<Page_vector> winds);

    /// The wind between the points of the lattice; below 0 as speed off the map, beside a missing one and in calms.
    Page_vector at(const Gpt& mm) const;
    /// The place of such a point in the map's coordinates.
    Gpt on_map(const Gpt& mm) const;
    float width() const { return static_cast<float>(nx - 1); }
    float height() const { return static_cast<float>(ny - 1); }
    /// Millimetres of a step of the grid in the middle of the map, 0 if that isn't known.
    float grid_step() const { return step; }

  private:
    struct Node;
    void find_places(std::vector<Node>& nodes) const;
    static void take_winds(const GRD_report& ugrid, const GRD_report& vgrid, bool along_grid, std::vector<Node>& nodes);
    void turn_to_page(std::vector<Node>& nodes);

    int nx = 0;
    int ny = 0;
    Gpt origin{0.0F, 0.0F};  ///< map place of the lower left corner
    Gpt scale{1.0F, 1.0F};   ///< millimetres of a map unit
    float step = 0.0F;
    std::vector<Page_vector> winds;  ///< `u`, `v` times the speed
};

}  // namespace zav
