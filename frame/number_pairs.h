// number_pairs.h: two doubles at a time, for scans over long arrays.
#pragma once

#include <bit>
#include <cstdint>
#include <cstring>

namespace orv2_geo {

/// Two numbers; arithmetic and comparisons work on both.
using NumberPair [[gnu::vector_size(16)]] = double;

/// What a comparison of two pairs gives: -1 for true. Masks are best added up:
/// a sum counts downwards.
using PairMask [[gnu::vector_size(16)]] = std::int64_t;
using PairBits [[gnu::vector_size(16)]] = std::uint64_t;

inline NumberPair pair_at(const double* values) noexcept {
  NumberPair pair;
  std::memcpy(&pair, values, sizeof pair);
  return pair;
}

inline void put_pair(NumberPair pair, double* values) noexcept {
  std::memcpy(values, &pair, sizeof pair);
}

}  // namespace orv2_geo
