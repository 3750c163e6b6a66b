#pragma once

#include <cstddef>
#include <vector>

namespace zav {

// Formulas of moist air, comfort, and the standard atmosphere. Pure functions of single-precision values.
//
// Temperatures, dew points and potential temperatures in K, pressures in mb, mixing ratio and specific humidity in
// g/kg, wind speeds in m/s. -9999 is the missing value. Where told, a number of at most 100 in the place of a
// temperature is a vapour pressure or a mixing ratio.

/// Saturation vapour pressure over water (mb), by Nordquist 1973 after Goff and Gratch. -9999 below 0 K, 0 below 100 K.
float vapor_pr(float t);
/// Temperature at which `e` (mb) saturates. 0 if `e` isn't above 0.
float temp_vapor_pr(float e);
/// Temperature at which air of mixing ratio `w` is saturated (Stipanuk 1973). 0 if either isn't above 0.
float temp_on_mixrat(float w, float pr);

/// Mixing ratio of saturated air at `temp`, or of a vapour pressure of at most 100 mb.
float mix_ratio(float temp, float pr);
/// Specific humidity of saturated air at `temp`, or of a vapour pressure of at most 100 mb.
float spec_hum(float temp, float pr);
/// Dew point at relative humidity `rh` (percent), held to 2 to 100.
float dew_temp(float temp, float rh);
/// Relative humidity (percent) from temperature and dew point, or from two vapour pressures of at most 100 mb.
float rel_hum(float t, float td);

float pot_temp(float temp, float pr);
/// Temperature at `pr` of air of potential temperature `pot`.
float temp_on_dryad(float pot, float pr);
/// `dewp` of at most 100 is a mixing ratio; 0 is dry air.
float virt_temp(float temp, float dewp, float pr);
float virt_pot_temp(float temp, float dewp, float pr);

/// Equivalent potential temperature of saturated air, theta exp(2.6518986 w / T) (Stipanuk 1973).
float thetae_on_satad(float temp, float pr);
/// Temperature at `pr` of saturated air of equivalent potential temperature `pot`, to some 0.03 K.
float temp_on_satad(float pot, float pr);

/// Two factors of saturated air: potential temperature, and that over the equivalent one.
struct Dry_and_moist {
    Dry_and_moist() = default;
    Dry_and_moist(double t, float pr);
    double dry = 0.0;
    double moist = 0.0;
};

/// temp_on_satad for many parcels at one pressure, with the same results: what its steps compare is worked out before.
class Saturated_adiabats {
  public:
    explicit Saturated_adiabats(float pr);
    float pressure() const { return pr_; }
    /// Temperature of saturated air of equivalent potential temperature `pot`.
    float temperature(float pot) const;

  private:
    void fill(std::size_t place, double t, double step);

    float pr_;
    std::vector<Dry_and_moist> places_;  ///< that the search can come to
};

/// Pressure of the lifting condensation level of air at pressure `ps`, by the iteration of Stipanuk 1973.
float lcl_pres(float ts, float tds, float ps);
/// The same of `count` parcels: several searches go on side by side, which takes half the time.
void lcl_pres(const float* ts, const float* tds, const float* ps, float* pl, std::size_t count);
/// Temperature at the lifting condensation level `pl`.
float lcl_temp(float ts, float ps, float pl);
/// Convective temperature at `pr` for mixing ratio `wbar` and condensation pressure `pc`.
float conv_temp(float wbar, float pc, float pr);
float eq_pot_temp(float temp, float dewp, float pr);
float wet_bulb(float temp, float dewp, float pr);
float wet_bulb_pot_temp(float temp, float dewp, float pr);
/// The first two for a parcel whose condensation level `pl` is known.
float eq_pot_temp(float temp, float dewp, float pr, float pl);
float wet_bulb(float temp, float dewp, float pr, float pl);
float wet_bulb(float temp, float dewp, const Saturated_adiabats& adiabats, float pl);

/// Wind chill equivalent temperature by the cooling power of the wind (Siple and Passel 1945), of winds of 2 to 26 m/s;
/// `temp` in less, or above 306.15 K.
float wind_chill_temp(float temp, float ws);
/// Wind chill equivalent temperature by heat loss from the face (US and Canadian weather services 2001).
float wind_chill_temp2(float temp, float ws);
/// Cooling power of the wind (W/m^2; Siple and Passel 1945); `temp` where wind_chill_temp gives that.
float wind_chill(float temp, float ws);
/// Apparent temperature of heat and moisture, a polynomial in temperature and relative humidity fitted to the tables of
/// Steadman 1979. -9999 for a dew point above the temperature.
float heat_index(float temp, float dewp);
float humiture(float temp, float dewp);
/// Discomfort index 0.55 t + 0.2 td + 17.5, made for F (Thom 1959).
float temp_hum_index(float temp, float dewp);

/// Station pressure from altimeter setting `alt` and elevation `el` (m).
float sfc_pr_alt(float alt, float el);
/// Height (m) of a pressure in the standard atmosphere.
float pres_alt(float pres);
/// Temperature at `pr` between two levels, linear in the logarithm of pressure.
float interp_temp(float t1, float t2, float p1, float p2, float pr);

/// Distance (km) between two places along a great circle.
float calc_earth_dist(float lat1, float lon1, float lat2, float lon2);

}  // namespace zav
