#include "orv2_geo/platform/vertex_block.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace orv2_geo::vertices {

#if defined(__x86_64__)
namespace {

// A bit for each of four that is on the row or below it.
[[gnu::target("avx2")]] inline std::uint64_t below_of_four(__m256d y, double top_of_row) noexcept {
  const __m256d scaled = _mm256_mul_pd(_mm256_set1_pd(scale), y);
  const __m256d is_below = _mm256_cmp_pd(scaled, _mm256_set1_pd(top_of_row), _CMP_LE_OQ);
  return static_cast<unsigned>(_mm256_movemask_pd(is_below));
}

[[gnu::target("avx2")]] std::uint64_t below_in_fours(const double* y, double top_of_row) noexcept {
  std::uint64_t below = 0;
  for (std::size_t i = 0; i < block; i += 4) {
    below |= below_of_four(_mm256_loadu_pd(y + i), top_of_row) << i;
  }
  return below;
}

// The same in fours, where the processor has a unit for them. Of most blocks
// all vertices lie on one side of the row, which the lowest and the highest tell.
[[gnu::target("avx2")]] VertexBlock look_in_fours(const double* x, const double* y,
                                                  double top_of_row) noexcept {
  const __m256i beyond = _mm256_set1_epi32(size_of(surely_fits) - 1);
  const __m256i no_sign = _mm256_set1_epi32(0x7fffffff);
  __m256i unfit = _mm256_setzero_si256();
  __m256d lowest = _mm256_loadu_pd(y);
  __m256d highest = lowest;
  for (std::size_t i = 0; i < block; i += 4) {
    const __m256d x_four = _mm256_loadu_pd(x + i);
    const __m256d y_four = _mm256_loadu_pd(y + i);
    constexpr int upper_halves = 0b11'01'11'01;
    const __m256 halves =
        _mm256_shuffle_ps(_mm256_castpd_ps(x_four), _mm256_castpd_ps(y_four), upper_halves);
    const __m256i sizes = _mm256_and_si256(_mm256_castps_si256(halves), no_sign);
    unfit = _mm256_or_si256(unfit, _mm256_cmpgt_epi32(sizes, beyond));
    lowest = _mm256_min_pd(lowest, y_four);
    highest = _mm256_max_pd(highest, y_four);
  }
  if (_mm256_testz_si256(unfit, unfit) == 0) return {0, false};  // NaN too, which has no order
  if (below_of_four(highest, top_of_row) == 0b1111) return {~std::uint64_t{0}, true};
  if (below_of_four(lowest, top_of_row) == 0) return {0, true};
  return {below_in_fours(y, top_of_row), true};
}

}  // namespace

VertexBlock look_at_block(const double* x, const double* y, double top_of_row) noexcept {
  static const bool has_fours = __builtin_cpu_supports("avx2") != 0;
  return has_fours ? look_in_fours(x, y, top_of_row) : look_at_vertices(x, y, block, top_of_row);
}
#else
VertexBlock look_at_block(const double* x, const double* y, double top_of_row) noexcept {
  return look_at_vertices(x, y, block, top_of_row);
}
#endif

}  // namespace orv2_geo::vertices
