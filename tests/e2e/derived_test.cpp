// Fields that are calculated: macros of the menu file, functions in all places of a string, and what fails.

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "e2e/program.h"
#include "frame/status.h"
#include "support/support.h"

namespace zav::test {
namespace {

const std::string FORECAST = test::source_dir() + "/samples/11011012_gfs.grb";

bool titled(const Page& page, const std::string& text) {
    return std::any_of(page.texts.begin(), page.texts.end(),
                       [&](const PageText& one) { return one.str.find(text) != std::string::npos; });
}

class Derived : public testing::Test {
  protected:
    Outcome run(const std::string& variables, const std::string& more = "") {
        return run_program(dir.path(), "-me warn -ba -ft h120 -le 500 -in 10 -de p,x.ps " + more + " -va '" +
                                           variables + "' " + FORECAST);
    }
    Page page() const { return read_page(dir.file("x.ps")); }

    const TempDir dir;
};

TEST_F(Derived, MacrosOfTheMenuDrawEveryLayerWithoutAWord) {
    std::ifstream menu(test::source_dir() + "/share/zav/zavoria.var");
    int drawn = 0;
    for (std::string line; std::getline(menu, line);) {
        std::istringstream words(line);
        std::string name, title, level, string;
        words >> name >> title >> level >> string;
        if (string.find('(') == std::string::npos) continue;
        const bool there = string.find("2m_ag:rhum") == std::string::npos;  // not in this file
        const Outcome made = run(name);
        EXPECT_EQ(made.status, there ? 0 : STATUS_LAYER) << name << ": " << made.err;
        EXPECT_TRUE(made.err.empty() == there) << name << ": " << made.err;
        if (!there) continue;
        const Page drawing = page();
        EXPECT_FALSE(titled(drawing, "500 mb Wind") && string.find("<") != std::string::npos) << name;
        EXPECT_GT(drawing.lines.size(), 300U) << name;
        drawn++;
    }
    EXPECT_GT(drawn, 25);
}

TEST_F(Derived, TitlesTellLevelQuantityUnitsAndModel) {
    EXPECT_EQ(run("thick(:500mb:hght,:1000mb:hght)[m:ln:in=60]").status, 0);
    EXPECT_TRUE(titled(page(), "500 mb Thickness (m)") && titled(page(), "GFS valid"));
    EXPECT_EQ(run("thk500").status, 0);
    EXPECT_TRUE(titled(page(), "1000-500 mb Thickness (m)"));
    EXPECT_EQ(run("adv:K/12h:ln:in=4(uwnd,vwnd,temp)").status, 0);
    EXPECT_TRUE(titled(page(), "500 mb Temperature Advection (K/12h)"));
}

TEST_F(Derived, ALayerIsDrawnByWhatItDrawsNotByItsArguments) {
    struct Case {
        const char* variables;
        int status;
        int pages;
    };
    const Case cases[] = {{"add:K:ln(temp)", STATUS_LAYER, 0},
                          {"add:K:ln(temp,hght,temp)", STATUS_LAYER, 0},
                          {"nosuch:K:ln(temp)", STATUS_LAYER, 0},
                          {"grad:m:vect(5.)", STATUS_LAYER, 0},
                          {"sqrt:K:ln(add(temp,:10mb:temp))", STATUS_LAYER, 0},
                          {"wind:kt:barb<ugeos(:10mb:hght),vgeos(hght)>", STATUS_LAYER, 0},
                          {"log::ln(sub(temp,temp))", STATUS_LAYER, 1},
                          {"add:K:ln(temp,:10mb:temp),hght:m:ln:in=60", STATUS_LAYER, 1},
                          {"vect:m/s:vect(uwnd,vwnd)", 0, 1},
                          {"grad::vect(hght)", 0, 1}};
    for (const Case& c : cases) {
        std::remove(dir.file("x.ps").c_str());
        const Outcome made = run(c.variables);
        EXPECT_EQ(made.status, c.status) << c.variables << ": " << made.err;
        EXPECT_EQ(made.err.empty(), c.status == 0) << c.variables << ": " << made.err;
        EXPECT_EQ(page().pages, c.pages) << c.variables;
    }
}

}  // namespace
}  // namespace zav::test
