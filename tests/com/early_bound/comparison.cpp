// What a call did here against what the vectors tell of it.
#include "tests/com/early_bound/comparison.h"

#include <algorithm>
#include <cmath>

namespace orv2_geo::early_bound {

using vectors::Kind;
using vectors::Value;

namespace {

// The bits of a number with a fraction as a whole one that grows with it.
double place_of(const Value& value) {
  if (value.kind == Kind::f32) {
    const auto bits = static_cast<std::int32_t>(static_cast<std::uint32_t>(value.bits));
    return bits < 0 ? -static_cast<double>(bits & 0x7fffffff) : bits;
  }
  const auto bits = static_cast<std::int64_t>(value.bits);
  const auto size = static_cast<double>(bits & 0x7fffffffffffffff);
  return bits < 0 ? -size : size;
}

// Of two numbers of one sign: a difference of whole ones, before it loses its last digits.
double ulps_between(const Value& a, const Value& b) {
  const bool one_sign =
      (a.kind == Kind::f32 ? (a.bits ^ b.bits) >> 31 : (a.bits ^ b.bits) >> 63) == 0;
  if (!one_sign) return std::abs(place_of(a) - place_of(b));
  const std::uint64_t low = std::min(a.bits, b.bits);
  return static_cast<double>(std::max(a.bits, b.bits) - low);
}

bool has_fraction(const Value& value) { return value.kind == Kind::f64 || value.kind == Kind::f32; }

}  // namespace

bool Comparison::agree(const Value& expected, const Value& got, bool elementary) {
  if (expected == got) return true;
  if (!elementary || expected.kind != got.kind) return false;
  if (has_fraction(expected)) return close(expected, got);
  const bool alike = vectors::is_array(expected.kind) && expected.allocated == got.allocated &&
                     expected.lower == got.lower && expected.dimensions == got.dimensions &&
                     expected.elements.size() == got.elements.size();
  return alike &&
         std::equal(expected.elements.begin(), expected.elements.end(), got.elements.begin(),
                    [this](const Value& a, const Value& b) { return agree(a, b, true); });
}

bool Comparison::close(const Value& expected, const Value& got) {
  const double ulps = ulps_between(expected, got);
  largest_ = std::max(largest_, ulps);
  return ulps <= allowed_ulps;
}

}  // namespace orv2_geo::early_bound
