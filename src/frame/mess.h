#pragma once

#include <cstdint>
#include <string>

namespace zav {

/// Mask of message levels: one bit a level, four bits a class.
using M_type = std::uint32_t;

/// Classes of messages. A single bit of a class is a message of finer detail.
constexpr M_type MESS_NONE = 0;
constexpr M_type MESS_PRINT = 15;           ///< the dialogue: menus, prompts, help, lists
constexpr M_type MESS_ERROR = 48;           ///< errors
constexpr M_type MESS_WARN = 192;           ///< warnings
constexpr M_type MESS_PROGRESS = 3840;      ///< progress messages
constexpr M_type MESS_OUT1 = 0xF000;        ///< output of the lowest detail
constexpr M_type MESS_OUT2 = 0xF0000;       ///< second detail
constexpr M_type MESS_OUT3 = 0xF00000;      ///< third detail
constexpr M_type MESS_OUT4 = 0xF000000;     ///< fourth detail
constexpr M_type MESS_DEBUG = 0xF0000000U;  ///< trace output

/// Shows a message, built as by printf, wherever messages of `type` go. 1 if it reached the screen, else 0.
/// A level that isn't shown costs one test: the text is not made. A paging counts the newlines of `mess` alone.
int MESS_print(M_type type, const char* mess, ...) __attribute__((format(printf, 2, 3)));

/// As MESS_print for a text that the program has made: a paging counts all its lines.
int MESS_text(M_type type, const std::string& text);

/// Shows the heading of the program with its version at the progress level.
void MESS_print_prog(const std::string& string);

/// 1 if any bit of `level` is shown, else 0.
int MESS_check(M_type level);
/// The mask of shown levels.
M_type MESS_get();
/// Number of explicit settings so far.
int MESS_check_set();

/// Changes the mask. `oper` 0, 10, 20 shows `level` and all below it; 1, 11, 21 adds its bits; -1, 9, 19 removes them.
/// An `oper` below 5 counts as an explicit setting; one above 15 is a default that gives way to any explicit one.
void MESS_set(int oper, M_type level);
/// Takes the words of the resource "message": levels, files, paging.
void MESS_set_str(const std::string& str);

/// Opens an extra output file for all messages, closing a former one. `access` as for fopen. 0, or -1.
int MESS_file(const std::string& filename, const char* access);
void MESS_file_close();

/// Destination: 1 screen and file, 0 file alone, -1 screen and file with time stamps, 2 file opened for each message.
void MESS_set_out(int val);
/// From here on all messages of the screen go to standard error, as standard output takes a page.
void MESS_use_stderr();
/// Paging: 0 none, 1 explicit holds only, 2 after each page.
void MESS_set_page(int val);
/// Lines of a page.
int MESS_get_max_lines();

/// Shows `mess` and waits for one character of standard input, unless paging is off or the run is a batch.
void MESS_hold(M_type type, const std::string& mess);

}  // namespace zav
