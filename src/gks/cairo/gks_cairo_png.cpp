// Pictures as PNG. Cairo's own writer takes several times as long.

#include <png.h>

#include <algorithm>
#include <array>
#include <csetjmp>
#include <cstdint>
#include <cstring>
#include <exception>
#include <vector>

#include "frame/mess.h"
#include "frame/status.h"
#include "gks/cairo/gks_cairo_state.h"

namespace zav {
namespace {

constexpr int COMPRESSION = 3;
constexpr double PRINTED_WIDTH = 768 * 0.0254 / 72;  // metres of the longer side
constexpr std::size_t PALETTE_SIZE = 256;

using Pixel = std::uint32_t;  // alpha, red, green, blue from the highest byte on; premultiplied

struct Raster {
    int width = 0, height = 0;
    std::vector<Pixel> pixels;
};

/// Sums of the bytes of four pixels over four, rounded, two bytes at a time.
Pixel mean_of_four(Pixel a, Pixel b, Pixel c, Pixel d) {
    constexpr Pixel even = 0x00FF00FF;
    constexpr Pixel half = 0x00020002;
    const Pixel low = (a & even) + (b & even) + (c & even) + (d & even) + half;
    const Pixel high = (a >> 8 & even) + (b >> 8 & even) + (c >> 8 & even) + (d >> 8 & even) + half;
    return (low >> 2 & even) | (high >> 2 & even) << 8;
}

const Pixel* row_of(cairo_surface_t* surface, int y) {
    const auto stride = static_cast<std::size_t>(cairo_image_surface_get_stride(surface));
    const unsigned char* data = cairo_image_surface_get_data(surface);
    return reinterpret_cast<const Pixel*>(data + stride * static_cast<std::size_t>(y));
}

Raster read_raster(cairo_surface_t* surface, int fineness) {
    Raster raster;
    raster.width = cairo_image_surface_get_width(surface) / fineness;
    raster.height = cairo_image_surface_get_height(surface) / fineness;
    raster.pixels.resize(static_cast<std::size_t>(raster.width) * static_cast<std::size_t>(raster.height));
    Pixel* to = raster.pixels.data();
    for (int y = 0; y < raster.height; ++y) {
        const Pixel* upper = row_of(surface, y * fineness);
        if (fineness == 1) {
            to = std::copy(upper, upper + raster.width, to);
            continue;
        }
        const Pixel* lower = row_of(surface, y * fineness + 1);
        for (int x = 0; x < raster.width; ++x, upper += 2, lower += 2) {
            *to++ = mean_of_four(upper[0], upper[1], lower[0], lower[1]);
        }
    }
    return raster;
}

/// The colours of a picture with few of them, and their places.
class Palette {
  public:
    /// False if there are too many.
    bool take(const Raster& raster) {
        Pixel last = ~raster.pixels.front();
        for (const Pixel pixel : raster.pixels) {
            if (pixel == last) continue;
            last = pixel;
            Slot& slot = find(pixel);
            if (slot.place >= 0) continue;
            if (colors.size() >= PALETTE_SIZE) return false;
            slot = {pixel, static_cast<int>(colors.size())};
            colors.push_back(
                {static_cast<png_byte>(pixel >> 16), static_cast<png_byte>(pixel >> 8), static_cast<png_byte>(pixel)});
        }
        return true;
    }

    png_byte place_of(Pixel pixel) { return static_cast<png_byte>(find(pixel).place); }

    std::vector<png_color> colors;

  private:
    struct Slot {
        Pixel pixel = 0;
        int place = -1;
    };
    static constexpr std::size_t SLOTS = 1024;

    /// The slot of a pixel, or the free one where it belongs.
    Slot& find(Pixel pixel) {
        std::size_t at = (pixel * 2654435761U >> 16) % SLOTS;
        while (slots_[at].place >= 0 && slots_[at].pixel != pixel) at = (at + 1) % SLOTS;
        return slots_[at];
    }

    std::array<Slot, SLOTS> slots_{};
};

png_byte* put_opaque(png_byte* to, Pixel pixel) {
    *to++ = static_cast<png_byte>(pixel >> 16);
    *to++ = static_cast<png_byte>(pixel >> 8);
    *to++ = static_cast<png_byte>(pixel);
    return to;
}

/// A pixel whose colours were multiplied with its alpha.
png_byte* put_transparent(png_byte* to, Pixel pixel) {
    const Pixel alpha = pixel >> 24;
    for (int shift = 16; shift >= 0; shift -= 8) {
        const Pixel part = pixel >> shift & 0xFF;
        *to++ = static_cast<png_byte>(alpha == 0 ? 0 : std::min<Pixel>((part * 255 + alpha / 2) / alpha, 255));
    }
    *to++ = static_cast<png_byte>(alpha);
    return to;
}

/// A picture as libpng takes it: its rows one behind the other.
struct Png {
    int width = 0, height = 0;
    int color_type = PNG_COLOR_TYPE_RGB;
    std::vector<png_color> palette;
    std::vector<png_byte> bytes;
    std::vector<png_byte*> rows;
    std::string title;
};

Png make_png(const Raster& raster, bool transparent) {
    Png png;
    png.width = raster.width;
    png.height = raster.height;
    Palette palette;
    const bool indexed = !transparent && palette.take(raster);
    const std::size_t size = indexed ? 1 : transparent ? 4 : 3;
    png.bytes.resize(raster.pixels.size() * size);
    png_byte* to = png.bytes.data();
    if (indexed) {
        png.color_type = PNG_COLOR_TYPE_PALETTE;
        png.palette = palette.colors;
        for (const Pixel pixel : raster.pixels) *to++ = palette.place_of(pixel);
    } else if (transparent) {
        png.color_type = PNG_COLOR_TYPE_RGB_ALPHA;
        for (const Pixel pixel : raster.pixels) to = put_transparent(to, pixel);
    } else {
        for (const Pixel pixel : raster.pixels) to = put_opaque(to, pixel);
    }
    const std::size_t row = size * static_cast<std::size_t>(png.width);
    for (std::size_t start = 0; start < png.bytes.size(); start += row) png.rows.push_back(png.bytes.data() + start);
    return png;
}

void take_bytes(png_structp png, png_bytep data, png_size_t size) {
    static_cast<Gout_file*>(png_get_io_ptr(png))->write(data, size);
}

void take_nothing(png_structp) {}

void describe(png_structp writer, png_infop info, Png& png) {
    png_set_IHDR(writer, info, static_cast<png_uint_32>(png.width), static_cast<png_uint_32>(png.height), 8,
                 png.color_type, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    if (!png.palette.empty()) png_set_PLTE(writer, info, png.palette.data(), static_cast<int>(png.palette.size()));
    const auto density = static_cast<png_uint_32>(std::max(png.width, png.height) / PRINTED_WIDTH);
    png_set_pHYs(writer, info, density, density, PNG_RESOLUTION_METER);
    png_text text{};
    std::array<char, 6> key = {"Title"};
    // The plain form is read by more programs, and holds Latin-1.
    const bool ascii =
        std::all_of(png.title.begin(), png.title.end(), [](char c) { return static_cast<signed char>(c) >= 0; });
    text.compression = ascii ? PNG_TEXT_COMPRESSION_NONE : PNG_ITXT_COMPRESSION_NONE;
    text.key = key.data();
    text.text = png.title.data();
    (ascii ? text.text_length : text.itxt_length) = png.title.size();
    png_set_text(writer, info, &text, 1);
}

/// libpng ends a call that fails by a jump to here, so nothing that has to be destroyed is made in this function.
bool write_png(Png& png, Gout_file& out) {
    png_structp writer = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = writer != nullptr ? png_create_info_struct(writer) : nullptr;
    if (info == nullptr || setjmp(png_jmpbuf(writer)) != 0) {
        png_destroy_write_struct(&writer, &info);
        return false;
    }
    png_set_write_fn(writer, &out, take_bytes, take_nothing);
    png_set_compression_level(writer, COMPRESSION);
    png_set_filter(writer, 0, PNG_FILTER_NONE);  // a chart has flat colours
    describe(writer, info, png);
    png_write_info(writer, info);
    png_write_image(writer, png.rows.data());
    png_write_end(writer, nullptr);
    png_destroy_write_struct(&writer, &info);
    return true;
}

}  // namespace

bool gcairo_write_png(cairo_surface_t* surface, int fineness, bool transparent, const std::string& title,
                      Gout_file& out) {
    try {
        Png png = make_png(read_raster(surface, fineness), transparent);
        png.title = title;
        return write_png(png, out);
    } catch (const std::exception&) {
        return false;
    }
}

}  // namespace zav
