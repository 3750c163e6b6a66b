// Whole pages: nothing outside the paper in any orientation, size or colour; layers and panels with their own labels.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <iterator>
#include <sstream>

#include "e2e/program.h"
#include "support/support.h"

namespace zav::test {
namespace {

const std::string SAMPLE = test::source_dir() + "/samples/26011512_wave.grb2";

struct Box {
    double x0 = 0.0, y0 = 0.0, x1 = 0.0, y1 = 0.0;
};

/// What Ghostscript finds painted on the page, in points. An area that the clip lets nothing through isn't painted.
Box painted(const std::string& file, const std::string& paper) {
    const std::string said =
        run_command("gs -q -dSAFER -dNOPAUSE -dBATCH -sDEVICE=bbox " + paper + " " + file + " 2>&1");
    const std::size_t at = said.find("%%HiResBoundingBox:");
    Box box;
    if (at != std::string::npos) {
        std::sscanf(said.c_str() + at + 19, "%lf %lf %lf %lf", &box.x0, &box.y0, &box.x1, &box.y1);
    }
    return box;
}

/// Texts of a page in the order in which they are drawn.
std::vector<std::string> texts_of(const std::string& file) {
    std::vector<std::string> texts;
    std::istringstream lines(read_file(file));
    for (std::string line; std::getline(lines, line);) {
        const std::size_t space = line.find(' ');
        if (line.rfind("%%TE:", 0) == 0 && line.find(' ', space + 1) != std::string::npos) {
            texts.push_back(line.substr(line.find(' ', space + 1) + 1));
        }
    }
    return texts;
}

std::ptrdiff_t place_of(const std::vector<std::string>& texts, const std::string& text) {
    for (std::size_t i = 0; i < texts.size(); i++) {
        if (texts[i].find(text) != std::string::npos) return static_cast<std::ptrdiff_t>(i);
    }
    return -1;
}

TEST(Page, NothingIsPaintedOutsideThePaper) {
    struct Case {
        const char* words;
        double width, height;  ///< paper, upright, in points
    };
    for (const Case& c : {Case{"", 612, 792}, Case{",color", 612, 792}, Case{",gray", 612, 792}, Case{",a4", 595, 842},
                          Case{",color,a4", 595, 842}, Case{",port,sz=8.5x11", 612, 792}, Case{",legal", 612, 1008},
                          Case{",eps", 612, 792}, Case{",a3,color", 842, 1191}}) {
        const TempDir dir;
        const Outcome outcome = run_program(dir.path(), "-me warn -ft h24 -le 850 -va temp:C:lcf:in=4:bar -de p,x.ps" +
                                                            std::string(c.words) + " " + SAMPLE);
        ASSERT_EQ(outcome.status, 0) << c.words;
        EXPECT_TRUE(renders(dir.file("x.ps"))) << c.words;
        const std::string paper = "-dDEVICEWIDTHPOINTS=3000 -dDEVICEHEIGHTPOINTS=3000 -dFIXEDMEDIA";
        const Box box = painted(dir.file("x.ps"), paper);
        EXPECT_GT(box.x1 - box.x0, 200.0) << c.words;
        EXPECT_GT(box.y1 - box.y0, 200.0) << c.words;
        EXPECT_GE(box.x0, -0.5) << c.words;
        EXPECT_GE(box.y0, -0.5) << c.words;
        EXPECT_LE(box.x1, c.width + 0.5) << c.words;
        EXPECT_LE(box.y1, c.height + 0.5) << c.words;
    }
}

TEST(Page, LayersStackTheirLabelsInTheOrderOfTheVariables) {
    const TempDir dir;
    const Outcome outcome = run_program(dir.path(),
                                        "-me warn -ft h24 -le 850 -de p,x.ps,color -va "
                                        "'temp:C:cf:in=4:bar,:500mb:hght:gpm:ln:in=60,:sl:pmsl:mb:dln:in=4' " +
                                            SAMPLE);
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    const Page page = read_page(dir.file("x.ps"));
    EXPECT_GT(page.fills.size(), 8U) << "a fill for each band";
    EXPECT_GT(segments_of(page).size(), 1000U);
    const std::vector<std::string> texts = texts_of(dir.file("x.ps"));
    const auto temperature = place_of(texts, "850 mb Temperature (C)");
    const auto height = place_of(texts, "500 mb Height (gpm)");
    const auto pressure = place_of(texts, "Sea level Pressure (mb)");
    EXPECT_GE(temperature, 0);
    EXPECT_GT(height, temperature);
    EXPECT_GT(pressure, height);
    EXPECT_GE(place_of(texts, "5460"), 0) << "labels on the lines";
}

/// Lines, areas and texts of a page in the order of their coordinates.
std::vector<std::string> marks_of(const TempDir& dir, const std::string& variables) {
    const Outcome outcome = run_program(dir.path(),
                                        "-me warn -ft h24 -le 500 -de p,x.ps,color -pd lc,45,-97,71,53,0.95 "
                                        "-va '" +
                                            variables + "' " + SAMPLE);
    EXPECT_EQ(outcome.status, 0) << variables << outcome.err;
    const Page page = read_page(dir.file("x.ps"));
    EXPECT_EQ(page.pages, 1);
    std::vector<std::string> marks;
    const auto add = [&marks](char kind, const PagePath& path) {
        std::ostringstream text;
        text << kind;
        for (const PagePoint& point : path) text << ' ' << std::lround(point.x) << ',' << std::lround(point.y);
        marks.push_back(text.str());
    };
    for (const PagePath& line : page.lines) add('l', line);
    for (const PagePath& area : page.fills) add('a', area);
    std::istringstream lines(read_file(dir.file("x.ps")));
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind("%%TE:", 0) == 0) marks.push_back(line);
    }
    std::sort(marks.begin(), marks.end());
    return marks;
}

/// A page holds what each of its panels shows alone: no map, title, bar or label of another one.
TEST(Page, PanelsAreDrawnAsIfAlone) {
    const TempDir dir;
    const std::vector<std::string> panels{
        "panel:2x2+0+0,temp:C:cf:in=4:bar:nolr,hght:gpm:ln:in=60", "panel:2x2+1+0,:850mb:temp:C:ln:in=4",
        "panel:2x2+0+1,rhum:%:cf:cof=rhum.lev,wind<uwnd,vwnd>[kt:vect:sk=4]", "panel:2x2+1+1,hght:gpm:ln:in=60"};
    std::vector<std::string> each;
    std::string all;
    for (const std::string& panel : panels) {
        const std::vector<std::string> marks = marks_of(dir, panel);
        EXPECT_GT(marks.size(), 200U) << panel;
        each.insert(each.end(), marks.begin(), marks.end());
        all += (all.empty() ? "" : ",") + panel;
    }
    std::sort(each.begin(), each.end());
    EXPECT_EQ(marks_of(dir, all), each);
}

/// A chart with an inset is the whole chart, a cleared ground, and the inset.
TEST(Page, InsetsLeaveTheChartWhole) {
    const TempDir dir;
    for (const char* kind : {"ln", "cf"}) {
        const std::string chart = std::string("hght:gpm:") + kind + ":in=60";
        const std::string inset = "panel:3x3+2+2,temp:K:ln:in=2";
        std::vector<std::string> each = marks_of(dir, chart);
        const std::vector<std::string> alone = marks_of(dir, inset);
        each.insert(each.end(), alone.begin(), alone.end());
        std::sort(each.begin(), each.end());
        std::vector<std::string> more;
        const std::vector<std::string> both = marks_of(dir, chart + "," + inset);
        std::set_difference(both.begin(), both.end(), each.begin(), each.end(), std::back_inserter(more));
        EXPECT_EQ(both.size(), each.size() + 1) << kind;
        ASSERT_EQ(more.size(), 1U) << kind;
        EXPECT_EQ(more[0][0], 'a') << kind;
    }
}

/// What is drawn on one page, the only one or one of several, between the clips at its ends.
std::string body_of_page(const std::string& file, int number) {
    const std::string text = read_file(file);
    const std::size_t page = number == 0 ? 0 : text.find("%%Page: " + std::to_string(number) + " ");
    const std::size_t start = text.find("%%PL:", page);
    return text.substr(start, text.rfind("stroke\n", text.find("%%End of plot\n", start)) - start);
}

TEST(Sequence, EachTimeHasThePageThatItHasAlone) {
    const TempDir dir;
    const std::string chart = "-me warn -le 500 -cb 0 -va hght:gpm:ln:in=60,temp:C:cf:in=4:cof=classic.lev ";
    EXPECT_EQ(run_program(dir.path(), chart + "-ft h00,h12,h24 -de p,all.ps,color " + SAMPLE).status, 0);
    EXPECT_EQ(read_page(dir.file("all.ps")).pages, 3);
    EXPECT_TRUE(renders(dir.file("all.ps")));
    int number = 0;
    for (const char* time : {"h00", "h12", "h24"}) {
        EXPECT_EQ(run_program(dir.path(), chart + "-ft " + time + " -de p,one.ps,color " + SAMPLE).status, 0);
        EXPECT_TRUE(body_of_page(dir.file("all.ps"), ++number) == body_of_page(dir.file("one.ps"), 0)) << time;
    }
}

TEST(Sequence, ALayerMissingAtFirstIsSettledOnce) {
    if (!have_program("grib_copy")) GTEST_SKIP() << "no grib_copy here";
    const TempDir dir;
    const std::string file = dir.file("late.grb2");
    run_command("grib_copy -w level=500,shortName=gh " + SAMPLE + " " + dir.file("gh.grb2") +
                " && grib_copy -w level=500,shortName=t,step!=0 " + SAMPLE + " " + dir.file("t.grb2") + " && cat " +
                dir.file("gh.grb2") + " " + dir.file("t.grb2") + " >" + file);
    const std::string chart = "-me warn -le 500 -va hght:gpm:ln:in=60,temp:C -de p,";
    const Outcome all = run_program(dir.path(), chart + "all.ps -ft h00,h12,h24 " + file, "3\nL\n");
    EXPECT_EQ(read_page(dir.file("all.ps")).pages, 3) << all.err;
    const Outcome one = run_program(dir.path(), chart + "one.ps -ft h24 " + file, "3\nL\n");
    EXPECT_EQ(one.status, 0) << one.err;
    EXPECT_TRUE(body_of_page(dir.file("all.ps"), 3) == body_of_page(dir.file("one.ps"), 0));
}

}  // namespace
}  // namespace zav::test
