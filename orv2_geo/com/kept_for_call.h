// kept_for_call.h: what a host's arguments need to live through a call.
#pragma once

#include <array>
#include <cstddef>
#include <memory_resource>
#include <new>
#include <utility>

#include "orv2_geo/com/host_array.h"
#include "orv2_geo/com/host_object.h"
#include "orv2_geo/com/system.h"
#include "orv2_geo/frame/argument.h"

namespace orv2_geo::com {

/// The place of one host variable in a call: what a parameter is bound to.
class Place {
 public:
  explicit Place(const void* variable, Type type) noexcept : variable_(variable), type_(type) {}
  Place(const Place&) = delete;
  Place& operator=(const Place&) = delete;
  virtual ~Place() = default;

  bool is_of(const void* variable, Type type) const noexcept {
    return variable_ == variable && type_ == type;
  }
  virtual Argument argument() = 0;

  /// Brings to the host's variable what the call left here, where it is not the variable
  /// itself that was worked on.
  virtual void write_back() {}

  /// An array of which one of these is an element is not to be moved.
  virtual void guard(const BoundVariables&) noexcept {}

 private:
  const void* variable_;
  Type type_;
};

/// The places of a call. A host variable that is given for two parameters of one type is
/// one variable of the call.
class KeptForCall {
 public:
  static constexpr std::size_t most = 16;  // no member takes more

  KeptForCall() = default;
  KeptForCall(const KeptForCall&) = delete;
  KeptForCall& operator=(const KeptForCall&) = delete;
  ~KeptForCall();

  /// A place of kind P, bound to `variable`, as an argument.
  template <class P, class Variable>
  Argument place(Variable& variable) {
    if (Place* const known = find(P::key(variable), P::type)) return known->argument();
    return add<P>(variable);
  }

  /// A new place, of an argument that is no variable.
  template <class P, class... Given>
  Argument temporary(Given&&... given) {
    return add<P>(std::forward<Given>(given)...);
  }

  /// An argument points at this variable.
  void bind(const void* variable) noexcept { bound_.add(variable); }

  /// All of them, in the order of the parameters, also after one has failed; the first
  /// failure then leaves.
  void write_back();

 private:
  Place* find(const void* variable, Type type) const noexcept;

  template <class P, class... Given>
  Argument add(Given&&... given) {
    void* const room = memory_.allocate(sizeof(P), alignof(P));
    places_[count_] = new (room) P(std::forward<Given>(given)...);
    places_[count_]->guard(bound_);
    return places_[count_++]->argument();
  }

  // Most calls need no more than this, and none of the heap.
  std::array<std::byte, 1024> room_;
  std::pmr::monotonic_buffer_resource memory_{room_.data(), room_.size()};
  std::array<Place*, most> places_;  // those behind the count hold anything
  std::size_t count_ = 0;
  BoundVariables bound_;
};

/// An array in place.
template <class A>
class ArrayPlace final : public Place {
 public:
  static constexpr Type type = interface_type<A>;
  static const void* key(SAFEARRAY*& variable) noexcept { return &variable; }
  explicit ArrayPlace(SAFEARRAY*& variable) : Place(&variable, type), array_(&variable) {}
  Argument argument() override { return Argument::of(array_.array()); }
  void guard(const BoundVariables& variables) noexcept override { array_.guard(variables); }

 private:
  HostArray<A> array_;
};

/// A variable that holds a host's object.
class ObjectPlace final : public Place {
 public:
  static constexpr Type type = Type::object;
  static const void* key(const auto& variable) noexcept { return &variable; }
  explicit ObjectPlace(IDispatch*& variable)
      : Place(&variable, type), object_(new HostVariable(&variable)) {}
  explicit ObjectPlace(const VARIANT& variable)
      : Place(&variable, type), object_(new HostVariable(variable)) {}
  Argument argument() override { return Argument::of(object_); }

 private:
  ObjectRef object_;
};

}  // namespace orv2_geo::com
