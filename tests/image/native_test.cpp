// The native image format: heads of both versions, blocks, compression, growing files.
#include <gtest/gtest.h>
#include <utime.h>

#include <chrono>
#include <fstream>
#include <thread>

#include "files/files.h"
#include "image/pictures.h"
#include "support/support.h"
#include "support/table.h"

namespace zav {
namespace {

class Native : public test::TempDirTest {};

std::string text_of(const std::vector<unsigned char>& data) { return {data.begin(), data.end()}; }

/// Compresses through another program, in pieces of so many bytes.
std::string compressed(const test::TempDir& dir, const std::string& pixels, int piece) {
    dir.write("pixels", pixels);
    return test::run_command("cd " + dir.path().string() +
                             " && python3 -c 'import sys, zlib; p = open(\"pixels\", \"rb\").read()\n" +
                             "for i in range(0, len(p), " + std::to_string(piece) +
                             "): sys.stdout.buffer.write(zlib.compress(p[i:i+" + std::to_string(piece) + "]))'");
}

/// What stands between the head and the pixels for each flag.
std::string blocks_of(const std::string& flags) {
    std::string blocks;
    if (flags.find('V') != std::string::npos) blocks += std::string(1024, 'v');
    if (flags.find('C') != std::string::npos) blocks += std::string("cc") + '\x09' + '\x03' + "123456";
    return blocks;
}

TEST_F(Native, HeadsOfBothVersions) {
    const std::string pixels = "ABCDEFGHIJKL";
    FILE_set_key('r', "mine");
    const int priority = DOM_get_prior();
    for (const test::Case& row : test::cases("image/native_heads")) {
        SCOPED_TRACE(row.line());
        const std::string flags = row.text(0);
        std::string body = pixels;
        if (flags.find('*') != std::string::npos) {
            dir.write("pixels.dat", pixels);
            body = "pixels.dat\n";
        } else if (flags.find('Z') != std::string::npos) {
            body = compressed(dir, pixels, 5);
        }
        dir.write("x.img",
                  "ZAVIMG" + flags + "\n000Z 05 FEB 24\nInfra red\n" + row.text(1) + "\n" + blocks_of(flags) + body);
        IMG_report image;
        test::capture([&] { EXPECT_EQ(IMG_read_zav("x.img", &image, 0), row.number(2)); });
        if (row.number(2) != 1) continue;
        EXPECT_EQ(image.source, 50);
        EXPECT_EQ(image.width, row.number(3));
        EXPECT_EQ(image.height, row.number(4));
        EXPECT_EQ(image.depth, 8);
        EXPECT_EQ(image.bytes_line, 4);
        EXPECT_EQ(image.datim, "000Z 05 FEB 24");
        EXPECT_EQ(image.date.day, 5);
        EXPECT_EQ(image.info, "Infra red");
        EXPECT_EQ(text_of(image.data), pixels);
        const Domain& domain = image.domain;
        EXPECT_EQ(domain.proj, row.number(5));
        std::size_t column = 6;
        for (const float value : {domain.plat, domain.plon, domain.clat, domain.clon, domain.dx, domain.dy,
                                  domain.param[0], domain.param[1], domain.param[2]})
            EXPECT_FLOAT_EQ(value, static_cast<float>(row.real(column++))) << column;

        ASSERT_EQ(IMG_write("y.img", &image, 0), 1);
        EXPECT_EQ(test::read_file("y.img"), "ZAVIMG\n000Z 05 FEB 24\nInfra red\n" + row.text(15) + "\n" + pixels);
    }
    EXPECT_EQ(FILE_get_key('r'), "mine");
    EXPECT_EQ(DOM_get_prior(), priority);
}

TEST_F(Native, ASecondFileIsAPlainOne) {
    for (const char* name : {"|echo ABCDEFGHIJKL >made", "-", "absent", ".", ""}) {
        dir.write("x.img", std::string("ZAVIMG*\n\n\n4 3\n") + name + "\n");
        IMG_report image;
        test::capture([&] { EXPECT_EQ(IMG_read_zav("x.img", &image, 0), -1) << name; }, "ABCDEFGHIJKL");
    }
    EXPECT_FALSE(std::filesystem::exists("made"));
}

TEST_F(Native, CompressedPixelsAreReadElsewhereAndHere) {
    std::mt19937 random(3);
    const test::Picture picture = test::random_picture(random, 331, 127, 200);
    IMG_report image = test::indexed(picture);
    image.colors.clear();
    image.num_colors = 0;
    const std::string pixels = text_of(image.data);
    ASSERT_EQ(IMG_write("x.img", &image, 1), 1);
    EXPECT_EQ(test::run_command(
                  "python3 -c 'import sys, zlib; f = open(\"x.img\", \"rb\").read(); s = f.split(b\"\\n\", 4)[4]\n"
                  "while s:\n d = zlib.decompressobj(); p = d.decompress(s); assert len(p) <= 10000; "
                  "sys.stdout.buffer.write(p); s = d.unused_data'"),
              pixels);
    for (const int piece : {100, 9999, 50000}) {
        dir.write("y.img", "ZAVIMGZ\n\n\n331 127\n" + compressed(dir, pixels, piece));
        for (const char* file : {"x.img", "y.img"}) {
            IMG_report again;
            ASSERT_EQ(IMG_read(file, &again, 0), 1);
            EXPECT_EQ(text_of(again.data), pixels);
        }
    }
}

TEST_F(Native, AFileThatGrowsIsWaitedForButNoOldOne) {
    const std::string pixels(30000, 'p');
    const std::string content = "ZAVIMGZ\n\n\n300 100\n" + compressed(dir, pixels, 10000);
    const std::size_t half = content.size() - 30;
    dir.write("x.img", content.substr(0, half));
    std::thread writer([&] {
        std::this_thread::sleep_for(std::chrono::milliseconds(300));
        std::ofstream("x.img", std::ios::app | std::ios::binary) << content.substr(half);
    });
    IMG_report image;
    EXPECT_EQ(IMG_read("x.img", &image, 0), 1);
    writer.join();
    EXPECT_EQ(text_of(image.data), pixels);

    dir.write("x.img", content.substr(0, half));
    const utimbuf old{1000000000, 1000000000};
    utime("x.img", &old);
    const auto start = std::chrono::steady_clock::now();
    const test::Output said = test::capture([&] { EXPECT_EQ(IMG_read("x.img", &image, 0), 1); });
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::milliseconds(900));
    EXPECT_NE((said.out + said.err).find("of 30000 pixels"), std::string::npos);
    ASSERT_EQ(image.data.size(), pixels.size());
    EXPECT_EQ(text_of(image.data).substr(0, 20000), pixels.substr(0, 20000));
    EXPECT_EQ(image.data.back(), 0);
}

TEST_F(Native, ColoursAreWrittenAsIndexOrGrey) {
    // One pixel for each way of packing: its bytes, and the byte that is written.
    for (const test::Case& row : test::cases("image/native_pixels")) {
        IMG_report image;
        image.width = static_cast<int>(row.text(4).size());
        image.height = 1;
        image.depth = row.number(0);
        image.bits_pixel = row.number(1);
        image.byte_order = row.number(2);
        image.red = row.number(0) > 8 ? 0xF00 : 0;
        image.num_colors = 2;
        image.bytes_line = static_cast<int>(row.text(3).size());
        for (const char byte : row.text(3)) image.data.push_back(static_cast<unsigned char>(byte));
        const std::string head = std::to_string(image.width) + " 1\n";
        ASSERT_EQ(IMG_write("x.img", &image, 0), 1);
        EXPECT_EQ(test::read_file("x.img"), "ZAVIMG\n\n\n" + head + row.text(4)) << row.line();
    }
}

TEST_F(Native, PaddedLinesComeBackWithoutTheirPadding) {
    std::mt19937 random(5);
    const test::Picture picture = test::random_picture(random, 37, 23, 100);
    test::Picture copy = picture;
    for (const int type : {0, 1}) {
        IMG_report image = test::pack(copy, {"", 8, 8, 1, {0, 0, 0}}, 4);
        ASSERT_EQ(image.bytes_line, 40);
        ASSERT_EQ(IMG_write("x.img", &image, type), 1);
        IMG_report again;
        ASSERT_EQ(IMG_read("x.img", &again, 0), 1);
        EXPECT_EQ(again.data, test::indexed(picture).data);
    }
    // What is behind the pixels and isn't padding is passed over.
    dir.write("y.img", "ZAVIMG\n\n\n3 3\nABCDEFGHIJKL");
    IMG_report image;
    ASSERT_EQ(IMG_read("y.img", &image, 0), 1);
    EXPECT_EQ(text_of(image.data), "ABCDEFGHI");
}

TEST_F(Native, TheGridOfTheMapIsFittedToThePicture) {
    IMG_report image = test::indexed({3, 5, std::vector<test::Rgb>(15)});
    image.datim = "two\nlines";
    image.domain.proj = 2;
    image.domain.clat = 40;
    image.domain.clon = 10;
    image.domain.dx = 1;
    image.domain.dy = 2;
    image.domain.nx = 21;
    image.domain.ny = 41;
    ASSERT_EQ(IMG_write("x.img", &image, 0), 1);
    EXPECT_EQ(test::read_file("x.img").substr(0, 78),
              "ZAVIMG\ntwo lines\n\nLL 40.000000 10.000000 10.000000 20.000000 3 5\n" + std::string(13, '\0'));
}

}  // namespace
}  // namespace zav
