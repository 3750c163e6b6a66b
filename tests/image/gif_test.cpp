// GIF: the codes against literal ones of the format's own words, and what stands in a file.
#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <map>

#include "image/gif_lzw.h"
#include "image/pictures.h"
#include "support/support.h"
#include "support/table.h"

namespace zav {
namespace {

using Bytes = std::vector<unsigned char>;

/// Bits of the next code: those of the largest that may come, which is the one just being defined.
int code_bits(std::size_t next) { return std::min(static_cast<int>(std::bit_width(next)), 12); }

/// Codes to pixels as GIF89a tells it, with strings spelt out.
Bytes decode_literally(const Bytes& stream, int code_size) {
    const unsigned clear = 1U << code_size;
    std::vector<Bytes> table;
    const auto start = [&] {
        table.assign(clear + 2, Bytes());
        for (unsigned i = 0; i < clear; ++i) table[i] = {static_cast<unsigned char>(i)};
    };
    start();
    Bytes pixels;
    Bytes last;
    int size = code_size + 1;
    for (std::size_t bit = 0; bit + static_cast<std::size_t>(size) <= 8 * stream.size();) {
        unsigned code = 0;
        for (int i = 0; i < size; ++i, ++bit) code |= (stream[bit / 8] >> bit % 8 & 1U) << i;
        if (code == clear + 1) return pixels;
        if (code == clear) {
            start();
            last.clear();
            size = code_size + 1;
            continue;
        }
        Bytes string = last;
        if (code < table.size())
            string = table[code];
        else
            string.push_back(last.at(0));
        if (!last.empty() && table.size() < 4096) {
            last.push_back(string[0]);
            table.push_back(last);
        }
        size = code_bits(table.size());
        pixels.insert(pixels.end(), string.begin(), string.end());
        last = string;
    }
    return pixels;
}

/// Pixels to codes; a clear code is sent at random, and a full table kept at random.
Bytes encode_literally(const Bytes& pixels, int code_size, std::mt19937& random, unsigned clear_period) {
    const unsigned clear = 1U << code_size;
    std::map<Bytes, unsigned> table;
    unsigned next = 0;
    int size = 0;
    Bytes stream;
    std::size_t bits = 0;
    const auto put = [&](unsigned code) {
        for (int i = 0; i < size; ++i, ++bits) {
            if (bits % 8 == 0) stream.push_back(0);
            stream.back() = static_cast<unsigned char>(stream.back() | (code >> i & 1U) << bits % 8);
        }
    };
    const auto start = [&] {
        table.clear();
        for (unsigned i = 0; i < clear; ++i) table[{static_cast<unsigned char>(i)}] = i;
        next = clear + 2;
        size = code_size + 1;
    };
    start();
    put(clear);
    Bytes string;
    for (const unsigned char pixel : pixels) {
        Bytes longer = string;
        longer.push_back(pixel);
        if (table.contains(longer)) {
            string = longer;
            continue;
        }
        put(table[string]);
        size = code_bits(next);
        if (random() % clear_period == 0) {
            put(clear);
            start();
        } else if (next < 4096) {
            table[longer] = next++;
        }
        string = {pixel};
    }
    if (!string.empty()) put(table[string]);
    size = code_bits(next);
    put(clear + 1);
    return stream;
}

Bytes random_pixels(std::mt19937& random, int code_size) {
    Bytes pixels(1 + random() % (random() % 20 == 0 ? 60000 : 900));
    const unsigned colors = 1 + random() % (1U << code_size);
    const unsigned run = 1 + random() % 12;
    for (std::size_t i = 0; i < pixels.size(); ++i) {
        pixels[i] = i > 0 && random() % run != 0 ? pixels[i - 1] : static_cast<unsigned char>(random() % colors);
    }
    return pixels;
}

TEST(GifCodes, AreThoseOfTheFormat) {
    std::mt19937 random(11);
    for (int round = 0; round < 1500; ++round) {
        const int code_size = 2 + static_cast<int>(random() % 7);
        const Bytes pixels = random_pixels(random, code_size);
        std::string out;
        Lzw_writer writer(out, code_size);
        const std::size_t cut = random() % pixels.size();
        writer.add(pixels.data(), cut);
        writer.add(pixels.data() + cut, pixels.size() - cut);
        writer.finish();
        Bytes stream;
        for (std::size_t at = 0; at < out.size(); at += 1 + static_cast<unsigned char>(out[at])) {
            const std::size_t size = static_cast<unsigned char>(out[at]);
            ASSERT_LE(at + size, out.size());
            ASSERT_EQ(size == 0, at + 1 == out.size());
            ASSERT_TRUE(size == 254 || at + 1 + size + 1 >= out.size());
            stream.insert(stream.end(), out.begin() + static_cast<long>(at) + 1,
                          out.begin() + static_cast<long>(at + 1 + size));
        }
        ASSERT_EQ(out.back(), '\0');
        ASSERT_EQ(decode_literally(stream, code_size), pixels) << round;
    }
}

TEST(GifCodes, OfAnyEncoderAreRead) {
    std::mt19937 random(12);
    for (int round = 0; round < 1500; ++round) {
        const int code_size = 1 + static_cast<int>(random() % 8);
        const Bytes pixels = random_pixels(random, code_size);
        const Bytes stream = encode_literally(pixels, code_size, random, random() % 3 == 0 ? 50 : 1U << 30);
        ASSERT_EQ(decode_literally(stream, code_size), pixels) << round;
        Bytes read;
        ASSERT_TRUE(Lzw_reader(stream, code_size).decode(read, pixels.size()));
        ASSERT_EQ(read, pixels) << round;
        // No more is taken than is wanted.
        const std::size_t most = random() % pixels.size();
        ASSERT_TRUE(Lzw_reader(stream, code_size).decode(read, most));
        ASSERT_EQ(read, Bytes(pixels.begin(), pixels.begin() + static_cast<long>(most))) << round;
    }
}

TEST(GifCodes, ThatNothingDefinesEndThePicture) {
    // Three bits each: clear 4, then 1, then 7, where 6 would be the next to be made.
    Bytes pixels;
    EXPECT_FALSE(Lzw_reader({0b11001100, 0b00000001}, 2).decode(pixels, 100));
    EXPECT_EQ(pixels, Bytes{1});
    EXPECT_FALSE(Lzw_reader({0b00110100}, 2).decode(pixels, 100));  // 6 at once
    EXPECT_EQ(pixels, Bytes{});
}

class Gif : public test::TempDirTest {
  protected:
    ~Gif() override {
        GIF_transparent(0);
        IMG_hooks() = {};
    }
};

/// A picture whose pixel i has colour i, cut into rows.
IMG_report picture_of_colors(int width, int height, int colors) {
    test::Picture picture{width, height, {}};
    for (int i = 0; i < width * height; ++i) {
        const int color = std::min(i, colors - 1);
        picture.pixels.push_back({color % 256, color / 256, 7});
    }
    return test::pack(picture, test::PACKINGS[0], 4);
}

TEST_F(Gif, FilesHoldWhatTheFormatAsksFor) {
    for (const auto& [colors, flags, table, code_size] : std::vector<std::array<int, 4>>{
             {1, 128, 2, 2}, {2, 128, 2, 2}, {3, 145, 4, 2}, {4, 145, 4, 2}, {5, 162, 8, 3}, {129, 247, 256, 8}}) {
        IMG_report image = picture_of_colors(20, 15, colors);
        ASSERT_EQ(GIF_write("x.gif", &image), 1);
        const std::string file = test::read_file("x.gif");
        std::string head = std::string("GIF89a\x14\0\x0F\0", 10) + static_cast<char>(flags) + std::string(2, '\0');
        for (int i = 0; i < table; ++i) head += {static_cast<char>(i < colors ? i : 0), '\0', i < colors ? '\7' : '\0'};
        head += std::string(",\0\0\0\0\x14\0\x0F\0\0", 10) + static_cast<char>(code_size);
        EXPECT_TRUE(file.starts_with(head) && file.ends_with(std::string("\0;", 2))) << colors;
        // The pixels are indices now, in the first byte of four.
        EXPECT_EQ(Bytes(image.data.begin() + 4, image.data.begin() + 8), (Bytes{colors > 1, 0, 0, 0}));
    }
}

TEST_F(Gif, ColoursBeyond256BecomeTheFirst) {
    for (int (*write)(const std::string&, IMG_report*) : {GIF_write, PNG_write}) {
        IMG_report image = picture_of_colors(20, 15, 300);
        const test::Output said = test::capture([&] { ASSERT_EQ(write("x", &image), 1); });
        EXPECT_NE((said.out + said.err).find("44 pixels have the first color"), std::string::npos);
        IMG_report again;
        ASSERT_EQ(IMG_read("x", &again, 0), 1);
        for (int i = 0; i < 300; ++i) EXPECT_EQ(again.data[static_cast<std::size_t>(i)], i < 256 ? i : 0);
    }
}

TEST_F(Gif, PaddingTakesAColourOnlyWhereThereIsRoom) {
    test::Picture picture{16, 16, {}};
    for (int i = 0; i < 256; ++i) picture.pixels.push_back({i, 1, 7});
    IMG_report image = test::pack(picture, test::PACKINGS[0], 96);
    const test::Output said = test::capture([&] { ASSERT_EQ(GIF_write("x.gif", &image), 1); });
    EXPECT_EQ(said.out + said.err, "");
    EXPECT_EQ(test::difference(test::read_elsewhere("giftopnm x.gif"), picture), 0);
}

TEST_F(Gif, TheBackgroundIsTransparent) {
    IMG_hooks().background = [] { return 0x020007; };
    GIF_transparent(1);
    IMG_report image = picture_of_colors(2, 2, 4);
    ASSERT_EQ(GIF_write("x.gif", &image), 1);
    EXPECT_EQ(test::read_file("x.gif").substr(25, 8), std::string("\x21\xF9\4\1\x0A\0\2\0", 8));
    EXPECT_EQ(test::run_command("giftopnm --alphaout=- x.gif 2>/dev/null | pnmtoplainpnm | tr -d '\\n '").substr(4),
              "0010");
    // No pixel shows it.
    image = picture_of_colors(2, 1, 2);
    ASSERT_EQ(GIF_write("y.gif", &image), 1);
    EXPECT_EQ(test::read_file("y.gif")[19], ',');
}

// Blocks, palettes, screens and places that our writer doesn't make, around a picture of 2 x 2 pixels of 1.
TEST_F(Gif, PartsOfAllKindsAreRead) {
    for (const test::Case& row : test::cases("image/gif_parts")) {
        SCOPED_TRACE(row.line());
        const std::string picture("\2\2\x8C\x53\0;", 6);
        dir.write("x.gif",
                  "** a remark\nGIF89a" + row.text(0) + row.text(1) + row.text(2) + "," + row.text(3) + picture);
        for (int (*read)(const std::string&, IMG_report*, int) : {GIF_read, IMG_read}) {
            IMG_report image;
            test::capture([&] { ASSERT_EQ(read("x.gif", &image, 0), 1); });
            const std::vector<int> size = {image.width, image.height, image.bytes_line};
            EXPECT_EQ(size, (std::vector<int>{row.number(4), row.number(5), row.number(4)}));
            EXPECT_EQ(std::string(image.data.begin(), image.data.end()), row.text(6));
            ASSERT_EQ(image.colors.empty(), row.number(7) < 0);
            if (!image.colors.empty()) {
                EXPECT_FLOAT_EQ(image.colors.at(1).r, row.number(7) / 255.0F);
            }
        }
    }
}

}  // namespace
}  // namespace zav
