#include "gks/gks_pixels.h"

#include "gks/gks_tran.h"

namespace zav {

Gpixels::Gpixels(Gint num_pt, const Gpt* array_pt) {
    const auto count = static_cast<std::size_t>(num_pt);
    if (count > few_.size()) many_.resize(count);
    Gxpoint* points = many_.empty() ? few_.data() : many_.data();
    for (std::size_t i = 0; i < count; ++i) points[i] = {gpixel(xW_p(array_pt[i].x)), gpixel(yW_p(array_pt[i].y))};
}

}  // namespace zav
