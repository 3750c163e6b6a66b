// Pictures of the program: what other programs read of them, and that they show what the PostScript page does.

#include <gtest/gtest.h>

#include "e2e/program.h"
#include "support/raster.h"
#include "support/support.h"

namespace zav::test {
namespace {

const std::string SAMPLE = source_dir() + "/samples/26011512_wave.grb2";
const std::string CHART = "-me warn -ft h24 -le 500 -va hght:gpm:ln:in=60 ";

/// Runs the program; what it said if it didn't end as it should.
std::string trouble(const TempDir& dir, const std::string& options, int status = 0) {
    const Outcome run = run_program(dir.path(), options + " " + SAMPLE);
    return run.status == status ? "" : "status " + std::to_string(run.status) + ": " + run.err;
}

class Agreement : public ::testing::TestWithParam<const char*> {};

TEST_P(Agreement, OfThePictureWithThePage) {
    const TempDir dir;
    const std::string chart = "-me warn -ft h24 -le 500 " + std::string(GetParam());
    EXPECT_EQ(trouble(dir, chart + " -de p,x.ps,color"), "");
    EXPECT_EQ(trouble(dir, chart + " -de x.png,1536x1176"), "");
    const Raster picture = read_raster(dir.file("x.png"));
    EXPECT_EQ(picture.width, 1536);
    EXPECT_EQ(differences_off_edges(picture, read_sheet(dir.file("x.ps"))), 0);
    EXPECT_EQ(trouble(dir, chart + " -de x.pdf"), "");
    run_command("pdftoppm -r 144 " + dir.file("x.pdf") + " " + dir.file("pdf"));
    const Raster document = read_raster(dir.file("pdf-1.ppm"), "-crop 1536x1176+24+24");
    EXPECT_EQ(differences_off_edges(document, picture), 0);
}

INSTANTIATE_TEST_SUITE_P(
    , Agreement,
    ::testing::Values("-va temp:C:lcf:in=4:bar", "-va temp:C:dln:in=4", "-va rhum:%:value:sk=3",
                      "-va 'hght:gpm:ln:in=60,wind<uwnd,vwnd>[kt:barb:sk=2:co=blue]' -mf lalo:10:10",
                      "-va 'temp:C:cf:in=4,panel:3x3+2+2,hght:gpm:ln:in=120'", "-va hght:gpm:cf:in=60 -ge P2x2+1+0"),
    [](const auto& given) { return case_name(given.param); });

TEST(Picture, IsReadByOtherPrograms) {
    const TempDir dir;
    EXPECT_EQ(trouble(dir, CHART + "-ft h00,h12 -de x.PNG,600x400"), "");
    EXPECT_EQ(run_command("identify -format '%m %wx%h %[channels] %[Title]\n' " + dir.file("x-*.PNG")),
              "PNG 600x400 srgb 500 mb Height (gpm), Analysis for 1200Z 15 JAN 26\n"
              "PNG 600x400 srgb 500 mb Height (gpm), 12 hour  valid 0Z FRI 16 JAN 26\n");
    EXPECT_EQ(trouble(dir, CHART + "-ft h00,h12 -de 'n%02d.svg,sz=10x8'"), "");
    int status = -1;
    EXPECT_EQ(run_command("xmllint --noout " + dir.file("n01.svg") + " " + dir.file("n02.svg") + " 2>&1", &status), "");
    EXPECT_EQ(status, 0);
    EXPECT_NE(read_file(dir.file("n01.svg")).find("width=\"720pt\" height=\"576pt\""), std::string::npos);
    EXPECT_EQ(trouble(dir, CHART + "-ft h00,h12 -de 'i,|cat >out.pdf,pdf,port'"), "");
    const std::string info = run_command("pdfinfo " + dir.file("out.pdf"));
    for (const char* part :
         {"500 mb Height (gpm), Analysis for 1200Z 15 JAN 26\n", "Pages:           2\n", "612 x 792"})
        EXPECT_NE(info.find(part), std::string::npos) << info;
}

TEST(Picture, IsTheSameEachTime) {
    const EnvSetting epoch("SOURCE_DATE_EPOCH", "86400");
    for (const char* name : {"x.png", "x.svg", "x.pdf"}) {
        const TempDir dir;
        EXPECT_EQ(trouble(dir, CHART + "-de " + name), "");
        const std::string first = read_file(dir.file(name));
        EXPECT_EQ(trouble(dir, CHART + "-de 'i,|sleep 1; cat >y," + (name + 2) + "'"), "");
        EXPECT_GT(first.size(), 10000U);
        EXPECT_TRUE(first == read_file(dir.file("y"))) << name;
    }
}

TEST(Picture, HasTextThatCanBeSearched) {
    const TempDir dir;
    const std::string font = "-pp 'font=system:DejaVu Sans:bold' ";
    EXPECT_EQ(trouble(dir, CHART + font + "-de x.pdf"), "");
    EXPECT_NE(run_command("pdftotext -raw " + dir.file("x.pdf") + " -").find("500 mb Height (gpm)"), std::string::npos);
    EXPECT_EQ(trouble(dir, CHART + font + "-de x.svg"), "");
    const std::string found = run_command("xmllint --xpath '//*[local-name()=\"text\"]/text()' " + dir.file("x.svg"));
    EXPECT_NE(found.find("500 mb Height (gpm)"), std::string::npos);
    EXPECT_EQ(trouble(dir, CHART + "-pp font=system:Nosuch -de x.png", 23), "");
    EXPECT_EQ(trouble(dir, CHART + font + "-de p,x.ps"), "");
    EXPECT_NE(read_file(dir.file("x.ps")).find(" 500 mb Height (gpm)\n"), std::string::npos);
}

}  // namespace
}  // namespace zav::test
