// words_below.h: which of some words in a row are below a limit.
#pragma once

#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace orv2_geo {

/// How many words are looked at in one go.
inline constexpr int words_at_once = 16;

/// The words are below 2^63, the limit at most that. Of 16 words from this one on,
/// bit k: whether words[k] is below the limit. For 3, 9, 4, 8 and twelve more that are
/// above, and the limit 5, it is 0b0101.
inline std::uint64_t words_below_one_by_one(const std::uint64_t* words,
                                            std::uint64_t limit) noexcept {
  std::uint64_t below = 0;
  for (int k = words_at_once - 1; k >= 0; --k) {
    below = 2 * below + static_cast<std::uint64_t>(words[k] < limit);
  }
  return below;
}

/// The same from the last of them on: bit k is for words[15 - k]. Above it is
/// 0b1010'0000'0000'0000.
inline std::uint64_t words_below_one_by_one_backwards(const std::uint64_t* words,
                                                      std::uint64_t limit) noexcept {
  std::uint64_t below = 0;
  for (int k = 0; k < words_at_once; ++k) {
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

// Two times two words' upper halves, which hold the signs.
template <int halves>
__m128i signs_of_4(__m128i first, __m128i second) noexcept {
  return _mm_castps_si128(
      _mm_shuffle_ps(_mm_castsi128_ps(first), _mm_castsi128_ps(second), halves));
}

// Packing with saturation keeps signs.
inline std::uint64_t signs_of_16(__m128i a, __m128i b, __m128i c, __m128i d) noexcept {
  const __m128i signs = _mm_packs_epi16(_mm_packs_epi32(a, b), _mm_packs_epi32(c, d));
  return static_cast<std::uint32_t>(_mm_movemask_epi8(signs));
}

inline std::uint64_t words_below(const std::uint64_t* words, std::uint64_t limit) noexcept {
  const __m128i limits = _mm_set1_epi64x(static_cast<std::int64_t>(limit));
  const auto signs = [&](int k) {
    constexpr int odd_halves = 0xdd;
    return signs_of_4<odd_halves>(differences_of_2(words + k, limits),
                                  differences_of_2(words + k + 2, limits));
  };
  return signs_of_16(signs(0), signs(4), signs(8), signs(12));
}

inline std::uint64_t words_below_backwards(const std::uint64_t* words,
                                           std::uint64_t limit) noexcept {
  const __m128i limits = _mm_set1_epi64x(static_cast<std::int64_t>(limit));
  const auto signs = [&](int k) {
    constexpr int odd_halves_backwards = 0x77;
    return signs_of_4<odd_halves_backwards>(differences_of_2(words + k + 2, limits),
                                            differences_of_2(words + k, limits));
  };
  return signs_of_16(signs(12), signs(8), signs(4), signs(0));
}

}  // namespace vectors

using vectors::words_below;
using vectors::words_below_backwards;

#else

/// The same, several words at a time where the machine can.
inline std::uint64_t words_below(const std::uint64_t* words, std::uint64_t limit) noexcept {
  return words_below_one_by_one(words, limit);
}
inline std::uint64_t words_below_backwards(const std::uint64_t* words,
                                           std::uint64_t limit) noexcept {
  return words_below_one_by_one_backwards(words, limit);
}

#endif

}  // namespace orv2_geo
