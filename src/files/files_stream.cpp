// Streams that can be read only once, kept aside so that a reader can go back in them.

#include <sys/wait.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <deque>

#include "files/files.h"
#include "frame/mess.h"
#include "frame/string.h"

namespace zav {
namespace {

/// Commands and FIFOs kept at the same time. What is older is read anew.
constexpr std::size_t KEPT_MAX = 8;

/// What a stream held, in a temporary file without a name: it is gone with the program, however that ends.
struct Kept {
    std::string source;
    file_ptr copy;
};

struct State {
    Kept input;  ///< standard input, which can't be read anew
    std::deque<Kept> streams;
};
State state;

bool is_command(const std::string& file) { return file[0] == '|'; }

bool copy_stream(std::FILE* from, std::FILE* to) {
    std::array<char, 65536> block{};
    std::size_t size = 0;
    while ((size = std::fread(block.data(), 1, block.size(), from)) > 0) {
        if (std::fwrite(block.data(), 1, size, to) != size) return false;
    }
    return std::ferror(from) == 0 && std::fflush(to) == 0;
}

/// Ends a command. Its part of the data is used all the same: a damaged archive may still hold what is wanted.
void end_command(file_ptr stream, const std::string& source) {
    const int status = pclose(stream.release());
    if (status == 0) return;
    const int told = status > 0 && WIFEXITED(status) ? WEXITSTATUS(status) : status;
    MESS_print(MESS_WARN, "Command ended with status %d: %s\n", told, source.c_str() + 1);
}

/// Reads a stream to its end. Without a copy if it can't be opened or kept.
Kept keep(const std::string& source) {
    file_ptr stream = FILE_open(source, "r");
    if (!stream) return {source, nullptr};
    file_ptr copy(std::tmpfile());
    if (!copy || !copy_stream(stream.get(), copy.get())) {
        MESS_print(MESS_WARN, "No room to keep what is read from: %s\n", source.c_str());
        copy = nullptr;
    }
    if (is_command(source)) end_command(std::move(stream), source);
    return {source, std::move(copy)};
}

const Kept& find_or_keep(const std::string& file) {
    if (FILE_is_stdio(file)) {
        if (!state.input.copy) state.input = keep("-");
        return state.input;
    }
    const auto known =
        std::find_if(state.streams.begin(), state.streams.end(), [&](const Kept& row) { return row.source == file; });
    if (known != state.streams.end()) return *known;
    if (state.streams.size() == KEPT_MAX) state.streams.pop_front();
    return state.streams.emplace_back(keep(file));
}

}  // namespace

int FILE_is_stream(const std::string& file) { return FILE_is_stdio(file) || is_command(file) || FILE_is_fifo(file); }

std::string FILE_keep_stream(const std::string& file) {
    if (!FILE_is_stream(file)) return file;
    const Kept& kept = find_or_keep(file);
    if (!kept.copy) return "";
    return text_format("/proc/self/fd/%d", fileno(kept.copy.get()));
}

}  // namespace zav
