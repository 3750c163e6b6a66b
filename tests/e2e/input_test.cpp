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

TEST(Program, ExitStatusesTellScriptsWhatHappened) {
    struct Case {
        std::string options;
        int status;
    };
    const TempDir dir;
    dir.write("empty.grb", "");
    dir.write("text.grb", "Dear forecaster,\nthis is not a grid file.\n");
    dir.write("cut.grb", read_file(SAMPLE).substr(0, 700));
    for (const Case& c :
         {Case{"-me warn " + CHART + SAMPLE, 0}, Case{CHART + "-ho 12 " + SAMPLE, 0}, Case{CHART + "absent.grb", 10},
          Case{CHART + "empty.grb", 10}, Case{CHART + "text.grb", 10}, Case{CHART + "-cu la -gp .", 10},
          Case{CHART + "-de d " + SAMPLE, 4}, Case{CHART + "-de p,/proc/x.ps " + SAMPLE, 4},
          Case{"-ft h24 -le 500 -va hght -pl none -de p,x.ps " + SAMPLE, 0}}) {
        const Outcome run = run_program(dir.path(), c.options);
        EXPECT_EQ(run.status, c.status) << c.options << "\n" << run.err;
        EXPECT_EQ(run.err.empty(), c.status == 0) << c.options;
    }
    const Outcome cut = run_program(dir.path(), CHART + "cut.grb");
    EXPECT_LT(cut.status, 1000);
}

TEST(Program, EndOfInputAtAnyPromptEndsTheRun) {
    const std::vector<std::string> answers = {SAMPLE, "h24", "500", "hght", "p", "60", "ln", "0", "0", "0"};
    std::string input;
    for (std::size_t given = 0; given <= answers.size(); given++) {
        const TempDir dir;
        const Outcome run = run_program(dir.path(), "", input);
        EXPECT_TRUE(run.status == 0 || run.status == 10) << given << " answers: " << run.status << run.err;
        if (given < answers.size()) input += answers[given] + "\n";
    }
}

TEST(Program, AnswersOfAnyKindAreHarmless) {
    const TempDir dir;
    const std::string junk = "\n\n-1x\nset\nset x=y\n?\n99999999999999999999\n%s%n%d\n" + std::string(5000, 'a') + "\n";
    const Outcome run = run_program(dir.path(), "", SAMPLE + "\n" + junk + "h24\n" + junk + "500\n" + junk + "exit\n");
    // One of the words may have chosen the display, which can't be opened.
    EXPECT_TRUE(run.status == 0 || run.status == 4 || run.status == 10) << run.status;
}

TEST(Program, OptionsOfAnyKindAreHarmless) {
    const std::vector<std::string> hostile = {"-in 0",
                                              "-in -5",
                                              "-in 1e-30",
                                              "-in 1e30",
                                              "-in nan",
                                              "-in inf",
                                              "-cb nan",
                                              "-sc -1",
                                              "-sc 1e30",
                                              "-fm %s%s%n",
                                              "-fm '%d %d'",
                                              "-fm ::::",
                                              "-pd nonsense",
                                              "-pd ps:90:-100,45,-100,0,0,0",
                                              "-pd ll,,,,,,",
                                              "-pd ps,1e30,1e30,9,9,1e30",
                                              "-pd ll,45,-100,99999999,99999999,1e-9",
                                              "-re us:::",
                                              "-va '((((((((((hght'",
                                              "-va 'a{b<c[d(e'",
                                              "-va ']]>>}})'",
                                              "-va " + std::string(3000, 'x'),
                                              "-va '" + std::string(200, '(') + "'",
                                              "-pl xyz",
                                              "-ct absent.clr",
                                              "-fl nofont",
                                              "-cof 1-999999999",
                                              "-cof nofile",
                                              "-pp vp_size=0x0+0+0,lab=:::,maxl=0",
                                              "-la ul:%D%Q%,zz,ul",
                                              "-gn 999999999",
                                              "-de p,x.ps,sz=0x0",
                                              "-de p,x.ps,scale=nan,lwidth=-3,a4,port",
                                              "-le -99999999999",
                                              "-ft h99999999999",
                                              "-of zav,../../../proc/none/x",
                                              "-me warn,fi=/proc/none",
                                              "-name zav=x=y -- - -5"};
    for (const std::string& option : hostile) {
        const TempDir dir;
        const Outcome run = run_program(dir.path(), "-me warn " + CHART + option + " " + SAMPLE);
        EXPECT_LE(run.status, STATUS_OUTPUT) << option << "\n" << run.err;
    }
    const TempDir dir;
    std::string many;
    for (int i = 0; i < 1000; i++) many += "-option" + std::to_string(i) + " value ";
    EXPECT_EQ(run_program(dir.path(), "-me warn " + many + CHART + SAMPLE).status, 0);
}

TEST(Program, LookupFilesMayBeMissingOrSpoilt) {
    const char* const names[] = {"name_conv",    "model.lup",    "zavoria.tim", "zavoria.lev", "zavoria.var",
                                 "variable.lup", "mod_name.lup", "source.lup",  "units.lup",   "grib2_var.lup",
                                 "zav.reg",      "zav.clr",      "zav.fnl",     "simplex.fnt"};
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

TEST(Program, FullDiskAndClosedPipeAreTold) {
    if (!std::filesystem::exists("/dev/full")) GTEST_SKIP() << "no /dev/full here";
    const TempDir dir;
    const Outcome full =
        run_program(dir.path(), "-me warn -ft h24 -le 500 -va hght -pl ln -in 60 -de p,/dev/full " + SAMPLE);
    EXPECT_LT(full.status, 11);
    EXPECT_NE(full.err, "");
    const Outcome pipe =
        run_program(dir.path(), "-me warn -ft h24 -le 500 -va hght -pl ln -in 60 -de 'p,|true' " + SAMPLE);
    EXPECT_LT(pipe.status, 11);
}

TEST(Program, PipesAndAppendedFilesHoldThePage) {
    const TempDir dir;
    const std::string chart = "-me warn -ft h24 -le 500 -va hght -pl ln -in 60 ";
    EXPECT_EQ(run_program(dir.path(), chart + "-de 'p,|cat > piped.ps' " + SAMPLE).status, 0);
    EXPECT_EQ(run_program(dir.path(), chart + "-de p,plain.ps " + SAMPLE).status, 0);
    EXPECT_EQ(page_without_date(dir.file("piped.ps")), page_without_date(dir.file("plain.ps")));
    EXPECT_TRUE(renders(dir.file("piped.ps")));
    EXPECT_EQ(run_program(dir.path(), "-ba " + chart + "-de p,batch.ps " + SAMPLE).status, 0);
}

}  // namespace
}  // namespace zav::test
