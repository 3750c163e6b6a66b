#pragma once

#include "map/region.h"

namespace zav {

/// Columns of one turn about the globe, if a latitude-longitude or Mercator grid goes round it; 0 for a grid that
/// doesn't. A grid that repeats its first meridian at its end has one column more than this.
int GRD_cycle(const Domain& domain);

/// Column of a grid of `cycle` columns a turn that stands for `column`, which may lie any number of turns away.
int GRD_turned_column(long long column, int cycle);

/// Degrees of longitude from one column of such a grid to the next; 0 for grids on other projections.
double GRD_column_degrees(const Domain& domain);

/// The domain of a grid that goes round the globe with its last column beside the first again, so that a map of it has
/// no gap. Other domains stay.
Domain GRD_close_domain(const Domain& domain);

}  // namespace zav
