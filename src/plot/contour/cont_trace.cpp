/// Where a level crosses a cell, and the segments that it draws there.

#include <algorithm>
#include <cmath>

#include "plot/contour/cont_join.h"

namespace zav {
namespace {

constexpr double MERCATOR_PERIOD = 400.31555892808814;
constexpr double LATLON_PERIOD = 360.0;
/// Points farther apart than this lie on opposite edges of a cylindrical map.
constexpr float FAR_APART = 50.0F;
constexpr float MOLLWEIDE_FAR = 10.0F;

/// The corner of each side that belongs to its other side when the level passes through it.
constexpr std::array<int, 4> FOREIGN_CORNER{1, 0, 2, 3};
/// The corner whose value tells the level of a flat side.
constexpr std::array<int, 4> FLAT_CORNER{0, 0, 2, 3};

float side_crossing(int side, float level) {
    const float z1 = cont.z[CONT_SIDES[side].first];
    const float z2 = cont.z[CONT_SIDES[side].second];
    if (z1 == z2) return DZ_FLAT;
    if (cont.z[FOREIGN_CORNER[side]] == level) return DZ_CORNER;
    const float d = (level - z1) / (z2 - z1);
    return d < 0.0F || d > 1.0F ? DZ_NONE : d;
}

/// With three crossings, one is a corner that the level merely touches.
bool is_touching(int side) { return (side == 0 && cont.dz[0] == 0.0F) || (side == 1 && cont.dz[1] == 1.0F); }

void list_crossed_sides() {
    std::fill_n(cont.cross.begin(), 4, NO_CROSSING);
    int count = 0;
    for (int side = 0; side < 4; ++side) {
        if (!(cont.dz[side] >= 0.0F) || (cont.numsides == 3 && is_touching(side))) continue;
        cont.cross[count++] = side;
    }
    if (cont.numsides == 3) {
        cont.numsides = 2;
        cont.cross[2] = NO_CROSSING;
    } else if (cont.numsides == 1) {
        cont.numsides = 0;
        cont.cross[0] = NO_CROSSING;
    }
}

void draw_segment(Cont_place from, Cont_place to) {
    if (cont.join != nullptr) return cont.join->add_segment(from, to);
    std::array<Gpt, 2> line{cont_point(from), cont_point(to)};
    CONT_draw_lines(CONT_LINE, 2, line.data());
}

Cont_place corner(int number) { return {Cont_place::CORNER, static_cast<unsigned char>(number)}; }

/// Between the crossings of two sides.
void draw_crossing(int side1, int side2) {
    draw_segment({Cont_place::UPPER, static_cast<unsigned char>(side1)},
                 {Cont_place::UPPER, static_cast<unsigned char>(side2)});
}

bool crosses(int side1, int side2) { return cont.numsides == 2 && cont.cross[0] == side1 && cont.cross[1] == side2; }

bool draw_if_crosses(int side1, int side2) {
    if (!crosses(side1, side2)) return false;
    draw_crossing(side1, side2);
    return true;
}

void draw_if_flat(int side, float level) {
    if (cont.dz[side] != DZ_FLAT || cont.z[FLAT_CORNER[side]] != level) return;
    draw_segment(corner(CONT_SIDES[side].first), corner(CONT_SIDES[side].second));
}

void draw_saddle() {
    if (cont.total >= SADDLE_MIDDLE) {
        draw_crossing(3, 0);
        draw_crossing(2, 1);
    } else {
        draw_crossing(2, 3);
        draw_crossing(0, 1);
    }
}

void draw_segments(float level) {
    draw_if_flat(0, level);
    if (!draw_if_crosses(0, 1)) draw_if_flat(1, level);
    if (!draw_if_crosses(0, 2) && !draw_if_crosses(1, 2)) draw_if_flat(2, level);
    if (!draw_if_crosses(0, 3) && !draw_if_crosses(1, 3) && !draw_if_crosses(2, 3)) draw_if_flat(3, level);
    if (cont.numsides == 4) draw_saddle();
}

void unwrap(float* x1, float x2, double period) {
    if (*x1 - x2 < -FAR_APART) *x1 = static_cast<float>(*x1 + period);
    if (*x1 - x2 > FAR_APART) *x1 = static_cast<float>(*x1 - period);
}

/// Width of a Mollweide map at height `y`, 0 beyond its pole.
double mollweide_width(float y) {
    const double sine = y / 63.713;
    return 254.852 * std::sqrt(std::max(0.0, 1.0 - sine * sine));
}

void unwrap_mollweide(float* x1, float y1, float* x2, float y2) {
    if (*x1 < 0.0F && *x2 > 0.0F && *x2 - *x1 > MOLLWEIDE_FAR) {
        *x1 = static_cast<float>(*x1 + mollweide_width(y1));
    } else if (*x1 > 0.0F && *x2 < 0.0F && *x1 - *x2 > MOLLWEIDE_FAR) {
        *x2 = static_cast<float>(*x2 + mollweide_width(y2));
    }
}

}  // namespace

int compute_dz(float level) {
    cont.numsides = 0;
    for (int side = 0; side < 4; ++side) {
        cont.dz[side] = side_crossing(side, level);
        if (cont.dz[side] >= 0.0F) ++cont.numsides;
    }
    cont.ptotal = cont.total;
    cont.total = cont.dz[0] + cont.dz[1] + 2.0F - cont.dz[2] - cont.dz[3];
    list_crossed_sides();
    return 0;
}

void cont_forget_crossing() {
    cont.cross[0] = NO_CROSSING;
    cont.cross[1] = NO_CROSSING;
    cont.numsides = 0;
}

int compute_lines(float level) {
    for (int side = 0; side < 4; ++side) {
        if (cont.dz[side] >= 0.0F) cont.at[side] = cont_side_point(side, cont.dz[side]);
    }
    if (cont.cross[4] == NOT_EVALUATED) {
        if (cont_is_filled() && cont_cell_range().low >= level) cont_forget_crossing();
        return 0;
    }
    if (cont_is_filled()) cont_fill_band(level);
    if (cont.cont_type != CONT_FILL) draw_segments(level);
    return 0;
}

int int_xy(Gpt* pt, float x1, float y1, float x2, float y2, float d) {
    switch (cont_wrapped_map()) {
        case PROJ_LATLON:
            unwrap(&x1, x2, LATLON_PERIOD);
            break;
        case PROJ_MERCATOR:
            unwrap(&x1, x2, MERCATOR_PERIOD);
            break;
        case PROJ_MOLLWEIDE:
            unwrap_mollweide(&x1, y1, &x2, y2);
            break;
        default:
            break;
    }
    pt->x = (x2 - x1) * d + x1;
    pt->y = (y2 - y1) * d + y1;
    return 0;
}

}  // namespace zav
