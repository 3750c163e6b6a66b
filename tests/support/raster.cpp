#include "support/raster.h"

#include <cstdio>
#include <cstdlib>

#include "support/support.h"

namespace zav::test {
namespace {

constexpr int SAME = 3;  // levels; PostScript has colours with two decimals
constexpr int NEAR = 2;  // pixels

bool same(const std::array<int, 4>& a, const std::array<int, 4>& b) {
    for (std::size_t i = 0; i < a.size(); ++i) {
        if (std::abs(a[i] - b[i]) > SAME) return false;
    }
    return true;
}

/// True if all is one colour about a pixel.
bool is_even(const Raster& raster, int x, int y) {
    const auto middle = raster.at(x, y);
    for (int v = y - NEAR; v <= y + NEAR; ++v) {
        for (int u = x - NEAR; u <= x + NEAR; ++u) {
            if (u < 0 || v < 0 || u >= raster.width || v >= raster.height) continue;
            if (!same(raster.at(u, v), middle)) return false;
        }
    }
    return true;
}

}  // namespace

std::array<int, 4> Raster::at(int x, int y) const {
    const std::size_t place =
        4 * (static_cast<std::size_t>(y) * static_cast<std::size_t>(width) + static_cast<std::size_t>(x));
    std::array<int, 4> pixel{};
    for (std::size_t i = 0; i < 4; ++i) pixel[i] = static_cast<unsigned char>(bytes.at(place + i));
    return pixel;
}

std::string Raster::hex(int x, int y) const {
    const auto p = at(x, y);
    char text[16];
    std::snprintf(text, sizeof text, "%02X%02X%02X%02X", p[0], p[1], p[2], p[3]);
    return text;
}

Raster read_raster(const std::string& file, const std::string& operations) {
    Raster raster;
    const std::string source = "convert '" + file + "' " + operations + " +repage -depth 8 ";
    std::sscanf(run_command(source + "-format '%w %h' info:").c_str(), "%d %d", &raster.width, &raster.height);
    raster.bytes = run_command(source + "rgba:-");
    return raster;
}

Raster read_sheet(const std::string& file) {
    run_command("gs -q -dSAFER -dNOPAUSE -dBATCH -sDEVICE=ppmraw -r144 -g1224x1584 -dLastPage=1 -sOutputFile='" + file +
                ".ppm' '" + file + "' 2>&1");
    return read_raster(file + ".ppm", "-rotate 90 -crop 1536x1176+24+24");
}

int differences_off_edges(const Raster& a, const Raster& b) {
    if (a.width != b.width || a.height != b.height || a.bytes.size() != b.bytes.size()) return a.width * a.height;
    int count = 0;
    for (int y = 0; y < a.height; ++y) {
        for (int x = 0; x < a.width; ++x) {
            if (!same(a.at(x, y), b.at(x, y)) && is_even(a, x, y) && is_even(b, x, y)) ++count;
        }
    }
    return count;
}

}  // namespace zav::test
