// expect_failure.h: what tests ask of failures, bits and random values.
#pragma once

#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <random>
#include <type_traits>
#include <utility>

#include "orv2_geo/frame/run_failure.h"

namespace orv2_geo::testing_support {

/// The number of the failure that `work` ends with, 0 when it returns.
template <class Work>
std::int32_t failure_of(Work&& work) {
  try {
    std::forward<Work>(work)();
    return 0;
  } catch (const RunFailure& failure) {
    return failure.number();
  }
}

/// The bits of a number: what "exact" means. All NaN are one.
inline std::uint64_t bits(double value) {
  return std::isnan(value) ? ~std::uint64_t{0} : std::bit_cast<std::uint64_t>(value);
}
inline std::uint32_t bits(float value) {
  return std::isnan(value) ? ~std::uint32_t{0} : std::bit_cast<std::uint32_t>(value);
}

/// The C run-time's functions, reached so that no compiler works them out.
struct Runtime {
  double (*volatile atan)(double) = std::atan;
  double (*volatile sin)(double) = std::sin;
  double (*volatile cos)(double) = std::cos;
  double (*volatile tan)(double) = std::tan;
  double (*volatile exp)(double) = std::exp;
  double (*volatile log)(double) = std::log;
  double (*volatile sqrt)(double) = std::sqrt;
  double (*volatile pow)(double, double) = std::pow;
};
inline const Runtime runtime;

/// Random numbers of all kinds that a survey brings, from a fixed seed.
class Numbers {
 public:
  explicit Numbers(std::uint64_t seed) : engine_(seed) {}

  /// A coordinate, a small number of halves, or a number of any size.
  double any() {
    switch (engine_() % 4) {
      case 0: return coordinate();
      case 1: return small_half();
      case 2: return std::ldexp(between(-1.0, 1.0), static_cast<int>(engine_() % 80) - 40);
      default: return between(-400.0, 400.0);
    }
  }
  /// A finite double of any bit pattern.
  double any_bits() {
    const double value = std::bit_cast<double>(engine_());
    return std::isfinite(value) ? value : any();
  }
  double coordinate() { return std::round(between(430000.0, 4480000.0) * 1000.0) / 1000.0; }
  double small_whole() { return static_cast<double>(static_cast<int>(engine_() % 9) - 4); }
  /// Differences of such, their sums and products come out 0, 0.5 and 1 again and again.
  double small_half() { return small_whole() / 2.0; }
  double between(double low, double high) {
    return std::uniform_real_distribution<double>(low, high)(engine_);
  }
  std::size_t below(std::uint64_t end) { return static_cast<std::size_t>(engine_() % end); }

 private:
  std::mt19937_64 engine_;
};

}  // namespace orv2_geo::testing_support
