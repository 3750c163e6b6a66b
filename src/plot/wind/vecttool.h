#pragma once

namespace zav {

/// A vector for the products below.
struct VECT {
    float x = 0.0F;
    float y = 0.0F;
    float z = 0.0F;
};

// Conversions between components and direction (degrees) with speed. A wind direction is where the air comes from,
// a polar direction where it goes, clockwise from north. 0, or -1 with missing results for missing input.

int polar2vect(float dir, float spd, float* u, float* v);
/// The direction may be negative; it is 0 for speeds below 0.01.
int vect2polar(float u, float v, float* dir, float* spd);
int wind2vect(float dir, float spd, float* u, float* v);
/// The direction is from 0 to 360; it is 0 for speeds below 0.01.
int vect2wind(float u, float v, float* dir, float* spd);

/// Sum of the products, missing if an x component is.
float dot_product(VECT u, VECT v);
/// 0, or -1 with all of `w` missing if an x component is.
int cross_product(VECT u, VECT v, VECT* w);

}  // namespace zav
