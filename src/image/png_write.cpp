// PNG files, written through libpng, with a palette.

#include <png.h>

#include <array>
#include <csetjmp>
#include <ctime>
#include <string>

#include "frame/mess.h"
#include "image/img_file.h"
#include "image/img_palette.h"
#include "image/zavimg.h"

namespace zav {
namespace {

/// The largest side that readers accept by default.
constexpr int MOST_SIDE = 1000000;
constexpr const char* SOFTWARE = "ZAV - Zavoria v5.0";

/// libpng's own records, freed with this, and what it takes from us.
struct Writer {
    png_structp png = nullptr;
    png_infop info = nullptr;
    std::string out;
    std::array<png_color, PALETTE_SIZE> palette{};
    std::array<std::string, 3> texts;

    Writer() = default;
    Writer(const Writer&) = delete;
    Writer& operator=(const Writer&) = delete;
    ~Writer() { png_destroy_write_struct(&png, &info); }
};

void tell_error(png_structp png, png_const_charp text) {
    MESS_print(MESS_WARN, "PNG_write: %s\n", text);
    png_longjmp(png, 1);
}

void tell_warning(png_structp, png_const_charp text) { MESS_print(MESS_DEBUG, "PNG_write: %s\n", text); }

void take_bytes(png_structp png, png_bytep data, png_size_t size) {
    static_cast<std::string*>(png_get_io_ptr(png))->append(reinterpret_cast<const char*>(data), size);
}

void take_nothing(png_structp) {}

std::string current_time() {
    const std::time_t now = std::time(nullptr);
    std::tm parts{};
    gmtime_r(&now, &parts);
    std::array<char, 64> text{};
    std::strftime(text.data(), text.size(), "%d %b %Y %H:%M:%S GMT", &parts);
    return text.data();
}

void describe(Writer& writer, const IMG_report& image) {
    png_set_IHDR(writer.png, writer.info, static_cast<png_uint_32>(image.width), static_cast<png_uint_32>(image.height),
                 8, PNG_COLOR_TYPE_PALETTE, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_PLTE(writer.png, writer.info, writer.palette.data(), PALETTE_SIZE);
    static std::array<std::array<char, 14>, 3> keys = {{{"Title"}, {"Software"}, {"Creation Time"}}};
    std::array<png_text, 3> texts{};
    for (std::size_t i = 0; i < texts.size(); ++i) {
        texts[i].compression = PNG_TEXT_COMPRESSION_NONE;
        texts[i].key = keys[i].data();
        texts[i].text = writer.texts[i].data();
        texts[i].text_length = writer.texts[i].size();
    }
    png_set_text(writer.png, writer.info, texts.data(), static_cast<int>(texts.size()));
}

/// Has no objects that need to be destroyed, as an error leaves it by a jump.
bool write_picture(Writer& writer, const IMG_report& image, const Indexed_picture& picture) {
    if (setjmp(png_jmpbuf(writer.png)) != 0) return false;
    png_set_write_fn(writer.png, &writer.out, take_bytes, take_nothing);
    describe(writer, image);
    png_write_info(writer.png, writer.info);
    for (std::size_t row = 0; row < static_cast<std::size_t>(image.height); ++row) {
        png_write_row(writer.png, picture.indices.data() + row * picture.width);
    }
    png_write_end(writer.png, writer.info);
    return true;
}

}  // namespace

int PNG_write(const std::string& filename, IMG_report* image) {
    if (!img_check_picture(image, MOST_SIDE, "PNG_write")) return 0;
    MESS_print(MESS_DEBUG, "%d %d %d %d\n", image->width, image->height, image->depth, image->bytes_line);
    const Indexed_picture picture = img_index_pixels(*image, false);
    MESS_print(MESS_DEBUG, "num_color: %d\n", picture.count);
    if (picture.lost > 0) {
        MESS_print(MESS_WARN, "PNG_write: %zu pixels have the first color, as there are more than %d\n", picture.lost,
                   PALETTE_SIZE);
    }
    Writer writer;
    for (std::size_t i = 0; i < writer.palette.size(); ++i) {
        const Pixel_color& color = picture.colors[i];
        writer.palette[i] = {color[0], color[1], color[2]};
    }
    const std::string title = IMG_hooks().window_title != nullptr ? IMG_hooks().window_title() : std::string();
    writer.texts = {title, SOFTWARE, current_time()};
    writer.png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, tell_error, tell_warning);
    if (writer.png == nullptr) return 0;
    writer.info = png_create_info_struct(writer.png);
    if (writer.info == nullptr || !write_picture(writer, *image, picture)) return 0;
    return img_write_file(filename, writer.out, "Unable to open PNG file\n");
}

}  // namespace zav
