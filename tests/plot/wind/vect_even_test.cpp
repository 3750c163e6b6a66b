// Streamlines that lie evenly on paper, on winds given millimetre by millimetre.

#include "plot/wind/vect_even.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>

namespace zav {
namespace {

constexpr int WIDTH = 121;
constexpr int HEIGHT = 91;
constexpr float DISTANCE = 6;

Page_wind make_wind(const std::function<Page_vector(double, double)>& wind) {
    std::vector<Page_vector> winds;
    for (int k = 0; k < WIDTH * HEIGHT; ++k) {
        Page_vector at = wind(k % WIDTH, k / WIDTH);
        const float length = std::hypot(at.u, at.v);
        if (length > 0) at = {at.u / length, at.v / length, at.spd};
        winds.push_back(at);
    }
    return {WIDTH, HEIGHT, winds};
}

float apart(const Gpt& a, const Gpt& b) { return std::hypot(a.x - b.x, a.y - b.y); }

float distance_to(const std::vector<Gpt>& line, const Gpt& at) {
    float least = INFINITY;
    for (const Gpt& pt : line) least = std::min(least, apart(pt, at));
    return least;
}

TEST(VectEven, LinesCoverThePageAndKeepApart) {
    const auto eddy = [](double x, double y) {
        return Page_vector{static_cast<float>(45 - y), static_cast<float>(x - 60), 5};
    };
    const auto waves = [](double x, double y) {
        return Page_vector{3, static_cast<float>(2 * std::cos(x / 12) + std::sin(y / 9)), 8};
    };
    const auto hole = [&](double x, double y) {
        return std::hypot(x - 60, y - 45) < 20 ? Page_vector{0, 0, -1} : waves(x, y);
    };
    for (const std::function<Page_vector(double, double)>& wind :
         {std::function(eddy), std::function(waves), std::function(hole)}) {
        const Page_wind page = make_wind(wind);
        const std::vector<Streamline> lines = VECT_even_lines(page, DISTANCE);
        ASSERT_GT(lines.size(), 5U);
        for (const Streamline& line : lines) {
            ASSERT_EQ(line.points.size(), line.speeds.size());
            for (std::size_t k = 0; k + 1 < line.points.size(); ++k) {
                const Page_vector along = page.at(line.points[k]);
                ASSERT_GE(along.spd, 0);
                EXPECT_NEAR(apart(line.points[k], line.points[k + 1]), STREAM_STEP_MM, 0.01);
                const float ahead = (line.points[k + 1].x - line.points[k].x) * along.u +
                                    (line.points[k + 1].y - line.points[k].y) * along.v;
                EXPECT_GT(ahead, 0.9F * STREAM_STEP_MM);
            }
            for (const Streamline& other : lines) {
                if (&other == &line) continue;
                for (const Gpt& pt : line.points) ASSERT_GT(distance_to(other.points, pt), DISTANCE / 2);
            }
        }
        for (float y = 5; y < HEIGHT - 5; y += 7) {
            for (float x = 5; x < WIDTH - 5; x += 7) {
                float least = INFINITY;
                for (const Streamline& line : lines) least = std::min(least, distance_to(line.points, {x, y}));
                if (page.at({x, y}).spd < 0 || std::hypot(x - 60, y - 45) <= 26) continue;
                EXPECT_LT(least, 1.6F * DISTANCE) << x << ' ' << y;
            }
        }
    }
}

TEST(VectEven, CalmHasNoLines) {
    EXPECT_TRUE(VECT_even_lines(make_wind([](double, double) { return Page_vector{0, 0, 0}; }), DISTANCE).empty());
}

}  // namespace
}  // namespace zav
