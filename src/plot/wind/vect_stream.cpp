// Streamlines: four sweeps of seeds over a thinned lattice, and a mesh of counters that ends a line where too many
// others have passed.

#include <algorithm>
#include <cmath>
#include <exception>
#include <limits>
#include <numbers>

#include "calc/grd_trans.h"
#include "gks/zavgks.h"
#include "map/maptran.h"
#include "plot/page/colors.h"
#include "plot/wind/vect_state.h"
#include "plot/wind/windbarb.h"

namespace zav {

namespace {

/// Length of a step and of a stroke, in plot units.
constexpr float STEP = 0.25F;
/// Steps at a line's start that may lead through full cells.
constexpr int FREE_STEPS = 6;
/// Most steps of one line, whatever the scale asks for.
constexpr float MOST_STEPS = 1000000.0F;
/// Speeds that end a line, and that have no direction.
constexpr float STILL = 0.001F;
constexpr float CALM = 0.01F;

/// Seeds of one quadrant, from its upwind corner on. The signs are those of the components.
struct Sweep {
    int u_sign;
    int v_sign;
};
constexpr Sweep SWEEPS[] = {{1, 1}, {1, -1}, {-1, 1}, {-1, -1}};

std::size_t counters_of(const Domain& domain) {
    return static_cast<std::size_t>(domain.ny) * static_cast<std::size_t>(domain.nx) * 4 + 1;
}

/// False without memory.
bool set_up_counters(const Domain& domain) {
    try {
        vect.num.assign(counters_of(domain), 0);
    } catch (const std::exception&) {
        return false;
    }
    return true;
}

/// Counter of a place in grid coordinates: a mesh of twice the density of the lattice.
std::size_t counter_at(const Domain& domain, float gx, float gy) {
    const double column = std::trunc(0.0001 + static_cast<double>(2.0F * gx / static_cast<float>(vect.xskip)));
    const double row = std::trunc(0.0001 + static_cast<double>(2.0F * gy / static_cast<float>(vect.yskip)));
    const double index = column + 2.0 * domain.nx * row;
    const auto last = static_cast<double>(vect.num.size() - 1);
    return static_cast<std::size_t>(index >= 0.0 && index < last - 1.0 ? index : last);
}

/// A line on its way. Positions are in plot space and in grid coordinates.
class Line {
  public:
    Line(const GRD_report& u_field, const GRD_report& v_field) : ugrid(u_field), vgrid(v_field) {
        head_scale = 4.0F * vect.arrow_scale;
        const float steps = 10.0F * vect.arrow_scale;  // in double 0.7 would give one less than 7
        period = steps >= 1.0F && steps < MOST_STEPS ? static_cast<int>(steps) : 1;
        if (steps >= MOST_STEPS) period = static_cast<int>(MOST_STEPS);
    }

    /// False for a seed off the map.
    bool start(int i, int j) {
        const Domain& domain = ugrid.domain;
        if (vect.grdx != nullptr) {
            if (!vect_map_position(ugrid, i, domain.ny - 1 - j, &x, &y)) return false;
        } else {
            x = static_cast<float>(i);
            y = static_cast<float>(j);
        }
        find_wind();
        return true;
    }

    /// One step. False at the line's end.
    bool step(int k) {
        if (ends(k)) return false;
        if (vect_has_bands()) vect_band_attributes(spd);
        if (vect.attrib.color != CLR_NONE && valid) {
            WIND_vect(x, y, dir, STEP, 1.0F, k % period == period - 1 ? head_scale : 0.0F);
        }
        last_x = x;
        last_y = y;
        x += u / (4.0F * spd);
        y += v / (4.0F * spd);
        find_wind();
        return true;
    }

    /// The head at the end of a line of `steps` steps.
    void close(int steps) const {
        if (steps < 1 || vect.attrib.color == CLR_NONE || !valid || last_dir == FMISS) return;
        WIND_vect(last_x, last_y, last_dir, STEP, 1.0F, head_scale);
    }

  private:
    /// Grid coordinates of the place, and the wind there.
    void find_wind() {
        if (vect.grdx != nullptr) {
            Domain map;
            MAP_get_domain(&map);
            float grid_x = 0.0F;
            float grid_y = 0.0F;
            MAP_domain_tran(&map, &ugrid.domain, x, y, &grid_x, &grid_y);
            MAP_domain(&ugrid.domain);
            MAP_grid_untran(grid_x, grid_y, &gx, &gy);
            MAP_domain(&map);
        } else {
            gx = x;
            gy = static_cast<float>(ugrid.domain.ny - 1) - y;
        }
        u = GRD_get_value_open(&ugrid, gx, gy);
        v = GRD_get_value_open(&vgrid, gx, gy);
    }

    /// Counts the place and tells whether its mesh cell lets the line through.
    bool is_crowded(int k) {
        const std::size_t index = counter_at(ugrid.domain, gx, gy);
        if (k == 0 || index != last_index) {
            if (vect.num[index] < std::numeric_limits<int>::max()) ++vect.num[index];
            same = 0;
        } else {
            ++same;
        }
        last_index = index;
        return static_cast<float>(vect.num[index]) > vect.base && (k < 1 || k >= FREE_STEPS);
    }

    void find_direction() {
        const bool missing = u == FMISS || v == FMISS;
        spd = missing ? FMISS : std::sqrt(u * u + v * v);
        valid = !(vect.min_cut != FMISS && vect.min_cut > spd) && !(vect.max_cut != FMISS && spd > vect.max_cut);
        last_dir = dir;
        if (missing) {
            dir = FMISS;
        } else {
            dir = spd < CALM ? 0.0F : static_cast<float>(std::atan2(-u, -v) * (180.0 / std::numbers::pi));
        }
    }

    bool ends(int k) {
        const bool crowded = is_crowded(k);
        const bool stalled = static_cast<float>(same) > 6.0F * static_cast<float>(vect.xskip);
        find_direction();
        const float change = std::fabs(dir - last_dir);
        const bool broken = k > 0 && change > 120.0F && change < 240.0F;
        return crowded || stalled || !(spd >= STILL) || broken;
    }

    const GRD_report& ugrid;
    const GRD_report& vgrid;
    int period = 1;           ///< every which stroke has a head
    float head_scale = 4.0F;  ///< size of the heads
    float x = 0.0F;
    float y = 0.0F;
    float gx = 0.0F;
    float gy = 0.0F;
    float u = FMISS;
    float v = FMISS;
    float spd = FMISS;
    float dir = FMISS;
    bool valid = true;  ///< the speed is within the cuts
    float last_x = 0.0F;
    float last_y = 0.0F;
    float last_dir = FMISS;
    std::size_t last_index = 0;
    int same = 0;  ///< steps within one cell of the mesh
};

/// Turns components along the earth's axes to those of the map. All points are turned, not those of the lattice alone:
/// a line takes its winds between points of either kind.
void turn_to_map(GRD_report& ugrid, GRD_report& vgrid) {
    for (int j = 0; j < ugrid.domain.ny; ++j) {
        for (int i = 0; i < ugrid.domain.nx; ++i) {
            const auto place =
                static_cast<std::size_t>(j) * static_cast<std::size_t>(ugrid.domain.nx) + static_cast<std::size_t>(i);
            float& u = ugrid.grid[place];
            float& v = vgrid.grid[place];
            float x = 0.0F;
            float y = 0.0F;
            if (u == FMISS || v == FMISS || !vect_map_position(ugrid, i, j, &x, &y)) continue;
            float dir = 0.0F;
            float spd = 0.0F;
            vect2wind(u, v, &dir, &spd);
            const float turned = vect_plot_direction(ugrid, i, j, dir, x, y);
            // A component of exactly 0 stays so on a map without rotation: it starts no line.
            if (turned != dir) wind2vect(turned, spd, &u, &v);
        }
    }
}

bool has_sign(float component, int sign) { return component != FMISS && component * static_cast<float>(sign) > 0.0F; }

/// Indices from 0 up or from `count` - 1 down, by `skip`.
std::vector<int> sweep_order(int count, int skip, bool upward) {
    std::vector<int> order;
    for (int k = 0; k < count; k += skip) order.push_back(upward ? k : count - 1 - k);
    return order;
}

void draw_sweep(GRD_report* ugrid, GRD_report* vgrid, const Sweep& sweep, float length) {
    const int ny = ugrid->domain.ny;
    const std::vector<int> rows = sweep_order(ny, vect.yskip, sweep.v_sign > 0);
    for (const int i : sweep_order(ugrid->domain.nx, vect.xskip, sweep.u_sign > 0)) {
        for (const int j : rows) {
            const auto column = static_cast<float>(i);
            const auto row = static_cast<float>(ny - 1 - j);
            if (!has_sign(GRD_get_value(ugrid, column, row), sweep.u_sign)) continue;
            if (!has_sign(GRD_get_value(vgrid, column, row), sweep.v_sign)) continue;
            VECT_stream(ugrid, vgrid, i, j, length);
        }
    }
}

}  // namespace

int VECT_stream(GRD_report* ugrid, GRD_report* vgrid, int i, int j, float length) {
    const Domain& domain = ugrid->domain;
    if (i < 0 || j < 0 || i >= domain.nx || j >= domain.ny) return 0;
    if (vect.num.size() != counters_of(domain) && !set_up_counters(domain)) return -1;
    Line line(*ugrid, *vgrid);
    if (!line.start(i, j)) return 0;
    const float most = std::min(length, MOST_STEPS);
    for (int k = 0; static_cast<float>(k) < most; ++k) {
        if (line.step(k)) continue;
        line.close(k);
        return 0;
    }
    return 0;
}

int vect_draw_streamlines(GRD_report* ugrid, GRD_report* vgrid, float length) {
    if (!set_up_counters(ugrid->domain)) return -1;
    turn_to_map(*ugrid, *vgrid);
    if (!(vect.base > 0.0F)) vect.base = 1.0F;
    for (const Sweep& sweep : SWEEPS) draw_sweep(ugrid, vgrid, sweep, length);
    vect.num = {};
    return 0;
}

}  // namespace zav
