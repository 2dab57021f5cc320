// agree.h: members compared with their restatements on random values.
#pragma once

#include <array>
#include <bit>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <ostream>
#include <tuple>
#include <type_traits>
#include <utility>

#include "tests/plane/restatement.h"

namespace orv2_geo::plane_tests {

/// What a parameter stands for.
enum class Kind { x, y, elevation, tolerance, angle, distance, output };

inline constexpr std::array a_point = {Kind::x, Kind::y};
inline constexpr std::array a_vertex = {Kind::x, Kind::y, Kind::elevation};
inline constexpr std::array an_elevation = {Kind::elevation};
inline constexpr std::array a_tolerance = {Kind::tolerance};
inline constexpr std::array an_angle = {Kind::angle};
inline constexpr std::array a_distance = {Kind::distance};
inline constexpr std::array an_output = {Kind::output};

/// The parameters of a member, one part after the other.
template <std::size_t... n>
constexpr std::array<Kind, (n + ...)> parameters(const std::array<Kind, n>&... parts) {
  std::array<Kind, (n + ...)> kinds{};
  std::size_t count = 0;
  const auto add = [&](const auto& part) {
    for (const Kind kind : part) kinds[count++] = kind;
  };
  (add(parts), ...);
  return kinds;
}

/// Members of the same parameters are given the same values.
template <std::size_t N>
constexpr std::uint64_t seed_of(const std::array<Kind, N>& kinds) {
  std::uint64_t seed = N;
  for (const Kind kind : kinds) seed = 7 * seed + static_cast<std::uint64_t>(kind);
  return seed;
}

/// What a call came to: a failure, or an answer to the last bit.
struct Outcome {
  std::int32_t failure = 0;
  std::uint64_t answer = 0;
  friend bool operator==(const Outcome&, const Outcome&) = default;
  friend std::ostream& operator<<(std::ostream& out, const Outcome& o) {
    return out << "failure " << o.failure << ", answer " << std::bit_cast<double>(o.answer);
  }
};

template <class Work>
Outcome outcome_of(Work&& work) {
  try {
    if constexpr (std::is_void_v<decltype(work())>) {
      work();
      return {};
    } else {
      return {0, bits(plain(work()))};
    }
  } catch (const RunFailure& failure) {
    return {failure.number(), 0};
  }
}

/// Values for the parameters of one call.
class Values {
 public:
  explicit Values(std::uint64_t seed) : numbers_(seed) {}

  enum Style { survey, lattice, degenerate, any_size };

  template <class T, std::size_t N>
  std::array<T, N> of(Style style, const std::array<Kind, N>& kinds) {
    std::array<T, N> values;
    for (std::size_t i = 0; i < N; ++i) values[i] = static_cast<T>(one<T>(style, kinds[i]));
    if (style == degenerate) {
      // Zero length, vertical, horizontal, level: values that recur.
      for (std::uint64_t copies = numbers_.below(4) + 1; copies > 0; --copies) {
        const std::size_t from = numbers_.below(N);
        const std::size_t to = numbers_.below(N);
        if (kinds[from] == kinds[to]) values[to] = values[from];
      }
    }
    return values;
  }

  /// Which variable each parameter is: mostly its own, at times another's.
  template <std::size_t N>
  std::array<std::size_t, N> places() {
    std::array<std::size_t, N> place;
    for (std::size_t i = 0; i < N; ++i) place[i] = i;
    if (numbers_.below(3) == 0) {
      for (std::uint64_t shared = numbers_.below(3) + 1; shared > 0; --shared) {
        place[numbers_.below(N)] = numbers_.below(N);
      }
    }
    return place;
  }

 private:
  template <class T>
  double one(Style style, Kind kind) {
    if (style == lattice) return numbers_.small_whole();
    if (style == degenerate && numbers_.below(2) == 0) return numbers_.small_whole() * 0.5;
    if (style == any_size) {
      const int reach = std::is_same_v<T, float> ? 127 : 1023;
      const int exponent = static_cast<int>(numbers_.below(2 * reach)) - reach;
      return numbers_.below(8) == 0 ? numbers_.small_whole()
                                    : std::ldexp(numbers_.between(-2.0, 2.0), exponent);
    }
    switch (kind) {
      case Kind::x: return millimetres(435000.123);
      case Kind::y: return millimetres(4473000.456);
      case Kind::elevation: return std::round(numbers_.between(-20.0, 900.0) * 1000.0) / 1000.0;
      case Kind::tolerance: return numbers_.between(0.0, 200.0);
      case Kind::angle: return numbers_.between(-400.0, 800.0);
      case Kind::distance: return numbers_.between(0.0, 2000.0);
      case Kind::output: break;
    }
    return numbers_.any();
  }
  double millimetres(double base) {
    return std::round((base + numbers_.between(-500.0, 500.0)) * 1000.0) / 1000.0;
  }

  Numbers numbers_;
};

template <class... P>
using FirstOf = std::remove_cvref_t<std::tuple_element_t<0, std::tuple<P...>>>;

/// One call: the answer or failure, and every variable afterwards, are those of the
/// restatement, bit for bit. Parameter i is the variable at place[i]. Answers with
/// what the restatement came to.
template <class R, class... P, class Restated, class T, std::size_t N>
Outcome agree_on(R (cgeo_Algorismos::*member)(P...) const, Restated restated,
                 const std::array<T, N>& before, const std::array<std::size_t, N>& place) {
  static_assert(N == sizeof...(P));
  std::array<T, N> got = before;
  std::array<T, N> expected = before;
  const auto [answer, wanted] = [&]<std::size_t... i>(std::index_sequence<i...>) {
    const Outcome member_outcome =
        outcome_of([&] { return (algorithms.*member)(got[place[i]]...); });
    const Outcome stated_outcome = outcome_of([&] { return restated(expected[place[i]]...); });
    return std::pair(member_outcome, stated_outcome);
  }
  (std::make_index_sequence<N>{});
  const auto told = [&] {
    ::testing::Message values;
    values << "values and places";
    for (std::size_t i = 0; i < N; ++i) values << ' ' << before[i] << '@' << place[i];
    return values;
  };
  EXPECT_EQ(answer, wanted) << told();
  for (std::size_t i = 0; i < N; ++i) EXPECT_EQ(bits(got[i]), bits(expected[i])) << told();
  return wanted;
}

/// 10,000 calls of each style. Parameters share variables now and then.
template <class R, class... P, class Restated>
void agree(R (cgeo_Algorismos::*member)(P...) const, Restated restated,
           const std::array<Kind, sizeof...(P)>& kinds) {
  constexpr std::size_t N = sizeof...(P);
  using T = FirstOf<P...>;
  Values values(seed_of(kinds));
  for (const auto style : {Values::survey, Values::lattice, Values::degenerate, Values::any_size}) {
    int fine = 0;
    for (int trial = 0; trial < 10000; ++trial) {
      const std::array<T, N> before = values.template of<T, N>(style, kinds);
      const std::array<std::size_t, N> place = values.template places<N>();
      fine += agree_on(member, restated, before, place).failure == 0;
      if (::testing::Test::HasFailure()) FAIL() << "style " << style;
    }
    EXPECT_GT(fine, 1000) << style;
  }
}

/// The single variant of a restated routine: inputs widened into locals of
/// their own, outputs from zero; then outputs narrowed with a test, and the
/// answer without one.
template <class R, class... P, class Restated>
auto single_variant(R (cgeo_Algorismos::*)(P...) const, Restated restated) {
  return [restated](auto&... given) {
    std::array<float*, sizeof...(P)> variables{&given...};
    constexpr std::array<bool, sizeof...(P)> output{
        !std::is_const_v<std::remove_reference_t<P>>...};
    std::array<double, sizeof...(P)> local{};
    for (std::size_t i = sizeof...(P); i-- > 0;) {
      if (!output[i]) local[i] = *variables[i];
    }
    const double answer = [&]<std::size_t... i>(std::index_sequence<i...>) {
      return plain(restated(local[i]...));
    }
    (std::index_sequence_for<P...>{});
    for (std::size_t i = 0; i < sizeof...(P); ++i) {
      if (!output[i]) continue;
      const auto narrowed = static_cast<float>(local[i]);
      if (std::isinf(narrowed)) raise(failure::overflow);
      *variables[i] = narrowed;
    }
    if constexpr (std::is_same_v<R, float>) {
      return static_cast<float>(answer);
    } else {
      return answer;
    }
  };
}

template <class R, class... P, class Restated>
void agree_single(R (cgeo_Algorismos::*member)(P...) const, Restated restated,
                  const std::array<Kind, sizeof...(P)>& kinds) {
  agree(member, single_variant(member, restated), kinds);
}

}  // namespace orv2_geo::plane_tests
