// sample.h: what a soak tells of itself every few seconds, for steady.py to judge.
#pragma once

#include <chrono>
#include <cstdint>
#include <cstdio>
#include <initializer_list>

namespace orv2_geo::soak {

/// A quantity and its value at the moment. The names are those that steady.py has bounds for.
struct Quantity {
  const char* name;
  double value;
};

/// Runs calls for so many seconds and tells what `look` measures, forty times in all.
template <class Call, class Look>
void run(double seconds, Call call, Look look) {
  using Clock = std::chrono::steady_clock;
  constexpr int samples = 40;
  const auto since = [](Clock::time_point start) {
    return std::chrono::duration<double>(Clock::now() - start).count();
  };
  const auto start = Clock::now();
  for (int sample = 1; sample <= samples; ++sample) {
    std::uint64_t calls = 0;
    const auto begun = Clock::now();
    do {
      call();
      ++calls;
    } while (since(start) < seconds * sample / samples);
    const double us = since(begun) * 1e6 / static_cast<double>(calls);
    std::printf("sample calls=%llu us_per_call=%.3f", static_cast<unsigned long long>(calls), us);
    for (const Quantity& one : look()) std::printf(" %s=%.0f", one.name, one.value);
    std::printf("\n");
    std::fflush(stdout);
  }
}

}  // namespace orv2_geo::soak
