// Damaged, cut and lying files of all formats: a result, a record that holds what it says, and no more memory than the
// file gives reason for.
#include <gtest/gtest.h>
#include <utime.h>

#include "image/pictures.h"
#include "support/support.h"
#include "support/table.h"

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

TEST_P(Damaged, ByByteCutOrAnywhere) {
    const std::string whole = sample(GetParam());
    ASSERT_GT(whole.size(), 60U);
    std::mt19937 random(77);
    test::capture([&] {
        EXPECT_EQ(read(whole), 1);
        for (std::size_t at = 0; at < std::min<std::size_t>(whole.size(), 250); ++at) {
            for (const int change : {0x01, 0x80, 0xFF}) {
                std::string content = whole;
                content[at] = static_cast<char>(content[at] ^ change);
                SCOPED_TRACE(std::to_string(at) + " by " + std::to_string(change));
                read(content);
            }
        }
        for (std::size_t size = 0; size < whole.size(); size += size < 200 ? 1 : 7) read(whole.substr(0, size));
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
    for (const test::Case& row : test::cases("image/refused")) {
        SCOPED_TRACE(row.line());
        std::string content = row.text(1);
        if (row.text(0) == "PNG") content += sample("PNG");
        if (row.text(0).starts_with("XWD"))
            content = sample("XWD").replace(4 * std::stoul(row.text(0).substr(3)), 4, content);
        const test::Output said = test::capture([&] { EXPECT_EQ(read(content), 0); });
        EXPECT_NE((said.out + said.err).find(row.text(2)), std::string::npos) << said.out + said.err;
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
