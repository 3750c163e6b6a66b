// Metafiles: the text record and its playback, and CGM by its bytes.

#include "gks/meta/gks_meta.h"

#include <sys/resource.h>
#include <unistd.h>

#include <limits>

#include "frame/status.h"
#include "gks/kernel_scene.h"
#include "support/table.h"

namespace zav {
namespace {

class Metafile : public test::KernelTest {
  protected:
    std::string text_body(const std::string& name) {
        const std::string text = test::read_file(dir.file(name));
        return text.substr(text.find('\n', text.find("#CreationDate")) + 1);
    }
    /// Plays `items` back onto a PostScript file; what was reported.
    std::string play(const std::string& items, const std::string& output) {
        const std::string meta = dir.write("played.meta", "ZAVMETA\n" + items);
        EXPECT_EQ(open(dir.file(output) + ",color"), 0);
        const auto said_now = test::capture([&] { EXPECT_EQ(gread_metafile(meta), 0); });
        close();
        return said_now.out + said_now.err;
    }
};

TEST_F(Metafile, RecordsCallsLineByLine) {
    ASSERT_EQ(open(dir.file("a.meta"), GWS_META), 0);
    EXPECT_EQ(said, "Creating metafile: " + dir.file("a.meta") + "\n");
    const Glim lim = {1, 2, 3, 4};
    gset_ws_win(1, &lim);
    gset_ws_vp(1, &lim);
    gset_win(2, &lim);
    gset_vp(2, &lim);
    gsel_norm_tran(0);
    gsel_norm_tran(1);
    test::set_color(3, 0.25F, 0.5F, 1);
    for (int i = 0; i < 2; ++i) gset_line_colr_ind(3);
    gset_linewidth(0);
    const Gpt points[8] = {{0, 0}, {0.5F, 1}, {1, 0}, {1, 1}, {0, 1}, {0, 0}, {0, 0}, {0, 0}};
    EXPECT_EQ(gpolyline(4, points), 1);
    EXPECT_EQ(gpolyline(5, points), 1);
    EXPECT_EQ(gpolymarker(4, points), 0);
    EXPECT_EQ(gpolymarker(1, points), 0);
    EXPECT_EQ(gfill_area(3, points), 1);
    EXPECT_EQ(gcreate_seg(7), -1);
    gclear_region(&lim);
    gmessage(1, "text");
    gtext(points, "");
    EXPECT_EQ(close(), 0);
    EXPECT_EQ(said, "Created metafile\n");
    EXPECT_EQ(gmeta_close_file(), -1);
    EXPECT_EQ(test::read_file(dir.file("a.meta")).rfind("ZAVMETA\n#Title: ZAV Graphics Display: ", 0), 0U);
    EXPECT_EQ(text_body("a.meta"),
              "WS_WIN 1 1.000000 3.000000 2.000000 4.000000\nWS_VP 1 1.000000 3.000000 2.000000 4.000000\n"
              "WIN 2 1.000000 3.000000 2.000000 4.000000\nVP 2 1.000000 3.000000 2.000000 4.000000\nTR 1\n"
              "CLR 1 3 0.250000 0.500000 1.000000\nPL_CLR 3\nPL_LW 0.000000\n"
              "PL 4 0.000000,0.000000 0.500000,1.000000 1.000000,0.000000 1.000000,1.000000 \n"
              "PL 5 0.000000,0.000000 0.500000,1.000000 1.000000,0.000000 1.000000,1.000000 \n   0.000000,1.000000 \n"
              "PM 4 0.000000,0.000000 0.500000,1.000000 1.000000,0.000000 1.000000,1.000000 \n   "
              "PM 1 0.000000,0.000000 \nFA 3 0.000000,0.000000 0.500000,1.000000 1.000000,0.000000 \n"
              "SEG_CR 7\nCLR_REG 1.000000 3.000000 2.000000 4.000000\nME text\n");
}

TEST_F(Metafile, ReaderTakesWhatIsThereAndGoesOn) {
    for (const test::Case& c : test::cases("metafile_items")) {
        EXPECT_EQ(play(c.text(1), "a.ps"), c.text(3)) << c.line();
        const std::string text = test::read_file(dir.file("a.ps"));
        int lines = 0;
        for (std::size_t at = 0; (at = text.find("%%PL:2\n", at)) != std::string::npos; ++at) ++lines;
        EXPECT_EQ(lines, c.number(2)) << c.line();
        EXPECT_EQ(test::ghostscript_errors(dir.file("a.ps")), "") << c.line();
    }
}

TEST_F(Metafile, WritesPatternsPicturesAndNumbersThatReadersTake) {
    ASSERT_EQ(open(dir.file("a.meta"), GWS_META), 0);
    gset_fill_style_ind(5);
    gset_fill_style_ind(1);
    gnew_page();
    const float out = std::numeric_limits<float>::infinity();
    const Gpt points[2] = {{0, -out}, {out, 1}};
    EXPECT_EQ(gpolyline(2, points), 1);
    close();
    const std::string far = "340282346638528859811704183484516925440.000000";
    EXPECT_EQ(text_body("a.meta"), "FA_ST 5\nFA_ST 1\nPICTURE\nPL 2 0.000000,-" + far + " " + far + ",1.000000 \n");
    // In a CGM each picture has its own begin and end.
    ASSERT_EQ(open(dir.file("a.cgm") + ",cgm", GWS_META), 0);
    gnew_page();
    close();
    gmeta_set_type(GMETA_TEXT);
    const std::string text = test::read_file(dir.file("a.cgm"));
    EXPECT_EQ(text.substr(46 + 10, 6), std::string("\x00\xA0\x00\x60\x00\x80", 6));
    EXPECT_TRUE(text.ends_with(std::string("\x00\xA0", 2)));
}

TEST_F(Metafile, GeometryIsInInchesOrPanels) {
    struct {
        const char* geometry;
        int x, y, width, height;
    } const cases[] = {{"5x4+1+2", 100, 200, 500, 400},
                       {"5x4", 0, 0, 500, 400},
                       {"3+2", 300, 200, 1000, 800},
                       {"P2x4+1+0", 500, 600, 500, 200},
                       {"0x0", 0, 0, 2, 2},
                       {"", 0, 0, 1000, 800},
                       {"P", 0, 0, 1000, 800}};
    for (const auto& c : cases) {
        RES_put("geometry", c.geometry);
        ASSERT_EQ(open("a.meta", GWS_META), 0);
        RES_put("geometry", "");
        int x = 0;
        int y = 0;
        gget_win_offset(&x, &y);
        EXPECT_EQ(x, c.x) << c.geometry;
        EXPECT_EQ(y, c.y) << c.geometry;
        EXPECT_EQ(gget_window_width(), c.width) << c.geometry;
        EXPECT_EQ(gget_window_height(), c.height) << c.geometry;
        close();
    }
    gset_xoff(0, 0);
}

TEST_F(Metafile, NoMemoryForAListEndsTheItemAlone) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer needs the address space";
#endif
    std::string list = "PL 10000000 ";
    for (int i = 0; i < 8000000; ++i) list += "1,1 ";
    dir.write("big.meta", "ZAVMETA\n" + list + "\nPL 2 0,0 1,1\n");
    list = {};
    EXPECT_EXIT(
        {
            rlimit small{};
            small.rlim_cur = small.rlim_max = 100000000;
            open("a.ps");
            setrlimit(RLIMIT_AS, &small);
            gread_metafile("big.meta");
            close();
            _exit(ZAV_noted());
        },
        ::testing::ExitedWithCode(STATUS_LAYER), "gread_metafile: Not enough memory for an item: PL\n");
    EXPECT_NE(test::read_file("a.ps").find("%%PL:2\n"), std::string::npos);
}

TEST_F(Metafile, LongTextIsCutAndMissingFilesAreReported) {
    play("TE 0.1,0.5 " + std::string(150, 'A') + "\nTE 0.1,0.6   B C\n", "a.ps");
    const std::string text = test::read_file(dir.file("a.ps"));
    EXPECT_NE(text.find(" " + std::string(100, 'A') + "\n"), std::string::npos);
    EXPECT_NE(text.find("%%TE:0.100000 0.600000 B C\n"), std::string::npos);
    const auto output = test::capture([] {
        EXPECT_EQ(gread_metafile("no_such.meta"), 0);
        EXPECT_EQ(gread_metafile("|touch started"), 0);
    });
    EXPECT_EQ(output.err,
              "gread_metafile: Unable to open image file: no_such.meta\n"
              "gread_metafile: Unable to open image file: |touch started\n");
    EXPECT_FALSE(std::filesystem::exists("started"));
}

TEST_F(Metafile, CgmHoldsPolylinesAndClips) {
    ASSERT_EQ(open(dir.file("plot.cgm") + ",CGM", GWS_META), 0);
    test::set_color(2, 1, 0, 0);
    const Gpt points[2] = {{0, 0}, {0.5F, 1}};
    gset_line_colr_ind(2);
    gpolyline(2, points);
    gfill_area(2, points);
    gpolymarker(2, points);
    EXPECT_EQ(close(), 0);
    gmeta_set_type(GMETA_TEXT);
    // The unit square is 799 units high and wide: the area of 1000 by 800 less one.
    const std::string head(
        "\x00\x20\x10\x22\x00\x01\x10\x4B\x0AZAVCGM-1.0\x00\x11\x66\x00\x01\xFF\xFF\x00\x01\x11\x21\xFF\x00"
        "\x20\xC8\x00\x00\x00\x00\x27\x10\x1F\x40\x00\x60\x00\x80",
        46);
    const std::string picture(
        "\x30\xA8\x00\x00\x00\x00\x03\x1F\x03\x1F\x40\x3F\x00\x08\x00\x00\x00\x00\x01\x8F\x03\x1F\x00\xA0", 24);
    EXPECT_EQ(test::read_file(dir.file("plot.cgm")), head + picture);
}

TEST_F(Metafile, LongCgmPolylinesAreCutWithoutAGap) {
    ASSERT_EQ(open(","
                   "cgm",
                   GWS_META),
              0);
    EXPECT_EQ(said, "Creating metafile: zav.cgm\n");
    std::vector<Gpt> points(20000);
    for (std::size_t i = 0; i < points.size(); ++i) points[i] = {static_cast<float>(i) / 20000, 0.5F};
    gpolyline(static_cast<int>(points.size()), points.data());
    close();
    gmeta_set_type(GMETA_TEXT);
    const std::string file = test::read_file("zav.cgm");
    const auto word = [&](std::size_t at) {
        return static_cast<unsigned char>(file[at]) << 8 | static_cast<unsigned char>(file[at + 1]);
    };
    std::size_t at = 46 + 10;
    std::size_t count = 0;
    std::string end_point;
    while (word(at) == 0x403F) {
        const auto length = static_cast<std::size_t>(word(at + 2));
        ASSERT_LE(length, 0x7FFFU);
        if (!end_point.empty()) {
            EXPECT_EQ(file.substr(at + 4, 4), end_point);
        }
        end_point = file.substr(at + length, 4);
        count += length / 4;
        at += 4 + length;
    }
    EXPECT_EQ(count, points.size() + 2) << "two seams";
    EXPECT_EQ(word(at), 0x00A0);
    EXPECT_EQ(at + 2, file.size());
}

}  // namespace
}  // namespace zav
