// Bytes in and out of image files.

#include "image/img_file.h"

#include <algorithm>
#include <new>

#include "files/files.h"
#include "frame/mess.h"
#include "image/img_pixels.h"
#include "image/zavimg.h"

namespace zav {
namespace {

constexpr std::size_t FIRST_PIECE = 1U << 16;
/// A picture of this size is completed whatever came of it.
constexpr std::size_t SMALL_PICTURE = 16U << 20;
/// Of a larger one at least this part has to come.
constexpr std::size_t LEAST_PART = 64;

}  // namespace

std::size_t img_read_bytes(std::FILE* file, std::vector<unsigned char>& data, std::size_t size) {
    const std::size_t start = data.size();
    std::size_t piece = FIRST_PIECE;
    while (data.size() - start < size) {
        const std::size_t before = data.size();
        const std::size_t wanted = std::min(piece, size - (before - start));
        data.resize(before + wanted);
        const std::size_t got = std::fread(data.data() + before, 1, wanted, file);
        data.resize(before + got);
        if (got < wanted) break;
        piece = data.size() - start;
    }
    return data.size() - start;
}

bool img_complete(std::vector<unsigned char>& data, std::size_t size) {
    if (size <= SMALL_PICTURE || data.size() >= size / LEAST_PART) {
        try {
            data.resize(size);
            return true;
        } catch (const std::bad_alloc&) {
        }
    }
    data = {};
    return false;
}

void img_grow(std::vector<unsigned char>& data, std::size_t size, std::size_t full) {
    if (data.size() >= size) return;
    data.resize(std::min(full, std::max({size, 2 * data.size(), FIRST_PIECE})));
}

bool img_write_bytes(std::FILE* file, const void* bytes, std::size_t size) {
    return std::fwrite(bytes, 1, size, file) == size && std::fflush(file) == 0;
}

int img_write_file(const std::string& filename, const std::string& content, const char* failure) {
    const file_ptr file = FILE_open(filename, "wb");
    if (!file) {
        MESS_print(MESS_WARN, "%s", failure);
        return 0;
    }
    if (img_write_bytes(file.get(), content.data(), content.size())) return 1;
    MESS_print(MESS_WARN, "Unable to write all of: %s\n", filename.c_str());
    return 0;
}

bool img_check_picture(IMG_report* image, int most, const char* func) {
    const Pixel_layout layout(*image);
    const bool sized = image->width > 0 && image->height > 0 && image->width <= most && image->height <= most;
    if (!sized || layout.bits() == 0 || layout.line_pixels() < image->width) {
        MESS_print(MESS_WARN, "%s: No picture of %dx%d pixels of %d bits can be written\n", func, image->width,
                   image->height, image->depth);
        return false;
    }
    image->data.resize(static_cast<std::size_t>(image->height) * static_cast<std::size_t>(image->bytes_line));
    return true;
}

int img_read_whole(IMG_report* image, const std::function<int()>& read) {
    int result = 0;
    try {
        result = read();
    } catch (const std::bad_alloc&) {
        MESS_print(MESS_WARN, "Unable to allocate data buffer.\n");
    }
    if (result == 0) IMG_free(image);
    return result;
}

}  // namespace zav
