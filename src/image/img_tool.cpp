// Not built yet: reading and writing image files. What follows is what absent files and an absent display do: nothing
// is read and no picture is had, so nothing is written. The record's own functions are complete.

#include "image/zavimg.h"

namespace zav {

int IMG_init(IMG_report* image) {
    *image = IMG_report{};
    return 0;
}

int IMG_read(const std::string& filename, IMG_report* image, int) {
    IMG_init(image);
    MESS_print(MESS_WARN, "IMG_read: Unable to open image file: %s\n", filename.c_str());
    return 0;
}

int IMG_read_zav(const std::string& filename, IMG_report* image, int) {
    IMG_init(image);
    MESS_print(MESS_WARN, "Unable to open: %s\n", filename.c_str());
    return -1;
}

int IMG_write(const std::string& filename, IMG_report*, int) {
    MESS_print(MESS_WARN, "Unable to open: %s\n", filename.c_str());
    return 0;
}

int IMG_free(IMG_report* image) {
    image->data.clear();
    image->colors.clear();
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

int IMG_dump(const std::string&) { return 0; }
int GIF_dump(const std::string&) { return 0; }
int PNG_dump(const std::string&) { return 0; }
int XWD_dump(const std::string&) { return 0; }

int GIF_write(const std::string&, IMG_report*) { return 0; }
int PNG_write(const std::string&, IMG_report*) { return 0; }
int XWD_write(const std::string&, IMG_report*) { return 0; }

int GIF_interlace(int) { return 0; }
int GIF_transparent(int) { return 0; }

}  // namespace zav
