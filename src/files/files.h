#pragma once

#include <cstddef>
#include <string>

#include "files/date.h"
#include "frame/tools.h"

namespace zav {

/// Longest file name and template with its end; longer texts are cut.
constexpr std::size_t FILE_NAME_SIZE = 160;

// Naming convention: the template that file names are made from

/// Selects the convention of a kind of file, from the name convention file, or "@template", or "none". Text behind a
/// colon sets keys: "kind:v=temp". The first call empties all keys. 1 when a line or an "@" form matched, else 0: the
/// kind is then the template itself.
int FILE_set_name(const std::string& type);
/// Key of a character in templates: at most 29 characters, blanks turned into "_".
void FILE_set_key(char key, const std::string& str);
void FILE_get_key(char key, std::string& str);
const std::string& FILE_get_key(char key);

/// The step, the template and the header template as one text, for keeping them.
void FILE_set_name_conv(const std::string& str);
void FILE_get_name_conv(std::string& str);
/// Keep and bring back the convention, the file name and the step around the use of another kind of file. One level.
void FILE_save_name_conv();
void FILE_restore_name_conv();

/// Step of the template in seconds, MISS for a template without a date field.
void FILE_set_late_off(int val);
int FILE_get_late_off();
/// Smallest size in bytes at which a file counts as present; a size set here goes over the convention's. 0: not set.
void FILE_set_min_size(int val);
int FILE_get_min_size();
/// Extended file information, handed on to the grid reader.
void FILE_set_ext_info(const std::string& str);
const std::string& FILE_get_ext_info();

/// The current file name. Setting it marks the name as given by the user and not made from a date.
void FILE_set_filename(const std::string& str);
const std::string& FILE_get_filename();
/// 0: the current name was made from a date or a rule; 1: the user gave it, and the template makes it as well; 2: the
/// user gave it, and the template makes another.
int FILE_is_given();
const std::string& FILE_get_filename(std::string& str);

// Paths and tests. A "~" or "~user" at the start is expanded by the tests and by FILE_open.

/// 1 if the name starts with "/", "." or "~".
int FILE_fullpath(const std::string& filename);
/// `file` in the directory `path`, null or empty for none. A standard stream name and a full path stay.
std::string FILE_add_path(const char* path, const std::string& file);
const std::string& FILE_add_path(const char* path, const std::string& file, std::string& filename);
/// Adds "/" unless the text is empty or ends in one.
void FILE_add_path_delim(std::string& path);
/// Expands "~" and "~user" at the start; an unknown user leaves the name as it is.
void FILE_add_user_path(const std::string& file, std::string& filename);
std::string FILE_add_user_path(const std::string& file);

/// True for an existing file and for a standard stream name, an empty one included.
int FILE_exist(const std::string& file);
/// True for "", "-", "std" and "stdn".
int FILE_is_stdio(const std::string& file);
int FILE_is_dir(const std::string& file);
int FILE_is_file(const std::string& file);
int FILE_is_fifo(const std::string& file);
/// True for a character or block device.
int FILE_is_device(const std::string& file);
/// Bytes, and seconds since 1970 of the last change; -1 if the file doesn't exist.
long FILE_size(const std::string& file);
long FILE_modtime(const std::string& file);
/// Removes a file. 0, or -1.
int FILE_delete(const std::string& file);
/// Makes the directories of a path, with `flag` 1 all but its last piece. Backslashes become "/" in place.
/// 1 if they were there already, else 0.
int FILE_make_dir(std::string& dir, int flag);

/// Opens a file that the user named: a standard stream, "|command", or a file, whose directories are made for writing.
/// `access` as for fopen. Null on failure. A standard stream stays open when its owner lets go of it.
file_ptr FILE_open(const std::string& file, const char* access);
/// Opens a regular file whose name stood in a data file: never a command, a standard stream or a device.
file_ptr FILE_open_data(const std::string& file);
/// True for what can be read only once: a standard stream name, "|command" or a FIFO.
int FILE_is_stream(const std::string& file);
/// Name under which a file can be read at any place and as often as wanted. Of a stream that is the copy of what it
/// holds to its end, made at the first call and gone when the program ends; empty, with a warning, if it can't be kept.
std::string FILE_keep_stream(const std::string& file);
/// Kind of a native file by its first bytes: 11 surface, 12 upper air, 5 raw, 6 grid, 8 metafile, 9 image; else -1.
int FILE_type(const std::string& filename);
/// Cuts a selector off a file name at the first "#", "-", "+" or ":" from the third character on. The selector goes to
/// `info` with that character in front. 1 if there was one, else 0.
int FILE_extract_extra_info(std::string& file, std::string& info);

// File selection

/// Establishes the current file by the resources "filename" and "current" or by asking. 1 if it exists. Ends the
/// program with 10 if a rule or the user's answers lead to no file.
int FILE_get_file(const std::string& prompt, std::string& outfile);
int FILE_get_file(const std::string& prompt);
/// Reads a text against the template: completes the name and takes the date from it. Result 0.
int FILE_set_file(const std::string& file, std::string& out_file);
/// Builds the name of a date, null for the file's date. 0 when made from a template, 1 when none applies.
int FILE_set_date(const Date* datim, std::string& out_file);
/// The same with the header template. 1 if a name came out, else 0.
int FILE_hdr_set_date(const Date* datim, std::string& out_file);
/// Name of the date `offset` seconds from `datim`. Result: `offset` in steps of the template.
int FILE_set_date_off(const Date* datim, int offset, std::string& out_file);
/// Name by a time rule such as "la", "-6" or "la-12", null for "la". Result: the time chosen, in seconds since 1970,
/// cut to a multiple of the step.
long FILE_set_current(const char* cur, std::string& filename);
/// Shows the files that fit the template.
void FILE_list_file();
/// Date that the last walk over a template established.
void FILE_get_date(Date* date);
/// The forced date: fields that replace those of every name built; a negative field is a period.
void FILE_set_time(const Date* datim);
void FILE_get_time(Date* datim);
void FILE_reset_time();
/// What to do with an output file: 1 overwrite, 2 append, 3 use the existing one, 0 no decision. With `flag` 1 the user
/// is asked, with 2 appending is offered too.
int FILE_overwrite(const std::string& filename, int flag);

// File sequence, by the resources "filename" and "num_hour". Times in seconds.

/// Starts the sequence at a date.
void FILE_first(const Date* datim);
/// The next name. 1, or 0 at the end.
int FILE_get_next(std::string& file);
/// The name one step after or before the current one. Result 1.
int FILE_next_file(std::string& file);
int FILE_prev_file(std::string& file);
/// Length of the sequence, or the number of given names less one.
int FILE_get_num_file();
/// Length and step by the resource "num_hour".
int FILE_num_hour();
int FILE_get_skip();
/// State of the sequence.
int FILE_get_offset();
int FILE_get_num_hour();
int FILE_get_nsecs();
void FILE_set_nsecs(int val);
/// Length without the resource.
void FILE_set_def_hours(int hour);

}  // namespace zav
