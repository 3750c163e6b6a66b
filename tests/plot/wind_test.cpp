// Barbs, arrows, tracks, weather symbols and station circles as a page of PostScript: the strokes are read back.

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>

#include "frame/resrc.h"
#include "gks/gks.h"
#include "gks/zavgks.h"
#include "map/maptran.h"
#include "plot/vecttool.h"
#include "plot/windbarb.h"
#include "plot/wx_symb.h"
#include "support/plot_page.h"

namespace zav {
namespace {

using test::Page;
using test::Stroke;

struct Speed_case {
    float speed;
    int flags;
    int full;
    bool half;
};

class Feathers : public testing::TestWithParam<Speed_case> {};

TEST_P(Feathers, ReadTheSpeed) {
    const Speed_case& c = GetParam();
    Page page;
    ASSERT_EQ(WIND_barb(50, 50, 0, c.speed, 20, 0), 0);
    const std::vector<Stroke> strokes = page.finish();
    int flags = 0;
    int full = 0;
    int half = 0;
    for (const Stroke& s : strokes) {
        if (s.filled) flags++;
        if (s.filled || s.pts.size() != 2) continue;
        const float across = std::fabs(s.pts[1].x - s.pts[0].x);
        if (std::fabs(across - 10) < 0.1F) full++;
        if (std::fabs(across - 5) < 0.1F) half++;
    }
    EXPECT_EQ(flags, c.flags);
    EXPECT_EQ(full, c.full);
    EXPECT_EQ(half, c.half ? 1 : 0);
}

INSTANTIATE_TEST_SUITE_P(Table, Feathers,
                         testing::Values(Speed_case{2.9F, 0, 0, false}, Speed_case{3, 0, 0, true},
                                         Speed_case{7, 0, 0, true}, Speed_case{8, 0, 1, false},
                                         Speed_case{15, 0, 1, true}, Speed_case{48, 1, 0, false},
                                         Speed_case{50, 1, 0, false}, Speed_case{65, 1, 1, true},
                                         Speed_case{305, 6, 0, false}));

}  // namespace
}  // namespace zav
