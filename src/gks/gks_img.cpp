// Not built yet: images on a display, and the picture of a display. What follows is what the kernel does where there is
// no display; on PostScript and in pictures an image in memory is drawn.

#include "gks/gks_img.h"

#include <algorithm>

#include "frame/mess.h"
#include "gks/cairo/gks_cairo.h"
#include "gks/gks.h"
#include "gks/gks_colr.h"
#include "gks/gks_tran.h"
#include "gks/ps/gks_ps.h"
#include "image/zavimg.h"

namespace zav {
namespace {

constexpr int TYPE_GIF = 56;

struct State {
    int output_type = TYPE_GIF;
};
State state;

}  // namespace

int gread_image_file(const std::string& filename, IMG_report* image) { return IMG_read(filename, image, 0); }
int gquery_image_file(const std::string& filename, IMG_report* image) { return IMG_read(filename, image, 1); }
void gsetup_image_colors(IMG_report*, int) {}

int gload_image(IMG_report* image, int x, int y) {
    const int type = gget_win_type();
    if (gtype_is_HPGL(type)) MESS_print(MESS_WARN, "gload_image: HPGL can't hold an image\n");
    if (!gtype_is_PS(type) && !gtype_is_CAIRO(type)) return 0;
    if (gtype_is_PS(type)) gps_image(image, x, y);
    if (gtype_is_CAIRO(type)) gcairo_image(image, x, y);
    return 1;
}

int gload_image_file(const std::string&, int, int) { return 0; }
int goverlay_image(IMG_report*, const char*, int, int) { return 0; }
int goverlay_image_file(const std::string&, const char*, int, int) { return 0; }
void gset_save_image_type(int type) { state.output_type = type; }
int gget_save_image_type() { return state.output_type; }

int gimage_value(const IMG_report& image, int row, int column) {
    if (row < 0 || row >= image.height || column < 0 || column >= image.width) return -1;
    const auto stride = static_cast<std::size_t>(std::max(image.bytes_line, 0));
    const std::size_t place = static_cast<std::size_t>(row) * stride + static_cast<std::size_t>(column);
    return place < image.data.size() ? image.data[place] : -1;
}

std::array<int, 3> gimage_color(int value) {
    float red = 0;
    float grn = 0;
    float blu = 0;
    const Gcolor_table& table = gget_color_table();
    if (table.get_rgb != nullptr) {
        table.get_rgb(value, &red, &grn, &blu);
    } else {
        gget_color_rgb(value, &red, &grn, &blu);
    }
    const auto byte = [](float part) { return std::clamp(gtruncate(part * 255), 0, 255); };
    return {byte(red), byte(grn), byte(blu)};
}

int gget_image(IMG_report* image) {
    IMG_init(image);
    return 0;
}

/// The picture has to be had before a file is written, and there is none.
int gsave_image_file(const std::string&) { return 0; }

}  // namespace zav
