// vtables.h: a member as an entry of its class's vtable.
//
// An entry takes what a component host hands in, in the system's own calling sequence:
// numbers by value, all else as a pointer to the host's variable, and where the member
// answers, a place for the answer behind them. One template makes it of the member's
// pointer.
#pragma once

#include <cstdint>
#include <tuple>
#include <type_traits>

#include "orv2_geo/com/component.h"
#include "orv2_geo/com/kept_for_call.h"
#include "orv2_geo/com/system.h"
#include "orv2_geo/com/variants.h"
#include "orv2_geo/frame/class_description.h"

namespace orv2_geo::com {

/// A type of the interface as hosts lay it out.
template <class T>
struct HostType {
  using type = T;
};
template <>
struct HostType<Text> {
  using type = BSTR;
};
template <>
struct HostType<ObjectRef> {
  using type = IDispatch*;
};
template <>
struct HostType<Variant> {
  using type = VARIANT;
};
template <class E>
struct HostType<GeoArray<E>> {
  using type = SAFEARRAY*;
};

/// A parameter as hosts hand it in.
template <class P>
using Given =
    std::conditional_t<std::is_reference_v<P>, typename HostType<std::remove_cvref_t<P>>::type*,
                       typename HostType<std::remove_cvref_t<P>>::type>;

// A number or a flag is the library's variable as it stands, and a text is the library's
// text; arrays and objects get a place. A null pointer counts as left out where that is
// allowed.
template <class P, Parameter parameter>
Argument argument_of(KeptForCall* kept, Given<P>& given) {
  using T = std::remove_cvref_t<P>;
  if constexpr (!std::is_reference_v<P>) {
    return Argument(given);
  } else {
    if (given == nullptr) [[unlikely]] {
      if (!parameter.optional) raise(failure::invalid_call);
      return {};
    }
    if (kept != nullptr) kept->bind(given);
    if constexpr (is_array(interface_type<T>)) {
      return kept->place<ArrayPlace<T>>(*given);
    } else if constexpr (std::is_same_v<T, ObjectRef>) {
      return kept->place<ObjectPlace>(*given);
    } else {
      return Argument::of(*reinterpret_cast<T*>(given));
    }
  }
}

template <class T>
inline constexpr bool needs_place = is_array(interface_type<std::remove_cvref_t<T>>) ||
                                    std::is_same_v<std::remove_cvref_t<T>, ObjectRef>;

struct NothingKept {
  constexpr operator KeptForCall*() const noexcept { return nullptr; }
};
struct SomethingKept {
  operator KeptForCall*() noexcept { return &kept; }
  KeptForCall kept;
};

/// Runs the member for these arguments; `take` gets its answer.
template <auto member, Parameter... names, class C, class R, class... P, class Take>
HRESULT run_member(std::type_identity<description::Signature<C, R, P...>>, Component* self,
                   Take&& take, Given<P>&... given) noexcept {
  return self->run([&] {
    C& instance = *self->object().as<C>();
    [[maybe_unused]] std::conditional_t<(needs_place<P> || ...), SomethingKept, NothingKept> kept;
    std::tuple<description::Slot<P>...> slots;
    const Call call{};
    [&]<std::size_t... i>(std::index_sequence<i...>) {
      (std::get<i>(slots).template bind<names>(argument_of<P, names>(kept, given), call), ...);
      if constexpr (std::is_void_v<R>) {
        (instance.*member)(std::get<i>(slots).get()...);
      } else {
        take((instance.*member)(std::get<i>(slots).get()...));
      }
    }
    (std::index_sequence_for<P...>());
  });
}

// Puts an answer in the host's place.
template <class R>
void answer(typename HostType<R>::type* place, R&& value) {
  if (place == nullptr) return;
  if constexpr (std::is_same_v<R, Variant>) {
    VariantInit(place);
    fill(*place, value);
  } else {
    *place = value;
  }
}

template <auto member, class S, Parameter... names>
struct MethodEntry;

template <auto member, class C, class R, class... P, Parameter... names>
struct MethodEntry<member, description::Signature<C, R, P...>, names...> {
  static HRESULT STDMETHODCALLTYPE call(Component* self, Given<P>... given,
                                        typename HostType<R>::type* result) noexcept {
    using S = description::Signature<C, R, P...>;
    return run_member<member, names...>(
        std::type_identity<S>(), self, [&](R&& value) { answer<R>(result, std::move(value)); },
        given...);
  }
};

template <auto member, class C, class... P, Parameter... names>
struct MethodEntry<member, description::Signature<C, void, P...>, names...> {
  static HRESULT STDMETHODCALLTYPE call(Component* self, Given<P>... given) noexcept {
    using S = description::Signature<C, void, P...>;
    return run_member<member, names...>(
        std::type_identity<S>(), self, [] {}, given...);
  }
};

template <auto variable>
struct PropertyEntry {
  using C = typename description::Property<variable>::C;
  using T = typename description::Property<variable>::T;

  static HRESULT STDMETHODCALLTYPE read(Component* self, T* result) noexcept {
    return self->run([&] { answer<T>(result, T(self->object().as<C>()->*variable)); });
  }
  static HRESULT STDMETHODCALLTYPE write(Component* self, T value) noexcept {
    return self->run([&] { self->object().as<C>()->*variable = value; });
  }
};

/// The reader of a class's table that makes vtable entries.
struct EntryOfMember {
  template <auto member, Parameter... names>
  static VtableEntry method(std::string_view) {
    using S = description::SignatureOf<member>;
    return reinterpret_cast<VtableEntry>(&MethodEntry<member, S, names...>::call);
  }
  template <auto variable>
  static VtableEntry property_read(std::string_view) {
    return reinterpret_cast<VtableEntry>(&PropertyEntry<variable>::read);
  }
  template <auto variable>
  static VtableEntry property_write(std::string_view) {
    return reinterpret_cast<VtableEntry>(&PropertyEntry<variable>::write);
  }
};

}  // namespace orv2_geo::com
