// X window dumps, written. Faults are told on standard error.

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <string>
#include <vector>

#include "files/files.h"
#include "frame/mess.h"
#include "image/img_file.h"
#include "image/xwd.h"
#include "image/zavimg.h"

namespace zav {
namespace {

void append_number(std::string& out, std::uint32_t value) {
    for (int shift = 24; shift >= 0; shift -= 8) out += static_cast<char>(value >> shift & 0xFF);
}

void append_short(std::string& out, unsigned value) {
    out += static_cast<char>(value >> 8);
    out += static_cast<char>(value & 0xFF);
}

/// The palette; for a grey picture that of its greys, since other programs differ on the ends of such visuals.
std::vector<IMG_color> palette_of(const IMG_report& image) {
    constexpr int MOST_BITS = 8;
    if (!image.colors.empty() || (image.red | image.grn | image.blu) != 0 || image.depth > MOST_BITS) {
        return image.colors;
    }
    std::vector<IMG_color> greys(std::size_t{1} << image.depth);
    for (std::size_t i = 0; i < greys.size(); ++i) {
        const float grey = static_cast<float>(i) / static_cast<float>(greys.size() - 1);
        greys[i] = {grey, grey, grey};
    }
    return greys;
}

std::uint32_t visual_class(const IMG_report& image, std::size_t colors) {
    if (colors == 0 && (image.red | image.grn | image.blu) == 0) return XWD_STATIC_GRAY;
    const bool grey = colors != image.colors.size();
    return image.color_type != 0 || grey ? XWD_PSEUDO_COLOR : XWD_TRUE_COLOR;
}

/// Bits to which the lines are padded.
std::uint32_t line_pad(const IMG_report& image) {
    if (image.depth == 1) return 8;
    return image.bytes_line % 4 == 0 ? 32 : image.bytes_line % 2 == 0 ? 16 : 8;
}

std::string make_header(const IMG_report& image, std::size_t colors) {
    const auto field = [](int value) { return static_cast<std::uint32_t>(value); };
    const bool bits = image.depth == 1;
    std::array<std::uint32_t, XWD_FIELDS> header{};
    header[XWD_HEADER_SIZE] = static_cast<std::uint32_t>(XWD_HEADER_BYTES + image.info.size() + 1);
    header[XWD_FILE_VERSION] = XWD_VERSION;
    header[XWD_PIXMAP_FORMAT] = XWD_Z_PIXMAP;
    header[XWD_PIXMAP_DEPTH] = field(image.depth);
    header[XWD_PIXMAP_WIDTH] = header[XWD_WINDOW_WIDTH] = field(image.width);
    header[XWD_PIXMAP_HEIGHT] = header[XWD_WINDOW_HEIGHT] = field(image.height);
    header[XWD_BYTE_ORDER] = field(image.byte_order);
    // Single bits have an order of their own, byte by byte.
    header[XWD_BITMAP_UNIT] = line_pad(image);
    header[XWD_BITMAP_BIT_ORDER] = field(bits ? image.bit_order : image.byte_order);
    header[XWD_BITMAP_PAD] = line_pad(image);
    header[XWD_BITS_PER_PIXEL] = field(image.bits_pixel);
    header[XWD_BYTES_PER_LINE] = field(image.bytes_line);
    header[XWD_VISUAL_CLASS] = visual_class(image, colors);
    header[XWD_RED_MASK] = image.red;
    header[XWD_GREEN_MASK] = image.grn;
    header[XWD_BLUE_MASK] = image.blu;
    header[XWD_BITS_PER_RGB] = 8;
    header[XWD_COLORMAP_ENTRIES] = header[XWD_NCOLORS] = static_cast<std::uint32_t>(colors);
    std::string out;
    for (const std::uint32_t value : header) append_number(out, value);
    return out;
}

std::string make_colors(const std::vector<IMG_color>& colors) {
    constexpr char ALL_PARTS = 7;
    const auto part = [](float value) {
        return value > 0.0F ? static_cast<unsigned>(std::min(65535.0F * value, 65535.0F)) : 0U;
    };
    std::string out;
    for (std::size_t i = 0; i < colors.size(); ++i) {
        append_number(out, static_cast<std::uint32_t>(i));
        append_short(out, part(colors[i].r));
        append_short(out, part(colors[i].g));
        append_short(out, part(colors[i].b));
        out += ALL_PARTS;
        out += '\0';
    }
    return out;
}

int fail(const char* text) {
    std::fprintf(stderr, "%s\n", text);
    return 0;
}

}  // namespace

int XWD_write(const std::string& filename, IMG_report* image) {
    constexpr int MOST_BITS = 32;
    if (!img_check_picture(image, INT_MAX, "XWD_write")) return 0;
    if (image->bits_pixel > MOST_BITS || image->depth > MOST_BITS) return fail("XWD holds no pixels of that depth");
    const file_ptr file = FILE_open(filename, "wb");
    if (!file) return fail("Unable to open dump file");
    MESS_print(MESS_DEBUG, "%d %d %d %d\n", image->width, image->height, image->depth, image->bytes_line);
    const std::vector<IMG_color> palette = palette_of(*image);
    const std::string header = make_header(*image, palette.size());
    const std::string colors = make_colors(palette);
    if (!img_write_bytes(file.get(), header.data(), header.size())) return fail("Unable to write dump file header");
    if (!img_write_bytes(file.get(), image->info.c_str(), image->info.size() + 1)) {
        return fail("Unable to write window name to dump file.");
    }
    if (!img_write_bytes(file.get(), colors.data(), colors.size())) {
        return fail("Unable to write color map to dump file.");
    }
    if (!img_write_bytes(file.get(), image->data.data(), image->data.size())) {
        return fail("Unable to write to XWD file.");
    }
    return 1;
}

}  // namespace zav
