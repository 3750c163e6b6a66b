// The native image format, read: its head.

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <new>

#include "files/files.h"
#include "frame/string.h"
#include "frame/tools.h"
#include "image/img_native.h"
#include "image/zavimg.h"
#include "map/maptran.h"

namespace zav {
namespace {

constexpr const char* FILE_WORD = "ZAVIMG";
constexpr std::size_t FILE_WORD_LENGTH = 6;
constexpr char KEY_REGION = 'r';

/// The numbers of a text between colons, up to the first that can't be read.
std::vector<float> numbers_between_colons(const std::string& text) {
    std::vector<float> numbers;
    for (const std::string& part : parse_string(text, ':')) {
        char* end = nullptr;
        const float number = std::strtof(part.c_str(), &end);
        if (end == part.c_str() || *end != '\0' || !std::isfinite(number)) break;
        numbers.push_back(number);
    }
    return numbers;
}

using Numbers = std::vector<float>;

void no_parameters(const Numbers&, Domain&) {}

void polar_parameters(const Numbers& given, Domain& domain) {
    if (!given.empty()) domain.plon = given[0];
}

void lambert_parameters(const Numbers& given, Domain& domain) {
    if (given.size() == 1) domain.plon = given[0];
    if (given.size() < 5) return;
    domain.plat = given[0];
    domain.plon = given[1];
    std::copy(given.begin() + 2, given.begin() + 5, domain.param.begin());
}

void satellite_parameters(const Numbers& given, Domain& domain) {
    if (given.size() < 2) return;
    domain.plat = given[0];
    domain.plon = given[1];
    if (given.size() > 2) domain.param[0] = given[2];
}

struct Projection_word {
    const char* start;
    int proj;
    void (*take)(const Numbers& given, Domain& domain);
};

constexpr std::array<Projection_word, 5> PROJECTION_WORDS{{
    {"LL", PROJ_LATLON, no_parameters},
    {"ME", PROJ_MERCATOR, no_parameters},
    {"PS", PROJ_POLAR, polar_parameters},
    {"LC", PROJ_LAMBERT, lambert_parameters},
    {"SA", PROJ_SATELLITE, satellite_parameters},
}};

bool is_finite(const Domain& domain) {
    return std::isfinite(domain.clat) && std::isfinite(domain.clon) && std::isfinite(domain.dx) &&
           std::isfinite(domain.dy);
}

/// A projection word, its parameters behind colons, and six numbers.
bool read_projection(const std::string& line, Domain* domain) {
    const auto row = std::find_if(PROJECTION_WORDS.begin(), PROJECTION_WORDS.end(),
                                  [&](const Projection_word& word) { return line.starts_with(word.start); });
    if (row == PROJECTION_WORDS.end()) return false;
    const std::size_t blank = std::min(line.find(' '), line.size());
    const std::size_t colon = line.find(':');
    domain->proj = row->proj;
    if (colon < blank) row->take(numbers_between_colons(line.substr(colon + 1, blank - colon - 1)), *domain);
    return std::sscanf(line.c_str() + blank, "%f %f %f %f %d %d", &domain->clat, &domain->clon, &domain->dx,
                       &domain->dy, &domain->nx, &domain->ny) == 6 &&
           is_finite(*domain);
}

/// A domain text. Decoding one that a user gave has effects on file names and stations, which a picture's hasn't.
bool read_domain_text(const std::string& line, Domain* domain) {
    const std::string key = FILE_get_key(KEY_REGION);
    const int priority = DOM_get_prior();
    const int result = DOM_decode(line, domain);
    FILE_set_key(KEY_REGION, key);
    DOM_set_prior(priority);
    return result > 0 && domain->proj >= 0 && is_finite(*domain);
}

bool read_place_of_version3(const std::string& line, Domain* domain) {
    int used = 0;
    if (std::sscanf(line.c_str(), "%d %d %n", &domain->nx, &domain->ny, &used) == 2 && used > 0) {
        return static_cast<std::size_t>(used) >= line.size();
    }
    return read_projection(line, domain);
}

bool skip_bytes(std::FILE* file, int count) {
    while (count > 0 && std::fgetc(file) != EOF) count--;
    return count == 0;
}

/// Passes over the blocks between the head and the pixels.
bool skip_blocks(std::FILE* file, const std::string& flags) {
    constexpr int BLOCK_V = 1024;
    if (flags.find('V') != std::string::npos && !skip_bytes(file, BLOCK_V)) return false;
    if (flags.find('C') == std::string::npos) return true;
    if (!skip_bytes(file, 3)) return false;
    const int count = std::fgetc(file);
    return count != EOF && skip_bytes(file, 2 * count);
}

/// The file beside the head that has the pixels. A name out of a file opens files alone, no commands or streams.
int read_other_file(std::FILE* head, IMG_report* image) {
    std::string name;
    if (fgetword(head, name, static_cast<int>(FILE_NAME_SIZE) - 1) != 1) return -1;
    const file_ptr file = FILE_open_data(FILE_add_user_path(name));
    if (file) return native_read_raw(file.get(), image);
    MESS_print(MESS_WARN, "Unable to open: %s\n", name.c_str());
    return -1;
}

/// The next line of the head without its end, of which at most `LINE_LIMIT` characters are kept. The file stands
/// right behind it.
bool read_head_line(std::FILE* file, std::string& line) {
    line.clear();
    int c = std::fgetc(file);
    if (c == EOF) return false;
    for (; c != EOF && c != '\n'; c = std::fgetc(file)) {
        if (line.size() < LINE_LIMIT) line += static_cast<char>(c);
    }
    trim_cr_string(line);
    return true;
}

int fail(const char* text) {
    MESS_print(MESS_WARN, "IMG_read_zav: %s\n", text);
    return -1;
}

int read_picture(std::FILE* file, IMG_report* image) {
    std::string line;
    if (!read_head_line(file, line) || !line.starts_with(FILE_WORD)) return fail("Invalid image type");
    const std::string flags = line.substr(FILE_WORD_LENGTH);
    const auto has = [&flags](char flag) { return flags.find(flag) != std::string::npos; };

    IMG_init(image);
    image->source = IMG_SOURCE_NATIVE;
    image->version = has('4') ? 4 : 3;
    if (!read_head_line(file, line)) return fail("The head of the file is cut off");
    image->datim = fit_text(line, IMG_DATIM_SIZE);
    DATE_decode_label(image->datim, &image->date);
    if (!read_head_line(file, line)) return fail("The head of the file is cut off");
    image->info = fit_text(line, IMG_INFO_SIZE);
    if (!read_head_line(file, line)) return fail("The head of the file is cut off");
    if (!native_read_place(line, has('4'), image)) return fail("Invalid size or place of the picture");
    if (!skip_blocks(file, flags)) return fail("The head of the file is cut off");

    if (has('*')) return read_other_file(file, image);
    return has('Z') ? native_read_compressed(file, image) : native_read_raw(file, image);
}

}  // namespace

bool native_read_place(const std::string& line, bool version4, IMG_report* image) {
    Domain* domain = &image->domain;
    if (!(version4 ? read_domain_text(line, domain) : read_place_of_version3(line, domain))) return false;
    if (domain->nx < 1 || domain->ny < 1) return false;
    image->width = domain->nx;
    image->height = domain->ny;
    image->depth = 8;
    image->bits_pixel = 8;
    image->color_type = 1;
    image->bytes_line = image->width;
    return true;
}

int IMG_read_zav(const std::string& filename, IMG_report* image, int) {
    const file_ptr file = FILE_open(filename, "rb");
    if (!file) {
        MESS_print(MESS_WARN, "Unable to open: %s\n", filename.c_str());
        return -1;
    }
    try {
        return read_picture(file.get(), image);
    } catch (const std::bad_alloc&) {
        MESS_print(MESS_WARN, "Unable to allocate data buffer.\n");
        IMG_free(image);
        return 0;
    }
}

}  // namespace zav
