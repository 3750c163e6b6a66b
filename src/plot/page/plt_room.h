#pragma once

#include <array>
#include <vector>

#include "gks/gks.h"

namespace zav {

/// Boxes on the page, in millimetres (plt_paper.h), found by their place.
class PLT_boxes {
  public:
    void clear();
    void add(const Glim& box);
    /// True when `box` has no area in common with any of these.
    bool is_free(const Glim& box) const;
    /// Numbers of the boxes that may meet `box`, each once.
    void near(const Glim& box, std::vector<int>* found) const;
    const std::vector<Glim>& all() const { return boxes_; }

  private:
    static constexpr int TILES = 36;  ///< a page in tiles of some 7 mm
    struct Tiles {
        int first_column, last_column, first_row, last_row;
    };
    static Tiles tiles_of(const Glim& box);

    std::vector<Glim> boxes_;
    std::array<std::vector<int>, TILES * TILES> tile_;
};

/// The room that marks and labels of all layers have taken on the present page or panel. Who writes a text that is to
/// stay legible asks whether its box is free and adds it.
PLT_boxes& PLT_room();

/// The part of the plot that texts may stand in, in millimetres: its viewport without what titles inside of it take.
Glim PLT_room_view();

/// True when `box` lies in `view`.
bool PLT_box_inside(const Glim& box, const Glim& view);

}  // namespace zav
