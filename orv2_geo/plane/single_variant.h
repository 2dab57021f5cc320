// single_variant.h: an f32 member made from its f64 twin.
#pragma once

#include <cstddef>
#include <tuple>
#include <type_traits>
#include <utility>

#include "orv2_geo/frame/bool.h"
#include "orv2_geo/frame/checked_math.h"
#include "orv2_geo/frame/late_bound.h"

namespace orv2_geo::plane {

/// The f64 local that stands for one parameter of the twin.
template <class T>
struct Local;

/// An input: the caller's value, widened.
template <>
struct Local<const double&> {
  double value = 0.0;
  void take(const float& given) { value = widen(given); }
  const double& passed() const { return value; }
  void give(const float&) const {}
};

/// An output: starts at 0.0 whatever the caller's variable holds, and is always
/// given back.
template <>
struct Local<double&> {
  double value = 0.0;
  void take(const float&) {}
  double& passed() { return value; }
  void give(float& given) const { given = narrow(value); }
};

/// An object is passed on as it is: the caller's own variable, which the caller
/// may set to another object meanwhile.
template <>
struct Local<const ObjectRef&> {
  const ObjectRef* variable = nullptr;
  void take(const ObjectRef& given) { variable = &given; }
  const ObjectRef& passed() const { return *variable; }
  void give(const ObjectRef&) const {}
};

/// The twin's answer as a single variant gives it: a number by plain narrowing,
/// so that one beyond the f32 range becomes an infinity.
inline float narrowed_answer(double answer) { return narrow_plain(answer); }
inline Bool narrowed_answer(Bool answer) { return answer; }

/// Calls `twin` on the widened parameters `given`: inputs widened last
/// parameter first, outputs from 0.0; then outputs narrowed with the test. The
/// answer is the twin's own.
template <class C, class R, class... T, class... P>
R widened_call(const C& self, R (C::*twin)(T...) const, P&... given) {
  std::tuple<Local<T>...> locals;
  const std::tuple<P&...> parameters(given...);
  constexpr std::size_t last = sizeof...(T) - 1;
  return [&]<std::size_t... i>(std::index_sequence<i...>)->R {
    (std::get<last - i>(locals).take(std::get<last - i>(parameters)), ...);
    if constexpr (std::is_void_v<R>) {
      (self.*twin)(std::get<i>(locals).passed()...);
      (std::get<i>(locals).give(std::get<i>(parameters)), ...);
    } else {
      const R answer = (self.*twin)(std::get<i>(locals).passed()...);
      (std::get<i>(locals).give(std::get<i>(parameters)), ...);
      return answer;
    }
  }
  (std::index_sequence_for<T...>{});
}

/// The whole single variant: widened_call, and its answer narrowed.
template <class C, class R, class... T, class... P>
auto single_variant(const C& self, R (C::*twin)(T...) const, P&... given) {
  if constexpr (std::is_void_v<R>) {
    widened_call(self, twin, given...);
  } else {
    return narrowed_answer(widened_call(self, twin, given...));
  }
}

}  // namespace orv2_geo::plane
