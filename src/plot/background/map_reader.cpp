// Map files: records of points, in a text, a big-endian binary or a compact form.

#include "plot/background/map_reader.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <cstdlib>

#include "frame/tools.h"
#include "frame/zav.h"
#include "plot/background/map_view.h"

namespace zav {
namespace {

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

}  // namespace

Map_reader::Map_reader(std::FILE* map_file) : file(map_file) {
    swap_setup(1);
    packed = compact.open(map_file);
}

Map_reader::Step Map_reader::next(const Map_view& view, std::vector<EarthPoint>& points) {
    if (packed) return compact.next(view, points);
    Step step = read(points);
    while (step == Step::record && !is_seen(points, view)) step = read(points);
    return step;
}

Map_reader::Step Map_reader::read(std::vector<EarthPoint>& points) {
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

}  // namespace zav
