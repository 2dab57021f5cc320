// sizes.h: how many elements or points the benchmarks take.
#pragma once

#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstdlib>

namespace bench {

/// A hundred thousand and a million; for the plots of growth from a thousand to `most`.
template <std::int64_t most = 10'000'000>
void sizes(benchmark::internal::Benchmark* one) {
  const bool growth = std::getenv("ORV2_GROWTH") != nullptr;
  for (std::int64_t n = 1000; n <= most; n *= 10) {
    if (growth || n == 100'000 || n == 1'000'000) one->Arg(n);
  }
}

}  // namespace bench
