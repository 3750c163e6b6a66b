// Calls that can't give what was asked for: the exit status, the words that tell why, and what is left of the page. A
// page is whole or isn't there; where nothing of it was drawn, an older file of that name stays as it was.

#include <gtest/gtest.h>

#include "e2e/program.h"
#include "support/support.h"

namespace zav::test {
namespace {

const std::string SAMPLE = source_dir() + "/samples/26011512_wave.grb2";
const std::string CHART = "-me warn -ft h24 -le 500 -va hght -pl ln -in 60 -de p,x.ps ";
constexpr const char* OLDER = "an older page\n";

struct Wrong_call {
    const char* name;
    std::string options;
    const char* input;  ///< answers on standard input
    int status;
    const char* message;  ///< part of what is said on standard error
    int pages;            ///< pages of x.ps, 0 where the older file stays
};

void PrintTo(const Wrong_call& call, std::ostream* out) { *out << call.name; }

class WrongCall : public ::testing::TestWithParam<Wrong_call> {};

TEST_P(WrongCall, IsToldAndLeavesAWholePageOrNone) {
    const Wrong_call& call = GetParam();
    const TempDir dir;
    const std::string page = dir.write("x.ps", OLDER);
    dir.write("empty.grb", "");
    dir.write("text.grb", "Dear forecaster,\nthis is not a grid file.\n");
    const Outcome run = run_program(dir.path(), call.options, call.input);
    EXPECT_EQ(run.status, call.status) << run.err;
    EXPECT_NE(run.err.find(call.message), std::string::npos) << run.err;
    if (call.pages == 0) {
        EXPECT_EQ(read_file(page), OLDER);
    } else {
        EXPECT_EQ(read_page(page).pages, call.pages);
        EXPECT_TRUE(read_file(page).ends_with("%%EOF\n"));
        EXPECT_TRUE(renders(page));
    }
}

const Wrong_call CALLS[] = {
    {"missing_field", CHART + "-va rhum:%:ln:in=10 -le 10 " + SAMPLE, "", 20, "grid not found in file", 0},
    {"missing_time", CHART + "-ft h77 " + SAMPLE, "", 20, "grid not found in file", 0},
    {"missing_level", CHART + "-le 333 " + SAMPLE, "", 20, "grid not found in file", 0},
    {"missing_member", CHART + "-va 'ens[7]hght' " + SAMPLE, "", 20, "grid not found in file", 0},
    {"missing_wind", CHART + "-va 'wind:kt:barb<uwnd,nosuch>' " + SAMPLE, "", 23, "nosuch", 1},
    {"no_time_of_a_list", CHART + "-ft h77,h78 " + SAMPLE, "", 21, "GRD_plot: No data at the time: h78\n", 0},
    {"one_time_of_a_list", CHART + "-ft h77,h12,h24 " + SAMPLE, "", 21, "GRD_plot: No data at the time: h77\n", 2},
    {"missing_layer_of_two", CHART + "-va 'hght,rhum' -le 250 -pl ln -va 'hght,:10:rhum' " + SAMPLE, "", 20, "10 mb",
     1},
    {"unknown_region", CHART + "-re nowhere " + SAMPLE, "", 24, "nowhere", 0},
    {"faulty_domain", CHART + "-pd nonsense " + SAMPLE, "", 24, "nonsense", 0},
    {"level_word", CHART + "-le foo " + SAMPLE, "", 23, "foo", 0},
    {"time_word", CHART + "-ft foo " + SAMPLE, "", 23, "foo", 0},
    {"variable_word", CHART + "-va nosuch " + SAMPLE, "", 23, "nosuch", 0},
    {"absent_level_file", CHART + "-pl cf -cof nosuch.lev " + SAMPLE, "", 20, "nosuch.lev", 1},
    {"absent_file", CHART + "absent.grb", "", 10, "", 0},
    {"empty_file", CHART + "empty.grb", "", 10, "", 0},
    {"file_of_text", CHART + "text.grb", "", 10, "", 0},
    {"no_answer_at_the_file", CHART, "", 22, "ends at the question: Enter the grid filename:\n", 0},
    {"no_answer_at_the_time", "-me warn " + SAMPLE, "", 22, "ends at the question: Enter the time:\n", 0},
    {"no_answer_at_the_level", "-me warn " + SAMPLE, "h24\n", 22, "ends at the question: Enter the level:\n", 0},
    {"no_answer_at_the_variable", "-me warn " + SAMPLE, "h24\n500\n", 22, "question: Enter the variable:\n", 0},
    {"no_answer_at_the_device", "-me warn -ft h24 -le 500 -va hght " + SAMPLE, "", 22,
     "ends at the question: Display (D) or Postscript (P):\n", 0},
    {"no_answer_at_the_kind", "-me warn -ft h24 -le 500 -va hght -in 60 -de p,x.ps " + SAMPLE, "", 22,
     "ends at the question: Color fill (C) or Line (L) contours:\n", 0},
    {"no_answer_at_the_interval", "-me warn -ft h24 -le 500 -va hght:gpm:ln -de p,x.ps " + SAMPLE, "", 22,
     "ends at the question: Enter the contour interval:\n", 0},
    {"no_answer_at_the_second_layer", "-me warn -ft h24 -le 500 -va hght:gpm:ln:in=60,temp:C:ln -de p,x.ps " + SAMPLE,
     "", 22, "ends at the question: Enter the contour interval:\n", 1},
    {"exit_at_the_interval", "-me warn -ft h24 -le 500 -va hght:gpm:ln -de p,x.ps " + SAMPLE, "exit\n", 0, "", 0},
    {"exit_at_the_second_layer", "-me warn -ft h24 -le 500 -va hght:gpm:ln:in=60,temp:C:ln -de p,x.ps " + SAMPLE,
     "exit\n", 0, "", 1},
    {"full_disk", CHART + "-de p,/dev/full " + SAMPLE, "", 25, "Output is not complete: /dev/full", 0},
    {"full_disk_in_batch", CHART + "-ba -de p,/dev/full " + SAMPLE, "", 25, "Output is not complete: /dev/full", 0},
    {"full_disk_for_a_metafile", CHART + "-de m,/dev/full " + SAMPLE, "", 25, "Output is not complete: /dev/full", 0},
    {"full_disk_for_a_grid", CHART + "-of zav,/proc/x " + SAMPLE, "", 25, "GRD_save_file: Unable to create", 1},
    {"failing_command", CHART + "-de 'p,|cat >/dev/null; exit 3' " + SAMPLE, "", 25, "Command failed: cat", 0},
    {"command_that_ends_early", CHART + "-de 'p,|true' " + SAMPLE, "", 25, "Output is not complete: true", 0},
    {"no_command_without_a_plot", CHART + "-ft h77 -de 'p,|cat >x.ps' " + SAMPLE, "", 20, "grid not found", 0},
    {"unwritable_folder", CHART + "-de p,/proc/x.ps " + SAMPLE, "", 4, "unable to open postscript file", 0},
    {"file_in_place_of_a_folder", CHART + "-de p,empty.grb/x.ps " + SAMPLE, "", 4, "unable to open postscript", 0},
    {"unwritable_metafile", CHART + "-de m,/proc/x.meta " + SAMPLE, "", 4, "unable to open metafile", 0},
    {"no_display", "-me warn -ft h24 -le 500 -va hght -de d " + SAMPLE, "", 4, "Error opening workstation", 0},
    {"missing_metafile_of_the_map", CHART + "-mf mf:no.meta " + SAMPLE, "", 20, "Unable to open image file", 1},
};

INSTANTIATE_TEST_SUITE_P(, WrongCall, ::testing::ValuesIn(CALLS), [](const auto& call) { return call.param.name; });

}  // namespace
}  // namespace zav::test
