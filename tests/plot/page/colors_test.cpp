// Colour tables, colours by name, attribute strings.

#include "plot/page/colors.h"

#include "frame/resrc.h"
#include "frame/zav.h"
#include "support/support.h"

namespace zav {
namespace {

class Colors : public test::TempDirTest {
  protected:
    void SetUp() override {
        CLR_clear_table();
        RES_put("file_path", dir.path().string() + "/");
    }
    void expect_rgb(int ind, float red, float grn, float blu) {
        float r = -1, g = -1, b = -1;
        CLR_get_rgb(ind, &r, &g, &b);
        EXPECT_NEAR(r, red, 1e-6) << ind;
        EXPECT_NEAR(g, grn, 1e-6) << ind;
        EXPECT_NEAR(b, blu, 1e-6) << ind;
    }
};

TEST_F(Colors, EntriesTakeTheirPlaceInTheFiles) {
    dir.write("one.clr", "# first\n 7 Black 0 0 0 \n\nRed #FF0033\nEND\n9 Blue 0.1 0.2 0.8\n");
    dir.write("two.clr", "Green 0 1 0\nEND\nunreadable\n# last\n");
    RES_put("color_table", "missing.clr,one.clr");
    CLR_read_table(nullptr);
    EXPECT_EQ(CLR_get_num(), 4);
    EXPECT_EQ(CLR_get_num_fill(), 0);  // the count is the first file's alone
    RES_put("color_table", "one.clr,two.clr");
    CLR_read_table(nullptr);
    EXPECT_EQ(CLR_get_num_fill(), 3);
    EXPECT_EQ(CLR_get_num(), 7);  // a comment at the end takes a place
    EXPECT_EQ(CLR_get_ind("RED"), 2);
    expect_rgb(2, 1.0F, 0.0F, 0.2F);
    EXPECT_EQ(CLR_get_ind("blue"), 3);
    expect_rgb(3, 0.1F, 0.2F, 0.8F);
    EXPECT_EQ(CLR_get_ind("green"), 4);
    EXPECT_EQ(CLR_get_name(1), "");
    EXPECT_EQ(CLR_get_ind("unreadable"), -1);
}

TEST_F(Colors, HostileFilesStayInsideTheTable) {
    std::string many;
    for (int i = 0; i < 400; ++i) many += "c" + std::to_string(i) + " 0.5 0.5 0.5\n";
    CLR_read_table(dir.write("many.clr", many).c_str());
    EXPECT_EQ(CLR_get_num(), 256);
    EXPECT_EQ(CLR_get_ind("c255"), 255);
    EXPECT_EQ(CLR_get_ind("c256"), -1);
    const int near = CLR_get_ind("#808080");  // no room: the nearest entry
    EXPECT_GE(near, 0);
    EXPECT_LT(near, 256);
    std::string binary(20000, 'x');
    for (std::size_t i = 0; i < binary.size(); ++i) binary[i] = static_cast<char>(i * 31 + i / 255);
    CLR_read_table(dir.write("binary.clr", binary).c_str());
    EXPECT_LE(CLR_get_num(), 256);
    CLR_read_table(dir.write("values.clr", "A nan inf -5\nB 1e40 2 0.5\n").c_str());
    expect_rgb(1, 1.0F, 1.0F, 0.5F);
    float r = 0, g = 0, b = 0;
    CLR_get_rgb(0, &r, &g, &b);
    EXPECT_TRUE(r >= 0 && r <= 1 && g >= 0 && g <= 1 && b == 0);
}

TEST_F(Colors, NamesNumbersAndComponents) {
    CLR_read_table(dir.write("t.clr", "Black 0 0 0\nWhite 1 1 1\n").c_str());
    const std::pair<const char*, int> cases[] = {
        {"", -1},        {"OFF", -1},    {"none", -1},    {"back", -1},       {"END", -2},
        {"pblk", 500},   {"PTGRY", 508}, {"white", 1},    {"12", 12},         {"12abc", 12},
        {"nothing", -1}, {"#ff80", -1},  {"#gg8000", -1}, {"#2551280xx", -1}, {"-3", -1},
    };
    for (const auto& [name, ind] : cases) EXPECT_EQ(CLR_get_ind(name), ind) << name;
    EXPECT_EQ(CLR_get_ind("#ff8000"), 2);
    EXPECT_EQ(CLR_get_ind("#255128000"), 3);
    EXPECT_EQ(CLR_get_ind("#FF8000"), 2);  // found again, in any case
    expect_rgb(2, 1.0F, 128.0F / 255.0F, 0.0F);
    expect_rgb(3, 1.0F, 128.0F / 255.0F, 0.0F);
    expect_rgb(99, 1.0F, 128.0F / 255.0F, 0.0F);  // past the table: the last
}

TEST_F(Colors, ShippedTablesHoldTheDefaultNames) {
    for (const char* table : {"zav.clr", "rainbow.clr", "temp.clr", "precip.clr", "gray.clr"}) {
        CLR_read_table((test::source_dir() + "/share/zav/" + table).c_str());
        for (const char* name : {"black", "white", "green", "red", "brown", "yellow", "magenta", "Blue", "Cyan",
                                 "LBlue", "LMagenta", "LCyan", "LGreen", "LRed", "DGray", "LGray"}) {
            EXPECT_GE(CLR_get_ind(name), 0) << table << " " << name;
        }
    }
}

struct Attrib_case {
    const char* text;
    Gattribs want;
};

TEST_F(Colors, EntriesMayBeginWithANumber) {
    CLR_read_table(dir.write("t.clr", "0 Black 0 0 0\n-1 Red 1 0 0\n+12 Sea 0 0.5 1\n-Odd 1 1 0\n").c_str());
    for (const auto& [name, index] : {std::pair{"Black", 0}, {"Red", 1}, {"Sea", 2}, {"-Odd", 3}}) {
        EXPECT_EQ(CLR_get_ind(name), index) << name;
    }
    float red = 0;
    float grn = 1;
    float blu = 1;
    CLR_get_rgb(1, &red, &grn, &blu);
    EXPECT_EQ(red + 10 * grn + 100 * blu, 1);
}

TEST_F(Colors, AttributeStrings) {
    CLR_read_table(dir.write("t.clr", "Black 0 0 0\nRed 1 0 0\n").c_str());
    constexpr int N = MISS;
    constexpr float F = FMISS;
    // color, width, height, expan, style, fill_pat, font
    const Attrib_case cases[] = {
        {"", {N, F, F, F, N, N, N}},
        {"red:wi=2:st=dsh", {1, 2, F, F, 2, N, N}},
        {"12:wi=2", {12, 2, F, F, N, N, N}},
        {"wi=2:co=red", {1, 2, F, F, N, N, N}},
        {"red:s2:w1.5:t3:f9:h0.8:e1.2", {1, 1.5F, 0.8F, 1.2F, 2, 9, 3}},
        {"off:ST=llsdsh:fi=XX:sc=3:te=2", {-1, F, 3, 2, 4, 9, N}},
        {"red::fp=5%:hi=2:zz:st=7", {1, F, 2, F, 7, 15, N}},
        {"red:f3:fM", {1, F, F, F, N, N, N}},
    };
    for (const Attrib_case& c : cases) {
        Gattribs got;
        ATTRIB_parse(c.text, &got);
        EXPECT_EQ(got.color, c.want.color) << c.text;
        EXPECT_EQ(got.width, c.want.width) << c.text;
        EXPECT_EQ(got.height, c.want.height) << c.text;
        EXPECT_EQ(got.expan, c.want.expan) << c.text;
        EXPECT_EQ(got.style, c.want.style) << c.text;
        EXPECT_EQ(got.fill_pat, c.want.fill_pat) << c.text;
        EXPECT_EQ(got.font, c.want.font) << c.text;
    }
    RES_put("color_line", "wi=3");
    Gattribs got;
    EXPECT_EQ(ATTRIB_get("color_line", "red:s4", &got), 1);
    EXPECT_EQ(got.color, 1);
    EXPECT_EQ(got.style, 4);
    EXPECT_EQ(got.width, 3.0F);
    EXPECT_EQ(ATTRIB_get("color_unset", "black", &got), 0);
    EXPECT_EQ(got.color, 0);
}

TEST_F(Colors, PatternsAndMarkers) {
    const std::pair<const char*, int> patterns[] = {{"SOL", 0}, {"ost", 2},  {"||", 5},  {"\\\\", 6}, {"//", 7},
                                                    {"--", 8},  {"clr", 10}, {"9%", 19}, {"13", 13},  {"solid", 0}};
    for (const auto& [text, value] : patterns) EXPECT_EQ(ATTR_parse_fill_pat(text), value) << text;
    const std::pair<const char*, int> markers[] = {{"pnt", 1}, {"Star3", 3},  {"circle", 4}, {"o", 4},
                                                   {"xyz", 5}, {"square", 6}, {"tri", 7},    {"itri", 9},
                                                   {"v", 9},   {"dot", 8},    {"6", 6},      {"?", 0}};
    for (const auto& [text, value] : markers) EXPECT_EQ(ATTR_parse_marker(text), value) << text;
}

}  // namespace
}  // namespace zav
