// Every f32 as the argument of the members that take one, beside the members restated in
// plain statements.
#include <bit>
#include <cmath>
#include <limits>

#include "orv2_geo/angles/cgeo_Algorismos.h"
#include "tests/exhaustive/check.h"
#include "tests/exhaustive/outcome.h"

namespace orv2_geo::exhaustive {
namespace {

using plane_tests::algorithms;
using testing_support::runtime;

// Rounded to f32; 6 where that, or a statement before it, overflowed.
Outcome rounded(double value) {
  const volatile auto single = static_cast<float>(value);
  const std::int32_t number = raised();
  return number != 0 ? failed(number) : answered(single);
}

Outcome restated_an360(float an) {
  if (std::isnan(an)) return failed(6);
  if (an == 0.0F) return answered(0.0);
  look_away();
  Number degrees = static_cast<double>(an) / 1.11111111111111;
  return rounded(degrees);
}

Outcome restated_an400(float an) {
  if (std::isnan(an)) return failed(6);
  if (an == 0.0F) return answered(0.0);
  look_away();
  Number centesimal = 1.11111111111111 * static_cast<double>(an);
  return rounded(centesimal);
}

Outcome restated_arccos(float s) {
  if (std::isnan(s)) return failed(6);
  look_away();
  Number square = static_cast<double>(s) * static_cast<double>(s);
  Number rest = 1.0 - square;
  const volatile auto rest_in_f32 = static_cast<float>(rest);
  if (raised() != 0) return failed(6);
  if (rest_in_f32 <= 0.0F) return answered(s > 0.0F ? 0.0F : 3.1415F);
  static const double right_angle = 2.0 * runtime.atan(1.0);
  Number side = std::sqrt(static_cast<double>(rest_in_f32));
  Number tangent = -(static_cast<double>(s) / side);
  return rounded(runtime.atan(tangent) + right_angle);
}

// Which patterns a check is about, without their signs: those from `from` to below `to`.
struct Magnitudes {
  std::uint32_t from, to;
  constexpr std::uint64_t count() const { return to - from; }
};
constexpr std::uint32_t sign_bit = 0x80000000U;
constexpr Magnitudes all = {0, sign_bit};
// From 2^64 on the square of a number leaves f32.
constexpr std::uint32_t large_square = (127U + 64U) << 23U;
constexpr std::uint32_t infinity = 0xffU << 23U;

template <auto member, auto restated, Magnitudes... ranges>
void every_single(std::uint64_t first, std::uint64_t end, Tally& tally) {
  for (std::uint64_t number = first; number < end; ++number) {
    std::uint64_t place = number / 2;
    std::uint32_t pattern = 0;
    const auto in_range = [&](const Magnitudes& range) {
      pattern = range.from + static_cast<std::uint32_t>(place);
      if (place < range.count()) return true;
      place -= range.count();
      return false;
    };
    (in_range(ranges) || ...);
    if (number % 2 != 0) pattern |= sign_bit;
    const auto value = std::bit_cast<float>(pattern);
    const Outcome got = outcome_of([&] { return (algorithms.*member)(value); });
    const Outcome expected = restated(value);
    tally.expect(got == expected, [&](std::ostream& out) {
      out << "of " << value << " (pattern " << pattern << "): " << got << ", restated " << expected;
    });
  }
}

template <auto member, auto restated, Magnitudes... ranges>
constexpr Check check_of(const char* name, const char* what, std::uint64_t quick_parts,
                         std::uint64_t nights = 1) {
  constexpr std::uint64_t patterns = 2 * (ranges.count() + ...);
  return {name,
          what,
          patterns,
          1U << 12U,
          quick_parts,
          nights,
          every_single<member, restated, ranges...>};
}

}  // namespace

std::vector<Check> checks_of_single_numbers() {
  return {
      check_of<&cgeo_Algorismos::An360, restated_an360, all>("an360", "An360 of every f32", 4099),
      check_of<&cgeo_Algorismos::An400, restated_an400, all>("an400", "An400 of every f32", 4099),
      check_of<&cgeo_Algorismos::Arccos, restated_arccos, Magnitudes{0, large_square},
               Magnitudes{infinity, sign_bit}>(
          "arccos", "Arccos of every f32 below 2^64, of infinities and NaN", 4099),
      check_of<&cgeo_Algorismos::Arccos, restated_arccos, Magnitudes{large_square, infinity}>(
          "arccos_beyond", "Arccos of every f32 from 2^64 on: failures, which take a while", 65537,
          16)};
}

}  // namespace orv2_geo::exhaustive
