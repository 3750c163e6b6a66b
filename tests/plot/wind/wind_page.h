#pragma once

/// Pages of the wind layer read back from a text metafile, and the strokes that its rules ask for.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <iomanip>
#include <sstream>
#include <vector>

#include "frame/flag.h"
#include "frame/resrc.h"
#include "frame/zav.h"
#include "gks/zavgks.h"
#include "plot/meta_plot.h"
#include "plot/sequence/plt_plot.h"
#include "plot/wind/vect_state.h"
#include "support/support.h"

namespace zav {

/// A line or, `filled`, an area.
struct Stroke {
    bool filled = false;
    std::vector<Gpt> pts;
};

inline std::vector<Stroke> read_strokes(const std::string& page) {
    std::vector<Stroke> strokes;
    std::istringstream words(page);
    std::string key;
    while (words >> key) {
        int count = 0;
        if ((key != "PL" && key != "FA") || !(words >> count)) continue;
        Stroke stroke{key == "FA", {}};
        Gpt pt;
        char comma = 0;
        for (int k = 0; k < count && words >> pt.x >> comma >> pt.y; ++k) stroke.pts.push_back(pt);
        strokes.push_back(stroke);
    }
    return strokes;
}

/// What a page should show, by the rules of each element.
struct Page {
    std::vector<Stroke> strokes;

    static Gpt point(double x, double y) { return {static_cast<float>(x), static_cast<float>(y)}; }
    /// The kernel takes what meets the window.
    void add(bool filled, const std::vector<Gpt>& pts) {
        if (gpts_in_win(static_cast<Gint>(pts.size()), pts.data()) != 0) strokes.push_back({filled, pts});
    }
    void barb(double x, double y, double dir, double spd, double size, double offset, bool southern) {
        if (spd <= 0) return;
        const double u = std::sin(dir * M_PI / 180);
        const double v = std::cos(dir * M_PI / 180);
        const auto at = [&](double a, double b) {
            const double across = southern ? -b : b;
            return point(x + size * (a * u + across * v), y + size * (a * v - across * u));
        };
        add(false, {point(x + offset * u, y + offset * v), at(1, 0)});
        double rest = std::min(spd, 300.0) + 2.01;  // values are rounded at 2 units up
        double b = 0;
        for (; rest >= 50; rest -= 50, b += 0.12) {
            const std::vector<Gpt> flag{at(1 - b, 0), at(1 - b, 0.5), at(0.88 - b, 0), at(1 - b, 0)};
            add(true, flag);
            add(false, flag);
        }
        if (b == 0 && rest >= 10) b = -0.12;  // the first full barb stands at the tip, behind flags one step is empty
        for (; rest >= 10; rest -= 10, b += 0.12) add(false, {at(0.88 - b, 0), at(1 - b, 0.5)});
        if (rest >= 5) add(false, {at(0.88 - b, 0), at(0.94 - b, 0.25)});
    }
};

/// The same strokes in the same order; positions as far as single precision goes.
inline void expect_same(const std::vector<Stroke>& drawn, const std::vector<Stroke>& wanted) {
    for (std::size_t k = 0; k < std::min(drawn.size(), wanted.size()); ++k) {
        ASSERT_EQ(drawn[k].filled, wanted[k].filled) << k;
        ASSERT_EQ(drawn[k].pts.size(), wanted[k].pts.size()) << k;
        for (std::size_t i = 0; i < drawn[k].pts.size(); ++i) {
            const Gpt& a = drawn[k].pts[i];
            const Gpt& b = wanted[k].pts[i];
            ASSERT_NEAR(std::hypot(a.x - b.x, a.y - b.y), 0, 1e-4) << k << ' ' << i << ": " << a.x << ' ' << a.y;
        }
    }
    EXPECT_EQ(drawn.size(), wanted.size());
}

/// The strokes of a page in tests/data, as this program drew it when it agreed, stroke by stroke, with a second
/// working-out of the rules. With ZAV_WRITE_PAGES set the page is written anew: look at it before it is kept.
inline void expect_page(const std::vector<Stroke>& drawn, const std::string& name) {
    const std::string file = test::source_dir() + "/tests/data/wind_" + name + ".txt";
    if (std::getenv("ZAV_WRITE_PAGES") == nullptr) return expect_same(drawn, read_strokes(test::read_file(file)));
    std::ostringstream page;
    page << std::setprecision(9);
    for (const Stroke& stroke : drawn) {
        page << (stroke.filled ? "FA " : "PL ") << stroke.pts.size();
        for (const Gpt& pt : stroke.pts) page << ' ' << pt.x << ',' << pt.y;
        page << '\n';
    }
    ASSERT_TRUE(test::write_file(file, page.str()));
    GTEST_SKIP() << "written anew: " << file;
}

class Wind : public test::TempDirTest {
  protected:
    void SetUp() override {
        RES_put("file_path", dir.path().string() + "/");
        FLAG_reset(MISS);
        FLAG_resetplot(1);
        RES_put("color_cont", "1");
        RES_put("plot_scale", "1");
        for (const char* name : {"con_base", "con_interval"}) RES_put(name, "");
        test::fresh_plot_control();
        vect = {};
        PLT_set_letter(true);
        test::capture([this] {
            RES_put("device", "meta," + dir.file("out"));
            ASSERT_EQ(PLT_open(1.0F), 0);
        });
    }
    void TearDown() override {
        PLT_set_letter(false);
        if (gchk_graphics() != 0) test::capture([] { PLT_close(); });
    }
    /// What `action` draws.
    std::vector<Stroke> drawn(const std::function<void()>& action) {
        action();
        test::capture([] { PLT_close(); });
        return read_strokes(test::read_file(dir.file("out")));
    }
};

}  // namespace zav
