// Built without the compiler's own knowledge of these functions (-fno-builtin),
// so that each call reaches the C run-time.
#include "orv2_geo/frame/elementary.h"

#include <cmath>

#include "orv2_geo/frame/run_failure.h"

namespace orv2_geo::elementary {

namespace {

bool is_infinite(double x) { return std::isinf(x); }

// What a function answers for finite arguments, or failure 6.
double not_overflowed(double value, bool finite_arguments) {
  if (is_infinite(value) && finite_arguments) raise(failure::overflow);
  return value;
}

}  // namespace

double arc_tangent(double x) noexcept { return std::atan(x); }
double sine(double x) noexcept { return std::sin(x); }
double cosine(double x) noexcept { return std::cos(x); }
double tangent(double x) noexcept { return std::tan(x); }
double exponential(double x) noexcept { return std::exp(x); }
double natural_logarithm(double x) noexcept { return std::log(x); }
double power(double base, double exponent) noexcept { return std::pow(base, exponent); }

double tested_square_root(double x) {
  if (x < 0.0) raise(failure::invalid_call);
  return std::sqrt(x);
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
