#include "frame/menu.h"

#include <algorithm>

#include "frame/flag.h"
#include "frame/hooks.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/status.h"
#include "frame/zav.h"
#include "support/support.h"
#include "support/table.h"

namespace zav {
namespace {

std::vector<MENU_item> numbered(int count) {
    std::vector<MENU_item> menu{{"Back", "back", 0, {1}}};
    for (int i = 1; i <= count; ++i) {
        menu.push_back({"Item " + std::to_string(i), "i" + std::to_string(i), 100 + i, {i == 2 ? 0 : 1}});
    }
    return menu;
}

TEST(MenuPrint, LaysOutOneAndTwoColumns) {
    MESS_set(0, 0xFFFFF);
    const test::Output one = test::capture([] { MENU_print("Title\n", numbered(13), 0, 3); });
    EXPECT_NE(one.out.find("Title\n\n  1: Item 1                        \n  2: Item 3 "), std::string::npos);
    EXPECT_NE(one.out.find(" 12: Item 13                       \n  0: Back                          \n"
                           " -1: Exit program                  \n\n"),
              std::string::npos);
    const test::Output two = test::capture([] { MENU_print("", numbered(14), 0, 7); });
    // 13 shown: seven rows, the last with one item.
    EXPECT_NE(two.out.find("  6: Item 7                          13: Item 14                       \n  7: Item 8 "),
              std::string::npos);
    EXPECT_NE(
        two.out.find(" 99: Help                          \n  0: Back                            -1: Exit program"),
        std::string::npos);
    std::vector<MENU_item> separated = numbered(3);
    separated[1].name = "-";
    EXPECT_NE(test::capture([&] {
                  MENU_print("", separated, 0, 0);
              }).out.find("\n --------------------               \n  2: Item 3"),
              std::string::npos);
}

TEST(MenuProcess, TakesNumbersWordsAndFreeText) {
    for (const test::Case& c : test::cases("frame/answers")) {
        std::string string = "before";
        int result = 0;
        test::capture([&] { result = MENU_process("", numbered(12), 0, "Enter: ", string, c.number(1)); }, c.text(0));
        EXPECT_EQ(result, c.number(2)) << c.line();
        EXPECT_EQ(string, c.text(3)) << c.line();
    }
    EXPECT_EQ(MENU_search("item 2", numbered(3)), 102);
    EXPECT_EQ(MENU_search("none", numbered(3)), MISS);
    EXPECT_STREQ(MENU_get_abbr(103, numbered(3)), "i3");
    EXPECT_TRUE(MENU_check(102, numbered(3), 0) == 0 && MENU_check(101, numbered(3), 0) == 1);
}

TEST(Prompt, InsistsOnAValue) {
    MESS_set(0, 0xFFFFF);
    float value = 0;
    const test::Output output = test::capture([&] { value = ZAV_promptf("Interval: "); }, "abc\nnan\n2.5 mb\n");
    EXPECT_EQ(value, 2.5F);
    EXPECT_EQ(output.out, "Interval: Interval: Interval: ");
    test::capture([&] { value = ZAV_promptf(""); }, "\n");
    EXPECT_EQ(value, 0.0F);
    int number = 0;
    test::capture([&] { number = ZAV_promptd(""); }, "99999999999999\n");
    EXPECT_EQ(number, 2147483647);
}

TEST(Prompt, LongLinesAndCommands) {
    std::string word = "kept";
    const test::Output set = test::capture([&] { ZAV_prompts("", word, 41); }, "set my_name = a value\nset\n\n");
    EXPECT_EQ(word, "kept");
    EXPECT_NE(set.out.find("my_name: a value\n"), std::string::npos);
    EXPECT_STREQ(RES_get("my_name"), "a value");
    test::capture(
        [&] {
            ZAV_prompts("", word, 41);
            EXPECT_EQ(word, std::string(40, 'x'));
            ZAV_promptl("", word);
            EXPECT_EQ(word, "next");
        },
        std::string(200000, 'x') + "\nnext\n");
}

TEST(PromptDeathTest, EndOfInputAndExitEndTheProgram) {
    // Before the first chart a question was left open; behind one the script is done.
    const auto ask = [](bool unfinished) {
        ZAV_set_unfinished(unfinished);
        ZAV_promptd("Number: ");
    };
    EXPECT_EXIT(test::capture([&] { ask(true); }, ""), ::testing::ExitedWithCode(STATUS_INPUT_ENDED), "");
    EXPECT_EXIT(test::capture([&] { ask(false); }, ""), ::testing::ExitedWithCode(0), "");
    EXPECT_EXIT(test::capture(
                    [] {
                        std::string word;
                        MENU_process("", numbered(2), 0, "", word, 3);
                    },
                    "?\n\n?"),
                ::testing::ExitedWithCode(STATUS_INPUT_ENDED), "");
    EXPECT_EXIT(test::capture([] { ZAV_promptf(""); }, "EXIT now\n"), ::testing::ExitedWithCode(0), "");
}

TEST(MenuPattern, FitsTexts) {
    for (const test::Case& c : test::cases("frame/patterns")) {
        EXPECT_EQ(VAR_menu_display(c.text(0), c.text(1)), c.number(2)) << c.line();
    }
}

class MenuFiles : public test::TempDirTest {
  protected:
    MenuFiles() {
        RES_put("file_path", dir.path().string());
        const char* argv[] = {"/bin/prog"};
        RES_setCL(1, argv);
        FLAG_reset(MISS);
        ZAV_hooks().model_text = [] { return std::string("eta"); };
        ZAV_hooks().level_text = [] { return std::string("500mb"); };
    }
    ~MenuFiles() override { ZAV_hooks() = frame_hooks(); }

    static std::string abbreviations(const std::vector<MENU_item>& menu) {
        std::string all;
        for (const MENU_item& item : menu) all += item.abbr + ";";
        return all;
    }
};

TEST_F(MenuFiles, ShowLinesByTheirRules) {
    EXPECT_EQ(GRD_read_time_menu() + UPA_read_level_menu(), 0);
    std::vector<MENU_item> compiled = GRD_time_menu();
    compiled.insert(compiled.end(), UPA_level_menu().begin(), UPA_level_menu().end());
    const std::vector<test::Case> rows = test::cases("frame/menus");
    ASSERT_EQ(compiled.size(), rows.size());
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(compiled[i].name + compiled[i].abbr, rows[i].text(0) + rows[i].text(1));
        EXPECT_EQ(compiled[i].index * 10 + compiled[i].disp[0], rows[i].number(2) * 10 + rows[i].number(3));
    }
    dir.write("prog.tim",
              "h06 6_hour mo=eta|ngm\nh12 12_hour 0\nshort\nh18 18_hour_ x,mo=e*\nabbreviation y 1\nh24 n mo=ruc\n");
    EXPECT_EQ(GRD_read_time_menu(), 1);
    EXPECT_EQ(abbreviations(GRD_time_menu()), "back;h06;h18;abbreviation;");
    EXPECT_EQ(GRD_time_menu()[1].name, "6 hour");
    EXPECT_EQ(GRD_time_menu()[1].index, 1);

    dir.write("prog.lev", "a A mo=eta&le=500mb\nb B mo=eta\nc C ft=x,mo=eta&mo=e*\n");
    EXPECT_EQ(UPA_read_level_menu(), 1);
    EXPECT_EQ(abbreviations(UPA_level_menu()), "back;b;c;");
}

TEST_F(MenuFiles, VariableMenu) {
    std::string string;
    FLAG_set_batch(1);
    const test::Output missing = test::capture([&] {
        EXPECT_EQ(VAR_open_file(nullptr), 0);
        EXPECT_EQ(VAR_read_menu(), 0);
        EXPECT_EQ(VAR_menu("", "", string, 3), 1);
    });
    EXPECT_EQ(string, "def");
    EXPECT_EQ(missing.err, "VAR_open_file: Unable to open var file: " + dir.file("prog.var") + "\n");

    dir.write("prog.var",
              "t Temp_C mo=eta&le=500mb,mo=ruc temp\\  \n w 1 1 not_an_item\nh Height mo=ruc hght\nz Wind 1 vect \\\n");
    EXPECT_EQ(VAR_open_file(""), 1);
    EXPECT_EQ(VAR_read_menu(), 1);
    EXPECT_EQ(abbreviations(VAR_var_menu()), "back;t;z;");
    VAR_menu("", "", string, 3);
    EXPECT_EQ(string, "t");
    FLAG_set_batch(0);
    int result = 0;
    const test::Output listed = test::capture([&] { result = VAR_menu("", "", string, 3); }, "list\n2\n");
    EXPECT_EQ(result, 1);
    EXPECT_EQ(string, "z");
    EXPECT_NE(listed.out.find(" Abbr    Description\nt        Temp C "), std::string::npos);
    EXPECT_NE(listed.out.find("\nh        Height "), std::string::npos);
}

TEST_F(MenuFiles, LongAbbreviationsArePickedWhole) {
    dir.write("prog.var", "height_500mb_wind Height,_wind 1 hght\n");
    ASSERT_EQ(VAR_open_file(""), 1);
    VAR_read_menu();
    for (const char* answer : {"1\n", "HEIGHT_500mb_wind\n"}) {
        std::string string;
        test::capture([&] { EXPECT_EQ(VAR_menu("", "", string, 3), 1); }, answer);
        EXPECT_EQ(string, "height_500mb_wind") << answer;
    }
}

TEST(Paging, CountsTheLinesOfMenus) {
    MESS_set_str("print,page,line=10");
    const test::Output output = test::capture(
        [] {
            MENU_print("\nTitle\n", numbered(12), 0, 3);
            MESS_hold(MESS_PRINT, "");  // the next page begins anew
        },
        "\n\n");
    MESS_set_page(1);
    const std::size_t hold = output.out.find("Press return");
    ASSERT_NE(hold, std::string::npos);
    EXPECT_EQ(std::count(output.out.begin(), output.out.begin() + static_cast<std::ptrdiff_t>(hold), '\n'), 11);
}

TEST_F(MenuFiles, HoldMoreThanATableShows) {
    std::string lines;
    for (int i = 0; i < 5000; ++i) lines += "a b 1 " + std::string(static_cast<std::size_t>(i), 'x') + "\n";
    dir.write("prog.tim", lines);
    dir.write("prog.var", lines + std::string("\0\xff\n", 3) + "a b " + std::string(500000, '|'));
    EXPECT_EQ(GRD_read_time_menu(), 1);
    EXPECT_EQ(GRD_time_menu().size(), 39U);
    EXPECT_EQ(VAR_open_file(nullptr), 1);
    EXPECT_EQ(VAR_read_menu(), 1);
    EXPECT_EQ(VAR_var_menu().size(), 49U);
    test::capture([] { VAR_print_file(); });
}

}  // namespace
}  // namespace zav
