#pragma once

/// The output of a workstation that writes: a new file, an existing one to add to, or a pipe to a command.
///
/// What is written waits until `keep` says that it holds something worth keeping: up to there an existing file is
/// untouched and no command has started, so that a plot that fails leaves nothing behind. A write that fails (a full
/// disk, a command that has gone) is remembered and told when the output is closed.

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include "frame/tools.h"

namespace zav {

/// Ways that an output name asks for.
enum class Gout_mode { create, append, pipe };

/// "|" pipe, "+" append, anything else create.
Gout_mode gout_mode(const std::string& filename);
/// Says what becomes of the file of that name.
void gout_tell(const std::string& filename);

class Gout_file {
  public:
    Gout_file() = default;
    Gout_file(const Gout_file&) = delete;
    Gout_file& operator=(const Gout_file&) = delete;
    ~Gout_file();

    /// Opens the output, closing a former one. False if it can't be written to.
    bool open(const std::string& filename);
    bool is_open() const { return open_; }
    bool appended() const { return mode_ == Gout_mode::append; }

    /// The last `most` bytes of an existing file that is to be added to.
    std::string end_of_file(std::size_t most) const;
    /// Has the last `bytes` of that file taken off before anything is added.
    void cut_end(std::size_t bytes) { cut_ = bytes; }

    void vprintf(const char* format, std::va_list args) __attribute__((format(printf, 2, 0)));
    void write(const void* data, std::size_t size);
    void write(std::string_view text) { write(text.data(), text.size()); }

    /// From here on what was and is written goes to its place.
    void keep();
    bool kept() const { return kept_; }

    /// Keeps and closes. True if all that was written has arrived; otherwise warns, in the name of `func`, and notes
    /// the status.
    bool close(const char* func);
    /// Closes an output that isn't kept and leaves everything as it was before the opening.
    void abandon();

  private:
    struct pipe_closer {
        void operator()(std::FILE* file) const;
    };

    std::FILE* stream() const { return pipe_ ? pipe_.get() : file_.get(); }
    void start_pipe();
    void cut_file();
    void note_error();
    int close_stream();

    file_ptr file_;
    std::unique_ptr<std::FILE, pipe_closer> pipe_;
    Gout_mode mode_ = Gout_mode::create;
    std::string name_;
    bool open_ = false;
    bool kept_ = false;
    bool created_ = false;  ///< the file wasn't there before
    std::size_t cut_ = 0;   ///< bytes to take off an existing file
    std::string waiting_;   ///< written, and not kept yet
    int error_ = 0;         ///< errno of the first write that failed
};

/// A text as it may stand in a line of a file: control characters become blanks.
std::string gout_line(const std::string& text);

}  // namespace zav
