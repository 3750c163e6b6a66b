#include "support/case_file.h"

#include <fstream>
#include <sstream>

#include "frame/zav.h"
#include "support/support.h"

namespace zav::test {
namespace {

std::string unescaped(const std::string& field) {
    std::string text;
    for (std::size_t i = 0; i < field.size(); i++) {
        const bool escape = field[i] == '\\' && i + 1 < field.size();
        const char c = escape ? field[++i] : field[i];
        text += escape && c == 'n' ? '\n' : escape && c == 'r' ? '\r' : c;
    }
    return text;
}

}  // namespace

Case::Case(const std::string& line) : line_(line) {
    std::istringstream in(line);
    for (std::string field; std::getline(in, field, '\t');) fields_.push_back(unescaped(field));
}

double Case::real(std::size_t column) const { return text(column) == "MISS" ? MISS : std::stod(text(column)); }

std::vector<Case> cases(const std::string& name) {
    std::ifstream in(source_dir() + "/tests/data/" + name + ".tsv");
    std::vector<Case> all;
    for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.rfind("# ", 0) != 0) all.emplace_back(line);
    }
    EXPECT_FALSE(all.empty()) << name;
    return all;
}

}  // namespace zav::test
