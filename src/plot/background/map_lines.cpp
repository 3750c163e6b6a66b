// Latitude and longitude lines on maps, with their labels and marks.

#include <algorithm>
#include <cmath>
#include <string>
#include <vector>

#include "frame/string.h"
#include "frame/tools.h"
#include "gks/gks_text.h"
#include "gks/zavgks.h"
#include "plot/background/map_state.h"
#include "plot/background/map_view.h"
#include "plot/page/plt_tool.h"

namespace zav {
namespace {

constexpr float POLE = 90.0F;
constexpr float DATE_LINE = 180.0F;
constexpr float LINE_STEP = 2.5F;    ///< longest piece of a line in degrees, but for the letter way's meridians
constexpr float EDGE_WIDTH = 1e-3F;  ///< what counts as the edge itself, in distances of a label from it

float whole(float value) { return std::trunc(value); }

/// Difference of a longitude to that in the map's middle, as the projections bring it into range.
float from_middle(float lon) {
    const float difference = lon - MAP_get_domain(nullptr)->plon;
    if (difference > DATE_LINE) return difference - 360.0F;
    if (difference < -DATE_LINE) return difference + 360.0F;
    return difference;
}

/// Brings the pieces of a line together where one begins at the other's end, so that it is stroked as a whole and its
/// dashes run along it. In the letter way each piece is a stroke.
class Stroke {
  public:
    void add(Point from, Point to);
    void flush();

  private:
    bool each = PLT_letter();
    std::vector<Gpt> points;
};

void Stroke::add(Point from, Point to) {
    if (points.empty() || points.back().x != from.x || points.back().y != from.y) {
        flush();
        points.push_back({from.x, from.y});
    }
    points.push_back({to.x, to.y});
    if (each) flush();
}

void Stroke::flush() {
    if (!points.empty()) gpolyline(static_cast<Gint>(points.size()), points.data());
    points.clear();
}

class Lines {
  public:
    Lines(float lat_step, float lon_step);
    /// Draws the whole earth's lines, moved by this distance.
    void draw(float moved);

  private:
    void parallels();
    void meridians();
    void marks() const;

    /// One line's way of drawing its segments: the label is written where the line crosses an edge of the map.
    struct Line {
        std::string label;
        bool at_left;  ///< the label stands at the left edge, else at the bottom
    };

    void parallel(float lat);
    void meridian(float lon);
    void segment(EarthPoint from, EarthPoint to, const Line& line);
    void piece(Point from, Point to, const Line& line);
    bool is_cut(EarthPoint from, EarthPoint to, Point p1, Point p2) const;
    void label_along(float lat, float lon, const std::string& label) const;
    void mark(EarthPoint from, EarthPoint to) const;

    float dlat;
    float dlon;
    int proj = MAP_get_proj();
    int dot = map_background.dot;
    float extra = static_cast<float>(map_background.extra);
    float off = 0.0F;    ///< of a label from its edge
    float shift = 0.0F;  ///< of the earth at work
    MAP_limits limits;
    Map_view view;
    Stroke stroke;
};

Lines::Lines(float lat_step, float lon_step) : dlat(lat_step), dlon(lon_step) {
    MAP_get_limits(&limits);
    off = 0.01F * (limits.x_max - limits.x_min);
}

void Lines::draw(float moved) {
    shift = moved;
    parallels();
    meridians();
    marks();
}

/// True if the map is cut between two neighbouring points of a line, so that they lie far from each other on it.
bool Lines::is_cut(EarthPoint from, EarthPoint to, Point p1, Point p2) const {
    constexpr float JUMP = 50.0F;
    constexpr float RIM_JUMP = 20.0F;
    constexpr float DEGREE = 1.12F;  ///< longest degree on the earth in units of map space
    const float dx = std::fabs(p2.x - p1.x);
    if (proj == PROJ_LATLON || proj == PROJ_MERCATOR) return dx > JUMP;
    if (proj == PROJ_LAMBERT || proj == PROJ_MOLLWEIDE) {
        return std::fabs(from_middle(to.lon) - from_middle(from.lon)) > DATE_LINE;
    }
    if (proj != PROJ_AZIMUTHAL) return false;
    const float longest = std::max(RIM_JUMP, 1.2F * DEGREE * std::fabs(to.lat - from.lat));
    return std::max(dx, std::fabs(p2.y - p1.y)) > longest;
}

void Lines::segment(EarthPoint from, EarthPoint to, const Line& line) {
    const auto [south, north] = std::minmax(from.lat, to.lat);
    const auto [west, east] = std::minmax(from.lon, to.lon);
    if (!view.shows(south, north, west, east)) return;
    Point p1;
    Point p2;
    if (!map_place(from.lat, from.lon, p1) || !map_place(to.lat, to.lon, p2)) return;
    if (!is_cut(from, to, p1, p2)) {
        piece(p1, p2, line);
        return;
    }
    const float full = map_full_width(proj, p1.y);
    if (full == 0.0F) return;
    const float width = p2.x < p1.x ? full : -full;
    Point far_side{p2.x + width, p2.y};
    Point near_side{p1.x - width, p1.y};
    if (proj == PROJ_MOLLWEIDE) {
        // The map ends in a curve that nothing may overshoot.
        far_side.x = width / 2.0F;
        near_side.x = -width / 2.0F;
    }
    piece(p1, far_side, line);
    piece(near_side, p2, line);
}

void Lines::piece(Point from, Point to, const Line& line) {
    from.x += shift;
    to.x += shift;
    stroke.add(from, to);
    const float edge = line.at_left ? limits.x_min : limits.y_min;
    const float a = line.at_left ? from.x : from.y;
    const float b = line.at_left ? to.x : to.y;
    // A line may begin at the edge, as all do on a map of the whole world.
    const float near_edge = edge + EDGE_WIDTH * off;
    if ((a <= near_edge) == (b <= near_edge) || line.label.empty()) return;
    Gpt place;
    if (line.at_left) {
        place = {limits.x_min + off, linear_interp(edge, from.x, to.x, from.y, to.y)};
    } else {
        place = {linear_interp(edge, from.y, to.y, from.x, to.x), limits.y_min + off};
    }
    if (MAP_in_domain(place.x, place.y)) gtext(&place, line.label);
}

void Lines::label_along(float lat, float lon, const std::string& label) const {
    Point point;
    if (!map_place(lat, lon, point)) return;
    point.x += shift;
    if (!MAP_in_domain(point.x, point.y)) return;
    const Gpt place{point.x, point.y};
    gtext(&place, label);
}

void Lines::parallel(float lat) {
    constexpr int STEPS = 144;
    const Line line{lat == 0.0F ? "EQ" : text_format(lat > 0.0F ? "%1.0fN" : "%1.0fS", std::fabs(lat)), true};
    GPH_text_align(GLEFT_HOR, GHALF_VERT);
    for (int i = 0; i < STEPS; ++i) {
        const float lon = -DATE_LINE + LINE_STEP * static_cast<float>(i);
        segment({lat, lon}, {lat, lon + LINE_STEP}, line);
    }
    stroke.flush();
    if (!(extra > 0.0F) || !map_step_is_good(dlon)) return;
    GPH_text_align(GCENTER_HOR, GHALF_VERT);
    float lon = extra * whole(-179.0F / extra) - extra / 2.0F;
    lon = whole(lon / dlon) * dlon - dlon / 2.0F;
    for (; lon <= DATE_LINE; lon += extra) label_along(lat, lon, line.label);
}

void Lines::parallels() {
    for (int i = 0; dlat * static_cast<float>(i) < POLE; ++i) parallel(dlat * static_cast<float>(i));
    for (int i = 1; dlat * static_cast<float>(i) < POLE; ++i) parallel(-dlat * static_cast<float>(i));
}

void Lines::meridian(float lon) {
    const bool would_clot = !PLT_letter() && (proj == PROJ_ORTHO || proj == PROJ_AZIMUTHAL);
    const bool short_of_poles = proj == PROJ_POLAR || proj == PROJ_LAMBERT || proj == PROJ_SATELLITE || would_clot;
    const float start = short_of_poles ? -whole(89.0F / dlat) * dlat : -POLE;
    const float step = PLT_letter() ? dlat : dlat / std::ceil(dlat / LINE_STEP);
    const int steps = static_cast<int>(std::floor(-2.0F * start / step + 1e-4F));
    Line line{text_format(lon > 0.0F ? "%1.0fE" : "%1.0fW", std::fabs(lon)), false};
    if (lon == 0.0F) line.label = "PM";
    if (lon == DATE_LINE) line.label = "DL";
    for (int i = 0; i < steps; ++i) {
        const float lat = start + step * static_cast<float>(i);
        segment({lat, lon}, {std::min(lat + step, POLE), lon}, line);
    }
    stroke.flush();
    if (!(extra > 0.0F)) return;
    float lat = extra * whole(-89.0F / extra) - extra / 2.0F;
    lat = whole(lat / dlat) * dlat - dlat / 2.0F;
    for (; lat < POLE; lat += extra) label_along(lat, lon, line.label);
}

void Lines::meridians() {
    if (!map_step_is_good(dlon)) return;
    GPH_text_align(GCENTER_HOR, GBASE_VERT);
    for (int i = 0; dlon * static_cast<float>(i) <= DATE_LINE; ++i) meridian(dlon * static_cast<float>(i));
    for (int i = 1; dlon * static_cast<float>(i) < DATE_LINE; ++i) meridian(-dlon * static_cast<float>(i));
}

void Lines::mark(EarthPoint from, EarthPoint to) const {
    constexpr float LONGEST = 5.0F;
    Point p1;
    Point p2;
    if (!map_place(from.lat, from.lon, p1) || !map_place(to.lat, to.lon, p2)) return;
    if (std::fabs(p2.x - p1.x) < LONGEST) GPH_line(p1.x + shift, p1.y, p2.x + shift, p2.y);
}

void Lines::marks() const {
    constexpr float ARM = 0.1F;
    if (dot <= 0) return;
    for (int lat = dot * (-79 / dot); lat < 80; lat += std::min(dot, 180)) {
        for (int lon = dot * (-179 / dot); lon <= 180; lon += std::min(dot, 360)) {
            const auto y = static_cast<float>(lat);
            const auto x = static_cast<float>(lon);
            if (!view.shows(y - ARM, y + ARM, x - ARM, x + ARM)) continue;
            mark({y, x - ARM}, {y, x + ARM});
            mark({y - ARM, x}, {y + ARM, x});
        }
    }
}

}  // namespace

bool map_step_is_good(float step) {
    constexpr float FINEST = 0.05F;
    return std::isfinite(step) && step >= FINEST;
}

void map_earth_lines(float dlat, float dlon) {
    if (!map_step_is_good(dlat)) return;
    Lines lines(dlat, dlon);
    for (const float repeat : map_repeats()) lines.draw(repeat);
}

}  // namespace zav
