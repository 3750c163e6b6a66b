#pragma once

#include <string>

namespace zav {

/// A conversion between two unit texts, looked up once for many values.
struct UnitConversion {
    /// `unknown`: the lookup file doesn't hold the pair. `none`: there is no lookup file.
    enum class Kind { keep, scale, lookup, unknown, none };
    Kind kind = Kind::keep;
    float ifac = 1.0F;    ///< factor in the text converted from
    float ofac = 1.0F;    ///< factor in the text converted to
    float scale = 1.0F;   ///< of the lookup file
    float offset = 0.0F;  ///< of the lookup file, in units without factor

    /// The converted value; FMISS stays.
    float operator()(float value) const;
};

/// Finds the conversion between two unit texts: an optional factor and a name each ("1e-5 /s", "10^-5 /s", "m/s").
/// A pair that the lookup file doesn't hold converts by the factors alone; without the file every value becomes 0.
UnitConversion UNIT_find(const std::string& iunit, const std::string& ounit);
/// One value by UNIT_find; the last pair is remembered.
float UNIT_cvt(float value, const std::string& iunit, const std::string& ounit);
/// A unit text scaled: the factor of `in` times `scale`, the name of `in`, then `mstr`. Result 0.
int UNIT_scale(const std::string& in, float scale, const std::string& mstr, std::string& out);
/// Splits a label "name (units)".
void UNIT_parse(const std::string& str, std::string& var, std::string& units);
/// Puts other units in such a label.
void UNIT_change(std::string& str, const std::string& units);

}  // namespace zav
