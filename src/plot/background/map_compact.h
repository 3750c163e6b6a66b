#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include "map/maptran.h"

namespace zav {

class Map_view;

/// The compact form of map files. Records that the map doesn't show are passed over by their limits, which can be
/// trusted in this form.
class Map_compact {
  public:
    enum class Step { record, end_mark, end_of_file };

    /// True if the file, read from its begin, is in this form; it is then in memory. Otherwise the position is kept.
    bool open(std::FILE* file);
    /// The next record of which `view` shows something. One that is cut short keeps the points that are there.
    Step next(const Map_view& view, std::vector<EarthPoint>& points);

  private:
    bool number(std::size_t end, long& value);
    void unpack(std::size_t count, std::size_t end, std::vector<EarthPoint>& points);

    std::string octets;
    std::size_t place = 0;
    double parts = 1.0;  ///< units to a degree
};

}  // namespace zav
