// late_places.h: the places of late-bound arguments that are not the library's variables
// as they stand: they are converted before the call and written back behind it.
#pragma once

#include <cstring>
#include <memory>

#include "orv2_geo/com/kept_for_call.h"
#include "orv2_geo/com/system.h"
#include "orv2_geo/com/variants.h"

namespace orv2_geo::com {

inline bool same_bits(const Text& a, const Text& b) noexcept { return a == b; }
template <class T>
bool same_bits(const T& a, const T& b) noexcept {
  return std::memcmp(&a, &b, sizeof(T)) == 0;
}

/// A number, flag or text by value: nobody sees what the call makes of it.
template <class T>
class ValuePlace final : public Place {
 public:
  explicit ValuePlace(const VARIANT& given)
      : Place(nullptr, Type::none), value_(value_in<T>(given)) {}
  Argument argument() override { return Argument::of(value_); }

 private:
  T value_;
};

/// A host's variable of another type than the parameter's, or for any type. What the call
/// does not change stays as it is, its type included.
template <class T>
class VariablePlace final : public Place {
 public:
  static constexpr Type type = interface_type<T>;
  /// The variable itself, also where several arguments point at it.
  static const void* key(const VARIANT& variable) noexcept {
    return (variable.vt & VT_BYREF) != 0 ? variable.byref : &variable;
  }
  explicit VariablePlace(VARIANT& variable)
      : Place(key(variable), type),
        variable_(variable),
        value_(value_in<T>(variable)),
        given_(value_) {}
  Argument argument() override { return Argument::of(value_); }
  void write_back() override {
    if (!same_bits(value_, given_)) put(variable_, value_);
  }

 private:
  VARIANT& variable_;
  T value_;
  const T given_;
};

/// The elements of an array of the system's, which may be variants, as an array of the
/// library's own. Of several dimensions none can be reached. Failure 13, 6, 7; 9 where its
/// bounds do not fit.
template <class A>
void copy_elements(A& to, const HostStorage& from, bool are_variants) {
  using T = typename A::value_type;
  if (!from.allocated()) return;
  to.make(from.lower(), from.dimensions() == 1 ? from.count() : 0, from.dimensions());
  for (std::uint32_t i = 0; i < to.count(); ++i) {
    to.data()[i] = are_variants ? value_in<T>(static_cast<const VARIANT*>(from.elements())[i])
                                : static_cast<const T*>(from.elements())[i];
  }
}

/// An array by value: the call works on a copy.
template <class A>
class CopiedArrayPlace final : public Place {
 public:
  CopiedArrayPlace(SAFEARRAY* given, bool of_variants) : Place(nullptr, Type::none) {
    const HostStorage storage(&given, of_variants ? VARTYPE{VT_VARIANT} : element_type<A>);
    if (storage.allocated() && !of_variants) {
      expect_elements(given, element_type<A>, sizeof(typename A::value_type));
    }
    copy_elements(array_, storage, of_variants);
  }
  Argument argument() override { return Argument::of(array_); }

 private:
  A array_;
};

/// A script's array of variants. The call works on a copy in the parameter's own type; the
/// script's array has its new bounds at once, and its new elements behind the call.
template <class A>
class ScriptArrayPlace final : public Place, public ArrayOwner {
 public:
  static constexpr Type type = interface_type<A>;

  static const void* key(const auto& variable) noexcept { return &variable; }
  explicit ScriptArrayPlace(SAFEARRAY*& variable)
      : Place(&variable, type), storage_(&variable, VT_VARIANT) {
    read();
  }
  /// A variable without content, which gets an array where the call makes one.
  explicit ScriptArrayPlace(VARIANT& empty)
      : Place(&empty, type), empty_(&empty), storage_(&own_.array, VT_VARIANT) {
    read();
  }

  Argument argument() override { return Argument::of(array_); }

  void* resize(std::int32_t lower, std::uint32_t count, bool keep) override {
    auto fresh = std::make_unique<A>();
    fresh->make(lower, count);
    storage_.resize(lower, count, false);
    if (keep && values_->allocated()) move_survivors(*values_, *fresh);
    values_ = std::move(fresh);
    given_.reset();
    return values_->data();
  }
  void release() override {
    storage_.release();
    values_ = std::make_unique<A>();
    given_.reset();
  }

  void guard(const BoundVariables& variables) noexcept override { storage_.guard(variables); }
  void write_back() override {
    if (!storage_.allocated()) return;
    auto* const elements = static_cast<VARIANT*>(storage_.elements());
    for (std::uint32_t i = 0; i < values_->legal_count(); ++i) {
      const bool changed = !given_ || !same_bits(values_->data()[i], given_->data()[i]);
      if (changed) put(elements[i], values_->data()[i]);
    }
    if (own_.array != nullptr && empty_->vt == VT_EMPTY) {
      empty_->vt = VT_ARRAY | VT_VARIANT;
      empty_->parray = std::exchange(own_.array, nullptr);
    }
  }

 private:
  // An array that no variable holds; it ends behind the storage that locks it.
  struct OwnArray {
    OwnArray() = default;
    OwnArray(const OwnArray&) = delete;
    OwnArray& operator=(const OwnArray&) = delete;
    ~OwnArray() {
      if (array != nullptr) SafeArrayDestroy(array);
    }
    SAFEARRAY* array = nullptr;
  };

  void read() {
    if (storage_.array() != nullptr) {
      expect_elements(storage_.array(), VT_VARIANT, sizeof(VARIANT));
    }
    if (!storage_.allocated()) {
      array_.adopt(*this);
      return;
    }
    copy_elements(*values_, storage_, true);
    given_ = std::make_unique<A>(*values_);
    array_.adopt(*this, values_->data(), storage_.lower(), values_->count(), storage_.dimensions());
  }

  static void move_survivors(A& from, A& to) {
    for (std::uint32_t i = 0; i < to.count(); ++i) {
      const std::int64_t index = std::int64_t{to.lower()} + i - from.lower();
      if (index >= 0 && index < from.count()) {
        to.data()[i] = std::move(from.data()[static_cast<std::size_t>(index)]);
      }
    }
  }

  VARIANT* empty_ = nullptr;
  OwnArray own_;
  HostStorage storage_;
  std::unique_ptr<A> values_ = std::make_unique<A>();
  std::unique_ptr<const A> given_;  // none: every element is new
  A array_;
};

/// An object that was handed in as a plain interface.
class FoundObjectPlace final : public Place {
 public:
  explicit FoundObjectPlace(IDispatch* found)
      : Place(nullptr, Type::none), found_(found), object_(new HostVariable(&found_)) {}
  ~FoundObjectPlace() override {
    if (found_ != nullptr) found_->Release();
  }
  Argument argument() override { return Argument::of(object_); }

 private:
  IDispatch* found_;
  ObjectRef object_;
};

}  // namespace orv2_geo::com
