/// The way of contour lines and polygons to the kernel, about the edges of cyclic maps.

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

#include "plot/contour/cont_state.h"

namespace zav {
namespace {

constexpr float LATLON_WIDTH = 360.0F;
constexpr float MERCATOR_WIDTH = 400.31555F;
constexpr double MERCATOR_HALF = 200.16029273816693;
constexpr float FAR_APART = 50.0F;
constexpr float MOLLWEIDE_FAR = 10.0F;
/// Points beyond this are taken to the other edge.
constexpr float NEAR_EDGE = 150.0F;

double mollweide_share(float y) {
    const double sine = y / 63.713;
    return std::sqrt(std::max(0.0, 1.0 - sine * sine));
}

bool is_apart(const Gpt& a, const Gpt& b, float gap) { return std::fabs(a.x - b.x) > gap; }

bool has_gap(int num_pt, const Gpt* pts, float gap) {
    for (int i = 1; i < num_pt; ++i) {
        if (is_apart(pts[i], pts[i - 1], gap)) return true;
    }
    return false;
}

/// True when a point lies beyond the map, or beyond the grid when the plot is in grid coordinates.
bool leaves_map(int num_pt, const Gpt* pts, double half) {
    const bool by_grid = cont.x_min != FMISS;
    const double low = by_grid ? cont.x_min : -half;
    const double high = by_grid ? cont.x_max : half;
    return std::any_of(pts, pts + num_pt, [low, high](const Gpt& pt) { return pt.x < low || pt.x > high; });
}

bool is_split(int proj, int num_pt, const Gpt* pts) {
    switch (proj) {
        case PROJ_LATLON:
            return has_gap(num_pt, pts, FAR_APART) || leaves_map(num_pt, pts, 180.0);
        case PROJ_MERCATOR:
            return has_gap(num_pt, pts, FAR_APART) || leaves_map(num_pt, pts, MERCATOR_HALF);
        case PROJ_LAMBERT:
            return has_gap(num_pt, pts, FAR_APART);
        case PROJ_MOLLWEIDE:
            return has_gap(num_pt, pts, MOLLWEIDE_FAR);
        default:
            return false;
    }
}

void fill_both_edges(int num_pt, Gpt* pts) {
    for (int i = 0; i < num_pt; ++i) {
        if (pts[i].x < -NEAR_EDGE) pts[i].x += cont.offset;
    }
    cont.fill_area(num_pt, pts);
    for (int i = 0; i < num_pt; ++i) {
        if (pts[i].x > NEAR_EDGE) pts[i].x -= cont.offset;
    }
    cont.fill_area(num_pt, pts);
}

void fill_both_edges_mollweide(int num_pt, Gpt* pts) {
    for (int i = 0; i < num_pt; ++i) {
        cont.offset = static_cast<float>(mollweide_share(pts[i].y) * 127.426);
        if (pts[i].x < 0.0F) pts[i].x += 2.0F * cont.offset;
    }
    cont.fill_area(num_pt, pts);
    for (int i = 0; i < num_pt; ++i) {
        cont.offset = static_cast<float>(mollweide_share(pts[i].y) * 127.426);
        pts[i].x -= 2.0F * cont.offset;
    }
    cont.fill_area(num_pt, pts);
}

void send_polygon(int proj, int num_pt, Gpt* pts) {
    if (!is_split(proj, num_pt, pts)) {
        cont.fill_area(num_pt, pts);
    } else if (proj == PROJ_MOLLWEIDE) {
        fill_both_edges_mollweide(num_pt, pts);
    } else if (proj != PROJ_LAMBERT) {
        fill_both_edges(num_pt, pts);
    }
}

/// A line that runs from the left edge to the right one, or back with `left` and `right` exchanged: it leaves the
/// map on one edge and comes in on the other.
void send_wrapped_mollweide(Gpt* pts, Gpt& left, Gpt& right) {
    cont.offset = static_cast<float>(mollweide_share(pts[0].y) * 254.852);
    left.x += cont.offset;
    cont.polyline(2, pts);
    left.x -= cont.offset;
    right.x -= cont.offset;
    cont.polyline(2, pts);
}

void send_line_mollweide(Gpt* pts, float d) {
    if (pts[0].x < 0.0F && pts[1].x > 0.0F && d > MOLLWEIDE_FAR) {
        send_wrapped_mollweide(pts, pts[0], pts[1]);
    } else if (pts[1].x < 0.0F && pts[0].x > 0.0F && -d > MOLLWEIDE_FAR) {
        send_wrapped_mollweide(pts, pts[1], pts[0]);
    } else {
        cont.polyline(2, pts);
    }
}

void send_line_cylinder(Gpt* pts, float d) {
    if (d < -FAR_APART) {
        pts[1].x += cont.offset;
        cont.polyline(2, pts);
        pts[0].x -= cont.offset;
        pts[1].x -= cont.offset;
    } else if (d > FAR_APART) {
        pts[1].x -= cont.offset;
        cont.polyline(2, pts);
        pts[0].x += cont.offset;
        pts[1].x += cont.offset;
    }
    cont.polyline(2, pts);
}

void send_line(int proj, Gpt* pts) {
    const float d = pts[1].x - pts[0].x;
    switch (proj) {
        case PROJ_MOLLWEIDE:
            send_line_mollweide(pts, d);
            break;
        case PROJ_LATLON:
        case PROJ_MERCATOR:
            send_line_cylinder(pts, d);
            break;
        case PROJ_LAMBERT:
            if (std::fabs(d) < FAR_APART) cont.polyline(2, pts);
            break;
        default:
            cont.polyline(2, pts);
            break;
    }
}

}  // namespace

Cont_wrap cont_cell_wrap() {
    if (cont.grdx.empty()) return Cont_wrap::NONE;
    const std::array<Gpt, 5> round{cont_corner(0), cont_corner(1), cont_corner(3), cont_corner(2), cont_corner(0)};
    if (!is_split(cont_wrapped_map(), static_cast<int>(round.size()), round.data())) return Cont_wrap::NONE;
    return cont_wrapped_map() == PROJ_LAMBERT ? Cont_wrap::CUT : Cont_wrap::SPLIT;
}

Cont_edge_limits cont_edge_limits() {
    constexpr float any = std::numeric_limits<float>::max();
    switch (cont_wrapped_map()) {
        case PROJ_LATLON:
            return {FAR_APART, 180.0F};
        case PROJ_MERCATOR:
            return {FAR_APART, static_cast<float>(MERCATOR_HALF)};
        case PROJ_LAMBERT:
            return {FAR_APART, any};
        case PROJ_MOLLWEIDE:
            return {MOLLWEIDE_FAR, any};
        default:
            return {0.0F, 0.0F};
    }
}

float cont_turned(const Gpt& pt, int turn) {
    const int proj = MAP_get_proj();
    const bool ellipse = proj == PROJ_MOLLWEIDE;
    const float near_edge = ellipse ? 0.0F : NEAR_EDGE;
    if (static_cast<float>(turn) * pt.x >= -near_edge) return pt.x;
    if (ellipse) return pt.x + static_cast<float>(turn) * static_cast<float>(mollweide_share(pt.y) * 254.852);
    return pt.x + static_cast<float>(turn) * (proj == PROJ_MERCATOR ? MERCATOR_WIDTH : LATLON_WIDTH);
}

int CONT_draw_lines(int type, int num_pt, Gpt* pts) {
    const int proj = cont_wrapped_map();
    if (cont.fill_attrib[cont.con_off].color == CLR_NONE) return -1;
    if (proj == PROJ_LATLON) cont.offset = LATLON_WIDTH;
    if (proj == PROJ_MERCATOR) cont.offset = MERCATOR_WIDTH;
    if (num_pt < 2) return 0;
    std::array<Gpt, 2> line{pts[0], pts[1]};  // sending a polygon moves its points
    if (type == CONT_FILL || type == CONT_FILL_LINE) send_polygon(proj, num_pt, pts);
    if (type == CONT_LINE || type == CONT_FILL_LINE) send_line(proj, line.data());
    return 0;
}

}  // namespace zav
