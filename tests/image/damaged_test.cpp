// Damaged, cut and lying files of all formats: a result, a record that holds what it says, and no more memory than the
// file gives reason for.
#include <gtest/gtest.h>
#include <utime.h>

#include "image/pictures.h"
#include "support/support.h"

namespace zav {
namespace {

/// No damaged file of these tests gives reason for more.
constexpr std::size_t MOST_BYTES = 20U << 20;

class Damaged : public test::TempDirTest, public ::testing::WithParamInterface<std::string> {
  protected:
    /// Reads a file that nobody writes to, and checks what comes of it. The result.
    int read(const std::string& content) {
        std::filesystem::remove("x");  // some file systems bring a file to the disk that is written over
        test::write_file("x", content);
        const utimbuf old{1000000000, 1000000000};
        utime("x", &old);
        IMG_report image;
        const int result = IMG_read("x", &image, 0);
        EXPECT_GE(result, 0);
        EXPECT_LE(image.data.size(), MOST_BYTES);
        if (result == 0) {
            EXPECT_TRUE(image.data.empty());
        } else {
            EXPECT_EQ(image.data.size(),
                      static_cast<std::size_t>(image.height) * static_cast<std::size_t>(image.bytes_line));
            EXPECT_TRUE(image.colors.empty() || image.colors.size() == static_cast<std::size_t>(image.num_colors));
            if (rounds_ % 4 == 0) pass_on(image);
        }
        IMG_read("x", &image, 1);
        rounds_++;
        return result;
    }

    int rounds_ = 0;

    /// What was read can be written.
    static void pass_on(IMG_report& image) {
        if (image.data.size() > 100000) return;
        IMG_write("/dev/null", &image, 1);
        PNG_write("/dev/null", &image);
        XWD_write("/dev/null", &image);
        GIF_write("/dev/null", &image);
    }

    /// A file of the format that the parameter names.
    static std::string sample(const std::string& kind) {
        std::mt19937 random(31);
        const test::Picture picture = test::random_picture(random, 19, 13, 6);
        IMG_report image = test::indexed(picture);
        if (kind == "GIF") GIF_write("x", &image);
        if (kind == "XWD") XWD_write("x", &image);
        if (kind == "native" || kind == "native_compressed") {
            image.num_colors = 0;
            image.domain.proj = 1;
            image.domain.plon = -90;
            image.domain.clat = image.domain.clon = image.domain.dx = image.domain.dy = 1;
            image.domain.nx = 19;
            image.domain.ny = 13;
            IMG_write("x", &image, kind == "native" ? 0 : 1);
        }
        if (kind == "PNG") PNG_write("x", &image);
        return test::read_file("x");
    }
};

TEST_P(Damaged, EveryByteChanged) {
    const std::string whole = sample(GetParam());
    ASSERT_GT(whole.size(), 60U);
    const std::size_t head = std::min<std::size_t>(whole.size(), 250);
    test::capture([&] {
        EXPECT_EQ(read(whole), 1);
        for (std::size_t at = 0; at < head; ++at) {
            for (const int change : {0x01, 0x80, 0xFF}) {
                std::string content = whole;
                content[at] = static_cast<char>(content[at] ^ change);
                SCOPED_TRACE(std::to_string(at) + " to " + std::to_string(static_cast<unsigned char>(content[at])));
                read(content);
            }
        }
    });
}

TEST_P(Damaged, CutAnywhere) {
    const std::string whole = sample(GetParam());
    test::capture([&] {
        for (std::size_t size = 0; size < whole.size(); size += size < 200 ? 1 : 7) {
            SCOPED_TRACE(size);
            read(whole.substr(0, size));
        }
    });
}

TEST_P(Damaged, AnythingInTheMiddle) {
    const std::string whole = sample(GetParam());
    std::mt19937 random(77);
    test::capture([&] {
        for (int round = 0; round < 250; ++round) {
            std::string content = whole;
            for (unsigned i = random() % 8; i < 8; ++i)
                content[random() % content.size()] = static_cast<char>(random());
            if (random() % 3 == 0) content.insert(random() % content.size(), content.substr(random() % content.size()));
            read(content);
        }
    });
}

INSTANTIATE_TEST_SUITE_P(Formats, Damaged, ::testing::Values("GIF", "PNG", "XWD", "native", "native_compressed"),
                         [](const auto& row) { return test::case_name(row.param); });

TEST_F(Damaged, SizesWithoutDataAreRefused) {
    const std::string xwd = sample("XWD");
    const auto xwd_with = [&](std::size_t field, const std::string& value) {
        std::string content = xwd;
        return content.replace(4 * field, 4, value);
    };
    struct Row {
        const char* what;
        std::string content;
        const char* text;
    };
    const std::string png = sample("PNG");
    const std::vector<Row> rows = {
        {"GIF", std::string("GIF89a\xFF\xFF\xFF\xFF\0\0\0,\0\0\0\0\xFF\xFF\xFF\xFF\0\2\2\x8C\x53\0;", 29),
         "Unable to allocate data buffer."},
        {"GIF screen", std::string("GIF89a\xFF\xFF\xFF\xFF\0\0\0,\0\0\0\0\1\0\1\0\0\2\2\x8C\x53\0;", 29),
         "Unable to allocate data buffer."},
        {"GIF without a picture", std::string("GIF89a\xFF\xFF\xFF\xFF\0\0\0;", 14), "Unable to allocate data buffer."},
        {"native", "ZAVIMG\n\n\n60000 60000\nabc", "Unable to allocate data buffer."},
        {"native compressed", "ZAVIMGZ\n\n\n60000 60000\nabc", "Unable to allocate data buffer."},
        {"XWD", xwd_with(5, std::string("\x7F\0\0\0", 4)), "Unable to read pixmap from dump file."},
        {"XWD name", xwd_with(0, std::string("\xFF\0\0\0", 4)), "Unable to read window name from dump file."},
        {"XWD small header", xwd_with(0, std::string("\0\0\0\x63", 4)), "XWD header size is too small."},
        {"XWD version", xwd_with(1, std::string("\0\0\0\x8", 4)), "XWD file format version mismatch"},
        {"XWD colours", xwd_with(19, std::string("\xFF\0\0\0", 4)), "Unable to read color map from dump file."},
        {"XWD depth", xwd_with(3, std::string("\0\0\0\x21", 4)), "Incorrect depth: 33 > 32"},
        {"XWD short lines", xwd_with(12, std::string("\0\0\0\x12", 4)), "XWD lines are too short for their pixels"},
        {"short file", "ZA", "Unable to read dump file header"},
        {"empty file", "", "Unable to read dump file header"},
        {"PNG behind a remark", "** a remark\n" + png, ""},
        {"native behind a remark", "** a remark\nZAVIMG\n\n\n1 1\nx", "IMG_read_zav: Invalid image type"},
        {"code size", std::string("GIF89a\1\0\1\0\0\0\0,\0\0\0\0\1\0\1\0\0\x9\2\x8C\x53\0;", 29), "Invalid code size"},
        {"only three letters", "GIF", "GIF_read: Not a GIF file"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        const test::Output said = test::capture([&] { EXPECT_EQ(read(row.content), 0); });
        EXPECT_NE((said.out + said.err).find(row.text), std::string::npos) << said.out + said.err;
    }
}

TEST_F(Damaged, ThinPicturesOfAllLengths) {
    std::mt19937 random(9);
    for (const auto& [width, height] : {std::pair{60000, 1}, std::pair{1, 60000}, std::pair{65535, 2}}) {
        const test::Picture picture = test::random_picture(random, width, height, 250);
        for (int (*write)(const std::string&, IMG_report*) : {GIF_write, PNG_write, XWD_write}) {
            IMG_report image = test::indexed(picture);
            ASSERT_EQ(write("x", &image), 1);
            IMG_report again;
            ASSERT_EQ(IMG_read("x", &again, 0), 1);
            EXPECT_EQ(test::unpack(again).pixels, picture.pixels);
        }
    }
    IMG_report wide = test::indexed({65536, 1, std::vector<test::Rgb>(65536)});
    test::capture([&] { EXPECT_EQ(GIF_write("y", &wide), 0); });
    EXPECT_FALSE(std::filesystem::exists("y"));
}

}  // namespace
}  // namespace zav
