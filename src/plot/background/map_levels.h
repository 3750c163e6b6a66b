#pragma once

#include <string>
#include <vector>

namespace zav {

/// Kilometres on the earth of a millimetre on paper, in the middle of the map.
float map_scale();

/// The files to draw for the map file `path`: those of the level of detail that suits the map's scale, by the table
/// "map.lup" in the same folder. A file that the table doesn't name, and every file in the letter way, is its own.
std::vector<std::string> map_levels(const std::string& path);

}  // namespace zav
