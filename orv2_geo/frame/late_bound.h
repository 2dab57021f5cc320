// late_bound.h: an object reached by the names of its members.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>
#include <utility>

#include "orv2_geo/frame/export.h"
#include "orv2_geo/frame/run_failure.h"

namespace orv2_geo {

class Variant;
struct Argument;

/// An object whose members are reached by name at run time: a host's surface
/// or progress indicator, a control on a form, an object of this library.
/// Names are ASCII. It lives until its last reference is released and is used
/// on one thread. An implementation throws RunFailure: 438 for a member that
/// it does not have, anything of its own otherwise.
class ORV2_PUBLIC LateBound {
 public:
  LateBound() noexcept = default;
  LateBound(const LateBound&) = delete;
  LateBound& operator=(const LateBound&) = delete;

  /// Calls the member `name`. By-reference arguments point at the caller's
  /// variables.
  virtual Variant call(std::string_view name, std::span<const Argument> arguments) = 0;

  /// Sets the property `name`.
  virtual void set_property(std::string_view name, const Variant& value) = 0;

  void reference() noexcept { ++references_; }
  void release() noexcept {
    if (--references_ == 0) delete this;
  }

 protected:
  virtual ~LateBound() = default;

 private:
  std::uint32_t references_ = 0;
};

/// A counted reference to a late-bound object, or to none.
class ObjectRef {
 public:
  ObjectRef() noexcept = default;
  ObjectRef(std::nullptr_t) noexcept {}
  explicit ObjectRef(LateBound* object) noexcept : object_(object) {
    if (object_ != nullptr) object_->reference();
  }
  ObjectRef(const ObjectRef& other) noexcept : ObjectRef(other.object_) {}
  ObjectRef(ObjectRef&& other) noexcept : object_(std::exchange(other.object_, nullptr)) {}
  ~ObjectRef() {
    if (object_ != nullptr) object_->release();
  }
  ObjectRef& operator=(ObjectRef other) noexcept {
    std::swap(object_, other.object_);
    return *this;
  }

  LateBound* get() const noexcept { return object_; }
  explicit operator bool() const noexcept { return object_ != nullptr; }

  /// The object. Failure 91 when there is none.
  LateBound* operator->() const {
    if (object_ == nullptr) raise(failure::object_not_set);
    return object_;
  }

  friend bool operator==(const ObjectRef&, const ObjectRef&) noexcept = default;

 private:
  LateBound* object_ = nullptr;
};

}  // namespace orv2_geo
