// sort_data.h: what is sorted in the tests.
#pragma once

#include <algorithm>
#include <cstdint>
#include <numeric>
#include <string>
#include <utility>
#include <vector>

#include "orv2_geo/frame/text.h"
#include "orv2_geo/sorting/mOrdena.h"
#include "tests/support/preamble.h"

namespace orv2_geo::testing_support {

using mOrdena::bound_from_array;

/// What a survey or an adversary brings, as numbers of which many are equal.
inline std::vector<std::int64_t> pattern(Numbers& numbers, std::size_t n) {
  std::vector<std::int64_t> all(n);
  const std::uint64_t kind = numbers.below(7);
  const std::uint64_t different = 1 + numbers.below(1 + n);
  for (std::size_t i = 0; i < n; ++i) {
    const auto at = static_cast<std::int64_t>(i);
    switch (kind) {
      case 0: all[i] = 5; break;
      case 1: all[i] = at / 3; break;
      case 2: all[i] = static_cast<std::int64_t>(n) - at / 2; break;
      case 3: all[i] = std::min(at, static_cast<std::int64_t>(n) - at); break;
      case 4: all[i] = at + (i % 17 == 0 ? static_cast<std::int64_t>(numbers.below(5)) : 0); break;
      default: all[i] = static_cast<std::int64_t>(numbers.below(different)) - 20; break;
    }
  }
  return all;
}

inline std::size_t any_length(Numbers& numbers, int run) {
  return run % 20 == 0  ? numbers.below(2001)
         : run % 3 == 0 ? numbers.below(300)
                        : numbers.below(20);
}

/// An array's bounds and the bounds of a sort in it.
struct Place {
  std::int32_t lower, from, to;
};
inline Place any_place(Numbers& numbers, std::size_t n) {
  const std::int32_t lower = static_cast<std::int32_t>(numbers.below(2)) == 0
                                 ? 1
                                 : static_cast<std::int32_t>(numbers.below(4000)) - 3000;
  Place place = {lower, bound_from_array, bound_from_array};
  if (numbers.below(2) == 0) place.from = lower + static_cast<std::int32_t>(numbers.below(3));
  if (numbers.below(2) == 0) {
    place.to =
        lower + static_cast<std::int32_t>(n) - 1 - static_cast<std::int32_t>(numbers.below(3));
  }
  return place;
}
inline std::int64_t from_of(const Place& place) {
  return place.from == bound_from_array ? place.lower : place.from;
}
inline std::int64_t to_of(const Place& place, std::size_t n) {
  return place.to == bound_from_array ? place.lower + static_cast<std::int64_t>(n) - 1 : place.to;
}

/// Letters and digits of the number, upper or lower case by chance, so that ties
/// can be told apart.
inline Text code_of(Numbers& numbers, std::int64_t number) {
  std::u16string text;
  for (const char c : "P" + std::to_string(number + 20) + "xy") {
    const bool upper = numbers.below(2) == 0;
    text.push_back(static_cast<char16_t>(c >= 'a' && c <= 'z' && upper ? c - 32 : c));
  }
  text.pop_back();
  return Text(text);
}

/// The codes of the numbers above `base`.
inline std::vector<Text> codes_of(Numbers& numbers, const std::vector<std::int64_t>& values,
                                  std::int64_t base = 0) {
  std::vector<Text> codes;
  for (const std::int64_t value : values) codes.push_back(code_of(numbers, value + base));
  return codes;
}

/// On these the median of three is always one of the smallest, until the last `equal`
/// numbers, which are one number: two elements leave at each partition, and the
/// algorithm alone would take steps by the square.
inline std::vector<std::uint64_t> killer_of(std::size_t n, std::size_t equal = 0) {
  // Run the choice of pivots, deciding the numbers as they are looked at.
  std::vector<std::size_t> place(n);
  std::iota(place.begin(), place.end(), 0U);
  std::vector<std::uint64_t> keys(n, n);
  std::uint64_t next = 0;
  std::size_t lo = 0;
  for (; lo + std::max<std::size_t>(equal, 9) <= n; lo += 2) {
    std::swap(place[(lo + n - 1 + 2) / 2 - 1], place[lo + 1]);
    keys[place[lo]] = next++;
    keys[place[lo + 1]] = next++;
  }
  for (; equal == 0 && lo < n; ++lo) keys[place[lo]] = next++;
  return keys;
}

inline std::vector<std::uint64_t> random_keys(Numbers& numbers, std::size_t n,
                                              std::uint64_t different) {
  std::vector<std::uint64_t> keys(n);
  for (std::uint64_t& key : keys) key = 1000 + numbers.below(different);
  return keys;
}

/// Data of every shape that a way of sorting takes notice of: numbers from 1000 on, below
/// 1000 + different but for those that stand alone.
enum class Shape {
  random,
  equal,
  few,
  ascending,
  descending,
  organ_pipe,
  ascending_one_high,
  ascending_one_low,
  ascending_some_elsewhere,
  descending_one_high,
};
inline constexpr Shape shapes[] = {
    Shape::random,
    Shape::equal,
    Shape::few,
    Shape::ascending,
    Shape::descending,
    Shape::organ_pipe,
    Shape::ascending_one_high,
    Shape::ascending_one_low,
    Shape::ascending_some_elsewhere,
    Shape::descending_one_high,
};
inline std::vector<std::uint64_t> keys_of(Numbers& numbers, Shape shape, std::size_t n,
                                          std::uint64_t different) {
  auto keys = random_keys(numbers, n,
                          shape == Shape::equal ? 1
                          : shape == Shape::few ? 7
                                                : different);
  if (n == 0 || shape == Shape::random || shape == Shape::equal || shape == Shape::few) return keys;
  std::sort(keys.begin(), keys.end());
  switch (shape) {
    case Shape::descending: std::reverse(keys.begin(), keys.end()); break;
    case Shape::organ_pipe: {
      const auto middle = keys.begin() + static_cast<std::ptrdiff_t>(n / 2);
      std::reverse(middle, keys.end());
      break;
    }
    case Shape::ascending_one_high: keys[numbers.below(n)] = 1000 + 2 * different; break;
    case Shape::ascending_one_low: keys[numbers.below(n)] = 0; break;
    case Shape::ascending_some_elsewhere:
      for (std::size_t k = n / 100; k > 0; --k)
        keys[numbers.below(n)] = 1000 + numbers.below(different);
      break;
    case Shape::descending_one_high:
      std::reverse(keys.begin(), keys.end());
      keys[numbers.below(n)] = 1000 + 2 * different;
      break;
    default: break;
  }
  return keys;
}

}  // namespace orv2_geo::testing_support
