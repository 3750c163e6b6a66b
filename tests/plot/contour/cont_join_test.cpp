// Areas and lines that are joined across cells, against the pieces of the cells.

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <random>
#include <tuple>

#include "plot/contour/cont_support.h"

namespace zav::test {
namespace {

double signed_area(const std::vector<Gpt>& pts) {
    double sum = 0;
    for (std::size_t i = 0; i < pts.size(); ++i) {
        const Gpt& a = pts[i];
        const Gpt& b = pts[(i + 1) % pts.size()];
        sum += static_cast<double>(a.x) * b.y - static_cast<double>(b.x) * a.y;
    }
    return sum / 2;
}

/// How often the ring goes round the point.
int winding(const std::vector<Gpt>& pts, double x, double y) {
    int turns = 0;
    for (std::size_t i = 0; i < pts.size(); ++i) {
        const Gpt& a = pts[i];
        const Gpt& b = pts[(i + 1) % pts.size()];
        if ((a.y <= y) == (b.y <= y)) continue;
        const double across = a.x + (y - a.y) / (static_cast<double>(b.y) - a.y) * (static_cast<double>(b.x) - a.x);
        if (across > x) turns += b.y > a.y ? 1 : -1;
    }
    return turns;
}

bool is_in(const Sent_fill& fill, double x, double y) {
    int turns = 0;
    for (const auto& ring : fill.rings) turns += winding(ring, x, y);
    return turns != 0;
}

/// Band painted last over a point, -1 for none.
template <typename Fills>
int band_at(const Fills& fills, double x, double y) {
    const auto holds = [&](const auto& fill) { return is_in(fill, x, y); };
    const auto found = std::find_if(fills.rbegin(), fills.rend(), holds);
    return found == fills.rend() ? -1 : found->band;
}

std::vector<Sent_fill> pieces() {
    std::vector<Sent_fill> fills;
    for (const auto& area : sent.areas) fills.push_back({{area.pts}, area.band});
    return fills;
}

double side_of(const Gpt& a, const Gpt& b, const Gpt& c) {
    return (static_cast<double>(b.x) - a.x) * (static_cast<double>(c.y) - a.y) -
           (static_cast<double>(b.y) - a.y) * (static_cast<double>(c.x) - a.x);
}

/// Edges of the fill that cross another in its midst, and those that don't part inside from outside.
int bad_edges(const Sent_fill& fill, double size) {
    std::vector<std::array<Gpt, 2>> edges;
    for (const auto& ring : fill.rings) {
        for (std::size_t i = 0; i < ring.size(); ++i) edges.push_back({ring[i], ring[(i + 1) % ring.size()]});
    }
    int bad = 0;
    const double least = 1e-9 * size * size;
    for (const auto& [a, b] : edges) {
        for (const auto& [c, d] : edges) {
            const double s1 = side_of(a, b, c), s2 = side_of(a, b, d), s3 = side_of(c, d, a), s4 = side_of(c, d, b);
            const bool apart = std::min({std::fabs(s1), std::fabs(s2), std::fabs(s3), std::fabs(s4)}) > least;
            if (apart && (s1 > 0) != (s2 > 0) && (s3 > 0) != (s4 > 0)) ++bad;
        }
        const double dx = static_cast<double>(b.x) - a.x;
        const double dy = static_cast<double>(b.y) - a.y;
        const double length = std::hypot(dx, dy);
        if (length < 0.05 * size) continue;
        const auto inside = [&](double off) {
            return is_in(fill, (a.x + b.x) / 2.0 - dy / length * off, (a.y + b.y) / 2.0 + dx / length * off);
        };
        const double off = 5e-4 * size;
        if (inside(off) == inside(2 * off) && inside(-off) == inside(-2 * off) && inside(off) == inside(-off)) ++bad;
    }
    return bad;
}

/// A random field with ties, saddles and holes, on its own map or laid on another.
struct Case {
    GRD_report grid;
    Domain map;
    bool split = false;  ///< cells lie about the edge of the map, x = +-`edge`
};

Case random_case(std::mt19937& random, int n) {
    const std::vector<std::string> maps{"", "ll,0,178,20,12,1", "ps,90,0,60,10,12,12,1", "lcc,50,10,50,10,12,12,1",
                                        "me,0,0,20,12,1"};
    std::uniform_real_distribution<float> any(0, 10);
    std::uniform_int_distribution<int> whole(0, 5);
    std::vector<float> values(9 * 8);
    for (float& value : values) {
        value = n % 3 == 0 ? 2.0F * static_cast<float>(whole(random)) : any(random);
        if (any(random) < 0.6F) value = FMISS;
    }
    Case c{make_grid(9, 8, values), {}};
    c.map = c.grid.domain;
    const std::string& map = maps[static_cast<std::size_t>(n) % maps.size()];
    if (map.empty()) return c;
    c.grid.domain.proj = PROJ_LATLON;
    c.grid.domain.clat = 50;
    c.grid.domain.clon = n % 2 == 0 ? 10.0F : 180.0F;
    DOM_init(&c.map);
    EXPECT_EQ(DOM_decode(map, &c.map), 1) << map;
    c.split = c.map.proj == PROJ_MERCATOR && n % 2 == 1;
    return c;
}

void set_bands(int n) {
    set_interval(n % 4 == 1 ? -2.0F : 0.0F, 2.0F, 7);
    if (n % 5 == 0) set_levels({1, 2, 4, 7});
    if (n % 7 == 3) cont.min_cut = 2.5F;
    if (n % 11 == 4) cont.max_cut = 7.0F;
    if (n % 6 == 5) cont.fill_attrib[3].color = -1;
    cont.color_num = 11;
    cont.fill_attrib[10].color = 10;
}

/// Draws the case, or of it what a window shows.
void draw_case(Case& c, const Glim& window = {}) {
    MAP_domain(&c.map);
    gset_win(2, &window);
    ASSERT_EQ(CONT_draw_contour(&c.grid), 0);
}

TEST(ContJoin, AreasCoverWhatThePiecesCover) {
    std::mt19937 random(5);
    for (int n = 0; n < 1000; ++n) {
        Case c = random_case(random, n);
        start_contours(CONT_FILL);
        set_bands(n);
        draw_case(c);
        const std::vector<Sent_fill> parts = pieces();
        start_contours(CONT_FILL, true);
        set_bands(n);
        draw_case(c);
        std::map<int, double> area;
        for (const auto& part : parts) area[part.band] += std::fabs(signed_area(part.rings[0]));
        std::map<int, double> whole;
        for (const auto& fill : sent.fills) {
            for (const auto& ring : fill.rings) whole[fill.band] += signed_area(ring);
        }
        double total = 0;
        for (const auto& [band, part] : area) total += part;
        const double size = std::sqrt(total / 50.0);
        for (const auto& [band, part] : area) {
            // A band reaches on under the next one, or under all above it up to one that isn't drawn.
            double covered = part;
            double off = std::fabs(whole[band] - covered);
            for (int above = band + 1; area.count(above) > 0; ++above) {
                covered += area[above];
                off = std::min(off, std::fabs(whole[band] - covered));
            }
            ASSERT_TRUE(c.split || off < 1e-5 * total) << n << " band " << band;
        }
        for (const auto& fill : sent.fills) ASSERT_EQ(bad_edges(fill, size), 0) << n << " band " << fill.band;
        for (int k = 0; k < 10 && !parts.empty(); ++k) {
            const auto& part = parts[random() % parts.size()].rings[0];
            const Gpt& a = part[random() % part.size()];
            const Gpt& b = part[random() % part.size()];
            const double x = (a.x + b.x) / 2.0 + 0.3 * size * std::sin(k);
            const double y = (a.y + b.y) / 2.0 + 0.3 * size * std::cos(k);
            const int want = band_at(parts, x, y);
            bool near_edge = false;
            for (const double off : {-1e-3 * size, 1e-3 * size}) {
                near_edge = near_edge || band_at(parts, x + off, y) != want || band_at(parts, x, y + off) != want;
            }
            if (!near_edge && std::fabs(x) < 200.0) {
                ASSERT_EQ(band_at(sent.fills, x, y), want) << n << " at " << x << ' ' << y;
            }
        }
    }
}

/// The pieces of all lines in order of place, each once, none without length.
std::vector<std::array<float, 4>> segments() {
    std::vector<std::array<float, 4>> found;
    for (const auto& line : sent.lines) {
        for (std::size_t i = 1; i < line.size(); ++i) {
            std::array<Gpt, 2> ends{line[i - 1], line[i]};
            for (Gpt& end : ends) end = {std::round(end.x * 1e4F) / 1e4F, std::round(end.y * 1e4F) / 1e4F};
            if (std::tie(ends[1].x, ends[1].y) < std::tie(ends[0].x, ends[0].y)) std::swap(ends[0], ends[1]);
            if (ends[0].x != ends[1].x || ends[0].y != ends[1].y)
                found.push_back({ends[0].x, ends[0].y, ends[1].x, ends[1].y});
        }
    }
    std::sort(found.begin(), found.end());
    return found;
}

TEST(ContJoin, LinesHoldTheSegmentsOfTheCellsOnce) {
    std::mt19937 random(7);
    for (int n = 0; n < 1000; ++n) {
        Case c = random_case(random, n);
        if (c.split) continue;
        std::replace(c.grid.grid.get(), c.grid.grid.get() + 72, 0.0F, 4.0F);  // nought has a rule of its own
        const auto draw_lines = [&](bool joined) {
            start_contours(n % 2 == 0 ? CONT_LINE : CONT_FILL_LINE, joined);
            set_bands(n);
            cont.grid_min = -100;
            draw_case(c);
            return segments();
        };
        auto want = draw_lines(false);
        want.erase(std::unique(want.begin(), want.end()), want.end());
        ASSERT_EQ(draw_lines(true), want) << n;
    }
}

/// A wave of `points` by `points` values, finer than its bumps.
GRD_report fine_field(int points) {
    std::vector<float> values;
    for (int j = 0; j < points; ++j) {
        for (int i = 0; i < points; ++i) {
            const float x = static_cast<float>(i) / 40;
            const float y = static_cast<float>(j) / 40;
            values.push_back(10 * std::sin(x) * std::cos(y) + 3 * std::sin(2.3F * x + y));
        }
    }
    return make_grid(points, points, values);
}

TEST(ContJoin, LinesOfAFineFieldAreLongAndComeAfterTheFills) {
    GRD_report grid = fine_field(300);
    start_contours(CONT_FILL_LINE, true);
    set_interval(-14, 2, 14);
    static std::size_t fills;
    cont.polyline = [](Gint num_pt, const Gpt* pts) {
        fills = sent.fills.size();
        return keep_line(num_pt, pts);
    };
    draw(grid);
    EXPECT_GT(segments().size(), 5000U);
    EXPECT_LT(sent.lines.size(), segments().size() / 100);
    EXPECT_EQ(fills, 14U);
    for (const auto& line : sent.lines) {
        const auto at_edge = [](const Gpt& pt) { return std::min({pt.x, pt.y, 299 - pt.x, 299 - pt.y}) == 0.0F; };
        const bool closed = line.front().x == line.back().x && line.front().y == line.back().y;
        EXPECT_TRUE(closed || (at_edge(line.front()) && at_edge(line.back())));
    }
}

/// The middle of what is drawn.
Glim middle_of(const std::vector<Sent_fill>& parts) {
    Glim box{INFINITY, -INFINITY, INFINITY, -INFINITY};
    for (const auto& part : parts) {
        for (const Gpt& pt : part.rings[0]) {
            box = {std::min(box.x_min, pt.x), std::max(box.x_max, pt.x), std::min(box.y_min, pt.y),
                   std::max(box.y_max, pt.y)};
        }
    }
    const float dx = (box.x_max - box.x_min) / 3;
    const float dy = (box.y_max - box.y_min) / 3;
    return {box.x_min + dx, box.x_max - dx, box.y_min + dy, box.y_max - dy};
}

TEST(ContJoin, AWindowShowsWhatThePiecesCoverThere) {
    std::mt19937 random(9);
    for (const char* map : {"ps,90,0,60,10,12,12,1", "me,0,0,20,12,1", "lcc,50,10,50,10,12,12,1"}) {
        Case c{fine_field(80), {}};
        c.grid.domain.proj = PROJ_LATLON;
        c.grid.domain.clat = 50;
        c.grid.domain.clon = 10;
        c.grid.domain.dx = c.grid.domain.dy = 0.2F;
        c.grid.grid[40 * 80 + 44] = FMISS;
        DOM_init(&c.map);
        ASSERT_EQ(DOM_decode(map, &c.map), 1);
        std::vector<Sent_fill> parts;
        Glim window{};
        for (const bool joined : {false, true}) {
            start_contours(CONT_FILL, joined);
            set_interval(-14, 4, 7);
            draw_case(c, window);
            if (!joined) parts = pieces();
            window = middle_of(parts);
        }
        std::uniform_real_distribution<float> any(0, 1);
        for (int n = 0; n < 200; ++n) {
            const double x = window.x_min + (window.x_max - window.x_min) * any(random);
            const double y = window.y_min + (window.y_max - window.y_min) * any(random);
            EXPECT_EQ(band_at(sent.fills, x, y), band_at(parts, x, y)) << map << ' ' << x << ' ' << y;
        }
    }
}

TEST(ContJoin, NoLineGoesRoundAConstantZero) {
    const auto lines = [](const std::vector<float>& values) {
        GRD_report grid = make_grid(5, 4, values);
        start_contours(CONT_LINE, true);
        set_levels({-2, 0, 2});
        cont.grid_min = *std::min_element(values.begin(), values.end());
        draw(grid);
        return sent.lines.size();
    };
    EXPECT_EQ(lines({0, 0, 0, 1, 1, 0, 0, 0, 1, 0, 0, 1, 0, 0, 0, 1, 1, 0, 0, 0}), 0U) << "rain";
    EXPECT_EQ(lines({0, 0, 0, -1, -1, 0, 0, 0, -1, 0, 0, -1, 0, 0, 0, -1, -1, 0, 0, 0}), 0U) << "inhibition";
    EXPECT_EQ(lines({1, 0, 0, -1, -1, 1, 0, 0, -1, -1, 1, 0, 0, -1, -1, 1, 0, 0, -1, -1}), 0U) << "a change";
    EXPECT_EQ(lines({1, 1, 0, -1, -1, 1, 1, 0, -1, -1, 1, 1, 0, -1, -1, 1, 1, 0, -1, -1}), 1U) << "a change of sign";
    EXPECT_EQ(lines({5, 5, 2, 2, 1, 5, 5, 2, 2, 1, 5, 5, 2, 2, 1, 5, 5, 2, 2, 1}), 2U) << "another flat part";
}

TEST(ContJoin, StripsOfARoughFieldMeet) {
    std::mt19937 random(3);
    std::uniform_real_distribution<float> any(0, 10);
    std::vector<float> values(500 * 500);
    for (float& value : values) value = any(random) < 0.2F ? FMISS : any(random);
    GRD_report grid = make_grid(500, 500, values);
    const auto fills = [&](bool joined) {
        start_contours(CONT_FILL, joined);
        set_interval(0, 1, 10);
        cont.color_num = 10;
        draw(grid);
        return joined ? sent.fills : pieces();
    };
    const auto parts = fills(false);
    const auto strips = fills(true);
    EXPECT_GT(strips.size(), 10U) << "more than a strip";
    EXPECT_LT(strips.size(), 200U);
    for (int n = 0; n < 60; ++n) {
        const double x = 49.9 * any(random);
        const double y = 49.9 * any(random);
        EXPECT_EQ(band_at(strips, x, y), band_at(parts, x, y)) << x << ' ' << y;
    }
}

}  // namespace
}  // namespace zav::test
