#pragma once

/// Titles side by side above or below a plot: kept apart, and on the page. Private to plot/page.

#include <array>
#include <string>
#include <vector>

namespace zav {

/// Texts at the left, in the centre and at the right of one line.
using PLT_title_line = std::array<std::string, 3>;

/// What holds for the lines above a plot, or for those below it, in page coordinates.
struct PLT_title_space {
    std::array<float, 3> anchor{};  ///< left end, middle and right end of the texts
    float x_min = 0.0F;             ///< limits of the texts
    float x_max = 0.0F;
};

/// True when the texts of a line, `height` high, stand apart within the limits.
bool PLT_title_fits(const PLT_title_line& line, const PLT_title_space& space, float height);

/// The lines that a row of titles takes, from the top down: one when they fit, with long words shortened if need be,
/// else several with the words as they are. Only a word longer than its line may leave the limits.
std::vector<PLT_title_line> PLT_title_lines(const PLT_title_line& row, const PLT_title_space& space, float height);

}  // namespace zav
