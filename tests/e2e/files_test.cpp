// Every kind of file that weather centres publish, drawn on its own domain; grids written and read back.

#include <gtest/gtest.h>

#include <filesystem>

#include "e2e/program.h"
#include "support/support.h"

namespace zav::test {
namespace {

TEST(SampleFile, ANamedFileIsDrawnWhateverItsNameAndModel) {
    const TempDir dir;
    const std::string chart = "-me warn -ft h24 -le 500 -va hght -pl ln -in 60 ";
    const std::string data = read_file(source_dir() + "/samples/26011512_wave.grb2");
    for (const char* name : {"other.grb", "latest.grb", "latest", "cutoff.grb", "la", "sub/lambert.grb"})
        dir.write(name, data);
    ASSERT_EQ(run_program(dir.path(), chart + "-de p,other.ps other.grb").status, 0);
    for (const char* options : {"latest.grb", "latest", "cutoff.grb", "./la", "sub/lambert.grb", "-mo gfs other.grb",
                                "-mo gfs latest.grb", "-mo gfs @other.grb", "-gp sub lambert.grb"}) {
        const Outcome run = run_program(dir.path(), chart + "-de p,x.ps " + options);
        EXPECT_EQ(run.status, 0) << options << run.err;
        EXPECT_TRUE(page_without_date(dir.file("x.ps")) == page_without_date(dir.file("other.ps"))) << options;
        std::filesystem::remove(dir.file("x.ps"));
    }
    const Outcome rule = run_program(dir.path(), chart + "-de p,x.ps la");
    EXPECT_EQ(rule.status, 10) << "the rule, though a file has its name";
}

TEST(SampleFile, EditionsAgreeAndGridsAreWrittenAndReadBack) {
    const std::string source = test::source_dir() + "/samples/26011512_wave.grb2";
    const std::string chart = "-me warn -ft h24 -le 500 -va hght -pl ln -in 60 ";
    for (const std::string kind : {"zav", "zavb"}) {
        const TempDir dir;
        const Outcome first = run_program(dir.path(), chart + "-of " + kind + ",out.grd -de p,first.ps " + source);
        ASSERT_EQ(first.status, 0) << first.err;
        ASSERT_TRUE(std::filesystem::exists(dir.file("out.grd"))) << kind;
        const Outcome second = run_program(dir.path(), chart + "-de p,second.ps out.grd");
        ASSERT_EQ(second.status, 0) << second.err;
        EXPECT_EQ(read_page(dir.file("second.ps")).lines.size(), read_page(dir.file("first.ps")).lines.size()) << kind;
        EXPECT_EQ(page_without_date(dir.file("second.ps")), page_without_date(dir.file("first.ps"))) << kind;

        // What stands there is kept without a yes.
        const std::string before = read_file(dir.file("out.grd"));
        run_program(dir.path(), chart + "-le 850 -of " + kind + ",out.grd -de p,third.ps " + source, "n\n");
        EXPECT_EQ(read_file(dir.file("out.grd")), before);
        run_program(dir.path(), chart + "-le 850 -of " + kind + ",out.grd -de p,third.ps " + source, "y\n");
        EXPECT_NE(read_file(dir.file("out.grd")), before);
    }
}

}  // namespace
}  // namespace zav::test
