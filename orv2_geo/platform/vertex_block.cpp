#include "orv2_geo/platform/vertex_block.h"

#if defined(__x86_64__)
#include <immintrin.h>
#endif

namespace orv2_geo::vertices {

#if defined(__x86_64__)
namespace {

// The same in fours, where the processor has a unit for them: half the time.
[[gnu::target("avx2")]] VertexBlock look_in_fours(const double* x, const double* y,
                                                  double top_of_row) noexcept {
  const __m256i beyond = _mm256_set1_epi32(size_of(surely_fits) - 1);
  const __m256i no_sign = _mm256_set1_epi32(0x7fffffff);
  const __m256d hundred = _mm256_set1_pd(scale);
  const __m256d top = _mm256_set1_pd(top_of_row);
  __m256i unfit = _mm256_setzero_si256();
  std::uint64_t below = 0;
  for (std::size_t i = 0; i < block; i += 4) {
    const __m256d x_four = _mm256_loadu_pd(x + i);
    const __m256d y_four = _mm256_loadu_pd(y + i);
    constexpr int upper_halves = 0b11'01'11'01;
    const __m256 halves =
        _mm256_shuffle_ps(_mm256_castpd_ps(x_four), _mm256_castpd_ps(y_four), upper_halves);
    const __m256i sizes = _mm256_and_si256(_mm256_castps_si256(halves), no_sign);
    unfit = _mm256_or_si256(unfit, _mm256_cmpgt_epi32(sizes, beyond));
    const __m256d is_below = _mm256_cmp_pd(_mm256_mul_pd(hundred, y_four), top, _CMP_LE_OQ);
    const auto four = static_cast<unsigned>(_mm256_movemask_pd(is_below));
    below |= std::uint64_t{four} << i;
  }
  return {below, _mm256_testz_si256(unfit, unfit) != 0};
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
