// checked_integer.h: whole numbers that fail instead of wrapping round.
#pragma once

#include <concepts>
#include <cstdint>

#include "orv2_geo/frame/run_failure.h"

namespace orv2_geo {

/// A 16-bit or 32-bit signed number. Sums, differences, products, changes of
/// sign and absolute values that do not fit are failure 6.
template <std::signed_integral T>
class CheckedInteger {
 public:
  constexpr CheckedInteger() noexcept = default;
  constexpr CheckedInteger(T value) noexcept : value_(value) {}

  constexpr T value() const noexcept { return value_; }
  explicit constexpr operator T() const noexcept { return value_; }

  friend constexpr CheckedInteger operator+(CheckedInteger a, CheckedInteger b) {
    T exact{};
    const bool overflowed = __builtin_add_overflow(a.value_, b.value_, &exact);
    return fitting(overflowed, exact);
  }
  friend constexpr CheckedInteger operator-(CheckedInteger a, CheckedInteger b) {
    T exact{};
    const bool overflowed = __builtin_sub_overflow(a.value_, b.value_, &exact);
    return fitting(overflowed, exact);
  }
  friend constexpr CheckedInteger operator*(CheckedInteger a, CheckedInteger b) {
    T exact{};
    const bool overflowed = __builtin_mul_overflow(a.value_, b.value_, &exact);
    return fitting(overflowed, exact);
  }
  constexpr CheckedInteger operator-() const { return CheckedInteger{} - *this; }
  constexpr CheckedInteger& operator++() { return *this = *this + CheckedInteger(T{1}); }

  friend constexpr bool operator==(CheckedInteger, CheckedInteger) noexcept = default;
  friend constexpr bool operator<(CheckedInteger a, CheckedInteger b) noexcept {
    return a.value_ < b.value_;
  }

 private:
  static constexpr CheckedInteger fitting(bool overflowed, T exact) {
    if (overflowed) [[unlikely]]
      raise(failure::overflow);
    return exact;
  }

  T value_ = 0;
};

using Checked32 = CheckedInteger<std::int32_t>;
using Checked16 = CheckedInteger<std::int16_t>;

/// Failure 6 for the lowest number of all.
template <std::signed_integral T>
constexpr CheckedInteger<T> abs(CheckedInteger<T> value) {
  return value < CheckedInteger<T>{} ? -value : value;
}

}  // namespace orv2_geo
