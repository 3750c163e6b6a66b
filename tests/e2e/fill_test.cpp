// A colour-filled page, pixel by pixel: nothing in the data area is left unpainted, and the colour at each grid point
// is that of its value's band.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <fstream>
#include <sstream>

#include "e2e/program.h"
#include "support/support.h"

namespace zav::test {
namespace {

constexpr double DPI = 150.0;
constexpr int COLUMNS = 89;
constexpr int ROWS = 45;

using Colour = std::array<int, 3>;

struct Picture {
    int width = 0;
    int height = 0;
    std::string bytes;

    Colour at(int column, int row) const {
        const std::size_t i = (static_cast<std::size_t>(row) * width + column) * 3;
        return {static_cast<unsigned char>(bytes[i]), static_cast<unsigned char>(bytes[i + 1]),
                static_cast<unsigned char>(bytes[i + 2])};
    }
    /// Colour at a point of a landscape page on letter paper: turned, with a margin of a quarter inch.
    Colour at(PagePoint point) const {
        const double x = 594.0 - point.y;
        const double y = point.x + 18.0;
        return at(static_cast<int>(x * DPI / 72.0), height - 1 - static_cast<int>(y * DPI / 72.0));
    }
};

Picture render(const std::string& page, const TempDir& dir) {
    run_command("gs -q -dSAFER -dNOPAUSE -dBATCH -sDEVICE=ppmraw -r150 -sOutputFile=" + dir.file("page.ppm") + " " +
                page);
    std::istringstream file(read_file(dir.file("page.ppm")));
    Picture picture;
    std::string line;
    std::getline(file, line);
    while (file.peek() == '#') std::getline(file, line);
    int most = 0;
    file >> picture.width >> picture.height >> most;
    file.get();
    picture.bytes.assign(std::istreambuf_iterator<char>(file), {});
    return picture;
}

struct Band {
    double level;
    Colour colour;
};

std::vector<Band> read_bands(const std::string& file) {
    std::vector<Band> bands;
    std::istringstream lines(read_file(file));
    std::string line;
    while (std::getline(lines, line)) {
        Band band{};
        unsigned red = 0;
        unsigned green = 0;
        unsigned blue = 0;
        if (std::sscanf(line.c_str(), "%lf:#%2x%2x%2x", &band.level, &red, &green, &blue) != 4) continue;
        band.colour = {static_cast<int>(red), static_cast<int>(green), static_cast<int>(blue)};
        bands.push_back(band);
    }
    return bands;
}

int apart(const Colour& a, const Colour& b) {
    return std::max({std::abs(a[0] - b[0]), std::abs(a[1] - b[1]), std::abs(a[2] - b[2])});
}

TEST(Fill, EveryPixelIsPaintedInItsBandsColour) {
    if (!have_program("grib_get_data")) GTEST_SKIP() << "ecCodes isn't installed";
    const std::string source = test::source_dir() + "/samples/26011512_wave.grb2";
    const TempDir dir;
    const Outcome outcome = run_program(dir.path(),
                                        "-me warn -ft h24 -le 850 -va temp:C:cf:cof=temp.lev -cocl off "
                                        "-dr data,bord -de p,fill.ps,color " +
                                            source);
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    const Page page = read_page(dir.file("fill.ps"));
    const auto border = std::find_if(page.lines.begin(), page.lines.end(), [](const PagePath& l) {
        return l.size() == 5 && l[2].x - l[0].x > 200.0 && l[2].y - l[0].y > 100.0;
    });
    ASSERT_NE(border, page.lines.end());
    const PagePoint low = (*border)[0];
    const PagePoint high = (*border)[2];
    const Picture picture = render(dir.file("fill.ps"), dir);
    ASSERT_GT(picture.bytes.size(), 1000000U);

    int unpainted = 0;
    for (double x = low.x + 1.0; x < high.x - 1.0; x += 0.48) {
        for (double y = low.y + 1.0; y < high.y - 1.0; y += 0.48)
            unpainted += picture.at({x, y}) == Colour{255, 255, 255};
    }
    EXPECT_EQ(unpainted, 0);

    const std::vector<Band> bands = read_bands(test::source_dir() + "/share/zav/temp.lev");
    ASSERT_GT(bands.size(), 10U);
    std::istringstream values(run_command("grib_get_data -w shortName=t,level=850,step=24 " + source));
    std::string line;
    std::getline(values, line);
    int checked = 0;
    for (int j = 0; j < ROWS; j++) {
        for (int i = 0; i < COLUMNS && std::getline(values, line); i++) {
            double celsius = 0.0;
            ASSERT_EQ(std::sscanf(line.c_str(), "%*f%*f%lf", &celsius), 1);
            celsius -= 273.15;
            const auto above =
                std::find_if(bands.begin(), bands.end(), [&](const Band& b) { return b.level > celsius; });
            if (i == 0 || j == 0 || i == COLUMNS - 1 || j == ROWS - 1 || above == bands.begin()) continue;
            const double to_level = above == bands.end() ? 1.0 : above->level - celsius;
            if (std::min(to_level, celsius - std::prev(above)->level) < 0.3) continue;
            const PagePoint place = {low.x + (high.x - low.x) * i / (COLUMNS - 1),
                                     high.y - (high.y - low.y) * j / (ROWS - 1)};
            ASSERT_LE(apart(picture.at(place), std::prev(above)->colour), 3)
                << "column " << i << " row " << j << ": " << celsius << " at " << place.x << " " << place.y << " "
                << picture.at(place)[0] << " " << picture.at(place)[1] << " " << picture.at(place)[2];
            checked++;
        }
    }
    EXPECT_GT(checked, 2000);
}

}  // namespace
}  // namespace zav::test
