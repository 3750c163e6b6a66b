#include "files/lookup_lines.h"

#include <sys/stat.h>

#include "files/files.h"
#include "frame/string.h"
#include "frame/tools.h"

namespace zav {
namespace {

struct State {
    int holds = 0;
};
State state;

}  // namespace

LookupHold::LookupHold() { state.holds++; }

LookupHold::~LookupHold() { state.holds--; }

std::vector<std::string> split_blanks(const std::string& text) {
    constexpr const char* BLANKS = " \t\r";
    std::vector<std::string> words;
    std::size_t start = text.find_first_not_of(BLANKS);
    while (start != std::string::npos) {
        const std::size_t end = text.find_first_of(BLANKS, start);
        words.push_back(text.substr(start, end - start));
        start = end == std::string::npos ? end : text.find_first_not_of(BLANKS, end);
    }
    return words;
}

bool LookupLines::load(const std::string& path) {
    if (state.holds > 0 && stamp_ >= 0 && path == path_) return true;
    struct stat info {};
    const bool regular = stat(FILE_add_user_path(path).c_str(), &info) == 0 && S_ISREG(info.st_mode);
    const long stamp = regular ? info.st_mtim.tv_sec * 1000000000L + info.st_mtim.tv_nsec : -1;
    const long size = regular ? static_cast<long>(info.st_size) : -1;
    if (regular && path == path_ && stamp == stamp_ && size == size_) return true;

    lines_.clear();
    changes_++;
    path_ = path;
    stamp_ = stamp;
    size_ = size;
    const file_ptr file = FILE_open(path, "r");
    if (!file) return false;
    std::string line;
    while (fgetline(file.get(), line) >= 0) {
        if (line.empty() || line[0] == '#' || string_is_blank(line)) continue;
        lines_.push_back(line);
    }
    return true;
}

}  // namespace zav
