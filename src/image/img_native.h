#pragma once

/// The native image format: what its writer and reader share.

#include <cstddef>
#include <cstdio>
#include <string>

namespace zav {

struct IMG_report;

/// Bytes of pixels that one zlib stream of a file holds.
constexpr std::size_t NATIVE_PIECE = 10000;
/// Room for the compressed form of these, and for what a stream gives at a time.
constexpr std::size_t NATIVE_PIECE_ROOM = 12000;
/// A line of pixels may be padded to 32 bits, of pixels of 1 bit at most.
constexpr std::size_t NATIVE_PADDING = 31;

/// Reads the line that says where the picture lies and how large it is. False if it can't be used.
bool native_read_place(const std::string& line, bool version4, IMG_report* image);

/// Reads the pixels of a file that stands behind its head. 1, 0 without memory.
int native_read_raw(std::FILE* file, IMG_report* image);
/// The same of zlib streams one behind the other, waiting for more while the file still grows.
int native_read_compressed(std::FILE* file, IMG_report* image);

}  // namespace zav
