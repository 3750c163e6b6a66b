// Strokes of a raster beside those that Cairo makes of the same lines on a canvas eight times as fine.

#include "gks/cairo/gks_cairo_pen.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <random>

#include "gks/gks.h"

namespace zav {
namespace {

using Lines = std::vector<std::vector<Gpt>>;

constexpr int WIDTH = 60;  // pixels
constexpr int HEIGHT = 44;
constexpr int FINER = 8;

/// The part of each pixel that the lines cover.
std::vector<double> covered(const Lines& lines, const Gcairo_brush& brush) {
    cairo_surface_t* canvas = cairo_image_surface_create(CAIRO_FORMAT_A8, WIDTH * FINER, HEIGHT * FINER);
    cairo_t* context = cairo_create(canvas);
    cairo_scale(context, FINER, FINER);
    for (const auto& line : lines) {
        const bool closed = line.front().x == line.back().x && line.front().y == line.back().y;
        for (const Gpt& pt : line) cairo_line_to(context, pt.x, pt.y);
        if (closed && brush.dashes.empty()) cairo_close_path(context);
        cairo_new_sub_path(context);
    }
    cairo_set_line_width(context, brush.width);
    cairo_set_line_join(context, CAIRO_LINE_JOIN_ROUND);
    cairo_set_line_cap(context, brush.round ? CAIRO_LINE_CAP_ROUND : CAIRO_LINE_CAP_BUTT);
    cairo_set_dash(context, brush.dashes.data(), static_cast<int>(brush.dashes.size()), 0);
    cairo_stroke(context);
    cairo_destroy(context);
    cairo_surface_flush(canvas);
    std::vector<double> parts(static_cast<std::size_t>(WIDTH * HEIGHT));
    for (int y = 0; y < HEIGHT * FINER; ++y) {
        const unsigned char* row = cairo_image_surface_get_data(canvas) + y * cairo_image_surface_get_stride(canvas);
        for (int x = 0; x < WIDTH * FINER; ++x) {
            parts[static_cast<std::size_t>(y / FINER * WIDTH + x / FINER)] += row[x] / (255.0 * FINER * FINER);
        }
    }
    cairo_surface_destroy(canvas);
    return parts;
}

class Pen : public ::testing::Test {
  protected:
    ~Pen() override {
        gcairo_pen_end();
        if (canvas != nullptr) cairo_surface_destroy(canvas);
    }
    void begin(int fineness) {
        canvas = cairo_image_surface_create(CAIRO_FORMAT_ARGB32, WIDTH * fineness, HEIGHT * fineness);
        cairo_t* context = cairo_create(canvas);
        cairo_set_source_rgb(context, 1, 0.6, 0.2);
        cairo_paint(context);
        cairo_destroy(context);
        ASSERT_TRUE(gcairo_pen_begin(canvas, fineness));
    }
    /// Byte of the canvas: 0 blue, 1 green, 2 red, 3 alpha.
    int byte(int x, int y, int which) const {
        return cairo_image_surface_get_data(canvas)[y * cairo_image_surface_get_stride(canvas) + 4 * x + which];
    }
    cairo_surface_t* canvas = nullptr;
};

/// Inside the clip a pixel takes as much of the colour as the lines cover of it. Where several pieces meet it may be
/// less, since the largest part that one of them covers counts.
TEST_F(Pen, CoversWhatTheLinesDo) {
    std::mt19937 random(5);
    const auto any = [&random](double low, double high) { return std::uniform_real_distribution<>(low, high)(random); };
    for (int n = 0; n < 400; ++n) {
        Gcairo_brush brush{0, 0.2, 1, any(0.5, n % 3 == 0 ? 9 : 2), n % 2 == 0, {}};
        if (n % 5 == 0) brush.dashes = {any(4, 9), any(3 + brush.width, 14)};
        const bool single = n % 4 == 0 && brush.dashes.empty();
        Lines lines(single ? 1 : 1 + n % 3);
        for (auto& line : lines) {
            for (int k = 0; k < (single ? 2 : 2 + n % 4); ++k) {
                line.push_back({static_cast<float>(any(-20, 80)), static_cast<float>(any(-15, 60))});
            }
            if (n % 7 == 0 && !single) line.push_back(line.front());
            if (n % 8 == 4) line[1].x = line[0].x;
            if (n % 8 == 3) line[1].y = line[0].y;
        }
        const int fine = 1 + n % 2;
        begin(fine);
        const int left = n % 3 == 1 ? 7 : 0;
        const int bottom = HEIGHT * fine - (n % 3 == 2 ? 5 : 0);
        gcairo_pen_clip(left, 0, WIDTH * fine, bottom);
        for (const auto& line : lines) {
            gcairo_pen_move(line[0].x, line[0].y);
            for (std::size_t k = 1; k < line.size(); ++k) gcairo_pen_line(line[k].x, line[k].y);
        }
        gcairo_pen_stroke(brush);
        const std::vector<double> parts = covered(lines, brush);
        double off = 0;
        double wanted = 0;
        double worst = 0;
        for (int y = 0; y < HEIGHT * fine; ++y) {
            for (int x = 0; x < WIDTH * fine; ++x) {
                const bool inside = x >= left && y < bottom;
                const double part = inside ? parts[static_cast<std::size_t>(y / fine * WIDTH + x / fine)] : 0;
                const double got = (255 - byte(x, y, 2)) / 255.0;
                worst = std::max(worst, std::fabs(got - part));
                ASSERT_TRUE(inside || got == 0) << n << ": " << x << ' ' << y;
                ASSERT_NEAR(byte(x, y, 1), 153 - 102 * got, 2.0);
                ASSERT_NEAR(byte(x, y, 0), 51 + 204 * got, 2.0);
                ASSERT_EQ(byte(x, y, 3), 255);
                off += std::fabs(got - part);
                wanted += part;
            }
        }
        EXPECT_LE(worst, single ? 0.17 : 1.0) << n;
        EXPECT_LE(off, (single ? 0.06 : 0.12) * (wanted + 10)) << n;
        gcairo_pen_end();
        cairo_surface_destroy(canvas);
        canvas = nullptr;
    }
}

}  // namespace
}  // namespace zav
