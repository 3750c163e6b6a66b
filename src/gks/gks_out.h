#pragma once

/// The output of a workstation that writes: a new file, an existing one to add to, or a pipe to a command. A write that
/// fails (a full disk, a command that has gone) is remembered and told when the output is closed.

#include <cstdarg>
#include <cstddef>
#include <cstdio>
#include <memory>
#include <string>
#include <string_view>

#include <csignal>

#include "frame/tools.h"

namespace zav {

/// Ways that an output name asks for.
enum class Gout_mode { create, append, pipe };

/// "|" pipe, "+" append, anything else create.
Gout_mode gout_mode(const std::string& filename);

class Gout_file {
  public:
    Gout_file() = default;
    Gout_file(const Gout_file&) = delete;
    Gout_file& operator=(const Gout_file&) = delete;
    ~Gout_file();

    /// Opens the output, closing a former one. False on failure.
    bool open(const std::string& filename);
    bool is_open() const { return file_ != nullptr || pipe_ != nullptr; }
    bool appended() const { return mode_ == Gout_mode::append; }

    void vprintf(const char* format, std::va_list args) __attribute__((format(printf, 2, 0)));
    void write(const void* data, std::size_t size);
    void write(std::string_view text) { write(text.data(), text.size()); }

    /// Closes. True if all that was written has arrived; otherwise warns, in the name of `func`.
    bool close(const char* func);

  private:
    struct pipe_closer {
        void operator()(std::FILE* file) const;
    };

    std::FILE* stream() const { return pipe_ ? pipe_.get() : file_.get(); }
    void note_error();
    void ignore_broken_pipe();
    void restore_broken_pipe();
    int close_stream();

    file_ptr file_;
    std::unique_ptr<std::FILE, pipe_closer> pipe_;
    Gout_mode mode_ = Gout_mode::create;
    std::string name_;
    int error_ = 0;  ///< errno of the first write that failed
    bool signal_changed_ = false;
    struct sigaction old_signal_ = {};
};

/// A text as it may stand in a line of a file: control characters become blanks.
std::string gout_line(const std::string& text);

}  // namespace zav
