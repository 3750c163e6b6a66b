// Pages of the kernel: tests/data/kernel_pages.txt line by line, and random drawings against a second working-out of
// windows, viewports and clips. What a metafile records and what the redraw store keeps gives the same page again.

#include <algorithm>
#include <cmath>
#include <random>

#include "gks/gks_obj.h"
#include "gks/kernel_scene.h"
#include "gks/meta/gks_meta.h"

namespace zav {
namespace {

using Lines = std::vector<std::string>;

struct Drawing {
    std::string name, words;
    std::string items;  ///< of a text metafile
    Lines page;
};

std::vector<Drawing> drawings() {
    std::vector<Drawing> all;
    std::istringstream file(test::read_file(test::source_dir() + "/tests/data/kernel_pages.txt"));
    bool on_page = false;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with("== ")) {
            const std::size_t end = line.find(' ', 3);
            all.push_back({line.substr(3, end - 3), end < line.size() ? line.substr(end + 1) : "", "", {}});
            on_page = false;
        } else if (line == "--") {
            on_page = true;
        } else if (on_page) {
            all.back().page.push_back(line);
        } else if (!all.empty()) {
            all.back().items += line + "\n";
        }
    }
    return all;
}

class Pages : public test::KernelTest {
  protected:
    void play(const std::string& items) {
        const std::string meta = dir.write("played.meta", "ZAVMETA\n" + items);
        test::capture([&] { gread_metafile(meta); });
    }
    /// What a page holds behind its first clip.
    static Lines body(const std::string& file) {
        Lines lines = test::body_lines(file);
        const auto end = std::find(lines.begin(), lines.end(), "%%End of plot");
        return {lines.begin() + 8, end};
    }
    Lines page_of(const std::string& items, const std::string& words) {
        plain_paper();
        EXPECT_EQ(open("a.ps" + words), 0);
        play(items);
        close();
        return body("a.ps");
    }
    std::string recorded(const std::string& items) {
        EXPECT_EQ(open("record.meta", GWS_META), 0);
        play(items);
        close();
        return test::read_file("record.meta");
    }
    std::string stored(const std::string& items) {
        EXPECT_EQ(open("a.ps"), 0);
        gset_redraw(1);
        play(items);
        const test::EnvSetting name("METAOUT", "store.meta");
        const int width = gget_window_width();
        const int cache = gget_cache();
        test::capture([] { EXPECT_EQ(gobj_print_meta(), 0); });
        EXPECT_EQ(gget_redraw(), 1);
        EXPECT_EQ(gget_cache(), cache);
        EXPECT_EQ(gget_win_type(), GWS_PS);
        EXPECT_EQ(gget_window_width(), width);
        close();
        return test::read_file("store.meta");
    }
};

class KernelPages : public Pages, public ::testing::WithParamInterface<Drawing> {};

TEST_P(KernelPages, HoldTheseLinesHoweverTheyAreReached) {
    const Drawing& drawing = GetParam();
    EXPECT_EQ(page_of(drawing.items, drawing.words), drawing.page);
    EXPECT_EQ(page_of(recorded(drawing.items), drawing.words), drawing.page) << "from a metafile";
    EXPECT_EQ(page_of(stored(drawing.items), drawing.words), drawing.page) << "from the redraw store";
}

INSTANTIATE_TEST_SUITE_P(, KernelPages, ::testing::ValuesIn(drawings()),
                         [](const auto& given) { return given.param.name; });

/// A second working-out of the chain of windows, with doubles and of lines alone.
class Chain {
  public:
    explicit Chain(unsigned seed) : chance_(seed) {
        window_.fill({0, 1, 0, 1});
        view_ = window_;
    }

    /// Adds a random item to `items` and what it draws to `page`, each line a list of numbers.
    void step(std::string* items, std::vector<std::vector<double>>* page) {
        const int tran = pick(0, 5);
        const int kind = pick(0, 9);
        if (kind == 0) {
            window_[tran] = box(-100, 100, true);
            *items += "WIN " + std::to_string(tran) + text(window_[tran]);
        } else if (kind == 1) {
            view_[tran] = box(0, 1, false);
            *items += "VP " + std::to_string(tran) + text(view_[tran]);
            if (tran == current_) clip(page);
        } else if (kind == 2) {
            *items += "TR " + std::to_string(tran) + "\n";
            if (tran == current_) return;
            current_ = tran;
            clip(page);
        } else {
            line(items, page);
        }
    }

  private:
    struct Box {
        double x0, x1, y0, y1;
    };

    int pick(int low, int high) { return std::uniform_int_distribution<int>(low, high)(chance_); }
    /// Limits in quarters, apart, and turned round now and then.
    Box box(int low, int high, bool turned) {
        const auto side = [&] {
            const double a = pick(4 * low, 4 * high - 1) / 4.0;
            const double b = pick(static_cast<int>(4 * a) + 1, 4 * high) / 4.0;
            return turned && pick(0, 3) == 0 ? std::pair{b, a} : std::pair{a, b};
        };
        const auto [x0, x1] = side();
        const auto [y0, y1] = side();
        return {x0, x1, y0, y1};
    }
    static std::string text(const Box& b) {
        std::ostringstream out;
        out << ' ' << b.x0 << ' ' << b.y0 << ' ' << b.x1 << ' ' << b.y1 << '\n';
        return out.str();
    }
    void clip(std::vector<std::vector<double>>* page) const {
        const Box& v = view_[current_];
        page->push_back({575 * v.x0 - 0.1, 575 * v.y0 - 0.1, 575 * v.x0 - 0.1, 575 * v.y1 + 0.1, 575 * v.x1 + 0.1,
                         575 * v.y1 + 0.1, 575 * v.x1 + 0.1, 575 * v.y0 - 0.1});
    }
    void line(std::string* items, std::vector<std::vector<double>>* page) {
        const Box& w = window_[current_];
        const Box& v = view_[current_];
        const int count = pick(2, 6);
        std::ostringstream item;
        item.precision(12);
        std::vector<double> drawn;
        bool left = true, right = true, below = true, above = true;
        for (int i = 0; i < count; ++i) {
            const double x = w.x0 + (w.x1 - w.x0) * pick(-8, 12) / 4.0;
            const double y = w.y0 + (w.y1 - w.y0) * pick(-8, 12) / 4.0;
            item << ' ' << x << ',' << y;
            left = left && x < std::min(w.x0, w.x1);
            right = right && x > std::max(w.x0, w.x1);
            below = below && y < std::min(w.y0, w.y1);
            above = above && y > std::max(w.y0, w.y1);
            drawn.push_back(575 * (v.x0 + (x - w.x0) / (w.x1 - w.x0) * (v.x1 - v.x0)));
            drawn.push_back(575 * (v.y0 + (y - w.y0) / (w.y1 - w.y0) * (v.y1 - v.y0)));
        }
        *items += "PL " + std::to_string(count) + item.str() + "\n";
        if (!left && !right && !below && !above) page->push_back(drawn);
    }

    std::mt19937 chance_;
    std::array<Box, 6> window_, view_;
    int current_ = 0;
};

/// The paths of a page as lists of numbers.
std::vector<std::vector<double>> paths_of(const Lines& lines) {
    std::vector<std::vector<double>> paths;
    for (const std::string& line : lines) {
        double x = 0;
        double y = 0;
        if (line == "np") paths.emplace_back();
        if (std::sscanf(line.c_str(), "%lf %lf %*[ml]%*[vn]", &x, &y) != 2) continue;
        paths.back().insert(paths.back().end(), {x, y});
    }
    return paths;
}

TEST_F(Pages, WindowsViewportsAndClipsAreAsWorkedOutASecondTime) {
    for (unsigned seed = 1; seed <= 12; ++seed) {
        Chain chain(seed);
        std::string items;
        std::vector<std::vector<double>> wanted;
        for (int i = 0; i < 60; ++i) chain.step(&items, &wanted);
        const Lines page = page_of(items, "");
        const auto drawn = paths_of(page);
        ASSERT_EQ(drawn.size(), wanted.size()) << seed;
        for (std::size_t i = 0; i < drawn.size(); ++i) {
            ASSERT_EQ(drawn[i].size(), wanted[i].size()) << seed;
            for (std::size_t k = 0; k < drawn[i].size(); ++k) ASSERT_NEAR(drawn[i][k], wanted[i][k], 0.02) << seed;
        }
        EXPECT_EQ(page_of(recorded(items), ""), page) << seed;
        EXPECT_EQ(page_of(stored(items), ""), page) << seed;
    }
}

}  // namespace
}  // namespace zav
