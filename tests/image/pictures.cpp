#include "image/pictures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdio>
#include <cstdlib>
#include <map>

#include "support/support.h"

namespace zav::test {

const std::vector<Packing> PACKINGS = {
    {"rgb32 high first", 24, 32, 1, {0xFF0000, 0xFF00, 0xFF}},
    {"rgb32 low first", 24, 32, 0, {0xFF0000, 0xFF00, 0xFF}},
    {"bgr32 low first", 24, 32, 0, {0xFF, 0xFF00, 0xFF0000}},
    {"deep low first", 30, 32, 0, {0x3FF00000, 0xFFC00, 0x3FF}},
    {"rgb24 high first", 24, 24, 1, {0xFF0000, 0xFF00, 0xFF}},
    {"rgb24 low first", 24, 24, 0, {0xFF0000, 0xFF00, 0xFF}},
    {"rgb16 high first", 16, 16, 1, {0xF800, 0x7E0, 0x1F}},
    {"rgb16 low first", 16, 16, 0, {0xF800, 0x7E0, 0x1F}},
    {"rgb15 low first", 15, 16, 0, {0x7C00, 0x3E0, 0x1F}},
    {"palette 8", 8, 8, 1, {0, 0, 0}},
    {"palette 4", 4, 4, 1, {0, 0, 0}},
    {"palette 1", 1, 1, 0, {0, 0, 0}},
};

Picture random_picture(std::mt19937& random, int width, int height, int colors) {
    const auto below = [&random](int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); };
    std::vector<Rgb> palette;
    for (int i = 0; i < colors; ++i) palette.push_back({below(256), below(256), below(256)});
    const auto any = [&] { return palette[static_cast<std::size_t>(below(colors))]; };
    Picture picture{width, height, std::vector<Rgb>(static_cast<std::size_t>(width * height), any())};
    for (int i = below(6); i >= 0; --i) {
        const int left = below(width);
        const int top = below(height);
        const int right = left + 1 + below(width - left);
        const int bottom = top + 1 + below(height - top);
        const bool noise = below(2) != 0;
        const Rgb flat = any();
        for (int y = top; y < bottom; ++y) {
            for (int x = left; x < right; ++x) picture.at(x, y) = noise ? any() : flat;
        }
    }
    return picture;
}

Picture read_elsewhere(const std::string& command) {
    const std::string text = run_command(command + " 2>/dev/null | ppmtoppm");
    Picture picture;
    int most = 0;
    int head = 0;
    if (std::sscanf(text.c_str(), "P6 %d %d %d%n", &picture.width, &picture.height, &most, &head) != 3) return {};
    const std::size_t size = most > 255 ? 2 : 1;
    const auto byte = [&](std::size_t at) { return static_cast<unsigned char>(text.at(at)); };
    for (std::size_t at = static_cast<std::size_t>(head) + 1; at + 3 * size <= text.size(); at += 3 * size) {
        const auto part = [&](std::size_t i) {
            const int value = size == 1 ? byte(at + i) : byte(at + 2 * i) << 8 | byte(at + 2 * i + 1);
            return static_cast<int>(value * 255.0 / most + 0.5);
        };
        picture.pixels.push_back({part(0), part(1), part(2)});
    }
    return picture;
}

namespace {

/// The bits of a component in its mask; the colour gets the component that the mask can hold, its low bits 0.
unsigned masked(int& part, unsigned mask) {
    const int size = std::popcount(mask);
    const int shift = std::countr_zero(mask);
    if (size >= 8) return static_cast<unsigned>(part) << (shift + size - 8);
    part = part >> (8 - size) << (8 - size);
    return static_cast<unsigned>(part) >> (8 - size) << shift;
}

unsigned palette_index(const Rgb& color, std::map<Rgb, unsigned>& palette, IMG_report& image) {
    const auto [place, added] = palette.try_emplace(color, static_cast<unsigned>(palette.size()));
    const auto part = [](int value) { return static_cast<float>(value / 255.0); };
    if (added) image.colors.push_back({part(color[0]), part(color[1]), part(color[2])});
    return place->second;
}

void put(IMG_report& image, int x, int y, unsigned value) {
    unsigned char* line = &image.data[static_cast<std::size_t>(y * image.bytes_line)];
    if (image.bits_pixel == 1) {
        line[x / 8] = static_cast<unsigned char>(line[x / 8] | value << x % 8);
    } else if (image.bits_pixel == 4) {
        line[x / 2] = static_cast<unsigned char>(line[x / 2] | value << (x % 2 == 0 ? 4 : 0));
    } else {
        const int bytes = image.bits_pixel / 8;
        for (int i = 0; i < bytes; ++i) {
            const int shift = 8 * (image.byte_order == 1 ? bytes - 1 - i : i);
            line[x * bytes + i] = static_cast<unsigned char>(value >> shift);
        }
    }
}

/// The colour of a pixel, worked out bit by bit.
Rgb color_at(const IMG_report& image, int x, int y) {
    const auto line = static_cast<std::size_t>(y) * static_cast<std::size_t>(image.bytes_line);
    const auto bit = [&](int i) -> unsigned {
        const unsigned byte = image.data.at(line + static_cast<std::size_t>(i / 8));
        return byte >> (image.depth == 1 && image.bit_order == 0 ? i % 8 : 7 - i % 8) & 1U;
    };
    const auto number = [&](int first, int count) {
        unsigned value = 0;
        for (int i = 0; i < count; ++i) value = value << 1 | bit(x * image.bits_pixel + first + i);
        return value;
    };
    const int sample = image.depth < 24 ? image.depth : image.depth / 3;
    const auto scaled = [&](int first) {
        return static_cast<int>(number(first, sample) * 255.0 / ((1U << sample) - 1U) + 0.5);
    };
    if (!image.colors.empty()) {
        const IMG_color& color = image.colors.at(number(0, image.bits_pixel));
        const auto part = [](float value) { return static_cast<int>(value * 255.0F + 0.5F); };
        return {part(color.r), part(color.g), part(color.b)};
    }
    if (image.color_type == 1) return {scaled(0), scaled(0), scaled(0)};
    const int alpha = image.bits_pixel - image.depth;  // red, green and blue are behind it
    return {scaled(alpha), scaled(alpha + sample), scaled(alpha + 2 * sample)};
}

}  // namespace

IMG_report pack(Picture& picture, const Packing& packing, int pad) {
    IMG_report image;
    image.width = picture.width;
    image.height = picture.height;
    image.depth = packing.depth;
    image.bits_pixel = packing.bits_pixel;
    image.byte_order = packing.byte_order;
    image.red = packing.masks[0];
    image.grn = packing.masks[1];
    image.blu = packing.masks[2];
    image.color_type = packing.masks[0] == 0 ? 1 : 0;
    image.bytes_line = ((picture.width * packing.bits_pixel + 7) / 8 + pad - 1) / pad * pad;
    image.data.resize(static_cast<std::size_t>(image.bytes_line * image.height));
    std::map<Rgb, unsigned> palette;
    for (int y = 0; y < picture.height; ++y) {
        for (int x = 0; x < picture.width; ++x) {
            Rgb& color = picture.at(x, y);
            unsigned value = 0;
            if (image.color_type == 1) {
                value = palette_index(color, palette, image);
            } else {
                for (std::size_t i = 0; i < 3; ++i) value |= masked(color[i], packing.masks[i]);
            }
            put(image, x, y, value);
        }
    }
    image.num_colors = static_cast<int>(image.colors.size());
    return image;
}

IMG_report indexed(const Picture& picture) {
    Picture copy = picture;
    return pack(copy, {"", 8, 8, 1, {0, 0, 0}}, 1);
}

int difference(const Picture& a, const Picture& b) {
    if (a.pixels.size() != b.pixels.size()) return 256;
    int most = 0;
    for (std::size_t i = 0; i < a.pixels.size(); ++i) {
        for (std::size_t part = 0; part < 3; ++part)
            most = std::max(most, std::abs(a.pixels[i][part] - b.pixels[i][part]));
    }
    return most;
}

Picture unpack(const IMG_report& image) {
    Picture picture{image.width, image.height, {}};
    for (int y = 0; y < image.height; ++y) {
        for (int x = 0; x < image.width; ++x) picture.pixels.push_back(color_at(image, x, y));
    }
    return picture;
}

}  // namespace zav::test
