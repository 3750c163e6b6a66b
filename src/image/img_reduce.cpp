// Pictures of many colours brought to a palette.

#include "image/img_reduce.h"

#include <algorithm>
#include <limits>

#include "image/img_palette.h"
#include "image/zavimg.h"

namespace zav {
namespace {

std::uint32_t key_of(const Pixel_color& color) {
    return static_cast<std::uint32_t>(color[0] << 16 | color[1] << 8 | color[2]);
}

int distance(const Pixel_color& a, const Pixel_color& b) {
    int sum = 0;
    for (std::size_t i = 0; i < a.size(); ++i) sum += (a[i] - b[i]) * (a[i] - b[i]);
    return sum;
}

}  // namespace

std::vector<Pixel_color> img_colors(const IMG_report& image) {
    const Pixel_layout layout(image);
    const Pixel_colors colors(image);
    const auto width = static_cast<std::size_t>(image.width);
    std::vector<Pixel_color> all;
    all.reserve(width * static_cast<std::size_t>(image.height));
    std::vector<Pixel_value> row(width);
    for (std::size_t y = 0; y < static_cast<std::size_t>(image.height); ++y) {
        layout.read(image.data.data() + y * static_cast<std::size_t>(image.bytes_line), width, row.data());
        for (std::size_t x = 0; x < width; ++x) {
            all.push_back(x > 0 && row[x] == row[x - 1] ? all.back() : colors.of(row[x]));
        }
    }
    return all;
}

void Color_reducer::add(const Pixel_color& color, std::uint64_t pixels) {
    const auto [place, added] = places_.try_emplace(key_of(color), colors_.size());
    if (added) colors_.push_back({color, 0});
    colors_[place->second].pixels += pixels;
}

void Color_reducer::count(const IMG_report& image) {
    const std::vector<Pixel_color> all = img_colors(image);
    for (std::size_t i = 0; i < all.size();) {
        std::size_t end = i + 1;
        while (end < all.size() && all[end] == all[i]) end++;
        add(all[i], end - i);
        i = end;
    }
}

Color_reducer::Box Color_reducer::make_box(std::size_t first, std::size_t last) const {
    Box box{first, last, 0, -1.0, 0.0};
    for (std::size_t part = 0; part < 3; ++part) {
        double count = 0.0;
        double sum = 0.0;
        double squares = 0.0;
        for (std::size_t i = first; i < last; ++i) {
            const auto pixels = static_cast<double>(colors_[i].pixels);
            const double value = colors_[i].color[part];
            count += pixels;
            sum += pixels * value;
            squares += pixels * value * value;
        }
        const double spread = squares - sum * sum / count;
        if (spread > box.spread) box = {first, last, part, spread, sum / count};
    }
    if (last - first < 2) box.spread = -1.0;  // nothing to cut
    return box;
}

void Color_reducer::cut(std::vector<Box>& boxes, std::size_t which) {
    const Box box = boxes[which];
    const auto begin = colors_.begin();
    const auto middle = std::stable_partition(
        begin + static_cast<std::ptrdiff_t>(box.first), begin + static_cast<std::ptrdiff_t>(box.last),
        [&box](const Counted& counted) { return counted.color[box.part] <= box.mean; });
    const auto at = static_cast<std::size_t>(middle - begin);
    boxes[which] = make_box(box.first, at);
    boxes.push_back(make_box(at, box.last));
}

/// The one colour that most of the box has, else the mean: so flat areas and lines keep theirs.
Pixel_color Color_reducer::color_of(const Box& box) const {
    std::uint64_t all = 0;
    std::array<std::uint64_t, 3> sums{};
    const Counted* largest = &colors_[box.first];
    for (std::size_t i = box.first; i < box.last; ++i) {
        const Counted& counted = colors_[i];
        all += counted.pixels;
        for (std::size_t part = 0; part < 3; ++part) sums[part] += counted.pixels * counted.color[part];
        if (counted.pixels > largest->pixels) largest = &counted;
    }
    if (2 * largest->pixels >= all) return largest->color;
    Pixel_color color{};
    for (std::size_t part = 0; part < 3; ++part) color[part] = static_cast<unsigned char>((sums[part] + all / 2) / all);
    return color;
}

const std::vector<Pixel_color>& Color_reducer::choose(std::size_t most) {
    chosen_.clear();
    nearest_.clear();
    if (colors_.size() <= most) {
        for (const Counted& counted : colors_) chosen_.push_back(counted.color);
        return chosen_;
    }
    std::vector<Box> boxes = {make_box(0, colors_.size())};
    while (boxes.size() < most) {
        const auto largest = std::max_element(boxes.begin(), boxes.end(),
                                              [](const Box& a, const Box& b) { return a.spread < b.spread; });
        if (largest->spread <= 0.0) break;
        cut(boxes, static_cast<std::size_t>(largest - boxes.begin()));
    }
    for (const Box& box : boxes) chosen_.push_back(color_of(box));
    places_.clear();  // the cuts have moved the colours
    for (std::size_t i = 0; i < colors_.size(); ++i) places_[key_of(colors_[i].color)] = i;
    return chosen_;
}

int Color_reducer::index_of(const Pixel_color& color) {
    const auto [place, added] = nearest_.try_emplace(key_of(color), 0);
    if (!added) return place->second;
    int least = std::numeric_limits<int>::max();
    for (std::size_t i = 0; i < chosen_.size() && least > 0; ++i) {
        const int far = distance(chosen_[i], color);
        if (far >= least) continue;
        least = far;
        place->second = static_cast<int>(i);
    }
    return place->second;
}

void img_reduce_colors(IMG_report* image) {
    if (img_index_pixels(*image, false).lost == 0) return;
    Color_reducer reducer;
    reducer.count(*image);
    const std::vector<Pixel_color> all = img_colors(*image);
    IMG_report reduced = *image;
    reduced.colors.clear();
    for (const Pixel_color& color : reducer.choose(PALETTE_SIZE)) {
        const auto part = [&color](std::size_t i) { return static_cast<float>(color[i] / 255.0); };
        reduced.colors.push_back({part(0), part(1), part(2)});
    }
    const int background = img_background(*image);
    if (background >= 0) {
        const Pixel_color color = Pixel_colors(*image).of(static_cast<Pixel_value>(background));
        reduced.trans_color = reducer.index_of(color);
    }
    reduced.num_colors = static_cast<int>(reduced.colors.size());
    reduced.depth = reduced.bits_pixel = 8;
    reduced.color_type = 1;
    reduced.red = reduced.grn = reduced.blu = 0;
    reduced.bytes_line = image->width;
    reduced.data.clear();
    for (std::size_t i = 0; i < all.size(); ++i) {
        reduced.data.push_back(i > 0 && all[i] == all[i - 1] ? reduced.data.back()
                                                             : static_cast<unsigned char>(reducer.index_of(all[i])));
    }
    *image = std::move(reduced);
}

}  // namespace zav
