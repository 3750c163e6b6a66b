#include "map/maptran.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "frame/mess.h"
#include "map/maptran_state.h"

namespace zav {

Map_state map_state;

namespace {

constexpr std::array<Projection, 19> PROJECTIONS{{
    {PROJ_POLAR, polar_prepare, polar_forward, polar_inverse},
    {PROJ_LATLON, nullptr, latlon_forward, latlon_inverse, true},
    {PROJ_MERCATOR, nullptr, mercator_forward, mercator_inverse},
    {PROJ_LAMBERT, lambert_prepare, lambert_forward, lambert_inverse},
    {PROJ_ORTHO, ortho_prepare, ortho_forward, ortho_inverse, true},
    {PROJ_MOLLWEIDE, nullptr, mollweide_forward, mollweide_inverse, true},
    {PROJ_AZIMUTHAL, nullptr, azimuthal_forward, azimuthal_inverse, true},
    {PROJ_SATELLITE, satellite_prepare, satellite_forward, satellite_inverse, true},
    {PROJ_XY, nullptr, graph_forward, graph_inverse},
    {PROJ_XLOGY, nullptr, log_forward, log_inverse},
    {PROJ_HODOGRAPH, nullptr, hodograph_forward, hodograph_inverse},
    {PROJ_CATEGORY, nullptr, graph_forward, graph_inverse},
    {PROJ_XY_DOWN, nullptr, graph_down_forward, graph_down_inverse},
    {PROJ_SKEWT, skewt_prepare, skewt_forward, skewt_inverse},
    {PROJ_STUVE, nullptr, stuve_forward, stuve_inverse},
    {PROJ_EMAGRAM, nullptr, log_forward, log_inverse},
    {PROJ_TEPHIGRAM, tephigram_prepare, tephigram_forward, tephigram_inverse},
    {PROJ_TEPHI_PLAIN, nullptr, tephi_plain_forward, tephi_plain_inverse},
    {PROJ_PIXEL, nullptr, pixel_forward, pixel_inverse},
}};

const Projection* find_projection(int code) {
    const auto is_code = [code](const Projection& row) { return row.code == code; };
    const auto row = std::find_if(PROJECTIONS.begin(), PROJECTIONS.end(), is_code);
    return row == PROJECTIONS.end() ? nullptr : &*row;
}

void clear_caches() {
    map_state.xfactor = FMISS;
    map_state.sat_ratio = FMISS;
}

void set_satellite(float distance) {
    Map_state& s = map_state;
    s.sat_rad = distance == FMISS ? 421.61F : distance;
    s.sat_rad2 = static_cast<float>(static_cast<double>(s.sat_rad) * s.sat_rad);
    s.sat_rad4 = static_cast<float>(static_cast<double>(s.sat_rad2) * s.sat_rad2);
    const double earth = s.domain.ellipse != 0 ? s.earth_maj : s.earth_rad;
    s.sat2_earth2 = static_cast<float>(s.sat_rad2 - earth * earth);
}

void set_true_latitudes() {
    Map_state& s = map_state;
    const Domain& d = s.domain;
    if (d.proj == PROJ_POLAR) {
        s.tlat1 = d.plat < 0 ? -60.0F : 60.0F;
        if (d.param[0] != FMISS) s.tlat1 = d.param[0];
    } else if (d.proj == PROJ_LAMBERT) {
        s.tlat1 = d.param[0] == FMISS ? 30.0F : d.param[0];
        s.tlat2 = d.param[0] == FMISS ? 60.0F : d.param[1];
        if (s.tlat2 == FMISS) s.tlat2 = s.tlat1;
    }
}

/// Longitude brought into -180 to 180 by whole turns.
double normal_longitude(double lon) {
    if (!(std::fabs(lon) > 180.0)) return lon;
    return map_wrap_once(std::fmod(lon, 360.0));
}

struct Corners {
    float x1 = 0.0F;
    float y1 = 0.0F;
    float x2 = 0.0F;
    float y2 = 0.0F;
};

/// `clat`, `clon` are the low corner in data coordinates, `dx`, `dy` the data ranges. With both factors 0 the
/// diagram transforms work without the limits that they otherwise need.
Corners diagram_corners() {
    const Domain& d = map_state.domain;
    Corners c;
    float unused = 0.0F;
    map_state.xfactor = 0.0F;
    map_state.yfactor = 0.0F;
    MAP_tran_center(&c.x1, &c.y1);
    MAP_tran(d.clat + d.dx, d.clon, &c.x2, &unused);
    MAP_tran(d.clat, d.clon + d.dy, &unused, &c.y2);
    map_state.xfactor = FMISS;
    return c;
}

/// `dx` by `dy` data units fill `nx` by `ny` plot units.
Corners graph_corners(float low_y) {
    const Domain& d = map_state.domain;
    map_state.xfactor = static_cast<float>(d.nx / static_cast<double>(d.dx));
    map_state.yfactor = static_cast<float>(d.ny / static_cast<double>(d.dy));
    return {d.clat, low_y, static_cast<float>(static_cast<double>(d.clat) + d.nx),
            static_cast<float>(static_cast<double>(low_y) + d.ny)};
}

Corners plain_corners() {
    const Domain& d = map_state.domain;
    Corners c;
    MAP_tran_center(&c.x1, &c.y1);
    MAP_tran(d.clat + d.dx, d.clon + d.dy, &c.x2, &c.y2);
    return c;
}

Corners find_corners() {
    const Domain& d = map_state.domain;
    switch (d.proj) {
        case PROJ_SKEWT:
        case PROJ_TEPHIGRAM:
        case PROJ_TEPHI_PLAIN:
            return diagram_corners();
        case PROJ_HODOGRAPH:
            return {d.clat, d.clon, d.clat + d.dx, d.clon + d.dy};
        case PROJ_XY:
        case PROJ_CATEGORY:
            return graph_corners(d.clon);
        case PROJ_XY_DOWN:
            return graph_corners(-d.clon);
        default:
            return plain_corners();
    }
}

/// The limits of a map lie about its centre.
void set_map_limits() {
    const Domain& d = map_state.domain;
    float xc = 0.0F;
    float yc = 0.0F;
    MAP_tran_center(&xc, &yc);
    const double half_x = d.dx * ((d.nx - 1.0) / 2.0);
    const double half_y = d.dy * ((d.ny - 1.0) / 2.0);
    map_state.limits = {static_cast<float>(xc - half_x), static_cast<float>(xc + half_x),
                        static_cast<float>(yc - half_y), static_cast<float>(yc + half_y)};
}

bool within(float x, float y, const MAP_limits& lim) {
    return x >= lim.x_min && x <= lim.x_max && y >= lim.y_min && y <= lim.y_max;
}

}  // namespace

int MAP_domain(const Domain* dom) {
    Map_state& s = map_state;
    if (dom == nullptr) {
        s.domain.proj = MISS;
        s.projection = nullptr;
        return -1;
    }
    s.domain = *dom;
    s.projection = find_projection(s.domain.proj);
    if (s.domain.plat == FMISS) s.domain.plat = s.domain.clat;
    if (s.domain.plon == FMISS) s.domain.plon = s.domain.clon;
    set_true_latitudes();
    if (s.domain.proj == PROJ_SATELLITE) set_satellite(s.domain.param[0]);
    clear_caches();
    const double ratio = static_cast<double>(s.earth_min) / s.earth_maj;
    s.earth_ratio2 = static_cast<float>(ratio * ratio);
    MAP_set_limits();
    return 0;
}

const Domain* MAP_get_domain(Domain* dom) {
    if (dom == nullptr) return &map_state.domain;
    *dom = map_state.domain;
    return dom;
}

int MAP_print_domain() {
    DOM_print(MESS_PRINT, &map_state.domain);
    return 0;
}

int MAP_proj(int proj) {
    map_state.domain.proj = proj;
    map_state.projection = find_projection(proj);
    clear_caches();
    return 0;
}

int MAP_coord(float rlat, float rlon) {
    map_state.domain.plat = rlat;
    map_state.domain.plon = rlon;
    clear_caches();
    return 0;
}

int MAP_proj_coord(const float* value) {
    Map_state& s = map_state;
    if (s.domain.proj != PROJ_LAMBERT) return 0;
    s.domain.param[0] = s.tlat1 = value[0];
    s.domain.param[1] = s.tlat2 = value[1];
    return 0;
}

int MAP_proj_str(const std::string& proj) { return DOM_proj_str(proj); }

int MAP_get_proj() { return map_state.domain.proj; }

float MAP_get_clat() { return map_state.domain.clat; }

float MAP_get_clon() { return map_state.domain.clon; }

int MAP_tran_center(float* x, float* y) { return MAP_tran(map_state.domain.clat, map_state.domain.clon, x, y); }

int MAP_set_limits() {
    if (map_is_earth(map_state.domain.proj)) {
        set_map_limits();
        return 0;
    }
    const Corners c = find_corners();
    map_state.limits = {std::min(c.x1, c.x2), std::max(c.x1, c.x2), std::min(c.y1, c.y2), std::max(c.y1, c.y2)};
    return 0;
}

int MAP_get_limits(MAP_limits* lim) {
    *lim = map_state.limits;
    return 0;
}

int MAP_set_view(const MAP_limits* vp) {
    map_state.view = *vp;
    return 0;
}

int MAP_get_up_left(float* x, float* y) {
    *x = map_state.limits.x_min;
    *y = map_state.limits.y_max;
    return 0;
}

int MAP_in_domain(float x, float y) {
    if (map_state.domain.proj == MISS) return 1;
    return within(x, y, map_state.limits) ? 1 : 0;
}

int MAP_in_grid_domain(float x, float y) {
    if (map_state.domain.proj == MISS) return 1;
    const double edge_x = 3.0 * map_state.domain.dx;
    const double edge_y = 3.0 * map_state.domain.dy;
    const MAP_limits& lim = map_state.limits;
    const MAP_limits grown{static_cast<float>(lim.x_min - edge_x), static_cast<float>(lim.x_max + edge_x),
                           static_cast<float>(lim.y_min - edge_y), static_cast<float>(lim.y_max + edge_y)};
    return within(x, y, grown) ? 1 : 0;
}

int MAP_grid_tran(float gx, float gy, float* x, float* y) {
    if (gx == FMISS) {
        map_hidden(x, y);
        return -1;
    }
    const Map_state& s = map_state;
    map_found(static_cast<double>(s.domain.dx) * gx + s.limits.x_min,
              s.limits.y_max - static_cast<double>(s.domain.dy) * gy, x, y);
    return 0;
}

int MAP_grid_untran(float x, float y, float* gx, float* gy) {
    if (x == FMISS) {
        map_hidden(gx, gy);
        return -1;
    }
    const Map_state& s = map_state;
    map_found((static_cast<double>(x) - s.limits.x_min) / s.domain.dx,
              (static_cast<double>(s.limits.y_max) - y) / s.domain.dy, gx, gy);
    return 0;
}

int MAP_domain_tran(const Domain* domain1, const Domain* domain2, float x1, float y1, float* x2, float* y2) {
    if (DOM_comp(domain1, domain2)) {
        *x2 = x1;
        *y2 = y1;
        return 0;
    }
    const Domain from = *domain1;  // either may be the record that changes here
    const Domain to = *domain2;
    const Domain saved = map_state.domain;
    float lat = FMISS;
    float lon = FMISS;
    MAP_domain(&from);
    MAP_untran(x1, y1, &lat, &lon);
    MAP_domain(&to);
    if (lat == FMISS) {
        map_hidden(x2, y2);
    } else {
        MAP_tran(lat, lon, x2, y2);
    }
    MAP_domain(&saved);
    return 0;
}

int MAP_tran(float lat, float lon, float* x, float* y) {
    const Map_state& s = map_state;
    if (s.domain.proj == MISS) return map_found(lat, lon, x, y);
    if (s.projection == nullptr) return 1;
    map_prepare();
    const double place = map_is_earth(s.domain.proj) ? normal_longitude(lon) : lon;
    double px = FMISS;
    double py = FMISS;
    const int result = s.projection->forward(lat, place, &px, &py);
    map_found(px, py, x, y);
    return result;
}

int MAP_untran(float x, float y, float* lat, float* lon) {
    if (map_state.projection == nullptr) return 1;
    map_prepare();
    return map_state.projection->inverse(x, y, lat, lon);
}

int MAP_tran_ep(EarthPoint ept, Point* pt) { return MAP_tran(ept.lat, ept.lon, &pt->x, &pt->y); }

int MAP_tran_pe(Point pt, EarthPoint* ept) { return MAP_untran(pt.x, pt.y, &ept->lat, &ept->lon); }

}  // namespace zav
