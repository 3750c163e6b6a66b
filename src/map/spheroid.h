#pragma once

#include <cmath>
#include <numbers>

namespace zav {

/// An earth of a major axis and an excentricity. Its conformal maps are those of the sphere, with the tangent of half
/// the distance from the pole changed a little. J. P. Snyder, Map Projections: A Working Manual (USGS Professional
/// Paper 1395, 1987), equations 3-5, 14-15 and 15-9.
class Spheroid {
  public:
    /// A sphere if `excentricity` is 0.
    Spheroid(double major, double excentricity) : radius_(major), excentricity_(excentricity) {}

    double radius() const { return radius_; }
    double excentricity() const { return excentricity_; }

    /// Radius of a parallel in parts of the major axis.
    double parallel(double lat) const { return std::cos(RADIANS * lat) / flattening(lat); }

    /// 0 at the north pole, 1 at the equator.
    double half_angle(double lat) const { return std::tan(RADIANS * (POLE - lat) / 2.0) / correction(lat); }

    /// parallel / half_angle, which has a value at the north pole too.
    double pole_scale(double lat) const { return (1.0 + std::sin(RADIANS * lat)) / flattening(lat) * correction(lat); }

    /// Reverse of half_angle.
    double latitude(double half_angle) const { return from_conformal(POLE - 2.0 * std::atan(half_angle) / RADIANS); }

    /// Latitude of the place that conformal maps show where they show `lat` of a sphere, and the reverse. The poles and
    /// the equator stay.
    double from_conformal(double lat) const {
        constexpr int ROUNDS = 8;  // each adds more than two digits on any earth
        const double half_angle = std::tan(RADIANS * (POLE - lat) / 2.0);
        for (int i = 0; i < ROUNDS && excentricity_ != 0.0; ++i) {
            lat = POLE - 2.0 * std::atan(half_angle * correction(lat)) / RADIANS;
        }
        return lat;
    }
    double to_conformal(double lat) const {
        return excentricity_ == 0.0 ? lat : POLE - 2.0 * std::atan(half_angle(lat)) / RADIANS;
    }

  private:
    static constexpr double RADIANS = std::numbers::pi / 180.0;
    static constexpr double POLE = 90.0;

    double flattening(double lat) const {
        const double s = excentricity_ * std::sin(RADIANS * lat);
        return std::sqrt(1.0 - s * s);
    }
    double correction(double lat) const {
        const double s = excentricity_ * std::sin(RADIANS * lat);
        return std::pow((1.0 - s) / (1.0 + s), excentricity_ / 2.0);
    }

    double radius_;
    double excentricity_;
};

}  // namespace zav
