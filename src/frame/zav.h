#pragma once

namespace zav {

/// Unset, missing or "any", in ints and longs. Compared exactly.
constexpr int MISS = -9999;

/// Unset or missing in floats. Compared exactly.
constexpr float FMISS = -9999.0F;

/// Earth radius in map units of 100 km.
constexpr double EARTH_RADIUS = 63.7122;

/// Version text of the program.
const char* ZAV_version();

}  // namespace zav
