#pragma once

/// Animated GIF files: pictures one after the other, for ever.

#include <string>
#include <vector>

#include "image/img_pixels.h"

namespace zav {

struct IMG_report;

/// Collects pictures of one size, and writes them with one palette, which is chosen for all of them; of each only the
/// rectangle that differs from the one before is stored. A picture takes a byte a pixel until then.
class GIF_anim {
  public:
    /// Adds a picture that is shown for `delay` hundredths of a second. 1, or 0 after a warning where it can't be
    /// taken or has another size than the first.
    int add(const IMG_report& image, int delay);
    /// Writes the file. 1, or 0 after a warning, also if there is no picture.
    int write(const std::string& filename);

  private:
    struct Frame {
        std::vector<unsigned char> indices;
        std::vector<Pixel_color> colors;
        int delay = 0;
    };

    std::vector<Frame> frames_;
    int width_ = 0;
    int height_ = 0;

    std::vector<Pixel_color> share_palette();
};

}  // namespace zav
