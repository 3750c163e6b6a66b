// What a page says that it shows: the title of each layer, the valid time, and the words that were refused.

#include <gtest/gtest.h>

#include "e2e/program.h"
#include "frame/status.h"
#include "support/support.h"

namespace zav::test {
namespace {

TEST(KindOfPlot, OptionIsStrongerAndValueMeansGridValues) {
    const TempDir dir;
    const auto page = [&](const std::string& name, const std::string& options) {
        const std::string source = test::source_dir() + "/samples/26011512_wave.grb2";
        const Outcome run = run_program(dir.path(), "-ba -ft h24 -le 500 -de p," + name + " " + options + " " + source);
        EXPECT_EQ(run.status, 0) << run.err;
        return page_without_date(dir.file(name));
    };
    const std::string lines = page("lines.ps", "-va hght:gpm:ln:in=60");
    EXPECT_TRUE(page("option.ps", "-va hght:gpm:cf:in=60 -pl ln") == lines);
    EXPECT_TRUE(page("brackets.ps", "-va 'hght[gpm:cf:in=60]' -pl ln") == lines);
    EXPECT_FALSE(page("fill.ps", "-va hght:gpm:cf:in=60") == lines);
    const std::string values = page("values.ps", "-va hght:gpm:gvalue:%.0f:sk=1");
    EXPECT_TRUE(page("value.ps", "-va hght:gpm:value:%.0f:sk=1") == values);
    EXPECT_NE(values.find("5580"), std::string::npos);
}

}  // namespace
}  // namespace zav::test
