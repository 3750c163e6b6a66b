// The front door of the formats, the record's own functions, and dumps.
#include <gtest/gtest.h>

#include <functional>
#include <map>

#include "frame/mess.h"
#include "image/pictures.h"
#include "map/maptran.h"
#include "support/support.h"
#include "support/table.h"

namespace zav {
namespace {

class Door : public test::TempDirTest {
  protected:
    ~Door() override { IMG_hooks() = {}; }
};

test::Picture any_picture() {
    std::mt19937 random(41);
    return test::random_picture(random, 31, 17, 9);
}

TEST_F(Door, FilesAndCommandsAreRead) {
    IMG_report image = test::indexed(any_picture());
    ASSERT_EQ(GIF_write("~x.gif", &image), 1);  // the user isn't known
    IMG_report again;
    EXPECT_EQ(IMG_read("~x.gif", &again, 0), 1);
    EXPECT_EQ(IMG_read("|cat ./~x.gif", &again, 0), 1);
    EXPECT_EQ(test::unpack(again).pixels, any_picture().pixels);
    image = test::indexed(any_picture());
    ASSERT_EQ(PNG_write("|cat >piped.png", &image), 1);
    ASSERT_EQ(PNG_write("other/deep/x.png", &image), 1);
    for (const char* file : {"piped.png", "other/deep/x.png"}) {
        EXPECT_EQ(IMG_read(file, &again, 0), 1);
        EXPECT_EQ(test::unpack(again).pixels, any_picture().pixels);
    }
}

TEST_F(Door, WhatCantBeOpenedIsTold) {
    const auto plain = [](int (*call)(const std::string&, IMG_report*, int)) {
        return [call](const std::string& file, IMG_report* image) { return call(file, image, 0); };
    };
    const std::map<std::string, std::function<int(const std::string&, IMG_report*)>> calls = {
        {"IMG_read", plain(IMG_read)}, {"IMG_read_zav", plain(IMG_read_zav)},
        {"GIF_read", plain(GIF_read)}, {"PNG_read", plain(PNG_read)},
        {"XWD_read", plain(XWD_read)}, {"IMG_write", plain(IMG_write)},
        {"GIF_write", GIF_write},      {"PNG_write", PNG_write},
        {"XWD_write", XWD_write}};
    for (const test::Case& row : test::cases("image/not_opened")) {
        SCOPED_TRACE(row.line());
        IMG_report image = test::indexed(any_picture());
        const test::Output said =
            test::capture([&] { EXPECT_EQ(calls.at(row.text(0))(row.text(1), &image), row.number(2)); });
        EXPECT_EQ(said.out + said.err, row.text(3));
    }
}

TEST_F(Door, EmptyRecordsAreNotWritten) {
    test::write_file("x", "old");
    for (int (*write)(const std::string&, IMG_report*) : {GIF_write, PNG_write, XWD_write}) {
        IMG_report image;
        IMG_report short_lines = test::indexed(any_picture());
        short_lines.bytes_line = 30;
        IMG_report odd = test::indexed(any_picture());
        odd.depth = odd.bits_pixel = 7;
        for (IMG_report* bad : {&image, &short_lines, &odd}) {
            const test::Output said = test::capture([&] { EXPECT_EQ(write("x", bad), 0); });
            EXPECT_NE((said.out + said.err).find("No picture of"), std::string::npos);
        }
    }
    EXPECT_EQ(test::read_file("x"), "old");
}

TEST_F(Door, DeepDumpsAreRefusedOnFlatDisplays) {
    test::Picture picture = any_picture();
    IMG_report image = test::pack(picture, test::PACKINGS[0], 4);
    image.info = std::string(200, 'n');
    ASSERT_EQ(XWD_write("x.xwd", &image), 1);
    struct Row {
        int (*depth)();
        int type, result;
    };
    for (const Row& row : {Row{[] { return 10; }, 0, 0}, Row{[] { return 10; }, 1, 0}, Row{[] { return 24; }, 0, 1},
                           Row{[] { return 0; }, 0, 0}, Row{[] { return 0; }, 1, 1}}) {
        IMG_hooks().window_depth = row.depth;
        IMG_report again;
        const test::Output said = test::capture([&] { EXPECT_EQ(IMG_read("x.xwd", &again, row.type), row.result); });
        EXPECT_EQ(said.err.empty(), row.result == 1) << said.err;
        if (row.result == 1) {
            EXPECT_EQ(again.info, std::string(74, 'n'));
        }
    }
}

TEST_F(Door, PngFilesHaveTheirTexts) {
    IMG_hooks().window_title = [] { return std::string("500 mb"); };
    IMG_report image = test::indexed(any_picture());
    ASSERT_EQ(PNG_write("x.png", &image), 1);
    const std::string said = test::run_command("pngcheck -t -v x.png");
    EXPECT_NE(said.find("PLTE at offset 0x00025, length 768: 256 palette entries"), std::string::npos);
    EXPECT_NE(said.find("keyword: Title\n    500 mb\n"), std::string::npos) << said;
    EXPECT_NE(said.find("keyword: Software\n    ZAV - Zavoria v5.0\n"), std::string::npos);
    EXPECT_NE(said.find("keyword: Creation Time\n    " + test::run_command("date -u '+%d %b %Y'").substr(0, 11)),
              std::string::npos);
    EXPECT_NE(said.find(" GMT\n"), std::string::npos);
}

TEST_F(Door, RecordsStartCopyEndAndPrint) {
    IMG_report image = test::indexed(any_picture());
    image.bit_order = 1;
    IMG_report copy;
    IMG_copy(&copy, &image);
    EXPECT_EQ(copy.data, image.data);
    IMG_free(&image);
    EXPECT_TRUE(image.data.empty() && image.colors.empty());
    EXPECT_EQ(image.num_colors, 0);
    EXPECT_EQ(copy.num_colors, static_cast<int>(copy.colors.size()));
    EXPECT_GT(copy.num_colors, 0);
    IMG_init(&copy);
    EXPECT_EQ(copy.domain.proj, -9999);
    copy.datim = "000Z 05 FEB 24";
    copy.width = 4;
    copy.height = 3;
    copy.xres = 1.5F;
    const test::Output said = test::capture([&] { IMG_print(MESS_PRINT, &copy); });
    EXPECT_EQ(said.out.substr(0, said.out.find("Tranparent colors: -1\n") + 22),
              "Source: 0\nVersion: 0\nDate: 000Z 05 FEB 24\nInfo: \nType: 0\nSize: 4x3\nResolution: 1.50x0.00\n"
              "Offset: 0.00x0.00\nDepth: 0\nBits per pixel: 0\nBytes per line: 0\nBytes order: 1\nNumber of colors: 0\n"
              "Tranparent colors: -1\n");
}

TEST_F(Door, DumpsWriteThePictureOfTheHook) {
    for (int (*dump)(const std::string&) : {IMG_dump, GIF_dump, PNG_dump, XWD_dump}) {
        EXPECT_EQ(dump("x"), 0);
        IMG_hooks().get_picture = [](IMG_report*) { return 0; };
        EXPECT_EQ(dump("x"), 0);
        EXPECT_FALSE(std::filesystem::exists("x"));
        IMG_hooks().get_picture = [](IMG_report* image) {
            test::Picture picture = any_picture();
            *image = test::pack(picture, test::PACKINGS[1], 4);
            return 1;
        };
        EXPECT_EQ(dump("x"), 1);
        IMG_report image;
        ASSERT_EQ(IMG_read("x", &image, 0), 1);
        EXPECT_EQ(image.width, 31);
        if (!image.colors.empty()) {
            EXPECT_EQ(test::unpack(image).pixels, any_picture().pixels);
        }
        std::filesystem::remove("x");
        IMG_hooks() = {};
    }
}

TEST_F(Door, NativeDumpsHaveTheMapAndItsLabels) {
    IMG_hooks().get_picture = [](IMG_report* image) {
        *image = test::indexed(any_picture());
        return 1;
    };
    IMG_hooks().label = [](int position) { return "label " + std::to_string(position); };
    Domain domain;
    domain.proj = PROJ_LATLON;
    domain.clat = 40;
    domain.clon = -90;
    domain.dx = 2;
    domain.dy = 1;
    domain.nx = 61;
    domain.ny = 33;
    MAP_domain(&domain);
    for (const float margin : {0.7F, 0.8F}) {
        static float margin_now;
        margin_now = margin;
        IMG_hooks().view_offset = [] { return margin_now; };
        ASSERT_EQ(IMG_dump("x"), 1);
        const std::string place = margin < 0.75F ? "LL 40.000000 -90.000000 4.000000 2.000000 31 17\n" : "31 17\n";
        const std::string head = "ZAVIMG\nlabel 2\nlabel 0 [label 5]\n" + place;
        EXPECT_EQ(test::read_file("x").substr(0, head.size()), head);
        EXPECT_EQ(test::read_file("x").size(), head.size() + 31 * 17);
    }
    MAP_domain(nullptr);
}

}  // namespace
}  // namespace zav
