#pragma once

namespace zav {

// Wind symbols at (x, y) in plot units of the current transformation. `dir` is where the wind comes from, in degrees
// clockwise from north. 0, or -1 when nothing is drawn.

/// Share of an arrow's length that the head of `arrow` 1 has along and across.
constexpr float WIND_HEAD = 0.2F;

/// Share of a barb's size that its feathers have across the staff.
constexpr float WIND_BARB_ACROSS = 0.5F;

/// True for a point of the current map south of the equator, where feathers stand on the other side (WMO Manual on the
/// GDPFS, plotting model).
bool WIND_is_southern(float x, float y);

/// Barb with a staff from `offset` to `size`; `spd` in the unit of the feathers.
int WIND_barb(float x, float y, float dir, float spd, float size, float offset, bool southern = false);
/// The same with a direction relative to true north.
int WIND_barb_map(float x, float y, float dir, float spd, float size, float offset);
/// Arrow of length `size` * `spd`; `arrow` scales the head, 0 for none.
int WIND_vect(float x, float y, float dir, float spd, float size, float arrow);
int WIND_vect_map(float x, float y, float dir, float spd, float size, float arrow);
/// Track of length `spd` with `maj` ticks; `min` has no effect.
int WIND_track(float x, float y, float dir, float spd, float arrow, int maj, int min);

}  // namespace zav
