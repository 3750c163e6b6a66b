// Animated GIF files.

#include "image/gif_anim.h"

#include <algorithm>
#include <array>

#include "frame/mess.h"
#include "image/gif_lzw.h"
#include "image/gif_parts.h"
#include "image/img_file.h"
#include "image/img_palette.h"
#include "image/img_reduce.h"
#include "image/zavimg.h"

namespace zav {
namespace {

using Indices = std::vector<unsigned char>;

/// The application's extension that asks for endless repetition, as all browsers read it.
void append_loop(std::string& out) {
    out.append({33, static_cast<char>(255), 11});
    out += "NETSCAPE2.0";
    out.append({3, 1, 0, 0, 0});
}

/// The delay of a picture, which stays under the next one.
void append_control(std::string& out, int delay) {
    constexpr char LEAVE_IN_PLACE = 1 << 2;
    out.append({33, static_cast<char>(249), 4, LEAVE_IN_PLACE});
    gif_append_short(out, delay);
    out.append(2, '\0');
}

/// The rectangle in which two pictures differ; one pixel where they don't.
Gif_place changed_place(const Indices& before, const Indices& after, int width, int height) {
    int left = width;
    int right = -1;
    int top = height;
    int bottom = -1;
    for (int y = 0; y < height; ++y) {
        const std::size_t line = static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
        const auto start = after.begin() + static_cast<std::ptrdiff_t>(line);
        const auto other = before.begin() + static_cast<std::ptrdiff_t>(line);
        const auto first = std::mismatch(start, start + width, other).first;
        if (first == start + width) continue;
        int last = width - 1;
        while (start[last] == other[last]) last--;
        left = std::min(left, static_cast<int>(first - start));
        right = std::max(right, last);
        top = std::min(top, y);
        bottom = y;
    }
    if (bottom < 0) return {0, 0, 1, 1};
    return {left, top, right - left + 1, bottom - top + 1};
}

void append_pixels(std::string& out, const Indices& indices, int width, const Gif_place& place, int code_size) {
    Lzw_writer writer(out, code_size);
    for (int y = place.y; y < place.y + place.height; ++y) {
        const std::size_t line = static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
        writer.add(&indices[line + static_cast<std::size_t>(place.x)], static_cast<std::size_t>(place.width));
    }
    writer.finish();
}

}  // namespace

int GIF_anim::add(const IMG_report& image, int delay) {
    constexpr int MOST_DELAY = 65535;
    IMG_report reduced = image;
    if (!img_check_picture(&reduced, GIF_MOST_SIDE, "GIF_anim")) return 0;
    if (!frames_.empty() && (image.width != width_ || image.height != height_)) {
        MESS_print(MESS_WARN, "GIF_anim: A picture of %dx%d pixels among those of %dx%d\n", image.width, image.height,
                   width_, height_);
        return 0;
    }
    width_ = image.width;
    height_ = image.height;
    img_reduce_colors(&reduced);
    Indexed_picture picture = img_index_pixels(reduced, false);
    const auto end = picture.colors.begin() + picture.count;
    frames_.push_back({std::move(picture.indices), {picture.colors.begin(), end}, std::clamp(delay, 0, MOST_DELAY)});
    return 1;
}

/// Chooses the palette of all pictures, and turns their indices to it.
std::vector<Pixel_color> GIF_anim::share_palette() {
    Color_reducer reducer;
    for (const Frame& frame : frames_) {
        std::array<std::uint64_t, PALETTE_SIZE> pixels{};
        for (const unsigned char index : frame.indices) pixels[index]++;
        for (std::size_t i = 0; i < frame.colors.size(); ++i) reducer.add(frame.colors[i], pixels[i]);
    }
    const std::vector<Pixel_color> palette = reducer.choose(PALETTE_SIZE);
    for (Frame& frame : frames_) {
        std::array<unsigned char, PALETTE_SIZE> turned{};
        for (std::size_t i = 0; i < frame.colors.size(); ++i) {
            turned[i] = static_cast<unsigned char>(reducer.index_of(frame.colors[i]));
        }
        for (unsigned char& index : frame.indices) index = turned[index];
        frame.colors = palette;
    }
    return palette;
}

int GIF_anim::write(const std::string& filename) {
    if (frames_.empty()) {
        MESS_print(MESS_WARN, "GIF_anim: There is no picture\n");
        return 0;
    }
    std::vector<Pixel_color> palette = share_palette();
    const int bits = gif_index_bits(static_cast<int>(palette.size()));
    const int code_size = std::max(bits, 2);
    palette.resize(PALETTE_SIZE);
    std::string out;
    gif_append_head(out, width_, height_, palette.data(), bits);
    append_loop(out);
    Gif_place place{0, 0, width_, height_};
    for (std::size_t i = 0; i < frames_.size(); ++i) {
        if (i > 0) place = changed_place(frames_[i - 1].indices, frames_[i].indices, width_, height_);
        append_control(out, frames_[i].delay);
        gif_append_place(out, place, false, code_size);
        append_pixels(out, frames_[i].indices, width_, place, code_size);
    }
    out += ';';
    return img_write_file(filename, out, "Unable to open GIF file\n");
}

}  // namespace zav
