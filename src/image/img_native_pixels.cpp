// The native image format, read: its pixels.

#include <sys/stat.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstring>
#include <ctime>

#include "frame/mess.h"
#include "frame/system.h"
#include "image/img_file.h"
#include "image/img_native.h"
#include "image/zavimg.h"

namespace zav {
namespace {

/// Seconds since its last change after which a file isn't being written any more.
constexpr std::time_t AT_REST = 60;
constexpr int MOST_WAITS = 10;

std::size_t picture_size(const IMG_report& image) {
    return static_cast<std::size_t>(image.height) * static_cast<std::size_t>(image.bytes_line);
}

/// Most that is read of a picture: lines may be padded. One byte more tells that the file has something else behind it.
std::size_t most_size(const IMG_report& image) {
    return static_cast<std::size_t>(image.height) * (static_cast<std::size_t>(image.bytes_line) + NATIVE_PADDING) + 1;
}

/// Pixels from one line to the next: more than the width where the data are exactly so much longer as lines padded with
/// zeros to 16 or 32 bits make them.
std::size_t line_length(const std::vector<unsigned char>& data, std::size_t width, std::size_t rows) {
    const std::size_t length = data.size() / rows;
    if (length <= width || length % 2 != 0 || data.size() != length * rows) return width;
    for (std::size_t y = 0; y < rows; ++y) {
        const unsigned char* line = &data[y * length];
        if (std::any_of(line + width, line + length, [](unsigned char byte) { return byte != 0; })) return width;
    }
    return length;
}

/// Takes the padding out where lines are longer than the picture is wide, and fills up what didn't come.
int settle(IMG_report* image) {
    std::vector<unsigned char>& data = image->data;
    const std::size_t size = picture_size(*image);
    const auto rows = static_cast<std::size_t>(image->height);
    const auto width = static_cast<std::size_t>(image->bytes_line);
    if (data.size() < size) {
        MESS_print(MESS_WARN, "IMG_read_zav: The file has %zu of %zu pixels\n", data.size(), size);
    }
    const std::size_t length = line_length(data, width, rows);
    if (length != width) {
        for (std::size_t y = 1; y < rows; ++y) std::memmove(&data[y * width], &data[y * length], width);
    }
    if (img_complete(data, size)) return 1;
    MESS_print(MESS_WARN, "Unable to allocate data buffer.\n");
    return 0;
}

/// True if more of the file may come: it was changed a short while ago, and others can see it.
bool may_grow(std::FILE* file) {
    struct stat info {};
    if (fstat(fileno(file), &info) != 0 || !S_ISREG(info.st_mode) || info.st_nlink == 0) return false;
    return std::time(nullptr) - info.st_mtime < AT_REST;
}

/// Decodes zlib streams, one behind the other.
class Inflater {
  public:
    Inflater(std::vector<unsigned char>& data, std::size_t most) : data_(data), most_(most) {}
    ~Inflater() { end(); }
    Inflater(const Inflater&) = delete;
    Inflater& operator=(const Inflater&) = delete;

    /// Takes further input. False where it can't be decoded, or there is enough.
    bool take(unsigned char* bytes, std::size_t size) {
        stream_.next_in = bytes;
        stream_.avail_in = static_cast<uInt>(size);
        while (stream_.avail_in > 0 || full_) {
            if (!step()) return false;
        }
        return true;
    }

  private:
    std::vector<unsigned char>& data_;
    std::size_t most_;
    z_stream stream_{};
    bool open_ = false;
    bool full_ = false;  ///< the output was full, there may be more without input
    std::array<unsigned char, NATIVE_PIECE_ROOM> out_{};

    void end() {
        if (open_) inflateEnd(&stream_);
        open_ = false;
    }

    bool step() {
        if (!open_ && inflateInit(&stream_) != Z_OK) return false;
        open_ = true;
        stream_.next_out = out_.data();
        stream_.avail_out = static_cast<uInt>(out_.size());
        const int result = inflate(&stream_, Z_SYNC_FLUSH);
        const std::size_t made = out_.size() - stream_.avail_out;
        MESS_print(MESS_DEBUG, "Inflate+ %d = %d %d = %d %d - %d %d\n", result, static_cast<int>(stream_.avail_in),
                   static_cast<int>(stream_.avail_out), static_cast<int>(made), static_cast<int>(NATIVE_PIECE_ROOM),
                   static_cast<int>(data_.size()), static_cast<int>(most_));
        full_ = stream_.avail_out == 0 && result == Z_OK;
        data_.insert(data_.end(), out_.data(), out_.data() + std::min(made, most_ - data_.size()));
        if (result == Z_STREAM_END) end();
        // With its output full a stream may have come to its end without a further byte.
        if (result == Z_BUF_ERROR) return stream_.avail_in == 0;
        return result >= 0 && result != Z_NEED_DICT && data_.size() < most_;
    }
};

}  // namespace

int native_read_raw(std::FILE* file, IMG_report* image) {
    image->data.clear();
    img_read_bytes(file, image->data, most_size(*image));
    return settle(image);
}

int native_read_compressed(std::FILE* file, IMG_report* image) {
    image->data.clear();
    Inflater inflater(image->data, most_size(*image));
    std::array<unsigned char, NATIVE_PIECE> input{};
    int waits = 0;
    while (true) {
        const std::size_t size = std::fread(input.data(), 1, input.size(), file);
        if (size > 0) {
            if (!inflater.take(input.data(), size)) break;
            continue;
        }
        if (image->data.size() >= picture_size(*image) || waits == MOST_WAITS || !may_grow(file)) break;
        ZAV_sleep(1);
        waits++;
        std::clearerr(file);
    }
    return settle(image);
}

}  // namespace zav
