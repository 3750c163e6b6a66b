// The palettes that ship: ordered to the eye, in grey, and without one of the three kinds of cones.

#include "plot/page/palette.h"

#include <algorithm>
#include <cmath>
#include <sstream>

#include "frame/resrc.h"
#include "support/support.h"
#include "support/table.h"

namespace zav {
namespace {

using Three = std::array<double, 3>;

Three times(const test::Cells& matrix, const Three& v) {
    Three result{};
    for (int i = 0; i < 9; ++i) result[i / 3] += std::stod(matrix[i + 1]) * v[i % 3];
    for (double& part : result) part = std::clamp(part, 0.0, 1.0);
    return result;
}

/// CIELAB of a colour as it is seen in a view.
Three lab(const RGB& color, const test::Cells& view, const test::Cells& xyz) {
    const auto linear = [](double c) { return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
    Three t = times(xyz, times(view, {linear(color.red), linear(color.grn), linear(color.blu)}));
    for (double& part : t) part = part > 0.008856 ? std::cbrt(part) : 7.787 * part + 16.0 / 116.0;
    return {116.0 * t[1] - 16.0, 500.0 * (t[0] - t[1]), 200.0 * (t[1] - t[2])};
}

/// Each step has to show in every view, black lines on every colour, and the lightness turns only in the middle of a
/// palette that diverges.
void expect_ordered(const std::vector<RGB>& colors, const std::string& name) {
    const auto rows = test::data_cells("plot/colour_vision.tsv");
    const bool diverges = name == "temperature" || name == "signed" || name == "temp";
    std::vector<double> rises;
    for (std::size_t i = 1; i < colors.size(); ++i) {
        for (std::size_t view = 0; view < 4; ++view) {
            const Three a = lab(colors[i - 1], rows[view], rows[4]);
            const Three b = lab(colors[i], rows[view], rows[4]);
            EXPECT_GT(std::hypot(b[0] - a[0], b[1] - a[1], b[2] - a[2]), 4.8) << name << ' ' << i << rows[view][0];
            if (view > 0) continue;
            rises.push_back(diverges && i > colors.size() / 2 ? a[0] - b[0] : b[0] - a[0]);
            EXPECT_GT(std::min(a[0], b[0]), name == "ink" ? 14.0 : 31.0) << name << ' ' << i;
        }
    }
    EXPECT_GT(*std::min_element(rises.begin(), rises.end()) * *std::max_element(rises.begin(), rises.end()), 0.0)
        << name;
}

TEST(Palettes, AreOrderedForEveryEye) {
    RES_put("file_path", test::source_dir() + "/share/zav");
    for (const char* name :
         {"batlow", "height", "wet", "heat", "viridis", "plasma", "temperature", "signed", "ink", "light"}) {
        std::vector<RGB> bands(15);
        for (std::size_t i = 0; i < bands.size(); ++i) {
            CLR_clear_table();
            const int color = PAL_color(PAL_find(name), static_cast<float>(i) / 14.0F);
            CLR_get_rgb(color, &bands[i].red, &bands[i].grn, &bands[i].blu);
        }
        expect_ordered(bands, name);
    }
    for (const char* name : {"temp", "rain", "rhum", "vort", "wind", "dbz"}) {
        std::istringstream lines(test::read_file(test::source_dir() + "/share/zav/" + name + ".lev"));
        std::vector<RGB> bands;
        for (std::string line; std::getline(lines, line);) {
            if (line[0] != '#') CLR_parse(line.substr(line.find(':') + 1), &bands.emplace_back());
        }
        EXPECT_GE(bands.size(), 9U);
        expect_ordered(bands, name);
    }
}

}  // namespace
}  // namespace zav
