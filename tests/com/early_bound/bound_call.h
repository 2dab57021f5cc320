// bound_call.h: a member of an interface, called through its place in the interface's table with
// arguments of exactly the types that its declaration names.
#pragma once

#include <oaidl.h>

#include <cstdint>
#include <cstring>
#include <optional>
#include <stdexcept>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

#include "tests/com/early_bound/variables.h"
#include "tests/com/early_bound/watched_call.h"

namespace orv2_geo::early_bound {

/// The result of a member of any type, before the call full of what no call writes.
struct Result {
  Result() { std::memset(&place, 0x5a, sizeof place); }
  alignas(16) VARIANT place;
  vectors::Kind kind = vectors::Kind::none;
  bool is_variant = false;
};

namespace binding {

using vectors::Kind;

// Which values may stand where a parameter of type T is declared.
template <class T>
bool fits(Kind kind) {
  if constexpr (std::is_same_v<T, double>) return kind == Kind::f64;
  if constexpr (std::is_same_v<T, float>) return kind == Kind::f32;
  if constexpr (std::is_same_v<T, LONG>) return kind == Kind::i32;
  if constexpr (std::is_same_v<T, short>) return kind == Kind::i16 || kind == Kind::boolean;
  if constexpr (std::is_same_v<T, BSTR>) return kind == Kind::text;
  if constexpr (std::is_same_v<T, IDispatch*>) return kind == Kind::object;
  if constexpr (std::is_same_v<T, SAFEARRAY*>) return vectors::is_array(kind);
  return false;
}

// The i-th argument as the declaration wants it: the variable's address, or what it holds.
template <class P>
P argument(const Variables& variables, std::size_t i) {
  using T = std::remove_pointer_t<P>;
  Variable& variable = variables[i];
  if constexpr (std::is_pointer_v<P>) {
    if (!fits<T>(variable.kind())) throw std::runtime_error("a parameter of another type");
    return static_cast<P>(variable.place());
  } else {
    if (!fits<P>(variable.kind())) throw std::runtime_error("a parameter of another type");
    P value;
    std::memcpy(&value, variable.place(), sizeof value);
    return value;
  }
}

template <class P>
P result_place(Result& result) {
  if constexpr (std::is_same_v<P, double*>) {
    result.kind = Kind::f64;
  } else if constexpr (std::is_same_v<P, float*>) {
    result.kind = Kind::f32;
  } else if constexpr (std::is_same_v<P, LONG*>) {
    result.kind = Kind::i32;
  } else if constexpr (std::is_same_v<P, short*>) {
    result.kind = Kind::i16;
  } else if constexpr (std::is_same_v<P, VARIANT*>) {
    result.is_variant = true;
    VariantInit(&result.place);
  } else {
    throw std::runtime_error("a result of another type");
  }
  return reinterpret_cast<P>(&result.place);
}

// An argument, or for the one behind the last the result.
template <class P>
P bound(const Variables& variables, std::size_t i, Result& result) {
  if (i < variables.count()) return argument<P>(variables, i);
  if constexpr (std::is_pointer_v<P>) return result_place<P>(result);
  throw std::runtime_error("fewer arguments than parameters");
}

template <class T>
void push_words(std::vector<std::uint32_t>& words, const T& value) {
  const std::size_t first = words.size();
  words.resize(first + (sizeof value + 3) / 4);
  std::memcpy(&words[first], &value, sizeof value);
}

template <auto member>
struct Shape;

template <class I, class... P, HRESULT (STDMETHODCALLTYPE I::*member)(P...)>
struct Shape<member> {
  static void check(const Variables& variables) {
    const bool fit = sizeof...(P) == variables.count() || sizeof...(P) == variables.count() + 1;
    if (!fit) throw std::runtime_error("another number of parameters");
  }

  static HRESULT call(IUnknown* object, const Variables& variables, Result& result) {
    check(variables);
    return [&]<std::size_t... i>(std::index_sequence<i...>) {
      return (static_cast<I*>(object)->*member)(bound<P>(variables, i, result)...);
    }
    (std::index_sequence_for<P...>());
  }

#if defined(__i386__)
  static Watched watched(IUnknown* object, const Variables& variables, Result& result,
                         std::size_t slot, std::size_t beyond) {
    check(variables);
    std::vector<std::uint32_t> words;
    push_words(words, object);
    [&]<std::size_t... i>(std::index_sequence<i...>) {
      (push_words(words, bound<P>(variables, i, result)), ...);
    }
    (std::index_sequence_for<P...>());
    const void* const* const table = *reinterpret_cast<const void* const* const*>(object);
    return call_watched(table[slot], words.data(), words.size(), beyond);
  }
#endif

  // A pointer to a virtual member begins with its place in the table, in bytes, and one more.
  static std::size_t slot() {
    const auto pointer = member;
    std::uintptr_t first = 0;
    std::memcpy(&first, &pointer, sizeof first);
    return (first - 1) / sizeof(void*);
  }
};

}  // namespace binding

/// A member of one of the interfaces.
struct BoundMember {
  std::string interface_name;
  std::size_t position;
  std::string name;
  std::size_t slot;
  HRESULT (*call)(IUnknown* object, const Variables& variables, Result& result);
#if defined(__i386__)
  Watched (*watched)(IUnknown* object, const Variables& variables, Result& result, std::size_t slot,
                     std::size_t beyond);
#endif
};

template <auto member>
BoundMember bind_member(const char* interface_name, std::size_t position, const char* name) {
  using S = binding::Shape<member>;
  return {
    interface_name, position, name, S::slot(), &S::call,
#if defined(__i386__)
        &S::watched,
#endif
  };
}

/// All members of all interfaces, and the identifiers of each class.
std::vector<BoundMember> all_members();

struct ClassIdentity {
  std::string name;
  CLSID of_class;
  IID of_interface;
};
std::vector<ClassIdentity> all_classes();

}  // namespace orv2_geo::early_bound
