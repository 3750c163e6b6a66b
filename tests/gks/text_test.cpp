// Text and stroke fonts: strokes on PostScript against hand-worked positions, font files good and bad.

#include "gks/gks_text.h"

#include <cstdio>
#include <sstream>
#include <vector>

#include "frame/resrc.h"
#include "gks/gks_ws.h"
#include "support/support.h"

namespace zav {
namespace {

/// Index of a font whose characters begin at the given places, -1 for all others.
std::string font_index(const std::vector<std::pair<char, int>>& starts) {
    std::vector<int> index(256, -1);
    for (const auto& [c, start] : starts) index[static_cast<unsigned char>(c)] = start;
    std::ostringstream text;
    for (const int start : index) text << start << '\n';
    return text.str();
}

/// "A" is a line from the baseline to the cap height at x 0, "B" one along the baseline from x 10 to 50.
const std::string PLAIN = "255 128 35 0 140 255 138 35 50 35 254\n" + font_index({{'A', 1}, {'B', 6}});
const std::string LABELLED = "65 A 128 35 0 140 255 B 138 35 50 35 254\n" + font_index({{'A', 0}, {'B', 5}});

struct Step {
    float x, y;
    bool pen;
};

class Text : public test::TempDirTest {
  protected:
    void SetUp() override {
        RES_put("file_path", dir.path().string() + "/");
        dir.write("modern.fnt", PLAIN);
    }
    void TearDown() override {
        if (gchk_graphics()) close();
    }
    void open() {
        gopen_gks(nullptr, 10000);
        const auto opened = test::capture([this] { result_ = gopen_ws(1, dir.file("out.ps"), GWS_PS); });
        ASSERT_EQ(result_, 0);
        said_ = opened.out + opened.err;
        gset_char_ht(0.105F);  // a font unit is 0.001
    }
    void close() {
        test::capture([] { gclose_ws(1); });
        gclose_gks();
    }
    /// Pen steps of what was drawn after the last text comment.
    std::vector<Step> steps() {
        close();
        std::istringstream file(test::read_file(dir.file("out.ps")));
        std::vector<Step> found;
        for (std::string line; std::getline(file, line);) {
            char op[3] = "";
            Step step{};
            if (line.starts_with("%%TE")) found.clear();
            if (std::sscanf(line.c_str(), "%f %f %2s", &step.x, &step.y, op) != 3) continue;
            step.pen = std::string(op) == "ln";
            if (step.pen || std::string(op) == "mv") found.push_back(step);
        }
        return found;
    }
    std::string said_;

  private:
    int result_ = -1;
};

TEST_F(Text, FixedPitchCountsBlanksAndUnknownCharactersTakeNoRoom) {
    open();
    gset_char_space(1.0F);
    const Gpt pos{0.1F, 0.5F};
    gtext(&pos, "A ~B");  // steps of 125 units for A and the blank
    const float end = xW_ps(0.1F + 0.3F);
    EXPECT_NEAR(steps().back().x, end, 0.02);
}

TEST_F(Text, LabelledFontIsTheSameFont) {
    dir.write("modern.fnt", LABELLED);
    open();
    const Gpt pos{0.4F, 0.5F};
    gtext(&pos, "AB");
    const float end = xW_ps(0.475F);
    const auto drawn = steps();
    ASSERT_EQ(drawn.size(), 4U);
    EXPECT_NEAR(drawn[3].x, end, 0.02);
}

TEST_F(Text, LongStrokeGoesOnFromItsLastPoint) {
    std::string font = "255 128 35 ";
    for (int i = 1; i <= 60; ++i) font += std::to_string(i) + " 50 ";
    dir.write("modern.fnt", font + "254\n" + font_index({{'A', 1}}));
    open();
    const Gpt pos{0.1F, 0.1F};
    gtext(&pos, "A");
    const auto drawn = steps();
    std::vector<std::size_t> moves;
    for (std::size_t i = 0; i < drawn.size(); ++i) {
        if (!drawn[i].pen) moves.push_back(i);
    }
    ASSERT_EQ(moves.size(), 3U);
    EXPECT_EQ(moves[1], 30U);  // after 30 points
    EXPECT_EQ(drawn[moves[1]].x, drawn[moves[1] - 1].x);
    EXPECT_EQ(drawn.size(), 61U + 2U);
}

TEST_F(Text, ControlCharactersStayInsideTheComment) {
    open();
    const Gpt pos{0.1F, 0.1F};
    gtext(&pos, "A\nshowpage\n");
    close();
    EXPECT_NE(test::read_file(dir.file("out.ps")).find("A showpage \n"), std::string::npos);
}

TEST_F(Text, BadFontFilesLeaveNothingToDraw) {
    std::string endless = "255 ";
    for (int i = 0; i < 20000; ++i) endless += "7 ";
    std::string binary(5000, '\0');
    for (std::size_t i = 0; i < binary.size(); ++i) binary[i] = static_cast<char>(i * 37);
    for (const std::string& font : {std::string(), std::string("255 128 35"), std::string("255 x 254"),
                                    std::string("99999999999999999999 254"), endless, binary}) {
        dir.write("modern.fnt", font);
        open();
        EXPECT_NE(said_.find("read_font: unable to load font file: modern.fnt\n"), std::string::npos)
            << font.substr(0, 20);
        const Gpt pos{0.1F, 0.1F};
        EXPECT_EQ(gtext(&pos, "A B"), 0);
        EXPECT_TRUE(steps().empty());
    }
}

TEST_F(Text, IndexOutsideTheDataHasNoStrokes) {
    dir.write("modern.fnt", "255 128 35 254\n" + font_index({{'A', 4000}, {'B', -7}, {'C', 1}}));
    open();
    const Gpt pos{0.1F, 0.1F};
    EXPECT_EQ(gtext(&pos, "ABC"), 0);
    EXPECT_EQ(steps().size(), 1U);  // the move of "C"
}

TEST_F(Text, FontsAreFoundByNameAndNumber) {
    dir.write("two.fnt", "255 128 35 0 35 100 35 254\n" + font_index({{'A', 1}}));
    dir.write("zav.fnl", "first\tmodern.fnt\nSecond   two.fnt  \n");
    open();
    EXPECT_EQ(gget_font_index("second"), 2);
    EXPECT_EQ(gget_font_index("17"), 17);
    EXPECT_EQ(gget_font_index("none"), 1);
    const Gfontprec outside{3, GSTROKE_PREC};
    const auto said = test::capture([&] { EXPECT_EQ(gset_fontprec(&outside), -1); });
    EXPECT_NE((said.out + said.err).find("gset_fontprec: invalid font id: 3\n"), std::string::npos);
    const Gfontprec second{2, GSTROKE_PREC};
    EXPECT_EQ(gset_fontprec(&second), 0);
    const Gpt pos{0.1F, 0.1F};
    gtext(&pos, "A");
    EXPECT_EQ(steps().size(), 3U);
}

TEST_F(Text, ShippedFontsHoldTheAlphabet) {
    RES_put("file_path", test::source_dir() + "/share/zav/");
    std::istringstream list(test::read_file(test::source_dir() + "/share/zav/zav.fnl"));
    open();
    int fonts = 0;
    for (std::string name, file; list >> name >> file; ++fonts) {
        EXPECT_EQ(gget_font_index(name), fonts + 1);
        EXPECT_EQ(read_font(file), 0) << file;
    }
    EXPECT_GE(fonts, 12);
    EXPECT_EQ(read_font("modern.fnt"), 0);
    const Gpt pos{0.1F, 0.5F};
    for (char c = '!'; c <= '~'; ++c) {
        const std::string text(1, c);
        gtext(&pos, text);
    }
    close();
    const std::string page = test::read_file(dir.file("out.ps"));
    std::size_t strokes = 0;
    for (std::size_t at = page.find("%%TE"); at != std::string::npos; at = page.find("%%TE", at + 1)) {
        const std::string one = page.substr(at, page.find("%%TE", at + 1) - at);
        EXPECT_NE(one.find(" ln\n"), std::string::npos) << one.substr(0, 40);
        ++strokes;
    }
    EXPECT_EQ(strokes, 94U);
}

}  // namespace
}  // namespace zav
