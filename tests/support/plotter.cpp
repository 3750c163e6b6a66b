#include "support/plotter.h"

#include <algorithm>
#include <iterator>
#include <regex>
#include <sstream>

#include "support/table.h"

namespace zav::test {
namespace {

using Numbers = std::vector<double>;

class Reader {
  public:
    Plot read(const std::string& text) {
        static const std::regex part("\033E\033%1B\033&l1O\n|\033%0A\033E|\n|([A-Z]{2})( ?-?[0-9.]+(,-?[0-9.]+)*)?;");
        std::size_t at = 0;
        for (std::smatch found; at < text.size(); at += static_cast<std::size_t>(found.length())) {
            const auto from = text.begin() + static_cast<std::ptrdiff_t>(at);
            const bool known = std::regex_search(from, text.end(), found, part, std::regex_constants::match_continuous);
            if (!known || !take(found)) {
                plot_.fault = "at " + std::to_string(at) + ": " + text.substr(at, 30);
                return plot_;
            }
        }
        if (open_ || language_) plot_.fault = "the file ends within a page";
        return plot_;
    }

  private:
    bool take(const std::smatch& found) {
        if (found[1].length() > 0) {
            Numbers numbers;
            for (const std::string& number : split(found[2], ',')) numbers.push_back(std::stod(number));
            return open_ ? obey(found[1], found[2], numbers) : found[1] == "IN" && begin();
        }
        if (found.length() == 1) return true;
        language_ = !language_;
        return !open_ && language_ == (found.length() > 8);
    }

    bool begin() {
        open_ = true;
        pen_ = polygon_ = opaque_ = lined_ = false;
        style_ = {PlotItem::LINE, {}, 0, 0.35, "", false};
        shade_ = 0;
        plot_.pages.push_back({language_, 0, {}});
        return true;
    }

    /// False for what is no command, or not in its place.
    bool obey(const std::string& name, const std::string& rest, const Numbers& n) {
        std::vector<PlotItem>& items = plot_.pages.back().items;
        if (name == "SP" && n.size() < 2) {
            pen_ = !n.empty();
        } else if (name == "PG" && n.empty() && !pen_) {
            open_ = false;
        } else if (!pen_) {
            return false;
        } else if (name == "TR" && n == Numbers{0}) {
            opaque_ = true;
        } else if (name == "RO" && n.size() == 1) {
            plot_.pages.back().turn = static_cast<int>(n[0]);
        } else if (name == "PW" && n.size() == 1) {
            style_.width = n[0];
        } else if (name == "LT") {
            style_.dashes = rest;
        } else if (name == "SV" && (n.empty() || (n.size() == 2 && n[0] == 1))) {
            style_.grey = n.empty() ? 0 : 1 - n[1] / 100;
        } else if (name == "FT" && (n == Numbers{1} || (n.size() == 2 && n[0] == 10))) {
            shade_ = n.size() == 1 ? 0 : 1 - n[1] / 100;
        } else if (name == "IW" && n.size() == 4 && n[0] <= n[2] && n[1] <= n[3]) {
            items.push_back({PlotItem::CLIP, {{{n[0], n[1]}, {n[2], n[3]}}}, 0, 0, "", false});
        } else if ((name == "PU" || name == "PD") && n.size() == 2) {
            return go(name == "PU", {n[0], n[1]}, items);
        } else if (name == "PM" && n.size() == 1 && polygon_ == (n[0] != 0)) {
            polygon_ = n[0] != 2;
            if (n[0] == 0) rings_ = {{place_}};
            if (n[0] == 1) rings_.emplace_back();
        } else if (name == "FP" && !polygon_ && n.size() < 2 && opaque_) {
            items.push_back({PlotItem::AREA, rings_, shade_, 0, "", n == Numbers{1}});
        } else {
            return name == "PA" && n.empty();
        }
        return true;
    }

    bool go(bool up, const PlotPoint& to, std::vector<PlotItem>& items) {
        const bool sound = !polygon_ || !up || rings_.back().empty();
        if (polygon_) {
            rings_.back().push_back(to);
        } else if (!up) {
            if (!lined_) {
                items.push_back(style_);
                items.back().paths = {{place_}};
            }
            items.back().paths[0].push_back(to);
        }
        lined_ = !up && !polygon_;
        place_ = to;
        return sound;
    }

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

Plot read_plot(const std::string& text) { return Reader().read(text); }

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
