#pragma once

#include <algorithm>
#include <string>
#include <vector>

namespace zav::test {

/// How a run of the program ended.
struct Outcome {
    int status = -1;  ///< exit status, 1000 + the signal that ended it
    std::string out;
    std::string err;
};

/// Runs the program in `folder` with options written as in a shell and `input` on standard input. Resources come from
/// the options alone; the lookup files are those of the source tree. A run that takes longer than a minute is ended.
/// `before` is a shell command that sets the stage, such as a limit.
Outcome run_program(const std::string& folder, const std::string& options, const std::string& input = "",
                    const std::string& before = "true");

/// A point on the page, in PostScript points before the page's own turn and shift.
struct PagePoint {
    double x = 0.0;
    double y = 0.0;
};
using PagePath = std::vector<PagePoint>;

/// A text and the box that its strokes take.
struct PageText {
    std::string str;
    PagePoint low{1e9, 1e9};
    PagePoint high{-1e9, -1e9};

    void add(const PagePoint& point) {
        low = {std::min(low.x, point.x), std::min(low.y, point.y)};
        high = {std::max(high.x, point.x), std::max(high.y, point.y)};
    }
    /// True when the boxes have a point in common, with `gap` between them.
    bool meets(const PageText& other, double gap = 0.0) const {
        return low.x < other.high.x + gap && other.low.x < high.x + gap && low.y < other.high.y + gap &&
               other.low.y < high.y + gap;
    }
};

/// What a PostScript page holds.
struct Page {
    int pages = 0;                ///< "showpage"s
    std::vector<PagePath> lines;  ///< stroked paths, those of texts too
    std::vector<PagePath> fills;  ///< filled paths
    std::vector<PageText> texts;
};

/// Reads a page that the program wrote.
Page read_page(const std::string& file);

/// All pieces of the lines, two points each.
std::vector<PagePath> segments_of(const Page& page);

/// The text of a page without its date line.
std::string page_without_date(const std::string& file);

/// True if Ghostscript renders the file without a word of complaint.
bool renders(const std::string& file);

}  // namespace zav::test
