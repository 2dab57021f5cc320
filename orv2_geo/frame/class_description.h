// class_description.h: how a public class describes its members.
//
// A class has one table beside it: a line a member, in interface order, with
// the member's pointer and its parameters' names. Types, by-reference and
// by-value follow from the C++ signature, and every boundary from the table:
//
//   struct cgeo_Algorismos_table {
//     using Class = cgeo_Algorismos;
//     template <class Line>
//     static constexpr auto lines() {
//       return std::array{
//           Line::template method<&Class::Azimut, "dx", "dy", "aZ">("Azimut"),
//           Line::template method<&Class::Pto_in_Poligono, ...,
//           optional("Loc")>("Pto_in_Poligono"),
//       };
//     }
//   };
//
// Who reads the table says what a line is: a description (DescribedMember), or what a
// boundary makes of the member's pointer.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <new>
#include <span>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>

#include "orv2_geo/frame/argument.h"
#include "orv2_geo/frame/run_failure.h"

namespace orv2_geo {

/// What a member may do with a parameter by reference.
enum class ParameterUse : std::uint8_t {
  read = 0,
  written = 1,
  resized = 2,  // an array that may get other bounds
};

/// One parameter of a member, as a host sees it.
struct ParameterDescription {
  std::string_view name;
  Type type = Type::none;
  bool by_reference = false;
  bool optional = false;
  bool has_default = false;  // else an optional one left out is zero
  std::int32_t default_value = 0;
  ParameterUse use = ParameterUse::read;
};

/// Reads a text as a number, the way of the user's locale. Failure 13 when it
/// is none.
using NumberFromText = double (*)(std::u16string_view);

/// A boundary's own values on their way to become arguments.
class ArgumentReader {
 public:
  /// The i-th value as an argument. What it stands for lives until the call is over.
  virtual Argument read(std::size_t i) = 0;

 protected:
  ~ArgumentReader() = default;
};

/// One call on its way to a member: the arguments given and the place of the answer.
/// A boundary may hand in values of its own kind as long as numbers, flags and their
/// variables look like arguments; all others are then asked of its reader.
struct Call {
  std::span<const Argument> arguments;
  Variant* variant_result = nullptr;  // where a variant answer goes
  Argument* result = nullptr;         // where any other answer goes, by value
  NumberFromText number_from_text = nullptr;
  ArgumentReader* reader = nullptr;
};

enum class MemberKind : std::uint8_t { method = 0, property_read = 1, property_write = 2 };

/// One member: its name, its parameters, its result and the way to call it.
struct MemberDescription {
  std::string_view name;
  MemberKind kind = MemberKind::method;
  Type result = Type::none;
  std::span<const ParameterDescription> parameters;

  /// Calls the member. Its failures, and those of arguments that it cannot take, are
  /// signed with its class.
  void (*invoke)(void* object, const Call& call) = nullptr;
};

/// One public class: its registered name, its members in interface order, and
/// how its instances begin and end.
struct ClassDescription {
  std::string_view name;        // "cgeo_Algorismos"
  const char* registered_name;  // "Orv2_Geo.cgeo_Algorismos"
  std::span<const MemberDescription> members;
  void* (*begin)();
  void (*end)(void* object) noexcept;
};

/// A parameter as the class's table writes it.
struct Parameter {
  char name[24] = {};
  bool optional = false;
  bool has_default = false;
  std::int32_t default_value = 0;
  bool resized = false;

  template <std::size_t N>
  constexpr Parameter(const char (&text)[N]) {
    static_assert(N <= sizeof(name));
    for (std::size_t i = 0; i < N; ++i) name[i] = text[i];
  }
};

/// A parameter that a caller can leave out; it arrives as zero.
template <std::size_t N>
constexpr Parameter optional(const char (&name)[N]) {
  Parameter parameter(name);
  parameter.optional = true;
  return parameter;
}

/// A parameter that a caller can leave out; it arrives as `default_value`.
template <std::size_t N>
constexpr Parameter optional(const char (&name)[N], std::int32_t default_value) {
  Parameter parameter = optional(name);
  parameter.has_default = true;
  parameter.default_value = default_value;
  return parameter;
}

/// An array that the member may give other bounds.
template <std::size_t N>
constexpr Parameter resized(const char (&name)[N]) {
  Parameter parameter(name);
  parameter.resized = true;
  return parameter;
}

namespace description {

// What the signature tells: a variable that is not constant is written.
template <class P>
constexpr ParameterUse use_of(bool resized) {
  using Referred = std::remove_reference_t<P>;
  constexpr bool written = std::is_lvalue_reference_v<P> && !std::is_const_v<Referred>;
  if (resized) return ParameterUse::resized;
  return written ? ParameterUse::written : ParameterUse::read;
}

// An argument of another type, converted to the parameter's.
// Failures: 13 for a type or a text that cannot be converted, 6 out of range.
double to_f64(const Argument& given, NumberFromText number_from_text);
float to_f32(const Argument& given, NumberFromText number_from_text);
std::int32_t to_i32(const Argument& given, NumberFromText number_from_text);
std::int16_t to_i16(const Argument& given, NumberFromText number_from_text);
Bool to_bool(const Argument& given, NumberFromText number_from_text);
Text to_text(const Argument& given);
ObjectRef to_object(const Argument& given);

template <class T>
T converted(const Argument& given, const Call& call) {
  if constexpr (std::is_same_v<T, double>) return to_f64(given, call.number_from_text);
  if constexpr (std::is_same_v<T, float>) return to_f32(given, call.number_from_text);
  if constexpr (std::is_same_v<T, std::int32_t>) return to_i32(given, call.number_from_text);
  if constexpr (std::is_same_v<T, std::int16_t>) return to_i16(given, call.number_from_text);
  if constexpr (std::is_same_v<T, Bool>) return to_bool(given, call.number_from_text);
  if constexpr (std::is_same_v<T, Text>) return to_text(given);
  if constexpr (std::is_same_v<T, ObjectRef>) return to_object(given);
}

/// The value of an optional parameter that was left out.
template <class T>
T left_out(const Parameter& parameter) {
  if (!parameter.optional) raise(failure::argument_not_optional);
  if constexpr (std::is_arithmetic_v<T>) return static_cast<T>(parameter.default_value);
  return T{};
}

/// The place of one argument: points at the host's variable, or holds a temporary.
template <class P>
class Slot {
  using T = std::remove_cvref_t<P>;
  static constexpr bool is_array = orv2_geo::is_array(interface_type<T>);
  struct None {};

 public:
  template <Parameter parameter>
  void bind(const Argument& given, const Call& call) {
    if (given.tag == by_reference(interface_type<T>)) [[likely]] {
      if (given.variable == nullptr) raise(failure::invalid_call);
      variable_ = static_cast<T*>(given.variable);
    } else {
      bind_temporary(parameter, given, call);
    }
  }

  P get() const { return *variable_; }

 private:
  [[gnu::noinline]] void bind_temporary(const Parameter& parameter, const Argument& given,
                                        const Call& call) {
    if constexpr (is_array) {
      raise(given.tag == by_value(Type::omitted) ? failure::argument_not_optional
                                                 : failure::type_mismatch);
    } else {
      // A by-reference parameter takes a variable of its exact type, or a value.
      if (std::is_reference_v<P> && is_by_reference(given.tag)) raise(failure::type_mismatch);
      temporary_ =
          given.tag == by_value(Type::omitted) ? left_out<T>(parameter) : converted<T>(given, call);
      variable_ = &temporary_;
    }
  }

  T* variable_ = nullptr;
  [[no_unique_address]] std::conditional_t<is_array, None, T> temporary_;
};

/// Puts a member's answer where the call wants it.
template <class R>
void answer(const Call& call, R&& value) {
  if constexpr (std::is_same_v<std::remove_cvref_t<R>, Variant>) {
    if (call.variant_result != nullptr) *call.variant_result = std::forward<R>(value);
  } else {
    if (call.result == nullptr) return;
    call.result->f64 = 0.0;  // nothing of what stood there shows beside a short answer
    *call.result = Argument(value);
  }
}

template <class C, class R, class... P>
struct Signature {
  using Class = C;
  using Result = R;
  static constexpr std::size_t arity = sizeof...(P);
  static constexpr std::array<Type, arity> types{interface_type<std::remove_cvref_t<P>>...};
  static constexpr std::array<bool, arity> by_reference{std::is_reference_v<P>...};
  using Slots = std::tuple<Slot<P>...>;
  template <std::size_t i>
  using Parameter = std::tuple_element_t<i, std::tuple<P...>>;
};
template <class C, class R, class... P>
Signature<C, R, P...> signature_of(R (C::*)(P...));
template <class C, class R, class... P>
Signature<C, R, P...> signature_of(R (C::*)(P...) const);

template <auto member>
using SignatureOf = decltype(signature_of(member));

template <class S, Parameter... names>
constexpr auto described_parameters() {
  static_assert(S::arity == sizeof...(names), "a name for each parameter");
  return []<std::size_t... i>(std::index_sequence<i...>) {
    return std::array<ParameterDescription, S::arity>{ParameterDescription{
        names.name, S::types[i], S::by_reference[i], names.optional, names.has_default,
        names.default_value, use_of<typename S::template Parameter<i>>(names.resized)}...};
  }
  (std::make_index_sequence<S::arity>{});
}

// The names are template arguments, so their characters live as long as the
// program, and so do the views of them.
template <auto member, Parameter... names>
inline constexpr auto parameters_of = described_parameters<SignatureOf<member>, names...>();

// The member with these arguments, whatever type they come in.
template <auto member, class... A>
void call_member(void* object, const Call& call, A&&... arguments) {
  using S = SignatureOf<member>;
  auto& self = *static_cast<typename S::Class*>(object);
  if constexpr (std::is_void_v<typename S::Result>) {
    (self.*member)(std::forward<A>(arguments)...);
  } else {
    answer(call, (self.*member)(std::forward<A>(arguments)...));
  }
}

// Runs what comes before a member of C; its failures are signed with the class.
template <class C, class Work>
void before_member(Work&& work) {
  try {
    work();
  } catch (...) {
    leave_signed(C::registered_name);
  }
}

// The i-th argument; one left out beyond the last.
inline Argument given_argument(const Call& call, std::size_t i) {
  if (i >= call.arguments.size()) return {};
  return call.reader != nullptr ? call.reader->read(i) : call.arguments[i];
}

// The way of all arguments: each is read and, where it is of another type than its
// parameter, converted.
template <auto member, Parameter... names>
[[gnu::noinline]] void invoke_converted(void* object, const Call& call) {
  using S = SignatureOf<member>;
  typename S::Slots places;  // Qt's headers make a macro of "slots"
  [&]<std::size_t... i>(std::index_sequence<i...>) {
    before_member<typename S::Class>([&] {
      if (call.arguments.size() > S::arity) raise(failure::wrong_argument_count);
      (std::get<i>(places).template bind<names>(given_argument(call, i), call), ...);
    });
    call_member<member>(object, call, std::get<i>(places).get()...);
  }
  (std::make_index_sequence<S::arity>{});
}

// An argument that has its parameter's own tag.
template <class P>
P exact(const Argument& given) {
  using T = std::remove_cvref_t<P>;
  if constexpr (std::is_reference_v<P>) {
    return *static_cast<T*>(given.variable);
  } else if constexpr (std::is_same_v<T, double>) {
    return given.f64;
  } else if constexpr (std::is_same_v<T, float>) {
    return given.f32;
  } else {
    static_assert(std::is_same_v<T, std::int32_t>, "no member takes another type by value");
    return given.i32;
  }
}

// Whether an argument has its parameter's own tag and, by reference, a variable.
template <class P>
bool is_exact(const Argument& given) noexcept {
  using T = std::remove_cvref_t<P>;
  if constexpr (std::is_reference_v<P>) {
    return given.tag == by_reference(interface_type<T>) && given.variable != nullptr;
  } else {
    return given.tag == by_value(interface_type<T>);
  }
}

// Numbers and flags look the same at every boundary: where all parameters are such and
// all arguments fit, nothing is read, converted or copied.
template <auto member, Parameter... names>
void invoke_scalars(void* object, const Call& call) {
  using S = SignatureOf<member>;
  [&]<std::size_t... i>(std::index_sequence<i...>) {
    const Argument* const given = call.arguments.data();
    const bool fit = call.arguments.size() == S::arity &&
                     (is_exact<typename S::template Parameter<i>>(given[i]) && ...);
    if (!fit) return invoke_converted<member, names...>(object, call);
    call_member<member>(object, call, exact<typename S::template Parameter<i>>(given[i])...);
  }
  (std::make_index_sequence<S::arity>{});
}

template <auto member, Parameter... names>
constexpr auto way_to() -> void (*)(void*, const Call&) {
  constexpr auto scalar = [](Type type) { return type >= Type::i16 && type <= Type::boolean; };
  using S = SignatureOf<member>;
  if constexpr (std::all_of(S::types.begin(), S::types.end(), scalar)) {
    return &invoke_scalars<member, names...>;
  } else {
    return &invoke_converted<member, names...>;
  }
}

template <class C, class T>
C class_of(T C::*);
template <class C, class T>
T type_of_variable(T C::*);

// A public variable's two sides, each shaped like a member function.
template <auto variable>
struct Property {
  using C = decltype(class_of(variable));
  using T = decltype(type_of_variable(variable));
  static void read(void* object, const Call& call) {
    before_member<C>([&] {
      if (!call.arguments.empty()) raise(failure::wrong_argument_count);
    });
    answer(call, static_cast<C*>(object)->*variable);
  }
  static void write(void* object, const Call& call) {
    Slot<T> value;
    before_member<C>([&] {
      if (call.arguments.size() > 1) raise(failure::wrong_argument_count);
      value.template bind<"value">(given_argument(call, 0), call);
    });
    static_cast<C*>(object)->*variable = value.get();
  }
  static constexpr ParameterDescription written[] = {{"value", interface_type<T>}};
};

}  // namespace description

/// A line of a class's table: a method.
template <auto member, Parameter... names>
constexpr MemberDescription method(std::string_view name) {
  using S = description::SignatureOf<member>;
  return {name, MemberKind::method, interface_type<typename S::Result>,
          description::parameters_of<member, names...>, description::way_to<member, names...>()};
}

/// A line of a class's table: the read side of a public variable.
template <auto variable>
constexpr MemberDescription property_read(std::string_view name) {
  using P = description::Property<variable>;
  return {name, MemberKind::property_read, interface_type<typename P::T>, {}, &P::read};
}

/// A line of a class's table: the write side of a public variable.
template <auto variable>
constexpr MemberDescription property_write(std::string_view name) {
  using P = description::Property<variable>;
  return {name, MemberKind::property_write, Type::none, P::written, &P::write};
}

/// A registered name without the library's in front: "cgeo_Algorismos".
constexpr std::string_view unqualified(std::string_view registered_name) {
  return registered_name.substr(registered_name.rfind('.') + 1);
}

/// The description of class C from its members.
template <class C>
constexpr ClassDescription describe_class(std::string_view name, const char* registered_name,
                                          std::span<const MemberDescription> members) {
  return {name, registered_name, members,
          [] {
            C* const instance = new (std::nothrow) C();
            if (instance == nullptr) raise(failure::out_of_memory);
            return static_cast<void*>(instance);
          },
          [](void* object) noexcept { delete static_cast<C*>(object); }};
}

/// The reader of a table that makes descriptions.
struct DescribedMember {
  template <auto member, Parameter... names>
  static constexpr MemberDescription method(std::string_view name) {
    return orv2_geo::method<member, names...>(name);
  }
  template <auto variable>
  static constexpr MemberDescription property_read(std::string_view name) {
    return orv2_geo::property_read<variable>(name);
  }
  template <auto variable>
  static constexpr MemberDescription property_write(std::string_view name) {
    return orv2_geo::property_write<variable>(name);
  }
};

/// What a reader makes of a class's table, line by line.
template <class Line, class Table>
inline constexpr auto lines_of = Table::template lines<Line>();

/// The description of a class from its table.
template <class Table>
inline constexpr ClassDescription description_of = describe_class<typename Table::Class>(
    unqualified(Table::Class::registered_name), Table::Class::registered_name,
    lines_of<DescribedMember, Table>);

}  // namespace orv2_geo
