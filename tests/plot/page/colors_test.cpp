// Colour tables, colours by name, attribute strings.

#include "plot/page/colors.h"

#include <functional>
#include <map>

#include "frame/resrc.h"
#include "frame/string.h"
#include "frame/zav.h"
#include "support/support.h"
#include "support/table.h"

namespace zav {
namespace {

class Colors : public test::TempDirTest {
  protected:
    void SetUp() override {
        CLR_clear_table();
        RES_put("file_path", dir.path().string() + "/");
    }
    /// Other tests shall find as many colours for fills as before.
    void TearDown() override {
        std::string lines;
        for (int i = 0; i < fills; ++i) lines += "Black 0 0 0\n";
        dir.write("usual.clr", lines + "END\n");
        RES_put("color_table", "usual.clr");
        CLR_read_table(nullptr);
        EXPECT_EQ(CLR_get_num_fill(), fills);
        RES_put("color_table", "");
        CLR_clear_table();
    }
    const int fills = CLR_get_num_fill();
    void expect_rgb(int ind, float red, float grn, float blu) {
        float r = -1, g = -1, b = -1;
        CLR_get_rgb(ind, &r, &g, &b);
        EXPECT_NEAR(r, red, 1e-6) << ind;
        EXPECT_NEAR(g, grn, 1e-6) << ind;
        EXPECT_NEAR(b, blu, 1e-6) << ind;
    }
};

TEST_F(Colors, EntriesTakeTheirPlaceInTheFiles) {
    dir.write("one.clr", "# first\n 7 Black 0 0 0 \n\n-1 Red #FF0033\nEND\n+9 Blue 0.1 0.2 0.8\n");
    dir.write("two.clr", "-Green 0 1 0\nEND\nunreadable #FF00\n# last\n");
    const int before = CLR_get_num_fill();
    RES_put("color_table", "missing.clr,one.clr");
    CLR_read_table(nullptr);
    EXPECT_EQ(CLR_get_num(), 4);
    EXPECT_EQ(CLR_get_num_fill(), before);  // the count is the first file's alone
    dir.write("endless.clr", "Black 0 0 0\nRed 1 0 0\nBlue 0 0 1\n");
    RES_put("color_table", "endless.clr");
    CLR_read_table(nullptr);
    EXPECT_EQ(CLR_get_num_fill(), 2);
    RES_put("color_table", "one.clr,two.clr");
    CLR_read_table(nullptr);
    EXPECT_EQ(CLR_get_num_fill(), 3);
    EXPECT_EQ(CLR_get_num(), 7);  // a comment at the end takes a place
    EXPECT_EQ(CLR_get_ind("RED"), 2);
    expect_rgb(2, 1.0F, 0.0F, 0.2F);
    EXPECT_EQ(CLR_get_ind("blue"), 3);
    expect_rgb(3, 0.1F, 0.2F, 0.8F);
    EXPECT_EQ(CLR_get_ind("-green"), 4);
    EXPECT_EQ(CLR_get_name(1), "");
    EXPECT_EQ(CLR_get_ind("unreadable"), -1);
}

TEST_F(Colors, HostileFilesStayInsideTheTable) {
    std::string many;
    for (int i = 0; i < 400; ++i) many += text_format("c%d %g 0.5 0\n", i, i / 255.0);
    CLR_read_table(dir.write("many.clr", many).c_str());
    EXPECT_EQ(CLR_get_num(), 256);
    EXPECT_EQ(CLR_get_ind("c255"), 255);
    EXPECT_EQ(CLR_get_ind("c256"), -1);
    EXPECT_EQ(CLR_get_ind("#418020"), 65);  // no room: the nearest entry
    std::string binary(20000, 'x');
    for (std::size_t i = 0; i < binary.size(); ++i) binary[i] = static_cast<char>(i * 31 + i / 255);
    CLR_read_table(dir.write("binary.clr", binary).c_str());
    EXPECT_LE(CLR_get_num(), 256);
    CLR_read_table(dir.write("values.clr", "A nan inf -5\nB 1e40 2 0.5\n").c_str());
    expect_rgb(1, 1.0F, 1.0F, 0.5F);
    expect_rgb(0, 0.0F, 1.0F, 0.0F);
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

std::string text_of(const Gattribs& a) {
    std::string text;
    for (const auto value :
         {float(a.color), a.width, a.height, a.expan, float(a.style), float(a.fill_pat), float(a.font)}) {
        text += value == FMISS ? " -" : text_format(" %g", value);
    }
    return text.substr(1);
}

TEST_F(Colors, TextsOfAttributes) {
    const std::map<std::string, std::function<std::string(const std::string&)>> meanings{
        {"color", [](const auto& text) { return std::to_string(CLR_get_ind(text)); }},
        {"pattern", [](const auto& text) { return std::to_string(ATTR_parse_fill_pat(text)); }},
        {"marker", [](const auto& text) { return std::to_string(ATTR_parse_marker(text)); }},
        {"attributes",
         [](const auto& text) {
             Gattribs attribs;
             ATTRIB_parse(text, &attribs);
             return text_of(attribs);
         }},
    };
    CLR_read_table(dir.write("t.clr", "Black 0 0 0\nRed 1 0 0\n").c_str());
    for (const auto& row : test::data_cells("plot/attributes.tsv"))
        EXPECT_EQ(meanings.at(row[0])(row[1]), row[2]) << row[1];
    for (const int ind : {2, 3, 99}) expect_rgb(ind, 1.0F, 128.0F / 255.0F, 0.0F);  // past the table: the last
    RES_put("color_line", "wi=3");
    Gattribs got;
    EXPECT_EQ(ATTRIB_get("color_line", "red:s4", &got), 1);
    EXPECT_EQ(text_of(got), "1 3 - - 4 - -");
    EXPECT_EQ(ATTRIB_get("color_unset", "black", &got), 0);
    EXPECT_EQ(text_of(got), "0 3 - - 4 - -");
    Gattribs changed;
    ATTRIB_parse("red:w2:s3:f4:t5:h6:e7", &changed);
    for (const char* change : {"black", "wi=8", "st=1", "fp=9", "fo=3", "hi=8", "te=8", ""}) {
        Gattribs once = changed;
        Gattribs given;
        ATTRIB_parse(change, &given);
        ATTRIB_update(&once, &given);
        ATTRIB_parse(change, &changed);
        EXPECT_EQ(text_of(once), text_of(changed)) << change;
    }
}

}  // namespace
}  // namespace zav
