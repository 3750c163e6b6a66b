// Moist air.

#include <algorithm>
#include <array>
#include <cmath>

#include "calc/grd_families.h"
#include "calc/grd_points.h"
#include "calc/grd_trans.h"
#include "physics/thermo.h"

namespace zav {
namespace {

/// Level type of a pressure level (GRIB edition 1, table 3).
constexpr int LEVEL_PRESSURE = 100;
/// Pressure (mb) of a grid that lies on no pressure level, where none is given.
constexpr float USUAL_PRESSURE = 1000.0F;

bool on_pressure_level(const Math_frame& frame) { return frame.grids[0]->ltype == LEVEL_PRESSURE; }

/// Makes the frame ready for its first `num` arguments and the pressure behind them. That is an argument only where one
/// is given and the grid lies on no pressure level; `argument` tells.
struct Pressure {
    bool ready;
    bool argument;
    float level;  ///< pressure of all points else

    Pressure(Math_frame& frame, int num)
        : argument(!on_pressure_level(frame) && frame.given(num + 1)),
          level(on_pressure_level(frame) ? static_cast<float>(frame.grids[0]->level) : USUAL_PRESSURE) {
        ready = GRD_begin(frame, argument ? num + 1 : num);
    }
};

/// Calls `compute` with the function that makes a dew point of a temperature and the humidity in argument `number`:
/// that itself, or what it gives as relative humidity in percent.
template <class Compute>
void with_humidity(const Math_frame& frame, int number, const Compute& compute) {
    if (GRD_is_dew_point(frame.argument(number))) {
        compute([](float, float td) { return td; });
    } else {
        compute(dew_temp);
    }
}

/// `value`(temperature, dew point, pressure) of arguments temperature, humidity and pressure.
template <class Value>
int of_parcel(Math_frame& frame, const Value& value) {
    const Pressure pressure(frame, 2);
    if (!pressure.ready) return 0;
    with_humidity(frame, 2, [&](const auto& dew_point) {
        if (pressure.argument) {
            math_points<1, 2, 3>(frame, 0, [&](float t, float h, float p) { return value(t, dew_point(t, h), p); });
        } else {
            const float p = pressure.level;
            math_points<1, 2>(frame, 0, [&, p](float t, float h) { return value(t, dew_point(t, h), p); });
        }
    });
    return 1;
}

/// A parcel of air, its lifting condensation level, and what the third argument has at its point.
struct Parcel {
    float t;
    float td;
    float p;
    float pl;
    float third;
};

/// `value`(parcel) of arguments temperature and humidity, at the pressures of the third one or all at `level`. A parcel
/// with something missing is one with a missing dew point.
template <class Value>
void math_parcels(Math_frame& frame, bool third_is_pressure, float level, const Value& value) {
    const Math_argument first(frame, 1);
    const Math_argument second(frame, 2);
    const Math_argument third(frame, 3);
    std::array<float, POINTS_AT_ONCE> td;
    std::array<float, POINTS_AT_ONCE> pl;
    std::array<float, POINTS_AT_ONCE> levels;
    levels.fill(level);
    with_humidity(frame, 2, [&](const auto& dew_point) {
        for (std::size_t start = 0; start < frame.points(); start += POINTS_AT_ONCE) {
            const std::size_t count = std::min(POINTS_AT_ONCE, frame.points() - start);
            const float* t = first.from(start);
            const float* h = second.from(start);
            const float* last = third.from(start);
            const float* p = third_is_pressure ? last : levels.data();
            for (std::size_t i = 0; i < count; i++)
                td[i] = t[i] == FMISS || h[i] == FMISS ? FMISS : dew_point(t[i], h[i]);
            lcl_pres(t, td.data(), p, pl.data(), count);
            for (std::size_t i = 0; i < count; i++)
                frame.ptr[0][start + i] = value(Parcel{t[i], td[i], p[i], pl[i], last[i]});
        }
    });
}

/// `value`(dew point, pressure) of a dew point and its pressure, or of temperature, humidity and pressure. Off the
/// pressure levels a temperature needs all three.
template <class Value>
int of_moisture(Math_frame& frame, const Value& value) {
    if (!GRD_is_dew_point(frame.argument(1))) {
        const bool enough = frame.given(2) && (on_pressure_level(frame) || frame.given(3));
        if (!enough) return GRD_refuse();
        return of_parcel(frame, [&](float, float td, float p) { return value(td, p); });
    }
    if (frame.num > 2) return GRD_refuse();
    if (!on_pressure_level(frame) && frame.argument(2) != nullptr) GRD_units(frame.argument(2), "mb");
    const Pressure pressure(frame, 1);
    if (!pressure.ready) return 0;
    if (pressure.argument) {
        math_points<1, 2>(frame, 0, value);
    } else {
        math_points<1>(frame, 0, [&](float td) { return value(td, pressure.level); });
    }
    return 1;
}

/// True if the second argument is a speed: by its variable, or a number that nothing follows.
bool is_speed(const Math_frame& frame) {
    const GRD_report* second = frame.argument(2);
    if (second == nullptr) return frame.num == 2;
    return GRD_is_variable(second, "wspd") || GRD_is_variable(second, "spd");
}

/// `value`(temperature, speed) of a temperature and a wind.
template <class Value>
int of_wind(Math_frame& frame, const Value& value) {
    if (frame.num < 2) return GRD_refuse();
    if (is_speed(frame)) {
        if (!GRD_begin(frame, 2)) return 0;
        math_points<1, 2>(frame, 0, value);
        return 1;
    }
    if (!GRD_begin(frame, 3)) return 0;
    math_points<1, 2, 3>(frame, 0, [&](float t, float u, float v) {
        return value(t, static_cast<float>(std::sqrt(static_cast<double>(u) * u + static_cast<double>(v) * v)));
    });
    return 1;
}

/// Temperature (K) of air lifted to the pressure of `top`.
float lifted(const Parcel& air, const Saturated_adiabats& top) {
    if (air.pl < top.pressure()) return temp_on_dryad(pot_temp(air.t, air.p), top.pressure());
    return top.temperature(thetae_on_satad(lcl_temp(air.t, air.p, air.pl), air.pl));
}

}  // namespace

int math_dewp(Math_frame& frame) {
    if (!GRD_begin(frame, 2)) return 0;
    math_points<1, 2>(frame, 0, dew_temp);
    return 1;
}

int math_rhum(Math_frame& frame) {
    if (!GRD_begin(frame, 2)) return 0;
    math_points<1, 2>(frame, 0, rel_hum);
    return 1;
}

int math_wetblb(Math_frame& frame) {
    const Pressure pressure(frame, 2);
    if (!pressure.ready) return 0;
    if (pressure.argument) {
        math_parcels(frame, true, FMISS, [](const Parcel& air) { return wet_bulb(air.t, air.td, air.p, air.pl); });
        return 1;
    }
    const Saturated_adiabats adiabats(pressure.level);
    math_parcels(frame, false, pressure.level,
                 [&](const Parcel& air) { return wet_bulb(air.t, air.td, adiabats, air.pl); });
    return 1;
}

int math_show(Math_frame& frame) {
    if (!GRD_begin(frame, 3)) return 0;
    const Saturated_adiabats top(500.0F);
    math_parcels(frame, false, 850.0F, [&](const Parcel& air) {
        if (air.td == FMISS || air.third == FMISS) return FMISS;
        const float parcel = lifted(air, top);
        return parcel != FMISS ? air.third - parcel : FMISS;
    });
    return 1;
}

int math_wchill(Math_frame& frame) { return of_wind(frame, wind_chill_temp); }

int math_wchill2(Math_frame& frame) { return of_wind(frame, wind_chill_temp2); }

int math_heat(Math_frame& frame) {
    if (!GRD_begin(frame, 2)) return 0;
    // The dew point of saturated air may come out a little above its temperature, which would be no heat index.
    const bool percent = !GRD_is_dew_point(frame.argument(2));
    with_humidity(frame, 2, [&](const auto& dew_point) {
        math_points<1, 2>(frame, 0, [&](float t, float humidity) {
            const float td = dew_point(t, humidity);
            return heat_index(t, percent ? std::min(td, t) : td);
        });
    });
    return 1;
}

int math_theta(Math_frame& frame) {
    const Pressure pressure(frame, 1);
    if (!pressure.ready) return 0;
    if (pressure.argument) {
        math_points<1, 2>(frame, 0, pot_temp);
    } else {
        math_points<1>(frame, 0, [&](float t) { return pot_temp(t, pressure.level); });
    }
    return 1;
}

int math_thetae(Math_frame& frame) {
    const Pressure pressure(frame, 2);
    if (!pressure.ready) return 0;
    math_parcels(frame, pressure.argument, pressure.level,
                 [](const Parcel& air) { return eq_pot_temp(air.t, air.td, air.p, air.pl); });
    return 1;
}

int math_vtemp(Math_frame& frame) { return of_parcel(frame, virt_temp); }

int math_thetav(Math_frame& frame) { return of_parcel(frame, virt_pot_temp); }

int math_vapor(Math_frame& frame) {
    if (frame.num == 1) {
        if (!GRD_begin(frame, 1)) return 0;
        math_points<1>(frame, 0, vapor_pr);
        return 1;
    }
    if (!GRD_begin(frame, 2)) return 0;
    with_humidity(frame, 2, [&](const auto& dew_point) {
        math_points<1, 2>(frame, 0, [&](float t, float humidity) { return vapor_pr(dew_point(t, humidity)); });
    });
    return 1;
}

int math_pr_alt(Math_frame& frame) {
    if (!GRD_begin(frame, 1)) return 0;
    math_points<1>(frame, 0, pres_alt);
    return 1;
}

int math_shum(Math_frame& frame) { return of_moisture(frame, spec_hum); }

int math_mixrat(Math_frame& frame) { return of_moisture(frame, mix_ratio); }

}  // namespace zav
