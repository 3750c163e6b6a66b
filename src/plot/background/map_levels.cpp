// Levels of detail of the map databases.

#include "plot/background/map_levels.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

#include "files/files.h"
#include "frame/string.h"
#include "frame/tools.h"
#include "plot/background/map.h"
#include "plot/background/map_state.h"
#include "plot/page/plt_paper.h"
#include "plot/page/plt_tool.h"

namespace zav {
namespace {

constexpr float KM_OF_UNIT = 100.0F;

/// Millimetres on paper of a short way on the earth, 0 where the map doesn't show it.
float way_on_paper(float x, float y, float direction, float km) {
    const Gpt scale = PLT_paper_scale();
    float x2 = FMISS;
    float y2 = FMISS;
    MAP_offset(x, y, direction, km, &x2, &y2);
    return x2 == FMISS ? 0.0F : std::hypot((x2 - x) * scale.x, (y2 - y) * scale.y);
}

}  // namespace

float map_scale() {
    constexpr float WAY = 10.0F;
    constexpr float EAST = 90.0F;
    constexpr float WEST = 270.0F;
    Glim window;
    MAP_get_window(&window);
    const float x = (window.x_min + window.x_max) / 2.0F;
    const float y = (window.y_min + window.y_max) / 2.0F;
    // One of these leads round the earth where the map's middle is the meridian at which it is cut.
    const float across = std::min(way_on_paper(x, y, EAST, WAY), way_on_paper(x, y, WEST, WAY));
    const float mm = std::sqrt(way_on_paper(x, y, 0.0F, WAY) * across);
    if (mm > 0.0F && std::isfinite(mm)) return WAY / mm;
    const float unit = PLT_paper_scale().y;
    return unit > 0.0F ? KM_OF_UNIT / unit : KM_OF_UNIT;
}

std::vector<std::string> map_levels(const std::string& path) {
    const std::size_t name_at = path.rfind('/') + 1;
    const std::string folder = path.substr(0, name_at);
    const file_ptr table = PLT_letter() ? nullptr : FILE_open_data(folder + "map.lup");
    if (table == nullptr) return {path};
    const std::string name = path.substr(name_at);
    const float scale = map_scale();
    std::string line;
    while (fgetline(table.get(), line) >= 0) {
        char database[LINE_LIMIT + 1];
        char files[LINE_LIMIT + 1];
        float least = 0.0F;
        if (std::sscanf(line.c_str(), "%160s %f %160s", database, &least, files) != 3) continue;
        if (name != database || scale < least) continue;
        if (files[0] == '-') return {};
        std::vector<std::string> paths = parse_string(files, ',');
        for (std::string& file : paths) file.insert(0, folder);
        return paths;
    }
    return {path};
}

}  // namespace zav
