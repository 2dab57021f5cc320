// outcome.h: what a call came to, and the processor's own word on whether a number of a
// restatement went astray.
#pragma once

#include <cfenv>
#include <cstdint>
#include <ostream>
#include <type_traits>

#include "orv2_geo/frame/run_failure.h"
#include "tests/plane/agree.h"

namespace orv2_geo::exhaustive {

using plane_tests::Number;
using plane_tests::Outcome;
using plane_tests::outcome_of;

inline Outcome failed(std::int32_t number) { return {number, 0}; }
inline Outcome answered(double value) { return {0, testing_support::bits(value)}; }

/// The exceptions of the processor that matter.
inline constexpr int looked_at = FE_INVALID | FE_OVERFLOW | FE_DIVBYZERO;

/// Forgets what was raised before.
inline void look_away() {
  if (std::fetestexcept(looked_at) != 0) std::feclearexcept(looked_at);
}

/// The number of the failure that was raised since; 0 for none.
inline std::int32_t raised() {
  const int flags = std::fetestexcept(looked_at);
  if (flags == 0) return 0;
  return (flags & FE_DIVBYZERO) != 0 ? failure::division_by_zero : failure::overflow;
}

}  // namespace orv2_geo::exhaustive
