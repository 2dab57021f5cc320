// bounds.h: the bounds of a sort.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

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

/// The elements of a range, when all are there and their subscripts stay so far
/// from both ends of 32 bits that no sum or step of the algorithm overflows; none
/// otherwise.
template <class T>
std::span<T> movable(GeoArray<T>& array, Range range) noexcept {
  constexpr std::int32_t limit = 1 << 30;
  T* elements = array.row(range.lo, range.hi);
  if (elements == nullptr || range.lo <= -limit || range.hi >= limit) return {};
  return {elements, static_cast<std::size_t>(range.hi - range.lo) + 1};
}

}  // namespace orv2_geo::sorting
