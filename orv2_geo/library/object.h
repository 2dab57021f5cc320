// object.h: an instance of a public class, reached by name or by position.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "orv2_geo/frame/class_description.h"
#include "orv2_geo/frame/export.h"
#include "orv2_geo/frame/late_bound.h"
#include "orv2_geo/frame/variant.h"

namespace orv2_geo {

/// An instance of a public class. It is used on the thread that made it: a call
/// from another is refused with failure 5 before anything runs. During a call
/// the object holds one reference more, so one that is released in the middle
/// of a call lives until the call ends.
class ORV2_PUBLIC Object final : public LateBound {
 public:
  /// A new instance; its data start at zero. Failure 7.
  explicit Object(const ClassDescription& of_class);

  const ClassDescription& description() const noexcept { return class_; }

  /// Calls the member at `position` (from 0, in interface order).
  /// Failures: 438 for a position outside the table; 450 for too many
  /// arguments; 449 for a required one left out; 13 for one of a type that
  /// cannot be converted; 5 on a foreign thread; else the member's own.
  Variant call(std::size_t position, std::span<const Argument> arguments);

  /// Calls the member `name`, case ignored. A property is read without an
  /// argument and written with one. Failures as by position, and 438 for a
  /// name that the class does not have.
  Variant call(std::string_view name, std::span<const Argument> arguments) override;

  /// Writes the property `name`. Failures as for call.
  void set_property(std::string_view name, const Variant& value) override;

  /// Calls the member at `position`; the answer goes where `call` says. Failures as
  /// for call.
  void invoke(std::size_t position, const Call& call);

  /// The member at `position`. Failure 438 for a position outside the table.
  const MemberDescription& member(std::size_t position) const {
    if (position >= class_.members.size()) [[unlikely]] {
      throw RunFailure::signed_by(failure::no_such_member, class_.registered_name);
    }
    return class_.members[position];
  }

  /// Calls a member of the object's class, for a boundary that has made sure that the thread is
  /// the object's own.
  void invoke_here(const MemberDescription& member, const Call& call) {
    const ObjectRef during_the_call(this);
    member.invoke(instance_, call);
  }

  /// Failure 5 on a thread other than the object's own.
  void expect_own_thread() const;

  /// Where a call of `name` with so many arguments goes. Failures: 5 on a
  /// foreign thread; 438.
  std::size_t position_of(std::string_view name, std::size_t argument_count) const;

  /// The instance itself, for direct calls.
  template <class C>
  C* as() noexcept {
    return &C::description() == &class_ ? static_cast<C*>(instance_) : nullptr;
  }

 private:
  ~Object() override;

  const ClassDescription& class_;
  void* instance_;
  std::uint64_t thread_;
};

/// A new object of the class registered as `registered_name`, such as
/// "Orv2_Geo.cgeo_Algorismos", case ignored. Failures: 429 for an unknown
/// name; 7.
ORV2_PUBLIC ObjectRef create(std::string_view registered_name);

}  // namespace orv2_geo
