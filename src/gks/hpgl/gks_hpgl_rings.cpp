// HPGL areas of several rings.

#include <cmath>
#include <vector>

#include "gks/gks.h"
#include "gks/hpgl/gks_hpgl.h"

namespace zav {
namespace {

constexpr int POINTS_A_LINE = 10;

/// A place on the page in whole plotter units, as it is written.
struct Place {
    long x;
    long y;
};

bool same(const Place& a, const Place& b) { return a.x == b.x && a.y == b.y; }

/// True if the way from `a` over `b` to `c` is straight.
bool goes_on(const Place& a, const Place& b, const Place& c) {
    const Place first = {b.x - a.x, b.y - a.y};
    const Place second = {c.x - b.x, c.y - b.y};
    return first.x * second.y == first.y * second.x && first.x * second.x + first.y * second.y > 0;
}

/// The corners of a ring, the first one again at the end. A ring without an area has none.
std::vector<Place> corners_of(Gint num_pt, const Gpt* pts) {
    std::vector<Place> corners;
    const auto add = [&corners](const Place& place) {
        const std::size_t count = corners.size();
        if (count > 0 && same(place, corners.back())) return;
        if (count > 1 && goes_on(corners[count - 2], corners[count - 1], place)) corners.pop_back();
        corners.push_back(place);
    };
    for (int i = 0; i < num_pt; ++i) add({std::lrint(xW_ps(pts[i].x)), std::lrint(yW_ps(pts[i].y))});
    if (!corners.empty()) add(corners.front());
    if (corners.size() < 4) corners.clear();
    return corners;
}

void draw_ring(const std::vector<Place>& corners, const char* start) {
    const auto at = [&corners](std::size_t i) {
        return Gpt{static_cast<float>(corners[i].x), static_cast<float>(corners[i].y)};
    };
    ghpgl_move_abs(at(0).x, at(0).y);
    ghpgl_printf("%s", start);
    for (std::size_t i = 1; i < corners.size(); ++i) {
        ghpgl_line_abs(at(i).x, at(i).y);
        if (i % POINTS_A_LINE == POINTS_A_LINE - 1) ghpgl_printf("\n");
    }
}

}  // namespace

// Each ring is closed by its own points, so that those that do without a ring's end (PM1) see it closed too.
void ghpgl_rings(Gint num_rings, const Gint* num_pt, const Gpt* array_pt) {
    bool open = false;
    for (int ring = 0; ring < num_rings; array_pt += num_pt[ring], ++ring) {
        const std::vector<Place> corners = corners_of(num_pt[ring], array_pt);
        if (corners.empty()) continue;
        if (open) ghpgl_printf("PM1;\n");
        draw_ring(corners, open ? "" : "PM0;");
        open = true;
    }
    if (open) ghpgl_printf("PM2;FP1;\n");
}

}  // namespace zav
