// bool.h: the 16-bit flag of the interface.
#pragma once

#include <cstdint>

namespace orv2_geo {

/// A flag of 16 bits. The library itself makes only -1 (true) and 0 (false);
/// a host can hand in any other pattern, and every non-zero one counts as true.
struct Bool {
  std::int16_t bits = 0;

  constexpr Bool() noexcept = default;
  constexpr Bool(bool value) noexcept : bits(value ? -1 : 0) {}

  /// A flag with exactly these bits, as a host may hold it.
  static constexpr Bool raw(std::int16_t bits) noexcept {
    Bool flag;
    flag.bits = bits;
    return flag;
  }

  constexpr operator bool() const noexcept { return bits != 0; }
};

static_assert(sizeof(Bool) == 2);

}  // namespace orv2_geo
