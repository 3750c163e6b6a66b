// The formulas of moist air, comfort and the standard atmosphere beside a second working-out, over what can be given to
// them: usual numbers, the limits of their cases, numbers out of all range.

#include "calc/catalogue_air.h"

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <random>
#include <string>
#include <type_traits>

#include "physics/thermo.h"

namespace zav::truth {
namespace {

using Given = std::array<float, 5>;

struct Formula {
    const char* name;
    const char* kinds;  ///< of its arguments: T temperature, D dew point, P pressure, H percent, W wind, E vapour
                        ///< pressure or mixing ratio, Z height, L latitude or longitude
    std::function<float(const Given&)> program;
    std::function<double(const std::array<double, 5>&)> truth;
    double step = 0;  ///< what a step of an iteration changes that rounding begins or leaves out
};

template <class>
struct Single {
    using type = float;
};

/// A formula with what it is compared to, which tells how many arguments it has.
template <class... D>
Formula pair(const char* name, const char* kinds, std::type_identity_t<float (*)(typename Single<D>::type...)> program,
             double (*truth)(D...), double step = 0) {
    return [=]<std::size_t... I>(std::index_sequence<I...>)->Formula {
        return {name, kinds, [program](const Given& a) { return program(a[I]...); },
                [truth](const std::array<double, 5>& a) { return truth(a[I]...); }, step};
    }
    (std::index_sequence_for<D...>());
}

const Formula FORMULAS[] = {
    pair("vapor_pr", "T", zav::vapor_pr, vapor_pr),
    pair("temp_vapor_pr", "E", zav::temp_vapor_pr, temp_vapor_pr),
    pair("temp_on_mixrat", "EP", zav::temp_on_mixrat, temp_on_mixrat),
    pair("mix_ratio", "TP", zav::mix_ratio, mix_ratio),
    pair("mix_ratio", "EP", zav::mix_ratio, mix_ratio),
    pair("spec_hum", "TP", zav::spec_hum, spec_hum),
    pair("spec_hum", "EP", zav::spec_hum, spec_hum),
    pair("dew_temp", "TH", zav::dew_temp, dew_temp),
    pair("rel_hum", "TD", zav::rel_hum, rel_hum),
    pair("rel_hum", "EE", zav::rel_hum, rel_hum),
    pair("pot_temp", "TP", zav::pot_temp, pot_temp),
    pair("temp_on_dryad", "TP", zav::temp_on_dryad, temp_on_dryad),
    pair("virt_temp", "TDP", zav::virt_temp, virt_temp),
    pair("virt_temp", "TEP", zav::virt_temp, virt_temp),
    pair("virt_pot_temp", "TDP", zav::virt_pot_temp, virt_pot_temp),
    pair("thetae_on_satad", "TP", zav::thetae_on_satad, thetae_on_satad),
    pair("temp_on_satad", "TP", zav::temp_on_satad, temp_on_satad, 0.06),
    pair("lcl_pres", "TDP", zav::lcl_pres, lcl_pres, 1.0),
    pair("lcl_temp", "TPP", zav::lcl_temp, lcl_temp),
    pair("conv_temp", "EPP", zav::conv_temp, conv_temp),
    pair("eq_pot_temp", "TDP", zav::eq_pot_temp, eq_pot_temp, 0.2),
    pair("wet_bulb", "TDP", zav::wet_bulb, wet_bulb, 0.1),
    pair("wet_bulb_pot_temp", "TDP", zav::wet_bulb_pot_temp, wet_bulb_pot_temp, 0.1),
    pair("wind_chill_temp", "TW", zav::wind_chill_temp, wind_chill_temp),
    pair("wind_chill_temp2", "TW", zav::wind_chill_temp2, wind_chill_temp2),
    pair("wind_chill", "TW", zav::wind_chill, wind_chill),
    pair("heat_index", "TD", zav::heat_index, heat_index),
    pair("humiture", "TD", zav::humiture, humiture),
    pair("temp_hum_index", "TD", zav::temp_hum_index, temp_hum_index),
    pair("sfc_pr_alt", "PZ", zav::sfc_pr_alt, sfc_pr_alt),
    pair("pres_alt", "P", zav::pres_alt, pres_alt),
    pair("interp_temp", "TTPPP", zav::interp_temp, interp_temp),
    pair("calc_earth_dist", "LLLL", zav::calc_earth_dist, calc_earth_dist),
};

float any_of(char kind, std::mt19937& random) {
    struct Range {
        char kind;
        float low, high;
    };
    constexpr Range RANGES[] = {{'T', 180, 330}, {'D', 170, 310}, {'P', 5, 1100},    {'H', -5, 120},
                                {'W', 0, 40},    {'E', 0, 60},    {'Z', -400, 9000}, {'L', -90, 90}};
    constexpr float ODD[] = {-9999, -1,        0,       1e-6F,   2,    26,      99.9999F,
                             100,   100.0001F, 226.32F, 306.15F, 1000, 1100.1F, 2001};
    if (kind != 'L' && random() % 12 == 0) return ODD[random() % std::size(ODD)];
    for (const Range& range : RANGES) {
        if (range.kind == kind) return std::uniform_real_distribution<float>(range.low, range.high)(random);
    }
    return 0;
}

/// What single precision may change: the change of the result with a millionth of each argument.
double allowance(const Formula& formula, const std::array<double, 5>& given, double result) {
    double sum = 1e-6 * std::abs(result) + 1e-30;
    for (std::size_t i = 0; formula.kinds[i] != '\0'; i++) {
        double most = 0;
        for (const double side : {1 - 1e-6, 1 + 1e-6}) {
            std::array<double, 5> moved = given;
            moved[i] *= given[i] == MISSING ? 1 : side;
            most = std::max(most, std::abs(formula.truth(moved) - result));
        }
        sum += most;
    }
    return sum;
}

TEST(CatalogueAir, FormulasGiveWhatIsWorkedOut) {
    std::mt19937 random(11);
    constexpr int TRIES = 20000;
    for (const Formula& formula : FORMULAS) {
        int off = 0, stepped = 0;
        std::string first;
        for (int n = 0; n < TRIES; n++) {
            Given given{};
            std::array<double, 5> exact{};
            for (std::size_t i = 0; formula.kinds[i] != '\0'; i++) {
                given[i] = any_of(formula.kinds[i], random);
                exact[i] = static_cast<double>(given[i]);
            }
            const double seen = static_cast<double>(formula.program(given));
            const double want = formula.truth(exact);
            if (!std::isfinite(want) && !std::isfinite(seen)) continue;
            const double apart = std::abs(seen - want);
            const double allowed = allowance(formula, exact, want);
            if (apart <= allowed || std::isnan(allowed)) continue;
            if (apart <= allowed + formula.step) {
                stepped++;
                continue;
            }
            off++;
            if (!first.empty()) continue;
            for (const double value : exact) first += std::to_string(value) + " ";
            first += "gives " + std::to_string(seen) + ", worked out " + std::to_string(want);
        }
        EXPECT_EQ(off, 0) << formula.name << " " << formula.kinds << ": " << first;
        EXPECT_LE(stepped, TRIES / 50) << formula.name;
    }
}

}  // namespace
}  // namespace zav::truth
