// What a script sees of the program: help, exit statuses, and bad input of every kind.

#include <gtest/gtest.h>

#include <algorithm>

#include "e2e/program.h"
#include "frame/status.h"
#include "support/support.h"

namespace zav::test {
namespace {

const std::string SAMPLE = test::source_dir() + "/samples/26011512_wave.grb2";
const std::string CHART = "-ft h24 -le 500 -va hght -pl ln -in 60 -de p,x.ps ";

TEST(Program, HelpPrintsTheSyntaxAndOpensNothing) {
    const TempDir dir;
    const Outcome run = run_program(dir.path(), "-h");
    EXPECT_EQ(run.status, 0);
    EXPECT_NE(run.out.find("zavoria: This program contours existing grids on a background map\n"), std::string::npos);
    EXPECT_NE(run.out.find("zavoria syntax (version:5.60.4-LINUX-X11)\n"), std::string::npos);
    EXPECT_NE(run.out.find(" -in intrvl  Contour interval\n"), std::string::npos);
    EXPECT_NE(run.out.find("Positional options...\n file [file...]  Input file names\n"), std::string::npos);
    EXPECT_TRUE(std::filesystem::is_empty(dir.path()));
}

TEST(Program, StreamsDrawThePageOfTheFile) {
    const TempDir dir;
    const std::string chart = "-me warn -ft h24 -le 500 -va hght,temp:C -pl ln -in 60 -la lr:run_%D ";
    const std::string native = "-me warn -ft h24 -le 500 -va temp:C -pl ln -in 5 -la lr:run_%D ";
    const std::string data = read_file(SAMPLE);
    dir.write("plain.grb", data);  // a name that tells no date
    ASSERT_EQ(run_program(dir.path(), chart + "-de p,file.ps plain.grb").status, 0);
    ASSERT_EQ(run_program(dir.path(), native + "-of zav,native.grd -de p,x.ps plain.grb").status, 0);
    ASSERT_EQ(run_program(dir.path(), native + "-de p,text.ps native.grd").status, 0);
    dir.write("damaged.sh", "cat '" + SAMPLE + "'; exit 3\n");
    run_command("cd '" + dir.path().string() + "' && mkfifo fifo && (cat '" + SAMPLE + "' >fifo) >/dev/null 2>&1 &");
    struct Case {
        std::string options;
        std::string input;
        std::string page;
        std::string told;
    };
    const std::string grib = chart + "-de p,x.ps ";
    for (const Case& c :
         {Case{grib + "-", data, "file.ps", ""}, Case{grib + "'@|cat " + SAMPLE + "'", "", "file.ps", ""},
          Case{grib + "'|cat " + SAMPLE + "'", "", "file.ps", ""}, Case{grib + "/dev/stdin", data, "file.ps", ""},
          Case{grib + "./fifo", "", "file.ps", ""},
          Case{grib + "'@|sh damaged.sh'", "", "file.ps", "Command ended with status 3: sh damaged.sh\n"},
          Case{native + "-de p,x.ps -", read_file(dir.file("native.grd")), "text.ps", ""},
          Case{native + "-de p,x.ps '@|cat native.grd'", "", "text.ps", ""}}) {
        const Outcome run = run_program(dir.path(), c.options, c.input);
        EXPECT_EQ(run.status, 0) << c.options;
        EXPECT_EQ(run.err, c.told) << c.options;
        EXPECT_TRUE(page_without_date(dir.file("x.ps")) == page_without_date(dir.file(c.page))) << c.options;
        std::filesystem::remove(dir.file("x.ps"));
    }
    EXPECT_NE(read_file(dir.file("file.ps")).find(" run 1200Z 15 JAN 26\n"), std::string::npos);
    EXPECT_EQ(read_file(dir.file("text.ps")).find(" run 80"), std::string::npos) << "no date is told for none";
    // What was read as data answers no question.
    const Outcome asked = run_program(dir.path(), "-le 500 -va hght -de p,x.ps -re us -", data + "\nh24\n");
    EXPECT_LT(asked.status, 1000);
    EXPECT_FALSE(std::filesystem::exists(dir.file("x.ps")));
    for (const char* source : {"-", "'@|true'", "'@|exit 1'", "absent.grb", "./absent/latest.grb"}) {
        const Outcome run = run_program(dir.path(), std::string("-me warn -ft h24 -le 500 -va hght ") + source);
        EXPECT_EQ(run.status, 10) << source;
        EXPECT_NE(run.err.find("File not found: "), std::string::npos) << source << run.err;
        EXPECT_EQ(run.out, "") << source;
    }
}

TEST(Program, AnswersOfAnyKindAreHarmless) {
    const TempDir dir;
    const std::string junk = "\n\n-1x\nset\nset x=y\n?\n99999999999999999999\n%s%n%d\n" + std::string(5000, 'a') + "\n";
    const Outcome run = run_program(dir.path(), "", SAMPLE + "\n" + junk + "h24\n" + junk + "500\n" + junk + "exit\n");
    // One of the words may have chosen the display, which can't be opened.
    EXPECT_TRUE(run.status == 0 || run.status == 4 || run.status == 10) << run.status;
}

TEST(Program, AnyNumberOfUnknownOptionsIsHarmless) {
    const TempDir dir;
    std::string many;
    for (int i = 0; i < 1000; i++) many += "-option" + std::to_string(i) + " value ";
    EXPECT_EQ(run_program(dir.path(), "-me warn " + many + CHART + SAMPLE).status, 0);
}

TEST(Program, LookupFilesMayBeMissingOrSpoilt) {
    const char* const names[] = {"name_conv",    "model.lup",    "zavoria.tim", "zavoria.lev", "zavoria.var",
                                 "variable.lup", "mod_name.lup", "source.lup",  "units.lup",   "grib2_var.lup",
                                 "zav.reg",      "zav.clr",      "zav.fnl",     "zav.pal",     "simplex.fnt"};
    std::string binary;
    for (int i = 0; i < 4000; i++) binary += static_cast<char>(i * 37);
    const std::string spoilt[] = {std::string(100000, 'x'), binary, "1 2 3\n\n# \n:::\n-\n", ""};
    const TempDir absent;
    EXPECT_LT(run_program(absent.path(), "-me warn -fp . -va 7 " + CHART + SAMPLE).status, STATUS_OUTPUT);
    for (const std::string& content : spoilt) {
        const TempDir dir;
        for (const char* name : names) dir.write(name, content);
        const Outcome run = run_program(dir.path(), "-me warn -fp . -mo gfs -va hght " + CHART + SAMPLE);
        EXPECT_LE(run.status, STATUS_OUTPUT) << content.substr(0, 30) << run.err;
    }
}

TEST(Program, PipesAndAppendedFilesHoldThePage) {
    const TempDir dir;
    const std::string chart = "-me warn -ft h24 -le 500 -va hght -pl ln -in 60 ";
    EXPECT_EQ(run_program(dir.path(), chart + "-de 'p,|cat > piped.ps' " + SAMPLE).status, 0);
    EXPECT_EQ(run_program(dir.path(), chart + "-de p,plain.ps " + SAMPLE).status, 0);
    EXPECT_EQ(page_without_date(dir.file("piped.ps")), page_without_date(dir.file("plain.ps")));
    EXPECT_TRUE(renders(dir.file("piped.ps")));
    // With the standard streams closed, and in batch mode: the page is whole when the program ends.
    EXPECT_EQ(run_program(dir.path(), "-ba " + chart + "-de p,batch.ps " + SAMPLE + " <&- >&- 2>&-").status, 0);
    EXPECT_EQ(page_without_date(dir.file("batch.ps")), page_without_date(dir.file("plain.ps")));
    // A page on standard output stands alone there; messages to a command that has gone don't end the run.
    const Outcome out = run_program(dir.path(), "-ft h24 -le 500 -va hght -pl ln -in 60 -de p,- " + SAMPLE);
    EXPECT_EQ(out.status, 0);
    EXPECT_NE(out.err.find("MODEL GRIDDED DATA CONTOURING"), std::string::npos);
    dir.write("out.ps", out.out);
    EXPECT_EQ(page_without_date(dir.file("out.ps")), page_without_date(dir.file("plain.ps")));
    EXPECT_EQ(run_program(dir.path(), chart + "-me '+fi=|true' -de p,told.ps " + SAMPLE).status, 0);
    EXPECT_EQ(page_without_date(dir.file("told.ps")), page_without_date(dir.file("plain.ps")));
}

}  // namespace
}  // namespace zav::test
