#pragma once

/// Private to the kernel: points on their way to a display.

#include <array>
#include <vector>

#include "gks/gks.h"
#include "gks/x11/gks_x11.h"

namespace zav {

/// World points as pixels. Few points, the common case, take no memory of their own.
class Gpixels {
  public:
    Gpixels(Gint num_pt, const Gpt* array_pt);
    const Gxpoint* data() const { return many_.empty() ? few_.data() : many_.data(); }

  private:
    std::array<Gxpoint, 10> few_;
    std::vector<Gxpoint> many_;
};

}  // namespace zav
