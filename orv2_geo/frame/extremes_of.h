// extremes_of.h: the lowest and the highest of many doubles.
#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>

#include "orv2_geo/frame/number_pairs.h"

namespace orv2_geo {

struct Extremes {
  double lowest;
  double highest;
};

/// Of some elements, at least one, in plain arithmetic; nothing when one is NaN. Of zeros of
/// either sign any may be told.
inline std::optional<Extremes> extremes_of(std::span<const double> elements) noexcept {
  NumberPair highest = pair_of(elements[0]);
  NumberPair lowest = highest;
  constexpr double lowest_of_all = -std::numeric_limits<double>::infinity();
  // Each pair adds -1 where both are numbers: all are where the two halves of the sum make -k.
  PairMask numbers = {};
  std::size_t k = 0;
  for (; k + 1 < elements.size(); k += 2) {
    const NumberPair pair = pair_at(&elements[k]);
    highest = pair > highest ? pair : highest;
    lowest = pair < lowest ? pair : lowest;
    numbers += pair >= lowest_of_all;  // NaN is not
  }
  if (numbers[0] + numbers[1] != -static_cast<std::int64_t>(k)) return std::nullopt;
  const Extremes found = {std::min(lowest[0], lowest[1]), std::max(highest[0], highest[1])};
  if (k == elements.size()) return found;
  if (std::isnan(elements[k])) return std::nullopt;
  return Extremes{std::min(found.lowest, elements[k]), std::max(found.highest, elements[k])};
}

}  // namespace orv2_geo
