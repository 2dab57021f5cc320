// variant.h: the self-describing value.
#pragma once

#include <cstdint>
#include <utility>
#include <variant>

#include "orv2_geo/frame/bool.h"
#include "orv2_geo/frame/late_bound.h"
#include "orv2_geo/frame/text.h"

namespace orv2_geo {

/// A value that carries its own type. A new one is empty.
class Variant {
 public:
  struct Null {
    friend bool operator==(Null, Null) noexcept { return true; }
  };
  using Value = std::variant<std::monostate, Null, std::int16_t, std::int32_t, float, double, Bool,
                             Text, ObjectRef>;

  Variant() noexcept = default;
  template <class T>
  requires(!std::is_same_v<std::remove_cvref_t<T>, Variant> && std::is_constructible_v<Value, T>)
      Variant(T&& value)
      : value_(std::in_place_type<std::remove_cvref_t<T>>, std::forward<T>(value)) {}

  template <class T>
  bool holds() const noexcept {
    return std::holds_alternative<T>(value_);
  }
  /// The payload, or null when it is of another type.
  template <class T>
  const T* get() const noexcept {
    return std::get_if<T>(&value_);
  }
  const Value& value() const noexcept { return value_; }

 private:
  Value value_;
};

}  // namespace orv2_geo
