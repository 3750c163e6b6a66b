#pragma once

#include <map>
#include <string>
#include <vector>

namespace zav::test {

// Tables of cases: text files with tabs between the cells of a line. Lines that begin with "# " are remarks.

/// The parts of a text between separators; an empty last one doesn't count.
std::vector<std::string> split(const std::string& text, char separator);

/// A text with its escapes as the characters that they stand for: \\n, \\r, \\xHH, and a backslash for two.
std::string unescaped(const std::string& text);

using Cells = std::vector<std::string>;
/// The rows of a file as they stand. One without rows fails the test.
std::vector<Cells> read_cells(const std::string& path);
/// The rows of tests/data/NAME.
std::vector<Cells> data_cells(const std::string& name);

/// A row by the names of its columns.
using Row = std::map<std::string, std::string>;
/// The rows of a file whose first line names the columns.
std::vector<Row> read_table(const std::string& path);
/// The same of tests/data/NAME.
std::vector<Row> data_table(const std::string& name);

/// One case of a table, its cells unescaped, empty behind the last.
class Case {
  public:
    explicit Case(const Cells& cells);

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

/// The cases of tests/data/NAME.tsv.
std::vector<Case> cases(const std::string& name);

}  // namespace zav::test
