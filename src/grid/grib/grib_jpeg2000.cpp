#include "grid/grib/grib_jpeg2000.h"

#include <openjpeg.h>

#include <algorithm>
#include <cstring>
#include <memory>

#include "grid/grib/grib_bits.h"

namespace zav {
namespace {

// Markers of ISO/IEC 15444-1, annex A
constexpr int SOC = 0xFF4F;
constexpr int SIZ = 0xFF51;
constexpr int COD = 0xFF52;
constexpr int COC = 0xFF53;
constexpr int POC = 0xFF5F;
constexpr int SOT = 0xFF90;
constexpr int SOD = 0xFF93;
constexpr int EOC = 0xFFD9;

constexpr std::uint64_t MAX_TILES = 1024;
constexpr int MAX_LAYERS = 64;
constexpr std::size_t WORTH_THREADS = 50000;  // bytes
constexpr int MOST_THREADS = 4;
constexpr int MIN_PRECINCT = 4;  ///< power of two below which precincts outnumber what the image justifies

/// Size of the image, if tiles and components are what a field may have. `marker` is the position of SIZ.
bool check_size(const Octets& stream, std::size_t max_points) {
    const int at = 4;
    if (stream.u16(at - 4) != SOC || stream.u16(at - 2) != SIZ) return false;
    const std::uint32_t x1 = stream.u32(at + 4);
    const std::uint32_t y1 = stream.u32(at + 8);
    const std::uint32_t x0 = stream.u32(at + 12);
    const std::uint32_t y0 = stream.u32(at + 16);
    const std::uint32_t tile_x = stream.u32(at + 20);
    const std::uint32_t tile_y = stream.u32(at + 24);
    const int components = stream.u16(at + 36);
    if (x1 <= x0 || y1 <= y0 || tile_x == 0 || tile_y == 0 || components != 1) return false;
    const std::uint64_t width = x1 - x0;
    const std::uint64_t height = y1 - y0;
    if (width > max_points || height > max_points || width * height > max_points) return false;
    const std::uint64_t tiles = (std::uint64_t{x1} / tile_x + 1) * (std::uint64_t{y1} / tile_y + 1);
    return tiles <= MAX_TILES;
}

/// True for a coding style whose layers and precincts stay within reason.
bool check_coding(const Octets& stream, int marker, int at, int length) {
    if (marker == POC) return false;
    if (marker != COD && marker != COC) return true;
    const int style = stream.u8(marker == COD ? at + 2 : at + 3);
    const int first = marker == COD ? at + 12 : at + 9;  // precinct sizes, one octet a resolution
    if (marker == COD && stream.u16(at + 4) > MAX_LAYERS) return false;
    if (!(style & 1)) return true;
    for (int i = first; i < at + length; ++i) {
        if ((stream.u8(i) & 0x0F) < MIN_PRECINCT || stream.u8(i) >> 4 < MIN_PRECINCT) return false;
    }
    return true;
}

/// Looks at the main header and at the headers of all tile parts.
bool check_stream(const unsigned char* data, std::size_t size, std::size_t max_points) {
    constexpr std::size_t LARGEST = 1U << 30;
    if (size < 40 || size > LARGEST) return false;
    const Octets stream(data, size, 0);
    if (!check_size(stream, max_points)) return false;
    int at = 2;
    int next_part = 0;
    while (at + 4 <= stream.end()) {
        const int marker = stream.u16(at);
        if (marker == EOC) return true;
        if (marker == SOD) {
            if (next_part <= at) return true;  // the last part, or one whose length isn't told
            at = next_part;
            continue;
        }
        const int length = stream.u16(at + 2);
        if (marker < 0xFF00 || length < 2) return false;
        if (marker == SOT) {
            const std::uint32_t part = stream.u32(at + 6);
            next_part = part == 0 || part > size ? 0 : at + static_cast<int>(part);
        }
        if (!check_coding(stream, marker, at + 2, length)) return false;
        at += 2 + length;
    }
    return next_part > 0;
}

/// The bytes that the library reads.
struct Source {
    const unsigned char* data;
    std::size_t size;
    std::size_t at;
};

OPJ_SIZE_T read_source(void* buffer, OPJ_SIZE_T count, void* user) {
    auto* source = static_cast<Source*>(user);
    const std::size_t left = source->size - source->at;
    if (left == 0) return static_cast<OPJ_SIZE_T>(-1);
    const std::size_t taken = std::min(left, count);
    std::memcpy(buffer, source->data + source->at, taken);
    source->at += taken;
    return taken;
}

OPJ_OFF_T skip_source(OPJ_OFF_T count, void* user) {
    auto* source = static_cast<Source*>(user);
    if (count < 0) return -1;
    const std::size_t left = source->size - source->at;
    const std::size_t taken = std::min(left, static_cast<std::size_t>(count));
    source->at += taken;
    return static_cast<OPJ_OFF_T>(taken);
}

OPJ_BOOL seek_source(OPJ_OFF_T position, void* user) {
    auto* source = static_cast<Source*>(user);
    if (position < 0 || static_cast<std::size_t>(position) > source->size) return OPJ_FALSE;
    source->at = static_cast<std::size_t>(position);
    return OPJ_TRUE;
}

void swallow(const char* /*text*/, void* /*user*/) {}

struct stream_closer {
    void operator()(opj_stream_t* stream) const { opj_stream_destroy(stream); }
};
using stream_ptr = std::unique_ptr<opj_stream_t, stream_closer>;

struct codec_closer {
    void operator()(opj_codec_t* codec) const { opj_destroy_codec(codec); }
};
using codec_ptr = std::unique_ptr<opj_codec_t, codec_closer>;

struct image_closer {
    void operator()(opj_image_t* image) const { opj_image_destroy(image); }
};
using image_ptr = std::unique_ptr<opj_image_t, image_closer>;

stream_ptr make_stream(Source* source) {
    stream_ptr stream(opj_stream_create(OPJ_J2K_STREAM_CHUNK_SIZE, OPJ_TRUE));
    if (!stream) return stream;
    opj_stream_set_user_data(stream.get(), source, nullptr);
    opj_stream_set_user_data_length(stream.get(), source->size);
    opj_stream_set_read_function(stream.get(), read_source);
    opj_stream_set_skip_function(stream.get(), skip_source);
    opj_stream_set_seek_function(stream.get(), seek_source);
    return stream;
}

bool take_component(const opj_image_t& raw, std::size_t max_points, Jpeg2000Image* image) {
    if (raw.numcomps < 1 || !raw.comps || !raw.comps[0].data) return false;
    const opj_image_comp_t& component = raw.comps[0];
    const std::size_t points = static_cast<std::size_t>(component.w) * component.h;
    if (points == 0 || points > max_points) return false;
    image->x0 = static_cast<int>(std::min<OPJ_UINT32>(raw.x0, 1U << 30));
    image->y0 = static_cast<int>(std::min<OPJ_UINT32>(raw.y0, 1U << 30));
    image->width = static_cast<int>(component.w);
    image->height = static_cast<int>(component.h);
    image->values.assign(component.data, component.data + points);
    return true;
}

}  // namespace

bool jpeg2000_decode(const unsigned char* data, std::size_t size, std::size_t max_points, Jpeg2000Image* image) {
    if (!check_stream(data, size, max_points)) return false;
    Source source{data, size, 0};
    const stream_ptr stream = make_stream(&source);
    const codec_ptr codec(opj_create_decompress(OPJ_CODEC_J2K));
    if (!stream || !codec) return false;
    opj_set_info_handler(codec.get(), swallow, nullptr);
    opj_set_warning_handler(codec.get(), swallow, nullptr);
    opj_set_error_handler(codec.get(), swallow, nullptr);
    opj_dparameters_t parameters{};
    opj_set_default_decoder_parameters(&parameters);
    if (!opj_setup_decoder(codec.get(), &parameters)) return false;
    if (size >= WORTH_THREADS) opj_codec_set_threads(codec.get(), std::clamp(opj_get_num_cpus(), 1, MOST_THREADS));
    opj_image_t* raw = nullptr;
    const bool header = opj_read_header(stream.get(), codec.get(), &raw);
    const image_ptr owner(raw);
    if (!header || !raw || !opj_decode(codec.get(), stream.get(), raw)) return false;
    return take_component(*raw, max_points, image);
}

}  // namespace zav
