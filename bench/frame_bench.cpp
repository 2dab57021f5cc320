#include <benchmark/benchmark.h>

#include <cfenv>
#include <random>
#include <vector>

#include "bench/frame_bench_functions.h"
#include "orv2_geo/frame/floating_point_guard.h"

namespace {

struct Lines {
  double c[8];
};

// Survey-sized lines, far from parallel.
const std::vector<Lines>& lines() {
  static const std::vector<Lines> all = [] {
    std::mt19937_64 engine(5);
    std::uniform_real_distribution<double> near(0.0, 500.0);
    std::vector<Lines> made(1024);
    for (Lines& line : made) {
      for (int i = 0; i < 8; ++i) line.c[i] = (i % 2 == 0 ? 435000.0 : 4473000.0) + near(engine);
    }
    return made;
  }();
  return all;
}

template <class Work>
void over_lines(benchmark::State& state, Work work) {
  for (auto _ : state) {
    for (const Lines& line : lines()) benchmark::DoNotOptimize(work(line.c));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(lines().size()));
}

void meeting_checked(benchmark::State& state) {
  over_lines(state, [](const auto& c) { return bench::meeting_checked(c, 0.5); });
}
void meeting_plain(benchmark::State& state) {
  over_lines(state, [](const auto& c) { return bench::meeting_plain(c, 0.5); });
}
void bearing_checked(benchmark::State& state) {
  over_lines(state, [](const auto& c) { return bench::bearing_checked(c); });
}
void bearing_plain(benchmark::State& state) {
  over_lines(state, [](const auto& c) { return bench::bearing_plain(c); });
}
// What a call from a host does around a formula.
bench::Point guarded(const double (&c)[8]) {
  const orv2_geo::FloatingPointGuard settings;
  return bench::bearing_plain(c);
}
void bearing_guarded(benchmark::State& state) {
  over_lines(state, [](const auto& c) { return guarded(c); });
}
// The host has no flag raised: those that the formula raises are taken back each time.
void bearing_guarded_without_flags(benchmark::State& state) {
  for (auto _ : state) {
    std::feclearexcept(FE_ALL_EXCEPT);
    for (const Lines& line : lines()) benchmark::DoNotOptimize(guarded(line.c));
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(lines().size()));
}
orv2_geo::DoubleArray values() {
  std::mt19937_64 engine(6);
  std::uniform_real_distribution<double> near(0.0, 500.0);
  orv2_geo::DoubleArray array(1, 10000);
  for (std::int32_t i = 1; i <= 10000; ++i) array(i) = near(engine);
  return array;
}

void extremes_checked(benchmark::State& state) {
  const orv2_geo::DoubleArray array = values();
  for (auto _ : state) benchmark::DoNotOptimize(bench::extremes_checked(array));
}
void extremes_plain(benchmark::State& state) {
  const orv2_geo::DoubleArray array = values();
  for (auto _ : state) benchmark::DoNotOptimize(bench::extremes_plain(array.data(), 1, 10000));
}
void reverse_checked(benchmark::State& state) {
  orv2_geo::DoubleArray array = values();
  for (auto _ : state) {
    bench::reverse_checked(array);
    benchmark::ClobberMemory();
  }
}
void reverse_plain(benchmark::State& state) {
  orv2_geo::DoubleArray array = values();
  for (auto _ : state) {
    bench::reverse_plain(array.data(), 1, 10000);
    benchmark::ClobberMemory();
  }
}

BENCHMARK(meeting_checked);
BENCHMARK(meeting_plain);
BENCHMARK(bearing_checked);
BENCHMARK(bearing_plain);
BENCHMARK(bearing_guarded);
BENCHMARK(bearing_guarded_without_flags);
BENCHMARK(extremes_checked);
BENCHMARK(extremes_plain);
BENCHMARK(reverse_checked);
BENCHMARK(reverse_plain);

}  // namespace
