#pragma once

/// Bytes in and out of image files, with memory for what really comes.

#include <cstddef>
#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace zav {

/// Reads up to `size` bytes behind what `data` holds, which grows as they come. The number read.
std::size_t img_read_bytes(std::FILE* file, std::vector<unsigned char>& data, std::size_t size);

/// Makes `data` `size` bytes long, with zeros. False, with an empty `data`, where far too little came to believe in a
/// picture of that size, or there is no memory.
bool img_complete(std::vector<unsigned char>& data, std::size_t size);

/// Room for at least `size` bytes of a picture of `full` bytes that comes row by row.
void img_grow(std::vector<unsigned char>& data, std::size_t size, std::size_t full);

/// Writes bytes and brings them to the file. False if they didn't all arrive.
bool img_write_bytes(std::FILE* file, const void* bytes, std::size_t size);

/// Opens `filename` and writes it as a whole, with a warning, `failure`, if it can't be opened. 1, or 0.
int img_write_file(const std::string& filename, const std::string& content, const char* failure);

struct IMG_report;

/// Result of `read`, which reads a file into the record. Without memory, told here, it is 0, and the record is then
/// empty.
int img_read_whole(IMG_report* image, const std::function<int()>& read);

/// True if the record holds a picture whose lines are long enough for its pixels and which has no side above `most`;
/// else warns in the name of `func`. Missing pixels become 0.
bool img_check_picture(IMG_report* image, int most, const char* func);

}  // namespace zav
