// Opening of the picture workstation: file name and format, words, sizes and geometry.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "files/files.h"
#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/status.h"
#include "frame/string.h"
#include "gks/cairo/gks_cairo.h"
#include "gks/cairo/gks_cairo_state.h"
#include "gks/gks_colr.h"
#include "gks/gks_obj.h"
#include "gks/gks_out.h"
#include "gks/gks_tran.h"

namespace zav {
namespace {

constexpr int PAPER_DEPTH = 10;  // reported in place of a display's
constexpr double POINTS_PER_INCH = 72;

// A raster stands for a sheet whose drawing area is as long as that of letter paper, so that what has a size on paper
// has it there too.
constexpr double RASTER_LENGTH = 756, RASTER_MARGIN = 6;  // points
constexpr double PAPER_MARGIN = 18;                       // points
constexpr double PAPER_LINE = 0.33, SCREEN_LINE = 0.64;   // points; the latter one pixel of a usual PNG
constexpr double FINEST_RASTER = 16e6;                    // pixels; a larger one needs no finer drawing
constexpr double LONGEST_RASTER = 16000;                  // pixels; Cairo has 15 bits for twice as many

struct Size {
    double width, height;
};
constexpr Size USUAL_PIXELS = {1200, 900};
constexpr Size USUAL_POINTS = {792, 612};

struct Limits {
    double least, most, most_area;
    const char* unit;
};
constexpr Limits PIXELS = {32, 20000, 100e6, "pixels"};
constexpr Limits POINTS = {72, 14400, 14400.0 * 14400.0, "points"};

struct Format {
    const char* word;
    Gpicture_format format;
};
constexpr std::array<Format, 3> FORMATS = {
    {{"png", Gpicture_format::png}, {"pdf", Gpicture_format::pdf}, {"svg", Gpicture_format::svg}}};

const Format* find_format(const std::string& word) {
    const auto found = std::find_if(FORMATS.begin(), FORMATS.end(),
                                    [&word](const Format& format) { return stricmp(word.c_str(), format.word) == 0; });
    return found != FORMATS.end() ? &*found : nullptr;
}

/// The format that a word behind the name tells, or the ending of the name. Null if there is none.
const Format* format_of(const std::vector<std::string>& words) {
    for (std::size_t i = 1; i < words.size(); ++i) {
        if (const Format* format = find_format(words[i])) return format;
    }
    if (words.empty() || words[0].empty()) return FORMATS.data();
    if (gout_mode(words[0]) != Gout_mode::create) return nullptr;
    const std::size_t dot = words[0].rfind('.');
    return dot == std::string::npos ? nullptr : find_format(words[0].substr(dot + 1));
}

void tell_word(const std::string& word, const char* why) {
    MESS_print(MESS_WARN, "gopen_ws: %s: %s\n", why, word.c_str());
    ZAV_note(STATUS_WORD);
}

/// Takes a size over if a picture can have it.
void set_size(const std::string& word, Size size, Gpicture* picture) {
    const Limits& limits = picture->format == Gpicture_format::png ? PIXELS : POINTS;
    const auto fits = [&limits](double value) { return value >= limits.least && value <= limits.most; };
    if (!fits(size.width) || !fits(size.height) || size.width * size.height > limits.most_area) {
        const std::string why =
            text_format("Size of a picture out of range, %.0f to %.0f %s", limits.least, limits.most, limits.unit);
        tell_word(word, why.c_str());
        return;
    }
    picture->width = size.width;
    picture->height = size.height;
}

/// Reads "WxH", whole numbers for pixels. False if `text` is anything else.
bool read_size(const std::string& text, bool whole, Size* size) {
    std::array<char, 16> width{};
    std::array<char, 16> height{};
    int end = 0;
    if (std::sscanf(text.c_str(), "%15[0-9.]x%15[0-9.]%n", width.data(), height.data(), &end) != 2) return false;
    if (end != static_cast<int>(text.size())) return false;
    *size = {std::atof(width.data()), std::atof(height.data())};
    return !whole || (std::floor(size->width) == size->width && std::floor(size->height) == size->height);
}

/// Sizes of paper, in inches.
bool read_paper(const std::string& word, Size* inches) {
    if (const char* text = gws_param_value(word, "sz")) return read_size(text, false, inches);
    float width = 0;
    float height = 0;
    if (!gws_paper_size(word, &width, &height)) return false;
    *inches = {width, height};
    return true;
}

void turn(bool upright, Gpicture* picture) {
    if (upright == (picture->width > picture->height)) std::swap(picture->width, picture->height);
}

void read_word(const std::string& word, Gpicture* picture) {
    const bool raster = picture->format == Gpicture_format::png;
    Size size{};
    if (word.empty() || find_format(word) != nullptr) return;
    if (stricmp(word.c_str(), "transparent") == 0) {
        picture->transparent = true;
    } else if (stricmp(word.c_str(), "color") == 0) {
        picture->gray = false;
    } else if (stricmp(word.c_str(), "gray") == 0) {
        picture->gray = true;
    } else if (stricmp(word.c_str(), "port") == 0 || stricmp(word.c_str(), "land") == 0) {
        turn(stricmp(word.c_str(), "port") == 0, picture);
    } else if (const char* width = gws_param_value(word, "lwidth")) {
        const double factor = std::strtod(width, nullptr);
        if (factor > 0 && factor <= 100) {
            picture->line_width = factor;
        } else {
            tell_word(word, "Line width out of range");
        }
    } else if (read_size(word, raster, &size)) {
        set_size(word, size, picture);
    } else if (!raster && read_paper(word, &size)) {
        set_size(word, {size.width * POINTS_PER_INCH, size.height * POINTS_PER_INCH}, picture);
    } else {
        tell_word(word, "Unknown word of a picture");
    }
}

/// False, after a message, for an output that no picture can go to.
bool read_connection(const std::vector<std::string>& words, Gpicture* picture) {
    picture->file = gcairo_file_name(words);
    const Format* format = format_of(words);
    if (gout_mode(picture->file) == Gout_mode::append) {
        MESS_print(MESS_WARN, "gopen_ws: A picture can't be added to a file: %s\n", picture->file.c_str());
        return false;
    }
    if (format == nullptr) {
        MESS_print(MESS_WARN, "gopen_ws: No format of a picture (png, pdf or svg): %s\n", picture->file.c_str());
        return false;
    }
    picture->format = format->format;
    const Size usual = picture->format == Gpicture_format::png ? USUAL_PIXELS : USUAL_POINTS;
    picture->width = usual.width;
    picture->height = usual.height;
    for (std::size_t i = 1; i < words.size(); ++i) read_word(words[i], picture);
    const bool one_file = gout_mode(picture->file) == Gout_mode::pipe || FILE_is_stdio(picture->file) != 0;
    if (one_file && gget_pages() && picture->format == Gpicture_format::svg) {
        MESS_print(MESS_WARN, "gopen_ws: SVG has one page: name a file for several: %s\n", picture->file.c_str());
        return false;
    }
    return true;
}

Gdevice_area drawing_area(const Gpicture_layout& layout) {
    constexpr double rounding = 0.001;
    Gdevice_area area;
    area.width = gtruncate(layout.page_width - 2 * layout.margin + rounding);
    area.height = gtruncate(layout.page_height - 2 * layout.margin + rounding);
    const char* geometry = RES_get("geometry");
    gws_geometry(geometry != nullptr ? geometry : "", &area);
    return area;
}

}  // namespace

std::string gcairo_file_name(const std::vector<std::string>& words) {
    if (!words.empty() && !words[0].empty()) return words[0];
    const Format* format = format_of(words);
    return std::string("zav.") + format->word;
}

Gpicture_layout gcairo_layout(const Gpicture& picture) {
    Gpicture_layout layout;
    if (picture.format == Gpicture_format::png) {
        const double pixels = std::max(picture.width, picture.height) / (RASTER_LENGTH + 2 * RASTER_MARGIN);
        const bool small = picture.width * picture.height <= FINEST_RASTER &&
                           std::max(picture.width, picture.height) <= LONGEST_RASTER;
        layout.fineness = small ? 2 : 1;
        layout.scale = pixels * layout.fineness;
        layout.page_width = picture.width / pixels;
        layout.page_height = picture.height / pixels;
        layout.margin = RASTER_MARGIN;
    } else {
        layout.page_width = picture.width;
        layout.page_height = picture.height;
        layout.margin = PAPER_MARGIN;
    }
    layout.base_width = picture.line_width * (picture.format == Gpicture_format::pdf ? PAPER_LINE : SCREEN_LINE);
    return layout;
}

int gcairo_open(const std::vector<std::string>& words) {
    gset_cache(0);
    gset_redraw(0);
    gset_win_type(GWS_CAIRO);
    gset_win_depth(PAPER_DEPTH);
    gset_inverse(1);
    Gpicture picture;
    if (!read_connection(words, &picture)) return -1;
    const Gpicture_layout layout = gcairo_layout(picture);
    if (!gcairo_begin(picture, layout)) return -1;
    gset_area(drawing_area(layout));
    return 0;
}

}  // namespace zav
