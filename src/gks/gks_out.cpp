#include "gks/gks_out.h"

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>
#include <exception>

#include "files/files.h"
#include "frame/mess.h"
#include "frame/status.h"
#include "frame/system.h"

namespace zav {

namespace {

constexpr std::size_t USUAL_LENGTH = 256;  // of a formatted line

}  // namespace

Gout_mode gout_mode(const std::string& filename) {
    if (filename.starts_with('|')) return Gout_mode::pipe;
    if (filename.starts_with('+')) return Gout_mode::append;
    return Gout_mode::create;
}

void gout_tell(const std::string& filename) {
    const Gout_mode mode = gout_mode(filename);
    const char* name = filename.c_str() + (mode == Gout_mode::create ? 0 : 1);
    switch (mode) {
        case Gout_mode::pipe:
            MESS_print(MESS_PROGRESS, "Spooling to: %s\n", name);
            break;
        case Gout_mode::append:
            MESS_print(MESS_PROGRESS, "Appending to: %s\n", name);
            break;
        case Gout_mode::create:
            MESS_print(MESS_PROGRESS, "Creating: %s\n", name);
            break;
    }
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
    if (kept_) {
        close_stream();
    } else {
        abandon();
    }
}

bool Gout_file::open(const std::string& filename) {
    if (open_) close("Gout_file::open");
    mode_ = gout_mode(filename);
    name_ = mode_ == Gout_mode::create ? filename : filename.substr(1);
    error_ = 0;
    cut_ = 0;
    kept_ = created_ = open_ = false;
    waiting_.clear();
    if (name_.empty()) return false;
    if (mode_ != Gout_mode::pipe) {
        created_ = !FILE_exist(name_);
        file_ = FILE_open(name_, "a");  // the mode that leaves an existing file alone
        if (!file_) return false;
    }
    open_ = true;
    return true;
}

std::string Gout_file::end_of_file(std::size_t most) const {
    if (mode_ != Gout_mode::append || FILE_is_stdio(name_)) return {};
    const file_ptr file = FILE_open_data(FILE_add_user_path(name_));
    if (!file || std::fseek(file.get(), 0, SEEK_END) != 0) return {};
    const long size = std::ftell(file.get());
    const auto count = std::min(static_cast<std::size_t>(std::max(size, 0L)), most);
    std::string text(count, '\0');
    if (std::fseek(file.get(), -static_cast<long>(count), SEEK_END) != 0) return {};
    text.resize(std::fread(text.data(), 1, count, file.get()));
    return text;
}

void Gout_file::vprintf(const char* format, std::va_list args) {
    if (!open_ || error_ != 0) return;
    if (kept_) {
        if (std::vfprintf(stream(), format, args) < 0) note_error();
        return;
    }
    std::array<char, USUAL_LENGTH> line;
    std::va_list again;
    va_copy(again, args);
    const int length = std::vsnprintf(line.data(), line.size(), format, args);
    const std::size_t size = length > 0 ? static_cast<std::size_t>(length) : 0;
    try {
        if (size < line.size()) {
            waiting_.append(line.data(), size);
        } else {
            const std::size_t start = waiting_.size();
            waiting_.resize(start + size + 1);
            std::vsnprintf(waiting_.data() + start, size + 1, format, again);
            waiting_.pop_back();
        }
    } catch (const std::exception&) {
        error_ = ENOMEM;
    }
    va_end(again);
}

void Gout_file::write(const void* data, std::size_t size) {
    if (!open_ || error_ != 0 || size == 0) return;
    if (kept_) {
        if (std::fwrite(data, 1, size, stream()) != size) note_error();
        return;
    }
    try {
        waiting_.append(static_cast<const char*>(data), size);
    } catch (const std::exception&) {
        error_ = ENOMEM;
    }
}

void Gout_file::keep() {
    if (!open_ || kept_) return;
    kept_ = true;
    if (mode_ == Gout_mode::pipe) {
        start_pipe();
    } else {
        cut_file();
    }
    write(waiting_);
    waiting_ = {};
}

void Gout_file::start_pipe() {
    std::fflush(nullptr);  // what was said so far comes before what the command says
    ZAV_survive_broken_pipes();
    pipe_.reset(popen(name_.c_str(), "w"));
    if (!pipe_) note_error();
}

/// Takes off what isn't to stay of an existing file. What is no regular file has nothing to take off.
void Gout_file::cut_file() {
    const int descriptor = fileno(file_.get());
    struct stat info {};
    if (file_.get() == stdout || fstat(descriptor, &info) != 0 || !S_ISREG(info.st_mode)) return;
    const bool all = mode_ == Gout_mode::create;
    const off_t rest = all ? 0 : std::max<off_t>(info.st_size - static_cast<off_t>(cut_), 0);
    if (rest != info.st_size && ftruncate(descriptor, rest) != 0) note_error();
}

bool Gout_file::close(const char* func) {
    if (!open_) return true;
    keep();
    if (stream() != nullptr && std::fflush(stream()) != 0) note_error();
    const int status = close_stream();
    if (error_ != 0) {
        MESS_print(MESS_WARN, "%s: Output is not complete: %s: %s\n", func, name_.c_str(), std::strerror(error_));
    } else if (status != 0) {
        MESS_print(MESS_WARN, "%s: Command failed: %s\n", func, name_.c_str());
    }
    if (error_ != 0 || status != 0) ZAV_note(STATUS_OUTPUT);
    return error_ == 0 && status == 0;
}

void Gout_file::abandon() {
    if (!open_ || kept_) return;
    waiting_ = {};
    file_.reset();
    open_ = false;
    if (created_) FILE_delete(name_);
}

void Gout_file::note_error() {
    if (error_ == 0) error_ = errno != 0 ? errno : EIO;
}

/// Closes what is open. Not 0 if the command of a pipe failed.
int Gout_file::close_stream() {
    open_ = kept_ = false;
    if (pipe_) {
        const int status = pclose(pipe_.release());
        return status != -1 && WIFEXITED(status) && WEXITSTATUS(status) == 0 ? 0 : 1;
    }
    if (!file_) return 0;
    if (file_.get() == stdout) {
        static_cast<void>(file_.release());
    } else if (std::fclose(file_.release()) != 0) {
        note_error();
    }
    return 0;
}

}  // namespace zav
