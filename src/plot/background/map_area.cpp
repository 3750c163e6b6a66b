#include "plot/background/map_area.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <utility>

#include "plot/background/map.h"
#include "plot/background/map_run.h"
#include "plot/background/map_state.h"
#include "plot/page/plt_paper.h"

namespace zav {
namespace {

constexpr float HALF = 180.0F;
constexpr float TURN = 360.0F;
constexpr double DEGREE = 0.017453292519943295;

bool has_limb(int proj) { return proj == PROJ_ORTHO || proj == PROJ_SATELLITE; }

/// Maps that have no place for a pole, or none for each longitude there.
struct Pole {
    int proj;
    float farthest;  ///< latitude up to which points are drawn where they are
    bool both;       ///< at both poles, else at that which is farther from the middle
};
constexpr Pole POLES[] = {
    {PROJ_POLAR, 80.0F, false},     {PROJ_MERCATOR, 89.5F, true},   {PROJ_LAMBERT, 89.5F, true},
    {PROJ_MOLLWEIDE, 89.98F, true}, {PROJ_AZIMUTHAL, 89.9F, false},
};

/// True for a map that ends along the meridian opposite the middle one.
bool is_cut(int proj) {
    return proj == PROJ_LATLON || proj == PROJ_MERCATOR || proj == PROJ_LAMBERT || proj == PROJ_MOLLWEIDE;
}

/// The part of a polygon between two meridians (Sutherland and Hodgman), moved by `shift`.
std::vector<EarthPoint> between(const std::vector<EarthPoint>& polygon, float west, float east, float shift) {
    std::vector<EarthPoint> kept = polygon;
    for (const float bound : {west, east}) {
        const std::vector<EarthPoint> whole = std::exchange(kept, {});
        for (std::size_t i = 0; i < whole.size(); ++i) {
            const EarthPoint& a = whole[i == 0 ? whole.size() - 1 : i - 1];
            const EarthPoint& b = whole[i];
            const bool a_in = bound == west ? a.lon >= bound : a.lon <= bound;
            const bool b_in = bound == west ? b.lon >= bound : b.lon <= bound;
            if (a_in != b_in) kept.push_back({a.lat + (bound - a.lon) / (b.lon - a.lon) * (b.lat - a.lat), bound});
            if (b_in) kept.push_back(b);
        }
    }
    for (EarthPoint& point : kept) point.lon += shift;
    return kept;
}

/// The polygon with points added on its long sides: a cut has to follow the map's edge.
std::vector<EarthPoint> with_short_sides(const std::vector<EarthPoint>& polygon) {
    constexpr float LONGEST = 2.5F;
    std::vector<EarthPoint> out;
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        const EarthPoint& a = polygon[i];
        const EarthPoint& b = polygon[i + 1 < polygon.size() ? i + 1 : 0];
        const float longest = std::max(std::fabs(b.lat - a.lat), std::fabs(b.lon - a.lon));
        // What is no place on the earth has no side to be cut.
        const int steps = longest > LONGEST && longest <= TURN ? static_cast<int>(std::ceil(longest / LONGEST)) : 1;
        for (int k = 0; k < steps; ++k) {
            const float part = static_cast<float>(k) / static_cast<float>(steps);
            out.push_back({a.lat + part * (b.lat - a.lat), a.lon + part * (b.lon - a.lon)});
        }
    }
    return out;
}

}  // namespace

Map_area::Map_area() : repeats(map_repeats()), scale(PLT_paper_scale()) {
    MAP_get_window(&window);
    const Domain& domain = *MAP_get_domain(nullptr);
    middle = {proj == PROJ_SATELLITE ? 0.0F : domain.plat, domain.plon};
    for (const Pole& pole : POLES) {
        if (pole.proj != proj) continue;
        if (pole.both || middle.lat >= 0.0F) south = -pole.farthest;
        if (pole.both || middle.lat < 0.0F) north = pole.farthest;
    }
}

void Map_area::add(const std::vector<EarthPoint>& record) {
    Polygon polygon = record;
    const auto by_lon = [](const EarthPoint& a, const EarthPoint& b) { return a.lon < b.lon; };
    const auto [low, high] = std::minmax_element(record.begin(), record.end(), by_lon);
    const float center = (low->lon + high->lon) / 2.0F;
    const float shift = std::remainder(center - middle.lon, TURN) - center;
    const float west = low->lon + shift;
    const float east = high->lon + shift;
    for (EarthPoint& point : polygon) point.lon += shift;
    if (!is_cut(proj) || (west >= -HALF && east <= HALF)) {
        draw(polygon);
        return;
    }
    draw(with_short_sides(between(polygon, -HALF, HALF, 0.0F)));
    if (west < -HALF) draw(with_short_sides(between(polygon, -TURN, -HALF, TURN)));
    if (east > HALF) draw(with_short_sides(between(polygon, HALF, TURN, -TURN)));
}

bool Map_area::place(EarthPoint earth, Point& point) const {
    constexpr float INSIDE = 179.9999F;  ///< keeps a point of the map's edge at its side
    const float lon = is_cut(proj) ? std::clamp(earth.lon, -INSIDE, INSIDE) : earth.lon;
    return map_place(std::clamp(earth.lat, south, north), middle.lon + lon, point);
}

/// Where the great circle from the middle of a disc to a point behind its limb comes to the limb.
Point Map_area::on_limb(EarthPoint hidden) const {
    constexpr int STEPS = 16;
    const auto vector = [](double lat, double lon) {
        return std::array<double, 3>{std::cos(lat * DEGREE) * std::cos(lon * DEGREE),
                                     std::cos(lat * DEGREE) * std::sin(lon * DEGREE), std::sin(lat * DEGREE)};
    };
    const std::array<double, 3> from = vector(middle.lat, 0.0);
    const std::array<double, 3> to = vector(hidden.lat, hidden.lon);
    Point limb{FMISS, FMISS};
    double low = 0.0;
    double high = 1.0;
    for (int i = 0; i < STEPS; ++i) {
        const double part = (low + high) / 2.0;
        std::array<double, 3> at;
        for (int k = 0; k < 3; ++k) at[k] = from[k] + part * (to[k] - from[k]);
        Point point;
        const bool seen = place({static_cast<float>(std::atan2(at[2], std::hypot(at[0], at[1])) / DEGREE),
                                 static_cast<float>(std::atan2(at[1], at[0]) / DEGREE)},
                                point);
        if (seen) limb = point;
        (seen ? low : high) = part;
    }
    return limb;
}

std::vector<Gpt> Map_area::rim() const {
    constexpr int STEPS = 180;
    constexpr double HIDDEN = 120.0 * DEGREE;  ///< way from the middle to a point that no disc shows
    constexpr double MOLLWEIDE_HEIGHT = 63.713;
    std::vector<Gpt> ring;
    if (!has_limb(proj) && proj != PROJ_MOLLWEIDE) return ring;
    constexpr float BESIDE_POLE = 89.9F;  ///< at a pole itself directions have no longitude
    const double lat = std::clamp(middle.lat, -BESIDE_POLE, BESIDE_POLE) * DEGREE;
    for (int i = 0; i <= STEPS; ++i) {
        const double turn = TURN * DEGREE * i / STEPS;
        if (proj == PROJ_MOLLWEIDE) {
            ring.push_back({static_cast<float>(2.0 * MOLLWEIDE_HEIGHT * std::cos(turn)),
                            static_cast<float>(MOLLWEIDE_HEIGHT * std::sin(turn))});
            continue;
        }
        const double sine = std::sin(lat) * std::cos(HIDDEN) + std::cos(lat) * std::sin(HIDDEN) * std::cos(turn);
        const double lon =
            std::atan2(std::sin(turn) * std::sin(HIDDEN) * std::cos(lat), std::cos(HIDDEN) - std::sin(lat) * sine);
        const Point limb = on_limb({static_cast<float>(std::asin(sine) / DEGREE), static_cast<float>(lon / DEGREE)});
        if (limb.x == FMISS) return {};
        ring.push_back({limb.x, limb.y});
    }
    return ring;
}

void Map_area::draw(const Polygon& polygon) {
    std::vector<Point> places(polygon.size());
    std::size_t seen = 0;
    for (std::size_t i = 0; i < polygon.size(); ++i) seen += place(polygon[i], places[i]) ? 1 : 0;
    if (seen == 0) return;
    points.clear();
    for (std::size_t i = 0; i < polygon.size(); ++i) {
        if (places[i].x == FMISS && has_limb(proj)) places[i] = on_limb(polygon[i]);
        if (places[i].x == FMISS) continue;
        const Gpt point{places[i].x, places[i].y};
        const bool near = !points.empty() && std::hypot((point.x - points.back().x) * scale.x,
                                                        (point.y - points.back().y) * scale.y) < Map_run::LEAST_STEP;
        if (!near) points.push_back(point);
    }
    fill();
}

void Map_area::fill() {
    constexpr std::size_t LEAST = 3;
    constexpr float LONGEST = 60.0F;  ///< longest side, in units of map space; more goes round the rim of a disc
    if (points.size() < LEAST) return;
    Glim box{points[0].x, points[0].x, points[0].y, points[0].y};
    for (std::size_t i = 0; i < points.size(); ++i) {
        const Gpt& point = points[i];
        const Gpt& before = points[i == 0 ? points.size() - 1 : i - 1];
        if (proj == PROJ_AZIMUTHAL && std::hypot(point.x - before.x, point.y - before.y) > LONGEST) return;
        box = {std::min(box.x_min, point.x), std::max(box.x_max, point.x), std::min(box.y_min, point.y),
               std::max(box.y_max, point.y)};
    }
    if (box.y_max < window.y_min || box.y_min > window.y_max) return;
    float drawn_at = 0.0F;
    for (const float repeat : repeats) {
        if (box.x_max + repeat < window.x_min || box.x_min + repeat > window.x_max) continue;
        for (Gpt& point : points) point.x += repeat - drawn_at;
        drawn_at = repeat;
        gfill_area(static_cast<Gint>(points.size()), points.data());
    }
}

}  // namespace zav
