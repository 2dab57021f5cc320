#include "frame/checked_math.h"

#include <bit>

namespace orv2_geo::checked {

namespace {

bool is_signalling(double value) {
  constexpr std::uint64_t quiet_bit = std::uint64_t{1} << 51U;
  return std::isnan(value) && (std::bit_cast<std::uint64_t>(value) & quiet_bit) == 0;
}

// The outcome of a sum, difference, product, or of a quotient by a divisor that
// is not zero, unless the operation raised an exception.
double without_exception(double a, double b, double outcome) {
  if (is_signalling(a) || is_signalling(b)) raise(failure::overflow);
  const bool quiet = std::isnan(a) || std::isnan(b);
  if (std::isnan(outcome) && !quiet) raise(failure::overflow);  // invalid operation
  if (std::isinf(outcome) && is_finite(a) && is_finite(b)) raise(failure::overflow);
  return outcome;
}

}  // namespace

double sum(double a, double b) { return without_exception(a, b, a + b); }
double difference(double a, double b) { return without_exception(a, b, a - b); }
double product(double a, double b) { return without_exception(a, b, a * b); }

double quotient(double dividend, double divisor) {
  const bool by_zero = divisor == 0.0 && is_finite(dividend) && dividend != 0.0;
  if (by_zero) raise(failure::division_by_zero);
  return without_exception(dividend, divisor, dividend / divisor);
}

void unordered() { raise(failure::overflow); }

double widened_nan(float value) {
  constexpr std::uint32_t quiet_bit = std::uint32_t{1} << 22U;
  if ((std::bit_cast<std::uint32_t>(value) & quiet_bit) == 0) raise(failure::overflow);
  return std::numeric_limits<double>::quiet_NaN();
}

}  // namespace orv2_geo::checked
