// vertex_block.h: how the vertices of a ring lie to the row of a point, a block at a time.
#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "orv2_geo/frame/number_pairs.h"

#if defined(__SSE2__)
#include <immintrin.h>
#endif

namespace orv2_geo::vertices {

/// Coordinates are looked at in hundredths of a unit.
inline constexpr double scale = 100.0;

/// Coordinates this close to zero surely fit 32 bits when scaled and rounded.
inline constexpr double surely_fits = 21474836.0;

inline bool fit(double x, double y) noexcept {
  return std::abs(x) < surely_fits && std::abs(y) < surely_fits;
}

/// How many vertices make a block: a bit each in a word.
inline constexpr std::size_t block = 64;

struct VertexBlock {
  /// Those on the row or below it, the lowest bit being the first's; where all fit.
  std::uint64_t below;
  bool fits;  // whether all coordinates surely do
};

/// Of a whole block. `top_of_row` is the highest scaled value that rounds to the row.
VertexBlock look_at_block(const double* x, const double* y, double top_of_row) noexcept;

/// Of up to a block, in pairs.
inline VertexBlock look_at_vertices(const double* x, const double* y, std::size_t count,
                                    double top_of_row) noexcept {
  const std::int32_t beyond = size_of(surely_fits);
  UpperHalves unfit = {};  // bits of any coordinate
  PairBits below = {};     // of the even vertices and of the odd ones
  PairBits bit{1, 2};
  std::size_t i = 0;
  for (; i + 2 <= count; i += 2) {
    const NumberPair y_pair = pair_at(y + i);
    unfit |= sizes_of(pair_at(x + i), y_pair) >= beyond;
    below |= where(scale * y_pair <= top_of_row) & bit;
    bit <<= 2;
  }
  VertexBlock found{below[0] | below[1], true};
  if (i < count) found.below |= std::uint64_t{scale * y[i] <= top_of_row} << i;
  const auto any_unfit = std::bit_cast<PairBits>(unfit);
  found.fits = (any_unfit[0] | any_unfit[1]) == 0 && (i == count || fit(x[i], y[i]));
  return found;
}

/// Few vertices are all brought to the lattice: what a question costs beside them is more.
class FewVertices {
 public:
  static constexpr std::size_t most = 32;

  /// Of two vertices to `most` of them. Whether all fit is asked more narrowly here: within 2^30
  /// hundredths of zero, so that edges are below 2^31 long and high.
  VertexBlock look(const double* x, const double* y, std::size_t count, std::int32_t row) noexcept {
    std::uint64_t above = 0;
    Bits unfit{};
    for (std::size_t four = 0; four < count; four += 4) {
      // Two pairs; where there are no more the last one again.
      const std::size_t i = std::min(four, count - 2);
      const std::size_t j = std::min(four + 2, count - 2);
      put_pairs(x, i, j, x_.data(), unfit);
      const std::uint64_t found = above_of(put_pairs(y, i, j, y_.data(), unfit), row);
      above |= (found & 3U) << i | found >> 2U << j;
    }
    return {~above & ~std::uint64_t{0} >> (block - count), all_fit(unfit)};
  }

  /// In hundredths, to the nearest, ties to the even one; where all fit.
  std::int32_t x(std::size_t i) const noexcept { return x_[i]; }
  std::int32_t y(std::size_t i) const noexcept { return y_[i]; }

 private:
#if defined(__SSE2__)
  using Bits = __m128i;
  using Four = __m128i;

  static Four put_pairs(const double* from, std::size_t i, std::size_t j, std::int32_t* to,
                        Bits& unfit) noexcept {
    const __m128d hundred = _mm_set1_pd(scale);
    const Four low = _mm_cvtpd_epi32(_mm_mul_pd(hundred, _mm_loadu_pd(from + i)));
    const Four high = _mm_cvtpd_epi32(_mm_mul_pd(hundred, _mm_loadu_pd(from + j)));
    _mm_storel_epi64(reinterpret_cast<__m128i*>(to + i), low);
    _mm_storel_epi64(reinterpret_cast<__m128i*>(to + j), high);
    const Four four = _mm_unpacklo_epi64(low, high);
    // The two highest bits differ from 2^30 on, and in 80000000, the answer for what is too
    // large or NaN: 40000000 + 40000000 is 80000000.
    unfit = _mm_or_si128(unfit, _mm_xor_si128(four, _mm_add_epi32(four, four)));
    return four;
  }
  static std::uint64_t above_of(Four four, std::int32_t row) noexcept {
    const __m128i above = _mm_cmpgt_epi32(four, _mm_set1_epi32(row));
    return static_cast<std::uint64_t>(_mm_movemask_ps(_mm_castsi128_ps(above)));
  }
  static bool all_fit(Bits unfit) noexcept {
    return _mm_movemask_ps(_mm_castsi128_ps(unfit)) == 0;  // signs
  }
#else
  using Bits = bool;
  using Four = std::array<std::int32_t, 4>;

  static Four put_pairs(const double* from, std::size_t i, std::size_t j, std::int32_t* to,
                        Bits& unfit) noexcept {
    // What rounds to -2^30 or more and below 2^30; a tie goes to the even number.
    constexpr double lowest = -1073741824.5;
    constexpr double too_high = 1073741823.5;
    const auto put = [&](std::size_t at) {
      const double scaled = scale * from[at];
      const bool fits = scaled >= lowest && scaled < too_high;
      unfit = unfit || !fits;
      return to[at] = fits ? static_cast<std::int32_t>(std::lrint(scaled)) : 0;
    };
    return {put(i), put(i + 1), put(j), put(j + 1)};
  }
  static std::uint64_t above_of(const Four& four, std::int32_t row) noexcept {
    std::uint64_t above = 0;
    for (std::size_t k = 0; k < 4; ++k) above |= std::uint64_t{four[k] > row} << k;
    return above;
  }
  static bool all_fit(Bits unfit) noexcept { return !unfit; }
#endif

  std::array<std::int32_t, most> x_, y_;
};

}  // namespace orv2_geo::vertices
