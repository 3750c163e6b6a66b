#include "plot/wind/vecttool.h"

#include <cmath>
#include <numbers>

#include "frame/zav.h"

namespace zav {
namespace {

/// Speed below which a direction has no meaning.
constexpr float CALM = 0.01F;
constexpr double DEGREE = std::numbers::pi / 180.0;

bool missing(float a, float b, float* x, float* y) {
    if (a != FMISS && b != FMISS) return false;
    *x = *y = FMISS;
    return true;
}

float speed(float u, float v) { return std::sqrt(u * u + v * v); }

float bearing(float u, float v, float spd) { return spd < CALM ? 0.0F : static_cast<float>(std::atan2(u, v) / DEGREE); }

}  // namespace

int polar2vect(float dir, float spd, float* u, float* v) {
    if (missing(dir, spd, u, v)) return -1;
    *u = static_cast<float>(spd * std::sin(dir * DEGREE));
    *v = static_cast<float>(spd * std::cos(dir * DEGREE));
    return 0;
}

int vect2polar(float u, float v, float* dir, float* spd) {
    if (missing(u, v, dir, spd)) return -1;
    *spd = speed(u, v);
    *dir = bearing(u, v, *spd);
    return 0;
}

int wind2vect(float dir, float spd, float* u, float* v) {
    if (polar2vect(dir, spd, u, v) != 0) return -1;
    *u = -*u;
    *v = -*v;
    return 0;
}

int vect2wind(float u, float v, float* dir, float* spd) {
    if (missing(u, v, dir, spd)) return -1;
    *spd = speed(u, v);
    *dir = bearing(-u, -v, *spd);
    if (*dir < 0.0F) *dir += 360.0F;
    return 0;
}

float dot_product(VECT u, VECT v) {
    if (u.x == FMISS || v.x == FMISS) return FMISS;
    return u.x * v.x + u.y * v.y + u.z * v.z;
}

int cross_product(VECT u, VECT v, VECT* w) {
    if (u.x == FMISS || v.x == FMISS) {
        *w = {FMISS, FMISS, FMISS};
        return -1;
    }
    *w = {u.y * v.z - u.z * v.y, u.z * v.x - u.x * v.z, u.x * v.y - u.y * v.x};
    return 0;
}

}  // namespace zav
