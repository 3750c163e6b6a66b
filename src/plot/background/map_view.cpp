#include "plot/background/map_view.h"

#include <algorithm>
#include <cmath>

#include "frame/zav.h"
#include "gks/gks.h"
#include "plot/background/map.h"
#include "plot/background/map_state.h"

namespace zav {
namespace {

constexpr float CELL = 10.0F;
constexpr int SAMPLES = 33;  ///< window positions looked at along each axis
/// Widest window for which the samples lie closer to each other than the cells' margins reach, in units of map space.
constexpr float WIDEST = 600.0F;
constexpr float PACKED_ROWS = 70.0F;  ///< poleward of this latitude a row is seen whole
constexpr float NARROW_ROWS = 60.0F;

int row_of(float lat) { return std::clamp(static_cast<int>(std::floor((lat + 90.0F) / CELL)), 0, 17); }
int column_of(float lon) { return std::clamp(static_cast<int>(std::floor((lon + 180.0F) / CELL)), 0, 35); }

}  // namespace

Map_view::Map_view() { all = !scan_window(); }

/// Marks the cells of a lattice of window positions. False if the window can't be judged by it: off the disc, where
/// degrees are packed at the rim, too wide, or without a transform.
bool Map_view::scan_window() {
    Glim window;
    if (MAP_get_proj() == PROJ_GNOMONIC || MAP_get_window(&window) != 0) return false;
    const float x_step = (window.x_max - window.x_min) / (SAMPLES - 1);
    const float y_step = (window.y_max - window.y_min) / (SAMPLES - 1);
    if (!(std::fabs(x_step) * SAMPLES < WIDEST && std::fabs(y_step) * SAMPLES < WIDEST)) return false;
    for (int i = 0; i < SAMPLES; ++i) {
        for (int k = 0; k < SAMPLES; ++k) {
            float lat = FMISS;
            float lon = FMISS;
            MAP_untran(window.x_min + x_step * static_cast<float>(i), window.y_min + y_step * static_cast<float>(k),
                       &lat, &lon);
            if (lat == FMISS || !std::isfinite(lat) || !std::isfinite(lon)) return false;
            mark(lat, lon);
        }
    }
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

bool Map_view::shows(float lat_min, float lat_max, float lon_min, float lon_max) const {
    if (all || !(lat_min >= -90.0F && lat_max <= 90.0F && lon_min >= -180.0F && lon_max <= 180.0F)) return true;
    for (int r = row_of(lat_min); r <= row_of(lat_max); ++r) {
        for (int c = column_of(lon_min); c <= column_of(lon_max); ++c) {
            if (cells[r][c]) return true;
        }
    }
    return false;
}

}  // namespace zav
