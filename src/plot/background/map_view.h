#pragma once

#include <array>

namespace zav {

/// The part of the earth that the plot's window shows, in cells of 10 by 10 degrees and, but in the letter way, by the
/// box round them, so that what lies elsewhere needn't be transformed. It errs on the large side.
class Map_view {
  public:
    /// Of the current domain and the window of transformation 2.
    Map_view();

    /// True if any of the box may be seen. Boxes that leave the usual ranges count as seen.
    bool shows(float lat_min, float lat_max, float lon_min, float lon_max) const;

  private:
    static constexpr int ROWS = 18;
    static constexpr int COLUMNS = 36;

    bool scan_window();
    void mark(float lat, float lon);
    void box_in(float lat, float lon);
    bool box_meets(float lat_min, float lat_max, float lon_min, float lon_max) const;

    bool all = false;
    float south = 90.0F;  ///< bounds of what was seen
    float north = -90.0F;
    float center = 0.0F;  ///< longitude of the window's middle, and how far was seen to both sides of it
    float side = 0.0F;
    bool boxed = false;
    std::array<std::array<bool, COLUMNS>, ROWS> cells{};
};

}  // namespace zav
