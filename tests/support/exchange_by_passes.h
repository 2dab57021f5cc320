// exchange_by_passes.h: the sort that exchanges neighbours, as a book has it.
#pragma once

#include <cstddef>
#include <utility>
#include <vector>

namespace orv2_geo::testing_support {

/// Passes over the elements from `first` on, always at full length: neighbours change
/// places where the key of the first is not the lower, at equality too.
template <class... Row>
void exchange_by_passes(std::size_t first, std::vector<double>& keys, Row&... others) {
  for (std::size_t last = keys.size(); last-- > first;) {
    for (std::size_t j = first; j < last; ++j) {
      if (keys[j] < keys[j + 1]) continue;
      std::swap(keys[j], keys[j + 1]);
      (std::swap(others[j], others[j + 1]), ...);
    }
  }
}

}  // namespace orv2_geo::testing_support
