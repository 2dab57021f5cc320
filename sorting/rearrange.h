// rearrange.h: elements into an order that was found.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace orv2_geo::sorting {

/// Puts elements into the order of these positions. Throws std::bad_alloc, with
/// nothing moved.
template <class Element>
void rearrange(std::span<Element> elements, const std::vector<std::uint32_t>& order) {
  std::vector<Element> moved(elements.size());
  for (std::size_t p = 0; p < order.size(); ++p) moved[p] = std::move(elements[order[p]]);
  std::move(moved.begin(), moved.end(), elements.begin());
}

}  // namespace orv2_geo::sorting
