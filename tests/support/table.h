#pragma once

#include <fstream>
#include <map>
#include <sstream>
#include <string>
#include <vector>

#include "support/support.h"

namespace zav::test {

/// A text with "\\n", "\\r" and "\\x01" of a table as the characters that they stand for.
inline std::string unescaped(std::string text) {
    for (const auto& [mark, character] : {std::pair{"\\n", "\n"}, {"\\r", "\r"}, {"\\x01", "\x01"}}) {
        for (std::size_t at = 0; (at = text.find(mark, at)) != std::string::npos;) {
            text.replace(at, std::string(mark).size(), character);
        }
    }
    return text;
}

/// A row of a table, by the names of its columns.
using Row = std::map<std::string, std::string>;

/// The parts of a text between separators; an empty last one doesn't count.
inline std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream in(text);
    for (std::string part; std::getline(in, part, separator);) parts.push_back(part);
    return parts;
}

/// The rows of a tab-separated file, whose first line names the columns.
inline std::vector<Row> read_table(const std::string& path) {
    std::ifstream in(path);
    EXPECT_TRUE(in) << path;
    std::string line;
    std::getline(in, line);
    const std::vector<std::string> names = split(line, '\t');
    std::vector<Row> rows;
    while (std::getline(in, line)) {
        const std::vector<std::string> words = split(line, '\t');
        Row& row = rows.emplace_back();
        for (std::size_t i = 0; i < words.size() && i < names.size(); ++i) row[names[i]] = words[i];
    }
    return rows;
}

/// A table of tests/data.
inline std::vector<Row> data_table(const std::string& name) { return read_table(data_folders().front() + "/" + name); }

}  // namespace zav::test
