// sizes.h: how many elements or points the benchmarks take.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>

namespace bench {

inline constexpr std::int64_t most_elements = 10'000'000;

/// A hundred thousand and a million, at most `most`; for the plots of growth from a thousand
/// to `most`.
inline void sizes_to(benchmark::internal::Benchmark* one, std::int64_t most) {
  const bool growth = std::getenv("ORV2_GROWTH") != nullptr;
  for (std::int64_t n = 1000; n <= most; n *= 10) {
    if (growth || n == 100'000 || n == 1'000'000) one->Arg(n);
  }
}

template <std::int64_t most = most_elements>
void sizes(benchmark::internal::Benchmark* one) {
  sizes_to(one, most);
}

}  // namespace bench
