// ranges.h: the bounds of a sort, and the elements between them.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

#include "orv2_geo/frame/geo_arrays.h"
#include "orv2_geo/frame/memory.h"
#include "orv2_geo/sorting/mOrdena.h"
#include "orv2_geo/sorting/quicksort.h"

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
  constexpr std::int32_t limit = 1 << 30;  // the sum of two such subscripts fits 32 bits
  T* elements = array.row(range.lo, range.hi);
  if (elements == nullptr || range.lo <= -limit || range.hi >= limit) return {};
  return {elements, static_cast<std::size_t>(range.hi - range.lo) + 1};
}

/// Puts elements into the order of these positions. False, with nothing moved, where
/// there is no memory.
template <class Element>
bool rearrange(std::span<Element> elements, std::span<const std::uint32_t> order) {
  return if_memory_allows([&] {
    std::vector<Element> moved(elements.size());
    for (std::size_t p = 0; p < order.size(); ++p) moved[p] = std::move(elements[order[p]]);
    std::move(moved.begin(), moved.end(), elements.begin());
    return true;
  });
}

}  // namespace orv2_geo::sorting
