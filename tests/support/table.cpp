#include "support/table.h"

#include <fstream>
#include <sstream>

#include "frame/zav.h"
#include "support/support.h"

namespace zav::test {

std::vector<std::string> split(const std::string& text, char separator) {
    std::vector<std::string> parts;
    std::istringstream in(text);
    for (std::string part; std::getline(in, part, separator);) parts.push_back(part);
    return parts;
}

std::string unescaped(const std::string& text) {
    std::string plain;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char mark = text[i] == '\\' && i + 1 < text.size() ? text[i + 1] : '\0';
        if (mark == '\0') {
            plain += text[i];
        } else if (mark == 'x' && i + 3 < text.size()) {
            plain += static_cast<char>(std::stoi(text.substr(i + 2, 2), nullptr, 16));
            i += 3;
        } else {
            plain += mark == 'n' ? '\n' : mark == 'r' ? '\r' : mark;
            ++i;
        }
    }
    return plain;
}

std::vector<Cells> read_cells(const std::string& path) {
    std::ifstream in(path);
    std::vector<Cells> rows;
    for (std::string line; std::getline(in, line);) {
        // The added tab keeps an empty last cell.
        if (!line.empty() && !line.starts_with("# ")) rows.push_back(split(line + '\t', '\t'));
    }
    EXPECT_FALSE(rows.empty()) << path;
    return rows;
}

std::vector<Cells> data_cells(const std::string& name) { return read_cells(source_dir() + "/tests/data/" + name); }

std::vector<Row> read_table(const std::string& path) {
    std::vector<Row> rows;
    const std::vector<Cells> lines = read_cells(path);
    for (std::size_t k = 1; k < lines.size(); ++k) {
        Row& row = rows.emplace_back();
        for (std::size_t i = 0; i < lines[k].size() && i < lines[0].size(); ++i) row[lines[0][i]] = lines[k][i];
    }
    return rows;
}

std::vector<Row> data_table(const std::string& name) { return read_table(source_dir() + "/tests/data/" + name); }

Case::Case(const Cells& cells) {
    for (const std::string& cell : cells) {
        if (!fields_.empty()) line_ += '\t';
        line_ += cell;
        fields_.push_back(unescaped(cell));
    }
}

double Case::real(std::size_t column) const { return text(column) == "MISS" ? MISS : std::stod(text(column)); }

std::vector<Case> cases(const std::string& name) {
    std::vector<Case> all;
    for (const Cells& cells : data_cells(name + ".tsv")) all.emplace_back(cells);
    return all;
}

}  // namespace zav::test
