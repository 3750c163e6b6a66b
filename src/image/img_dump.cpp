// The picture of the workstation, written to a file.

#include <climits>

#include "frame/string.h"
#include "image/img_file.h"
#include "image/img_reduce.h"
#include "image/zavimg.h"
#include "map/maptran.h"

namespace zav {
namespace {

/// Above such margins the picture shows much more than its map.
constexpr float MOST_MARGIN = 0.7F;

/// Positions of the labels that tell what a plot shows, and when.
enum : int { LABEL_UP_LEFT = 0, LABEL_UP_RIGHT = 2, LABEL_LOW_RIGHT = 5 };

std::string label(int position) { return IMG_hooks().label != nullptr ? IMG_hooks().label(position) : std::string(); }

int dump(const std::string& filename, int (*write)(const std::string& filename, IMG_report* image)) {
    IMG_report image;
    if (IMG_hooks().get_picture == nullptr || IMG_hooks().get_picture(&image) <= 0) return 0;
    return write(filename, &image) > 0 ? 1 : 0;
}

int write_native(const std::string& filename, IMG_report* image) {
    const float margin = IMG_hooks().view_offset != nullptr ? IMG_hooks().view_offset() : 0.0F;
    if (margin <= MOST_MARGIN) MAP_get_domain(&image->domain);
    image->info =
        fit_text(text_format("%s [%s]", label(LABEL_UP_LEFT).c_str(), label(LABEL_LOW_RIGHT).c_str()), IMG_INFO_SIZE);
    image->datim = fit_text(label(LABEL_UP_RIGHT), IMG_DATIM_SIZE);
    return IMG_write(filename, image, 0);
}

int write_gif(const std::string& filename, IMG_report* image) {
    if (!img_check_picture(image, INT_MAX, "GIF_dump")) return 0;
    img_reduce_colors(image);
    return GIF_write(filename, image);
}

int write_png(const std::string& filename, IMG_report* image) {
    if (!img_check_picture(image, INT_MAX, "PNG_dump")) return 0;
    img_reduce_colors(image);
    return PNG_write(filename, image);
}

}  // namespace

image_hooks& IMG_hooks() {
    static image_hooks hooks;
    return hooks;
}

int IMG_dump(const std::string& filename) { return dump(filename, write_native); }
int GIF_dump(const std::string& filename) { return dump(filename, write_gif); }
int PNG_dump(const std::string& filename) { return dump(filename, write_png); }
int XWD_dump(const std::string& filename) { return dump(filename, XWD_write); }

}  // namespace zav
