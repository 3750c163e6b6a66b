#pragma once

#include <string>

#include "frame/tools.h"

namespace zav {

struct Domain;

/// Date fields forced on file names; MISS in a field leaves it, a negative value makes it a period.
struct forced_date {
    int year;
    int month;
    int day;
    int hour;
    int min;
};

/// Calls that the frame makes into the units above it. An empty one has the plain effect that its line tells.
struct frame_hooks {
    /// A region or domain text into a domain; above 0 if it was read. Empty: nothing is decoded.
    int (*decode_domain)(const std::string& text, Domain* domain) = nullptr;
    /// Stores the forced date. Empty: it is dropped.
    void (*set_forced_date)(const forced_date& date) = nullptr;
    /// Opens a file, a standard stream or a command. Empty: fopen.
    file_ptr (*open_file)(const std::string& file, const char* access) = nullptr;
    /// Puts a directory in front of a file name. Empty: with a slash between.
    std::string (*add_path)(const char* path, const std::string& file) = nullptr;
    /// A file name with a "~" or "~user" at its start expanded. Empty: as it is.
    std::string (*expand_user)(const std::string& file) = nullptr;
    /// Sets the time zone of labels. Empty: nothing.
    void (*set_time_zone)(const std::string& text) = nullptr;
    /// The present time as a label for message files. Empty: the label made here from the system's clock.
    std::string (*current_time)() = nullptr;
    /// The texts that menu lines test. Empty: an empty text.
    std::string (*model_text)() = nullptr;
    std::string (*level_text)() = nullptr;
    std::string (*time_text)() = nullptr;
    /// Makes the variable table ready before its menu is shown. Empty: nothing.
    void (*init_variables)() = nullptr;
    /// Brings open output to its end before the program exits. Empty: nothing.
    void (*break_off)() = nullptr;
};

/// The hooks in force. Set at start by ZAV_install_hooks.
frame_hooks& ZAV_hooks();

/// Opens a file through the hook. Null on failure.
file_ptr ZAV_open_file(const std::string& file, const char* access);
/// Path of a lookup file: `file` in the directory of the resource "file_path".
std::string ZAV_lookup_path(const std::string& file);

}  // namespace zav
