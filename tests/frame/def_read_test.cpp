#include "frame/def_read.h"

#include "support/support.h"
#include "support/table.h"

namespace zav {
namespace {

class DefRead : public test::TempDirTest {
  protected:
    DefRead() {
        DEF_clr_tag();
        DEF_prog("/usr/bin/prog");
        DEF_name("");
    }

    /// The pairs of a file as "key=value;".
    std::string pairs(const std::string& content) {
        EXPECT_EQ(DEF_open(dir.write("defs", content)), 0);
        std::string all;
        std::string key;
        std::string value;
        while (DEF_get(key, value) == 1) all += key + "=" + value + ";";
        DEF_close();
        return all;
    }
};

TEST_F(DefRead, DeliversPairs) {
    EXPECT_EQ(pairs("# comment\n\n*.Variable: temp\n*.variable temp\nalone\n*.label \"a b  c\" rest\n*.x \"open end\n"),
              "*.variable=temp;*.variable=temp;*.label=a b  c;*.x=open end;");
    EXPECT_EQ(pairs("a 1\r\n\tb\t2\n"), "a=1;b=2;");
}

TEST_F(DefRead, FollowsConditionalLines) {
    const std::string text = "IF a\nk 1\nIF b\nk 2\nELSE\nk 3\nEND\nELIF b\nk 4\nELSE\nk 5\nIF c\nk 6\nEND\nEND\nk 7\n";
    for (const test::Case& c : test::cases("frame/sections")) {
        DEF_clr_tag();
        for (const char tag : c.text(0)) DEF_tag(std::string(1, tag));
        EXPECT_EQ(pairs(text), c.text(1)) << c.line();
    }
}

TEST_F(DefRead, TagsComeAndGoAndOutlastAFile) {
    EXPECT_EQ(pairs("DEF x\nIF x\nk 1\nEND\nUNDEF X\nIF x\nk 2\nEND\nUNDEF none\nDEF y\n"),
              "def=x;k=1;undef=X;undef=none;def=y;");
    EXPECT_EQ(pairs("IF y\nk 3\nEND\n"), "k=3;");
    for (int i = 0; i < 20; ++i) DEF_tag("t" + std::to_string(i));
    EXPECT_EQ(DEF_tag("z"), -1);
}

TEST_F(DefRead, SurvivesHostileFiles) {
    const test::Output output = test::capture([&] {
        EXPECT_EQ(pairs("ELSE\nELIF a\nEND\nk 1\n"), "k=1;");
        std::string deep;
        for (int i = 0; i < 5000; ++i) deep += "IF a\n";
        for (int i = 0; i < 5000; ++i) deep += "END\n";
        EXPECT_EQ(pairs(deep + "k 2\n"), "k=2;");
        pairs(std::string(100000, 'x') + "\n" + std::string("\0\1\2 \xff\xfe", 6) + "\n\"\n: :\n");
    });
    EXPECT_EQ(output.err, "DEF_get: else without an if\nDEF_get: elif without an if\nDEF_get: end without an if\n");
}

TEST_F(DefRead, OpensTheFileOfADirectory) {
    std::string key;
    std::string value;
    EXPECT_EQ(DEF_open("nothing"), -1);
    EXPECT_EQ(DEF_get(key, value), -1);
    EXPECT_EQ(DEF_open("."), -1);
    dir.write("Zav.res", "k last\n");
    dir.write(".zavdef", "k middle\n");
    EXPECT_EQ(DEF_open("."), 0);
    EXPECT_EQ(DEF_get(key, value), 1);
    EXPECT_EQ(value, "middle");
    dir.write("zav.cfg", "k first\n");
    EXPECT_EQ(DEF_open(dir.path().string()), 0);
    EXPECT_EQ(DEF_get(key, value), 1);
    EXPECT_EQ(value, "first");
    EXPECT_EQ(DEF_open(""), 0);
    DEF_close();
}

TEST_F(DefRead, MatchesScopedKeys) {
    for (const test::Case& c : test::cases("frame/keys")) {
        EXPECT_EQ(DEF_cmp("hour", c.text(0)), c.number(1)) << c.line();
    }
    DEF_name("title");
    EXPECT_EQ(DEF_cmp("hour", "title.hour"), 1);
    EXPECT_EQ(DEF_cmp("hour", "prog.hour"), 0);
    DEF_name("+title");
    EXPECT_EQ(DEF_cmp("hour", "prog.title.hour"), 1);
    EXPECT_EQ(DEF_valid("prog*.free"), 1);
    EXPECT_EQ(DEF_valid("free"), 0);
    EXPECT_EQ(DEF_parse_name("prog*.free"), "free");
}

TEST_F(DefRead, AsksTheEnvironmentInOrder) {
    std::string value;
    const test::EnvSetting last("zavhour", "3");
    EXPECT_EQ(DEF_env("hour", "zavhr", value), 1);
    EXPECT_EQ(value, "3");
    const test::EnvSetting middle("zavhr", "2");
    DEF_env("hour", "zavhr", value);
    EXPECT_EQ(value, "2");
    const test::EnvSetting first("zavprog.hour", "1");
    DEF_env("hour", "zavhr", value);
    EXPECT_EQ(value, "1");
    EXPECT_EQ(DEF_env("level", "", value), 0);
}

}  // namespace
}  // namespace zav
