// Wind barbs, arrows and tracks, in the current transformation and with the current attributes.

#include "plot/wind/windbarb.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

#include "frame/zav.h"
#include "gks/gks.h"
#include "map/maptran.h"

namespace zav {

namespace {

constexpr double DEGREE = std::numbers::pi / 180.0;

/// Largest speed that a barb shows.
constexpr float MOST_SPEED = 300.0F;
/// Keeps sums that are whole in theory from falling below.
constexpr float NUDGE = 0.01F;
/// Feathers round half their value up at this much below the next.
constexpr float ROUND_UP = 2.0F;
constexpr float FLAG_SPEED = 50.0F;
constexpr float FULL_SPEED = 10.0F;
constexpr float HALF_SPEED = 5.0F;

/// Places on the staff, as fractions of its size: step between feathers, their lower ends and the half barb's tip.
constexpr float FEATHER_STEP = 0.12F;
constexpr float FEATHER_FOOT = 0.88F;
constexpr float HALF_TIP = 0.94F;
/// Lengths of feathers across the staff.
constexpr float FULL_LENGTH = WIND_BARB_ACROSS;
constexpr float HALF_LENGTH = 0.25F;

/// Feathers of a speed.
struct Feathers {
    int flags;
    int full;
    int half;
};

Feathers count_feathers(float spd) {
    const int flags = static_cast<int>(std::floor((ROUND_UP + spd) / FLAG_SPEED));
    const float rest = ROUND_UP + spd - FLAG_SPEED * static_cast<float>(flags);
    return {flags, static_cast<int>(std::floor(rest / FULL_SPEED)),
            static_cast<int>(std::floor(rest / HALF_SPEED)) % 2};
}

/// A staff with its foot at (x, y) that points along the unit vector (u, v). `side` is 1 for feathers on its clockwise
/// side, -1 for the other one.
struct Staff {
    float x;
    float y;
    float u;
    float v;
    float size;
    float side;

    /// Point at fraction `a` of the staff, moved across it to the side of the feathers by fraction `b`.
    Gpt at(float a, float b) const {
        const float across = side * b;
        return {x + size * (a * u + across * v), y + size * (a * v - across * u)};
    }
};

void draw_line(const Gpt& from, const Gpt& to) {
    const std::array<Gpt, 2> line{from, to};
    gpolyline(2, line.data());
}

/// Half barb `b` below the tip.
void draw_half(const Staff& staff, float b) {
    draw_line(staff.at(FEATHER_FOOT - b, 0.0F), staff.at(HALF_TIP - b, HALF_LENGTH));
}

void draw_flag(const Staff& staff, float b) {
    const Gpt tip = staff.at(1.0F - b, 0.0F);
    const std::array<Gpt, 4> flag{tip, staff.at(1.0F - b, FULL_LENGTH), staff.at(FEATHER_FOOT - b, 0.0F), tip};
    gfill_area(4, flag.data());
    gpolyline(4, flag.data());
}

void draw_feathers(const Staff& staff, const Feathers& feathers) {
    for (int i = 0; i < feathers.flags; ++i) draw_flag(staff, FEATHER_STEP * static_cast<float>(i));
    // Behind flags one step stays empty; without them the first barb starts at the tip and leans past it.
    const int first = feathers.flags == 0 ? -1 : feathers.flags;
    for (int i = 0; i < feathers.full; ++i) {
        const float b = FEATHER_STEP * static_cast<float>(first + i);
        draw_line(staff.at(FEATHER_FOOT - b, 0.0F), staff.at(1.0F - b, FULL_LENGTH));
    }
    if (feathers.half != 0) draw_half(staff, FEATHER_STEP * static_cast<float>(first + feathers.full));
}

bool is_drawable(float dir, float spd) {
    return dir != FMISS && spd != FMISS && spd != 0.0F && std::isfinite(dir) && std::isfinite(spd);
}

/// Two lines back from the tip, along the vector (u, v) and `a` times its length in size.
void draw_head(const Gpt& tip, float u, float v, float a) {
    draw_line(tip, {tip.x - a * u + a * v, tip.y - a * v - a * u});
    draw_line(tip, {tip.x - a * u - a * v, tip.y - a * v + a * u});
}

}  // namespace

bool WIND_is_southern(float x, float y) {
    const int proj = MAP_get_proj();
    if (proj < PROJ_POLAR || proj > PROJ_LAST_MAP) return false;
    float lat = FMISS;
    float lon = FMISS;
    MAP_untran(x, y, &lat, &lon);
    return lat != FMISS && lat < 0.0F;
}

int WIND_barb(float x, float y, float dir, float spd, float size, float offset, bool southern) {
    if (!is_drawable(dir, spd) || spd < 0.0F) return -1;
    gset_fill_int_style(GSOLID);
    const Feathers feathers = count_feathers(std::min(spd, MOST_SPEED) + NUDGE);
    const auto u = static_cast<float>(std::sin(dir * DEGREE));
    const auto v = static_cast<float>(std::cos(dir * DEGREE));
    const Staff staff{x, y, u, v, size, southern ? -1.0F : 1.0F};
    draw_line({x + offset * u, y + offset * v}, staff.at(1.0F, 0.0F));
    if (feathers.flags == 0 && feathers.full == 0) {
        if (feathers.half != 0) draw_half(staff, 0.0F);
        return 0;
    }
    draw_feathers(staff, feathers);
    return 0;
}

int WIND_barb_map(float x, float y, float dir, float spd, float size, float offset) {
    if (!is_drawable(dir, spd)) return -1;
    return WIND_barb(x, y, MAP_dir_adj(dir, x, y), spd, size, offset, WIND_is_southern(x, y));
}

int WIND_vect(float x, float y, float dir, float spd, float size, float arrow) {
    if (!is_drawable(dir, spd)) return -1;
    const auto u = static_cast<float>(-spd * std::sin(dir * DEGREE));
    const auto v = static_cast<float>(-spd * std::cos(dir * DEGREE));
    const Gpt tip{x + size * u, y + size * v};
    draw_line({x, y}, tip);
    if (arrow > 0.0F) draw_head(tip, u, v, arrow * size * WIND_HEAD);
    return 0;
}

int WIND_vect_map(float x, float y, float dir, float spd, float size, float arrow) {
    if (!is_drawable(dir, spd)) return -1;
    return WIND_vect(x, y, MAP_dir_adj(dir, x, y), spd, size, arrow);
}

int WIND_track(float x, float y, float dir, float spd, float arrow, int maj, int) {
    if (!is_drawable(dir, spd)) return -1;
    const auto u = static_cast<float>(-std::sin(dir * DEGREE));
    const auto v = static_cast<float>(-std::cos(dir * DEGREE));
    const Gpt tip{x + spd * u, y + spd * v};
    draw_line({x, y}, tip);
    const float tick = WIND_HEAD * arrow;
    for (int i = 0; i < maj; ++i) {
        const float along = static_cast<float>(i) * spd / static_cast<float>(maj);
        const Gpt at{x + along * u, y + along * v};
        draw_line({at.x - tick * v, at.y + tick * u}, {at.x + tick * v, at.y - tick * u});
    }
    if (arrow > 0.0F) draw_head(tip, u, v, tick);
    return 0;
}

}  // namespace zav
