#pragma once

#include <vector>

#include "gks/gks.h"
#include "map/maptran.h"

namespace zav {

/// Filled areas of map files. A record is a polygon; one that the map cuts is drawn as the pieces at both sides, one
/// that goes behind the limb of a disc ends there.
class Map_area {
  public:
    Map_area();
    void add(const std::vector<EarthPoint>& record);
    /// The edge of the earth where the map shows it as a disc or whole: a closed line, empty on other maps.
    std::vector<Gpt> rim() const;

  private:
    /// Points with longitudes as differences to that in the map's middle.
    using Polygon = std::vector<EarthPoint>;

    void draw(const Polygon& polygon);
    bool place(EarthPoint earth, Point& point) const;
    Point on_limb(EarthPoint hidden) const;
    void fill();

    int proj = MAP_get_proj();
    EarthPoint middle;     ///< of the map
    float south = -90.0F;  ///< latitudes that the map can show
    float north = 90.0F;
    std::vector<float> repeats;
    Gpt scale;  ///< mm of a unit of map space
    Glim window;
    std::vector<Gpt> points;
};

}  // namespace zav
