// The compact form of map files: points as differences in whole units, each as few octets as it needs.

#include "plot/background/map_compact.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>

#include "plot/background/map_view.h"

namespace zav {
namespace {

const std::string MAGIC = "ZAVMAP1\n";
constexpr std::size_t HEADER = 22;

std::uint32_t word_at(const std::string& octets, std::size_t place, int size = 4) {
    std::uint32_t value = 0;
    for (int i = 0; i < size; ++i) value = value << 8U | static_cast<unsigned char>(octets[place + i]);
    return value;
}

float float_at(const std::string& octets, std::size_t place) { return std::bit_cast<float>(word_at(octets, place)); }

}  // namespace

bool Map_compact::open(std::FILE* file) {
    constexpr std::uint32_t FINEST = 10'000'000;
    const long start = std::ftell(file);
    octets.resize(MAGIC.size());
    octets.resize(std::fread(octets.data(), 1, octets.size(), file));
    if (octets != MAGIC) {
        std::fseek(file, start, SEEK_SET);
        return false;
    }
    std::fseek(file, 0, SEEK_END);
    const long size = std::ftell(file) - start;
    std::fseek(file, start, SEEK_SET);
    octets.resize(static_cast<std::size_t>(std::max(size, 0L)));
    octets.resize(std::fread(octets.data(), 1, octets.size(), file));
    place = MAGIC.size();
    const std::uint32_t units = octets.size() < place + 4 ? 0 : word_at(octets, place);
    // Nothing can be read in units of no size.
    place = units == 0 || units > FINEST ? octets.size() : place + 4;
    parts = std::max(units, 1U);
    return true;
}

Map_compact::Step Map_compact::next(const Map_view& view, std::vector<EarthPoint>& points) {
    points.clear();
    while (octets.size() - place >= HEADER) {
        const std::size_t count = word_at(octets, place, 2);
        std::array<float, 4> limits;  // north, south, east, west
        for (std::size_t i = 0; i < limits.size(); ++i) limits[i] = float_at(octets, place + 2 + 4 * i);
        const std::size_t length = word_at(octets, place + 18);
        place += HEADER;
        if (count == 0) return Step::end_mark;
        const std::size_t end = place + std::min(length, octets.size() - place);
        if (view.shows(limits[1], limits[0], limits[3], limits[2])) unpack(count, end, points);
        place = end;
        if (!points.empty()) return Step::record;
    }
    return Step::end_of_file;
}

bool Map_compact::number(std::size_t end, long& value) {
    constexpr int LONGEST = 35;
    unsigned long bits = 0;
    for (int shift = 0; place < end && shift < LONGEST; shift += 7) {
        const auto octet = static_cast<unsigned char>(octets[place++]);
        bits |= (octet & 127UL) << shift;
        if (octet < 128) {
            value = static_cast<long>(bits >> 1U) ^ -static_cast<long>(bits & 1U);
            return true;
        }
    }
    return false;
}

void Map_compact::unpack(std::size_t count, std::size_t end, std::vector<EarthPoint>& points) {
    long lat = 0;
    long lon = 0;
    long step_lat = 0;
    long step_lon = 0;
    while (points.size() < count && number(end, step_lat) && number(end, step_lon)) {
        lat += step_lat;
        lon += step_lon;
        points.push_back({static_cast<float>(static_cast<double>(lat) / parts),
                          static_cast<float>(static_cast<double>(lon) / parts)});
    }
}

}  // namespace zav
