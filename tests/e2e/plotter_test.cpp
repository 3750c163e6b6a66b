// Plots of the program against its PostScript pages: line by line, area by area, and as other programs draw them.

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "e2e/program.h"
#include "support/plotter.h"
#include "support/raster.h"
#include "support/support.h"
#include "support/table.h"

namespace zav::test {
namespace {

const std::string SAMPLE = source_dir() + "/samples/26011512_wave.grb2";

// Plots of 7.5 by 7.5 inches, whose windows are squares on both devices: 7612 plotter units and 540 points.
const std::string SQUARE = " -ge 750x750 ";
constexpr double UNITS = 7611.0 / 539.0;  ///< plotter units of a point

class Plotter : public ::testing::TestWithParam<Case> {
  protected:
    /// Runs the program for a device; what it said if it didn't end well.
    std::string trouble(const std::string& device) const {
        const Outcome run = run_program(dir.path(), "-me warn " + GetParam().text(1) + SQUARE + "-de " + device + " " +
                                                        source_dir() + "/" + GetParam().text(2));
        return run.status == 0 ? run.err : "status " + std::to_string(run.status) + ": " + run.err;
    }
    PlotPage plotted(const std::string& words) const {
        EXPECT_EQ(trouble("h,x.hpgl" + words), "");
        const Plot plot = read_plot(read_file(dir.file("x.hpgl")));
        EXPECT_EQ(plot.fault, "");
        EXPECT_EQ(plot.pages.size(), 1U);
        return plot.pages.empty() ? PlotPage{} : plot.pages[0];
    }

    TempDir dir;
};

/// Pieces of lines in plotter units.
std::vector<PlotPath> pieces_of(const PlotPage& page) {
    std::vector<PlotPath> pieces;
    for (const PlotItem& line : page.of_kind(PlotItem::LINE)) {
        for (std::size_t i = 1; i < line.paths[0].size(); ++i) {
            pieces.push_back({line.paths[0][i - 1], line.paths[0][i]});
        }
    }
    return pieces;
}

std::vector<PlotPath> pieces_of(const std::string& postscript) {
    std::vector<PlotPath> pieces;
    for (const PagePath& piece : segments_of(read_page(postscript))) {
        PlotPath path;
        for (const PagePoint& point : piece) path.push_back({10 + UNITS * point.x, 10 + UNITS * point.y});
        pieces.push_back(path);
    }
    return pieces;
}

TEST_P(Plotter, DrawsTheLinesAndAreasOfThePage) {
    EXPECT_EQ(trouble("p,x.ps"), "");
    const PlotPage page = plotted("");
    const std::vector<PlotPath> drawn = pieces_of(page);
    const std::vector<PlotPath> wanted = pieces_of(dir.file("x.ps"));
    ASSERT_EQ(drawn.size(), wanted.size());
    ASSERT_GT(drawn.size(), 500U);
    // Half a unit of rounding here and half a hundredth of a point there.
    const double most = 0.5 + 0.005 * UNITS + 0.03;
    for (std::size_t i = 0; i < drawn.size(); ++i) {
        for (const std::size_t end : {0, 1}) {
            ASSERT_NEAR(drawn[i][end].x, wanted[i][end].x, most) << i;
            ASSERT_NEAR(drawn[i][end].y, wanted[i][end].y, most) << i;
        }
    }
    if (page.of_kind(PlotItem::AREA).empty()) return;
    write_file(dir.file("y.ps"), plot_as_postscript(page, UNITS));
    ASSERT_TRUE(renders(dir.file("y.ps")));
    EXPECT_EQ(differences_off_edges(read_sheet(dir.file("y.ps")), read_sheet(dir.file("x.ps"))), 0);
}

INSTANTIATE_TEST_SUITE_P(, Plotter, ::testing::ValuesIn(cases("gks/hpgl_charts")),
                         [](const auto& given) { return given.param.text(0); });

class PlotterRun : public TempDirTest {};

bool is_dark(const Raster& raster, int x, int y) {
    return x >= 0 && y >= 0 && x < raster.width && y < raster.height && raster.at(x, y)[0] < 128;
}

/// Dark pixels of `a` with none of `b` within `reach` pixels of their place.
int lonely_pixels(const Raster& a, const Raster& b, int reach) {
    int count = 0;
    for (int y = 0; y < a.height; ++y) {
        for (int x = 0; x < a.width; ++x) {
            if (!is_dark(a, x, y)) continue;
            bool found = false;
            for (int v = y - reach; v <= y + reach && !found; ++v) {
                for (int u = x - reach; u <= x + reach && !found; ++u) found = is_dark(b, u, v);
            }
            count += found ? 0 : 1;
        }
    }
    return count;
}

/// Another reader of the language, which knows no shades, draws all lines where Ghostscript draws those of the page.
TEST_F(PlotterRun, IsReadByAnotherProgram) {
    for (const char* chart : {"hght:gpm:ln:in=60", "hght:gpm:ln:in=120,wind<uwnd,vwnd>[kt:strm]"}) {
        const std::string options = "-me warn -ft h24 -le 500 -va '" + std::string(chart) + "'" + SQUARE + "-de ";
        ASSERT_EQ(run_program(dir.path(), options + "h,x.hpgl,nopcl " + SAMPLE).status, 0);
        ASSERT_EQ(run_program(dir.path(), options + "p,x.ps " + SAMPLE).status, 0);
        const std::string log =
            run_command("cd " + dir.path().string() + " && hp2xx -t -m pbm -d 100 -f h.pbm x.hpgl 2>&1 </dev/null");
        EXPECT_NE(log.find("Unexpected event(s):  0"), std::string::npos) << log;
        run_command("gs -q -dSAFER -dNOPAUSE -dBATCH -sDEVICE=pgmraw -r100 -g850x1100 -sOutputFile=" +
                    dir.file("x.pgm") + " " + dir.file("x.ps"));
        const Raster plot = read_raster(dir.file("h.pbm"), "-trim");
        const Raster page = read_raster(dir.file("x.pgm"), "-rotate 90 -trim");
        constexpr int reach = 2;
        EXPECT_EQ(lonely_pixels(plot, page, reach), 0) << chart;
        EXPECT_EQ(lonely_pixels(page, plot, reach), 0) << chart;
    }
}

TEST_F(PlotterRun, TellsOutputThatCannotBeWritten) {
    const std::string chart = "-me warn -ft h24 -le 500 -va hght:gpm:ln:in=60 -de ";
    const Outcome full = run_program(dir.path(), chart + "h,/dev/full " + SAMPLE);
    EXPECT_EQ(full.status, 25);
    EXPECT_EQ(full.err, "ghpgl_close_file: Output is not complete: /dev/full: No space left on device\n");
    write_file(dir.file("file"), "");
    const Outcome none = run_program(dir.path(), chart + "h,file/x.hpgl " + SAMPLE);
    EXPECT_EQ(none.status, 4);
    EXPECT_NE(none.err.find("gopen_ws: unable to open HPGL file\n"), std::string::npos) << none.err;
    // On a disk that fills up only the first blocks fit.
    const Outcome cut = run_program(dir.path(), chart + "h,x.hpgl " + SAMPLE, "", "ulimit -f 8; trap '' XFSZ");
    EXPECT_EQ(cut.status, 25);
    EXPECT_NE(cut.err.find("ghpgl_close_file: Output is not complete: x.hpgl"), std::string::npos) << cut.err;
}

TEST_F(PlotterRun, TellsFaultyWordsAndPlotsWithoutThem) {
    const std::string chart = "-me warn -ft h24 -le 500 -va hght:gpm:ln:in=60 ";
    ASSERT_EQ(run_program(dir.path(), chart + "-de h,plain.hpgl " + SAMPLE).status, 0);
    for (const Case& row : cases("gks/hpgl_faulty_words")) {
        const Outcome run = run_program(dir.path(), chart + "-de h,x.hpgl" + row.text(0) + " " + SAMPLE);
        EXPECT_EQ(run.status, row.number(2)) << row.text(0);
        EXPECT_EQ(run.err, "gopen_ws: " + row.text(1) + "\n");
        EXPECT_TRUE(read_file(dir.file("x.hpgl")) == read_file(dir.file("plain.hpgl"))) << row.text(0);
    }
}

TEST_F(PlotterRun, GoesToStandardOutputAlone) {
    const std::string chart = "-me mess -va hght:gpm:ln:in=60 -le 500 ";
    const Outcome run = run_program(dir.path(), chart + "-ft h00,h12,h24 -de h,-,nopcl " + SAMPLE);
    EXPECT_EQ(run.status, 0);
    const Plot plot = read_plot(run.out);
    EXPECT_EQ(plot.fault, "");
    ASSERT_EQ(plot.pages.size(), 3U);
    EXPECT_NE(run.err.find("Created HPGL file\n"), std::string::npos);
    // Each page is what it is alone.
    const Outcome alone = run_program(dir.path(), chart + "-ft h00 -de h,-,nopcl " + SAMPLE);
    const Plot one = read_plot(alone.out);
    ASSERT_EQ(one.pages.size(), 1U);
    EXPECT_EQ(pieces_of(one.pages[0]), pieces_of(plot.pages[0]));
}

}  // namespace
}  // namespace zav::test
