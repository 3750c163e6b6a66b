#include "e2e/program.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <sstream>

#include "support/support.h"

namespace zav::test {

Outcome run_program(const std::string& folder, const std::string& options, const std::string& input,
                    const std::string& before) {
    const TempDir scratch;
    const std::string in = scratch.write("in", input);
    const std::string out = scratch.file("out");
    const std::string err = scratch.file("err");
    const std::string command = "cd '" + folder + "' && " + before + " && env zavdefault=none zavfile='" +
                                source_dir() + "/share/zav' timeout 60 '" + program_path() + "' " + options + " <'" +
                                in + "' >'" + out + "' 2>'" + err + "'";
    Outcome run;
    const int status = std::system(command.c_str());
    run.status = WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
    run.out = read_file(out);
    run.err = read_file(err);
    return run;
}

Page read_page(const std::string& file) {
    Page page;
    PagePath path;
    bool in_text = false;
    std::ifstream in(file);
    std::string line;
    while (std::getline(in, line)) {
        std::istringstream words(line);
        std::string first;
        words >> first;
        if (first == "showpage") page.pages++;
        // A comment tells what is drawn next.
        if (first.starts_with("%%")) in_text = first.starts_with("%%TE:");
        if (first.starts_with("%%TE:")) page.texts.push_back({line.substr(line.find(' ', line.find(' ') + 1) + 1)});
        if (first == "np") path.clear();
        if (first == "stroke") page.lines.push_back(path);
        if (first == "stroke" && in_text)
            std::for_each(path.begin(), path.end(), [&](const PagePoint& point) { page.texts.back().add(point); });
        if (first == "fill" || first == "eofill") page.fills.push_back(path);
        PagePoint point;
        std::string action;
        std::istringstream numbers(line);
        if (!(numbers >> point.x >> point.y >> action)) continue;
        if (action == "mv" || action == "ln") path.push_back(point);
    }
    return page;
}

std::vector<PagePath> segments_of(const Page& page) {
    std::vector<PagePath> segments;
    for (const PagePath& line : page.lines) {
        for (std::size_t i = 1; i < line.size(); i++) segments.push_back({line[i - 1], line[i]});
    }
    return segments;
}

std::string page_without_date(const std::string& file) {
    std::ifstream in(file);
    std::string text;
    std::string line;
    while (std::getline(in, line)) {
        if (line.rfind("%%CreationDate", 0) != 0) text += line + "\n";
    }
    return text;
}

bool renders(const std::string& file) {
    int status = 0;
    const std::string said =
        run_command("gs -q -dSAFER -dNOPAUSE -dBATCH -sDEVICE=nullpage '" + file + "' 2>&1", &status);
    return status == 0 && said.empty();
}

}  // namespace zav::test
