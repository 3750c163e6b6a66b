#pragma once

// Formulas of moist air, comfort and the standard atmosphere, worked out a second time for the tests: in double
// precision, what one formula hands to another being rounded to single precision.

#include <algorithm>
#include <cmath>

namespace zav::truth {

constexpr double MISSING = -9999.0;

/// A number as it is handed on: in single precision.
inline double handed(double value) { return static_cast<double>(static_cast<float>(value)); }

inline double vapor_pr(double t) {
    if (t < 0) return MISSING;
    if (t < 100.0) return 0;
    const double logarithm = 23.832241 - 5.02808 * std::log10(t) - 1.3816e-7 * std::pow(10.0, 11.344 - 0.0303998 * t) +
                             0.008132801 * std::pow(10.0, 3.49149 - 1302.8844 / t) - 2949.076 / t;
    return handed(std::pow(10.0, logarithm));
}

inline double temp_vapor_pr(double e) {
    if (e <= 0) return 0;
    const double c = std::pow(e, 0.0915) - 1.2035;
    return handed(38.9114 * c * c + std::pow(10.0, 2.4082965 + 0.0498646455 * std::log10(e)) - 7.08475);
}

inline double temp_on_mixrat(double w, double pr) {
    if (w <= 0 || pr <= 0) return 0;
    return temp_vapor_pr(handed(w * pr / (622.0 + w)));
}

inline double mix_ratio(double temp, double pr) {
    if (temp == MISSING || pr == MISSING) return MISSING;
    if (temp <= 0 || pr <= 0) return 0;
    const double e = temp > 100 ? vapor_pr(temp) : temp;
    return handed(622.0 * e / (pr - e));
}

inline double spec_hum(double temp, double pr) {
    if (temp == MISSING || pr == MISSING) return MISSING;
    if (temp <= 0 || pr <= 0) return 0;
    const double e = temp > 100 ? vapor_pr(temp) : temp;
    return handed(622.0 * e / pr);
}

inline double dew_temp(double temp, double rh) {
    if (rh == MISSING || temp <= 0) return MISSING;
    return temp_vapor_pr(handed(vapor_pr(temp) * std::clamp(rh, 2.0, 100.0) / 100));
}

inline double rel_hum(double t, double td) {
    if (t <= 0 || td <= 0) return MISSING;
    if (t <= 100 && td <= 100) return handed(100 * td / t);
    return handed(100 * vapor_pr(td) / vapor_pr(t));
}

inline double pot_temp(double temp, double pr) {
    if (temp <= 0 || pr <= 0) return MISSING;
    return handed(temp * std::pow(1000 / pr, 0.286));
}

inline double temp_on_dryad(double pot, double pr) {
    if (pot <= 0 || pr <= 0) return 0;
    return handed(pot * std::pow(pr / 1000, 0.286));
}

inline double virt_temp(double temp, double dewp, double pr) {
    if (temp <= 0 || dewp < 0 || pr < 0) return MISSING;
    if (dewp == 0) return temp;
    const double w = dewp > 100 ? mix_ratio(dewp, pr) : dewp;
    return handed(temp * (1 + 0.609 * w / 1000));
}

inline double virt_pot_temp(double temp, double dewp, double pr) {
    if (temp <= 0 || dewp < 0 || pr < 0) return MISSING;
    if (dewp == 0) return pot_temp(temp, pr);
    return handed(virt_temp(temp, dewp, pr) * std::pow(1000 / pr, 0.286));
}

/// Of latent heat, in theta_e = theta / exp(LATENT w / t).
constexpr double LATENT = -2.6518986;

inline double thetae_on_satad(double temp, double pr) {
    if (temp <= 0 || pr <= 0) return 0;
    return handed(temp * std::pow(1000 / pr, 0.286) / std::exp(LATENT * mix_ratio(temp, pr) / temp));
}

inline double temp_on_satad(double pot, double pr) {
    if (pot <= 0 || pr <= 0 || pr > 2000) return MISSING;
    double t = 253.16, step = 120.0;
    for (int i = 0; i < 12; i++) {
        const double single = handed(t);
        const double d = pot * std::exp(LATENT * mix_ratio(single, pr) / t) - pot_temp(single, pr);
        if (d * d < 2e-5) break;
        step /= 2;
        t += d > 0 ? step : -step;
    }
    return handed(t);
}

inline double lcl_pres(double ts, double tds, double ps) {
    if (ts <= 100 || tds <= 100 || ps <= 0 || ps > 1100) return MISSING;
    const double w = mix_ratio(tds, ps);
    const double o = pot_temp(ts, ps);
    double pl = ps;
    const auto difference = [&] { return temp_on_mixrat(w, handed(pl)) - temp_on_dryad(o, handed(pl)); };
    double diff = difference();
    for (int i = 0; i < 8 && diff * diff > 0.0001; i++) {
        pl *= std::exp2(0.02 * diff);
        diff = difference();
    }
    return handed(pl);
}

inline double lcl_temp(double ts, double ps, double pl) { return temp_on_dryad(pot_temp(ts, ps), pl); }

inline double eq_pot_temp(double temp, double dewp, double pr) {
    if (temp <= 0 || dewp < 0 || pr < 0) return MISSING;
    if (dewp == 0) return pot_temp(temp, pr);
    const double p = lcl_pres(temp, dewp, pr);
    return thetae_on_satad(lcl_temp(temp, pr, p), p);
}

inline double wet_bulb(double temp, double dewp, double pr) {
    if (temp <= 0 || dewp < 0 || pr < 0) return MISSING;
    if (dewp == 0) return 0;
    return temp_on_satad(eq_pot_temp(temp, dewp, pr), pr);
}

inline double wind_chill_temp(double temp, double ws) {
    if (temp < 0 || ws < 0) return MISSING;
    if (ws < 2.0 || temp > 306.15) return temp;
    ws = std::min(ws, 26.0);
    return handed(306.15 - (0.474266 + 0.453843 * std::sqrt(ws) - 0.0453843 * ws) * (306.15 - temp));
}

inline double wind_chill_temp2(double temp, double ws) {
    if (temp < 0 || ws < 0) return MISSING;
    const double r = std::pow(ws, 0.16) * (0.4863 * temp - 146.774) + 0.6215 * temp + 116.514;
    return handed(std::min(r, temp));
}

inline double heat_index(double temp, double dewp) {
    if (temp < 0 || dewp < 0 || dewp > temp) return MISSING;
    const double t = 32 + 9 * (temp - 273.15) / 5;
    const double r = 100 * vapor_pr(dewp) / vapor_pr(temp);
    double h = 0.0936 * r + (t - 68) * 1.2 + 60.8;
    struct Term {
        int t, r;
        double factor;
    };
    constexpr Term TERMS[] = {{0, 0, 16.0},       {1, 0, 0.185212},    {0, 1, 5.37941},     {1, 1, -0.100254},
                              {2, 0, 0.00941695}, {0, 2, 0.00728898},  {2, 1, 0.000345372}, {1, 2, -0.000814971},
                              {2, 2, 1.02102e-5}, {3, 0, -3.8646e-5},  {0, 3, 2.91583e-5},  {3, 1, 1.42721e-6},
                              {1, 3, 1.97483e-7}, {3, 2, -2.18429e-8}, {2, 3, 8.43296e-10}, {3, 3, -4.81975e-11}};
    if (h >= 77) {
        h = 0;
        for (const Term& term : TERMS) h += term.factor * std::pow(t, term.t) * std::pow(r, term.r);
    }
    return handed(273.15 + 5 * (h - 32) / 9);
}

inline double pres_alt(double pres) {
    if (pres < 226.32) return handed(11000 + 6341.62 * std::log(226.32 / pres));
    return handed((288.15 - handed(288.15 * std::pow(pres / 1013.25, 0.190263))) / 0.0065);
}

/// Showalter index of temperature and dew point at 850 mb and temperature at 500 mb.
inline double showalter(double t, double td, double t500) {
    const double plcl = lcl_pres(t, td, 850.0);
    const double tlcl = lcl_temp(t, 850.0, plcl);
    const double parcel =
        plcl < 500.0 ? temp_on_dryad(pot_temp(t, 850.0), 500.0) : temp_on_satad(thetae_on_satad(tlcl, plcl), 500.0);
    return parcel == MISSING ? MISSING : handed(t500 - parcel);
}

}  // namespace zav::truth
