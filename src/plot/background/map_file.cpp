// Map database files: lines or areas out of records of points.

#include <vector>

#include "plot/background/map.h"
#include "plot/background/map_area.h"
#include "plot/background/map_reader.h"
#include "plot/background/map_run.h"
#include "plot/background/map_state.h"
#include "plot/background/map_view.h"
#include "plot/page/plt_tool.h"

namespace zav {
namespace {

/// Hands every record that the map shows to `target`; the reader's last word.
template <typename Target>
Map_reader::Step draw_records(Map_reader& reader, Target& target) {
    const Map_view view;
    std::vector<EarthPoint> points;
    Map_reader::Step step = reader.next(view, points);
    for (; step == Map_reader::Step::record; step = reader.next(view, points)) target.add(points);
    return step;
}

}  // namespace

int MAP_map(std::FILE* map_file) {
    if (!map_shows_earth()) return 1;
    Map_reader reader(map_file);
    Map_reader::Step step = Map_reader::Step::record;
    if (map_background.fill && !PLT_letter()) {
        Map_area area;
        step = draw_records(reader, area);
    } else {
        Map_run run;
        step = draw_records(reader, run);
        run.flush();
    }
    return step == Map_reader::Step::end_mark ? 0 : -1;
}

}  // namespace zav
