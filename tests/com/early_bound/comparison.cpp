// What a call did here against what the vectors tell of it.
#include "tests/com/early_bound/comparison.h"

#include <algorithm>
#include <cmath>

namespace orv2_geo::early_bound {

using vectors::Kind;
using vectors::Value;

namespace {

double number_of(const Value& value) {
  return value.kind == Kind::f32 ? static_cast<double>(vectors::f32_of(value))
                                 : vectors::f64_of(value);
}

bool has_fraction(const Value& value) { return value.kind == Kind::f64 || value.kind == Kind::f32; }

// The last place of a number that has the type of `like`.
double ulp_of(double number, const Value& like) {
  const int digits = like.kind == Kind::f32 ? 24 : 53;
  const int lowest = like.kind == Kind::f32 ? -149 : -1074;
  return std::ldexp(1.0,
                    number == 0.0 ? lowest : std::max(std::ilogb(number) + 1 - digits, lowest));
}

}  // namespace

double scale_of(vectors::Closeness closeness, const vectors::VectorCall& call) {
  if (closeness == vectors::Closeness::bearings) return 400.0;
  double largest = 0.0;
  if (closeness != vectors::Closeness::sums) return largest;
  for (const vectors::Given& given : call.given) {
    const double size = has_fraction(given.value) ? std::abs(number_of(given.value)) : 0.0;
    if (std::isfinite(size)) largest = std::max(largest, size);
  }
  return largest;
}

bool Comparison::agree(const Value& expected, const Value& got, vectors::Closeness closeness,
                       double scale) {
  if (expected == got) return true;
  if (closeness == vectors::Closeness::exact || expected.kind != got.kind) return false;
  if (has_fraction(expected)) return close(expected, got, scale);
  const bool alike = vectors::is_array(expected.kind) && expected.allocated == got.allocated &&
                     expected.lower == got.lower && expected.dimensions == got.dimensions;
  return alike &&
         std::equal(expected.elements.begin(), expected.elements.end(), got.elements.begin(),
                    got.elements.end(),
                    [&](const Value& a, const Value& b) { return agree(a, b, closeness, scale); });
}

bool Comparison::close(const Value& expected, const Value& got, double scale) {
  const double a = number_of(expected), b = number_of(got);
  if (!std::isfinite(a) || !std::isfinite(b)) return false;
  const double ulps = std::abs(a - b) / ulp_of(std::max(std::abs(a), scale), expected);
  if (ulps > allowed_ulps) return false;
  ++not_equal_;
  largest_ = std::max(largest_, ulps);
  return true;
}

}  // namespace orv2_geo::early_bound
