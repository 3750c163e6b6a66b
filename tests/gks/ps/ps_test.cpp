// PostScript output: the file's text, and the page that Ghostscript makes of it.

#include "gks/ps/gks_ps.h"

#include <cmath>

#include "gks/kernel_scene.h"
#include "gks/meta/gks_meta.h"
#include "image/zavimg.h"

namespace zav {
namespace {

using test::Page;

/// A black square of the unit window, drawn by gfill_area.
void draw_square(float x1, float y1, float x2, float y2, int color = 1) {
    const Gpt points[] = {{x1, y1}, {x2, y1}, {x2, y2}, {x1, y2}};
    gset_fill_colr_ind(color);
    gfill_area(4, points);
}

class Postscript : public test::KernelTest {
  protected:
    void draw_to(const std::string& connection, const std::function<void()>& draw) {
        ASSERT_EQ(open(connection), 0) << said;
        test::set_color(0, 1, 1, 1);
        test::set_color(1, 0, 0, 0);
        draw();
        ASSERT_EQ(close(), 0) << said;
    }
};

TEST_F(Postscript, HeadAndTrailerAreAsToldForEachForm) {
    gset_win_title("Two\nlines");
    draw_to(dir.file("a.ps"), [] {});
    std::string text = test::read_file(dir.file("a.ps"));
    const std::size_t date = text.find("%%CreationDate: ");
    ASSERT_NE(date, std::string::npos);
    text.erase(date, text.find('\n', date) + 1 - date);
    EXPECT_EQ(text,
              "%!PS-Adobe-1.0\n%%Title: ZAV Graphics Display: Two lines\n%%Creator: ZAV Postscript Processor-2.0\n"
              "%%EndComments\n%%Postscript initialization\n30 dict begin\n/saveobj save def\n/inch {72 mul} def\n"
              "/dot {.33 mul} def\n/mv {moveto} def\n/ln {lineto} def\n/lw {setlinewidth} def\n/np {newpath} def\n"
              "/cp {closepath} def\n90 rotate\n.25 inch -8.25 inch translate\n0 setgray\n2 setlinejoin\n1 dot lw\n"
              "[] 0 setdash\n%%Begin plot\n%%ZAV Plot: Two lines\ninitclip\nnp\n-0.10 -0.10 mv\n-0.10 575.10 ln\n"
              "575.10 575.10 ln\n575.10 -0.10 ln\ncp\nclip\n%%End of plot\nsaveobj restore\nshowpage\nend\n%%EOF\n");

    draw_to(dir.file("c.ps") + ",EPS,scale=0.5", [] {});
    const std::string eps = test::read_file(dir.file("c.ps"));
    EXPECT_EQ(eps.rfind("%!PS-Adobe-3.0 EPSF-3.0\n%%BoundingBox: 324 0 612 378\n", 0), 0U);
    EXPECT_NE(eps.find("90 rotate\n0. inch -8.50 inch translate\n"), std::string::npos);
    EXPECT_NE(eps.find("0.50 0.50 scale\n%%Begin plot\n"), std::string::npos);
    for (const char* word : {"save", "dict", "restore"}) EXPECT_EQ(eps.find(word), std::string::npos) << word;
    for (const char* name : {"a.ps", "c.ps"}) EXPECT_EQ(test::ghostscript_errors(dir.file(name)), "") << name;
}

TEST_F(Postscript, AddedPlotsStandOnTheLastPage) {
    const auto draw = [](float low, float high, int line_type) {
        const Gpt line[] = {{0, low}, {1, low}};
        gset_linetype(line_type);
        gpolyline(2, line);
        draw_square(low, low, high, high);
    };
    const auto lower = [&] { draw(0.1F, 0.3F, 2); };
    const auto upper = [&] { draw(0.5F, 0.8F, 1); };
    for (const char* words : {"", ",eps"}) {
        plain_paper();
        const std::string both = dir.file("both.ps") + words;
        draw_to(both, lower);
        const std::string first = test::read_file(dir.file("both.ps"));
        draw_to("+" + both, upper);
        const std::string text = test::read_file(dir.file("both.ps"));
        const std::size_t end = first.find("%%End of plot\n");
        EXPECT_EQ(text.substr(0, end), first.substr(0, end)) << words;
        EXPECT_TRUE(text.ends_with(first.substr(end))) << words;
        EXPECT_EQ(text.find("showpage"), text.rfind("showpage")) << words;
        EXPECT_EQ(test::ghostscript_errors(dir.file("both.ps")), "") << words;
        plain_paper();
        draw_to(dir.file("one.ps") + words, [&] {
            lower();
            upper();
        });
        EXPECT_TRUE(test::rendered(dir.file("both.ps")).rgb == test::rendered(dir.file("one.ps")).rgb) << words;
    }
    // What isn't the program's own ending stays, and a page of its own follows; so does one in a new file.
    const std::string foreign = "%!PS\nshowpage\n";
    for (const std::string& before : {foreign, std::string()}) {
        plain_paper();
        dir.write("other.ps", before);
        draw_to("+" + dir.file("other.ps"), lower);
        const std::string text = test::read_file(dir.file("other.ps"));
        EXPECT_TRUE(text.starts_with(before + "%!PS-Adobe-1.0\n"));
        EXPECT_TRUE(text.ends_with("showpage\nend\n%%EOF\n"));
        EXPECT_EQ(test::ghostscript_errors(dir.file("other.ps")), "");
    }
}

TEST_F(Postscript, SeveralPagesAreOneDocument) {
    gset_pages(true);
    draw_to(dir.file("a.ps") + ",color", [] {
        draw_square(0.1F, 0.1F, 0.3F, 0.3F);
        gset_linetype(2);
        gnew_page();
        draw_square(0.5F, 0.6F, 0.9F, 0.8F);
    });
    gset_pages(false);
    const std::string text = test::read_file(dir.file("a.ps"));
    EXPECT_TRUE(text.starts_with("%!PS-Adobe-3.0\n"));
    for (const char* line :
         {"\n%%Pages: (atend)\n", "\n%%Page: 1 1\n", "\n%%Page: 2 2\n", "\n%%Trailer\n%%Pages: 2\n"}) {
        EXPECT_NE(text.find(line), std::string::npos) << line;
    }
    EXPECT_EQ(test::ghostscript_errors(dir.file("a.ps")), "");
    // Each page is drawn as it is alone: the second one's body ends the file's pages.
    draw_to(dir.file("b.ps") + ",color", [] { draw_square(0.5F, 0.6F, 0.9F, 0.8F); });
    test::run_command("gs -q -dSAFER -dNOPAUSE -dBATCH -sDEVICE=ps2write -dFirstPage=2 -sOutputFile=second.ps a.ps");
    const Glim alone = test::marked_area(dir.file("b.ps"));
    const Glim second = test::marked_area("second.ps");
    EXPECT_NEAR(second.x_min, alone.x_min, 0.1);
    EXPECT_NEAR(second.y_max, alone.y_max, 0.1);
}

TEST_F(Postscript, OutputWaitsUntilItIsKept) {
    dir.write("old.ps", "old");
    for (const char* name : {"old.ps", "+old.ps", "new.ps", "+new.ps", "|cat > piped.ps"}) {
        ASSERT_EQ(open(name), 0) << name;
        draw_square(0, 0, 1, 1);
        gbreak_off();
        EXPECT_EQ(test::read_file("old.ps"), "old") << name;
        EXPECT_FALSE(std::filesystem::exists("new.ps")) << name;
        EXPECT_FALSE(std::filesystem::exists("piped.ps")) << name;
    }
    ASSERT_EQ(open("old.ps"), 0);
    draw_square(0, 0, 1, 1);
    gkeep_output();
    gbreak_off();
    EXPECT_TRUE(test::read_file("old.ps").ends_with("showpage\nend\n%%EOF\n"));
}

// The page of 756 by 576 points and the plot's place together, turned on a sheet that lies on its side.
TEST_F(Postscript, TheEpsBoxHoldsThePageAndThePlot) {
    struct {
        const char *words, *geometry, *box;
    } const cases[] = {
        {",eps", "50x50+10+10", "36 0 612 756"},
        {",eps,port", "50x50+10+10", "0 0 756 576"},
        {",eps", "1200x900-100-50", "0 -72 648 792"},
        {",eps,port", "1200x900-100-50", "-72 -36 792 612"},
        {",eps,port", "100x100+1000+800", "0 0 792 648"},
        {",eps", "100x100+1000+800", "-36 0 612 792"},
        {",eps,scale=0.5", "1200x900-100-50", "306 -36 630 396"},
    };
    for (const auto& c : cases) {
        plain_paper();
        const test::EnvSetting geometry("zavps_geometry", c.geometry);
        draw_to(std::string("a.ps") + c.words, [] {});
        const std::string text = test::read_file("a.ps");
        EXPECT_NE(text.find(std::string("%%BoundingBox: ") + c.box + "\n"), std::string::npos)
            << c.words << c.geometry << text.substr(0, 80);
    }
}

TEST_F(Postscript, ColourOfTheEnvironmentDrawsBlackOnWhite) {
    gset_inverse(0);
    const test::EnvSetting color("PSCOLOR", "1");
    const test::EnvSetting unnamed("zavps_print", "");
    const test::EnvSetting named("PSPRINT", "named.ps");
    ASSERT_EQ(open(""), 0);
    EXPECT_EQ(said, "Creating: named.ps\n");
    EXPECT_EQ(gps_get_colorPS(), 1);
    EXPECT_EQ(gget_inverse(), 1);
    gset_fill_print_solid(1);
    close();
    ASSERT_EQ(open(""), 0);
    EXPECT_EQ(gget_fill_print_solid(), 0) << "back at the opening";
}

TEST_F(Postscript, NamesFilesAndPipesAreAnnounced) {
    const std::string plain = dir.file("deep/er/a.ps");
    ASSERT_EQ(open(plain), 0);
    EXPECT_EQ(said, "Creating: " + plain + "\n");
    EXPECT_EQ(close(), 0);
    EXPECT_EQ(said, "Created Postscript file\n");
    ASSERT_EQ(open("+" + plain), 0);
    EXPECT_EQ(said, "Appending to: " + plain + "\n");
    close();
    const std::string command = "cat > " + dir.file("piped.ps");
    ASSERT_EQ(open("|" + command), 0);
    EXPECT_EQ(said, "Spooling to: " + command + "\n");
    EXPECT_EQ(close(), 0);
    EXPECT_EQ(test::ghostscript_errors(dir.file("piped.ps")), "");
    const test::EnvSetting first("PSPRINT", "from_psprint.ps");
    {
        const test::EnvSetting second("zavps_print", "from_own.ps");
        open("");
        EXPECT_EQ(said, "Creating: from_own.ps\n");
        close();
    }
    open("");
    EXPECT_EQ(said, "Creating: from_psprint.ps\n");
    close();
    dir.write("file", "");
    EXPECT_EQ(open(dir.file("file/in_a_file.ps")), -1);
    EXPECT_NE(said.find("gopen_ws: unable to open postscript file\n\n"), std::string::npos);
    EXPECT_EQ(gchk_graphics(), 0);
}

TEST_F(Postscript, OutputThatCannotBeWrittenIsReported) {
    struct {
        const char* connection;
        int lines;
        const char* report;
    } const cases[] = {
        {"/dev/full", 10, "gps_close_file: Output is not complete: /dev/full: No space left on device\n"},
        {"/dev/full", 5000, "gps_close_file: Output is not complete: /dev/full: No space left on device\n"},
        {"|true", 200000, "gps_close_file: Output is not complete: true: Broken pipe\n"},
        {"|cat >/dev/null; exit 3", 10, "gps_close_file: Command failed: cat >/dev/null; exit 3\n"},
    };
    for (const auto& c : cases) {
        ASSERT_EQ(open(c.connection), 0);
        for (int i = 0; i < c.lines; ++i) gps_printf("%% line %d\n", i);
        EXPECT_EQ(close(), -1);
        EXPECT_EQ(said, c.report);
    }
}

TEST_F(Postscript, MarksLieWhereTheyWereDrawn) {
    // Unit window on a drawing area of 756 by 576 points: 575 points. Landscape turns (u, v) to (594 - v, u + 18).
    struct {
        const char* words;
        Glim box;
    } const cases[] = {
        {"", {364, 479, 133, 363}},
        {",port,sz=8.5x11", {18 + 115, 18 + 345, 18 + 115, 18 + 230}},
        {",eps", {612 - 230, 612 - 115, 115, 345}},
        {",scale=0.5", {594 - 115, 594 - 57.5F, 18 + 57.5F, 18 + 172.5F}},
    };
    for (const auto& c : cases) {
        plain_paper();
        draw_to(dir.file("a.ps") + c.words, [] {
            gset_win_size(576, 576);
            draw_square(0.2F, 0.2F, 0.6F, 0.4F);
        });
        const Glim box = test::marked_area(dir.file("a.ps"));
        EXPECT_NEAR(box.x_min, c.box.x_min, 1) << c.words;
        EXPECT_NEAR(box.x_max, c.box.x_max, 1) << c.words;
        EXPECT_NEAR(box.y_min, c.box.y_min, 1) << c.words;
        EXPECT_NEAR(box.y_max, c.box.y_max, 1) << c.words;
    }
}

TEST_F(Postscript, GeometryPlacesThePlot) {
    struct {
        const char* geometry;
        int x, y, width, height;
    } const cases[] = {
        {"", 0, 0, 756, 576},
        {"P0.5x0.25+0.5+0.75", 378, 432, 378, 144},
        {"p2x2", 0, 288, 378, 288},      // upper left of four panels
        {"P2x2+1+1", 378, 0, 378, 288},  // lower right
        {"P20x1+0+0", 0, 0, 94, 576},    // at most 8 panels
        {"400x300+100+50", 72, 36, 288, 216},
        {"400x300", 0, 0, 288, 216},
        {"100-50", 72, -36, 756, 576},
        {"nonsense", 0, 0, 756, 576},
        {"0x0", 0, 0, 2, 2},
    };
    for (const auto& c : cases) {
        const test::EnvSetting geometry("zavps_geometry", c.geometry);
        ASSERT_EQ(open(dir.file("a.ps")), 0);
        int x = 0;
        int y = 0;
        gget_win_offset(&x, &y);
        EXPECT_EQ(x, c.x) << c.geometry;
        EXPECT_EQ(y, c.y) << c.geometry;
        EXPECT_EQ(gget_window_width(), c.width) << c.geometry;
        EXPECT_EQ(gget_window_height(), c.height) << c.geometry;
        EXPECT_EQ(gget_win_depth(), 10);
        close();
    }
}

TEST_F(Postscript, PaperWordsSetTheSizeAndTheLastOneWins) {
    struct {
        const char* env;
        const char* words;
        int width, height;
    } const cases[] = {
        {nullptr, ",A4", 805, 558},         {"legal", "", 972, 576},
        {"legal", ",letter", 756, 576},     {nullptr, ",ansid,sz:10x5", 684, 324},
        {nullptr, ",sz=1e30x-4", 756, 576}, {nullptr, ",unknown,b5", 756, 576},
        {nullptr, ",11x17", 1188, 756},     {nullptr, ",a3", 1154, 805},
        {nullptr, ",a2", 1648, 1154},       {nullptr, ",a1", 2347, 1648},
        {nullptr, ",b4", 995, 692},         {nullptr, ",b3", 1423, 995},
        {nullptr, ",b2", 2027, 1423},       {nullptr, ",b1", 2883, 2027},
        {nullptr, ",ansid", 2412, 1548},
    };
    for (const auto& c : cases) {
        const test::EnvSetting param("zavps_param", c.env);
        ASSERT_EQ(open(dir.file("a.ps") + c.words), 0);
        EXPECT_EQ(gget_window_width(), c.width) << c.words;
        EXPECT_EQ(gget_window_height(), c.height) << c.words;
        close();
    }
}

TEST_F(Postscript, StateIsWrittenWhereItChanges) {
    const std::string file = dir.file("a.ps");
    draw_to(file + ",lwidth=2", [] {
        test::set_color(5, 0.5F, 0.5F, 0.5F);
        gps_set_width(1, 1);  // the head's pen is one dot wide, not two
        gset_line_print_bold(2);
        for (int i = 0; i < 2; ++i) gps_set_width(1, 1.5F);
        for (int i = 0; i < 2; ++i) gps_set_width(504, 1.25F);
        for (int i = 0; i < 2; ++i) gps_set_width(508, 1.5F);
        gset_line_print_bold(0);
        gps_set_width(1, 1);
        for (int i = 0; i < 2; ++i) gps_set_color(504);
        for (int i = 0; i < 2; ++i) gps_set_color(506);
        for (int i = 0; i < 2; ++i) gps_set_color(3);
        for (int i = 0; i < 2; ++i) gps_set_fill_color(5);
        for (int i = 0; i < 2; ++i) gps_set_fill_color(-1);
        gset_fill_print_solid(1);
        gps_set_fill_color(5);
        gset_fill_print_solid(0);
        for (const int type : {2, 2, 3, 4, 5, 9, 1}) gps_set_type(type);
    });
    const std::vector<std::string> wanted = {"2.0 dot lw",      "6.0 dot lw",          "5 dot lw",      "12 dot lw",
                                             "2.0 dot lw",      "1 setgray",           ".7 setgray",    "0 setgray",
                                             "0.500 setgray",   "1 setgray",           "0 setgray",     "[6] 0 setdash",
                                             "[3 6] 0 setdash", "[6 6 3 6] 0 setdash", "[2] 0 setdash", "[] 0 setdash"};
    std::vector<std::string> lines = test::body_lines(file);
    lines.erase(lines.begin(), lines.begin() + 8);  // the clip
    lines.resize(wanted.size());
    EXPECT_EQ(lines, wanted);
    EXPECT_EQ(test::ghostscript_errors(file), "");
    gps_set_base_width(1);
}

TEST_F(Postscript, EveryPrimitiveIsSoundPostScript) {
    draw_to(dir.file("a.ps") + ",color", [] {
        test::draw_scene();
        gmessage(1, "a\nmessage");
        gset_fill_int_style(GPAT);
        draw_square(0, 0, 0.01F, 0.01F);
        const Glim region = {0, 0.1F, 0, 0.1F};
        gclear_region(&region);
    });
    const std::string text = test::read_file(dir.file("a.ps"));
    EXPECT_EQ(test::ghostscript_errors(dir.file("a.ps")), "");
    EXPECT_NE(text.find("%%PL:25\n"), std::string::npos);
    EXPECT_EQ(text.find("%%PL:2\n"), std::string::npos) << "a line outside the window leaves no trace";
    EXPECT_EQ(text.find("%%FA:4\n"), std::string::npos) << "patterns leave no mark on paper";
    EXPECT_NE(text.find("%%Message: a message\n"), std::string::npos);
    EXPECT_NE(text.find("%%CLR\nnp\n0.00 0.00 mv\n0.00 57.50 ln\n57.50 57.50 ln\n57.50 0.00 ln\n0.00 0.00 ln\ncp\n"),
              std::string::npos);
    EXPECT_NE(text.find("[6 6 3 6] 0 setdash\n"), std::string::npos);
}

TEST_F(Postscript, ImagesKeepTheirPlaceAndOrder) {
    IMG_report image;
    IMG_init(&image);
    image.width = 100;
    image.height = 60;
    image.bytes_line = 104;
    image.bits_pixel = image.depth = 8;
    image.data.assign(104 * 60, 0x80);
    for (int row = 0; row < 30; ++row) std::fill_n(image.data.begin() + row * 104, 50, 0x20);  // upper left quarter
    draw_to(dir.file("a.ps") + ",gray", [&] {
        const Glim view = {0.1F, 0.5F, 0.6F, 0.9F};  // 58 to 288 across, 345 to 518 up
        gset_vp(1, &view);
        gsel_norm_tran(1);
        gps_image(&image, -10, -20);
        image.data.resize(50);  // a picture with too few bytes
        gps_image(&image, 1 << 30, 5);
    });
    ASSERT_EQ(test::ghostscript_errors(dir.file("a.ps")), "");
    draw_to(dir.file("b.ps") + ",gray", [&] {
        image.data.assign(104 * 60, 0x80);
        for (int row = 0; row < 30; ++row) std::fill_n(image.data.begin() + row * 104, 50, 0x20);
        const Glim view = {0.1F, 0.5F, 0.6F, 0.9F};
        gset_vp(1, &view);
        gsel_norm_tran(1);
        gps_image(&image, -10, -20);
    });
    const Page page = test::rendered(dir.file("b.ps"));
    const int left = 58;
    const int top = 517;
    const auto at = [&](int column, int row) { return page.at(594 - (top - row), 18 + left + column); };
    EXPECT_EQ(at(5, 5), "FFFFFF");
    EXPECT_EQ(at(20, 30), "202020");
    EXPECT_EQ(at(90, 30), "808080");
    EXPECT_EQ(at(20, 70), "808080");
    EXPECT_EQ(at(130, 30), "FFFFFF");
    EXPECT_EQ(at(20, 95), "FFFFFF");
}

}  // namespace
}  // namespace zav
