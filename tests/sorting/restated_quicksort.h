// restated_quicksort.h: the sorting algorithm once more, in plain steps with raw
// moves, on elements and keys that fail where they are missing.
#pragma once

#include <cstdint>
#include <functional>
#include <numeric>
#include <optional>
#include <vector>

#include "orv2_geo/frame/geo_arrays.h"
#include "orv2_geo/platform/text_services.h"

namespace orv2_geo::testing_support {

/// Elements at the subscripts from `lower` on. Reading past them is `missing`.
struct Missing {};

struct Elements {
  std::int64_t lower = 1;
  std::vector<std::int64_t> values;

  std::int64_t& at(std::int64_t k) {
    if (k < lower || k >= lower + static_cast<std::int64_t>(values.size())) throw Missing();
    return values[static_cast<std::size_t>(k - lower)];
  }
  std::vector<std::int32_t> as_longs() const { return {values.begin(), values.end()}; }
};

/// `count` elements, which number keys from `first` on.
inline Elements numbering(std::int64_t lower, std::size_t count, std::int64_t first) {
  Elements elements{lower, std::vector<std::int64_t>(count)};
  std::iota(elements.values.begin(), elements.values.end(), first);
  return elements;
}

/// Compares the keys of two elements; throws Missing where an element numbers no
/// key.
using Order = std::function<int(std::int64_t, std::int64_t)>;

inline int compare_numbers(std::int64_t a, std::int64_t b) { return a < b ? -1 : a > b ? 1 : 0; }

/// By keys[element - first].
template <class Number>
Order by_numbers(const std::vector<Number>& keys, std::int64_t first) {
  const auto key = [&keys, first](std::int64_t element) {
    const auto at = static_cast<std::size_t>(element - first);
    if (at >= keys.size()) throw Missing();
    return static_cast<std::int64_t>(keys[at]);
  };
  return [key](std::int64_t a, std::int64_t b) { return compare_numbers(key(a), key(b)); };
}
inline Order by_texts(const std::vector<Text>& keys, std::int64_t first) {
  const auto key = [&keys, first](std::int64_t element) {
    const auto at = static_cast<std::size_t>(element - first);
    if (at >= keys.size()) throw Missing();
    return keys[at].view();
  };
  return [key](std::int64_t a, std::int64_t b) { return text_services::compare(key(a), key(b)); };
}

/// False when an element was missing; the elements are then as they had got.
inline bool sort_by_restated_steps(Elements& array, const Order& order, std::int64_t lo,
                                   std::int64_t hi) try {
  std::int64_t stack[65] = {};
  int counter = 0;
  const auto swap = [&](std::int64_t x, std::int64_t y) {
    const std::int64_t kept = array.at(x);
    array.at(x) = array.at(y);
    array.at(y) = kept;
  };
  while (true) {
    if (hi - lo < 7) {
      for (std::int64_t j = lo + 1; j <= hi; ++j) {
        const std::int64_t a = array.at(j);
        std::int64_t i = j - 1;
        for (; i >= lo; --i) {
          if (order(array.at(i), a) <= 0) break;
          array.at(i + 1) = array.at(i);
        }
        array.at(i + 1) = a;
      }
      if (counter == 0) return true;
      hi = stack[counter];
      lo = stack[counter - 1];
      counter -= 2;
      continue;
    }
    swap((lo + hi) / 2, lo + 1);
    if (order(array.at(lo), array.at(hi)) > 0) swap(lo, hi);
    if (order(array.at(lo + 1), array.at(hi)) > 0) swap(lo + 1, hi);
    if (order(array.at(lo), array.at(lo + 1)) > 0) swap(lo, lo + 1);
    std::int64_t i = lo + 1;
    std::int64_t j = hi;
    const std::int64_t a = array.at(lo + 1);
    while (true) {
      do ++i;
      while (order(array.at(i), a) < 0);
      do --j;
      while (order(array.at(j), a) > 0);
      if (j < i) break;
      swap(i, j);
    }
    array.at(lo + 1) = array.at(j);
    array.at(j) = a;
    counter += 2;
    if (hi - i + 1 >= j - lo) {
      stack[counter] = hi;
      stack[counter - 1] = i;
      hi = j - 1;
    } else {
      stack[counter] = j - 1;
      stack[counter - 1] = lo;
      lo = i;
    }
  }
} catch (const Missing&) {
  return false;
}

/// The positions of keys at the subscripts from `first` on, in the order in which the
/// steps leave them. Keys are below 2^63.
inline std::vector<std::uint32_t> restated_order(const std::vector<std::uint64_t>& keys,
                                                 std::int64_t first) {
  Elements positions = numbering(first, keys.size(), 0);
  sort_by_restated_steps(positions, by_numbers(keys, 0), first,
                         first + static_cast<std::int64_t>(keys.size()) - 1);
  return {positions.values.begin(), positions.values.end()};
}

/// The key of a double as the text that it is.
inline Text restated_key(double value) {
  return text_services::default_text(value < 0 ? value + 200000000.0 : value + 300000000.0);
}

}  // namespace orv2_geo::testing_support
