#include "support/plotter.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <sstream>

namespace zav::test {
namespace {

using Numbers = std::vector<double>;

class Reader {
  public:
    explicit Reader(const std::string& text) : text_(text) {}

    Plot read() {
        while (at_ < text_.size() && plot_.fault.empty()) {
            if (text_[at_] == '\n') {
                ++at_;
            } else if (text_[at_] == '\033') {
                escape();
            } else {
                command();
            }
        }
        if (plot_.fault.empty() && (open_ || language_)) fault("the file ends within a page");
        return plot_;
    }

  private:
    void fault(const std::string& what) {
        if (plot_.fault.empty()) plot_.fault = what + " at " + std::to_string(at_) + ": " + text_.substr(at_, 30);
    }

    bool take(const std::string& part) {
        if (text_.compare(at_, part.size(), part) != 0) return false;
        at_ += part.size();
        return true;
    }

    void escape() {
        if (!open_ && !language_ && take("\033E\033%1B\033&l1O\n")) {
            language_ = true;
        } else if (!open_ && language_ && take("\033%0A\033E")) {
            language_ = false;
        } else {
            fault("escape sequence");
        }
    }

    void command() {
        const std::size_t end = text_.find(';', at_);
        if (end == std::string::npos || end < at_ + 2) return fault("command");
        const std::string name = text_.substr(at_, 2);
        std::string rest = text_.substr(at_ + 2, end - at_ - 2);
        if (rest.find_first_not_of("0123456789.,- ") != std::string::npos) return fault("parameters");
        Numbers numbers;
        for (std::size_t start = 0; start < rest.size();) {
            char* stop = nullptr;
            numbers.push_back(std::strtod(rest.c_str() + start, &stop));
            start = static_cast<std::size_t>(stop - rest.c_str());
            if (start < rest.size() && rest[start] != ',') return fault("number");
            ++start;
        }
        obey(name, rest, numbers);
        at_ = end + 1;
    }

    void obey(const std::string& name, const std::string& rest, const Numbers& n) {
        if (name == "IN" && n.empty() && !open_) return begin();
        if (!open_) return fault("outside of a page");
        if (name == "SP" && n == Numbers{1}) return static_cast<void>(pen_ = true);
        if (name == "SP" && n.empty()) return static_cast<void>(pen_ = false);
        if (name == "PG" && n.empty() && !pen_) return static_cast<void>(open_ = false);
        if (!pen_) return fault("without a pen");
        if (name == "PA" && n.empty()) return;
        if (name == "TR" && n == Numbers{0}) return static_cast<void>(opaque_ = true);
        if (name == "RO" && n.size() == 1) return static_cast<void>(page().turn = static_cast<int>(n[0]));
        if (name == "PW" && n.size() == 1) return static_cast<void>(style_.width = n[0]);
        if (name == "LT") return static_cast<void>(style_.dashes = rest);
        if (name == "SV" && (n.empty() || (n.size() == 2 && n[0] == 1))) {
            return static_cast<void>(style_.grey = n.empty() ? 0 : 1 - n[1] / 100);
        }
        if (name == "FT" && n == Numbers{1}) return static_cast<void>(shade_ = 0);
        if (name == "FT" && n.size() == 2 && n[0] == 10) return static_cast<void>(shade_ = 1 - n[1] / 100);
        draw(name, n);
    }

    void draw(const std::string& name, const Numbers& n) {
        if (name == "IW" && n.size() == 4 && n[0] <= n[2] && n[1] <= n[3]) {
            page().items.push_back({PlotItem::CLIP, {{{n[0], n[1]}, {n[2], n[3]}}}, 0, 0, "", false});
        } else if ((name == "PU" || name == "PD") && n.size() == 2) {
            polygon_ ? vertex(name == "PU", {n[0], n[1]}) : stroke(name == "PU", {n[0], n[1]});
        } else if (name == "PM" && n == Numbers{0} && !polygon_) {
            polygon_ = true;
            rings_ = {{place_}};
        } else if (name == "PM" && n == Numbers{1} && polygon_) {
            rings_.emplace_back();
        } else if (name == "PM" && n == Numbers{2} && polygon_) {
            polygon_ = false;
        } else if (name == "FP" && !polygon_ && n.size() < 2) {
            if (!opaque_) return fault("white doesn't cover");
            if (rings_.back().empty()) rings_.pop_back();
            page().items.push_back({PlotItem::AREA, rings_, shade_, 0, "", n == Numbers{1}});
        } else {
            fault("command");
        }
    }

    void begin() {
        open_ = true;
        pen_ = polygon_ = opaque_ = lined_ = false;
        style_ = {PlotItem::LINE, {}, 0, 0.35, "", false};
        shade_ = 0;
        plot_.pages.push_back({language_, 0, {}});
    }

    void stroke(bool up, const PlotPoint& to) {
        if (!up) {
            if (!lined_) {
                page().items.push_back(style_);
                page().items.back().paths = {{place_}};
            }
            page().items.back().paths[0].push_back(to);
        }
        lined_ = !up;
        place_ = to;
    }

    void vertex(bool up, const PlotPoint& to) {
        if (up && !rings_.back().empty()) fault("pen up within a ring");
        rings_.back().push_back(to);
        place_ = to;
        lined_ = false;
    }

    PlotPage& page() { return plot_.pages.back(); }

    const std::string& text_;
    std::size_t at_ = 0;
    Plot plot_;
    bool language_ = false;  ///< in the wrapper's HP-GL/2
    bool open_ = false;      ///< on a page
    bool pen_ = false, polygon_ = false, opaque_ = false;
    bool lined_ = false;  ///< the last command went on with a line
    PlotItem style_;
    double shade_ = 0;
    PlotPoint place_;
    std::vector<PlotPath> rings_;
};

std::string path_text(const std::vector<PlotPath>& paths) {
    std::ostringstream text;
    for (const PlotPath& path : paths) {
        const char* action = " moveto\n";
        for (const PlotPoint& point : path) {
            text << point.x << ' ' << point.y << action;
            action = " lineto\n";
        }
        if (path.size() > 2) text << "closepath\n";
    }
    return text.str();
}

}  // namespace

std::vector<PlotItem> PlotPage::of_kind(PlotItem::Kind kind) const {
    std::vector<PlotItem> found;
    std::copy_if(items.begin(), items.end(), std::back_inserter(found),
                 [kind](const PlotItem& item) { return item.kind == kind; });
    return found;
}

Plot read_plot(const std::string& text) { return Reader(text).read(); }

std::string plot_as_postscript(const PlotPage& page, double units) {
    std::ostringstream text;
    text << "%!PS\n90 rotate 18 -594 translate " << 1 / units << " dup scale -10 -10 translate\n";
    for (const PlotItem& item : page.items) {
        text << item.grey << " setgray newpath\n";
        if (item.kind == PlotItem::CLIP) {
            const PlotPoint &low = item.paths[0][0], &high = item.paths[0][1];
            text << "initclip\n" << path_text({{low, {low.x, high.y}, high, {high.x, low.y}}}) << "clip\n";
        } else if (item.kind == PlotItem::AREA) {
            text << path_text(item.paths) << (item.nonzero ? "fill\n" : "eofill\n");
        } else {
            text << 0.33 * units << " setlinewidth\n";
            for (std::size_t i = 1; i < item.paths[0].size(); ++i) {
                text << path_text({{item.paths[0][i - 1], item.paths[0][i]}});
            }
            text << "stroke\n";
        }
    }
    text << "showpage\n";
    return text.str();
}

int winding(const std::vector<PlotPath>& rings, const PlotPoint& place) {
    int turns = 0;
    for (const PlotPath& ring : rings) {
        for (std::size_t i = 0; i < ring.size(); ++i) {
            const PlotPoint &a = ring[i], &b = ring[(i + 1) % ring.size()];
            if ((a.y <= place.y) == (b.y <= place.y)) continue;
            const double x = a.x + (place.y - a.y) / (b.y - a.y) * (b.x - a.x);
            if (x > place.x) turns += b.y > a.y ? 1 : -1;
        }
    }
    return turns;
}

}  // namespace zav::test
