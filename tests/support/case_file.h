#pragma once

#include <string>
#include <vector>

namespace zav::test {

/// One case of a table: the fields of a line, empty behind the last.
class Case {
  public:
    explicit Case(const std::string& line);

    std::string text(std::size_t column) const { return column < fields_.size() ? fields_[column] : std::string(); }
    /// A number; "MISS" is the missing one.
    double real(std::size_t column) const;
    int number(std::size_t column) const { return static_cast<int>(real(column)); }
    /// The whole line, for messages.
    const std::string& line() const { return line_; }

  private:
    std::string line_;
    std::vector<std::string> fields_;
};

/// The cases of tests/data/NAME.tsv: tabs divide fields, a backslash stands before n, r and itself, lines that begin
/// with "# " are comments. A file without cases fails the test.
std::vector<Case> cases(const std::string& name);

}  // namespace zav::test
