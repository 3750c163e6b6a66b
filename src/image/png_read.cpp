// PNG files, read through libpng.

#include <png.h>

#include <array>
#include <csetjmp>
#include <cstdio>

#include "frame/mess.h"
#include "frame/tools.h"
#include "image/img_file.h"
#include "image/zavimg.h"

namespace zav {
namespace {

constexpr std::size_t SIGNATURE_BYTES = 8;
constexpr unsigned RED_MASK = 0xFF0000;
constexpr unsigned GREEN_MASK = 0x00FF00;
constexpr unsigned BLUE_MASK = 0x0000FF;

/// libpng's own records, freed with this.
struct Reader {
    png_structp png = nullptr;
    png_infop info = nullptr;
    png_infop end = nullptr;
    int bit_depth = 0;
    int color_type = 0;

    Reader() = default;
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;
    ~Reader() { png_destroy_read_struct(&png, &info, &end); }
};

void tell_error(png_structp png, png_const_charp text) {
    MESS_print(MESS_WARN, "PNG_read: %s\n", text);
    png_longjmp(png, 1);
}

void tell_warning(png_structp, png_const_charp text) { MESS_print(MESS_DEBUG, "PNG_read: %s\n", text); }

// What follows is called by libpng's rules: a fault in the file leaves it by a jump, so it has no objects that need
// to be destroyed.

void read_palette(Reader& reader, IMG_report* image, int type) {
    png_colorp palette = nullptr;
    png_get_PLTE(reader.png, reader.info, &palette, &image->num_colors);
    MESS_print(MESS_DEBUG, "color table size: %d\n", image->num_colors);
    if (type == 1) return;
    image->colors.resize(static_cast<std::size_t>(image->num_colors));
    for (std::size_t i = 0; i < image->colors.size(); ++i) {
        const png_color& entry = palette[i];
        const auto part = [](png_byte byte) { return static_cast<float>(byte / 255.0); };
        image->colors[i] = {part(entry.red), part(entry.green), part(entry.blue)};
    }
}

/// What the kind of picture says of the pixels.
void describe_pixels(Reader& reader, IMG_report* image) {
    switch (reader.color_type) {
        case PNG_COLOR_TYPE_GRAY:
        case PNG_COLOR_TYPE_PALETTE:
            image->depth = reader.bit_depth;
            image->bits_pixel = reader.bit_depth;
            image->color_type = 1;
            break;
        case PNG_COLOR_TYPE_GRAY_ALPHA:
            image->depth = 3 * reader.bit_depth;
            image->bits_pixel = 2 * reader.bit_depth;
            image->color_type = 1;
            break;
        default:
            image->depth = 3 * reader.bit_depth;
            image->bits_pixel = png_get_channels(reader.png, reader.info) * reader.bit_depth;
            image->color_type = 0;
            image->red = RED_MASK;
            image->grn = GREEN_MASK;
            image->blu = BLUE_MASK;
    }
}

void read_head(Reader& reader, IMG_report* image, std::FILE* file, int type) {
    png_init_io(reader.png, file);
    png_set_sig_bytes(reader.png, SIGNATURE_BYTES);
    png_read_info(reader.png, reader.info);
    png_uint_32 width = 0;
    png_uint_32 height = 0;
    int interlace = 0;
    int compression = 0;
    int filter = 0;
    png_get_IHDR(reader.png, reader.info, &width, &height, &reader.bit_depth, &reader.color_type, &interlace,
                 &compression, &filter);
    image->width = static_cast<int>(width);
    image->height = static_cast<int>(height);
    MESS_print(MESS_DEBUG, "%d %d %d - %d %d - %d %d\n", image->width, image->height, reader.bit_depth,
               reader.color_type, interlace, compression, filter);
    image->info = "PNG";
    image->bytes_line = static_cast<int>(png_get_rowbytes(reader.png, reader.info));
    image->byte_order = 1;
    image->bit_order = 1;
    describe_pixels(reader, image);
    if (reader.color_type == PNG_COLOR_TYPE_PALETTE) read_palette(reader, image, type);
}

/// Rows are made as they come, so that a wrong size in the head takes no more room than the file has data for.
void read_rows(Reader& reader, IMG_report* image) {
    const int passes = png_set_interlace_handling(reader.png);
    const auto length = static_cast<std::size_t>(image->bytes_line);
    const auto rows = static_cast<std::size_t>(image->height);
    for (int pass = 0; pass < passes; ++pass) {
        for (std::size_t row = 0; row < rows; ++row) {
            img_grow(image->data, (row + 1) * length, rows * length);
            png_read_row(reader.png, image->data.data() + row * length, nullptr);
        }
    }
    png_read_end(reader.png, reader.end);
}

/// Moves red, green and blue of `size` bytes each up by one, over the alpha, so that a pixel of 32 bits reads as its
/// colour under the masks.
void drop_alpha(IMG_report* image, std::size_t size) {
    std::vector<unsigned char>& data = image->data;
    for (std::size_t at = 0; at < data.size(); at += 4 * size) {
        for (std::size_t i = 4 * size; i-- > size;) data[at + i] = data[at + i - size];
    }
}

/// 1, or 0 on failure.
int read_picture(Reader& reader, IMG_report* image, std::FILE* file, int type) {
    if (setjmp(png_jmpbuf(reader.png)) != 0) return 0;
    read_head(reader, image, file, type);
    if (type == 1) return 1;
    read_rows(reader, image);
    return 1;
}

int read_file(std::FILE* file, IMG_report* image, int type) {
    Reader reader;
    reader.png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, tell_error, tell_warning);
    if (reader.png == nullptr) return 0;
    reader.info = png_create_info_struct(reader.png);
    reader.end = png_create_info_struct(reader.png);
    if (reader.info == nullptr || reader.end == nullptr) return 0;
    if (read_picture(reader, image, file, type) == 0) return 0;
    if (type != 1 && reader.color_type == PNG_COLOR_TYPE_RGB_ALPHA) {
        drop_alpha(image, static_cast<std::size_t>(reader.bit_depth / 8));
    }
    return 1;
}

}  // namespace

int PNG_read(const std::string& filename, IMG_report* image, int type) {
    image->data.clear();
    image->colors.clear();
    const file_ptr file(std::fopen(filename.c_str(), "rb"));
    std::array<unsigned char, SIGNATURE_BYTES> signature{};
    if (!file || std::fread(signature.data(), 1, signature.size(), file.get()) != signature.size() ||
        png_sig_cmp(signature.data(), 0, signature.size()) != 0) {
        return 0;
    }
    return img_read_whole(image, [&] { return read_file(file.get(), image, type); });
}

}  // namespace zav
