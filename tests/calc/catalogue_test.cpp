// Every function of the catalogue on real fields, from the variable string to the values, beside what is worked out in
// double precision from ecCodes' values of the same file.

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <tuple>

#include "calc/catalogue_air.h"
#include "calc/catalogue_run.h"
#include "calc/grd_calc.h"
#include "calc/grd_functions.h"
#include "grid/grd_tool.h"
#include "support/table.h"
#include "var/var_tool.h"

namespace zav::truth {
namespace {

/// Points that an iteration may end a step apart, and those that rounding leaves open, in a thousand.
constexpr int STEPPED = 10;
constexpr int UNBOUNDED = 60;

/// The function of "h120:850:name:C(..." without units and variable.
std::string outer_function(const std::string& string) {
    const std::string name = test::split(string.substr(0, string.find('(')), ':').at(2);
    return name.substr(0, name.find('-'));
}

/// Compares the results of a string that was run with those worked out.
void expect_worked_out(const std::string& string, const std::vector<Field>& want) {
    const Measure measure = functions().at(outer_function(string)).measure;
    ASSERT_FALSE(want.empty()) << string;
    for (std::size_t r = 0; r < want.size(); r++) {
        const Difference d = difference(*GRD_get_grid(static_cast<int>(r)), want[r], measure);
        const int points = static_cast<int>(want[r].values.size());
        EXPECT_EQ(d.off, 0) << string << " result " << r << " of " << points << " points\n  " << d.first;
        EXPECT_LE(d.stepped * 1000, STEPPED * points) << string;
        EXPECT_LE(d.unbounded * 1000, UNBOUNDED * points) << string;
        if (d.stepped > 0) testing::Test::RecordProperty(outer_function(string) + "_stepped", d.stepped);
    }
}

/// Lines of what was said that don't tell of the work.
std::string warnings(const test::Output& said) {
    std::string rest;
    for (const std::string& line : test::split(said.out + said.err, '\n')) {
        bool work = line.find(" records fit ") != std::string::npos;
        for (const char* begin : {"Reading from grid file: ", "Performing grid math: "})
            work |= line.rfind(begin, 0) == 0;
        if (!work) rest += line;
    }
    return rest;
}

class Catalogue_strings : public Catalogue {
  protected:
    std::vector<test::Case> rows = test::cases("grid_functions");

    /// The fields of a row's file, read once; null if it isn't there.
    Fields_of* fields(const std::string& name) {
        const std::string file = path(name);
        if (file.empty()) return nullptr;
        auto& of = read[name];
        if (!of) of = std::make_unique<Fields_of>(file);
        return of.get();
    }
    Fields_of& run(const test::Case& row) {
        EXPECT_EQ(warnings(run_string(row.text(1), path(row.text(3)))), "") << row.line();
        const Domain& domain = GRD_get_grid(0)->domain;
        Fields_of& of = *fields(row.text(3));
        of.set_plon(static_cast<double>(domain.plon == FMISS ? domain.clon : domain.plon));
        return of;
    }

  private:
    static std::string path(const std::string& name) { return name.empty() ? sample_file() : test::data_file(name); }
    std::map<std::string, std::unique_ptr<Fields_of>> read;
};

TEST(CatalogueTruth, HoldsEveryFunction) {
    std::map<std::string, int> rows;
    for (const test::Case& row : test::cases("grid_functions")) rows[row.text(0)]++;
    for (const Math_function& function : GRD_functions()) {
        const std::string name(function.name);
        EXPECT_EQ(functions().count(name), 1U) << name;
        EXPECT_TRUE(rows[name] > 0 || GRD_is_plot_func(name)) << name;
        EXPECT_EQ(GRD_is_math_func(name), function.plot) << name;
        EXPECT_EQ(GRD_is_vect_func(name), name == "grad" || name == "vdiff") << name;
    }
    EXPECT_EQ(GRD_functions().size(), functions().size());
}

TEST_F(Catalogue_strings, GiveWhatIsWorkedOut) {
    for (const test::Case& row : rows) {
        const std::string string = row.text(1);
        ASSERT_EQ(outer_function(string), row.text(0));
        expect_worked_out(string, run(row).worked_out(string));
        if (!row.text(2).empty()) {
            EXPECT_EQ(GRD_get_grid(0)->units, row.text(2)) << string;
        }
    }
}

TEST_F(Catalogue_strings, KeepToTheirRulesOfMissingPoints) {
    for (const unsigned of : {3U, 11U}) {
        const Holes holes = random_holes(of);
        for (const test::Case& row : rows) {
            if (!row.text(3).empty()) continue;
            Fields_of& file = run(row);
            run_again(holes);
            expect_worked_out(row.text(1), file.worked_out(row.text(1), holes));
        }
    }
}

/// An expression of functions `depth` deep, of those that keep values within bounds.
std::string random_expression(std::mt19937& random, int depth) {
    const auto one_of = [&](const std::vector<std::string>& words) { return words[random() % words.size()]; };
    const auto inner = [&] { return random_expression(random, depth - 1); };
    if (depth == 0) return one_of({"temp", "uwnd", "vwnd", "rhum", "hght", ":850:temp", ":850:uwnd", ":850:rhum"});
    switch (random() % 8) {
        case 0:
            return one_of({"dx", "dy", "lapl", "copy", "abs", "atan", "cos", "theta"}) + "(" + inner() + ")";
        case 1:
            return one_of({"add", "sub", "mul"}) + "(" + inner() + "," + one_of({"#2", "-0.5", "1.25"}) + ")";
        case 2:
            return one_of({"sum", "avg", "max", "min"}) + "(" + inner() + "," + inner() + "," + inner() + ")";
        case 3:
            return "interp(" + inner() + ",0.3," + inner() + ")";
        case 4:
            return one_of({"rvort", "diverg", "def1", "def2", "conv"}) + "(" + inner() + "," + inner() + ")";
        case 5:
            return "smooth(" + inner() + ",#-2.)";
        default:
            return one_of({"add", "sub", "mul", "wspd", "atan2"}) + "(" + inner() + "," + inner() + ")";
    }
}

TEST_F(Catalogue_strings, KeepToThemInAFieldWithHoles) {
    const std::string file = "missing_values.grib1";
    if (test::data_file(file).empty()) GTEST_SKIP() << test::NO_DATA_FILE;
    for (const char* call : {"dx(temp)", "dy(temp)", "lapl(temp)", "grad(temp)", "theta(temp)", "smooth(temp,#-5.)"}) {
        const std::string string = std::string("h0:2m_ag:") + call;
        const test::Case row({"", string, "", file});
        expect_worked_out(string, run(row).worked_out(string));
    }
}

TEST_F(Catalogue_strings, NestThreeDeep) {
    std::mt19937 random(20110110);
    for (int i = 0; i < 60; i++) {
        const std::string string = "h120:500:add(" + random_expression(random, 3) + ",0.0)";
        run_string(string, sample_file());
        const Difference d = difference(*GRD_get_grid(0), fields("")->worked_out(string).at(0), {});
        EXPECT_EQ(d.off, 0) << string << "\n  " << d.first;
        EXPECT_LE(d.unbounded, 2 * 144) << string;
    }
}

/// The models' own vorticity comes from finer grids and the whole sphere, so that it can agree in the large only.
TEST_F(Catalogue_strings, AbsoluteVorticityIsThatOfTheModels) {
    for (const auto& [file, hour, correlation, off] :
         {std::tuple{"gfs_2p5deg_f120.grib2", "h120", 0.94, 0.1}, {"eta_lambert_f24.grib2", "h24", 0.98, 0.2}}) {
        if (test::data_file(file).empty()) GTEST_SKIP() << test::NO_DATA_FILE;
        Fields_of& of = run(test::Case({"", std::string(hour) + ":500:avort(uwnd,vwnd)", "", file}));
        const Field own = of.worked_out(std::string(hour) + ":500:avort").at(0);
        double n = 0, a = 0, b = 0, aa = 0, bb = 0, ab = 0;
        for (std::size_t k = 0; k < own.values.size(); k++) {
            const double x = static_cast<double>(GRD_get_grid(0)->grid[static_cast<std::ptrdiff_t>(k)]);
            if (std::abs(own.place->lat[k]) > 70 || x == MISSING) continue;
            const double y = 1e5 * own.values[k];
            n += 1, a += x, b += y, aa += x * x, bb += y * y, ab += x * y;
        }
        ASSERT_GT(n, 5000) << file;
        EXPECT_GT((n * ab - a * b) / std::sqrt((n * aa - a * a) * (n * bb - b * b)), correlation) << file;
        EXPECT_LT(std::abs(a - b) / n, off) << file;
    }
}

}  // namespace
}  // namespace zav::truth
