// Marks on fine grids: as near on paper as their room lets them, and no nearer.

#include "plot/page/plt_thin.h"

#include <cmath>
#include <memory>

#include "plot/contour/cont.h"
#include "plot/meta_plot.h"
#include "plot/page/plt_paper.h"
#include "support/table.h"

namespace zav {
namespace {

class Thin : public test::MetaPlot {
  protected:
    /// Distance in rooms.
    static float apart(const PLT_room& room, const Gpt& a, const Gpt& b) {
        const float x = std::fabs(a.x - b.x) / room.width;
        const float y = std::fabs(a.y - b.y) / room.height;
        return room.box ? std::max(x, y) : std::hypot(x, y);
    }
    static bool within(const Glim& view, const Gpt& pt, const Gpt& edge) {
        return pt.x >= view.x_min + edge.x && pt.x <= view.x_max - edge.x && pt.y >= view.y_min + edge.y &&
               pt.y <= view.y_max - edge.y;
    }
};

/// Over real grids with holes in their data: no two marks touch, and no point with data is far from a mark. Where the
/// grid's points stand farther apart than the marks, all are there.
TEST_F(Thin, MarksStandApartAndLeaveNoHole) {
    for (const auto& row : test::data_cells("plot/thinned_grids.tsv")) {
        Domain domain;
        DOM_decode(row[0], &domain);
        for (const PLT_room& room : {PLT_room{8.5F, 8.5F}, PLT_room{9, 5, true, {2, 1}, {4, 2}}}) {
            plot(row[1], [&] {
                GRD_report grid;
                grid.domain = domain;
                ASSERT_EQ(CONT_place_points(grid), 0);
                const auto has_data = [](int i, int j) { return std::sin(i * 0.1) * std::sin(j * 0.07) < 0.6; };
                const auto place = [&](int i, int j, Gpt* pt) {
                    *pt = {CONT_grid_x()[j * domain.nx + i], CONT_grid_y()[j * domain.nx + i]};
                    return pt->x != FMISS;
                };
                const PLT_lattice lattice{domain.nx, domain.ny, place, has_data};
                const auto middle = [&](int i, int j) {
                    Gpt pt;
                    if (place(i, j, &pt)) pt = PLT_on_paper(pt);
                    return Gpt{pt.x + room.shift.x, pt.y + room.shift.y};
                };
                const Glim view = PLT_paper_view();
                std::vector<Gpt> marks;
                for (const PLT_grid_point& point : PLT_thin(lattice, room)) {
                    EXPECT_TRUE(has_data(point.i, point.j));
                    marks.push_back(middle(point.i, point.j));
                    EXPECT_TRUE(within(view, marks.back(), room.frame)) << row[1];
                    for (std::size_t k = 0; k + 1 < marks.size(); ++k) {
                        EXPECT_GE(apart(room, marks[k], marks.back()), 0.979F) << row[0] << ' ' << row[1];
                    }
                }
                for (int k = 0; k<domain.nx * domain.ny; k += domain.nx> 500 ? 41 : 1) {
                    const int i = k % domain.nx;
                    const int j = k / domain.nx;
                    const Gpt at = middle(i, j);
                    if (!has_data(i, j) || !within(view, at, room.frame)) continue;
                    float nearest = INFINITY;
                    for (const Gpt& mark : marks) nearest = std::min(nearest, apart(room, mark, at));
                    EXPECT_LE(nearest, row[2] == "all" ? 0.0F : 1.6F) << row[0] << ' ' << row[1] << ' ' << k;
                }
            });
        }
    }
}

/// Where rows lie closer than marks, whole rows of a curved grid are left out: circles about the pole with marks on
/// them are always a room apart.
TEST_F(Thin, RowsOfCurvedGridsAreTakenWhole) {
    Domain domain;
    DOM_decode("ll,50,0,360,60,1,0.5", &domain);
    plot("ps:90:0:60,90,0,81,81,1", [&] {
        GRD_report grid;
        grid.domain = domain;
        ASSERT_EQ(CONT_place_points(grid), 0);
        const auto place = [&](int i, int j, Gpt* pt) {
            *pt = {CONT_grid_x()[j * domain.nx + i], CONT_grid_y()[j * domain.nx + i]};
            return pt->x != FMISS;
        };
        const PLT_room room{8.5F, 8.5F};
        std::vector<int> marks(domain.ny, 0);
        const PLT_lattice lattice{domain.nx, domain.ny, place, [](int, int) { return true; }};
        for (const PLT_grid_point& point : PLT_thin(lattice, room)) marks[point.j]++;
        float last = -INFINITY;
        int rows = 0;
        for (int j = 0; j < domain.ny; ++j) {
            if (marks[j] == 0) continue;
            Gpt side;
            Gpt other;
            ASSERT_TRUE(place(0, j, &side) && place(180, j, &other));
            side = PLT_on_paper(side);
            other = PLT_on_paper(other);
            const float radius = std::hypot(side.x - other.x, side.y - other.y) / 2;
            EXPECT_GT(radius - last, 0.97F * room.width) << j;
            last = radius;
            ++rows;
        }
        EXPECT_GT(rows, 4);
    });
}

}  // namespace
}  // namespace zav
