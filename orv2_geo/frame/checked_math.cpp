#include "orv2_geo/frame/checked_math.h"

#include <bit>

namespace orv2_geo::checked {

namespace {

bool is_signalling(double value) {
  constexpr std::uint64_t quiet_bit = std::uint64_t{1} << 51U;
  return std::isnan(value) && (std::bit_cast<std::uint64_t>(value) & quiet_bit) == 0;
}

// Whether a sum, difference, product, or a quotient by a divisor that is not
// zero, raised an exception on its way to `outcome`.
bool raises(double a, double b, double outcome) {
  if (is_signalling(a) || is_signalling(b)) return true;
  const bool quiet = std::isnan(a) || std::isnan(b);
  if (std::isnan(outcome) && !quiet) return true;  // invalid operation
  return std::isinf(outcome) && is_finite(a) && is_finite(b);
}

double noted(double a, double b, double outcome, Pending& pending) {
  pending.note(raises(a, b, outcome));
  return outcome;
}

}  // namespace

double sum(double a, double b, Pending& pending) { return noted(a, b, a + b, pending); }
double difference(double a, double b, Pending& pending) { return noted(a, b, a - b, pending); }
double product(double a, double b, Pending& pending) { return noted(a, b, a * b, pending); }

double quotient(double dividend, double divisor, const Pending& pending) {
  pending.look();
  const bool by_zero = divisor == 0.0 && is_finite(dividend) && dividend != 0.0;
  if (by_zero) raise(failure::division_by_zero);
  const double outcome = dividend / divisor;
  if (raises(dividend, divisor, outcome)) raise(failure::overflow);
  return outcome;
}

void unordered() { raise(failure::overflow); }

double widened_nan(float value) {
  constexpr std::uint32_t quiet_bit = std::uint32_t{1} << 22U;
  if ((std::bit_cast<std::uint32_t>(value) & quiet_bit) == 0) raise(failure::overflow);
  return std::numeric_limits<double>::quiet_NaN();
}

}  // namespace orv2_geo::checked
