// Texts on the page by the boxes of their strokes: marks, labels, titles and the numbers of a bar stand apart.

#include <gtest/gtest.h>

#include "e2e/program.h"
#include "support/support.h"
#include "support/table.h"

namespace zav::test {
namespace {

enum Column { NAME, FILE_NAME, OPTIONS, TEXTS, LEAST_MARKS, MOST_MARKS };

class Texts : public ::testing::TestWithParam<Cells> {};

TEST_P(Texts, StandApart) {
    const Cells& row = GetParam();
    const std::string source = data_file(row[FILE_NAME]);
    if (source.empty()) GTEST_SKIP() << NO_DATA_FILE;
    const TempDir dir;
    ASSERT_EQ(run_program(dir.path(), "-me warn " + row[OPTIONS] + " -de p,x.ps " + source).status, 0);
    const std::vector<PageText> texts = read_page(dir.file("x.ps")).texts;
    EXPECT_GE(texts.size(), std::stoul(row[TEXTS]));
    long marks = 0;
    for (std::size_t i = 0; i < texts.size(); i++) {
        const PageText& text = texts[i];
        marks += text.str == "H" || text.str == "L" ? 1 : 0;
        EXPECT_TRUE(text.low.x >= 0 && text.low.y >= 0 && text.high.x <= 756 && text.high.y <= 576) << text.str;
        for (std::size_t j = 0; j < i; j++) EXPECT_FALSE(text.meets(texts[j])) << text.str << " on " << texts[j].str;
    }
    EXPECT_TRUE(marks >= std::stol(row[LEAST_MARKS]) && marks <= std::stol(row[MOST_MARKS])) << marks;
}

INSTANTIATE_TEST_SUITE_P(Pages, Texts, ::testing::ValuesIn(data_cells("text_pages.tsv")),
                         [](const auto& page) { return case_name(page.param[NAME]); });

}  // namespace
}  // namespace zav::test
