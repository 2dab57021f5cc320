// bounds.h: the bounds of a sort.
#pragma once

#include <cstddef>
#include <cstdint>

#include "frame/geo_arrays.h"
#include "sorting/kernel.h"
#include "sorting/mOrdena.h"

namespace orv2_geo::sorting {

inline std::int32_t lower_bound_of(const ArrayBase& array, std::int32_t given) {
  return given == mOrdena::bound_from_array ? array.lower() : given;
}
inline std::int32_t upper_bound_of(const ArrayBase& array, std::int32_t given) {
  return given == mOrdena::bound_from_array ? array.upper() : given;
}

inline std::size_t length(Range range) noexcept {
  return static_cast<std::size_t>(std::int64_t{range.hi} - range.lo + 1);
}

/// Whether subscripts stay so far from both ends of their range that no sum or
/// step of the algorithm overflows.
inline bool is_moderate(Range range) noexcept {
  constexpr std::int32_t limit = 1 << 30;
  return range.lo > -limit && range.hi < limit;
}

}  // namespace orv2_geo::sorting
