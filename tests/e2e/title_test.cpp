// What a page says that it shows: the title of each layer, the valid time, and the words that were refused.

#include <gtest/gtest.h>

#include "e2e/program.h"
#include "frame/status.h"
#include "support/support.h"

namespace zav::test {
namespace {

struct TitleCase {
    const char* name;
    const char* file;  ///< of the real data, empty for the sample
    const char* options;
    int status;
    std::vector<const char*> texts;  ///< on the page; without any there is none
    const char* message = "";
};

void PrintTo(const TitleCase& c, std::ostream* out) { *out << c.options; }

class Title : public ::testing::TestWithParam<TitleCase> {};

TEST_P(Title, TellsWhatTheFileHolds) {
    const TitleCase& c = GetParam();
    const std::string sample = test::source_dir() + "/samples/26011512_wave.grb2";
    const std::string source = *c.file == 0 ? sample : data_file(c.file);
    if (source.empty()) GTEST_SKIP() << "ZAV_TEST_DATA isn't set";
    const TempDir dir;
    const Outcome run =
        run_program(dir.path(), std::string("-me warn -ft h24 -le 500 -in 20 -de p,x.ps ") + c.options + " " + source);
    EXPECT_EQ(run.status, c.status) << run.err;
    EXPECT_NE(run.err.find(c.message), std::string::npos) << run.err;
    EXPECT_EQ(std::filesystem::exists(dir.file("x.ps")), !c.texts.empty());
    const std::string page = read_file(dir.file("x.ps"));
    for (const char* text : c.texts) EXPECT_NE(page.find(std::string(" ") + text + "\n"), std::string::npos) << text;
}

const char* const MAXT = "ndfd_maxt_lambert.grib2";
const char* const NOWCAST = "jma_nowcast_runlength.grib2";

INSTANTIATE_TEST_SUITE_P(
    Words, Title,
    ::testing::Values(
        TitleCase{"level_in_hpa", "", "-le 850hPa -va temp -pl ln", 0, {"850 mb Temperature (K)"}},
        TitleCase{"unknown_time", "", "-ft foo -va temp", STATUS_WORD, {}, "Time can't be read: foo"},
        TitleCase{"signed_time", "", "-ft +24 -va temp", STATUS_WORD, {}, "Time can't be read: +24"},
        TitleCase{"time_in_list", "", "-ft h24,foo -va temp", STATUS_WORD, {}, "Time can't be read: foo"},
        TitleCase{"unknown_level", "", "-le foo -va temp", STATUS_WORD, {}, "Level can't be read: foo"},
        TitleCase{"level_in_string", "", "-va h24:5OO:temp", STATUS_WORD, {}, "Level can't be read: 5OO"},
        TitleCase{"unknown_variable", "", "-va foo", STATUS_WORD, {}, "Variable can't be read: foo"},
        TitleCase{
            "one_unknown_of_two", "", "-pl ln -va temp,foo", STATUS_WORD, {"500 mb Temperature (K)"}, "500 mb foo"},
        TitleCase{"wrong_units", "", "-pl ln -va temp:mb", STATUS_WORD, {"500 mb Temperature (K)"}, "from K to mb"},
        TitleCase{"decametres", "", "-pl ln -in 6 -va hght:dm,hght:dam", 0, {"500 mb Height (dm)", "546"}},
        TitleCase{"kind_for_units", "", "-va hght:ln:in=60", 0, {"500 mb Height (m)"}},
        TitleCase{"group", "", "-pl ln -va '{hght,temp}'", 0, {"500 mb Height (m)", "500 mb Temperature (K)"}},
        TitleCase{"group_with_wind",
                  "",
                  "-va '{hght:gpm:ln,wind<uwnd,vwnd>[kt:barb:sk=3]}'",
                  0,
                  {"500 mb Height (gpm)", "500 mb Wind (kt)"}},
        TitleCase{"contours_of_wind",
                  "",
                  "-va 'wind<uwnd,vwnd>[kt:ln:in=10]'",
                  0,
                  {"500 mb U Wind (kt)", "500 mb V Wind (kt)"}},
        TitleCase{"interval",
                  MAXT,
                  "-pl ln -ft h14 -le sfc -va tmax",
                  0,
                  {"12 hour max Surface Maximum Temperature (K)", "14 hour  valid 12Z FRI 30 SEP 11"}},
        TitleCase{"minutes",
                  NOWCAST,
                  "-pl ln -ft 10min -le sfc -va 193000",
                  0,
                  {"Surface v193000", "10 min  valid 0210Z MON 22 AUG 16"}},
        TitleCase{"hour_in_minutes",
                  NOWCAST,
                  "-pl ln -ft 1:00 -le sfc -va v193000",
                  0,
                  {"Surface v193000", "1 hour  valid 3Z MON 22 AUG 16"}},
        TitleCase{"ecmwf_table",
                  "scanning_mode_64.grib1",
                  "-pl ln -ft init -le sfc -va skt",
                  0,
                  {"Surface Skin Temperature (K)"}}),
    [](const auto& given) { return std::string(given.param.name); });

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
    const std::string values = page("values.ps", "-va hght:gpm:gvalue:%.0f");
    EXPECT_TRUE(page("value.ps", "-va hght:gpm:value:%.0f") == values);
    EXPECT_NE(values.find("5580"), std::string::npos);
}

}  // namespace
}  // namespace zav::test
