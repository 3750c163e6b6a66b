#include "plot/background/map_view.h"

#include <algorithm>
#include <cmath>

#include "frame/zav.h"
#include "gks/gks.h"
#include "plot/background/map.h"
#include "plot/background/map_state.h"
#include "plot/page/plt_tool.h"

namespace zav {
namespace {

constexpr float CELL = 10.0F;
constexpr int SAMPLES = 33;  ///< window positions looked at along each axis
/// Widest window for which the samples lie closer to each other than the cells' margins reach, in units of map space.
constexpr float WIDEST = 600.0F;
constexpr float PACKED_ROWS = 70.0F;  ///< poleward of this latitude a row is seen whole
constexpr float NARROW_ROWS = 60.0F;
constexpr float AROUND_POLE = 88.0F;  ///< a window that reaches so far may show all longitudes

int row_of(float lat) { return std::clamp(static_cast<int>(std::floor((lat + 90.0F) / CELL)), 0, 17); }
int column_of(float lon) { return std::clamp(static_cast<int>(std::floor((lon + 180.0F) / CELL)), 0, 35); }

}  // namespace

Map_view::Map_view() {
    all = !scan_window();
    boxed = !all && !PLT_letter();
}

/// Marks the cells of a lattice of window positions. False if the window can't be judged by it: off the disc, where
/// degrees are packed at the rim, too wide, or without a transform.
bool Map_view::scan_window() {
    Glim window;
    if (MAP_get_proj() == PROJ_GNOMONIC || MAP_get_window(&window) != 0) return false;
    const float x_step = (window.x_max - window.x_min) / (SAMPLES - 1);
    const float y_step = (window.y_max - window.y_min) / (SAMPLES - 1);
    if (!(std::fabs(x_step) * SAMPLES < WIDEST && std::fabs(y_step) * SAMPLES < WIDEST)) return false;
    float latitude = FMISS;
    MAP_untran((window.x_min + window.x_max) / 2.0F, (window.y_min + window.y_max) / 2.0F, &latitude, &center);
    for (int i = 0; i < SAMPLES; ++i) {
        for (int k = 0; k < SAMPLES; ++k) {
            float lat = FMISS;
            float lon = FMISS;
            MAP_untran(window.x_min + x_step * static_cast<float>(i), window.y_min + y_step * static_cast<float>(k),
                       &lat, &lon);
            if (lat == FMISS || !std::isfinite(lat) || !std::isfinite(lon)) return false;
            mark(lat, lon);
            box_in(lat, lon);
        }
    }
    // What lies between the samples.
    constexpr float MARGIN = 2.0F / (SAMPLES - 1);
    const float part = MARGIN * (north - south);
    north += part;
    south -= part;
    side = north > AROUND_POLE || south < -AROUND_POLE ? 180.0F : side * (1.0F + 2.0F * MARGIN);
    return true;
}

void Map_view::mark(float lat, float lon) {
    lat = std::clamp(lat, -90.0F, 90.0F);
    const int middle = column_of(std::remainder(lon, 360.0F));
    const int row = row_of(lat);
    for (int r = std::max(row - 1, 0); r <= std::min(row + 1, ROWS - 1); ++r) {
        const float poleward = std::max(std::fabs(static_cast<float>(r) * CELL - 90.0F),
                                        std::fabs(static_cast<float>(r + 1) * CELL - 90.0F));
        const int reach = poleward > PACKED_ROWS ? COLUMNS / 2 : poleward > NARROW_ROWS ? 3 : 2;
        for (int c = middle - reach; c <= middle + reach; ++c) cells[r][(c + COLUMNS) % COLUMNS] = true;
    }
}

void Map_view::box_in(float lat, float lon) {
    south = std::min(south, lat);
    north = std::max(north, lat);
    side = std::max(side, std::fabs(std::remainder(lon - center, 360.0F)));
}

bool Map_view::box_meets(float lat_min, float lat_max, float lon_min, float lon_max) const {
    if (lat_max < south || lat_min > north) return false;
    const float away = std::fabs(std::remainder((lon_min + lon_max) / 2.0F - center, 360.0F));
    return away <= side + (lon_max - lon_min) / 2.0F;
}

bool Map_view::shows(float lat_min, float lat_max, float lon_min, float lon_max) const {
    if (boxed && !box_meets(lat_min, lat_max, lon_min, lon_max)) return false;
    if (all || !(lat_min >= -90.0F && lat_max <= 90.0F && lon_min >= -180.0F && lon_max <= 180.0F)) return true;
    for (int r = row_of(lat_min); r <= row_of(lat_max); ++r) {
        for (int c = column_of(lon_min); c <= column_of(lon_max); ++c) {
            if (cells[r][c]) return true;
        }
    }
    return false;
}

}  // namespace zav
