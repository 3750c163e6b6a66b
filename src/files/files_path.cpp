#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <vector>

#include "files/files.h"
#include "frame/string.h"

namespace zav {
namespace {

bool file_status(const std::string& file, struct stat& info) {
    return stat(FILE_add_user_path(file).c_str(), &info) == 0;
}

bool has_mode(const std::string& file, mode_t kind) {
    struct stat info {};
    return file_status(file, info) && (info.st_mode & S_IFMT) == kind;
}

/// Home directory of a user, of the present one for an empty name. Empty if there is none.
std::string home_directory(const std::string& user) {
    const passwd* entry = user.empty() ? getpwuid(getuid()) : getpwnam(user.c_str());
    return entry != nullptr && entry->pw_dir != nullptr ? entry->pw_dir : "";
}

}  // namespace

int FILE_fullpath(const std::string& filename) {
    return !filename.empty() && (filename[0] == '/' || filename[0] == '.' || filename[0] == '~');
}

std::string FILE_add_path(const char* path, const std::string& file) {
    if (FILE_is_stdio(file) || FILE_fullpath(file)) return file;
    std::string full = path != nullptr ? path : "";
    FILE_add_path_delim(full);
    return full + file;
}

const std::string& FILE_add_path(const char* path, const std::string& file, std::string& filename) {
    return filename = FILE_add_path(path, file);
}

void FILE_add_path_delim(std::string& path) {
    if (!path.empty() && path.back() != '/') path += '/';
}

std::string FILE_add_user_path(const std::string& file) {
    if (file.empty() || file[0] != '~') return file;
    const std::size_t slash = std::min(file.find('/'), file.size());
    const std::string home = home_directory(file.substr(1, slash - 1));
    return home.empty() ? file : home + file.substr(slash);
}

void FILE_add_user_path(const std::string& file, std::string& filename) { filename = FILE_add_user_path(file); }

int FILE_exist(const std::string& file) {
    struct stat info {};
    return FILE_is_stdio(file) || file_status(file, info);
}

int FILE_is_stdio(const std::string& file) {
    return file.empty() || file == "-" || stricmp(file, "std") == 0 || stricmp(file, "stdn") == 0;
}

int FILE_is_dir(const std::string& file) { return has_mode(file, S_IFDIR); }

int FILE_is_file(const std::string& file) { return has_mode(file, S_IFREG); }

int FILE_is_fifo(const std::string& file) { return has_mode(file, S_IFIFO); }

int FILE_is_device(const std::string& file) { return has_mode(file, S_IFCHR) || has_mode(file, S_IFBLK); }

long FILE_size(const std::string& file) {
    struct stat info {};
    return file_status(file, info) ? static_cast<long>(info.st_size) : -1;
}

long FILE_modtime(const std::string& file) {
    struct stat info {};
    return file_status(file, info) ? static_cast<long>(info.st_mtime) : -1;
}

int FILE_delete(const std::string& file) { return std::remove(FILE_add_user_path(file).c_str()) == 0 ? 0 : -1; }

int FILE_make_dir(std::string& dir, int flag) {
    std::replace(dir.begin(), dir.end(), '\\', '/');
    const std::size_t last = dir.rfind('/');
    if (FILE_exist(last == std::string::npos ? "" : dir.substr(0, last))) return 1;

    const std::vector<std::string> pieces = parse_string(dir, '/');
    const int count = static_cast<int>(pieces.size()) - flag;
    std::string path;
    for (int i = 0; i < count; i++) {
        if (pieces[i].empty()) {
            FILE_add_path_delim(path);
            if (path.empty()) path.assign(1, '/');
            continue;
        }
        path += pieces[i] + "/";
        mkdir(path.c_str(), 0755);  // one that is there already is as good
    }
    return 0;
}

file_ptr FILE_open(const std::string& file, const char* access) {
    if (access == nullptr || access[0] == '\0') return nullptr;
    const bool reading = access[0] == 'r';
    if (FILE_is_stdio(file)) return file_ptr(reading ? stdin : stdout);
    if (file[0] == '|') return file_ptr(popen(file.c_str() + 1, reading ? "r" : "w"));
    std::string path = FILE_add_user_path(file);
    if (access[0] == 'w' || access[0] == 'a') FILE_make_dir(path, 1);
    if (FILE_is_dir(path)) return nullptr;
    return file_ptr(std::fopen(path.c_str(), access));
}

file_ptr FILE_open_data(const std::string& file) {
    struct stat info {};
    if (stat(file.c_str(), &info) != 0 || !S_ISREG(info.st_mode)) return nullptr;
    return file_ptr(std::fopen(file.c_str(), "r"));
}

int FILE_type(const std::string& filename) {
    struct Magic {
        const char* text;
        int kind;
    };
    static constexpr std::array<Magic, 6> magics = {
        {{"ZAVSFC", 11}, {"ZAVUPA", 12}, {"ZAVRAW", 5}, {"ZAVGRID", 6}, {"ZAVMETA", 8}, {"ZAVIMG", 9}}};

    if (FILE_is_stdio(filename)) return -1;  // what is read from a stream is lost to the reader
    file_ptr file = FILE_open(filename, "r");
    const std::size_t dash = filename.find('-');
    if (!file && dash != std::string::npos && dash > 0) file = FILE_open(filename.substr(0, dash), "r");
    if (!file) return -1;
    std::array<char, 10> buffer{};
    const std::size_t count = std::fread(buffer.data(), 1, buffer.size(), file.get());
    const std::string start(buffer.data(), count);
    for (const Magic& magic : magics)
        if (start.starts_with(magic.text)) return magic.kind;
    return -1;
}

int FILE_extract_extra_info(std::string& file, std::string& info) {
    info.clear();
    const std::size_t at = file.find_first_of("#-+:", 2);
    if (at == std::string::npos) return 0;
    info = file.substr(at);
    file.resize(at);
    return 1;
}

}  // namespace zav
