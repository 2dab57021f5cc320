// Built without the compiler's own knowledge of these functions (-fno-builtin),
// so that each call reaches the C run-time.
#include "orv2_geo/frame/elementary.h"

#include <cmath>

#include "orv2_geo/frame/run_failure.h"

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
#define ORV2_RUN_TIME(name) imported_##name
#else
#define ORV2_RUN_TIME(name) std::name
#endif

namespace orv2_geo::elementary {

namespace {

bool is_infinite(double x) { return std::isinf(x); }

// What a function answers for finite arguments, or failure 6.
double not_overflowed(double value, bool finite_arguments) {
  if (is_infinite(value) && finite_arguments) raise(failure::overflow);
  return value;
}

}  // namespace

double arc_tangent(double x) noexcept { return ORV2_RUN_TIME(atan)(x); }
double sine(double x) noexcept { return ORV2_RUN_TIME(sin)(x); }
double cosine(double x) noexcept { return ORV2_RUN_TIME(cos)(x); }
double tangent(double x) noexcept { return ORV2_RUN_TIME(tan)(x); }
double exponential(double x) noexcept { return ORV2_RUN_TIME(exp)(x); }
double natural_logarithm(double x) noexcept { return ORV2_RUN_TIME(log)(x); }
double power(double base, double exponent) noexcept { return ORV2_RUN_TIME(pow)(base, exponent); }

double tested_square_root(double x) {
  if (x < 0.0) raise(failure::invalid_call);
  return __builtin_sqrt(x);  // the machine's own, rounded once; a run-time may round twice
}

double tested_trigonometric(double x, double (*function)(double) noexcept) {
  if (is_infinite(x)) raise(failure::overflow);  // an invalid operation
  return function(x);
}

double tested_exponential(double x) { return not_overflowed(exponential(x), !is_infinite(x)); }

double tested_natural_logarithm(double x) {
  if (x <= 0.0) raise(failure::invalid_call);
  return natural_logarithm(x);
}

double tested_power(double base, double exponent) {
  if (base == 0.0 && exponent < 0.0) raise(failure::invalid_call);
  const bool finite = std::isfinite(base) && std::isfinite(exponent);
  if (finite && base < 0.0 && std::floor(exponent) != exponent) raise(failure::invalid_call);
  return not_overflowed(power(base, exponent), finite);
}

}  // namespace orv2_geo::elementary
