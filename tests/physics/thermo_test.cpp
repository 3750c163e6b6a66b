// The formulas of moist air, comfort and the standard atmosphere.

#include "physics/thermo.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <functional>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "frame/zav.h"
#include "support/support.h"
#include "support/table.h"

namespace zav {
namespace {

using Arguments = std::vector<float>;
using Formula = std::function<float(const Arguments&)>;

Formula of(float (*f)(float)) {
    return [f](const Arguments& a) { return f(a.at(0)); };
}
Formula of(float (*f)(float, float)) {
    return [f](const Arguments& a) { return f(a.at(0), a.at(1)); };
}
Formula of(float (*f)(float, float, float)) {
    return [f](const Arguments& a) { return f(a.at(0), a.at(1), a.at(2)); };
}

/// A condensation level, alone and between others.
float one_lcl_pres(float ts, float tds, float ps) {
    const Arguments t = {290.0F, ts, 300.0F}, td = {250.0F, tds, 0.0F}, p = {900.0F, ps, 900.0F};
    Arguments pl(3);
    lcl_pres(t.data(), td.data(), p.data(), pl.data(), 3);
    EXPECT_EQ(pl, (Arguments{lcl_pres(290.0F, 250.0F, 900.0F), lcl_pres(ts, tds, ps), FMISS}));
    return pl[1];
}

float one_eq_pot_temp(float temp, float dewp, float pr) { return eq_pot_temp(temp, dewp, pr); }

/// Both ways of working out a wet bulb.
float either_wet_bulb(float temp, float dewp, float pr) {
    const float usual = wet_bulb(temp, dewp, pr);
    EXPECT_EQ(wet_bulb(temp, dewp, Saturated_adiabats(pr), lcl_pres(temp, dewp, pr)), usual)
        << temp << ' ' << dewp << ' ' << pr;
    return usual;
}

/// Both ways down a moist adiabat.
float either_satad(float pot, float pr) {
    const float usual = temp_on_satad(pot, pr);
    EXPECT_EQ(Saturated_adiabats(pr).temperature(pot), usual) << pot << ' ' << pr;
    return usual;
}

const std::map<std::string, Formula> FORMULAS = {
    {"vapor_pr", of(vapor_pr)},
    {"temp_vapor_pr", of(temp_vapor_pr)},
    {"temp_on_mixrat", of(temp_on_mixrat)},
    {"mix_ratio", of(mix_ratio)},
    {"spec_hum", of(spec_hum)},
    {"dew_temp", of(dew_temp)},
    {"rel_hum", of(rel_hum)},
    {"pot_temp", of(pot_temp)},
    {"temp_on_dryad", of(temp_on_dryad)},
    {"virt_temp", of(virt_temp)},
    {"virt_pot_temp", of(virt_pot_temp)},
    {"thetae_on_satad", of(thetae_on_satad)},
    {"temp_on_satad", of(either_satad)},
    {"lcl_pres", of(one_lcl_pres)},
    {"lcl_temp", of(lcl_temp)},
    {"conv_temp", of(conv_temp)},
    {"eq_pot_temp", of(one_eq_pot_temp)},
    {"wet_bulb", of(either_wet_bulb)},
    {"wet_bulb_pot_temp", of(wet_bulb_pot_temp)},
    {"wind_chill_temp", of(wind_chill_temp)},
    {"wind_chill_temp2", of(wind_chill_temp2)},
    {"wind_chill", of(wind_chill)},
    {"heat_index", of(heat_index)},
    {"humiture", of(humiture)},
    {"temp_hum_index", of(temp_hum_index)},
    {"sfc_pr_alt", of(sfc_pr_alt)},
    {"pres_alt", of(pres_alt)},
    {"interp_temp", [](const Arguments& a) { return interp_temp(a.at(0), a.at(1), a.at(2), a.at(3), a.at(4)); }},
    {"calc_earth_dist", [](const Arguments& a) { return calc_earth_dist(a.at(0), a.at(1), a.at(2), a.at(3)); }},
};

TEST(Thermo, AgreesWithASecondWorkingOut) {
    for (const test::Case& c : test::cases("physics/formulas")) {
        Arguments arguments;
        for (std::size_t i = 2; !c.text(i).empty(); i++) arguments.push_back(static_cast<float>(c.real(i)));
        EXPECT_FLOAT_EQ(FORMULAS.at(c.text(0))(arguments), static_cast<float>(c.real(1))) << c.line();
    }
}

/// A number with its unit, in K, mb, g/kg, m or m/s. A percentage is the dew point of that humidity at `temp`.
float in_our_units(const std::string& cell, float temp) {
    std::size_t end = 0;
    const double number = std::stod(cell, &end);
    const std::string unit = cell.substr(end);
    if (unit == "%") return dew_temp(temp, static_cast<float>(number));
    const std::map<std::string, double> scale = {{"F", 1 / 1.8}, {"mph", 0.44704}};
    const std::map<std::string, double> shift = {{"C", 273.15}, {"F", 273.15 - 32 / 1.8}};
    const double scaled = scale.contains(unit) ? number * scale.at(unit) : number;
    return static_cast<float>(shift.contains(unit) ? scaled + shift.at(unit) : scaled);
}

TEST(Thermo, AgreesWithPublishedValues) {
    for (const test::Case& c : test::cases("physics/published")) {
        Arguments arguments;
        for (std::size_t i = 1; i <= 3 && !c.text(i).empty(); i++)
            arguments.push_back(in_our_units(c.text(i), arguments.empty() ? 0.0F : arguments[0]));
        const float published = in_our_units(c.text(4), 0.0F);
        const double tolerance = c.text(5).ends_with('%') ? c.real(5) / 100 * std::fabs(published) : c.real(5);
        EXPECT_NEAR(FORMULAS.at(c.text(0))(arguments), published, tolerance) << c.line();
    }
}

/// Compares two functions at `count` floats drawn evenly from the bits between two values.
template <class First, class Second>
void expect_same(float low, float high, const First& first, const Second& second) {
    std::mt19937 random(5);
    std::uniform_int_distribution<std::uint32_t> bits(std::bit_cast<std::uint32_t>(low),
                                                      std::bit_cast<std::uint32_t>(high));
    for (int i = 0; i < 40000; i++) {
        const auto value = std::bit_cast<float>(bits(random));
        ASSERT_EQ(first(value), static_cast<float>(second(value))) << value;
    }
}

TEST(Thermo, TablesKeepTheLastDigit) {
    expect_same(100.0F, 600.0F, vapor_pr, [](double t) {
        return std::pow(10.0, 23.832241 - 5.02808 * std::log10(t) - 1.3816e-7 * std::pow(10.0, 11.344 - 0.0303998 * t) +
                                  0.008132801 * std::pow(10.0, 3.49149 - 1302.8844 / t) - 2949.076 / t);
    });
    expect_same(1e-5F, 300.0F, temp_vapor_pr, [](double e) {
        const double c = std::pow(e, 0.0915) - 1.2035;
        return 38.9114 * c * c + std::pow(10.0, 2.4082965 + 0.0498646455 * std::log10(e)) - 7.08475;
    });
    expect_same(
        1.0F, 4000.0F, [](float p) { return pot_temp(287.3F, p); },
        [](double p) { return 287.3F * std::pow(1000.0 / p, 0.286); });
    expect_same(
        1.0F, 4000.0F, [](float p) { return temp_on_dryad(287.3F, p); },
        [](double p) { return 287.3F * std::pow(p / 1000.0, 0.286); });
    const Saturated_adiabats adiabats(700.0F);
    expect_same(
        230.0F, 420.0F, [&](float pot) { return adiabats.temperature(pot); },
        [](float pot) { return temp_on_satad(pot, 700.0F); });
}

TEST(Thermo, MoistAdiabatLeadsBack) {
    for (float pr : {300.0F, 500.0F, 850.0F, 1000.0F})
        for (float t = 235.0F; t < 300.0F; t += 3.7F)
            EXPECT_NEAR(temp_on_satad(thetae_on_satad(t, pr), pr), t, 0.03) << t << ' ' << pr;
}

TEST(Thermo, DistanceIsThatOfTheHaversine) {
    std::mt19937 random(3);
    std::uniform_real_distribution<float> latitude(-90.0F, 90.0F);
    std::uniform_real_distribution<float> longitude(-180.0F, 180.0F);
    const double degree = std::acos(-1.0) / 180.0;
    for (int i = 0; i < 300; i++) {
        const float lat1 = latitude(random), lat2 = latitude(random), lon1 = longitude(random),
                    lon2 = longitude(random);
        const double up = std::sin((lat2 - lat1) * degree / 2), along = std::sin((lon2 - lon1) * degree / 2);
        const double h = up * up + std::cos(lat1 * degree) * std::cos(lat2 * degree) * along * along;
        EXPECT_NEAR(calc_earth_dist(lat1, lon1, lat2, lon2), 2 * 6371.3 * std::asin(std::sqrt(h)), 0.2);
        EXPECT_LT(calc_earth_dist(lat1, lon1, lat1, lon1), 4.0);  // never not a number
    }
}

}  // namespace
}  // namespace zav
