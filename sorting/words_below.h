// words_below.h: which of some words in a row are below a limit.
#pragma once

#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace orv2_geo::sorting {

/// How many words are looked at in one go.
inline constexpr int words_at_once = 16;

/// Bit k: words[k] is below the limit, k from 0 to 15. The words are below 2^63,
/// the limit at most that.
inline std::uint64_t words_below_one_by_one(const std::uint64_t* words,
                                            std::uint64_t limit) noexcept {
  std::uint64_t below = 0;
  for (int k = words_at_once - 1; k >= 0; --k) {
    below = 2 * below + static_cast<std::uint64_t>(words[k] < limit);
  }
  return below;
}

#if defined(__SSE2__)

namespace vectors {

// The sign of word minus limit tells; so far from 2^64 it does not overflow.
inline __m128i differences_of_2(const std::uint64_t* words, __m128i limits) noexcept {
  return _mm_sub_epi64(_mm_loadu_si128(reinterpret_cast<const __m128i*>(words)), limits);
}
// The upper halves, with the signs; packing with saturation keeps signs.
inline __m128i signs_of_4(const std::uint64_t* words, __m128i limits) noexcept {
  constexpr int odd_halves = 0xdd;
  return _mm_castps_si128(_mm_shuffle_ps(_mm_castsi128_ps(differences_of_2(words, limits)),
                                         _mm_castsi128_ps(differences_of_2(words + 2, limits)),
                                         odd_halves));
}
inline __m128i signs_of_8(const std::uint64_t* words, __m128i limits) noexcept {
  return _mm_packs_epi32(signs_of_4(words, limits), signs_of_4(words + 4, limits));
}
inline std::uint64_t words_below(const std::uint64_t* words, std::uint64_t limit) noexcept {
  const __m128i limits = _mm_set1_epi64x(static_cast<std::int64_t>(limit));
  const __m128i signs = _mm_packs_epi16(signs_of_8(words, limits), signs_of_8(words + 8, limits));
  return static_cast<std::uint32_t>(_mm_movemask_epi8(signs));
}

}  // namespace vectors

using vectors::words_below;

#else

/// The same, two words at a time where the machine can.
inline std::uint64_t words_below(const std::uint64_t* words, std::uint64_t limit) noexcept {
  return words_below_one_by_one(words, limit);
}

#endif

}  // namespace orv2_geo::sorting
