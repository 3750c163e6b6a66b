// The wind on the page: a lattice of winds along the page's axes.

#include "plot/wind/vect_page.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "calc/grd_trans.h"
#include "frame/zav.h"
#include "map/maptran.h"
#include "plot/background/map.h"
#include "plot/page/plt_paper.h"
#include "plot/wind/vecttool.h"

namespace zav {

namespace {

constexpr float NO_WIND = -1.0F;
/// Winds slower than this have no direction.
constexpr float CALM = 0.01F;
/// Most lattice points along a side: several times a page.
constexpr float MOST_POINTS = 2000.0F;

/// False beyond the meridian at which the map is cut, where the way back from the map goes on round the earth.
bool is_on_map(const EarthPoint& place) {
    if (place.lat == FMISS || !(std::fabs(place.lat) <= 90.0F)) return false;
    const int proj = MAP_get_proj();
    if (proj != PROJ_LAMBERT && proj != PROJ_MOLLWEIDE) return true;
    return std::fabs(place.lon - MAP_get_domain(nullptr)->plon) <= 180.0F;
}

int points_along(float length) { return static_cast<int>(std::clamp(std::floor(length), 1.0F, MOST_POINTS)) + 1; }

}  // namespace

/// A point of the lattice on its way from the earth to the page.
struct Page_wind::Node {
    EarthPoint place{FMISS, FMISS};
    float gx = FMISS;
    float gy = FMISS;
    float dir = FMISS;  ///< that the wind comes from, on the earth
    float spd = NO_WIND;
};

Page_wind::Page_wind(int columns, int rows, std::vector<Page_vector> given)
    : nx(columns), ny(rows), winds(std::move(given)) {
    for (Page_vector& wind : winds) {
        wind.u *= wind.spd;
        wind.v *= wind.spd;
    }
}

Page_wind::Page_wind(const GRD_report& ugrid, const GRD_report& vgrid, bool along_grid) {
    Glim window;
    MAP_get_window(&window);
    scale = PLT_paper_scale();
    origin = {window.x_min, window.y_min};
    nx = points_along((window.x_max - window.x_min) * scale.x);
    ny = points_along((window.y_max - window.y_min) * scale.y);
    std::vector<Node> nodes(static_cast<std::size_t>(nx) * static_cast<std::size_t>(ny));
    winds.resize(nodes.size());
    find_places(nodes);
    Domain map;
    MAP_get_domain(&map);
    MAP_domain(&ugrid.domain);
    take_winds(ugrid, vgrid, along_grid, nodes);
    MAP_domain(&map);
    turn_to_page(nodes);
    const std::size_t middle =
        static_cast<std::size_t>(ny / 2) * static_cast<std::size_t>(nx) + static_cast<std::size_t>(nx / 2);
    const Node& a = nodes[middle - 1];
    const Node& b = nodes[middle];
    const float steps = std::hypot(b.gx - a.gx, b.gy - a.gy);
    if (a.gx != FMISS && b.gx != FMISS && steps > 0.0F) step = 1.0F / steps;
}

Gpt Page_wind::on_map(const Gpt& mm) const { return {origin.x + mm.x / scale.x, origin.y + mm.y / scale.y}; }

void Page_wind::find_places(std::vector<Node>& nodes) const {
    auto node = nodes.begin();
    for (int j = 0; j < ny; ++j) {
        for (int i = 0; i < nx; ++i, ++node) {
            const Gpt at = on_map({static_cast<float>(i), static_cast<float>(j)});
            MAP_untran(at.x, at.y, &node->place.lat, &node->place.lon);
            if (!is_on_map(node->place)) node->place.lat = FMISS;
        }
    }
}

/// With the grid's domain current.
void Page_wind::take_winds(const GRD_report& ugrid, const GRD_report& vgrid, bool along_grid,
                           std::vector<Node>& nodes) {
    for (Node& node : nodes) {
        Point at;
        if (node.place.lat == FMISS || MAP_tran_ep(node.place, &at) == 0) continue;
        MAP_grid_untran(at.x, at.y, &node.gx, &node.gy);
        const float u = GRD_get_value(&ugrid, node.gx, node.gy);
        const float v = GRD_get_value(&vgrid, node.gx, node.gy);
        if (u == FMISS || v == FMISS || !std::isfinite(u) || !std::isfinite(v)) continue;
        vect2wind(u, v, &node.dir, &node.spd);
        if (along_grid) node.dir = MAP_undir_adj(node.dir, at.x, at.y);
    }
}

/// With the map's domain current.
void Page_wind::turn_to_page(std::vector<Node>& nodes) {
    std::size_t k = 0;
    for (const Node& node : nodes) {
        const auto column = static_cast<float>(k % static_cast<std::size_t>(nx));
        const auto row = static_cast<float>(k / static_cast<std::size_t>(nx));
        Page_vector& wind = winds[k++];
        wind.spd = NO_WIND;
        if (node.spd < 0.0F || node.dir == FMISS) continue;
        const Gpt at = on_map({column, row});
        const float dir = MAP_dir_adj(node.dir, at.x, at.y);
        if (dir == FMISS) continue;
        wind2vect(dir, 1.0F, &wind.u, &wind.v);
        wind.u *= scale.x;
        wind.v *= scale.y;
        const float length = std::hypot(wind.u, wind.v);
        if (!(length > 0.0F)) continue;
        wind = {wind.u / length * node.spd, wind.v / length * node.spd, node.spd};
    }
}

Page_vector Page_wind::at(const Gpt& mm) const {
    const Page_vector none{0.0F, 0.0F, NO_WIND};
    if (!(mm.x >= 0.0F && mm.x <= width() && mm.y >= 0.0F && mm.y <= height())) return none;
    const int i = std::min(static_cast<int>(mm.x), nx - 2);
    const int j = std::min(static_cast<int>(mm.y), ny - 2);
    const float fx = mm.x - static_cast<float>(i);
    const float fy = mm.y - static_cast<float>(j);
    const Page_vector* low =
        &winds[static_cast<std::size_t>(j) * static_cast<std::size_t>(nx) + static_cast<std::size_t>(i)];
    const Page_vector* high = low + nx;
    if (low[0].spd < 0.0F || low[1].spd < 0.0F || high[0].spd < 0.0F || high[1].spd < 0.0F) return none;
    const auto mean = [&](float Page_vector::*part) {
        return (1.0F - fy) * ((1.0F - fx) * low[0].*part + fx * low[1].*part) +
               fy * ((1.0F - fx) * high[0].*part + fx * high[1].*part);
    };
    const Page_vector wind{mean(&Page_vector::u), mean(&Page_vector::v), mean(&Page_vector::spd)};
    const float length = std::hypot(wind.u, wind.v);
    if (!(length >= CALM)) return none;
    return {wind.u / length, wind.v / length, wind.spd};
}

}  // namespace zav
