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

/// The upper halves of four doubles without their signs: doubles of which one is the
/// larger never have them in the other order, and NaN has larger ones than any number.
using UpperHalves [[gnu::vector_size(16)]] = std::int32_t;

inline UpperHalves sizes_of(NumberPair a, NumberPair b) noexcept {
  constexpr int upper = std::endian::native == std::endian::little ? 1 : 0;
  const auto in_a = std::bit_cast<UpperHalves>(a);
  const auto in_b = std::bit_cast<UpperHalves>(b);
  const UpperHalves halves =
      __builtin_shufflevector(in_a, in_b, upper, 2 + upper, 4 + upper, 6 + upper);
  return halves & 0x7fffffff;
}
inline std::int32_t size_of(double value) noexcept {
  return sizes_of(NumberPair{value}, NumberPair{})[0];
}

inline NumberPair swapped(NumberPair pair) noexcept {
  return __builtin_shufflevector(pair, pair, 1, 0);
}

/// The mask as bits. (Masks that are combined as they are, gcc takes apart into numbers.)
inline PairBits where(PairMask mask) noexcept { return std::bit_cast<PairBits>(mask); }

/// Of the first numbers bit 0, of the second bit 1.
inline unsigned bits_of(PairBits mask) noexcept {
#if defined(__SSE2__)
  return static_cast<unsigned>(__builtin_ia32_movmskpd(std::bit_cast<NumberPair>(mask)));
#else
  return (mask[0] != 0 ? 1U : 0U) | (mask[1] != 0 ? 2U : 0U);
#endif
}

/// The same number twice.
inline NumberPair pair_of(double value) noexcept { return NumberPair{value, value}; }

inline NumberPair pair_at(const double* values) noexcept {
  NumberPair pair;
  std::memcpy(&pair, values, sizeof pair);
  return pair;
}

inline void put_pair(NumberPair pair, double* values) noexcept {
  std::memcpy(values, &pair, sizeof pair);
}

}  // namespace orv2_geo
