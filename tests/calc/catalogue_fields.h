#pragma once

// Variable strings with functions of grids, worked out from the fields of a file as ecCodes decodes them.

#include <deque>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "calc/catalogue_truth.h"

namespace zav::truth {

/// True for points of a field, told by its number among the variables of a string, that are to be missing.
using Holes = std::function<bool(int leaf, std::size_t point)>;

/// The fields of a GRIB file by ecCodes' tools.
class Fields_of {
  public:
    explicit Fields_of(const std::string& file);
    /// The results of a string such as "h120:850:theta(temp)", whose time isn't looked at.
    std::vector<Field> worked_out(const std::string& string, const Holes& holes = {});
    /// Sets the longitude at x = 0 of all places.
    void set_plon(double plon);

  private:
    std::deque<Place> places_;
    std::map<std::string, Field> fields_;  ///< by "name:level"
};

}  // namespace zav::truth
