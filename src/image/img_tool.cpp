// The image record, and the table of formats that IMG_read chooses from.

#include <array>
#include <cstring>
#include <string_view>

#include "files/files.h"
#include "frame/string.h"
#include "image/zavimg.h"

namespace zav {
namespace {

constexpr std::size_t HEAD_BYTES = 6;
/// A depth that no picture exceeds which a display shows.
constexpr int DEEPEST = 32;

/// A format, told by a word at a place of the file.
struct Image_format {
    const char* name;
    std::size_t place;
    const char* word;
    int (*read)(const std::string& filename, IMG_report* image, int type);
};

/// In the order of trial; the last takes all that nothing else knows.
constexpr std::array<Image_format, 4> FORMATS{{
    {"GIF", 0, "GIF", GIF_read},
    {"PNG", 1, "PNG", PNG_read},
    {"native", 0, "ZAV", IMG_read_zav},
    {"XWD", 0, "", XWD_read},
}};

std::string read_head(std::FILE* file) {
    std::array<char, HEAD_BYTES> bytes{};
    return {bytes.data(), std::fread(bytes.data(), 1, bytes.size(), file)};
}

/// The first bytes, behind a line that begins with "** " if there is one.
std::string read_start(std::FILE* file) {
    constexpr std::string_view REMARK = "** ";
    const std::string head = read_head(file);
    if (!head.starts_with(REMARK)) return head;
    const std::size_t end = head.find('\n');
    if (end != std::string::npos) {
        std::fseek(file, static_cast<long>(end) + 1, SEEK_SET);
    } else {
        for (int c = std::fgetc(file); c != EOF && c != '\n'; c = std::fgetc(file)) continue;
    }
    return read_head(file);
}

const Image_format& format_of(const std::string& start) {
    for (const Image_format& format : FORMATS) {
        const std::string_view word = format.word;
        if (start.size() >= format.place + word.size() && start.compare(format.place, word.size(), word) == 0) {
            return format;
        }
    }
    return FORMATS.back();
}

}  // namespace

int IMG_init(IMG_report* image) {
    *image = IMG_report{};
    return 0;
}

int IMG_read(const std::string& filename, IMG_report* image, int type) {
    // A stream is read twice, so it is kept; the readers take names as they stand.
    const std::string path = FILE_is_stream(filename) ? FILE_keep_stream(filename) : FILE_add_user_path(filename);
    file_ptr file = path.empty() ? nullptr : FILE_open(path, "rb");
    if (!file) {
        MESS_print(MESS_WARN, "IMG_read: Unable to open image file: %s\n", filename.c_str());
        return 0;
    }
    const Image_format& format = format_of(read_start(file.get()));
    file.reset();
    IMG_init(image);
    image->depth = IMG_hooks().window_depth != nullptr ? IMG_hooks().window_depth() : DEEPEST;
    if (type == 1 && image->depth == 0) image->depth = DEEPEST;
    MESS_print(MESS_DEBUG, "IMG_read: %s as %s\n", filename.c_str(), format.name);
    const int result = format.read(path, image, type);
    if (result > 0) return result;
    IMG_free(image);
    return 0;
}

int IMG_free(IMG_report* image) {
    image->data = {};
    image->colors = {};
    image->num_colors = 0;
    return 0;
}

int IMG_copy(IMG_report* image1, const IMG_report* image2) {
    *image1 = *image2;
    return 0;
}

int IMG_print(M_type lev, const IMG_report* image) {
    MESS_print(lev, "Source: %d\n", image->source);
    MESS_print(lev, "Version: %d\n", image->version);
    MESS_print(lev, "Date: %s\n", image->datim.c_str());
    MESS_print(lev, "Info: %s\n", image->info.c_str());
    MESS_print(lev, "Type: %d\n", image->type);
    MESS_print(lev, "Size: %dx%d\n", image->width, image->height);
    MESS_print(lev, "Resolution: %.2fx%.2f\n", static_cast<double>(image->xres), static_cast<double>(image->yres));
    MESS_print(lev, "Offset: %.2fx%.2f\n", static_cast<double>(image->xoff), static_cast<double>(image->yoff));
    MESS_print(lev, "Depth: %d\n", image->depth);
    MESS_print(lev, "Bits per pixel: %d\n", image->bits_pixel);
    MESS_print(lev, "Bytes per line: %d\n", image->bytes_line);
    MESS_print(lev, "Bytes order: %d\n", image->byte_order);
    MESS_print(lev, "Number of colors: %d\n", image->num_colors);
    MESS_print(lev, "Tranparent colors: %d\n", image->trans_color);
    DOM_print(lev, &image->domain);
    return 0;
}

}  // namespace zav
