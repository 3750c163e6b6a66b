#include "gks/gks_out.h"

#include <sys/wait.h>
#include <cerrno>
#include <cstring>

#include "files/files.h"
#include "frame/mess.h"

namespace zav {

Gout_mode gout_mode(const std::string& filename) {
    if (filename.starts_with('|')) return Gout_mode::pipe;
    if (filename.starts_with('+')) return Gout_mode::append;
    return Gout_mode::create;
}

std::string gout_line(const std::string& text) {
    std::string line = text;
    for (char& c : line) {
        const auto byte = static_cast<unsigned char>(c);
        if (byte < 0x20 || byte == 0x7F) c = ' ';
    }
    return line;
}

void Gout_file::pipe_closer::operator()(std::FILE* file) const {
    if (file != nullptr) pclose(file);
}

Gout_file::~Gout_file() {
    if (is_open()) close_stream();
    restore_broken_pipe();
}

bool Gout_file::open(const std::string& filename) {
    if (is_open()) close("Gout_file::open");
    mode_ = gout_mode(filename);
    error_ = 0;
    name_ = mode_ == Gout_mode::create ? filename : filename.substr(1);
    if (name_.empty()) return false;
    if (mode_ == Gout_mode::pipe) {
        std::fflush(nullptr);  // what was said so far comes before what the command says
        pipe_.reset(popen(name_.c_str(), "w"));
        if (pipe_) ignore_broken_pipe();
    } else {
        file_ = FILE_open(name_, mode_ == Gout_mode::append ? "a" : "w");
    }
    return is_open();
}

void Gout_file::vprintf(const char* format, std::va_list args) {
    if (!is_open() || error_ != 0) return;
    if (std::vfprintf(stream(), format, args) < 0) note_error();
}

void Gout_file::write(const void* data, std::size_t size) {
    if (!is_open() || error_ != 0 || size == 0) return;
    if (std::fwrite(data, 1, size, stream()) != size) note_error();
}

bool Gout_file::close(const char* func) {
    if (!is_open()) return true;
    if (std::fflush(stream()) != 0) note_error();
    const int status = close_stream();
    restore_broken_pipe();
    if (error_ != 0) {
        MESS_print(MESS_WARN, "%s: Output is not complete: %s: %s\n", func, name_.c_str(), std::strerror(error_));
    } else if (status != 0) {
        MESS_print(MESS_WARN, "%s: Command failed: %s\n", func, name_.c_str());
    }
    return error_ == 0 && status == 0;
}

void Gout_file::note_error() {
    if (error_ == 0) error_ = errno != 0 ? errno : EIO;
}

// A command that ends early turns the next write into a signal whose default ends the program; ignored, it is an error
// of that write. Set after the command has started, since an ignored signal would be handed down to it.
void Gout_file::ignore_broken_pipe() {
    struct sigaction ignore = {};
    ignore.sa_handler = SIG_IGN;
    signal_changed_ = sigaction(SIGPIPE, &ignore, &old_signal_) == 0;
}

void Gout_file::restore_broken_pipe() {
    if (signal_changed_) sigaction(SIGPIPE, &old_signal_, nullptr);
    signal_changed_ = false;
}

/// Closes what is open. Not 0 if the command of a pipe failed.
int Gout_file::close_stream() {
    if (pipe_) {
        const int status = pclose(pipe_.release());
        return status != -1 && WIFEXITED(status) && WEXITSTATUS(status) == 0 ? 0 : 1;
    }
    if (file_.get() == stdout) {
        static_cast<void>(file_.release());
    } else if (std::fclose(file_.release()) != 0) {
        note_error();
    }
    return 0;
}

}  // namespace zav
