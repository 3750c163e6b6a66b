#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "frame/resrc.h"
#include "frame/string.h"
#include "plot/contour/cont_support.h"

namespace zav::test {
namespace {

double total_area() {
    double sum = 0;
    for (const auto& area : sent.areas) sum += area_of(area.pts);
    return sum;
}

/// Share of the cell below `level`: its lines cut it into pieces, of which those with lower corners count. Worked out
/// from the corners in their order about the cell, 0, 1, 3, 2. Not a number for a saddle that rounding decides.
double area_below(const std::array<float, 4>& z, double level) {
    constexpr std::array<int, 4> ROUND{0, 1, 3, 2};
    constexpr std::array<double, 4> X{0, 1, 0, 1};
    constexpr std::array<double, 4> Y{0, 0, 1, 1};
    std::vector<Gpt> piece;
    std::array<double, 4> part{};  // of each side of the way round that lies before the crossing
    int crossings = 0;
    for (int k = 0; k < 4; ++k) {
        const int a = ROUND[k];
        const int b = ROUND[(k + 1) % 4];
        if (z[a] < level) piece.push_back({static_cast<float>(X[a]), static_cast<float>(Y[a])});
        if ((z[a] < level) == (z[b] < level)) continue;
        const double t = part[k] = (level - z[a]) / (static_cast<double>(z[b]) - z[a]);
        piece.push_back({static_cast<float>(X[a] + t * (X[b] - X[a])), static_cast<float>(Y[a] + t * (Y[b] - Y[a]))});
        crossings++;
    }
    if (crossings < 4) {
        if (!piece.empty()) piece.push_back(piece[0]);
        return area_of(piece);
    }
    const double from_0_and_3 = part[0] + (1 - part[3]) + (1 - part[1]) + part[2];
    if (std::fabs(from_0_and_3 - 2.0) < 1e-5) return std::nan("");
    const bool cut_1_and_2 = from_0_and_3 >= 2.0;
    const double pieces = cut_1_and_2 ? (1 - part[0]) * part[1] + (1 - part[2]) * part[3]
                                      : part[0] * (1 - part[3]) + (1 - part[1]) * part[2];
    return z[cut_1_and_2 ? 1 : 0] < level ? pieces / 2 : 1 - pieces / 2;
}

TEST(ContFill, EachBandHasItsShareOfTheCell) {
    std::mt19937 random(11);
    std::uniform_real_distribution<float> any(0, 10);
    std::uniform_int_distribution<int> whole(0, 5);  // often exactly on a level
    for (int n = 0; n < 20000; ++n) {
        std::array<float, 4> z{};
        for (float& value : z) value = n % 2 == 0 ? any(random) : 2.0F * static_cast<float>(whole(random));
        GRD_report grid = make_grid(2, 2, {z[2], z[3], z[0], z[1]});
        start_contours(CONT_FILL);
        const float interval = n % 3 == 0 ? 1.0F : 2.0F;
        set_interval(0, interval, 11);
        const bool listed = n % 5 == 0;
        const float first = n % 10 == 5 ? 2.5F : 0.0F;  // what is below the first level of a list stays open
        std::vector<float> levels(6, first);
        for (int i = 1; i < 6; ++i) levels[i] = levels[i - 1] + interval;
        if (listed) set_levels(levels);
        if (n % 7 == 3) cont.min_cut = any(random);
        if (n % 11 == 4) cont.max_cut = std::max(any(random), cont.min_cut + 0.1F);
        cont.color_num = 11;
        const int off = n % 13 == 5 ? 2 : 11;
        cont.fill_attrib[off].color = -1;
        draw(grid);
        std::array<double, 11> shares{};
        for (const auto& area : sent.areas) shares[area.band] += area_of(area.pts);
        const bool whole_cell = cont.min_cut == FMISS && cont.max_cut == FMISS && first == 0.0F && off == 11;
        ASSERT_TRUE(!whole_cell || std::fabs(total_area() - 1.0) < 1e-4) << n;
        if (z[0] == z[1] && z[0] == z[2] && z[0] == z[3]) {
            EXPECT_LE(sent.areas.size(), 1U);
        }
        // A side on a level may fall to the band on either hand.
        if (z[0] == z[1] || z[0] == z[2] || z[2] == z[3] || z[1] == z[3]) continue;
        for (int band = 0; band < (listed ? 6 : 11); ++band) {
            double low = first + band * interval;
            double high = listed && band == 5 ? 100.0 : low + interval;
            if (cont.min_cut != FMISS) low = std::max<double>(low, cont.min_cut);
            if (cont.max_cut != FMISS) high = std::min<double>(high, cont.max_cut);
            const double want = high > low && band != off ? area_below(z, high) - area_below(z, low) : 0.0;
            if (std::isnan(want)) continue;
            ASSERT_NEAR(shares[band], want, 1e-4) << z[0] << ' ' << z[1] << ' ' << z[2] << ' ' << z[3] << " band "
                                                  << band << " cuts " << cont.min_cut << ' ' << cont.max_cut;
        }
    }
}

TEST(ContValue, NumbersAtGridPoints) {
    RES_put("color_label", "1");
    GRD_report grid = make_grid(4, 3, {1, 2, 3, 4, 5, FMISS, 7, 8, 9, 10, 11, 12.5F});
    const auto values = [&grid](int x_skip, int y_skip, const char* form, float off) {
        start_contours(CONT_VALUE);
        cont.grid_max = 12;
        CONT_set_skip(x_skip, y_skip);
        CONT_set_plot_offset(off / MAP_get_vert(), 2 * off / MAP_get_vert());
        cont.num_form = form;
        draw(grid);
        std::string text;
        for (const auto& t : sent.texts) text += text_format("%s@%.4g,%.4g ", t.str.c_str(), t.pt.x, t.pt.y);
        return text;
    };
    EXPECT_EQ(values(1, 1, "", 0), "1@0,2 2@1,2 3@2,2 4@3,2 5@0,1 7@2,1 8@3,1 9@0,0 10@1,0 11@2,0 12@3,0 ");
    EXPECT_EQ(values(3, 2, "%.1f", 1), "1.0@1,4 4.0@4,4 9.0@1,2 12.5@4,2 ");
    EXPECT_EQ(values(9, 9, "%s%n", 0), "9@0,0 ");
}

}  // namespace
}  // namespace zav::test
