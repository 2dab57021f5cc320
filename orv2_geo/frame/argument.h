// argument.h: one tagged argument of a call, by value or by reference.
#pragma once

#include <cstdint>
#include <type_traits>

#include "orv2_geo/frame/bool.h"
#include "orv2_geo/frame/geo_arrays.h"
#include "orv2_geo/frame/late_bound.h"
#include "orv2_geo/frame/text.h"
#include "orv2_geo/frame/variant.h"

namespace orv2_geo {

/// The types of the interface, by the numbers that every boundary uses.
enum class Type : std::uint16_t {
  none = 0,
  i16 = 1,
  i32 = 2,
  f32 = 3,
  f64 = 4,
  boolean = 5,
  text = 6,
  object = 7,
  variant = 8,
  double_array = 9,
  single_array = 10,
  long_array = 11,
  short_array = 12,
  string_array = 13,
  omitted = 14,
};

inline constexpr std::uint16_t by_reference_bit = 0x100;

/// A type's tag when the argument points at the host's variable.
constexpr std::uint16_t by_reference(Type type) {
  return static_cast<std::uint16_t>(type) | by_reference_bit;
}
constexpr std::uint16_t by_value(Type type) { return static_cast<std::uint16_t>(type); }

constexpr bool is_by_reference(std::uint16_t tag) { return (tag & by_reference_bit) != 0; }
constexpr Type type_of(std::uint16_t tag) { return static_cast<Type>(tag & ~by_reference_bit); }
constexpr bool is_array(Type type) {
  return type >= Type::double_array && type <= Type::string_array;
}

/// The interface type of a C++ type.
template <class T>
inline constexpr Type interface_type = Type::none;
template <>
inline constexpr Type interface_type<std::int16_t> = Type::i16;
template <>
inline constexpr Type interface_type<std::int32_t> = Type::i32;
template <>
inline constexpr Type interface_type<float> = Type::f32;
template <>
inline constexpr Type interface_type<double> = Type::f64;
template <>
inline constexpr Type interface_type<Bool> = Type::boolean;
template <>
inline constexpr Type interface_type<Text> = Type::text;
template <>
inline constexpr Type interface_type<ObjectRef> = Type::object;
template <>
inline constexpr Type interface_type<Variant> = Type::variant;
template <>
inline constexpr Type interface_type<DoubleArray> = Type::double_array;
template <>
inline constexpr Type interface_type<SingleArray> = Type::single_array;
template <>
inline constexpr Type interface_type<LongArray> = Type::long_array;
template <>
inline constexpr Type interface_type<ShortArray> = Type::short_array;
template <>
inline constexpr Type interface_type<StringArray> = Type::string_array;

/// An argument as a host hands it in: a scalar by value, or a pointer to the
/// host's own variable. Texts and objects by value are borrowed; arrays are
/// always by reference. A default-made argument is one left out.
struct Argument {
  std::uint16_t tag = static_cast<std::uint16_t>(Type::omitted);
  union {
    double f64 = 0.0;
    float f32;
    std::int32_t i32;
    std::int16_t i16;
    std::int16_t boolean;
    const Text* text;
    LateBound* object;
    void* variable;
  };

  constexpr Argument() noexcept = default;

  // By value.
  Argument(double value) noexcept : tag(by_value(Type::f64)), f64(value) {}
  Argument(float value) noexcept : tag(by_value(Type::f32)), f32(value) {}
  Argument(std::int32_t value) noexcept : tag(by_value(Type::i32)), i32(value) {}
  Argument(std::int16_t value) noexcept : tag(by_value(Type::i16)), i16(value) {}
  Argument(Bool value) noexcept : tag(by_value(Type::boolean)), boolean(value.bits) {}
  Argument(bool value) noexcept : Argument(Bool(value)) {}

  /// By reference: the callee reads and writes `variable` itself.
  template <class T>
  requires(interface_type<T> != Type::none && interface_type<T> != Type::variant) static Argument
      of(T& variable) noexcept {
    Argument argument;
    argument.tag = by_reference(interface_type<T>);
    argument.variable = &variable;
    return argument;
  }
  /// A borrowed text or object by value.
  static Argument of_value(const Text& text) noexcept {
    Argument argument;
    argument.tag = by_value(Type::text);
    argument.text = &text;
    return argument;
  }
  static Argument of_value(const ObjectRef& object) noexcept {
    Argument argument;
    argument.tag = by_value(Type::object);
    argument.object = object.get();
    return argument;
  }

  /// The host's variable, when the argument is one of exactly this type.
  template <class T>
  T* variable_of() const noexcept {
    return tag == by_reference(interface_type<T>) ? static_cast<T*>(variable) : nullptr;
  }
};

/// A host's variable, handed in by reference.
template <class T>
Argument ref(T& variable) noexcept {
  return Argument::of(variable);
}

}  // namespace orv2_geo
