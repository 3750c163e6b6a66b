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

constexpr int COMPRESSION = 2;                       // a higher one takes up to twice as long for some per cent
constexpr double PRINTED_WIDTH = 768 * 0.0254 / 72;  // metres of the longer side
constexpr std::size_t PALETTE_SIZE = 256;

using Pixel = std::uint32_t;  // alpha, red, green, blue from the highest byte on; premultiplied

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

/// The pixels of a drawing that is finer than the picture, row by row as the picture has them.
class Raster {
  public:
    Raster(cairo_surface_t* surface, int fineness)
        : width(cairo_image_surface_get_width(surface) / fineness),
          height(cairo_image_surface_get_height(surface) / fineness),
          surface_(surface),
          fineness_(fineness),
          row_(static_cast<std::size_t>(width)) {}

    const std::vector<Pixel>& row(int y) {
        const Pixel* upper = row_of(surface_, y * fineness_);
        if (fineness_ == 1) {
            std::copy(upper, upper + width, row_.begin());
            return row_;
        }
        const Pixel* lower = row_of(surface_, y * fineness_ + 1);
        for (Pixel& pixel : row_) {
            const bool flat = upper[0] == upper[1] && upper[0] == lower[0] && upper[0] == lower[1];
            pixel = flat ? upper[0] : mean_of_four(upper[0], upper[1], lower[0], lower[1]);
            upper += 2;
            lower += 2;
        }
        return row_;
    }

    int width, height;

  private:
    cairo_surface_t* surface_;
    int fineness_;
    std::vector<Pixel> row_;
};

/// The colours of a picture with few of them, and their places.
class Palette {
  public:
    /// False if there are too many.
    bool take(const std::vector<Pixel>& row) {
        Pixel last = ~row.front();
        for (const Pixel pixel : row) {
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

/// A picture as libpng takes it.
struct Png {
    Raster raster;
    int color_type;
    Palette palette;
    std::vector<png_byte> row;
    std::string title;
};

bool fits_palette(Raster& raster, Palette& palette) {
    for (int y = 0; y < raster.height; ++y) {
        if (!palette.take(raster.row(y))) return false;
    }
    return true;
}

void choose_colors(Png& png, bool transparent) {
    png.color_type = transparent ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB;
    if (!transparent && fits_palette(png.raster, png.palette)) png.color_type = PNG_COLOR_TYPE_PALETTE;
    png.row.resize(4 * static_cast<std::size_t>(png.raster.width));
}

png_byte* make_row(Png& png, int y) {
    png_byte* to = png.row.data();
    for (const Pixel pixel : png.raster.row(y)) {
        switch (png.color_type) {
            case PNG_COLOR_TYPE_PALETTE:
                *to++ = png.palette.place_of(pixel);
                break;
            case PNG_COLOR_TYPE_RGB_ALPHA:
                to = put_transparent(to, pixel);
                break;
            default:
                to = put_opaque(to, pixel);
        }
    }
    return png.row.data();
}

void take_bytes(png_structp png, png_bytep data, png_size_t size) {
    static_cast<Gout_file*>(png_get_io_ptr(png))->write(data, size);
}

void take_nothing(png_structp) {}

void describe(png_structp writer, png_infop info, Png& png) {
    png_set_IHDR(writer, info, static_cast<png_uint_32>(png.raster.width), static_cast<png_uint_32>(png.raster.height),
                 8, png.color_type, PNG_INTERLACE_NONE, PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    if (png.color_type == PNG_COLOR_TYPE_PALETTE) {
        png_set_PLTE(writer, info, png.palette.colors.data(), static_cast<int>(png.palette.colors.size()));
    }
    const auto density = static_cast<png_uint_32>(std::max(png.raster.width, png.raster.height) / PRINTED_WIDTH);
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
    for (int y = 0; y < png.raster.height; ++y) png_write_row(writer, make_row(png, y));
    png_write_end(writer, nullptr);
    png_destroy_write_struct(&writer, &info);
    return true;
}

}  // namespace

bool gcairo_write_png(cairo_surface_t* surface, int fineness, bool transparent, const std::string& title,
                      Gout_file& out) {
    try {
        Png png{Raster(surface, fineness), 0, {}, {}, title};
        choose_colors(png, transparent);
        return write_png(png, out);
    } catch (const std::exception&) {
        return false;
    }
}

}  // namespace zav
