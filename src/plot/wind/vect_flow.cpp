// Streamlines drawn for paper: their distance, and the size and distance of their heads, are lengths on the page.

#include <algorithm>
#include <array>
#include <cmath>
#include <exception>

#include "frame/mess.h"
#include "gks/zavgks.h"
#include "plot/contour/cont.h"
#include "plot/page/colors.h"
#include "plot/wind/vect_even.h"
#include "plot/wind/vect_page.h"
#include "plot/wind/vect_state.h"

namespace zav {

namespace {

/// In millimetres on the page.
constexpr float DISTANCE = 5.5F;
constexpr float NEAREST_LINES = 1.5F;
constexpr float HEAD_LENGTH = 2.2F;
constexpr float HEAD_SHARE = 0.4F;  ///< half a head's width in its length
constexpr float HEADS_APART = 30.0F;

/// Lines as far apart as the points that a skip of the user's leaves.
float line_distance(const Page_wind& wind) {
    const int skip = std::max(vect.xskip, vect.yskip);
    const float step = wind.grid_step();
    return vect.skip_given && step > 0.0F ? std::max(step * static_cast<float>(skip), NEAREST_LINES) : DISTANCE;
}

bool is_cut(float spd) {
    return (vect.min_cut != FMISS && vect.min_cut > spd) || (vect.max_cut != FMISS && spd > vect.max_cut);
}

bool same_look(const Gattribs& a, const Gattribs& b) {
    return a.color == b.color && a.style == b.style && a.width == b.width;
}

class Drawing {
  public:
    explicit Drawing(const Page_wind& field) : wind(field) {}

    void draw(const Streamline& line) {
        const std::size_t count = line.points.size();
        const float apart = std::max(HEADS_APART * vect.arrow_scale / STREAM_STEP_MM, 1.0F);
        const auto heads = static_cast<std::size_t>(std::max(1.0F, std::round(static_cast<float>(count) / apart)));
        const std::size_t part = std::max<std::size_t>(count / heads, 1);
        for (std::size_t k = 0; k + 1 < count; ++k) {
            stroke(line, k);
            if (k % part == part / 2) head(line.points[k], line.points[k + 1]);
        }
        flush();
    }

  private:
    /// Takes the stroke from point `k` to the next, in the look of its speed.
    void stroke(const Streamline& line, std::size_t k) {
        const float spd = line.speeds[k];
        if (vect_has_bands()) {
            Gattribs band = vect.attrib;
            CONT_get_fill_attrib(spd, &band);
            if (!same_look(band, vect.attrib)) {
                flush();
                vect_band_attributes(spd);
            }
        }
        visible = vect.attrib.color != CLR_NONE && !is_cut(spd);
        if (!visible) return flush();
        if (points.empty()) points.push_back(wind.on_map(line.points[k]));
        points.push_back(wind.on_map(line.points[k + 1]));
    }

    void head(const Gpt& from, const Gpt& to) const {
        if (!visible || !(vect.arrow_scale > 0.0F)) return;
        const float length = std::hypot(to.x - from.x, to.y - from.y);
        if (!(length > 0.0F)) return;
        const float back = HEAD_LENGTH * vect.arrow_scale / length;
        const Gpt along{(to.x - from.x) * back, (to.y - from.y) * back};
        const std::array<Gpt, 3> strokes{
            wind.on_map({to.x - along.x - HEAD_SHARE * along.y, to.y - along.y + HEAD_SHARE * along.x}),
            wind.on_map(to),
            wind.on_map({to.x - along.x + HEAD_SHARE * along.y, to.y - along.y - HEAD_SHARE * along.x})};
        gpolyline(3, strokes.data());
    }

    void flush() {
        if (points.size() > 1) gpolyline(static_cast<Gint>(points.size()), points.data());
        points.clear();
    }

    const Page_wind& wind;
    std::vector<Gpt> points;
    bool visible = true;
};

}  // namespace

int vect_draw_flow(const GRD_report& ugrid, const GRD_report& vgrid) {
    try {
        const Page_wind wind(ugrid, vgrid, vect.uvgrid != 0);
        Drawing drawing(wind);
        for (const Streamline& line : VECT_even_lines(wind, line_distance(wind))) drawing.draw(line);
    } catch (const std::exception&) {
        MESS_print(MESS_WARN, "VECT_draw: Unable to allocate grid arrays\n");
        return -1;
    }
    return 0;
}

}  // namespace zav
