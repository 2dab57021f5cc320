// double_keys.h: the keys by which doubles are ordered.
//
// The key of a value is the default text of the value plus an offset, 200000000
// for a negative one and 300000000 for any other, and keys are compared as texts.
// For values from -100000000 to below 700000000 every key has nine digits before
// the decimal sign and at most six after it, so that comparing the texts compares
// the numbers of 15 digits that they stand for: there the key is such a whole
// number of millionths, and no text is made. For values beyond, the texts have
// other lengths and their order is no order of numbers; when a single one occurs,
// all keys of the sort are made as texts.
#pragma once

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <span>

namespace orv2_geo::sorting {

inline constexpr double offset_below_zero = 200000000.0;
inline constexpr double offset_from_zero = 300000000.0;

/// Where keys have nine digits before the decimal sign.
inline constexpr double lowest_in_span = -100000000.0;
inline constexpr double beyond_span = 700000000.0;

/// From here on rounding to 15 digits has made it ten digits.
inline constexpr std::int64_t first_of_ten_digits = 1'000'000'000'000'000;

/// The key of a value in the span, in millionths: value plus offset, a double,
/// rounded to 15 digits as its text is, ties to even.
inline std::int64_t key_in_span(double value) noexcept {
  const double sum = value < 0.0 ? value + offset_below_zero : value + offset_from_zero;
  const auto whole = static_cast<std::int64_t>(sum);
  // From 100000000 on a double is a multiple of 2^-26, so this is exact, and
  // millionths are 15625 / 2^20 of that.
  const auto fraction =
      static_cast<std::int64_t>((sum - static_cast<double>(whole)) * 67108864.0);  // 2^26
  const std::int64_t product = fraction * 15625;
  const std::int64_t rest = product & 0xfffff;
  const std::int64_t down = product >> 20;
  const std::int64_t half = 0x80000;
  // Up above the half, and at the half where `down` is odd, without a branch. Both of
  // these have a rest of 0x80000: 0.0078125 is 7812.5 millionths and stays 7812,
  // 0.0234375 is 23437.5 and becomes 23438.
  const bool up = rest + (down & 1) > half;
  return whole * 1000000 + down + static_cast<std::int64_t>(up);
}

/// The same order without the numbers between 200000000 and 300000000, which no
/// key takes: 199999999.9 and 300000000 become neighbours.
inline std::uint64_t closed_up(std::int64_t key) noexcept {
  constexpr std::int64_t last_below_zero = 200'000'000'000'000;
  constexpr std::int64_t gap = 100'000'000'000'000 - 1;
  return static_cast<std::uint64_t>(key <= last_below_zero ? key + gap : key);
}

/// As many keys are made together.
inline constexpr std::size_t keys_a_block = 64;

/// The keys, closed up, of values from zero on where a multiplication tells them, which
/// is so for coordinates with few decimals; says whether it does, and all are in the span.
///
/// In the span a sum is below 10^9 and its product below 10^15 < 2^50, so that half a
/// unit in the product's last place is 2^(49 - 52) / 2 = 1/16: the number next to the
/// product is the key where it is no further than 3/8 away, as 3/8 + 1/16 < 1/2.
///
/// There is no branch, and no conversion: adding 2^52 leaves a double below that
/// without a fraction, and with its whole number in the lowest bits. 2^52 + 5.2 is
/// 0x4330000000000005. Positive doubles compare like their bits.
inline bool multiply_keys(std::span<const double, keys_a_block> values,
                          std::uint64_t* keys) noexcept {
  const auto bits = [](double value) { return std::bit_cast<std::uint64_t>(value); };
  constexpr double two_to_52 = 4503599627370496.0;
  constexpr std::uint64_t last_of_nine_digits = first_of_ten_digits - 1;
  std::uint64_t refused = 0;  // the highest bit: something beyond its limit
  for (std::size_t k = 0; k < keys_a_block; ++k) {
    const double product = (values[k] + offset_from_zero) * 1e6;
    const double whole = product + two_to_52;
    const double rest = product - (whole - two_to_52);
    const std::uint64_t key = bits(whole) - bits(two_to_52);
    refused |= bits(values[k]) | (bits(0.375) - bits(std::abs(rest))) | (last_of_nine_digits - key);
    keys[k] = key;
  }
  return refused >> 63 == 0;
}

/// The key that was closed up.
inline std::int64_t opened(std::uint64_t closed) noexcept {
  constexpr std::uint64_t first_from_zero = 300'000'000'000'000;
  constexpr std::int64_t gap = 100'000'000'000'000 - 1;
  const auto key = static_cast<std::int64_t>(closed);
  return closed < first_from_zero ? key - gap : key;
}

/// Whether a value has such a whole number as its key: not one beyond the span, nor one
/// that rounding has carried out of it, nor NaN.
inline bool has_number_key(double value) noexcept {
  if (!(value >= lowest_in_span && value < beyond_span)) return false;
  return value < beyond_span - 1.0 || key_in_span(value) < first_of_ten_digits;
}

/// The number that a key's text stands for: the double next to it.
inline double number_of_key(std::int64_t key) noexcept {
  return static_cast<double>(key) / 1000000.0;
}

}  // namespace orv2_geo::sorting
