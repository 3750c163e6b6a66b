#include "calc/catalogue_run.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <sstream>

#include "calc/catalogue_air.h"
#include "calc/grd_calc.h"
#include "frame/flag.h"
#include "frame/resrc.h"
#include "grid/grd_tool.h"
#include "program/install.h"
#include "var/var_tool.h"

namespace zav::truth {
namespace {

double range_of(const Field& field) {
    double low = INFINITY, high = -INFINITY;
    for (const double value : field.values) {
        if (value == MISSING || !std::isfinite(value)) continue;
        low = std::min(low, value);
        high = std::max(high, value);
    }
    return high > low ? high - low : 0;
}

bool is_out_of_range(double value) {
    return !(std::abs(value) <= static_cast<double>(std::numeric_limits<float>::max()));
}

void free_grids() {
    for (int i = 0; i < GRD_MAX; i++) GRD_free(GRD_get_grid(i));
}

}  // namespace

Difference difference(const GRD_report& got, const Field& want, const Measure& measure) {
    Difference d;
    const Place& place = *want.place;
    if (!GRD_has_values(&got) || got.domain.nx != place.nx || got.domain.ny != place.ny) {
        d.off = place.nx * place.ny;
        d.first = "no values of this size";
        return d;
    }
    const double by_range = measure.by_range ? 1e-5 * range_of(want) : 0;
    for (std::size_t k = 0; k < want.values.size(); k++) {
        const double value = want.values[k];
        const double seen = static_cast<double>(got.grid[static_cast<std::ptrdiff_t>(k)]);
        double apart = std::abs(seen - value);
        if (measure.angle) apart = std::min(apart, std::abs(apart - 360));
        const double allowed = 2 * want.slack[k] + by_range + 4 * 0x1p-24 * std::abs(value);
        if ((value == MISSING) != (seen == MISSING)) {
            d.off++;
        } else if (value == MISSING) {
            d.same++;
            continue;
        } else if (is_out_of_range(value)) {
            if (!std::isfinite(seen)) {
                d.same++;
                continue;
            }
            d.off++;
        } else if (!std::isfinite(allowed)) {
            d.unbounded++;
            continue;
        } else if (apart <= allowed) {
            d.same++;
            continue;
        } else if (apart <= allowed + measure.step) {
            d.stepped++;
            continue;
        } else {
            d.off++;
        }
        if (!d.first.empty()) continue;
        std::ostringstream text;
        text.precision(9);
        text << "column " << k % static_cast<std::size_t>(place.nx) << " row " << k / static_cast<std::size_t>(place.nx)
             << ": " << seen << ", worked out " << value << " to " << allowed;
        d.first = text.str();
    }
    return d;
}

test::Output run_string(const std::string& string, const std::string& file) {
    free_grids();  // as the program does behind each chart
    VAR_set_def_type(VTYPE_CONT);
    return test::capture([&] {
        ASSERT_EQ(VAR_setup(nullptr, string), 1) << string;
        ASSERT_EQ(GRD_search_file(file), 1) << string;
    });
}

void run_again(const Holes& holes) {
    int leaf = 0;
    for (int i = 0; i < VAR_get_num(); i++) {
        GRD_report* grid = GRD_get_grid(i);
        const int kind = VAR_get_flag(i) % 10;
        if (kind == VKIND_FUNC || kind == VKIND_FUNC_VECT) {
            GRD_free(grid);
        } else if (GRD_has_values(grid)) {
            const std::shared_ptr<float[]> before = grid->grid;
            grid->grid = std::shared_ptr<float[]>(new float[GRD_points(grid)]);
            for (std::size_t k = 0; k < GRD_points(grid); k++) {
                const auto at = static_cast<std::ptrdiff_t>(k);
                grid->grid[at] = holes(leaf, k) ? FMISS : before[at];
            }
            leaf++;
        }
    }
    test::capture([] { EXPECT_EQ(GRD_calc_var(), 1); });
}

std::string sample_file() { return test::source_dir() + "/samples/11011012_gfs.grb"; }

Holes random_holes(unsigned of) {
    return [of](int leaf, std::size_t point) {
        std::uint64_t mixed =
            (point + 1) * 0x9E3779B97F4A7C15U + static_cast<std::uint64_t>(leaf + 1) * 0xC2B2AE3D27D4EB4FU;
        mixed = (mixed ^ (mixed >> 31)) * 0xBF58476D1CE4E5B9U;
        return (mixed >> 33) % of == 0;
    };
}

Catalogue::Catalogue() {
    ZAV_install_hooks();
    FLAG_reset(MISS);
    RES_new(0, "file_path", (test::source_dir() + "/share/zav").c_str(), CV_string);
}

Catalogue::~Catalogue() {
    free_grids();
    VAR_reset();
}

}  // namespace zav::truth
