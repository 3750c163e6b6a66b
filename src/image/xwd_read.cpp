// X window dumps, read. Faults are told on standard error.

#include <algorithm>
#include <array>
#include <climits>
#include <cstdint>
#include <cstdio>
#include <new>

#include "frame/mess.h"
#include "frame/string.h"
#include "frame/tools.h"
#include "image/img_file.h"
#include "image/xwd.h"
#include "image/zavimg.h"

namespace zav {
namespace {

using Header = std::array<std::uint32_t, XWD_FIELDS>;

int fail(const std::string& text) {
    std::fprintf(stderr, "%s\n", text.c_str());
    return 0;
}

std::uint32_t number_at(const unsigned char* bytes) {
    return static_cast<std::uint32_t>(bytes[0]) << 24 | static_cast<std::uint32_t>(bytes[1]) << 16 |
           static_cast<std::uint32_t>(bytes[2]) << 8 | bytes[3];
}

bool read_header(std::FILE* file, Header& header) {
    std::array<unsigned char, XWD_HEADER_BYTES> bytes{};
    if (std::fread(bytes.data(), 1, bytes.size(), file) != bytes.size()) return false;
    for (std::size_t i = 0; i < header.size(); ++i) header[i] = number_at(&bytes[4 * i]);
    return true;
}

/// Text of what is wrong with a header, empty if nothing is.
std::string header_fault(const Header& header, int most_depth) {
    if (header[XWD_FILE_VERSION] != XWD_VERSION) return "XWD file format version mismatch";
    if (header[XWD_HEADER_SIZE] < XWD_HEADER_BYTES) return "XWD header size is too small.";
    const std::uint32_t depth = header[XWD_PIXMAP_DEPTH];
    if (static_cast<std::int64_t>(depth) > most_depth)
        return text_format("Incorrect depth: %u > %d", depth, most_depth);
    constexpr std::uint32_t MOST = INT_MAX;
    const std::uint64_t width = header[XWD_PIXMAP_WIDTH];
    if (width == 0 || width > MOST || header[XWD_PIXMAP_HEIGHT] == 0 || header[XWD_PIXMAP_HEIGHT] > MOST ||
        header[XWD_BYTES_PER_LINE] > MOST || header[XWD_BITS_PER_PIXEL] > 32 || depth == 0 || depth > 32) {
        return "XWD picture has an invalid size";
    }
    const std::uint64_t bits = std::max(header[XWD_BITS_PER_PIXEL], depth < 8 ? 1U : depth / 8 * 8);
    if (header[XWD_BYTES_PER_LINE] < (width * bits + 7) / 8) return "XWD lines are too short for their pixels";
    if (header[XWD_PIXMAP_FORMAT] == XWD_XY_PIXMAP && depth > 1) return "XWD pictures in planes aren't read";
    return {};
}

/// The window's name, of which as much is kept as fits.
bool read_name(std::FILE* file, std::size_t size, IMG_report* image) {
    std::vector<unsigned char> name;
    if (img_read_bytes(file, name, size) != size) return false;
    name.resize(static_cast<std::size_t>(std::find(name.begin(), name.end(), '\0') - name.begin()));
    image->info = fit_text(std::string(name.begin(), name.end()), IMG_INFO_SIZE);
    return true;
}

void take_header(const Header& header, IMG_report* image) {
    image->width = static_cast<int>(header[XWD_PIXMAP_WIDTH]);
    image->height = static_cast<int>(header[XWD_PIXMAP_HEIGHT]);
    image->byte_order = header[XWD_BYTE_ORDER] != 0 ? 1 : 0;
    image->bit_order = header[XWD_BITMAP_BIT_ORDER] != 0 ? 1 : 0;
    image->depth = static_cast<int>(header[XWD_PIXMAP_DEPTH]);
    image->bytes_line = static_cast<int>(header[XWD_BYTES_PER_LINE]);
    image->bits_pixel = static_cast<int>(header[XWD_BITS_PER_PIXEL]);
    // A direct colour picture beyond bytes has a colour table for each component; its masks are as true.
    const std::uint32_t visual = header[XWD_VISUAL_CLASS];
    const bool by_masks = visual == XWD_TRUE_COLOR || (visual == XWD_DIRECT_COLOR && image->depth > 8);
    image->color_type = by_masks ? 0 : 1;
    if (by_masks) {
        image->red = header[XWD_RED_MASK];
        image->grn = header[XWD_GREEN_MASK];
        image->blu = header[XWD_BLUE_MASK];
    }
    MESS_print(MESS_DEBUG, "%d %d %d %d %d\n", image->width, image->height, image->depth, image->bits_pixel,
               image->bytes_line);
}

/// The colours, each stored at its own pixel value.
bool read_colors(std::FILE* file, std::size_t count, IMG_report* image) {
    std::vector<unsigned char> bytes;
    if (img_read_bytes(file, bytes, count * XWD_COLOR_BYTES) != count * XWD_COLOR_BYTES) return false;
    image->colors.assign(count, IMG_color{});
    image->num_colors = static_cast<int>(count);
    for (std::size_t at = 0; at < bytes.size(); at += XWD_COLOR_BYTES) {
        const std::uint32_t pixel = number_at(&bytes[at]);
        if (pixel >= count) continue;
        const auto part = [&](std::size_t i) {
            return static_cast<float>((bytes[at + i] << 8 | bytes[at + i + 1]) / 65535.0);
        };
        image->colors[pixel] = {part(4), part(6), part(8)};
    }
    return true;
}

/// Single bits stand in units whose bytes have an order of their own: brings them to that of the bits.
void order_bit_units(const Header& header, IMG_report* image) {
    const std::size_t unit = header[XWD_BITMAP_UNIT] / 8;
    if (image->depth != 1 || image->byte_order == image->bit_order || (unit != 2 && unit != 4)) return;
    for (std::size_t at = 0; at + unit <= image->data.size(); at += unit) {
        std::reverse(image->data.begin() + static_cast<std::ptrdiff_t>(at),
                     image->data.begin() + static_cast<std::ptrdiff_t>(at + unit));
    }
}

int read_file(std::FILE* file, IMG_report* image) {
    Header header{};
    if (!read_header(file, header)) return fail("Unable to read dump file header");
    const std::string fault = header_fault(header, image->depth);
    if (!fault.empty()) return fail(fault);
    if (!read_name(file, header[XWD_HEADER_SIZE] - XWD_HEADER_BYTES, image)) {
        return fail("Unable to read window name from dump file.");
    }
    take_header(header, image);
    if (!read_colors(file, header[XWD_NCOLORS], image)) return fail("Unable to read color map from dump file.");
    if (header[XWD_VISUAL_CLASS] == XWD_DIRECT_COLOR && image->color_type == 0) {
        image->colors.clear();
        image->num_colors = 0;
    }
    const std::size_t size = static_cast<std::size_t>(image->height) * static_cast<std::size_t>(image->bytes_line);
    if (img_read_bytes(file, image->data, size) != size) return fail("Unable to read pixmap from dump file.");
    order_bit_units(header, image);
    return 1;
}

}  // namespace

int XWD_read(const std::string& filename, IMG_report* image, int) {
    image->data.clear();
    image->colors.clear();
    const file_ptr file(std::fopen(filename.c_str(), "rb"));
    if (!file) return fail("Unable to open dump file");
    int result = 0;
    try {
        result = read_file(file.get(), image);
    } catch (const std::bad_alloc&) {
        fail("Unable to allocate data buffer.");
    }
    if (result == 0) IMG_free(image);
    return result;
}

}  // namespace zav
