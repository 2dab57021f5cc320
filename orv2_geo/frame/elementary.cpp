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
