// Not built yet: images on a display, and the picture of a display. What follows is what the kernel does where there is
// no display; on PostScript an image in memory is drawn.

#include "gks/gks_img.h"

#include "gks/gks.h"
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
    if (!gtype_is_PS(gget_win_type())) return 0;
    gps_image(image, x, y);
    return 1;
}

int gload_image_file(const std::string&, int, int) { return 0; }
int goverlay_image(IMG_report*, const char*, int, int) { return 0; }
int goverlay_image_file(const std::string&, const char*, int, int) { return 0; }
void gset_save_image_type(int type) { state.output_type = type; }
int gget_save_image_type() { return state.output_type; }

int gget_image(IMG_report* image) {
    IMG_init(image);
    return 0;
}

/// The picture has to be had before a file is written, and there is none.
int gsave_image_file(const std::string&) { return 0; }

}  // namespace zav
