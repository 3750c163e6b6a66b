// Map database files: records of points, in a text or a big-endian binary form.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

#include "frame/tools.h"
#include "frame/zav.h"
#include "gks/gks.h"
#include "plot/background/map.h"
#include "plot/background/map_state.h"
#include "plot/background/map_view.h"

namespace zav {
namespace {

/// Points of a record that need no storage of their own.
constexpr std::size_t USUAL_POINTS = 1000;

// ---- reading

enum class Step { record, end_mark, end_of_file };

/// The records of an open file, one after the other. Both forms have a count of points, four limits and an offset
/// in front of the points; only the count matters here.
class Map_reader {
  public:
    explicit Map_reader(std::FILE* map_file);
    /// Reads the next record. One that is cut short keeps the points that are there.
    Step next(std::vector<EarthPoint>& points);

  private:
    bool text_header(long& count);
    bool binary_header(long& count);
    bool text_number(float& value);
    void text_points(std::vector<EarthPoint>& points, std::size_t count);
    void binary_points(std::vector<EarthPoint>& points, std::size_t count);

    std::FILE* file;
    bool text = false;
    bool first = true;
    std::string word;
};

Map_reader::Map_reader(std::FILE* map_file) : file(map_file) { swap_setup(1); }

Step Map_reader::next(std::vector<EarthPoint>& points) {
    long count = 0;
    bool found = false;
    if (first) {
        const long start = std::ftell(file);
        text = found = text_header(count);
        if (!text) std::fseek(file, start, SEEK_SET);
    } else if (text) {
        found = text_header(count);
    }
    if (!text) found = binary_header(count);
    first = false;
    if (!found || count < 0 || count > UINT16_MAX) return Step::end_of_file;
    if (count == 0) return Step::end_mark;
    points.clear();
    if (text) {
        text_points(points, static_cast<std::size_t>(count));
    } else {
        binary_points(points, static_cast<std::size_t>(count));
    }
    return points.empty() ? Step::end_of_file : Step::record;
}

bool Map_reader::text_number(float& value) {
    constexpr int LONGEST = 40;
    if (fgetword(file, word, LONGEST) < 0) return false;
    char* end = nullptr;
    value = std::strtof(word.c_str(), &end);
    return end != word.c_str() && *end == '\0';
}

bool Map_reader::text_header(long& count) {
    constexpr int FIELDS = 6;
    std::array<float, FIELDS> fields;
    for (float& field : fields) {
        if (!text_number(field)) return false;
    }
    // Any other value ends the file.
    count = fields[0] >= 0.0F && fields[0] <= UINT16_MAX ? std::lround(fields[0]) : -1;
    return true;
}

bool Map_reader::binary_header(long& count) {
    constexpr std::size_t HEADER = 22;
    std::array<unsigned char, HEADER> bytes;
    if (std::fread(bytes.data(), 1, HEADER, file) != HEADER) return false;
    count = bytes[0] * 256L + bytes[1];
    return true;
}

void Map_reader::text_points(std::vector<EarthPoint>& points, std::size_t count) {
    EarthPoint point;
    while (points.size() < count && text_number(point.lat) && text_number(point.lon)) points.push_back(point);
}

void Map_reader::binary_points(std::vector<EarthPoint>& points, std::size_t count) {
    static_assert(sizeof(EarthPoint) == 8);
    points.resize(count);
    points.resize(std::fread(points.data(), sizeof(EarthPoint), count, file));
    swap_longs(points.data(), points.size() * 2);
}

// ---- drawing

/// The limits that a record states may be anything; those of its points are sure.
bool is_seen(const std::vector<EarthPoint>& points, const Map_view& view) {
    MAP_limits box{points[0].lon, points[0].lon, points[0].lat, points[0].lat};
    for (const EarthPoint& point : points) {
        box.x_min = std::min(box.x_min, point.lon);
        box.x_max = std::max(box.x_max, point.lon);
        box.y_min = std::min(box.y_min, point.lat);
        box.y_max = std::max(box.y_max, point.lat);
    }
    return view.shows(box.y_min, box.y_max, box.x_min, box.x_max);
}

/// Points that follow each other on the map without a gap.
class Run {
  public:
    explicit Run(int code) : proj(code) { points.reserve(USUAL_POINTS); }
    void add(Point point);
    /// Draws what has come together and starts anew.
    void flush();

  private:
    void jump(Point point, float side);

    int proj;
    std::vector<Gpt> points;
};

void Run::flush() {
    if (points.size() > 1) {
        const int count = static_cast<int>(points.size());
        if (map_background.fill) {
            gfill_area(count, points.data());
        } else {
            gpolyline(count, points.data());
        }
    }
    points.clear();
}

/// The line leaves the map at one side, `side` 1 for the right one, and comes in at the other.
void Run::jump(Point point, float side) {
    const float width = map_full_width(proj, point.y);
    if (width > 0.0F) points.push_back({point.x + side * width, point.y});
    flush();
    points.push_back({point.x, point.y});
}

void Run::add(Point point) {
    /// Longest step along a line, in units of map space. More is a jump across the map.
    constexpr float LONGEST = 20.0F;
    const float dx = points.empty() ? 0.0F : point.x - points.back().x;
    const float dy = points.empty() ? 0.0F : point.y - points.back().y;
    if (dx < -LONGEST) {
        jump(point, 1.0F);
    } else if (dx > LONGEST) {
        jump(point, -1.0F);
    } else {
        // Lines past the antipode, which is the whole rim, can jump upward or downward too.
        if (proj == PROJ_AZIMUTHAL && std::fabs(dy) > LONGEST) flush();
        points.push_back({point.x, point.y});
    }
}

}  // namespace

int MAP_map(std::FILE* map_file) {
    if (!map_shows_earth()) return 1;
    const Map_view view;
    Map_reader reader(map_file);
    std::vector<EarthPoint> points;
    points.reserve(USUAL_POINTS);
    Run run(MAP_get_proj());
    Step step = reader.next(points);
    for (; step == Step::record; step = reader.next(points)) {
        if (!is_seen(points, view)) continue;
        for (const EarthPoint& earth : points) {
            Point point;
            if (map_place(earth.lat, earth.lon, point)) {
                run.add(point);
            } else {
                run.flush();
            }
        }
        run.flush();
    }
    return step == Step::end_mark ? 0 : -1;
}

}  // namespace zav
