// Contours of a grid that goes round the globe: the same wherever it begins, on every map.

#include <gtest/gtest.h>

#include <algorithm>
#include <tuple>

#include "frame/flag.h"
#include "plot/contour/cont_support.h"

namespace zav::test {
namespace {

constexpr int COLUMNS = 40;
constexpr int ROWS = 21;

/// Waves about the globe from the meridian `west` on; `repeated` columns more than a turn.
GRD_report waves(float west, int repeated) {
    GRD_report grid = make_grid(COLUMNS + repeated, ROWS, std::vector<float>((COLUMNS + 1) * ROWS), PROJ_LATLON);
    grid.domain.dx = grid.domain.dy = 9;
    grid.domain.plat = grid.domain.clat = 0;
    grid.domain.clon = west + 4.5F * static_cast<float>(COLUMNS + repeated - 1);
    grid.domain.plon = FMISS;
    for (int k = 0; k < grid.domain.nx * ROWS; ++k) {
        const double lon = (west + 9.0 * (k % grid.domain.nx)) * M_PI / 180;
        const double lat = (90.0 - 9.0 * (k / grid.domain.nx)) * M_PI / 180;
        grid.grid[k] = static_cast<float>(10 * std::cos(lat) * (std::sin(3 * lon) + std::cos(lon - 2 * lat)));
    }
    return grid;
}

struct Map_case {
    const char* name;
    Domain domain;
};

Domain map_domain(int proj, float plat, float clat, float clon, int nx, int ny, float step) {
    Domain domain;
    domain.proj = proj;
    domain.plat = plat;
    domain.clat = clat;
    domain.plon = domain.clon = clon;
    domain.nx = nx;
    domain.ny = ny;
    domain.dx = domain.dy = step;
    return domain;
}

using Segment = std::array<Gpt, 2>;

/// What lies on the map, each segment from left to right, as all of them.
std::vector<Segment> draw_on(const Domain& map, GRD_report grid, int smooth) {
    start_contours(CONT_LINE, true);
    FLAG_resetplot(1);
    set_interval(-21, 1.7F, 25);
    cont.label_skip = cont.ext_radius = 0;
    cont.smooth = smooth;
    MAP_setup(&map);
    EXPECT_EQ(CONT_draw(&grid), 0);
    PLT_set_letter(false);
    std::vector<Segment> segments;
    for (const auto& line : sent.lines) {
        for (std::size_t k = 1; k < line.size(); ++k) {
            if (MAP_in_domain(line[k].x, line[k].y) == 0 || MAP_in_domain(line[k - 1].x, line[k - 1].y) == 0) continue;
            const bool swapped = std::tie(line[k].x, line[k].y) < std::tie(line[k - 1].x, line[k - 1].y);
            segments.push_back(swapped ? Segment{line[k], line[k - 1]} : Segment{line[k - 1], line[k]});
        }
    }
    std::sort(segments.begin(), segments.end(), [](const Segment& a, const Segment& b) { return a[0].x < b[0].x; });
    return segments;
}

float apart(const Gpt& a, const Gpt& b) { return std::hypot(a.x - b.x, a.y - b.y); }

/// Segments of some length that have none of the others beside them, either way round. Both are in order.
int without_partner(const std::vector<Segment>& segments, const std::vector<Segment>& others, float reach) {
    const auto has_partner = [&](const Segment& a) {
        const auto before = [](const Segment& s, float x) { return s[0].x < x; };
        auto b = std::lower_bound(others.begin(), others.end(), a[0].x - reach, before);
        for (; b != others.end() && (*b)[0].x <= a[0].x + reach; ++b) {
            const float straight = std::max(apart(a[0], (*b)[0]), apart(a[1], (*b)[1]));
            if (std::min(straight, std::max(apart(a[0], (*b)[1]), apart(a[1], (*b)[0]))) < reach) return true;
        }
        return false;
    };
    return static_cast<int>(std::count_if(segments.begin(), segments.end(), [&](const Segment& a) {
        return apart(a[0], a[1]) > reach && !has_partner(a);
    }));
}

TEST(ContSeam, LinesAreThoseOfTheRolledGrid) {
    const Map_case cases[] = {{"world", map_domain(PROJ_LATLON, 0, 0, 0, 73, 37, 5)},
                              {"world about the date line", map_domain(PROJ_LATLON, 0, 0, 180, 73, 37, 5)},
                              {"more than the world", map_domain(PROJ_LATLON, 0, 0, -90, 99, 37, 5)},
                              {"Europe", map_domain(PROJ_MERCATOR, 0, 50, 4, 41, 31, 2)},
                              {"Pacific", map_domain(PROJ_MERCATOR, 0, 10, 178, 61, 41, 3)},
                              {"pole", map_domain(PROJ_POLAR, 90, 90, 0, 61, 61, 3)},
                              {"cone", map_domain(PROJ_LAMBERT, 50, 50, 3, 81, 81, 4)},
                              {"ellipse", map_domain(PROJ_MOLLWEIDE, 0, 0, 3, 52, 27, 5)},
                              {"satellite", map_domain(PROJ_SATELLITE, 0, 0, 0, 62, 62, 2)}};
    for (const auto& [name, map] : cases) {
        for (const int smooth : {1, 3}) {
            const auto lines = draw_on(map, waves(0, 0), smooth);
            EXPECT_GT(lines.size(), 50U) << name;
            const GRD_report others[] = {waves(-180, 0), waves(-180, 1), waves(45, 0)};
            for (const GRD_report& other : others) {
                const auto rolled = draw_on(map, other, smooth);
                const float reach = map.proj == PROJ_LATLON || map.proj == PROJ_MERCATOR ? 0.01F : 0.05F;
                EXPECT_EQ(without_partner(lines, rolled, reach), 0)
                    << name << ' ' << other.domain.clon << ' ' << smooth;
                EXPECT_EQ(without_partner(rolled, lines, reach), 0)
                    << name << ' ' << other.domain.clon << ' ' << smooth;
                for (const Segment& s : rolled) ASSERT_LT(apart(s[0], s[1]), 45) << name << ", across the map";
            }
        }
    }
}

}  // namespace
}  // namespace zav::test
