#pragma once

#include <string>

namespace zav {

/// Draws a raw data file, with an optional column and format behind its name, over the map; `label` 1 also sets the
/// plot's labels from the file. Result 0.
int RAW_plot_file(const std::string& file, int label);

}  // namespace zav
