// The native image format, written: a head of four lines, then one byte a pixel.

#include <zlib.h>

#include <algorithm>
#include <climits>
#include <cmath>
#include <string>

#include "frame/string.h"
#include "frame/zav.h"
#include "image/img_file.h"
#include "image/img_native.h"
#include "image/img_pixels.h"
#include "image/zavimg.h"
#include "map/maptran.h"

namespace zav {
namespace {

/// A line of the head: what would end it early becomes blanks.
std::string head_line(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r' || c == '\0'; }, ' ');
    return text + '\n';
}

std::string lambert_word(const Domain& domain) {
    const auto& param = domain.param;
    if (param[0] != FMISS) {
        return text_format("LC:%f:%f:%f:%f:%f ", domain.plat, domain.plon, param[0], param[1], param[2]);
    }
    return domain.plon != FMISS ? text_format("LC:%f ", domain.plon) : "LC ";
}

std::string satellite_word(const Domain& domain) {
    std::string word = text_format("SAT:%f:%f", domain.plat, domain.plon);
    if (domain.param[0] != FMISS) word += text_format(":%f", domain.param[0]);
    return word + ' ';
}

/// The word of a projection; empty for one that the format has none for.
std::string projection_word(const Domain& domain) {
    switch (domain.proj) {
        case PROJ_LATLON:
            return "LL ";
        case PROJ_MERCATOR:
            return "ME ";
        case PROJ_POLAR:
            if (domain.plon == FMISS || domain.plon == domain.clon) return "PS ";
            return text_format("PS:%f ", domain.plon);
        case PROJ_LAMBERT:
            return lambert_word(domain);
        case PROJ_SATELLITE:
            return satellite_word(domain);
        default:
            return "";
    }
}

/// The grid of the picture's pixels over the area of a map that has another grid.
void fit_grid(Domain& domain, int width, int height) {
    if (domain.nx == width && domain.ny == height) return;
    if (width > 1) domain.dx *= static_cast<float>(domain.nx - 1) / static_cast<float>(width - 1);
    if (height > 1) domain.dy *= static_cast<float>(domain.ny - 1) / static_cast<float>(height - 1);
    domain.nx = width;
    domain.ny = height;
}

std::string place_line(const IMG_report& image) {
    Domain domain = image.domain;
    if (domain.proj == MISS) return text_format("%d %d\n", image.width, image.height);
    fit_grid(domain, image.width, image.height);
    const std::string word = projection_word(domain);
    if (word.empty()) MESS_print(MESS_WARN, "IMG_write: The format has no word for this projection\n");
    return word +
           text_format("%f %f %f %f %d %d\n", domain.clat, domain.clon, domain.dx, domain.dy, domain.nx, domain.ny);
}

/// Complete zlib streams, one for each piece. Empty if one can't be made.
std::string compressed(const std::string& data) {
    std::string out;
    std::vector<unsigned char> piece(NATIVE_PIECE_ROOM);
    for (std::size_t at = 0; at < data.size(); at += NATIVE_PIECE) {
        const std::size_t size = std::min(NATIVE_PIECE, data.size() - at);
        z_stream stream{};
        if (deflateInit(&stream, Z_DEFAULT_COMPRESSION) != Z_OK) return {};
        stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(data.data() + at));  // zlib only reads it
        stream.avail_in = static_cast<uInt>(size);
        stream.next_out = piece.data();
        stream.avail_out = static_cast<uInt>(piece.size());
        const int result = deflate(&stream, Z_FINISH);
        const std::size_t made = piece.size() - stream.avail_out;
        MESS_print(MESS_DEBUG, "Deflate+ %d = %d %d = %d %d\n", result, static_cast<int>(size),
                   static_cast<int>(stream.avail_in), static_cast<int>(made), static_cast<int>(stream.avail_out));
        deflateEnd(&stream);
        if (result != Z_STREAM_END) return {};
        out.append(reinterpret_cast<const char*>(piece.data()), made);
    }
    return out;
}

/// The bytes of a picture that has one a pixel, as they are; those beyond the width are 0.
std::string bytes_of(const IMG_report& image) {
    std::string bytes(image.data.begin(), image.data.end());
    const auto length = static_cast<std::size_t>(image.bytes_line);
    const auto width = static_cast<std::size_t>(image.width);
    for (std::size_t at = 0; at < bytes.size(); at += length)
        std::fill_n(bytes.begin() + at + width, length - width, '\0');
    return bytes;
}

/// One byte for each pixel that the lines have room for; those beyond the width are 0.
std::string one_byte_pixels(const IMG_report& image) {
    const Pixel_layout layout(image);
    const auto seen = static_cast<std::size_t>(image.width);
    const auto length = static_cast<std::size_t>(layout.line_pixels());
    std::string out(length * static_cast<std::size_t>(image.height), '\0');
    std::vector<Pixel_value> row(seen);
    for (int y = 0; y < image.height; ++y) {
        const auto at = static_cast<std::size_t>(y);
        layout.read(image.data.data() + at * static_cast<std::size_t>(image.bytes_line), seen, row.data());
        for (std::size_t x = 0; x < seen; ++x) {
            const Pixel_value value = row[x];
            const Pixel_value grey =
                layout.is_mixed() ? ((value >> 16) + (value >> 8 & 0xFF) + (value & 0xFF)) / 3 : value;
            out[at * length + x] = static_cast<char>(grey);
        }
    }
    return out;
}

}  // namespace

int IMG_write(const std::string& filename, IMG_report* image, int type) {
    if (!img_check_picture(image, INT_MAX, "IMG_write")) return 0;
    const bool as_it_is = image->depth == 8 && image->num_colors < 1 && Pixel_layout(*image).bits() == 8;
    std::string pixels = as_it_is ? bytes_of(*image) : one_byte_pixels(*image);
    if (type == 1) pixels = compressed(pixels);
    if (pixels.empty()) return 0;
    std::string content = type == 1 ? "ZAVIMGZ\n" : "ZAVIMG\n";
    content += head_line(image->datim) + head_line(image->info) + place_line(*image) + pixels;
    return img_write_file(filename, content, text_format("Unable to open: %s\n", filename.c_str()).c_str());
}

}  // namespace zav
