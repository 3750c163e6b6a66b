#include "plot/page/plt_thin.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "plot/page/plt_paper.h"

namespace zav {
namespace {

/// Rooms may stand this much nearer than they are wide, so that rounding doesn't drop a row.
constexpr float NEAR_ENOUGH = 0.98F;
/// Distance in rooms from which a wanted point is in a hole. The middle of a regular lattice's cell is never so far
/// off.
constexpr float HOLE = 1.6F;
/// Points of a row, and rows, that are looked at to tell a distance.
constexpr int SAMPLES = 200;

/// The least number of 1, 2, 3, and 4, 5, 6 times the powers of two that isn't below `least`, at most `most`: rows
/// whose columns lie a little closer together keep their step, and columns of neighbouring rows stand in line.
int round_step(float least, int most) {
    if (!(least < static_cast<float>(most))) return most;
    const int step = std::max(static_cast<int>(std::ceil(least)), 1);
    if (step <= 6) return step;
    int unit = 1;
    while (unit * 6 < step) unit *= 2;
    return unit * ((step + unit - 1) / unit);
}

/// Positions on paper, from the selected transformation.
class Paper {
  public:
    Paper() : origin(PLT_on_paper({0.0F, 0.0F})), unit(PLT_paper_scale()) {}
    Gpt at(const Gpt& pt) const { return {origin.x + pt.x * unit.x, origin.y + pt.y * unit.y}; }

  private:
    Gpt origin;
    Gpt unit;
};

bool is_within(const Glim& view, const Gpt& pt) {
    return pt.x >= view.x_min && pt.x <= view.x_max && pt.y >= view.y_min && pt.y <= view.y_max;
}

bool is_there(const Gpt& pt) { return !std::isnan(pt.x); }

/// The number that this part of all doesn't exceed; 0 of none.
float share(std::vector<float> numbers, double part) {
    if (numbers.empty()) return 0.0F;
    const auto at = numbers.begin() + static_cast<std::ptrdiff_t>(static_cast<double>(numbers.size()) * part);
    std::nth_element(numbers.begin(), at, numbers.end());
    return *at;
}

/// What `measure` tells of the ways on paper between columns `step` apart, at places all over the plot.
std::vector<float> ways_along_rows(const PLT_lattice& lattice, int step, float (*measure)(float x, float y)) {
    const Paper paper;
    const Glim view = PLT_paper_view();
    std::vector<float> measures;
    for (int j = 0; j < lattice.ny; j += lattice.ny / SAMPLES + 1) {
        for (int i = 0; i + step < lattice.nx; i += step) {
            Gpt a;
            Gpt b;
            if (!lattice.place(i, j, &a) || !lattice.place(i + step, j, &b)) continue;
            a = paper.at(a);
            b = paper.at(b);
            if (is_within(view, a) && is_within(view, b)) measures.push_back(measure(b.x - a.x, b.y - a.y));
        }
    }
    return measures;
}

/// All lengths are in rooms.
class Thinner {
  public:
    Thinner(const PLT_lattice& points, const PLT_room& size) : lattice(points), room(size) {
        const Glim mm = PLT_paper_view();
        view = {(mm.x_min + room.frame.x) / room.width, (mm.x_max - room.frame.x) / room.width,
                (mm.y_min + room.frame.y) / room.height, (mm.y_max - room.frame.y) / room.height};
        columns = std::max(static_cast<int>(view.x_max - view.x_min), 0) + 1;
        const int rows = std::max(static_cast<int>(view.y_max - view.y_min), 0) + 1;
        marks.resize(static_cast<std::size_t>(columns) * static_cast<std::size_t>(rows));
    }

    std::vector<PLT_grid_point> find() {
        std::vector<Gpt> last;
        for (int j = 0; j < lattice.ny; ++j) {
            std::vector<Gpt> row = load(j);
            if (std::none_of(row.begin(), row.end(), [this](const Gpt& pt) { return is_shown(pt); })) continue;
            if (!last.empty() && row_distance(last, row) < NEAR_ENOUGH) continue;
            walk(row, j);
            last = std::move(row);
        }
        fill_holes();
        return found;
    }

  private:
    /// The row's places, NAN for points without one.
    std::vector<Gpt> load(int j) const {
        std::vector<Gpt> row(static_cast<std::size_t>(lattice.nx), Gpt{NAN, NAN});
        for (int i = 0; i < lattice.nx; ++i) {
            Gpt pt;
            if (!lattice.place(i, j, &pt)) continue;
            pt = paper.at(pt);
            row[i] = {(pt.x + room.shift.x) / room.width, (pt.y + room.shift.y) / room.height};
        }
        return row;
    }

    bool is_shown(const Gpt& pt) const { return is_within(view, pt); }

    float length(const Gpt& a, const Gpt& b) const {
        const float x = std::fabs(a.x - b.x);
        const float y = std::fabs(a.y - b.y);
        return room.box ? std::max(x, y) : std::hypot(x, y);
    }

    /// Distance of point `i` of a row from the line that another row is there.
    float line_distance(const std::vector<Gpt>& line, const std::vector<Gpt>& row, std::size_t i) const {
        const std::size_t beside = i + 1 < line.size() ? i + 1 : i - 1;
        const Gpt along{line[beside].x - line[i].x, line[beside].y - line[i].y};
        const float across = std::fabs(along.x * (row[i].y - line[i].y) - along.y * (row[i].x - line[i].x));
        const float span = room.box ? std::fabs(along.x) + std::fabs(along.y) : std::hypot(along.x, along.y);
        return span > 0.0F ? across / span : length(row[i], line[i]);
    }

    /// Distance of two rows that nine of ten points don't exceed, so that there is no hole where rows spread out.
    float row_distance(const std::vector<Gpt>& line, const std::vector<Gpt>& row) const {
        std::vector<float> distances;
        const std::size_t step = std::max<std::size_t>(row.size() / SAMPLES, 1);
        for (std::size_t i = 0; i < row.size() && row.size() > 1; i += step) {
            const bool shown = is_shown(row[i]) || is_shown(line[i]);
            const float distance = shown ? line_distance(line, row, i) : NAN;
            if (!std::isnan(distance)) distances.push_back(distance);
        }
        return distances.empty() ? INFINITY : share(std::move(distances), 0.9);
    }

    /// Distance to the nearer neighbour: at the edge of a cyclic map the other one lies at its far end.
    float spacing(const std::vector<Gpt>& row, std::size_t i) const {
        float least = INFINITY;
        for (const std::size_t beside : {i - 1, i + 1}) {
            if (beside < row.size() && is_there(row[beside])) least = std::min(least, length(row[i], row[beside]));
        }
        return least;
    }

    void walk(const std::vector<Gpt>& row, int j) {
        int step = 0;
        for (int i = 0; i < lattice.nx; ++i) {
            const auto place = static_cast<std::size_t>(i);
            if (!is_shown(row[place])) continue;
            const float apart = spacing(row, place);
            const float now = apart * static_cast<float>(step);
            if (step == 0 || now < NEAR_ENOUGH || (now > HOLE && step > 1)) {
                step = round_step(NEAR_ENOUGH / apart, lattice.nx);
            }
            if (i % step == 0) take(row[place], i, j, NEAR_ENOUGH);
        }
    }

    void fill_holes() {
        for (int j = 0; j < lattice.ny; ++j) {
            const std::vector<Gpt> row = load(j);
            for (int i = 0; i < lattice.nx; ++i) {
                if (is_shown(row[static_cast<std::size_t>(i)])) take(row[static_cast<std::size_t>(i)], i, j, HOLE);
            }
        }
    }

    void take(const Gpt& at, int i, int j, float reach) {
        if (!is_free(at, reach) || !lattice.wanted(i, j)) return;
        bin(column_of(at), row_of(at)).push_back(at);
        found.push_back({i, j});
    }

    int column_of(const Gpt& pt) const { return static_cast<int>(pt.x - view.x_min); }
    int row_of(const Gpt& pt) const { return static_cast<int>(pt.y - view.y_min); }
    int bin_rows() const { return static_cast<int>(marks.size()) / columns; }
    std::vector<Gpt>& bin(int column, int row) {
        return marks[static_cast<std::size_t>(row) * static_cast<std::size_t>(columns) +
                     static_cast<std::size_t>(column)];
    }

    /// True if no mark stands nearer than `reach`.
    bool is_free(const Gpt& at, float reach) {
        const int around = static_cast<int>(std::ceil(reach));
        const int last_row = std::min(row_of(at) + around, bin_rows() - 1);
        const int last_column = std::min(column_of(at) + around, columns - 1);
        for (int row = std::max(row_of(at) - around, 0); row <= last_row; ++row) {
            for (int column = std::max(column_of(at) - around, 0); column <= last_column; ++column) {
                for (const Gpt& mark : bin(column, row)) {
                    if (length(mark, at) < reach) return false;
                }
            }
        }
        return true;
    }

    const PLT_lattice& lattice;
    const PLT_room& room;
    const Paper paper;
    Glim view;
    int columns = 1;
    std::vector<std::vector<Gpt>> marks;  ///< marks so far, in squares of one room
    std::vector<PLT_grid_point> found;
};

}  // namespace

std::vector<PLT_grid_point> PLT_thin(const PLT_lattice& lattice, const PLT_room& room) {
    if (!(room.width > 0.0F && room.height > 0.0F)) return {};
    return Thinner(lattice, room).find();
}

float PLT_column_distance(const PLT_lattice& lattice, int step) {
    return share(ways_along_rows(lattice, step, [](float x, float y) { return std::hypot(x, y); }), 0.5);
}

bool PLT_rows_are_level(const PLT_lattice& lattice) {
    constexpr float SLOPE = 0.268F;
    return share(ways_along_rows(lattice, 1,
                                 [](float x, float y) { return std::fabs(y) / std::max(std::fabs(x), 1e-6F); }),
                 0.9) < SLOPE;
}

}  // namespace zav
