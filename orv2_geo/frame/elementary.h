// elementary.h: the C run-time's functions behind the checked formulas.
//
// Each is called at run time: a compiler that works one out beforehand, or
// writes a power as a product, would not give the run-time's last bit. So it is told
// to know none of them (cmake/flags.cmake).
#pragma once

#include <cmath>

#if defined(_WIN32)
// The system's run-time, by the names under which it is imported: the compiler's own
// library for Windows would put functions of its own, less exact ones, before it.
#if defined(__i386__)
#define ORV2_IMPORTED(name) __asm__("__imp__" name)
#else
#define ORV2_IMPORTED(name) __asm__("__imp_" name)
#endif
extern "C" {
extern double (*const imported_atan)(double) ORV2_IMPORTED("atan");
extern double (*const imported_sin)(double) ORV2_IMPORTED("sin");
extern double (*const imported_cos)(double) ORV2_IMPORTED("cos");
extern double (*const imported_tan)(double) ORV2_IMPORTED("tan");
extern double (*const imported_exp)(double) ORV2_IMPORTED("exp");
extern double (*const imported_log)(double) ORV2_IMPORTED("log");
extern double (*const imported_pow)(double, double) ORV2_IMPORTED("pow");
}
#undef ORV2_IMPORTED
#define ORV2_RUN_TIME(name) imported_##name
#else
#define ORV2_RUN_TIME(name) std::name
#endif

namespace orv2_geo::elementary {

inline double arc_tangent(double x) noexcept { return ORV2_RUN_TIME(atan)(x); }
inline double sine(double x) noexcept { return ORV2_RUN_TIME(sin)(x); }
inline double cosine(double x) noexcept { return ORV2_RUN_TIME(cos)(x); }
inline double tangent(double x) noexcept { return ORV2_RUN_TIME(tan)(x); }
inline double exponential(double x) noexcept { return ORV2_RUN_TIME(exp)(x); }
inline double natural_logarithm(double x) noexcept { return ORV2_RUN_TIME(log)(x); }
inline double power(double base, double exponent) noexcept {
  return ORV2_RUN_TIME(pow)(base, exponent);
}

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

#undef ORV2_RUN_TIME
