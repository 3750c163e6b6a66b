// GIF files, read: their first picture (GIF89a).

#include <algorithm>
#include <array>
#include <cstdio>

#include "files/files.h"
#include "frame/mess.h"
#include "image/gif_lzw.h"
#include "image/img_file.h"
#include "image/zavimg.h"

namespace zav {
namespace {

enum : int { BLOCK_IMAGE = 44, BLOCK_EXTENSION = 33, EXTENSION_CONTROL = 249 };
enum : unsigned { FLAG_TABLE = 128, FLAG_INTERLACED = 64, TABLE_BITS = 7 };

constexpr int MOST_CODE_SIZE = 8;

/// What a picture of the file says of itself.
struct Frame {
    std::size_t width = 0;
    std::size_t height = 0;
    bool interlaced = false;
    bool local_table = false;
    std::vector<IMG_color> colors;
    int code_size = 0;
};

int fail(const char* text) {
    MESS_print(MESS_WARN, "GIF_read: %s\n", text);
    return 0;
}

template <std::size_t size>
bool read_all(std::FILE* file, std::array<unsigned char, size>& bytes) {
    return std::fread(bytes.data(), 1, size, file) == size;
}

int low_first(unsigned char low, unsigned char high) { return low | high << 8; }

bool read_colors(std::FILE* file, unsigned flags, std::vector<IMG_color>& colors) {
    colors.resize(2U << (flags & TABLE_BITS));
    for (IMG_color& color : colors) {
        std::array<unsigned char, 3> bytes{};
        if (!read_all(file, bytes)) return false;
        const auto part = [&bytes](std::size_t i) { return static_cast<float>(bytes[i] / 255.0); };
        color = {part(0), part(1), part(2)};
    }
    return true;
}

/// Passes over a line that may stand in front, then checks the first three bytes.
bool read_signature(std::FILE* file) {
    std::array<unsigned char, 3> bytes{};
    if (!read_all(file, bytes)) return false;
    if (bytes == std::array<unsigned char, 3>{'*', '*', ' '}) {
        for (int c = std::fgetc(file); c != '\n'; c = std::fgetc(file)) {
            if (c == EOF) return false;
        }
        if (!read_all(file, bytes)) return false;
    }
    return bytes == std::array<unsigned char, 3>{'G', 'I', 'F'};
}

/// The version and the screen. The colour table's flag byte goes to `flags`.
bool read_screen(std::FILE* file, IMG_report* image, unsigned& flags) {
    std::array<unsigned char, 10> bytes{};
    if (!read_all(file, bytes)) return false;
    image->width = low_first(bytes[3], bytes[4]);
    image->height = low_first(bytes[5], bytes[6]);
    flags = bytes[7];
    image->num_colors = static_cast<int>(2U << (flags & TABLE_BITS));
    image->depth = 8;
    image->bits_pixel = 8;
    image->bytes_line = image->width;
    image->color_type = 1;
    image->info = "GIF";
    return true;
}

/// Sub-blocks up to the empty one, joined.
std::vector<unsigned char> read_blocks(std::FILE* file) {
    std::vector<unsigned char> joined;
    for (int size = std::fgetc(file); size > 0; size = std::fgetc(file)) {
        const std::size_t before = joined.size();
        joined.resize(before + static_cast<std::size_t>(size));
        const std::size_t got = std::fread(joined.data() + before, 1, static_cast<std::size_t>(size), file);
        if (got == static_cast<std::size_t>(size)) continue;
        joined.resize(before + got);
        break;
    }
    return joined;
}

void skip_extension(std::FILE* file) {
    const int label = std::fgetc(file);
    const std::vector<unsigned char> content = read_blocks(file);
    if (label != EXTENSION_CONTROL || content.size() < 4) return;
    MESS_print(MESS_DEBUG, "control: %d %d %d\n", content[0], low_first(content[1], content[2]), content[3]);
}

/// Goes on to the first picture. False if there is none.
bool find_frame(std::FILE* file) {
    for (int c = std::fgetc(file); c != EOF; c = std::fgetc(file)) {
        if (c == BLOCK_IMAGE) return true;
        if (c == BLOCK_EXTENSION) skip_extension(file);
    }
    return false;
}

bool read_frame(std::FILE* file, Frame& frame) {
    std::array<unsigned char, 9> bytes{};
    if (!read_all(file, bytes)) return false;
    frame.width = static_cast<std::size_t>(low_first(bytes[4], bytes[5]));
    frame.height = static_cast<std::size_t>(low_first(bytes[6], bytes[7]));
    frame.interlaced = (bytes[8] & FLAG_INTERLACED) != 0;
    frame.local_table = (bytes[8] & FLAG_TABLE) != 0;
    if (frame.local_table && !read_colors(file, bytes[8], frame.colors)) return false;
    frame.code_size = std::fgetc(file);
    return frame.code_size != EOF;
}

/// The rows of a picture in the order in which they stand in the file.
std::vector<std::size_t> row_order(std::size_t height, bool interlaced) {
    struct Pass {
        std::size_t first;
        std::size_t step;
    };
    static constexpr std::array<Pass, 4> INTERLACED{{{0, 8}, {4, 8}, {2, 4}, {1, 2}}};
    std::vector<std::size_t> order;
    order.reserve(height);
    if (!interlaced) {
        for (std::size_t row = 0; row < height; ++row) order.push_back(row);
    } else {
        for (const Pass& pass : INTERLACED) {
            for (std::size_t row = pass.first; row < height; row += pass.step) order.push_back(row);
        }
    }
    return order;
}

/// Lays the picture on the upper left of the screen.
void place_rows(const std::vector<unsigned char>& pixels, const Frame& frame, IMG_report* image) {
    const auto width = static_cast<std::size_t>(image->width);
    const auto height = static_cast<std::size_t>(image->height);
    const std::size_t shown = std::min(frame.width, width);
    std::size_t at = 0;
    for (const std::size_t row : row_order(frame.height, frame.interlaced)) {
        if (at >= pixels.size()) break;
        const std::size_t count = std::min(shown, pixels.size() - at);
        if (row < height) {
            img_grow(image->data, (row + 1) * width, height * width);
            std::copy_n(pixels.begin() + static_cast<std::ptrdiff_t>(at), count,
                        image->data.begin() + static_cast<std::ptrdiff_t>(row * width));
        }
        at += frame.width;
    }
}

/// A file whose screen has no size shows its first picture.
void settle_screen(const Frame& frame, IMG_report* image) {
    if (image->width != 0 && image->height != 0) return;
    image->width = static_cast<int>(frame.width);
    image->height = static_cast<int>(frame.height);
    image->bytes_line = image->width;
}

void settle_colors(Frame& frame, IMG_report* image) {
    if (!frame.local_table) return;
    if (!image->colors.empty()) {
        MESS_print(MESS_WARN, "GIF_read: The first picture's own colors aren't used\n");
        return;
    }
    image->colors = std::move(frame.colors);
    image->num_colors = static_cast<int>(image->colors.size());
}

int read_pixels(std::FILE* file, IMG_report* image) {
    Frame frame;
    if (!find_frame(file)) {
        MESS_print(MESS_WARN, "GIF_read: No picture in the file\n");
        return 1;
    }
    if (!read_frame(file, frame)) return fail("The file is cut off");
    if (frame.code_size < 1 || frame.code_size > MOST_CODE_SIZE) return fail("Invalid code size");
    settle_screen(frame, image);
    settle_colors(frame, image);

    const std::vector<unsigned char> stream = read_blocks(file);
    std::vector<unsigned char> pixels;
    const std::size_t wanted = frame.width * frame.height;
    if (!Lzw_reader(stream, frame.code_size).decode(pixels, wanted)) {
        MESS_print(MESS_WARN, "GIF_read: Invalid code in the picture\n");
    }
    if (pixels.size() < wanted) {
        MESS_print(MESS_WARN, "GIF_read: The file has %zu of %zu pixels\n", pixels.size(), wanted);
    }
    if (!frame.interlaced && frame.width == static_cast<std::size_t>(image->width)) {
        image->data = std::move(pixels);
    } else {
        place_rows(pixels, frame, image);
    }
    return 1;
}

int read_file(std::FILE* file, IMG_report* image, int type) {
    unsigned flags = 0;
    if (!read_signature(file) || !read_screen(file, image, flags)) return fail("Not a GIF file");
    if (type == 1) return 1;
    if ((flags & FLAG_TABLE) != 0 && !read_colors(file, flags, image->colors)) return fail("The file is cut off");
    if (read_pixels(file, image) == 0) return 0;
    if (img_complete(image->data, static_cast<std::size_t>(image->width) * static_cast<std::size_t>(image->height))) {
        return 1;
    }
    MESS_print(MESS_WARN, "Unable to allocate data buffer.\n");
    return 0;
}

}  // namespace

int GIF_read(const std::string& filename, IMG_report* image, int type) {
    image->data.clear();
    image->colors.clear();
    const file_ptr file = FILE_open(filename, "rb");
    if (!file) return fail("Unable to open file");
    return img_read_whole(image, [&] { return read_file(file.get(), image, type); });
}

}  // namespace zav
