#pragma once

#include <gtest/gtest.h>

#include <filesystem>
#include <functional>
#include <string>
#include <vector>

namespace zav::test {

/// A directory of its own below the system's temporary folder, removed with all that is in it.
class TempDir {
  public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    const std::filesystem::path& path() const { return path_; }
    /// Path of a file in it.
    std::string file(const std::string& name) const { return (path_ / name).string(); }
    /// Writes `content` to a file in it, directories included; its path.
    std::string write(const std::string& name, const std::string& content) const;

  private:
    std::filesystem::path path_;
};

/// Fixture whose tests run inside an empty temporary directory.
class TempDirTest : public ::testing::Test {
  protected:
    TempDirTest();
    ~TempDirTest() override;

    TempDir dir;

  private:
    std::filesystem::path before_;
};

/// What a call wrote.
struct Output {
    std::string out;
    std::string err;
};

/// Runs `action` with `input` on standard input and both outputs caught.
Output capture(const std::function<void()>& action, const std::string& input = {});

/// Content of a file, empty if there is none.
std::string read_file(const std::string& path);
/// Writes a file. True on success.
bool write_file(const std::string& path, const std::string& content);

/// Runs a shell command; its standard output, and its exit status in `status`.
std::string run_command(const std::string& command, int* status = nullptr);
/// True if a program of that name can be run.
bool have_program(const std::string& name);

/// The name of a parametrised test's case: letters and digits of `text`, anything else as "_".
std::string case_name(std::string text);

/// The folder of the project, absolute.
std::string source_dir();
/// The program under test.
std::string program_path();

/// Why a test is skipped whose file `data_file` doesn't find; script/test counts these words.
inline constexpr const char* NO_DATA_FILE = "needs the large model files of ZAV_TEST_DATA";

/// The folders with model files and the list of their fields, inventory.tsv: tests/data, and that which ZAV_TEST_DATA
/// names, if it holds them. A relative name starts at the folder of the project.
std::vector<std::string> data_folders();
/// Path of a file in one of them, empty if none has it.
std::string data_file(const std::string& name);

/// An environment variable for the life of this object; a null value removes it.
class EnvSetting {
  public:
    EnvSetting(const std::string& name, const char* value);
    ~EnvSetting();
    EnvSetting(const EnvSetting&) = delete;
    EnvSetting& operator=(const EnvSetting&) = delete;

  private:
    std::string name_;
    std::string before_;
    bool was_set_;
};

}  // namespace zav::test
