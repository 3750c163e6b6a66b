#include "plot/background/map_run.h"

#include <algorithm>
#include <cmath>

#include "plot/background/map_state.h"
#include "plot/page/plt_paper.h"
#include "plot/page/plt_tool.h"

namespace zav {
namespace {

/// Points of a record that need no storage of their own.
constexpr std::size_t USUAL_POINTS = 1000;

}  // namespace

Map_run::Map_run() : letter(PLT_letter()), repeats(map_repeats()), scale(PLT_paper_scale()) {
    points.reserve(USUAL_POINTS);
}

/// False for a ring that is but a speck on paper.
bool Map_run::shows() const {
    if (letter || points.front().x != points.back().x || points.front().y != points.back().y) return true;
    const auto by_x = [](const Gpt& a, const Gpt& b) { return a.x < b.x; };
    const auto by_y = [](const Gpt& a, const Gpt& b) { return a.y < b.y; };
    const auto [west, east] = std::minmax_element(points.begin(), points.end(), by_x);
    const auto [south, north] = std::minmax_element(points.begin(), points.end(), by_y);
    return std::max((east->x - west->x) * scale.x, (north->y - south->y) * scale.y) >= LEAST_RING;
}

void Map_run::flush() {
    // The end of a line is kept, in place of a point that is too near to it.
    if (pending && points.size() > 1) points.pop_back();
    if (pending) points.push_back(last);
    pending = false;
    if (points.size() > 1 && shows()) {
        float drawn_at = 0.0F;
        for (const float repeat : repeats) {
            for (Gpt& point : points) point.x += repeat - drawn_at;
            drawn_at = repeat;
            draw();
        }
    }
    points.clear();
}

void Map_run::draw() const {
    const int count = static_cast<int>(points.size());
    if (map_background.fill) {
        gfill_area(count, points.data());
    } else {
        gpolyline(count, points.data());
    }
}

void Map_run::place(Gpt point) {
    last = point;
    pending = !letter && !points.empty() &&
              std::hypot((point.x - points.back().x) * scale.x, (point.y - points.back().y) * scale.y) < LEAST_STEP;
    if (!pending) points.push_back(point);
}

/// The line leaves the map at one side, `side` 1 for the right one, and comes in at the other.
void Map_run::jump(Gpt point, float side) {
    const float width = map_full_width(proj, point.y);
    if (width > 0.0F) place({point.x + side * width, point.y});
    flush();
    place(point);
}

void Map_run::add(const EarthPoint& earth) {
    /// Longest step along a line, in units of map space. More is a jump across the map.
    constexpr float LONGEST = 20.0F;
    Point point;
    if (!map_place(earth.lat, earth.lon, point)) {
        flush();
        return;
    }
    const float dx = points.empty() ? 0.0F : point.x - last.x;
    const float dy = points.empty() ? 0.0F : point.y - last.y;
    if (dx < -LONGEST) {
        jump({point.x, point.y}, 1.0F);
    } else if (dx > LONGEST) {
        jump({point.x, point.y}, -1.0F);
    } else {
        // Lines past the antipode, which is the whole rim, can jump upward or downward too.
        if (proj == PROJ_AZIMUTHAL && std::fabs(dy) > LONGEST) flush();
        place({point.x, point.y});
    }
}

void Map_run::add(const std::vector<EarthPoint>& record) {
    const bool goes_on = !letter && !points.empty() && record.front().lat == end.lat && record.front().lon == end.lon;
    if (!goes_on) flush();
    for (auto earth = record.begin() + (goes_on ? 1 : 0); earth != record.end(); ++earth) add(*earth);
    end = record.back();
    if (letter) flush();
}

}  // namespace zav
