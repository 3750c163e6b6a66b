#pragma once

#include <array>

#include "frame/zav.h"

namespace zav {

/// A parameter of another table, the variable that it is, and its units.
struct GribTranslation {
    int param;
    int var;
    const char* units;
    int ltype = MISS;
    int level = MISS;
};

constexpr int GRIB_ECMWF = 98;         ///< the centre
constexpr int GRIB_ECMWF_TABLE = 128;  ///< its own parameter table of edition 1

/// Parameters of local tables have the number table * GRIB_TABLE + parameter; tables are local from 128 on.
constexpr int GRIB_TABLE = 1000;
constexpr int GRIB_FIRST_LOCAL_TABLE = 128;
constexpr int GRIB_LOCAL = GRIB_FIRST_LOCAL_TABLE * GRIB_TABLE;

/// The centre's table 128; parameters without a variable aren't in it.
extern const std::array<GribTranslation, 121> GRIB_ECMWF_PARAMS;

}  // namespace zav
