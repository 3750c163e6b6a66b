// GIF files, written.

#include <algorithm>
#include <array>
#include <bit>

#include "frame/mess.h"
#include "image/gif_lzw.h"
#include "image/gif_parts.h"
#include "image/img_file.h"
#include "image/img_palette.h"
#include "image/zavimg.h"

namespace zav {
namespace {

struct State {
    int use_inter = 0;
    int trans = 0;
};
State state;

/// Index of the background, -1 if the picture shows none of it.
int background_index(const IMG_report& image, const Indexed_picture& picture) {
    const int pixel = img_background(image);
    return pixel < 0 ? -1 : picture.find(static_cast<Pixel_value>(pixel));
}

void append_control(std::string& out, int index) {
    constexpr char DELAY = 10;  // hundredths of a second
    out.append({33, static_cast<char>(249), 4, 1, DELAY, 0, static_cast<char>(index), 0});
}

void append_pixels(std::string& out, const IMG_report& image, const Indexed_picture& picture, int code_size) {
    const auto height = static_cast<std::size_t>(image.height);
    const auto width = static_cast<std::size_t>(image.width);
    Lzw_writer writer(out, code_size);
    const auto add_rows = [&](std::size_t first, std::size_t step) {
        for (std::size_t row = first; row < height; row += step) {
            writer.add(picture.indices.data() + row * picture.width, width);
        }
    };
    if (state.use_inter == 0) {
        add_rows(0, 1);
    } else {
        add_rows(0, 8);
        add_rows(4, 8);
        add_rows(2, 4);
        add_rows(1, 2);
    }
    writer.finish();
}

/// Puts the indices in the place of the pixels.
void store_indices(IMG_report* image, const Indexed_picture& picture) {
    const Pixel_layout layout(*image);
    for (std::size_t row = 0; row < static_cast<std::size_t>(image->height); ++row) {
        layout.store(image->data.data() + row * static_cast<std::size_t>(image->bytes_line), picture.width,
                     picture.indices.data() + row * picture.width);
    }
}

}  // namespace

int gif_index_bits(int colors) {
    return std::max(static_cast<int>(std::bit_width(static_cast<unsigned>(colors - 1))), 1);
}

void gif_append_short(std::string& out, int value) {
    out += static_cast<char>(value & 0xFF);
    out += static_cast<char>(value >> 8);
}

void gif_append_head(std::string& out, int width, int height, const Pixel_color* colors, int bits) {
    out += "GIF89a";
    gif_append_short(out, width);
    gif_append_short(out, height);
    out += static_cast<char>(128 + 16 * (bits - 1) + (bits - 1));
    out.append(2, '\0');
    for (std::size_t i = 0; i < 1U << bits; ++i) {
        for (const unsigned char part : colors[i]) out += static_cast<char>(part);
    }
}

void gif_append_place(std::string& out, const Gif_place& place, bool interlaced, int code_size) {
    out += ',';
    for (const int value : {place.x, place.y, place.width, place.height}) gif_append_short(out, value);
    out += static_cast<char>(interlaced ? 64 : 0);
    out += static_cast<char>(code_size);
}

int GIF_interlace(int val) {
    state.use_inter = val;
    return 0;
}

int GIF_transparent(int val) {
    state.trans = val;
    return 0;
}

int GIF_write(const std::string& filename, IMG_report* image) {
    if (!img_check_picture(image, GIF_MOST_SIDE, "GIF_write")) return 0;
    MESS_print(MESS_DEBUG, "%d %d %d %d\n", image->width, image->height, image->depth, image->bytes_line);
    const Indexed_picture picture = img_index_pixels(*image, true);
    if (picture.lost > 0) {
        MESS_print(MESS_WARN, "GIF_write: %zu pixels have the first color, as there are more than %d\n", picture.lost,
                   PALETTE_SIZE);
    }
    MESS_print(MESS_DEBUG, "num_color: %d\n", picture.count);
    const int bits = gif_index_bits(picture.count);
    MESS_print(MESS_DEBUG, "num_color+: %d\n", 1 << bits);
    const int code_size = std::max(bits, 2);
    MESS_print(MESS_DEBUG, "code_size: %d\n", code_size);

    std::string out;
    gif_append_head(out, image->width, image->height, picture.colors.data(), bits);
    const int background = state.trans != 0 ? background_index(*image, picture) : -1;
    if (background >= 0) append_control(out, background);
    gif_append_place(out, {0, 0, image->width, image->height}, state.use_inter != 0, code_size);
    append_pixels(out, *image, picture, code_size);
    out += static_cast<char>(59);
    if (img_write_file(filename, out, "Unable to open GIF file\n") == 0) return 0;
    store_indices(image, picture);
    return 1;
}

}  // namespace zav
