#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "map/maptran.h"
#include "plot/background/map_compact.h"

namespace zav {

/// The records of an open map file, one after the other. Text and binary form have a count of points, four limits and
/// an offset in front of the points; only the count matters there.
class Map_reader {
  public:
    using Step = Map_compact::Step;

    explicit Map_reader(std::FILE* map_file);
    /// Reads the next record of which `view` shows something. One that is cut short keeps the points that are there.
    Step next(const Map_view& view, std::vector<EarthPoint>& points);

  private:
    Step read(std::vector<EarthPoint>& points);
    bool text_header(long& count);
    bool binary_header(long& count);
    bool text_number(float& value);
    void text_points(std::vector<EarthPoint>& points, std::size_t count);
    void binary_points(std::vector<EarthPoint>& points, std::size_t count);

    std::FILE* file;
    Map_compact compact;
    bool packed = false;  ///< the file is in the compact form
    bool text = false;
    bool first = true;
    std::string word;
};

}  // namespace zav
