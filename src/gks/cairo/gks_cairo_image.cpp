// Images on pictures.

#include <algorithm>
#include <array>
#include <cstdint>

#include "gks/cairo/gks_cairo.h"
#include "gks/cairo/gks_cairo_state.h"
#include "gks/gks_img.h"
#include "gks/gks_tran.h"
#include "image/zavimg.h"

namespace zav {
namespace {

constexpr std::uint32_t WHITE = 0xFFFFFF;

std::uint32_t pixel_of(int value, bool gray) {
    std::array<int, 3> parts = {value, value, value};
    if (!gray) parts = gimage_color(value);
    return static_cast<std::uint32_t>(parts[0] << 16 | parts[1] << 8 | parts[2]);
}

/// A surface with a sample for each unit of the viewport. Null without memory.
cairo_surface_t* make_samples(const IMG_report& image, int x, int y, int width, int height) {
    cairo_surface_t* surface = cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height);
    unsigned char* data = cairo_image_surface_get_data(surface);
    if (data == nullptr) return surface;
    std::array<std::uint32_t, 256> colors{};
    for (int i = 0; i < 256; ++i) colors[static_cast<std::size_t>(i)] = pixel_of(i, gcairo_picture().gray);
    const int stride = cairo_image_surface_get_stride(surface);
    cairo_surface_flush(surface);
    for (int row = 0; row < height; ++row) {
        auto* to = reinterpret_cast<std::uint32_t*>(data + static_cast<std::size_t>(row) * stride);
        for (int column = 0; column < width; ++column) {
            const int value = gimage_value(image, y + row, x + column);
            *to++ = value < 0 ? WHITE : colors[static_cast<std::size_t>(value)];
        }
    }
    cairo_surface_mark_dirty(surface);
    return surface;
}

}  // namespace

void gcairo_image(const IMG_report* image, int x, int y) {
    cairo_t* page = gcairo_page();
    if (page == nullptr || image == nullptr) return;
    Gxrect viewport;
    gget_xviewport(&viewport);
    Grectangle place;
    gget_gviewport(&place);
    if (viewport.width == 0 || viewport.height == 0) return;
    x = std::clamp(x, -GIMAGE_FARTHEST, GIMAGE_FARTHEST);
    y = std::clamp(y, -GIMAGE_FARTHEST, GIMAGE_FARTHEST);
    cairo_surface_t* samples = make_samples(*image, x, y, viewport.width, viewport.height);
    cairo_save(page);
    cairo_translate(page, place.x, place.y + viewport.height);
    cairo_scale(page, 1, -1);
    cairo_set_source_surface(page, samples, 0, 0);
    cairo_pattern_set_filter(cairo_get_source(page), CAIRO_FILTER_NEAREST);
    cairo_rectangle(page, 0, 0, viewport.width, viewport.height);
    cairo_set_antialias(page, CAIRO_ANTIALIAS_NONE);
    cairo_fill(page);
    cairo_restore(page);
    cairo_surface_destroy(samples);
}

}  // namespace zav
