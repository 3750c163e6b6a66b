#pragma once

#include <string>

namespace zav {

/// The units attribute of a variable as the program writes units: "m s**-1" is "m/s". Texts of another form stay.
std::string cf_units(const std::string& text);

/// What the lookup file "cf.lup" says of a variable.
struct Cf_meaning {
    std::string abbr;    ///< abbreviation in variable.lup, empty if the file doesn't know it
    std::string level;   ///< level of its own, as a level key; empty for none
    bool alone = false;  ///< that level holds only for a variable without a vertical axis
};
/// Looks for a standard name, or with `standard` false for a variable's name in any case. `units` are those of
/// cf_units.
Cf_meaning cf_meaning(bool standard, const std::string& name, const std::string& units);

/// The level type of the words that tools name levels with ("isobaricInhPa", "heightAboveGround"); MISS for others.
/// `factor` takes what a number in SI units is multiplied by.
int cf_level_type(const std::string& word, double* factor);

}  // namespace zav
