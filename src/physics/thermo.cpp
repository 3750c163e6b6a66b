// Moist air: vapour, humidity, potential temperatures, lifted parcels.
//
// Formulas are worked out in double precision; what one function hands to another is a float.

#include "physics/thermo.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "frame/zav.h"
#include "physics/float_table.h"

namespace zav {
namespace {

/// Up to this a number in the place of a temperature is a vapour pressure or a mixing ratio.
constexpr float LEAST_TEMPERATURE = 100.0F;
/// Ratio of the molecular weights of water and dry air, in g/kg.
constexpr double VAPOUR_RATIO = 622.0;
/// Virtual temperature's increase by the mixing ratio.
constexpr double VIRTUAL = 0.609;
/// Gas constant of dry air over its specific heat.
constexpr double KAPPA = 0.286;
/// Latent heat over the specific heat of dry air, by 1000, with its sign.
constexpr double LATENT = -2.6518986;

constexpr double STANDARD_PRESSURE = 1000.0;

float single(double value) { return static_cast<float>(value); }

double power_of_ten(double exponent) { return std::pow(10.0, exponent); }

/// Saturation vapour pressure (mb) of a temperature.
double saturation_pressure(double t) {
    return power_of_ten(23.832241 - 5.02808 * std::log10(t) - 1.3816e-7 * power_of_ten(11.344 - 0.0303998 * t) +
                        0.008132801 * power_of_ten(3.49149 - 1302.8844 / t) - 2949.076 / t);
}

/// Temperature of a saturation vapour pressure (mb).
double saturation_temperature(double e) {
    const double c = std::pow(e, 0.0915) - 1.2035;
    return 38.9114 * c * c + power_of_ten(2.4082965 + 0.0498646455 * std::log10(e)) - 7.08475;
}

/// (1000 / pr)^0.286
double to_standard(double pr) { return std::pow(STANDARD_PRESSURE / pr, KAPPA); }

/// (pr / 1000)^0.286
double from_standard(double pr) { return std::pow(pr / STANDARD_PRESSURE, KAPPA); }

// The dear ones as tables, of 170 to 512 K, 2^-14 to 2^7 mb, 2^3 to 2^11 mb. A field of theta-e asks for them some
// twenty times a point.

using Pressures = Float_table<3, 8, 4>;

/// Below, saturation pressure changes too much with temperature for the table's pieces.
constexpr float COLDEST = 170.0F;

const auto& saturation_pressures() {
    static const Float_table<7, 2, 7> table(saturation_pressure);
    return table;
}

const auto& saturation_temperatures() {
    static const Float_table<-14, 21, 4> table(saturation_temperature);
    return table;
}

const Pressures& powers_to_standard() {
    static const Pressures table(to_standard);
    return table;
}

const Pressures& powers_from_standard() {
    static const Pressures table(from_standard);
    return table;
}

/// `value` times the power of `pr`, rounded.
float times_power(const Pressures& table, double value, float pr, double (*power)(double)) {
    const auto exact = [&] { return value * power(pr); };
    return table.covers(pr) ? rounded(value * table(pr), exact) : single(exact());
}

float times_to_standard(double value, float pr) { return times_power(powers_to_standard(), value, pr, to_standard); }

/// Equivalent potential temperature over temperature and the dry factor, of `w` g/kg condensing at `t`.
double condensation(double w, double t) { return std::exp(LATENT * w / t); }

/// Missing or impossible values of a parcel.
bool no_parcel(float temp, float dewp, float pr) { return temp <= 0.0F || dewp < 0.0F || pr < 0.0F; }

// Search of the temperature at which saturated air has an equivalent potential temperature: HALVINGS steps, each half
// of the one before. The places it can come to are numbered as in a heap, 2 n below and 2 n + 1 above place n.
constexpr int HALVINGS = 12;
constexpr std::size_t HALVINGS_END = std::size_t{1} << HALVINGS;
constexpr double HALVING_START = 253.16;
constexpr double HALVING_STEP = 120.0;

bool no_adiabat(float pot, float pr) { return pot <= 0.0F || pr <= 0.0F || pr > 2000.0F; }

/// The search, with `factors`(place, temperature) telling what to compare.
template <class Factors>
float halve(float pot, const Factors& factors) {
    double t = HALVING_START;
    double step = HALVING_STEP;
    std::size_t place = 1;
    for (int i = 0; i < HALVINGS; i++) {
        const Dry_and_moist at = factors(place, t);
        const double d = pot * at.moist - at.dry;
        if (d * d < 2e-5) break;
        step /= 2.0;
        t += d > 0.0 ? step : -step;
        place = 2 * place + (d > 0.0 ? 1 : 0);
    }
    return single(t);
}

/// Vapour pressure where it saturates, or the number itself where it is one.
double saturation(float temp) { return temp > LEAST_TEMPERATURE ? vapor_pr(temp) : temp; }

/// Theta-e of a parcel that has some moisture and condenses at `pl`.
float lifted_theta_e(float temp, float pr, float pl) { return thetae_on_satad(lcl_temp(temp, pr, pl), pl); }

bool no_lifting(float ts, float tds, float ps) {
    return ts <= LEAST_TEMPERATURE || tds <= LEAST_TEMPERATURE || ps <= 0.0F || ps > 1100.0F;
}

/// A search of a condensation level.
struct Lifting {
    float w;        ///< mixing ratio
    float pot;      ///< potential temperature
    double pr;      ///< pressure so far
    float* result;  ///< the same, rounded
};

/// Takes `num` searches to their ends. Each step goes through all that are still open, as steps of one have to wait for
/// each other.
void lift(Lifting* open, std::size_t num) {
    constexpr int STEPS = 8;
    for (int step = 0; num > 0; step++) {
        std::size_t left = 0;
        for (std::size_t i = 0; i < num; i++) {
            Lifting at = open[i];
            const float pl = single(at.pr);
            *at.result = pl;
            const double diff = static_cast<double>(temp_on_mixrat(at.w, pl)) - temp_on_dryad(at.pot, pl);
            at.pr *= std::exp2(0.02 * diff);
            open[left] = at;
            left += step < STEPS && diff * diff > 0.0001 ? 1 : 0;
        }
        num = left;
    }
}

/// A parcel lifted to its condensation at `pl`, then brought down moist: `to`(theta-e).
template <class To>
float descend(float temp, float dewp, float pr, float pl, const To& to) {
    if (no_parcel(temp, dewp, pr)) return FMISS;
    return dewp == 0.0F ? 0.0F : to(lifted_theta_e(temp, pr, pl));
}

}  // namespace

Dry_and_moist::Dry_and_moist(double t, float pr)
    : dry(pot_temp(single(t), pr)), moist(condensation(mix_ratio(single(t), pr), t)) {}

float vapor_pr(float t) {
    if (t < 0.0F) return FMISS;
    if (t < LEAST_TEMPERATURE) return 0.0F;
    const auto exact = [t] { return saturation_pressure(t); };
    const auto& table = saturation_pressures();
    return t >= COLDEST && table.covers(t) ? rounded(table(t), exact) : single(exact());
}

float temp_vapor_pr(float e) {
    if (e <= 0.0F) return 0.0F;
    const auto exact = [e] { return saturation_temperature(e); };
    const auto& table = saturation_temperatures();
    return table.covers(e) ? rounded(table(e), exact) : single(exact());
}

float temp_on_mixrat(float w, float pr) {
    if (w <= 0.0F || pr <= 0.0F) return 0.0F;
    const double mixing = w;
    return temp_vapor_pr(single(mixing * pr / (VAPOUR_RATIO + mixing)));
}

float mix_ratio(float temp, float pr) {
    if (temp == FMISS || pr == FMISS) return FMISS;
    if (temp <= 0.0F || pr <= 0.0F) return 0.0F;
    const double e = saturation(temp);
    return single(VAPOUR_RATIO * e / (pr - e));
}

float spec_hum(float temp, float pr) {
    if (temp == FMISS || pr == FMISS) return FMISS;
    if (temp <= 0.0F || pr <= 0.0F) return 0.0F;
    return single(VAPOUR_RATIO * saturation(temp) / pr);
}

float dew_temp(float temp, float rh) {
    if (rh == FMISS || temp <= 0.0F) return FMISS;
    const double held = std::clamp(rh, 2.0F, 100.0F);
    return temp_vapor_pr(single(vapor_pr(temp) * held / 100.0));
}

float rel_hum(float t, float td) {
    if (t <= 0.0F || td <= 0.0F) return FMISS;
    if (t <= LEAST_TEMPERATURE && td <= LEAST_TEMPERATURE) return single(100.0 * td / t);
    return single(100.0 * vapor_pr(td) / vapor_pr(t));
}

float pot_temp(float temp, float pr) {
    if (temp <= 0.0F || pr <= 0.0F) return FMISS;
    return times_to_standard(temp, pr);
}

float temp_on_dryad(float pot, float pr) {
    if (pot <= 0.0F || pr <= 0.0F) return 0.0F;
    return times_power(powers_from_standard(), pot, pr, from_standard);
}

float virt_temp(float temp, float dewp, float pr) {
    if (no_parcel(temp, dewp, pr)) return FMISS;
    if (dewp == 0.0F) return temp;
    const float w = dewp > LEAST_TEMPERATURE ? mix_ratio(dewp, pr) : dewp;
    return single(temp * (1.0 + VIRTUAL * w / 1000.0));
}

float virt_pot_temp(float temp, float dewp, float pr) {
    if (no_parcel(temp, dewp, pr)) return FMISS;
    if (dewp == 0.0F) return pot_temp(temp, pr);
    return times_to_standard(virt_temp(temp, dewp, pr), pr);
}

float thetae_on_satad(float temp, float pr) {
    if (temp <= 0.0F || pr <= 0.0F) return 0.0F;
    return single(temp * to_standard(pr) / condensation(mix_ratio(temp, pr), temp));
}

float temp_on_satad(float pot, float pr) {
    if (no_adiabat(pot, pr)) return FMISS;
    return halve(pot, [pr](std::size_t, double t) { return Dry_and_moist(t, pr); });
}

Saturated_adiabats::Saturated_adiabats(float pr) : pr_(pr), places_(no_adiabat(1.0F, pr) ? 0 : HALVINGS_END) {
    fill(1, HALVING_START, HALVING_STEP);
}

void Saturated_adiabats::fill(std::size_t place, double t, double step) {
    if (place >= places_.size()) return;
    places_[place] = Dry_and_moist(t, pr_);
    fill(2 * place, t - step / 2.0, step / 2.0);
    fill(2 * place + 1, t + step / 2.0, step / 2.0);
}

float Saturated_adiabats::temperature(float pot) const {
    if (no_adiabat(pot, pr_)) return FMISS;
    return halve(pot, [this](std::size_t place, double) { return places_[place]; });
}

float lcl_pres(float ts, float tds, float ps) {
    float pl = FMISS;
    lcl_pres(&ts, &tds, &ps, &pl, 1);
    return pl;
}

void lcl_pres(const float* ts, const float* tds, const float* ps, float* pl, std::size_t count) {
    constexpr std::size_t AT_ONCE = 256;
    std::array<Lifting, AT_ONCE> open;
    for (std::size_t start = 0; start < count; start += AT_ONCE) {
        std::size_t num = 0;
        for (std::size_t i = start; i < std::min(start + AT_ONCE, count); i++) {
            pl[i] = FMISS;
            if (!no_lifting(ts[i], tds[i], ps[i]))
                open[num++] = {mix_ratio(tds[i], ps[i]), pot_temp(ts[i], ps[i]), ps[i], pl + i};
        }
        lift(open.data(), num);
    }
}

float lcl_temp(float ts, float ps, float pl) { return temp_on_dryad(pot_temp(ts, ps), pl); }

float conv_temp(float wbar, float pc, float pr) { return temp_on_dryad(pot_temp(temp_on_mixrat(wbar, pc), pc), pr); }

float eq_pot_temp(float temp, float dewp, float pr) { return eq_pot_temp(temp, dewp, pr, lcl_pres(temp, dewp, pr)); }

float eq_pot_temp(float temp, float dewp, float pr, float pl) {
    if (no_parcel(temp, dewp, pr)) return FMISS;
    return dewp == 0.0F ? pot_temp(temp, pr) : lifted_theta_e(temp, pr, pl);
}

float wet_bulb(float temp, float dewp, float pr) { return wet_bulb(temp, dewp, pr, lcl_pres(temp, dewp, pr)); }

float wet_bulb(float temp, float dewp, float pr, float pl) {
    return descend(temp, dewp, pr, pl, [pr](float pot) { return temp_on_satad(pot, pr); });
}

float wet_bulb(float temp, float dewp, const Saturated_adiabats& adiabats, float pl) {
    return descend(temp, dewp, adiabats.pressure(), pl, [&](float pot) { return adiabats.temperature(pot); });
}

float wet_bulb_pot_temp(float temp, float dewp, float pr) {
    return descend(temp, dewp, pr, lcl_pres(temp, dewp, pr),
                   [](float pot) { return temp_on_satad(pot, single(STANDARD_PRESSURE)); });
}

}  // namespace zav
