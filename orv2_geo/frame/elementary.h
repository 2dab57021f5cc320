// elementary.h: the C run-time's functions behind the checked formulas.
//
// Each is called at run time: a compiler that works one out beforehand, or
// writes a power as a product, would not give the run-time's last bit.
#pragma once

#include <cmath>

namespace orv2_geo::elementary {

double arc_tangent(double x) noexcept;
double sine(double x) noexcept;
double cosine(double x) noexcept;
double tangent(double x) noexcept;
double exponential(double x) noexcept;
double natural_logarithm(double x) noexcept;
double power(double base, double exponent) noexcept;

// The same with their failures.
double tested_square_root(double x);
double tested_trigonometric(double x, double (*function)(double) noexcept);
double tested_exponential(double x);
double tested_natural_logarithm(double x);
double tested_power(double base, double exponent);

// One entry a function. `hides` tells that an argument that is not finite can
// come out finite, so that it must be seen before.
struct SquareRoot {
  static constexpr bool hides = false;
  static double plain(double x) noexcept { return std::sqrt(x); }
  static double tested(double x) { return tested_square_root(x); }
};
struct ArcTangent {
  static constexpr bool hides = true;
  static double plain(double x) noexcept { return arc_tangent(x); }
  static double tested(double x) { return arc_tangent(x); }
};
struct Sine {
  static constexpr bool hides = false;
  static double plain(double x) noexcept { return sine(x); }
  static double tested(double x) { return tested_trigonometric(x, sine); }
};
struct Cosine {
  static constexpr bool hides = false;
  static double plain(double x) noexcept { return cosine(x); }
  static double tested(double x) { return tested_trigonometric(x, cosine); }
};
struct Tangent {
  static constexpr bool hides = false;
  static double plain(double x) noexcept { return tangent(x); }
  static double tested(double x) { return tested_trigonometric(x, tangent); }
};
struct Exponential {
  static constexpr bool hides = true;
  static double plain(double x) noexcept { return exponential(x); }
  static double tested(double x) { return tested_exponential(x); }
};
struct NaturalLogarithm {
  static constexpr bool hides = false;
  static double plain(double x) noexcept { return natural_logarithm(x); }
  static double tested(double x) { return tested_natural_logarithm(x); }
};
struct AbsoluteValue {
  static constexpr bool hides = false;
  static double plain(double x) noexcept { return std::abs(x); }
  static double tested(double x) { return std::abs(x); }
};

}  // namespace orv2_geo::elementary
