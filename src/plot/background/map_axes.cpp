// Lines of constant value on graphs, with their labels outside the plot.

#include <array>
#include <cmath>

#include "frame/string.h"
#include "frame/zav.h"
#include "gks/gks_text.h"
#include "gks/zavgks.h"
#include "plot/background/map_state.h"

namespace zav {
namespace {

constexpr int LINE_LIMIT_OF_AXIS = 1000;  ///< more would be but colour
constexpr float LABEL_GAP = 0.01F;
constexpr const char* LABEL_FORMAT = "2.2.0";

/// Values at which an axis has lines.
struct Axis {
    float start = 0.0F;
    float step = 0.0F;  ///< negative for an axis that runs downward
    int count = 0;      ///< number of lines

    float value(int i) const { return start + step * static_cast<float>(i); }
};

/// From `start` over `range`; a negative `step` asks for lines at multiples of it.
Axis make_axis(float start, float range, float step, bool downward) {
    Axis axis;
    const float size = std::fabs(step);
    const float end = start + range;
    if (!(size > 0.0F) || !std::isfinite(size) || !std::isfinite(start) || !std::isfinite(end)) return axis;
    axis.start = step < 0.0F ? std::trunc(start / size) * size : start;
    axis.step = downward ? -size : size;
    const float steps = (end - axis.start) / axis.step;
    // A little more than the quotient, so that rounding doesn't lose the last line.
    if (steps >= -1e-4F && steps < LINE_LIMIT_OF_AXIS) axis.count = static_cast<int>(steps + 1e-4F) + 1;
    return axis;
}

/// The hodograph's lines are those of its plane; other graphs take data coordinates.
Point place(float first, float second) {
    if (MAP_get_proj() == PROJ_HODOGRAPH) return {first, second};
    Point point{FMISS, FMISS};
    MAP_tran(first, second, &point.x, &point.y);
    return point;
}

/// A line between two data points; some diagrams bend it.
void draw_line(Point from, Point to) {
    constexpr int STEPS = 24;
    const int proj = MAP_get_proj();
    const int steps = proj == PROJ_TEPHIGRAM || proj == PROJ_TEPHI_PLAIN ? STEPS : 1;
    std::array<Gpt, STEPS + 1> line;
    for (int i = 0; i <= steps; ++i) {
        const float part = static_cast<float>(i) / static_cast<float>(steps);
        const Point point = place(from.x + part * (to.x - from.x), from.y + part * (to.y - from.y));
        if (point.x == FMISS || !std::isfinite(point.x) || !std::isfinite(point.y)) return;
        line[i] = {point.x, point.y};
    }
    gpolyline(steps + 1, line.data());
}

bool runs_downward(const Domain& domain) {
    switch (domain.proj) {
        case PROJ_XY:
        case PROJ_CATEGORY:
        case PROJ_PIXEL:
            return false;
        case PROJ_XLOGY:
        case PROJ_STUVE:
            return true;
        default:
            return domain.dy < 0.0F;
    }
}

/// Below the lines of the first axis.
void label_columns(const Axis& columns, const Domain& domain, const Glim& view) {
    GPH_text_align(GCENTER_HOR, GCAP_VERT);
    for (int i = 0; i < columns.count; ++i) {
        const float value = columns.value(i);
        const Gpt at{xW_trans(place(value, domain.clon).x, 2, 1), view.y_min - LABEL_GAP};
        if (at.x >= view.x_min && at.x <= view.x_max) gtext(&at, set_num(LABEL_FORMAT, value));
    }
}

/// Left of the lines of the second axis.
void label_rows(const Axis& rows, const Domain& domain, const Glim& view) {
    GPH_text_align(GRIGHT_HOR, GHALF_VERT);
    for (int i = 0; i < rows.count; ++i) {
        const float value = rows.value(i);
        const Gpt at{view.x_min - LABEL_GAP, yW_trans(place(domain.clat, value).y, 2, 1)};
        if (at.y >= view.y_min && at.y <= view.y_max) gtext(&at, set_num(LABEL_FORMAT, value));
    }
}

}  // namespace

void map_graph_lines(float dlat, float dlon) {
    const Domain& domain = *MAP_get_domain(nullptr);
    const float right = domain.clat + domain.dx;
    const float top = domain.clon + domain.dy;
    const Axis columns = make_axis(domain.clat, domain.dx, dlat, domain.dx < 0.0F);
    const Axis rows = make_axis(domain.clon, domain.dy, dlon, runs_downward(domain));
    for (int i = 0; i < columns.count; ++i) draw_line({columns.value(i), domain.clon}, {columns.value(i), top});
    for (int i = 0; i < rows.count; ++i) draw_line({domain.clat, rows.value(i)}, {right, rows.value(i)});
    Glim view;
    GPH_get_view(2, &view);
    GPH_trans(1);
    if (domain.proj != PROJ_CATEGORY) label_columns(columns, domain, view);
    label_rows(rows, domain, view);
    GPH_trans(2);
}

}  // namespace zav
