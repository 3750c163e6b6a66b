#pragma once

// Variable strings through the program, and its results beside others.

#include <string>

#include "calc/catalogue_fields.h"
#include "grid/zavgrd.h"
#include "support/support.h"

namespace zav::truth {

/// Points of a result that differ from those worked out.
struct Difference {
    int off = 0;        ///< by more than rounding can make
    int stepped = 0;    ///< by at most a step of an iteration
    int unbounded = 0;  ///< where rounding may make anything, which count as equal
    int same = 0;
    std::string first;  ///< the first that is off
};

Difference difference(const GRD_report& got, const Field& want, const Measure& measure);

/// Compiles a string and fills its grids from a file: what was said.
test::Output run_string(const std::string& string, const std::string& file);
/// Makes holes in the variables of the string that was run, and calculates its functions again.
void run_again(const Holes& holes);

/// The file of fields that comes with the program.
std::string sample_file();
/// A hole in one of `of` points, another pattern for each variable.
Holes random_holes(unsigned of);

/// Fixture for strings: hooks installed, and the state of lists and grids given back.
class Catalogue : public test::TempDirTest {
  protected:
    Catalogue();
    ~Catalogue() override;
};

}  // namespace zav::truth
