// Variable strings: the list that they compile into.
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "frame/flag.h"
#include "frame/resrc.h"
#include "support/support.h"
#include "support/table.h"
#include "var/var_tool.h"

namespace zav {
namespace {

int two_results(const std::string& name) { return name == "grad"; }
int function_type(const std::string& name) { return name == "wind" ? 20 : (name == "add" || name == "grad" ? 10 : 0); }

class VarSetup : public test::TempDirTest {
  protected:
    void SetUp() override {
        FLAG_reset(MISS);
        FLAG_setl(FLAG_TIME, 24);
        FLAG_setl(FLAG_LTYPE, 100);
        FLAG_setl(FLAG_LEVEL, 500);
        RES_put("file_path", dir.path().string());
        dir.write("variable.lup", "11,12 temp Temperature\n7 hght Height\n33 uwnd U\n34 vwnd V\n17 dewp Dew Point\n");
        VAR_read_varfile();
        VAR_set_def_type(11);
        VAR_hooks().is_vect_func = two_results;
        VAR_hooks().is_math_func = function_type;
    }
    void TearDown() override { VAR_hooks() = var_hooks{}; }

    /// "name:flag:var" of all entries.
    static std::string list() {
        std::string text;
        for (int i = 0; i < VAR_get_num(); i++) {
            text += (i > 0 ? " " : "") + VAR_get_name(i) + ":" + std::to_string(VAR_get_flag(i)) + ":" +
                    std::to_string(VAR_get_var(i)->var[0]);
        }
        return text;
    }
    std::string macros(const std::string& text) const { return dir.write("x.var", text); }
};

TEST_F(VarSetup, StringsCompileIntoFlatLists) {
    for (const test::Case& c : test::cases("var/lists")) {
        EXPECT_EQ(VAR_setup(nullptr, c.text(0)), 1) << c.line();
        EXPECT_EQ(list(), c.text(1)) << c.line();
    }
    EXPECT_EQ(VAR_setup(nullptr, ""), 0);
    EXPECT_EQ(VAR_get_num(), 0);
}

/// Random variable strings, each with the list that it stands for: "name:flag:time:level:given" of its entries.
class RandomString {
  public:
    explicit RandomString(unsigned seed) : random_(seed) {}

    struct Place {
        int functions = 0, groups = 0, time = 24, level = 500, given = 1;
    };
    std::string items(Place place, int depth) {
        std::string text = item(place, depth);
        for (int more = pick(3); more > 0; more--) text += "," + item(place, depth);
        return text;
    }
    std::string wanted;

  private:
    int pick(int count) { return static_cast<int>(random_() % static_cast<unsigned>(count)); }
    void entry(const std::string& name, const Place& place, int kind) {
        wanted += name + ":" + std::to_string(place.functions * 10 + kind) + ":" + std::to_string(place.time) + ":" +
                  std::to_string(place.level) + ":" + std::to_string(place.given) + " ";
    }
    std::string item(Place place, int depth) {
        std::string front;
        if (pick(3) == 0) {
            place = {place.functions, place.groups, 6 + pick(90), 100 + pick(900), 2};
            front = "h" + std::to_string(place.time) + ":" + std::to_string(place.level) + ":";
        }
        if (pick(6) == 0) return front + macro(place);
        if (depth == 0 || pick(2) == 0) {
            entry("hght", place, place.groups > 0 ? 1 : 0);
            return front + "hght";
        }
        const struct {
            const char *name, *open, *close;
            int kind, entries;
        } kinds[] = {
            {"add", "(", ")", 2, 1}, {"grad", "(", ")", 2, 2}, {"v", "<", ">", 6, 1}, {"pair", "{", "}", 5, 1}};
        const auto& one = kinds[pick(4)];
        entry(one.name, place, one.kind);
        if (one.entries == 2) entry(one.name, place, 8);
        (one.kind == 2 ? place.functions : place.groups)++;
        return front + one.name + one.open + items(place, depth - 1) + one.close;
    }
    /// "both" is a list of two, of which the second has its own time and level.
    std::string macro(Place place) {
        const int kind = place.groups > 0 ? 1 : 0;
        entry("temp", place, kind);
        place.time = 12;
        place.level = 850;
        place.given = 2;
        entry("dewp", place, kind);
        return "both";
    }
    std::mt19937 random_;
};

TEST_F(VarSetup, RandomStringsCompileIntoTheListsThatTheyWereMadeFrom) {
    VAR_setup(macros("both B 1 temp,h12:850:dewp\n").c_str(), "both");
    int compared = 0;
    for (unsigned seed = 1; seed <= 3000; seed++) {
        RandomString made(seed);
        const std::string text = made.items({}, 3);
        if (std::count(made.wanted.begin(), made.wanted.end(), ' ') > VAR_MAX) continue;
        ASSERT_EQ(VAR_setup(nullptr, text), 1) << text;
        std::string got;
        for (int i = 0; i < VAR_get_num(); i++) {
            const VAR_data& data = *VAR_get_var(i);
            got += VAR_get_name(i) + ":" + std::to_string(data.flag) + ":" + std::to_string(data.time) + ":" +
                   std::to_string(data.level) + ":" + std::to_string(data.tstat) + " ";
            EXPECT_EQ(data.lstat, data.tstat) << text;
        }
        ASSERT_EQ(got, made.wanted) << text;
        compared++;
    }
    EXPECT_GT(compared, 2000);
}

TEST_F(VarSetup, KeysAndTypeOfAnEntry) {
    VAR_setup(nullptr, "h12:850:temp,h24-12acc:sfc:prcp::cf");
    EXPECT_EQ(VAR_get_type(1), VTYPE_FILL);
    EXPECT_EQ(VAR_get_units(1), "");
    EXPECT_EQ(VAR_get_time_key(1), "4012024");
    EXPECT_EQ(VAR_get_level_key(0), "850");
}

TEST_F(VarSetup, TypeUnitsAndFormatFollowTheirRules) {
    for (const test::Case& c : test::cases("var/settings")) {
        FLAG_set(FLAG_PLOT_TYPE, c.number(0));
        VAR_setup(nullptr, c.text(1));
        EXPECT_EQ(VAR_get_type(c.number(2)), c.number(3)) << c.line();
        EXPECT_EQ(VAR_get_units(c.number(2)), c.text(4)) << c.line();
        EXPECT_EQ(VAR_get_format(c.number(2)), c.text(5)) << c.line();
    }
    FLAG_set(FLAG_PLOT_TYPE, MISS);
    VAR_setup(nullptr, "temp:" + std::string(40, 'u') + ":" + std::string(300, 'f'));
    EXPECT_EQ(VAR_get_units(0).size(), 14U);
    EXPECT_EQ(VAR_get_format(0).size(), 100U);
}

TEST_F(VarSetup, MacrosStandForTheirStrings) {
    const std::string file = macros(
        "thk  Thickness  1  h12:500:sub( hght , \\\n  h12:1000:hght )\r\n"
        "temp Temperature 1 temp:C:cf\n"
        "Uv_Wind_name Wind 1 v<uwnd,vwnd>\n"
        "loop1 L 1 add(loop2,temp)\nloop2 L 1 add(loop1,temp)\n");
    ASSERT_EQ(VAR_setup(file.c_str(), "thk"), 1);
    EXPECT_EQ(list(), "sub:2:0 hght:10:7 hght:10:7");
    EXPECT_EQ(VAR_get_var(2)->level, 1000);
    EXPECT_EQ(VAR_get_var(1)->level, 500);
    VAR_setup(nullptr, "temp");
    EXPECT_EQ(list(), "temp:0:11");
    EXPECT_EQ(VAR_get_units(0), "C");
    VAR_setup(nullptr, "+temp");
    EXPECT_EQ(VAR_get_units(0), "");
    VAR_setup(nullptr, "h36:700:temp:F");
    EXPECT_EQ(VAR_get_units(0), "F");
    EXPECT_EQ(VAR_get_time(0), 36);
    EXPECT_EQ(VAR_setup(nullptr, "fi:" + file + ":temp"), 1);
    EXPECT_EQ(list(), "temp:0:11");
    std::string name;
    EXPECT_EQ(VAR_search_name_file("UV_WIND_NAME", name), 1);
    EXPECT_EQ(name, "Wind");
    const test::Output shown = test::capture([] { EXPECT_EQ(VAR_setup(nullptr, "loop1"), 0); });
    EXPECT_NE(shown.err, "");
    EXPECT_EQ(VAR_get_num(), 0);
    EXPECT_EQ(VAR_setup(nullptr, "hght"), 1) << "a refused string leaves nothing behind";
}

TEST_F(VarSetup, StringsThatNeedTooMuchAreRefused) {
    std::string many = "temp";
    for (int i = 1; i < VAR_MAX; i++) many += ",temp";
    EXPECT_EQ(VAR_setup(nullptr, many), 1);
    EXPECT_EQ(VAR_get_num(), VAR_MAX);
    std::string deep = "hght";
    for (int i = 0; i < 9; i++) deep = "abs(" + deep + ")";
    EXPECT_EQ(VAR_setup(nullptr, deep), 1);
    EXPECT_EQ(VAR_get_flag(9), 90);
    test::capture([&] {
        EXPECT_EQ(VAR_setup(nullptr, many + ",temp"), 0);
        EXPECT_EQ(VAR_setup(nullptr, "abs(" + deep + ")"), 0);
        EXPECT_EQ(VAR_setup(nullptr, std::string(100000, '(')), 1);
    });
    const std::string file = macros("e E 1 ,\nm M 1 e,e,e,e,e,e,e,e\nn N 1 m,m,m,m,m,m,m,m\no O 1 n,n,n,n,n,n,n,n,n\n");
    test::capture([&] { EXPECT_EQ(VAR_setup(file.c_str(), "o,o,o,o"), 0); });
}

TEST_F(VarSetup, TestsReadFlagAndType) {
    VAR_setup(nullptr, "temp,add(temp,dewp),v<uwnd,vwnd>,grad(hght),map");
    EXPECT_TRUE(VAR_is_REG(0) && VAR_is_PLOT(0) && VAR_is_LABEL(0) && VAR_is_plot_GRID(0) && VAR_is_plot_CONT(0));
    EXPECT_TRUE(VAR_is_FUNC(1) && VAR_is_calc_GRID(1) && !VAR_is_get_GRID(1) && VAR_is_plot_FUNC(1));
    EXPECT_TRUE(VAR_is_get_GRID(2) && !VAR_is_PLOT(2) && VAR_is_fit_GRID(2) && VAR_is_type_GRID(2));
    EXPECT_TRUE(VAR_is_VECT(4) && VAR_is_plot_VECT(4) && !VAR_is_type_GRID(4));
    EXPECT_TRUE(VAR_is_SUBREG(5) && VAR_is_CALC(5));
    EXPECT_TRUE(VAR_is_FUNC_VECT(7) && VAR_is_FUNC_VECT(8) && !VAR_is_get_GRID(8) && VAR_is_plot_FUNC_VECT(7));
    EXPECT_TRUE(VAR_is_type_MAP(10) && !VAR_is_get_GRID(10) && !VAR_is_type_PLOT(10) && VAR_is_PLOT(10) &&
                !VAR_is_LABEL(10));
    EXPECT_FALSE(VAR_is_REG(11) || VAR_is_REG(-1) || VAR_is_DATA(1000) || VAR_is_type_PLOT(60));
    EXPECT_EQ(VAR_get_var(VAR_MAX), nullptr);
    EXPECT_EQ(VAR_get_name(-1), "");
}

TEST(VarType, WordsAndPrintedNamesDiffer) {
    for (const test::Case& c : test::cases("var/types")) {
        EXPECT_EQ(VAR_dec_type(c.text(0)), c.number(1)) << c.line();
        EXPECT_EQ(VAR_print_type(c.number(1)), c.text(2)) << c.line();
    }
    EXPECT_STREQ(VAR_print_type(10), "grid");
}

}  // namespace
}  // namespace zav
