// Calls of the program against the table tests/data/calls.tsv: the exit status, the words that tell why, and the page.
// A page is whole or isn't there; where nothing of it was drawn, an older file of that name stays as it was.

#include <gtest/gtest.h>

#include <sstream>

#include "e2e/program.h"
#include "frame/status.h"
#include "support/support.h"
#include "support/table.h"

namespace zav::test {
namespace {

const std::string SAMPLE = source_dir() + "/samples/26011512_wave.grb2";
const std::string CHART = "-me warn -ft h24 -le 500 -va hght -pl ln -in 60 -de p,x.ps";
constexpr const char* OLDER = "an older page\n";
enum Column { NAME, OPTIONS, ANSWERS, STATUS, TOLD, PAGES, SHOWN, COLUMNS };

std::vector<Cells> calls() {
    auto rows = data_cells("calls.tsv");
    for (auto& row : rows) row.resize(COLUMNS);
    return rows;
}

/// `text` with each `from` as `to`.
std::string replaced(std::string text, const std::string& from, const std::string& to) {
    for (std::size_t at = 0; (at = text.find(from, at)) != std::string::npos; at += to.size())
        text.replace(at, from.size(), to);
    return text;
}

std::vector<std::string> parts(const std::string& cell) {
    std::istringstream text(replaced(cell, "\\n", "\n"));
    std::vector<std::string> found;
    for (std::string part; std::getline(text, part, '|');) found.push_back(part);
    return found;
}

/// Options without their placeholders; none where a model file isn't there.
std::string filled(std::string options) {
    options = replaced(replaced(options, "{chart}", CHART), "{sample}", SAMPLE);
    const std::size_t at = options.find("{data:");
    if (at == std::string::npos) return options;
    const std::size_t end = options.find('}', at);
    const std::string file = data_file(options.substr(at + 6, end - at - 6));
    return file.empty() ? "" : options.replace(at, end + 1 - at, file);
}

void expect_shown(const std::string& shown, const TempDir& dir) {
    const std::string page = dir.file("x.ps");
    if (shown.starts_with("lines ")) {
        EXPECT_GE(segments_of(read_page(page)).size(), std::stoul(shown.substr(6)));
    } else if (shown.starts_with("same ")) {
        run_program(dir.path(), CHART + " -de p,y.ps " + shown.substr(5) + " " + SAMPLE);
        EXPECT_TRUE(page_without_date(page) == page_without_date(dir.file("y.ps")));
    } else {
        EXPECT_NE(read_file(page).find(" " + shown + "\n"), std::string::npos) << shown;
    }
}

class Calls : public ::testing::TestWithParam<std::vector<std::string>> {};

TEST_P(Calls, GiveTheirStatusWordsAndPage) {
    const std::vector<std::string>& call = GetParam();
    const std::string options = filled(call[OPTIONS]);
    if (options.empty()) GTEST_SKIP() << NO_DATA_FILE;
    const TempDir dir;
    const std::string page = dir.write("x.ps", OLDER);
    dir.write("empty.grb", "");
    dir.write("text.grb", "Dear forecaster,\nthis is not a grid file.\n");
    dir.write("cut.grb", read_file(SAMPLE).substr(0, 700));
    dir.write("my.dom", "ps:-97,39,-97,61,45,2.3\n");
    const Outcome run = run_program(dir.path(), options, replaced(call[ANSWERS], "\\n", "\n"));
    if (call[STATUS] == "any") {
        EXPECT_LE(run.status, STATUS_OUTPUT) << run.err;
    } else {
        EXPECT_EQ(run.status, std::stoi(call[STATUS])) << run.err;
    }
    if (call[TOLD].starts_with('=')) {
        EXPECT_EQ(run.err, replaced(call[TOLD].substr(1), "\\n", "\n"));
    } else {
        for (const std::string& part : parts(call[TOLD])) EXPECT_NE(run.err.find(part), std::string::npos) << run.err;
    }
    if (call[PAGES] == "0") {
        EXPECT_EQ(read_file(page), OLDER);
    } else {
        EXPECT_EQ(read_page(page).pages, std::stoi(call[PAGES]));
        EXPECT_TRUE(read_file(page).ends_with("%%EOF\n"));
        EXPECT_TRUE(renders(page));
    }
    for (const std::string& shown : parts(call[SHOWN])) expect_shown(shown, dir);
}

INSTANTIATE_TEST_SUITE_P(, Calls, ::testing::ValuesIn(calls()), [](const auto& call) { return call.param[NAME]; });

}  // namespace
}  // namespace zav::test
