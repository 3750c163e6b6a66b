/// Grids of columns along meridians on maps that are cyclic or cut.

#include "calc/grd_place.h"

#include <algorithm>
#include <cmath>
#include <exception>

#include "calc/grd_cyclic.h"
#include "calc/grd_trans.h"
#include "map/maptran.h"

namespace zav {
namespace {

constexpr double TURN = 360.0;
constexpr double HALF_TURN = 180.0;
/// How near to the meridian of the cut a map is drawn, in degrees: beyond it is the map's other end.
constexpr double CUT_MARGIN = 1e-4;

/// How a map shows the meridians all round the globe.
enum class Round {
    CYLINDER,  ///< side by side, again and again
    CUT,       ///< up to the one opposite the reference
    CLOSED     ///< about a pole, or those in sight
};

Round round_of(int proj) {
    if (proj == PROJ_LATLON || proj == PROJ_MERCATOR) return Round::CYLINDER;
    return proj == PROJ_LAMBERT || proj == PROJ_MOLLWEIDE ? Round::CUT : Round::CLOSED;
}

/// A column on the map: a point between two of the grid's.
struct Column {
    int left = -1;       ///< column of the grid, -1 for a gap
    int right = -1;      ///<
    float share = 0.0F;  ///< of the right one
    double east = 0.0;   ///< degrees from the map's reference
};

/// Degrees east of the map's reference.
struct Window {
    double west;
    double east;
};

/// Where the columns of a grid lie.
struct Meridians {
    double first = 0.0;  ///< degrees of the first one east of the map's reference
    double step = 0.0;
    int cycle = 0;  ///< columns of a turn, 0 for an open grid
    int count = 0;  ///< columns

    double east(long long i) const { return first + static_cast<double>(i) * step; }
    double last() const { return east(count - 1); }
};

Meridians meridians_of(const Domain& grid, const Domain& map) {
    Meridians found;
    found.step = GRD_column_degrees(grid);
    found.cycle = GRD_cycle(grid);
    found.count = grid.nx;
    if (found.cycle > 0) found.step = TURN / found.cycle;
    const double reference = map.plon == FMISS ? map.clon : map.plon;
    const double middle = std::remainder(static_cast<double>(grid.clon) - reference, TURN);
    found.first = middle - found.step * (grid.nx - 1.0) / 2.0;
    return found;
}

/// The way from places on the earth to those on the map, with the map's domain current.
class Map_frame {
  public:
    explicit Map_frame(const Domain& map) : round(round_of(map.proj)) {
        MAP_domain(&map);
        MAP_get_limits(&limits);
        reference = MAP_get_domain(nullptr)->plon;
        constexpr float QUARTER = 90.0F;
        Point at;
        if (round == Round::CYLINDER && MAP_tran(0.0F, reference + QUARTER, &at.x, &at.y) == 1) unit = at.x / QUARTER;
    }

    /// Degrees that are shown.
    Window window() const {
        constexpr double FARTHEST = 2.0 * TURN;  // no map shows the earth more often
        if (round != Round::CYLINDER) return {-HALF_TURN, HALF_TURN};
        return {std::max(limits.x_min / unit, -FARTHEST), std::min(limits.x_max / unit, FARTHEST)};
    }

    void place_row(float lat, const std::vector<Column>& columns, float* x, float* y) const {
        Point at;
        if (round == Round::CYLINDER) MAP_tran(lat, reference, &at.x, &at.y);
        for (const Column& column : columns) {
            if (round == Round::CYLINDER) {
                at.x = static_cast<float>(column.east * unit);
            } else {
                at = {FMISS, FMISS};
                MAP_tran(lat, static_cast<float>(std::remainder(reference + column.east, TURN)), &at.x, &at.y);
            }
            *x++ = at.x;
            *y++ = at.y;
        }
    }

    /// The turn of a place that lies in the window, or the place as it is.
    float in_window(float x) const {
        if (round != Round::CYLINDER || x == FMISS || (x >= limits.x_min && x <= limits.x_max)) return x;
        const double turn = TURN * unit;
        const double moved = x + turn * std::ceil((limits.x_min - x) / turn);
        return moved <= limits.x_max ? static_cast<float>(moved) : x;
    }

    const Round round;

  private:
    MAP_limits limits;
    float reference = 0.0F;
    double unit = 1.0;  ///< map units of a degree of longitude, on cylinders
};

/// Puts the columns of a map together.
class Columns {
  public:
    explicit Columns(const Meridians& meridians) : lines(meridians) {}

    /// Columns `first` to `last`, counted on through the turns, moved east by `shift` degrees.
    void add_run(long long first, long long last, double shift) {
        if (first > last) return;
        if (!list.empty()) list.push_back({});
        for (long long i = first; i <= last; ++i) list.push_back({index(i), index(i), 0.0F, lines.east(i) + shift});
    }

    /// The same from one meridian to another, with columns of values between the grid's there.
    void add_cut_run(const Window& cut, double shift) {
        const double low = (cut.west - shift - lines.first) / lines.step;
        const double high = (cut.east - shift - lines.first) / lines.step;
        const bool open = lines.cycle == 0;
        const double end = lines.count - 1.0;
        if (open && !(low < end && high > 0.0)) return;
        if (!list.empty()) list.push_back({});
        if (!open || low > 0.0) add_between(low, cut.west);
        const double first = open ? std::max(std::floor(low) + 1.0, 0.0) : std::floor(low) + 1.0;
        const double last = open ? std::min(std::ceil(high) - 1.0, end) : std::ceil(high) - 1.0;
        for (auto i = static_cast<long long>(first); i <= static_cast<long long>(last); ++i) {
            list.push_back({index(i), index(i), 0.0F, lines.east(i) + shift});
        }
        if (!open || high < end) add_between(high, cut.east);
    }

    std::vector<Column> list;

  private:
    int index(long long i) const { return lines.cycle > 0 ? GRD_turned_column(i, lines.cycle) : static_cast<int>(i); }
    void add_between(double place, double east) {
        const auto left = static_cast<long long>(std::floor(place));
        const auto share = static_cast<float>(place - static_cast<double>(left));
        list.push_back({index(left), index(share > 0.0F ? left + 1 : left), share, east});
    }

    const Meridians& lines;
};

/// Columns within a window, and the next ones beside it.
std::vector<Column> cylinder_columns(const Meridians& lines, const Window& window) {
    Columns columns(lines);
    constexpr double FAR = 1e15;  // columns of any step, as whole numbers
    const auto at_or_left = [&](double east) {
        return static_cast<long long>(std::clamp(std::floor((east - lines.first) / lines.step), -FAR, FAR));
    };
    if (lines.cycle > 0) {
        columns.add_run(at_or_left(window.west), at_or_left(window.east) + 1, 0.0);
        return columns.list;
    }
    const double first_turn = std::ceil((window.west - lines.last()) / TURN);
    const double last_turn = std::floor((window.east - lines.first) / TURN);
    for (double turn = first_turn; turn <= last_turn; turn += 1.0) {
        const double shift = turn * TURN;
        columns.add_run(std::max(0LL, at_or_left(window.west - shift)),
                        std::min(lines.count - 1LL, at_or_left(window.east - shift) + 1), shift);
    }
    return columns.list;
}

/// Columns up to the meridians where the map is cut.
std::vector<Column> cut_columns(const Meridians& lines) {
    constexpr Window CUT{CUT_MARGIN - HALF_TURN, HALF_TURN - CUT_MARGIN};
    Columns columns(lines);
    if (lines.cycle > 0) {
        columns.add_cut_run(CUT, 0.0);
        return columns.list;
    }
    for (double turn = std::ceil((-HALF_TURN - lines.last()) / TURN); lines.first + turn * TURN < HALF_TURN;
         turn += 1.0) {
        columns.add_cut_run(CUT, turn * TURN);
    }
    return columns.list;
}

std::vector<Column> columns_of(const Meridians& lines, const Map_frame& frame) {
    if (frame.round == Round::CYLINDER) return cylinder_columns(lines, frame.window());
    if (frame.round == Round::CUT) return cut_columns(lines);
    Columns columns(lines);
    columns.add_run(0, lines.cycle, 0.0);
    return columns.list;
}

/// True for an open grid that lies within one turn of the map as it is, and for one of more turns than make sense.
bool lies_plainly(const Meridians& lines, const Map_frame& frame) {
    constexpr double MOST_TURNS = 4.0;
    if (lines.cycle > 0) return false;
    if (lines.last() - lines.first > MOST_TURNS * TURN) return true;
    if (frame.round == Round::CLOSED) return true;
    if (!(lines.first > -HALF_TURN && lines.last() < HALF_TURN)) return false;
    if (frame.round == Round::CUT) return true;
    const Window window = frame.window();
    return window.west > lines.last() - TURN && window.east < lines.first + TURN;
}

float value_between(const float* row, const Column& column) {
    if (column.left < 0) return FMISS;
    const float a = row[column.left];
    const float b = row[column.right];
    if (column.share == 0.0F) return a;
    if (a == FMISS || b == FMISS) return FMISS;
    return (1.0F - column.share) * a + column.share * b;
}

/// Latitudes of the rows, from the north. The grid's domain becomes current.
std::vector<float> row_latitudes(const Domain& grid) {
    std::vector<float> lats(static_cast<std::size_t>(grid.ny), FMISS);
    MAP_domain(&grid);
    Point middle;
    MAP_tran_center(&middle.x, &middle.y);
    const double bottom = middle.y - grid.dy * ((grid.ny - 1.0) / 2.0);
    for (int j = 0; j < grid.ny; ++j) {
        const double y = bottom + (grid.ny - 1.0 - j) * static_cast<double>(grid.dy);
        float lon = FMISS;
        MAP_untran(middle.x, static_cast<float>(y), &lats[static_cast<std::size_t>(j)], &lon);
    }
    return lats;
}

/// For each column of the grid the one that shows it, one within the window before one beside it. A column on the cut
/// is shown by the one beside that.
std::vector<int> shown_columns(const std::vector<Column>& columns, const Window& window, int count) {
    std::vector<int> shown(static_cast<std::size_t>(count), -1);
    for (std::size_t i = 0; i < columns.size(); ++i) {
        const Column& column = columns[i];
        constexpr float BESIDE = 0.01F;
        if (column.left < 0 || (column.share > BESIDE && column.share < 1.0F - BESIDE)) continue;
        const bool inside = column.east >= window.west && column.east <= window.east;
        int& at = shown[static_cast<std::size_t>(column.share > BESIDE ? column.right : column.left)];
        if (at < 0 || inside) at = static_cast<int>(i);
    }
    return shown;
}

Placing place(const GRD_report& grid, const Domain& map, GRD_placed& placed) {
    const std::vector<float> lats = row_latitudes(grid.domain);
    const Meridians lines = meridians_of(grid.domain, map);
    const Map_frame frame(map);
    const Window window = frame.window();
    if (!std::isfinite(lines.first + window.west + window.east) || lies_plainly(lines, frame))
        return Placing::NOT_NEEDED;
    const std::vector<Column> columns = columns_of(lines, frame);
    const std::size_t nx = columns.size();
    const std::size_t count = nx * lats.size();
    placed.grid = grid;
    placed.grid.domain.nx = static_cast<int>(nx);
    placed.grid.grid = std::shared_ptr<float[]>(new float[count]);
    placed.x.resize(count);
    placed.y.resize(count);
    placed.shown = shown_columns(columns, window, grid.domain.nx);
    for (std::size_t j = 0; j < lats.size(); ++j) {
        const float* row = &grid.grid[static_cast<std::ptrdiff_t>(j) * grid.domain.nx];
        float* values = placed.grid.grid.get() + j * nx;
        for (const Column& column : columns) *values++ = value_between(row, column);
        frame.place_row(lats[j], columns, &placed.x[j * nx], &placed.y[j * nx]);
    }
    return Placing::DONE;
}

}  // namespace

Placing GRD_place(const GRD_report& grid, const Domain& map, GRD_placed& placed) {
    const bool earth = map.proj >= PROJ_POLAR && map.proj <= PROJ_LAST_MAP;
    if (!grid.grid || !earth || grid.domain.nx < 2 || grid.domain.ny < 1) return Placing::NOT_NEEDED;
    if (GRD_column_degrees(grid.domain) == 0.0) return Placing::NOT_NEEDED;
    const Domain target = map;  // may be the current record itself, which changes here
    Domain saved;
    MAP_get_domain(&saved);
    Placing result = Placing::NO_MEMORY;
    try {
        result = place(grid, target, placed);
    } catch (const std::exception&) {
        placed = {};
    }
    MAP_domain(&saved);
    return result;
}

int GRD_place_points(const GRD_report& grid, const Domain& map, std::vector<float>& x, std::vector<float>& y) {
    const Domain target = map;  // may be the current record itself, which changes here
    if (GRD_proj_XY(&grid, &target, x, y) != 0) return -1;
    Domain saved;
    MAP_get_domain(&saved);
    const Map_frame frame(target);
    const int cycle = GRD_cycle(grid.domain);
    for (std::size_t k = 0; k < x.size(); ++k) {
        const auto column = static_cast<int>(k % static_cast<std::size_t>(grid.domain.nx));
        x[k] = cycle > 0 && column >= cycle ? FMISS : frame.in_window(x[k]);
    }
    MAP_domain(&saved);
    return 0;
}

}  // namespace zav
