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
using Matrix = std::array<Three, 3>;

/// Normal sight, then protanopia, deuteranopia, tritanopia (Machado, Oliveira and Fernandes 2009, severity 1).
constexpr std::array<Matrix, 4> VIEWS{{
    {{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}},
    {{{0.152286, 1.052583, -0.204868}, {0.114503, 0.786281, 0.099216}, {-0.003882, -0.048116, 1.051998}}},
    {{{0.367322, 0.860646, -0.227968}, {0.280085, 0.672501, 0.047413}, {-0.011820, 0.042940, 0.968881}}},
    {{{1.255528, -0.076749, -0.178779}, {-0.078411, 0.930809, 0.147602}, {0.004733, 0.691367, 0.303900}}},
}};
/// Linear sRGB to X, Y, Z over those of white.
constexpr Matrix XYZ{{{0.433953, 0.376219, 0.189828}, {0.212673, 0.715152, 0.072175}, {0.017756, 0.109478, 0.872766}}};

Three times(const Matrix& m, const Three& v) {
    Three result{};
    for (int i = 0; i < 3; ++i) result[i] = std::clamp(m[i][0] * v[0] + m[i][1] * v[1] + m[i][2] * v[2], 0.0, 1.0);
    return result;
}

/// CIELAB of a colour as it is seen in a view.
Three lab(const RGB& color, const Matrix& view) {
    const auto linear = [](double c) { return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4); };
    Three t = times(XYZ, times(view, {linear(color.red), linear(color.grn), linear(color.blu)}));
    for (double& part : t) part = part > 0.008856 ? std::cbrt(part) : 7.787 * part + 16.0 / 116.0;
    return {116.0 * t[1] - 16.0, 500.0 * (t[0] - t[1]), 200.0 * (t[1] - t[2])};
}

/// Changes of direction of the lightness; each step has to show in every view.
int turns_of(const std::vector<RGB>& colors, double step, const std::string& name) {
    int turns = 0;
    double last = 0.0;
    for (std::size_t i = 1; i < colors.size(); ++i) {
        for (const Matrix& view : VIEWS) {
            const Three a = lab(colors[i - 1], view);
            const Three b = lab(colors[i], view);
            EXPECT_GT(std::hypot(b[0] - a[0], b[1] - a[1], b[2] - a[2]), step) << name << ' ' << i;
        }
        const double rise = lab(colors[i], VIEWS[0])[0] - lab(colors[i - 1], VIEWS[0])[0];
        turns += last * rise < 0.0 ? 1 : 0;
        last = rise;
        EXPECT_GT(lab(colors[i], VIEWS[0])[0], name == "ink" ? 14.0 : 31.0) << name << ": black lines have to show";
    }
    return turns;
}

TEST(Palettes, AreOrderedForEveryEye) {
    RES_put("file_path", test::source_dir() + "/share/zav");
    for (const char* name :
         {"batlow", "height", "wet", "heat", "viridis", "plasma", "temperature", "signed", "ink", "light"}) {
        const Palette palette = PAL_find(name);
        ASSERT_EQ(palette.size(), 17U) << name;
        std::vector<RGB> bands(15);
        for (std::size_t i = 0; i < 15; ++i) {
            RGB& band = bands[i];
            CLR_clear_table();
            CLR_get_rgb(PAL_color(palette, static_cast<float>(i) / 14.0F), &band.red, &band.grn, &band.blu);
        }
        const std::string kind = name;
        EXPECT_EQ(turns_of(bands, 4.8, kind), kind == "temperature" || kind == "signed" ? 1 : 0) << name;
    }
    for (const char* name : {"temp", "rain", "rhum", "vort", "wind", "dbz"}) {
        std::istringstream lines(test::read_file(test::source_dir() + "/share/zav/" + name + ".lev"));
        std::vector<RGB> bands;
        for (std::string line; std::getline(lines, line);) {
            RGB band;
            if (line[0] != '#' && CLR_parse(line.substr(line.find(':') + 1), &band)) bands.push_back(band);
        }
        EXPECT_GE(bands.size(), 9U);
        EXPECT_EQ(turns_of(bands, 5.0, name), std::string(name) == "temp" ? 1 : 0) << name;
    }
}

}  // namespace
}  // namespace zav
