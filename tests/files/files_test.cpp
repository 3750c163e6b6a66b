#include "files/files.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <random>

#include "frame/flag.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "support/support.h"
#include "support/table.h"

namespace zav {
namespace {

namespace fs = std::filesystem;

constexpr const char* CONVENTIONS =
    "# kind template header size\n"
    "grib_a   %G/%y%m%d%h_%e.gra\n"
    "grib_abc %G/%y%m%d%h_abc.grb\n"
    "six      %G/%y%m%d%6h.grb %G/%y%m%d%h.idx 10\n"
    "named    %G/grid_%y%m%d%h.grb -\n"
    "opt      %G/{grid_}%Y%b%d%h.grb\n"
    "keys     %D/%v_%3l_%q_%2q_%Y%j%%\n"
    "daily    %2d%e.dat\n"
    "min      %G/%h%15n\n";

class Files : public testing::Test {
  protected:
    void SetUp() override {
        fs::create_directories(dir_ / "grids");
        std::ofstream(dir_ / "name_conv") << CONVENTIONS;
        RES_put("file_path", dir_.string());
        RES_put("grid_path", (dir_ / "grids").string());
        RES_put("filename", "");
        unsetenv("zavcurtime");
    }

    std::string grid(const std::string& name) const { return (dir_ / "grids" / name).string(); }
    void make_grid(const std::string& name, int size = 20) const {
        std::ofstream(grid(name)) << std::string(size, 'x');
    }
    static std::string dated(int year, int month, int day, int hour, int min = 0) {
        const Date date{.year = year, .month = month, .day = day, .hour = hour, .min = min};
        std::string name;
        EXPECT_EQ(FILE_set_date(&date, name), 0);
        return name;
    }
    static std::string given(const std::string& text) {
        std::string name;
        EXPECT_EQ(FILE_set_file(text, name), 0);
        return name;
    }
    static std::string date_text() {
        Date d;
        FILE_get_date(&d);
        char text[80];
        std::snprintf(text, sizeof text, "%d/%d/%d %d:%d", d.year, d.month, d.day, d.hour, d.min);
        return text;
    }
    static std::string current(const char* rule) {
        std::string name;
        FILE_set_current(rule, name);
        return fs::path(name).filename();
    }

    const test::TempDir temp_;
    const fs::path dir_ = temp_.path();
};

TEST_F(Files, ConventionIsTheFirstLineThatFits) {
    EXPECT_EQ(FILE_set_name("grib_abc"), 1);
    EXPECT_EQ(dated(1998, 3, 15, 12), grid("98031512_abc.gra")) << "a prefix line in front wins";
    FILE_save_name_conv();
    EXPECT_EQ(FILE_set_name("SIX"), 1);
    EXPECT_EQ(FILE_get_min_size(), 10);
    FILE_restore_name_conv();
    EXPECT_EQ(dated(1998, 3, 15, 12), grid("98031512_abc.gra")) << "the ending comes back as well";
    EXPECT_EQ(FILE_get_min_size(), 0);
    EXPECT_EQ(FILE_set_name("nothing"), 0);
    EXPECT_EQ(dated(1998, 3, 15, 12), "nothing");
    EXPECT_EQ(FILE_get_min_size(), 0);
    EXPECT_EQ(FILE_set_name("@x%h.%e"), 1);
    EXPECT_EQ(FILE_set_name("keys:v=New York:l=5:bad:q"), 1);
    RES_put("data_path", "/d/");
    EXPECT_EQ(dated(2000, 12, 31, 0), "/d/New_York_5___0_0_2000366%");
    FILE_set_key('v', std::string(40, 'k'));
    EXPECT_EQ(FILE_get_key('v').size(), 29U);
    fs::remove(dir_ / "name_conv");
    EXPECT_EQ(FILE_set_name("grib_abc"), 0);
    EXPECT_EQ(dated(1998, 3, 15, 12), "grib_abc");
}

TEST_F(Files, NameFollowsDateStepAndForcedFields) {
    FILE_set_name("six");
    EXPECT_EQ(dated(1998, 3, 15, 14), grid("98031512.grb"));
    EXPECT_EQ(FILE_get_late_off(), 6 * 3600);
    EXPECT_EQ(date_text(), "1998/3/15 12:-9999");
    for (const test::Case& c : test::cases("files/forced")) {
        FILE_set_name(c.text(0));
        const Date forced{.day = c.number(1), .hour = c.number(2), .min = c.number(3)};
        FILE_set_time(&forced);
        EXPECT_EQ(dated(1998, 3, 16, 16, 59), grid(c.text(5))) << c.line();
        EXPECT_EQ(FILE_get_late_off(), c.number(4));
    }
    FILE_reset_time();
    FILE_set_name("six");
    EXPECT_EQ(dated(1998, 3, 15, MISS), grid("98031500.grb"));
    EXPECT_EQ(date_text(), "1998/3/15 -9999:-9999");

    std::string header;
    const Date date{.year = 1998, .month = 3, .day = 15, .hour = 6};
    const std::string before = FILE_get_filename();
    EXPECT_EQ(FILE_hdr_set_date(&date, header), 1);
    EXPECT_EQ(header, grid("98031506.idx"));
    EXPECT_EQ(FILE_get_filename(), before);
    FILE_set_name("named");
    EXPECT_EQ(FILE_hdr_set_date(&date, header), 0);
    EXPECT_EQ(header, "");
}

TEST_F(Files, TextIsCompletedByTheTemplate) {
    for (const test::Case& c : test::cases("files/completed")) {
        FILE_set_name(c.text(0));
        EXPECT_EQ(given(c.text(1)), grid(c.text(2))) << c.line();
        EXPECT_EQ(date_text(), c.text(3)) << c.line();
        Date date;
        FILE_get_date(&date);
        std::string again;
        FILE_set_date(&date, again);
        EXPECT_EQ(again, grid(c.text(2))) << "the given name stays the name of its date";
    }
}

TEST_F(Files, FullPathsBringTheirDirectory) {
    FILE_set_name("named");
    RES_put("filename", "/other/place/grid_98031512.grb");
    EXPECT_EQ(FILE_get_file("?"), 0);
    EXPECT_EQ(FILE_get_filename(), "/other/place/grid_98031512.grb");
    EXPECT_EQ(date_text(), "1998/3/15 12:-9999");
    EXPECT_EQ(dated(1998, 3, 15, 18), "/other/place/grid_98031518.grb");
    EXPECT_EQ(given("./grid_98031512.grb"), "./grid_98031512.grb");
    EXPECT_EQ(date_text(), "1998/3/15 12:-9999");
    EXPECT_EQ(given("/x"), "/x");
    EXPECT_EQ(given("@any%y name"), "any%y name");
    EXPECT_EQ(given("std"), "-");
    EXPECT_EQ(given("NONE"), "none");
    EXPECT_EQ(given("98031512#2001020304"), grid("grid_98031512.grb"));
    Date forced;
    FILE_get_time(&forced);
    EXPECT_EQ(forced.year, 2001);
    FILE_reset_time();
    FILE_set_name("none");
    EXPECT_EQ(given("la"), "la");
}

TEST_F(Files, RulesFindTheLatestFile) {
    FILE_set_name("six");
    setenv("zavcurtime", "#199803151700", 1);
    for (const test::Case& c : test::cases("files/rules")) {
        if (c.number(0) == 1 && !fs::exists(grid("98031418.grb"))) {
            make_grid("98031418.grb");
            make_grid("98031500.grb", 10);  // not above the smallest size
            make_grid("98031306.grb");
        }
        EXPECT_EQ(current(c.text(1).c_str()), c.text(2)) << c.line();
    }
    EXPECT_EQ(current(nullptr), "98031418.grb");
    std::string name;
    EXPECT_EQ(FILE_set_current("la", name), 889898400L);  // 1998-03-14 18Z
    for (const char* bad : {"99999999999999999999", "la#99999999999", "+d:d:", "la-99999999999d9:9", ":", "#", "l+"})
        current(bad);

    const Date forced{.hour = 18};
    FILE_set_time(&forced);
    EXPECT_EQ(current(""), "98031418.grb") << "18Z of today is still to come";
    FILE_reset_time();
    const Date summer{.month = 7, .day = 20};
    FILE_set_time(&summer);
    EXPECT_EQ(current(""), "97072012.grb");
    FILE_reset_time();
}

TEST_F(Files, ShippedConventionFindsModelRuns) {
    RES_put("file_path", test::source_dir() + "/share/zav");
    RES_put("current", "la");
    setenv("zavcurtime", "201101110000", 1);
    for (const char* model :
         {"gfs", "ngm", "ngme", "eta", "ruc", "lfm", "avn", "mrf", "ecmwf", "sww", "sst", "sca", "other"}) {
        const std::string name = std::string("11011012_") + model + ".grb";
        make_grid(name, 200);
        FILE_set_name(std::string("grib_") + model);
        EXPECT_EQ(FILE_get_file("?"), 1);
        EXPECT_EQ(FILE_get_filename(), grid(name));
    }
    for (const char* kind : {"grd_grd", "grd_zav", "grd_cdf", "grd_grib"}) EXPECT_EQ(FILE_set_name(kind), 1);
    EXPECT_EQ(FILE_set_name("zav.gif"), 0) << "the name of a dump is a template of its own";
}

TEST_F(Files, MissingFileEndsTheRun) {
    FILE_set_name("six");
    RES_put("current", "la");
    MESS_set(0, 0);
    EXPECT_EXIT(FILE_get_file("?"), testing::ExitedWithCode(10), "");
}

TEST_F(Files, OverwriteFollowsThePolicy) {
    make_grid("there");
    FLAG_reset(MISS);
    EXPECT_EQ(FILE_overwrite(grid("absent"), 1), 1);
    EXPECT_EQ(FILE_overwrite("-", 1), 1);
    EXPECT_EQ(FILE_overwrite(grid("there"), 0), 0);
    FLAG_set_batch(1);
    EXPECT_EQ(FILE_overwrite(grid("there"), 1), 3);
    FLAG_set(FLAG_FILE_POLICY, 2);
    EXPECT_EQ(FILE_overwrite(grid("there"), 1), 2);
}

TEST_F(Files, SequenceStepsThroughTheTemplate) {
    struct Case {
        const char* span;
        std::vector<std::string> names;
    };
    const Case cases[] = {{"12", {"98031512", "98031518", "98031600"}},
                          {"-12", {"98031500", "98031506", "98031512"}},
                          {"24,12", {"98031512", "98031600", "98031612"}},
                          {"0:30", {"98031512"}}};
    for (const Case& c : cases) {
        FILE_set_name("six");
        dated(1998, 3, 15, 12);
        RES_put("num_hour", c.span);
        const Date start{.year = 1998, .month = 3, .day = 15, .hour = 12};
        FILE_first(&start);
        std::string name;
        for (const std::string& expected : c.names) {
            ASSERT_EQ(FILE_get_next(name), 1) << c.span;
            EXPECT_EQ(name, grid(expected + ".grb")) << c.span;
        }
        EXPECT_EQ(FILE_get_next(name), 0) << c.span;
    }
}

TEST_F(Files, PathsAndTests) {
    struct Case {
        const char *path, *file, *full;
    };
    for (const Case& c : {Case{"/data", "-", "-"}, Case{"/data", "./x", "./x"}, Case{"/data/", "x", "/data/x"},
                          Case{"/data", "x", "/data/x"}, Case{nullptr, "x", "x"}, Case{"/data", "~/x", "~/x"}})
        EXPECT_EQ(FILE_add_path(c.path, c.file), c.full);
    EXPECT_TRUE(FILE_exist(""));
    EXPECT_TRUE(FILE_is_stdio("STDN"));
    EXPECT_FALSE(FILE_exist("|true"));
    EXPECT_EQ(FILE_size(grid("absent")), -1);
    EXPECT_EQ(FILE_add_user_path("~no_such_user_here/x"), "~no_such_user_here/x");
    EXPECT_NE(FILE_add_user_path("~/x"), "~/x");
    std::string file = "./a-b:c", info;
    EXPECT_EQ(FILE_extract_extra_info(file, info), 1);
    EXPECT_EQ(file + "," + info, "./a,-b:c");

    EXPECT_TRUE(FILE_open(grid("new/deep/file"), "w"));
    EXPECT_TRUE(FILE_is_file(grid("new/deep/file")));
    EXPECT_FALSE(FILE_open(grid("new"), "r")) << "a directory is no file";
    std::ofstream(grid("file.raw")) << "ZAVRAW 1 more";
    EXPECT_EQ(FILE_type(grid("file.raw-12")), 5);
    EXPECT_EQ(FILE_type(grid("new/deep/file")), -1);
}

TEST_F(Files, CommandsStartForUserNamesOnly) {
    const std::string mark = grid("mark");
    file_ptr pipe = FILE_open("|echo heard", "r");
    ASSERT_TRUE(pipe);
    std::string line;
    fgetline(pipe.get(), line);
    EXPECT_EQ(line, "heard");
    pipe.reset();
    for (const std::string& name : {"|touch " + mark, "$(touch " + mark + ")", std::string("-"),
                                    std::string("/dev/zero"), dir_.string(), std::string()})
        EXPECT_FALSE(FILE_open_data(name)) << name;
    EXPECT_FALSE(fs::exists(mark));
}

// What a list shows goes through a shell: nothing in paths, keys or templates may be taken for a command.
TEST_F(Files, ListQuotesHostileTexts) {
    const std::string mark = grid("mark");
    const std::string hostile[] = {"; touch " + mark,        "$(touch " + mark + ")",    "`touch " + mark + "`",
                                   "\ntouch " + mark + "\n", "'; touch " + mark + "; '", "a b\" | touch " + mark,
                                   "& touch " + mark + " &"};
    testing::internal::CaptureStdout();
    testing::internal::CaptureStderr();
    for (const std::string& text : hostile) {
        FILE_set_name("@" + text + "%G%v%{bad}");
        RES_put("grid_path", text);
        RES_put("bad", text);
        FILE_set_key('v', text);
        FILE_list_file();
    }
    FILE_set_name("@-R");
    FILE_list_file();
    RES_put("grid_path", (dir_ / "grids").string());
    make_grid("98031512.grb");
    make_grid("x.grb");
    FILE_set_name("six");
    FILE_list_file();
    testing::internal::GetCapturedStderr();
    const std::string shown = testing::internal::GetCapturedStdout();
    EXPECT_FALSE(fs::exists(mark));
    EXPECT_NE(shown.find("98031512.grb"), std::string::npos);
    EXPECT_EQ(shown.find("x.grb"), std::string::npos);
}

// Templates and texts of random elements, cut anywhere: names stay short, and every walk ends.
TEST_F(Files, HostileTemplatesAndTexts) {
    const std::vector<std::string> parts = {
        "%",  "%%",    "%0h", "%99999999999y", "%-5d", "%{", "%{grid_path", "%{}", "{",  "}",  "*",   "%e", "%G", "%D",
        "/",  ":",     "\\",  "\x80",          " ",    "%b", "%j",          "%3j", "%Y", "%n", "%6h", "%s", "%d", "%m",
        "|x", "%500q", "98",  "mar",           "#",    "~",  ".",           "\n"};
    std::mt19937 random(7);
    const auto build = [&](int most) {
        std::string text;
        for (int i = random() % most; i >= 0; i--) text += parts[random() % parts.size()];
        return text;
    };
    MESS_set(0, 0);
    setenv("zavcurtime", "199803151200", 1);
    for (int round = 0; round < 3000; round++) {
        FILE_set_name("@" + build(30));
        std::string name;
        std::string text = build(20);
        FILE_set_file(text, name);
        EXPECT_LT(name.size(), FILE_NAME_SIZE);
        const Date forced{.month = static_cast<int>(random()),
                          .day = static_cast<int>(random()),
                          .hour = static_cast<int>(random()),
                          .min = static_cast<int>(random())};
        if (round % 3 == 0) FILE_set_time(&forced);
        FILE_set_date(nullptr, name);
        EXPECT_LT(name.size(), FILE_NAME_SIZE);
        FILE_set_current("3la#3-1d", name);
        EXPECT_LT(name.size(), FILE_NAME_SIZE);
        FILE_reset_time();
    }
    std::ofstream(dir_ / "name_conv") << std::string(100000, '%') << "\n\t \n  x\n"
                                      << std::string(5000, 'k') << " @ - 999999999999999\n";
    EXPECT_EQ(FILE_set_name("x"), 1);
    FILE_set_name(std::string(100000, ':'));
    FILE_set_name("k:" + std::string(100000, 'k'));
}

}  // namespace
}  // namespace zav
