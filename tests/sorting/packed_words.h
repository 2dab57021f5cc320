// packed_words.h: keys as words, and their order.
#pragma once

#include <algorithm>
#include <cstdint>
#include <vector>

#include "orv2_geo/sorting/word_layout.h"
#include "orv2_geo/sorting/word_order.h"

namespace orv2_geo::testing_support {

using Words = std::vector<std::uint64_t>;

inline sorting::WordLayout layout_of(const std::vector<std::uint64_t>& keys) {
  const auto [lowest, highest] = std::minmax_element(keys.begin(), keys.end());
  return {*lowest, *highest, keys.size()};
}

/// In the order of their positions.
inline Words words_of(const sorting::WordLayout& layout, const std::vector<std::uint64_t>& keys) {
  Words words(keys.size());
  for (std::size_t p = 0; p < keys.size(); ++p) words[p] = layout.word(keys[p], p);
  return words;
}

inline sorting::WordOrder packed(const sorting::WordLayout& layout,
                                 const std::vector<std::uint64_t>& keys) {
  sorting::WordOrder order(keys.size());
  std::ranges::copy(words_of(layout, keys), order.words().begin());
  return order;
}

inline std::vector<std::uint32_t> order_of(const std::vector<std::uint64_t>& keys,
                                           std::int64_t first) {
  const sorting::WordLayout layout = layout_of(keys);
  std::vector<std::uint32_t> order(keys.size());
  packed(layout, keys).write_positions(layout, first, order);
  return order;
}

}  // namespace orv2_geo::testing_support
