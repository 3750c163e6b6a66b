#include "support/support.h"

#include <fcntl.h>
#include <stdio_ext.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <sstream>
#include <stdexcept>

namespace zav::test {
namespace {

/// Puts a file in the place of a standard descriptor until the end of its life.
class Redirection {
  public:
    Redirection(int descriptor, const std::string& path, int flags) : descriptor_(descriptor), saved_(dup(descriptor)) {
        const int file = open(path.c_str(), flags, 0600);
        dup2(file, descriptor_);
        close(file);
    }
    ~Redirection() {
        dup2(saved_, descriptor_);
        close(saved_);
    }
    Redirection(const Redirection&) = delete;
    Redirection& operator=(const Redirection&) = delete;

  private:
    int descriptor_;
    int saved_;
};

void flush_outputs() {
    std::cout.flush();
    std::cerr.flush();
    std::fflush(stdout);
    std::fflush(stderr);
}

void forget_input() {
    __fpurge(stdin);
    std::clearerr(stdin);
}

}  // namespace

TempDir::TempDir() {
    std::string name = (std::filesystem::temp_directory_path() / "zavtest.XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary directory");
    path_ = name;
}

TempDir::~TempDir() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
}

std::string TempDir::write(const std::string& name, const std::string& content) const {
    const std::filesystem::path target = path_ / name;
    std::filesystem::create_directories(target.parent_path());
    write_file(target.string(), content);
    return target.string();
}

TempDirTest::TempDirTest() : before_(std::filesystem::current_path()) { std::filesystem::current_path(dir.path()); }

TempDirTest::~TempDirTest() { std::filesystem::current_path(before_); }

Output capture(const std::function<void()>& action, const std::string& input) {
    const TempDir folder;
    const std::string in = folder.write("in", input);
    flush_outputs();
    forget_input();
    {
        const Redirection from(STDIN_FILENO, in, O_RDONLY);
        const Redirection out(STDOUT_FILENO, folder.file("out"), O_WRONLY | O_CREAT | O_TRUNC);
        const Redirection err(STDERR_FILENO, folder.file("err"), O_WRONLY | O_CREAT | O_TRUNC);
        action();
        flush_outputs();
        forget_input();
    }
    return {read_file(folder.file("out")), read_file(folder.file("err"))};
}

std::string read_file(const std::string& path) {
    std::ifstream in(path, std::ios::binary);
    std::ostringstream text;
    text << in.rdbuf();
    return text.str();
}

bool write_file(const std::string& path, const std::string& content) {
    std::ofstream out(path, std::ios::binary);
    out.write(content.data(), static_cast<std::streamsize>(content.size()));
    return out.good();
}

std::string run_command(const std::string& command, int* status) {
    std::string text;
    std::fflush(nullptr);
    FILE* pipe = popen(command.c_str(), "r");
    if (pipe == nullptr) {
        if (status != nullptr) *status = -1;
        return text;
    }
    std::array<char, 4096> part;
    for (size_t n = 0; (n = fread(part.data(), 1, part.size(), pipe)) > 0;) text.append(part.data(), n);
    const int end = pclose(pipe);
    if (status != nullptr) *status = WIFEXITED(end) ? WEXITSTATUS(end) : -1;
    return text;
}

bool have_program(const std::string& name) {
    int status = 0;
    run_command("command -v " + name, &status);
    return status == 0;
}

std::string case_name(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](unsigned char c) { return std::isalnum(c) == 0; }, '_');
    return text;
}

std::string source_dir() { return ZAV_SOURCE_DIR; }

std::string program_path() { return ZAV_PROGRAM; }

std::vector<std::string> data_folders() {
    std::vector<std::string> folders{source_dir() + "/tests/data"};
    const char* given = std::getenv("ZAV_TEST_DATA");
    if (given != nullptr) {
        const std::filesystem::path folder = std::filesystem::path(source_dir()) / given;
        if (std::filesystem::exists(folder / "inventory.tsv")) folders.push_back(folder.string());
    }
    return folders;
}

std::string data_file(const std::string& name) {
    for (const std::string& folder : data_folders()) {
        const std::filesystem::path path = std::filesystem::path(folder) / name;
        if (std::filesystem::exists(path)) return path.string();
    }
    return {};
}

EnvSetting::EnvSetting(const std::string& name, const char* value) : name_(name) {
    const char* now = std::getenv(name.c_str());
    was_set_ = now != nullptr;
    if (was_set_) before_ = now;
    if (value != nullptr) {
        setenv(name.c_str(), value, 1);
    } else {
        unsetenv(name.c_str());
    }
}

EnvSetting::~EnvSetting() {
    if (was_set_) {
        setenv(name_.c_str(), before_.c_str(), 1);
    } else {
        unsetenv(name_.c_str());
    }
}

}  // namespace zav::test
