#include "plot/page/plt_room.h"

#include <algorithm>
#include <cmath>

#include "plot/page/plt_labl.h"
#include "plot/page/plt_paper.h"
#include "plot/page/plt_tool.h"

namespace zav {
namespace {

PLT_boxes room;

bool meet(const Glim& a, const Glim& b) {
    return a.x_min < b.x_max && b.x_min < a.x_max && a.y_min < b.y_max && b.y_min < a.y_max;
}

/// Tile of a position; what lies off the page belongs to the tiles at its edge.
int tile_at(float place, int tiles) {
    const float tile = std::floor(place / PLT_PAGE_MM * static_cast<float>(tiles));
    return tile > 0.0F ? static_cast<int>(std::min(tile, static_cast<float>(tiles - 1))) : 0;
}

}  // namespace

PLT_boxes::Tiles PLT_boxes::tiles_of(const Glim& box) {
    return {tile_at(box.x_min, TILES), tile_at(box.x_max, TILES), tile_at(box.y_min, TILES), tile_at(box.y_max, TILES)};
}

void PLT_boxes::clear() {
    boxes_.clear();
    for (std::vector<int>& tile : tile_) tile.clear();
}

void PLT_boxes::add(const Glim& box) {
    const int number = static_cast<int>(boxes_.size());
    const Tiles at = tiles_of(box);
    boxes_.push_back(box);
    for (int row = at.first_row; row <= at.last_row; ++row) {
        for (int column = at.first_column; column <= at.last_column; ++column) {
            tile_[row * TILES + column].push_back(number);
        }
    }
}

bool PLT_boxes::is_free(const Glim& box) const {
    const Tiles at = tiles_of(box);
    for (int row = at.first_row; row <= at.last_row; ++row) {
        for (int column = at.first_column; column <= at.last_column; ++column) {
            for (const int number : tile_[row * TILES + column]) {
                if (meet(boxes_[number], box)) return false;
            }
        }
    }
    return true;
}

void PLT_boxes::near(const Glim& box, std::vector<int>* found) const {
    found->clear();
    const Tiles at = tiles_of(box);
    for (int row = at.first_row; row <= at.last_row; ++row) {
        for (int column = at.first_column; column <= at.last_column; ++column) {
            const std::vector<int>& tile = tile_[row * TILES + column];
            found->insert(found->end(), tile.begin(), tile.end());
        }
    }
    std::sort(found->begin(), found->end());
    found->erase(std::unique(found->begin(), found->end()), found->end());
}

PLT_boxes& PLT_room() { return room; }

Glim PLT_room_view() {
    Glim view = PLT_paper_view();
    if (!PLT_get_full_lab()) return view;
    view.y_min += PLT_FULL_LABEL_SPACE * PLT_PAGE_MM;
    view.y_max -= PLT_FULL_LABEL_SPACE * PLT_PAGE_MM;
    return view;
}

bool PLT_box_inside(const Glim& box, const Glim& view) {
    return box.x_min >= view.x_min && box.x_max <= view.x_max && box.y_min >= view.y_min && box.y_max <= view.y_max;
}

}  // namespace zav
