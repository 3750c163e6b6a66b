#pragma once

#include <vector>

#include "gks/gks.h"
#include "map/maptran.h"

namespace zav {

/// Points of map lines that follow each other on the map without a gap, drawn as one line.
///
/// What paper can't show is left out: points nearer to the last one than LEAST_STEP, and closed lines (islands, lakes)
/// smaller than LEAST_RING. In the letter way every point of every line is drawn.
class Map_run {
  public:
    static constexpr float LEAST_STEP = 0.15F;        ///< mm on paper
    static constexpr float LEAST_RING = 1.0F / 3.0F;  ///< mm on paper

    Map_run();
    /// Adds the points of a record, which go on from those before if they begin where those ended.
    void add(const std::vector<EarthPoint>& record);
    /// Draws what has come together and starts anew.
    void flush();

  private:
    void add(const EarthPoint& earth);
    void place(Gpt point);
    void jump(Gpt point, float side);
    bool shows() const;
    void draw() const;

    int proj = MAP_get_proj();
    bool letter;
    std::vector<float> repeats;
    Gpt scale;  ///< mm of a unit of map space
    std::vector<Gpt> points;
    Gpt last{};            ///< of the line, drawn or left out
    bool pending = false;  ///< `last` is left out so far
    EarthPoint end{};      ///< of the record before
};

}  // namespace zav
