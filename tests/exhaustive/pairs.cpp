// Every pair of binary exponents, with both signs and some mantissas, as the two numbers
// that a member works on, beside the members restated in plain statements.
#include <bit>
#include <cmath>
#include <limits>
#include <optional>

#include "orv2_geo/angles/cgeo_Algorismos.h"
#include "orv2_geo/angles/cgeo_FuncDeriv.h"
#include "tests/exhaustive/check.h"
#include "tests/exhaustive/outcome.h"

namespace orv2_geo::exhaustive {
namespace {

using plane_tests::algorithms;
using testing_support::bits;
using testing_support::runtime;

// ---- The numbers -----------------------------------------------------------

template <class T>
struct Format;
template <>
struct Format<double> {
  using Bits = std::uint64_t;
  static constexpr int mantissa_bits = 52, exponents = 2048;
};
template <>
struct Format<float> {
  using Bits = std::uint32_t;
  static constexpr int mantissa_bits = 23, exponents = 256;
};

/// Of each number: none of the bits, all, and some without the first, which makes NaN signalling.
constexpr std::uint64_t mantissas = 3;

template <class T>
T number_of(std::uint64_t sign, std::uint64_t exponent, std::uint64_t mantissa) {
  using Bits = typename Format<T>::Bits;
  constexpr int width = Format<T>::mantissa_bits;
  constexpr auto full = static_cast<Bits>((std::uint64_t{1} << width) - 1);
  constexpr auto some_bits = static_cast<Bits>(0x5ca1ab1e0ddba11U);
  const auto scattered = static_cast<Bits>(some_bits + exponent * 0x9e3779b97f4a7c15U);
  const Bits chosen[mantissas] = {0, full, static_cast<Bits>((scattered & (full >> 1U)) | 1U)};
  const auto exponent_bits = static_cast<Bits>(static_cast<Bits>(exponent) << width);
  const auto sign_bits = static_cast<Bits>(static_cast<Bits>(sign) << (sizeof(T) * 8 - 1));
  return std::bit_cast<T>(static_cast<Bits>(sign_bits | exponent_bits | chosen[mantissa]));
}

template <class T>
constexpr std::uint64_t numbers = 2 * Format<T>::exponents* mantissas;

/// The number-th of them all.
template <class T>
T nth(std::uint64_t number) {
  return number_of<T>(number % 2, number / 2 / mantissas, number / 2 % mantissas);
}

template <class T>
bool is_signalling(T value) {
  using Bits = typename Format<T>::Bits;
  constexpr Bits quiet = Bits{1} << (Format<T>::mantissa_bits - 1);
  return std::isnan(value) && (std::bit_cast<Bits>(value) & quiet) == 0;
}

// ---- The members restated --------------------------------------------------

/// What a call came to, and what it left in the variable that it may write.
struct Left {
  Outcome outcome;
  double variable = 0.0;
  friend bool operator==(const Left& a, const Left& b) {
    return a.outcome == b.outcome && bits(a.variable) == bits(b.variable);
  }
  friend std::ostream& operator<<(std::ostream& out, const Left& left) {
    return out << left.outcome << ", left " << left.variable;
  }
};

Outcome restated_atan2(double y, double x) {
  if (std::isnan(x) || std::isnan(y)) return failed(6);
  const double pi = 4.0 * runtime.atan(1.0);
  if (x == 0.0 && y == 0.0) return answered(0.0);
  if (x == 0.0) return answered(static_cast<float>(y > 0.0 ? pi / 2.0 : -pi / 2.0));
  if (y == 0.0) return answered(x > 0.0 ? 0.0F : static_cast<float>(pi));
  look_away();
  Number quotient = y / x;
  if (raised() != 0) return failed(6);
  const double turn = x > 0.0 ? 0.0 : y > 0.0 ? pi : -pi;
  const double angle = runtime.atan(quotient);
  return answered(static_cast<float>(x > 0.0 ? angle : angle + turn));
}

Left restated_atn2(double x, double y) {
  if (std::isnan(y)) return {failed(6), y};
  if (y == 0.0) y = 1e-09;
  if (std::isnan(x)) return {failed(6), y};
  look_away();
  Number quotient = std::fabs(x) / std::fabs(y);
  if (raised() != 0) return {failed(6), y};
  const double acute = x == 0.0 ? 0.0 : runtime.atan(quotient);
  Number placed = x < 0.0 ? -acute : acute;
  Number turned = placed - 3.141592 / 2.0;
  return {answered(static_cast<float>(y < 0.0 ? -turned : turned)), y};
}

// The steps write the variable one after the other; a step that fails leaves it.
Left restated_azimuth(double dx, double dy, double before) {
  if (std::isnan(dy)) return {failed(6), before};
  double azimuth = 999.0;
  if (dy == 0.0) {
    if (std::isnan(dx)) return {failed(6), before};
    if (dx > 0.0) azimuth = 3.141592654 / 2.0;
    if (dx < 0.0) azimuth = 9.424777962 / 2.0;
  } else {
    look_away();
    Number quotient = dx / dy;
    if (raised() != 0) return {failed(6), before};
    azimuth = runtime.atan(quotient);
    if (std::isnan(azimuth)) return {failed(6), azimuth};
    if (dy < 0.0) azimuth += 3.141592654;
    if (azimuth < 0.0) azimuth += 6.283185308;
  }
  Number scaled = azimuth * 200.0;
  return {{}, scaled / 3.141592654};
}

// ---- Functions of one number and a factor ----------------------------------

using Function = double (cgeo_FuncDeriv::*)(double) const;

Outcome restated_log10(double x, double) {
  if (x <= 0.0) return failed(5);
  return answered(runtime.log(x) / runtime.log(10.0));
}
Outcome restated_log_n(double x, double) {
  if (x <= 0.0) return failed(5);
  return answered(runtime.log(x) / runtime.log(runtime.exp(1.0)));
}

/// exp of the number and of its negative; nothing where one of them overflows.
struct Exponentials {
  double rising, falling;
};
std::optional<Exponentials> exponentials(double x) {
  const Exponentials both = {runtime.exp(x), runtime.exp(-x)};
  if (!std::isinf(x) && (std::isinf(both.rising) || std::isinf(both.falling))) return {};
  return both;
}
Outcome restated_sinh(double x, double) {
  const auto e = exponentials(x);
  return e ? answered((e->rising - e->falling) / 2.0) : failed(6);
}
Outcome restated_cosh(double x, double) {
  const auto e = exponentials(x);
  return e ? answered((e->rising + e->falling) / 2.0) : failed(6);
}
Outcome restated_tanh(double x, double) {
  const auto e = exponentials(x);
  if (!e || std::isinf(x)) return failed(6);  // two infinities divided
  return answered((e->rising - e->falling) / (e->falling + e->rising));
}

// The scaled argument; nothing where the product went astray.
std::optional<double> scaled(double x, double factor) {
  look_away();
  Number product = factor * x;
  if (raised() != 0) return {};
  return product;
}

template <class Use>
Outcome of_scaled(double x, double factor, Use use) {
  const auto t = scaled(x, factor);
  if (!t || std::isinf(*t)) return failed(6);
  return answered(use(*t));
}
Outcome restated_sin(double x, double factor) {
  return of_scaled(x, factor, [](double t) { return runtime.sin(t); });
}
Outcome restated_cos(double x, double factor) {
  return of_scaled(x, factor, [](double t) { return runtime.cos(t); });
}
Outcome restated_tan(double x, double factor) {
  return of_scaled(x, factor, [](double t) { return runtime.tan(t); });
}

template <class Use>
Outcome of_ratio(double x, double factor, Use use) {
  const auto t = scaled(x, factor);
  if (!t) return failed(6);
  if (std::fabs(*t) > 1.0) return failed(5);
  Number square = *t * *t;
  Number side = std::sqrt(1.0 - square);
  return side == 0.0 ? failed(11) : answered(use(*t, side));
}
Outcome restated_arc_sine(double x, double factor) {
  return of_ratio(x, factor, [](double t, double side) { return runtime.atan(t / side); });
}
Outcome restated_arc_cosine(double x, double factor) {
  return of_ratio(x, factor, [](double t, double side) {
    return runtime.atan(-t / side) + 2.0 * runtime.atan(1.0);
  });
}

// ---- The checks ------------------------------------------------------------

template <class T, class Compare>
void every_pair(std::uint64_t first, std::uint64_t end, Compare compare) {
  for (std::uint64_t number = first; number < end; ++number) {
    compare(nth<T>(number / numbers<T>), nth<T>(number % numbers<T>));
  }
}

template <class T, class Value>
void expect_same(Tally& tally, T a, T b, const Value& got, const Value& expected) {
  tally.expect(got == expected, [&](std::ostream& out) {
    out << "of " << a << " and " << b << ": " << got << ", restated " << expected;
  });
}

void every_atan2(std::uint64_t first, std::uint64_t end, Tally& tally) {
  every_pair<double>(first, end, [&](double y, double x) {
    const Outcome got = outcome_of([&] { return algorithms.Atan2(y, x); });
    expect_same(tally, y, x, got, restated_atan2(y, x));
  });
}

void every_atn2(std::uint64_t first, std::uint64_t end, Tally& tally) {
  every_pair<double>(first, end, [&](double x, double y) {
    Left got{{}, y};
    got.outcome = outcome_of([&] { return algorithms.Atn2(x, got.variable); });
    expect_same(tally, x, y, got, restated_atn2(x, y));
  });
}

constexpr double before = -77.5;

void every_azimuth(std::uint64_t first, std::uint64_t end, Tally& tally) {
  every_pair<double>(first, end, [&](double dx, double dy) {
    Left got{{}, before};
    got.outcome = outcome_of([&] { algorithms.Azimut(dx, dy, got.variable); });
    expect_same(tally, dx, dy, got, restated_azimuth(dx, dy, before));
  });
}

// The failures of the other, and nothing written.
void every_single_azimuth(std::uint64_t first, std::uint64_t end, Tally& tally) {
  every_pair<float>(first, end, [&](float dx, float dy) {
    const auto aZ = static_cast<float>(before);
    Left got;
    got.outcome = outcome_of([&] { algorithms.Azimut_s(dx, dy, aZ); });
    got.variable = aZ;
    const bool refused = is_signalling(dx) || is_signalling(dy);
    const Left expected = {refused ? failed(6) : restated_azimuth(dx, dy, before).outcome, before};
    expect_same(tally, dx, dy, got, expected);
  });
}

template <Function member, Outcome (*restated)(double, double)>
void every_function(std::uint64_t first, std::uint64_t end, Tally& tally) {
  cgeo_FuncDeriv functions;
  every_pair<double>(first, end, [&](double factor, double x) {
    functions.RPi = factor;
    const Outcome got = outcome_of([&] { return (functions.*member)(x); });
    expect_same(tally, factor, x, got, restated(x, factor));
  });
}

template <class T>
constexpr Check check_of(const char* name, const char* what,
                         void (*run)(std::uint64_t, std::uint64_t, Tally&),
                         std::uint64_t nights = 1) {
  return {name,   what, numbers<T> * numbers<T>, 1U << 10U, sizeof(T) == 8 ? 16411U : 67U,
          nights, run};
}

// The factor changes nothing: some numbers of it, and all of the argument.
constexpr std::uint64_t some_factors = 64;

template <Function member, Outcome (*restated)(double, double)>
constexpr Check check_without_factor(const char* name) {
  return {name,
          "every exponent, sign and mantissa of the argument, with some values of RPi",
          some_factors * numbers<double>,
          1U << 10U,
          97,
          1,
          every_function<member, restated>};
}

template <Function member, Outcome (*restated)(double, double)>
constexpr Check check_with_factor(const char* name, std::uint64_t nights = 1) {
  return check_of<double>(name, "RPi and the argument", every_function<member, restated>, nights);
}

}  // namespace

std::vector<Check> checks_of_pairs() {
  using C = cgeo_FuncDeriv;
  return {check_of<double>("atan2", "Atan2 of two f64", every_atan2),
          check_of<double>("atn2", "Atn2 of two f64, and what is left of the second", every_atn2),
          check_of<double>("azimut", "Azimut of two f64, and what is written", every_azimuth),
          check_of<float>("azimut_s", "Azimut_s of two f32", every_single_azimuth),
          check_without_factor<&C::F_Log10, restated_log10>("f_log10"),
          check_without_factor<&C::F_LogN, restated_log_n>("f_logn"),
          check_without_factor<&C::F_SenH, restated_sinh>("f_senh"),
          check_without_factor<&C::F_CosH, restated_cosh>("f_cosh"),
          check_without_factor<&C::F_TanH, restated_tanh>("f_tanh"),
          check_with_factor<&C::F_ArcSen, restated_arc_sine>("f_arcsen", 8),
          check_with_factor<&C::F_ArcCos, restated_arc_cosine>("f_arccos", 8),
          check_with_factor<&C::F_Sen, restated_sin>("f_sen"),
          check_with_factor<&C::F_Cos, restated_cos>("f_cos"),
          check_with_factor<&C::F_Tan, restated_tan>("f_tan")};
}

}  // namespace orv2_geo::exhaustive
