// Strokes of a raster. A pixel is covered as far as a box of its size, turned along the line, is by the line: the
// largest part that any piece of the path covers counts, so that corners aren't darker than the rest.

#include "gks/cairo/gks_cairo_pen.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <new>

namespace zav {
namespace {

constexpr double LEAST_STEP = 0.5;    // pixels; nearer points are passed over
constexpr double FARTHEST = 1000000;  // pixels; what is farther out has its place there

constexpr int LEVELS = 16;  // of what is covered; fewer colours make a smaller file

using Pixel = std::uint32_t;
using Cover = std::uint8_t;  // of a pixel of the picture, 0 to LEVELS

struct Place {
    double x = 0, y = 0;
};

struct Box {
    int left = 0, top = 0, right = 0, bottom = 0;
};

/// A pixel of the picture.
struct Spot {
    std::uint16_t x, y;
};

struct State {
    cairo_surface_t* canvas = nullptr;
    int fineness = 1;
    Box clip;                         ///< pixels of the canvas
    Box clip_spots;                   ///< pixels of the picture
    int width = 0;                    ///< of the picture
    std::unique_ptr<Cover[]> cover;   ///< by the path at work
    std::vector<Spot> touched;        ///< those that it covers
    std::vector<Place> points;        ///< of the path
    std::vector<std::size_t> starts;  ///< where its lines begin in them
};
State state;

/// Part of a pixel at a distance from the middle of a line that the line covers.
double part_covered(double distance, double half) {
    return std::min(half, distance + 0.5) - std::max(-half, distance - 0.5);
}

/// A whole number in a range.
int within(double value, int least, int most) {
    return static_cast<int>(std::clamp(value, static_cast<double>(least), static_cast<double>(most)));
}

/// A straight piece of a line and what it covers.
class Piece {
  public:
    Piece(Place a, Place b, double width, bool round_a, bool round_b)
        : a_(a), b_(b), half_(width / 2), round_a_(round_a), round_b_(round_b) {
        const double dx = b.x - a.x;
        const double dy = b.y - a.y;
        length_ = std::sqrt(dx * dx + dy * dy);
        if (length_ > 0) along_ = {dx / length_, dy / length_};
    }

    void draw() const {
        if (length_ == 0 && !round_a_) return;
        const Box& clip = state.clip_spots;
        const double reach = half_ + 0.5;
        const double left = std::min(a_.x, b_.x) - reach;
        const double right = std::max(a_.x, b_.x) + reach;
        const bool level = std::abs(along_.y) < 1e-6;
        const double slope = level ? 0 : along_.x / along_.y;
        const double wide = level ? right - left : reach / std::abs(along_.y);
        const int last = within(std::ceil(std::max(a_.y, b_.y) + reach), clip.top, clip.bottom);
        for (int y = within(std::floor(std::min(a_.y, b_.y) - reach), clip.top, last); y < last; ++y) {
            const double rise = y + 0.5 - a_.y;
            const double middle = a_.x + rise * slope;
            draw_row(y, rise, within(std::ceil(std::max(left, middle - wide) - 0.5), clip.left, clip.right),
                     within(std::ceil(std::min(right, middle + wide) - 0.5), clip.left, clip.right));
        }
    }

  private:
    void draw_row(int y, double rise, int from, int to) const {
        Cover* row = state.cover.get() + static_cast<std::size_t>(y) * static_cast<std::size_t>(state.width);
        for (int x = from; x < to; ++x) {
            const double run = x + 0.5 - a_.x;
            const double part = part_at(run * along_.x + rise * along_.y, std::abs(run * along_.y - rise * along_.x));
            const auto cover = static_cast<int>(part * LEVELS + 0.5);
            if (cover <= row[x]) continue;
            if (row[x] == 0) state.touched.push_back({static_cast<std::uint16_t>(x), static_cast<std::uint16_t>(y)});
            row[x] = static_cast<Cover>(cover);
        }
    }

    /// Part covered of a pixel whose middle is so far along the piece and beside it.
    double part_at(double far, double beside) const {
        double end = 1;
        if (far < 0.5 && !round_a_) {
            end = far + 0.5;
        } else if (far < 0) {
            beside = std::sqrt(beside * beside + far * far);
        }
        const double rest = length_ - far;
        if (rest < 0.5 && !round_b_) {
            end = std::min(end, rest + 0.5);
        } else if (rest < 0) {
            beside = std::sqrt(beside * beside + rest * rest);
        }
        return std::max(end, 0.0) * std::max(part_covered(beside, half_), 0.0);
    }

    Place a_, b_;
    double half_;
    bool round_a_, round_b_;
    double length_ = 0;
    Place along_ = {1, 0};
};

/// The points of a line of the path but those that nearly meet the one before; the ends stay.
void take_line(std::size_t start, std::size_t end, std::vector<Place>& line) {
    line.clear();
    for (std::size_t i = start; i < end; ++i) {
        const Place p = state.points[i];
        const bool near =
            line.size() > 1 && std::abs(p.x - line.back().x) < LEAST_STEP && std::abs(p.y - line.back().y) < LEAST_STEP;
        if (!near) {
            line.push_back(p);
        } else if (i + 1 == end) {
            line.back() = p;
        }
    }
}

void draw_whole(const std::vector<Place>& path, const Gcairo_brush& brush) {
    const bool closed = path.front().x == path.back().x && path.front().y == path.back().y;
    const std::size_t last = path.size() - 1;
    for (std::size_t i = 1; i <= last; ++i) {
        const bool round_a = brush.round || closed || i > 1;
        const bool round_b = brush.round || closed || i < last;
        Piece(path[i - 1], path[i], brush.width, round_a, round_b).draw();
    }
}

void draw_dashed(const std::vector<Place>& path, const Gcairo_brush& brush) {
    std::vector<Place> dash = {path.front()};
    bool on = true;
    std::size_t next = 0;
    double rest = brush.dashes[next];
    for (std::size_t i = 1; i < path.size(); ++i) {
        const Place a = path[i - 1];
        const Place b = path[i];
        const double length = std::hypot(b.x - a.x, b.y - a.y);
        double done = 0;
        while (length - done > rest) {
            done += rest;
            const Place end = {a.x + (b.x - a.x) * done / length, a.y + (b.y - a.y) * done / length};
            dash.push_back(end);
            if (on) draw_whole(dash, brush);
            dash.assign(1, end);
            on = !on;
            next = (next + 1) % brush.dashes.size();
            rest = brush.dashes[next];
        }
        rest -= length - done;
        if (on) dash.push_back(b);
    }
    if (on && dash.size() > 1) draw_whole(dash, brush);
}

/// Two pixels mixed, the second by `weight` parts of 256; two bytes at a time.
Pixel mix(Pixel under, Pixel over, Pixel weight) {
    constexpr Pixel even = 0x00FF00FF;
    const Pixel low = (under & even) * (256 - weight) + (over & even) * weight;
    const Pixel high = (under >> 8 & even) * (256 - weight) + (over >> 8 & even) * weight;
    return (low >> 8 & even) | (high & ~even);
}

/// Mixes a colour into the pixels of the canvas that make up one of the picture.
void paint_spot(Spot spot, Pixel color, Pixel weight, Pixel* pixels, std::size_t stride) {
    const int left = std::max(spot.x * state.fineness, state.clip.left);
    const int right = std::min((spot.x + 1) * state.fineness, state.clip.right);
    const int bottom = std::min((spot.y + 1) * state.fineness, state.clip.bottom);
    for (int y = std::max(spot.y * state.fineness, state.clip.top); y < bottom; ++y) {
        Pixel* row = pixels + static_cast<std::size_t>(y) * stride;
        for (int x = left; x < right; ++x) row[x] = mix(row[x], color, weight);
    }
}

/// Puts the colour where the path covers the canvas, and makes the cover empty again.
void paint(const Gcairo_brush& brush) {
    const auto byte = [](double part) { return static_cast<Pixel>(std::clamp(part, 0.0, 1.0) * 255 + 0.5); };
    const Pixel color = 0xFF000000 | byte(brush.red) << 16 | byte(brush.grn) << 8 | byte(brush.blu);
    cairo_surface_flush(state.canvas);
    auto* pixels = reinterpret_cast<Pixel*>(cairo_image_surface_get_data(state.canvas));
    const std::size_t stride = static_cast<std::size_t>(cairo_image_surface_get_stride(state.canvas)) / sizeof(Pixel);
    for (const Spot spot : state.touched) {
        Cover& cover = state.cover.get()[std::size_t{spot.y} * static_cast<std::size_t>(state.width) + spot.x];
        paint_spot(spot, color, cover * 256U / LEVELS, pixels, stride);
        cover = 0;
    }
    state.touched.clear();
    cairo_surface_mark_dirty(state.canvas);
}

}  // namespace

bool gcairo_pen_begin(cairo_surface_t* canvas, int fineness) {
    gcairo_pen_end();
    const int width = cairo_image_surface_get_width(canvas);
    const int height = cairo_image_surface_get_height(canvas);
    state.fineness = fineness;
    state.width = width / fineness;
    const int spots = state.width * (height / fineness);
    state.cover.reset(new (std::nothrow) Cover[static_cast<std::size_t>(spots)]());
    if (!state.cover) return false;
    state.canvas = canvas;
    gcairo_pen_clip(0, 0, width, height);
    return true;
}

void gcairo_pen_end() { state = State{}; }

void gcairo_pen_clip(double left, double top, double right, double bottom) {
    if (state.canvas == nullptr) return;
    const int width = cairo_image_surface_get_width(state.canvas);
    const int height = cairo_image_surface_get_height(state.canvas);
    Box& clip = state.clip;
    clip = {within(left, 0, width), within(top, 0, height), within(right, 0, width), within(bottom, 0, height)};
    const int last = state.fineness - 1;
    state.clip_spots = {clip.left / state.fineness, clip.top / state.fineness, (clip.right + last) / state.fineness,
                        (clip.bottom + last) / state.fineness};
}

void gcairo_pen_move(double x, double y) {
    state.starts.push_back(state.points.size());
    gcairo_pen_line(x, y);
}

void gcairo_pen_line(double x, double y) {
    if (std::isnan(x) || std::isnan(y)) return;
    if (state.starts.empty()) state.starts.push_back(0);
    state.points.push_back({std::clamp(x, -FARTHEST, FARTHEST), std::clamp(y, -FARTHEST, FARTHEST)});
}

void gcairo_pen_stroke(const Gcairo_brush& brush) {
    std::vector<Place> line;
    state.starts.push_back(state.points.size());
    for (std::size_t i = 1; i < state.starts.size() && state.canvas != nullptr; ++i) {
        take_line(state.starts[i - 1], state.starts[i], line);
        if (line.size() < 2) continue;
        brush.dashes.empty() ? draw_whole(line, brush) : draw_dashed(line, brush);
    }
    state.points.clear();
    state.starts.clear();
    if (!state.touched.empty()) paint(brush);
}

}  // namespace zav
