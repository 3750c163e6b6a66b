/// Filled bands: the polygons that a band has in one cell.

#include <algorithm>
#include <string_view>

#include "plot/contour/cont_join.h"

namespace zav {
namespace {

// Polygons are written as vertices of two characters: C0 to C3 the corners, u0 to u3 the crossings of the band's
// upper level on the sides, l0 to l3 those of its lower level.

/// How a level runs through a cell: the two sides that it crosses, or one of the two saddles. In saddle A the lines
/// cut off corners 1 and 2, in saddle B corners 3 and 0.
enum class Course { NONE, S01, S02, S03, S12, S13, S23, SADDLE_A, SADDLE_B };

struct Saddle_row {
    Course upper;
    Course lower;
    std::string_view first;
    std::string_view second;
};

constexpr std::array<Saddle_row, 20> SADDLE_BANDS{{
    {Course::SADDLE_A, Course::S01, "u1u2C3u3u0l0l1", ""},
    {Course::SADDLE_A, Course::S03, "u3u0l0l3", "u1u2C2"},
    {Course::SADDLE_A, Course::S12, "u3u0C1", "u1u2l2l1"},
    {Course::SADDLE_A, Course::S23, "u1u2l2l3u3u0C0", ""},
    {Course::SADDLE_A, Course::SADDLE_A, "u3u0l0l3", "u1u2l2l1"},
    {Course::SADDLE_A, Course::SADDLE_B, "u1u2l2l3u3u0l0l1", ""},
    {Course::SADDLE_B, Course::S01, "u2u3C3", "u0u1l1l0"},
    {Course::SADDLE_B, Course::S03, "u0u1C2u2u3l3l0", ""},
    {Course::SADDLE_B, Course::S12, "u0u1l1l2u2u3C1", ""},
    {Course::SADDLE_B, Course::S23, "u2u3l3l2", "u0u1C0"},
    {Course::SADDLE_B, Course::SADDLE_A, "u0u1l1l2u2u3l3l0", ""},
    {Course::SADDLE_B, Course::SADDLE_B, "u2u3l3l2", "u0u1l1l0"},
    {Course::S01, Course::SADDLE_A, "u0u1l1l2C3l3l0", ""},
    {Course::S03, Course::SADDLE_A, "l1l2C2", "u0u3l3l0"},
    {Course::S12, Course::SADDLE_A, "l3l0C1", "u1u2l2l1"},
    {Course::S23, Course::SADDLE_A, "u2u3l3l0C0l1l2", ""},
    {Course::S01, Course::SADDLE_B, "l2l3C3", "u0u1l1l0"},
    {Course::S03, Course::SADDLE_B, "u0u3l3l2C2l1l0", ""},
    {Course::S12, Course::SADDLE_B, "u1u2l2l3C1l0l1", ""},
    {Course::S23, Course::SADDLE_B, "l0l1C0", "u2u3l3l2"},
}};

/// Comparison of the level with the value at a corner.
enum class Test { LEVEL_ABOVE, LEVEL_NOT_BELOW, VALUE_ABOVE, VALUE_NOT_BELOW, ALWAYS };

/// A band with one level in the cell: the first row of its course whose test holds gives the polygons.
struct End_row {
    Course course;
    Test test;
    int corner;
    std::string_view first;
    std::string_view second;
};

/// The part of the cell below the upper level.
constexpr std::array<End_row, 16> LOWEST_BANDS{{
    {Course::S01, Test::LEVEL_ABOVE, 1, "u0u1C2C3C1", ""},
    {Course::S01, Test::LEVEL_NOT_BELOW, 0, "u0u1C0", ""},
    {Course::S02, Test::LEVEL_ABOVE, 1, "u0u2C3C1", ""},
    {Course::S02, Test::LEVEL_ABOVE, 2, "u0u2C2C0", ""},
    {Course::S12, Test::LEVEL_ABOVE, 0, "u1u2C3C1C0", ""},
    {Course::S12, Test::LEVEL_NOT_BELOW, 2, "u1u2C2", ""},
    {Course::S03, Test::LEVEL_ABOVE, 1, "u0u3C1", ""},
    {Course::S03, Test::LEVEL_NOT_BELOW, 0, "u0u3C3C2C0", ""},
    {Course::S13, Test::LEVEL_ABOVE, 0, "u1u3C1C0", ""},
    {Course::S13, Test::LEVEL_ABOVE, 3, "u1u3C3C2", ""},
    {Course::S23, Test::LEVEL_ABOVE, 2, "u2u3C1C0C2", ""},
    {Course::S23, Test::LEVEL_NOT_BELOW, 3, "u2u3C3", ""},
    {Course::SADDLE_A, Test::LEVEL_ABOVE, 0, "u1u2C3u3u0C0", ""},
    {Course::SADDLE_A, Test::ALWAYS, 0, "u3u0C1", "u1u2C2"},
    {Course::SADDLE_B, Test::VALUE_ABOVE, 2, "u2u3C3", "u0u1C0"},
    {Course::SADDLE_B, Test::ALWAYS, 0, "u0u1C2u2u3C1", ""},
}};

/// The part of the cell above the lower level.
constexpr std::array<End_row, 16> TOP_BANDS{{
    {Course::S01, Test::VALUE_ABOVE, 1, "l0l1C2C3C1", ""},
    {Course::S01, Test::VALUE_NOT_BELOW, 0, "l0l1C0", ""},
    {Course::S02, Test::VALUE_ABOVE, 2, "l0l2C2C0", ""},
    {Course::S02, Test::VALUE_ABOVE, 1, "l0l2C3C1", ""},
    {Course::S12, Test::VALUE_ABOVE, 0, "l1l2C3C1C0", ""},
    {Course::S12, Test::VALUE_NOT_BELOW, 2, "l1l2C2", ""},
    {Course::S03, Test::VALUE_ABOVE, 1, "l0l3C1", ""},
    {Course::S03, Test::VALUE_NOT_BELOW, 0, "l0l3C3C2C0", ""},
    {Course::S13, Test::VALUE_ABOVE, 3, "l1l3C3C2", ""},
    {Course::S13, Test::VALUE_ABOVE, 0, "l1l3C1C0", ""},
    {Course::S23, Test::VALUE_ABOVE, 2, "l2l3C1C0C2", ""},
    {Course::S23, Test::VALUE_NOT_BELOW, 3, "l2l3C3", ""},
    {Course::SADDLE_A, Test::VALUE_NOT_BELOW, 0, "l2C3l3l0C0l1", ""},
    {Course::SADDLE_A, Test::ALWAYS, 0, "l2C2l1", "l0C1l3"},
    {Course::SADDLE_B, Test::LEVEL_NOT_BELOW, 2, "l2C3l3", "l0C0l1"},
    {Course::SADDLE_B, Test::ALWAYS, 0, "l2l3C1l0l1C2", ""},
}};

constexpr std::string_view WHOLE_CELL = "C0C1C3C2";

bool holds(const End_row& row, float level) {
    const float z = cont.z[row.corner];
    // a saddle whose line runs through corner 0 leaves nothing at that corner
    const bool through_corner = row.course == Course::SADDLE_A && cont.dz[0] == 0.0F;
    switch (row.test) {
        case Test::LEVEL_ABOVE:
            return level > z && !through_corner;
        case Test::LEVEL_NOT_BELOW:
            return level >= z;
        case Test::VALUE_ABOVE:
            return z > level;
        case Test::VALUE_NOT_BELOW:
            return z >= level && !through_corner;
        case Test::ALWAYS:
            return true;
    }
    return false;
}

/// Course of the level whose sides stand in `cross` from `from` on.
Course course_of(int from, float total) {
    const int* sides = &cont.cross[from];
    if (sides[3] >= 0) return total >= SADDLE_MIDDLE ? Course::SADDLE_A : Course::SADDLE_B;
    if (sides[0] < 0 || sides[1] < 0) return Course::NONE;
    constexpr std::array<std::array<Course, 4>, 3> COURSES{{
        {Course::NONE, Course::S01, Course::S02, Course::S03},
        {Course::NONE, Course::NONE, Course::S12, Course::S13},
        {Course::NONE, Course::NONE, Course::NONE, Course::S23},
    }};
    return sides[0] < 3 ? COURSES[sides[0]][sides[1]] : Course::NONE;
}

bool is_saddle(Course course) { return course == Course::SADDLE_A || course == Course::SADDLE_B; }

/// A polygon being put together.
class Polygon {
  public:
    void add(Cont_place::Kind kind, int number) {
        if (count_ < CONT_VERTICES) places_[count_++] = {kind, static_cast<unsigned char>(number)};
    }
    void add_upper(int side) { add(Cont_place::UPPER, side); }
    void add_lower(int side) { add(Cont_place::LOWER, side); }
    void add_corner(int corner) { add(Cont_place::CORNER, corner); }

    void send() {
        if (count_ < 3) return;
        if (cont.join != nullptr) return cont.join->add_piece(places_.data(), count_);
        std::array<Gpt, CONT_VERTICES + 1> points;
        std::transform(places_.begin(), places_.begin() + count_, points.begin(), cont_point);
        points[count_] = points[0];
        CONT_draw_lines(CONT_FILL, count_ + 1, points.data());
    }

  private:
    std::array<Cont_place, CONT_VERTICES> places_;
    int count_ = 0;
};

void send_written(std::string_view vertices) {
    Polygon polygon;
    for (std::size_t i = 0; i + 1 < vertices.size(); i += 2) {
        const int number = vertices[i + 1] - '0';
        switch (vertices[i]) {
            case 'u':
                polygon.add_upper(number);
                break;
            case 'l':
                polygon.add_lower(number);
                break;
            default:
                polygon.add_corner(number);
                break;
        }
    }
    polygon.send();
}

template <std::size_t N>
bool send_end_band(const std::array<End_row, N>& table, Course course, float level) {
    const auto fits = [course, level](const End_row& row) { return row.course == course && holds(row, level); };
    const auto row = std::find_if(table.begin(), table.end(), fits);
    if (row == table.end()) return false;
    send_written(row->first);
    send_written(row->second);
    return true;
}

/// A way along the cell's perimeter. Each step leads over a corner to the next side.
struct Walk {
    struct Step {
        int corner;
        int side;
    };
    std::array<Step, 4> steps;  ///< by the side that it leaves
};
constexpr Walk COUNTER_CLOCKWISE{{{{1, 3}, {0, 0}, {2, 1}, {3, 2}}}};
constexpr Walk CLOCKWISE{{{{0, 1}, {2, 2}, {3, 3}, {1, 0}}}};

bool has_lower(int side) { return cont.cross[4] == side || cont.cross[5] == side; }

/// True if values fall along `side` in counter-clockwise direction.
bool falls(int side) {
    const int end = COUNTER_CLOCKWISE.steps[side].corner;
    const int start = CLOCKWISE.steps[side].corner;
    return cont.z[end] < cont.z[start];
}

/// Way from the end of the upper segment, on side `from`, that meets the lower segment before coming back to the
/// upper segment's start, on side `back`.
const Walk& way_to_lower(int from, int back) {
    if (has_lower(from)) return falls(from) ? COUNTER_CLOCKWISE : CLOCKWISE;
    for (int side = COUNTER_CLOCKWISE.steps[from].side; side != from; side = COUNTER_CLOCKWISE.steps[side].side) {
        if (has_lower(side) && side == back) return falls(side) ? CLOCKWISE : COUNTER_CLOCKWISE;
        if (has_lower(side)) return COUNTER_CLOCKWISE;
        if (side == back) return CLOCKWISE;
    }
    return CLOCKWISE;
}

/// The band between two segments: the crossings of both, and the corners that lie between them.
void send_band_between_segments() {
    const int start = cont.cross[0];
    const int end = cont.cross[1];
    const Walk& way = way_to_lower(end, start);
    Polygon polygon;
    polygon.add_upper(start);
    polygon.add_upper(end);
    int side = end;
    for (int i = 0; i < 4 && !has_lower(side); ++i) {
        polygon.add_corner(way.steps[side].corner);
        side = way.steps[side].side;
    }
    polygon.add_lower(side);
    side = cont.cross[4] == side ? cont.cross[5] : cont.cross[4];
    polygon.add_lower(side);
    for (int i = 0; i < 4 && side != start; ++i) {
        polygon.add_corner(way.steps[side].corner);
        side = way.steps[side].side;
    }
    polygon.send();
}

void send_saddle_band(Course upper, Course lower) {
    const auto fits = [upper, lower](const Saddle_row& row) { return row.upper == upper && row.lower == lower; };
    const auto row = std::find_if(SADDLE_BANDS.begin(), SADDLE_BANDS.end(), fits);
    if (row == SADDLE_BANDS.end()) return;
    send_written(row->first);
    send_written(row->second);
}

void use_pattern(int pattern) {
    if (pattern < 0) return;
    gset_fill_int_style(pattern == 0 ? GSOLID : GPAT);
    if (pattern > 0) gset_fill_style_ind(pattern);
}

}  // namespace

void cont_set_fill_attributes() {
    const Gattribs& band = cont.fill_attrib[cont.con_off];
    if (band.color != CLR_NONE) gset_fill_colr_ind(band.color);
    use_pattern(band.fill_pat >= 0 ? band.fill_pat : cont.ln_cont_attr.fill_pat);
}

void cont_fill_band(float level) {
    const Course upper = course_of(0, cont.total);
    if (upper == Course::NONE) return;
    const Course lower = course_of(4, cont.ptotal);
    if (lower == Course::NONE) {
        const bool drawn = send_end_band(LOWEST_BANDS, upper, level);
        if (!drawn && (upper == Course::S02 || upper == Course::S13)) cont_forget_crossing();
    } else if (is_saddle(upper) || is_saddle(lower)) {
        send_saddle_band(upper, lower);
    } else {
        send_band_between_segments();
    }
}

bool cont_fill_top(float level, float nlevel, const Cont_range& range) {
    if (nlevel < range.high) return false;
    if (range.low >= level) {
        cont.run = {level, nlevel};
        send_written(WHOLE_CELL);
        return true;
    }
    if (cont.cross[4] == NOT_EVALUATED) return false;
    send_end_band(TOP_BANDS, course_of(0, cont.total), level);
    return true;
}

}  // namespace zav
