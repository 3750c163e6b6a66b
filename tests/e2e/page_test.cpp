// Whole pages: nothing outside the paper in any orientation, size or colour; layers and panels with their own labels.

#include <gtest/gtest.h>

#include <cstdio>
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
    EXPECT_GT(page.fills.size(), 500U);
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

TEST(Page, PanelsHaveTheirOwnMapsAndLabels) {
    const TempDir dir;
    const Outcome outcome =
        run_program(dir.path(),
                    "-me warn -ft h24 -le 500 -de p,x.ps,color -pd lc,45,-97,71,53,0.95 -va panel:2x2+0+0,"
                    "hght:gpm:ln:in=60,panel:2x2+1+0,temp:C:cf:in=4,panel:2x2+0+1,rhum:%:cf:in=10,"
                    "panel:2x2+1+1,:sl:pmsl:mb:ln:in=4 " +
                        SAMPLE);
    ASSERT_EQ(outcome.status, 0) << outcome.err;
    const Page page = read_page(dir.file("x.ps"));
    EXPECT_EQ(page.pages, 1);
    std::vector<PagePath> borders;
    for (const PagePath& line : page.lines) {
        if (line.size() == 5 && line[2].x - line[0].x > 250.0 && line[2].y - line[0].y > 150.0) borders.push_back(line);
    }
    ASSERT_EQ(borders.size(), 4U);
    for (std::size_t i = 0; i < borders.size(); i++) {
        for (std::size_t k = 0; k < i; k++) {
            const bool apart = borders[i][0].x > borders[k][2].x || borders[k][0].x > borders[i][2].x ||
                               borders[i][0].y > borders[k][2].y || borders[k][0].y > borders[i][2].y;
            EXPECT_TRUE(apart) << i << " and " << k;
        }
    }
    // What is drawn before the first panel's border, its map and lines, stays in its quarter of the page.
    for (const PagePath& line : page.lines) {
        if (line.size() == 5 && line[2].x - line[0].x > 250.0) break;
        for (const PagePoint& point : line) {
            ASSERT_LT(point.x, 480.0);
            ASSERT_GT(point.y, 200.0);
        }
    }
    const std::vector<std::string> texts = texts_of(dir.file("x.ps"));
    for (const char* label :
         {"500 mb Height (gpm)", "500 mb Temperature (C)", "Relative Humidity (%)", "Sea level Pressure (mb)"}) {
        EXPECT_GE(place_of(texts, label), 0) << label;
    }
    // A panel outside the page draws nothing there, and the others are drawn.
    EXPECT_EQ(run_program(dir.path(),
                          "-me warn -ft h24 -le 500 -de p,y.ps -va panel:0.5x0.5+7+7,hght:gpm:ln:in=60,"
                          "panel:0.5x0.5+0+0,temp:C:ln:in=4 " +
                              SAMPLE)
                  .status,
              0);
    EXPECT_TRUE(renders(dir.file("y.ps")));
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
    const std::string chart = "-me warn -le 500 -cb 0 -va hght:gpm:ln:in=60,temp:C:cf:in=4 ";
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
