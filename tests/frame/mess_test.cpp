#include "frame/mess.h"

#include "frame/flag.h"
#include "frame/zav.h"
#include "support/support.h"
#include "support/table.h"

namespace zav {
namespace {

TEST(MessLevel, FollowsItsWords) {
    for (const test::Case& c : test::cases("frame/levels")) {
        MESS_set_str(c.text(0));
        EXPECT_EQ(MESS_get(), static_cast<M_type>(c.real(1))) << c.line();
    }
}

TEST(MessLevel, DefaultsGiveWayToExplicitSettings) {
    // The settings are counted for the life of the process, so this holds after any other test too.
    MESS_set(0, 0x200);
    EXPECT_EQ(MESS_get(), 0x3FFU);
    MESS_set(20, MESS_PRINT);
    EXPECT_EQ(MESS_get(), 0x3FFU);
    MESS_set(11, 0x1000);
    EXPECT_EQ(MESS_get(), 0x13FFU);
    MESS_set(9, 0xF);
    EXPECT_EQ(MESS_get(), 0x13F0U);
    MESS_set(10, 0);
    EXPECT_EQ(MESS_get(), 0U);
}

class Message : public test::TempDirTest {
  protected:
    Message() { MESS_set_str("out2,nopage"); }
    ~Message() override {
        MESS_set_out(1);
        MESS_set_str("out2,+fi=/dev/null,nopage");
        MESS_file_close();
    }
};

TEST_F(Message, GoesToTheStreamOfItsClass) {
    MESS_set_str("mess");
    const test::Output output = test::capture([] {
        EXPECT_EQ(MESS_print(MESS_PRINT, "menu %d\n", 1), 1);
        EXPECT_EQ(MESS_print(64, "warning\n"), 1);
        EXPECT_EQ(MESS_print(MESS_OUT1, "detail\n"), 0);
        MESS_print_prog("NAME");
    });
    EXPECT_EQ(output.out, "menu 1\n      NAME (Ver 5.60.4-LINUX-X11)\n\n");
    EXPECT_EQ(output.err, "warning\n");
}

TEST_F(Message, GoesToFilesInEachWay) {
    test::capture([] { MESS_file("extra", "w"); });
    struct Way {
        const char* word;
        int result;
        const char* screen;
    };
    const Way ways[] = {
        {"+fi=a", 1, "x\n"}, {"fi=b", 0, ""}, {"-fi=c", 1, "x\n"}, {"dfi=d", 1, "x\n"}, {"@fi=e", 1, "x\n"}};
    for (const Way& way : ways) {
        MESS_set_str(std::string(way.word) + ",warn");
        const test::Output output = test::capture([&] { EXPECT_EQ(MESS_print(MESS_PRINT, "x\n"), way.result); });
        EXPECT_EQ(output.out, way.screen) << way.word;
    }
    MESS_set_str("+fi=/dev/null");
    MESS_file_close();
    for (const char* name : {"a", "b", "c", "d"}) EXPECT_EQ(test::read_file(name), "x\n") << name;
    EXPECT_EQ(test::read_file("extra"), "x\nx\nx\nx\nx\n");
    const std::string stamped = test::read_file("e");
    EXPECT_EQ(stamped.substr(stamped.find(" -- ")), " -- x\n");
    EXPECT_GT(stamped.size(), 20U);
}

TEST_F(Message, HoldsAfterAPageAndEndsAtTheEndOfTheInput) {
    FLAG_reset(MISS);
    MESS_set_str("print,page,line=3");
    const test::Output output = test::capture(
        [] {
            for (int i = 0; i < 9; ++i) MESS_print(MESS_PRINT, "%s\n", "two\nlines");
        },
        "\n");
    // After the 4th, and again after the 8th, when the input is at its end.
    std::string::size_type first = output.out.find("Press return to continue\n");
    EXPECT_EQ(first, 4U * 10);
    EXPECT_NE(output.out.find("Press return to continue\n", first + 1), std::string::npos);
    MESS_set_page(1);
}

TEST(Flag, TableAndSums) {
    FLAG_reset(MISS);
    EXPECT_EQ(FLAG_get(30), 0);
    EXPECT_EQ(FLAG_set(30, 1), -1);
    EXPECT_EQ(FLAG_set(-1, 1), -1);
    EXPECT_EQ(FLAG_batch(), 0);
    EXPECT_EQ(FLAG_get(6), MISS);
    FLAG_setl(6, 5000000000L);
    EXPECT_EQ(FLAG_getl(6), 5000000000L);

    FLAG_resetplot(0);
    FLAG_setplot(PLOT_TEXT, 1);
    EXPECT_EQ(FLAG_getplot(PLOT_TEXT), 6);
    EXPECT_EQ(FLAG_getplot(PLOT_ALL), 12);
    FLAG_setplot(PLOT_TEXT_UC, 0);
    EXPECT_EQ(FLAG_getplot(PLOT_TEXT), 5);
    FLAG_setplot(PLOT_ALL, 0);
    EXPECT_EQ(FLAG_getplot(PLOT_ALL), 0);
    FLAG_setplot(13, 1);
    EXPECT_EQ(FLAG_getplot(13), 0);
    FLAG_resetplot(1);
}

}  // namespace
}  // namespace zav
