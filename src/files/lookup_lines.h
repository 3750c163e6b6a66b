#pragma once

#include <string>
#include <vector>

namespace zav {

/// Words of a text between blanks and tabs.
std::vector<std::string> split_blanks(const std::string& text);

/// The lines of a small lookup file, read once and again only when the file changed.
class LookupLines {
  public:
    /// Reads the file unless it is the one held, unchanged. False, with no lines, if it can't be read.
    bool load(const std::string& path);
    /// Its lines without comments ("#" in front) and empty ones.
    const std::vector<std::string>& lines() const { return lines_; }
    /// Goes up each time the lines are read anew.
    int changes() const { return changes_; }

  private:
    std::string path_;
    long stamp_ = -1;  // time of change in nanoseconds
    long size_ = -1;
    std::vector<std::string> lines_;
    int changes_ = 0;
};

/// While one lives, lookup files that have been read are taken as unchanged: for walks that look things up at each
/// step.
class LookupHold {
  public:
    LookupHold();
    ~LookupHold();
    LookupHold(const LookupHold&) = delete;
    LookupHold& operator=(const LookupHold&) = delete;
};

}  // namespace zav
