#include "frame/resrc.h"

#include "frame/flag.h"
#include "frame/hooks.h"
#include "frame/mess.h"
#include "frame/status.h"
#include "frame/string.h"
#include "frame/zav.h"
#include "support/support.h"
#include "support/table.h"

namespace zav {
namespace {

using Words = std::vector<std::string>;

const res_type KEYS[] = {RES_help, RES_batch,        RES_message, RES_name_conv,  RES_current,
                         RES_hour, RES_num_hour,     RES_time,    RES_variable,   RES_plot_type,
                         RES_draw, RES_con_interval, RES_icon,    RES_file_param, RES_null};
const res_type POSITIONS[] = {RES_filenames, RES_null};

/// Resources are process-wide, so each test asks for those that it sets itself.
class Resources : public test::TempDirTest {
  protected:
    Resources() { RES_put("default", dir.path().string()); }
    ~Resources() override { MESS_set(0, 0xFFFFF); }

    static void init(const Words& words) {
        std::vector<const char*> argv{"/bin/prog"};
        for (const std::string& word : words) argv.push_back(word.c_str());
        RES_init(static_cast<int>(argv.size()), argv.data(), KEYS, POSITIONS);
    }
    static std::string get(const std::string& name) {
        const char* value = RES_get(name);
        return value != nullptr ? value : "(none)";
    }
};

TEST_F(Resources, OptionForms) {
    for (const Words& words : {Words{"-pl", "cf"}, {"-pl=cf"}, {"-plot_type", "cf"}, {"--plot_t=CF"}, {"-PL", "Cf"}}) {
        init(words);
        EXPECT_EQ(FLAG_get(FLAG_PLOT_TYPE), 15) << words[0];
    }
    init({"-ho", "-12", "-cu", "-ft", "h12", "-unknown_key", "-5", "--", "-in"});
    EXPECT_EQ(get("hour"), "-12");
    EXPECT_EQ(get("current"), "");
    EXPECT_EQ(get("time"), "h12");
    EXPECT_EQ(get("unknown_key"), "-5");
    EXPECT_EQ(get("con_interval"), "");
    EXPECT_EQ(get("never_set"), "(none)");
    EXPECT_EQ(RES_get_progname(), "prog");
}

TEST_F(Resources, PositionalWordsAndValuesGivenBack) {
    init({"-ba", "grid.dat", "-", "-ic=no", "-12"});
    Words files;
    EXPECT_EQ(RES_getvals("filename", files), 3);
    EXPECT_EQ(files, (Words{"grid.dat", "-", "-12"}));
    EXPECT_EQ(FLAG_batch(), 1);
    int icon = 7;
    EXPECT_EQ(RES_getval("icon", &icon, CV_bool), 1);
    EXPECT_EQ(icon, 0);
    RES_put("draw", "a,b");
    EXPECT_EQ(RES_getvals("draw", files), 2);
}

TEST_F(Resources, LaterSourcesReplaceEarlierOnes) {
    dir.write("one/.zavdef", "*.time one\n*.variable one\n*.current one\n*.free \"of one\"\nother.free2 x\n");
    dir.write("two/zav.cfg", "IF tag\n*.time two\nEND\nprog.variable two\n");
    const test::EnvSetting path("zavdefault", "+tag:missing:one:two:");
    const test::EnvSetting env("zavvar", "env");
    init({"-cu", "line", "-default"});
    EXPECT_EQ(get("time"), "two");
    EXPECT_EQ(get("variable"), "env");
    EXPECT_EQ(get("current"), "line");
    EXPECT_EQ(get("free"), "of one");
    EXPECT_EQ(get("free2"), "(none)");
}

TEST_F(Resources, NameAndDefaultActBeforeTheFiles) {
    dir.write("defs", "title.time titled\n");
    init({"-ft2", "-name", "title", "-df=defs", "--name=x"});
    EXPECT_EQ(get("time"), "titled");
    EXPECT_EQ(get("name"), "title");
    init({"-name="});
}

TEST_F(Resources, BatchNarrowsMessagesOnlyWithoutAnExplicitLevel) {
    init({"-me", "mess", "-ba"});
    EXPECT_EQ(MESS_get(), 0xFFFU);
    init({"-ba", "-me", "mess"});
    EXPECT_EQ(MESS_get(), 0xFFFU);
}

forced_date last_date;

TEST_F(Resources, HourForms) {
    ZAV_hooks().set_forced_date = [](const forced_date& date) { last_date = date; };
    for (const test::Case& c : test::cases("frame/hours")) {
        EXPECT_EQ(RES_conv_data(c.text(0).c_str(), {}, CV_hour), 1);
        EXPECT_EQ(last_date.month, c.number(1)) << c.line();
        EXPECT_EQ(last_date.day, c.number(2)) << c.line();
        EXPECT_EQ(last_date.hour, c.number(3)) << c.line();
        EXPECT_EQ(last_date.min, c.number(4)) << c.line();
    }
    EXPECT_EQ(last_date.year, MISS);
    RES_conv_data("#20010203", {}, CV_hour);
    EXPECT_EQ(last_date.year, 2001);
    ZAV_hooks().set_forced_date = nullptr;
}

TEST_F(Resources, Conversions) {
    int number = 1;
    EXPECT_EQ(RES_conv_data("0x1F", &number, CV_int), 1);
    EXPECT_EQ(number, 31);
    EXPECT_EQ(RES_conv_data("+99999999999", &number, CV_int), 1);
    EXPECT_EQ(number, 2147483647);
    EXPECT_EQ(RES_conv_data("x12", &number, CV_int), 0);
    EXPECT_EQ(RES_conv_data(nullptr, &number, CV_int), 0);
    EXPECT_EQ(RES_conv_data("Off", &number, CV_bool), 1);
    EXPECT_EQ(number, 0);
    EXPECT_EQ(RES_conv_data("maybe", &number, CV_bool), 0);
    long color = 0;
    EXPECT_EQ(RES_conv_data("-3", &color, CV_long), 0);
    EXPECT_EQ(RES_conv_data("-3", &color, CV_color), 1);
    EXPECT_EQ(color, -3);
    std::string path;
    RES_conv_data("/data", &path, CV_path);
    EXPECT_EQ(path, "/data/");
    RES_conv_data("NONE", &path, CV_path);
    EXPECT_EQ(path, "");
    FLAG_reset(MISS);
    EXPECT_EQ(RES_conv_data("p,out.ps,x", {}, CV_device), 0);
    EXPECT_EQ(FLAG_get(FLAG_DEVICE), MISS);
    std::string name = "before";
    EXPECT_EQ(RES_conv_data("Q", &name, CV_device), 1);
    EXPECT_EQ(FLAG_get(FLAG_DEVICE), 5);
    EXPECT_EQ(name, "before");
    RES_conv_data("p,out.ps,x", &name, CV_device);
    EXPECT_EQ(FLAG_get(FLAG_DEVICE), 4);
    EXPECT_EQ(name, "out.ps,x");
    RES_conv_data("recalc", {}, CV_file_param);
    EXPECT_EQ(FLAG_get(FLAG_FILE_POLICY), 1);
    for (const test::Case& c : test::cases("frame/plot_words")) {
        EXPECT_EQ(RES_conv_data(c.text(0).c_str(), {}, CV_plot_type), 1);
        EXPECT_EQ(FLAG_get(FLAG_PLOT_TYPE), c.number(1)) << c.line();
    }
}

TEST_F(Resources, TargetsAreChecked) {
    FLAG_resetplot(1);
    RES_put("draw", "-map");
    RES_put("count", "12");
    float wrong = 5;
    const test::Output output = test::capture([&] {
        EXPECT_EQ(RES_getval("draw", {}, CV_draw), 1);
        EXPECT_EQ(RES_getval("count", &wrong, CV_int), 0);
        EXPECT_EQ(RES_getval("count", {}, CV_int), 0);
    });
    EXPECT_EQ(FLAG_getplot(PLOT_MAP), 0);
    EXPECT_EQ(wrong, 5);
    const std::string fault = "RES_getval: The target doesn't take the value of the resource: count\n";
    EXPECT_EQ(output.err, fault + fault);
    FLAG_resetplot(1);
}

TEST_F(Resources, ValuesThatMeanNothingAreTold) {
    const std::string good = "-in=-.5,-pl=CF,-pf=APP,-ic=off";
    const auto told = [&](const std::string& words) {
        return test::capture([&] { init(parse_string(good + words, ',')); }).err;
    };
    EXPECT_EQ(told(",-in=abc"), "The value of con_interval (-in) can't be read: abc\n");
    EXPECT_EQ(told(",-pl,xyz"), "The value of plot_type (-pl) can't be read: xyz\n");
    EXPECT_EQ(told(",-pf=save"), "The value of file_param (-pf) can't be read: save\n");
    EXPECT_EQ(told(",-ic=maybe"), "The value of icon (-ic) can't be read: maybe\n");
    EXPECT_EQ(told(""), "");
    EXPECT_EQ(ZAV_noted(), STATUS_WORD);
    for (const char* number : {"5", "<3", ",>2", "+1e3x"}) EXPECT_TRUE(RES_is_readable(number, CV_float)) << number;
}

TEST_F(Resources, CommandsCountOnlyInFilesThatOthersCannotWrite) {
    const test::EnvSetting path("zavdefault", ".");
    const std::string file = dir.write(".zavdef", "*.message +fi=|command\n*.time h12\n");
    for (const unsigned mode : {0666U, 0620U, 0644U}) {
        std::filesystem::permissions(file, static_cast<std::filesystem::perms>(mode));
        const test::Output output = test::capture([] { init({}); });
        MESS_set_str("out2");
        EXPECT_EQ(get("time"), "h12");
        // Without the hook that starts commands, one opens a file of its name.
        EXPECT_EQ(std::filesystem::exists("|command"), mode == 0644U) << mode;
        EXPECT_EQ(output.err.empty(), mode == 0644U) << output.err;
    }
}

TEST_F(Resources, DrawSwitchesComponents) {
    FLAG_resetplot(1);
    RES_conv_data("-text,-map", {}, CV_draw);
    EXPECT_EQ(FLAG_getplot(PLOT_TEXT), 0);
    EXPECT_EQ(FLAG_getplot(PLOT_BORDER), 0);
    EXPECT_EQ(FLAG_getplot(PLOT_ALL), 3);
    RES_conv_data("data,+text_ul", {}, CV_draw);
    EXPECT_EQ(FLAG_getplot(PLOT_ALL), 3);
    EXPECT_EQ(FLAG_getplot(PLOT_MAP), 0);
    RES_conv_data("none", {}, CV_draw);
    EXPECT_EQ(FLAG_getplot(PLOT_ALL), 0);
    FLAG_resetplot(1);
}

TEST_F(Resources, HostileCommandLines) {
    Words words{std::string(100000, 'x'), "-" + std::string(5000, 'n') + "=" + std::string(300, 'v'), "-=", "-n"};
    for (int i = 0; i < 1000; ++i) words.push_back("-opt" + std::to_string(i) + (i % 2 != 0 ? "=" : ""));
    for (int i = 0; i < 1000; ++i) words.push_back("file" + std::to_string(i));
    dir.write(".zavdef", std::string(3000, '*') + " x\n" + std::string("*.\0 \xff\n", 7));
    init(words);
    EXPECT_EQ(get(std::string(49, 'n')), std::string(300, 'v'));
    EXPECT_EQ(get("opt998"), "");
    const Words argv_none;
    EXPECT_EQ(RES_init(0, nullptr, KEYS, POSITIONS), 1);
}

TEST_F(Resources, MissingLoopWindowIsReported) {
    const test::EnvSetting path("zavdefault", "#4711:defs");
    dir.write("defs", "*.time after\n");
    const test::Output output = test::capture([] { init({}); });
    EXPECT_EQ(output.err, "ZAVloop window: 4711 not running or no message queue exists\n");
    EXPECT_EQ(get("time"), "after");
}

TEST_F(Resources, HelpNamesEachOption) {
    const res_type keys[] = {RES_message, RES_region, RES_geometry, RES_null};
    const test::Output output = test::capture([&] { RES_help_print("prog", keys, POSITIONS); });
    EXPECT_EQ(output.out.substr(0, output.out.find(" -me")),
              "prog syntax (version:5.60.4-LINUX-X11)\n   prog [options...]\nKeyed options...\n"
              " -df file    Resource/defaults file name\n -na name    Program name\n");
    EXPECT_NE(output.out.find(" -me level   Message level to be displayed:\n               none,print,error"),
              std::string::npos);
    EXPECT_NE(output.out.find("\n             Region to be used for plotting and gridding\n"), std::string::npos);
    EXPECT_NE(output.out.find("Positional options...\n file [file...]  Input file names\n"), std::string::npos);
}

}  // namespace
}  // namespace zav
