#pragma once

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "calc/grd_calc.h"
#include "grid/grd_tool.h"
#include "map/maptran.h"

namespace zav::test {

/// A record on a domain text ("ps:90:-105,90,-105,11,7,1,1"), its values by column and row from the north.
inline GRD_report made_grid(const std::string& domain, const std::function<double(int, int)>& value) {
    GRD_report grid;
    GRD_init(&grid);
    EXPECT_EQ(DOM_decode(domain, &grid.domain), 1) << domain;
    grid.source = 7;
    EXPECT_EQ(GRD_alloc(&grid), 1) << domain;
    for (int k = 0; k < grid.domain.nx * grid.domain.ny; ++k)
        grid.grid[k] = static_cast<float>(value(k % grid.domain.nx, k / grid.domain.nx));
    return grid;
}

/// The same by map position.
inline GRD_report made_on_map(const std::string& domain, const std::function<double(double, double)>& value) {
    GRD_report grid = made_grid(domain, [](int, int) { return 0.0; });
    MAP_domain(&grid.domain);
    for (int k = 0; k < grid.domain.nx * grid.domain.ny; ++k) {
        Point at;
        MAP_grid_tran(static_cast<float>(k % grid.domain.nx), static_cast<float>(k / grid.domain.nx), &at.x, &at.y);
        grid.grid[k] = static_cast<float>(value(at.x, at.y));
    }
    MAP_domain(nullptr);
    return grid;
}

/// Runs a function of the catalogue on grids. A null grid is the number 5.
inline int call_math(const std::string& name, const std::vector<GRD_report*>& arguments, GRD_report* result,
                     GRD_report* second = nullptr) {
    std::array<GRD_report*, GRD_MATH_MAX> grids{result, second};
    std::array<float, GRD_MATH_MAX> values;
    values.fill(FMISS);
    std::size_t place = second != nullptr ? 2 : 1;
    for (GRD_report* argument : arguments) {
        if (argument == nullptr) values[place] = 5.0F;
        grids[place++] = argument;
    }
    return GRD_math(name, grids.data(), values.data());
}

}  // namespace zav::test
