// Arrows and barbs at the grid points, and the key of the longest arrow.

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

#include "calc/grd_trans.h"
#include "frame/flag.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/status.h"
#include "frame/string.h"
#include "gks/gks_colr.h"
#include "gks/gks_ws.h"
#include "gks/zavgks.h"
#include "grid/grd_tool.h"
#include "map/maptran.h"
#include "plot/background/map.h"
#include "plot/contour/cont.h"
#include "plot/page/colors.h"
#include "plot/page/plt_paper.h"
#include "plot/page/plt_thin.h"
#include "plot/wind/vect_state.h"
#include "plot/wind/windbarb.h"

namespace zav {

namespace {

std::size_t place_of(const GRD_report& grid, int i, int j) {
    return static_cast<std::size_t>(j) * static_cast<std::size_t>(grid.domain.nx) + static_cast<std::size_t>(i);
}

/// The plot positions of one call of VECT_draw: those handed in, or those that the map gives. Without any the plot is
/// in grid space.
class Positions {
  public:
    Positions() = default;
    Positions(const Positions&) = delete;
    Positions& operator=(const Positions&) = delete;
    ~Positions() {
        if (found) VECT_grid(nullptr, nullptr);
    }
    /// False without memory.
    bool find(const GRD_report& grid) {
        if (vect.grdx != nullptr && vect.grdy != nullptr) return true;
        if (CONT_place_points(grid) != 0) return false;
        found = true;
        VECT_grid(CONT_grid_x(), CONT_grid_y());
        return true;
    }

  private:
    bool found = false;
};

constexpr double DEGREE = std::numbers::pi / 180.0;

/// True when both grids can be drawn together; a message otherwise.
bool check_grids(const GRD_report* ugrid, const GRD_report* vgrid) {
    const bool pair = ugrid != nullptr && vgrid != nullptr;
    if (!pair || ugrid->domain.nx != vgrid->domain.nx || ugrid->domain.ny != vgrid->domain.ny) {
        MESS_print(MESS_WARN, "VECT_draw: Invalid grids\n");
        return false;
    }
    if (!GRD_has_values(ugrid) || !GRD_has_values(vgrid)) {
        MESS_print(MESS_WARN, "VECT_draw: Invalid grid arrays\n");
        return false;
    }
    return true;
}

/// Attributes of all lines and areas. False when there is no colour to draw in.
bool start_attributes() {
    ATTRIB_init(&vect.attrib);
    ATTRIB_get("color_cont", gget_inverse() != 0 ? "black" : "white", &vect.attrib);
    VECT_format_decode_attrib(&vect.attrib);
    return vect.attrib.color != CLR_NONE;
}

void set_attributes() {
    GPH_line_attr(nullptr);
    GPH_fill_attr(nullptr);
    GPH_line_attr(&vect.attrib);
    GPH_fill_attr(&vect.attrib);
}

/// Either bound itself is not drawn.
bool within_cuts(float spd) {
    if (vect.min_cut != FMISS && !(spd > vect.min_cut)) return false;
    return vect.max_cut == FMISS || spd < vect.max_cut;
}

/// Lengths on paper, in millimetres, at a scale of 1: the staff of a barb, and the room in which neighbours don't
/// touch.
constexpr float BARB_MM = 6.0F;
constexpr float ROOM_MM = 8.5F;
/// Bounds of the longest arrow, which is as long as the arrows stand apart, and its head.
constexpr float LONGEST_ARROW_MM = 12.0F;
constexpr float SHORTEST_ARROW_MM = 4.0F;
constexpr float HEAD_MM = 1.4F;
/// Most of an arrow that is head, along it.
constexpr float MOST_HEAD = 0.35F;

/// Scale of the room that winds take: a wind without size still takes some.
float room_scale() {
    constexpr float LEAST_SCALE = 0.2F;
    return std::isfinite(vect.scale) && vect.scale != FMISS ? std::max(std::fabs(vect.scale), LEAST_SCALE) : 1.0F;
}

/// The points of the grid, and which of them have a wind to draw.
PLT_lattice lattice_of(const GRD_report& ugrid, const GRD_report& vgrid) {
    const auto place = [&ugrid](int i, int j, Gpt* pt) {
        if (vect.grdx != nullptr) return vect_map_position(ugrid, i, j, &pt->x, &pt->y);
        *pt = {static_cast<float>(i), static_cast<float>(ugrid.domain.ny - j - 1)};
        return true;
    };
    const auto wanted = [&ugrid, &vgrid](int i, int j) {
        const float u = ugrid.grid[place_of(ugrid, i, j)];
        const float v = vgrid.grid[place_of(ugrid, i, j)];
        return u != FMISS && v != FMISS && std::isfinite(u) && std::isfinite(v) && within_cuts(std::hypot(u, v));
    };
    return {ugrid.domain.nx, ugrid.domain.ny, place, wanted};
}

/// Length on paper of a barb's staff, or of an arrow of the unit's speed.
float unit_length(const GRD_report& ugrid, const GRD_report& vgrid) {
    if (vect.vect_type != VECT_VECTORS) return BARB_MM;
    const float apart = PLT_column_distance(lattice_of(ugrid, vgrid), vect.skip_given ? vect.xskip : 1);
    const float least = vect.skip_given ? SHORTEST_ARROW_MM : ROOM_MM;
    return std::clamp(apart, least, LONGEST_ARROW_MM);
}

/// Makes grid space the plot space where no positions are known.
void set_plot_space(const GRD_report& grid, const Glim& view) {
    if (vect.grdx != nullptr) {
        vect.vert_size = MAP_get_vert();
        return;
    }
    const Glim dis_wind{0.0F, static_cast<float>(grid.domain.nx - 1), 0.0F, static_cast<float>(grid.domain.ny - 1)};
    gset_vp(3, &view);
    gset_win(3, &dis_wind);
    gsel_norm_tran(3);
    vect.vert_size = dis_wind.y_max;
}

/// Sizes in plot units: on paper, or steps of the grid.
void set_sizes(const GRD_report& ugrid, const GRD_report& vgrid) {
    const bool scaled = vect.base != FMISS && vect.base != 0.0F && vect.grid_max != FMISS;
    vect.vect_size = scaled ? vect.scale * (vect.grid_max / vect.base) : vect.scale;
    vect.head_size = 0.0F;
    const float unit = PLT_letter() ? 0.0F : PLT_paper_scale().y;
    if (unit > 0.0F) {
        vect.vect_size *= unit_length(ugrid, vgrid) / unit;
        vect.head_size = room_scale() * HEAD_MM / unit;
    } else if (vect.grdx != nullptr) {
        vect.vect_size *= ugrid.domain.dx;
    }
}

/// An arrow of a part of the longest, with a head of its size or, on a short one, in proportion. `unit` is the length
/// of a plot unit where it is drawn.
void draw_arrow(const Gpt& from, float dir, float part, float unit) {
    const float longest = vect.vect_size * unit;
    const float head = std::min(vect.head_size / std::fabs(part * vect.vect_size), MOST_HEAD) / WIND_HEAD;
    WIND_vect(from.x, from.y, dir, part, longest, vect.head_size > 0.0F ? head : 1.0F);
}

/// At a pole directions count from the meridian that a grid point belongs to, which a place on the map can't tell.
constexpr float AT_POLE = 89.99F;

/// Moves the map place of a point at a pole a little along its meridian, where it turns directions as that meridian
/// does.
void leave_pole(EarthPoint point, float* x, float* y) {
    constexpr float BESIDE_POLE = 89.9F;
    if (point.lat == FMISS || std::fabs(point.lat) < AT_POLE) return;
    Point beside;
    if (MAP_tran(std::copysign(BESIDE_POLE, point.lat), point.lon, &beside.x, &beside.y) == 0) return;
    *x = beside.x;
    *y = beside.y;
}

/// Place on the earth of a point of the current domain's grid.
EarthPoint grid_place(int i, int j) {
    Point at;
    EarthPoint place{FMISS, FMISS};
    MAP_grid_tran(static_cast<float>(i), static_cast<float>(j), &at.x, &at.y);
    MAP_tran_pe(at, &place);
    return place;
}

/// The same for a grid of another domain.
EarthPoint grid_place(const GRD_report& grid, int i, int j) {
    Domain map;
    MAP_get_domain(&map);
    MAP_domain(&grid.domain);
    const EarthPoint place = grid_place(i, j);
    MAP_domain(&map);
    return place;
}

/// Rewrites components along the grid's axes as components along the earth's.
void turn_to_earth(GRD_report& ugrid, GRD_report& vgrid) {
    Domain map;
    MAP_get_domain(&map);
    MAP_domain(&ugrid.domain);
    for (int j = 0; j < ugrid.domain.ny; ++j) {
        for (int i = 0; i < ugrid.domain.nx; ++i) {
            float& u = ugrid.grid[place_of(ugrid, i, j)];
            float& v = vgrid.grid[place_of(ugrid, i, j)];
            if (u == FMISS || v == FMISS || (u == 0.0F && v == 0.0F)) continue;
            float dir = 0.0F;
            float spd = 0.0F;
            float x = 0.0F;
            float y = 0.0F;
            vect2wind(u, v, &dir, &spd);
            MAP_grid_tran(static_cast<float>(i), static_cast<float>(j), &x, &y);
            leave_pole(grid_place(i, j), &x, &y);
            const float turned = MAP_undir_adj(dir, x, y);
            if (turned != dir) wind2vect(turned, spd, &u, &v);
        }
    }
    MAP_domain(&map);
}

bool shows_earth() {
    const int proj = MAP_get_proj();
    return proj >= PROJ_POLAR && proj <= PROJ_LAST_MAP;
}

/// The wind of a grid point in plot space.
struct Placed_wind {
    Gpt foot;
    float dir;
    float spd;
    bool southern;  ///< feathers stand on the other side
};

/// False off the map.
bool place_wind(const GRD_report& grid, int i, int j, float u, float v, Placed_wind* wind) {
    float x = 0.0F;
    float y = 0.0F;
    vect2wind(u, v, &wind->dir, &wind->spd);
    if (!vect_map_position(grid, i, j, &x, &y)) return false;
    wind->southern = vect.vect_type == VECT_BARBS && WIND_is_southern(x, y);
    wind->dir = vect_plot_direction(grid, i, j, wind->dir, x, y);
    wind->foot = {x, y};
    if (vect.grdx == nullptr) wind->foot = {static_cast<float>(i), static_cast<float>(grid.domain.ny - j - 1)};
    return true;
}

/// False for a wind that the plot's frame would cut, so that it showed another speed or none.
bool is_whole(const Placed_wind& wind) {
    const Glim view = PLT_paper_view();
    const bool barb = vect.vect_type == VECT_BARBS;
    const float length = barb ? vect.vect_size : -vect.vect_size * wind.spd / vect.grid_max;
    const auto u = static_cast<float>(std::sin(wind.dir * DEGREE)) * length;
    const auto v = static_cast<float>(std::cos(wind.dir * DEGREE)) * length;
    const float side = wind.southern ? -WIND_BARB_ACROSS : WIND_BARB_ACROSS;
    const Gpt tip{wind.foot.x + u, wind.foot.y + v};
    const Gpt feather{tip.x + side * v, tip.y - side * u};
    for (const Gpt& end : {tip, barb ? feather : tip}) {
        const Gpt at = PLT_on_paper(end);
        if (at.x < view.x_min || at.x > view.x_max || at.y < view.y_min || at.y > view.y_max) return false;
    }
    return true;
}

void draw_point(const GRD_report& grid, int i, int j, float u, float v) {
    Placed_wind wind;
    const bool placed = place_wind(grid, i, j, u, v, &wind);
    if (vect_has_bands()) vect_band_attributes(wind.spd);
    if (!placed || vect.attrib.color == CLR_NONE || !within_cuts(wind.spd)) return;
    if (vect.vect_type == VECT_BARBS) {
        WIND_barb(wind.foot.x, wind.foot.y, wind.dir, wind.spd, vect.vect_size, 0.0F, wind.southern);
    }
    if (vect.vect_type == VECT_VECTORS) draw_arrow(wind.foot, wind.dir, wind.spd / vect.grid_max, 1.0F);
}

/// As many winds as paper holds, each whole.
void draw_by_room(const GRD_report& ugrid, const GRD_report& vgrid) {
    const float room = ROOM_MM * room_scale();
    PLT_lattice lattice = lattice_of(ugrid, vgrid);
    lattice.wanted = [&, has_wind = lattice.wanted](int i, int j) {
        const std::size_t place = place_of(ugrid, i, j);
        Placed_wind wind;
        return has_wind(i, j) && place_wind(ugrid, i, j, ugrid.grid[place], vgrid.grid[place], &wind) && is_whole(wind);
    };
    const std::vector<PLT_grid_point> points = PLT_thin(lattice, {room, room});
    for (const PLT_grid_point& point : points) {
        const std::size_t place = place_of(ugrid, point.i, point.j);
        draw_point(ugrid, point.i, point.j, ugrid.grid[place], vgrid.grid[place]);
    }
    if (points.empty() && vect.min_cut == FMISS && vect.max_cut == FMISS) {
        MESS_print(MESS_WARN, "VECT_draw: No point of the grid within the map has a wind to draw\n");
        ZAV_note(STATUS_LAYER);
    }
}

/// The winds at every which point.
void draw_by_step(const GRD_report& ugrid, const GRD_report& vgrid) {
    for (int j = 0; j < ugrid.domain.ny; j += vect.yskip) {
        for (int i = 0; i < ugrid.domain.nx; i += vect.xskip) {
            const float u = ugrid.grid[place_of(ugrid, i, j)];
            const float v = vgrid.grid[place_of(ugrid, i, j)];
            if (u != FMISS && v != FMISS) draw_point(ugrid, i, j, u, v);
        }
    }
}

}  // namespace

bool vect_has_bands() { return vect.intrvl != FMISS || CONT_get_values(nullptr) > 0; }

void vect_band_attributes(float spd) {
    CONT_get_fill_attrib(spd, &vect.attrib);
    GPH_line_attr(&vect.attrib);
    GPH_fill_attr(&vect.attrib);
}

bool vect_map_position(const GRD_report& grid, int i, int j, float* x, float* y) {
    if (vect.grdx == nullptr) {
        MAP_grid_tran(static_cast<float>(i), static_cast<float>(j), x, y);
        return true;
    }
    *x = vect.grdx[place_of(grid, i, j)];
    *y = vect.grdy[place_of(grid, i, j)];
    return *x != FMISS;
}

float vect_plot_direction(const GRD_report& grid, int i, int j, float dir, float x, float y) {
    EarthPoint place{FMISS, FMISS};
    MAP_untran(x, y, &place.lat, &place.lon);
    if (std::fabs(place.lat) >= AT_POLE && place.lat != FMISS) leave_pole(grid_place(grid, i, j), &x, &y);
    const float on_map = MAP_dir_adj(dir, x, y);
    const double dx = grid.domain.dx;
    const double dy = grid.domain.dy;
    if (vect.grdx != nullptr || on_map == FMISS || dx == dy || !(dx > 0.0 && dy > 0.0)) return on_map;
    return static_cast<float>(std::atan2(std::sin(on_map * DEGREE) / dx, std::cos(on_map * DEGREE) / dy) / DEGREE);
}

int VECT_draw(GRD_report* ugrid, GRD_report* vgrid) {
    if (!FLAG_getplot(PLOT_DATA)) return 0;
    if (!check_grids(ugrid, vgrid)) return -1;
    const bool flow = vect.vect_type == VECT_STREAMLINES && !PLT_letter() && shows_earth();
    Positions positions;
    if (!flow && !positions.find(*ugrid)) {
        MESS_print(MESS_WARN, "VECT_draw: Unable to allocate grid arrays\n");
        return -1;
    }
    Glim view;
    PLT_get_view(&view);
    CONT_set_fill_colors(nullptr, 0);
    vect_read_base();
    RES_getval("plot_scale", &vect.scale, CV_float);
    if (!start_attributes()) return 0;
    gkeep_output();
    if (flow) {
        gsel_norm_tran(2);
        set_attributes();
        return vect_draw_flow(*ugrid, *vgrid);
    }
    set_plot_space(*ugrid, view);
    set_sizes(*ugrid, *vgrid);
    set_attributes();
    if (vect.uvgrid != 0) turn_to_earth(*ugrid, *vgrid);
    if (vect.vect_type == VECT_STREAMLINES) {
        const float steps = static_cast<float>(ugrid->domain.nx) * 4.0F;
        return vect_draw_streamlines(ugrid, vgrid, vect.scale != FMISS ? vect.scale * steps : steps);
    }
    if (PLT_letter() || vect.skip_given) {
        draw_by_step(*ugrid, *vgrid);
    } else {
        draw_by_room(*ugrid, *vgrid);
    }
    return 0;
}

int VECT_draw_vect() {
    Gattribs text;
    ATTRIB_init(&text);
    ATTRIB_get("color_text", gget_inverse() != 0 ? "black" : "white", &text);
    Glim view;
    PLT_get_view(&view);
    const float ysize = view.y_max - view.y_min;
    const float xsize = view.x_max - view.x_min;
    GPH_text_attr(nullptr, 1.0F);
    GPH_text_attr(&text, 0.015F * ysize);
    GPH_text_align(GRIGHT_HOR, GHALF_VERT);
    if ((!FLAG_getplot(PLOT_TEXT) && VECT_get_vect() == 0) || text.color == CLR_NONE) return 0;
    if (!(vect.vert_size > 0.0F)) return 0;
    const float length = vect.vect_size * ysize / vect.vert_size;
    const float y = view.y_min - 0.025F * ysize;
    // In the colour of the text, not in that of the last band.
    GPH_line_attr(nullptr);
    GPH_line_attr(&text);
    draw_arrow({view.x_max - 0.01F * xsize - length, y}, 270.0F, 1.0F, ysize / vect.vert_size);
    const Gpt pt{view.x_max - 0.02F * xsize - length, y};
    GPH_pprintf(&pt, "MAX VECTOR: %s %s", set_num("5.3.1", vect.grid_max).c_str(), vect.units.c_str());
    return 0;
}

}  // namespace zav
