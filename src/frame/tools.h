#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <memory>
#include <string>

namespace zav {

/// Closes a stream, of a file or of a command. The standard streams stay open.
struct file_closer {
    void operator()(std::FILE* file) const {
        if (file != nullptr && file != stdin && file != stdout && file != stderr) std::fclose(file);
    }
};
/// Owner of a stream. The C library closes a stream of popen with fclose as well.
using file_ptr = std::unique_ptr<std::FILE, file_closer>;

// Lines. All of these stop at the newline and leave it unread; the next call passes over it first. Characters beyond
// the limit are left for the next call.

/// Longest line of fgetline.
constexpr int LINE_LIMIT = 160;

/// The next line, of at most LINE_LIMIT characters. Its length, or -1 at the end of the file.
int fgetline(std::FILE* ifile, std::string& string);
/// The next line, of at most `len` characters. Its length, or -1 at the end of the file.
int fgetnline(std::FILE* ifile, std::string& string, int len);
/// The same. 1, 0 for an empty line, -1 at the end of the file.
int fgetstring(std::FILE* ifile, std::string& string, int len);
/// As fgetstring; a carriage return at the end is cut, other control characters become blanks.
int fget_rawstring(std::FILE* ifile, std::string& string, int len);
/// Passes over a newline left unread, then over the characters up to the next one. 0, or -1 at the end of the file.
int fskipline(std::FILE* ifile);
/// Passes over what is left of a line that was begun, none if its newline is next.
void fskiprest(std::FILE* ifile);
/// The next word between white space (blanks, tabs, newlines), of at most `len` characters. 1, or -1 at the end.
int fgetword(std::FILE* ifile, std::string& word, int len);

// Byte order of data in files. The switch is process-wide; each reader of a binary format sets it at its start.

/// 1: the data are big-endian, 2: little-endian; swapping is on if the machine differs. -1: off. Others: on.
void swap_setup(int flag);
/// Reverse the bytes of one value of 4, 2 or 8 bytes, or of `num` values, at `ptr`. 0, or -1 with swapping off.
int swap_long(void* ptr);
int swap_short(void* ptr);
int swap_double(void* ptr);
int swap_longs(void* ptr, std::size_t num);
int swap_shorts(void* ptr, std::size_t num);
/// Reads one value with the swap. 1, or 0 if the file doesn't hold it.
int fread_long_swap(void* data, std::FILE* file);
int fread_short_swap(void* data, std::FILE* file);
int fread_double_swap(void* data, std::FILE* file);
/// Writes one value with the swap; the caller's value is left swapped. 1, or 0 on failure.
int fwrite_long_swap(void* data, std::FILE* file);
int fwrite_short_swap(void* data, std::FILE* file);

// Numbers

/// y1 + (x - x1)(y2 - y1)/(x2 - x1).
float linear_interp(float x, float x1, float x2, float y1, float y2);
/// Exchanges two values.
void fswap(float* x, float* y);
/// A value as 100 e + m, m being its two leading digits and e a code of its power of ten; negative for x below 0.
int float2int(float x);
/// `text` as C's atoi reads it, but held to the range of an int.
int text_to_int(const char* text);
inline int text_to_int(const std::string& text) { return text_to_int(text.c_str()); }

}  // namespace zav
