#pragma once

/// Contour plots as data: what the layer would draw, cell by cell or for a whole grid.

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "plot/background/map.h"
#include "plot/contour/cont_state.h"
#include "plot/meta_plot.h"

namespace zav::test {

struct Sent_text {
    Gpt pt;
    std::string str;
};

/// An area and the band that it belongs to.
struct Sent_area {
    std::vector<Gpt> pts;
    int band = 0;
};

/// An area of several rings.
struct Sent_fill {
    std::vector<std::vector<Gpt>> rings;
    int band = 0;
};

struct Sent {
    std::vector<Sent_fill> fills;
    std::vector<std::vector<Gpt>> lines;
    std::vector<Sent_area> areas;
    std::vector<Sent_text> texts;
};

inline Sent sent;

inline int keep_line(Gint num_pt, const Gpt* pts) {
    sent.lines.emplace_back(pts, pts + num_pt);
    return 0;
}

inline int keep_area(Gint num_pt, const Gpt* pts) {
    sent.areas.push_back({{pts, pts + num_pt}, cont.con_off});
    return 0;
}

inline int keep_rings(Gint num_rings, const Gint* num_pt, const Gpt* pts) {
    Sent_fill fill;
    for (int ring = 0; ring < num_rings; pts += num_pt[ring], ++ring) fill.rings.emplace_back(pts, pts + num_pt[ring]);
    fill.band = cont.con_off;
    sent.fills.push_back(fill);
    return 0;
}

inline int keep_text(const Gpt* pt, const std::string& str) {
    sent.texts.push_back({*pt, str});
    return 0;
}

inline GRD_report make_grid(int nx, int ny, const std::vector<float>& values, int proj = PROJ_POLAR) {
    GRD_report grid;
    grid.domain.proj = proj;
    grid.domain.plat = grid.domain.clat = 60;
    grid.domain.plon = grid.domain.clon = 0;
    grid.domain.dx = grid.domain.dy = 1;
    grid.domain.nx = nx;
    grid.domain.ny = ny;
    grid.grid = std::shared_ptr<float[]>(new float[values.size()]);
    std::copy(values.begin(), values.end(), grid.grid.get());
    return grid;
}

/// Fresh contour state with ten bands, and outputs that are kept. Cells are drawn one by one unless joined.
inline void start_contours(int type, bool joined = false) {
    fresh_plot_control();
    PLT_set_letter(!joined);
    for (const char* name : {"con_base", "con_interval", "color_text", "color_cont"}) RES_put(name, "");
    cont = Cont_state{};
    cont.label_skip = cont.ext_radius = joined ? 0 : 2;  // joined lines are open behind labels
    cont.polyline = keep_line;
    cont.fill_area = keep_area;
    cont.fill_rings = keep_rings;
    cont.text = keep_text;
    cont.cont_type = type;
    cont.color_num = 10;
    cont.color_fill_set = 1;
    for (int i = 0; i < cont.color_num; ++i) cont.fill_attrib[i].color = i;
    cont.fill_attrib[cont.color_num].color = -2;
    sent = {};
}

inline void set_levels(const std::vector<float>& levels) {
    for (std::size_t i = 0; i < levels.size(); ++i) cont.cont_value[i] = levels[i];
    cont.cont_value[levels.size()] = FMISS;
    cont.num_cont = static_cast<int>(levels.size());
    cont.grid_max = levels.back();
    cont.grid_min = levels.front();
    cont.conlo = levels.front();
    cont.cbase = levels.front();
}

inline void set_interval(float low, float interval, int count) {
    cont.intrvl = interval;
    cont.conlo = cont.cbase = cont.grid_min = low;
    cont.num_cont = count;
    cont.grid_max = low + interval * static_cast<float>(count);
    cont.max_line_fact = 0;
}

/// Draws the grid in its own coordinates.
inline void draw(GRD_report& grid) {
    MAP_domain(&grid.domain);
    CONT_draw_contour(&grid);
}

inline double area_of(const std::vector<Gpt>& pts) {
    double sum = 0;
    for (std::size_t i = 1; i < pts.size(); ++i) {
        sum += static_cast<double>(pts[i - 1].x) * pts[i].y - static_cast<double>(pts[i].x) * pts[i - 1].y;
    }
    return std::fabs(sum) / 2;
}

}  // namespace zav::test
